#include "host/manager_object.h"

#include "host/build/deployment_builder.h"
#include "host/files.h"
#include "host/host_messages.h"
#include "host/languages.h"
#include "host/made_up_media.h"

#include <utility>

namespace {

CString PlatformText(int platform)
{
    return platform == Setup::PLATFORM_X64 ? L"64-bit" : L"32-bit";
}

// The longest path below a folder, relative to it.
CString LongestPath(const CString& folder, const CString& relative, int depth)
{
    constexpr int DEPTH_LIMIT = 64; // a circle of links ends here
    CString longest;
    std::vector<FolderItem> items;
    if (depth > DEPTH_LIMIT || ListFolder(folder + relative, items) != ERROR_SUCCESS) {
        return longest;
    }
    for (const FolderItem& item : items) {
        const CString path = relative + item.name;
        const CString below = item.isFolder ? LongestPath(folder, path + L"\\", depth + 1) : path;
        if (below.GetLength() > longest.GetLength()) {
            longest = below;
        }
    }
    return longest;
}

} // namespace

ManagerObject::ManagerObject(Media media, const CString& workFolder, SetupLog& log)
    : m_openedMedia(std::move(media)), m_strWorkFolder(workFolder), m_log(log)
{
    m_pConfigReader = &m_config;
    m_pUiManager = &m_ui;
    m_pProducts = &m_products;
    m_strTextFolder = LanguageManager::Object().GetWizTextPath();
    m_strResourceFolder = m_strTextFolder;
    m_strLogText = log.GetFile();
    m_strLogPath = m_strLogText;
    m_ui.m_bResetAllowed1 = false;
    UseMedia(m_openedMedia);
}

ManagerObject::~ManagerObject()
{
    DeleteProductList();
}

HostError ManagerObject::Start()
{
    m_platform = HasPackageFile(m_media, Setup::PLATFORM_X64) || !HasPackageFile(m_media, Setup::PLATFORM_X86)
                     ? Setup::PLATFORM_X64
                     : Setup::PLATFORM_X86;
    if (!m_openedMedia.strDeploymentFile.IsEmpty()) {
        DeploymentFile deployment;
        if (HostError error = ReadDeploymentFile(m_openedMedia.strDeploymentFile, deployment)) {
            return error;
        }
        m_bHasDeployments = true;
        m_setupMode = Setup::SETUPMODE_MODIFY_DEPLOYMENT;
        SetDeploymentLocation(ParentFolder(ParentFolder(m_openedMedia.strDeploymentFile)));
        SetDeploymentName(deployment.strName);
        SetBaseDeploymentName(deployment.strName);
        if (HostError error = UseBase(deployment.strName)) {
            return error;
        }
    }
    UpdatePathRule();
    HostError error = EnsureProducts();
    if (!error && !LanguageManager::Object().Init(&m_config)) {
        return {ERROR_INVALID_DATA, HostSentence(HostText::XmlMissingElement, {L"Language", L"Languages"})};
    }
    return error;
}

void ManagerObject::Tell(const CString& message)
{
    m_strLastMessage = message;
    m_log.Append(message);
}

void ManagerObject::UseMedia(const Media& media)
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

void ManagerObject::UpdatePathRule()
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
    for (const std::unique_ptr<ProductObject>& product : m_productObjects) {
        if (product->GetRelativeFile().Find(L'\\') < 0) {
            measure(product->GetRelativeFile());
            for (const CString& file : FindPackageFiles(product->GetMsiHandle(), m_media.strRoot)) {
                measure(file);
            }
        }
    }
    for (CString& root : roots) {
        root.TrimRight(L"\\");
        if (!root.IsEmpty()) {
            measure(LongestPath(m_media.strRoot, root + L"\\", 0));
        }
    }
    m_strMediaFileText = m_strTextFolder + longest;
    m_strMediaFile = m_strMediaFileText;
}

void ManagerObject::UpdateDeploymentFolder()
{
    const bool deploys = m_setupMode >= Setup::SETUPMODE_CREATE_DEPLOYMENT;
    m_strDeploymentFolder = deploys && !m_strLocationText.IsEmpty() && !m_strDeploymentText.IsEmpty()
                                ? FolderPath(m_strLocationText) + m_strDeploymentText + L"\\"
                                : CString();
}

std::vector<CString>* ManagerObject::GetDeploymentList(const CString& location)
{
    std::vector<CString> warnings;
    if (!location.IsEmpty() && IsFolder(location)) {
        CleanUpLocation(location,
                        warnings); // what a killed build left would show as a damaged deployment, or none
    }
    std::vector<CString> damaged;
    m_deployments = FindDeployments(location, damaged);
    warnings.insert(warnings.end(), damaged.begin(), damaged.end());
    for (const CString& warning : warnings) {
        Tell(warning);
    }
    return &m_deployments;
}

CString ManagerObject::GetDeploymentName(const CString& entry)
{
    DeploymentFile deployment;
    const HostError error = ReadDeploymentFile(entry, deployment);
    // One that was damaged since the list was made still has its folder's name.
    return error ? FileName(ParentFolder(entry)) : deployment.strName;
}

CString ManagerObject::GetSetupCode(const CString& entry)
{
    DeploymentFile deployment;
    if (const HostError error = ReadDeploymentFile(entry, deployment)) {
        Tell(error.message);
        return CString();
    }
    return deployment.strSetupCode;
}

Setup::tagDEPLOYMENTLOCATIONTYPE ManagerObject::CheckForDeploymentLocation(const CString& path)
{
    const CString folder = FolderPath(path);
    std::vector<FolderItem> items;
    // A deployment inside another one, or inside the media, would be copied into itself.
    const bool insideMedia = folder.Left(m_media.strRoot.GetLength()).CompareNoCase(m_media.strRoot) == 0;
    if (path.IsEmpty() || (insideMedia && !m_media.bSinglePackage) || IsFile(folder + DEPLOYMENT_FILE) ||
        ListFolder(folder, items) != ERROR_SUCCESS || !IsFolder(path)) {
        return Setup::DEPLOYMENTLOCATION_REFUSED;
    }
    if (items.empty()) {
        return Setup::DEPLOYMENTLOCATION_EMPTY;
    }
    std::vector<CString> warnings;
    return FindDeployments(folder, warnings).empty() ? Setup::DEPLOYMENTLOCATION_HAS_OTHER_FILES
                                                     : Setup::DEPLOYMENTLOCATION_HAS_DEPLOYMENTS;
}

bool ManagerObject::DoesImageMatchPlatform(Setup::tagPLATFORM platform)
{
    return HasPackageFile(m_media, platform);
}

bool ManagerObject::IsTargetPlatformAllowed(Setup::tagPLATFORM platform)
{
    if (!HasPackageFile(m_media, platform)) {
        return false;
    }
    // Told here the page can still be mended; once it has stored its choice, a failure would leave it without buttons.
    const HostError error = CheckPlatform(m_media, platform);
    if (error) {
        Tell(error.message);
    }
    return !error;
}

void ManagerObject::SetDeploymentPlatform(Setup::tagPLATFORM platform)
{
    if (platform == m_platform && m_productsOpen) {
        return;
    }
    m_platform = platform;
    DeleteProductList();
    UpdatePathRule();
    if (const HostError error = EnsureProducts()) {
        Tell(error.message);
    }
}

void ManagerObject::SetDeploymentLocation(const CString& path)
{
    m_strLocationText = path;
    m_strDeploymentLocation = m_strLocationText;
    UpdateDeploymentFolder();
}

void ManagerObject::SetBaseDeploymentName(const CString& name)
{
    m_strBaseText = name;
    m_strBaseDeploymentName = m_strBaseText;
}

void ManagerObject::SetDeploymentName(const CString& name)
{
    m_strDeploymentText = name;
    m_strDeploymentName = m_strDeploymentText;
    UpdateDeploymentFolder();
}

CString ManagerObject::FindDeploymentFile(const CString& name)
{
    // The list of the begin page is that of the location it opened with, which the user may have changed since.
    const CString mediaLocation = m_openedMedia.strDeploymentFile.IsEmpty()
                                      ? CString()
                                      : ParentFolder(ParentFolder(m_openedMedia.strDeploymentFile));
    for (const CString& location : {m_strLocationText, mediaLocation}) {
        std::vector<CString> warnings;
        for (const CString& file : FindDeployments(location, warnings)) {
            if (GetDeploymentName(file).CompareNoCase(name) == 0) {
                return file;
            }
        }
        for (const CString& warning : warnings) {
            Tell(warning);
        }
    }
    return CString();
}

void ManagerObject::ForgetBase()
{
    m_baseLoaded = false;
    m_base = DeploymentFile();
    m_config.strDeploymentLanguage.Empty();
    UseMedia(m_openedMedia);
}

HostError ManagerObject::UseBase(const CString& name)
{
    const CString file = FindDeploymentFile(name);
    if (file.IsEmpty()) {
        return {ERROR_FILE_NOT_FOUND, HostSentence(HostText::BaseGone, {name, m_strLocationText})};
    }
    DeploymentFile base;
    if (HostError error = ReadDeploymentFile(file, base)) {
        return {error.code, HostSentence(HostText::BaseDamaged, {name, error.message})};
    }
    if (base.strSetupCode.CompareNoCase(m_openedMedia.description.strCode) != 0) {
        return {ERROR_INVALID_DATA, HostSentence(HostText::BaseOtherSetup, {name, base.strSetupCode})};
    }
    const CString image = ParentFolder(file) + IMAGE_FOLDER + L"\\";
    if (!IsFolder(image)) {
        return {ERROR_PATH_NOT_FOUND, HostSentence(HostText::BaseImageGone, {name, image})};
    }
    Media media;
    if (HostError error = OpenMedia(image, media)) {
        return {error.code, HostSentence(HostText::BaseDamaged, {name, error.message})};
    }
    UseMedia(media);
    m_base = base;
    m_baseLoaded = true;
    m_platform = static_cast<Setup::tagPLATFORM>(base.platform);
    m_config.strDeploymentLanguage = base.strLanguage;
    ApplyStoredSettings();
    UpdatePathRule();
    m_log.Append(HostSentence(HostText::LogLoaded, {name, file}));
    return {};
}

void ManagerObject::ApplyStoredSettings()
{
    m_installMode = m_base.installMode;
    m_bNetworkLog = m_base.bNetworkLog;
    m_strNetworkLogFolder = m_base.strNetworkLogFolder;
    m_bSettingsOption = m_base.bSettingsOption;
    m_properties = m_base.properties;
}

bool ManagerObject::LoadDeploymentInfo(const CString& name)
{
    m_strLastMessage.Empty();
    DeleteProductList();
    if (name.IsEmpty()) {
        ForgetBase(); // a new deployment starts from the media as it was opened
        ApplyStoredSettings();
        UpdatePathRule();
    } else if (const HostError error = UseBase(name)) {
        Tell(error.message);
        return false;
    }
    if (const HostError error = EnsureProducts()) {
        Tell(error.message);
        return false;
    }
    return true;
}

void ManagerObject::ReloadProductData()
{
    DeleteProductList();
    if (const HostError error = EnsureProducts()) {
        Tell(error.message);
    }
}

void ManagerObject::DeleteProductList()
{
    m_products.clear();
    m_productObjects.clear();
    m_productsOpen = false;
}

HostError ManagerObject::EnsureProducts()
{
    if (m_productsOpen) {
        return {};
    }
    RemoveWorkCopies(m_workNumber);
    HostError error = OpenProducts();
    if (error) {
        DeleteProductList();
    }
    return error;
}

HostError ManagerObject::ReplaceProducts()
{
    const int number = m_workNumber;
    std::vector<CProduct*> products = std::exchange(m_products, {});
    std::vector<std::unique_ptr<ProductObject>> objects = std::exchange(m_productObjects, {});
    const bool wereOpen = std::exchange(m_productsOpen, false);
    HostError error = OpenProducts();
    if (!error) {
        objects.clear(); // an open database keeps its file
        RemoveWorkCopies(number);
        return error;
    }
    DeleteProductList();
    RemoveWorkCopies(std::exchange(m_workNumber, number));
    m_products = std::move(products);
    m_productObjects = std::move(objects);
    m_productsOpen = wereOpen;
    return error;
}

void ManagerObject::RemoveWorkCopies(int number)
{
    if (number > 0) {
        RemoveFolder(m_strWorkFolder + NumberText(number));
    }
}

HostError ManagerObject::OpenProducts()
{
    ++m_workNumber;
    for (const ProductDescription& described : m_media.description.products) {
        std::unique_ptr<ProductObject> product;
        if (HostError error = OpenProduct(described, product)) {
            return error;
        }
        if (!product) {
            continue;
        }
        for (const ProductDescription& pack : described.languagePacks) {
            std::unique_ptr<ProductObject> opened;
            if (HostError error = OpenProduct(pack, opened)) {
                return error;
            }
            if (opened) {
                product->AddLanguagePack(std::move(opened));
            }
        }
        m_products.push_back(product.get());
        m_productObjects.push_back(std::move(product));
    }
    if (m_products.empty()) {
        return {ERROR_FILE_NOT_FOUND,
                HostSentence(HostText::NoProductsForPlatform, {PlatformText(m_platform)})};
    }
    m_productsOpen = true;
    UpdatePathRule();
    return {};
}

HostError ManagerObject::OpenProduct(const ProductDescription& described,
                                     std::unique_ptr<ProductObject>& opened)
{
    const PackageDescription* package = described.FindPackage(m_platform);
    if (!package) {
        return {};
    }
    const CString folder = PackageFolder(m_media.description, described, m_platform);
    auto product = std::make_unique<ProductObject>(
        described, *package,
        ProductSource{m_media.strRoot, folder, m_strWorkFolder + NumberText(m_workNumber) + L"\\" + folder,
                      m_platform});
    std::vector<CString> warnings;
    HostError error = product->Open(warnings);
    for (const CString& warning : warnings) {
        m_log.Append(warning);
    }
    if (error) {
        return error;
    }
    const StoredProduct* stored = m_baseLoaded ? m_base.FindProduct(package->strProductCode) : nullptr;
    if (stored) {
        product->Load(*stored, m_media.strRoot);
    }
    opened = std::move(product);
    return {};
}

bool ManagerObject::SetSetupMode(Setup::tagSETUPMODE mode)
{
    m_strLastMessage.Empty();
    const bool needsBase =
        mode == Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT || mode == Setup::SETUPMODE_MODIFY_DEPLOYMENT;
    HostError error;
    if (needsBase && FindDeploymentFile(m_strBaseText).IsEmpty()) {
        error = {ERROR_FILE_NOT_FOUND, HostSentence(HostText::BaseGone, {m_strBaseText, m_strLocationText})};
    } else if (needsBase && (!m_baseLoaded || m_base.strName.CompareNoCase(m_strBaseText) != 0)) {
        DeleteProductList();
        error = UseBase(m_strBaseText);
    } else if (!needsBase && m_baseLoaded) {
        DeleteProductList();
        ForgetBase();
        UpdatePathRule();
    }
    if (!error) {
        error = EnsureProducts();
    }
    if (error) {
        Tell(error.message);
        return false;
    }
    m_setupMode = mode;
    UpdateDeploymentFolder();
    m_ui.m_bResetAllowed1 = m_ui.m_bResetAllowed2 = true;
    m_log.Append(HostSentence(HostText::LogMode, {NumberText(mode), NumberText(m_platform),
                                                  m_strDeploymentText, m_strLocationText, m_strBaseText}));
    return true;
}

int ManagerObject::ResetSetupMode()
{
    // What the pages changed goes with the working copies. A failure keeps the page, which still works on its product.
    const HostError error = ReplaceProducts();
    if (error) {
        Tell(error.message);
        return static_cast<int>(error.code);
    }
    m_setupMode = m_bHasDeployments ? Setup::SETUPMODE_MODIFY_DEPLOYMENT : Setup::SETUPMODE_CREATE_DEPLOYMENT;
    m_uiStage = 0;
    m_exitCode = 0;
    m_ui.m_bResetAllowed1 = m_ui.m_bResetAllowed2 = false;
    return 0;
}

CString ManagerObject::GetSrcWizTextPath()
{
    if (m_media.description.strResourceFolder.IsEmpty()) {
        return m_media.strRoot;
    }
    CString found;
    return FindLanguageFolder(m_media.strRoot + m_media.description.strResourceFolder + L"\\",
                              LanguageManager::Object().GetWizCoreLanguage(),
                              m_media.description.strDefaultLanguage, found);
}

void ManagerObject::SetMsiProperty(const wchar_t* name, const wchar_t* value, bool)
{
    if (!name || !*name) {
        return;
    }
    StoreProperty(m_properties, name, value);
    m_log.Append(HostSentence(HostText::LogProperty, {name, value}));
}

DeploymentFile ManagerObject::DescribeDeployment() const
{
    DeploymentFile file;
    file.strName = m_strDeploymentText;
    file.strSetupCode = m_media.description.strCode;
    file.strProductName = m_media.description.strName;
    file.strProductVersion = m_media.description.strProductVersion;
    file.strBaseName = m_setupMode == Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT ? m_strBaseText : CString();
    file.strLanguage = LanguageManager::Object().GetDeploymentLanguage(nullptr);
    file.platform = m_platform;
    file.installMode = m_installMode == 3 ? 3 : 2;
    file.bNetworkLog = m_bNetworkLog;
    file.strNetworkLogFolder = m_strNetworkLogFolder;
    file.bSettingsOption = m_bSettingsOption;
    file.properties = m_properties;
    for (const std::unique_ptr<ProductObject>& product : m_productObjects) {
        file.products.push_back(product->Store());
        for (const std::unique_ptr<ProductObject>& pack : product->GetPackObjects()) {
            file.products.push_back(pack->Store());
        }
    }
    return file;
}

void ManagerObject::SetResultLines(const CString& first, const CString& second)
{
    m_strLineText[0] = first;
    m_strLineText[1] = second;
    m_strCompleteLine1 = m_strLineText[0];
    m_strCompleteLine2 = m_strLineText[1];
}
