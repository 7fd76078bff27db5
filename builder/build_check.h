// The check phase, and what the check alone adds to it.
#pragma once

#include "builder/build_run.h"

// True when a deployment stands in the target's place and may be replaced, false when nothing does. Throws when what
// stands there may not be.
[[nodiscard]] bool CheckTarget(const BuildRun& run);

// True when a disk with that much room takes files of so many bytes, the builder's own texts beside them.
[[nodiscard]] bool HasRoom(std::uint64_t freeBytes, std::uint64_t fileBytes);
// What the deployment needs and where, as a sentence; once the plan is checked.
[[nodiscard]] CString RoomSentence(const BuildRun& run);

// Makes a folder in the location and removes it. A build needs no probe: its own first folder tells.
void ProbeRightToWrite(const BuildRun& run);
