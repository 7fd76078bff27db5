#include "frame/folder_browser.h"

#include "base/com_ptr.h"

#include <objbase.h>
#include <shlobj.h>
#include <shlwapi.h>

#include <memory>

namespace {

constexpr UINT BROWSE_FLAGS = BIF_RETURNONLYFSDIRS | BIF_STATUSTEXT | BIF_NEWDIALOGSTYLE | BIF_UAHINT;
static_assert(BROWSE_FLAGS == 325);

// The dialog's new style needs OLE on its thread.
class COleScope
{
public:
    COleScope() : m_hResult(::OleInitialize(nullptr)) {}
    ~COleScope()
    {
        if (SUCCEEDED(m_hResult)) {
            ::OleUninitialize();
        }
    }
    COleScope(const COleScope&) = delete;
    COleScope& operator=(const COleScope&) = delete;

private:
    HRESULT m_hResult;
};

struct CoTaskMemDelete
{
    void operator()(void* memory) const { ::CoTaskMemFree(memory); }
};
using ItemIdList = std::unique_ptr<ITEMIDLIST, CoTaskMemDelete>;

int CALLBACK SelectInitialFolder(HWND dialog, UINT message, LPARAM, LPARAM path)
{
    if (message == BFFM_INITIALIZED) {
        ::SendMessageW(dialog, BFFM_SETSELECTIONW, TRUE, path);
    }
    return 0;
}

ItemIdList NetworkRoot()
{
    ITEMIDLIST* item = nullptr;
    ::SHGetSpecialFolderLocation(nullptr, CSIDL_NETWORK, &item);
    return ItemIdList(item);
}

// By the item's parent, which knows names of network items that have no file system path of their own.
CString ParsingName(const ITEMIDLIST* item)
{
    ComPtr<IShellFolder> parent;
    const ITEMIDLIST* child = nullptr;
    if (FAILED(::SHBindToParent(item, IID_IShellFolder, reinterpret_cast<void**>(parent.GetAddressOf()),
                                &child))) {
        return CString();
    }
    STRRET name = {};
    wchar_t* text = nullptr;
    if (FAILED(parent->GetDisplayNameOf(child, SHGDN_FORPARSING, &name)) ||
        FAILED(::StrRetToStrW(&name, child, &text))) {
        return CString();
    }
    const std::unique_ptr<wchar_t, CoTaskMemDelete> textOwner(text);
    return CString(text);
}

CString FileSystemPath(const ITEMIDLIST* item)
{
    wchar_t path[MAX_PATH] = {};
    return ::SHGetPathFromIDListW(item, path) ? CString(path) : CString();
}

} // namespace

bool BrowseForFolder(HWND owner, CString& path, const wchar_t* title, bool networkRoot)
{
    const COleScope ole;
    const ItemIdList root = networkRoot ? NetworkRoot() : ItemIdList();
    const CString selection = path.Left(MAX_PATH);
    wchar_t displayName[MAX_PATH] = {};
    BROWSEINFOW browse = {};
    browse.hwndOwner = owner;
    browse.pidlRoot = root.get();
    browse.pszDisplayName = displayName;
    browse.lpszTitle = title;
    browse.ulFlags = BROWSE_FLAGS;
    browse.lpfn = SelectInitialFolder;
    browse.lParam = reinterpret_cast<LPARAM>(selection.GetString());
    const ItemIdList item(::SHBrowseForFolderW(&browse));
    if (!item) {
        return false;
    }
    CString picked = FileSystemPath(item.get());
    if (picked.IsEmpty()) {
        picked = ParsingName(item.get());
    }
    if (picked.IsEmpty()) {
        return false;
    }
    path = picked;
    return true;
}
