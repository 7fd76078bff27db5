#include "automation/folder_picker.h"

#include "automation/control.h"
#include "automation/tree_control.h"
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

struct FolderWay
{
    CString root; // a drive, mostly
    CTreeControl::Path names;
};

FolderWay WayTo(const CString& folder)
{
    FolderWay way = {WithoutClosingBackslash(folder), {}};
    for (CString above; above = FolderAbove(way.root), !above.IsEmpty() && above != way.root;
         way.root = above)
        way.names.insert(way.names.begin(), LastName(way.root));
    return way;
}

void SelectItem(HWND tree, HTREEITEM item)
{
    SendMessageW(tree, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item));
}

// The picker is asked for the root alone, and the way from there goes by the names, as a person's. Wine looks for a folder
// as it was when it was last read, and doesn't find one that was read since the picker listed it.
HTREEITEM FindFolder(HWND picker, const CTreeControl& tree, const CString& folder)
{
    const FolderWay way = WayTo(folder);
    const HTREEITEM top = TreeView_GetRoot(tree.GetWindow());
    SelectItem(tree.GetWindow(), top);
    SendMessageW(picker, BFFM_SETSELECTIONW, TRUE, reinterpret_cast<LPARAM>(way.root.GetString()));
    const HTREEITEM root = tree.GetSelection();
    return root == top ? nullptr : tree.FindBelow(root, way.names);
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
    const CTreeControl tree(FindTree(picker));
    const HTREEITEM item = FindFolder(picker, tree, folder);
    if (item)
        SelectItem(tree.GetWindow(), item);
    // OK may not be chosen for what is no folder of a file system, nor before the picker is filled.
    if (!item || !CControl(picker, IDOK).IsUsable())
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
