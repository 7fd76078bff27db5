#include "automation/picture.h"

#include "window/drawing_handles.h"
#include "window/gdi.h"

#include <objidl.h>

#include <gdiplus.h>

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

// The class id that GDI+ documents for its PNG encoder.
constexpr CLSID pngEncoder = {0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};

// Of the whole window with its frame; a null window is the screen.
class CFrameDC
{
public:
    explicit CFrameDC(HWND window) noexcept : m_window(window), m_dc(GetWindowDC(window)) {}
    ~CFrameDC() { ReleaseDC(m_window, m_dc); }
    CFrameDC(const CFrameDC&) = delete;
    CFrameDC& operator=(const CFrameDC&) = delete;

    HDC get() const noexcept { return m_dc; }

private:
    HWND m_window;
    HDC m_dc;
};

CBitmapOwner CopyPixels(HWND window, const RECT& rectangle)
{
    const int width = rectangle.right - rectangle.left;
    const int height = rectangle.bottom - rectangle.top;
    const CFrameDC source(window);
    const CDcOwner memory(CreateCompatibleDC(source.get()));
    CBitmapOwner bitmap(CreateCompatibleBitmap(source.get(), width, height));
    const CSelectObject selected(memory.get(), bitmap.get());
    BitBlt(memory.get(), 0, 0, width, height, source.get(), rectangle.left, rectangle.top,
           SRCCOPY | CAPTUREBLT);
    return bitmap;
}

bool SaveRectangle(HWND window, const RECT& rectangle, const wchar_t* path)
{
    const GdiplusSession session;
    if (!session.started || IsRectEmpty(&rectangle))
        return false;
    const CBitmapOwner bitmap = CopyPixels(window, rectangle);
    Gdiplus::Bitmap image(bitmap.get(), nullptr);
    return image.Save(path, &pngEncoder, nullptr) == Gdiplus::Ok;
}

} // namespace

bool SaveWindowPicture(HWND window, const wchar_t* path)
{
    // All of it anew: what another window covered a moment ago may not have been asked to paint yet.
    RedrawWindow(window, nullptr, nullptr,
                 RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_UPDATENOW | RDW_ALLCHILDREN);
    RECT rectangle = {};
    if (!GetWindowRect(window, &rectangle)) {
        return false;
    }
    // From the window, not from the screen, where Wine shows what was just painted a moment later.
    OffsetRect(&rectangle, -rectangle.left, -rectangle.top);
    return SaveRectangle(window, rectangle, path);
}

bool SaveScreenPicture(const wchar_t* path)
{
    const RECT screen = {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    return SaveRectangle(nullptr, screen, path);
}
