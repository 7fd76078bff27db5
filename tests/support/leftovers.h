// What a test may leave behind in its process: counted before and after, compared to the last one.
#pragma once

#include "base/string.h"

#include <set>

struct ProcessState
{
    int windows = 0;           // of the calling thread, hidden ones too
    int menus = 0;             // of the process
    int icons = 0;             // icons and cursors that the process can use
    int gdiObjects = 0;        // bitmaps, brushes, fonts, regions, device contexts, ...
    std::set<CString> modules; // file names of the loaded libraries of this project, in lower case
};

ProcessState ReadProcessState();

// What is more, or less, in `after`: a line each; empty when nothing is. The system's own libraries aren't counted: it
// loads and keeps them as it needs them.
CString DescribeChange(const ProcessState& before, const ProcessState& after);

// Bytes that the process's heaps have handed out.
long long AllocatedBytes();
