#include "slimhtml/html_builder.h"

#include "slimhtml/html_entities.h"

#include <algorithm>

namespace {

// A page with thousands of sizes and faces must not use the system's fonts up.
constexpr std::size_t mostFonts = 96;
constexpr std::size_t mostFaces = 16;
constexpr std::size_t mostImages = 64;

constexpr wchar_t noBreakSpace = 0xA0;
constexpr wchar_t softHyphen = 0xAD;
constexpr int tabColumns = 8;

bool IsCollapsible(wchar_t unit) noexcept
{
    return unit == L' ' || unit == L'\t' || unit == L'\n' || unit == L'\r' || unit == L'\f';
}

} // namespace

void CHtmlBuilder::AppendText(const wchar_t* text, int length, const HtmlStyle& style)
{
    for (int at = 0; at < length;) {
        const HtmlReference reference =
            text[at] == L'&' ? ReadHtmlReference(text + at, length - at) : HtmlReference();
        if (reference.length > 0) {
            AppendPoint(reference.point, style);
            at += reference.length;
        } else {
            AppendUnit(text[at++], style);
        }
    }
}

void CHtmlBuilder::AppendPoint(std::uint32_t point, const HtmlStyle& style)
{
    if (point < 0x10000) {
        AppendUnit(static_cast<wchar_t>(point), style);
        return;
    }
    AppendUnit(static_cast<wchar_t>(0xD800 + ((point - 0x10000) >> 10)), style);
    AppendUnit(static_cast<wchar_t>(0xDC00 + ((point - 0x10000) & 0x3FF)), style);
}

void CHtmlBuilder::AppendUnit(wchar_t unit, const HtmlStyle& style)
{
    if (style.bPreformatted && IsCollapsible(unit)) {
        AppendPreformatted(unit, style);
        return;
    }
    if (IsCollapsible(unit)) {
        if (m_bAfterSpace) {
            return;
        }
        unit = L' ';
    } else if (unit == 0) {
        unit = 0xFFFD;
    } else if (unit < 0x20 || unit == 0x7F || unit == softHyphen) {
        return; // nothing to be seen
    }
    OpenBlock(style);
    const int font = FontIndex(style.font);
    const HtmlRun* last = m_document.blocks.back().runCount > 0 ? &m_document.runs.back() : nullptr;
    if (!last || last->kind != HtmlRunKind::Text || last->font != font || last->color != style.color ||
        last->link != style.link) {
        NewRun(HtmlRunKind::Text, style);
    }
    m_document.text.push_back(unit);
    ++m_document.runs.back().length;
    m_bAfterSpace = unit == L' ';
    m_bAfterReturn = false;
    ++m_columns;
}

// White space of preformatted text stays: spaces that no line ends at, and line breaks.
void CHtmlBuilder::AppendPreformatted(wchar_t unit, const HtmlStyle& style)
{
    if (unit == L'\r' || unit == L'\n') {
        if (unit == L'\r' || !m_bAfterReturn) {
            AppendLineBreak(style);
        }
        m_bAfterReturn = unit == L'\r';
        return;
    }
    const int count = unit == L'\t' ? tabColumns - m_columns % tabColumns : 1;
    for (int column = 0; column < count; ++column) {
        AppendUnit(noBreakSpace, style);
    }
}

void CHtmlBuilder::AppendLineBreak(const HtmlStyle& style)
{
    OpenBlock(style);
    DropTrailingSpace();
    NewRun(HtmlRunKind::LineBreak, style);
    m_bAfterSpace = true;
    m_columns = 0;
}

void CHtmlBuilder::AppendImage(const HtmlImage& image, const CString& alternative, const HtmlStyle& style)
{
    if (m_document.images.size() >= mostImages) {
        HtmlStyle text = style;
        text.bPreformatted = false;
        for (int at = 0; at < alternative.GetLength(); ++at) {
            AppendUnit(alternative[at], text);
        }
        return;
    }
    OpenBlock(style);
    const int run = NewRun(HtmlRunKind::Image, style);
    m_document.runs[run].image = static_cast<int>(m_document.images.size());
    m_document.runs[run].length = alternative.GetLength();
    m_document.images.push_back(image);
    const wchar_t* text = alternative;
    m_document.text.insert(m_document.text.end(), text, text + alternative.GetLength());
    m_bAfterSpace = false;
}

void CHtmlBuilder::AppendRule(const HtmlStyle& style)
{
    EndBlock(500);
    OpenBlock(style).kind = HtmlBlockKind::Rule;
    EndBlock(500);
}

void CHtmlBuilder::EndBlock(int spacePermille)
{
    if (m_bBlockOpen) {
        DropTrailingSpace();
    }
    m_bBlockOpen = false;
    m_bAfterSpace = true;
    m_columns = 0;
    m_pendingSpacePermille = std::max(m_pendingSpacePermille, spacePermille);
}

void CHtmlBuilder::SetMarker(const CString& marker, const HtmlStyle& style)
{
    m_marker = marker;
    m_markerStyle = style;
}

void CHtmlBuilder::FlushMarker(const HtmlStyle& style)
{
    if (!m_marker.IsEmpty()) {
        OpenBlock(style);
    }
}

int CHtmlBuilder::AddLink(const CString& target)
{
    m_document.links.push_back(target);
    return static_cast<int>(m_document.links.size()) - 1;
}

int CHtmlBuilder::AddFace(const CString& name)
{
    auto& faces = m_document.faces;
    const auto found = std::find(faces.begin(), faces.end(), name);
    if (found == faces.end() && faces.size() >= mostFaces) {
        return -1;
    }
    const int index = static_cast<int>(found - faces.begin());
    if (found == faces.end()) {
        faces.push_back(name);
    }
    return index;
}

HtmlBlock& CHtmlBuilder::OpenBlock(const HtmlStyle& style)
{
    if (m_bBlockOpen) {
        return m_document.blocks.back();
    }
    HtmlBlock block;
    block.align = style.align;
    block.indentSteps = style.indentSteps;
    block.spaceAbovePermille = m_pendingSpacePermille;
    if (!m_marker.IsEmpty()) {
        block.marker = NewRun(HtmlRunKind::Text, m_markerStyle);
        m_document.runs.back().length = m_marker.GetLength();
        const wchar_t* text = m_marker;
        m_document.text.insert(m_document.text.end(), text, text + m_marker.GetLength());
        m_marker.Empty();
    }
    block.firstRun = static_cast<int>(m_document.runs.size());
    m_document.blocks.push_back(block);
    m_bBlockOpen = true;
    m_bAfterSpace = true;
    m_pendingSpacePermille = 0;
    return m_document.blocks.back();
}

int CHtmlBuilder::NewRun(HtmlRunKind kind, const HtmlStyle& style)
{
    HtmlRun run;
    run.kind = kind;
    run.text = static_cast<int>(m_document.text.size());
    run.font = FontIndex(style.font);
    run.color = style.color;
    run.link = style.link;
    m_document.runs.push_back(run);
    if (m_bBlockOpen) {
        ++m_document.blocks.back().runCount;
    }
    return static_cast<int>(m_document.runs.size()) - 1;
}

int CHtmlBuilder::FontIndex(const HtmlFont& font)
{
    auto& fonts = m_document.fonts;
    if (fonts[m_lastFont] == font) {
        return m_lastFont;
    }
    const auto found = std::find(fonts.begin(), fonts.end(), font);
    if (found == fonts.end() && fonts.size() >= mostFonts) {
        return 0;
    }
    m_lastFont = static_cast<int>(found - fonts.begin());
    if (found == fonts.end()) {
        fonts.push_back(font);
    }
    return m_lastFont;
}

// A space before the end of a line or block takes no place.
void CHtmlBuilder::DropTrailingSpace()
{
    HtmlBlock& block = m_document.blocks.back();
    if (block.runCount == 0) {
        return;
    }
    HtmlRun& run = m_document.runs.back();
    if (run.kind != HtmlRunKind::Text || m_document.text.back() != L' ') {
        return;
    }
    m_document.text.pop_back();
    if (--run.length == 0) {
        m_document.runs.pop_back();
        --block.runCount;
    }
}
