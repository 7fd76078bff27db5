#include "tests/controls/fixture.h"

#include "window/gdi.h"

CAppModule _Module;

namespace {

constexpr wchar_t WINDOW_CLASS[] = L"RolloutControlTest";
constexpr int WIDTH = 240;
constexpr int HEIGHT = 160;

} // namespace

void ControlTest::SetUp()
{
    const HINSTANCE instance = GetModuleHandleW(nullptr);
    _Module.Init(instance);
    m_ground = CreateSolidBrush(GROUND);
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = Procedure;
    windowClass.hInstance = instance;
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
    windowClass.lpszClassName = WINDOW_CLASS;
    RegisterClassW(&windowClass); // fails from the second test on: the class is there
    window = CreateWindowExW(0, WINDOW_CLASS, L"Control", WS_POPUP, 40, 40, WIDTH, HEIGHT, nullptr, nullptr,
                             instance, this);
    button = CreateWindowExW(0, L"BUTTON", L"Other", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 10, HEIGHT - 30, 80,
                             24, window, nullptr, instance, nullptr);
    ShowWindow(window, SW_SHOW);
    SetForegroundWindow(window);
    SetFocus(button);
    Paint();
}

void ControlTest::TearDown()
{
    DestroyWindow(window);
    DeleteObject(m_ground);
    _Module.Term();
}

LRESULT CALLBACK ControlTest::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_NCCREATE) {
        const auto* creation = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(creation->lpCreateParams));
    }
    auto* test = reinterpret_cast<ControlTest*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (message == WM_CTLCOLORSTATIC && test) {
        return reinterpret_cast<LRESULT>(test->m_ground);
    }
    if (message == WM_COMMAND && test) {
        test->commands.push_back(wParam);
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

HWND ControlTest::MakeStatic(const wchar_t* text, const RECT& place, DWORD style)
{
    return CreateWindowExW(0, L"STATIC", text, WS_CHILD | style, place.left, place.top,
                           place.right - place.left, place.bottom - place.top, window,
                           reinterpret_cast<HMENU>(static_cast<INT_PTR>(CONTROL)), GetModuleHandleW(nullptr),
                           nullptr);
}

void ControlTest::Paint() const
{
    RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

COLORREF ControlTest::ColorAt(HWND control, int x, int y)
{
    const CWindowDC dc(control);
    return GetPixel(dc.get(), x, y);
}

int ControlTest::CountColor(HWND control, const RECT& part, COLORREF color)
{
    const CWindowDC dc(control);
    int count = 0;
    for (int y = part.top; y < part.bottom; ++y) {
        for (int x = part.left; x < part.right; ++x) {
            count += GetPixel(dc.get(), x, y) == color;
        }
    }
    return count;
}

RECT ControlTest::ClientOf(HWND control)
{
    return CWindow(control).GetClientRect();
}
