// Paths of files that the pages open.
#pragma once

#include "base/string.h"

// The folder without quotes around it, and the file below it. Empty when the result has 260 characters or more.
[[nodiscard]] CString JoinPath(const CString& folder, const CString& file);

// The text without the quotes around it, if it has both.
[[nodiscard]] CString UnquotePath(const CString& path);
