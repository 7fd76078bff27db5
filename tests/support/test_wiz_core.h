// The WizCore.dll of the page tests.
//
// RolloutUi.dll is bound to a host by one imported symbol, CLangMgr::Instance() of WizCore.dll; everything else comes
// by the PageContext. The page tests supply a library of that name with that one export, as any other host may. The
// real WizCore.dll can't stand in: its language manager could neither be made to name a folder without a resource
// library nor say in which order it was called between the setup manager's operations. The end-to-end tests run the
// pages on the real one.
//
// The library lies beside page_test.exe in a folder of their own, with copies of the page library, so that it is found
// before the real one.
#pragma once

#include "include/lang_mgr.h"

// The object that CLangMgr::Instance() gives. It must outlive every page.
extern "C" WIZCORE_API void SetTestLangMgr(CLangMgr* manager);
