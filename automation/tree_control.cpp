#include "automation/tree_control.h"

#include "automation/label.h"
#include "window/controls.h"

HTREEITEM CTreeControl::GetNext(HTREEITEM item, UINT relation) const
{
    return reinterpret_cast<HTREEITEM>(
        SendMessageW(GetWindow(), TVM_GETNEXTITEM, relation, reinterpret_cast<LPARAM>(item)));
}

HTREEITEM CTreeControl::FirstChild(HTREEITEM item) const
{
    if (!item)
        return GetNext(nullptr, TVGN_ROOT);
    // Children are often made when an item is first expanded.
    if (!IsExpanded(item))
        SendMessageW(GetWindow(), TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(item));
    return GetNext(item, TVGN_CHILD);
}

CString CTreeControl::GetItemText(HTREEITEM handle) const
{
    return CTreeViewCtrl(GetWindow()).GetItemText(handle);
}

HTREEITEM CTreeControl::FindBelow(HTREEITEM item, const Path& path) const
{
    HTREEITEM found = item;
    for (const CString& text : path) {
        found = FirstChild(found);
        while (found && GetItemText(found).CompareNoCase(text) != 0)
            found = GetNext(found, TVGN_NEXT);
        if (!found)
            return nullptr;
    }
    return found;
}

std::vector<CString> CTreeControl::GetChildren(const Path& path) const
{
    std::vector<CString> texts;
    HTREEITEM parent = Find(path);
    if (!parent && !path.empty())
        return texts;
    for (HTREEITEM item = FirstChild(parent); item; item = GetNext(item, TVGN_NEXT))
        texts.push_back(GetItemText(item));
    return texts;
}

HTREEITEM CTreeControl::GetSelection() const
{
    return GetNext(nullptr, TVGN_CARET);
}

bool CTreeControl::IsExpanded(HTREEITEM item) const
{
    return (SendMessageW(GetWindow(), TVM_GETITEMSTATE, reinterpret_cast<WPARAM>(item), TVIS_EXPANDED) &
            TVIS_EXPANDED) != 0;
}

CString CTreeControl::DescribePath(const Path& path) const
{
    CString text;
    for (const CString& part : path)
        text += (text.IsEmpty() ? L"" : L" > ") + part;
    return text;
}

StepOutcome CTreeControl::Select(const Path& path) const
{
    const StepOutcome usable = NeedUsable();
    if (!usable.IsDone())
        return usable;
    HTREEITEM item = Find(path);
    if (!item)
        return StepOutcome::NotYet(Describe() + L" has no item " + DescribePath(path));
    SetFocus(GetWindow());
    SendMessageW(GetWindow(), TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item));
    return StepOutcome::Done();
}

StepOutcome CTreeControl::Expand(const Path& path) const
{
    const StepOutcome usable = NeedUsable();
    if (!usable.IsDone())
        return usable;
    HTREEITEM item = Find(path);
    if (!item)
        return StepOutcome::NotYet(Describe() + L" has no item " + DescribePath(path));
    static_cast<void>(FirstChild(item));
    return StepOutcome::Done();
}

StepOutcome CTreeControl::EditLabel(const Path& path, const CString& text) const
{
    if (HWND edit = OpenLabelEdit(GetWindow(), TVM_GETEDITCONTROL))
        return StepOutcome::NotYet(L"a label of " + Describe() + L" is being edited: \"" +
                                   CControl(edit).GetText() + L"\"");
    const StepOutcome selected = Select(path);
    if (!selected.IsDone())
        return selected;
    const HTREEITEM item = Find(path);
    SendMessageW(GetWindow(), TVM_EDITLABELW, 0, reinterpret_cast<LPARAM>(item));
    const CString before = GetItemText(item);
    const StepOutcome typed = TypeLabel(GetWindow(), TVM_GETEDITCONTROL, before, text);
    // Found anew: the page may have made its items again.
    const HTREEITEM remaining = typed.IsDone() ? Find(path) : nullptr;
    return remaining ? NeedChangedLabel(before, GetItemText(remaining), text) : typed;
}

StepOutcome CTreeControl::OpenContextMenu(const Path& path) const
{
    const StepOutcome selected = Select(path);
    if (!selected.IsDone())
        return selected;
    PostMessageW(GetWindow(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(GetWindow()), MAKELPARAM(-1, -1));
    return StepOutcome::Done();
}
