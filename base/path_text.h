// Paths as texts: joining, closing backslashes, the folder above, the form without a limit of length. No window header.
#pragma once

#include "base/string.h"

// Folder and name with one backslash between them; the folder alone for an empty name.
CString JoinFolder(const CString& folder, const CString& name);
// Without closing backslashes; a drive's root keeps its one.
CString WithoutClosingBackslash(const CString& path);
CString WithClosingBackslash(const CString& path);
CString FolderAbove(const CString& path); // without closing backslash; empty for a bare name
CString LastName(const CString& path);
// True when `path` is `folder` or lies below it, in any case.
bool IsSameOrBelow(const CString& path, const CString& folder);

// `\\?\C:\x` for `C:\x`, `\\?\UNC\server\share` for `\\server\share`: the form without a limit of 260 characters.
// Other paths, and paths that have the form already, come back as they are.
CString UnlimitedPath(const CString& path);
