#include "base/number_text.h"

#include "base/ascii.h"
#include "base/character.h"

#include <algorithm>
#include <limits>

std::uint64_t ReadDigits(const CString& text, int& index, std::uint64_t most) noexcept
{
    std::uint64_t number = 0;
    for (; IsAsciiDigit(text[index]); ++index) {
        const auto digit = static_cast<std::uint64_t>(text[index] - L'0');
        const bool fits = number <= most && digit <= most && number <= (most - digit) / 10;
        number = fits ? number * 10 + digit : most + 1;
    }
    return number;
}

std::optional<long long> ReadWholeNumber(const CString& text, long long least, long long most) noexcept
{
    const bool isNegative = least < 0 && text[0] == L'-';
    const int first = isNegative ? 1 : 0;
    const auto limit =
        isNegative ? 0 - static_cast<std::uint64_t>(least) : static_cast<std::uint64_t>(std::max(most, 0ll));
    int index = first;
    const std::uint64_t size = ReadDigits(text, index, limit);
    if (index == first || index != text.GetLength() || size > limit) {
        return std::nullopt;
    }
    const auto number = static_cast<long long>(isNegative ? 0 - size : size);
    return number < least || number > most ? std::nullopt : std::optional(number);
}

int LeadingNumber(const CString& text) noexcept
{
    constexpr std::uint64_t LARGEST = std::numeric_limits<int>::max();
    int index = 0;
    while (IsSpaceCharacter(text[index])) {
        ++index;
    }
    const bool isNegative = text[index] == L'-';
    if (isNegative || text[index] == L'+') {
        ++index;
    }
    const std::uint64_t most = isNegative ? LARGEST + 1 : LARGEST;
    const std::uint64_t size = std::min(ReadDigits(text, index, most), most);
    return static_cast<int>(isNegative ? 0 - size : size);
}

std::optional<std::uint32_t> ReadHexDigits(const CString& text, int index, int count) noexcept
{
    if (text.GetLength() - index < count) {
        return std::nullopt;
    }
    std::uint32_t value = 0;
    for (int place = index; place < index + count; ++place) {
        const int digit = HexDigitValue(text[place]);
        if (digit < 0) {
            return std::nullopt;
        }
        value = value << 4 | static_cast<std::uint32_t>(digit);
    }
    return value;
}

CString HexText(std::uint64_t value, int digits, HexLetters letters)
{
    const wchar_t* const set = letters == HexLetters::Small ? L"0123456789abcdef" : L"0123456789ABCDEF";
    constexpr int MOST_DIGITS = 16;
    wchar_t text[MOST_DIGITS];
    int start = MOST_DIGITS;
    for (; start > 0 && (value != 0 || MOST_DIGITS - start < digits); value >>= 4) {
        text[--start] = set[value & 0xF];
    }
    return CString(text + start, MOST_DIGITS - start);
}
