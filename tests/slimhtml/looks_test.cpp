#include "tests/slimhtml/label_test_window.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace {

constexpr COLORREF white = RGB(255, 255, 255);
constexpr COLORREF navy = RGB(0x1F, 0x3A, 0x5F);

bool HasInk(const Picture& picture, int column, int row)
{
    return picture.pixels[static_cast<std::size_t>(row) * picture.width + column] != white;
}

// Columns without a drop of ink in front of the last letter.
int GapBeforeTheLastLetter(const Picture& picture)
{
    const auto hasInk = [&picture](int column) {
        for (int row = 0; row < picture.height; ++row) {
            if (HasInk(picture, column, row)) {
                return true;
            }
        }
        return false;
    };
    int end = picture.width;
    while (end > 0 && !hasInk(end - 1)) {
        --end;
    }
    while (end > 0 && hasInk(end - 1)) {
        --end;
    }
    int start = end;
    while (start > 0 && !hasInk(start - 1)) {
        --start;
    }
    return end - start;
}

HFONT FontOfPixels(int pixels)
{
    return CreateFontW(-pixels, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                       CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH, L"Liberation Sans");
}

RenderFormat BannerFormat()
{
    RenderFormat format;
    format.clrText = 0xFFFFFF;
    format.bParentBackground = TRUE;
    return format;
}

} // namespace

TEST(LabelLooksTest, TheBodysColourFillsTheLabel)
{
    LabelTestWindow window(300, 60);
    CSlimHtmlCtrl label;
    label.SetRenderFormat(BannerFormat());
    ASSERT_TRUE(label.SubclassWindow(window.Label()));
    label.LoadText(L"<body bgcolor=\"#1F3A5F\"><font size=5><b>Begin deployment</b></font><br>Zolt 2027");
    EXPECT_EQ(window.Pixel(0, 0), navy);
    EXPECT_EQ(window.Pixel(299, 59), navy);
    EXPECT_TRUE(window.Shows(white));
    window.SavePicture(L"banner.png");
}

TEST(LabelLooksTest, TheParentsBrushShowsThrough)
{
    LabelTestWindow window(200, 60);
    window.background = CreateSolidBrush(RGB(10, 200, 30));
    {
        CSlimHtmlCtrl label;
        label.SetRenderFormat(LabelTestWindow::FrameFormat());
        ASSERT_TRUE(label.SubclassWindow(window.Label()));
        EXPECT_EQ(window.Pixel(1, 1), RGB(10, 200, 30));
    }
    DeleteObject(std::exchange(window.background, nullptr));
}

TEST(LabelLooksTest, TheFirstFlagFillsWithTheFormatsColour)
{
    LabelTestWindow window(200, 60);
    CSlimHtmlCtrl label;
    RenderFormat format;
    format.bFillBackground = TRUE;
    format.clrBackground = RGB(1, 2, 3);
    label.SetRenderFormat(format);
    ASSERT_TRUE(label.SubclassWindow(window.Label()));
    EXPECT_EQ(window.Pixel(1, 1), RGB(1, 2, 3));
}

TEST(LabelLooksTest, AWhiteDefaultTextOnAWhitePageIsReadable)
{
    LabelTestWindow window(200, 60);
    CSlimHtmlCtrl label;
    label.SetRenderFormat(BannerFormat());
    ASSERT_TRUE(label.SubclassWindow(window.Label()));
    label.LoadText(L"Deployment complete");
    EXPECT_TRUE(window.Shows(0x000000));
}

TEST(LabelLooksTest, FontColoursAreDrawn)
{
    LabelTestWindow window(200, 60);
    CSlimHtmlCtrl label;
    label.SetRenderFormat(LabelTestWindow::FrameFormat());
    ASSERT_TRUE(label.SubclassWindow(window.Label()));
    label.LoadText(L"<font color=\"#FF00FF\" size=7>MMMM</font>");
    EXPECT_TRUE(window.Shows(RGB(255, 0, 255)));
}

TEST(LabelLooksTest, RightAlignedTextLeavesTheLeftFree)
{
    LabelTestWindow window(200, 60);
    CSlimHtmlCtrl label;
    RenderFormat format = LabelTestWindow::FrameFormat();
    format.nAlignment = DT_RIGHT;
    label.SetRenderFormat(format);
    ASSERT_TRUE(label.SubclassWindow(window.Label()));
    label.LoadText(L"right");
    const Picture picture = ReadPicture(window.Label());
    int leftmost = picture.width;
    for (std::size_t at = 0; at < picture.pixels.size(); ++at) {
        leftmost =
            picture.pixels[at] == white ? leftmost : std::min(leftmost, static_cast<int>(at) % picture.width);
    }
    EXPECT_GT(leftmost, 100);
    EXPECT_LT(leftmost, 190);
}

TEST(LabelLooksTest, ADisabledLabelIsGray)
{
    LabelTestWindow window(200, 60);
    CSlimHtmlCtrl label;
    label.SetRenderFormat(LabelTestWindow::FrameFormat());
    ASSERT_TRUE(label.SubclassWindow(window.Label()));
    label.LoadText(L"<font size=7>MMMM</font>");
    ASSERT_TRUE(window.Shows(0x000000));
    EnableWindow(window.Label(), FALSE);
    EXPECT_FALSE(window.Shows(0x000000));
    EXPECT_TRUE(window.Shows(GetSysColor(COLOR_GRAYTEXT)));
    // The static control would draw its own text at once.
    const Picture shown = ReadPicture(window.Label());
    RedrawWindow(window.Label(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    EXPECT_EQ(shown.pixels, ReadPicture(window.Label()).pixels);
}

TEST(LabelLooksTest, APageWithEachFeatureIsDrawn)
{
    LabelTestWindow window(460, 620);
    CSlimHtmlCtrl label;
    label.SetRenderFormat(LabelTestWindow::FrameFormat());
    ASSERT_TRUE(label.SubclassWindow(window.Label()));
    ASSERT_TRUE(label.LoadFile(FixtureFolder() + L"every_feature.html"));
    EXPECT_TRUE(window.Shows(RGB(255, 0, 0)));
    SetFocus(window.Label());
    window.SavePicture(L"every_feature.png");
}

TEST(LabelLooksTest, ASidePaneIsDrawn)
{
    LabelTestWindow window(180, 260);
    CSlimHtmlCtrl label;
    label.SetRenderFormat(LabelTestWindow::FrameFormat());
    ASSERT_TRUE(label.SubclassWindow(window.Label()));
    ASSERT_TRUE(label.LoadFile(FixtureFolder() + L"every_feature.html"));
    EXPECT_TRUE(label.IsScrollable());
    window.SavePicture(L"side_pane.png");
}

TEST(LabelLooksTest, LinksAreBlueWhereTheSystemsLinkColourCannotBeRead)
{
    const INT hotlight = COLOR_HOTLIGHT;
    const COLORREF before = GetSysColor(COLOR_HOTLIGHT);
    const COLORREF palest = RGB(0xF0, 0xF0, 0xF0);
    SetSysColors(1, &hotlight, &palest);
    {
        LabelTestWindow window(200, 60);
        CSlimHtmlCtrl label;
        label.SetRenderFormat(LabelTestWindow::FrameFormat());
        ASSERT_TRUE(label.SubclassWindow(window.Label()));
        label.LoadText(L"<font size=7><a href=x>MMMM</a></font>");
        EXPECT_TRUE(window.Shows(RGB(0x00, 0x66, 0xCC)));
        const COLORREF strong = RGB(0x80, 0x00, 0x80);
        SetSysColors(1, &hotlight, &strong);
        InvalidateRect(window.Label(), nullptr, FALSE);
        EXPECT_TRUE(window.Shows(strong));
    }
    SetSysColors(1, &hotlight, &before);
}

TEST(LabelLooksTest, ThePageMayGiveLinksAColour)
{
    LabelTestWindow window(200, 60);
    CSlimHtmlCtrl label;
    label.SetRenderFormat(LabelTestWindow::FrameFormat());
    ASSERT_TRUE(label.SubclassWindow(window.Label()));
    label.LoadText(L"<body link=\"#FF00FF\"><font size=7><a href=x>MMMM</a></font>");
    EXPECT_TRUE(window.Shows(RGB(255, 0, 255)));
}

// A bold word touched the plain text before it, or stood far away from it: at some sizes the system draws letters in other
// distances than it measures them.
TEST(LabelLooksTest, ABoldWordIsAsFarFromALongTextAsFromOneLetter)
{
    for (int pixels = 9; pixels <= 24; ++pixels) {
        LabelTestWindow window(700, 60);
        const HFONT font = FontOfPixels(pixels);
        SendMessageW(window.Label(), WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
        {
            CSlimHtmlCtrl label;
            label.SetRenderFormat(LabelTestWindow::FrameFormat());
            ASSERT_TRUE(label.SubclassWindow(window.Label()));
            label.LoadText(L"n <b>I</b>");
            const int expected = GapBeforeTheLastLetter(ReadPicture(window.Label()));
            EXPECT_GT(expected, 1) << pixels << " pixels";
            label.LoadText(L"six Manx milk sinks fill text, MMM kin <b>I</b>");
            EXPECT_EQ(GapBeforeTheLastLetter(ReadPicture(window.Label())), expected) << pixels << " pixels";
        }
        DeleteObject(font);
    }
}
