// What an administrator changes. The rows are written first; the tree then shows what stands in the database. A failing
// row is reported by no message here: an addition isn't shown then, a deletion and a new name are.
#include "files/add_files_tree.h"

#include "base/path_text.h"
#include "files/directory_paths.h"
#include "frame/path_rules.h"
#include "frame/resource_text.h"
#include "include/resource_ids.h"

#include <shlwapi.h>

#include <iterator>
#include <set>

namespace {

constexpr UINT ERROR_BOX = MB_OK | MB_ICONEXCLAMATION;
constexpr UINT REPLACE_BOX = MB_YESNO | MB_ICONEXCLAMATION;
static_assert(ERROR_BOX == 48 && REPLACE_BOX == 52);
constexpr DWORD DRIVES_CAPACITY = 105; // 26 roots of four characters and a zero
constexpr int ROOT_LENGTH = 4;         // "C:\" and its zero

bool IsSubstitutedDrive(const CString& drive)
{
    wchar_t target[MAX_PATH] = L"";
    return ::QueryDosDeviceW(drive, target, static_cast<DWORD>(std::size(target))) != 0 &&
           IsSubstitutedTarget(target);
}

// Also of a path that is too long, by which the node stays apart from others.
CString RenamedPath(const CString& folder, const CString& name)
{
    const CString path = AppendedPath(folder, name);
    return path.IsEmpty() ? JoinFolder(folder, name) : path;
}

} // namespace

// ---- where to

bool CAddFilesTreeCtrl::PrepareTarget()
{
    FileTreeNode* node = SelectedNode();
    if (!node) {
        if (m_nodesByPath.empty()) {
            return false;
        }
        node = m_nodesByPath.begin()->second;
        SelectItem(node->Item);
    }
    if (node->IsFile() && !ParentNode(*node, node)) {
        return false;
    }
    m_targetKey = node->Key;
    return true;
}

void CAddFilesTreeCtrl::SortTarget()
{
    CString path;
    if (ResolveDirectoryPath(m_database, m_targetKey, path)) {
        if (const FileTreeNode* const folder = FindNode(path)) {
            SortFolder(*folder);
        }
    }
}

void CAddFilesTreeCtrl::SortFolder(const FileTreeNode& folder)
{
    SortChildren(folder.Item);
    ExpandFolder(folder);
}

// The view reports an expansion that it is asked for only the first time.
void CAddFilesTreeCtrl::ExpandFolder(const FileTreeNode& folder)
{
    Expand(folder.Item);
    if ((GetItemState(folder.Item, TVIS_EXPANDED) & TVIS_EXPANDED) != 0 && !IsDriveNode(folder)) {
        SetItemIcon(folder.Item, m_iconFolderOpen);
    }
}

// ---- files

// A path that is too long fails before anything is written: the tree couldn't show what the database has.
AddFileResult CAddFilesTreeCtrl::AddFile(const CString& sourcePath)
{
    if (m_targetKey.IsEmpty()) {
        return AddFileResult::Failed;
    }
    if (!::PathFileExistsW(sourcePath)) {
        ShowBox(FormatResource(IDS_FILES_MISSING, sourcePath), ERROR_BOX);
        return AddFileResult::SourceMissing;
    }
    const CString folder = DisplayPathOf(m_targetKey);
    const CString path = AppendedPath(folder, LastPartOf(sourcePath));
    if (path.IsEmpty()) {
        return AddFileResult::Failed;
    }
    // No two nodes have one path in any case, so a file of the name among the folder's children has this path.
    FileTreeNode* const existing = FindNode(folder) ? FindNode(path) : nullptr;
    if (existing && existing->IsFile()) {
        if (::_wcsicoll(existing->SourcePath, sourcePath) == 0) {
            return AddFileResult::AlreadyThere;
        }
        if (!AskToReplace(*existing, sourcePath)) {
            return AddFileResult::Kept;
        }
        if (!IsWindow()) {
            return AddFileResult::Kept; // the page has gone under the question
        }
        DeleteOne(FindNode(path));
    }
    CString key;
    if (!m_writer.AddUserFile(sourcePath, m_targetKey, key) || key.IsEmpty()) {
        return AddFileResult::Failed;
    }
    DirectoryPathCache[key] = path;
    return AddNode(path, key, true, sourcePath) ? AddFileResult::Added : AddFileResult::Failed;
}

bool CAddFilesTreeCtrl::AskToReplace(const FileTreeNode& existing, const CString& sourcePath)
{
    const CString question =
        FormatResourceMessage(IDS_FILES_REPLACE, {LastPartOf(sourcePath), existing.SourcePath, sourcePath});
    return ShowBox(question, REPLACE_BOX) == IDYES;
}

// ---- folders and drives

FileTreeNode* CAddFilesTreeCtrl::AddNewNode(const CString& path, const CString& key,
                                            const CString& sourcePath)
{
    DirectoryPathCache[key] = path;
    AddNode(path, key, true, sourcePath);
    return FindNode(path);
}

bool CAddFilesTreeCtrl::AddItem(bool isDrive)
{
    FileTreeNode* node = nullptr;
    bool isNew = true;
    if (isDrive) {
        const CString drive = FindFreeDrive();
        CString key;
        if (drive.IsEmpty() || !m_writer.AddUserDrive(drive, key) || key.IsEmpty()) {
            return false;
        }
        node = AddNewNode(drive, key, CString());
    } else {
        FileTreeNode* parent = SelectedNode();
        if (!parent || (parent->IsFile() && !ParentNode(*parent, parent))) {
            return false;
        }
        // A name that is free by its case alone leads to the folder that has it, as the tree shows one folder of a name.
        const CString name = NextFolderName(parent);
        const CString path = AppendedPath(DisplayPathOf(parent->Key), name);
        isNew = !FindNode(path);
        node = isNew ? AddFolder(name, *parent) : FindNode(path);
        if (node) {
            ExpandFolder(*parent);
        }
    }
    if (!node) {
        return false;
    }
    SelectItem(node->Item);
    SetFocus();
    EditLabel(node->Item);
    return isNew;
}

FileTreeNode* CAddFilesTreeCtrl::AddFolder(const CString& name, const FileTreeNode& parent)
{
    const CString path = AppendedPath(DisplayPathOf(parent.Key), name);
    CString key;
    if (path.IsEmpty() || !m_writer.AddUserFolder(name, parent.Key, key) || key.IsEmpty()) {
        return nullptr;
    }
    return AddNewNode(path, key, CString());
}

CString CAddFilesTreeCtrl::NextFolderName(const FileTreeNode* node) const
{
    if (!node) {
        return CString();
    }
    std::set<CString> names;
    for (const FileTreeNode* child : ChildNodes(node)) {
        names.insert(LabelOf(*child));
    }
    return FirstFreeName(names, LoadResourceString(IDS_NEW_FOLDER),
                         [](int number) { return FormatResource(IDS_NEW_FOLDER_NUMBERED, number); });
}

CString CAddFilesTreeCtrl::FindFreeDrive() const
{
    std::set<CString> shown;
    for (const FileTreeNode* root : ChildNodes(nullptr)) {
        if (IsDriveNode(*root)) {
            shown.insert(LabelOf(*root));
        }
    }
    wchar_t roots[DRIVES_CAPACITY] = L"";
    const DWORD length = ::GetLogicalDriveStringsW(DRIVES_CAPACITY, roots);
    for (DWORD start = 0; start < length && length < DRIVES_CAPACITY; start += ROOT_LENGTH) {
        const CString root = roots + start;
        CString drive = root.Left(2);
        if (::GetDriveTypeW(root) == DRIVE_FIXED && !IsSubstitutedDrive(drive) && !shown.count(drive)) {
            return drive.MakeUpper();
        }
    }
    return CString();
}

// ---- new names

NewNameResult CAddFilesTreeCtrl::ApplyNewName(FileTreeNode* node, CString text)
{
    if (text.IsEmpty() || node->IsFile()) {
        return NewNameResult::Nothing;
    }
    if (text.CompareNoCase(LabelOf(*node)) == 0) {
        return NewNameResult::Accepted;
    }
    const bool isDrive = IsDriveNode(*node);
    const NewNameResult verdict = CheckNewName(text, isDrive);
    if (verdict != NewNameResult::Accepted) {
        return verdict;
    }
    if (isDrive) {
        text.MakeUpper();
    }
    FileTreeNode* parent = nullptr;
    if (!ParentNode(*node, parent) && GetParentItem(node->Item)) {
        return NewNameResult::Nothing;
    }
    for (const FileTreeNode* sibling : ChildNodes(parent)) {
        if (text.CompareNoCase(LabelOf(*sibling)) == 0) {
            return NewNameResult::Taken;
        }
    }
    // A failing row isn't reported: the tree shows the new name, and the next load the old one.
    static_cast<void>(
        m_writer.UpdateUserItem(parent ? parent->Key.GetString() : L"TARGETDIR", node->Key, text, isDrive));
    UpdatePaths(*node, text);
    SetItemText(node->Item, text);
    return NewNameResult::Accepted;
}

// Nodes stay as they are; only the paths of the node and of all below it move.
void CAddFilesTreeCtrl::UpdatePaths(FileTreeNode& node, const CString& name)
{
    FileTreeNode* parent = nullptr;
    const auto parentPath =
        ParentNode(node, parent) ? DirectoryPathCache.find(parent->Key) : DirectoryPathCache.end();
    CString path = parentPath == DirectoryPathCache.end() ? name : RenamedPath(parentPath->second, name);
    if (path.Right(1) == L"\\") {
        path.Delete(path.GetLength() - 1);
    }
    const CString oldPath = DirectoryPathCache[node.Key];
    DirectoryPathCache[node.Key] = path;
    const auto entry = m_nodesByPath.find(oldPath);
    if (entry != m_nodesByPath.end() && entry->second == &node) {
        m_nodesByPath.erase(entry);
        m_nodesByPath.emplace(path, &node);
    }
    for (FileTreeNode* child : ChildNodes(&node)) {
        const CString label = LabelOf(*child);
        if (!label.IsEmpty()) {
            UpdatePaths(*child, label);
        }
    }
}

// ---- deleting

// Deepest first, so that all rows below a folder go before its own. A child that can't be deleted goes with the folder's item.
bool CAddFilesTreeCtrl::DeleteItem(FileTreeNode* node)
{
    if (!node || !node->IsUserItem) {
        return false;
    }
    const CPause pause(*this);
    for (FileTreeNode* child : ChildNodes(node)) {
        static_cast<void>(DeleteItem(child));
    }
    return DeleteOne(node);
}

bool CAddFilesTreeCtrl::DeleteOne(FileTreeNode* node)
{
    if (!node || !node->IsUserItem) {
        return false;
    }
    if (!RemovePathOf(*node)) {
        return false;
    }
    DirectoryPathCache.erase(node->Key);
    FileTreeNode* parent = nullptr;
    if (node->IsFile() && !ParentNode(*node, parent)) {
        return false; // the item stays in the view
    }
    RemoveRows(*node, parent ? parent->Key : CString());
    const HTREEITEM item = node->Item;
    m_nodes.erase(node);
    CTreeViewCtrlEx::DeleteItem(item);
    return true;
}

// A failing row stops its own operation alone.
void CAddFilesTreeCtrl::RemoveRows(const FileTreeNode& node, const CString& parentKey)
{
    if (node.IsFile()) {
        static_cast<void>(m_writer.RemoveUserFile(parentKey, node.Key));
    } else if (IsDriveNode(node)) {
        static_cast<void>(m_writer.RemoveUserDrive(node.Key));
    } else {
        static_cast<void>(m_writer.RemoveUserFolder(node.Key));
    }
}
