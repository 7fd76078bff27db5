// The link below a page: how it is set up, and what it draws.
#include "controls/customize_hyper_link.h"

#include "tests/controls/fixture.h"
#include "tests/support/text.h"
#include "window/gdi.h"

namespace {

constexpr COLORREF WHITE = RGB(0xFF, 0xFF, 0xFF);
constexpr COLORREF SILVER = 0xC0C0C0;
constexpr RECT PLACE = {10, 10, 200, 40};

class PageLinkTest : public ControlTest
{
protected:
    void SetUpLink(const wchar_t* label, const wchar_t* target = L"guide.pdf")
    {
        control = MakeStatic(label, PLACE, WS_DISABLED);
        link.SetUp(control, target);
        Paint();
    }
    // The font in use.
    LOGFONTW Font() const
    {
        LOGFONTW record = {};
        GetObjectW(link.GetLinkFont(), sizeof record, &record);
        return record;
    }
    int CountInLink(COLORREF color) const { return CountColor(control, link.GetLinkRect(), color); }
    int CountOutsideLink(COLORREF color) const
    {
        return CountColor(control, ClientOf(control), color) - CountInLink(color);
    }
    // Pixels of the color in the top row of the link's rectangle, where only the focus rectangle draws.
    int CountUpperEdge(COLORREF color) const
    {
        const RECT& rectangle = link.GetLinkRect();
        return CountColor(control, {rectangle.left, rectangle.top, rectangle.right, rectangle.top + 1},
                          color);
    }

    HWND control = nullptr;
    CCustomizeHyperLink link;
};

// ---- setting up

TEST_F(PageLinkTest, ALinkWithATargetIsBoundEnabledAndShown)
{
    SetUpLink(L"Guide");
    EXPECT_EQ(link.m_hWnd, control);
    EXPECT_TRUE(IsWindowEnabled(control));
    EXPECT_TRUE(IsWindowVisible(control));
    EXPECT_EQ(link.GetHyperLink(), CString(L"guide.pdf"));
    EXPECT_TRUE(GetWindowLongW(control, GWL_STYLE) & SS_NOTIFY);
}

TEST_F(PageLinkTest, ALinkWithoutATargetIsNotBound)
{
    for (const wchar_t* target : {static_cast<const wchar_t*>(nullptr), L""}) {
        SetUpLink(L"Guide", target);
        EXPECT_EQ(link.m_hWnd, nullptr);
        EXPECT_FALSE(IsWindowEnabled(control));
        EXPECT_FALSE(GetWindowLongW(control, GWL_STYLE) & SS_NOTIFY);
    }
}

TEST_F(PageLinkTest, ALinkWithoutAControlStaysUnbound)
{
    link.SetUp(nullptr, L"guide.pdf");
    EXPECT_EQ(link.m_hWnd, nullptr);
}

TEST_F(PageLinkTest, ItsStyleIs117)
{
    SetUpLink(L"Guide");
    EXPECT_EQ(link.GetHyperLinkExtendedStyle(), 117u);
}

TEST_F(PageLinkTest, ItsFontIsTahomaOfEightPointsUnderlined)
{
    SetUpLink(L"Guide");
    const CWindowDC screen(nullptr);
    const LOGFONTW font = Font();
    EXPECT_EQ(font.lfHeight, -MulDiv(8, GetDeviceCaps(screen.get(), LOGPIXELSY), 72));
    EXPECT_EQ(font.lfWeight, 400);
    EXPECT_EQ(font.lfCharSet, 1);
    EXPECT_EQ(CString(font.lfFaceName), CString(L"Tahoma"));
    EXPECT_TRUE(font.lfUnderline);
}

TEST_F(PageLinkTest, AFontThatTheLinkHasIsTheStartingPoint)
{
    LOGFONTW italic = {};
    italic.lfHeight = -30;
    italic.lfWeight = 700;
    italic.lfItalic = TRUE;
    link.SetLinkFont(CFontOwner(CreateFontIndirectW(&italic)));
    SetUpLink(L"Guide");
    EXPECT_TRUE(Font().lfItalic);
    EXPECT_EQ(Font().lfWeight, 400);
    EXPECT_NE(Font().lfHeight, -30);
}

TEST_F(PageLinkTest, ThePageIsToRepaintItsPlace)
{
    control = MakeStatic(L"Guide", PLACE, WS_VISIBLE); // showing it would make the system repaint the place
    Paint();
    ASSERT_FALSE(GetUpdateRect(window, nullptr, FALSE));
    link.SetUp(control, L"guide.pdf");
    RECT update = {};
    EXPECT_TRUE(GetUpdateRect(window, &update, FALSE));
    EXPECT_LE(update.left, PLACE.left);
    EXPECT_GE(update.right, PLACE.right);
}

TEST_F(PageLinkTest, AClickSendsThePageACommandAndOpensNothing)
{
    SetUpLink(L"Guide");
    const LPARAM place = MAKELPARAM(link.GetLinkRect().left + 3, link.GetLinkRect().top + 3);
    SendMessageW(control, WM_LBUTTONDOWN, MK_LBUTTON, place);
    SendMessageW(control, WM_LBUTTONUP, 0, place);
    EXPECT_EQ(commands, std::vector<WPARAM>{MAKEWPARAM(CONTROL, BN_CLICKED)});
}

// ---- colours

struct ColorCase
{
    const wchar_t* name;
    const wchar_t* label;
    bool visited;
    COLORREF color;
};

void PrintTo(const ColorCase& test, std::ostream* stream)
{
    *stream << Utf8(test.name);
}

class PageLinkColors : public PageLinkTest, public testing::WithParamInterface<ColorCase>
{
};

TEST_P(PageLinkColors, AreThoseOfTheLabelsFormAndState)
{
    SetUpLink(GetParam().label);
    link.SetVisited(GetParam().visited);
    Paint();
    const COLORREF other = GetParam().color == WHITE ? SILVER : WHITE;
    EXPECT_GT(CountInLink(GetParam().color), 20);
    EXPECT_EQ(CountInLink(other), 0);
    EXPECT_EQ(CountOutsideLink(GetParam().color), 0);
    EXPECT_GT(CountInLink(GROUND), 20) << "the ground doesn't show between the letters";
}

// The two forms of a label use the pair the other way round.
INSTANTIATE_TEST_SUITE_P(OfEachForm, PageLinkColors,
                         testing::Values(ColorCase{L"tagged", L"See <A>the guide</A> now", false, WHITE},
                                         ColorCase{L"tagged, visited", L"See <A>the guide</A> now", true,
                                                   SILVER},
                                         ColorCase{L"plain", L"The guide", false, SILVER},
                                         ColorCase{L"plain, visited", L"The guide", true, WHITE}));

TEST_F(PageLinkTest, ADisabledLinkIsGrayInEachForm)
{
    for (const wchar_t* label : {L"The guide", L"See <A>the guide</A>"}) {
        CCustomizeHyperLink disabled;
        const HWND gray = MakeStatic(label, PLACE);
        disabled.SetUp(gray, L"guide.pdf");
        for (const bool visited : {false, true}) {
            disabled.SetVisited(visited);
            EnableWindow(gray, FALSE);
            Paint();
            EXPECT_GT(CountColor(gray, disabled.GetLinkRect(), GetSysColor(COLOR_GRAYTEXT)), 20)
                << Utf8(label);
            EXPECT_EQ(CountColor(gray, disabled.GetLinkRect(), WHITE), 0) << Utf8(label);
            EXPECT_EQ(CountColor(gray, disabled.GetLinkRect(), SILVER), 0) << Utf8(label);
        }
        ShowWindow(gray, SW_HIDE);
    }
}

TEST_F(PageLinkTest, ThePairCanBeSetAnew)
{
    link.m_clrPaintA = RGB(1, 2, 200);
    link.m_clrPaintB = RGB(200, 2, 1);
    SetUpLink(L"The guide");
    EXPECT_GT(CountInLink(RGB(200, 2, 1)), 20);
    link.SetVisited(true);
    Paint();
    EXPECT_GT(CountInLink(RGB(1, 2, 200)), 20);
}

// ---- focus rectangle

TEST_F(PageLinkTest, TheFocusRectangleStandsAroundTheLinkWhileItHasTheFocus)
{
    SetUpLink(L"See <A>the guide</A> now");
    const RECT& rectangle = link.GetLinkRect();
    const int before = CountUpperEdge(GROUND);
    SetFocus(control);
    Paint();
    EXPECT_LT(CountUpperEdge(GROUND), before) << "nothing is drawn on the upper edge";
    EXPECT_LT(
        CountColor(control, {rectangle.left, rectangle.top, rectangle.left + 1, rectangle.bottom}, GROUND),
        rectangle.bottom - rectangle.top)
        << "nothing is drawn on the left edge";
    SetFocus(button);
    Paint();
    EXPECT_EQ(CountUpperEdge(GROUND), before) << "it is still there";
}

// Before anything is painted: what covers the link meanwhile must not keep it.
TEST_F(PageLinkTest, TheFocusRectangleGoesWithTheFocusBeforeTheLinkIsPainted)
{
    SetUpLink(L"The guide");
    const int before = CountUpperEdge(GROUND);
    SetFocus(control);
    Paint();
    ASSERT_LT(CountUpperEdge(GROUND), before);
    EXPECT_TRUE(link.m_bFocusDrawn);
    SetFocus(button); // nothing is painted from here on
    EXPECT_EQ(CountUpperEdge(GROUND), before);
    EXPECT_FALSE(link.m_bFocusDrawn);
}

} // namespace
