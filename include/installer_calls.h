// The service's calls on a product's database handle, which the service itself answers only on a package session:
// properties from the open database, changes that aren't committed included, and resolved target paths. The host implements
// them. Same parameters and results as MsiGetPropertyW and MsiGetTargetPathW; a handle that is not a product's gives 6
// (ERROR_INVALID_HANDLE).
#pragma once

#include "include/lang_mgr.h"
#include "include/setup_enums.h"

extern "C" WIZCORE_API unsigned int WizGetPropertyW(InstallerHandle database, const wchar_t* name,
                                                    wchar_t* buffer, unsigned long* size);
extern "C" WIZCORE_API unsigned int WizGetTargetPathW(InstallerHandle database, const wchar_t* directory,
                                                      wchar_t* buffer, unsigned long* size);
