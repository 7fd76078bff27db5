// What Next asks before it hands the choice to the host.
#include "frame/file_path.h"
#include "frame/folder_check.h"
#include "frame/path_rules.h"
#include "frame/resource_text.h"
#include "frame/text_rules.h"
#include "include/lang_mgr.h"
#include "include/product.h"
#include "pages/begin_deployment_dialog.h"

bool CBeginDeploymentDialog::ValidateAndStore()
{
    const bool wasBackEnabled = ::IsWindowEnabled(m_hBackButton);
    const HWND focus = ::GetFocus();
    bool focusIsLost = false;
    for (const HWND button : {m_hBackButton, m_hNextButton, m_hCancelButton}) {
        focusIsLost = focusIsLost || button == focus; // a disabled button can't keep it
        ::EnableWindow(button, FALSE);
    }
    const Verdict verdict = CheckChoice();
    if (verdict != Verdict::Passed) {
        RestoreButtons(wasBackEnabled, verdict == Verdict::Declined);
        if (focusIsLost) {
            PlaceFocus(verdict);
        }
        return false;
    }
    StoreChoice();
    if (m_strBaseName.CompareNoCase(m_strOriginalBaseName) != 0) {
        LoadBaseDeployment();
    }
    // The host is between two modes then: no button leads on from here, and only the host can close the page.
    if (!m_pSetupManager->SetSetupMode(m_mode)) {
        m_bModeFailed = true;
        return false;
    }
    ::EnableWindow(m_hNextButton, TRUE);
    ::EnableWindow(m_hCancelButton, TRUE);
    return true;
}

CBeginDeploymentDialog::Verdict CBeginDeploymentDialog::CheckChoice()
{
    if (IsOtherProductsLocation()) {
        return Refuse(LoadResourceString(IDS_OTHER_PRODUCTS_DEPLOYMENT));
    }
    if (!AreDeploymentPathsShortEnough()) {
        return Refuse(LoadResourceString(IDS_PATH_TOO_LONG));
    }
    bool asked = false;
    if (!CheckLocation(asked) || !CheckName(asked)) {
        return asked ? Verdict::Declined : Verdict::Refused;
    }
    if (!m_pSetupManager->IsTargetPlatformAllowed(m_platform)) {
        return Refuse(FormatResource(IDS_PLATFORM_NOT_ALLOWED, m_strName));
    }
    return Verdict::Passed;
}

CBeginDeploymentDialog::Verdict CBeginDeploymentDialog::Refuse(const CString& error)
{
    ShowPageBox(error, MB_OK | MB_ICONERROR);
    return Verdict::Refused;
}

// Next waits for an edit, unless the user declined: then it can be pressed again at once.
void CBeginDeploymentDialog::RestoreButtons(bool backEnabled, bool nextEnabled)
{
    ::EnableWindow(m_hBackButton, backEnabled);
    ::EnableWindow(m_hCancelButton, TRUE);
    ::EnableWindow(m_hNextButton, nextEnabled);
}

// The system gives the lost focus to the first field after a box, with its whole text selected: the next key would
// overwrite the location. A refused name has been focused already.
void CBeginDeploymentDialog::PlaceFocus(Verdict verdict)
{
    if (::GetFocus() == m_name) {
        return;
    }
    if (verdict == Verdict::Declined) {
        GotoDlgCtrl(m_hNextButton);
        return;
    }
    const int end = m_location.GetText().GetLength();
    m_location.SetFocus();
    m_location.SendMessage(EM_SETSEL, end, end);
    m_location.SendMessage(EM_SCROLLCARET);
}

bool CBeginDeploymentDialog::IsOtherProductsLocation()
{
    if (m_pSetupManager->m_bHasDeployments) {
        return false;
    }
    m_pDeployments = m_pSetupManager->GetDeploymentList(m_strLocation);
    if (m_pDeployments->empty()) {
        return false;
    }
    const CString code = m_pSetupManager->GetSetupCode(m_pDeployments->front());
    return code.CompareNoCase(CString(m_pSetupManager->m_strSetupCode)) != 0;
}

bool CBeginDeploymentDialog::AreDeploymentPathsShortEnough()
{
    PathLengths lengths;
    lengths.location = m_strLocation.GetLength();
    lengths.name = m_strName.GetLength();
    lengths.imageFolder = m_pSetupManager->GetImageFolder().GetLength();
    lengths.imageSuffix = TextLength(m_pSetupManager->m_strImageSuffix);
    lengths.mediaFile = TextLength(m_pSetupManager->m_strMediaFile);
    lengths.resourceFolder = TextLength(m_pSetupManager->m_strResourceFolder);
    std::vector<ProductPathLengths> products;
    if (m_pSetupManager->m_pProducts) {
        for (const CProduct* product : *m_pSetupManager->m_pProducts) {
            products.push_back({TextLength(product->m_strMsiFile), TextLength(product->m_strFolder)});
        }
    }
    return ArePathsShortEnough(lengths, products);
}

bool CBeginDeploymentDialog::CheckLocation(bool& asked)
{
    asked = false;
    PathCheckResult result = ValidateFolder(m_strLocation, true);
    const bool isLocal = result == PCR_NOT_UNC;
    if (isLocal) {
        result = ValidateFolder(m_strLocation, false);
    }
    if (!IsLocationUsable(result)) {
        Refuse(FormatResource(LocationErrorId(result), m_strLocation));
        return false;
    }
    if (!isLocal || m_pSetupManager->m_bHasDeployments) {
        return true;
    }
    asked = true;
    return ShowPageBox(LoadResourceString(IDS_LOCATION_NOT_NETWORK), MB_YESNO | MB_ICONQUESTION) == IDYES;
}

bool CBeginDeploymentDialog::CheckName(bool& asked)
{
    asked = false;
    m_strName.Trim();
    bool passed = IsDeploymentNameValid(m_strName);
    if (!passed) {
        ShowPageBox(LoadResourceString(IDS_NAME_INVALID), MB_OK | MB_ICONWARNING);
    }
    if (m_mode == Setup::SETUPMODE_CREATE_DEPLOYMENT || m_mode == Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT) {
        for (const CString& name : DeploymentNames()) {
            if (name.CompareNoCase(m_strName) != 0) {
                continue;
            }
            asked = true;
            // The answer stands for the whole check: a name that already exists on disk can exist again.
            passed = ShowPageBox(FormatResource(IDS_REPLACE_DEPLOYMENT, m_strName), MB_YESNO) == IDYES;
        }
    }
    if (!passed) {
        FocusWholeText(IDC_NAME);
    }
    return passed;
}

void CBeginDeploymentDialog::SetBrowsedFolder()
{
    switch (m_pSetupManager->CheckForDeploymentLocation(m_strLocation)) {
    case Setup::DEPLOYMENTLOCATION_EMPTY:
    case Setup::DEPLOYMENTLOCATION_HAS_DEPLOYMENTS:
        m_location.SetText(m_strLocation);
        break;
    case Setup::DEPLOYMENTLOCATION_HAS_OTHER_FILES:
        if (ShowPageBox(LoadResourceString(IDS_CONFIRM_FOLDER), MB_YESNO | MB_ICONQUESTION) == IDYES) {
            m_location.SetText(m_strLocation);
        }
        break;
    default:
        m_location.SetText(L"");
        break;
    }
}

void CBeginDeploymentDialog::StoreChoice()
{
    m_pSetupManager->SetDeploymentPlatform(m_platform);
    m_pSetupManager->SetDeploymentLocation(m_strLocation);
    m_pSetupManager->SetBaseDeploymentName(m_strBaseName);
    m_pSetupManager->SetDeploymentName(m_strName);
}

void CBeginDeploymentDialog::LoadBaseDeployment()
{
    m_pSetupManager->ReloadProductData();
    static_cast<void>(
        m_pSetupManager->LoadDeploymentInfo(m_strBaseName)); // without it the products keep their defaults
    m_pSetupManager->DeleteProductList();
    m_pProduct = nullptr; // went with the list
    CLangMgr& languages = CLangMgr::Instance();
    languages.Init(m_pSetupManager->m_pConfigReader);
    languages.Reset();
}
