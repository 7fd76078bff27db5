// Thin wrappers of the system's controls: borrowed handles with the calls that pages make.
//
//   CButton CEdit CListBox CComboBox               the basic controls
//   CProgressBarCtrl CTreeViewCtrl CListViewCtrl   the common controls
//   CToolTipCtrl                                   tooltips
//   CImageList                                     a borrowed image list (owner: CImageListOwner)
#pragma once

#include "window/window.h"

#include <windows.h>

#include <commctrl.h>

class CButton : public CWindow
{
public:
    using CWindow::CWindow;
    static const wchar_t* GetWndClassName() noexcept { return WC_BUTTONW; }

    // BST_UNCHECKED, BST_CHECKED or BST_INDETERMINATE.
    int GetCheck() const noexcept { return static_cast<int>(SendMessage(BM_GETCHECK)); }
    void SetCheck(int check) const noexcept { SendMessage(BM_SETCHECK, static_cast<WPARAM>(check)); }
    bool IsChecked() const noexcept { return GetCheck() == BST_CHECKED; }
    void Click() const noexcept { SendMessage(BM_CLICK); }
};

class CEdit : public CWindow
{
public:
    using CWindow::CWindow;
    static const wchar_t* GetWndClassName() noexcept { return WC_EDITW; }

    void SetSel(int first, int end) const noexcept
    {
        SendMessage(EM_SETSEL, static_cast<WPARAM>(first), end);
    }
    void SetSelAll() const noexcept { SetSel(0, -1); }
};

class CListBox : public CWindow
{
public:
    using CWindow::CWindow;
    static const wchar_t* GetWndClassName() noexcept { return WC_LISTBOXW; }

    int GetCount() const noexcept { return static_cast<int>(SendMessage(LB_GETCOUNT)); }
    // The new item's index, or a negative error.
    int AddString(const wchar_t* text) const noexcept
    {
        return static_cast<int>(SendMessage(LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text)));
    }
    CString GetText(int index) const;
    int GetCurSel() const noexcept { return static_cast<int>(SendMessage(LB_GETCURSEL)); }
    int SetCurSel(int index) const noexcept
    {
        return static_cast<int>(SendMessage(LB_SETCURSEL, static_cast<WPARAM>(index)));
    }
    LPARAM GetItemData(int index) const noexcept
    {
        return SendMessage(LB_GETITEMDATA, static_cast<WPARAM>(index));
    }
    void SetItemData(int index, LPARAM data) const noexcept
    {
        SendMessage(LB_SETITEMDATA, static_cast<WPARAM>(index), data);
    }
    void ResetContent() const noexcept { SendMessage(LB_RESETCONTENT); }
};

class CComboBox : public CWindow
{
public:
    using CWindow::CWindow;
    static const wchar_t* GetWndClassName() noexcept { return WC_COMBOBOXW; }

    int GetCount() const noexcept { return static_cast<int>(SendMessage(CB_GETCOUNT)); }
    // The new item's index, or a negative error.
    int AddString(const wchar_t* text) const noexcept
    {
        return static_cast<int>(SendMessage(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text)));
    }
    int GetCurSel() const noexcept { return static_cast<int>(SendMessage(CB_GETCURSEL)); }
    int SetCurSel(int index) const noexcept
    {
        return static_cast<int>(SendMessage(CB_SETCURSEL, static_cast<WPARAM>(index)));
    }
    LPARAM GetItemData(int index) const noexcept
    {
        return SendMessage(CB_GETITEMDATA, static_cast<WPARAM>(index));
    }
    void SetItemData(int index, LPARAM data) const noexcept
    {
        SendMessage(CB_SETITEMDATA, static_cast<WPARAM>(index), data);
    }
    void ResetContent() const noexcept { SendMessage(CB_RESETCONTENT); }
};

class CProgressBarCtrl : public CWindow
{
public:
    using CWindow::CWindow;
    static const wchar_t* GetWndClassName() noexcept { return PROGRESS_CLASSW; }

    void SetRange32(int low, int high) const noexcept
    {
        SendMessage(PBM_SETRANGE32, static_cast<WPARAM>(low), high);
    }
    int SetPos(int position) const noexcept
    {
        return static_cast<int>(SendMessage(PBM_SETPOS, static_cast<WPARAM>(position)));
    }
    int GetPos() const noexcept { return static_cast<int>(SendMessage(PBM_GETPOS)); }
    void SetMarquee(BOOL on, int milliseconds = 0) const noexcept
    {
        SendMessage(PBM_SETMARQUEE, static_cast<WPARAM>(on), milliseconds);
    }
};

class CImageList
{
public:
    explicit CImageList(HIMAGELIST list = nullptr) noexcept : m_hImageList(list) {}

    HIMAGELIST m_hImageList;

    operator HIMAGELIST() const noexcept { return m_hImageList; }
    int GetImageCount() const noexcept { return ImageList_GetImageCount(m_hImageList); }
    // The new image's index, or -1; the list copies the picture.
    int AddIcon(HICON icon) const noexcept { return ImageList_ReplaceIcon(m_hImageList, -1, icon); }
    int Add(HBITMAP bitmap, COLORREF mask) const noexcept
    {
        return ImageList_AddMasked(m_hImageList, bitmap, mask);
    }
};

class CTreeViewCtrl : public CWindow
{
public:
    using CWindow::CWindow;
    static const wchar_t* GetWndClassName() noexcept { return WC_TREEVIEWW; }

    // Null when the item can't be made.
    HTREEITEM InsertItem(const TVINSERTSTRUCTW& item) const noexcept
    {
        return Item(SendMessage(TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item)));
    }
    BOOL DeleteItem(HTREEITEM item) const noexcept
    {
        return static_cast<BOOL>(SendMessage(TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(item)));
    }
    BOOL DeleteAllItems() const noexcept { return DeleteItem(TVI_ROOT); }
    UINT GetCount() const noexcept { return static_cast<UINT>(SendMessage(TVM_GETCOUNT)); }

    // `which` is one of TVGN_...; null when there is none.
    HTREEITEM GetNextItem(HTREEITEM item, UINT which) const noexcept
    {
        return Item(SendMessage(TVM_GETNEXTITEM, which, reinterpret_cast<LPARAM>(item)));
    }
    HTREEITEM GetRootItem() const noexcept { return GetNextItem(nullptr, TVGN_ROOT); }
    HTREEITEM GetSelectedItem() const noexcept { return GetNextItem(nullptr, TVGN_CARET); }
    HTREEITEM GetParentItem(HTREEITEM item) const noexcept { return GetNextItem(item, TVGN_PARENT); }
    HTREEITEM GetChildItem(HTREEITEM item) const noexcept { return GetNextItem(item, TVGN_CHILD); }
    HTREEITEM GetNextSiblingItem(HTREEITEM item) const noexcept { return GetNextItem(item, TVGN_NEXT); }
    HTREEITEM GetPrevSiblingItem(HTREEITEM item) const noexcept { return GetNextItem(item, TVGN_PREVIOUS); }
    // What stands at a point of the client area, left and right of the text too; null for nothing.
    HTREEITEM HitTest(POINT point) const noexcept
    {
        TVHITTESTINFO hit = {};
        hit.pt = point;
        return Item(SendMessage(TVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit)));
    }

    BOOL GetItem(TVITEMW* item) const noexcept
    {
        return static_cast<BOOL>(SendMessage(TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(item)));
    }
    BOOL SetItem(const TVITEMW& item) const noexcept
    {
        return static_cast<BOOL>(SendMessage(TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item)));
    }
    LPARAM GetItemData(HTREEITEM item) const noexcept;
    CString GetItemText(HTREEITEM item) const;
    void SetItemText(HTREEITEM item, const wchar_t* text) const noexcept;
    UINT GetItemState(HTREEITEM item, UINT mask) const noexcept
    {
        return static_cast<UINT>(SendMessage(TVM_GETITEMSTATE, reinterpret_cast<WPARAM>(item), mask));
    }

    BOOL SelectItem(HTREEITEM item) const noexcept
    {
        return static_cast<BOOL>(SendMessage(TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item)));
    }
    BOOL Expand(HTREEITEM item, UINT code = TVE_EXPAND) const noexcept
    {
        return static_cast<BOOL>(SendMessage(TVM_EXPAND, code, reinterpret_cast<LPARAM>(item)));
    }
    // By label, one level.
    BOOL SortChildren(HTREEITEM item) const noexcept
    {
        return static_cast<BOOL>(SendMessage(TVM_SORTCHILDREN, FALSE, reinterpret_cast<LPARAM>(item)));
    }
    BOOL EnsureVisible(HTREEITEM item) const noexcept
    {
        return static_cast<BOOL>(SendMessage(TVM_ENSUREVISIBLE, 0, reinterpret_cast<LPARAM>(item)));
    }
    // The edit control, or null.
    HWND EditLabel(HTREEITEM item) const noexcept
    {
        return reinterpret_cast<HWND>(SendMessage(TVM_EDITLABELW, 0, reinterpret_cast<LPARAM>(item)));
    }
    // That of the label under edit, or null.
    HWND GetEditControl() const noexcept { return reinterpret_cast<HWND>(SendMessage(TVM_GETEDITCONTROL)); }
    void SetBkColor(COLORREF color) const noexcept
    {
        SendMessage(TVM_SETBKCOLOR, 0, static_cast<LPARAM>(color));
    }
    // The former list, or null; the control borrows the list.
    HIMAGELIST SetImageList(HIMAGELIST list, int kind = TVSIL_NORMAL) const noexcept
    {
        return reinterpret_cast<HIMAGELIST>(
            SendMessage(TVM_SETIMAGELIST, static_cast<WPARAM>(kind), reinterpret_cast<LPARAM>(list)));
    }

private:
    static HTREEITEM Item(LRESULT result) noexcept { return reinterpret_cast<HTREEITEM>(result); }
};
// The usual second name; items are plain handles under both.
using CTreeViewCtrlEx = CTreeViewCtrl;

class CListViewCtrl : public CWindow
{
public:
    using CWindow::CWindow;
    static const wchar_t* GetWndClassName() noexcept { return WC_LISTVIEWW; }

    // The new column's or item's index, or -1.
    int InsertColumn(int index, const wchar_t* title, int width, int format = LVCFMT_LEFT) const noexcept;
    int InsertItem(int index, const wchar_t* text, LPARAM data = 0, int image = I_IMAGENONE) const noexcept;
    BOOL SetItemText(int index, int column, const wchar_t* text) const noexcept;
    CString GetItemText(int index, int column) const;
    LPARAM GetItemData(int index) const noexcept;

    int GetItemCount() const noexcept { return static_cast<int>(SendMessage(LVM_GETITEMCOUNT)); }
    BOOL DeleteItem(int index) const noexcept
    {
        return static_cast<BOOL>(SendMessage(LVM_DELETEITEM, static_cast<WPARAM>(index)));
    }
    BOOL DeleteAllItems() const noexcept { return static_cast<BOOL>(SendMessage(LVM_DELETEALLITEMS)); }
    BOOL SetColumnWidth(int column, int width) const noexcept
    {
        return static_cast<BOOL>(SendMessage(LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(column), width));
    }
    // The first item after `after` with the LVNI_... state, or -1.
    int GetNextItem(int after, UINT state) const noexcept
    {
        return static_cast<int>(SendMessage(LVM_GETNEXTITEM, static_cast<WPARAM>(after), state));
    }
    int GetSelectedIndex() const noexcept { return GetNextItem(-1, LVNI_SELECTED); }
    BOOL SelectItem(int index) const noexcept;
    void SetExtendedListViewStyle(DWORD style, DWORD mask) const noexcept
    {
        SendMessage(LVM_SETEXTENDEDLISTVIEWSTYLE, mask, static_cast<LPARAM>(style));
    }
};

class CToolTipCtrl : public CWindow
{
public:
    using CWindow::CWindow;
    static const wchar_t* GetWndClassName() noexcept { return TOOLTIPS_CLASSW; }

    // A new control owned by `owner`, which destroys it. Null on failure.
    static HWND CreateFor(HWND owner) noexcept;
    // One tool a window: the text appears over `rectangle` of its client area. Mouse messages have to be relayed.
    BOOL AddTool(HWND window, const RECT& rectangle, const wchar_t* text) const noexcept;
    void UpdateTool(HWND window, const RECT& rectangle, const wchar_t* text) const noexcept;
    void RelayEvent(const MSG& message) const noexcept
    {
        SendMessage(TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&message));
    }
};
