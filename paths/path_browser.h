// The pickers of the paths page.
#pragma once

#include "base/string.h"

#include <windows.h>

// Any folder of a file system, beginning at the one that `folder` names. True when one was picked; `folder` then is it.
[[nodiscard]] bool PickPathFolder(HWND owner, CString& folder);

// A file that exists. True when one was picked; `file` then is its whole path.
[[nodiscard]] bool PickPathFile(HWND owner, CString& file);
