// The page of the settings that hold for the deployment as a whole.
#pragma once

#include "frame/wizard_page.h"

// Whether each workstation writes a log to the network and where, whether a copy of it stays on the workstation, how
// much of the installation is seen there, and MC3_ENABLED for the products that carry it. Next checks the log folder and
// stores; Back stores all but the folder. Everything goes to the setup manager but MC3_ENABLED, which is written into the
// databases of its products.
class CDeploymentSettingsDialog : public CWizardPageImpl<CDeploymentSettingsDialog>
{
public:
    enum
    {
        IDD = IDD_DEPLOYMENT_SETTINGS
    };

    using CWizardPageImpl::CWizardPageImpl;

    BEGIN_MSG_MAP(CDeploymentSettingsDialog)
    COMMAND_HANDLER(IDC_NETWORK_LOG, BN_CLICKED, OnNetworkLog)
    COMMAND_HANDLER(IDC_LOG_FOLDER, EN_CHANGE, OnLogFolderEdited)
    COMMAND_HANDLER(IDC_LOG_FOLDER, EN_KILLFOCUS, OnLogFolderLeft)
    COMMAND_HANDLER(IDC_LOG_FOLDER_BROWSE, BN_CLICKED, OnBrowse)
    CHAIN_MSG_MAP(CWizardPageImpl<CDeploymentSettingsDialog>)
    END_MSG_MAP()

    LRESULT OnInitDialog() override;
    void LookupControls() override;
    bool ValidateAndStore() override;
    bool StoreWithoutValidation() override
    {
        Store(false);
        return true;
    }

private:
    LRESULT OnNetworkLog(WORD, WORD, HWND, BOOL&);
    LRESULT OnLogFolderEdited(WORD, WORD, HWND, BOOL&);
    LRESULT OnLogFolderLeft(WORD, WORD, HWND, BOOL&);
    LRESULT OnBrowse(WORD, WORD, HWND, BOOL&);

    // ---- controls ----
    void ReadLogFolder();
    void WriteLogFolder();
    bool WritesNetworkLog() const;
    bool IsLogFolderOff() const;
    void EnableLogFolder();
    void UpdateNext();
    void ShowMc3();

    // ---- checks and storing ----
    CString DefaultLogFolder() const;
    bool CheckLogFolder();
    bool AcceptLogFolder(CString& folder); // which comes back in canonical form
    void Store(bool withPath);
    void StoreMc3() const;

    CWindow m_networkLog;
    CWindow m_logFolder;
    CWindow m_mc3;
    CString m_strLogFolder; // mirrors the edit
};
