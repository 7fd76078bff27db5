// What a command on deployments found.
#pragma once

#include "setup/run_log.h"

// Text and JSON hold the same; both are empty when there is no result.
struct CommandResult
{
    RunOutcome outcome;
    CString strText; // lines ending in CR LF
    CString strJson;
};
