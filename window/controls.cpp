#include "window/controls.h"

namespace {

// Trees and lists don't report the length: the buffer grows until the text fits with room to spare. `read` gives where the text
// stands, as a control may point to its own.
template <class Read>
CString ReadGrowing(Read read)
{
    for (int capacity = 256;; capacity *= 2) {
        CString room;
        wchar_t* buffer = room.GetBuffer(capacity);
        buffer[0] = 0;
        const wchar_t* found = read(buffer, capacity);
        const CString text(found);
        if (found != buffer || text.GetLength() < capacity - 1) {
            return text;
        }
    }
}

TTTOOLINFOW ToolInfo(HWND window, const RECT& rectangle, const wchar_t* text) noexcept
{
    TTTOOLINFOW tool = {};
    tool.cbSize = sizeof tool;
    tool.hwnd = window;
    tool.uId = 1;
    tool.rect = rectangle;
    tool.lpszText = const_cast<wchar_t*>(text); // the control only reads it
    return tool;
}

} // namespace

CString CListBox::GetText(int index) const
{
    const LRESULT length = SendMessage(LB_GETTEXTLEN, static_cast<WPARAM>(index));
    if (length <= 0) {
        return CString();
    }
    CString text;
    wchar_t* buffer = text.GetBuffer(static_cast<int>(length));
    SendMessage(LB_GETTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(buffer));
    text.ReleaseBuffer();
    return text;
}

LPARAM CTreeViewCtrl::GetItemData(HTREEITEM item) const noexcept
{
    TVITEMW found = {};
    found.mask = TVIF_PARAM;
    found.hItem = item;
    return GetItem(&found) ? found.lParam : 0;
}

CString CTreeViewCtrl::GetItemText(HTREEITEM item) const
{
    return ReadGrowing([this, item](wchar_t* buffer, int capacity) -> const wchar_t* {
        TVITEMW found = {};
        found.mask = TVIF_TEXT;
        found.hItem = item;
        found.pszText = buffer;
        found.cchTextMax = capacity;
        GetItem(&found);
        return found.pszText;
    });
}

void CTreeViewCtrl::SetItemText(HTREEITEM item, const wchar_t* text) const noexcept
{
    TVITEMW changed = {};
    changed.mask = TVIF_TEXT;
    changed.hItem = item;
    changed.pszText = const_cast<wchar_t*>(text); // the control only reads it
    SetItem(changed);
}

int CListViewCtrl::InsertColumn(int index, const wchar_t* title, int width, int format) const noexcept
{
    LVCOLUMNW column = {};
    column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
    column.fmt = format;
    column.cx = width;
    column.pszText = const_cast<wchar_t*>(title); // the control only reads it
    return static_cast<int>(
        SendMessage(LVM_INSERTCOLUMNW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&column)));
}

int CListViewCtrl::InsertItem(int index, const wchar_t* text, LPARAM data, int image) const noexcept
{
    LVITEMW item = {};
    item.mask = LVIF_TEXT | LVIF_PARAM | LVIF_IMAGE;
    item.iItem = index;
    item.pszText = const_cast<wchar_t*>(text); // the control only reads it
    item.lParam = data;
    item.iImage = image;
    return static_cast<int>(SendMessage(LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item)));
}

BOOL CListViewCtrl::SetItemText(int index, int column, const wchar_t* text) const noexcept
{
    LVITEMW item = {};
    item.iSubItem = column;
    item.pszText = const_cast<wchar_t*>(text); // the control only reads it
    return static_cast<BOOL>(
        SendMessage(LVM_SETITEMTEXTW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item)));
}

CString CListViewCtrl::GetItemText(int index, int column) const
{
    return ReadGrowing([this, index, column](wchar_t* buffer, int capacity) -> const wchar_t* {
        LVITEMW item = {};
        item.iSubItem = column;
        item.pszText = buffer;
        item.cchTextMax = capacity;
        SendMessage(LVM_GETITEMTEXTW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
        return item.pszText;
    });
}

LPARAM CListViewCtrl::GetItemData(int index) const noexcept
{
    LVITEMW item = {};
    item.mask = LVIF_PARAM;
    item.iItem = index;
    return SendMessage(LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item)) ? item.lParam : 0;
}

BOOL CListViewCtrl::SelectItem(int index) const noexcept
{
    LVITEMW item = {};
    item.state = item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    const bool selected =
        SendMessage(LVM_SETITEMSTATE, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item)) != 0;
    SendMessage(LVM_ENSUREVISIBLE, static_cast<WPARAM>(index), FALSE);
    return selected;
}

HWND CToolTipCtrl::CreateFor(HWND owner) noexcept
{
    return CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_NOPREFIX, CW_USEDEFAULT,
                           CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, owner, nullptr, nullptr, nullptr);
}

BOOL CToolTipCtrl::AddTool(HWND window, const RECT& rectangle, const wchar_t* text) const noexcept
{
    const TTTOOLINFOW tool = ToolInfo(window, rectangle, text);
    return static_cast<BOOL>(SendMessage(TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool)));
}

void CToolTipCtrl::UpdateTool(HWND window, const RECT& rectangle, const wchar_t* text) const noexcept
{
    const TTTOOLINFOW tool = ToolInfo(window, rectangle, text);
    SendMessage(TTM_UPDATETIPTEXTW, 0, reinterpret_cast<LPARAM>(&tool));
    SendMessage(TTM_NEWTOOLRECTW, 0, reinterpret_cast<LPARAM>(&tool));
}
