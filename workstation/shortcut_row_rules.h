// Which rows of the grid are custom shortcuts, and what is wrong with those that can't be.
#pragma once

#include "base/string.h"

#include <vector>

// What stands in a row of the grid.
struct CustomShortcutRow
{
    CString Name;
    CString Command;
    bool operator==(const CustomShortcutRow&) const = default;
};

enum class ShortcutFault
{
    None,
    Incomplete,    // a name without a command, or the other way round
    BadName,       // a character that names of files can't have
    DuplicateName, // whatever the case
    BadSwitch,
};

struct ShortcutVerdict
{
    ShortcutFault fault = ShortcutFault::None;
    CString culprit;               // the name, or the piece of the command line; empty for Incomplete
    int row = -1;                  // its place among the cells
    bool bCommandToChange = false; // the command line, not the name
};

enum class FaultyRows
{
    Refuse, // the first ends the walk
    Drop,
};

// Fills `rows` with the shortcuts among `cells`, in their order. A cell that still holds its prompt is blank, and so is a row
// of two blank cells. `rows` isn't to be used when a row was refused.
[[nodiscard]] ShortcutVerdict CollectShortcuts(const std::vector<CustomShortcutRow>& cells,
                                               const CustomShortcutRow& prompts, FaultyRows faultyRows,
                                               std::vector<CustomShortcutRow>& rows);
