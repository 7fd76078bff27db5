#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdint>
#include <vector>

TEST(StringTest, CopiesShareTheTextUntilOneChanges)
{
    CString first(L"deployment");
    CString second(first);
    EXPECT_EQ(first.GetString(), second.GetString());
    second.SetAt(0, L'D');
    EXPECT_EQ(first, CString(L"deployment"));
    EXPECT_EQ(second, CString(L"Deployment"));
}

TEST(StringTest, NullPointersGiveTheEmptyText)
{
    const wchar_t* nothing = nullptr;
    EXPECT_TRUE(CString(nothing).IsEmpty());
    CString text(L"a");
    text += nothing;
    EXPECT_EQ(text, CString(L"a"));
    text = nothing;
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_EQ(CString(L"a").Compare(nullptr), L'a');
}

TEST(StringTest, AppendingATextToItselfDoublesIt)
{
    CString text(L"abc");
    text += text.GetString();
    EXPECT_EQ(text, CString(L"abcabc"));
    text.Append(text.GetString() + 1, 2);
    EXPECT_EQ(text, CString(L"abcabcbc"));
}

TEST(StringTest, PartsAreClamped)
{
    const CString text(L"folder");
    EXPECT_EQ(text.Left(100), text);
    EXPECT_EQ(text.Left(-1), CString());
    EXPECT_EQ(text.Right(3), CString(L"der"));
    EXPECT_EQ(text.Mid(4, 100), CString(L"er"));
    EXPECT_EQ(text.Mid(100), CString());
}

TEST(StringTest, FindStartsAtTheGivenIndex)
{
    const CString text(L"C:\\a:b");
    EXPECT_EQ(text.Find(L':'), 1);
    EXPECT_EQ(text.Find(L':', 2), 4);
    EXPECT_EQ(text.Find(L"a:"), 3);
    EXPECT_EQ(text.Find(L"x"), -1);
    EXPECT_EQ(text.ReverseFind(L':'), 4);
    EXPECT_EQ(text.FindOneOf(L"b\\"), 2);
}

TEST(StringTest, ReplaceGoesFromLeftToRightAndLeavesWhatItReplaced)
{
    CString text(L"aaa");
    EXPECT_EQ(text.Replace(L"a", L"aa"), 3);
    EXPECT_EQ(text, CString(L"aaaaaa"));
    EXPECT_EQ(text.Replace(L"", L"x"), 0);
    EXPECT_EQ(text.Replace(L"aa", nullptr), 3);
    EXPECT_TRUE(text.IsEmpty());
}

TEST(StringTest, ComparingWithoutCaseKnowsLettersBeyondAscii)
{
    setlocale(LC_CTYPE, "C.UTF-8");
    EXPECT_EQ(CString(L"\u00C4PFEL").CompareNoCase(L"\u00E4pfel"), 0);
    EXPECT_NE(CString(L"a").CompareNoCase(L"b"), 0);
}

TEST(StringTest, TrimsWhiteSpaceOrTheGivenSet)
{
    CString text(L" \t name \r\n");
    EXPECT_EQ(text.Trim(), CString(L"name"));
    CString path(L"\\\\server\\");
    EXPECT_EQ(path.Trim(L"\\"), CString(L"server"));
}

TEST(StringTest, NumbersReadAsDecimalDigits)
{
    EXPECT_EQ(NumberText(0), CString(L"0"));
    EXPECT_EQ(NumberText(-42), CString(L"-42"));
    EXPECT_EQ(NumberText(INT64_MIN), CString(L"-9223372036854775808"));
}

TEST(StringTest, Utf8ComesBackAsItWent)
{
    CString text;
    for (int unit = 1; unit < 0x10000; ++unit) {
        if (unit < 0xD800 || unit > 0xDFFF) {
            text += static_cast<wchar_t>(unit);
        }
    }
    text += L"\U0001F600";
    const std::string bytes = Utf8(text);
    EXPECT_TRUE(TextFromUtf8(bytes.data(), bytes.size()) == text);
}

TEST(StringTest, BrokenUtf8BecomesReplacementCharacters)
{
    const char bytes[] = {'a', '\xC3', 'b', '\xED', '\xA0', '\x80', '\xF5'};
    EXPECT_EQ(TextFromUtf8(bytes, sizeof bytes), CString(L"a\uFFFDb\uFFFD\uFFFD\uFFFD\uFFFD"));
    EXPECT_EQ(Utf8(CString(static_cast<wchar_t>(0xD800))), "\xEF\xBF\xBD");
}

TEST(StringTest, ABufferTakesOnlyWhatWasReleased)
{
    CString text(L"old");
    CString copy(text);
    wchar_t* buffer = text.GetBuffer(10);
    buffer[0] = L'n';
    buffer[3] = L'!';
    text.ReleaseBuffer(4);
    EXPECT_EQ(text, CString(L"nld!"));
    EXPECT_EQ(copy, CString(L"old"));
}

// Vectors as keys of maps were ordered by address, so that no key was ever found again.
TEST(StringTest, ListsOfTextsAreOrderedByTheirTexts)
{
    const std::vector<CString> first = {L"a", L"b"};
    const std::vector<CString> same = {CString(L"a") + L"", CString(L"b") + L""};
    const std::vector<CString> later = {L"a", L"c"};
    EXPECT_FALSE(first < same);
    EXPECT_FALSE(same < first);
    EXPECT_TRUE(first < later);
    EXPECT_FALSE(later < first);
}
