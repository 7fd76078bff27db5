// The review of a build: what its check has found and decided, as whoever waits for the build reads it.
#include "builder/build_run.h"

#include "builder/build_check.h"
#include "builder/build_names.h"
#include "builder/file_operations.h"

#include <algorithm>

namespace {

// By its target where the plan lists it, as the list knows its name.
ReviewedPatch NamedPatch(const BuildDatabase& database, const CString& target)
{
    const auto listed =
        std::find_if(database.patches.begin(), database.patches.end(), [&](const ListedPatch& patch) {
            return patch.strTarget.CompareNoCase(target) == 0 && !patch.strName.IsEmpty();
        });
    return {listed == database.patches.end() ? LastName(target) : listed->strName, target};
}

ReviewedPatch NamedPatch(const BuildDatabase& database, const MergedPatch& merged)
{
    ReviewedPatch reviewed{LastName(merged.strSource), CString()};
    for (const ListedPatch& patch : database.patches) {
        if (patch.strCode.CompareNoCase(merged.strCode) == 0) {
            reviewed.strName = patch.strName.IsEmpty() ? reviewed.strName : patch.strName;
            reviewed.strTarget = patch.strTarget;
        }
    }
    return reviewed;
}

DatabaseReview ReviewDatabase(const DatabaseDecision& decision)
{
    const BuildDatabase& database = *decision.database;
    DatabaseReview review;
    review.strTarget = database.strTarget;
    review.strProductName = database.strProductName;
    review.strProductCode = database.strProductCode;
    review.strPackageCode = decision.changes.strOldPackageCode;
    review.bWritten = decision.IsNeeded();
    review.bSignatureLost = decision.changes.bSignatureLost;
    review.tables = CountByTable(decision.changes.rows);
    for (const auto& table : decision.wanted) {
        review.rowsToWrite += review.bWritten ? table.second.rows.size() : 0;
    }
    for (const CString& target : database.patchTargets) {
        review.appended.push_back(NamedPatch(database, target));
    }
    for (const MergedPatch& patch : database.mergedPatches) {
        review.merged.push_back(NamedPatch(database, patch));
    }
    for (const ListedPatch& patch : database.patches) {
        if (patch.use == ListedPatch::Use::MergedBefore) {
            review.mergedBefore.push_back(NamedPatch(database, MergedPatch{patch.strSource, patch.strCode}));
        }
    }
    for (const UserFile& file : decision.added.additions.files) {
        review.addedFiles.push_back({JoinFolder(file.strShownFolder, file.strName), file.size});
        review.addedBytes += file.size;
    }
    for (const UserFolder& folder : decision.added.additions.folders) {
        review.addedFolders.push_back(folder.strShown);
    }
    review.cabinets = decision.added.cabinets.size();
    review.addedDrives = decision.added.drives;
    return review;
}

} // namespace

BuildReview ReviewRun(const BuildRun& run)
{
    BuildReview review;
    review.strTarget = run.target;
    review.bReplaces = run.replaces;
    review.bOverNetwork = IsRemote(run.target);
    std::size_t cabinets = 0;
    bool hasAdditions = false;
    for (const DatabaseDecision& decision : run.decisions) {
        review.databases.push_back(ReviewDatabase(decision));
        cabinets += decision.added.cabinets.size();
        hasAdditions = hasAdditions || !decision.added.Describe(*decision.database).IsEmpty();
    }
    for (const std::vector<CopyItem>* files : {&run.list.files, &run.list.additions}) {
        for (const CopyItem& file : *files) {
            review.bytesCopied += file.size; // nothing for a cabinet, which isn't there yet
        }
    }
    review.filesCopied = run.list.files.size() + run.list.additions.size() - cabinets;
    review.bytesPacked = run.list.userBytes;
    review.filesInAll = review.filesCopied + cabinets + WrittenTargets(run.plan, hasAdditions).size();
    review.bytesNeeded = BytesNeeded(run);
    review.bytesFree = run.bytesFree;
    review.warnings = run.warnings;
    return review;
}
