#include "automation/folder_picker.h"

#include "automation/control.h"
#include "automation/window_finder.h"
#include "base/path_text.h"

#include <windows.h>

#include <commctrl.h>
#include <dlgs.h>
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

// The text of the tree's selected line; empty when none is.
CString SelectedLine(HWND tree)
{
    const HTREEITEM selected = TreeView_GetSelection(tree);
    wchar_t text[MAX_PATH] = {};
    TVITEMW item = {};
    item.mask = TVIF_TEXT;
    item.hItem = selected;
    item.pszText = text;
    item.cchTextMax = MAX_PATH;
    return selected && TreeView_GetItem(tree, &item) ? CString(text) : CString();
}

StepOutcome NoPicker()
{
    return StepOutcome::NotYet(L"the folder picker isn't up");
}

} // namespace

HWND FindFolderPicker()
{
    for (HWND window : TopLevelWindows()) {
        // A dialog for opening files may have a tree too, but also a box for names.
        if (WindowClass(window) == CString(L"#32770") && GetDlgItem(window, IDOK) &&
            GetDlgItem(window, IDCANCEL) && FindTree(window) && !GetDlgItem(window, 1001) &&
            !GetDlgItem(window, cmb13))
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
    // The picker fills its tree bit by bit: until the folder is in it, another line is selected.
    const CString name = LastName(folder);
    if (!accept.IsUsable() || SelectedLine(FindTree(picker)).CompareNoCase(name) != 0)
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
