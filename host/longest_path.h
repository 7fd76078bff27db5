// How long the paths of the image get, for the rule of the begin page.
#pragma once

#include "base/string.h"

// The longest path below `folder` + `relative`, from `folder` on; both with a backslash. Links to folders are left out
// as the build leaves them out. Empty when there is nothing, or nothing that can be listed.
[[nodiscard]] CString LongestPath(const CString& folder, const CString& relative);
