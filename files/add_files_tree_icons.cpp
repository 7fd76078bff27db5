// The pictures of the tree, and the notifications that it answers itself.
#include "files/add_files_tree.h"

#include <commctrl.h>
#include <shellapi.h>
#include <shlwapi.h>

namespace {

constexpr int ICON_SIZE = 16;
constexpr UINT IMAGE_LIST_FLAGS = ILC_COLOR32 | ILC_MASK;
constexpr UINT SHELL_ICON = SHGFI_ICON | SHGFI_SMALLICON | SHGFI_SHELLICONSIZE;
constexpr UINT SHELL_OPEN_ICON = SHELL_ICON | SHGFI_OPENICON;
static_assert(IMAGE_LIST_FLAGS == 33 && SHELL_ICON == 261 && SHELL_OPEN_ICON == 263);
constexpr int ROOT_LENGTH = 3; // "C:\"

CString TemporaryFolder()
{
    wchar_t folder[MAX_PATH + 1] = L"";
    ::GetTempPathW(MAX_PATH, folder);
    ::PathAddBackslashW(folder);
    return folder;
}

HICON FileIconOfShell()
{
    wchar_t library[MAX_PATH] = L"shell32.dll";
    HICON icon = nullptr;
    if (::PathFindOnPathW(library, nullptr)) {
        ::ExtractIconExW(library, 0, nullptr, &icon, 1);
    }
    return icon;
}

} // namespace

// ---- the image list

void CAddFilesTreeCtrl::InitImageList()
{
    m_imageList.reset(ImageList_Create(ICON_SIZE, ICON_SIZE, IMAGE_LIST_FLAGS, 8, 4));
    if (!m_imageList) {
        return;
    }
    if (const CIconOwner icon(FileIconOfShell()); icon) {
        m_iconFile = AddIcon(icon.get());
    }
    m_iconMissing = AddIcon(::LoadIconW(nullptr, IDI_WARNING)); // shared, so nobody destroys it
    const CString folder = TemporaryFolder();
    m_iconFolder = AddShellIcon(folder, SHELL_ICON);
    m_iconFolderOpen = AddShellIcon(folder, SHELL_OPEN_ICON);
    m_iconDrive = AddShellIcon(folder.Left(ROOT_LENGTH), SHELL_ICON);
    SetImageList(m_imageList.get());
    LoadTree();
}

int CAddFilesTreeCtrl::AddIcon(HICON icon)
{
    return ImageList_ReplaceIcon(m_imageList.get(), -1, icon);
}

// -1 when the shell has no icon.
int CAddFilesTreeCtrl::AddShellIcon(const CString& path, UINT flags)
{
    SHFILEINFOW info = {};
    if (!::SHGetFileInfoW(path, 0, &info, sizeof info, flags)) {
        return -1;
    }
    const CIconOwner icon(info.hIcon);
    return AddIcon(icon.get());
}

// ---- of a node

void CAddFilesTreeCtrl::SetNodeIcon(const FileTreeNode& node, const CString& label, TVITEMW& item)
{
    const int icon = IconOf(node, label);
    if (icon >= 0) {
        item.mask |= TVIF_IMAGE | TVIF_SELECTEDIMAGE;
        item.iImage = icon;
        item.iSelectedImage = icon;
    }
}

int CAddFilesTreeCtrl::IconOf(const FileTreeNode& node, const CString& label)
{
    if (IsDriveLabel(label)) {
        return m_iconDrive;
    }
    if (!node.IsFile()) {
        return m_iconFolder;
    }
    return ::PathFileExistsW(node.SourcePath) ? IconOfFile(node.SourcePath) : m_iconMissing;
}

// The shell is slow: it is asked once for an extension. An icon that couldn't be added isn't remembered.
int CAddFilesTreeCtrl::IconOfFile(const CString& sourcePath)
{
    const CString extension = CString(::PathFindExtensionW(sourcePath)).MakeLower();
    const auto known = m_extensionIcons.find(extension);
    if (known != m_extensionIcons.end()) {
        return known->second;
    }
    const int icon = AddShellIcon(sourcePath, SHELL_ICON);
    if (icon < 0) {
        return m_iconFile;
    }
    m_extensionIcons.emplace(extension, icon);
    return icon;
}

void CAddFilesTreeCtrl::SetItemIcon(HTREEITEM treeItem, int icon) const
{
    TVITEMW item = {};
    item.mask = TVIF_IMAGE | TVIF_SELECTEDIMAGE;
    item.hItem = treeItem;
    item.iImage = icon;
    item.iSelectedImage = icon;
    SetItem(item);
}

// ---- reflected notifications

LRESULT CAddFilesTreeCtrl::OnKeyDown(int, NMHDR* header, BOOL&)
{
    const bool isRename = reinterpret_cast<const NMTVKEYDOWN*>(header)->wVKey == VK_F2;
    if (isRename) {
        EditLabel(GetSelectedItem());
    }
    return isRename;
}

LRESULT CAddFilesTreeCtrl::OnItemExpanded(int, NMHDR* header, BOOL&)
{
    const auto* const notification = reinterpret_cast<const NMTREEVIEWW*>(header);
    const FileTreeNode* const node = NodeOf(notification->itemNew.hItem);
    if (node && !node->IsFile() && !IsDriveNode(*node)) {
        const bool isCollapse = (notification->action & TVE_COLLAPSE) != 0;
        SetItemIcon(node->Item, isCollapse ? m_iconFolder : m_iconFolderOpen);
    }
    return 0;
}
