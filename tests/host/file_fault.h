// Makes an operation of builder/file_operations.h fail, in programs that link rollout_build_with_faults.
#pragma once

#include <windows.h>

// The operation of that number (from 1, counted over all of them) fails with the code, all later ones too when `stays`;
// with code 0 the process ends there as if it had been killed. Number 0 switches it off.
struct FileFault
{
    long long operation = 0;
    DWORD code = 0;
    bool stays = false;
};
constexpr UINT KILLED_BY_FAULT = 99; // the exit code of a process that ended so

void SetFileFault(const FileFault& fault);
[[nodiscard]] long long CountedFileOperations(); // since the last SetFileFault
[[nodiscard]] long long CountedFlushes();        // those of FlushToDisk among them

// True while a CFaultScope lives: what is done now is counted.
[[nodiscard]] bool IsFaultScopeOpen();

// Switches faults off again, also when a check leaves the test.
class CFaultScope
{
public:
    explicit CFaultScope(const FileFault& fault);
    CFaultScope(const CFaultScope&) = delete;
    CFaultScope& operator=(const CFaultScope&) = delete;
    ~CFaultScope();
};
