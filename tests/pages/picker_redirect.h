// Lets the page library call the system's own folder picker where the prefix has no network.
//
// The pages root the picker at the network neighbourhood, which is empty on Wine whatever shares there are. So the call
// is let through with the whole desktop as root; all else of it, and the picker, is real.
#pragma once

#include "base/string.h"
#include "tests/support/import_redirect.h"

#include <windows.h>

struct BrowseCall
{
    int times = 0;
    UINT flags = 0;
    HWND owner = nullptr;
    bool fromNetwork = false;
    CString title;
    CString selection; // what the page asks of a picker that comes up
};
// The calls since it was last emptied; the picker's call has no argument of its own for it.
extern BrowseCall browseCall;

class CPickerRedirect : public CImportRedirect
{
public:
    CPickerRedirect();
};
