// Owner of the installer handles that the host opens: it closes what it holds and keeps the last error as it was.
#pragma once

#include <windows.h>

#include <msi.h>

#include <utility>

class MsiHandle
{
public:
    MsiHandle() = default;
    explicit MsiHandle(MSIHANDLE handle) : m_handle(handle) {}
    MsiHandle(MsiHandle&& other) noexcept : m_handle(std::exchange(other.m_handle, 0)) {}
    MsiHandle& operator=(MsiHandle&& other) noexcept
    {
        std::swap(m_handle, other.m_handle);
        return *this;
    }
    ~MsiHandle() { Close(); }
    MSIHANDLE get() const { return m_handle; }
    // For a call that stores a new handle; closes the one held.
    MSIHANDLE* Receive()
    {
        Close();
        return &m_handle;
    }
    void Close()
    {
        if (m_handle) {
            const DWORD error = GetLastError();
            MsiCloseHandle(std::exchange(m_handle, 0));
            SetLastError(error);
        }
    }

private:
    MSIHANDLE m_handle = 0;
};

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
