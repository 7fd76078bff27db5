// What the page of workstations shows, in a bare list view.
#pragma once

#include <windows.h>

// Nothing for a dialog without the list.
void FillBareList(HWND dialog, HMODULE texts);
