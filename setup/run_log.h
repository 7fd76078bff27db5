// One line a step, or a text to read, written to the log and, in an unattended run, to the console. Lines that come before the host is open
// wait for it; when it never opens they go to the file of --log by themselves.
#pragma once

#include "base/string.h"
#include "setup/console_output.h"

#include <vector>

class CSetupHost;

// How a run ended.
struct RunOutcome
{
    unsigned int exitCode = 0;
    CString strCause;    // in words; empty for success
    bool bShown = false; // a window has shown it to the user already
};

class CRunLog
{
public:
    // `file`: full path, empty for none of its own.
    CRunLog(bool toConsole, const CString& file) : m_console(toConsole), m_strFile(file) {}

    // Why nothing can be written to the file; empty when it can, or when there is none. What isn't there is made.
    [[nodiscard]] CString TryFile() const;

    void Line(const CString& text);
    // A text of several lines, none of which is a step of the run.
    void Text(const CString& lines);
    // For words that the user asked for: to the console, never to the log.
    void Say(const CString& text) { m_console.WriteLine(text); }
    // False when words would go nowhere, so that a window has to show them.
    bool HasConsole() const { return m_console.IsOpen(); }
    // The last line: code and cause. Counts once: a run ends where it is known first how.
    void Finish(const RunOutcome& outcome);

    // The host's log from now on; null when the host goes.
    void UseHost(CSetupHost* host);

private:
    void Write(const CString& text);
    void AppendToFile(const CString& text) const;

    CConsoleOutput m_console;
    CString m_strFile;
    CSetupHost* m_pHost = nullptr;
    std::vector<CString> m_waiting;
    bool m_bFinished = false;
};
