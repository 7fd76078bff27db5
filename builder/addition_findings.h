// What is wrong with additions, item by item: decided on a snapshot of the database, so that a page can show it when
// something is added, and a build refuses what would fail on every workstation. No window header.
#pragma once

#include "builder/addition_finding.h"
#include "builder/user_files.h"

#include <functional>

// The full path of an added file, as a person reads it.
[[nodiscard]] CString ShownAddition(const UserFile& file);

// Files and folders that would meet on a workstation under one path, by whatever directories of the tables, and names that
// Windows keeps for devices. `product` is what sentences call it. In the order of the additions.
[[nodiscard]] std::vector<AdditionFinding>
FindTargetClashes(const DatabaseSnapshot& database, const UserAdditions& additions, const CString& product);

// Names with letters that the database can't hold. `holds` says whether it has those of a text.
[[nodiscard]] std::vector<AdditionFinding> FindUnheldNames(const UserAdditions& additions,
                                                           const CString& product,
                                                           const std::function<bool(const CString&)>& holds);

// Additions that a build leaves out, as their rows aren't all there.
[[nodiscard]] std::vector<AdditionFinding> FindLeftOut(const UserAdditions& additions,
                                                       const CString& product);
