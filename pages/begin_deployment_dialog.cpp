#include "pages/begin_deployment_dialog.h"

#include "frame/file_path.h"
#include "frame/folder_browser.h"
#include "frame/page_entry.h"
#include "frame/path_rules.h"
#include "frame/resource_text.h"
#include "frame/text_rules.h"
#include "include/rollout_ui.h"

// ---- init ----

LRESULT CBeginDeploymentDialog::OnInitDialog()
{
    InitFrame();
    LoadFromHost();
    m_location.SetText(m_strLocation);
    ShowLayout();
    FocusFirstControl();
    UpdateNext();
    RunHooks(m_postInitHooks);
    return FALSE;
}

void CBeginDeploymentDialog::LookupControls()
{
    CWizardPageImpl::LookupControls();
    m_location.Attach(GetDlgItem(IDC_LOCATION));
    m_name.Attach(GetDlgItem(IDC_NAME));
    m_deployments.Attach(GetDlgItem(IDC_DEPLOYMENTS));
}

void CBeginDeploymentDialog::LoadFromHost()
{
    m_mode = m_pSetupManager->m_setupMode;
    m_strLocation = m_pSetupManager->m_strDeploymentLocation;
    m_strName = m_pSetupManager->m_strDeploymentName;
    m_strBaseName = m_pSetupManager->m_strBaseDeploymentName;
    m_strOriginalBaseName = m_strBaseName;
    m_platform = m_pSetupManager->m_platform;
    m_pDeployments = m_pSetupManager->GetDeploymentList(m_strLocation);
}

void CBeginDeploymentDialog::FocusFirstControl()
{
    switch (Layout()) {
    case BeginLayout::None:
        break;
    case BeginLayout::Plain:
        m_location.SetFocus();
        break;
    default: {
        // The radios of the modes stand in the modes' order.
        const int radio = IDC_MODE_CREATE + m_mode - Setup::SETUPMODE_CREATE_DEPLOYMENT;
        ::CheckRadioButton(m_hWnd, IDC_MODE_CREATE, IDC_MODE_MODIFY, radio);
        ::SetFocus(GetDlgItem(radio));
    }
    }
}

// ---- handlers ----

// The system also sends a click when a checked radio takes the focus; only a change of the mode counts.
bool CBeginDeploymentDialog::ChangeMode(int radio, Setup::tagSETUPMODE mode)
{
    if (::IsDlgButtonChecked(m_hWnd, radio) != BST_CHECKED || m_mode == mode) {
        return false;
    }
    m_mode = mode;
    return true;
}

LRESULT CBeginDeploymentDialog::OnModeCreate(WORD, WORD id, HWND, BOOL&)
{
    if (ChangeMode(id, Setup::SETUPMODE_CREATE_DEPLOYMENT)) {
        m_strName.Empty();
        m_strBaseName.Empty();
        ShowLayout();
        UpdateNext();
    }
    return 0;
}

LRESULT CBeginDeploymentDialog::OnModeCreateFrom(WORD, WORD id, HWND, BOOL&)
{
    if (ChangeMode(id, Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT)) {
        m_strBaseName = FindDeploymentName(DeploymentNames(), m_strName);
        m_strName.Empty();
        ShowLayout();
        UpdateNext();
    }
    return 0;
}

LRESULT CBeginDeploymentDialog::OnModeModify(WORD, WORD id, HWND, BOOL&)
{
    if (ChangeMode(id, Setup::SETUPMODE_MODIFY_DEPLOYMENT)) {
        if (m_strBaseName.IsEmpty()) {
            m_strBaseName = FindDeploymentName(DeploymentNames(), CString());
        }
        m_strName = m_strBaseName;
        ShowLayout();
        UpdateNext();
    }
    return 0;
}

LRESULT CBeginDeploymentDialog::OnDeploymentSelected(WORD, WORD, HWND, BOOL&)
{
    const int selected = m_deployments.GetCurSel();
    if (selected >= 0) {
        m_strBaseName = m_deployments.GetText(selected);
        if (m_mode == Setup::SETUPMODE_MODIFY_DEPLOYMENT) {
            m_strName = m_strBaseName;
        }
    }
    ShowPlatforms();
    UpdateNext();
    return 0;
}

LRESULT CBeginDeploymentDialog::OnLocationEdited(WORD, WORD, HWND, BOOL&)
{
    m_strLocation = UnquotePath(m_location.GetText());
    UpdateNext();
    return 0;
}

LRESULT CBeginDeploymentDialog::OnBrowse(WORD, WORD, HWND, BOOL&)
{
    CString folder = m_location.GetText();
    if (!BrowseForFolder(m_hWnd, folder, LoadResourceString(IDS_BROWSE_LOCATION), true)) {
        return 0;
    }
    m_strLocation = folder;
    m_location.SetText(m_strLocation);
    bool asked = false;
    if (CheckLocation(asked)) {
        SetBrowsedFolder();
    }
    UpdateNext();
    return 0;
}

LRESULT CBeginDeploymentDialog::OnNameEdited(WORD, WORD, HWND, BOOL&)
{
    m_strName = m_name.GetText();
    UpdateNext();
    return 0;
}

LRESULT CBeginDeploymentDialog::OnPlatform(WORD, WORD id, HWND, BOOL&)
{
    m_platform = id == IDC_PLATFORM_X86 ? Setup::PLATFORM_X86 : Setup::PLATFORM_X64;
    UpdateNext();
    return 0;
}

// ---- layout ----

BeginLayout CBeginDeploymentDialog::Layout() const
{
    return LayoutFor(m_pSetupManager->m_bHasDeployments, m_mode);
}

void CBeginDeploymentDialog::ShowLayout()
{
    const BeginLayout layout = Layout();
    switch (layout) {
    case BeginLayout::None:
        HideLayoutControls();
        ShowPlatforms();
        return;
    case BeginLayout::Plain:
        ShowName(IDC_ANCHOR_NAME_HEADING_PLAIN, IDC_ANCHOR_NAME_PLAIN);
        break;
    case BeginLayout::Create:
        ShowName(IDC_ANCHOR_NAME_HEADING_CREATE, IDC_ANCHOR_NAME_CREATE);
        break;
    case BeginLayout::CreateFrom:
        ShowName(IDC_ANCHOR_NAME_HEADING_CREATE_FROM, IDC_ANCHOR_NAME_CREATE_FROM);
        break;
    case BeginLayout::Modify:
        HideName();
        break;
    }
    for (const int id : {IDC_MODE_HEADING, IDC_MODE_CREATE, IDC_MODE_CREATE_FROM, IDC_MODE_MODIFY}) {
        ShowControl(id, layout != BeginLayout::Plain);
    }
    ShowLocation(layout == BeginLayout::Plain);
    ShowDeployments(layout == BeginLayout::CreateFrom || layout == BeginLayout::Modify);
    ShowPlatforms();
    m_name.SetText(m_strName);
    Invalidate();
}

// The template shows them all.
void CBeginDeploymentDialog::HideLayoutControls()
{
    for (const int id :
         {IDC_MODE_HEADING, IDC_MODE_CREATE, IDC_MODE_CREATE_FROM, IDC_MODE_MODIFY,
          IDC_LOCATION_HEADING_EXISTING, IDC_LOCATION_HEADING_NEW, IDC_LOCATION, IDC_LOCATION_BROWSE,
          IDC_DEPLOYMENTS_HEADING, IDC_DEPLOYMENTS, IDC_NAME_HEADING, IDC_NAME}) {
        ShowControl(id, false);
    }
}

void CBeginDeploymentDialog::ShowLocation(bool plain)
{
    ShowControl(IDC_LOCATION_HEADING_EXISTING, !plain);
    ShowControl(IDC_LOCATION_HEADING_NEW, plain);
    if (plain) {
        MoveToAnchor(IDC_LOCATION, IDC_ANCHOR_LOCATION_PLAIN);
        MoveToAnchor(IDC_LOCATION_BROWSE, IDC_ANCHOR_BROWSE_PLAIN);
    }
    ShowControl(IDC_LOCATION, true);
    ShowControl(IDC_LOCATION_BROWSE, true);
}

void CBeginDeploymentDialog::ShowName(int headingAnchor, int editAnchor)
{
    MoveToAnchor(IDC_NAME_HEADING, headingAnchor);
    MoveToAnchor(IDC_NAME, editAnchor);
    for (const int id : {IDC_NAME_HEADING, IDC_NAME}) {
        ShowControl(id, true);
        ::EnableWindow(GetDlgItem(id), TRUE);
    }
}

// A deployment that is changed keeps its name.
void CBeginDeploymentDialog::HideName()
{
    for (const int id : {IDC_NAME_HEADING, IDC_NAME}) {
        ShowControl(id, false);
        ::EnableWindow(GetDlgItem(id), FALSE);
    }
}

void CBeginDeploymentDialog::ShowDeployments(bool shown)
{
    ShowControl(IDC_DEPLOYMENTS_HEADING, shown);
    ShowControl(IDC_DEPLOYMENTS, shown);
    if (!shown) {
        return;
    }
    if (m_deployments.GetCount() == 0) {
        FillDeployments();
    }
    SelectDeployment(m_strBaseName);
}

void CBeginDeploymentDialog::FillDeployments()
{
    const std::vector<CString> names = DeploymentNames();
    for (const CString& name : names) {
        m_deployments.AddString(name);
    }
    m_strBaseName = FindDeploymentName(names, m_strName);
}

void CBeginDeploymentDialog::SelectDeployment(const CString& name)
{
    // By hand: the list box's own search takes "OFFICE" for "Office". Of equal names the first, as in the name search.
    const int count = m_deployments.GetCount();
    int line = 0;
    while (line < count && m_deployments.GetText(line) != name) {
        ++line;
    }
    m_deployments.SetCurSel(line < count ? line : -1);
}

// Shown always; the platform is a choice only where nothing exists and the media holds both images.
void CBeginDeploymentDialog::ShowPlatforms()
{
    const bool enabled = Layout() == BeginLayout::Plain &&
                         m_pSetupManager->DoesImageMatchPlatform(Setup::PLATFORM_X86) &&
                         m_pSetupManager->DoesImageMatchPlatform(Setup::PLATFORM_X64);
    ::CheckRadioButton(m_hWnd, IDC_PLATFORM_X86, IDC_PLATFORM_X64,
                       m_platform == Setup::PLATFORM_X86 ? IDC_PLATFORM_X86 : IDC_PLATFORM_X64);
    ShowControl(IDC_PLATFORM_HEADING, true);
    for (const int id : {IDC_PLATFORM_X86, IDC_PLATFORM_X64}) {
        ShowControl(id, true);
        ::EnableWindow(GetDlgItem(id), enabled);
    }
}

void CBeginDeploymentDialog::UpdateNext()
{
    const bool complete = !m_bModeFailed && IsChoiceComplete(Layout(), m_deployments.GetCurSel() >= 0,
                                                             m_strLocation, m_strName);
    ::EnableWindow(m_hNextButton, complete);
}

void CBeginDeploymentDialog::ShowControl(int id, bool shown)
{
    ::ShowWindow(GetDlgItem(id), shown ? SW_SHOW : SW_HIDE);
}

// A hidden control of the template marks the place.
void CBeginDeploymentDialog::MoveToAnchor(int id, int anchor)
{
    const CWindow mark(GetDlgItem(anchor));
    if (mark.IsWindow()) {
        CWindow(GetDlgItem(id)).MoveWindow(mark.GetRectInParent());
    }
}

std::vector<CString> CBeginDeploymentDialog::DeploymentNames()
{
    std::vector<CString> names;
    for (const CString& entry : *m_pDeployments) {
        names.push_back(m_pSetupManager->GetDeploymentName(entry));
    }
    return names;
}

int BeginDeploymentDialog(PageContext* context)
{
    return ShowWizardPage<CBeginDeploymentDialog>(context);
}
