// Why the system refused something, in the words of the host's messages.
#pragma once

#include "base/string.h"

// The system's sentence for a code, with the code: "Access denied, code 5".
[[nodiscard]] CString SystemReason(unsigned int code);

// The same of a copy into a folder; when its disk is full, with what the file needs and what is free there.
[[nodiscard]] CString ReasonOfCopy(unsigned int code, const CString& file, const CString& folder);
