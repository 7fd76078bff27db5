#include "tests/support/text.h"
#include "tests/window/fixture.h"
#include "window/hyper_link.h"

#include <vector>

namespace {

constexpr DWORD pageLinkStyle = 117;

class HyperLinkTest : public WindowTest
{
protected:
    void SetUp() override
    {
        WindowTest::SetUp();
        dialog.answer = [this](UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled) -> LRESULT {
            handled = message == WM_COMMAND && LOWORD(wParam) == IDC_LINK;
            if (handled) {
                commands.push_back(HIWORD(wParam));
            } else if (message == WM_NOTIFY) {
                notifications.push_back(reinterpret_cast<NMHDR*>(lParam)->code);
            } else if (message == WM_COMMAND && LOWORD(wParam) == IDOK) {
                ++defaultButtonPresses;
            }
            return 0;
        };
        ASSERT_NE(dialog.Create(nullptr), nullptr);
        dialog.ShowWindow(SW_SHOW);
    }

    void Bind(DWORD style = pageLinkStyle)
    {
        link.SetHyperLinkExtendedStyle(style);
        link.SetHyperLink(L"target.html");
        ASSERT_TRUE(link.SubclassWindow(dialog.GetDlgItem(IDC_LINK)));
    }

    POINT MiddleOfLink() const
    {
        const RECT& part = link.GetLinkRect();
        return {(part.left + part.right) / 2, (part.top + part.bottom) / 2};
    }
    void Press(POINT point) const
    {
        link.SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(point.x, point.y));
    }
    void Release(POINT point) const { link.SendMessage(WM_LBUTTONUP, 0, MAKELPARAM(point.x, point.y)); }

    // A key as it comes through a dialog's message loop.
    void TypeThroughDialog(WPARAM key)
    {
        MSG message = {link, WM_KEYDOWN, key, 1, 0, {}};
        ASSERT_TRUE(IsDialogMessageW(dialog, &message));
        while (PeekMessageW(&message, link, WM_KEYFIRST, WM_KEYLAST, PM_REMOVE)) {
            IsDialogMessageW(dialog, &message);
        }
    }

    CTestDialog dialog;
    CHyperLink link;
    std::vector<int> commands;
    std::vector<UINT> notifications;
    int defaultButtonPresses = 0;
};

TEST_F(HyperLinkTest, APagesStyleIsUnderlinedCommandButtonTagsWithBoldNoTooltip)
{
    EXPECT_EQ(pageLinkStyle, HLINK_UNDERLINED | HLINK_COMMANDBUTTON | HLINK_USETAGSBOLD | HLINK_NOTOOLTIP);
}

TEST_F(HyperLinkTest, AMouseReleaseInsideTheLinkSendsTheCommand)
{
    Bind();
    Press(MiddleOfLink());
    EXPECT_EQ(GetCapture(), link.m_hWnd);
    EXPECT_EQ(GetFocus(), link.m_hWnd);
    EXPECT_TRUE(commands.empty());
    Release(MiddleOfLink());
    EXPECT_EQ(commands, std::vector<int>{BN_CLICKED});
    EXPECT_EQ(GetCapture(), nullptr);
    EXPECT_TRUE(link.IsVisited());
}

TEST_F(HyperLinkTest, AMouseReleaseOutsideTheLinkSendsNothing)
{
    Bind();
    Press(MiddleOfLink());
    Release({-5, -5});
    EXPECT_TRUE(commands.empty());
    EXPECT_EQ(GetCapture(), nullptr);
}

TEST_F(HyperLinkTest, TheTextBeforeTheTagsDoesNotReactToTheMouse)
{
    Bind();
    ASSERT_GT(link.GetLinkRect().left, 2);
    Press({1, 3});
    Release({1, 3});
    EXPECT_TRUE(commands.empty());
}

TEST_F(HyperLinkTest, AReleaseWithoutAPressSendsNothing)
{
    Bind();
    Release(MiddleOfLink());
    EXPECT_TRUE(commands.empty());
}

TEST_F(HyperLinkTest, EnterActivatesTheFocusedLinkAndNotTheDefaultButton)
{
    Bind();
    link.SetFocus();
    TypeThroughDialog(VK_RETURN);
    EXPECT_EQ(commands, std::vector<int>{BN_CLICKED});
    EXPECT_EQ(defaultButtonPresses, 0);
}

TEST_F(HyperLinkTest, TheSpaceBarActivatesTheFocusedLink)
{
    Bind();
    link.SetFocus();
    TypeThroughDialog(VK_SPACE);
    EXPECT_EQ(commands, std::vector<int>{BN_CLICKED});
}

TEST_F(HyperLinkTest, OtherKeysActivateNothing)
{
    Bind();
    link.SetFocus();
    TypeThroughDialog('X');
    EXPECT_TRUE(commands.empty());
}

TEST_F(HyperLinkTest, TheNotifyStyleSendsANotificationInstead)
{
    Bind(HLINK_NOTIFYBUTTON | HLINK_NOTOOLTIP);
    Press(MiddleOfLink());
    Release(MiddleOfLink());
    EXPECT_EQ(notifications, std::vector<UINT>{static_cast<UINT>(NM_CLICK)});
    EXPECT_TRUE(commands.empty());
}

TEST_F(HyperLinkTest, TheWindowTextIsTheLabelWithoutItsTags)
{
    Bind();
    EXPECT_TRUE(link.HasTags());
    EXPECT_EQ(link.GetText(), CString(L"See the terms first"));
    EXPECT_EQ(link.GetLabel(), CString(L"See <A>the terms</A> first"));
}

TEST_F(HyperLinkTest, ANewWindowTextIsANewLabel)
{
    Bind();
    const LONG before = link.GetLinkRect().left;
    link.SetText(L"<a>Now first</A> of all");
    EXPECT_EQ(link.GetText(), CString(L"Now first of all"));
    EXPECT_EQ(link.GetLinkRect().left, 0);
    EXPECT_NE(before, 0);
}

TEST_F(HyperLinkTest, WithoutTheTagStyleTheTagsAreText)
{
    Bind(HLINK_COMMANDBUTTON | HLINK_NOTOOLTIP);
    EXPECT_FALSE(link.HasTags());
    EXPECT_EQ(link.GetText(), CString(L"See <A>the terms</A> first"));
    EXPECT_EQ(link.GetLinkRect().left, 0);
}

TEST_F(HyperLinkTest, AStaticControlGetsTheNotifyStyle)
{
    Bind();
    EXPECT_NE(link.GetStyle() & SS_NOTIFY, 0u);
}

TEST_F(HyperLinkTest, TheTooltipExistsUnlessTheStyleForbidsIt)
{
    const int before = CountWindows();
    Bind();
    EXPECT_EQ(CountWindows(), before);
    link.UnsubclassWindow();
    CHyperLink withTooltip;
    withTooltip.SetHyperLinkExtendedStyle(HLINK_COMMANDBUTTON);
    ASSERT_TRUE(withTooltip.SubclassWindow(dialog.GetDlgItem(IDC_LINK)));
    EXPECT_EQ(CountWindows(), before + 1);
}

TEST_F(HyperLinkTest, TheLinkColourIsPaintedInTheLinkRectangleOnly)
{
    Bind();
    dialog.SetFocus();
    DispatchWaiting();
    const RECT client = link.GetClientRect();
    const CWindowDC screen(nullptr);
    const CBitmapOwner bitmap(CreateCompatibleBitmap(screen.get(), client.right, client.bottom));
    const CDcOwner dc(CreateCompatibleDC(screen.get()));
    const CSelectObject selected(dc.get(), bitmap.get());
    link.SendMessage(WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc.get()), PRF_CLIENT);
    int inside = 0;
    int outside = 0;
    for (int y = 0; y < client.bottom; ++y) {
        for (int x = 0; x < client.right; ++x) {
            if (GetPixel(dc.get(), x, y) == RGB(0, 0, 255)) {
                ++(PtInRect(&link.GetLinkRect(), {x, y}) ? inside : outside);
            }
        }
    }
    EXPECT_GT(inside, 20);
    EXPECT_EQ(outside, 0);
}

class BrowserColourTest : public WindowTest
{
protected:
    static constexpr const wchar_t* settings = L"Software\\Microsoft\\Internet Explorer\\Settings";

    static void Write(const wchar_t* name, const wchar_t* text)
    {
        ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, settings, name, REG_SZ, text,
                                  static_cast<DWORD>((TextLength(text) + 1) * sizeof(wchar_t))),
                  ERROR_SUCCESS);
    }
    void TearDown() override
    {
        RegDeleteKeyValueW(HKEY_CURRENT_USER, settings, L"Anchor Color");
        RegDeleteKeyValueW(HKEY_CURRENT_USER, settings, L"Anchor Color Visited");
        WindowTest::TearDown();
    }
};

TEST_F(BrowserColourTest, TheBrowsersColoursAreRead)
{
    Write(L"Anchor Color", L"1,2,3");
    Write(L"Anchor Color Visited", L"255,0,16");
    COLORREF link = 0;
    COLORREF visited = 0;
    ReadBrowserLinkColors(link, visited);
    EXPECT_EQ(link, RGB(1, 2, 3));
    EXPECT_EQ(visited, RGB(255, 0, 16));
}

TEST_F(BrowserColourTest, AColourOfTwoNumbersLeavesTheDefault)
{
    Write(L"Anchor Color", L"0,0");
    COLORREF link = RGB(9, 9, 9);
    COLORREF visited = RGB(8, 8, 8);
    ReadBrowserLinkColors(link, visited);
    EXPECT_EQ(link, RGB(9, 9, 9));
    EXPECT_EQ(visited, RGB(8, 8, 8));
}

} // namespace
