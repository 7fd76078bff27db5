// Paths as texts: joining, closing backslashes, the folder above, the form without a limit of length. No window header.
#pragma once

#include "base/string.h"

// Folder and name with one backslash between them; the folder alone for an empty name.
CString JoinFolder(const CString& folder, const CString& name);
// Without closing backslashes, of which a drive's root keeps its one; with one where none stands at the end.
CString WithoutClosingBackslash(const CString& path);
CString WithClosingBackslash(const CString& path);
// The folder above, without closing backslash ("C:\a" for "C:\a\b\"); empty for a bare name, a drive's root stays.
CString FolderAbove(const CString& path);
// The same with its backslash, for walks upwards that end: empty at "C:\", "\\server\" and above.
[[nodiscard]] CString ParentFolder(const CString& folder);
// What stands in front of a file's name, with its backslash; empty for a bare name.
[[nodiscard]] CString FolderOfFile(const CString& file);
// A closing backslash doesn't count.
CString LastName(const CString& path);
// True when `path` is `folder` or lies below it, in any case.
bool IsSameOrBelow(const CString& path, const CString& folder);

// `\\?\C:\x` for `C:\x`, `\\?\UNC\server\share` for `\\server\share`: the form without a limit of 260 characters.
// Other paths, and paths that have the form already, come back as they are.
CString UnlimitedPath(const CString& path);
// The form in which a full path is handed to the system's calls: the one without a limit for a long path, the path itself
// for any other, so that the system resolves what it always did.
[[nodiscard]] CString FilePath(const CString& path);
