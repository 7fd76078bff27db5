// Commands on deployments that stand: --verify and --compare. No window, no media; the result goes to the output, to the log and to the
// file of --report, and nothing else is written.
#pragma once

#include "setup/command_line.h"
#include "setup/run_log.h"

// `line` with full paths. Exit code 0: all is as it was built, or both are equal; SETUP_DEPLOYMENT_DIFFERS, SETUP_UNDETERMINED, or why there
// is no result.
[[nodiscard]] RunOutcome RunDeploymentCommand(const CommandLine& line, CRunLog& log);
