// The WizCore.dll of the page tests.
//
// RolloutUi.dll is bound to a host by CLangMgr::Instance() of WizCore.dll and the installer's calls on a product's
// database; everything else comes by the PageContext. The page tests supply a library of that name, as any other host may. The
// real WizCore.dll can't stand in: its language manager could neither be made to name a folder without a resource
// library nor say in which order it was called between the setup manager's operations. The end-to-end tests run the
// pages on the real one.
//
// The library lies beside page_test.exe in a folder of their own, with copies of the page library, so that it is found
// before the real one.
#pragma once

#include "include/installer_calls.h"
#include "include/lang_mgr.h"

// The object that CLangMgr::Instance() gives. It must outlive every page.
extern "C" WIZCORE_API void SetTestLangMgr(CLangMgr* manager);

// What WizGetPropertyW and WizGetTargetPathW call; null, as at the start, for ERROR_INVALID_HANDLE.
using TestInstallerCall = unsigned int (*)(InstallerHandle database, const wchar_t* name, wchar_t* buffer,
                                           unsigned long* size);
extern "C" WIZCORE_API void SetTestInstallerCalls(TestInstallerCall property, TestInstallerCall targetPath);
