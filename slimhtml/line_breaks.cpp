#include "slimhtml/line_breaks.h"

#include "base/character.h"

namespace {

bool IsIdeographic(wchar_t unit) noexcept
{
    return (unit >= 0x2E80 && unit <= 0x9FFF) || (unit >= 0xF900 && unit <= 0xFAFF) ||
           (unit >= 0xFF00 && unit <= 0xFFEF);
}

bool IsIn(wchar_t unit, const wchar_t* set) noexcept
{
    while (*set != 0 && *set != unit) {
        ++set;
    }
    return *set != 0;
}

// Marks that no line begins with: closing brackets, stops, small kana, the length mark.
bool ClingsToBefore(wchar_t unit) noexcept
{
    return IsIn(unit,
                L"\u3001\u3002\uFF0C\uFF0E\u30FB\uFF1A\uFF1B\uFF1F\uFF01\u3009\u300B\u300D\u300F\u3011\u3015"
                L"\uFF09\uFF3D\uFF5D\u30FC\u3041\u3043\u3045\u3047\u3049\u3063\u3083\u3085\u3087\u30A1\u30A3"
                L"\u30A5\u30A7\u30A9\u30C3\u30E3\u30E5\u30E7,.:;!?)]}%\u201D\u2019\u2026");
}

bool ClingsToAfter(wchar_t unit) noexcept
{
    return IsIn(unit, L"\u3008\u300A\u300C\u300E\u3010\u3014\uFF08\uFF3B\uFF5B([{\u201C\u2018");
}

} // namespace

bool CanBreakBetween(wchar_t before, wchar_t after) noexcept
{
    constexpr wchar_t zeroWidthSpace = 0x200B;
    constexpr wchar_t noBreakSpace = 0xA0;
    if (before == zeroWidthSpace) {
        return true;
    }
    if (before == L'-') {
        return IsLetterCharacter(after);
    }
    if (before < 0x80 && after < 0x80) {
        return false;
    }
    if (before == noBreakSpace || after == noBreakSpace || ClingsToAfter(before) || ClingsToBefore(after)) {
        return false;
    }
    return IsIdeographic(before) || IsIdeographic(after);
}
