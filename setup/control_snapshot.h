// What a person can have entered on a page: the contents of its controls, read from outside. Two equal snapshots mean
// that nothing would be lost.
#pragma once

#include "base/string.h"

#include <windows.h>

#include <vector>

// A line for each edit, button, list, combo box, list view and tree below `page`. Labels and what is selected in a list
// don't count: they follow from what is entered, or are no entry.
[[nodiscard]] std::vector<CString> ReadControls(HWND page);
