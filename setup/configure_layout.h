// Where the configure dialog's tabs, page and buttons stand, and how large the dialog is.
#pragma once

#include <windows.h>

// Gives the window the size in which a page of `room` pixels can be seen whole, as far as the screen allows, near to
// where it stands, and places its children.
void SizeConfigureWindow(HWND dialog, SIZE room);

// The room that the template's page has, in pixels: pages that need less get as much.
[[nodiscard]] SIZE LeastPageRoom(HWND dialog);
