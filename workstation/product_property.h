// A property of the product's installer database, read by the host.
#pragma once

#include "base/string.h"

class CProduct;

// Empty when there is none, and for a value of more than 1,023 characters.
[[nodiscard]] CString ReadInstallerProperty(CProduct& product, const wchar_t* name);
