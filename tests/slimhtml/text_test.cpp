#include "tests/slimhtml/label_test_window.h"
#include "tests/support/import_redirect.h"

#include <gtest/gtest.h>

#include <string>

namespace {

const wchar_t* const longText =
    L"one two three four five six seven eight nine ten eleven twelve thirteen fourteen "
    L"fifteen sixteen seventeen eighteen nineteen twenty";

// As while the mouse drags the thumb; the real call knows of no dragging then.
BOOL WINAPI ThumbAtForty(HWND, int, SCROLLINFO* info)
{
    info->nTrackPos = 40;
    return TRUE;
}

class LabelTextTest : public testing::Test
{
protected:
    void SetUp() override
    {
        label.SetRenderFormat(LabelTestWindow::FrameFormat());
        ASSERT_TRUE(label.SubclassWindow(window.Label()));
    }

    int ScrollPosition() const { return GetScrollPos(window.Label(), SB_VERT); }
    bool HasStyle(LONG_PTR style) const
    {
        return (GetWindowLongPtrW(window.Label(), GWL_STYLE) & style) == style;
    }
    CString TextOf(const wchar_t* html)
    {
        label.LoadText(html);
        return WindowText(window.Label());
    }
    void LoadTallText()
    {
        CString html;
        for (int index = 0; index < 40; ++index) {
            html += L"<p>paragraph</p>";
        }
        label.LoadText(html);
    }

    LabelTestWindow window{240, 100};
    CSlimHtmlCtrl label;
};

} // namespace

TEST_F(LabelTextTest, TheWindowTextIsThePlainText)
{
    EXPECT_EQ(TextOf(L"<h1>Head</h1><p>A &lt;b&gt;</p><ul><li>x<li>y</ul>a<br>b"),
              CString(L"Head\r\nA <b>\r\n\u2022 x\r\n\u2022 y\r\na\r\nb"));
}

TEST_F(LabelTextTest, BrokenMarkupShowsTheTextThatItHolds)
{
    EXPECT_EQ(TextOf(L"1 < 2 <b <i>x</b></u></li> & &bogus; <a href=\"y>z"), CString(L"1 < 2 x & &bogus; z"));
}

TEST_F(LabelTextTest, SettingTheWindowTextLoadsHtml)
{
    SetWindowTextW(window.Label(), L"<i>slanted</i>");
    EXPECT_EQ(WindowText(window.Label()), CString(L"slanted"));
}

TEST_F(LabelTextTest, ANullTextEmptiesTheLabel)
{
    label.LoadText(L"something");
    EXPECT_EQ(TextOf(nullptr), CString());
}

TEST_F(LabelTextTest, AnAmpersandIsNoMnemonicOfTheDialog)
{
    label.LoadText(L"Save &amp;Xtra");
    EXPECT_TRUE(HasStyle(SS_NOPREFIX));
}

TEST_F(LabelTextTest, NarrowerLabelsAreHigher)
{
    label.LoadText(longText);
    EXPECT_GT(label.MeasureHeight(120), label.MeasureHeight(400));
}

TEST_F(LabelTextTest, WithoutWrappingOneParagraphIsOneLineAtAnyWidth)
{
    RenderFormat format = LabelTestWindow::FrameFormat();
    format.nWrap = 0;
    label.SetRenderFormat(format);
    label.LoadText(longText);
    EXPECT_EQ(label.MeasureHeight(120), label.MeasureHeight(4000));
}

TEST_F(LabelTextTest, TheTextScaleMakesTheTextHigher)
{
    label.LoadText(L"x");
    const int before = label.MeasureHeight(200);
    RenderFormat format = LabelTestWindow::FrameFormat();
    format.fTextScale = 2;
    label.SetRenderFormat(format);
    EXPECT_GT(label.MeasureHeight(200), before);
}

TEST_F(LabelTextTest, ALargerControlFontMakesTheTextHigher)
{
    label.LoadText(L"x");
    const int before = label.MeasureHeight(200);
    const HFONT font =
        CreateFontW(-30, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                    CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH, L"Liberation Sans");
    SendMessageW(window.Label(), WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
    EXPECT_GT(label.MeasureHeight(200), before);
    DestroyWindow(window.Label());
    DeleteObject(font);
}

TEST_F(LabelTextTest, ATextThatFitsHasNoScrollBar)
{
    label.LoadText(L"short");
    EXPECT_FALSE(label.IsScrollable());
    EXPECT_FALSE(HasStyle(WS_VSCROLL));
}

TEST_F(LabelTextTest, AHigherTextGetsAScrollBar)
{
    LoadTallText();
    EXPECT_TRUE(label.IsScrollable());
    EXPECT_TRUE(HasStyle(WS_VSCROLL));
}

TEST_F(LabelTextTest, AGrowingControlLosesItsScrollBar)
{
    label.LoadText(L"<p>one<p>two<p>three<p>four<p>five<p>six");
    ASSERT_TRUE(HasStyle(WS_VSCROLL));
    SetWindowPos(window.Label(), nullptr, 0, 0, 240, 400, SWP_NOMOVE | SWP_NOZORDER);
    EXPECT_FALSE(HasStyle(WS_VSCROLL));
}

TEST_F(LabelTextTest, OneLineInALowLabelDoesNotScroll)
{
    SetWindowPos(window.Label(), nullptr, 0, 0, 240, 18, SWP_NOMOVE | SWP_NOZORDER);
    label.LoadText(L"Step 1 of 5");
    EXPECT_FALSE(label.IsScrollable());
}

TEST_F(LabelTextTest, OnlyALabelThatScrollsOrHasLinksIsATabStop)
{
    label.LoadText(L"short");
    EXPECT_FALSE(HasStyle(WS_TABSTOP));
    LoadTallText();
    EXPECT_TRUE(HasStyle(WS_TABSTOP));
    label.LoadText(L"<a href=x>link</a>");
    EXPECT_TRUE(HasStyle(WS_TABSTOP));
}

TEST_F(LabelTextTest, TheDownKeyScrollsALine)
{
    LoadTallText();
    SetFocus(window.Label());
    window.Press(VK_DOWN, &label);
    const int line = ScrollPosition();
    EXPECT_GT(line, 0);
    window.Press(VK_DOWN, &label);
    EXPECT_EQ(ScrollPosition(), 2 * line);
}

TEST_F(LabelTextTest, EndAndHomeScrollToTheEnds)
{
    LoadTallText();
    SetFocus(window.Label());
    window.Press(VK_END, &label);
    EXPECT_EQ(ScrollPosition(), label.MeasureHeight(240 - GetSystemMetrics(SM_CXVSCROLL)) - 100);
    window.Press(VK_HOME, &label);
    EXPECT_EQ(ScrollPosition(), 0);
}

TEST_F(LabelTextTest, KeysScrollWithoutTheOwnersLoopToo)
{
    LoadTallText();
    SetFocus(window.Label());
    window.Press(VK_NEXT);
    EXPECT_GT(ScrollPosition(), 0);
}

TEST_F(LabelTextTest, TheWheelScrolls)
{
    LoadTallText();
    SendMessageW(window.Label(), WM_MOUSEWHEEL, MAKEWPARAM(0, -WHEEL_DELTA), 0);
    EXPECT_GT(ScrollPosition(), 0);
}

TEST_F(LabelTextTest, TheScrollBarsArrowScrolls)
{
    LoadTallText();
    SendMessageW(window.Label(), WM_VSCROLL, SB_LINEDOWN, 0);
    EXPECT_GT(ScrollPosition(), 0);
}

TEST_F(LabelTextTest, DraggingTheScrollBarsThumbScrollsThere)
{
    LoadTallText();
    {
        const CImportRedirect drag(L"SlimHtml.dll", "GetScrollInfo", reinterpret_cast<void*>(ThumbAtForty));
        ASSERT_TRUE(drag.IsInPlace());
        SendMessageW(window.Label(), WM_VSCROLL, SB_THUMBTRACK, 0);
    }
    EXPECT_EQ(ScrollPosition(), 40);
}

TEST_F(LabelTextTest, ANewTextStartsAtItsTop)
{
    LoadTallText();
    SendMessageW(window.Label(), WM_VSCROLL, SB_BOTTOM, 0);
    ASSERT_GT(ScrollPosition(), 0);
    LoadTallText();
    EXPECT_EQ(ScrollPosition(), 0);
}

TEST_F(LabelTextTest, FilesAreReadByTheirByteOrderMark)
{
    const CString folder = FixtureFolder();
    ASSERT_TRUE(label.LoadFile(folder + L"page_utf8_mark.html"));
    EXPECT_EQ(WindowText(window.Label()), CString(L"Gr\u00FC\u00DFe"));
    ASSERT_TRUE(label.LoadFile(folder + L"page_utf16.html"));
    EXPECT_EQ(WindowText(window.Label()), CString(L"Gr\u00FC\u00DFe \U0001F600"));
}

TEST_F(LabelTextTest, AMissingFileLeavesTheTextAsItIs)
{
    label.LoadText(L"stays");
    EXPECT_FALSE(label.LoadFile(FixtureFolder() + L"missing.html"));
    EXPECT_EQ(WindowText(window.Label()), CString(L"stays"));
}

TEST_F(LabelTextTest, ATextOfMegabytesIsShownInSeconds)
{
    CString html;
    for (int index = 0; index < 100000; ++index) {
        html += L"some words <b>and</b> ";
    }
    const ULONGLONG start = GetTickCount64();
    label.LoadText(html);
    UpdateWindow(window.Label());
    EXPECT_LT(GetTickCount64() - start, 10000u);
    EXPECT_TRUE(label.IsScrollable());
}
