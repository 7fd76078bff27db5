// Helpers of the label's tests: what a page reads as, and a device on which every letter is ten pixels wide.
#pragma once

#include "slimhtml/html_layout.h"
#include "slimhtml/html_parser.h"
#include "tests/support/text.h"

#include <algorithm>

inline HtmlDocument Parse(const CString& html)
{
    return ParseHtml(html, html.GetLength());
}

inline CString PlainTextOf(const CString& html)
{
    return PlainText(Parse(html));
}

// Letters are 10 pixels wide and 20 high at the label's own size, 16 of them above the baseline.
class TenPixelLetters : public IHtmlMeasurer
{
public:
    explicit TenPixelLetters(const HtmlDocument& document) : m_document(document) {}
    virtual ~TenPixelLetters() = default;

    HtmlFontMetrics Metrics(int font) override
    {
        const int size = m_document.fonts[font].sizePermille;
        return {16 * size / 1000, 4 * size / 1000};
    }
    int TextWidth(int font, const wchar_t*, int length) override
    {
        measuredUnits += length;
        return length * 10 * m_document.fonts[font].sizePermille / 1000;
    }
    int FitText(int font, const wchar_t*, int length, int width) override
    {
        const int fits = width / std::max(1, 10 * m_document.fonts[font].sizePermille / 1000);
        return std::max(0, std::min(length, fits));
    }
    bool ImageSize(int, HtmlSize& size) override
    {
        size = imageSize;
        return bHasImages;
    }

    bool bHasImages = false;
    HtmlSize imageSize = {50, 40};
    long long measuredUnits = 0;

private:
    const HtmlDocument& m_document;
};

inline HtmlLayoutOptions Wide(int width)
{
    HtmlLayoutOptions options;
    options.width = width;
    return options;
}

inline HtmlLayout LayOut(const HtmlDocument& document, const HtmlLayoutOptions& options)
{
    TenPixelLetters letters(document);
    return LayOutHtml(document, options, letters);
}

// The texts of the lines, separated by "|". A gap between two runs reads as a space.
inline CString LinesOf(const HtmlDocument& document, const HtmlLayout& layout)
{
    CString lines;
    for (const HtmlLine& line : layout.lines) {
        lines += lines.IsEmpty() ? L"" : L"|";
        for (int at = line.firstFragment; at < line.firstFragment + line.fragmentCount; ++at) {
            const HtmlFragment& fragment = layout.fragments[at];
            const HtmlFragment* before = at > line.firstFragment ? &layout.fragments[at - 1] : nullptr;
            lines += before && before->x + before->width < fragment.x ? L" " : L"";
            lines.Append(document.text.data() + fragment.text, fragment.length);
        }
    }
    return lines;
}

inline CString LinesOf(const CString& html, int width)
{
    const HtmlDocument document = Parse(html);
    return LinesOf(document, LayOut(document, Wide(width)));
}
