// A rectangle for rules that reckon with places without a window header.
#pragma once

// In screen pixels, right and bottom outside it.
struct ScreenRectangle
{
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
    bool operator==(const ScreenRectangle&) const = default;
};
