// Where a line may end within a text that has no space there.
#pragma once

// Between ideographs and kana, but not before their closing marks nor behind their opening ones; behind a hyphen
// between letters and behind a zero width space.
[[nodiscard]] bool CanBreakBetween(wchar_t before, wchar_t after) noexcept;

[[nodiscard]] inline bool IsHighSurrogate(wchar_t unit) noexcept
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

[[nodiscard]] inline bool IsLowSurrogate(wchar_t unit) noexcept
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}
