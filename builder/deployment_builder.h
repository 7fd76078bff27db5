// Carries out a build plan. The deployment appears by one rename at the end: whatever happens before leaves the old
// deployment, or none.
//
//   CleanUpLocation(location);                          at start and before listing deployments
//   BuildResult result = BuildDeployment(plan, progress);
//
// One build of one deployment at a time, over all computers: a second one is refused with a message.
#pragma once

#include "builder/build_plan.h"
#include "builder/build_result.h"
#include "builder/build_review.h"

// Builds; returns after the deployment stands or everything is undone. May run on another thread than the one that
// opened the databases, as long as nobody else uses them meanwhile. Nothing is thrown.
[[nodiscard]] BuildResult BuildDeployment(const BuildPlan& plan, IBuildProgress& progress) noexcept;

// The checks of a build alone, and what they decided; nothing is written but probes of the right to write, which go again. A
// refused one has the warnings up to then and nothing else; so has a canceled one, with the code 1602.
[[nodiscard]] OperationError ReviewBuild(const BuildPlan& plan, IBuildProgress& progress,
                                         BuildReview& review) noexcept;
[[nodiscard]] OperationError ReviewBuild(const BuildPlan& plan, BuildReview& review) noexcept;
// The same for who wants the warnings alone, which are added.
[[nodiscard]] OperationError CheckBuild(const BuildPlan& plan, std::vector<CString>& warnings) noexcept;

// Removes what dead builds left in a location: `.<name>.staging-<8 hex digits>` and `.<name>.old-<8 hex digits>`
// folders whose lock file nobody holds. Where a build died between its two renames the old deployment is put back.
// Nothing else is touched. `messages` gets a sentence for each thing done or not possible; failures are not fatal.
void CleanUpLocation(const CString& location, std::vector<CString>& messages) noexcept;
