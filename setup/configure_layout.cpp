#include "setup/configure_layout.h"

#include "include/ui_manager.h"
#include "setup/resource.h"
#include "setup/window_place.h"
#include "window/window.h"

#include <commctrl.h>

#include <optional>

namespace {

constexpr wchar_t PLACE_VALUE[] = L"ConfigureDialog";

// In dialog units
constexpr SIZE PAGE_ROOM = {327, 256};
constexpr int MARGIN = 7;
constexpr int BUTTON_GAP = 2;
constexpr int CANCEL_GAP = 4;

// Around the children, in pixels
struct Measures
{
    SIZE margin;
    int buttonGap;
    int cancelGap;
    SIZE button;
};

SIZE ToPixels(HWND dialog, SIZE units)
{
    RECT rectangle = {0, 0, units.cx, units.cy};
    MapDialogRect(dialog, &rectangle);
    return {rectangle.right, rectangle.bottom};
}

Measures Measure(HWND dialog)
{
    const RECT button = CWindow(GetDlgItem(dialog, IDC_CONFIGURE_NEXT)).GetWindowRect();
    return {ToPixels(dialog, {MARGIN, MARGIN}),
            static_cast<int>(ToPixels(dialog, {BUTTON_GAP, 0}).cx),
            static_cast<int>(ToPixels(dialog, {CANCEL_GAP, 0}).cx),
            {button.right - button.left, button.bottom - button.top}};
}

// The tab control around a page: how many rows its tabs take depends on its width, so that comes first.
SIZE TabsAround(HWND tabs, SIZE room)
{
    const CWindow control(tabs);
    RECT rectangle = {0, 0, room.cx, room.cy};
    TabCtrl_AdjustRect(tabs, TRUE, &rectangle);
    const int width = static_cast<int>(rectangle.right - rectangle.left);
    control.SetWindowPos(nullptr, 0, 0, width, static_cast<int>(rectangle.bottom - rectangle.top),
                         SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    rectangle = {0, 0, room.cx, room.cy};
    TabCtrl_AdjustRect(tabs, TRUE, &rectangle);
    return {width, rectangle.bottom - rectangle.top};
}

void PlaceButtons(const CWindow& dialog, const Measures& measures)
{
    const RECT client = dialog.GetClientRect();
    int right = static_cast<int>(client.right - measures.margin.cx);
    const int top = static_cast<int>(client.bottom - measures.margin.cy - measures.button.cy);
    for (const int id : {IDC_CONFIGURE_CANCEL, IDC_CONFIGURE_NEXT, IDC_CONFIGURE_BACK}) {
        CWindow(dialog.GetDlgItem(id))
            .SetWindowPos(nullptr, right - static_cast<int>(measures.button.cx), top, 0, 0,
                          SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        const int gap = id == IDC_CONFIGURE_CANCEL ? measures.cancelGap : measures.buttonGap;
        right -= static_cast<int>(measures.button.cx) + gap;
    }
}

void PlaceChildren(const CWindow& dialog, const Measures& measures)
{
    PlaceButtons(dialog, measures);
    const RECT client = dialog.GetClientRect();
    const CWindow tabs(dialog.GetDlgItem(IDC_CONFIGURE_TABS));
    RECT place = {measures.margin.cx, measures.margin.cy, client.right - measures.margin.cx,
                  client.bottom - 2 * measures.margin.cy - measures.button.cy};
    tabs.MoveWindow(place);
    TabCtrl_AdjustRect(tabs, FALSE, &place);
    CWindow(dialog.GetDlgItem(IDC_CONFIGURE_VIEW)).MoveWindow(place);
}

} // namespace

SIZE LeastPageRoom(HWND dialog)
{
    return ToPixels(dialog, PAGE_ROOM);
}

void SizeConfigureWindow(HWND dialog, SIZE room)
{
    const CWindow window(dialog);
    const Measures measures = Measure(dialog);
    const SIZE tabs = TabsAround(window.GetDlgItem(IDC_CONFIGURE_TABS), room);
    RECT outer = {0, 0, tabs.cx + 2 * measures.margin.cx,
                  tabs.cy + 3 * measures.margin.cy + measures.button.cy};
    AdjustWindowRectEx(&outer, window.GetStyle(), FALSE, window.GetExStyle());
    ScreenRectangle place = ScreenRectangleOf(window.GetWindowRect());
    place.right = place.left + static_cast<int>(outer.right - outer.left);
    place.bottom = place.top + static_cast<int>(outer.bottom - outer.top);
    const ScreenRectangle area = WorkAreaNear(place);
    place = WithScrollBars(place, area, GetSystemMetrics(SM_CXVSCROLL), GetSystemMetrics(SM_CYHSCROLL));
    window.MoveWindow(RectOf(FitInto(place, area)));
    PlaceChildren(window, measures);
}

void PlaceConfigureWindow(HWND dialog, SIZE room, const CString& key, CUiManager* ui)
{
    const CWindow window(dialog);
    SizeConfigureWindow(dialog, room);
    ScreenRectangle place = ScreenRectangleOf(window.GetWindowRect());
    if (const std::optional<ScreenCorner> corner = ReadWindowCorner(key, PLACE_VALUE)) {
        place = {corner->x, corner->y, corner->x + place.Width(), corner->y + place.Height()};
    } else if (ui && ui->IsWindowPosSaved()) {
        place = CentredOn(ScreenRectangleOf(*ui->GetWindowPos()), place.Width(), place.Height());
    } else {
        place = CentredOn(WorkAreaNear(place), place.Width(), place.Height());
    }
    window.MoveWindow(RectOf(FitInto(place, WorkAreaNear(place))), FALSE);
    SizeConfigureWindow(dialog, room); // that monitor may have less room, or more
}

void RememberConfigurePlace(HWND dialog, const CString& key, CUiManager* ui)
{
    if (IsIconic(dialog)) {
        return; // stands nowhere
    }
    const RECT place = CWindow(dialog).GetWindowRect();
    WriteWindowCorner(key, PLACE_VALUE, {static_cast<int>(place.left), static_cast<int>(place.top)});
    if (ui) {
        ui->SetWindowPos(place); // the next page opens over it
    }
}
