#include "window/dialog_impl.h"

INT_PTR DialogProcedureResult(HWND dialog, UINT message, LRESULT result) noexcept
{
    switch (message) {
    case WM_COMPAREITEM:
    case WM_VKEYTOITEM:
    case WM_CHARTOITEM:
    case WM_INITDIALOG:
    case WM_QUERYDRAGICON:
    case WM_CTLCOLORMSGBOX:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORSCROLLBAR:
    case WM_CTLCOLORSTATIC:
        return result;
    default:
        SetWindowLongPtrW(dialog, DWLP_MSGRESULT, result);
        return TRUE;
    }
}
