#include "msi/property_references.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

namespace {

using Properties = std::map<CString, CString>;

CString Expand(const CString& text, const Properties& properties)
{
    return ExpandPropertyReferences(text, [&](const CString& name) {
        const auto found = properties.find(name);
        return found == properties.end() ? CString() : found->second;
    });
}

const Properties TWO = {{L"A", L"first"}, {L"B", L"second"}};

} // namespace

TEST(PropertyReferenceTest, OfTwoThatTouchTheSecondStays)
{
    EXPECT_EQ(Expand(L"[A][B]", TWO), CString(L"first[B]"));
}

TEST(PropertyReferenceTest, TwoWithABlankBetweenThemBothExpand)
{
    EXPECT_EQ(Expand(L"[A] [B]", TWO), CString(L"first second"));
}

TEST(PropertyReferenceTest, OfThreeThatTouchTheThirdExpands)
{
    EXPECT_EQ(Expand(L"[A][B][A2]", {{L"A", L"1"}, {L"B", L"2"}, {L"A2", L"3"}}), CString(L"1[B]3"));
}

TEST(PropertyReferenceTest, AnOpeningBracketWithoutAClosingOneStays)
{
    EXPECT_EQ(Expand(L"[A] and [B", TWO), CString(L"first and [B"));
}

TEST(PropertyReferenceTest, AClosingBracketBeforeTheOpeningOneStays)
{
    EXPECT_EQ(Expand(L"] [A]", TWO), CString(L"] first"));
}

TEST(PropertyReferenceTest, ATextWithoutReferencesStays)
{
    EXPECT_EQ(Expand(L"plain", TWO), CString(L"plain"));
    EXPECT_EQ(Expand(L"", TWO), CString(L""));
}

TEST(PropertyReferenceTest, AnUnknownNameBecomesNothing)
{
    EXPECT_EQ(Expand(L"a [Unknown] b", TWO), CString(L"a  b"));
}

TEST(PropertyReferenceTest, EveryOccurrenceOfANameIsSetAtOnce)
{
    std::vector<CString> asked;
    const CString text = ExpandPropertyReferences(L"[A] [A] [A]", [&](const CString& name) {
        asked.push_back(name);
        return CString(L"x");
    });
    EXPECT_EQ(text, CString(L"x x x"));
    EXPECT_EQ(asked, std::vector<CString>{CString(L"A")});
}

TEST(PropertyReferenceTest, ATouchingReferenceOfTheSameNameExpandsWithTheFirst)
{
    EXPECT_EQ(Expand(L"[A][A]", TWO), CString(L"firstfirst"));
}

TEST(PropertyReferenceTest, AReferenceInsideAValueIsPassedOver)
{
    EXPECT_EQ(Expand(L"[A] b", {{L"A", L"[B]"}, {L"B", L"x"}}), CString(L"[B] b"));
}

TEST(PropertyReferenceTest, AnEmptyValueStillPassesOverOneCharacter)
{
    EXPECT_EQ(Expand(L"[None][A] [A2]", {{L"A", L"1"}, {L"A2", L"2"}}), CString(L"[A] 2"));
}

TEST(PropertyReferenceTest, TheNameRunsFromTheFirstOpeningToTheFirstClosingBracket)
{
    std::vector<CString> asked;
    EXPECT_EQ(ExpandPropertyReferences(L"[[A]]",
                                       [&](const CString& name) {
                                           asked.push_back(name);
                                           return CString(L"x");
                                       }),
              CString(L"x]"));
    EXPECT_EQ(asked, std::vector<CString>{CString(L"[A")});
}

TEST(PropertyReferenceTest, BracketsWithNothingBetweenAskForTheEmptyName)
{
    EXPECT_EQ(Expand(L"[]", {{L"", L"empty"}}), CString(L"empty"));
}

// Two references and a value that holds itself twice grew without an end.
TEST(PropertyReferenceTest, AValueThatDoublesItselfComesToAnEndWithinTheLimit)
{
    const CString text = Expand(L"[A] [A]", {{L"A", L"[A] [A]"}});
    EXPECT_GT(text.GetLength(), EXPANSION_GROWTH_LIMIT / 3);
    EXPECT_LE(text.GetLength(), EXPANSION_GROWTH_LIMIT + 7);
}

// Six of these stay ahead of the place that was reached, and grow by one character each time.
TEST(PropertyReferenceTest, AValueThatHoldsItselfIsSetABoundedNumberOfTimes)
{
    int asked = 0;
    const CString text = ExpandPropertyReferences(L"[A][A][A][A][A][A]", [&](const CString&) {
        ++asked;
        return CString(L"[A]b");
    });
    EXPECT_EQ(asked, 6 + NESTED_REFERENCE_LIMIT);
    EXPECT_EQ(text.GetLength(), 6 * (3 + asked));
}

TEST(PropertyReferenceTest, TwoHundredReferencesOfLongValuesAllExpand)
{
    CString text;
    CString expected;
    for (int number = 0; number < 200; ++number) {
        text += L"[A" + NumberText(number) + L"] ";
        expected += CString(L'v', 300) + L" ";
    }
    EXPECT_EQ(ExpandPropertyReferences(text, [](const CString&) { return CString(L'v', 300); }), expected);
}

TEST(PropertyReferenceTest, AValueThatWouldPassTheLimitIsNotSet)
{
    const CString text = L"[A] [B]";
    EXPECT_EQ(Expand(text, {{L"A", CString(L'x', EXPANSION_GROWTH_LIMIT + 4)}}), text);
    EXPECT_NE(Expand(text, {{L"A", CString(L'x', EXPANSION_GROWTH_LIMIT + 3)}}), text);
}

TEST(PropertyReferenceTest, ALongTextMayGrowAsFarAsAShortOne)
{
    const CString longText(L'x', EXPANSION_GROWTH_LIMIT + 10);
    EXPECT_EQ(Expand(longText + L"[A] [B]", TWO), longText + L"first second");
}
