#include "controls/link_rules.h"
#include "controls/separator_rules.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <ostream>

static void PrintTo(const SeparatorLine& line, std::ostream* stream)
{
    *stream << line.x1 << ',' << line.y1 << " - " << line.x2 << ',' << line.y2;
}

TEST(LinkLabelTest, TagsInAnyCaseCutTheLabelInThree)
{
    const LinkLabel label = SplitLinkLabel(L"See <a>the guide</A> first");
    EXPECT_TRUE(label.bHasTags);
    EXPECT_EQ(label.strBefore, CString(L"See "));
    EXPECT_EQ(label.strLink, CString(L"the guide"));
    EXPECT_EQ(label.strAfter, CString(L" first"));
}

TEST(LinkLabelTest, WithoutBothTagsAllOfItIsTheLink)
{
    for (const wchar_t* text : {L"The guide", L"The <A>guide", L"The guide</A>", L"</A>The guide<A>"}) {
        const LinkLabel label = SplitLinkLabel(text);
        EXPECT_FALSE(label.bHasTags);
        EXPECT_EQ(label.strLink, CString(text));
    }
}

TEST(LinkColourTest, ThreeNumbersMakeAColour)
{
    std::uint32_t colour = 0;
    EXPECT_TRUE(ParseColour(L"1,102,255", colour));
    EXPECT_EQ(colour, 0xFF6601u);
}

TEST(LinkColourTest, AnyOtherFormLeavesTheDefault)
{
    for (const wchar_t* text : {L"0,0", L"", L"1,2,3,4", L"1,2,256", L"1, 2,3", L"a,b,c", L"1,2,", L"-1,2,3",
                                L"99999999999,0,0", L"1,2,3 "}) {
        std::uint32_t colour = 0x123456;
        EXPECT_FALSE(ParseColour(text, colour)) << Utf8(text);
        EXPECT_EQ(colour, 0x123456u) << Utf8(text);
    }
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
