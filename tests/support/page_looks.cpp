#include "tests/support/page_looks.h"

#include "automation/control.h"
#include "automation/window_finder.h"
#include "include/resource_ids.h"
#include "tests/support/text.h"
#include "window/gdi.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

bool IsOfTheFrame(HWND control)
{
    switch (GetDlgCtrlID(control)) {
    case IDC_BANNER:
    case IDC_SIDE_PANE:
    case IDC_PANEL:
    case IDC_STEP_LABEL:
    case IDC_FOOTER:
    case IDC_RESULT_LABEL:
    case IDC_SEPARATOR:
        return true;
    default:
        return false;
    }
}

std::vector<HWND> ShownControls(HWND page)
{
    std::vector<HWND> shown;
    for (HWND control : ChildWindows(page)) {
        if (GetParent(control) == page && IsWindowVisible(control) && !IsOfTheFrame(control))
            shown.push_back(control);
    }
    return shown;
}

// Pixels that the mark of a check box or radio, or the edges of a push button, take from the width.
int RoomBesideText(HWND control)
{
    const CWindowDC dc(control);
    const int scale = GetDeviceCaps(dc.get(), LOGPIXELSX);
    if (WindowClass(control).CompareNoCase(L"Button") != 0)
        return 0;
    const auto code = SendMessageW(control, WM_GETDLGCODE, 0, 0);
    const bool isPush = (code & (DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON)) != 0;
    return MulDiv(isPush ? 6 : 18, scale, 96);
}

SIZE NeededFor(HWND control, const CString& text, int width)
{
    const CWindowDC dc(control);
    const CSelectObject font(dc.get(), reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)));
    RECT needed = {0, 0, width, 0};
    DrawTextW(dc.get(), text, -1, &needed, DT_CALCRECT | DT_WORDBREAK | DT_EDITCONTROL);
    return {needed.right, needed.bottom};
}

} // namespace

void ExpectTextsFit(HWND page)
{
    for (HWND control : ShownControls(page)) {
        const CString name = WindowClass(control);
        const bool isButton = name.CompareNoCase(L"Button") == 0;
        if (!isButton && name.CompareNoCase(L"Static") != 0)
            continue;
        RECT given = {};
        GetClientRect(control, &given);
        const int width = given.right - RoomBesideText(control);
        const SIZE needed = NeededFor(control, CControl(control).GetText(), isButton ? 32'000 : width);
        EXPECT_LE(needed.cx, width) << Utf8(DescribeWindow(control));
        EXPECT_LE(needed.cy, given.bottom) << Utf8(DescribeWindow(control));
    }
}

void ExpectControlsApart(HWND page)
{
    const std::vector<HWND> shown = ShownControls(page);
    RECT client = {};
    GetClientRect(page, &client);
    for (std::size_t first = 0; first < shown.size(); ++first) {
        const RECT place = CControl(shown[first]).GetRectangle();
        RECT both = {};
        UnionRect(&both, &client, &place);
        EXPECT_TRUE(EqualRect(&both, &client))
            << Utf8(DescribeWindow(shown[first])) << " stands out of the page";
        for (std::size_t second = first + 1; second < shown.size(); ++second) {
            const RECT other = CControl(shown[second]).GetRectangle();
            RECT common = {};
            EXPECT_FALSE(IntersectRect(&common, &place, &other))
                << Utf8(DescribeWindow(shown[first])) << " and " << Utf8(DescribeWindow(shown[second]));
        }
    }
}
