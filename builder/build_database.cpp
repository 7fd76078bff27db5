// Database: what was decided (build_decision.h) is done. Without a difference the vendor's file is copied byte for
// byte. Otherwise the changed database gets a package code of its own, is committed, read back and compared with what was
// decided, and copied under the vendor's file name.
#include "builder/build_run.h"

#include "builder/build_failure.h"
#include "builder/build_merge.h"
#include "builder/build_names.h"
#include "builder/build_user_files.h"
#include "builder/database_edit.h"
#include "builder/database_signature.h"
#include "builder/database_snapshot.h"
#include "builder/scratch_file.h"
#include "builder/shown_text.h"
#include "builder/storage_copy.h"
#include "installer/database.h"

#include <objbase.h>

#include <optional>

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
    const CFileOwner from = OpenForReading(source);
    const CFileOwner to = CreateForWriting(target);
    std::vector<unsigned char> buffer(CHUNK_BYTES);
    while (const DWORD read = ReadChunk(from, buffer.data(), CHUNK_BYTES, source)) {
        WriteChunk(to, buffer.data(), read, target);
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
void FinishCopy(const CString& path, const CString& target, const DatabaseDecision& decision,
                CMergeWriter* merge, const std::function<void()>& poll)
{
    if (merge) {
        merge->WriteDatabase(path);
    } else {
        CInstallerHandle copy;
        CheckInstaller(OpenDatabase(path, MSIDBOPEN_TRANSACT, copy), L"Opening the database", path);
        ApplyDifferences(copy.get(), path, decision.edits, decision.wanted, poll);
        CheckInstaller(MsiDatabaseCommit(copy.get()), L"Writing the database", path);
    }
    CheckInstaller(CopyStorage(path, target), L"Writing the database", target);
}

void BuildOne(BuildRun& run, DatabaseDecision& decision)
{
    const std::function<void()> poll = [&run] { run.meter.Poll(); };
    const BuildDatabase& database = *decision.database;
    DatabaseChanges& changes = decision.changes;
    if (WriteAddedFiles(run, database, decision.added)) {
        decision.SetSizes();
    }
    std::optional<CMergeWriter> merge;
    if (decision.merge.IsNeeded()) {
        merge.emplace(run, decision);
        merge->WriteFiles();
        decision.CompareAgain();
    }
    changes.strNewPackageCode = NewPackageCode();
    WritePackageCode(database.hDatabase, changes.strNewPackageCode, database.strWorkingCopy);
    CheckInstaller(MsiDatabaseCommit(database.hDatabase), L"Writing the database", database.strWorkingCopy);

    // The installer service holds the working copy open, and opens no path beyond 260 characters.
    const CScratchFile built(database.strWorkingCopy + L".built");
    CopyForReadingBack(run, database.strWorkingCopy, built.Path());
    CheckInstaller(RemoveSignature(built.Path()), L"Removing the old signature of", built.Path());
    const CScratchFile finished(database.strWorkingCopy + L".finished");
    const bool isFinished = merge || !decision.edits.empty();
    if (isFinished) {
        FinishCopy(built.Path(), finished.Path(), decision, merge ? &*merge : nullptr, poll);
    }
    const CString& result = isFinished ? finished.Path() : built.Path();
    VerifyBuilt(result, decision.wanted, changes.strNewPackageCode, poll);
    CopyIntoStaging(run, result, database.strTarget);
}

} // namespace

void BuildDatabases(BuildRun& run)
{
    for (DatabaseDecision& decided : run.decisions) {
        DatabaseDecision decision =
            std::move(decided); // goes with this turn: the databases are in it, row by row
        const BuildDatabase& database = *decision.database;
        run.Step(L"Writing the settings into " + database.strProductName);
        run.meter.SetFile(database.strTarget);
        if (decision.IsNeeded()) {
            BuildOne(run, decision);
        } else {
            CopyIntoStaging(run, database.strOriginal, database.strTarget);
        }
        DatabaseChanges& changes = decision.changes;
        run.log.Write(database.strTarget + L": " + NumberText(static_cast<long long>(changes.rows.size())) +
                      L" rows differ from the maker's, package code " + changes.strNewPackageCode);
        run.changes.push_back(std::move(changes));
        AddedItems items = decision.added.Describe(database);
        if (!items.IsEmpty()) {
            run.additions.push_back(std::move(items));
        }
    }
}
