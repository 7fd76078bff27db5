// The folders of the product that the tree of additional files shows.
#pragma once

#include "base/string.h"
#include "include/directory_manager.h"
#include "include/setup_enums.h"
#include "msi/row_columns.h"

#include <map>

// The installation folder, from which display paths begin. All empty for a product without a directory manager.
struct TreeRoots
{
    CString targetUpper; // in upper case, with its closing backslash
    CString target;      // without
    CString sourceUpper;
    CString label;
};

// Directory rows by display path.
using DirectoryRows = std::map<CString, DirectoryColumns, CompareNoCaseLess>;

// The target or source path of a directory, with its closing backslash; empty when there is none, or when it has more than
// 260 characters.
[[nodiscard]] CString TargetPathOf(CDirectoryManager& manager, const CString& key);
[[nodiscard]] CString SourcePathOf(CDirectoryManager& manager, const CString& key);

// Folders that hold a component of the product, lie below the installation folder and are not to be hidden, one a target
// path, with the folders above them. Their paths are remembered in DirectoryPathCache. `directories`: the manager's, which
// reads its tables each time it is asked for them.
[[nodiscard]] DirectoryRows LoadProductFolders(InstallerHandle database, CDirectoryManager& manager,
                                               const CDirectoryManager::DirectoryMap& directories,
                                               const TreeRoots& roots);
