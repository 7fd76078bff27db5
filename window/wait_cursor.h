// CWaitCursor: the wait cursor for the length of a scope.
#pragma once

#include <windows.h>

class CWaitCursor
{
public:
    // With `set` false the cursor stays until Set.
    explicit CWaitCursor(bool set = true, const wchar_t* cursor = IDC_WAIT) noexcept
        : m_hWaitCursor(LoadCursorW(nullptr, cursor))
    {
        if (set) {
            Set();
        }
    }
    ~CWaitCursor() { Restore(); }
    CWaitCursor(const CWaitCursor&) = delete;
    CWaitCursor& operator=(const CWaitCursor&) = delete;

    // False when it is set already.
    bool Set() noexcept
    {
        if (m_bInUse) {
            return false;
        }
        m_hOldCursor = SetCursor(m_hWaitCursor);
        m_bInUse = true;
        return true;
    }

    // The former cursor comes back. False when the cursor isn't set.
    bool Restore() noexcept
    {
        if (!m_bInUse) {
            return false;
        }
        SetCursor(m_hOldCursor);
        m_bInUse = false;
        return true;
    }

protected:
    HCURSOR m_hWaitCursor;
    HCURSOR m_hOldCursor = nullptr;
    bool m_bInUse = false;
};
