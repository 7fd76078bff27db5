#include "base/number_text.h"
#include "tests/slimhtml/label_test_window.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

using Calls = std::vector<CString>;

class LabelLinkTest : public testing::Test
{
protected:
    void SetUp() override
    {
        label->SetRenderFormat(LabelTestWindow::FrameFormat());
        ASSERT_TRUE(label->SubclassWindow(window.Label()));
        label->LoadText(L"<a href=\"one.html\">first</a> and <a href=\"two.pdf\">second</a>");
        label->SetNotify(&notify);
    }

    void PressTab(bool shift = false) { window.Press(VK_TAB, label.get(), shift); }
    // Which link has the focus is what Enter activates.
    CString FocusedTarget()
    {
        notify.calls.clear();
        window.Press(VK_RETURN, label.get());
        return notify.calls.empty() ? CString() : notify.calls.back();
    }

    LabelTestWindow window{240, 100};
    RecordingNotify notify;
    std::unique_ptr<CSlimHtmlCtrl> label = std::make_unique<CSlimHtmlCtrl>();
};

} // namespace

TEST_F(LabelLinkTest, TabEntersAtTheFirstLink)
{
    PressTab();
    ASSERT_EQ(GetFocus(), window.Label());
    EXPECT_EQ(FocusedTarget(), CString(L"link one.html"));
}

TEST_F(LabelLinkTest, TabGoesOnToTheSecondLink)
{
    PressTab();
    PressTab();
    ASSERT_EQ(GetFocus(), window.Label());
    EXPECT_EQ(FocusedTarget(), CString(L"link two.pdf"));
}

TEST_F(LabelLinkTest, TabLeavesBehindTheLastLink)
{
    PressTab();
    PressTab();
    PressTab();
    EXPECT_EQ(GetFocus(), window.After());
}

TEST_F(LabelLinkTest, ShiftTabEntersAtTheLastLinkAndLeavesBeforeTheFirst)
{
    SetFocus(window.After());
    PressTab(true);
    ASSERT_EQ(GetFocus(), window.Label());
    EXPECT_EQ(FocusedTarget(), CString(L"link two.pdf"));
    PressTab(true);
    EXPECT_EQ(FocusedTarget(), CString(L"link one.html"));
    PressTab(true);
    EXPECT_EQ(GetFocus(), window.Before());
}

TEST_F(LabelLinkTest, TabWalksTheLinksInADialogThatOffersNoMessages)
{
    window.Press(VK_TAB);
    window.Press(VK_TAB);
    ASSERT_EQ(GetFocus(), window.Label());
    window.Press(VK_RETURN);
    EXPECT_EQ(notify.calls.back(), CString(L"link two.pdf"));
    window.Press(VK_TAB);
    EXPECT_EQ(GetFocus(), window.After());
}

TEST_F(LabelLinkTest, SpaceActivatesTheFocusedLink)
{
    PressTab();
    notify.calls.clear();
    window.Press(VK_SPACE, label.get());
    EXPECT_EQ(notify.calls, (Calls{L"key", L"link one.html"}));
}

TEST_F(LabelLinkTest, TheOwnerIsAskedForTheKeyBeforeTheLinkIsReported)
{
    PressTab();
    notify.calls.clear();
    window.Press(VK_RETURN, label.get());
    EXPECT_EQ(notify.calls, (Calls{L"key", L"link one.html"}));
}

TEST_F(LabelLinkTest, AKeyThatTheOwnerKeepsActivatesNothing)
{
    PressTab();
    notify.bTakesKeys = false;
    EXPECT_EQ(FocusedTarget(), CString(L"key"));
}

TEST_F(LabelLinkTest, TabLeavesAtOnceWhenTheOwnerKeepsTheKeys)
{
    PressTab();
    notify.bTakesKeys = false;
    PressTab();
    EXPECT_EQ(GetFocus(), window.After());
}

TEST_F(LabelLinkTest, TheOwnerIsNotAskedForKeysThatTheLabelHasNoUseFor)
{
    PressTab();
    notify.calls.clear();
    window.Press(L'A', label.get());
    window.Press(VK_DOWN, label.get()); // the text doesn't scroll
    EXPECT_EQ(notify.calls, Calls{});
}

TEST_F(LabelLinkTest, AClickActivatesTheLinkUnderTheMouse)
{
    window.Click(14, 16);
    EXPECT_EQ(notify.calls, Calls{L"link one.html"});
}

TEST_F(LabelLinkTest, AClickBesideTheLinksActivatesNothing)
{
    window.Click(14, 80);
    EXPECT_EQ(notify.calls, Calls{});
}

TEST_F(LabelLinkTest, ReleasingTheMouseBesideTheLinkActivatesNothing)
{
    SendMessageW(window.Label(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(14, 16));
    SendMessageW(window.Label(), WM_LBUTTONUP, 0, MAKELPARAM(14, 80));
    EXPECT_EQ(notify.calls, Calls{});
}

TEST_F(LabelLinkTest, APressedLinkKeepsTheMouseUntilItIsReleased)
{
    SendMessageW(window.Label(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(14, 16));
    EXPECT_EQ(GetCapture(), window.Label()) << "a release outside the label would be missed";
    SendMessageW(window.Label(), WM_LBUTTONUP, 0, MAKELPARAM(-20, -20));
    EXPECT_EQ(GetCapture(), nullptr);
    EXPECT_EQ(notify.calls, Calls{});
    SendMessageW(window.Label(), WM_LBUTTONUP, 0, MAKELPARAM(14, 16));
    EXPECT_EQ(notify.calls, Calls{}) << "it is still pressed";
}

TEST_F(LabelLinkTest, ALinkThatLosesTheMouseIsPressedNoMore)
{
    SendMessageW(window.Label(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(14, 16));
    SetCapture(window.Window());
    ReleaseCapture();
    SendMessageW(window.Label(), WM_LBUTTONUP, 0, MAKELPARAM(14, 16));
    EXPECT_EQ(notify.calls, Calls{});
}

TEST_F(LabelLinkTest, ABoxInFrontLeavesTheFocusedLinkAsItWas)
{
    PressTab();
    PressTab();
    const HWND box = CreateWindowExW(0, L"STATIC", L"box", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50,
                                     window.Window(), nullptr, nullptr, nullptr);
    SetFocus(box);
    ASSERT_EQ(GetFocus(), box);
    DestroyWindow(box);
    SetActiveWindow(window.Window());
    ASSERT_EQ(GetFocus(), window.Label());
    EXPECT_EQ(FocusedTarget(), CString(L"link two.pdf"));
}

TEST_F(LabelLinkTest, WhoeverLeavesTheLabelComesBackToItsFirstLink)
{
    PressTab();
    PressTab();
    SetFocus(window.Before());
    PressTab();
    EXPECT_EQ(FocusedTarget(), CString(L"link one.html"));
}

TEST_F(LabelLinkTest, AClickedLinkHasTheFocus)
{
    window.Click(14, 16);
    EXPECT_EQ(GetFocus(), window.Label());
}

TEST_F(LabelLinkTest, TheMouseReachesLinksWithoutTheNotifyStyle)
{
    SetWindowLongPtrW(window.Label(), GWL_STYLE,
                      GetWindowLongPtrW(window.Label(), GWL_STYLE) & ~LONG_PTR{SS_NOTIFY});
    POINT point = {14, 16};
    ClientToScreen(window.Label(), &point);
    EXPECT_EQ(SendMessageW(window.Label(), WM_NCHITTEST, 0, MAKELPARAM(point.x, point.y)), HTCLIENT);
}

TEST_F(LabelLinkTest, TheHandIsShownOverALinkAlone)
{
    const auto cursorAt = [this](int x, int y) {
        POINT point = {x, y};
        ClientToScreen(window.Label(), &point);
        SetCursorPos(point.x, point.y);
        SetCursor(LoadCursorW(nullptr, IDC_ARROW));
        SendMessageW(window.Label(), WM_SETCURSOR, reinterpret_cast<WPARAM>(window.Label()),
                     MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
        return GetCursor();
    };
    EXPECT_EQ(cursorAt(14, 16), LoadCursorW(nullptr, IDC_HAND));
    EXPECT_EQ(cursorAt(14, 80), LoadCursorW(nullptr, IDC_ARROW));
}

TEST_F(LabelLinkTest, FocusingALinkBelowScrollsItIntoView)
{
    CString html;
    for (int index = 0; index < 40; ++index) {
        html += L"<p>paragraph</p>";
    }
    label->LoadText(html + L"<a href=\"end\">end</a>");
    PressTab();
    EXPECT_GT(GetScrollPos(window.Label(), SB_VERT), 0);
}

TEST_F(LabelLinkTest, AClickInAScrolledTextActivatesTheLinkThatIsSeenThere)
{
    CString html;
    for (int index = 0; index < 40; ++index) {
        html += L"<a href=\"" + NumberText(index) + L"\">link</a><br>";
    }
    label->LoadText(html);
    SendMessageW(window.Label(), WM_VSCROLL, SB_BOTTOM, 0);
    ASSERT_GT(GetScrollPos(window.Label(), SB_VERT), 0);
    window.Click(14, 50);
    ASSERT_EQ(notify.calls.size(), 1u);
    EXPECT_GE(_wtoi(notify.calls[0].Mid(TextLength(L"link "))), 30) << Utf8(notify.calls[0]);
}

TEST_F(LabelLinkTest, TheOwnerMayLoadAnotherPageFromTheClick)
{
    notify.onLink = [this](const wchar_t*) { label->LoadText(L"the next page"); };
    PressTab();
    window.Press(VK_RETURN, label.get());
    EXPECT_EQ(WindowText(window.Label()), CString(L"the next page"));
}

TEST_F(LabelLinkTest, TheOwnerMayEndTheLabelFromTheClick)
{
    notify.onLink = [this](const wchar_t*) { label.reset(); };
    window.Click(14, 16);
    EXPECT_EQ(notify.calls, Calls{L"link one.html"});
    EXPECT_TRUE(IsWindow(window.Label()));
}

TEST_F(LabelLinkTest, TheOwnerMayDestroyTheControlFromTheClick)
{
    notify.onLink = [this](const wchar_t*) { DestroyWindow(window.Label()); };
    window.Click(14, 16);
    EXPECT_EQ(label->GetWindow(), nullptr);
}

TEST_F(LabelLinkTest, TheFocusedLinkIsFramed)
{
    const Picture before = ReadPicture(window.Label());
    PressTab();
    EXPECT_NE(ReadPicture(window.Label()).pixels, before.pixels);
}
