#include "automation/picture.h"

#include <objidl.h>

#include <gdiplus.h>

#include <memory>
#include <type_traits>

namespace {

struct GdiplusSession
{
    GdiplusSession()
    {
        const Gdiplus::GdiplusStartupInput input;
        started = Gdiplus::GdiplusStartup(&token, &input, nullptr) == Gdiplus::Ok;
    }
    ~GdiplusSession()
    {
        if (started)
            Gdiplus::GdiplusShutdown(token);
    }
    GdiplusSession(const GdiplusSession&) = delete;
    GdiplusSession& operator=(const GdiplusSession&) = delete;

    ULONG_PTR token = 0;
    bool started = false;
};

struct ReleaseScreen
{
    void operator()(HDC context) const { ReleaseDC(nullptr, context); }
};
struct DeleteContext
{
    void operator()(HDC context) const { DeleteDC(context); }
};
struct DeleteBitmap
{
    void operator()(HBITMAP bitmap) const { DeleteObject(bitmap); }
};
using ScreenContext = std::unique_ptr<std::remove_pointer_t<HDC>, ReleaseScreen>;
using MemoryContext = std::unique_ptr<std::remove_pointer_t<HDC>, DeleteContext>;
using Bitmap = std::unique_ptr<std::remove_pointer_t<HBITMAP>, DeleteBitmap>;

// The class id that GDI+ documents for its PNG encoder.
constexpr CLSID pngEncoder = {0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};

Bitmap CopyFromScreen(const RECT& rectangle)
{
    const int width = rectangle.right - rectangle.left;
    const int height = rectangle.bottom - rectangle.top;
    const ScreenContext screen(GetDC(nullptr));
    const MemoryContext memory(CreateCompatibleDC(screen.get()));
    Bitmap bitmap(CreateCompatibleBitmap(screen.get(), width, height));
    HGDIOBJ former = SelectObject(memory.get(), bitmap.get());
    BitBlt(memory.get(), 0, 0, width, height, screen.get(), rectangle.left, rectangle.top,
           SRCCOPY | CAPTUREBLT);
    SelectObject(memory.get(), former);
    return bitmap;
}

bool SaveRectangle(const RECT& rectangle, const wchar_t* path)
{
    const GdiplusSession session;
    if (!session.started || IsRectEmpty(&rectangle))
        return false;
    const Bitmap bitmap = CopyFromScreen(rectangle);
    Gdiplus::Bitmap image(bitmap.get(), nullptr);
    return image.Save(path, &pngEncoder, nullptr) == Gdiplus::Ok;
}

} // namespace

bool SaveWindowPicture(HWND window, const wchar_t* path)
{
    RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    RECT rectangle = {};
    return GetWindowRect(window, &rectangle) && SaveRectangle(rectangle, path);
}

bool SaveScreenPicture(const wchar_t* path)
{
    const RECT screen = {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    return SaveRectangle(screen, path);
}
