#include "tests/support/text.h"
#include "window/hyper_link_rules.h"

#include <gtest/gtest.h>

TEST(TaggedLabelTest, ALabelFallsIntoThreeParts)
{
    const auto label = SplitTaggedLabel(L"See <A>the terms</A> first");
    ASSERT_TRUE(label);
    EXPECT_EQ(label->before, CString(L"See "));
    EXPECT_EQ(label->link, CString(L"the terms"));
    EXPECT_EQ(label->after, CString(L" first"));
    EXPECT_EQ(label->PlainText(), CString(L"See the terms first"));
}

TEST(TaggedLabelTest, TagsAreFoundInEitherCase)
{
    const auto label = SplitTaggedLabel(L"<a>terms</A>");
    ASSERT_TRUE(label);
    EXPECT_EQ(label->link, CString(L"terms"));
    EXPECT_TRUE(label->before.IsEmpty());
    EXPECT_TRUE(label->after.IsEmpty());
}

TEST(TaggedLabelTest, ALabelWithoutBothTagsInOrderIsNoTaggedLabel)
{
    for (const wchar_t* text :
         {L"", L"plain", L"<A>open", L"closed</A>", L"</A>turned<A>", L"<A", L"<A >x</A>"}) {
        EXPECT_FALSE(SplitTaggedLabel(text)) << Utf8(text);
    }
}

TEST(TaggedLabelTest, TheFirstOfEachTagCounts)
{
    const auto label = SplitTaggedLabel(L"</A><A>one<A></A>two</A>");
    ASSERT_TRUE(label);
    EXPECT_EQ(label->before, CString(L"</A>"));
    EXPECT_EQ(label->link, CString(L"one<A>"));
    EXPECT_EQ(label->after, CString(L"two</A>"));
}

TEST(TaggedLabelTest, AnEmptyLinkIsALink)
{
    const auto label = SplitTaggedLabel(L"a<A></A>b");
    ASSERT_TRUE(label);
    EXPECT_TRUE(label->link.IsEmpty());
}

TEST(ColorTextTest, ThreeNumbersGiveRedGreenAndBlue)
{
    EXPECT_EQ(ParseColorText(L"1,2,3"), 0x030201u);
    EXPECT_EQ(ParseColorText(L"255,255,255"), 0xFFFFFFu);
    EXPECT_EQ(ParseColorText(L"000,0,00128"), 0x800000u);
}

TEST(ColorTextTest, AnotherFormIsNoColor)
{
    for (const wchar_t* text : {L"", L"0,0", L"0,0,", L",0,0", L"0,0,0,0", L"0,0,0,", L"256,0,0", L"-1,0,0",
                                L"0, 0,0", L"#0000FF", L"0;0;0", L"a,b,c", L"99999999999,0,0", L"0,,0"}) {
        EXPECT_FALSE(ParseColorText(text)) << Utf8(text);
    }
}
