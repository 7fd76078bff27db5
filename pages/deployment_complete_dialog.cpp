#include "frame/label_format.h"
#include "frame/page_entry.h"
#include "frame/resource_text.h"
#include "frame/text_rules.h"
#include "frame/wizard_page.h"
#include "include/rollout_ui.h"

namespace {

// White is the default colour alone: the text names one of its own, and the label draws white on white in black.
RenderFormat ResultFormat()
{
    RenderFormat format = PaneFormat();
    format.fTextScale = 1.0f;
    format.clrText = RGB(255, 255, 255);
    return format;
}

} // namespace

// Reports that the deployment stands, and where.
class CDeploymentCompleteDialog : public CWizardPageImpl<CDeploymentCompleteDialog>
{
public:
    enum
    {
        IDD = IDD_DEPLOYMENT_COMPLETE
    };

    using CWizardPageImpl::CWizardPageImpl;

    LRESULT OnInitDialog() override
    {
        InitFrame();
        ShowResultLine(IDC_RESULT_LINE1, IDS_COMPLETE_LINE1, m_pSetupManager->m_strCompleteLine1);
        ShowResultLine(IDC_RESULT_LINE2, IDS_COMPLETE_LINE2, m_pSetupManager->m_strCompleteLine2);
        InitResultLabel();
        RunHooks(m_postInitHooks);
        return TRUE;
    }

    BOOL PreTranslateMessage(MSG* message) override
    {
        if (m_resultLabel.GetWindow() && m_resultLabel.PreTranslateMessage(message)) {
            return TRUE;
        }
        return CWizardPageImpl::PreTranslateMessage(message);
    }

private:
    void ShowResultLine(int control, unsigned int captionId, const wchar_t* value)
    {
        SetDlgItemText(control, DoubleAmpersands(LoadResourceString(captionId) + value));
    }

    void InitResultLabel()
    {
        const CWindow control(GetDlgItem(IDC_RESULT_LABEL));
        if (!m_resultLabel.SubclassWindow(control)) {
            return;
        }
        m_resultLabel.SetRenderFormat(ResultFormat());
        control.ModifyStyle(0, SS_NOTIFY);
        m_resultLabel.LoadText(LoadResourceString(IDS_COMPLETE_TEXT));
        control.EnableWindow();
        control.ShowWindow(SW_SHOW);
    }

    CSlimHtmlCtrl m_resultLabel;
};

int DeploymentCompleteDialog(PageContext* context)
{
    return ShowWizardPage<CDeploymentCompleteDialog>(context);
}
