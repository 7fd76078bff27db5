// Writes decided differences into an open database.
#pragma once

#include "builder/change_report.h"
#include "builder/database_snapshot.h"

// Writes the differences; `wanted` has the columns of their tables, and `path` names the database in messages. Tables with
// streams are passed over: they hold no row that a build decides on. `poll` is called now and then and may throw.
void ApplyDifferences(MSIHANDLE database, const CString& path, const std::vector<RowDifference>& differences,
                      const DatabaseSnapshot& wanted, const std::function<void()>& poll);
