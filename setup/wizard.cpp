#include "setup/wizard.h"

#include "base/system_text.h"
#include "include/navigation.h"
#include "include/page_table.h"
#include "include/product.h"
#include "setup/answers_output.h"
#include "setup/configure_rules.h"
#include "setup/exit_codes.h"
#include "setup/failure_pane.h"
#include "setup/paths.h"
#include "setup/product_names.h"
#include "setup/resource.h"
#include "setup/texts.h"

#include <algorithm>
#include <utility>

namespace {

// Below HKEY_CURRENT_USER: what the program remembers for a user.
constexpr wchar_t USER_KEY[] = L"Software\\Velkmora\\Rollout";

} // namespace

CWizard::CWizard(const CommandLine& line, CAnswers& answers, CRunLog& log)
    : m_line(line), m_answers(answers), m_log(log), m_pictures(line.strPictures, log),
      m_unattended(answers, m_pictures, log),
      m_target(answers, log,
               [this](const CString& section, const wchar_t* role, bool yes) {
                   m_recorder.NoteQuestion(section, role, yes);
               }),
      m_baseCheck([this](const CString& folder, IBuildProgress& progress,
                         VerifyResult& result) { return m_hostLibrary.Verify(folder, progress, result); },
                  log, line.IsUnattended()),
      m_additions(
          [this](CProduct& product, SourceLook look) { return m_host->CheckAdditions(product, look); }, log,
          line.IsUnattended())
{
    m_recorder.UseDismissal([this] { return m_unattended.GetFailure().has_value(); });
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
    CWizardFlow flow(ExistingPages(), m_line.Builds());
    if (!flow.HasChoosingPage()) {
        return {SETUP_FAILED, SetupText(IDS_NO_PAGES, {m_pageLibrary.Path()})};
    }
    AnswersError error;
    std::vector<CString> names;
    for (const FlowPage& page : m_pages) {
        names.push_back(page.strName);
    }
    if (!CheckPagesReached(m_answers, names, error)) {
        return {SETUP_PAGE_NOT_REACHED, error.Text()};
    }
    UseLocationOfCommandLine();
    return Walk(flow);
}

CString CWizard::WriteRecord(const RunOutcome& outcome)
{
    return CAnswersOutput(m_line, m_host.get(), m_log).WriteRecord(m_recorder.GetPages(), outcome);
}

void CWizard::UseLocationOfCommandLine()
{
    if (!m_line.strOut.IsEmpty()) {
        m_host->GetSetupManager().SetDeploymentLocation(m_line.strOut);
    }
}

CString CWizard::LoadLibraries()
{
    const CString folder = FolderOfProgram();
    const CString complaint = m_hostLibrary.Load(folder);
    return complaint.IsEmpty() ? m_pageLibrary.Load(folder) : complaint;
}

CString CWizard::OpenHost(const CString& media)
{
    m_log.Line(L"Media " + media);
    HostOptions options;
    options.strMedia = media;
    options.strProgramFolder = FolderOfProgram();
    options.strLanguage = m_line.strLanguage;
    options.strLogFile = m_line.strLog;
    OperationError error;
    m_host = m_hostLibrary.Open(options, error);
    if (!m_host) {
        return error.message.IsEmpty() ? SystemErrorText(error.code) : error.message;
    }
    m_log.UseHost(m_host.get());
    m_endRequests.emplace(*m_host);
    m_answers.UseMediaFolder(m_host->GetMediaFolder());
    return CString();
}

std::vector<FlowStep> CWizard::ExistingPages()
{
    std::vector<FlowStep> steps;
    for (const FlowPage& page : m_host->GetFlow()) {
        if (m_pageLibrary.Find(page.strName)) {
            const PageRow* row = FindWizardPage(page.strName);
            m_pages.push_back(page);
            steps.push_back({.strPage = page.strName,
                             .bHasTab = m_pageLibrary.FindTab(TabTwin(page.strName)) != nullptr,
                             .bOfProduct = row && row->bOfProduct});
        }
    }
    return steps;
}

RunOutcome CWizard::Walk(CWizardFlow& flow)
{
    flow.OfferReview(!m_line.IsUnattended());
    flow.OfferConfigure(OffersConfigure());
    flow.UseProducts(CountProducts());
    FlowMove move = flow.Start();
    while (move.act != FlowAct::Finish) {
        switch (move.act) {
        case FlowAct::Review:
            move = Review(move, flow);
            break;
        case FlowAct::Build:
            if (SettleTarget(flow, move)) {
                move = flow.AfterBuild(Build());
            }
            break;
        default:
            move = Show(move, flow);
        }
        if (m_ended) {
            m_host->GetSetupManager().m_exitCode = m_ended->exitCode;
            return *m_ended;
        }
    }
    m_host->GetSetupManager().m_exitCode = move.exitCode;
    if (!m_line.Builds() && move.exitCode == SETUP_DONE) {
        return CheckBuild();
    }
    // The wizard's own pages and boxes have reported whatever there was to report.
    return {move.exitCode,
            move.exitCode == SETUP_CANCELLED && m_strCause.IsEmpty() ? CString(L"canceled") : m_strCause,
            true};
}

// Shows a page or the configure dialog; what comes after it.
FlowMove CWizard::Show(const FlowMove& move, CWizardFlow& flow)
{
    const bool isPage = move.act == FlowAct::ShowPage;
    const int opening = m_host->CountProductOpenings();
    const int result = isPage ? ShowPage(move, flow.CanGoBack()) : ShowConfigure(move, flow.CanGoBack());
    m_ended = m_unattended.GetFailure();
    if (m_ended) {
        return move;
    }
    const CString modeFailure = m_host->ReadModeFailure();
    if (!modeFailure.IsEmpty()) {
        return OnModeFailure(modeFailure, flow);
    }
    flow.OfferConfigure(OffersConfigure());
    if (result == NAVIGATION_NEXT) { // which the first page's choice may have changed
        flow.UseProducts(CountProducts());
    }
    if (m_host->CountProductOpenings() != opening) { // what their pages had chosen is gone
        flow.EndVisit();
    }
    FlowMove next;
    if (isPage && result == NAVIGATION_NEXT &&
        HasRole(m_pages[static_cast<std::size_t>(move.nPage)].strName, PageRole::Target)) {
        m_recorder.NoteTarget(m_host->CountProductOpenings(), m_host->GetBaseFolder());
        CheckAnsweredProducts();
        if (m_ended || !SettleTarget(flow, next) || !CheckBase(flow, next)) {
            return next;
        }
    }
    return flow.AfterPage(result);
}

int CWizard::FindProduct(const CString& productCode)
{
    const std::vector<AnswerProduct> products = NamesOf(m_host->GetProducts());
    const auto found = std::find_if(products.begin(), products.end(), [&](const AnswerProduct& product) {
        return product.strCode == productCode;
    });
    return found == products.end() ? -1 : static_cast<int>(found - products.begin());
}

void CWizard::CheckAnsweredProducts()
{
    const std::vector<AnswerProduct> products = NamesOf(m_host->GetProducts());
    AnswersError error;
    // Without any, the pages of products have more to say.
    if (!products.empty() && !CheckProductsReached(m_answers, products, error)) {
        m_ended = RunOutcome{SETUP_PAGE_NOT_REACHED, error.Text()};
    }
}

bool CWizard::SettleTarget(CWizardFlow& flow, FlowMove& move)
{
    switch (m_target.Settle(*m_host, m_line.IsUnattended())) {
    case TargetSettled::GoOn:
        return true;
    case TargetSettled::ChooseAgain:
        move = flow.StartAgain();
        break;
    case TargetSettled::EndRun:
        m_ended = m_target.GetFailure();
        break;
    }
    return false;
}

bool CWizard::CheckBase(CWizardFlow& flow, FlowMove& move)
{
    if (m_baseCheck.Check(*m_host)) {
        return true;
    }
    if (m_line.IsUnattended()) { // whoever watches has canceled the check
        m_ended = RunOutcome{SETUP_CANCELLED, L"canceled", true};
    }
    move = flow.StartAgain();
    return false;
}

// The host has closed its page, which had no way on. A choice that it couldn't enter is forgotten.
FlowMove CWizard::OnModeFailure(const CString& reason, CWizardFlow& flow)
{
    if (m_line.IsUnattended()) {
        m_ended = RunOutcome{SETUP_FAILED, reason, false};
        return flow.StartAgain();
    }
    MessageBoxW(nullptr, reason, SetupText(IDS_PROGRAM_TITLE), MB_OK | MB_ICONERROR | MB_SETFOREGROUND);
    m_host->GetSetupManager().ResetSetupMode();
    m_changes.Forget(); // the products were opened anew
    m_recorder.Forget();
    UseLocationOfCommandLine();
    return flow.StartAgain();
}

// Who modifies a deployment knows what to change: jumping beats walking.
bool CWizard::OffersConfigure()
{
    return m_host->OffersConfigure() ||
           m_host->GetSetupManager().m_setupMode == Setup::SETUPMODE_MODIFY_DEPLOYMENT;
}

int CWizard::CountProducts()
{
    return std::max(1, static_cast<int>(m_host->GetProducts().size()));
}

PageContext CWizard::MakePageContext(const FlowMove& move, bool canGoBack)
{
    const FlowPage& page = m_pages[static_cast<std::size_t>(move.nPage)];
    if (move.nProduct < 0) {
        return m_host->MakePageContext(page, canGoBack);
    }
    const std::vector<CProduct*>& products = m_host->GetProducts();
    const std::size_t index = static_cast<std::size_t>(move.nProduct);
    return m_host->MakePageContext(page, canGoBack, index < products.size() ? products[index] : nullptr);
}

CString CWizard::NameAmongSeveral(const CProduct* product)
{
    return product && m_host->GetProducts().size() > 1 ? CString(product->m_strName) : CString();
}

int CWizard::ShowPage(const FlowMove& move, bool canGoBack)
{
    const FlowPage& page = m_pages[static_cast<std::size_t>(move.nPage)];
    PageContext context = MakePageContext(move, canGoBack);
    if (move.nProduct >= 0 && !context.pProduct) {
        m_strCause = L"The page " + page.strName + L" could not be shown: " +
                     (m_host->GetProducts().empty() ? L"none of the media's products could be opened."
                                                    : L"its product is no longer open. Start Setup again.");
        return NAVIGATION_LOAD_FAILED;
    }
    if (canGoBack) { // the first page only says which deployment is meant
        m_changes.Watch(context);
    }
    m_recorder.WatchPage(context, page.strName, context.pProduct);
    m_additions.Watch(context, page.strName);
    std::optional<CFailurePane> failure;
    if (HasRole(page.strName, PageRole::Failed)) {
        failure.emplace(m_strCause, m_line.strLog, m_strKeptAnswers, context);
    }
    const PageFunction show = m_pageLibrary.Find(page.strName);
    const CString product = move.nProduct < 0 ? CString() : NameAmongSeveral(context.pProduct);
    const int result = m_line.IsUnattended()
                           ? m_unattended.Show(page.strName, move.nProduct < 0 ? nullptr : context.pProduct,
                                               product, show, context)
                           : show(&context);
    m_changes.NotePage();
    if (result == NAVIGATION_RESET) { // what an earlier build has left doesn't count for the next one
        m_strCause.Empty();
        m_changes.Forget();
        m_recorder.Forget();
        UseLocationOfCommandLine();
    }
    if (result == NAVIGATION_LOAD_FAILED) {
        m_strCause = L"The page " + OfProduct(page.strName, product) +
                     L" could not be shown. Its window, or the library with its texts, "
                     L"can't be loaded. Copy the whole program again.";
    }
    return result;
}

int CWizard::ShowConfigure(const FlowMove& move, bool canGoBack)
{
    CConfigureDialog dialog(m_host->GetSetupManager(), MakeTabs(), MakeConfigureOptions(canGoBack));
    dialog.OpenOn(FindTab(dialog, move));
    m_recorder.BeginTabs(dialog);
    const int result = m_line.IsUnattended() ? m_unattended.ShowConfigure(dialog) : dialog.Run();
    m_recorder.EndTabs();
    m_changes.Note(dialog.HasChanges());
    if (result == NAVIGATION_LOAD_FAILED) {
        m_strCause = L"The dialog with the products' pages could not be shown.";
    }
    return result;
}

// The tab of the page that is to be opened first; the first one where there is no such tab.
int CWizard::FindTab(const CConfigureDialog& dialog, const FlowMove& move)
{
    const CString page = TabTwin(m_pages[static_cast<std::size_t>(move.nPage)].strName);
    const std::vector<CProduct*>& products = m_host->GetProducts();
    const std::size_t product = static_cast<std::size_t>(std::max(0, move.nProduct));
    for (int tab = 0; tab < dialog.GetTabCount(); ++tab) {
        const ConfigureTab& described = dialog.GetTab(tab);
        if (described.strPage == page && product < products.size() &&
            described.context.pProduct == products[product]) {
            return tab;
        }
    }
    return 0;
}

// The products one after the other, each with its pages in the order of the flow.
std::vector<ConfigureTab> CWizard::MakeTabs()
{
    std::vector<CProduct*> products = m_host->GetProducts();
    if (products.empty()) {
        products.push_back(nullptr); // its tabs say so; the log says why there is none
    }
    std::vector<ConfigureTab> tabs;
    for (CProduct* product : products) {
        for (const FlowPage& page : m_pages) {
            ConfigureTab tab;
            tab.strPage = TabTwin(page.strName);
            tab.create = m_pageLibrary.FindTab(tab.strPage);
            if (!tab.create) {
                continue;
            }
            tab.strName = PageText(FindTabPage(tab.strPage)->caption);
            tab.strProduct = NameAmongSeveral(product);
            tab.strCaption = TabCaption(tab.strProduct, tab.strName, !tab.strProduct.IsEmpty());
            tab.context = m_host->MakePageContext(page, true, product);
            m_recorder.AddTabHooks(tab.context);
            m_additions.Watch(tab.context, tab.strPage);
            tabs.push_back(std::move(tab));
        }
    }
    return tabs;
}

ConfigureOptions CWizard::MakeConfigureOptions(bool canGoBack)
{
    ConfigureOptions options;
    options.bCanGoBack = canGoBack;
    // A new deployment's name and place are choices too.
    options.bLosesChoices =
        m_changes.HasChanges() || m_host->GetSetupManager().m_setupMode != Setup::SETUPMODE_MODIFY_DEPLOYMENT;
    if (!m_line.IsUnattended()) { // nobody has put the window where it stands then
        options.strPlaceKey = USER_KEY;
    }
    options.checkDatabase = [this](CProduct& product) { return m_host->CheckDatabase(product).message; };
    options.pageMade = [this](const ConfigureTab& tab, HWND page) {
        m_recorder.WatchTab(page, tab.strPage, tab.context.pProduct);
    };
    return options;
}
