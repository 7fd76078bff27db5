// Installer and system error codes in words.
#pragma once

#include "base/string.h"

#include <windows.h>

// The text of a code: the system's in the setup's language, else the resource library's for `code | 0xF000`, else the
// system's in the user's language. Empty when nobody has one. System texts end in a line break.
[[nodiscard]] CString MessageForCode(DWORD code);

// The same from a resource library that is already loaded; null skips it.
[[nodiscard]] CString MessageForCode(DWORD code, HMODULE resources);

// An error box with the code's text (none for 0) followed directly by `text`. A null title gives the library's own, an
// owner that is no window counts as none.
void ShowErrorBox(DWORD code, const wchar_t* text, const wchar_t* title, HWND owner);
