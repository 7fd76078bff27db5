// The fonts of a label's document: made from the control's own font as they are needed, and measured.
#pragma once

#include "slimhtml/html_layout.h"
#include "window/drawing_handles.h"

#include <array>
#include <memory>

class CLabelFonts
{
public:
    CLabelFonts() = default;

    // Forgets all fonts and starts from the control's (null: the dialog font). The document must stay until the next
    // Reset.
    void Reset(const HtmlDocument* document, HFONT controlFont, float textScale);
    void Release();

    [[nodiscard]] HFONT Font(int index);
    [[nodiscard]] HtmlFontMetrics Metrics(int index);
    [[nodiscard]] int TextWidth(int index, const wchar_t* text, int length);
    [[nodiscard]] int FitText(int index, const wchar_t* text, int length, int width);

private:
    static constexpr int firstCached = 0x20;
    static constexpr int cachedCount = 0x7F - firstCached;

    struct Entry
    {
        CFontOwner font;
        HtmlFontMetrics metrics;
        std::array<int, cachedCount> widths{}; // of the characters that most words consist of
    };

    Entry& EntryOf(int index);
    LOGFONTW Describe(const HtmlFont& font) const;
    void Select(int index);

    const HtmlDocument* m_document = nullptr;
    LOGFONTW m_base = {};
    float m_textScale = 1;
    CDcOwner m_dc;
    HGDIOBJ m_formerFont = nullptr;
    int m_selected = -1;
    std::vector<std::unique_ptr<Entry>> m_entries;
};
