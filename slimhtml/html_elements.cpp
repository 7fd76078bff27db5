#include "slimhtml/html_elements.h"

#include "base/number_text.h"
#include "slimhtml/html_colors.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr HtmlElementRow elements[] = {
    {L"a", HtmlElement::Anchor, false, 0},
    {L"address", HtmlElement::Section, true, 0},
    {L"article", HtmlElement::Section, true, 0},
    {L"b", HtmlElement::Formatting, false, 0},
    {L"big", HtmlElement::Formatting, false, 0},
    {L"blockquote", HtmlElement::Quotation, true, 700},
    {L"body", HtmlElement::Body, true, 0},
    {L"br", HtmlElement::Break, false, 0},
    {L"center", HtmlElement::Section, true, 0},
    {L"cite", HtmlElement::Formatting, false, 0},
    {L"code", HtmlElement::Formatting, false, 0},
    {L"dd", HtmlElement::Definition, true, 0},
    {L"del", HtmlElement::Formatting, false, 0},
    {L"div", HtmlElement::Section, true, 0},
    {L"dl", HtmlElement::Section, true, 700},
    {L"dt", HtmlElement::Section, true, 0},
    {L"em", HtmlElement::Formatting, false, 0},
    {L"font", HtmlElement::Font, false, 0},
    {L"h1", HtmlElement::Head, true, 700},
    {L"h2", HtmlElement::Head, true, 700},
    {L"h3", HtmlElement::Head, true, 700},
    {L"h4", HtmlElement::Head, true, 700},
    {L"h5", HtmlElement::Head, true, 700},
    {L"h6", HtmlElement::Head, true, 700},
    {L"hr", HtmlElement::Rule, true, 0},
    {L"i", HtmlElement::Formatting, false, 0},
    {L"img", HtmlElement::Image, false, 0},
    {L"ins", HtmlElement::Formatting, false, 0},
    {L"kbd", HtmlElement::Formatting, false, 0},
    {L"li", HtmlElement::Item, true, 0},
    {L"main", HtmlElement::Section, true, 0},
    {L"ol", HtmlElement::List, true, 700},
    {L"p", HtmlElement::Paragraph, true, 700},
    {L"pre", HtmlElement::Preformatted, true, 700},
    {L"s", HtmlElement::Formatting, false, 0},
    {L"samp", HtmlElement::Formatting, false, 0},
    {L"script", HtmlElement::Skipped, false, 0},
    {L"section", HtmlElement::Section, true, 0},
    {L"small", HtmlElement::Formatting, false, 0},
    {L"strike", HtmlElement::Formatting, false, 0},
    {L"strong", HtmlElement::Formatting, false, 0},
    {L"style", HtmlElement::Skipped, false, 0},
    {L"table", HtmlElement::Section, true, 0},
    {L"td", HtmlElement::Cell, false, 0},
    {L"th", HtmlElement::Cell, false, 0},
    {L"title", HtmlElement::Skipped, false, 0},
    {L"tr", HtmlElement::Section, true, 0},
    {L"tt", HtmlElement::Formatting, false, 0},
    {L"u", HtmlElement::Formatting, false, 0},
    {L"ul", HtmlElement::List, true, 700},
    {L"var", HtmlElement::Formatting, false, 0},
};

// Sizes 1 to 7 of a font element; 3 is the label's own.
constexpr int fontSizes[] = {750, 850, 1000, 1180, 1500, 2000, 3000};
constexpr int ownFontSize = 3;
// Sizes of h1 to h6.
constexpr int headSizes[] = {1800, 1500, 1200, 1000, 900, 850};
constexpr int smallestFont = 500;
constexpr int largestFont = 4000;
constexpr int mostIndentSteps = 12;

void ScaleFont(HtmlFont& font, int percent) noexcept
{
    font.sizePermille = std::clamp(font.sizePermille * percent / 100, smallestFont, largestFont);
}

// What each formatting element does, one line an element.
void ApplyFormatting(HtmlFont& font, const CString& name) noexcept
{
    const auto is = [&name](const wchar_t* other) { return name == other; };
    if (is(L"b") || is(L"strong")) {
        font.bBold = true;
    } else if (is(L"i") || is(L"em") || is(L"cite") || is(L"var")) {
        font.bItalic = true;
    } else if (is(L"u") || is(L"ins")) {
        font.bUnderlined = true;
    } else if (is(L"s") || is(L"strike") || is(L"del")) {
        font.bStruckOut = true;
    } else if (is(L"code") || is(L"tt") || is(L"kbd") || is(L"samp")) {
        font.bMonospaced = true;
    } else if (is(L"big")) {
        ScaleFont(font, 120);
    } else if (is(L"small")) {
        ScaleFont(font, 83);
    }
}

// "5" is a size of its own, "+1" and "-1" are steps from the label's.
int FontSize(const CString& text) noexcept
{
    const bool bRelative = text[0] == L'+' || text[0] == L'-';
    const int number = ParseHtmlNumber(&text, bRelative ? 0 : ownFontSize);
    const int size = bRelative ? ownFontSize + number : number;
    return fontSizes[std::clamp(size, 1, 7) - 1];
}

void ApplyFontElement(HtmlStyle& style, const HtmlToken& tag, CHtmlBuilder& builder)
{
    if (const CString* color = tag.FindAttribute(L"color")) {
        const HtmlColor parsed = ParseHtmlColor(*color);
        style.color = parsed != noHtmlColor ? parsed : style.color;
    }
    if (const CString* size = tag.FindAttribute(L"size"); size && !size->IsEmpty()) {
        style.font.sizePermille = FontSize(*size);
    }
    if (const CString* face = tag.FindAttribute(L"face")) {
        // Of a list of faces the first one is taken: the system finds a near one when it is missing.
        const int comma = face->Find(L',');
        CString name = comma < 0 ? *face : face->Left(comma);
        name.Trim(L" '\"");
        style.font.face = name.IsEmpty() ? style.font.face : builder.AddFace(name);
    }
}

HtmlAlign ParseAlign(const CString& text) noexcept
{
    if (text.CompareNoCase(L"center") == 0) {
        return HtmlAlign::Center;
    }
    if (text.CompareNoCase(L"right") == 0) {
        return HtmlAlign::Right;
    }
    return HtmlAlign::Left;
}

} // namespace

const HtmlElementRow* FindHtmlElement(const CString& name) noexcept
{
    const auto* found = std::lower_bound(
        std::begin(elements), std::end(elements), name,
        [](const HtmlElementRow& row, const CString& sought) { return sought.Compare(row.name) > 0; });
    return found != std::end(elements) && name == found->name ? found : nullptr;
}

HtmlStyle StyleWithin(const HtmlStyle& outer, const HtmlElementRow& row, const HtmlToken& tag,
                      CHtmlBuilder& builder)
{
    HtmlStyle style = outer;
    if (row.bBlock) {
        const CString* align = tag.FindAttribute(L"align");
        style.align = align ? ParseAlign(*align) : style.align;
    }
    switch (row.element) {
    case HtmlElement::Anchor:
        if (const CString* target = tag.FindAttribute(L"href")) {
            style.link = builder.AddLink(*target);
            style.font.bUnderlined = true;
        }
        break;
    case HtmlElement::Cell:
        style.font.bBold = style.font.bBold || tag.name == L"th";
        break;
    case HtmlElement::Definition:
    case HtmlElement::List:
    case HtmlElement::Quotation:
        style.indentSteps = std::min(style.indentSteps + 1, mostIndentSteps);
        break;
    case HtmlElement::Font:
        ApplyFontElement(style, tag, builder);
        break;
    case HtmlElement::Formatting:
        ApplyFormatting(style.font, tag.name);
        break;
    case HtmlElement::Head:
        style.font.bBold = true;
        style.font.sizePermille = headSizes[tag.name[1] - L'1'];
        break;
    case HtmlElement::Preformatted:
        style.bPreformatted = true;
        style.font.bMonospaced = true;
        break;
    case HtmlElement::Section:
        style.align = tag.name == L"center" ? HtmlAlign::Center : style.align;
        break;
    default:
        break;
    }
    return style;
}

int ParseHtmlNumber(const CString* text, int fallback) noexcept
{
    constexpr int most = 100000;
    if (!text) {
        return fallback;
    }
    int at = 0;
    while ((*text)[at] == L' ') {
        ++at;
    }
    const bool bNegative = (*text)[at] == L'-';
    at += bNegative || (*text)[at] == L'+' ? 1 : 0;
    const int first = at;
    const int number = static_cast<int>(std::min<std::uint64_t>(ReadDigits(*text, at, most), most));
    if (at == first) {
        return fallback;
    }
    return bNegative ? -number : number;
}
