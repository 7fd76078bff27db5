// The tables that the pages count on.
#pragma once

#include "base/string.h"
#include "installer/handle.h"

// Makes those that the package lacks. 0, or the code and the table that failed.
[[nodiscard]] unsigned int AddMissingTables(MSIHANDLE database, CString& failedTable);
