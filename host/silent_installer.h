// Keeps the installer service from showing anything while the host asks it.
#pragma once

#include <windows.h>

#include <msi.h>

// No box and no progress of the installer while it lives.
class SilentInstaller
{
public:
    SilentInstaller() : m_level(MsiSetInternalUI(INSTALLUILEVEL_NONE, &m_window)) {}
    SilentInstaller(const SilentInstaller&) = delete;
    SilentInstaller& operator=(const SilentInstaller&) = delete;
    ~SilentInstaller() { MsiSetInternalUI(m_level, &m_window); }

private:
    HWND m_window = nullptr;
    INSTALLUILEVEL m_level;
};
