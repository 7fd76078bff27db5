#include "slimhtml/label_fonts.h"

#include <algorithm>
#include <optional>

namespace {

// Nothing for a letter whose width isn't known by itself.
std::optional<int> WidthOf(const LabelFont& font, wchar_t letter)
{
    const int measured = letter - LabelFont::firstMeasured;
    if (measured < 0 || measured >= LabelFont::measuredCount) {
        return std::nullopt;
    }
    return font.widths[measured];
}

} // namespace

void CLabelFonts::Reset(const HtmlDocument* document, HFONT controlFont, float textScale)
{
    Forget();
    if (!m_pool) {
        m_pool = CLabelFontPool::OfThisThread();
    }
    m_document = document;
    m_textScale = textScale > 0 ? textScale : 1;
    const HGDIOBJ font = controlFont ? static_cast<HGDIOBJ>(controlFont) : GetStockObject(DEFAULT_GUI_FONT);
    GetObjectW(font, sizeof(m_base), &m_base);
    m_fonts.resize(document->fonts.size());
}

void CLabelFonts::Forget()
{
    m_fonts.clear();
    m_document = nullptr;
}

void CLabelFonts::Release()
{
    Forget();
    m_pool.reset();
}

HFONT CLabelFonts::Font(int index)
{
    return FontOf(index).font.get();
}

HtmlFontMetrics CLabelFonts::Metrics(int index)
{
    return FontOf(index).metrics;
}

int CLabelFonts::TextWidth(int index, const wchar_t* text, int length)
{
    const LabelFont& font = FontOf(index);
    int width = 0;
    for (int at = 0; at < length; ++at) {
        const std::optional<int> letter = WidthOf(font, text[at]);
        if (!letter) {
            // Letters that join or stand on one another are wide only as a whole.
            SIZE size = {};
            GetTextExtentPoint32W(m_pool->DcWith(font), text, length, &size);
            return size.cx;
        }
        width += *letter;
    }
    return width;
}

const int* CLabelFonts::Advances(int index, const wchar_t* text, int length)
{
    const LabelFont& font = FontOf(index);
    m_advances.clear();
    for (int at = 0; at < length; ++at) {
        const std::optional<int> letter = WidthOf(font, text[at]);
        if (!letter) {
            return nullptr;
        }
        m_advances.push_back(*letter);
    }
    return m_advances.data();
}

int CLabelFonts::FitText(int index, const wchar_t* text, int length, int width)
{
    int count = 0;
    SIZE size = {};
    GetTextExtentExPointW(m_pool->DcWith(FontOf(index)), text, length, std::max(width, 0), &count, nullptr,
                          &size);
    return count;
}

const LabelFont& CLabelFonts::FontOf(int index)
{
    std::shared_ptr<const LabelFont>& slot = m_fonts[index];
    if (!slot) {
        slot = m_pool->Get(Describe(m_document->fonts[index]));
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
    std::fill(std::begin(description.lfFaceName), std::end(description.lfFaceName), L'\0');
    lstrcpynW(description.lfFaceName, face, LF_FACESIZE);
    return description;
}
