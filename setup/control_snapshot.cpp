#include "setup/control_snapshot.h"

#include "window/controls.h"
#include "window/window.h"

#include <windows.h>

#include <commctrl.h>

#include <iterator>

namespace {

int Ask(HWND control, UINT message, WPARAM wParam = 0, LPARAM lParam = 0)
{
    return static_cast<int>(SendMessageW(control, message, wParam, lParam));
}

CString ReadText(HWND control)
{
    return ReadWindowText(control);
}

CString ReadCheck(HWND button)
{
    return NumberText(Ask(button, BM_GETCHECK));
}

CString ReadCombo(HWND combo)
{
    return NumberText(Ask(combo, CB_GETCURSEL)) + L" " + ReadWindowText(combo);
}

CString ReadList(HWND list)
{
    CString lines;
    const int count = Ask(list, LB_GETCOUNT);
    for (int line = 0; line < count; ++line) {
        const int length = Ask(list, LB_GETTEXTLEN, static_cast<WPARAM>(line));
        CString text;
        if (length > 0) {
            Ask(list, LB_GETTEXT, static_cast<WPARAM>(line),
                reinterpret_cast<LPARAM>(text.GetBuffer(length + 1)));
            text.ReleaseBuffer();
        }
        lines += text + L"\n";
    }
    return lines;
}

CString ReadListView(HWND list)
{
    const CListViewCtrl view(list);
    const int columns = Header_GetItemCount(ListView_GetHeader(list));
    CString cells;
    for (int line = 0; line < ListView_GetItemCount(list); ++line) {
        for (int column = 0; column < (columns > 0 ? columns : 1); ++column) {
            cells += view.GetItemText(line, column) + L"\t";
        }
        cells += NumberText(ListView_GetCheckState(list, line)) + L"\n";
    }
    return cells;
}

void AddBranch(const CTreeViewCtrl& tree, HTREEITEM first, CString& text)
{
    for (HTREEITEM node = first; node; node = tree.GetNextSiblingItem(node)) {
        text += tree.GetItemText(node) + L"(";
        AddBranch(tree, tree.GetChildItem(node), text);
        text += L")";
    }
}

CString ReadTree(HWND control)
{
    const CTreeViewCtrl tree(control);
    CString text;
    AddBranch(tree, tree.GetRootItem(), text);
    return text;
}

struct ControlKind
{
    const wchar_t* windowClass;
    CString (*read)(HWND control);
};

constexpr ControlKind KINDS[] = {
    {L"Edit", ReadText},        {L"Button", ReadCheck},           {L"ComboBox", ReadCombo},
    {L"ListBox", ReadList},     {L"SysListView32", ReadListView}, {L"SysTreeView32", ReadTree},
    {L"RichEdit20W", ReadText},
};

BOOL CALLBACK AddControl(HWND control, LPARAM parameter) noexcept
try {
    wchar_t name[64] = L"";
    GetClassNameW(control, name, static_cast<int>(std::size(name)));
    for (const ControlKind& kind : KINDS) {
        if (CString(name).CompareNoCase(kind.windowClass) == 0) {
            auto& lines = *reinterpret_cast<std::vector<CString>*>(parameter);
            lines.push_back(NumberText(GetDlgCtrlID(control)) + L" " + kind.read(control));
        }
    }
    return TRUE;
} catch (...) { // without memory the snapshot ends here; it then equals no whole one
    return FALSE;
}

} // namespace

std::vector<CString> ReadControls(HWND page)
{
    std::vector<CString> lines;
    EnumChildWindows(page, AddControl, reinterpret_cast<LPARAM>(&lines));
    return lines;
}
