// Reads back from a deployment's Changes.json which databases the deployment has, and their package codes. No window
// header.
#pragma once

#include "base/string.h"

#include <cstddef>
#include <vector>

constexpr const wchar_t* CHANGES_FILE = L"Changes.json";

struct DatabaseCodes
{
    CString strTarget; // relative path in the deployment
    CString strProductName;
    CString strPackageCode; // that it was built with
};

// Only the lines that begin a database count, in the form that a build writes (change_report.h); rows are passed over. False
// for any other file.
[[nodiscard]] bool ReadDatabaseCodes(const char* bytes, std::size_t length,
                                     std::vector<DatabaseCodes>& databases);
