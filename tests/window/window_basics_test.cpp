#include "tests/support/text.h"
#include "tests/window/fixture.h"
#include "window/wait_cursor.h"
#include "window/window.h"

namespace {

class WindowBasicsTest : public WindowTest
{
};

TEST_F(WindowBasicsTest, ATextOfSeventyThousandCharactersIsReadWhole)
{
    CTestDialog dialog;
    ASSERT_NE(dialog.Create(nullptr), nullptr);
    const CString text(L'x', 70'000);
    CWindow edit(dialog.GetDlgItem(IDC_NAME));
    edit.SetText(text);
    EXPECT_EQ(edit.GetText().GetLength(), 70'000);
}

TEST_F(WindowBasicsTest, NoWindowAndAnEmptyWindowHaveTheEmptyText)
{
    CTestDialog dialog;
    ASSERT_NE(dialog.Create(nullptr), nullptr);
    EXPECT_EQ(ReadWindowText(nullptr), CString());
    EXPECT_EQ(ReadWindowText(dialog.GetDlgItem(IDC_NAME)), CString());
}

TEST_F(WindowBasicsTest, ATextThatGrowsWhileItIsReadIsReadWhole)
{
    // A window that announces less than it then has.
    CTestDialog dialog;
    const CString text(L'y', 500);
    dialog.answer = [&text](UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled) -> LRESULT {
        handled = message == WM_GETTEXTLENGTH || message == WM_GETTEXT;
        if (message == WM_GETTEXTLENGTH) {
            return 3;
        }
        if (message == WM_GETTEXT) {
            const CString part = text.Left(static_cast<int>(wParam) - 1);
            lstrcpyW(reinterpret_cast<wchar_t*>(lParam), part);
            return part.GetLength();
        }
        return 0;
    };
    ASSERT_NE(dialog.Create(nullptr), nullptr);
    EXPECT_EQ(dialog.GetText(), text);
}

TEST_F(WindowBasicsTest, ACentredWindowLiesInTheMiddleOfItsAnchor)
{
    const POINT position = CentredPosition({100, 50}, {200, 200, 400, 400}, {0, 0, 1000, 1000});
    EXPECT_EQ(position.x, 250);
    EXPECT_EQ(position.y, 275);
}

TEST_F(WindowBasicsTest, ACentredWindowStaysInTheArea)
{
    const POINT farRight = CentredPosition({100, 50}, {980, 980, 1000, 1000}, {0, 0, 1000, 1000});
    EXPECT_EQ(farRight.x, 900);
    EXPECT_EQ(farRight.y, 950);
    const POINT farLeft = CentredPosition({100, 50}, {-50, -50, 0, 0}, {0, 0, 1000, 1000});
    EXPECT_EQ(farLeft.x, 0);
    EXPECT_EQ(farLeft.y, 0);
}

TEST_F(WindowBasicsTest, AWindowLargerThanTheAreaKeepsItsTopLeftCornerInside)
{
    const POINT position = CentredPosition({2000, 2000}, {0, 0, 1000, 1000}, {10, 20, 1000, 1000});
    EXPECT_EQ(position.x, 10);
    EXPECT_EQ(position.y, 20);
}

TEST_F(WindowBasicsTest, CenterWindowWithoutOwnerUsesTheWorkArea)
{
    CTestDialog dialog;
    ASSERT_NE(dialog.Create(nullptr), nullptr);
    dialog.SetWindowPos(nullptr, 1, 1, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    ASSERT_TRUE(dialog.CenterWindow());
    const RECT area = WorkAreaOf(dialog);
    const RECT place = dialog.GetWindowRect();
    EXPECT_NEAR(place.left + place.right, area.left + area.right, 1);
    EXPECT_NEAR(place.top + place.bottom, area.top + area.bottom, 1);
}

TEST_F(WindowBasicsTest, ModifyStyleReportsWhetherAnythingChanged)
{
    CTestDialog dialog;
    ASSERT_NE(dialog.Create(nullptr), nullptr);
    const CWindow edit(dialog.GetDlgItem(IDC_NAME));
    EXPECT_TRUE(edit.ModifyStyle(WS_TABSTOP, 0));
    EXPECT_FALSE(edit.ModifyStyle(WS_TABSTOP, 0));
    EXPECT_EQ(edit.GetStyle() & WS_TABSTOP, 0u);
}

TEST_F(WindowBasicsTest, TheWaitCursorGivesWayToTheFormerCursor)
{
    const HCURSOR arrow = LoadCursorW(nullptr, IDC_ARROW);
    SetCursor(arrow);
    {
        CWaitCursor wait;
        EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, IDC_WAIT));
        EXPECT_FALSE(wait.Set());
    }
    EXPECT_EQ(GetCursor(), arrow);
}

} // namespace
