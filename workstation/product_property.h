// A property of the product's installer database, read by the host.
#pragma once

#include "base/string.h"

class CProduct;

inline constexpr int LONGEST_PROPERTY = 1023; // characters that are read

// Empty when there is none, and for a longer value.
[[nodiscard]] CString ReadInstallerProperty(CProduct& product, const wchar_t* name);
