// What is wrong with additions, item by item: decided on a snapshot of the database, so that a page can show it when
// something is added, and a build refuses what would fail on every workstation. No window header.
#pragma once

#include "builder/addition_finding.h"
#include "builder/user_files.h"

// Files and folders that would meet on a workstation under one path, by whatever directories of the tables, and names that
// Windows keeps for devices. `product` is what sentences call it. In the order of the additions.
[[nodiscard]] std::vector<AdditionFinding>
FindTargetClashes(const DatabaseSnapshot& database, const UserAdditions& additions, const CString& product);

// Additions that a build leaves out, as their rows aren't all there.
[[nodiscard]] std::vector<AdditionFinding> FindLeftOut(const UserAdditions& additions,
                                                       const CString& product);
