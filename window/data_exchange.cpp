#include "window/data_exchange.h"

bool ReadControlNumber(HWND control, bool isSigned, int& number) noexcept
{
    // The system's own reading: blanks and digits, a sign when asked for, no overflow.
    BOOL isNumber = FALSE;
    const UINT read = GetDlgItemInt(GetParent(control), GetDlgCtrlID(control), &isNumber, isSigned);
    if (isNumber) {
        number = static_cast<int>(read);
    }
    return isNumber != FALSE;
}

namespace {

// The next button of the group after `button`; null at its end.
HWND NextInGroup(HWND button) noexcept
{
    const HWND next = GetWindow(button, GW_HWNDNEXT);
    return next && (GetWindowLongPtrW(next, GWL_STYLE) & WS_GROUP) == 0 ? next : nullptr;
}

// Labels and edits may stand between the buttons of a group.
bool IsRadioButton(HWND window) noexcept
{
    return (SendMessageW(window, WM_GETDLGCODE, 0, 0) & DLGC_RADIOBUTTON) != 0;
}

} // namespace

int ReadRadioGroup(HWND dialog, int id) noexcept
{
    int index = 0;
    for (HWND button = GetDlgItem(dialog, id); button; button = NextInGroup(button)) {
        if (!IsRadioButton(button)) {
            continue;
        }
        if (SendMessageW(button, BM_GETCHECK, 0, 0) == BST_CHECKED) {
            return index;
        }
        ++index;
    }
    return -1;
}

void WriteRadioGroup(HWND dialog, int id, int checked) noexcept
{
    int index = 0;
    for (HWND button = GetDlgItem(dialog, id); button; button = NextInGroup(button)) {
        if (IsRadioButton(button)) {
            SendMessageW(button, BM_SETCHECK, index == checked ? BST_CHECKED : BST_UNCHECKED, 0);
            ++index;
        }
    }
}
