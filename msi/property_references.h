// References to installer properties inside a text: "[Name]".
#pragma once

#include "window/string.h"

#include <functional>

// The value of a property; empty for an unknown one.
using PropertyLookup = std::function<CString(const CString& name)>;

// A text may grow by this many characters before the rest of its references stays as it is: a property whose value holds
// a reference to itself would never come to an end.
inline constexpr int EXPANSION_LIMIT = 65536;

// The text with its references resolved from left to right. The first reference of a name sets all of that name in the
// text. An opening bracket without a closing one stays.
[[nodiscard]] CString ExpandPropertyReferences(CString text, const PropertyLookup& lookup);
