// From what the pages stored to a plan for the builder.
#pragma once

#include "builder/build_plan.h"
#include "builder/build_review.h"
#include "host/host_setup_manager.h"

// What the commands of a deployment do, as its deployment file says.
[[nodiscard]] WorkstationCommands CommandsOf(const DeploymentFile& file);

// Builds the plan and leaves the manager at what came out: products, result lines. `answers` is the content of
// Answers.txt; empty: no such file.
[[nodiscard]] BuildResult BuildFromManager(CHostSetupManager& manager, const CString& answers,
                                           IBuildProgress& progress);
// What such a build would refuse before it copies anything, and what it has decided by then (ReviewBuild).
[[nodiscard]] OperationError ReviewFromManager(CHostSetupManager& manager, const CString& answers,
                                               IBuildProgress& progress, BuildReview& review);
