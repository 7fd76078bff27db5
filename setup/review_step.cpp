#include "setup/review_step.h"

#include "include/navigation.h"
#include "setup/background_work.h"
#include "setup/exit_codes.h"
#include "setup/resource.h"
#include "setup/review_compose.h"

#include <utility>

namespace {

constexpr WorkTexts DECIDING_TEXTS = {IDS_DECIDING_TITLE, IDS_DECIDING_TITLE_SHARE, IDS_DECIDING_CANCELLING,
                                      IDS_DECIDING_CANCEL_QUESTION, IDS_DECIDING_SHUTDOWN_REASON};

} // namespace

RunReview MakeReview(CSetupHost& host, const std::vector<RecordedPage>& pages, IBuildProgress& progress)
{
    RunReview review;
    BuildReview build;
    review.refusal = host.ReviewBuild(progress, build);
    review.lines = ComposeReview(pages, build, review.refusal);
    review.warnings = std::move(build.warnings);
    return review;
}

ReviewEnd ShowReview(CSetupHost& host, const std::vector<RecordedPage>& pages, const ReviewedPage& visited,
                     bool builds, CRunLog& log)
{
    const CString name = host.GetSetupManager().m_strDeploymentName;
    ReviewEnd end;
    WaitForWork(name, DECIDING_TEXTS, log,
                [&](IBuildProgress& progress) { end.review = MakeReview(host, pages, progress); });
    if (end.review.refusal.code == SETUP_CANCELLED) {
        end.result = NAVIGATION_BACK;
        return end;
    }
    CReviewDialog dialog({.strName = name,
                          .review = end.review.lines,
                          .visited = visited,
                          .bRefused = static_cast<bool>(end.review.refusal),
                          .bBuilds = builds});
    end.result = dialog.Run();
    if (end.result == CReviewDialog::VISIT) {
        end.visit = {dialog.GetVisited().strPage, dialog.GetVisited().strProductCode};
    }
    return end;
}
