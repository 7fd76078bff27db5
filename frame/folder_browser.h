// The system's dialog that picks a folder.
#pragma once

#include "base/string.h"

#include <windows.h>

// Shows the dialog with `path` (its first 260 characters) selected, below the network neighbourhood when `networkRoot`
// is set. True when a folder was picked; `path` is then the folder.
[[nodiscard]] bool BrowseForFolder(HWND owner, CString& path, const wchar_t* title, bool networkRoot);
