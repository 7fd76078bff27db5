// The system's own words for a code.
#pragma once

#include "base/string.h"

// In the user's language, without line end; empty when the system has none.
CString SystemText(unsigned long code);
