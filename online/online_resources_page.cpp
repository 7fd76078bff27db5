#include "online/online_resources_page.h"

#include "frame/page_entry.h"
#include "include/rollout_ui.h"
#include "online/property_stores.h"
#include "window/controls.h"

// ---- init ----

template <class T, template <class> class Impl>
LRESULT COnlineResourcesPageBase<T, Impl>::OnInitDialog()
{
    this->InitFrame();
    CDatabasePropertyStore properties(this->m_hDatabase);
    const ResourceSettings settings = LoadResourceSettings(properties);
    for (int index = 0; index < RESOURCE_SWITCH_COUNT; ++index) {
        CButton(this->GetDlgItem(RESOURCE_SWITCHES[index].control)).SetCheck(settings[index]);
    }
    this->FocusAtStart(RESOURCE_SWITCHES[0].control);
    this->RunHooks(this->m_postInitHooks);
    return FALSE;
}

// ---- leaving ----

// Any five switches will do.
template <class T, template <class> class Impl>
bool COnlineResourcesPageBase<T, Impl>::ValidateAndStore()
{
    Store();
    return true;
}

template <class T, template <class> class Impl>
void COnlineResourcesPageBase<T, Impl>::Store()
{
    ResourceSettings settings = {};
    for (int index = 0; index < RESOURCE_SWITCH_COUNT; ++index) {
        settings[index] = CButton(this->GetDlgItem(RESOURCE_SWITCHES[index].control)).IsChecked();
    }
    CDatabasePropertyStore properties(this->m_hDatabase);
    StoreResourceSettings(properties, settings);
}

int OnlineResourcesDialog(PageContext* context)
{
    return ShowWizardPage<COnlineResourcesDialog>(context);
}

CTabPage OnlineResourcesPage(PageContext* context)
{
    return CreateTabPage<COnlineResourcesPage>(context);
}
