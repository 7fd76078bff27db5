// What the tree of additional files and its page say to others by messages.
#pragma once

#include <windows.h>

// Posted to the page when files were dropped on its tree: lParam is the HDROP, which the page frees. A point outside of the
// items means the selected folder.
constexpr UINT FILES_MESSAGE_DROPPED = WM_APP + 1;

// Sent to the tree: where an item's file comes from. wParam is the item, lParam a buffer of FILES_SOURCE_CAPACITY characters.
// The result is the path's length; 0 for folders and drives, which have no source. A path that doesn't fit is cut.
constexpr UINT FILES_MESSAGE_GET_SOURCE = WM_APP + 2;
constexpr int FILES_SOURCE_CAPACITY = 32768;
