#include "frame/page_services.h"
#include "include/resource_ids.h"
#include "window/drawing_handles.h"
#include "window/gdi.h"
#include "window/window.h"

#include <objidl.h>

#include <gdiplus.h>
#include <uxtheme.h>

namespace {

constexpr COLORREF PANEL_COLOR = RGB(0xFF, 0xFF, 0xFF);
constexpr COLORREF PANEL_OUTLINE = 0xC0C0C0;

void PaintBackground(HDC dc, const RECT& client, PageColor color, void* image)
{
    if (image) {
        Gdiplus::Graphics graphics(dc);
        graphics.DrawImage(static_cast<Gdiplus::Image*>(image), 0, 0, client.right, client.bottom);
        return;
    }
    const CBrushOwner brush(::CreateSolidBrush(RGB(color.red, color.green, color.blue)));
    ::FillRect(dc, &client, brush.get());
}

// The control only marks the panel's place.
void PaintPanel(HDC dc, const CWindow& mark)
{
    if (!mark.IsWindow()) {
        return;
    }
    const RECT panel = mark.GetRectInParent();
    if (mark.IsWindowVisible()) {
        mark.ShowWindow(SW_HIDE);
    }
    const CBrushOwner brush(::CreateSolidBrush(PANEL_COLOR));
    const CPenOwner pen(::CreatePen(PS_SOLID, 1, PANEL_OUTLINE));
    const CSelectObject selectedBrush(dc, brush.get());
    const CSelectObject selectedPen(dc, pen.get());
    ::Rectangle(dc, panel.left, panel.top, panel.right, panel.bottom);
}

// The background went over them. A scroll bar costs as much as all else in its control, so it is then done: the system
// would paint it once more with what it scrolls.
void RepaintFrames(HWND page)
{
    constexpr RECT NOTHING = {};
    for (HWND child = ::GetWindow(page, GW_CHILD); child; child = ::GetWindow(child, GW_HWNDNEXT)) {
        if (::IsWindowVisible(child)) {
            ::SendMessageW(child, WM_NCPAINT, 1, 0);
            if (CWindow(child).GetStyle() & (WS_VSCROLL | WS_HSCROLL)) {
                ::RedrawWindow(child, &NOTHING, nullptr, RDW_VALIDATE | RDW_NOFRAME | RDW_NOCHILDREN);
            }
        }
    }
}

} // namespace

void PaintPage(HWND page, PageColor color, void* backgroundImage)
{
    const CWindow window(page);
    const CPaintDC paint(page);
    PaintBackground(paint.get(), window.GetClientRect(), color, backgroundImage);
    PaintPanel(paint.get(), CWindow(window.GetDlgItem(IDC_PANEL)));
    RepaintFrames(page);
}

// With a theme the background is a picture; without one it is the dialog's color.
CBrushOwner BackgroundBehind(HWND control)
{
    RECT place = CWindow(control).GetClientRect();
    const CWindowDC screen(control);
    const CDcOwner dc(::CreateCompatibleDC(screen.get()));
    const CBitmapOwner picture(::CreateCompatibleBitmap(screen.get(), place.right, place.bottom));
    {
        const CSelectObject selected(dc.get(), picture.get());
        ::DrawThemeParentBackground(control, dc.get(), &place);
    }
    return CBrushOwner(::CreatePatternBrush(picture.get()));
}
