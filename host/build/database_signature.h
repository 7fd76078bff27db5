// The digital signature of an installer file: two streams of its storage.
#pragma once

#include "window/string.h"

// Removes a signature that no longer fits. False when there was none.
bool RemoveSignature(const CString& path);
