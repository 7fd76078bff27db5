#include "controls/background_image.h"

#include "window/window.h"

#include <objidl.h>

#include <gdiplus.h>

using namespace Gdiplus;

namespace {

// A brush whose pattern is the image as the top-level window shows it, shifted to the control's place.
void FillFromImage(Graphics& target, const CWindow& control, Image& image, const RECT& client)
{
    const CWindow top(control.GetTopLevelWindow());
    const RECT topClient = top.GetClientRect();
    POINT origin = {};
    ::MapWindowPoints(control, top, &origin, 1);
    TextureBrush brush(&image);
    brush.TranslateTransform(static_cast<REAL>(-origin.x), static_cast<REAL>(-origin.y));
    brush.ScaleTransform(static_cast<REAL>(topClient.right) / static_cast<REAL>(image.GetWidth()),
                         static_cast<REAL>(topClient.bottom) / static_cast<REAL>(image.GetHeight()));
    target.FillRectangle(&brush, 0, 0, client.right, client.bottom);
}

void Darken(Graphics& target, const RECT& client, float opacity)
{
    const SolidBrush shade(Color(static_cast<BYTE>((1.0f - opacity) * 255.0f), 0, 0, 0));
    target.FillRectangle(&shade, 0, 0, client.right, client.bottom);
}

} // namespace

void PaintBackgroundImage(HWND control, HDC dc, Image& image, float opacity)
{
    const CWindow window(control);
    const RECT client = window.GetClientRect();
    if (::IsRectEmpty(&client) || image.GetWidth() == 0 || image.GetHeight() == 0) {
        return;
    }
    Bitmap bitmap(client.right, client.bottom);
    Graphics offScreen(&bitmap);
    FillFromImage(offScreen, window, image, client);
    if (opacity < 1.0f) {
        Darken(offScreen, client, opacity);
    }
    Graphics(dc).DrawImage(&bitmap, 0, 0);
}
