// The review of a run that a person drives: finds out what would be built, and shows it.
#pragma once

#include "host/setup_host.h"
#include "setup/answers_record.h"
#include "setup/review_dialog.h"
#include "setup/review_document.h"
#include "setup/run_log.h"

// What the build would do, found out anew, in words.
struct RunReview
{
    ReviewDocument lines;
    std::vector<CString> warnings;
    OperationError refusal; // what the build would end with before it copies anything
};

[[nodiscard]] RunReview MakeReview(CSetupHost& host, const std::vector<RecordedPage>& pages,
                                   IBuildProgress& progress);

// How the review was left.
struct ReviewEnd
{
    int result =
        0; // as CReviewDialog::Run; NAVIGATION_BACK too when a person stops it before the window comes up
    ReviewedPage visit; // VISIT: the page to go to
    RunReview review;   // what was shown
};

// `pages`: what was chosen. `visited`: the page that a person comes back from. With `builds` false the run ends behind the review.
[[nodiscard]] ReviewEnd ShowReview(CSetupHost& host, const std::vector<RecordedPage>& pages,
                                   const ReviewedPage& visited, bool builds, CRunLog& log);
