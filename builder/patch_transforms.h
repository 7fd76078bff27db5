// The transforms of a patch file, by what their summaries say.
#pragma once

#include "builder/patch_chain.h"
#include "builder/transform_fit.h"

#include <optional>

struct IStorage;

// Nothing for a summary that can't be read or has no flags. A text that is missing is empty.
[[nodiscard]] std::optional<TransformTarget> ReadTransformTarget(IStorage* transform);

// Those that change the product; the second one of each pair, which brings the patch's own tables, is left out, and so is one
// whose summary can't be read. None for a file that is no patch.
[[nodiscard]] std::vector<PatchTransform> ReadPatchTransforms(const CString& path);
