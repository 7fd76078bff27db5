// The fonts of a label's document: made from the control's own font as they are needed, and measured.
#pragma once

#include "slimhtml/label_font_pool.h"

#include <memory>
#include <vector>

class CLabelFonts
{
public:
    // Forgets all fonts and starts from the control's (null: the dialog font). The document must stay until the next
    // Reset or Forget.
    void Reset(const HtmlDocument* document, HFONT controlFont, float textScale);
    // Forgets the fonts of a document that goes; those that the next one needs as well are still there then.
    void Forget();
    // Leaves the pool too.
    void Release();

    [[nodiscard]] HFONT Font(int index);
    [[nodiscard]] HtmlFontMetrics Metrics(int index);
    [[nodiscard]] int TextWidth(int index, const wchar_t* text, int length);
    // The distances between the letters that TextWidth adds up, until the next call; null where it measures the text as a
    // whole.
    [[nodiscard]] const int* Advances(int index, const wchar_t* text, int length);
    [[nodiscard]] int FitText(int index, const wchar_t* text, int length, int width);

private:
    const LabelFont& FontOf(int index);
    LOGFONTW Describe(const HtmlFont& font) const;

    const HtmlDocument* m_document = nullptr;
    LOGFONTW m_base = {};
    float m_textScale = 1;
    std::shared_ptr<CLabelFontPool> m_pool;
    std::vector<std::shared_ptr<const LabelFont>> m_fonts;
    std::vector<int> m_advances;
};
