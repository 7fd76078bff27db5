// A line, vertical, horizontal or both, in place of a static control.
#pragma once

#include "controls/background_image.h"
#include "controls/separator_rules.h"
#include "window/window_impl.h"

class CSeparatorStatic : public CWindowImpl<CSeparatorStatic>
{
public:
    BEGIN_MSG_MAP(CSeparatorStatic)
    MESSAGE_HANDLER(WM_PAINT, OnPaint)
    END_MSG_MAP()

    int m_orientation = SEPARATOR_VERTICAL; // bits; both may be set
    int m_alignment = SEPARATOR_CENTRE;
    int m_penWidth = 1;
    COLORREF m_penColor = RGB(0xFF, 0xFF, 0xFF);
    float m_lengthRatio = 1.0f;              // share of the window's extent that the line covers
    Gdiplus::Image* m_pBackground = nullptr; // the host's
    float m_opacity = 1.0f;

private:
    LRESULT OnPaint(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    void DrawLines(HDC dc, const RECT& client) const;
};
