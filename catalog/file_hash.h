// The SHA-256 of a file's contents.
#pragma once

#include "base/string.h"

#include <windows.h>

// 64 hex digits, lower case, of what is left to read of the open file. 0, or the system's error number.
[[nodiscard]] unsigned int HashFile(HANDLE file, CString& sha256);
