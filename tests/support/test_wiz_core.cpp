#include "tests/support/test_wiz_core.h"

namespace {

CLangMgr* g_manager = nullptr;

}

CLangMgr& CLangMgr::Instance()
{
    return *g_manager;
}

extern "C" void SetTestLangMgr(CLangMgr* manager)
{
    g_manager = manager;
}
