#include "host/setup_host.h"

#include "base/files.h"
#include "base/handle.h"
#include "base/path_text.h"
#include "host/addition_check.h"
#include "host/build_request.h"
#include "host/host_messages.h"
#include "host/host_setup_manager.h"
#include "host/languages.h"
#include "host/setup_log.h"
#include "host/system_reason.h"
#include "host/work_folder.h"
#include "installer/database.h"
#include "installer/query.h"

#include <exception>

namespace {

constexpr unsigned int STAGE_AFTER_BUILD = 4; // Cancel acts as Next: nothing is left to cancel

// Tab pages of several products come up in turn, long after their records were filled. A wizard page comes up at once, and
// names no product here.
int UseFoldersOfPage(PageContext* context)
{
    if (context->pProduct) {
        static_cast<CHostSetupManager*>(context->pSetupManager)->UseFoldersOf(context->pProduct);
    }
    return 0;
}

class CSetupHostImplementation final : public CSetupHost
{
public:
    CSetupHostImplementation(const Media& media, const CString& workFolder, const CString& logFile)
        : m_work(workFolder)
    {
        m_log.Open(logFile);
        m_manager = std::make_unique<CHostSetupManager>(media, workFolder, m_log);
        for (const PageDescription& page : media.description.flow) {
            m_flow.push_back({page.strName, page.strHelpFile});
        }
        m_bConfigure = media.description.bConfigure;
    }

    OperationError Start() { return m_manager->Start(); }

    CSetupManager& GetSetupManager() override { return *m_manager; }
    const std::vector<FlowPage>& GetFlow() override { return m_flow; }
    bool OffersConfigure() override { return m_bConfigure; }
    const std::vector<CProduct*>& GetProducts() override;
    int CountProductOpenings() override { return m_manager->CountProductOpenings(); }
    PageContext MakePageContext(const FlowPage& page, bool canGoBack) override;
    PageContext MakePageContext(const FlowPage& page, bool canGoBack, CProduct* product) override;
    OperationError CheckDatabase(CProduct& product) override;
    std::vector<AdditionFinding> CheckAdditions(CProduct& product, SourceLook look) override;
    TargetVerdict JudgeTarget() override { return m_manager->JudgeTarget(); }
    void AllowReplacing(const TargetVerdict& verdict) override { m_manager->AllowReplacing(verdict); }
    void DeclineReplacing() override { m_manager->DeclineReplacing(); }
    CString ReadModeFailure() override { return m_manager->ReadModeFailure(); }
    bool IsCancellingEnabled() override { return m_manager->IsCancellingEnabled(); }
    CString GetBaseFolder() override { return m_manager->GetBaseFolder(); }
    CString GetMediaFolder() override { return m_manager->GetMediaFolder(); }
    void SetAnswersText(const CString& text) override { m_strAnswersText = text; }
    BuildResult Build(IBuildProgress& progress) override;
    OperationError ReviewBuild(IBuildProgress& progress, BuildReview& review) override;
    void AppendLog(const CString& line) override { m_log.Append(line); }

private:
    CWorkFolder m_work; // removed after the databases in it are closed
    // Each page loads the language's texts for its own time; held here, they are mapped once. A missing library is
    // reported by the page that needs it.
    CModuleOwner m_texts{::LoadLibraryW(CHostLangMgr::Object().GetWizTextPath() + L"WizText.dll")};
    CSetupLog m_log;
    std::unique_ptr<CHostSetupManager> m_manager;
    std::vector<FlowPage> m_flow;
    bool m_bConfigure = false;
    CString m_strAnswersText;
    KnownSources m_knownSources; // of additions, so that each is opened once
};

const std::vector<CProduct*>& CSetupHostImplementation::GetProducts()
{
    if (const OperationError error = m_manager->EnsureProducts()) {
        m_log.Append(error.message);
    }
    return *m_manager->m_pProducts;
}

PageContext CSetupHostImplementation::MakePageContext(const FlowPage& page, bool canGoBack)
{
    const std::vector<CProduct*>& products = GetProducts();
    PageContext context = MakePageContext(page, canGoBack, products.empty() ? nullptr : products.front());
    m_manager->NameProductInStep(CString());
    m_manager->UseFoldersOf(nullptr);
    context.preInitHooks.clear();
    return context;
}

PageContext CSetupHostImplementation::MakePageContext(const FlowPage& page, bool canGoBack, CProduct* product)
{
    PageContext context;
    context.pSetupManager = m_manager.get();
    context.strHelpFile = page.strHelpFile;
    context.bCanGoBack = canGoBack;
    context.pProduct = product;
    context.hDatabase = product ? product->GetMsiHandle() : 0;
    const bool isOneOfSeveral = product && m_manager->m_pProducts->size() > 1;
    m_manager->NameProductInStep(isOneOfSeveral ? CString(product->m_strName) : CString());
    m_manager->UseFoldersOf(product);
    context.preInitHooks.push_back(UseFoldersOfPage);
    return context;
}

OperationError CSetupHostImplementation::CheckDatabase(CProduct& product)
{
    const unsigned int code = ForEachRow(product.GetMsiHandle(), L"SELECT `Value` FROM `Property`", {},
                                         [](MSIHANDLE) { return false; });
    return code == 0 ? OperationError() : OperationError{code, SystemReason(code)};
}

std::vector<AdditionFinding> CSetupHostImplementation::CheckAdditions(CProduct& product, SourceLook look)
{
    CHostProduct* const own = FindProductByHandle(product.GetMsiHandle());
    return own ? CheckAdditionsOf(*own, look, m_knownSources) : std::vector<AdditionFinding>();
}

BuildResult CSetupHostImplementation::Build(IBuildProgress& progress)
{
    m_manager->m_uiStage = STAGE_AFTER_BUILD; // at once, so that it stands too when the build throws
    BuildResult result = BuildFromManager(*m_manager, m_strAnswersText, progress);
    m_manager->m_exitCode = result.error.code;
    m_log.Append(HostSentence(HostText::LogBuildEnd, {NumberText(result.error.code), result.error.message}));
    return result; // its warnings are the caller's to show and to log
}

OperationError CSetupHostImplementation::ReviewBuild(IBuildProgress& progress, BuildReview& review)
{
    return ReviewFromManager(*m_manager, m_strAnswersText, progress, review);
}

CSetupHost* OpenHost(const HostOptions& options, OperationError& error)
{
    Media media;
    CHostLangMgr::Object().Choose(options.strProgramFolder, options.strLanguage);
    error = OpenMedia(options.strMedia, media);
    if (error) {
        return nullptr;
    }
    const CString parent =
        options.strWorkFolder.IsEmpty() ? TemporaryFolder() : FolderPath(options.strWorkFolder);
    CString work;
    error = MakeWorkFolder(parent, work);
    if (error) {
        return nullptr;
    }
    const CString log = options.strLogFile.IsEmpty() ? parent + LastName(work) + L".log" : options.strLogFile;
    auto host = std::make_unique<CSetupHostImplementation>(media, work, log);
    host->AppendLog(HostSentence(HostText::LogOpened,
                                 {options.strMedia, CHostLangMgr::Object().GetWizCoreLanguage(), work}));
    error = host->Start();
    if (error) {
        host->AppendLog(error.message);
        return nullptr;
    }
    return host.release();
}

} // namespace

CLangMgr& CLangMgr::Instance()
{
    return CHostLangMgr::Object();
}

CSetupHost* OpenSetupHost(const HostOptions& options, OperationError& error)
{
    try {
        return OpenHost(options, error);
    } catch (const std::exception&) {
        error = {ERROR_OUTOFMEMORY, SystemReason(ERROR_OUTOFMEMORY)};
        return nullptr;
    }
}

unsigned int WizGetPropertyW(InstallerHandle database, const wchar_t* name, wchar_t* buffer,
                             unsigned long* size)
{
    if (!FindProductByHandle(database)) {
        return ERROR_INVALID_HANDLE;
    }
    if (!name) {
        return ERROR_INVALID_PARAMETER;
    }
    CString value; // the service's word for a missing property is an empty one
    return ReadPropertyRow(database, name, value) ? CopyToBuffer(value, buffer, size)
                                                  : CopyToBuffer(CString(), buffer, size);
}

unsigned int WizGetTargetPathW(InstallerHandle database, const wchar_t* directory, wchar_t* buffer,
                               unsigned long* size)
{
    CHostProduct* product = FindProductByHandle(database);
    if (!product) {
        return ERROR_INVALID_HANDLE;
    }
    if (!directory) {
        return ERROR_INVALID_PARAMETER;
    }
    bool known = false;
    const CString path = product->GetDirectoryObject()->FindTargetPath(directory, known);
    return known ? CopyToBuffer(path, buffer, size) : UINT{ERROR_DIRECTORY};
}
