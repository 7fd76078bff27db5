#include "builder/build_decision.h"

#include "builder/build_names.h"
#include "builder/code_page.h"
#include "builder/database_signature.h"
#include "builder/database_snapshot.h"
#include "builder/shown_text.h"
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

CString ShownKey(const RowDifference& row)
{
    CString text;
    for (const CString& part : row.key) {
        text += (text.IsEmpty() ? L"" : L", ") + ShownText(part);
    }
    return L"the row \"" + text + L"\" in the table " + ShownText(row.strTable);
}

// The last patch that made that change of the row.
CString NameOfPatch(const MergeDecision& merge, const RowDifference& row, RowChange change)
{
    CString name;
    for (const PatchChanges& patch : merge.changes) {
        for (const RowDifference& own : patch.rows) {
            if (own.change == change && own.strTable == row.strTable && own.key == row.key) {
                name = L"the patch \"" + ShownText(patch.strName) + L"\"";
            }
        }
    }
    return name.IsEmpty() ? CString(L"a merged patch") : name;
}

// A setting that met a change of a patch: nobody would look for it in what was built.
CString DescribeMet(const DatabaseDecision& decision, const RowDifference& row)
{
    const CString where = ShownKey(row) + L" of \"" + ShownText(decision.database->strProductName) + L"\"";
    if (row.change == RowChange::Changed) {
        return L"The change of " + where + L" was left out because " +
               NameOfPatch(decision.merge, row, RowChange::Removed) + L" removes the row.";
    }
    return L"Both the settings and " + NameOfPatch(decision.merge, row, RowChange::Added) + L" add " + where +
           L". The row of the settings was kept.";
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
        for (const RowDifference& met : CarryDifferences(decision.original, decision.left, decision.wanted)) {
            changes.notes.push_back(DescribeMet(decision, met));
        }
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
