// Texts of the resource library, read without the page library's help.
#pragma once

#include "base/string.h"

#include <windows.h>

// Folder of the built resource library, ending in a backslash.
CString BuiltLanguageFolder();

// The string of the built WizText.dll; a string that is missing fails the test.
CString ResourceText(UINT id);
// The string as a printf format with one text.
CString ResourceText(UINT id, const CString& argument);
