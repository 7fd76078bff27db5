// Draws a label's document.
#pragma once

#include "slimhtml/html_layout.h"
#include "slimhtml/label_fonts.h"
#include "slimhtml/label_images.h"
#include "slimhtml/slim_html.h"

struct LabelPicture
{
    const HtmlDocument& document;
    const HtmlLayout& layout;
    const RenderFormat& format;
    CLabelFonts& fonts;
    const CLabelImages& images;
    int scroll = 0;             // pixels above the upper edge
    int focusedLink = -1;       // its focus rectangle is drawn
    bool bFocusedWhole = false; // the label has the focus, none of its links
};

// Draws the client area of the control, background included.
void PaintLabel(HWND control, HDC dc, const LabelPicture& picture);
// The same, through a bitmap: nothing flickers.
void PaintLabelBuffered(HWND control, HDC dc, const RECT& dirty, const LabelPicture& picture);
