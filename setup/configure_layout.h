// Where the configure dialog's tabs, page and buttons stand, and how large the dialog is.
#pragma once

#include "base/string.h"

#include <windows.h>

class CUiManager;

// Gives the window the size in which a page of `room` pixels can be seen whole, as far as the screen allows, near to
// where it stands, and places its children.
void SizeConfigureWindow(HWND dialog, SIZE room);

// Sizes the window and moves it to where the user left it, else over the page before it (`ui`, which may be null), else to
// the middle. `key`: see ReadWindowCorner.
void PlaceConfigureWindow(HWND dialog, SIZE room, const CString& key, CUiManager* ui);
// For the next time, and for the page that comes next.
void RememberConfigurePlace(HWND dialog, const CString& key, CUiManager* ui);

// The room that the template's page has, in pixels: pages that need less get as much.
[[nodiscard]] SIZE LeastPageRoom(HWND dialog);
