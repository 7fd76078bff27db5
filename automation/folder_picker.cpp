#include "automation/folder_picker.h"

#include "automation/control.h"
#include "automation/window_finder.h"

#include <windows.h>

#include <commctrl.h>
#include <shlobj.h>

namespace {

HWND FindTree(HWND window)
{
    for (HWND child : ChildWindows(window)) {
        if (WindowClass(child).CompareNoCase(WC_TREEVIEWW) == 0)
            return child;
    }
    return nullptr;
}

StepOutcome NoPicker()
{
    return StepOutcome::NotYet(L"the folder picker isn't up");
}

} // namespace

HWND FindFolderPicker()
{
    for (HWND window : TopLevelWindows()) {
        if (WindowClass(window) == CString(L"#32770") && GetDlgItem(window, IDOK) &&
            GetDlgItem(window, IDCANCEL) && FindTree(window) && !GetDlgItem(window, 1001))
            return window;
    }
    return nullptr;
}

StepOutcome SelectPickerFolder(const CString& folder)
{
    HWND picker = FindFolderPicker();
    if (!picker)
        return NoPicker();
    SendMessageW(picker, BFFM_SETSELECTIONW, TRUE, reinterpret_cast<LPARAM>(folder.GetString()));
    const CControl accept(picker, IDOK);
    if (!accept.IsUsable())
        return StepOutcome::NotYet(L"the folder picker does not offer \"" + folder + L"\"");
    return StepOutcome::Done();
}

StepOutcome AcceptPicker()
{
    HWND picker = FindFolderPicker();
    return picker ? CControl(picker, IDOK).Click() : NoPicker();
}

StepOutcome CancelPicker()
{
    HWND picker = FindFolderPicker();
    return picker ? CControl(picker, IDCANCEL).Click() : NoPicker();
}
