// What keeps patches from being applied. With a wrong one the installer would end with success and the old files, so it is
// found before anything is copied.
#pragma once

#include "builder/build_plan.h"
#include "builder/readme_text.h"

#include <functional>

// Throws a BuildFailure for the first patch that isn't there, is none, has changed since it was chosen, or doesn't apply to its
// product. `poll` is called now and then and may throw.
void RequirePatchesApply(const BuildPlan& plan, const std::function<void()>& poll);

// Throws a BuildFailure for the first patch file that was copied with another content than the check found.
void RequirePatchesAsChosen(const BuildPlan& plan, const std::vector<ManifestEntry>& copied);
