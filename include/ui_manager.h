// What all windows of the setup share: one window rectangle, the icon, the reset flags.
#pragma once

#include "base/string.h"

#include <windows.h>

class CUiManager
{
public:
    virtual ~CUiManager() = default;

    // True once a page has stored a rectangle.
    virtual bool IsWindowPosSaved() = 0;
    // The stored rectangle in screen pixels; never null, the host's.
    virtual RECT* GetWindowPos() = 0;
    virtual void SetWindowPos(const RECT& rectangle) = 0;

    // The Reset button shows only when both are set.
    bool m_bResetAllowed1 = false;
    bool m_bResetAllowed2 = false;
    // File of the window icon, loaded at 16 by 16 pixels; empty or null for the resource library's icon.
    const wchar_t* m_strIconFile = nullptr;
    // A Gdiplus::Image*, the host's; drawn only by a page that asks for a background image.
    void* m_pBackgroundImage = nullptr;
    // The argument of the step label's format string; may be null.
    const wchar_t* m_strStepArgument = nullptr;
};
