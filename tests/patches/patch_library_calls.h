// The tests' FixMgr.dll and Kmd32.dll hand each call on to the test program, through a table whose address stands in the
// environment as a decimal number. So the page loads and unloads real libraries, and a test scripts what they answer.
#pragma once

#include "include/patch_info_record.h"

#include <windows.h>

#include <oleauto.h>

#include <cstdint>

struct PatchLibraryCalls
{
    void (*setMRFlag)();
    BSTR (*getKMDValue)(BSTR configFile);
    void (*getPatchInfo)(std::intptr_t zero, BSTR* catalogKey, BSTR* identity, BSTR* address, BSTR* listFile,
                         PatchInfoRecord* record);
    unsigned int (*checkPatchFile)(BSTR* listFile, BSTR* file);
};

constexpr wchar_t PATCH_LIBRARY_CALLS[] = L"ROLLOUT_TEST_PATCH_LIBRARY_CALLS";
