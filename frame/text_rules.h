// Text operations that pages and rules share. They need no window.
#pragma once

#include "base/string.h"

#include <vector>

// Replaces every occurrence of `old` from left to right and returns the count; what was put in isn't searched again.
// 0 when `old` is null or empty. A null `with` removes.
int ReplaceAll(CString& text, const wchar_t* old, const wchar_t* with);

// A copy in which every "&" is "&&", so that a label doesn't take it as a mnemonic mark.
[[nodiscard]] CString DoubleAmpersands(const CString& text);

// White space, or the characters of a set, removed at one end.
void TrimLeft(CString& text);
void TrimRight(CString& text);
void TrimLeft(CString& text, const wchar_t* set);
void TrimRight(CString& text, const wchar_t* set);

// Empties `list` and fills it with the pieces between the separators. With `trim` each piece loses its white space at
// both ends and empty pieces are dropped. A separator at the very end adds no piece, the empty text gives an empty
// list, and an empty separator cuts nothing. `reserved` is always 0.
void SplitText(const CString& text, const wchar_t* separator, std::vector<CString>& list, int reserved,
               bool trim);
