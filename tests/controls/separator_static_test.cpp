// Where a separator's lines stand on the screen.
#include "controls/separator_static.h"
#include "tests/controls/fixture.h"

namespace {

constexpr COLORREF LINE = RGB(0xE0, 0x20, 0x60);

class SeparatorStaticTest : public ControlTest
{
protected:
    // The separator is 20 wide and 100 high, or the other way round.
    void Show(const RECT& place)
    {
        control = MakeStatic(L"", place);
        separator.m_penColor = LINE;
        ASSERT_TRUE(separator.SubclassWindow(control));
        separator.ShowWindow(SW_SHOW);
        Paint();
    }
    int CountLine(const RECT& part) const { return CountColor(control, part, LINE); }

    HWND control = nullptr;
    CSeparatorStatic separator;
};

constexpr RECT UPRIGHT = {10, 10, 30, 110};
constexpr RECT LYING = {10, 10, 110, 30};

} // namespace

TEST_F(SeparatorStaticTest, HalfTheLengthInAWindowOf100IsPaintedFrom25To75)
{
    separator.m_lengthRatio = 0.5f;
    Show(UPRIGHT);
    EXPECT_NE(ColorAt(control, 10, 24), LINE);
    EXPECT_EQ(ColorAt(control, 10, 25), LINE);
    EXPECT_EQ(ColorAt(control, 10, 74), LINE);
    EXPECT_NE(ColorAt(control, 10, 75), LINE);
    EXPECT_EQ(CountLine(ClientOf(control)), 50) << "one line of one pixel, and nothing else";
}

TEST_F(SeparatorStaticTest, TheWholeLengthReachesFromEdgeToEdge)
{
    Show(UPRIGHT);
    EXPECT_EQ(CountLine({10, 0, 11, 100}), 100);
}

TEST_F(SeparatorStaticTest, BothBitsDrawBothLines)
{
    separator.m_orientation = SEPARATOR_VERTICAL | SEPARATOR_HORIZONTAL;
    separator.m_alignment = SEPARATOR_LEFT | SEPARATOR_BOTTOM;
    Show(LYING);
    EXPECT_EQ(CountLine({0, 0, 1, 20}), 20) << "the left edge";
    EXPECT_EQ(CountLine({0, 19, 100, 20}), 100) << "the lower edge";
    EXPECT_EQ(CountLine(ClientOf(control)), 119);
}

TEST_F(SeparatorStaticTest, AHorizontalLineAloneLeavesTheVerticalOneOut)
{
    separator.m_orientation = SEPARATOR_HORIZONTAL;
    Show(LYING);
    EXPECT_EQ(CountLine({0, 10, 100, 11}), 100);
    EXPECT_EQ(CountLine(ClientOf(control)), 100);
}

TEST_F(SeparatorStaticTest, APenOfThreePixelsDrawsThree)
{
    separator.m_penWidth = 3;
    Show(UPRIGHT);
    for (const int y : {5, 50, 90}) {
        EXPECT_EQ(CountLine({0, y, 20, y + 1}), 3) << y;
    }
}

TEST_F(SeparatorStaticTest, ItIsAWhiteVerticalLineByDefault)
{
    control = MakeStatic(L"", UPRIGHT);
    ASSERT_TRUE(separator.SubclassWindow(control));
    const HDC dc = GetDC(control);
    const RECT client = ClientOf(control);
    const HBRUSH ground = CreateSolidBrush(GROUND);
    separator.ShowWindow(SW_SHOW);
    FillRect(dc, &client, ground); // the window behind it is white
    separator.Invalidate(FALSE);
    separator.UpdateWindow();
    DeleteObject(ground);
    ReleaseDC(control, dc);
    EXPECT_EQ(CountColor(control, {10, 0, 11, 100}, RGB(0xFF, 0xFF, 0xFF)), 100);
}
