// What a database holds, as values. No window header: snapshot.h reads them, the rules of a build compare them.
#pragma once

#include "base/string.h"

#include <map>
#include <vector>

// Values of one row in the order of the table's columns.
using RowValues = std::vector<CString>;

struct TableSnapshot
{
    std::vector<CString> columns;
    // As the service gives them: `s72`, `L255`, `i2`, `V0`.
    std::vector<CString> columnTypes;
    // The first columns of a table are its primary key.
    int keyColumns = 0;
    std::map<std::vector<CString>, RowValues> rows;
};

using DatabaseSnapshot = std::map<CString, TableSnapshot>; // by table name
