// Keeps the installer service from showing anything while the host asks it.
#pragma once

#include <windows.h>

#include <msi.h>

// No box and no progress of the installer while it lives.
class CSilentInstaller
{
public:
    CSilentInstaller() : m_level(MsiSetInternalUI(INSTALLUILEVEL_NONE, &m_window)) {}
    CSilentInstaller(const CSilentInstaller&) = delete;
    CSilentInstaller& operator=(const CSilentInstaller&) = delete;
    ~CSilentInstaller() { MsiSetInternalUI(m_level, &m_window); }

private:
    HWND m_window = nullptr;
    INSTALLUILEVEL m_level;
};
