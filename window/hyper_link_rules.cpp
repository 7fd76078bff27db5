#include "window/hyper_link_rules.h"

#include "base/character.h"
#include "base/number_text.h"

namespace {

constexpr wchar_t openingTag[] = L"<A>";
constexpr wchar_t closingTag[] = L"</A>";

bool StandsAt(const CString& text, int index, const wchar_t* tag) noexcept
{
    for (; *tag != 0; ++tag, ++index) {
        if (index >= text.GetLength() || UpperCase(text[index]) != *tag) {
            return false;
        }
    }
    return true;
}

int FindTag(const CString& text, const wchar_t* tag, int start) noexcept
{
    for (int index = start; index < text.GetLength(); ++index) {
        if (StandsAt(text, index, tag)) {
            return index;
        }
    }
    return -1;
}

// Reads a number from 0 to 255 at `index` and moves behind it.
std::optional<std::uint32_t> ReadColorPart(const CString& text, int& index) noexcept
{
    constexpr std::uint64_t MOST = 255;
    const int start = index;
    const std::uint64_t number = ReadDigits(text, index, MOST);
    return index == start || number > MOST ? std::nullopt : std::optional(static_cast<std::uint32_t>(number));
}

} // namespace

std::optional<TaggedLabel> SplitTaggedLabel(const CString& label)
{
    const int opening = FindTag(label, openingTag, 0);
    if (opening < 0) {
        return std::nullopt;
    }
    const int linkStart = opening + TextLength(openingTag);
    const int closing = FindTag(label, closingTag, linkStart);
    if (closing < 0) {
        return std::nullopt;
    }
    return TaggedLabel{label.Left(opening), label.Mid(linkStart, closing - linkStart),
                       label.Mid(closing + TextLength(closingTag))};
}

std::optional<std::uint32_t> ParseColorText(const CString& text)
{
    std::uint32_t color = 0;
    int index = 0;
    for (int part = 0; part < 3; ++part) {
        if (part > 0 && text[index++] != L',') {
            return std::nullopt;
        }
        const std::optional<std::uint32_t> number = ReadColorPart(text, index);
        if (!number) {
            return std::nullopt;
        }
        color |= *number << (8 * part);
    }
    return index == text.GetLength() ? std::optional(color) : std::nullopt;
}
