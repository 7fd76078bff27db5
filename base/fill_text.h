// Texts with numbered holes: "%1" to "%9" stand for the arguments, "%%" for one "%". A translation may order the holes as
// it likes. What is filled in is never looked at again, so a "%1" in a name stays. No window header.
#pragma once

#include "base/string.h"

#include <initializer_list>

// A hole without an argument stays as it stands, and so does a "%" in front of anything else.
[[nodiscard]] CString FillText(const CString& text, std::initializer_list<CString> arguments);
