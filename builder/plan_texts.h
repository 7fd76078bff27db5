// Which texts of a plan can't be written into scripts and notes as what they are. No window header.
#pragma once

#include "builder/build_failure.h"
#include "builder/build_plan.h"

// The first such text: a product code that is no GUID, a version that is none, a path, patch, property or display
// option that would be read as something else. Code 0 when all are fit.
[[nodiscard]] BuildFailure FindUnfitText(const BuildPlan& plan);
