#include "tests/support/tab_host.h"

#include "include/navigation.h"

namespace {

constexpr wchar_t WINDOW_CLASS[] = L"RolloutTestTabHost";

void RegisterOnce(WNDPROC procedure)
{
    static ATOM done = 0;
    if (done) {
        return;
    }
    WNDCLASSEXW windowClass = {};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = procedure;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_3DFACE + 1);
    windowClass.lpszClassName = WINDOW_CLASS;
    done = RegisterClassExW(&windowClass);
}

} // namespace

CTabHost::CTabHost()
{
    RegisterOnce(Procedure);
    m_window = CreateWindowExW(WS_EX_CONTROLPARENT, WINDOW_CLASS, L"Tabs", WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                               50, 50, 600, 520, nullptr, nullptr, GetModuleHandleW(nullptr), this);
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
    context.hParent = m_window;
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

LRESULT CALLBACK CTabHost::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_NCCREATE) {
        const auto* creation = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(creation->lpCreateParams));
    }
    auto* host = reinterpret_cast<CTabHost*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    switch (message) {
    case PAGE_MESSAGE_PREVIOUS_TAB:
    case PAGE_MESSAGE_NEXT_TAB:
        host->m_asked.push_back(message);
        return 0;
    case WM_DESTROY:
        // Gone before its time: a script that failed closes all windows.
        if (host->m_bRunning) {
            PostQuitMessage(0);
        }
        host->m_window = nullptr;
        return 0;
    default:
        return DefWindowProcW(window, message, wParam, lParam);
    }
}
