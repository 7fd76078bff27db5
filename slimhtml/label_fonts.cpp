#include "slimhtml/label_fonts.h"

#include <algorithm>

void CLabelFonts::Reset(const HtmlDocument* document, HFONT controlFont, float textScale)
{
    Release();
    m_document = document;
    m_textScale = textScale > 0 ? textScale : 1;
    const HGDIOBJ font = controlFont ? static_cast<HGDIOBJ>(controlFont) : GetStockObject(DEFAULT_GUI_FONT);
    GetObjectW(font, sizeof(m_base), &m_base);
    m_dc.reset(CreateCompatibleDC(nullptr));
    m_formerFont = GetCurrentObject(m_dc.get(), OBJ_FONT);
    m_entries.resize(document->fonts.size());
}

void CLabelFonts::Release()
{
    if (m_dc) {
        SelectObject(m_dc.get(), m_formerFont);
    }
    m_entries.clear();
    m_dc.reset();
    m_selected = -1;
    m_document = nullptr;
}

HFONT CLabelFonts::Font(int index)
{
    return EntryOf(index).font.get();
}

HtmlFontMetrics CLabelFonts::Metrics(int index)
{
    return EntryOf(index).metrics;
}

int CLabelFonts::TextWidth(int index, const wchar_t* text, int length)
{
    const Entry& entry = EntryOf(index);
    int width = 0;
    for (int at = 0; at < length; ++at) {
        const int cached = text[at] - firstCached;
        if (cached < 0 || cached >= cachedCount) {
            // Letters that join or stand on one another are wide only as a whole.
            Select(index);
            SIZE size = {};
            GetTextExtentPoint32W(m_dc.get(), text, length, &size);
            return size.cx;
        }
        width += entry.widths[cached];
    }
    return width;
}

int CLabelFonts::FitText(int index, const wchar_t* text, int length, int width)
{
    Select(index);
    int count = 0;
    SIZE size = {};
    GetTextExtentExPointW(m_dc.get(), text, length, std::max(width, 0), &count, nullptr, &size);
    return count;
}

CLabelFonts::Entry& CLabelFonts::EntryOf(int index)
{
    std::unique_ptr<Entry>& slot = m_entries[index];
    if (!slot) {
        auto entry = std::make_unique<Entry>();
        const LOGFONTW description = Describe(m_document->fonts[index]);
        entry->font.reset(CreateFontIndirectW(&description));
        const HGDIOBJ former = SelectObject(m_dc.get(), entry->font.get());
        TEXTMETRICW metrics = {};
        GetTextMetricsW(m_dc.get(), &metrics);
        entry->metrics = {metrics.tmAscent, metrics.tmDescent};
        GetCharWidth32W(m_dc.get(), firstCached, firstCached + cachedCount - 1, entry->widths.data());
        SelectObject(m_dc.get(), former);
        slot = std::move(entry);
    }
    return *slot;
}

LOGFONTW CLabelFonts::Describe(const HtmlFont& font) const
{
    LOGFONTW description = m_base;
    const double factor = font.sizePermille / 1000.0 * m_textScale;
    const double height = (m_base.lfHeight != 0 ? m_base.lfHeight : -11) * factor;
    description.lfHeight = static_cast<LONG>(height < 0 ? height - 0.5 : height + 0.5);
    description.lfWidth = 0;
    description.lfWeight = font.bBold ? FW_BOLD : m_base.lfWeight;
    description.lfItalic = font.bItalic || m_base.lfItalic;
    description.lfUnderline = font.bUnderlined || m_base.lfUnderline;
    description.lfStrikeOut = font.bStruckOut || m_base.lfStrikeOut;
    const wchar_t* face = font.bMonospaced ? L"Courier New" : m_base.lfFaceName;
    if (font.bMonospaced) {
        description.lfPitchAndFamily = FIXED_PITCH | FF_MODERN;
    }
    if (font.face >= 0) {
        face = m_document->faces[font.face];
    }
    lstrcpynW(description.lfFaceName, face, LF_FACESIZE);
    return description;
}

void CLabelFonts::Select(int index)
{
    if (m_selected != index) {
        SelectObject(m_dc.get(), Font(index));
        m_selected = index;
    }
}
