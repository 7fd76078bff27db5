#include "files/file_drop.h"

#include "base/path_text.h"
#include "base/scope_exit.h"
#include "files/directory_paths.h"
#include "frame/resource_text.h"
#include "include/resource_ids.h"

#include <shellapi.h>
#include <shlwapi.h>

#include <algorithm>

namespace {

constexpr std::size_t LISTED_ITEMS = 10;
constexpr int SOURCE_LIMIT =
    MAX_PATH; // characters with the closing zero, as the picker and the build have them

// A drive's root has no name of its own: what lies in it comes without a folder.
bool IsRoot(const CString& path)
{
    return ::PathIsRootW(path) != FALSE;
}

} // namespace

bool CFileDrop::AddTo(FileTreeNode& folder, const std::vector<CString>& paths)
{
    const CString targetPath = m_tree.DisplayPathOf(folder.Key);
    const CAddFilesTreeCtrl::CPause pause(m_tree);
    for (const CString& path : paths) {
        if (!AddPath(path, targetPath)) {
            break;
        }
    }
    if (!m_tree.IsWindow()) {
        return false;
    }
    for (const CString& changed : m_changedFolders) {
        if (const FileTreeNode* const node = m_tree.FindNode(changed)) {
            m_tree.SortChildren(node->Item);
        }
    }
    return true;
}

bool CFileDrop::AddPath(const CString& path, const CString& targetPath)
{
    if (!m_progress.Continue(m_filesAdded, FolderOfFile(path))) {
        return false;
    }
    if (::PathIsDirectoryW(path)) {
        FolderContents contents;
        return !IsRoot(path)                  ? AddFolder(path, targetPath)
               : ReadContents(path, contents) ? AddContents(path, contents, targetPath)
                                              : true;
    }
    AddFile(path, targetPath);
    return m_tree.IsWindow(); // a question may have been up
}

// ---- files

void CFileDrop::AddFile(const CString& path, const CString& targetPath)
{
    const CString display = AppendedPath(targetPath, LastPartOf(path));
    const FileTreeNode* const existing = m_tree.FindNode(display);
    const FileTreeNode* const folder = m_tree.FindNode(targetPath);
    if (!folder) {
        Refuse(path, IDS_FILES_REASON_REFUSED);
    } else if (display.IsEmpty() || path.GetLength() >= SOURCE_LIMIT) {
        Refuse(path, IDS_FILES_REASON_TOO_LONG);
    } else if (existing && !existing->IsFile()) {
        Refuse(path, IDS_FILES_REASON_FOLDER_IN_WAY);
    } else if (!m_above.empty() && !::PathFileExistsW(path)) {
        Refuse(path, IDS_FILES_REASON_GONE); // of a dropped folder: no box for each
    } else {
        m_tree.SetTarget(*folder);
        switch (m_tree.AddFile(path)) {
        case AddFileResult::Added:
            ++m_filesAdded;
            m_changedFolders.insert(targetPath);
            break;
        case AddFileResult::Failed:
            Refuse(path, IDS_FILES_REASON_REFUSED);
            break;
        default:
            break;
        }
    }
}

// ---- folders

bool CFileDrop::AddFolder(const CString& path, const CString& targetPath)
{
    FolderContents contents;
    if (!ReadContents(path, contents)) { // before a folder is made for it
        return true;
    }
    if (FileTreeNode* const folder = FolderFor(path, targetPath)) {
        return AddContents(path, contents, m_tree.DisplayPathOf(folder->Key));
    }
    return true;
}

// The folder of that name, as in a file manager, or a new one.
FileTreeNode* CFileDrop::FolderFor(const CString& path, const CString& targetPath)
{
    const CString name = LastName(path);
    const CString display = AppendedPath(targetPath, name);
    FileTreeNode* folder = m_tree.FindNode(display);
    if (display.IsEmpty()) {
        Refuse(path, IDS_FILES_REASON_TOO_LONG);
    } else if (folder && folder->IsFile()) {
        Refuse(path, IDS_FILES_REASON_FILE_IN_WAY);
        folder = nullptr;
    } else if (!folder) {
        const FileTreeNode* const parent = m_tree.FindNode(targetPath);
        folder = parent ? m_tree.AddFolder(name, *parent) : nullptr;
        m_changedFolders.insert(targetPath);
        if (!folder) {
            Refuse(path, IDS_FILES_REASON_REFUSED);
        }
    }
    return folder;
}

// False for a folder that is refused.
bool CFileDrop::ReadContents(const CString& path, FolderContents& contents)
{
    const bool isRead =
        IdentityOf(path, contents.identity) && ReadFolder(path, contents.folders, contents.files);
    // Some servers number no folders.
    const bool isLoop = isRead && contents.identity.index != 0 &&
                        std::find(m_above.begin(), m_above.end(), contents.identity) != m_above.end();
    if (!isRead || isLoop) {
        Refuse(path, isLoop ? IDS_FILES_REASON_LOOP : IDS_FILES_REASON_UNREADABLE);
    }
    return isRead && !isLoop;
}

bool CFileDrop::AddContents(const CString& path, const FolderContents& contents, const CString& targetPath)
{
    m_above.push_back(contents.identity);
    const scope_exit left([this] { m_above.pop_back(); });
    for (const std::vector<CString>* const names : {&contents.files, &contents.folders}) {
        for (const CString& name : *names) {
            const CString inner = JoinFolder(path, name);
            if (!m_progress.Continue(m_filesAdded, path)) {
                return false;
            }
            if (names == &contents.files) {
                AddFile(inner, targetPath);
            } else if (!AddFolder(inner, targetPath)) {
                return false;
            }
            if (!m_tree.IsWindow()) {
                return false;
            }
        }
    }
    return true;
}

bool CFileDrop::ReadFolder(const CString& path, std::vector<CString>& folders, std::vector<CString>& files)
{
    WIN32_FIND_DATAW found = {};
    const CFindOwner search(::FindFirstFileExW(FilePath(JoinFolder(path, L"*")), FindExInfoBasic, &found,
                                               FindExSearchNameMatch, nullptr, 0));
    if (!search) {
        return ::GetLastError() == ERROR_FILE_NOT_FOUND; // an empty drive
    }
    do {
        const CString name = found.cFileName;
        if (name != L"." && name != L"..") {
            const bool isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
            (isFolder ? folders : files).push_back(name);
        }
    } while (::FindNextFileW(search.get(), &found));
    return ::GetLastError() == ERROR_NO_MORE_FILES;
}

bool CFileDrop::IdentityOf(const CString& path, Identity& identity)
{
    const CFileOwner folder(::CreateFileW(FilePath(path), FILE_READ_ATTRIBUTES,
                                          FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                          OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    BY_HANDLE_FILE_INFORMATION information = {};
    if (!folder || !::GetFileInformationByHandle(folder.get(), &information)) {
        return false;
    }
    identity.volume = information.dwVolumeSerialNumber;
    identity.index = ULONGLONG{information.nFileIndexHigh} << 32 | information.nFileIndexLow;
    return true;
}

// ---- what comes from the system and goes to the administrator

std::vector<CString> ReadDrop(HANDLE drop, POINT& point)
{
    const HDROP handle = static_cast<HDROP>(drop);
    const scope_exit finished([handle] { ::DragFinish(handle); });
    ::DragQueryPoint(handle, &point);
    std::vector<CString> paths;
    const UINT count = ::DragQueryFileW(handle, 0xFFFFFFFF, nullptr, 0);
    for (UINT index = 0; index < count; ++index) {
        CString path;
        const UINT length = ::DragQueryFileW(handle, index, nullptr, 0);
        ::DragQueryFileW(handle, index, path.GetBuffer(static_cast<int>(length)), length + 1);
        path.ReleaseBuffer();
        paths.push_back(path);
    }
    return paths;
}

CString NotAddedText(const std::vector<NotAddedItem>& items)
{
    CString lines;
    for (std::size_t index = 0; index < items.size() && index < LISTED_ITEMS; ++index) {
        lines += items[index].path + L"\n" + LoadResourceString(items[index].reason) + L"\n\n";
    }
    if (items.size() > LISTED_ITEMS) {
        lines += FormatResource(IDS_FILES_NOT_ADDED_MORE,
                                NumberText(static_cast<long long>(items.size() - LISTED_ITEMS)));
    }
    return FormatResource(IDS_FILES_NOT_ADDED, lines.TrimRight());
}
