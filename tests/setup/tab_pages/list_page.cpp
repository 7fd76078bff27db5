#include "tests/setup/tab_pages/list_page.h"

#include "base/path_text.h"
#include "frame/page_frame.h"
#include "frame/resource_text.h"
#include "tests/setup/tab_pages/tab_page_ids.h"
#include "window/message_map.h"

#include <commctrl.h>
#include <commdlg.h>

#include <string>
#include <thread>

namespace {

constexpr UINT MESSAGE_DOWNLOADED = WM_APP + 10;

ListPageRecord g_record;

CString Text(UINT id, const CString& argument)
{
    return FormatResource(id, argument);
}

template <class T, template <class> class Impl>
class CListPageBase : public Impl<T>
{
public:
    using Impl<T>::Impl;
    ~CListPageBase() override { EndDownload(); }

    BEGIN_MSG_MAP(CListPageBase)
    COMMAND_HANDLER(IDC_LIST_CAPTION, EN_CHANGE, OnCaption)
    COMMAND_HANDLER(IDC_LIST_BANNER, BN_CLICKED, OnBanner)
    COMMAND_HANDLER(IDC_LIST_ADD, BN_CLICKED, OnAdd)
    COMMAND_HANDLER(IDC_LIST_REMOVE, BN_CLICKED, OnRemove)
    COMMAND_HANDLER(IDC_LIST_DOWNLOAD, BN_CLICKED, OnDownload)
    NOTIFY_HANDLER(IDC_LIST_TREE, TVN_ENDLABELEDITW, OnLabel)
    MESSAGE_HANDLER(WM_CONTEXTMENU, OnContextMenu)
    MESSAGE_HANDLER(MESSAGE_DOWNLOADED, OnDownloaded)
    CHAIN_MSG_MAP(Impl<T>)
    END_MSG_MAP()

    LRESULT OnInitDialog() override
    {
        this->InitFrame();
        for (int column = 0; column < 2; ++column) {
            LVCOLUMNW described = {};
            described.mask = LVCF_WIDTH;
            described.cx = 150;
            SendTo(IDC_LIST_FILES, LVM_INSERTCOLUMNW, static_cast<WPARAM>(column), &described);
        }
        const HTREEITEM root = AddItem(TVI_ROOT, LIST_ROOT);
        for (const CString& folder : g_record.folders) {
            AddItem(root, folder);
        }
        TreeView_Expand(Tree(), root, TVE_EXPAND);
        TreeView_SelectItem(Tree(), root);
        for (const auto& [folder, file] : g_record.rows) {
            AddRow(folder, file);
        }
        ::CheckDlgButton(this->m_hWnd, IDC_LIST_BANNER, g_record.bBanner ? BST_CHECKED : BST_UNCHECKED);
        ::CheckRadioButton(this->m_hWnd, IDC_LIST_SIZE_SMALL, IDC_LIST_SIZE_LARGE, IDC_LIST_SIZE_SMALL);
        this->SetDlgItemText(IDC_LIST_CAPTION, g_record.strCaption);
        EnableBanner();
        EnableNext();
        this->RunHooks(this->m_postInitHooks);
        return FALSE;
    }

    bool ValidateAndStore() override
    {
        if (g_record.onStore) {
            g_record.onStore(this->m_hWnd);
        }
        const CString caption = this->GetDlgItemText(IDC_LIST_CAPTION);
        if (caption == L"bad") {
            this->ShowPageBox(Text(IDS_LIST_CAPTION_REFUSED, caption), MB_OK | MB_ICONERROR);
            return false;
        }
        const CString logo = this->GetDlgItemText(IDC_LIST_LOGO);
        return LastName(logo).Left(3) != L"ask" ||
               this->ShowPageBox(Text(IDS_LIST_LOGO_MISSING, logo), MB_YESNO | MB_ICONQUESTION) == IDYES;
    }

private:
    HWND Tree() const { return this->GetDlgItem(IDC_LIST_TREE); }
    HWND Files() const { return this->GetDlgItem(IDC_LIST_FILES); }
    void Enable(int id, bool enabled) { ::EnableWindow(this->GetDlgItem(id), enabled); }
    LRESULT SendTo(int id, UINT message, WPARAM wParam, const void* parameter)
    {
        return ::SendMessageW(this->GetDlgItem(id), message, wParam, reinterpret_cast<LPARAM>(parameter));
    }

    // ---- plain controls

    void EnableBanner()
    {
        Enable(IDC_LIST_BANNER_TEXT, ::IsDlgButtonChecked(this->m_hWnd, IDC_LIST_BANNER) == BST_CHECKED);
    }
    void EnableNext()
    {
        ::EnableWindow(this->GetNextButton(), !this->GetDlgItemText(IDC_LIST_CAPTION).IsEmpty());
    }
    LRESULT OnBanner(WORD, WORD, HWND, BOOL&)
    {
        EnableBanner();
        return 0;
    }
    LRESULT OnCaption(WORD, WORD, HWND, BOOL&)
    {
        EnableNext();
        return 0;
    }

    // ---- folders

    HTREEITEM AddItem(HTREEITEM parent, const CString& name)
    {
        CString text = name;
        TVINSERTSTRUCTW item = {};
        item.hParent = parent;
        item.hInsertAfter = TVI_LAST;
        item.item.mask = TVIF_TEXT;
        item.item.pszText = text.GetBuffer(text.GetLength());
        return reinterpret_cast<HTREEITEM>(SendTo(IDC_LIST_TREE, TVM_INSERTITEMW, 0, &item));
    }

    CString NameOf(HTREEITEM handle) const
    {
        wchar_t name[MAX_PATH] = {};
        TVITEMW item = {};
        item.mask = TVIF_TEXT;
        item.hItem = handle;
        item.pszText = name;
        item.cchTextMax = MAX_PATH;
        ::SendMessageW(Tree(), TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
        return name;
    }

    CString PathOf(HTREEITEM item) const
    {
        const HTREEITEM parent = TreeView_GetParent(Tree(), item);
        return parent ? PathOf(parent) + L"\\" + NameOf(item) : NameOf(item);
    }

    bool HasSibling(HTREEITEM item, const CString& name) const
    {
        HTREEITEM other = TreeView_GetChild(Tree(), TreeView_GetParent(Tree(), item));
        for (; other; other = TreeView_GetNextSibling(Tree(), other)) {
            if (other != item && NameOf(other).CompareNoCase(name) == 0) {
                return true;
            }
        }
        return false;
    }

    LRESULT OnContextMenu(UINT, WPARAM window, LPARAM, BOOL& handled)
    {
        const HTREEITEM selected = TreeView_GetSelection(Tree());
        handled = reinterpret_cast<HWND>(window) == Tree() && selected;
        if (!handled) {
            return 0;
        }
        const HMENU menu = ::CreatePopupMenu();
        ::AppendMenuW(menu, MF_STRING, ID_LIST_NEW_FOLDER, L"&New folder");
        const bool isRoot = TreeView_GetParent(Tree(), selected) == nullptr;
        ::AppendMenuW(menu, MF_STRING | (isRoot ? MF_GRAYED : 0), ID_LIST_DELETE, L"&Delete");
        POINT place = {0, 0};
        ::ClientToScreen(Tree(), &place);
        const int chosen = ::TrackPopupMenu(menu, TPM_RETURNCMD, place.x, place.y, 0, this->m_hWnd, nullptr);
        ::DestroyMenu(menu);
        if (chosen == ID_LIST_NEW_FOLDER) {
            const HTREEITEM made = AddItem(selected, L"New folder");
            TreeView_Expand(Tree(), selected, TVE_EXPAND);
            TreeView_SelectItem(Tree(), made);
            ::SetFocus(Tree());
            TreeView_EditLabel(Tree(), made);
        } else if (chosen == ID_LIST_DELETE) {
            DeleteFolder(selected);
        }
        return 0;
    }

    void DeleteFolder(HTREEITEM folder)
    {
        const CString path = PathOf(folder);
        if (this->ShowPageBox(Text(IDS_LIST_DELETE, path), MB_YESNO | MB_ICONQUESTION) != IDYES) {
            return;
        }
        for (int row = ListView_GetItemCount(Files()); row-- > 0;) {
            if (CString(Cell(row, 0) + L"\\").Find(path + L"\\") == 0) {
                ListView_DeleteItem(Files(), row);
            }
        }
        TreeView_DeleteItem(Tree(), folder);
    }

    // True keeps what was typed.
    LRESULT OnLabel(int, NMHDR* header, BOOL&)
    {
        const TVITEMW& item = reinterpret_cast<NMTVDISPINFOW*>(header)->item;
        if (!item.pszText) {
            return FALSE;
        }
        const CString name = item.pszText;
        if (name.IsEmpty() || name.Find(L'?') >= 0 || HasSibling(item.hItem, name)) {
            this->ShowPageBox(Text(IDS_LIST_LABEL_REFUSED, name), MB_OK | MB_ICONERROR);
            return FALSE;
        }
        return TRUE;
    }

    // ---- files

    CString Cell(int row, int column) const
    {
        wchar_t text[MAX_PATH] = {};
        ListView_GetItemText(Files(), row, column, text, MAX_PATH);
        return text;
    }

    void AddRow(CString folder, CString file)
    {
        LVITEMW item = {};
        item.mask = LVIF_TEXT;
        item.iItem = ListView_GetItemCount(Files());
        item.pszText = folder.GetBuffer(folder.GetLength());
        const int row = static_cast<int>(SendTo(IDC_LIST_FILES, LVM_INSERTITEMW, 0, &item));
        ListView_SetItemText(Files(), row, 1, file.GetBuffer(file.GetLength()));
    }

    bool HasFile(const CString& file) const
    {
        for (int row = 0; row < ListView_GetItemCount(Files()); ++row) {
            if (Cell(row, 1).CompareNoCase(file) == 0) {
                return true;
            }
        }
        return false;
    }

    bool AddFile(const CString& folder, const CString& file)
    {
        if (file.Right(4) == L".bad") {
            this->ShowPageBox(Text(IDS_LIST_FILE_REFUSED, file), MB_OK | MB_ICONERROR);
            return false;
        }
        if (!HasFile(file) ||
            this->ShowPageBox(Text(IDS_LIST_FILE_TWICE, file), MB_YESNO | MB_ICONQUESTION) == IDYES) {
            AddRow(folder, file);
        }
        return true;
    }

    LRESULT OnAdd(WORD, WORD, HWND, BOOL&)
    {
        const CString folder = PathOf(TreeView_GetSelection(Tree()));
        wchar_t picked[4096] = {};
        OPENFILENAMEW description = {};
        description.lStructSize = sizeof description;
        description.hwndOwner = this->m_hWnd;
        description.lpstrFile = picked;
        description.nMaxFile = 4096;
        description.Flags = OFN_EXPLORER | OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST | OFN_ALLOWMULTISELECT |
                            OFN_NOCHANGEDIR | OFN_HIDEREADONLY;
        const bool isPicked = ::GetOpenFileNameW(&description) != FALSE;
        if (g_record.onPicked) {
            g_record.onPicked();
        }
        if (!isPicked) {
            return 0;
        }
        // One path; or a folder, and behind its zero the names in it.
        const wchar_t* name = picked + TextLength(picked) + 1;
        bool added = *name || AddFile(folder, picked);
        for (; added && *name; name += TextLength(name) + 1) {
            added = AddFile(folder, JoinFolder(picked, name));
        }
        return 0;
    }

    LRESULT OnRemove(WORD, WORD, HWND, BOOL&)
    {
        for (int row = ListView_GetNextItem(Files(), -1, LVNI_SELECTED); row >= 0;
             row = ListView_GetNextItem(Files(), -1, LVNI_SELECTED)) {
            ListView_DeleteItem(Files(), row);
        }
        return 0;
    }

    // ---- updates

    LRESULT OnDownload(WORD, WORD, HWND, BOOL&)
    {
        ++g_record.downloads;
        Enable(IDC_LIST_DOWNLOAD, false);
        this->EnableLeaving(false);
        m_cancel = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
        m_download = std::thread([page = this->m_hWnd, cancel = m_cancel] {
            if (::WaitForSingleObject(cancel, g_record.downloadMilliseconds) == WAIT_TIMEOUT) {
                ::PostMessageW(page, MESSAGE_DOWNLOADED, 0, 0);
            }
        });
        return 0;
    }

    void EndDownload()
    {
        if (m_download.joinable()) {
            ::SetEvent(m_cancel);
            m_download.join();
            ::CloseHandle(m_cancel);
        }
    }

    LRESULT OnDownloaded(UINT, WPARAM, LPARAM, BOOL&)
    {
        EndDownload();
        const CString name = this->GetDlgItemText(IDC_LIST_DOWNLOAD_NAME);
        if (name.Left(6) == L"broken") {
            this->ShowPageBox(Text(IDS_LIST_DOWNLOAD_FAILED, name), MB_OK | MB_ICONERROR);
        } else {
            SendTo(IDC_LIST_DOWNLOADED, LB_ADDSTRING, 0, name.GetString());
        }
        this->EnableLeaving(true);
        Enable(IDC_LIST_DOWNLOAD, true);
        return 0;
    }

    std::thread m_download;
    HANDLE m_cancel = nullptr;
};

class CListDialog : public CListPageBase<CListDialog, CWizardPageImpl>
{
public:
    enum
    {
        IDD = IDD_LIST_WIZARD
    };
    using CListPageBase::CListPageBase;
};

class CListTab : public CListPageBase<CListTab, CTabPageImpl>
{
public:
    enum
    {
        IDD = IDD_LIST_TAB
    };
    using CListPageBase::CListPageBase;
};

} // namespace

ListPageRecord& GetListPageRecord()
{
    return g_record;
}

int ListDialog(PageContext* context)
{
    return ShowWizardPage<CListDialog>(context);
}

CTabPage ListPage(PageContext* context)
{
    return CreateTabPage<CListTab>(context);
}
