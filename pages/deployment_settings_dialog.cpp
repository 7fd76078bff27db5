#include "pages/deployment_settings_dialog.h"

#include "base/path_text.h"
#include "frame/folder_browser.h"
#include "frame/folder_check.h"
#include "frame/page_entry.h"
#include "frame/resource_text.h"
#include "frame/text_rules.h"
#include "include/product.h"
#include "include/rollout_ui.h"
#include "msi/msi_property.h"
#include "pages/deployment_settings_rules.h"
#include "pages/share_resolving.h"

#include <optional>

namespace {

constexpr wchar_t MC3_PROPERTY[] = L"MC3_ENABLED";
constexpr wchar_t VALUE_ON[] = L"#1";
constexpr wchar_t VALUE_OFF[] = L"#0";
constexpr unsigned int VALUE_CAPACITY = 1024; // characters
constexpr wchar_t LOG_FOLDER[] = L"Log\\";
constexpr int INSTALL_SILENT = 2;
constexpr int INSTALL_WITH_PROGRESS = 3;

// Whether the products that carry the property have it on: the first one that isn't "#0" settles it. Nothing when none
// of them has a value.
std::optional<bool> ReadMc3(const std::vector<CProduct*>& products)
{
    std::optional<bool> state;
    for (CProduct* product : products) {
        wchar_t value[VALUE_CAPACITY] = L"";
        if (!CarriesMc3(product) ||
            !ReadTableValue(product->GetMsiHandle(), L"Property", MC3_PROPERTY, value, VALUE_CAPACITY)) {
            continue;
        }
        state = CString(value) != VALUE_OFF;
        if (*state) {
            break;
        }
    }
    return state;
}

} // namespace

// ---- init ----

LRESULT CDeploymentSettingsDialog::OnInitDialog()
{
    InitFrame();
    ::CheckDlgButton(m_hWnd, IDC_SETTINGS_OPTION,
                     m_pSetupManager->m_bSettingsOption ? BST_CHECKED : BST_UNCHECKED);
    m_strLogFolder = m_pSetupManager->m_strNetworkLogFolder;
    ::CheckDlgButton(m_hWnd, IDC_NETWORK_LOG, m_pSetupManager->m_bNetworkLog ? BST_CHECKED : BST_UNCHECKED);
    if (m_pSetupManager->m_bNetworkLog && m_strLogFolder.IsEmpty()) {
        m_strLogFolder = DefaultLogFolder();
    }
    ::CheckRadioButton(m_hWnd, IDC_INSTALL_SILENT, IDC_INSTALL_PROGRESS,
                       m_pSetupManager->m_installMode == INSTALL_SILENT ? IDC_INSTALL_SILENT
                                                                        : IDC_INSTALL_PROGRESS);
    ShowMc3();
    UpdateNext();
    WriteLogFolder();
    EnableLogFolder();
    m_networkLog.SetFocus();
    RunHooks(m_postInitHooks);
    return FALSE;
}

void CDeploymentSettingsDialog::LookupControls()
{
    CWizardPageImpl::LookupControls();
    m_networkLog.Attach(GetDlgItem(IDC_NETWORK_LOG));
    m_logFolder.Attach(GetDlgItem(IDC_LOG_FOLDER));
    m_mc3.Attach(GetDlgItem(IDC_MC3));
}

void CDeploymentSettingsDialog::ShowMc3()
{
    const std::vector<CProduct*>* products = m_pSetupManager->m_pProducts;
    const std::optional<bool> state = products ? ReadMc3(*products) : std::nullopt;
    ::ShowWindow(GetDlgItem(IDC_MC3_HEADING), state ? SW_SHOW : SW_HIDE);
    m_mc3.ShowWindow(state ? SW_SHOW : SW_HIDE);
    m_mc3.EnableWindow(state.has_value());
    ::CheckDlgButton(m_hWnd, IDC_MC3, state.value_or(false) ? BST_CHECKED : BST_UNCHECKED);
}

// ---- handlers ----

LRESULT CDeploymentSettingsDialog::OnNetworkLog(WORD, WORD, HWND, BOOL&)
{
    EnableLogFolder();
    // A text that stands there already is lost as well: a check mark starts with the default, or with nothing.
    m_strLogFolder = WritesNetworkLog() && m_strLogFolder.IsEmpty() ? DefaultLogFolder() : CString();
    UpdateNext();
    WriteLogFolder();
    return 0;
}

LRESULT CDeploymentSettingsDialog::OnLogFolderEdited(WORD, WORD, HWND, BOOL&)
{
    ReadLogFolder();
    if (!IsLogFolderOff()) {
        ::EnableWindow(m_hNextButton, !m_strLogFolder.IsEmpty());
    }
    return 0;
}

LRESULT CDeploymentSettingsDialog::OnLogFolderLeft(WORD, WORD, HWND, BOOL&)
{
    ReadLogFolder();
    if (IsLogFolderOff()) {
        return 0;
    }
    m_strLogFolder.Trim();
    WriteLogFolder();
    ::EnableWindow(m_hNextButton, !m_strLogFolder.IsEmpty());
    if (!m_strLogFolder.IsEmpty()) {
        ::SetActiveWindow(m_hNextButton);
    }
    return 0;
}

LRESULT CDeploymentSettingsDialog::OnBrowse(WORD, WORD, HWND, BOOL&)
{
    ReadLogFolder();
    CString folder = m_strLogFolder;
    if (BrowseForFolder(m_hWnd, folder, LoadResourceString(IDS_BROWSE_LOG_FOLDER), true)) {
        m_strLogFolder = WithClosingBackslash(folder);
        WriteLogFolder();
        m_logFolder.SetFocus();
    }
    return 0;
}

// ---- controls ----

void CDeploymentSettingsDialog::ReadLogFolder()
{
    m_strLogFolder = m_logFolder.GetText();
}

void CDeploymentSettingsDialog::WriteLogFolder()
{
    const CString text = m_strLogFolder; // the edit reports its change at once, which sets the member anew
    if (!::SetDlgItemTextW(m_hWnd, IDC_LOG_FOLDER, text)) {
        ::MessageBeep(static_cast<UINT>(-1));
        m_logFolder.SetFocus();
    }
}

bool CDeploymentSettingsDialog::WritesNetworkLog() const
{
    return ::IsDlgButtonChecked(m_hWnd, IDC_NETWORK_LOG) == BST_CHECKED;
}

bool CDeploymentSettingsDialog::IsLogFolderOff() const
{
    return m_networkLog.IsWindow() && !WritesNetworkLog();
}

void CDeploymentSettingsDialog::EnableLogFolder()
{
    for (const int id : {IDC_LOG_FOLDER_HEADING, IDC_LOG_FOLDER, IDC_LOG_FOLDER_BROWSE}) {
        ::EnableWindow(GetDlgItem(id), WritesNetworkLog());
    }
}

void CDeploymentSettingsDialog::UpdateNext()
{
    ::EnableWindow(m_hNextButton, IsLogChoiceComplete(WritesNetworkLog(), m_strLogFolder));
}

// ---- checks and storing ----

// Below the deployment's location where other computers can reach it; otherwise the beginning of a path on this one.
CString CDeploymentSettingsDialog::DefaultLogFolder() const
{
    const CString location(m_pSetupManager->m_strDeploymentLocation);
    const CString folder = location.IsEmpty() ? location : WithClosingBackslash(location);
    CString networkForm; // the location is offered as it was typed
    if (ResolveNetworkPath(networkForm, folder)) {
        return folder + LOG_FOLDER;
    }
    return WithClosingBackslash(ComputerRoot(ComputerName()));
}

bool CDeploymentSettingsDialog::ValidateAndStore()
{
    ReadLogFolder();
    if (WritesNetworkLog() && !CheckLogFolder()) {
        FocusWholeText(IDC_LOG_FOLDER);
        return false;
    }
    Store(true);
    return true;
}

bool CDeploymentSettingsDialog::CheckLogFolder()
{
    // A box takes the focus from the edit, and the member then holds the typed text anew. What is judged stands aside, so
    // that what a box names is what is stored.
    CString folder = m_strLogFolder;
    const bool accepted = AcceptLogFolder(folder);
    m_strLogFolder = folder;
    return accepted;
}

bool CDeploymentSettingsDialog::AcceptLogFolder(CString& folder)
{
    PathCheckResult result = ValidateFolder(folder, true);
    if (result == PCR_NOT_UNC) {
        result = ValidateFolder(folder, false);
    }
    switch (JudgeLogFolder(result, folder)) {
    case LogFolderVerdict::Usable:
        return true;
    case LogFolderVerdict::NotNetwork:
        ShowPageBox(LoadResourceString(IDS_LOG_FOLDER_NOT_NETWORK), MB_OK | MB_ICONWARNING);
        return false;
    case LogFolderVerdict::Doubtful:
        break;
    }
    return ShowPageBox(FormatResource(IDS_LOG_FOLDER_UNUSABLE, folder), MB_YESNO | MB_ICONWARNING) == IDYES;
}

void CDeploymentSettingsDialog::Store(bool withPath)
{
    m_pSetupManager->m_bSettingsOption = ::IsDlgButtonChecked(m_hWnd, IDC_SETTINGS_OPTION) == BST_CHECKED;
    m_pSetupManager->m_bNetworkLog = WritesNetworkLog();
    if (!WritesNetworkLog()) {
        m_pSetupManager->m_strNetworkLogFolder.Empty();
    } else if (withPath) {
        m_strLogFolder = WithClosingBackslash(m_strLogFolder);
        m_pSetupManager->m_strNetworkLogFolder = m_strLogFolder;
    }
    m_pSetupManager->m_installMode = ::IsDlgButtonChecked(m_hWnd, IDC_INSTALL_SILENT) == BST_CHECKED
                                         ? INSTALL_SILENT
                                         : INSTALL_WITH_PROGRESS;
    if (m_mc3.IsWindowVisible()) {
        StoreMc3();
    }
}

// One box for all products that carry the property, those that had no value before included.
void CDeploymentSettingsDialog::StoreMc3() const
{
    if (!m_pSetupManager->m_pProducts) {
        return; // a host's hook has shown the box
    }
    const bool enabled = ::IsDlgButtonChecked(m_hWnd, IDC_MC3) == BST_CHECKED;
    for (CProduct* product : *m_pSetupManager->m_pProducts) {
        if (CarriesMc3(product)) {
            WriteProperty(product->GetMsiHandle(), MC3_PROPERTY, enabled ? VALUE_ON : VALUE_OFF);
        }
    }
}

int DeploymentSettingsDialog(PageContext* context)
{
    return ShowWizardPage<CDeploymentSettingsDialog>(context);
}
