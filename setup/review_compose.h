// The review of a run: what was chosen, what the build has decided to do, and what to know before it does. No window header.
#pragma once

#include "base/operation_error.h"
#include "builder/build_review.h"
#include "setup/answers_record.h"
#include "setup/review_document.h"

// `refusal`: what the build would end with before it copies anything; then `build` has warnings alone.
[[nodiscard]] ReviewDocument ComposeReview(const std::vector<RecordedPage>& pages, const BuildReview& build,
                                           const OperationError& refusal);
