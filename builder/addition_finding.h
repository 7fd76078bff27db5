// One thing that is wrong with an addition, as a page, a log and a build report it.
#pragma once

#include "base/string.h"

// Which sources a check of additions looks at.
enum class SourceLook
{
    All,
    New, // those that weren't found good before
};

struct AdditionFinding
{
    // What a build is refused with; 0 where it isn't refused, but doesn't bring what somebody may expect.
    unsigned int code = 0;
    CString
        strTarget; // on a workstation, as a person reads it; a name where there is no path; empty: of all additions
    CString strSource; // of a file
    CString strReason; // what is wrong and what to do, as sentences

    [[nodiscard]] bool Blocks() const { return code != 0; }
    friend bool operator==(const AdditionFinding&, const AdditionFinding&) = default;
};
