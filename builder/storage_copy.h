// Copies what a database file holds, and nothing else.
#pragma once

#include "base/string.h"

// A changed file keeps old contents in parts that it doesn't use any more; the copy has none of them. `target` is a new
// file. 0, or a system code.
[[nodiscard]] unsigned int CopyStorage(const CString& source, const CString& target);
