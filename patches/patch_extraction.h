// From the downloaded file to the patch file: a patch is used as it is, a program that holds one is run.
#pragma once

#include "base/string.h"

// Full path of the patch that a downloaded file gives: the file itself for a patch, `folder` and the program's name with the
// ending .msp for a program. Empty for any other file.
[[nodiscard]] CString PatchFileOf(const CString& downloaded, const CString& folder);
[[nodiscard]] bool IsSelfExtracting(const CString& downloaded);

// Runs the program, which writes its patch to `patch`, and waits for its end while the page's messages go on. Whether it did
// is seen when the patch is used: neither a program that can't start nor its exit code is looked at.
void ExtractPatch(const CString& program, const CString& patch);
