#include "automation/window_finder.h"

#include <commctrl.h>

namespace {

BOOL CALLBACK AddChild(HWND window, LPARAM list)
{
    reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
    return TRUE;
}

BOOL CALLBACK AddVisibleWindow(HWND window, LPARAM list)
{
    if (IsWindowVisible(window) && WindowClass(window).CompareNoCase(TOOLTIPS_CLASSW) != 0)
        reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
    return TRUE;
}

bool HasControls(HWND window, std::initializer_list<int> ids)
{
    for (const int id : ids) {
        if (!GetDlgItem(window, id))
            return false;
    }
    return true;
}

CString DescribeWithChildren(HWND window)
{
    CString text = DescribeWindow(window);
    for (HWND child : ChildWindows(window)) {
        if (IsWindowVisible(child) && !WindowText(child).IsEmpty())
            text += L"\n        " + DescribeWindow(child);
    }
    return text;
}

} // namespace

CString WindowClass(HWND window)
{
    wchar_t name[257] = {}; // a class name has at most 256 characters
    const int length = GetClassNameW(window, name, 257);
    return CString(name, length);
}

CString WindowText(HWND window)
{
    // By message, not by GetWindowText: that gives edits of other threads as empty, and these as well.
    const int length = static_cast<int>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0));
    CString text;
    wchar_t* buffer = text.GetBuffer(length + 1);
    buffer[0] = 0;
    SendMessageW(window, WM_GETTEXT, static_cast<WPARAM>(length) + 1, reinterpret_cast<LPARAM>(buffer));
    text.ReleaseBuffer();
    return text;
}

std::vector<HWND> ChildWindows(HWND parent)
{
    std::vector<HWND> children;
    EnumChildWindows(parent, AddChild, reinterpret_cast<LPARAM>(&children));
    return children;
}

std::vector<HWND> TopLevelWindows(DWORD thread)
{
    std::vector<HWND> windows;
    EnumThreadWindows(thread ? thread : GetCurrentThreadId(), AddVisibleWindow,
                      reinterpret_cast<LPARAM>(&windows));
    return windows;
}

HWND FindWindowWithControls(std::initializer_list<int> ids)
{
    for (HWND window : TopLevelWindows()) {
        if (HasControls(window, ids))
            return window;
    }
    return nullptr;
}

HWND FindWindowOfClass(const wchar_t* className)
{
    for (HWND window : TopLevelWindows()) {
        if (WindowClass(window).CompareNoCase(className) == 0)
            return window;
    }
    return nullptr;
}

CString DescribeWindow(HWND window)
{
    if (!IsWindow(window))
        return L"no window";
    CString text = WindowClass(window);
    if (GetWindowLongW(window, GWL_STYLE) & WS_CHILD)
        text += L" " + NumberText(GetDlgCtrlID(window));
    text += L" \"" + WindowText(window) + L"\"";
    if (!IsWindowVisible(window))
        text += L" (hidden)";
    if (!IsWindowEnabled(window))
        text += L" (disabled)";
    return text;
}

CString DescribeThreadWindows()
{
    CString text;
    for (HWND window : TopLevelWindows())
        text += L"\n    " + DescribeWithChildren(window);
    return text.IsEmpty() ? CString(L"no windows") : text;
}
