#include "base/character.h"

#include <windows.h>

#include <cwchar>
#include <cwctype>

wchar_t UpperCase(wchar_t character) noexcept
{
    if (character < 0x80) {
        return character >= L'a' && character <= L'z' ? static_cast<wchar_t>(character - 32) : character;
    }
    // A "text" below 0x10000 is taken as one character, whatever the C locale.
    return static_cast<wchar_t>(
        reinterpret_cast<ULONG_PTR>(CharUpperW(reinterpret_cast<LPWSTR>(static_cast<ULONG_PTR>(character)))));
}

wchar_t LowerCase(wchar_t character) noexcept
{
    if (character < 0x80) {
        return character >= L'A' && character <= L'Z' ? static_cast<wchar_t>(character + 32) : character;
    }
    return static_cast<wchar_t>(
        reinterpret_cast<ULONG_PTR>(CharLowerW(reinterpret_cast<LPWSTR>(static_cast<ULONG_PTR>(character)))));
}

bool IsSpaceCharacter(wchar_t character) noexcept
{
    return std::iswspace(character) != 0;
}
bool IsDigitCharacter(wchar_t character) noexcept
{
    return std::iswdigit(character) != 0;
}
bool IsLetterCharacter(wchar_t character) noexcept
{
    return std::iswalpha(character) != 0;
}

int CollateCharacters(wchar_t left, wchar_t right, bool ignoreCase) noexcept
{
    return ignoreCase ? _wcsnicoll(&left, &right, 1) : _wcsncoll(&left, &right, 1);
}
