// What a package says it is, in its Property table: the code and the version that the installer registers, and that
// scripts, notes and detection rules go by.
#pragma once

#include "host/setup_description.h"
#include "host/setup_host.h"

struct PackageIdentity
{
    CString strProductCode; // as it stands in the database: a GUID in braces, in any case
    CString strVersion;
};

// Refuses a package, by its file, whose code is no GUID in braces or whose version is none.
[[nodiscard]] OperationError ReadIdentity(InstallerHandle database, const CString& packageFile,
                                          PackageIdentity& identity);
// The same, and refuses one that isn't the package of the description.
[[nodiscard]] OperationError CheckIdentity(InstallerHandle database, const CString& packageFile,
                                           const PackageDescription& described);
