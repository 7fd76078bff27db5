// Which deployment the setup manager is about: lists, bases, modes, the way back to the first stage, and what stands in the
// new deployment's place.
#include "base/files.h"
#include "base/path_text.h"
#include "builder/build_failure.h"
#include "builder/deployment_builder.h"
#include "builder/deployment_place.h"
#include "host/host_messages.h"
#include "host/host_setup_manager.h"
#include "host/target_verdict.h"

#include <utility>

namespace {

constexpr unsigned int CLOSE_TIMER = 1;

// Runs from the page's own message loop, behind the handler in which the mode failed.
void CALLBACK ClosePage(HWND page, UINT, UINT_PTR timer, DWORD)
{
    KillTimer(page, timer);
    DestroyWindow(page);
}

// Empty also when the folder can't be looked at: what is unknown is never replaced.
CString StampOrNone(const CString& folder)
{
    try {
        return StampOfDeployment(folder);
    } catch (const BuildFailure&) {
        return CString();
    }
}

} // namespace

std::vector<CString>* CHostSetupManager::GetDeploymentList(const CString& location)
{
    std::vector<CString> warnings;
    if (!location.IsEmpty() && IsFolder(location)) {
        CleanUpLocation(location,
                        warnings); // what a killed build left would show as a damaged deployment, or none
    }
    std::vector<CString> damaged;
    m_deployments = FindDeployments(location, damaged);
    warnings.insert(warnings.end(), damaged.begin(), damaged.end());
    // The page offers them as bases then, and has no way back from one that can't be used.
    if (m_bHasDeployments) {
        std::erase_if(m_deployments, [&](const CString& entry) {
            DeploymentBase base;
            const OperationError error = OpenBase(entry, m_openedMedia.description.strCode, base);
            if (error) {
                warnings.push_back(error.message);
            }
            return bool(error);
        });
    }
    AddBaseOfElsewhere();
    m_listed.clear();
    for (const CString& entry : m_deployments) {
        m_listed.push_back({entry, StampOrNone(ParentFolder(entry))});
    }
    for (const CString& warning : warnings) {
        ReportFailure(warning);
    }
    return &m_deployments;
}

// Modifying into another location makes a copy there. On the way back the page lists that one, and would have nothing to
// modify, or another deployment than before.
void CHostSetupManager::AddBaseOfElsewhere()
{
    const CString& entry = IsBaseLoaded() ? m_base.strEntry : m_openedMedia.strDeploymentFile;
    if (!m_bHasDeployments || entry.IsEmpty()) {
        return;
    }
    const CString name = NameOfDeployment(entry);
    for (const CString& listed : m_deployments) {
        if (NameOfDeployment(listed).CompareNoCase(name) == 0) {
            return;
        }
    }
    DeploymentBase base;
    if (!OpenBase(entry, m_openedMedia.description.strCode, base)) {
        m_deployments.push_back(entry);
    }
}

CString CHostSetupManager::GetDeploymentName(const CString& entry)
{
    return NameOfDeployment(entry);
}

CString CHostSetupManager::GetSetupCode(const CString& entry)
{
    DeploymentFile deployment;
    if (const OperationError error = ReadDeploymentFile(entry, deployment)) {
        ReportFailure(error.message);
        return CString();
    }
    return deployment.strSetupCode;
}

Setup::tagDEPLOYMENTLOCATIONTYPE CHostSetupManager::CheckForDeploymentLocation(const CString& path)
{
    const CString folder = FolderPath(path);
    std::vector<FolderItem> items;
    // A deployment inside another one, or inside the media, would be copied into itself.
    const bool insideMedia = folder.Left(m_media.strRoot.GetLength()).CompareNoCase(m_media.strRoot) == 0;
    if (path.IsEmpty() || (insideMedia && !m_media.bSinglePackage) || !DeploymentAround(folder).IsEmpty() ||
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

// By where it is: in the list that the page showed last, or the one that the wizard runs from.
CString CHostSetupManager::FindBaseEntry(const CString& name) const
{
    if (name.IsEmpty()) {
        return CString();
    }
    for (const ListedDeployment& listed : m_listed) {
        if (NameOfDeployment(listed.strEntry).CompareNoCase(name) == 0) {
            return listed.strEntry;
        }
    }
    const CString& opened = m_openedMedia.strDeploymentFile;
    return !opened.IsEmpty() && NameOfDeployment(opened).CompareNoCase(name) == 0 ? opened : CString();
}

CString CHostSetupManager::GetBaseFolder() const
{
    const bool hasBase = m_setupMode == Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT ||
                         m_setupMode == Setup::SETUPMODE_MODIFY_DEPLOYMENT;
    return hasBase ? WithoutClosingBackslash(ParentFolder(m_base.strEntry)) : CString();
}

void CHostSetupManager::ForgetBase()
{
    m_base = DeploymentBase();
    m_config.strDeploymentLanguage.Empty();
    UseMedia(m_openedMedia);
}

OperationError CHostSetupManager::UseBase(const CString& entry)
{
    DeploymentBase base;
    if (OperationError error = OpenBase(entry, m_openedMedia.description.strCode, base)) {
        return error;
    }
    m_base = std::move(base);
    UseMedia(m_base.image);
    m_platform = static_cast<Setup::tagPLATFORM>(m_base.file.platform);
    m_config.strDeploymentLanguage = m_base.file.strLanguage;
    ApplyStoredSettings();
    UpdatePathRule();
    m_log.Append(HostSentence(HostText::LogLoaded, {NameOfDeployment(entry), entry}));
    return {};
}

OperationError CHostSetupManager::UseBaseNamed(const CString& name)
{
    const CString entry = FindBaseEntry(name);
    return entry.IsEmpty() ? OperationError{ERROR_FILE_NOT_FOUND,
                                            HostSentence(HostText::BaseGone, {name, m_strLocationText})}
                           : UseBase(entry);
}

void CHostSetupManager::ApplyStoredSettings()
{
    m_installMode = m_base.file.installMode;
    m_bNetworkLog = m_base.file.bNetworkLog;
    m_strNetworkLogFolder = m_base.file.strNetworkLogFolder;
    m_bSettingsOption = m_base.file.bSettingsOption;
    m_properties = m_base.file.properties;
}

bool CHostSetupManager::LoadDeploymentInfo(const CString& name)
{
    DeleteProductList();
    if (name.IsEmpty()) {
        ForgetBase(); // a new deployment starts from the media as it was opened
        ApplyStoredSettings();
        UpdatePathRule();
    } else if (const OperationError error = UseBaseNamed(name)) {
        ReportFailure(error.message);
        return false;
    }
    if (const OperationError error = EnsureProducts()) {
        ReportFailure(error.message);
        return false;
    }
    return true;
}

bool CHostSetupManager::IsBaseCurrent(const CString& name) const
{
    return IsBaseLoaded() && FindBaseEntry(name).CompareNoCase(m_base.strEntry) == 0 &&
           StampOrNone(ParentFolder(m_base.strEntry)) == m_base.strStamp;
}

bool CHostSetupManager::SetSetupMode(Setup::tagSETUPMODE mode)
{
    const bool needsBase =
        mode == Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT || mode == Setup::SETUPMODE_MODIFY_DEPLOYMENT;
    OperationError error;
    if (needsBase && !IsBaseCurrent(m_strBaseText)) {
        DeleteProductList();
        error = UseBaseNamed(m_strBaseText);
    } else if (!needsBase && IsBaseLoaded()) {
        DeleteProductList();
        ForgetBase();
        UpdatePathRule();
    }
    if (!error) {
        error = EnsureProducts();
    }
    if (error) {
        ReportFailure(error.message);
        LeavePage(error.message);
        return false;
    }
    m_setupMode = mode;
    if (mode == Setup::SETUPMODE_MODIFY_DEPLOYMENT) {
        SetDeploymentName(
            NameOfDeployment(m_base.strEntry)); // the page's hidden name may be that of an earlier choice
    }
    UpdateDeploymentFolder();
    m_ui.m_bResetAllowed1 = m_ui.m_bResetAllowed2 = true;
    m_log.Append(HostSentence(HostText::LogMode, {NumberText(mode), NumberText(m_platform),
                                                  m_strDeploymentText, m_strLocationText, m_strBaseText}));
    return true;
}

// The page has no way on from a mode that can't be entered, nor a way back. The reason is the program's to show, once the
// page is gone.
void CHostSetupManager::LeavePage(const CString& reason)
{
    m_strModeFailure = reason;
    if (m_hCurrentPage && IsWindow(m_hCurrentPage)) {
        SetTimer(m_hCurrentPage, CLOSE_TIMER, 0, ClosePage);
    }
}

OperationError CHostSetupManager::EnterFirstStage()
{
    ForgetBase();
    ApplyStoredSettings();
    m_answeredStamp.Empty();
    m_platform = m_firstPlatform;
    const CString& file = m_openedMedia.strDeploymentFile;
    m_bHasDeployments = !file.IsEmpty();
    m_setupMode = m_bHasDeployments ? Setup::SETUPMODE_MODIFY_DEPLOYMENT : Setup::SETUPMODE_CREATE_DEPLOYMENT;
    const CString name = m_bHasDeployments ? NameOfDeployment(file) : CString();
    SetDeploymentLocation(m_bHasDeployments ? ParentFolder(ParentFolder(file)) : CString());
    SetDeploymentName(name);
    SetBaseDeploymentName(name);
    SetResultLines(CString(), CString());
    const OperationError error = m_bHasDeployments ? UseBase(file) : OperationError();
    UpdatePathRule();
    return error;
}

CHostSetupManager::Stage CHostSetupManager::GetStage() const
{
    return {m_media,
            m_base,
            m_config.strDeploymentLanguage,
            m_setupMode,
            m_platform,
            m_strLocationText,
            m_strDeploymentText,
            m_strBaseText,
            {m_strLineText[0], m_strLineText[1]},
            m_answeredStamp,
            m_installMode,
            m_bNetworkLog,
            m_strNetworkLogFolder,
            m_bSettingsOption,
            m_properties};
}

void CHostSetupManager::UseStage(const Stage& stage)
{
    UseMedia(stage.media);
    m_base = stage.base;
    m_config.strDeploymentLanguage = stage.strDeploymentLanguage;
    m_setupMode = stage.mode;
    m_platform = stage.platform;
    SetDeploymentLocation(stage.strLocation);
    SetDeploymentName(stage.strName);
    SetBaseDeploymentName(stage.strBaseName);
    SetResultLines(stage.strLines[0], stage.strLines[1]);
    m_answeredStamp = stage.strAnsweredStamp;
    m_installMode = stage.installMode;
    m_bNetworkLog = stage.bNetworkLog;
    m_strNetworkLogFolder = stage.strNetworkLogFolder;
    m_bSettingsOption = stage.bSettingsOption;
    m_properties = stage.properties;
    UpdatePathRule();
}

int CHostSetupManager::ResetSetupMode()
{
    // What the pages changed goes with the working copies. A failure keeps the page, which still works on its product.
    const Stage before = GetStage();
    OperationError error = EnterFirstStage();
    if (!error) {
        error = ReplaceProducts();
    }
    if (error) {
        UseStage(before);
        ReportFailure(error.message);
        return static_cast<int>(error.code);
    }
    m_uiStage = 0;
    m_exitCode = 0;
    m_bCancellingEnabled = true;
    m_ui.m_bResetAllowed1 = m_ui.m_bResetAllowed2 = false;
    return 0;
}

TargetVerdict CHostSetupManager::JudgeTarget() const
{
    // The working copies are those of what it was; the rest of the image would come from what it is.
    if (IsBaseLoaded() && StampOrNone(ParentFolder(m_base.strEntry)) != m_base.strStamp) {
        TargetVerdict verdict;
        verdict.state = TargetVerdict::State::Refused;
        verdict.message = HostSentence(HostText::BaseChanged, {NameOfDeployment(m_base.strEntry)});
        return verdict;
    }
    TargetQuestion question{m_strLocationText,
                            m_strDeploymentText,
                            m_openedMedia.description.strCode,
                            m_openedMedia.bSinglePackage ? CString() : m_openedMedia.strRoot,
                            {}};
    if (!m_answeredStamp.IsEmpty()) {
        question.replaceable.push_back(m_answeredStamp);
    }
    if (m_setupMode == Setup::SETUPMODE_MODIFY_DEPLOYMENT && !m_base.strStamp.IsEmpty()) {
        question.replaceable.push_back(m_base.strStamp);
    }
    if (m_setupMode != Setup::SETUPMODE_MODIFY_DEPLOYMENT) {
        // The page has asked before it let a listed name pass.
        for (const ListedDeployment& listed : m_listed) {
            if (!listed.strStamp.IsEmpty() &&
                NameOfDeployment(listed.strEntry).CompareNoCase(m_strDeploymentText) == 0) {
                question.replaceable.push_back(listed.strStamp);
            }
        }
    }
    return JudgeTargetFolder(question);
}

void CHostSetupManager::DeclineReplacing()
{
    // The page would list the declined location, and take the deployment there for the one to be modified.
    if (m_setupMode == Setup::SETUPMODE_MODIFY_DEPLOYMENT && IsBaseLoaded()) {
        SetDeploymentLocation(ParentFolder(ParentFolder(m_base.strEntry)));
    }
}

CString CHostSetupManager::ReadModeFailure()
{
    return std::exchange(m_strModeFailure, CString());
}
