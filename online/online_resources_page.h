// The page of the product's online content.
#pragma once

#include "frame/tab_page.h"
#include "frame/wizard_page.h"
#include "online/resource_settings.h"

// Five switches of what the product may use on the web. They are read from the product's database and written to it
// straight, so a later query on the handle sees them at once; showing the page writes those that are missing.
template <class T, template <class> class Impl>
class COnlineResourcesPageBase : public Impl<T>
{
public:
    using Impl<T>::Impl;

    LRESULT OnInitDialog() override;
    bool ValidateAndStore() override;
    bool StoreWithoutValidation() override
    {
        Store();
        return true;
    }

    // Storing shows no box, and no mouse move is handled meanwhile.
    bool HasPlainBackCursor() const override { return true; }

private:
    void Store();
};

class COnlineResourcesDialog : public COnlineResourcesPageBase<COnlineResourcesDialog, CWizardPageImpl>
{
public:
    enum
    {
        IDD = IDD_ONLINE_RESOURCES
    };
    using COnlineResourcesPageBase::COnlineResourcesPageBase;
};

class COnlineResourcesPage : public COnlineResourcesPageBase<COnlineResourcesPage, CTabPageImpl>
{
public:
    enum
    {
        IDD = IDD_ONLINE_RESOURCES_TAB
    };
    using COnlineResourcesPageBase::COnlineResourcesPageBase;
};
