// The elements that a label knows, and what each of them changes about the text within it.
#pragma once

#include "slimhtml/html_builder.h"
#include "slimhtml/html_tokenizer.h"

enum class HtmlElement
{
    Unknown,
    Anchor,
    Body,
    Break,
    Cell,
    Definition,
    Font,
    Formatting, // changes the style and nothing else
    Head,       // h1 to h6
    Image,
    Item,
    List,
    Paragraph,
    Preformatted,
    Quotation,
    Rule,
    Section, // div, center, a table's row: a block without space around it
    Skipped  // its content is no text
};

struct HtmlElementRow
{
    const wchar_t* name;
    HtmlElement element;
    bool bBlock;
    int spacePermille; // above and below a block, of the label's line height
};

// The row of a lower-case name; null when the element is unknown.
[[nodiscard]] const HtmlElementRow* FindHtmlElement(const CString& name) noexcept;

// The style within that element, opened within `outer`.
[[nodiscard]] HtmlStyle StyleWithin(const HtmlStyle& outer, const HtmlElementRow& row, const HtmlToken& tag,
                                    CHtmlBuilder& builder);

// A whole number at the start of the text; `fallback` when there is none. Clamped to plus or minus 100000.
[[nodiscard]] int ParseHtmlNumber(const CString* text, int fallback) noexcept;
