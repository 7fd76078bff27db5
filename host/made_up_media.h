// The description of a single package that comes without Setup.xml.
#pragma once

#include "host/setup_description.h"
#include "host/setup_host.h"

#include <vector>

// Reads what the package says of itself: names, codes, platform and language.
[[nodiscard]] HostError DescribePackage(const CString& packageFile, SetupDescription& description);
// What has to lie beside the package when it is installed, relative to its folder: its cabinets and its loose files.
[[nodiscard]] std::vector<CString> FindPackageFiles(InstallerHandle database, const CString& packageFolder);
