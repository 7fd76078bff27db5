// The fonts that the labels of a thread share: those of a page show the same few, and each would make its own.
#pragma once

#include "slimhtml/html_layout.h"
#include "window/drawing_handles.h"

#include <array>
#include <memory>
#include <vector>

struct LabelFont
{
    static constexpr int firstMeasured = 0x20;
    static constexpr int measuredCount = 0x7F - firstMeasured;

    LOGFONTW description = {};
    CFontOwner font;
    HtmlFontMetrics metrics;
    std::array<int, measuredCount> widths{}; // of the characters that most words consist of
};

class CLabelFontPool
{
public:
    // The thread's pool. It lives as long as someone holds it.
    [[nodiscard]] static std::shared_ptr<CLabelFontPool> OfThisThread();

    CLabelFontPool();
    ~CLabelFontPool();
    CLabelFontPool(const CLabelFontPool&) = delete;
    CLabelFontPool& operator=(const CLabelFontPool&) = delete;

    // The font of that description, whose face name is filled up with zeros; made when no label has it.
    [[nodiscard]] std::shared_ptr<const LabelFont> Get(const LOGFONTW& description);
    // A device context to measure with, the font selected.
    [[nodiscard]] HDC DcWith(const LabelFont& font);

private:
    void DropUnused();

    CDcOwner m_dc;
    HGDIOBJ m_formerFont;
    const LabelFont* m_selected = nullptr;
    std::vector<std::shared_ptr<const LabelFont>> m_fonts;
};
