// The names of installer properties in the texts of a database. A rule: no window header.
#pragma once

#include "base/string.h"

#include <functional>

// Hands out each identifier of the installer's that stands in a text: `[A_B]`, `A_B="1" AND NOT C`, `A_B;C`. Words of
// plain text are identifiers too.
void ForEachIdentifier(const CString& text, const std::function<void(const CString& name)>& onName);
