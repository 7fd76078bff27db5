// Where a separator's lines go.
#pragma once

// Bits of the orientation; both may be set.
inline constexpr int SEPARATOR_VERTICAL = 1;
inline constexpr int SEPARATOR_HORIZONTAL = 2;

// Alignment: the high nibble places the vertical line, the low nibble the horizontal one; all else is the middle.
inline constexpr int SEPARATOR_LEFT = 16;
inline constexpr int SEPARATOR_CENTRE = 32;
inline constexpr int SEPARATOR_RIGHT = 64;
inline constexpr int SEPARATOR_TOP = 1;
inline constexpr int SEPARATOR_BOTTOM = 3;

// A line in client pixels, both ends given.
struct SeparatorLine
{
    int x1 = 0;
    int y1 = 0;
    int x2 = 0;
    int y2 = 0;

    bool operator==(const SeparatorLine&) const = default;
};

// The line in a client area that starts at 0, 0. `lengthRatio` is the share of the extent that it covers; what is left
// lies half at each end.
[[nodiscard]] SeparatorLine VerticalLine(int width, int height, int alignment, int penWidth,
                                         float lengthRatio);
[[nodiscard]] SeparatorLine HorizontalLine(int width, int height, int alignment, int penWidth,
                                           float lengthRatio);
