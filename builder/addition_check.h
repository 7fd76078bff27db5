// What a build would say of the additions of one open database, item by item, before there is a build: for the page on
// which they are added.
#pragma once

#include "builder/added_files.h"
#include "builder/addition_finding.h"

// What would refuse a build comes first. Reads the tables of the open database once, and looks at each source; writes
// nothing but a file beside the working copy that goes at once. Throws a BuildFailure when the database can't be read.
[[nodiscard]] std::vector<AdditionFinding> CheckAdditions(const BuildDatabase& database, SourceLook look,
                                                          KnownSources& known);
