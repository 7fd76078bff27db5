// What the list of patch files says to others by a message.
#pragma once

#include <windows.h>

// Sent to the service pack page: which file a line of its list stands for, as the line may show the patch's name. wParam is
// the line, lParam a buffer of PATCH_PATH_CAPACITY characters. The result is the path's length; 0 for no such line. A path
// that doesn't fit is cut.
constexpr UINT PATCH_MESSAGE_GET_PATH = WM_APP + 3;
constexpr int PATCH_PATH_CAPACITY = 32768;
