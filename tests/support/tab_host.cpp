#include "tests/support/tab_host.h"

#include "include/navigation.h"

#include <gtest/gtest.h>

namespace {

constexpr wchar_t FRAME_CLASS[] = L"RolloutTestTabFrame";
constexpr wchar_t PANE_CLASS[] = L"RolloutTestTabPane";

void Register(const wchar_t* name, WNDPROC procedure)
{
    WNDCLASSEXW windowClass = {};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = procedure;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_3DFACE + 1);
    windowClass.lpszClassName = name;
    RegisterClassExW(&windowClass);
}

void RegisterOnce(WNDPROC frame, WNDPROC pane)
{
    static const bool done = (Register(FRAME_CLASS, frame), Register(PANE_CLASS, pane), true);
    static_cast<void>(done);
}

bool AsksForTab(UINT message)
{
    return message == PAGE_MESSAGE_PREVIOUS_TAB || message == PAGE_MESSAGE_NEXT_TAB;
}

// Binds the object that the window is made with to it.
CTabHost* HostOf(HWND window, UINT message, LPARAM lParam)
{
    if (message == WM_NCCREATE) {
        const auto* creation = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(creation->lpCreateParams));
    }
    return reinterpret_cast<CTabHost*>(GetWindowLongPtrW(window, GWLP_USERDATA));
}

} // namespace

CTabHost::CTabHost()
{
    RegisterOnce(FrameProcedure, PaneProcedure);
    const HINSTANCE instance = GetModuleHandleW(nullptr);
    const auto scaled = [](int pixels) { return MulDiv(pixels, static_cast<int>(GetDpiForSystem()), 96); };
    m_window = CreateWindowExW(WS_EX_CONTROLPARENT, FRAME_CLASS, L"Tabs", WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                               50, 50, scaled(600), scaled(520), nullptr, nullptr, instance, this);
    m_pane = CreateWindowExW(WS_EX_CONTROLPARENT, PANE_CLASS, L"", WS_CHILD | WS_VISIBLE, 0, 0, scaled(580),
                             scaled(480), m_window, nullptr, instance, this);
}

CTabHost::~CTabHost()
{
    if (m_window) {
        DestroyWindow(m_window);
    }
}

HWND CTabHost::Open(TabFunction page, PageContext& context)
{
    m_asked.clear();
    context.hParent = m_pane;
    context.hFrame = m_window;
    m_page = page(&context);
    ShowWindow(m_page.hWnd, SW_SHOW);
    return m_page.hWnd;
}

void CTabHost::Close()
{
    DestroyWindow(m_page.hWnd);
    m_page = CTabPage();
}

UINT CTabHost::Run()
{
    m_bRunning = true;
    MSG message;
    while (m_asked.empty() && GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (!m_page.PreTranslateMessage(&message)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
    m_bRunning = false;
    return m_asked.empty() ? 0 : m_asked.back();
}

LRESULT CALLBACK CTabHost::PaneProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    CTabHost* host = HostOf(window, message, lParam);
    if (AsksForTab(message)) {
        host->m_asked.push_back(message);
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

LRESULT CALLBACK CTabHost::FrameProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    CTabHost* host = HostOf(window, message, lParam);
    if (AsksForTab(message)) {
        ADD_FAILURE() << "the page asked the frame for a tab, and not its parent";
    }
    if (message == WM_DESTROY) {
        // Gone before its time: a script that failed closes all windows.
        if (host->m_bRunning) {
            PostQuitMessage(0);
        }
        host->m_window = nullptr;
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}
