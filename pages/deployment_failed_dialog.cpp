#include "frame/error_text.h"
#include "frame/page_entry.h"
#include "frame/resource_text.h"
#include "frame/text_rules.h"
#include "frame/wizard_page.h"
#include "include/rollout_ui.h"

// Shows why no deployment came of it, and where the log lies.
class CDeploymentFailedDialog : public CWizardPageImpl<CDeploymentFailedDialog>
{
public:
    enum
    {
        IDD = IDD_DEPLOYMENT_FAILED
    };

    using CWizardPageImpl::CWizardPageImpl;

    LRESULT OnInitDialog() override
    {
        InitFrame();
        CString sentence = LoadResourceString(IDS_FAILURE);
        ReplaceAll(sentence, L"[Reason]", MessageForCode(m_pSetupManager->m_exitCode, m_hResource));
        ReplaceAll(sentence, L"[LogPath]", m_pSetupManager->m_strLogPath);
        SetDlgItemText(IDC_FAILURE_REASON, sentence);
        RunHooks(m_postInitHooks);
        return TRUE;
    }
};

int DeploymentFailedDialog(PageContext* context)
{
    return ShowWizardPage<CDeploymentFailedDialog>(context);
}
