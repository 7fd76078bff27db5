// The window state and the configuration, as the pages hand them around.
#pragma once

#include "host/setup_description.h"
#include "include/config_reader.h"
#include "include/ui_manager.h"

class CHostConfigReader final : public CConfigReader
{
public:
    SetupDescription description;  // of the media that is current
    CString strDeploymentLanguage; // of the loaded deployment; empty without one
};

class CHostUiManager final : public CUiManager
{
public:
    bool IsWindowPosSaved() override { return m_saved; }
    RECT* GetWindowPos() override { return &m_rectangle; }
    void SetWindowPos(const RECT& rectangle) override
    {
        m_rectangle = rectangle;
        m_saved = true;
    }

private:
    RECT m_rectangle = {};
    bool m_saved = false;
};
