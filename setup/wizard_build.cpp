// What of a run stands behind the last choosing page: the review, the build, and what is reported of it.
#include "setup/wizard.h"

#include "base/system_text.h"
#include "include/navigation.h"
#include "setup/answers_output.h"
#include "setup/build_dialog.h"
#include "setup/exit_codes.h"
#include "setup/product_names.h"
#include "setup/resource.h"
#include "setup/review_compose.h"
#include "setup/review_dialog.h"
#include "setup/review_output.h"
#include "setup/text_forms.h"
#include "setup/texts.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace {

// More than a few would make a box that no screen holds; the log has them all.
CString WarningLines(const std::vector<CString>& warnings)
{
    constexpr std::size_t SHOWN = 5;
    CString lines;
    for (std::size_t index = 0; index < warnings.size() && index < SHOWN; ++index) {
        lines += L"\n\n" + warnings[index];
    }
    if (warnings.size() > SHOWN) {
        lines += L"\n\n" + SetupText(IDS_BUILD_MORE_WARNINGS,
                                     {NumberText(static_cast<long long>(warnings.size() - SHOWN))});
    }
    return lines;
}

std::vector<CString> WithoutThose(std::vector<CString> texts, const std::vector<CString>& others)
{
    std::erase_if(texts, [&](const CString& text) {
        return std::find(others.begin(), others.end(), text) != others.end();
    });
    return texts;
}

// Logs each step before the window is notified, which shows the last of those that follow fast on one another.
class CLoggedProgress final : public IBuildProgress
{
public:
    // Borrows both. `decided`: is called with what the build has decided.
    CLoggedProgress(IBuildProgress& shown, CRunLog& log, std::function<void(const BuildReview&)> decided)
        : m_shown(shown), m_log(log), m_decided(std::move(decided))
    {
    }

    void OnStep(const CString& sentence) override
    {
        m_log.Line(L"  " + sentence);
        m_shown.OnStep(sentence);
    }
    bool OnProgress(std::uint64_t bytesDone, std::uint64_t bytesTotal, const CString& file) override
    {
        return m_shown.OnProgress(bytesDone, bytesTotal, file);
    }
    void OnDecided(const BuildReview& review) override
    {
        m_decided(review);
        m_shown.OnDecided(review);
    }

private:
    IBuildProgress& m_shown;
    CRunLog& m_log; // nobody else writes to it while the build runs
    std::function<void(const BuildReview&)> m_decided;
};

} // namespace

ReviewedPage CWizard::VisitedPage(const FlowMove& shown)
{
    ReviewedPage page;
    if (shown.nPage >= 0) {
        page.strPage = m_pages[static_cast<std::size_t>(shown.nPage)].strName;
        page.strProductCode =
            shown.nProduct < 0
                ? CString()
                : NamesOf(m_host->GetProducts())[static_cast<std::size_t>(shown.nProduct)].strCode;
    }
    return page;
}

FlowMove CWizard::Review(const FlowMove& shown, CWizardFlow& flow)
{
    FlowMove move;
    if (!SettleTarget(flow, move)) { // what was chosen there may have changed since then
        return move;
    }
    CAnswersOutput(m_line, m_host.get(), m_log).AddToDeployment(m_recorder.GetPages()); // they are built too
    ReviewEnd end = ShowReview(*m_host, m_recorder.GetPages(), VisitedPage(shown), m_line.Builds(), m_log);
    m_shownReview = std::move(end.review);
    if (end.result == CReviewDialog::VISIT) {
        return flow.VisitPage(end.visit.strPage, FindProduct(end.visit.strProductCode));
    }
    if (end.result == NAVIGATION_LOAD_FAILED) {
        m_strCause = SetupText(IDS_REVIEW_NO_WINDOW);
    }
    return flow.AfterReview(end.result);
}

unsigned int CWizard::Build()
{
    CSetupManager& manager = m_host->GetSetupManager();
    m_log.Line(CString(L"Building ") + manager.m_strDeploymentName);
    CAnswersOutput output(m_line, m_host.get(), m_log);
    if (m_line.IsUnattended()) { // else the review has done so
        output.AddToDeployment(m_recorder.GetPages());
    }
    // Where nobody has seen the review, the log has it, once; the build's thread has pages of its own for it.
    const std::vector<RecordedPage> pages = m_recorder.GetPages();
    bool isReviewed = !m_line.IsUnattended();
    const auto logReview = [&](const BuildReview& review, const OperationError& refusal) {
        if (!std::exchange(isReviewed, true)) {
            LogReview(ComposeReview(pages, review, refusal), m_log);
        }
    };
    CBuildDialog dialog(manager.m_strDeploymentName, [&](IBuildProgress& progress) {
        CLoggedProgress logged(progress, m_log, [&](const BuildReview& review) { logReview(review, {}); });
        return m_host->Build(logged);
    });
    const BuildResult result = dialog.Run();
    if (result.error && result.error.code != SETUP_CANCELLED) {
        BuildReview refused;
        refused.warnings = result.warnings;
        logReview(refused, result.error);
    }
    ReportBuild(result);
    const bool failed = result.error && result.error.code != SETUP_CANCELLED;
    m_strKeptAnswers = failed ? output.KeepBesideLog(m_recorder.GetPages(), m_strCause) : CString();
    manager.m_exitCode = result.error.code;
    return result.error.code;
}

// What the real run's build would do, and what it would refuse before it copies anything.
RunOutcome CWizard::CheckBuild()
{
    RunReview review = std::move(m_shownReview); // a person's plan is what the person has read
    if (m_line.IsUnattended()) {
        CAnswersOutput(m_line, m_host.get(), m_log).AddToDeployment(m_recorder.GetPages());
        CUnwatchedProgress progress;
        review = MakeReview(*m_host, m_recorder.GetPages(), progress);
    }
    LogReview(review.lines, m_log);
    LogWarnings(review.warnings);
    const CString unwritten = m_line.strPlan.IsEmpty() ? CString() : WritePlan(review.lines, m_line.strPlan);
    if (review.refusal || !unwritten.IsEmpty()) {
        m_host->GetSetupManager().m_exitCode = SETUP_FAILED;
        return {SETUP_FAILED, review.refusal ? review.refusal.message : unwritten, false};
    }
    if (!m_line.IsUnattended()) {
        MessageBoxW(nullptr, SetupText(IDS_PLAN_WRITTEN, {m_line.strPlan}), SetupText(IDS_PROGRAM_TITLE),
                    MB_OK | MB_ICONINFORMATION | MB_SETFOREGROUND);
    }
    return {SETUP_DONE, m_strCause, true};
}

void CWizard::LogWarnings(const std::vector<CString>& warnings)
{
    for (const CString& warning : warnings) {
        m_log.Line(L"Warning: " + warning);
    }
}

void CWizard::ReportBuild(const BuildResult& result)
{
    LogWarnings(result.warnings);
    if (result.error) {
        m_strCause =
            result.error.message.IsEmpty() ? SystemErrorText(result.error.code) : result.error.message;
    } else {
        m_log.Line(L"Deployment " + result.strDeploymentFolder);
    }
    const std::vector<CString> unread = WithoutThose(result.warnings, m_shownReview.warnings);
    if (!result.error && !unread.empty() && !m_line.IsUnattended()) {
        MessageBoxW(nullptr, SetupText(IDS_BUILD_WARNINGS, {WarningLines(unread)}),
                    SetupText(IDS_PROGRAM_TITLE), MB_OK | MB_ICONWARNING | MB_SETFOREGROUND);
    }
}
