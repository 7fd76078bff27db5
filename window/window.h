// CWindow: a borrowed window handle with the calls that pages make on windows, and ReadWindowText.
// It owns nothing: the window goes when the system or its owner destroys it.
#pragma once

#include "base/rectangle.h"
#include "base/string.h"

#include <windows.h>

// A window's text, whatever its length. Empty for no window.
CString ReadWindowText(HWND window);

// Where a window of `size` centred on `anchor` lies, moved as little as needed into `area`. A window larger than the
// area keeps its left and top edge inside.
POINT CentredPosition(SIZE size, const RECT& anchor, const RECT& area) noexcept;

// The work area of the monitor that holds most of the window.
RECT WorkAreaOf(HWND window) noexcept;

// The system's rectangle and the one of the rules.
inline ScreenRectangle ScreenRectangleOf(const RECT& rectangle) noexcept
{
    return {rectangle.left, rectangle.top, rectangle.right, rectangle.bottom};
}
inline RECT RectOf(const ScreenRectangle& rectangle) noexcept
{
    return {rectangle.left, rectangle.top, rectangle.right, rectangle.bottom};
}

class CWindow
{
public:
    explicit CWindow(HWND window = nullptr) noexcept : m_hWnd(window) {}

    HWND m_hWnd;

    operator HWND() const noexcept { return m_hWnd; }
    void Attach(HWND window) noexcept { m_hWnd = window; }
    BOOL IsWindow() const noexcept { return ::IsWindow(m_hWnd); }
    BOOL DestroyWindow() noexcept;

    // Text
    CString GetText() const { return ReadWindowText(m_hWnd); }
    BOOL SetText(const wchar_t* text) const noexcept { return ::SetWindowTextW(m_hWnd, text); }
    CString GetWindowText() const { return GetText(); }
    BOOL SetWindowText(const wchar_t* text) const noexcept { return SetText(text); }
    CString GetDlgItemText(int id) const { return ReadWindowText(GetDlgItem(id)); }
    BOOL SetDlgItemText(int id, const wchar_t* text) const noexcept
    {
        return ::SetDlgItemTextW(m_hWnd, id, text);
    }

    // Messages
    LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const noexcept
    {
        return ::SendMessageW(m_hWnd, message, wParam, lParam);
    }
    BOOL PostMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const noexcept
    {
        return ::PostMessageW(m_hWnd, message, wParam, lParam);
    }
    LRESULT SendDlgItemMessage(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const noexcept
    {
        return ::SendDlgItemMessageW(m_hWnd, id, message, wParam, lParam);
    }

    // Relatives
    HWND GetDlgItem(int id) const noexcept { return ::GetDlgItem(m_hWnd, id); }
    int GetDlgCtrlID() const noexcept { return ::GetDlgCtrlID(m_hWnd); }
    HWND GetParent() const noexcept { return ::GetParent(m_hWnd); }
    HWND GetTopLevelWindow() const noexcept { return ::GetAncestor(m_hWnd, GA_ROOT); }

    // State
    BOOL EnableWindow(BOOL enable = TRUE) const noexcept { return ::EnableWindow(m_hWnd, enable); }
    BOOL IsWindowEnabled() const noexcept { return ::IsWindowEnabled(m_hWnd); }
    BOOL ShowWindow(int command) const noexcept { return ::ShowWindow(m_hWnd, command); }
    BOOL IsWindowVisible() const noexcept { return ::IsWindowVisible(m_hWnd); }
    BOOL IsIconic() const noexcept { return ::IsIconic(m_hWnd); }
    HWND SetFocus() const noexcept { return ::SetFocus(m_hWnd); }
    HWND SetCapture() const noexcept { return ::SetCapture(m_hWnd); }
    void GotoDlgCtrl(HWND control) const noexcept
    {
        SendMessage(WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control), TRUE);
    }

    // Style bits: those of `remove` go, those of `add` come. False when nothing changed.
    BOOL ModifyStyle(DWORD remove, DWORD add, UINT positionFlags = 0) const noexcept;
    DWORD GetStyle() const noexcept { return static_cast<DWORD>(::GetWindowLongPtrW(m_hWnd, GWL_STYLE)); }
    DWORD GetExStyle() const noexcept { return static_cast<DWORD>(::GetWindowLongPtrW(m_hWnd, GWL_EXSTYLE)); }

    HFONT GetFont() const noexcept { return reinterpret_cast<HFONT>(SendMessage(WM_GETFONT)); }
    // The window borrows the font.
    void SetFont(HFONT font, BOOL redraw = TRUE) const noexcept
    {
        SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(font), MAKELPARAM(redraw, 0));
    }
    // The former icon, or null.
    HICON SetIcon(HICON icon, BOOL large = TRUE) const noexcept
    {
        return reinterpret_cast<HICON>(
            SendMessage(WM_SETICON, large ? ICON_BIG : ICON_SMALL, reinterpret_cast<LPARAM>(icon)));
    }

    // Place; an empty rectangle for no window.
    RECT GetWindowRect() const noexcept;
    RECT GetClientRect() const noexcept;
    // The window's rectangle in client coordinates of its parent (screen coordinates without one).
    RECT GetRectInParent() const noexcept;
    BOOL MoveWindow(const RECT& rectangle, BOOL repaint = TRUE) const noexcept;
    BOOL SetWindowPos(HWND after, int x, int y, int width, int height, UINT flags) const noexcept
    {
        return ::SetWindowPos(m_hWnd, after, x, y, width, height, flags);
    }
    // Centres a child in its parent, and a top-level window on `anchor`, its owner or (without a visible one) the
    // work area, in whose bounds it stays.
    BOOL CenterWindow(HWND anchor = nullptr) const noexcept;
    BOOL ScreenToClient(RECT* rectangle) const noexcept;
    BOOL ScreenToClient(POINT* point) const noexcept { return ::ScreenToClient(m_hWnd, point); }
    BOOL ClientToScreen(POINT* point) const noexcept { return ::ClientToScreen(m_hWnd, point); }

    // Drawing
    BOOL Invalidate(BOOL erase = TRUE) const noexcept { return ::InvalidateRect(m_hWnd, nullptr, erase); }
    BOOL InvalidateRect(const RECT* rectangle, BOOL erase = TRUE) const noexcept
    {
        return ::InvalidateRect(m_hWnd, rectangle, erase);
    }
    BOOL UpdateWindow() const noexcept { return ::UpdateWindow(m_hWnd); }
    void SetRedraw(BOOL redraw = TRUE) const noexcept { SendMessage(WM_SETREDRAW, redraw); }
    BOOL RedrawWindow(UINT flags = RDW_INVALIDATE | RDW_UPDATENOW | RDW_ERASE) const noexcept
    {
        return ::RedrawWindow(m_hWnd, nullptr, nullptr, flags);
    }

    UINT_PTR SetTimer(UINT_PTR id, UINT milliseconds) const noexcept
    {
        return ::SetTimer(m_hWnd, id, milliseconds, nullptr);
    }
    BOOL KillTimer(UINT_PTR id) const noexcept { return ::KillTimer(m_hWnd, id); }

    int MessageBox(const wchar_t* text, const wchar_t* title, UINT type = MB_OK) const noexcept
    {
        return ::MessageBoxW(m_hWnd, text, title, type);
    }
};
