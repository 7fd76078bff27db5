// The first page of the wizard.
#pragma once

#include "frame/wizard_page.h"
#include "pages/begin_deployment_rules.h"

#include <vector>

// Where the deployment lies, what it is called and which platform it serves; when the setup runs from a deployment's
// image, also whether a new one is made, one is made from another, or one is changed. Next checks the choice, hands it
// to the setup manager and, when the base deployment has changed, makes the host load that deployment.
class CBeginDeploymentDialog : public CWizardPageImpl<CBeginDeploymentDialog>
{
public:
    enum
    {
        IDD = IDD_BEGIN_DEPLOYMENT
    };

    using CWizardPageImpl::CWizardPageImpl;

    BEGIN_MSG_MAP(CBeginDeploymentDialog)
    COMMAND_HANDLER(IDC_MODE_CREATE, BN_CLICKED, OnModeCreate)
    COMMAND_HANDLER(IDC_MODE_CREATE_FROM, BN_CLICKED, OnModeCreateFrom)
    COMMAND_HANDLER(IDC_MODE_MODIFY, BN_CLICKED, OnModeModify)
    COMMAND_HANDLER(IDC_DEPLOYMENTS, LBN_SELCHANGE, OnDeploymentSelected)
    COMMAND_HANDLER(IDC_LOCATION, EN_CHANGE, OnLocationEdited)
    COMMAND_HANDLER(IDC_LOCATION_BROWSE, BN_CLICKED, OnBrowse)
    COMMAND_HANDLER(IDC_NAME, EN_CHANGE, OnNameEdited)
    COMMAND_HANDLER(IDC_PLATFORM_X86, BN_CLICKED, OnPlatform)
    COMMAND_HANDLER(IDC_PLATFORM_X64, BN_CLICKED, OnPlatform)
    CHAIN_MSG_MAP(CWizardPageImpl<CBeginDeploymentDialog>)
    END_MSG_MAP()

    LRESULT OnInitDialog() override;
    void LookupControls() override;
    bool ValidateAndStore() override;

private:
    // ---- handlers ----
    LRESULT OnModeCreate(WORD, WORD id, HWND, BOOL&);
    LRESULT OnModeCreateFrom(WORD, WORD id, HWND, BOOL&);
    LRESULT OnModeModify(WORD, WORD id, HWND, BOOL&);
    LRESULT OnDeploymentSelected(WORD, WORD, HWND, BOOL&);
    LRESULT OnLocationEdited(WORD, WORD, HWND, BOOL&);
    LRESULT OnBrowse(WORD, WORD, HWND, BOOL&);
    LRESULT OnNameEdited(WORD, WORD, HWND, BOOL&);
    LRESULT OnPlatform(WORD, WORD id, HWND, BOOL&);

    bool ChangeMode(int radio, Setup::tagSETUPMODE mode); // false when the mode is the same as before

    // ---- layout ----
    void LoadFromHost();
    void FocusFirstControl();
    BeginLayout Layout() const;
    void ShowLayout();
    void HideLayoutControls();
    void ShowLocation(bool plain);
    void ShowName(int headingAnchor, int editAnchor);
    void HideName();
    void ShowDeployments(bool shown);
    void FillDeployments();
    void SelectDeployment(const CString& name);
    void ShowPlatforms();
    void UpdateNext();
    void ShowControl(int id, bool shown);
    void MoveToAnchor(int id, int anchor);
    std::vector<CString> DeploymentNames();

    // ---- checks ----
    enum class Verdict
    {
        Passed,
        Refused,  // an error was shown: Next waits for an edit
        Declined, // the user answered No: Next may be pressed again
    };
    Verdict CheckChoice();
    Verdict Refuse(const CString& error);
    void RestoreButtons(bool backEnabled, bool nextEnabled);
    void PlaceFocus(Verdict verdict);
    bool IsOtherProductsLocation();
    bool AreDeploymentPathsShortEnough();
    bool CheckLocation(bool& asked); // `asked`: a question was put
    bool CheckName(bool& asked);
    void SetBrowsedFolder();
    void StoreChoice();
    void LoadBaseDeployment();

    CWindow m_location;
    CEdit m_name;
    CListBox m_deployments;

    Setup::tagSETUPMODE m_mode = Setup::SETUPMODE_CREATE_DEPLOYMENT;
    CString m_strLocation; // as typed, without quotes
    CString m_strName;
    CString m_strBaseName;         // display name
    CString m_strOriginalBaseName; // as the page found it
    Setup::tagPLATFORM m_platform = Setup::PLATFORM_X86;
    bool m_bModeFailed = false; // the host is between two modes: no edit leads on from there
    std::vector<CString>* m_pDeployments = nullptr; // the host's
};
