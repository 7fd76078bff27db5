// Where a program without a console of its own writes: the file or pipe that it was started with, else the console of
// the program that started it, else nowhere.
#pragma once

#include "base/handle.h"
#include "base/string.h"

class CConsoleOutput
{
public:
    // Without `wanted` it is never open: a program that is attached to a console is ended by Ctrl+C there.
    explicit CConsoleOutput(bool wanted);

    bool IsOpen() const { return m_hOutput && m_hOutput != INVALID_HANDLE_VALUE; }
    // One line; the text's own line ends are kept. UTF-8 for a file or pipe. Any thread.
    void WriteLine(const CString& text);

private:
    CFileOwner m_console; // only when it was opened here
    HANDLE m_hOutput = INVALID_HANDLE_VALUE;
    bool m_bIsConsole = false;
};
