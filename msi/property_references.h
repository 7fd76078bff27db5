// References to installer properties inside a text: "[Name]".
#pragma once

#include "base/string.h"

#include <functional>

// The value of a property; empty for an unknown one.
using PropertyLookup = std::function<CString(const CString& name)>;

// A property whose value holds a reference to itself would never come to an end. So references stay as they are once the
// text would grow by more characters than this, or values brought this many more names than the text had references.
inline constexpr int EXPANSION_GROWTH_LIMIT = 1 << 20;
inline constexpr int NESTED_REFERENCE_LIMIT = 1000;

// The text with its references resolved from left to right. The first reference of a name sets all of that name in the
// text. An opening bracket without a closing one stays.
[[nodiscard]] CString ExpandPropertyReferences(CString text, const PropertyLookup& lookup);
