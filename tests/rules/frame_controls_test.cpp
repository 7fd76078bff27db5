#include "controls/link_rules.h"
#include "controls/separator_rules.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <ostream>

static void PrintTo(const SeparatorLine& line, std::ostream* stream)
{
    *stream << line.x1 << ',' << line.y1 << " - " << line.x2 << ',' << line.y2;
}

TEST(LinkColourTest, TheTwoLabelFormsUseThePairTheOtherWayRound)
{
    EXPECT_EQ(LinkColour(true, false, 0xA, 0xB), 0xAu);
    EXPECT_EQ(LinkColour(true, true, 0xA, 0xB), 0xBu);
    EXPECT_EQ(LinkColour(false, false, 0xA, 0xB), 0xBu);
    EXPECT_EQ(LinkColour(false, true, 0xA, 0xB), 0xAu);
}

TEST(SeparatorTest, HalfTheLengthOfAHundredGoesFrom25To75)
{
    EXPECT_EQ(VerticalLine(10, 100, 32, 1, 0.5f), (SeparatorLine{5, 25, 5, 75}));
    EXPECT_EQ(HorizontalLine(100, 10, 32, 1, 0.5f), (SeparatorLine{25, 5, 75, 5}));
}

TEST(SeparatorTest, TheInsetIsTruncated)
{
    EXPECT_EQ(VerticalLine(10, 101, 32, 1, 0.5f), (SeparatorLine{5, 25, 5, 76}));
}

TEST(SeparatorTest, TheHighNibblePlacesTheVerticalLine)
{
    EXPECT_EQ(VerticalLine(10, 50, 16, 1, 1.0f).x1, 0);
    EXPECT_EQ(VerticalLine(10, 50, 64, 1, 1.0f).x1, 9);
    EXPECT_EQ(VerticalLine(10, 50, 16 + 64, 1, 1.0f).x1, 5);
    EXPECT_EQ(VerticalLine(10, 50, 0, 1, 1.0f).x1, 5);
}

TEST(SeparatorTest, TheLowNibblePlacesTheHorizontalLine)
{
    EXPECT_EQ(HorizontalLine(50, 10, 1, 1, 1.0f).y1, 0);
    EXPECT_EQ(HorizontalLine(50, 10, 3, 1, 1.0f).y1, 9);
    EXPECT_EQ(HorizontalLine(50, 10, 2, 1, 1.0f).y1, 5);
    EXPECT_EQ(HorizontalLine(50, 10, 16 + 3, 1, 1.0f).y1, 9);
}
