// A text put into simple HTML. No window header.
#pragma once

#include "base/string.h"

// The text as HTML shows it: nothing in it is taken for a tag, and its lines stay lines. Not for an attribute's value.
[[nodiscard]] CString HtmlText(const CString& text);
