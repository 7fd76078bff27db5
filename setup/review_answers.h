// What the pages were answered with, as lines of a review. No window header.
#pragma once

#include "setup/answers_record.h"
#include "setup/review_document.h"

// The pages that belong to no product in the order in which they were shown, then each product with its pages. Answers are
// said by the words of answers files, so that who reads on in one finds them there.
[[nodiscard]] ReviewDocument ReviewAnswers(const std::vector<RecordedPage>& pages);
