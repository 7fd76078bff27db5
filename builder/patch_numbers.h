// The numbers that patches give to their media and files on workstations.
#pragma once

#include "builder/build_plan.h"

#include <functional>

// The highest of all patches that are installed along with a product. A file lies on the first medium whose last number
// isn't lower than its own, and media are told apart by theirs: what is added to the product has to stand behind both, or a
// workstation would look for it in the cabinet of a patch.
struct PatchNumbers
{
    long long disk = 0;
    long long file = 0;
};

// Found by applying the patches to a copy beside the working copy, which goes at once. What can't be applied has no numbers: the
// check of patches has its say about it. `poll` is called now and then and may throw.
[[nodiscard]] PatchNumbers FindPatchNumbers(const BuildDatabase& database, const std::function<void()>& poll);
