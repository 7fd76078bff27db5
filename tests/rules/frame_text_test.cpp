#include "frame/text_rules.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

namespace {

std::vector<CString> Split(const wchar_t* text, const wchar_t* separator, bool trim)
{
    std::vector<CString> pieces{CString(L"left over")};
    SplitText(text, separator, pieces, 0, trim);
    return pieces;
}

using Pieces = std::vector<CString>;

} // namespace

TEST(SplitTextTest, WithoutTrimPiecesStayAsTheyStandEmptyOnesToo)
{
    EXPECT_EQ(Split(L" a ,, b", L",", false), (Pieces{L" a ", L"", L" b"}));
}

TEST(SplitTextTest, WithTrimEmptyPiecesAreDropped)
{
    EXPECT_EQ(Split(L" a ,\t, b ", L",", true), (Pieces{L"a", L"b"}));
}

TEST(SplitTextTest, ASeparatorAtTheEndAddsNoPiece)
{
    EXPECT_EQ(Split(L"a,", L",", false), (Pieces{L"a"}));
    EXPECT_EQ(Split(L",", L",", false), (Pieces{L""}));
}

TEST(SplitTextTest, ASeparatorAtTheStartGivesAnEmptyPiece)
{
    EXPECT_EQ(Split(L",a", L",", false), (Pieces{L"", L"a"}));
}

TEST(SplitTextTest, TheEmptyTextGivesAnEmptyList)
{
    EXPECT_EQ(Split(L"", L",", false), Pieces());
    EXPECT_EQ(Split(L"", L",", true), Pieces());
}

TEST(SplitTextTest, SeparatorsMayHaveSeveralCharacters)
{
    EXPECT_EQ(Split(L"a, b,c, ", L", ", false), (Pieces{L"a", L"b,c"}));
}

TEST(SplitTextTest, AnEmptySeparatorCutsNothing)
{
    EXPECT_EQ(Split(L"a b", L"", false), (Pieces{L"a b"}));
    EXPECT_EQ(Split(L"a b", nullptr, false), (Pieces{L"a b"}));
}

TEST(SplitTextTest, TheTextMayBeAPieceOfTheList)
{
    Pieces pieces{L"a,b"};
    SplitText(pieces[0], L",", pieces, 0, false);
    EXPECT_EQ(pieces, (Pieces{L"a", L"b"}));
}

TEST(ReplaceAllTest, CountsWhatItReplacedFromLeftToRight)
{
    CString text(L"aaa");
    EXPECT_EQ(ReplaceAll(text, L"aa", L"b"), 1);
    EXPECT_EQ(text, CString(L"ba"));
}

TEST(ReplaceAllTest, DoesNotLookAtWhatItPutIn)
{
    CString text(L"a&b");
    EXPECT_EQ(ReplaceAll(text, L"&", L"&&"), 1);
    EXPECT_EQ(text, CString(L"a&&b"));
}

TEST(ReplaceAllTest, AnEmptyOrNullOldChangesNothing)
{
    CString text(L"abc");
    EXPECT_EQ(ReplaceAll(text, L"", L"x"), 0);
    EXPECT_EQ(ReplaceAll(text, nullptr, L"x"), 0);
    EXPECT_EQ(text, CString(L"abc"));
}

TEST(ReplaceAllTest, ANullNewRemoves)
{
    CString text(L"a[Reason]b");
    EXPECT_EQ(ReplaceAll(text, L"[Reason]", nullptr), 1);
    EXPECT_EQ(text, CString(L"ab"));
}

TEST(DoubleAmpersandsTest, EveryAmpersandIsDoubledInACopy)
{
    const CString text(L"A & B && C");
    EXPECT_EQ(DoubleAmpersands(text), CString(L"A && B &&&& C"));
    EXPECT_EQ(text, CString(L"A & B && C"));
}

TEST(TrimTest, EachWorksAtOneEndOnly)
{
    CString left(L" \ta ");
    TrimLeft(left);
    EXPECT_EQ(left, CString(L"a "));
    CString right(L" a\r\n ");
    TrimRight(right);
    EXPECT_EQ(right, CString(L" a"));
}

TEST(TrimTest, ASetNamesTheCharactersThatGo)
{
    CString left(L"\\ \\server\\");
    TrimLeft(left, L"\\ ");
    EXPECT_EQ(left, CString(L"server\\"));
    CString right(L"C:\\a\\\\");
    TrimRight(right, L"\\");
    EXPECT_EQ(right, CString(L"C:\\a"));
}
