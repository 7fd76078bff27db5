// The exports of FixMgr.dll and Kmd32.dll, found by name by whoever uses them. docs/catalog.md is their contract.
#pragma once

#include "include/patch_info_record.h"

#include <windows.h>

#include <oleauto.h>

#ifdef CATALOG_EXPORTS
#define CATALOG_EXPORT extern "C" __declspec(dllexport)
#else
#define CATALOG_EXPORT extern "C"
#endif

// FixMgr.dll. `reserved` is 0. Fills the whole record and writes the patch list; comes back within EXCHANGE_TIME_LIMIT.
CATALOG_EXPORT void GetPatchInfo(std::uint32_t reserved, BSTR* catalogKey, BSTR* identity,
                                 BSTR* addressTemplate, BSTR* patchListPath, PatchInfoRecord* record);
// 0 when the list names the file and its contents are those described there; otherwise a system error number.
CATALOG_EXPORT std::uint32_t CheckPatchFile(BSTR* patchListPath, BSTR* filePath);

// Kmd32.dll. The caller frees the text, which is empty when there is no identity. Each call needs one of setMRFlag before it.
CATALOG_EXPORT void setMRFlag();
CATALOG_EXPORT BSTR getKMDValue(BSTR configPath);
