// The text forms of GUIDs, and the keys that are made of them.
#pragma once

#include "base/string.h"

// 36 characters: hexadecimal digits, in either case, and hyphens in their places.
[[nodiscard]] bool IsGuidForm(const CString& text);

// A GUID in braces, in any case: {12345678-1234-1234-1234-123456789ABC}.
[[nodiscard]] bool IsBracedGuid(const CString& text);

// The text without all leading "{" and all trailing "}".
[[nodiscard]] CString StripGuidBraces(const CString& text);

// The mark of everything that a user added to an installer database.
inline constexpr wchar_t TARN_KEY_PREFIX[] = L"TARN_";

// The GUID part of a "TARN_" key with hyphens for its underscores. False, with `guid` untouched, when the text doesn't
// begin with the prefix.
[[nodiscard]] bool GetTarnKeyGuid(const CString& text, CString& guid);

// True for the key of a row that a user added: 41 characters, "TARN_" and a GUID with underscores. Hyphens count too, as
// in IsTarnGuidKey, so that the pages and the builder take the same rows for a user's.
[[nodiscard]] bool IsUserKey(const CString& key);

// ---- those that the system makes or judges; not on builds without Windows ---------------------------------------

// A new GUID in upper case, with hyphens and without braces; empty when the system gives none.
[[nodiscard]] CString NewGuidText();

// True for the text of a GUID, braces allowed. Null is none.
[[nodiscard]] bool IsGuidText(const wchar_t* text);

// True for "TARN_" and a GUID, braces allowed, with underscores (or hyphens). IsUserKey is the test of a whole key.
[[nodiscard]] bool IsTarnGuidKey(const wchar_t* text);
