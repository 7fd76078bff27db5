// Fills a copy list by looking at the plan's sources.
#pragma once

#include "builder/copy_list.h"

#include <functional>

// Throws a BuildFailure when a source is missing, can't be read, or holds the location of the deployment itself.
// `earlierFiles`: targets of what an earlier build laid there and what comes anew with its database. `poll` is called
// for each folder, and may throw.
[[nodiscard]] CopyList ScanSources(
    const BuildPlan& plan, const std::vector<CString>& earlierFiles,
    const std::function<void()>& poll = [] {});
