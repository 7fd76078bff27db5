// The program's own texts, those of the pages, and the system's words for its errors.
#pragma once

#include "base/string.h"

#include <initializer_list>

// A text of the program's string table with its holes filled (see FillText); empty when there is none.
CString SetupText(unsigned int id, std::initializer_list<CString> arguments = {});

// A text of the pages' resource library, which the host holds; empty when there is none.
CString PageText(unsigned int id);

// The system's sentence for an error code, in the user's language and without a line end; the bare number when it has
// no words for it.
CString SystemErrorText(unsigned long code);
