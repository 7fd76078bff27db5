// A run of the real Setup.exe without answers, as a process of its own.
#pragma once

#include "base/handle.h"
#include "base/string.h"

#include <windows.h>

#include <vector>

class CWizardRun
{
public:
    // `words`: what follows the program's name on its command line. `folder`: for what the run writes.
    CWizardRun(const CString& words, const CString& folder);
    ~CWizardRun(); // ends the program, should it still run
    CWizardRun(const CWizardRun&) = delete;
    CWizardRun& operator=(const CWizardRun&) = delete;

    // The visible top-level windows of the guard and of the run that it guards, front first.
    [[nodiscard]] std::vector<HWND> GetWindows() const;
    // Each with the texts in it, and where the focus is.
    [[nodiscard]] CString DescribeWindows() const;

    // Waits so long for the end.
    [[nodiscard]] bool HasEnded(DWORD milliseconds) const;
    [[nodiscard]] unsigned int GetExitCode() const;
    // What the program has written to the pipe that it was started with.
    [[nodiscard]] CString ReadConsole() const;
    // Its log, without the time at the head of each line.
    [[nodiscard]] CString ReadLog() const;

private:
    [[nodiscard]] std::vector<DWORD> GetProcesses() const;

    CString m_strLog;
    CKernelOwner m_console; // the reading end of a pipe
    CKernelOwner m_process; // the guard
    DWORD m_guard = 0;
};

// The Setup.exe that is tested.
[[nodiscard]] CString BuiltProgram();
