#include "setup/review_step.h"

#include "include/navigation.h"
#include "setup/background_work.h"
#include "setup/exit_codes.h"
#include "setup/resource.h"
#include "setup/review_compose.h"

namespace {

constexpr WorkTexts DECIDING_TEXTS = {IDS_DECIDING_TITLE, IDS_DECIDING_TITLE_SHARE, IDS_DECIDING_CANCELLING,
                                      IDS_DECIDING_CANCEL_QUESTION, IDS_DECIDING_SHUTDOWN_REASON};

} // namespace

ReviewEnd ShowReview(CSetupHost& host, const std::vector<RecordedPage>& pages, const ReviewedPage& visited,
                     bool builds, CRunLog& log)
{
    const CString name = host.GetSetupManager().m_strDeploymentName;
    ReviewEnd end;
    BuildReview build;
    OperationError refusal;
    WaitForWork(name, DECIDING_TEXTS, log,
                [&](IBuildProgress& progress) { refusal = host.ReviewBuild(progress, build); });
    if (refusal.code == SETUP_CANCELLED) {
        end.result = NAVIGATION_BACK;
        return end;
    }
    CReviewDialog dialog({.strName = name,
                          .review = ComposeReview(pages, build, refusal),
                          .visited = visited,
                          .bRefused = static_cast<bool>(refusal),
                          .bBuilds = builds});
    end.result = dialog.Run();
    end.warnings = build.warnings;
    if (end.result == CReviewDialog::VISIT) {
        end.visit = {dialog.GetVisited().strPage, dialog.GetVisited().strProductCode};
    }
    return end;
}
