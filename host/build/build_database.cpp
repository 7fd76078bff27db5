// Database: what the pages stored is compared with the vendor's file. Without a difference the vendor's file is
// copied byte for byte. Otherwise the changed database gets a package code of its own, is committed, read back and
// compared with what was in the handle, and copied under the vendor's file name.
#include "host/build/build_run.h"

#include "host/build/build_failure.h"
#include "host/build/build_names.h"
#include "host/build/build_user_files.h"
#include "host/build/code_page.h"
#include "host/build/database_edit.h"
#include "host/build/database_signature.h"
#include "host/build/database_snapshot.h"
#include "host/build/scratch_file.h"
#include "host/build/storage_copy.h"

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
    const FileHandle from = OpenForReading(source);
    const FileHandle to = CreateForWriting(target);
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
        throw BuildFailure{
            BUILD_DATABASE_DAMAGED,
            L"The changed database, read back from the disk, differs from what was written: table " +
                differences.front().strTable + L", " +
                NumberText(static_cast<long long>(differences.size())) +
                L" rows in all. Nothing was published. Start the build again; when this comes back, "
                L"keep the log and report it."};
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

DatabaseChanges BuildOne(BuildRun& run, const BuildDatabase& database)
{
    const std::function<void()> poll = [&run] { run.meter.Poll(); };
    DatabaseChanges changes;
    changes.strTarget = database.strTarget;
    changes.strProductName = database.strProductName;
    const CInstallerHandle vendors = OpenDatabaseToRead(database.strOriginal);
    changes.strOldPackageCode = ReadPackageCode(vendors.get(), database.strOriginal);
    changes.strNewPackageCode = changes.strOldPackageCode;
    if (database.hDatabase == 0) {
        return changes;
    }
    // This reads every table of the handle, which a commit under Wine depends on (docs/building-deployments.md).
    DatabaseSnapshot wanted = ReadSnapshot(database.hDatabase, database.strWorkingCopy, poll);
    const DatabaseSnapshot original = ReadSnapshot(vendors.get(), database.strOriginal, poll);
    UserFileBuild userFiles(run, database, wanted);
    userFiles.Decide(wanted);
    changes.rows = CompareSnapshots(original, wanted);
    if (changes.rows.empty() && !userFiles.IsNeeded()) {
        return changes;
    }
    RequireCodePageHolds(database, changes.rows);
    if (userFiles.IsNeeded()) {
        userFiles.Pack(wanted);
        changes.rows = CompareSnapshots(original, wanted);
    }
    changes.strNewPackageCode = NewPackageCode();
    WritePackageCode(database.hDatabase, changes.strNewPackageCode, database.strWorkingCopy);
    CheckInstaller(MsiDatabaseCommit(database.hDatabase), L"Writing the database", database.strWorkingCopy);

    // The installer service holds the working copy open, and opens no path beyond 260 characters.
    const ScratchFile built(database.strWorkingCopy + L".built");
    CopyForReadingBack(run, database.strWorkingCopy, built.Path());
    CheckInstaller(RemoveSignature(built.Path()), L"Removing the old signature of", built.Path());
    changes.bSignatureLost = HasSignature(database.strOriginal);
    const ScratchFile finished(database.strWorkingCopy + L".finished");
    if (userFiles.IsNeeded()) {
        FinishCopy(built.Path(), finished.Path(), wanted, poll);
    }
    const CString& result = userFiles.IsNeeded() ? finished.Path() : built.Path();
    VerifyBuilt(result, wanted, changes.strNewPackageCode, poll);
    CopyIntoStaging(run, result, database.strTarget);
    return changes;
}

} // namespace

void BuildDatabases(BuildRun& run)
{
    for (const BuildDatabase& database : run.plan.databases) {
        run.Step(L"Writing the settings into " + database.strProductName);
        run.meter.SetFile(database.strTarget);
        DatabaseChanges changes = BuildOne(run, database);
        if (!changes.IsChanged()) {
            CopyIntoStaging(run, database.strOriginal, database.strTarget);
        }
        run.log.Write(database.strTarget + L": " + NumberText(static_cast<long long>(changes.rows.size())) +
                      L" rows differ from the vendor's, package code " + changes.strNewPackageCode);
        if (changes.bSignatureLost) {
            run.Warn(
                L"The settings change \"" + database.strTarget +
                L"\", so its vendor's digital signature is lost. Sign it again when workstations ask for "
                L"signed packages.");
        }
        run.changes.push_back(std::move(changes));
    }
}
