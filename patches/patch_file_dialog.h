// The dialog in which the user picks a patch file.
#pragma once

#include "base/string.h"

#include <windows.h>

// True when one was picked; `file` then is its path. The current folder stays what it was.
[[nodiscard]] bool BrowseForPatch(HWND owner, CString& file);
