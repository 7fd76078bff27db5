// Database: what the pages stored is compared with the vendor's file, as a part of the check, so that a refusal comes
// before anything is written. Without a difference the vendor's file is copied byte for byte. Otherwise the changed
// database gets a package code of its own, is committed, read back and compared with what was in the handle, and copied
// under the vendor's file name.
#include "builder/build_run.h"

#include "builder/build_failure.h"
#include "builder/build_names.h"
#include "builder/build_user_files.h"
#include "builder/code_page.h"
#include "builder/database_edit.h"
#include "builder/database_signature.h"
#include "builder/database_snapshot.h"
#include "builder/scratch_file.h"
#include "builder/shown_text.h"
#include "builder/storage_copy.h"

#include <objbase.h>

namespace {

CString NewPackageCode()
{
    GUID guid = {};
    wchar_t text[40] = L"";
    if (FAILED(CoCreateGuid(&guid)) || StringFromGUID2(guid, text, ARRAYSIZE(text)) == 0) {
        throw BuildFailure{BUILD_INSTALLER_FAILED,
                           L"Windows could not make a new package code. Start the build again."};
    }
    return CString(text).MakeUpper();
}

void CopyForReadingBack(BuildRun& run, const CString& source, const CString& target)
{
    const CFileHandle from = OpenForReading(source);
    const CFileHandle to = CreateForWriting(target);
    while (const DWORD read =
               ReadChunk(from, run.buffer.data(), static_cast<DWORD>(run.buffer.size()), source)) {
        WriteChunk(to, run.buffer.data(), read, target);
        run.meter.Poll();
    }
}

void VerifyBuilt(const CString& path, const DatabaseSnapshot& expected, const CString& packageCode,
                 const std::function<void()>& poll)
{
    const CInstallerHandle database = OpenDatabaseToRead(path);
    const DatabaseSnapshot found = ReadSnapshot(database.get(), path, poll);
    const std::vector<RowDifference> differences = CompareSnapshots(expected, found);
    if (!differences.empty()) {
        const RowDifference& first = differences.front();
        throw BuildFailure{
            BUILD_DATABASE_DAMAGED,
            L"The changed database, read back from the disk, differs from what was written: table " +
                first.strTable + L", row " +
                (first.key.empty() ? CString(L"?") : ShownText(first.key.front())) + L"; " +
                NumberText(static_cast<long long>(differences.size())) +
                L" rows in all. Nothing was published. Start the build again. If this comes back, the "
                L"package holds something "
                L"that the installer can't write: get it from its maker again, and report it with the log."};
    }
    if (!(ReadPackageCode(database.get(), path) == packageCode)) {
        throw BuildFailure{BUILD_DATABASE_DAMAGED,
                           L"The new package code could not be read back from the changed "
                           L"database \"" +
                               path + L"\". Nothing was published. Start the build again."};
    }
}

// What the pages' rows lack for an installation is put into the copy, so that the open database stays as they left it.
// The source paths that go would still stand between the used parts of the file, so it is copied once more.
void FinishCopy(const CString& path, const CString& target, const DatabaseSnapshot& finished,
                const std::function<void()>& poll)
{
    {
        CInstallerHandle copy;
        CheckInstaller(MsiOpenDatabaseW(path, MSIDBOPEN_TRANSACT, copy.put()), L"Opening the database", path);
        ApplyDifferences(copy.get(), path, ReadSnapshot(copy.get(), path, poll), finished, poll);
        CheckInstaller(MsiDatabaseCommit(copy.get()), L"Writing the database", path);
    }
    CheckInstaller(CopyStorage(path, target), L"Writing the database", target);
}

} // namespace

// Decided before anything is written, carried out when all else is copied. In between the open database rests.
struct DatabaseDecision
{
    DatabaseChanges changes; // but for the sizes of added files, which count when they are packed
    DatabaseSnapshot original;
    DatabaseSnapshot wanted;
    std::unique_ptr<CUserFileBuild> userFiles;
    bool HasUserFiles() const { return userFiles && userFiles->IsNeeded(); }
    bool IsNeeded() const { return !changes.rows.empty() || HasUserFiles(); }
};

namespace {

std::shared_ptr<DatabaseDecision> Decide(BuildRun& run, const BuildDatabase& database)
{
    const std::function<void()> poll = [&run] { run.meter.Poll(); };
    auto decision = std::make_shared<DatabaseDecision>();
    DatabaseChanges& changes = decision->changes;
    changes.strTarget = database.strTarget;
    changes.strProductName = database.strProductName;
    const CInstallerHandle vendors = OpenDatabaseToRead(database.strOriginal);
    changes.strOldPackageCode = ReadPackageCode(vendors.get(), database.strOriginal);
    changes.strNewPackageCode = changes.strOldPackageCode;
    if (database.hDatabase == 0) {
        return decision;
    }
    // This reads every table of the handle, which a commit under Wine depends on (docs/building-deployments.md).
    decision->wanted = ReadSnapshot(database.hDatabase, database.strWorkingCopy, poll);
    decision->original = ReadSnapshot(vendors.get(), database.strOriginal, poll);
    decision->userFiles = std::make_unique<CUserFileBuild>(run, database, decision->wanted);
    decision->userFiles->Decide(decision->wanted);
    changes.rows = CompareSnapshots(decision->original, decision->wanted);
    RequireCodePageHolds(database, changes.rows);
    return decision;
}

DatabaseChanges BuildOne(BuildRun& run, const BuildDatabase& database, DatabaseDecision& decision)
{
    const std::function<void()> poll = [&run] { run.meter.Poll(); };
    DatabaseChanges changes = std::move(decision.changes);
    if (decision.HasUserFiles()) {
        decision.userFiles->Pack(decision.wanted);
        changes.rows = CompareSnapshots(decision.original, decision.wanted);
    }
    changes.strNewPackageCode = NewPackageCode();
    WritePackageCode(database.hDatabase, changes.strNewPackageCode, database.strWorkingCopy);
    CheckInstaller(MsiDatabaseCommit(database.hDatabase), L"Writing the database", database.strWorkingCopy);

    // The installer service holds the working copy open, and opens no path beyond 260 characters.
    const CScratchFile built(database.strWorkingCopy + L".built");
    CopyForReadingBack(run, database.strWorkingCopy, built.Path());
    CheckInstaller(RemoveSignature(built.Path()), L"Removing the old signature of", built.Path());
    changes.bSignatureLost = HasSignature(database.strOriginal);
    const CScratchFile finished(database.strWorkingCopy + L".finished");
    if (decision.HasUserFiles()) {
        FinishCopy(built.Path(), finished.Path(), decision.wanted, poll);
    }
    const CString& result = decision.HasUserFiles() ? finished.Path() : built.Path();
    VerifyBuilt(result, decision.wanted, changes.strNewPackageCode, poll);
    CopyIntoStaging(run, result, database.strTarget);
    return changes;
}

} // namespace

void DecideDatabases(BuildRun& run)
{
    for (const BuildDatabase& database : run.plan.databases) {
        run.decisions.push_back(Decide(run, database));
        const DatabaseDecision& decision = *run.decisions.back();
        if (decision.userFiles) {
            run.list.userBytes += decision.userFiles->BytesToPack();
            AddLooseFiles(run.list, decision.userFiles->LooseFiles());
        }
    }
    run.list.bytes += run.list.userBytes;
}

void BuildDatabases(BuildRun& run)
{
    for (std::size_t index = 0; index < run.plan.databases.size(); ++index) {
        const BuildDatabase& database = run.plan.databases[index];
        DatabaseDecision& decision = *run.decisions[index];
        run.Step(L"Writing the settings into " + database.strProductName);
        run.meter.SetFile(database.strTarget);
        DatabaseChanges changes = decision.changes;
        if (decision.IsNeeded()) {
            changes = BuildOne(run, database, decision);
        } else {
            CopyIntoStaging(run, database.strOriginal, database.strTarget);
        }
        run.decisions[index].reset(); // both databases are in it, row by row
        run.log.Write(database.strTarget + L": " + NumberText(static_cast<long long>(changes.rows.size())) +
                      L" rows differ from the maker's, package code " + changes.strNewPackageCode);
        if (changes.bSignatureLost) {
            run.Warn(L"The settings change \"" + database.strTarget +
                     L"\", so its maker's digital signature is lost. Sign it again when workstations ask for "
                     L"signed packages.");
        }
        run.changes.push_back(std::move(changes));
    }
}
