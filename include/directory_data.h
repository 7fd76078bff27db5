// A row of the installer table Directory, as the host's directory manager keeps it.
#pragma once

#include "window/string.h"

struct DirectoryData
{
    CString Directory;
    CString Directory_Parent; // empty for a root
    CString DefaultDir;       // [short|]target[:[short|]source], as the table holds it
};
