// The files that a package is installed from, as its tables and the disk tell.
#pragma once

#include "base/string.h"
#include "installer/handle.h"

#include <map>
#include <vector>

// What has to lie beside the package when it is installed, relative to its folder: its cabinets and its loose files.
// Cabinets from which nothing is installed are left out unless they are there. `packageFolder`: with backslash.
[[nodiscard]] std::vector<CString> FindPackageFiles(MSIHANDLE database, const CString& packageFolder);

// A cabinet with files of the product's own whose name is one that builds use for added files; empty when there is none. A
// build would leave it out.
[[nodiscard]] CString FindMisnamedCabinet(MSIHANDLE database, const CString& packageFolder);

// Where files that were added to the product have to lie.
struct AdditionSources
{
    bool bLoose = false;          // in folders of the package's; in cabinets otherwise
    bool bPackedUnmarked = false; // in cabinets even when their rows don't say so
    // Of loose files, by key, relative to the package's folder; of those that have one.
    std::map<CString, CString> paths;
};
[[nodiscard]] AdditionSources FindAdditionSources(MSIHANDLE database, const CString& packageFolder);

// Where the product's own files lie when they lie loose, by key, relative to the package's folder. Empty for a file whose
// folder can't be told.
struct LoosePaths
{
    CString strInFolder; // where the table of directories says
    CString strAtRoot;   // beside the package
};
[[nodiscard]] std::map<CString, LoosePaths> FindLoosePaths(MSIHANDLE database, const CString& packageFolder);
