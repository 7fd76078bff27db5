#include "tests/slimhtml/label_test_window.h"

#include <objidl.h>
#include <winternl.h>

#include <algorithm>
#include <cwchar>

using std::max;
using std::min;
#include <gdiplus.h>

namespace {

constexpr int buttonHeight = 24;
constexpr int gap = 4;

HWND MakeChild(HWND parent, const wchar_t* className, const wchar_t* text, DWORD style, int y, int width,
               int height, int id, HFONT font)
{
    const HWND child = CreateWindowExW(0, className, text, WS_CHILD | WS_VISIBLE | style, gap, y, width,
                                       height, parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                                       GetModuleHandleW(nullptr), nullptr);
    SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    return child;
}

CLSID PngEncoder()
{
    UINT count = 0;
    UINT bytes = 0;
    Gdiplus::GetImageEncodersSize(&count, &bytes);
    std::vector<unsigned char> buffer(bytes);
    auto* encoders = reinterpret_cast<Gdiplus::ImageCodecInfo*>(buffer.data());
    Gdiplus::GetImageEncoders(count, bytes, encoders);
    const auto* found = std::find_if(encoders, encoders + count, [](const Gdiplus::ImageCodecInfo& encoder) {
        return std::wcscmp(encoder.MimeType, L"image/png") == 0;
    });
    return found == encoders + count ? CLSID{} : found->Clsid;
}

} // namespace

LabelTestWindow::LabelTestWindow(int width, int height, const wchar_t* text)
{
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = Procedure;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.lpszClassName = L"LabelTestWindow";
    RegisterClassW(&windowClass); // fails from the second time on, which is all right
    m_font = CreateFontW(-12, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                         CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH, L"Liberation Sans");
    m_window = CreateWindowExW(WS_EX_CONTROLPARENT, windowClass.lpszClassName, L"Label test", WS_POPUP, 50,
                               50, width + 2 * gap, height + 2 * buttonHeight + 4 * gap, nullptr, nullptr,
                               windowClass.hInstance, this);
    m_before = MakeChild(m_window, L"BUTTON", L"Before", WS_TABSTOP, gap, 80, buttonHeight, beforeId, m_font);
    m_label = MakeChild(m_window, L"STATIC", text, SS_NOTIFY, 2 * gap + buttonHeight, width, height, labelId,
                        m_font);
    m_after = MakeChild(m_window, L"BUTTON", L"After", WS_TABSTOP, 3 * gap + buttonHeight + height, 80,
                        buttonHeight, afterId, m_font);
    ShowWindow(m_window, SW_SHOW);
    SetForegroundWindow(m_window);
    SetFocus(m_before);
    Pump();
}

LabelTestWindow::~LabelTestWindow()
{
    DestroyWindow(m_window);
    DeleteObject(m_font);
}

LRESULT CALLBACK LabelTestWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_NCCREATE) {
        const auto* creation = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(creation->lpCreateParams));
    }
    auto* self = reinterpret_cast<LabelTestWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (message == WM_ACTIVATE && self && self->RestoreFocus(LOWORD(wParam) != WA_INACTIVE)) {
        return 0;
    }
    if (message == WM_CTLCOLORSTATIC && self) {
        return reinterpret_cast<LRESULT>(self->background ? self->background : GetStockObject(WHITE_BRUSH));
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

bool LabelTestWindow::RestoreFocus(bool active)
{
    if (!active) {
        m_lastFocus = GetFocus();
        return false;
    }
    return m_lastFocus && SetFocus(m_lastFocus);
}

RenderFormat LabelTestWindow::FrameFormat()
{
    RenderFormat format;
    format.bParentBackground = TRUE;
    format.nWrap = 1;
    format.nMarginHorizontal = 10;
    format.nMarginVertical = 10;
    return format;
}

void LabelTestWindow::Pump(CSlimHtmlCtrl* label)
{
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if ((label && label->PreTranslateMessage(&message)) || IsDialogMessageW(m_window, &message)) {
            continue;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

void LabelTestWindow::Press(WPARAM key, CSlimHtmlCtrl* label, bool shift)
{
    BYTE before[256] = {};
    GetKeyboardState(before);
    BYTE keys[256] = {};
    keys[VK_SHIFT] = shift ? 0x80 : 0;
    keys[key] = 0x80;
    SetKeyboardState(keys);
    PostMessageW(GetFocus(), WM_KEYDOWN, key, 1);
    Pump(label);
    std::fill(std::begin(before), std::end(before), BYTE{0});
    SetKeyboardState(before);
}

void LabelTestWindow::Click(int x, int y)
{
    SendMessageW(m_label, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    SendMessageW(m_label, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
}

Picture ReadPicture(HWND window)
{
    RECT client = {};
    GetClientRect(window, &client);
    Picture picture{static_cast<int>(client.right), static_cast<int>(client.bottom), {}};
    picture.pixels.resize(static_cast<std::size_t>(picture.width) * picture.height);
    UpdateWindow(window);
    const HDC dc = GetDC(window);
    const HDC memory = CreateCompatibleDC(dc);
    const HBITMAP bitmap = CreateCompatibleBitmap(dc, client.right, client.bottom);
    const HGDIOBJ former = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, client.right, client.bottom, dc, 0, 0, SRCCOPY);
    SelectObject(memory, former);
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), client.right, -client.bottom, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    GetDIBits(memory, bitmap, 0, static_cast<UINT>(client.bottom), picture.pixels.data(), &info,
              DIB_RGB_COLORS);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(window, dc);
    for (COLORREF& pixel : picture.pixels) {
        pixel = RGB((pixel >> 16) & 0xFF, (pixel >> 8) & 0xFF, pixel & 0xFF);
    }
    return picture;
}

COLORREF LabelTestWindow::Pixel(int x, int y) const
{
    const Picture picture = ReadPicture(m_label);
    return picture.pixels[static_cast<std::size_t>(y) * picture.width + x];
}

bool LabelTestWindow::Shows(COLORREF color) const
{
    const Picture picture = ReadPicture(m_label);
    return std::find(picture.pixels.begin(), picture.pixels.end(), color) != picture.pixels.end();
}

void LabelTestWindow::SavePicture(const wchar_t* name) const
{
    wchar_t folder[MAX_PATH] = {};
    if (GetEnvironmentVariableW(L"ROLLOUT_PICTURES", folder, MAX_PATH) == 0) {
        return;
    }
    RedrawWindow(m_window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    Picture picture = ReadPicture(m_window);
    for (COLORREF& pixel : picture.pixels) {
        pixel = 0xFF000000 | RGB((pixel >> 16) & 0xFF, (pixel >> 8) & 0xFF, pixel & 0xFF);
    }
    ULONG_PTR token = 0;
    const Gdiplus::GdiplusStartupInput input;
    if (Gdiplus::GdiplusStartup(&token, &input, nullptr) != Gdiplus::Ok) {
        return;
    }
    {
        Gdiplus::Bitmap bitmap(picture.width, picture.height, picture.width * 4, PixelFormat32bppARGB,
                               reinterpret_cast<BYTE*>(picture.pixels.data()));
        const CLSID encoder = PngEncoder();
        bitmap.Save(CString(folder) + L"\\" + name, &encoder, nullptr);
    }
    Gdiplus::GdiplusShutdown(token);
}

CString WindowText(HWND window)
{
    CString text;
    const int length = GetWindowTextLengthW(window);
    wchar_t* buffer = text.GetBuffer(length);
    text.ReleaseBuffer(GetWindowTextW(window, buffer, length + 1));
    return text;
}

CString FixtureFolder()
{
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    const CString program(path);
    return program.Left(program.ReverseFind(L'\\') + 1) + L"slimhtml_fixtures\\";
}

// GetGuiResources answers nothing on Wine: the entries of the process's own handle table are counted. The layout is
// that of 64-bit Windows; a test makes sure that it still holds.
int CountGdiObjects()
{
    struct Entry
    {
        void* object;
        WORD process;
        WORD count;
        WORD unique;
        BYTE type;
        BYTE flags;
        void* user;
    };
    constexpr int entryCount = 0x4000;
    constexpr int tableOffset = 0xF8;
    PROCESS_BASIC_INFORMATION information = {};
    if (NtQueryInformationProcess(GetCurrentProcess(), ProcessBasicInformation, &information,
                                  sizeof(information), nullptr) != 0) {
        return -1;
    }
    const auto* block = reinterpret_cast<const char*>(information.PebBaseAddress);
    const auto* table = *reinterpret_cast<const Entry* const*>(block + tableOffset);
    if (!table) {
        return -1;
    }
    return static_cast<int>(std::count_if(
        table, table + entryCount, [](const Entry& entry) { return entry.type != 0 && entry.unique != 0; }));
}

int RecordingNotify::OnLinkClicked(HWND, const wchar_t* target)
{
    calls.push_back(CString(L"link ") + target);
    if (onLink) {
        onLink(target);
    }
    return 0;
}

int RecordingNotify::OnReserved1(HWND, const wchar_t*)
{
    calls.emplace_back(L"reserved 1");
    return 0;
}

int RecordingNotify::OnReserved2(HWND, const wchar_t*)
{
    calls.emplace_back(L"reserved 2");
    return 0;
}

int RecordingNotify::OnKeyHandled(HWND, int, bool* handled)
{
    calls.emplace_back(*handled ? L"key, already handled" : L"key");
    *handled = bTakesKeys;
    return bTakesKeys ? 1 : 0;
}
