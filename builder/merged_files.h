// What becomes of the files that a patch changes when it is merged: found and numbered on snapshots of the database. No window
// header.
//
// A patch holds two transforms. The first one leads to the newer product, and is applied. The second one says how the
// changed files come from the patch's own cabinet; it is only read, as the files go into the package's own source.
#pragma once

#include "builder/change_report.h"
#include "installer/package_layout.h"

#include <map>
#include <set>

// A database around one patch.
struct PatchSteps
{
    DatabaseSnapshot before;
    DatabaseSnapshot changed; // the first transform applied
    DatabaseSnapshot sourced; // and then the second one
};

// The files whose bytes a patch carries: the name of the cabinet's stream within it, by key of the file.
using CarriedFiles = std::map<CString, CString>;

// Why the patch can't be merged, to follow after "it"; empty when it can.
[[nodiscard]] CString FindCarriedFiles(const PatchSteps& steps, CarriedFiles& carried);

// Puts what the first transform changed into `merged`, the product with what was merged before. Files that were there keep
// their numbers and their place, new ones stand behind all others on the last medium. Answers as above.
[[nodiscard]] CString MergeTables(const PatchSteps& steps, DatabaseSnapshot& merged);

// A cabinet of the product's own that changes, with the keys of all of its files in their order.
struct MergedCabinet
{
    CString strName; // as in the table Media: with "#" in front when it lies within the database
    std::vector<CString> keys;
};
// `touched`: keys of files whose bytes change, or that are new. `removed`: keys of files that are gone, from `original`.
[[nodiscard]] std::vector<MergedCabinet> FindMergedCabinets(const DatabaseSnapshot& original,
                                                            const DatabaseSnapshot& merged,
                                                            const PackageLayout& layout,
                                                            const std::set<CString>& touched,
                                                            const std::set<CString>& removed);

// Keys of the rows of File that the second one lacks.
[[nodiscard]] std::set<CString> FindRemovedFiles(const DatabaseSnapshot& original,
                                                 const DatabaseSnapshot& merged);
[[nodiscard]] SourcePlace PlaceInPackage(const DatabaseSnapshot& database, const PackageLayout& layout,
                                         const CString& file);
