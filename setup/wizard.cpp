#include "setup/wizard.h"

#include "include/navigation.h"
#include "setup/build_dialog.h"
#include "setup/exit_codes.h"
#include "setup/paths.h"
#include "setup/resource.h"
#include "setup/texts.h"

namespace {

constexpr unsigned int STAGE_AFTER_BUILD =
    4; // Cancel means the same as Next: there is nothing left to cancel

} // namespace

CWizard::CWizard(const CommandLine& line, const Answers& answers, CRunLog& log)
    : m_line(line), m_answers(answers), m_log(log), m_pictures(line.strPictures, log),
      m_unattended(answers, m_pictures, log)
{
}

CWizard::~CWizard()
{
    m_log.UseHost(nullptr);
}

RunOutcome CWizard::Run(const CString& media)
{
    CString complaint = LoadLibraries();
    if (complaint.IsEmpty()) {
        complaint = m_pictures.Prepare();
    }
    if (complaint.IsEmpty()) {
        complaint = OpenHost(media);
    }
    if (!complaint.IsEmpty()) {
        return {SETUP_FAILED, complaint};
    }
    const std::vector<CString> pages = ExistingPages();
    WizardFlow flow(pages, !m_line.bCheck);
    if (!flow.HasChoosingPage()) {
        return {SETUP_FAILED, SetupText(IDS_NO_PAGES, {m_pageLibrary.Path()})};
    }
    AnswersError error;
    if (!CheckPagesReached(m_answers, pages, error)) {
        return {SETUP_PAGE_NOT_REACHED, error.Text()};
    }
    if (!m_line.strOut.IsEmpty()) {
        m_host->GetSetupManager().SetDeploymentLocation(m_line.strOut);
    }
    return Walk(flow);
}

CString CWizard::LoadLibraries()
{
    const CString folder = ProgramFolder();
    const CString complaint = m_hostLibrary.Load(folder);
    return complaint.IsEmpty() ? m_pageLibrary.Load(folder) : complaint;
}

CString CWizard::OpenHost(const CString& media)
{
    m_log.Line(L"Media " + media);
    HostOptions options;
    options.strMedia = media;
    options.strProgramFolder = ProgramFolder();
    options.strLanguage = m_line.strLanguage;
    options.strLogFile = m_line.strLog;
    HostError error;
    m_host = m_hostLibrary.Open(options, error);
    if (!m_host) {
        return error.message.IsEmpty() ? SystemErrorText(error.code) : error.message;
    }
    m_log.UseHost(m_host.get());
    return CString();
}

std::vector<CString> CWizard::ExistingPages()
{
    std::vector<CString> names;
    for (const FlowPage& page : m_host->GetFlow()) {
        if (m_pageLibrary.Find(page.strName)) {
            m_pages.push_back(page);
            names.push_back(page.strName);
        }
    }
    return names;
}

RunOutcome CWizard::Walk(WizardFlow& flow)
{
    FlowMove move = flow.Start();
    while (move.act != FlowAct::Finish) {
        if (move.act == FlowAct::Build) {
            move = flow.AfterBuild(Build());
            continue;
        }
        const int result = ShowPage(m_pages[static_cast<std::size_t>(move.nPage)], flow.CanGoBack());
        if (m_unattended.GetFailure()) {
            m_host->GetSetupManager().m_exitCode = m_unattended.GetFailure()->exitCode;
            return *m_unattended.GetFailure();
        }
        move = flow.AfterPage(result);
    }
    m_host->GetSetupManager().m_exitCode = move.exitCode;
    // The wizard's own pages and boxes have told whatever there was to tell.
    return {move.exitCode,
            move.exitCode == SETUP_CANCELLED && m_strCause.IsEmpty() ? CString(L"cancelled") : m_strCause,
            true};
}

int CWizard::ShowPage(const FlowPage& page, bool canGoBack)
{
    PageContext context = m_host->MakePageContext(page, canGoBack);
    const PageFunction show = m_pageLibrary.Find(page.strName);
    const int result =
        m_line.IsUnattended() ? m_unattended.Show(page.strName, show, context) : show(&context);
    if (result == NAVIGATION_RESET) { // what an earlier build has left doesn't count for the next one
        m_strCause.Empty();
    }
    if (result == NAVIGATION_LOAD_FAILED) {
        m_strCause =
            L"The page " + page.strName + L" could not be shown: its resource library can't be loaded.";
    }
    return result;
}

unsigned int CWizard::Build()
{
    CSetupManager& manager = m_host->GetSetupManager();
    m_log.Line(CString(L"Building ") + manager.m_strDeploymentName);
    CBuildDialog dialog(
        manager.m_strDeploymentName, [this](IBuildProgress& progress) { return m_host->Build(progress); },
        [this](const CString& step) { m_log.Line(L"  " + step); });
    const BuildResult result = dialog.Run();
    TellBuild(result);
    manager.m_exitCode = result.error.code;
    manager.m_uiStage = STAGE_AFTER_BUILD;
    return result.error.code;
}

void CWizard::TellBuild(const BuildResult& result)
{
    for (const CString& warning : result.warnings) {
        m_log.Line(L"Warning: " + warning);
    }
    if (result.error) {
        m_strCause =
            result.error.message.IsEmpty() ? SystemErrorText(result.error.code) : result.error.message;
    } else {
        m_log.Line(L"Deployment " + result.strDeploymentFolder);
    }
}
