#include "slimhtml/label_font_pool.h"

#include <cstring>
#include <utility>

namespace {

// From so many fonts on, those that no label shows any more go before another one is made.
constexpr std::size_t mostUnusedFonts = 16;

} // namespace

std::shared_ptr<CLabelFontPool> CLabelFontPool::OfThisThread()
{
    static thread_local std::weak_ptr<CLabelFontPool> known;
    std::shared_ptr<CLabelFontPool> pool = known.lock();
    if (!pool) {
        pool = std::make_shared<CLabelFontPool>();
        known = pool;
    }
    return pool;
}

CLabelFontPool::CLabelFontPool()
    : m_dc(CreateCompatibleDC(nullptr)), m_formerFont(GetCurrentObject(m_dc.get(), OBJ_FONT))
{
}

CLabelFontPool::~CLabelFontPool()
{
    SelectObject(m_dc.get(), m_formerFont);
}

std::shared_ptr<const LabelFont> CLabelFontPool::Get(const LOGFONTW& description)
{
    for (const auto& font : m_fonts) {
        if (std::memcmp(&font->description, &description, sizeof description) == 0) {
            return font;
        }
    }
    DropUnused();
    auto font = std::make_shared<LabelFont>();
    font->description = description;
    font->font.reset(CreateFontIndirectW(&description));
    const HDC dc = DcWith(*font);
    TEXTMETRICW metrics = {};
    GetTextMetricsW(dc, &metrics);
    font->metrics = {metrics.tmAscent, metrics.tmDescent};
    GetCharWidth32W(dc, LabelFont::firstMeasured, LabelFont::firstMeasured + LabelFont::measuredCount - 1,
                    font->widths.data());
    m_fonts.push_back(font);
    return font;
}

HDC CLabelFontPool::DcWith(const LabelFont& font)
{
    if (m_selected != &font) {
        SelectObject(m_dc.get(), font.font.get());
        m_selected = &font;
    }
    return m_dc.get();
}

void CLabelFontPool::DropUnused()
{
    if (m_fonts.size() < mostUnusedFonts) {
        return;
    }
    SelectObject(m_dc.get(), m_formerFont);
    m_selected = nullptr;
    std::erase_if(m_fonts, [](const auto& font) { return font.use_count() == 1; });
}
