// A window with a static control and a button, and the colours that stand on the screen.
#pragma once

#include "window/module.h"
#include "window/window.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <vector>

// The parent's colour behind static controls: none that a control draws by itself.
inline constexpr COLORREF GROUND = RGB(0x20, 0x80, 0x40);

class ControlTest : public testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

    // Makes the static control at that place of the window.
    HWND MakeStatic(const wchar_t* text, const RECT& place, DWORD style = 0);

    // Has everything painted that waits.
    void Paint() const;
    // The colour on the screen at a place of the control's client area, without painting first.
    static COLORREF ColorAt(HWND control, int x, int y);
    // How many pixels of that part of the control have the colour.
    static int CountColor(HWND control, const RECT& part, COLORREF color);
    static RECT ClientOf(HWND control);

    static constexpr int CONTROL = 1062;
    HWND window = nullptr;
    HWND button = nullptr; // for the focus to go to
    std::vector<WPARAM> commands;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    HBRUSH m_ground = nullptr;
};
