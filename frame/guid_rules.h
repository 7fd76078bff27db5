// The text forms of GUIDs.
#pragma once

#include "base/string.h"

// The text without all leading "{" and all trailing "}".
[[nodiscard]] CString StripGuidBraces(const CString& text);

// The mark of everything that a user added to an installer database.
inline constexpr wchar_t TARN_KEY_PREFIX[] = L"TARN_";

// The GUID part of a "TARN_" key with hyphens for its underscores. False, with `guid` untouched, when the text doesn't
// begin with the prefix.
[[nodiscard]] bool GetTarnKeyGuid(const CString& text, CString& guid);
