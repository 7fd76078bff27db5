#include "builder/build_decision.h"

#include "builder/build_names.h"
#include "builder/code_page.h"
#include "builder/database_snapshot.h"

namespace {

void Compare(DatabaseDecision& decision)
{
    decision.changes.rows = CompareSnapshots(decision.original, decision.wanted);
    if (decision.added.IsNeeded()) {
        decision.edits = CompareSnapshots(decision.left, decision.wanted);
    }
}

} // namespace

void DatabaseDecision::SetSizes()
{
    SetUserFileSizes(wanted, added.additions);
    Compare(*this);
}

DatabaseDecision FindAdditions(const BuildDatabase& database)
{
    DatabaseDecision decision;
    decision.database = &database;
    decision.places = FindAdditionPlaces(database);
    return decision;
}

std::vector<CString> EarlierLooseTargets(const std::vector<DatabaseDecision>& decisions)
{
    std::vector<CString> targets;
    for (const DatabaseDecision& decision : decisions) {
        for (const auto& [key, path] : decision.places.earlierLooseFiles) {
            targets.push_back(JoinFolder(FolderAbove(decision.database->strTarget), path));
        }
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
    const CInstallerHandle vendors = OpenDatabaseToRead(database.strOriginal);
    changes.strOldPackageCode = ReadPackageCode(vendors.get(), database.strOriginal);
    changes.strNewPackageCode = changes.strOldPackageCode;
    if (database.hDatabase == 0) {
        return;
    }
    // This reads every table of the handle, which a commit under Wine depends on (docs/building-deployments.md).
    decision.left = ReadSnapshot(database.hDatabase, database.strWorkingCopy, poll);
    decision.original = ReadSnapshot(vendors.get(), database.strOriginal, poll);
    decision.wanted = decision.left;
    decision.added = DecideAddedFiles(database, decision.places, limits, decision.wanted, poll);
    Compare(decision);
    if (decision.added.additions.files
            .empty()) { // no size will be entered later, so nothing is compared again
        decision.original.clear();
        decision.left.clear();
    }
    RequireCodePageHolds(database, changes.rows);
}
