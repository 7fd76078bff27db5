// The files that a run writes its answers or its result to: where they may lie, and how they come to lie there.
#pragma once

#include "setup/command_line.h"
#include "setup/run_log.h"

// Looks whether the file of --record may be written where it is to lie, and removes an older one, which would otherwise look
// like this run's when it breaks off. Exit code 0, also without --record, or how the run ends. The log of the command line
// is there already.
[[nodiscard]] RunOutcome PrepareRecord(const CommandLine& line);

// Refuses a report or a log in a folder that a command on deployments only reads. Before the log is opened: that alone
// would write there.
[[nodiscard]] RunOutcome CheckOutputPlaces(const CommandLine& line);
// As PrepareRecord, for --report.
[[nodiscard]] RunOutcome PrepareReport(const CommandLine& line);
// The same for the file of --plan.
[[nodiscard]] RunOutcome PreparePlan(const CommandLine& line);

// Writes the text whole or not at all, in UTF-8; what was there before stays until then. 0, or the system's code.
[[nodiscard]] unsigned long ReplaceTextFile(const CString& file, const CString& text,
                                            bool byteOrderMark = true);
// Writes it under the first free name: "a.txt", "a (2).txt" and so on, which `file` is then.
[[nodiscard]] unsigned long WriteFreeTextFile(CString& file, const CString& text);
