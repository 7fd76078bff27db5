#include "window/window.h"

#include <algorithm>

CString ReadWindowText(HWND window)
{
    CString text;
    int capacity = static_cast<int>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0));
    for (;;) {
        // One unit more than announced: a full buffer means that the text grew between the two calls.
        ++capacity;
        wchar_t* buffer = text.GetBuffer(capacity);
        const int length = static_cast<int>(SendMessageW(
            window, WM_GETTEXT, static_cast<WPARAM>(capacity) + 1, reinterpret_cast<LPARAM>(buffer)));
        text.ReleaseBuffer(std::clamp(length, 0, capacity));
        if (length < capacity) {
            return text;
        }
        capacity *= 2;
    }
}

POINT CentredPosition(SIZE size, const RECT& anchor, const RECT& area) noexcept
{
    POINT position = {(anchor.left + anchor.right - size.cx) / 2, (anchor.top + anchor.bottom - size.cy) / 2};
    position.x = std::max(std::min(position.x, area.right - size.cx), area.left);
    position.y = std::max(std::min(position.y, area.bottom - size.cy), area.top);
    return position;
}

RECT WorkAreaOf(HWND window) noexcept
{
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor);
    return monitor.rcWork;
}

BOOL CWindow::DestroyWindow() noexcept
{
    if (!::DestroyWindow(m_hWnd)) {
        return FALSE;
    }
    m_hWnd = nullptr;
    return TRUE;
}

namespace {

SIZE SizeOf(const RECT& rectangle) noexcept
{
    return {rectangle.right - rectangle.left, rectangle.bottom - rectangle.top};
}

} // namespace

BOOL CWindow::ModifyStyle(DWORD remove, DWORD add, UINT positionFlags) const noexcept
{
    const DWORD old = GetStyle();
    const DWORD bits = (old & ~remove) | add;
    if (bits == old) {
        return FALSE;
    }
    SetWindowLongPtrW(m_hWnd, GWL_STYLE, static_cast<LONG_PTR>(bits));
    if (positionFlags != 0) {
        SetWindowPos(nullptr, 0, 0, 0, 0,
                     SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | positionFlags);
    }
    return TRUE;
}

RECT CWindow::GetWindowRect() const noexcept
{
    RECT rectangle = {};
    ::GetWindowRect(m_hWnd, &rectangle);
    return rectangle;
}

RECT CWindow::GetClientRect() const noexcept
{
    RECT rectangle = {};
    ::GetClientRect(m_hWnd, &rectangle);
    return rectangle;
}

RECT CWindow::GetRectInParent() const noexcept
{
    RECT rectangle = GetWindowRect();
    // Both corners in one call, so that a mirrored parent gives an upright rectangle.
    MapWindowPoints(nullptr, ::GetAncestor(m_hWnd, GA_PARENT), reinterpret_cast<POINT*>(&rectangle), 2);
    return rectangle;
}

BOOL CWindow::MoveWindow(const RECT& rectangle, BOOL repaint) const noexcept
{
    const SIZE size = SizeOf(rectangle);
    return ::MoveWindow(m_hWnd, rectangle.left, rectangle.top, size.cx, size.cy, repaint);
}

BOOL CWindow::ScreenToClient(RECT* rectangle) const noexcept
{
    SetLastError(ERROR_SUCCESS);
    return MapWindowPoints(nullptr, m_hWnd, reinterpret_cast<POINT*>(rectangle), 2) != 0 ||
           GetLastError() == ERROR_SUCCESS;
}

BOOL CWindow::CenterWindow(HWND anchor) const noexcept
{
    const SIZE size = SizeOf(GetWindowRect());
    RECT anchorRectangle = {};
    RECT area = {};
    if ((GetStyle() & WS_CHILD) != 0) {
        const HWND parent = GetParent();
        ::GetClientRect(parent, &area);
        anchorRectangle = area;
        if (anchor) {
            ::GetClientRect(anchor, &anchorRectangle);
            MapWindowPoints(anchor, parent, reinterpret_cast<POINT*>(&anchorRectangle), 2);
        }
    } else {
        const HWND owner = anchor ? anchor : ::GetWindow(m_hWnd, GW_OWNER);
        const bool ownerIsSeen = owner && ::IsWindowVisible(owner) && !::IsIconic(owner);
        area = WorkAreaOf(ownerIsSeen ? owner : m_hWnd);
        anchorRectangle = ownerIsSeen ? CWindow(owner).GetWindowRect() : area;
    }
    const POINT position = CentredPosition(size, anchorRectangle, area);
    return SetWindowPos(nullptr, position.x, position.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}
