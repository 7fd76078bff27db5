// The host's background image behind a control.
#pragma once

#include <windows.h>

namespace Gdiplus {
class Image;
}

// Draws the control's part of the image that lies, stretched, under all of the top-level window's client area. Below an
// opacity of 1.0 it is darkened by that much.
void PaintBackgroundImage(HWND control, HDC dc, Gdiplus::Image& image, float opacity);
