// Differences of databases, applied to a third one. No window header.
#pragma once

#include "builder/change_report.h"

// Puts what differs between `before` and `after` into `database`, cell by cell: a changed cell replaces what stands there, a
// row that went goes, and a new one takes the place of one of its key. A change of a row that isn't there is dropped.
// Those that met another change: changes that were dropped, and new rows in the place of others.
std::vector<RowDifference> CarryDifferences(const DatabaseSnapshot& before, const DatabaseSnapshot& after,
                                            DatabaseSnapshot& database);
