// Forms of paths and file names, judged by their text alone.
#pragma once

#include "base/string.h"

// What PathIsUNCW answers: two backslashes in front; of the "\\?\" forms only "\\?\UNC\".
[[nodiscard]] bool IsUncForm(const CString& text);

// True when the text holds none of \/:*?"<>|. The empty text passes.
[[nodiscard]] bool IsValidFileName(const CString& text);

// A path that goes into profiles and feeds: absolute or relative, with or without a server. The empty text passes.
[[nodiscard]] bool IsValidPath(const CString& text);

// At least a server and a share, each a valid file name.
[[nodiscard]] bool IsValidUncPath(const CString& text);

// The pieces between backslashes, trimmed, none empty, joined again with a backslash after each: "C:\\ a \b" gives
// "C:\a\b\".
[[nodiscard]] CString RebuildPath(const CString& path);

// The target of a DOS device that stands for another folder holds a drive of its own: "\??\C:\folder".
[[nodiscard]] bool IsSubstitutedTarget(const CString& target);
