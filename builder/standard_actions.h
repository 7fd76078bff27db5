// The installer's standard actions that bring and remove additions. A package without files of its own lacks them. No
// window header.
#pragma once

#include "builder/change_report.h"

// Adds those that InstallExecuteSequence lacks, with the numbers that the installer's documentation suggests, or the
// nearest ones that are free and keep the documented order among the package's own actions. Answers a sentence when
// there is no such number; the snapshot is then of no use.
[[nodiscard]] CString AddMissingActions(DatabaseSnapshot& database);
