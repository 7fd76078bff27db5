#include "window/message_map.h"

HWND NotifyingControl(HWND parent, UINT message, WPARAM wParam, LPARAM lParam) noexcept
{
    switch (message) {
    case WM_NOTIFY:
        return reinterpret_cast<NMHDR*>(lParam)->hwndFrom;
    case WM_COMMAND:
    case WM_HSCROLL:
    case WM_VSCROLL:
    case WM_VKEYTOITEM:
    case WM_CHARTOITEM:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORDLG:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
    case WM_CTLCOLORMSGBOX:
    case WM_CTLCOLORSCROLLBAR:
    case WM_CTLCOLORSTATIC:
        return reinterpret_cast<HWND>(lParam);
    case WM_PARENTNOTIFY:
        if (LOWORD(wParam) == WM_CREATE || LOWORD(wParam) == WM_DESTROY) {
            return reinterpret_cast<HWND>(lParam);
        }
        return nullptr;
    case WM_DRAWITEM: {
        const auto* item = reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
        return item->CtlType == ODT_MENU ? nullptr : item->hwndItem;
    }
    case WM_MEASUREITEM: {
        const auto* item = reinterpret_cast<const MEASUREITEMSTRUCT*>(lParam);
        return item->CtlType == ODT_MENU ? nullptr : GetDlgItem(parent, static_cast<int>(item->CtlID));
    }
    case WM_COMPAREITEM:
        return reinterpret_cast<const COMPAREITEMSTRUCT*>(lParam)->hwndItem;
    case WM_DELETEITEM:
        return reinterpret_cast<const DELETEITEMSTRUCT*>(lParam)->hwndItem;
    default:
        return nullptr;
    }
}

namespace {

bool IsNotification(UINT message) noexcept
{
    switch (message) {
    case WM_NOTIFY:
    case WM_COMMAND:
    case WM_HSCROLL:
    case WM_VSCROLL:
    case WM_VKEYTOITEM:
    case WM_CHARTOITEM:
    case WM_PARENTNOTIFY:
    case WM_DRAWITEM:
    case WM_MEASUREITEM:
    case WM_COMPAREITEM:
    case WM_DELETEITEM:
        return true;
    default:
        return message >= WM_CTLCOLORMSGBOX && message <= WM_CTLCOLORSTATIC;
    }
}

} // namespace

BOOL DefaultReflectionHandler(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                              LRESULT& result) noexcept
{
    if (message < reflectionOffset || !IsNotification(message - reflectionOffset)) {
        return FALSE;
    }
    result = DefWindowProcW(window, message - reflectionOffset, wParam, lParam);
    return TRUE;
}
