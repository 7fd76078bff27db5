// The digital signature of an installer file: two streams of its storage.
#pragma once

#include "base/string.h"

// True for a signed file; a file that is no storage has no signature.
bool HasSignature(const CString& path);

// Removes a signature that no longer fits, if there is one, from a file that nobody has open. 0, or why it could not be
// removed. A working copy loses it before it is opened: Wine commits no database that has one.
[[nodiscard]] unsigned int RemoveSignature(const CString& path);
