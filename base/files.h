// Files and folders as wholes: full paths of any length, whole contents. Results are the system's codes; the builder has
// calls of its own, which throw.
#pragma once

#include "base/string.h"

#include <string>
#include <vector>

// Full path with the closing backslash that folders carry here.
[[nodiscard]] CString FolderPath(const CString& path);
[[nodiscard]] bool IsFile(const CString& path);
[[nodiscard]] bool IsFolder(const CString& path);

// 0, or why the file could not be read. Larger files than `limit` give ERROR_FILE_TOO_LARGE.
[[nodiscard]] unsigned int ReadWholeFile(const CString& path, std::size_t limit, std::string& bytes);
[[nodiscard]] unsigned int MakeFolders(const CString& path);
// Removes a folder with all in it; read-only files too, links without what they point to.
void RemoveFolder(const CString& path);

struct FolderItem
{
    CString strName;
    bool isFolder = false;
    bool isLink = false; // to a file or folder that stands elsewhere
    unsigned long long bytes = 0;
};
// Everything in a folder but "." and "..", by name. 0, or why it could not be listed.
[[nodiscard]] unsigned int ListFolder(const CString& path, std::vector<FolderItem>& items);
