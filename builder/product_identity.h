// The form of a product's version. No window header.
#pragma once

#include "base/string.h"

// One to four numbers of up to nine digits with dots between them: "27", "27.0.1", "27.0.1.4711". The installer
// counts the first three.
[[nodiscard]] bool IsInstallerVersion(const CString& text);
// True when the installer has room for the numbers that it counts: 255.255.65535 at most. Beyond that it compares
// other numbers than the text shows.
[[nodiscard]] bool IsVersionComparable(const CString& text);
