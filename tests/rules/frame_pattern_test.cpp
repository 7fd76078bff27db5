#include "frame/pattern.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

namespace {

bool Match(const CString& text, const CString& pattern, bool ignoreCase = false, bool allowNegation = false)
{
    const wchar_t* start = pattern;
    return MatchPattern(text, start, start + pattern.GetLength(), ignoreCase, allowNegation);
}

} // namespace

TEST(PatternTest, TheEmptyPatternMatchesTheEmptyTextAlone)
{
    EXPECT_TRUE(Match(L"", L""));
    EXPECT_FALSE(Match(L"a", L""));
}

TEST(PatternTest, ThePatternEndsAtTheGivenLength)
{
    const wchar_t* pattern = L"abc";
    EXPECT_TRUE(MatchPattern(L"ab", pattern, pattern + 2, false, false));
    EXPECT_FALSE(MatchPattern(L"abc", pattern, pattern + 2, false, false));
}

TEST(PatternTest, LiteralsRegardCaseUnlessAskedNotTo)
{
    EXPECT_TRUE(Match(L"Abc", L"Abc"));
    EXPECT_FALSE(Match(L"Abc", L"abc"));
    EXPECT_TRUE(Match(L"Abc", L"aBC", true));
}

TEST(PatternTest, AQuestionMarkIsAnyOneCharacter)
{
    EXPECT_TRUE(Match(L"a\x4E2D", L"??"));
    EXPECT_FALSE(Match(L"a", L"??"));
    EXPECT_FALSE(Match(L"abc", L"??"));
}

TEST(PatternTest, ANumberSignIsADigit)
{
    EXPECT_TRUE(Match(L"7", L"#"));
    EXPECT_FALSE(Match(L"x", L"#"));
}

TEST(PatternTest, AnAtSignIsALetter)
{
    EXPECT_TRUE(Match(L"x", L"@"));
    EXPECT_FALSE(Match(L"7", L"@"));
    EXPECT_FALSE(Match(L"_", L"@"));
}

TEST(PatternTest, ADotIsACharacterThatIsNeitherLetterNorDigit)
{
    EXPECT_TRUE(Match(L"_", L"."));
    EXPECT_TRUE(Match(L" ", L"."));
    EXPECT_FALSE(Match(L"x", L"."));
    EXPECT_FALSE(Match(L"7", L"."));
}

TEST(PatternTest, AStarIsAnyRunAlsoAnEmptyOne)
{
    EXPECT_TRUE(Match(L"", L"*"));
    EXPECT_TRUE(Match(L"abc", L"*"));
    EXPECT_TRUE(Match(L"abc", L"a***c"));
    EXPECT_TRUE(Match(L"ac", L"a*c"));
    EXPECT_TRUE(Match(L"ab", L"ab**"));
    EXPECT_FALSE(Match(L"ab", L"a*c"));
}

TEST(PatternTest, AStarTriesEveryLaterPlace)
{
    EXPECT_TRUE(Match(L"abcabd", L"*abd"));
    EXPECT_TRUE(Match(L"xaybzab", L"*a*b"));
    EXPECT_FALSE(Match(L"xaybzac", L"*a*b"));
}

TEST(PatternTest, ManyStarsStayFast)
{
    CString pattern;
    for (int count = 0; count < 40; ++count) {
        pattern += L"*a";
    }
    EXPECT_FALSE(Match(CString(L'a', 2000) + L"b", pattern + L"*c"));
}

TEST(PatternTest, ABlankTakesARunOfBlanksInTheText)
{
    EXPECT_TRUE(Match(L"a b", L"a b"));
    EXPECT_TRUE(Match(L"a    b", L"a b"));
    EXPECT_FALSE(Match(L"ab", L"a b"));
    EXPECT_FALSE(Match(L"a b", L"ab"));
    EXPECT_FALSE(Match(L"a\tb", L"a b"));
}

TEST(PatternTest, ASecondBlankInThePatternFindsNoneLeft)
{
    EXPECT_FALSE(Match(L"a  b", L"a  b"));
}

TEST(PatternTest, ASetHoldsCharactersAndRanges)
{
    EXPECT_TRUE(Match(L"b", L"[xb]"));
    EXPECT_TRUE(Match(L"m", L"[a-z]"));
    EXPECT_FALSE(Match(L"M", L"[a-z]"));
    EXPECT_FALSE(Match(L"c", L"[xb]"));
}

TEST(PatternTest, RangesGoByCodeUnitEvenWithoutRegardToCase)
{
    EXPECT_FALSE(Match(L"M", L"[a-z]", true));
    EXPECT_TRUE(Match(L"M", L"[m]", true));
}

TEST(PatternTest, ATildeNegatesASet)
{
    EXPECT_TRUE(Match(L"c", L"[~ab]"));
    EXPECT_FALSE(Match(L"a", L"[~ab]"));
}

TEST(PatternTest, HyphensAtTheEndsOfASetAreLiterals)
{
    EXPECT_TRUE(Match(L"-", L"[a-]"));
    EXPECT_TRUE(Match(L"-", L"[-a]"));
    EXPECT_FALSE(Match(L"b", L"[a-]"));
}

TEST(PatternTest, AClosingBracketFirstInASetIsALiteral)
{
    EXPECT_TRUE(Match(L"]", L"[]a]"));
    EXPECT_TRUE(Match(L"a", L"[]a]"));
    EXPECT_FALSE(Match(L"]", L"[~]a]"));
}

TEST(PatternTest, AnUnclosedSetFails)
{
    EXPECT_FALSE(Match(L"a", L"[a"));
    EXPECT_FALSE(Match(L"a", L"["));
    EXPECT_FALSE(Match(L"b", L"[~a"));
    EXPECT_FALSE(Match(L"]", L"[]"));
}

TEST(PatternTest, ABackquoteTakesTheNextCharacterLiterally)
{
    EXPECT_TRUE(Match(L"a*", L"a`*"));
    EXPECT_FALSE(Match(L"ab", L"a`*"));
    EXPECT_TRUE(Match(L"`", L"``"));
    EXPECT_FALSE(Match(L"`", L"`"));
}

TEST(PatternTest, CharactersFromNinetySevenOnAreLiterals)
{
    EXPECT_TRUE(Match(L"{~}|", L"{~}|"));
    EXPECT_TRUE(Match(L"\t", L"\t"));
}

TEST(PatternTest, ALeadingTildeInvertsTheWholeMatchWhereAllowed)
{
    EXPECT_FALSE(Match(L"abc", L"~a*", false, true));
    EXPECT_TRUE(Match(L"xbc", L"~a*", false, true));
    EXPECT_TRUE(Match(L"~abc", L"~a*", false, false));
}

TEST(PatternListTest, AnyPatternOfTheListWillDo)
{
    EXPECT_TRUE(MatchPatternList(L"b", L"a,b"));
    EXPECT_FALSE(MatchPatternList(L"c", L"a,b"));
    EXPECT_FALSE(MatchPatternList(L"B", L"a,b"));
    EXPECT_TRUE(MatchPatternList(L"c", L"a,~b"));
}

TEST(PatternListTest, ACommaAfterAnOddNumberOfBackquotesIsNoSeparator)
{
    EXPECT_TRUE(MatchPatternList(L"a,b", L"a`,b"));
    EXPECT_FALSE(MatchPatternList(L"b", L"a`,b"));
    EXPECT_TRUE(MatchPatternList(L"b", L"a``,b"));
}

TEST(DrivePathTest, ALetterAndAColonMakeADrivePath)
{
    EXPECT_TRUE(IsDrivePath(L"C:"));
    EXPECT_TRUE(IsDrivePath(L"c:\\folder"));
    EXPECT_FALSE(IsDrivePath(L"1:"));
    EXPECT_FALSE(IsDrivePath(L"C"));
    EXPECT_FALSE(IsDrivePath(L"CC:"));
    EXPECT_FALSE(IsDrivePath(nullptr));
}
