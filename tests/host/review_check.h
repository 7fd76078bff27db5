// Holds what a build did against what its review had said before.
#pragma once

#include "builder/build_result.h"
#include "builder/build_review.h"

// A review, then at once the build's own: the same but for the disk's free bytes, which others use too.
void ExpectSameReview(const BuildReview& planned, const BuildReview& decided);

// The deployment that stands now is what the review says: its files and their bytes, the rows of its databases, what was
// added and patched; and nothing was warned of that could have been told before.
void ExpectBuiltAsReviewed(const BuildReview& review, const BuildResult& result);

// A review before a build, and what came of both. Refusals have the same code and text.
void ExpectPlanHeld(const OperationError& refusal, const BuildReview& planned,
                    const std::vector<BuildReview>& decided, const BuildResult& result);
