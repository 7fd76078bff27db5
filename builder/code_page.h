// Whether a database can hold what is about to be written into it.
#pragma once

#include "builder/build_plan.h"
#include "builder/change_report.h"

// Throws a BuildFailure (1113) that names table, row, column and value when a new value has letters that the code
// page of the database lacks: the service would store question marks in their place without a word.
void RequireCodePageHolds(const BuildDatabase& database, const std::vector<RowDifference>& rows);

// The code page of an open database, by a file beside its working copy that goes at once.
[[nodiscard]] unsigned int ReadCodePage(const BuildDatabase& database);
// Whether it has all letters of the text. Code page 0 has those of ASCII alone.
[[nodiscard]] bool CodePageHolds(unsigned int codePage, const CString& text);

// The code page from the text of an exported `_ForceCodepage` table; -1 when it isn't one.
[[nodiscard]] int ParseCodePage(const char* text, std::size_t length);
