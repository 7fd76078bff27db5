// The system's own words for its error codes, those of the installer too.
#pragma once

#include "base/string.h"

// The text as the system has it, with its line ends, in a language (0 for the user's). Empty when there is none.
[[nodiscard]] CString FindSystemText(unsigned long code, unsigned long language = 0);

// In the user's language, on one line. Empty when the system has none.
[[nodiscard]] CString FindSystemSentence(unsigned long code);

// The same; the bare number ("error 4711") when the system has no words for it.
[[nodiscard]] CString SystemErrorText(unsigned long code);
