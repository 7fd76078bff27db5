// The process that is started only guards: the wizard runs in a second one of the same program, and this one stays to
// see how it ends. So a run that crashes, hangs or is ended from outside is reported by a process that nothing has happened
// to. When the guard goes, the run goes with it.
#pragma once

#include "setup/run_log.h"

struct GuardedEnd
{
    RunOutcome outcome;
    CString strLog;     // full path; empty when the run came to none
    bool bSaid = false; // the run has written its last line itself
};

// Starts this program once more with the same command line, and waits for its end. With a limit, a run that shows no
// sign of life for so many seconds is ended; 0 waits for ever.
[[nodiscard]] GuardedEnd GuardRun(unsigned int quietSeconds);
