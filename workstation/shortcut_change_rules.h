// What is done to the table Shortcut, and to the list of the keys, so that they hold the shortcuts of the grid.
//
// Rows are matched by their place: without the first of three, the first two become the other two and the third goes. Keys
// are never used again.
#pragma once

#include "include/shortcut_strings.h"
#include "msi/row_statements.h"
#include "workstation/shortcut_row_rules.h"

struct ShortcutChange
{
    MsiRowAction action = MsiRowAction::Insert;
    ShortcutColumns row;
};

struct ShortcutChanges
{
    // In the order in which they are done: rows that come and go first, and then, behind storing the list, those that change.
    std::vector<ShortcutChange> comingAndGoing;
    CString list;
    std::vector<ShortcutChange> changing;
};

// `nextNumber` goes up by one for each row that comes.
[[nodiscard]] ShortcutChanges DecideShortcutChanges(const std::vector<ShortcutStrings>& existing,
                                                    const std::vector<CustomShortcutRow>& wanted,
                                                    const ShortcutColumns& shortcutTemplate,
                                                    const CString& list, int& nextNumber);
