// GUIDs as text.
#pragma once

#include "base/string.h"

// A new GUID in upper case, with hyphens and without braces; empty when the system gives none.
[[nodiscard]] CString NewGuidText();

// True for the text of a GUID, braces allowed. Null is none.
[[nodiscard]] bool IsGuidText(const wchar_t* text);

// True for "TARN_" and a GUID with underscores (or hyphens): the key of something that a user added.
[[nodiscard]] bool IsTarnGuidKey(const wchar_t* text);
