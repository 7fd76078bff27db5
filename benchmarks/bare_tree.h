// The tree of the paths page, made by the bare calls.
#pragma once

#include <windows.h>

// Pictures and nodes as the page has them on the sample product, when the dialog has that tree. The image list goes with
// the next call.
void FillBareTree(HWND dialog, HMODULE texts);
