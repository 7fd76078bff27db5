// The answers of builds without Windows, for the sanitizers and fuzzers. Characters go by value, so the C library's
// wider wide character does no harm here.
#include "base/character.h"

#include <cwctype>

wchar_t UpperCase(wchar_t character) noexcept
{
    return static_cast<wchar_t>(std::towupper(character));
}
wchar_t LowerCase(wchar_t character) noexcept
{
    return static_cast<wchar_t>(std::towlower(character));
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
    return ignoreCase ? UpperCase(left) - UpperCase(right) : left - right;
}
