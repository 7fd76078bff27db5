// Digits and letters of ASCII alone, as formats and identifiers count them: the answers of character.h hold for all
// scripts. No window header.
#pragma once

constexpr bool IsAsciiDigit(wchar_t character) noexcept
{
    return character >= L'0' && character <= L'9';
}

constexpr bool IsAsciiLetter(wchar_t character) noexcept
{
    return (character >= L'A' && character <= L'Z') || (character >= L'a' && character <= L'z');
}

// 0 to 15 for a hexadecimal digit in either case; -1 for any other character.
constexpr int HexDigitValue(wchar_t character) noexcept
{
    if (IsAsciiDigit(character)) {
        return character - L'0';
    }
    if (character >= L'a' && character <= L'f') {
        return character - L'a' + 10;
    }
    return character >= L'A' && character <= L'F' ? character - L'A' + 10 : -1;
}

constexpr bool IsHexDigit(wchar_t character) noexcept
{
    return HexDigitValue(character) >= 0;
}
