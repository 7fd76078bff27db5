// Writes decided differences into an open database.
#pragma once

#include "builder/database_snapshot.h"

// Brings the database from one snapshot to the other; `path` names it in messages. Tables with
// streams are passed over: they hold no row that a build decides on. `poll` is called now and then and may throw.
void ApplyDifferences(MSIHANDLE database, const CString& path, const DatabaseSnapshot& from,
                      const DatabaseSnapshot& to, const std::function<void()>& poll);
