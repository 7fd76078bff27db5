// Decide: what becomes of each database, as a part of the check. The decision is a value; the database phase carries it
// out and judges nothing anew.
#pragma once

#include "builder/added_files.h"
#include "builder/change_report.h"
#include "builder/merge_decision.h"

#include <functional>

struct DatabaseDecision
{
    const BuildDatabase* database = nullptr; // of the plan
    AdditionPlaces places;
    MergeDecision merge;
    AddedFiles added;
    // The vendor's, and the open one as the pages left it; kept only where files were added or patches are merged, as sizes
    // and hashes may still change.
    DatabaseSnapshot original;
    DatabaseSnapshot left;
    DatabaseSnapshot wanted; // the one to be built
    DatabaseChanges changes; // from the vendor's to that one; what patches change stands apart
    // From the open one to that one: what goes into the copy alone. Pages and later builds find the open one as it was.
    std::vector<RowDifference> edits;

    // Otherwise the vendor's file is copied byte for byte.
    bool IsNeeded() const { return !changes.rows.empty() || added.IsNeeded() || merge.IsNeeded(); }
    // Once the sizes of added files are known for sure.
    void SetSizes();
    // Once the files of patches are packed.
    void CompareAgain();
};

// The first look: where additions of the database lie, and what patches to be merged replace. Sources are scanned with this
// knowledge, and decided afterwards. Throws a BuildFailure for a patch that can't be merged.
[[nodiscard]] DatabaseDecision BeginDecision(const BuildDatabase& database,
                                             const std::function<void()>& poll);
// The paths in the deployment of what comes with its database and not from the media: files that were laid there by an
// earlier build, and what merged patches replace.
[[nodiscard]] std::vector<CString> TargetsOfDatabases(const std::vector<DatabaseDecision>& decisions);

// Reads both databases once and fills the rest. Throws a BuildFailure for whatever refuses it; nothing is written but a
// file beside the working copy that goes at once. `poll` is called now and then and may throw.
void DecideDatabase(DatabaseDecision& decision, const CabinetLimits& limits,
                    const std::function<void()>& poll);
