// Files as the host uses them: full paths of any length, whole contents, one-step replacement.
#pragma once

#include "host/setup_host.h"

#include <string>
#include <vector>

// The form that the file calls take whatever the length: \\?\C:\... or \\?\UNC\... beyond 240 units.
[[nodiscard]] CString FilePath(const CString& path);
// Full path with the closing backslash that folders carry here.
[[nodiscard]] CString FolderPath(const CString& path);
[[nodiscard]] CString ParentFolder(const CString& path); // with backslash; empty for a root
[[nodiscard]] CString FileName(const CString& path);     // a closing backslash doesn't count
[[nodiscard]] bool IsFile(const CString& path);
[[nodiscard]] bool IsFolder(const CString& path);

// The system's sentence for a code, with the code: "Access denied. (5)".
[[nodiscard]] CString SystemReason(unsigned int code);

// The same of a copy into a folder; when its disk is full, with what the file needs and what is free there.
[[nodiscard]] CString ReasonOfCopy(unsigned int code, const CString& file, const CString& folder);

// 0, or why the file could not be read. Larger files than `limit` give ERROR_FILE_TOO_LARGE.
[[nodiscard]] unsigned int ReadWholeFile(const CString& path, std::size_t limit, std::string& bytes);
// Written beside, flushed and renamed: readers see the old content or the new. 0, or why not; the old one stays then.
[[nodiscard]] unsigned int ReplaceFile(const CString& path, const std::string& bytes);
[[nodiscard]] unsigned int MakeFolders(const CString& path);
// Removes a folder with all in it; read-only files too, links without what they point to.
void RemoveFolder(const CString& path);

struct FolderItem
{
    CString name;
    bool isFolder = false;
    bool isLink = false; // to a file or folder that stands elsewhere
    unsigned long long bytes = 0;
};
// Everything in a folder but "." and "..", by name. 0, or why it could not be listed.
[[nodiscard]] unsigned int ListFolder(const CString& path, std::vector<FolderItem>& items);
