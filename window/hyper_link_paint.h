// Measuring and painting a link's label, and the browser's colours.
#pragma once

#include "window/hyper_link_rules.h"

#include <windows.h>

// Where the three parts of a label lie in the client area. A label without tags is all link.
struct LinkLayout
{
    RECT before = {};
    RECT link = {};
    RECT after = {};
};

struct LinkFonts
{
    HFONT normal = nullptr; // both borrowed
    HFONT link = nullptr;
};

// The DrawText format of a link in a static control of that style.
UINT LinkTextFormat(DWORD staticStyle, bool singleLine) noexcept;

// The parts of a tagged label stand in one line, one right after the other. A label that is all link wraps as the
// format says.
LinkLayout MeasureLink(HDC dc, const TaggedLabel& label, const LinkFonts& fonts, const RECT& client,
                       UINT format);

// Draws the link's text in the colour and the parts around it in the device context's own text colour.
void PaintLink(HDC dc, const TaggedLabel& label, const LinkFonts& fonts, const LinkLayout& layout,
               COLORREF linkColor, UINT format);

// The link font for a label's font. Empty when the font can't be made.
HFONT MakeLinkFont(HFONT font, bool underlined, bool bold) noexcept;

// Reads the browser's colours of links; a colour that isn't set, or not in the form "r,g,b", stays.
void ReadBrowserLinkColors(COLORREF& link, COLORREF& visited);
