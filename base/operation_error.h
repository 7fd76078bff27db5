// Why an operation failed, in the words that a person reads.
#pragma once

#include "base/string.h"

// Why something failed, for the person who reads it: which thing, why, and what to do. Code 0 is success; otherwise
// an installer or system code, or one of the program's own below.
struct OperationError
{
    unsigned int code = 0;
    CString message;
    explicit operator bool() const { return code != 0; }
};
