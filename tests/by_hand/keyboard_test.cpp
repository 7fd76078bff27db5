// Each page of a walk by the keyboard alone: Tab comes to every control that can be used, and round.
#include "automation/window_finder.h"
#include "include/resource_ids.h"
#include "setup/resource.h"
#include "tests/by_hand/by_hand_fixture.h"

#include <algorithm>
#include <set>

namespace {

bool IsUsable(HWND control)
{
    return IsWindowVisible(control) && IsWindowEnabled(control);
}

LONG StyleOf(HWND control)
{
    return GetWindowLongW(control, GWL_STYLE);
}

bool IsRadioButton(HWND control)
{
    return WindowClass(control).CompareNoCase(L"Button") == 0 &&
           (StyleOf(control) & BS_TYPEMASK) == BS_AUTORADIOBUTTON;
}

bool TakesInput(HWND control)
{
    const CString name = WindowClass(control);
    const bool isButton =
        name.CompareNoCase(L"Button") == 0 && (StyleOf(control) & BS_TYPEMASK) != BS_GROUPBOX;
    return isButton || name.CompareNoCase(L"Edit") == 0 || name.CompareNoCase(L"ComboBox") == 0 ||
           name.CompareNoCase(L"ListBox") == 0 || (StyleOf(control) & WS_TABSTOP);
}

class KeyboardByHand : public ByHandTest
{
protected:
    // Tab goes through the links of a side pane and the cells of a grid.
    static int StopsWithin(HWND control, int linksOfSidePane)
    {
        constexpr int CELLS = 10;
        const int id = GetDlgCtrlID(control);
        return id == IDC_SIDE_PANE ? linksOfSidePane : id == IDC_SHORTCUTS ? CELLS : 1;
    }

    // The controls that Tab comes to from where the focus is, until it is there again.
    std::set<HWND> WalkByTab(HWND page, int linksOfSidePane)
    {
        std::set<HWND> visited;
        HWND control = GetFocused(page);
        while (visited.insert(control).second) {
            for (int stop = 1; stop < StopsWithin(control, linksOfSidePane); ++stop) {
                StrikeKey(VK_TAB); // stays in the control
            }
            StrikeKey(VK_TAB);
            WaitUntil(L"the control behind " + DescribeWindow(control),
                      [&] { return GetFocused(page) != control; });
            control = GetFocused(page);
        }
        return visited;
    }

    void ExpectAllReached(HWND page, const std::set<HWND>& visited)
    {
        for (HWND child : ChildWindows(page)) {
            // Of radio buttons that belong together Tab comes to one, and the arrow keys to the others.
            if (TakesInput(child) && IsUsable(child) && !IsRadioButton(child)) {
                EXPECT_TRUE(visited.count(child)) << Utf8(DescribeWindow(child)) << " isn't reached by Tab";
            }
        }
        for (HWND control : visited) {
            EXPECT_TRUE(IsUsable(control)) << Utf8(DescribeWindow(control));
        }
    }

    void ExpectKeyboard(Shown shown, int linksOfSidePane = 0)
    {
        HWND page = WaitFor(shown);
        SCOPED_TRACE(Utf8(WindowText(page)) + " " + std::to_string(static_cast<int>(shown)));
        ExpectAllReached(page, WalkByTab(page, linksOfSidePane));
    }
};

TEST_F(KeyboardByHand, TabComesToEveryControlOfEveryPageAndRound)
{
    Start(SampleMedia());
    HWND page = WaitFor(Shown::FirstPage);
    Type(page, IDC_LOCATION, GetLocation());
    StrikeKey('A', {VK_MENU});
    Type(page, IDC_NAME, L"Office");
    ExpectKeyboard(Shown::FirstPage, 2);
    StrikeKey(VK_RETURN);
    ConfirmLocalLocation();
    for (const Shown shown : PagesBehindFirst()) {
        ExpectKeyboard(shown);
        StrikeKey(VK_RETURN);
    }
    ExpectKeyboard(Shown::Review);
    WaitForFocus(WaitFor(Shown::Review), IDC_REVIEW_TREE);
    StrikeKey(VK_RETURN);
    ExpectKeyboard(Shown::CompletePage);
    StrikeKey(VK_RETURN);
    EXPECT_EQ(WaitForEnd(), 0u);
}

TEST_F(KeyboardByHand, MnemonicsOfTheFirstPageLeadToTheirControls)
{
    Start(SampleMedia());
    HWND page = WaitFor(Shown::FirstPage);
    StrikeKey('A', {VK_MENU});
    WaitForFocus(page, IDC_NAME);
    StrikeKey('3', {VK_MENU});
    WaitForFocus(page, IDC_PLATFORM_X86);
    EXPECT_TRUE(IsDlgButtonChecked(page, IDC_PLATFORM_X86));
    StrikeKey('6', {VK_MENU});
    WaitForFocus(page, IDC_PLATFORM_X64);
    EXPECT_TRUE(IsDlgButtonChecked(page, IDC_PLATFORM_X64));
    StrikeKey('L', {VK_MENU});
    Type(page, IDC_LOCATION, GetLocation());
    StrikeKey('A', {VK_MENU});
    Type(page, IDC_NAME, L"Office");
    StrikeKey('N', {VK_MENU});
    ConfirmLocalLocation();
    WaitFor(Shown::SettingsPage);
    StrikeKey('B', {VK_MENU});
    WaitFor(Shown::FirstPage);
}

TEST_F(KeyboardByHand, TheLocationOfTheCommandLineStandsOnTheFirstPage)
{
    Start(SampleMedia(), L"--out \"" + GetLocation() + L"\"");
    HWND page = WaitFor(Shown::FirstPage);
    EXPECT_EQ(WindowText(GetDlgItem(page, IDC_LOCATION)), GetLocation());
}

TEST_F(KeyboardByHand, EnterOnCancelAsksInsteadOfGoingOn)
{
    Start(SampleMedia());
    HWND page = WaitFor(Shown::FirstPage);
    Type(page, IDC_LOCATION, GetLocation());
    StrikeKey('A', {VK_MENU});
    Type(page, IDC_NAME, L"Office");
    while (GetFocused(page) != GetDlgItem(page, IDC_CANCEL)) {
        HWND before = GetFocused(page);
        StrikeKey(VK_TAB);
        WaitUntil(L"the next control", [&] { return GetFocused(page) != before; });
    }
    StrikeKey(VK_RETURN);
    AnswerCancelQuestion('Y');
    ExpectEnd(1602, Join({LogOfOpening(), LogOfCanceledPage()}), {CancelQuestion()});
}

} // namespace
