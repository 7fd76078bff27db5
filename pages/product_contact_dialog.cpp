#include "frame/page_entry.h"
#include "frame/wizard_page.h"
#include "include/rollout_ui.h"

// How to reach the product's maker: the template and the side pane say it all.
class CProductContactDialog : public CWizardPageImpl<CProductContactDialog>
{
public:
    enum
    {
        IDD = IDD_PRODUCT_CONTACT
    };

    using CWizardPageImpl::CWizardPageImpl;

    LRESULT OnInitDialog() override
    {
        InitFrame();
        RunHooks(m_postInitHooks);
        return TRUE;
    }
};

int ProductContactDialog(PageContext* context)
{
    return ShowWizardPage<CProductContactDialog>(context);
}
