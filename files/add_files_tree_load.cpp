// From the product's database into the tree. What can't be read is missing; the page opens with the rest.
#include "base/guid_text.h"
#include "files/add_files_tree.h"
#include "files/directory_paths.h"
#include "include/installer_calls.h"
#include "msi/msi_property.h"
#include "msi/msi_rows.h"

namespace {

constexpr wchar_t DRIVE_MARK[] = L"DRIVE_"; // in front of a drive's letter, in DefaultDir
constexpr int DRIVE_MARK_LENGTH = 6;
constexpr wchar_t SUBSTITUTE_SUFFIX[] = L"_SUBST";
constexpr unsigned int LABEL_ONLY = 2; // column of TarnDirectoryMap
constexpr int DEEPEST = 1000;          // more folders than a path can have: parents that go round in a circle

} // namespace

void CAddFilesTreeCtrl::LoadTree()
{
    const CPause pause(*this);
    const UserItemRows items = ReadUserItems(m_database);
    ForgetPathsOf(items);
    LoadProductDirectories();
    LoadUserItems(items);
    SortEverything();
}

void CAddFilesTreeCtrl::FillRoots(CDirectoryManager& manager)
{
    const CString target = TargetPathOf(manager, L"INSTALLDIR");
    m_roots.targetUpper = CString(target).MakeUpper();
    m_roots.target = target.Right(1) == L"\\" ? target.Left(target.GetLength() - 1) : target;
    m_roots.sourceUpper = SourcePathOf(manager, L"INSTALLDIR").MakeUpper();

    MsiRowCursor cursor(m_database,
                        L"SELECT `LocalString` FROM `TarnDirectoryMap` where `Directory_`='INSTALLDIR'",
                        LABEL_ONLY);
    TarnDirectoryMapData row;
    m_roots.label = cursor.Next(row) && !row.LocalString.IsEmpty() ? row.LocalString
                                                                   : CString(L"<Installation Directory>");
}

// Another database of the run may have the same keys with other paths: another product, or a copy of this one in which a
// folder was renamed. So what was remembered for keys of this one is replaced, here and for what was added.
void CAddFilesTreeCtrl::LoadProductDirectories()
{
    m_directoriesByPath.clear();
    CDirectoryManager* const manager = m_product->m_pDirectoryManager;
    if (!manager) {
        return;
    }
    const CDirectoryManager::DirectoryMap& directories = manager->GetDirectories();
    for (const auto& [key, entry] : directories) {
        DirectoryPathCache.erase(key);
    }
    FillRoots(*manager);
    m_directoriesByPath = LoadProductFolders(m_database, *manager, directories, m_roots);
}

void CAddFilesTreeCtrl::LoadUserItems(const UserItemRows& items)
{
    std::map<CString, DirectoryColumns> rows;
    for (const auto& [path, row] : m_directoriesByPath) {
        rows.emplace(row.Directory, row);
        DirectoryPathCache.emplace(row.Directory, path);
    }
    AddDrives(items, rows);
    AddFolders(items, rows);
    for (const auto& [path, row] : m_directoriesByPath) {
        AddNode(path, row.Directory, IsUserKey(row.Directory), CString());
    }
    AddFiles(items);
}

void CAddFilesTreeCtrl::ForgetPathsOf(const UserItemRows& items)
{
    for (const DirectoryColumns& drive : items.drives) {
        DirectoryPathCache.erase(drive.Directory);
    }
    for (const auto& [key, row] : items.folders) {
        DirectoryPathCache.erase(key);
    }
    for (const UserFileRow& file : items.files) {
        DirectoryPathCache.erase(file.component);
        DirectoryPathCache.erase(file.directory); // one that only the service resolves
    }
}

void CAddFilesTreeCtrl::AddDrives(const UserItemRows& items, std::map<CString, DirectoryColumns>& rows)
{
    for (const DirectoryColumns& row : items.drives) {
        if (!IsUserKey(row.Directory) || row.DefaultDir.Find(DRIVE_MARK) < 0) {
            continue;
        }
        const CString path = row.DefaultDir.Right(row.DefaultDir.GetLength() - DRIVE_MARK_LENGTH) + L":";
        if (DriveNumberOf(path) < 0) {
            continue;
        }
        DirectoryPathCache.emplace(row.Directory, path);
        if (m_directoriesByPath.emplace(path, row).second) {
            rows.emplace(row.Directory, row);
        }
    }
}

void CAddFilesTreeCtrl::AddFolders(const UserItemRows& items, std::map<CString, DirectoryColumns>& rows)
{
    rows.insert(items.folders.begin(), items.folders.end());
    for (const auto& [key, row] : items.folders) {
        CString path;
        if (UserDirectoryPath(row, rows, path)) {
            m_directoriesByPath.emplace(path, row);
        }
    }
}

// The source needn't exist any more; its picture shows that.
void CAddFilesTreeCtrl::AddFiles(const UserItemRows& items)
{
    for (const UserFileRow& file : items.files) {
        const CString path = AppendedPath(DisplayPathOf(file.directory), LastPartOf(file.source));
        if (!path.IsEmpty()) {
            DirectoryPathCache.emplace(file.component, path);
            AddNode(path, file.component, true, file.source);
        }
    }
}

bool CAddFilesTreeCtrl::UserDirectoryPath(const DirectoryColumns& row,
                                          const std::map<CString, DirectoryColumns>& rows, CString& path,
                                          int depth) const
{
    if (!IsUserKey(row.Directory)) {
        return ResolveDirectoryPath(m_database, row.Directory, path);
    }
    const auto remembered = DirectoryPathCache.find(row.Directory);
    if (remembered != DirectoryPathCache.end()) {
        path = remembered->second;
        return true;
    }
    if (row.Directory_Parent.CompareNoCase(L"TARGETDIR") != 0) {
        const auto parent = rows.find(row.Directory_Parent);
        if (parent == rows.end() || depth == DEEPEST ||
            !UserDirectoryPath(parent->second, rows, path, depth + 1)) {
            return false;
        }
        path = AppendedPath(path, row.DefaultDir);
    } else {
        // The property of an added drive, which the rows alone don't name.
        path.Empty();
        static_cast<void>(
            GetInstallerText(m_database, row.Directory + SUBSTITUTE_SUFFIX, path, WizGetPropertyW));
    }
    DirectoryPathCache.emplace(row.Directory, path);
    return true;
}

// ---- order

void CAddFilesTreeCtrl::SortEverything()
{
    for (HTREEITEM item = GetRootItem(); item; item = GetNextSiblingItem(item)) {
        SortBelow(item);
    }
    SortChildren(TVI_ROOT);
    Expand(GetRootItem());
}

void CAddFilesTreeCtrl::SortBelow(HTREEITEM item)
{
    for (HTREEITEM child = GetChildItem(item); child; child = GetNextSiblingItem(child)) {
        if (GetChildItem(child)) {
            SortBelow(child);
        }
    }
    SortChildren(item);
}
