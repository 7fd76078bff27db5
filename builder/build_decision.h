// Decide: what becomes of each database, as a part of the check. The decision is a value; the database phase carries it
// out and judges nothing anew.
#pragma once

#include "builder/added_files.h"
#include "builder/change_report.h"

#include <functional>

struct DatabaseDecision
{
    const BuildDatabase* database = nullptr; // of the plan
    AdditionPlaces places;
    AddedFiles added;
    // The vendor's, and the open one as the pages left it; kept only where files were added, whose sizes may still change.
    DatabaseSnapshot original;
    DatabaseSnapshot left;
    DatabaseSnapshot wanted; // the one to be built
    DatabaseChanges changes; // from the vendor's to that one
    // From the open one to that one: what goes into the copy alone. Pages and later builds find the open one as it was.
    std::vector<RowDifference> edits;

    // Otherwise the vendor's file is copied byte for byte.
    bool IsNeeded() const { return !changes.rows.empty() || added.IsNeeded(); }
    // Once the sizes of added files are known for sure.
    void SetSizes();
};

// The first look: where additions of the database lie. Sources are scanned with this knowledge, and decided afterwards.
[[nodiscard]] DatabaseDecision FindAdditions(const BuildDatabase& database);
// The paths in the deployment of files that were laid there by an earlier build, and come anew with their database.
[[nodiscard]] std::vector<CString> EarlierLooseTargets(const std::vector<DatabaseDecision>& decisions);

// Reads both databases once and fills the rest. Throws a BuildFailure for whatever refuses it; nothing is written but a
// file beside the working copy that goes at once. `poll` is called now and then and may throw.
void DecideDatabase(DatabaseDecision& decision, const CabinetLimits& limits,
                    const std::function<void()>& poll);
