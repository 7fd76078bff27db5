// Additions whose rows aren't all there. The pages write, and remove, an addition row by row and stop where the database
// refuses one. What is left then points to rows that don't exist, and the installer fails on every workstation, so such
// an addition is left out of the database that is built. No window header.
#pragma once

#include "builder/change_report.h"

#include <vector>

// TarnCustomFile.Flags of a folder
constexpr wchar_t FOLDER_FLAGS[] = L"2";

struct IncompleteAddition
{
    CString strKey;
    CString strName; // the file's, its source or the folder's, as far as its rows tell
};

// Of `SHORT|long`, as it stands in a table, the long one.
[[nodiscard]] CString LongName(const CString& fileName);

// The steps of drives whose action is gone, by the keys of the drives. The installer fails on a step without an action.
[[nodiscard]] std::vector<CString> FindOrphanedSteps(const DatabaseSnapshot& database);
void RemoveOrphanedSteps(DatabaseSnapshot& database, const std::vector<CString>& steps);

// In the order of their keys.
[[nodiscard]] std::vector<IncompleteAddition> FindIncompleteAdditions(const DatabaseSnapshot& database);
// Their rows, but those of directories: a directory without a component is never made, and others may lie in it.
void RemoveIncompleteAdditions(DatabaseSnapshot& database, const std::vector<IncompleteAddition>& strays);
