#include "controls/separator_static.h"

#include "window/drawing_handles.h"
#include "window/gdi.h"

namespace {

void DrawLine(HDC dc, const SeparatorLine& line)
{
    ::MoveToEx(dc, line.x1, line.y1, nullptr);
    ::LineTo(dc, line.x2, line.y2);
}

} // namespace

LRESULT CSeparatorStatic::OnPaint(UINT, WPARAM, LPARAM, BOOL&)
{
    const CPaintDC paint(m_hWnd);
    const RECT client = GetClientRect();
    if (::IsRectEmpty(&client)) {
        return 0;
    }
    if (m_pBackground) {
        PaintBackgroundImage(m_hWnd, paint.get(), *m_pBackground, m_opacity);
    }
    DrawLines(paint.get(), client);
    return 0;
}

void CSeparatorStatic::DrawLines(HDC dc, const RECT& client) const
{
    const CPenOwner pen(::CreatePen(PS_SOLID, m_penWidth, m_penColor));
    const CSelectObject selected(dc, pen.get());
    if (m_orientation & SEPARATOR_VERTICAL) {
        DrawLine(dc, VerticalLine(client.right, client.bottom, m_alignment, m_penWidth, m_lengthRatio));
    }
    if (m_orientation & SEPARATOR_HORIZONTAL) {
        DrawLine(dc, HorizontalLine(client.right, client.bottom, m_alignment, m_penWidth, m_lengthRatio));
    }
}
