// Check: everything that can be told before anything is written.
#include "builder/build_check.h"

#include "base/number_text.h"
#include "builder/build_failure.h"
#include "builder/build_names.h"
#include "builder/copy_scan.h"
#include "builder/deployment_place.h"
#include "builder/file_operations.h"
#include "builder/patch_check.h"
#include "builder/plan_texts.h"
#include "builder/product_identity.h"
#include "builder/shown_text.h"

#include <winnetwk.h>

#include <algorithm>

namespace {

// Room for the texts beside the image and for the disk's own rounding.
constexpr std::uint64_t SPARE_BYTES = 4u << 20;

// `\\server\share\rest` for a path on a mapped drive; empty for any other.
CString FullNetworkPath(const CString& path)
{
    if (path.Mid(1, 1) != L":" || GetDriveTypeW(path.Left(2) + L"\\") != DRIVE_REMOTE) {
        return {};
    }
    wchar_t remote[1024] = L"";
    DWORD length = ARRAYSIZE(remote);
    if (WNetGetConnectionW(path.Left(2), remote, &length) != NO_ERROR) {
        return {};
    }
    return CString(remote) + path.Mid(2);
}

void WarnOfDrives(BuildRun& run)
{
    const CString location = FullNetworkPath(run.target);
    if (!location.IsEmpty()) {
        run.Warn(L"The location is on a mapped drive, which workstations may not have. Hand the deployment "
                 L"out as \"" +
                 location + L"\".");
    }
    const CString& logs = run.plan.commands.strLogFolder;
    const CString logShare = FullNetworkPath(logs);
    if (!logShare.IsEmpty()) {
        run.Warn(L"The log folder \"" + logs +
                 L"\" is on a mapped drive, which workstations may not have. Use \"" + logShare + L"\".");
    }
}

// The right to write is each workstation's own; what can be told from here is whether anybody gets there at all.
void WarnOfLogFolder(BuildRun& run)
{
    const CString& logs = run.plan.commands.strLogFolder;
    if (logs.Left(2) != L"\\\\") {
        return;
    }
    CString reason;
    const CString probe = JoinFolder(logs, L"." + run.plan.strName + L".probe-" + HexText(run.id));
    try {
        const CFileOwner file = OpenAlone(probe, true);
        if (file) {
            DeleteOnClose(file, probe);
        }
    } catch (const BuildFailure& failure) {
        reason = failure.message;
        // Each probe has another name, and the check and the build warn in the same words.
        reason.Replace(L"\"" + probe + L"\"", L"a file in \"" + logs + L"\"");
    }
    if (!reason.IsEmpty()) {
        run.Warn(L"The log folder \"" + logs +
                 L"\" can't be written to from here. Workstations that can't write to it keep their logs on "
                 L"their own disks. " +
                 reason);
    }
}

// The nearest folder above that is there: a location may be made by the build.
CString ExistingParent(const CString& location)
{
    CString folder = WithoutClosingBackslash(location);
    for (;;) {
        const PathKind kind = KindOfPath(folder);
        if (kind == PathKind::Folder) {
            return folder;
        }
        if (kind == PathKind::File) {
            throw BuildFailure{BUILD_NOT_A_FOLDER, L"The location \"" + location +
                                                       L"\" can't be used, as \"" + folder +
                                                       L"\" is a file. " + RemedyOf(BUILD_NOT_A_FOLDER)};
        }
        const CString parent = FolderAbove(folder);
        if (parent.GetLength() < 3 || parent.GetLength() == folder.GetLength()) {
            throw BuildFailure{BUILD_PATH_NOT_FOUND, L"The location \"" + location +
                                                         L"\" can't be reached. " +
                                                         RemedyOf(BUILD_PATH_NOT_FOUND)};
        }
        folder = parent;
    }
}

void CheckName(const BuildPlan& plan)
{
    const CString refused = RefusedName(plan.strName);
    if (!refused.IsEmpty()) {
        throw BuildFailure{BUILD_INVALID_NAME, refused + L" " + RemedyOf(BUILD_INVALID_NAME)};
    }
    if (plan.strLocation.Left(2) != L"\\\\" && plan.strLocation.Mid(1, 2) != L":\\") {
        throw BuildFailure{BUILD_BAD_PATH_NAME, L"The location \"" + plan.strLocation +
                                                    L"\" is not a full path. " +
                                                    RemedyOf(BUILD_BAD_PATH_NAME)};
    }
}

// Media and settings are other people's: what they name goes into scripts that run with all rights.
void CheckTexts(const BuildPlan& plan)
{
    const BuildFailure failure = FindUnfitText(plan);
    if (failure.code != BUILD_OK) {
        throw BuildFailure(failure);
    }
}

void WarnOfVersions(BuildRun& run)
{
    for (const BuildDatabase& database : run.plan.databases) {
        if (!IsVersionComparable(database.strProductVersion)) {
            run.Warn(L"The version " + database.strProductVersion + L" of \"" + database.strProductName +
                     L"\" is beyond 255.255.65535, the most that the installer compares: detection rules and "
                     L"upgrades that go by the version may fail. Detect the product by its code alone.");
        }
    }
}

void CheckSpace(BuildRun& run, const CString& folder)
{
    run.bytesFree = FreeBytes(folder);
    if (!HasRoom(run.bytesFree, run.list.bytes + run.bytesOfChanges)) {
        throw BuildFailure{BUILD_DISK_FULL, RoomSentence(run) + L" Only " +
                                                NumberText(static_cast<long long>(run.bytesFree >> 20)) +
                                                L" MB are free. " + RemedyOf(BUILD_DISK_FULL)};
    }
}

bool IsMerged(const BuildDatabase& database, const CString& code)
{
    return std::any_of(database.mergedPatches.begin(), database.mergedPatches.end(),
                       [&](const MergedPatch& patch) { return patch.strCode.CompareNoCase(code) == 0; });
}

// The image's Setup.xml would name another version than its package, and nobody could open the deployment again.
void RequireMergedVersion(const BuildDatabase& database, const MergeDecision& merge)
{
    if (!database.strMergedVersion.IsEmpty() && !(database.strMergedVersion == merge.strVersion)) {
        throw BuildFailure{
            BUILD_PATCH_DAMAGED,
            L"The patches of \"" + database.strProductName + L"\" say that they lead to version " +
                database.strMergedVersion + L", but their changes lead to version " + merge.strVersion +
                L". The last one of them is \"" + ShownText(merge.patches.back().patch.strSource) + L"\". " +
                RemedyOf(BUILD_PATCH_DAMAGED)};
    }
}

// All notes and commands show the products as they are with their patches.
void BeginDecisions(BuildRun& run)
{
    for (BuildDatabase& database : run.plan.databases) {
        run.decisions.push_back(BeginDecision(database, [&run] { run.meter.Poll(); }));
        const MergeDecision& merge = run.decisions.back().merge;
        for (const CString& warning : merge.warnings) {
            run.Warn(warning);
        }
        if (merge.IsNeeded()) {
            RequireMergedVersion(database, merge);
            database.strProductVersion = merge.strVersion;
            database.mergedPatches.clear();
            for (const ChosenPatch& chosen : merge.patches) {
                database.mergedPatches.push_back(chosen.patch);
            }
            std::erase_if(database.patches, [&](const ListedPatch& listed) {
                return listed.use == ListedPatch::Use::Merged && !IsMerged(database, listed.strCode);
            });
        }
    }
}

// Changed rows make a database larger, and stand in two or three notes: at most about so much, as names and values are
// mostly ASCII.
std::uint64_t BytesOfChanges(const std::vector<RowDifference>& rows)
{
    constexpr std::uint64_t PER_ROW = 250;
    constexpr std::uint64_t PER_COLUMN = 100;
    constexpr std::uint64_t PER_CHARACTER = 5;
    std::uint64_t bytes = 0;
    for (const RowDifference& row : rows) {
        bytes += PER_ROW;
        for (const ColumnChange& column : row.columns) {
            const int characters = column.strOld.GetLength() + column.strNew.GetLength();
            bytes += PER_COLUMN + PER_CHARACTER * static_cast<std::uint64_t>(characters);
        }
    }
    return bytes;
}

void DecideDatabases(BuildRun& run)
{
    for (DatabaseDecision& decision : run.decisions) {
        DecideDatabase(decision, run.plan.cabinetLimits, [&run] { run.meter.Poll(); });
        for (const CString& note : decision.changes.notes) {
            run.Warn(note);
        }
        for (const CString& warning : decision.added.warnings) {
            run.Warn(warning);
        }
        if (decision.changes.bSignatureLost) {
            run.Warn(L"The settings change \"" + decision.database->strTarget +
                     L"\", so its maker's digital signature is lost. Sign it again when workstations ask for "
                     L"signed packages.");
        }
        run.bytesOfChanges += BytesOfChanges(decision.changes.rows);
        run.list.userBytes += decision.added.BytesToPack() + decision.merge.bytesToPack;
        AddAdditions(run.list, decision.added.Targets(*decision.database));
        AddAdditions(run.list, decision.merge.Targets(*decision.database));
    }
    run.list.bytes += run.list.userBytes;
}

// Workstations reach a mapped drive's folder by the share, whose name is mostly longer.
void WarnOfLongPaths(BuildRun& run)
{
    const CString shared = FullNetworkPath(run.target);
    const CString longest = LongestPath(run.plan, run.list, shared.IsEmpty() ? run.target : shared);
    if (longest.GetLength() > MAX_INSTALLER_PATH) {
        run.Warn(L"For workstations the path of a file has " + NumberText(longest.GetLength()) +
                 L" characters; installing may fail beyond " + NumberText(MAX_INSTALLER_PATH) +
                 L". Choose a shorter location or name. The path is \"" + longest + L"\".");
    }
}

} // namespace

bool HasRoom(std::uint64_t freeBytes, std::uint64_t fileBytes)
{
    return freeBytes >= SPARE_BYTES && freeBytes - SPARE_BYTES >= fileBytes;
}

std::uint64_t BytesNeeded(const BuildRun& run)
{
    return run.list.bytes + run.bytesOfChanges + SPARE_BYTES;
}

CString RoomSentence(const BuildRun& run)
{
    const std::uint64_t megabytes = (BytesNeeded(run) + (1 << 20) - 1) >> 20;
    return L"The deployment needs " + NumberText(static_cast<long long>(megabytes)) + L" MB in \"" +
           run.plan.strLocation + L"\".";
}

// Checked again right before the swap: what a build may replace was decided before it began.
bool CheckTarget(const BuildRun& run)
{
    const PathKind kind = KindOfPath(run.target);
    if (kind == PathKind::Nothing) {
        return false;
    }
    const auto refuse = [](const CString& why) { throw BuildFailure{BUILD_ALREADY_EXISTS, why}; };
    const FolderEntry entry = EntryOnDisk(run.target);
    if (kind == PathKind::File) {
        refuse(L"\"" + run.target + L"\" is a file. Choose another name, or move the file away.");
    } else if (entry.IsLink()) {
        refuse(L"The folder \"" + run.target +
               L"\" is a link to another folder, so it isn't replaced. Choose "
               L"another name, or use the folder that it leads to.");
    } else if (!entry.strName.IsEmpty() && entry.strName.CompareNoCase(run.plan.strName) != 0) {
        refuse(L"\"" + run.plan.strName + L"\" is the short (8.3) name of the folder \"" + entry.strName +
               L"\". Choose another name.");
    } else if (run.plan.strReplacedStamp.IsEmpty()) {
        refuse(L"There is a folder \"" + run.target + L"\" already. " + RemedyOf(BUILD_ALREADY_EXISTS));
    } else if (StampOfDeployment(run.target) != run.plan.strReplacedStamp) {
        refuse(L"The folder \"" + run.target +
               L"\" is no longer the deployment that was to be replaced: it was changed, or another one "
               L"stands in its place. Start again to see what is there now.");
    }
    return true;
}

void CheckPlan(BuildRun& run)
{
    run.Step(L"Checking the location and the media");
    CheckName(run.plan);
    CheckTexts(run.plan);
    const CString folder = ExistingParent(run.plan.strLocation);
    const CString around = DeploymentAround(run.plan.strLocation);
    if (!around.IsEmpty()) {
        throw BuildFailure{BUILD_BAD_PATH_NAME,
                           L"The location \"" + run.plan.strLocation +
                               L"\" is a deployment or lies inside one: \"" + around +
                               L"\" holds a Deployment.xml. Choose a location outside of it."};
    }
    run.replaces = CheckTarget(run);
    if (run.replaces) {
        // Asked again right before the swap.
        RequireNothingOpenBelow(run.target, [&run] { run.meter.Poll(); });
    }
    RequirePatchesApply(run.plan, [&run] { run.meter.Poll(); });
    BeginDecisions(run);
    run.list = ScanSources(run.plan, TargetsOfDatabases(run.decisions), [&run] { run.meter.Poll(); });
    DecideDatabases(run);
    const CString refused = RefusedTargets(run.plan, run.list);
    if (!refused.IsEmpty()) {
        throw BuildFailure{BUILD_BAD_PATH_NAME, refused};
    }
    CheckSpace(run, folder);
    WarnOfDrives(run);
    WarnOfLogFolder(run);
    WarnOfLongPaths(run);
    WarnOfVersions(run);
    for (const CString& link : run.list.skippedLinks) {
        run.Warn(L"\"" + link + L"\" is a link to another folder and was left out.");
    }
}

void ProbeRightToWrite(const BuildRun& run)
{
    const CString& location = run.plan.strLocation;
    const CString lock = JoinFolder(location, LockFileName(run.plan.strName));
    if (KindOfPath(lock) == PathKind::Nothing) {
        const CFileOwner file = OpenAlone(lock, true);
        if (file) {
            DeleteOnClose(file, lock);
        }
    }
    const CString folder = JoinFolder(location, L"." + run.plan.strName + L".probe-" + HexText(run.id));
    MakeFolder(folder);
    DeleteEmptyFolder(folder);
}
