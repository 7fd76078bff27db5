// Labels share the fonts that they show: what one does with its own must not change another's text.
#include "tests/slimhtml/label_test_window.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

constexpr wchar_t twoFonts[] = L"<b>Heading</b><br>Text of the label";

std::unique_ptr<CSlimHtmlCtrl> MakeLabel(const LabelTestWindow& window, const wchar_t* html)
{
    auto label = std::make_unique<CSlimHtmlCtrl>();
    EXPECT_TRUE(label->SubclassWindow(window.Label()));
    label->SetRenderFormat(LabelTestWindow::FrameFormat());
    label->LoadText(html);
    return label;
}

// The label, painted anew from its background on.
std::vector<COLORREF> PaintedAnew(const LabelTestWindow& window)
{
    InvalidateRect(window.Label(), nullptr, TRUE);
    return ReadPicture(window.Label()).pixels;
}

// The dialog's font as a dialog at that dpi has it.
HFONT FontAtDpi(int dpi)
{
    return CreateFontW(-MulDiv(9, dpi, 72), 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                       OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH,
                       L"Liberation Sans");
}

} // namespace

TEST(LabelFontTest, ALabelKeepsItsTextWhenAnotherOfTheSameFontsIsDestroyed)
{
    LabelTestWindow window(200, 80);
    LabelTestWindow other(200, 80);
    const auto label = MakeLabel(window, twoFonts);
    auto destroyed = MakeLabel(other, twoFonts);
    const std::vector<COLORREF> before = PaintedAnew(window);
    const int height = label->MeasureHeight(100);
    destroyed.reset();
    EXPECT_EQ(PaintedAnew(window), before);
    EXPECT_EQ(label->MeasureHeight(100), height);
}

TEST(LabelFontTest, ALabelKeepsItsTextWhenAnothersControlIsDestroyed)
{
    LabelTestWindow window(200, 80);
    auto other = std::make_unique<LabelTestWindow>(200, 80);
    const auto gone = MakeLabel(*other, twoFonts);
    const auto label = MakeLabel(window, twoFonts);
    const std::vector<COLORREF> before = PaintedAnew(window);
    other.reset();
    EXPECT_EQ(PaintedAnew(window), before);
}

TEST(LabelFontTest, TwoLabelsOfTheSameFontsHoldNoMoreObjectsThanOne)
{
    LabelTestWindow window(200, 80);
    LabelTestWindow other(200, 80);
    const auto label = MakeLabel(window, twoFonts);
    const int one = CountGdiObjects();
    const auto second = MakeLabel(other, twoFonts);
    EXPECT_EQ(CountGdiObjects(), one);
}

TEST(LabelFontTest, TheLastLabelTakesTheFontsAlong)
{
    LabelTestWindow window(200, 80);
    LabelTestWindow other(200, 80);
    const int before = CountGdiObjects();
    auto label = MakeLabel(window, twoFonts);
    auto second = MakeLabel(other, L"<i>Something else</i>");
    label.reset();
    second.reset();
    EXPECT_EQ(CountGdiObjects(), before);
}

TEST(LabelFontTest, FontsThatNoLabelShowsAnyMoreDoNotPileUp)
{
    LabelTestWindow window(200, 80);
    const auto label = MakeLabel(window, twoFonts);
    const int before = CountGdiObjects();
    for (int page = 0; page < 100; ++page) {
        RenderFormat format = LabelTestWindow::FrameFormat();
        format.fTextScale = 1.0F + static_cast<float>(page) / 10;
        label->SetRenderFormat(format);
    }
    EXPECT_LT(CountGdiObjects(), before + 20);
}

TEST(LabelFontTest, AFontOfAnotherDpiChangesItsOwnLabelAlone)
{
    LabelTestWindow window(200, 80);
    LabelTestWindow other(200, 80);
    const auto label = MakeLabel(window, twoFonts);
    const auto scaled = MakeLabel(other, twoFonts);
    const std::vector<COLORREF> before = PaintedAnew(window);
    const int height = label->MeasureHeight(1000);
    const HFONT large = FontAtDpi(192);
    SendMessageW(other.Label(), WM_SETFONT, reinterpret_cast<WPARAM>(large), FALSE);
    EXPECT_GT(scaled->MeasureHeight(1000), height);
    EXPECT_EQ(label->MeasureHeight(1000), height);
    EXPECT_EQ(PaintedAnew(window), before);
    EXPECT_NE(PaintedAnew(other), before);
    DeleteObject(large);
}

TEST(LabelFontTest, AFontThatTheControlTakesBackShowsTheFormerPicture)
{
    LabelTestWindow window(200, 80);
    const auto label = MakeLabel(window, twoFonts);
    const std::vector<COLORREF> before = PaintedAnew(window);
    const auto former = SendMessageW(window.Label(), WM_GETFONT, 0, 0);
    const HFONT large = FontAtDpi(192);
    SendMessageW(window.Label(), WM_SETFONT, reinterpret_cast<WPARAM>(large), FALSE);
    EXPECT_NE(PaintedAnew(window), before);
    SendMessageW(window.Label(), WM_SETFONT, static_cast<WPARAM>(former), FALSE);
    EXPECT_EQ(PaintedAnew(window), before);
    DeleteObject(large);
}

TEST(LabelFontTest, FontsThatDifferInOneMarkAloneAreNotTakenForTheSame)
{
    LabelTestWindow window(200, 80);
    LabelTestWindow other(200, 80);
    const auto plain = MakeLabel(window, L"Text of the label");
    for (const wchar_t* marked :
         {L"<i>Text of the label</i>", L"<u>Text of the label</u>", L"<s>Text of the label</s>",
          L"<b>Text of the label</b>", L"<font face=\"Liberation Serif\">Text of the label</font>"}) {
        const auto label = MakeLabel(other, marked);
        EXPECT_NE(PaintedAnew(other), PaintedAnew(window)) << std::string(marked, marked + 8);
    }
}

TEST(LabelFontTest, TextAfterBoldTextIsPlain)
{
    LabelTestWindow window(200, 80);
    LabelTestWindow other(200, 80);
    const auto plain = MakeLabel(window, L"&nbsp;<br>Text of the label");
    const auto afterBold = MakeLabel(other, L"<b>&nbsp;</b><br>Text of the label");
    EXPECT_EQ(PaintedAnew(other), PaintedAnew(window));
}

TEST(LabelFontTest, TheFirstPaintingShowsWhatLaterOnesShow)
{
    LabelTestWindow window(200, 80);
    ShowWindow(window.Label(), SW_HIDE);
    const auto label = MakeLabel(window, twoFonts);
    ShowWindow(window.Label(), SW_SHOW);
    const std::vector<COLORREF> first = ReadPicture(window.Label()).pixels;
    EXPECT_EQ(PaintedAnew(window), first);
}

TEST(LabelFontTest, ATextThatChangesAfterTheFirstPaintingIsShown)
{
    LabelTestWindow window(200, 80);
    const auto label = MakeLabel(window, twoFonts);
    const std::vector<COLORREF> first = ReadPicture(window.Label()).pixels;
    label->LoadText(L"<b>Heading</b><br>Another text");
    const std::vector<COLORREF> second = ReadPicture(window.Label()).pixels;
    EXPECT_NE(second, first);
    label->LoadText(twoFonts);
    EXPECT_EQ(ReadPicture(window.Label()).pixels, first);
}

TEST(LabelFontTest, ATextThatChangesWhileTheLabelIsHiddenIsShownWithIt)
{
    LabelTestWindow window(200, 80);
    const auto label = MakeLabel(window, L"Another text");
    LabelTestWindow other(200, 80);
    const auto expected = MakeLabel(other, twoFonts);
    static_cast<void>(ReadPicture(window.Label()));
    ShowWindow(window.Label(), SW_HIDE);
    label->LoadText(twoFonts);
    ShowWindow(window.Label(), SW_SHOW);
    EXPECT_EQ(ReadPicture(window.Label()).pixels, ReadPicture(other.Label()).pixels);
}

TEST(LabelFontTest, AChangeOfThemeOrColoursPaintsTheLabelAnew)
{
    LabelTestWindow window(200, 80);
    const auto label = MakeLabel(window, twoFonts);
    for (const UINT message : {WM_THEMECHANGED, WM_SYSCOLORCHANGE}) {
        static_cast<void>(ReadPicture(window.Label()));
        ASSERT_FALSE(GetUpdateRect(window.Label(), nullptr, FALSE));
        SendMessageW(window.Label(), message, 0, 0);
        EXPECT_TRUE(GetUpdateRect(window.Label(), nullptr, FALSE)) << "message " << message;
    }
}
