// Pictures of windows as PNG files.
#pragma once

#include "base/string.h"

#include <windows.h>

// The whole window with its frame as it stands on the screen, its own pending painting done first. Windows in front of
// it show too, as for a person. False when the file could not be written.
[[nodiscard]] bool SaveWindowPicture(HWND window, const wchar_t* path);
[[nodiscard]] bool SaveScreenPicture(const wchar_t* path);
