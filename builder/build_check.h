// The check phase, and what the check alone adds to it.
#pragma once

#include "builder/build_review.h"
#include "builder/build_run.h"

// True when a deployment stands in the target's place and may be replaced, false when nothing does. Throws when what
// stands there may not be.
[[nodiscard]] bool CheckTarget(const BuildRun& run);

// True when a disk with that much room takes files of so many bytes, the builder's own texts beside them.
[[nodiscard]] bool HasRoom(std::uint64_t freeBytes, std::uint64_t fileBytes);
// What the deployment needs in its location, with room to spare; once the plan is checked.
[[nodiscard]] std::uint64_t BytesNeeded(const BuildRun& run);
// The same and where, as a sentence.
[[nodiscard]] CString RoomSentence(const BuildRun& run);

// What the check has found and decided (run_review.cpp); once the plan is checked.
[[nodiscard]] BuildReview ReviewRun(const BuildRun& run);

// Makes the lock file in the location, as the build would first, so that a refusal has the same words; then a folder. Both are
// removed again. A build needs no probe: its own first steps tell.
void ProbeRightToWrite(const BuildRun& run);
