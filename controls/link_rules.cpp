#include "controls/link_rules.h"

namespace {

// A decimal number up to 255 at `index`; moves `index` behind it.
bool ParseColourPart(const CString& text, int& index, std::uint32_t& part)
{
    const int first = index;
    part = 0;
    while (text[index] >= L'0' && text[index] <= L'9' && part <= 255)
        part = part * 10 + static_cast<std::uint32_t>(text[index++] - L'0');
    return index > first && part <= 255;
}

} // namespace

LinkLabel SplitLinkLabel(const CString& label)
{
    const CString openTag(L"<A>");
    const CString closeTag(L"</A>");
    CString upper(label);
    upper.MakeUpper();
    const int open = upper.Find(openTag);
    const int close = open < 0 ? -1 : upper.Find(closeTag, open + openTag.GetLength());
    if (close < 0)
        return {CString(), label, CString(), false};
    const int linkStart = open + openTag.GetLength();
    return {label.Left(open), label.Mid(linkStart, close - linkStart),
            label.Mid(close + closeTag.GetLength()), true};
}

bool ParseColour(const CString& text, std::uint32_t& colour)
{
    std::uint32_t parts[3] = {};
    int index = 0;
    for (int number = 0; number < 3; ++number) {
        if (number > 0 && text[index++] != L',')
            return false;
        if (!ParseColourPart(text, index, parts[number]))
            return false;
    }
    if (index != text.GetLength())
        return false;
    colour = parts[0] | parts[1] << 8 | parts[2] << 16;
    return true;
}

std::uint32_t LinkColour(bool hasTags, bool visited, std::uint32_t paintA, std::uint32_t paintB)
{
    return hasTags != visited ? paintA : paintB;
}
