// A custom shortcut that the product's database already holds.
#pragma once

#include "base/string.h"

struct ShortcutStrings
{
    CString Key; // of the Shortcut table
    CString Name;
    CString Command; // the shortcut's arguments
};
