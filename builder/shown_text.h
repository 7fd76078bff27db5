// Texts of packages and settings as a note or a log shows them. No window header.
#pragma once

#include "base/string.h"

// The text on one line: what would break or disguise it (control characters, line and paragraph separators, marks of
// direction, halves of surrogate pairs) stands as its code, `<U+000A>`. File names can't hold "<", so that a name can
// be read back.
[[nodiscard]] CString ShownText(const CString& text);
// A file name back from the way it is shown.
[[nodiscard]] CString NameFromShown(const CString& shown);

// The same for a name that is stored: a blank stands for each such character.
[[nodiscard]] CString PlainName(const CString& text);

// True for the unit at `index` when a note must not hold it as it is.
[[nodiscard]] bool IsHiddenUnit(const CString& text, int index);
