// --compare: what two deployments differ in.
#pragma once

#include "setup/command_line.h"
#include "setup/command_result.h"

// `line` with full paths. Exit code 0: nothing; SETUP_DEPLOYMENT_DIFFERS; SETUP_UNDETERMINED: one can't be read.
[[nodiscard]] CommandResult RunCompareCommand(const CommandLine& line);
