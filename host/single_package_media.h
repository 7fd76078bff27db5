// The description of a single package that comes without Setup.xml.
#pragma once

#include "host/setup_description.h"
#include "host/setup_host.h"

// Reads what the package says of itself: names, codes, platform and language.
[[nodiscard]] OperationError DescribePackage(const CString& packageFile, SetupDescription& description);
