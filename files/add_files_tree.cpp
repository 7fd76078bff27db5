#include "files/add_files_tree.h"

#include "base/guid_text.h"
#include "files/directory_paths.h"

#include <algorithm>
#include <utility>

CAddFilesTreeCtrl::CAddFilesTreeCtrl(CProduct* product, InstallerHandle database)
    : m_product(product), m_database(database), m_writer(product, database)
{
}

// ---- painting

CAddFilesTreeCtrl::CPause::CPause(CAddFilesTreeCtrl& tree) : m_tree(tree)
{
    if (m_tree.m_pauses++ == 0) {
        m_tree.SetRedraw(FALSE); // each item would be painted, and be slower with each one before it
    }
}

CAddFilesTreeCtrl::CPause::~CPause()
{
    if (--m_tree.m_pauses == 0 && m_tree.IsWindow()) {
        m_tree.SetRedraw(TRUE);
        m_tree.Invalidate();
    }
}

int CAddFilesTreeCtrl::ShowBox(const CString& text, UINT type)
{
    if (m_pauses > 0) {
        SetRedraw(TRUE);
        Invalidate();
    }
    const int answer = MessageBox(text, L"", type);
    if (m_pauses > 0 && IsWindow()) {
        SetRedraw(FALSE);
    }
    return answer;
}

// ---- looking

FileTreeNode* CAddFilesTreeCtrl::NodeOf(HTREEITEM item) const
{
    return item ? reinterpret_cast<FileTreeNode*>(GetItemData(item)) : nullptr;
}

bool CAddFilesTreeCtrl::ParentNode(const FileTreeNode& node, FileTreeNode*& parent) const
{
    parent = NodeOf(GetParentItem(node.Item));
    return parent != nullptr;
}

std::vector<FileTreeNode*> CAddFilesTreeCtrl::ChildNodes(const FileTreeNode* node) const
{
    std::vector<FileTreeNode*> children;
    for (HTREEITEM item = node ? GetChildItem(node->Item) : GetRootItem(); item;
         item = GetNextSiblingItem(item)) {
        if (FileTreeNode* child = NodeOf(item)) {
            children.push_back(child);
        }
    }
    return children;
}

bool CAddFilesTreeCtrl::IsDriveNode(const FileTreeNode& node) const
{
    return IsDriveLabel(LabelOf(node));
}

FileTreeNode* CAddFilesTreeCtrl::FindNode(const CString& displayPath) const
{
    const auto found = m_nodesByPath.find(displayPath);
    return found == m_nodesByPath.end() ? nullptr : found->second;
}

CString CAddFilesTreeCtrl::DisplayPathOf(const CString& key) const
{
    CString path;
    static_cast<void>(ResolveDirectoryPath(m_database, key, path)); // empty then
    return path;
}

bool CAddFilesTreeCtrl::HasUserItems() const
{
    return std::any_of(m_nodesByPath.begin(), m_nodesByPath.end(),
                       [](const auto& entry) { return entry.second->IsUserItem; });
}

// ---- nodes

bool CAddFilesTreeCtrl::AddNode(const CString& path, const CString& key, bool isUserItem,
                                const CString& sourcePath)
{
    if (key.IsEmpty() || path.IsEmpty()) {
        return false;
    }
    const CString bare = CString(path).TrimRight(L"\\");
    const CString parentPath = ParentPathOf(bare);
    FileTreeNode* parent = parentPath.IsEmpty() ? nullptr : FindNode(parentPath);
    if (!parent && !parentPath.IsEmpty()) {
        const auto row = m_directoriesByPath.find(parentPath);
        if (row != m_directoriesByPath.end()) {
            const CString& directory = row->second.Directory;
            if (!AddNode(parentPath, directory, IsUserKey(directory), CString())) {
                return false;
            }
            parent = FindNode(parentPath);
        }
    }
    if (FindNode(bare)) {
        return true;
    }
    auto made = std::make_unique<FileTreeNode>(FileTreeNode{key, isUserItem, sourcePath, nullptr, m_hWnd});
    FileTreeNode* const node = made.get();
    m_nodes.emplace(node, std::move(made));
    m_nodesByPath.emplace(bare, node);
    node->Item = InsertNode(*node, parent ? parent->Item : TVI_ROOT, LastPartOf(bare));
    return true;
}

// What was added stands out by bold letters; the line below the tree reports it in words.
HTREEITEM CAddFilesTreeCtrl::InsertNode(FileTreeNode& node, HTREEITEM parent, const CString& label)
{
    TVINSERTSTRUCTW insertion = {};
    insertion.hParent = parent;
    insertion.hInsertAfter = TVI_LAST;
    insertion.item.mask = TVIF_TEXT | TVIF_PARAM | TVIF_STATE;
    insertion.item.pszText = const_cast<wchar_t*>(label.GetString()); // the control only reads it
    insertion.item.lParam = reinterpret_cast<LPARAM>(&node);
    SetNodeIcon(node, label, insertion.item);
    insertion.item.stateMask = TVIS_BOLD;
    insertion.item.state = node.IsUserItem ? TVIS_BOLD : 0;
    return InsertItem(insertion);
}

// ---- messages

LRESULT CAddFilesTreeCtrl::OnDropFiles(UINT, WPARAM drop, LPARAM, BOOL&)
{
    // Posted, so that the program from which they come doesn't wait for what follows.
    ::PostMessageW(GetParent(), FILES_MESSAGE_DROPPED, 0, static_cast<LPARAM>(drop));
    return 0;
}

LRESULT CAddFilesTreeCtrl::OnGetSource(UINT, WPARAM item, LPARAM buffer, BOOL&)
{
    const FileTreeNode* const node = NodeOf(reinterpret_cast<HTREEITEM>(item));
    const CString source = node ? node->SourcePath.Left(FILES_SOURCE_CAPACITY - 1) : CString();
    std::copy_n(source.GetString(), source.GetLength() + 1, reinterpret_cast<wchar_t*>(buffer));
    return source.GetLength();
}

LRESULT CAddFilesTreeCtrl::OnDestroy(UINT, WPARAM, LPARAM, BOOL& handled)
{
    m_isClosing = true;
    handled = FALSE;
    return 0;
}

// Of a folder, the view deletes all items below it, also those that weren't to be deleted.
LRESULT CAddFilesTreeCtrl::OnItemDeleted(int, NMHDR* header, BOOL&)
{
    auto* const node =
        reinterpret_cast<FileTreeNode*>(reinterpret_cast<NMTREEVIEWW*>(header)->itemOld.lParam);
    if (m_isClosing || !m_nodes.count(node)) {
        return 0;
    }
    static_cast<void>(RemovePathOf(*node));
    m_nodes.erase(node);
    return 0;
}

// In a damaged database two nodes may share a key, and with it what is remembered as their path.
bool CAddFilesTreeCtrl::RemovePathOf(const FileTreeNode& node)
{
    const auto path = DirectoryPathCache.find(node.Key);
    auto entry = path == DirectoryPathCache.end() ? m_nodesByPath.end() : m_nodesByPath.find(path->second);
    if (entry == m_nodesByPath.end() || entry->second != &node) {
        entry = std::find_if(m_nodesByPath.begin(), m_nodesByPath.end(),
                             [&node](const auto& known) { return known.second == &node; });
    }
    const bool isThere = entry != m_nodesByPath.end();
    if (isThere) {
        m_nodesByPath.erase(entry);
    }
    return isThere;
}
