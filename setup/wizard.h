// A whole run: opens the media, shows the pages, builds, shows the outcome.
#pragma once

#include "setup/addition_watch.h"
#include "setup/answers.h"
#include "setup/answers_recorder.h"
#include "setup/base_check.h"
#include "setup/change_watch.h"
#include "setup/command_line.h"
#include "setup/configure_dialog.h"
#include "setup/end_requests.h"
#include "setup/flow.h"
#include "setup/page_pictures.h"
#include "setup/program_libraries.h"
#include "setup/review_step.h"
#include "setup/run_log.h"
#include "setup/target_settling.h"
#include "setup/unattended_pages.h"

#include <memory>
#include <optional>

class CWizard
{
public:
    // `line` with full paths; `answers` for an unattended run. Borrows all three.
    CWizard(const CommandLine& line, CAnswers& answers, CRunLog& log);
    ~CWizard();
    CWizard(const CWizard&) = delete;
    CWizard& operator=(const CWizard&) = delete;

    // Once an object. `media`: full path.
    [[nodiscard]] RunOutcome Run(const CString& media);
    // Writes the file of --record, if one is wanted, behind Run or what broke it off. The empty text, or what failed and what
    // to do.
    [[nodiscard]] CString WriteRecord(const RunOutcome& outcome);
    // What the run's pages held and asked, also behind Run.
    [[nodiscard]] const CAnswersRecorder& GetRecorder() const { return m_recorder; }

private:
    [[nodiscard]] CString LoadLibraries();
    [[nodiscard]] CString OpenHost(const CString& media);
    void UseLocationOfCommandLine();
    [[nodiscard]] std::vector<FlowStep> ExistingPages();
    [[nodiscard]] RunOutcome Walk(CWizardFlow& flow);
    [[nodiscard]] FlowMove Show(const FlowMove& move, CWizardFlow& flow);
    // True when the page's choice can be gone on with; otherwise `move` is what comes instead.
    [[nodiscard]] bool SettleTarget(CWizardFlow& flow, FlowMove& move);
    // The same of the deployment that is modified or built upon.
    [[nodiscard]] bool CheckBase(CWizardFlow& flow, FlowMove& move);
    [[nodiscard]] FlowMove OnModeFailure(const CString& reason, CWizardFlow& flow);
    // Ends the run when the answers name a product that it doesn't have.
    void CheckAnsweredProducts();
    [[nodiscard]] bool OffersConfigure();
    // At least 1: a product's page that has no product says so.
    [[nodiscard]] int CountProducts();
    [[nodiscard]] PageContext MakePageContext(const FlowMove& move, bool canGoBack);
    // The product's name where there are several; empty where nobody would take it for another's.
    [[nodiscard]] CString NameAmongSeveral(const CProduct* product);
    [[nodiscard]] int ShowPage(const FlowMove& move, bool canGoBack);
    [[nodiscard]] int ShowConfigure(const FlowMove& move, bool canGoBack);
    [[nodiscard]] int FindTab(const CConfigureDialog& dialog, const FlowMove& move);
    [[nodiscard]] std::vector<ConfigureTab> MakeTabs();
    [[nodiscard]] ConfigureOptions MakeConfigureOptions(bool canGoBack);
    // What comes behind the review, whose way out leads to a page, to the build or to the end.
    [[nodiscard]] FlowMove Review(const FlowMove& shown, CWizardFlow& flow);
    // The index of the product with that code; -1 for none.
    [[nodiscard]] int FindProduct(const CString& productCode);
    // The page that `shown` says was visited from the review; empty for none.
    [[nodiscard]] ReviewedPage VisitedPage(const FlowMove& shown);
    [[nodiscard]] unsigned int Build();
    [[nodiscard]] RunOutcome CheckBuild();
    void LogWarnings(const std::vector<CString>& warnings);
    void ReportBuild(const BuildResult& result);

    const CommandLine& m_line;
    CAnswers& m_answers;
    CRunLog& m_log;
    CPagePictures m_pictures;
    CUnattendedPages m_unattended;
    CHostLibrary m_hostLibrary;
    CPageLibrary m_pageLibrary;
    std::unique_ptr<CSetupHost> m_host; // goes before the libraries
    std::optional<CEndRequests> m_endRequests;
    std::vector<FlowPage> m_pages; // those that exist
    CAnswersRecorder m_recorder;
    CTargetSettling m_target;
    CBaseCheck m_baseCheck;
    CChangeWatch m_changes;
    CAdditionWatch m_additions;
    RunReview m_shownReview;           // to a person, the last time
    CString m_strCause;                // of a run that has failed so far
    CString m_strKeptAnswers;          // file with the answers of a run whose build failed
    std::optional<RunOutcome> m_ended; // without a person: how the run ends before its flow does
};
