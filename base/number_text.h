// Numbers read from texts and written into them. No window header.
#pragma once

#include "base/string.h"

#include <cstdint>
#include <optional>

// The number that the decimal digits from `index` on make; moves `index` behind them. `most` + 1 for every larger number,
// however many digits it has; 0, with `index` unmoved, where no digit stands.
std::uint64_t ReadDigits(const CString& text, int& index, std::uint64_t most) noexcept;

// The number that the whole text is: digits, behind a "-" only where `least` is negative. Nothing for any other text and
// for a number outside of the limits.
[[nodiscard]] std::optional<long long> ReadWholeNumber(const CString& text, long long least,
                                                       long long most) noexcept;

// The number at the start of the text, behind white space and a sign, as the C library reads it: 0 where none stands, the
// limit of the type for a larger one. What follows it doesn't count.
[[nodiscard]] int LeadingNumber(const CString& text) noexcept;

// The `count` hexadecimal digits from `index` on, at most 8, in either case; nothing where fewer stand there.
[[nodiscard]] std::optional<std::uint32_t> ReadHexDigits(const CString& text, int index, int count) noexcept;

enum class HexLetters
{
    Small,
    Capital,
};
// Hexadecimal digits with zeros in front up to `digits`; a larger number has as many as it needs.
[[nodiscard]] CString HexText(std::uint64_t value, int digits = 8, HexLetters letters = HexLetters::Small);
