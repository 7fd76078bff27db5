#include "slimhtml/html_colors.h"

#include "base/ascii.h"
#include "base/character.h"

#include <algorithm>

namespace {

struct NamedColor
{
    const wchar_t* name;
    HtmlColor color; // as HTML writes it, red first
};

constexpr NamedColor namedColors[] = {
    {L"black", 0x000000},     {L"silver", 0xC0C0C0},    {L"gray", 0x808080},     {L"grey", 0x808080},
    {L"white", 0xFFFFFF},     {L"maroon", 0x800000},    {L"red", 0xFF0000},      {L"purple", 0x800080},
    {L"fuchsia", 0xFF00FF},   {L"magenta", 0xFF00FF},   {L"green", 0x008000},    {L"lime", 0x00FF00},
    {L"olive", 0x808000},     {L"yellow", 0xFFFF00},    {L"navy", 0x000080},     {L"blue", 0x0000FF},
    {L"teal", 0x008080},      {L"aqua", 0x00FFFF},      {L"cyan", 0x00FFFF},     {L"orange", 0xFFA500},
    {L"brown", 0xA52A2A},     {L"gold", 0xFFD700},      {L"crimson", 0xDC143C},  {L"darkred", 0x8B0000},
    {L"darkblue", 0x00008B},  {L"darkgreen", 0x006400}, {L"darkgray", 0xA9A9A9}, {L"darkgrey", 0xA9A9A9},
    {L"lightgray", 0xD3D3D3}, {L"steelblue", 0x4682B4}, {L"indigo", 0x4B0082},   {L"lightgrey", 0xD3D3D3},
};

// Below this ratio of lightness text and background run together.
constexpr int leastContrastPermille = 1500;

HtmlColor RedLast(HtmlColor color) noexcept
{
    return (color & 0x00FF00) | (color >> 16) | ((color & 0xFF) << 16);
}

HtmlColor ParseDigits(const CString& text, int first) noexcept
{
    const int count = text.GetLength() - first;
    if (count != 3 && count != 6) {
        return noHtmlColor;
    }
    HtmlColor color = 0;
    for (int index = first; index < text.GetLength(); ++index) {
        const int digit = HexDigitValue(text[index]);
        if (digit < 0) {
            return noHtmlColor;
        }
        // A short form doubles its digits.
        color = count == 3 ? (color << 8) | (digit * 17u) : (color << 4) | static_cast<unsigned>(digit);
    }
    return RedLast(color);
}

// Perceived lightness from 0 to 255, the parts weighed as the eye does.
int Lightness(HtmlColor color) noexcept
{
    const int red = color & 0xFF;
    const int green = (color >> 8) & 0xFF;
    const int blue = (color >> 16) & 0xFF;
    return (red * 299 + green * 587 + blue * 114) / 1000;
}

} // namespace

HtmlColor ParseHtmlColor(const CString& text) noexcept
{
    for (const NamedColor& row : namedColors) {
        if (text.CompareNoCase(row.name) == 0) {
            return RedLast(row.color);
        }
    }
    return ParseDigits(text, text[0] == L'#' ? 1 : 0);
}

HtmlColor ReadableColor(HtmlColor wanted, HtmlColor background) noexcept
{
    constexpr int glare = 13; // keeps near-black from counting as far from black
    const int textLightness = Lightness(wanted) + glare;
    const int backgroundLightness = Lightness(background) + glare;
    const int ratioPermille =
        std::max(textLightness, backgroundLightness) * 1000 / std::min(textLightness, backgroundLightness);
    if (ratioPermille >= leastContrastPermille) {
        return wanted;
    }
    return backgroundLightness >= 128 ? 0x000000 : 0xFFFFFF;
}
