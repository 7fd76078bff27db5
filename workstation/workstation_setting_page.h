// The page of what a workstation gets besides the program.
#pragma once

#include "frame/tab_page.h"
#include "frame/wizard_page.h"
#include "workstation/custom_shortcuts_grid.h"
#include "workstation/workstation_settings_rules.h"

// Whether the installation puts a shortcut on the desktop, and up to five custom shortcuts with switches of their own. All of
// it is stored in the product's database when the page is left; going back drops the rows that can't be shortcuts.
template <class T, template <class> class Impl>
class CWorkstationSettingPageBase : public Impl<T>
{
public:
    explicit CWorkstationSettingPageBase(const PageContext* context);

    BEGIN_MSG_MAP(CWorkstationSettingPageBase)
    CHAIN_MSG_MAP(Impl<T>)
    END_MSG_MAP()

    LRESULT OnInitDialog() override;
    BOOL PreTranslateMessage(MSG* message) override;
    bool ValidateAndStore() override { return SaveShortcutSettings(true); }
    bool StoreWithoutValidation() override;

protected:
    [[nodiscard]] CButton Box(int id) const { return CButton(this->GetDlgItem(id)); }
    [[nodiscard]] bool ReadSwitch(const WorkstationSwitch& setting) const;
    void WriteSwitch(const WorkstationSwitch& setting, int box) const;

private:
    void InitDesktopShortcut();
    // Also while the page itself is hidden, as behind another tab.
    [[nodiscard]] bool IsShown(int id) const
    {
        return (CWindow(this->GetDlgItem(id)).GetStyle() & WS_VISIBLE) != 0;
    }
    [[nodiscard]] int FirstControl() const;
    [[nodiscard]] bool SaveShortcutSettings(bool showErrors);

    CCustomShortcutsGrid m_shortcuts;
};

class CWorkstationSettingDialog
    : public CWorkstationSettingPageBase<CWorkstationSettingDialog, CWizardPageImpl>
{
public:
    enum
    {
        IDD = IDD_WORKSTATION_SETTING
    };
    using CWorkstationSettingPageBase::CWorkstationSettingPageBase;
};

// The tab page alone has the settings of the product's profile too.
class CWorkstationSettingPage : public CWorkstationSettingPageBase<CWorkstationSettingPage, CTabPageImpl>
{
public:
    enum
    {
        IDD = IDD_WORKSTATION_SETTING_TAB
    };
    using CWorkstationSettingPageBase::CWorkstationSettingPageBase;

    LRESULT OnInitDialog() override;
    bool ValidateAndStore() override;
    bool StoreWithoutValidation() override;

private:
    // False, with the name as it was, when it is none. The two switches are stored in any case.
    [[nodiscard]] bool SaveProfileSettings();

    CString m_strInvalidProfileMessage;
};
