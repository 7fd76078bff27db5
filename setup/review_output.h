// Where the review of a run goes when no window shows it: the log, and the file of --plan.
#pragma once

#include "setup/review_document.h"
#include "setup/run_log.h"

void LogReview(const ReviewDocument& review, CRunLog& log);
// Writes the file, as text or, by its ending .json, as JSON. The empty text, or what failed and what to do.
[[nodiscard]] CString WritePlan(const ReviewDocument& review, const CString& file);
