#include "host/host_setup_manager.h"

#include "base/files.h"
#include "base/path_text.h"
#include "builder/package_sources.h"
#include "host/host_messages.h"
#include "host/languages.h"
#include "host/longest_path.h"

CHostSetupManager::CHostSetupManager(Media media, const CString& workFolder, CSetupLog& log)
    : m_openedMedia(std::move(media)), m_strWorkFolder(workFolder), m_log(log)
{
    m_pConfigReader = &m_config;
    m_pUiManager = &m_ui;
    m_pProducts = &m_products;
    m_strTextFolder = CHostLangMgr::Object().GetWizTextPath();
    m_strResourceFolder = m_strTextFolder;
    m_strLogText = log.GetFile();
    m_strLogPath = m_strLogText;
    m_ui.m_bResetAllowed1 = false;
    UseMedia(m_openedMedia);
}

CHostSetupManager::~CHostSetupManager()
{
    DeleteProductList();
}

OperationError CHostSetupManager::Start()
{
    m_firstPlatform =
        HasPackageFile(m_media, Setup::PLATFORM_X64) || !HasPackageFile(m_media, Setup::PLATFORM_X86)
            ? Setup::PLATFORM_X64
            : Setup::PLATFORM_X86;
    OperationError error = EnterFirstStage();
    if (!error) {
        error = EnsureProducts();
    }
    if (!error && !CHostLangMgr::Object().Init(&m_config)) {
        return {ERROR_INVALID_DATA, HostSentence(HostText::XmlMissingElement, {L"Language", L"Languages"})};
    }
    return error;
}

void CHostSetupManager::ReportFailure(const CString& message)
{
    m_log.Append(message);
}

void CHostSetupManager::UseMedia(const Media& media)
{
    m_media = media;
    m_config.description = media.description;
    m_strCodeText = media.description.strCode;
    m_strSetupCode = m_strCodeText;
    m_strNameText = media.description.strName;
    m_strProductName = m_strNameText;
    m_strRootText = media.strRoot;
    m_strMediaRoot = m_strRootText;
    for (int index = 0; index < 2; ++index) {
        m_strLinkText[index] = media.description.strLinkTargets[index];
    }
    m_strLinkTarget1 = m_strLinkText[0];
    m_strLinkTarget2 = m_strLinkText[1];
    m_strStepText =
        media.description.strStep.IsEmpty() ? media.description.strName : media.description.strStep;
    m_ui.m_strStepArgument = m_strStepText;
}

void CHostSetupManager::NameProductInStep(const CString& product)
{
    m_strStepOfProduct = product.IsEmpty() ? m_strStepText : m_strStepText + L" - " + product;
    m_ui.m_strStepArgument = m_strStepOfProduct;
}

void CHostSetupManager::UpdatePathRule()
{
    const PlatformDescription* platform = m_media.description.FindPlatform(m_platform);
    m_strSuffixText = platform ? platform->strFolder : CString();
    m_strImageSuffix = m_strSuffixText;
    CString longest = SETUP_FILE;
    const auto measure = [&](const CString& path) {
        if (path.GetLength() > longest.GetLength()) {
            longest = path;
        }
    };
    std::vector<CString> roots{m_media.description.strResourceFolder};
    for (const ProductDescription& product : m_media.description.products) {
        roots.push_back(PackageFolder(m_media.description, product, m_platform));
    }
    // A package at the media's root takes only what it names along.
    for (const std::unique_ptr<CHostProduct>& product : m_productObjects) {
        if (product->GetRelativeFile().Find(L'\\') < 0) {
            measure(product->GetRelativeFile());
            for (const CString& file : FindPackageFiles(product->GetMsiHandle(), m_media.strRoot)) {
                measure(file);
            }
        }
    }
    for (const CString& root : roots) {
        if (!root.IsEmpty()) {
            measure(LongestPath(m_media.strRoot, WithClosingBackslash(root)));
        }
    }
    m_strMediaFileText = m_strTextFolder + longest;
    m_strMediaFile = m_strMediaFileText;
}

void CHostSetupManager::UpdateDeploymentFolder()
{
    const bool deploys = m_setupMode >= Setup::SETUPMODE_CREATE_DEPLOYMENT;
    m_strDeploymentFolder = deploys && !m_strLocationText.IsEmpty() && !m_strDeploymentText.IsEmpty()
                                ? FolderPath(m_strLocationText) + m_strDeploymentText + L"\\"
                                : CString();
}

CString CHostSetupManager::GetMediaFolder() const
{
    return WithoutClosingBackslash(m_openedMedia.strRoot);
}

bool CHostSetupManager::DoesImageMatchPlatform(Setup::tagPLATFORM platform)
{
    return HasPackageFile(m_media, platform);
}

bool CHostSetupManager::IsTargetPlatformAllowed(Setup::tagPLATFORM platform)
{
    if (!HasPackageFile(m_media, platform)) {
        ReportFailure(HostSentence(HostText::NoProductsForPlatform, {PlatformText(platform)}));
        return false;
    }
    // Reported here the page can still be corrected; once it has stored its choice, a failure would leave it without buttons.
    const OperationError error = CheckPlatform(m_media, platform);
    if (error) {
        ReportFailure(error.message);
    }
    return !error;
}

void CHostSetupManager::SetDeploymentPlatform(Setup::tagPLATFORM platform)
{
    m_platform = platform; // its products are opened with the mode
}

void CHostSetupManager::SetDeploymentLocation(const CString& path)
{
    m_strLocationText = path;
    m_strDeploymentLocation = m_strLocationText;
    UpdateDeploymentFolder();
}

void CHostSetupManager::SetBaseDeploymentName(const CString& name)
{
    m_strBaseText = name;
    m_strBaseDeploymentName = m_strBaseText;
}

void CHostSetupManager::SetDeploymentName(const CString& name)
{
    m_strDeploymentText = name;
    m_strDeploymentName = m_strDeploymentText;
    UpdateDeploymentFolder();
}

CString CHostSetupManager::GetSrcWizTextPath()
{
    if (m_media.description.strResourceFolder.IsEmpty()) {
        return m_media.strRoot;
    }
    CString found;
    return FindLanguageFolder(m_media.strRoot + m_media.description.strResourceFolder + L"\\",
                              CHostLangMgr::Object().GetWizCoreLanguage(),
                              m_media.description.strDefaultLanguage, found);
}

void CHostSetupManager::SetMsiProperty(const wchar_t* name, const wchar_t* value, bool)
{
    if (!name || !*name) {
        return;
    }
    StoreProperty(m_properties, name, value);
    m_log.Append(HostSentence(HostText::LogProperty, {name, value}));
}

DeploymentFile CHostSetupManager::DescribeDeployment() const
{
    DeploymentFile file;
    file.strName = m_strDeploymentText;
    file.strSetupCode = m_media.description.strCode;
    file.strProductName = m_media.description.strName;
    file.strProductVersion = m_media.description.strProductVersion;
    file.strBaseName =
        m_setupMode == Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT ? m_strBaseText : m_base.file.strBaseName;
    file.strLanguage = CHostLangMgr::Object().GetDeploymentLanguage(nullptr);
    file.platform = m_platform;
    file.installMode = m_installMode == 3 ? 3 : 2;
    file.bNetworkLog = m_bNetworkLog;
    file.strNetworkLogFolder = m_strNetworkLogFolder;
    file.bSettingsOption = m_bSettingsOption;
    file.properties = m_properties;
    for (const std::unique_ptr<CHostProduct>& product : m_productObjects) {
        file.products.push_back(product->Store());
        for (const std::unique_ptr<CHostProduct>& pack : product->GetPackObjects()) {
            file.products.push_back(pack->Store());
        }
    }
    return file;
}

void CHostSetupManager::SetResultLines(const CString& first, const CString& second)
{
    m_strLineText[0] = first;
    m_strLineText[1] = second;
    m_strCompleteLine1 = m_strLineText[0];
    m_strCompleteLine2 = m_strLineText[1];
}
