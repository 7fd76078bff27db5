#include "base/ascii.h"
#include "base/number_text.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

std::uint64_t Digits(const wchar_t* text, std::uint64_t most, int& end)
{
    end = 0;
    return ReadDigits(text, end, most);
}

} // namespace

TEST(NumberText, DigitsAreReadUpToWhateverFollows)
{
    int end = 0;
    EXPECT_EQ(Digits(L"1033,1031", 0xFFFF, end), 1033u);
    EXPECT_EQ(end, 4);
    EXPECT_EQ(Digits(L"", 9, end), 0u);
    EXPECT_EQ(end, 0);
    EXPECT_EQ(Digits(L"-1", 9, end), 0u);
    EXPECT_EQ(end, 0) << "a sign is no digit";
    EXPECT_EQ(Digits(L"\x0661", 9, end), 0u);
    EXPECT_EQ(end, 0) << "digits of other scripts are none of a format's";
}

TEST(NumberText, DigitsBeyondTheLimitAreOneMoreThanTheLimit)
{
    int end = 0;
    EXPECT_EQ(Digits(L"255", 255, end), 255u);
    EXPECT_EQ(Digits(L"256", 255, end), 256u);
    EXPECT_EQ(Digits(L"259", 255, end), 256u);
    EXPECT_EQ(Digits(L"9", 5, end), 6u);
    EXPECT_EQ(Digits(L"99999999999999999999999999990", 255, end), 256u);
    EXPECT_EQ(end, 29) << "they are passed over";
    EXPECT_EQ(Digits(L"9223372036854775807", 9223372036854775807u, end), 9223372036854775807u);
    EXPECT_EQ(Digits(L"9223372036854775808", 9223372036854775807u, end), 9223372036854775808u);
    EXPECT_EQ(Digits(L"00000000000000000000000000001", 255, end), 1u);
}

TEST(NumberText, AWholeNumberIsTheWholeText)
{
    EXPECT_EQ(ReadWholeNumber(L"0", 0, 9), 0);
    EXPECT_EQ(ReadWholeNumber(L"-12", -20, 9), -12);
    for (const wchar_t* text : {L"", L"-", L"+1", L" 1", L"1 ", L"1.", L"0x1", L"--1", L"\x0661"}) {
        EXPECT_EQ(ReadWholeNumber(text, -9, 9), std::nullopt) << Utf8(text);
    }
    EXPECT_EQ(ReadWholeNumber(CString(L"1\0", 2), 0, 9), std::nullopt) << "a zero is part of the text";
}

TEST(NumberText, AWholeNumberOutsideItsLimitsIsNone)
{
    EXPECT_EQ(ReadWholeNumber(L"9", 1, 9), 9);
    EXPECT_EQ(ReadWholeNumber(L"10", 1, 9), std::nullopt);
    EXPECT_EQ(ReadWholeNumber(L"0", 1, 9), std::nullopt);
    EXPECT_EQ(ReadWholeNumber(L"-5", -5, 9), -5);
    EXPECT_EQ(ReadWholeNumber(L"-6", -5, 9), std::nullopt);
    EXPECT_EQ(ReadWholeNumber(L"-1", -5, -2), std::nullopt);
    EXPECT_EQ(ReadWholeNumber(L"1", -5, -2), std::nullopt);
    EXPECT_EQ(ReadWholeNumber(L"-0", 0, 9), std::nullopt) << "no sign where nothing is negative";
    constexpr long long LEAST = std::numeric_limits<long long>::min();
    constexpr long long MOST = std::numeric_limits<long long>::max();
    EXPECT_EQ(ReadWholeNumber(L"-9223372036854775808", LEAST, MOST), LEAST);
    EXPECT_EQ(ReadWholeNumber(L"-9223372036854775809", LEAST, MOST), std::nullopt);
    EXPECT_EQ(ReadWholeNumber(L"9223372036854775807", LEAST, MOST), MOST);
    EXPECT_EQ(ReadWholeNumber(L"9223372036854775808", LEAST, MOST), std::nullopt);
}

TEST(NumberText, HexDigitsAreReadInEitherCase)
{
    EXPECT_EQ(ReadHexDigits(L"<U+00aF>", 3, 4), 0xAFu);
    EXPECT_EQ(ReadHexDigits(L"FFFFffff", 0, 8), 0xFFFFFFFFu);
    EXPECT_EQ(ReadHexDigits(L"00aG", 0, 4), std::nullopt);
    EXPECT_EQ(ReadHexDigits(L"00a", 0, 4), std::nullopt) << "cut off";
}

TEST(NumberText, HexTextHasItsDigitsAndMoreWhereTheNumberNeedsThem)
{
    EXPECT_EQ(HexText(0x1A2B), CString(L"00001a2b"));
    EXPECT_EQ(HexText(0xC0000005, 8, HexLetters::Capital), CString(L"C0000005"));
    EXPECT_EQ(HexText(0, 1), CString(L"0"));
    EXPECT_EQ(HexText(0x123, 1), CString(L"123"));
    EXPECT_EQ(HexText(0xFEDCBA9876543210, 1), CString(L"fedcba9876543210"));
}

TEST(NumberText, OnlyAsciiCountsAsAscii)
{
    EXPECT_TRUE(IsAsciiDigit(L'0') && IsAsciiDigit(L'9') && IsAsciiLetter(L'a') && IsAsciiLetter(L'Z'));
    for (const wchar_t character : {L'\x0661', L'\x00E9', L'\xFF21', L'/', L':', L'@', L'[', L'`', L'{'}) {
        EXPECT_FALSE(IsAsciiDigit(character) || IsAsciiLetter(character) || IsHexDigit(character))
            << static_cast<int>(character);
    }
    EXPECT_EQ(HexDigitValue(L'f'), 15);
    EXPECT_EQ(HexDigitValue(L'F'), 15);
    EXPECT_EQ(HexDigitValue(L'g'), -1);
}

TEST(LeadingNumberTest, ANumberIsReadUpToWhatFollowsIt)
{
    EXPECT_EQ(LeadingNumber(L"12;3"), 12);
    EXPECT_EQ(LeadingNumber(L" \t-7x"), -7);
    EXPECT_EQ(LeadingNumber(L"+5"), 5);
}

TEST(LeadingNumberTest, WithoutANumberItIsZero)
{
    for (const wchar_t* text : {L"", L"x", L"-", L"--1", L"- 1", L" "}) {
        EXPECT_EQ(LeadingNumber(text), 0) << Utf8(text);
    }
}

TEST(LeadingNumberTest, ALargerNumberIsTheLimit)
{
    EXPECT_EQ(LeadingNumber(L"2147483648"), 2147483647);
    EXPECT_EQ(LeadingNumber(L"-2147483648"), -2147483647 - 1);
    EXPECT_EQ(LeadingNumber(L"-99999999999999999999"), -2147483647 - 1);
}
