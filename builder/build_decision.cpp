#include "builder/build_decision.h"

#include "builder/build_names.h"
#include "builder/code_page.h"
#include "builder/database_signature.h"
#include "builder/database_snapshot.h"
#include "builder/snapshot_merge.h"

namespace {

void Compare(DatabaseDecision& decision)
{
    const bool merges = decision.merge.IsNeeded();
    decision.changes.rows =
        CompareSnapshots(merges ? decision.merge.patched : decision.original, decision.wanted);
    if (decision.added.IsNeeded() && !merges) {
        decision.edits = CompareSnapshots(decision.left, decision.wanted);
    }
}

} // namespace

void DatabaseDecision::SetSizes()
{
    SetUserFileSizes(wanted, added.additions);
    Compare(*this);
}

void DatabaseDecision::CompareAgain()
{
    Compare(*this);
}

DatabaseDecision BeginDecision(const BuildDatabase& database, const std::function<void()>& poll)
{
    DatabaseDecision decision;
    decision.database = &database;
    decision.places = FindAdditionPlaces(database);
    decision.merge = DecideMerge(database, decision.original, poll);
    decision.changes.patches = decision.merge.changes;
    return decision;
}

std::vector<CString> TargetsOfDatabases(const std::vector<DatabaseDecision>& decisions)
{
    std::vector<CString> targets;
    for (const DatabaseDecision& decision : decisions) {
        for (const auto& [key, path] : decision.places.earlierLooseFiles) {
            targets.push_back(JoinFolder(FolderAbove(decision.database->strTarget), path));
        }
        targets.insert(targets.end(), decision.merge.replaced.begin(), decision.merge.replaced.end());
    }
    return targets;
}

void DecideDatabase(DatabaseDecision& decision, const CabinetLimits& limits,
                    const std::function<void()>& poll)
{
    const BuildDatabase& database = *decision.database;
    DatabaseChanges& changes = decision.changes;
    changes.strTarget = database.strTarget;
    changes.strProductName = database.strProductName;
    CInstallerHandle vendors = OpenDatabaseToRead(database.strOriginal);
    changes.strOldPackageCode = ReadPackageCode(vendors.get(), database.strOriginal);
    changes.strNewPackageCode = changes.strOldPackageCode;
    if (database.hDatabase == 0) {
        return;
    }
    // This reads every table of the handle, which a commit under Wine depends on (docs/building-deployments.md).
    decision.left = ReadSnapshot(database.hDatabase, database.strWorkingCopy, poll);
    if (decision.merge.IsNeeded()) {
        // What the administrator chose comes on top of the patches.
        decision.wanted = decision.merge.patched;
        CarryDifferences(decision.original, decision.left, decision.wanted);
    } else {
        decision.original = ReadSnapshot(vendors.get(), database.strOriginal, poll);
        decision.wanted = decision.left;
    }
    decision.added = DecideAddedFiles(database, decision.places, limits, decision.wanted, poll);
    Compare(decision);
    // No size will be entered later, so nothing is compared again.
    if (decision.added.additions.files.empty() && !decision.merge.IsNeeded()) {
        decision.original.clear();
        decision.left.clear();
    }
    RequireCodePageHolds(database, changes.rows);
    vendors.reset();
    changes.bSignatureLost = decision.IsNeeded() && HasSignature(database.strOriginal);
}
