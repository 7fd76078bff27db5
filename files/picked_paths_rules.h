// The result of the system's file picker as a list of paths.
#pragma once

#include "base/string.h"

// How the picker was asked, which decides the form of its result.
struct PickerForm
{
    bool bExplorer = true; // parts end in a zero; otherwise blanks stand between them
    bool bMultiple = true; // a folder and names may come in place of one path
};

// The path at `position`, which moves to the next one and becomes null behind the last. `buffer` is the picker's result with two
// closing zeros; the first position is its start.
[[nodiscard]] CString NextPickedPath(const wchar_t* buffer, PickerForm form, const wchar_t*& position);
