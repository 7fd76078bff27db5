// The forms of what names a product: its code and its version. No window header.
#pragma once

#include "base/string.h"

// A GUID in braces, in any case: {12345678-1234-1234-1234-123456789ABC}.
[[nodiscard]] bool IsBracedGuid(const CString& text);

// One to four numbers of up to nine digits with dots between them: "27", "27.0.1", "27.0.1.4711". The installer
// counts the first three.
[[nodiscard]] bool IsInstallerVersion(const CString& text);
// True when the installer has room for the numbers that it counts: 255.255.65535 at most. Beyond that it compares
// other numbers than the text shows.
[[nodiscard]] bool IsVersionComparable(const CString& text);
