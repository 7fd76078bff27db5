// The SHA-256 of a whole file.
#pragma once

#include "base/string.h"

#include <functional>

// 64 hex digits, lower case. Throws a BuildFailure when the file can't be read. `poll` is called for each piece and may throw.
[[nodiscard]] CString HashOfFile(const CString& path, const std::function<void()>& poll);
