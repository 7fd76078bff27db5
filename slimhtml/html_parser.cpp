#include "slimhtml/html_parser.h"

#include "slimhtml/html_colors.h"
#include "slimhtml/html_elements.h"

#include <algorithm>
#include <utility>

namespace {

// Elements within more than so many others change nothing; their text shows.
constexpr std::size_t deepest = 128;

struct OpenElement
{
    const HtmlElementRow* row;
    HtmlToken tag;
    HtmlStyle style; // within it
    int nextNumber;  // of an ordered list; 0 for one with bullets
    int link;        // made by this element
};

class CParser
{
public:
    CParser(const wchar_t* text, int length) : m_tokens(text, length) {}

    HtmlDocument Parse()
    {
        for (HtmlToken token = m_tokens.Next(); token.kind != HtmlTokenKind::End; token = m_tokens.Next()) {
            if (token.kind == HtmlTokenKind::Text) {
                m_builder.AppendText(token.text, token.length, Style());
            } else if (const HtmlElementRow* row = FindHtmlElement(token.name)) {
                token.kind == HtmlTokenKind::StartTag ? OnStartTag(*row, token) : OnEndTag(*row);
            }
        }
        CloseDownTo(0);
        m_builder.EndBlock(0);
        return std::move(m_builder.Document());
    }

private:
    HtmlStyle Style() const { return m_open.empty() ? HtmlStyle() : m_open.back().style; }

    void OnStartTag(const HtmlElementRow& row, const HtmlToken& tag)
    {
        switch (row.element) {
        case HtmlElement::Skipped:
            m_tokens.SkipElement(tag.name);
            return;
        case HtmlElement::Break:
            m_builder.AppendLineBreak(Style());
            return;
        case HtmlElement::Rule:
            m_builder.AppendRule(Style());
            return;
        case HtmlElement::Image:
            OnImage(tag);
            return;
        case HtmlElement::Body:
            OnBody(tag);
            return;
        case HtmlElement::Anchor:
            CloseNearest(HtmlElement::Anchor, false);
            break;
        case HtmlElement::Cell:
            m_builder.AppendText(L" ", 1, Style());
            break;
        case HtmlElement::Item:
            CloseNearest(HtmlElement::Item, true);
            break;
        default:
            break;
        }
        if (row.bBlock) {
            CloseNearest(HtmlElement::Paragraph, true);
            m_builder.EndBlock(SpaceAround(row));
        }
        Open(row, tag);
        if (row.element == HtmlElement::Item) {
            m_builder.SetMarker(NextMarker(), Style());
        }
    }

    void OnEndTag(const HtmlElementRow& row)
    {
        if (row.element == HtmlElement::Break) {
            m_builder.AppendLineBreak(Style()); // "</br>" is a common slip
            return;
        }
        const auto found = std::find_if(m_open.rbegin(), m_open.rend(),
                                        [&row](const OpenElement& open) { return open.row == &row; });
        if (found == m_open.rend()) {
            return;
        }
        Close(static_cast<std::size_t>(m_open.rend() - found) - 1);
    }

    void OnImage(const HtmlToken& tag)
    {
        HtmlImage image;
        if (const CString* source = tag.FindAttribute(L"src")) {
            image.source = *source;
        }
        image.width = std::max(0, ParseHtmlNumber(tag.FindAttribute(L"width"), 0));
        image.height = std::max(0, ParseHtmlNumber(tag.FindAttribute(L"height"), 0));
        const CString* alternative = tag.FindAttribute(L"alt");
        m_builder.AppendImage(image, alternative ? *alternative : CString(), Style());
    }

    void OnBody(const HtmlToken& tag)
    {
        HtmlDocument& document = m_builder.Document();
        const auto read = [&tag](const wchar_t* name, HtmlColor& color) {
            if (const CString* value = tag.FindAttribute(name)) {
                color = ParseHtmlColor(*value);
            }
        };
        read(L"bgcolor", document.background);
        read(L"text", document.textColor);
        read(L"link", document.linkColor);
        const auto readMargin = [&tag](const wchar_t* name, int& margin) {
            margin = std::max(noHtmlMargin, ParseHtmlNumber(tag.FindAttribute(name), margin));
        };
        readMargin(L"leftmargin", document.marginHorizontal);
        readMargin(L"topmargin", document.marginVertical);
    }

    // A list within a list stands close to its item.
    int SpaceAround(const HtmlElementRow& row) const
    {
        const bool bNested = row.element == HtmlElement::List &&
                             std::any_of(m_open.begin(), m_open.end(), [](const OpenElement& open) {
                                 return open.row->element == HtmlElement::List;
                             });
        return bNested ? 0 : row.spacePermille;
    }

    CString NextMarker()
    {
        const auto list = std::find_if(m_open.rbegin(), m_open.rend(), [](const OpenElement& open) {
            return open.row->element == HtmlElement::List;
        });
        if (list != m_open.rend() && list->nextNumber != 0) {
            return NumberText(list->nextNumber++) + L".";
        }
        const auto depth = std::count_if(m_open.begin(), m_open.end(), [](const OpenElement& open) {
            return open.row->element == HtmlElement::List;
        });
        return depth % 2 == 0 && depth > 0 ? L"\u2013" : L"\u2022";
    }

    void Open(const HtmlElementRow& row, const HtmlToken& tag)
    {
        if (m_open.size() >= deepest) {
            return;
        }
        OpenElement open{&row, tag, StyleWithin(Style(), row, tag, m_builder), 0, -1};
        open.link = row.element == HtmlElement::Anchor ? open.style.link : -1;
        if (tag.name == L"ol") {
            open.nextNumber = std::max(1, ParseHtmlNumber(tag.FindAttribute(L"start"), 1));
        }
        m_open.push_back(open);
    }

    // Closes the innermost open element of a kind; within the innermost list alone if asked to.
    void CloseNearest(HtmlElement element, bool withinList)
    {
        for (std::size_t index = m_open.size(); index-- > 0;) {
            const HtmlElement open = m_open[index].row->element;
            if (open == element) {
                Close(index);
                return;
            }
            if (withinList && (open == HtmlElement::List || open == HtmlElement::Cell)) {
                return;
            }
        }
    }

    // A block takes along what was left open within it, unless that is a paragraph: "<p><b>one</p><p>two" stays bold.
    // Other elements go alone, so that "<b><i>one</b>two</i>" keeps its second word italic.
    void Close(std::size_t index)
    {
        const HtmlElementRow& row = *m_open[index].row;
        if (row.bBlock && row.element != HtmlElement::Paragraph) {
            CloseDownTo(index);
            return;
        }
        EndBlockOf(m_open[index]);
        m_open.erase(m_open.begin() + static_cast<std::ptrdiff_t>(index));
        for (; index < m_open.size(); ++index) {
            Restyle(index);
        }
    }

    void CloseDownTo(std::size_t count)
    {
        while (m_open.size() > count) {
            EndBlockOf(m_open.back());
            m_open.pop_back();
        }
    }

    void EndBlockOf(const OpenElement& open)
    {
        if (!open.row->bBlock) {
            return;
        }
        if (open.row->element == HtmlElement::Item) {
            m_builder.FlushMarker(open.style);
        }
        m_builder.EndBlock(open.row->element == HtmlElement::List && open.style.indentSteps > 1
                               ? 0
                               : open.row->spacePermille);
    }

    // The style of an element whose outer elements changed. Its link is made only once.
    void Restyle(std::size_t index)
    {
        OpenElement& open = m_open[index];
        const HtmlStyle outer = index > 0 ? m_open[index - 1].style : HtmlStyle();
        if (open.link < 0) {
            open.style = StyleWithin(outer, *open.row, open.tag, m_builder);
            return;
        }
        open.style = outer;
        open.style.link = open.link;
        open.style.font.bUnderlined = true;
    }

    CHtmlTokenizer m_tokens;
    CHtmlBuilder m_builder;
    std::vector<OpenElement> m_open;
};

} // namespace

HtmlDocument ParseHtml(const wchar_t* text, int length)
{
    return CParser(text, std::clamp(length, 0, longestHtml)).Parse();
}
