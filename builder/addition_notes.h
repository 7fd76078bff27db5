// Additions.txt: every file, folder and drive that was added, for the administrator who has to know what a deployment
// brings. No window header.
#pragma once

#include "builder/user_files.h"

constexpr wchar_t ADDITIONS_FILE[] = L"Additions.txt"; // in the deployment's folder

struct AddedItems
{
    CString strDatabase; // relative path in the deployment
    CString strProductName;
    std::vector<UserFile> files;
    std::vector<CString> folders; // as a person reads them
    std::vector<CString> drives;  // `X:`
    std::vector<CString> leftOut; // sentences

    bool IsEmpty() const { return files.empty() && folders.empty() && drives.empty() && leftOut.empty(); }
};

// Grouped by folder, folders and names sorted without regard to case.
[[nodiscard]] CString ComposeAdditions(const std::vector<AddedItems>& products);
