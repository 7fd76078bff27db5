#include "tests/pages/begin_page.h"

BeginPage::BeginPage()
{
    host.manager.m_setupMode = Setup::SETUPMODE_CREATE_DEPLOYMENT;
    host.manager.m_platform = Setup::PLATFORM_X64;
    host.manager.m_strMediaFile = L"Setup.exe";
    host.manager.m_strImageSuffix = L"x64";
}

void BeginPage::ShowAndLeave()
{
    Press(IDC_BACK);
    EXPECT_EQ(ShowPage(), NAVIGATION_BACK);
}

void BeginPage::WithDeployments(Setup::tagSETUPMODE mode, std::initializer_list<const wchar_t*> names)
{
    host.manager.m_bHasDeployments = true;
    host.manager.m_setupMode = mode;
    for (const wchar_t* name : names)
        host.AddDeployment(name);
}

void BeginPage::WithLocation(const CString& path)
{
    host.manager.m_strDeploymentLocation = host.Keep(path);
}

void BeginPage::WithName(const CString& name)
{
    host.manager.m_strDeploymentName = host.Keep(name);
}

CString BeginPage::Buttons() const
{
    CString state;
    for (const int id : {IDC_BACK, IDC_NEXT, IDC_CANCEL})
        state += Control(id).IsEnabled() ? L"E" : L"D";
    return state;
}
