// Files and folders that were dropped on the tree: files go through the same rules and questions as those of the picker,
// folders come with all that lies in them.
#pragma once

#include "files/add_files_tree.h"
#include "files/file_progress.h"

#include <set>
#include <vector>

struct NotAddedItem
{
    CString path;
    unsigned int reason = 0; // string of the resource library
};

class CFileDrop
{
public:
    CFileDrop(CAddFilesTreeCtrl& tree, CFileProgress& progress) : m_tree(tree), m_progress(progress) {}

    // Adds to the folder until everything is there or the administrator cancels. False when the page has gone meanwhile.
    bool AddTo(FileTreeNode& folder, const std::vector<CString>& paths);

    // What wasn't added, but for files that the administrator chose to keep or that were reported by a box.
    const std::vector<NotAddedItem>& GetNotAdded() const { return m_notAdded; }

private:
    // A folder of the disk, whatever its path: two paths of one folder are a loop when one lies below the other.
    struct Identity
    {
        DWORD volume = 0;
        ULONGLONG index = 0;
        bool operator==(const Identity&) const = default;
    };

    struct FolderContents
    {
        Identity identity;
        std::vector<CString> folders;
        std::vector<CString> files;
    };

    // False stops.
    bool AddPath(const CString& path, const CString& targetPath);
    void AddFile(const CString& path, const CString& targetPath);
    bool AddFolder(const CString& path, const CString& targetPath);
    bool ReadContents(const CString& path, FolderContents& contents);
    bool AddContents(const CString& path, const FolderContents& contents, const CString& targetPath);
    bool ReadFolder(const CString& path, std::vector<CString>& folders, std::vector<CString>& files);
    FileTreeNode* FolderFor(const CString& path, const CString& targetPath);
    void Refuse(const CString& path, unsigned int reason) { m_notAdded.push_back({path, reason}); }
    static bool IdentityOf(const CString& path, Identity& identity);

    CAddFilesTreeCtrl& m_tree;
    CFileProgress& m_progress;
    std::vector<Identity> m_above; // the folders of the disk that are being added
    std::vector<NotAddedItem> m_notAdded;
    std::set<CString, CompareNoCaseLess> m_changedFolders; // display paths
    int m_filesAdded = 0;
};

// The paths of a drop, which is freed. `point`: where the mouse was, in the tree's client area.
[[nodiscard]] std::vector<CString> ReadDrop(HANDLE drop, POINT& point);

// A box's text: items with their reasons, as many as a screen has room for.
[[nodiscard]] CString NotAddedText(const std::vector<NotAddedItem>& items);
