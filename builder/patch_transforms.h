// The transforms of a patch file.
#pragma once

#include "builder/patch_chain.h"

// Those that change the product; the second one of each pair, which brings the patch's own tables, is left out, and so is one
// whose summary can't be read. None for a file that is no patch.
[[nodiscard]] std::vector<PatchTransform> ReadPatchTransforms(const CString& path);
