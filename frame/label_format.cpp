#include "frame/label_format.h"

RenderFormat BannerFormat()
{
    RenderFormat format;
    format.clrText = RGB(255, 255, 255);
    format.bParentBackground = TRUE;
    return format;
}

RenderFormat PaneFormat()
{
    RenderFormat format;
    format.bParentBackground = TRUE;
    format.nWrap = 1;
    format.nMarginHorizontal = 10;
    format.nMarginVertical = 10;
    return format;
}
