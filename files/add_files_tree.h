// The tree of the product's folders and of what an administrator added to them. There is no document behind it: the nodes and
// two maps are the working model, read from the product's database when the page opens. Every change goes through to
// the database before the tree shows it.
//
//   add_files_tree.cpp          nodes, paths, look-ups
//   add_files_tree_load.cpp     from the database
//   add_files_tree_changes.cpp  adding, renaming, deleting
//   add_files_tree_icons.cpp    pictures, and the notifications that the tree answers itself
#pragma once

#include "files/node_rules.h"
#include "files/product_folders.h"
#include "files/user_items.h"
#include "include/files_tree_messages.h"
#include "include/product.h"
#include "msi/user_file_writer.h"
#include "window/controls.h"
#include "window/drawing_handles.h"
#include "window/window_impl.h"

#include <map>
#include <memory>
#include <unordered_map>
#include <vector>

// One for each item of the tree, attached to it as its data.
struct FileTreeNode
{
    CString Key;             // of a directory for a folder or a drive, of a component for a file
    bool IsUserItem = false; // added: may be deleted and, without a source, renamed
    CString SourcePath; // full path of a file's source; empty for folders and drives, which makes them such
    HTREEITEM Item = nullptr;
    HWND View = nullptr; // the tree that owns the item

    bool IsFile() const { return !SourcePath.IsEmpty(); }
};

// What became of a file that was to be added.
enum class AddFileResult
{
    Added,
    AlreadyThere, // from the same source
    SourceMissing,
    Kept,   // the administrator kept the file of that name
    Failed, // the database refused, or the path would be too long
};

class CAddFilesTreeCtrl : public CWindowImpl<CAddFilesTreeCtrl, CTreeViewCtrlEx>
{
public:
    // Both belong to the host.
    CAddFilesTreeCtrl(CProduct* product, InstallerHandle database);

    BEGIN_MSG_MAP(CAddFilesTreeCtrl)
    MESSAGE_HANDLER(WM_DROPFILES, OnDropFiles)
    MESSAGE_HANDLER(FILES_MESSAGE_GET_SOURCE, OnGetSource)
    MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
    REFLECTED_NOTIFY_CODE_HANDLER(TVN_KEYDOWN, OnKeyDown)
    REFLECTED_NOTIFY_CODE_HANDLER(TVN_ITEMEXPANDEDW, OnItemExpanded)
    REFLECTED_NOTIFY_CODE_HANDLER(TVN_DELETEITEMW, OnItemDeleted)
    DEFAULT_REFLECTION_HANDLER()
    END_MSG_MAP()

    void OnFinalMessage(HWND) override {}

    // ---- loading
    // Makes the pictures, and then fills the tree. Without pictures there is no tree at all.
    void InitImageList();

    // ---- looking
    FileTreeNode* SelectedNode() const { return NodeOf(GetSelectedItem()); }
    FileTreeNode* NodeOf(HTREEITEM item) const;
    // False for a node of the root level.
    [[nodiscard]] bool ParentNode(const FileTreeNode& node, FileTreeNode*& parent) const;
    // In the order of the view. Null gives the root level.
    std::vector<FileTreeNode*> ChildNodes(const FileTreeNode* node) const;
    bool IsDriveNode(const FileTreeNode& node) const;
    CString LabelOf(const FileTreeNode& node) const { return GetItemText(node.Item); }
    // Null for a path without a node.
    FileTreeNode* FindNode(const CString& displayPath) const;
    // Of a folder or file, as the tree knows it; empty when nobody does.
    CString DisplayPathOf(const CString& key) const;
    FileNodeKind KindOf(const FileTreeNode& node) const { return {node.IsUserItem, node.IsFile()}; }
    bool HasUserItems() const;

    // ---- adding
    // Settles the folder that gets what is added next. False when the tree has none.
    [[nodiscard]] bool PrepareTarget();
    // The same folder by hand.
    void SetTarget(const FileTreeNode& folder) { m_targetKey = folder.Key; }
    const CString& GetTarget() const { return m_targetKey; }
    // Sorts the target's children and expands it.
    void SortTarget();
    void SortFolder(const FileTreeNode& folder);
    // Into the target folder. Reports a missing source and asks before it replaces a file.
    [[nodiscard]] AddFileResult AddFile(const CString& sourcePath);
    // A new folder in the selected one, or a new drive; selected, with its label under edit.
    bool AddItem(bool isDrive);
    // A folder of that name in `parent`; null when it can't be added.
    FileTreeNode* AddFolder(const CString& name, const FileTreeNode& parent);
    CString FindFreeDrive() const;
    CString NextFolderName(const FileTreeNode* node) const;

    // ---- changing
    // The text becomes the label of a folder or drive.
    [[nodiscard]] NewNameResult ApplyNewName(FileTreeNode* node, CString text);
    // With all below it. False for what the administrator didn't add.
    bool DeleteItem(FileTreeNode* node);
    using CTreeViewCtrlEx::DeleteItem;

    // Boxes over the tree; it is painted while they are up.
    int ShowBox(const CString& text, UINT type);

    // Without painting, until the object goes.
    class CPause
    {
    public:
        explicit CPause(CAddFilesTreeCtrl& tree);
        ~CPause();
        CPause(const CPause&) = delete;
        CPause& operator=(const CPause&) = delete;

    private:
        CAddFilesTreeCtrl& m_tree;
    };

private:
    // ---- messages
    LRESULT OnDropFiles(UINT, WPARAM drop, LPARAM, BOOL&);
    LRESULT OnGetSource(UINT, WPARAM item, LPARAM buffer, BOOL&);
    LRESULT OnDestroy(UINT, WPARAM, LPARAM, BOOL& handled);
    LRESULT OnKeyDown(int, NMHDR* header, BOOL& handled);
    LRESULT OnItemExpanded(int, NMHDR* header, BOOL& handled);
    LRESULT OnItemDeleted(int, NMHDR* header, BOOL& handled);

    // ---- loading
    void LoadTree();
    void FillRoots(CDirectoryManager& manager);
    void LoadProductDirectories();
    void LoadUserItems(const UserItemRows& items);
    void ForgetPathsOf(const UserItemRows& items);
    void AddDrives(const UserItemRows& items, std::map<CString, DirectoryColumns>& rows);
    void AddFolders(const UserItemRows& items, std::map<CString, DirectoryColumns>& rows);
    void AddFiles(const UserItemRows& items);
    bool UserDirectoryPath(const DirectoryColumns& row, const std::map<CString, DirectoryColumns>& rows,
                           CString& path, int depth = 0) const;
    void SortEverything();
    void SortBelow(HTREEITEM item);

    // ---- nodes
    void ExpandFolder(const FileTreeNode& folder);
    bool AddNode(const CString& path, const CString& key, bool isUserItem, const CString& sourcePath);
    HTREEITEM InsertNode(FileTreeNode& node, HTREEITEM parent, const CString& label);
    void UpdatePaths(FileTreeNode& node, const CString& name);
    bool DeleteOne(FileTreeNode* node);
    // Takes the node out of the map of paths; false when it isn't there.
    bool RemovePathOf(const FileTreeNode& node);
    void RemoveRows(const FileTreeNode& node, const CString& parentKey);
    bool AskToReplace(const FileTreeNode& existing, const CString& sourcePath);
    FileTreeNode* AddNewNode(const CString& path, const CString& key, const CString& sourcePath);

    // ---- pictures
    // In the item that is about to be inserted: a message of its own for each node would take its time.
    void SetNodeIcon(const FileTreeNode& node, const CString& label, TVITEMW& item);
    int IconOf(const FileTreeNode& node, const CString& label);
    int IconOfFile(const CString& sourcePath);
    int AddShellIcon(const CString& path, UINT flags);
    int AddIcon(HICON icon);
    void SetItemIcon(HTREEITEM item, int icon) const;

    CProduct* m_product;        // the host's
    InstallerHandle m_database; // the host's
    CUserFileWriter m_writer;
    std::map<CString, FileTreeNode*, CompareNoCaseLess> m_nodesByPath; // by display path
    DirectoryRows m_directoriesByPath;                                 // all that the tree may show
    CString m_targetKey; // of the folder that gets the next new item
    CImageListOwner m_imageList;
    int m_iconFile = -1;
    int m_iconMissing = -1;
    int m_iconDrive = -1;
    int m_iconFolder = -1;
    int m_iconFolderOpen = -1;
    std::map<CString, int> m_extensionIcons; // of ".txt", in lower case
    TreeRoots m_roots;
    std::unordered_map<const FileTreeNode*, std::unique_ptr<FileTreeNode>> m_nodes; // the live ones
    int m_pauses = 0;
    bool m_isClosing = false;
};
