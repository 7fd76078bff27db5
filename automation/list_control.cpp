#include "automation/list_control.h"

#include "automation/label.h"
#include "automation/window_finder.h"
#include "window/controls.h"

#include <commctrl.h>

#include <algorithm>

CListControl::Kind CListControl::GetKind() const
{
    const CString name = WindowClass(GetWindow());
    if (name.CompareNoCase(L"ComboBox") == 0)
        return Kind::ComboBox;
    return name.CompareNoCase(WC_LISTVIEWW) == 0 ? Kind::ListView : Kind::ListBox;
}

int CListControl::GetCount() const
{
    if (!Exists())
        return 0;
    static const UINT messages[] = {LB_GETCOUNT, CB_GETCOUNT, LVM_GETITEMCOUNT};
    return static_cast<int>(SendMessageW(GetWindow(), messages[static_cast<int>(GetKind())], 0, 0));
}

CString CListControl::GetLine(int index) const
{
    if (GetKind() == Kind::ListView)
        return GetListViewCell(index, 0);
    const bool isCombo = GetKind() == Kind::ComboBox;
    const WPARAM line = static_cast<WPARAM>(index);
    const LRESULT length = SendMessageW(GetWindow(), isCombo ? CB_GETLBTEXTLEN : LB_GETTEXTLEN, line, 0);
    if (length < 0)
        return CString();
    CString text;
    wchar_t* buffer = text.GetBuffer(static_cast<int>(length) + 1);
    buffer[0] = 0;
    SendMessageW(GetWindow(), isCombo ? CB_GETLBTEXT : LB_GETTEXT, line, reinterpret_cast<LPARAM>(buffer));
    text.ReleaseBuffer();
    return text;
}

CString CListControl::GetListViewCell(int row, int column) const
{
    return CListViewCtrl(GetWindow()).GetItemText(row, column);
}

int CListControl::GetColumnCount() const
{
    if (!Exists() || GetKind() != Kind::ListView)
        return 1;
    HWND header = reinterpret_cast<HWND>(SendMessageW(GetWindow(), LVM_GETHEADER, 0, 0));
    return std::max(1, header ? static_cast<int>(SendMessageW(header, HDM_GETITEMCOUNT, 0, 0)) : 1);
}

CString CListControl::GetCell(int row, int column) const
{
    if (row < 0 || row >= GetCount() || column < 0 || column >= GetColumnCount())
        return CString();
    return column == 0 ? GetLine(row) : GetListViewCell(row, column);
}

std::vector<CString> CListControl::GetLines() const
{
    std::vector<CString> lines;
    for (int index = 0; index < GetCount(); ++index)
        lines.push_back(GetLine(index));
    return lines;
}

int CListControl::GetSelection() const
{
    if (!Exists())
        return -1;
    switch (GetKind()) {
    case Kind::ComboBox:
        return static_cast<int>(SendMessageW(GetWindow(), CB_GETCURSEL, 0, 0));
    case Kind::ListView:
        return static_cast<int>(
            SendMessageW(GetWindow(), LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
    case Kind::ListBox:
        break;
    }
    return static_cast<int>(SendMessageW(GetWindow(), LB_GETCURSEL, 0, 0));
}

CString CListControl::GetSelectedLine() const
{
    const int index = GetSelection();
    return index < 0 ? CString() : GetLine(index);
}

void CListControl::Notify(int code) const
{
    SendMessageW(GetAncestor(GetWindow(), GA_PARENT), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(GetWindow()), code),
                 reinterpret_cast<LPARAM>(GetWindow()));
}

void CListControl::Choose(int index) const
{
    const WPARAM line = static_cast<WPARAM>(index);
    if (GetKind() == Kind::ListView) {
        LVITEMW state = {};
        state.state = LVIS_SELECTED | LVIS_FOCUSED;
        state.stateMask = state.state;
        SendMessageW(GetWindow(), LVM_SETITEMSTATE, line, reinterpret_cast<LPARAM>(&state));
        return; // the list view notifies by itself
    }
    const bool isCombo = GetKind() == Kind::ComboBox;
    SendMessageW(GetWindow(), isCombo ? CB_SETCURSEL : LB_SETCURSEL, line, 0);
    if (isCombo)
        Notify(CBN_SELENDOK);
    Notify(isCombo ? CBN_SELCHANGE : LBN_SELCHANGE);
}

StepOutcome CListControl::Select(int index) const
{
    const StepOutcome usable = NeedUsable();
    if (!usable.IsDone())
        return usable;
    if (index < 0 || index >= GetCount())
        return StepOutcome::NotYet(Describe() + L" has no line " + NumberText(index));
    SetFocus(GetWindow());
    Choose(index);
    return StepOutcome::Done();
}

StepOutcome CListControl::Select(const CString& line) const
{
    CString found;
    for (int index = 0; index < GetCount(); ++index) {
        const CString text = GetLine(index);
        if (text == line)
            return Select(index);
        found += (index ? L", \"" : L"\"") + text + L"\"";
    }
    return StepOutcome::NotYet(Describe() + L" has no line \"" + line + L"\" among [" + found + L"]");
}

StepOutcome CListControl::EditLabel(int index, const CString& text) const
{
    const StepOutcome selected = Select(index);
    if (!selected.IsDone())
        return selected;
    if (HWND edit = OpenLabelEdit(GetWindow(), LVM_GETEDITCONTROL))
        return StepOutcome::NotYet(L"a label of " + Describe() + L" is being edited: \"" +
                                   CControl(edit).GetText() + L"\"");
    SendMessageW(GetWindow(), LVM_EDITLABELW, static_cast<WPARAM>(index), 0);
    const CString before = GetLine(index);
    const StepOutcome typed = TypeLabel(GetWindow(), LVM_GETEDITCONTROL, before, text);
    return typed.IsDone() ? NeedChangedLabel(before, GetLine(index), text) : typed;
}

bool CListControl::IsLineChecked(int index) const
{
    return ListView_GetCheckState(GetWindow(), index) == 1;
}

StepOutcome CListControl::SetLineChecked(int index, bool checked) const
{
    const StepOutcome selected = Select(index);
    if (!selected.IsDone())
        return selected;
    if (!(ListView_GetExtendedListViewStyle(GetWindow()) & LVS_EX_CHECKBOXES))
        return StepOutcome::Failed(Describe() + L" has no check boxes");
    ListView_SetCheckState(GetWindow(), index, checked ? TRUE : FALSE); // the list view notifies by itself
    return StepOutcome::Done();
}
