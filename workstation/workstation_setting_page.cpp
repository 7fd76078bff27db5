#include "workstation/workstation_setting_page.h"

#include "frame/page_entry.h"
#include "frame/resource_text.h"
#include "include/product.h"
#include "include/rollout_ui.h"
#include "msi/msi_property.h"
#include "workstation/product_property.h"

namespace {

bool HasPropertyRow(InstallerHandle database, const wchar_t* name)
{
    wchar_t value[1024] = L"";
    return ReadTableValue(database, L"Property", name, value, ARRAYSIZE(value));
}

} // namespace

template <class T, template <class> class Impl>
CWorkstationSettingPageBase<T, Impl>::CWorkstationSettingPageBase(const PageContext* context)
    : Impl<T>(context), m_shortcuts(*context->pProduct, context->hDatabase)
{
}

// ---- init ----

template <class T, template <class> class Impl>
LRESULT CWorkstationSettingPageBase<T, Impl>::OnInitDialog()
{
    this->InitFrame();
    this->SetDlgItemText(IDC_WORKSTATION_HEADING, LoadResourceString(IDS_WORKSTATION_HEADING));
    InitDesktopShortcut();
    m_shortcuts.BuildShortcutGrid(this->m_hWnd);
    m_shortcuts.LoadCustomShortcuts();
    this->FocusAtStart(FirstControl());
    this->RunHooks(this->m_postInitHooks);
    return FALSE;
}

template <class T, template <class> class Impl>
void CWorkstationSettingPageBase<T, Impl>::InitDesktopShortcut()
{
    const CButton box = Box(IDC_DESKTOP_SHORTCUT);
    const bool isOffered = !HasPropertyRow(this->m_hDatabase, HIDE_DESKTOP_SHORTCUT_PROPERTY);
    box.EnableWindow(isOffered);
    box.ShowWindow(isOffered ? SW_SHOWNA : SW_HIDE);
    if (!isOffered) {
        return;
    }
    if (const auto label = LabelWithProduct(box.GetWindowText(), this->m_pProduct->m_strCatalogKey)) {
        box.SetWindowText(*label);
    }
    // Hosts see the question, and nobody reads the answer.
    static_cast<void>(ReadInstallerProperty(*this->m_pProduct, L"NIW_ISVERBOSEDEPLOYMENT"));
    box.SetCheck(ReadSwitch(DESKTOP_SHORTCUT));
}

// Next is the way on when there is nothing to enter.
template <class T, template <class> class Impl>
int CWorkstationSettingPageBase<T, Impl>::FirstControl() const
{
    for (const int id : {IDC_DESKTOP_SHORTCUT, IDC_SHORTCUTS}) {
        if (IsShown(id)) {
            return id;
        }
    }
    return IDC_NEXT;
}

template <class T, template <class> class Impl>
BOOL CWorkstationSettingPageBase<T, Impl>::PreTranslateMessage(MSG* message)
{
    return m_shortcuts.PreTranslateMessage(message) || Impl<T>::PreTranslateMessage(message);
}

LRESULT CWorkstationSettingPage::OnInitDialog()
{
    const LRESULT result = CWorkstationSettingPageBase::OnInitDialog();
    Box(IDC_BROWSER_REQUIRED).SetCheck(ReadSwitch(BROWSER_REQUIRED));
    Box(IDC_SHEET_FORMAT).SetCheck(ReadSwitch(SHEET_FORMAT));
    SendDlgItemMessage(IDC_PROFILE_NAME, EM_SETLIMITTEXT,
                       LONGEST_PROPERTY); // a longer one would be read as empty
    SetDlgItemText(IDC_PROFILE_NAME, ReadInstallerProperty(*m_pProduct, PROFILE_NAME_PROPERTY));
    m_strInvalidProfileMessage = LoadResourceString(IDS_PROFILE_NAME_INVALID);
    return result;
}

// ---- leaving ----

template <class T, template <class> class Impl>
bool CWorkstationSettingPageBase<T, Impl>::StoreWithoutValidation()
{
    static_cast<void>(SaveShortcutSettings(false)); // the way back is open whatever stands there
    return true;
}

// A check box that is hidden is not stored.
template <class T, template <class> class Impl>
bool CWorkstationSettingPageBase<T, Impl>::SaveShortcutSettings(bool showErrors)
{
    if (IsShown(IDC_DESKTOP_SHORTCUT)) {
        WriteSwitch(DESKTOP_SHORTCUT, IDC_DESKTOP_SHORTCUT);
    }
    std::vector<CustomShortcutRow> rows;
    return m_shortcuts.CollectCustomShortcuts(rows, showErrors) && m_shortcuts.WriteCustomShortcuts(rows);
}

template <class T, template <class> class Impl>
bool CWorkstationSettingPageBase<T, Impl>::ReadSwitch(const WorkstationSwitch& setting) const
{
    return IsSwitchedOn(setting, ReadInstallerProperty(*this->m_pProduct, setting.property));
}

template <class T, template <class> class Impl>
void CWorkstationSettingPageBase<T, Impl>::WriteSwitch(const WorkstationSwitch& setting, int box) const
{
    WriteProperty(this->m_hDatabase, setting.property, SwitchValue(setting, Box(box).IsChecked()));
}

bool CWorkstationSettingPage::ValidateAndStore()
{
    if (!SaveProfileSettings()) {
        ::MessageBoxW(nullptr, m_strInvalidProfileMessage, LoadResourceString(IDS_ERROR_TITLE),
                      MB_OK | MB_ICONERROR);
        if (IsWindow()) { // the box runs a message loop
            ::SetFocus(GetDlgItem(IDC_PROFILE_NAME));
        }
        return false;
    }
    return CWorkstationSettingPageBase::ValidateAndStore();
}

bool CWorkstationSettingPage::StoreWithoutValidation()
{
    static_cast<void>(SaveProfileSettings()); // as for the shortcuts
    return CWorkstationSettingPageBase::StoreWithoutValidation();
}

bool CWorkstationSettingPage::SaveProfileSettings()
{
    WriteSwitch(BROWSER_REQUIRED, IDC_BROWSER_REQUIRED);
    WriteSwitch(SHEET_FORMAT, IDC_SHEET_FORMAT);
    const CString name = CWindow(GetDlgItem(IDC_PROFILE_NAME)).GetWindowText();
    if (!IsProfileNameAccepted(name)) {
        return false;
    }
    WriteProperty(m_hDatabase, PROFILE_NAME_PROPERTY, name);
    return true;
}

int WorkstationSettingDialog(PageContext* context)
{
    return ShowWizardPage<CWorkstationSettingDialog>(context);
}

CTabPage WorkstationSettingPage(PageContext* context)
{
    return CreateTabPage<CWorkstationSettingPage>(context);
}
