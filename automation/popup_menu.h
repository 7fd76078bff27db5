// Reads the popup menu (TrackPopupMenu, or a menu bar's) of the calling thread and chooses from it by keys, which go
// through the thread's message queue. The menu runs a loop of its own, in which a script's steps go on.
#pragma once

#include "automation/step_outcome.h"
#include "base/string.h"

#include <windows.h>

#include <optional>
#include <vector>

struct PopupMenuItem
{
    CString text; // as the menu has it, with "&" and what follows a tab; empty for a separator
    int id = 0;   // 0 for a separator and for the entry of a submenu
    bool isEnabled = true;
    bool isChecked = false;
    bool isSeparator = false;
    std::vector<PopupMenuItem> submenu; // empty for a command
};

struct PopupMenuView
{
    HWND window = nullptr; // of the menu itself, not of an open submenu
    HMENU menu = nullptr;
    std::vector<PopupMenuItem> items;
};

// The open menu with its submenus. A submenu that the program fills when it opens has its entries only then.
std::optional<PopupMenuView> FindPopupMenu();

// Moves to the item with that id, through submenus too, one key at each call ("not yet"), and posts Enter once it is
// highlighted: the menu then returns its id or posts its command. "Not yet" while no menu is up; an item that is
// disabled, or stands in a disabled submenu, and one that isn't there fail with the texts.
StepOutcome ChooseMenuItem(int id);
// Posts Esc for the menu and for each of its open submenus.
StepOutcome ClosePopupMenu();
