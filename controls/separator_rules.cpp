#include "controls/separator_rules.h"

namespace {

int Inset(int extent, float lengthRatio)
{
    return static_cast<int>((1.0f - lengthRatio) * static_cast<float>(extent) / 2.0f);
}

// The middle of a pen that touches the near edge, the far edge, or neither.
int LinePosition(int extent, bool atStart, bool atEnd, int penWidth)
{
    if (atStart) {
        return penWidth / 2;
    }
    if (atEnd) {
        return extent - (penWidth + 1) / 2;
    }
    return extent / 2;
}

} // namespace

SeparatorLine VerticalLine(int width, int height, int alignment, int penWidth, float lengthRatio)
{
    const int side = alignment & 0xF0;
    const int x = LinePosition(width, side == SEPARATOR_LEFT, side == SEPARATOR_RIGHT, penWidth);
    const int inset = Inset(height, lengthRatio);
    return {x, inset, x, height - inset};
}

SeparatorLine HorizontalLine(int width, int height, int alignment, int penWidth, float lengthRatio)
{
    const int side = alignment & 0x0F;
    const int y = LinePosition(height, side == SEPARATOR_TOP, side == SEPARATOR_BOTTOM, penWidth);
    const int inset = Inset(width, lengthRatio);
    return {inset, y, width - inset, y};
}
