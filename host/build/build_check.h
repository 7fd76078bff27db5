// The check phase, and what the check alone adds to it.
#pragma once

#include "host/build/build_run.h"

// Makes a folder in the location and removes it. A build needs no probe: its own first folder tells.
void ProbeRightToWrite(const BuildRun& run);
