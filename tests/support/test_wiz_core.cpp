#include "tests/support/test_wiz_core.h"

namespace {

CLangMgr* g_manager = nullptr;
TestInstallerCall g_property = nullptr;
TestInstallerCall g_targetPath = nullptr;

constexpr unsigned int INVALID_HANDLE = 6;

} // namespace

CLangMgr& CLangMgr::Instance()
{
    return *g_manager;
}

extern "C" void SetTestLangMgr(CLangMgr* manager)
{
    g_manager = manager;
}

extern "C" void SetTestInstallerCalls(TestInstallerCall property, TestInstallerCall targetPath)
{
    g_property = property;
    g_targetPath = targetPath;
}

unsigned int WizGetPropertyW(InstallerHandle database, const wchar_t* name, wchar_t* buffer,
                             unsigned long* size)
{
    return g_property ? g_property(database, name, buffer, size) : INVALID_HANDLE;
}

unsigned int WizGetTargetPathW(InstallerHandle database, const wchar_t* directory, wchar_t* buffer,
                               unsigned long* size)
{
    return g_targetPath ? g_targetPath(database, directory, buffer, size) : INVALID_HANDLE;
}
