// The host's image behind a control: the part that lies there when it is stretched under the whole window.
#include "controls/background_image.h"

#include "controls/customize_hyper_link.h"
#include "controls/separator_static.h"
#include "tests/controls/fixture.h"

#include <objidl.h>

#include <algorithm>

using std::max;
using std::min;
#include <gdiplus.h>

#include <optional>

namespace {

constexpr COLORREF RED = RGB(0xFF, 0, 0);
constexpr COLORREF BLUE = RGB(0, 0, 0xFF);
// Wide enough to keep away from the border between the colours, which scaling blurs.
constexpr int BLUR = 4;

class BackgroundImageTest : public ControlTest
{
protected:
    // The window is 240 by 160: the image is stretched to twice its size, its left half red and its right half blue.
    void SetUp() override
    {
        ControlTest::SetUp();
        const Gdiplus::GdiplusStartupInput input;
        ASSERT_EQ(Gdiplus::GdiplusStartup(&m_token, &input, nullptr), Gdiplus::Ok);
        image.emplace(120, 80);
        Gdiplus::Graphics graphics(&*image);
        const Gdiplus::SolidBrush red(Gdiplus::Color(0xFF, 0xFF, 0, 0));
        const Gdiplus::SolidBrush blue(Gdiplus::Color(0xFF, 0, 0, 0xFF));
        graphics.FillRectangle(&red, 0, 0, 60, 80);
        graphics.FillRectangle(&blue, 60, 0, 60, 80);
    }
    void TearDown() override
    {
        ControlTest::TearDown();
        image.reset();
        Gdiplus::GdiplusShutdown(m_token);
    }

    // Across the middle of the window, where the colours meet: 30 pixels of red and 50 of blue.
    static constexpr RECT PLACE = {90, 20, 170, 60};

    static void ExpectRedAndBlue(HWND control, COLORREF red, COLORREF blue)
    {
        for (const int y : {2, 37}) {
            EXPECT_EQ(ColorAt(control, 1, y), red) << y;
            EXPECT_EQ(ColorAt(control, 30 - BLUR, y), red) << y;
            EXPECT_EQ(ColorAt(control, 30 + BLUR, y), blue) << y;
            EXPECT_EQ(ColorAt(control, 78, y), blue) << y;
        }
    }

    std::optional<Gdiplus::Bitmap> image;

private:
    ULONG_PTR m_token = 0;
};

} // namespace

TEST_F(BackgroundImageTest, ASeparatorShowsThePartOfTheStretchedImageBehindIt)
{
    const HWND control = MakeStatic(L"", PLACE);
    CSeparatorStatic separator;
    separator.m_pBackground = &*image;
    ASSERT_TRUE(separator.SubclassWindow(control));
    separator.ShowWindow(SW_SHOW);
    Paint();
    ExpectRedAndBlue(control, RED, BLUE);
    EXPECT_EQ(CountColor(control, {40, 0, 41, 40}, RGB(0xFF, 0xFF, 0xFF)), 40) << "its line stands in front";
}

TEST_F(BackgroundImageTest, ALinkShowsThePartOfTheStretchedImageBehindIt)
{
    const HWND control = MakeStatic(L"", PLACE);
    CCustomizeHyperLink link;
    link.m_pBackground = &*image;
    link.SetUp(control, L"guide.pdf");
    Paint();
    ExpectRedAndBlue(control, RED, BLUE);
}

TEST_F(BackgroundImageTest, AnOpacityBelowOneDarkensIt)
{
    const HWND control = MakeStatic(L"", PLACE);
    CSeparatorStatic separator;
    separator.m_pBackground = &*image;
    separator.m_opacity = 0.25f; // black of 191 parts in 255 over it
    ASSERT_TRUE(separator.SubclassWindow(control));
    separator.ShowWindow(SW_SHOW);
    Paint();
    const COLORREF red = ColorAt(control, 1, 2);
    EXPECT_NEAR(GetRValue(red), 64, 2);
    EXPECT_EQ(GetGValue(red) + GetBValue(red), 0);
    const COLORREF blue = ColorAt(control, 78, 37);
    EXPECT_NEAR(GetBValue(blue), 64, 2);
    EXPECT_EQ(GetRValue(blue) + GetGValue(blue), 0);
}

TEST_F(BackgroundImageTest, AnOpacityOfOneLeavesItAsItIs)
{
    const HWND control = MakeStatic(L"", PLACE);
    CSeparatorStatic separator;
    separator.m_pBackground = &*image;
    separator.m_opacity = 1.0f;
    ASSERT_TRUE(separator.SubclassWindow(control));
    separator.ShowWindow(SW_SHOW);
    Paint();
    ExpectRedAndBlue(control, RED, BLUE);
}
