#include "builder/build_merge.h"

#include "builder/build_failure.h"
#include "builder/build_names.h"
#include "builder/cabinet.h"
#include "builder/content_hash.h"
#include "builder/database_edit.h"
#include "builder/database_snapshot.h"
#include "builder/named_table.h"
#include "builder/patch_package.h"
#include "builder/shown_text.h"
#include "installer/database.h"
#include "installer/query.h"

#include <msiquery.h>

namespace {

void WriteStream(MSIHANDLE database, const CString& databasePath, const CString& name, const CString& file)
{
    const CString what = L"Writing the cabinet " + name + L" into";
    CheckInstaller(RunStatement(database, L"DELETE FROM `_Streams` WHERE `Name`=?", {name}), what,
                   databasePath);
    const CInstallerHandle record(MsiCreateRecord(2));
    CQuery query;
    CheckInstaller(MsiRecordSetStringW(record.get(), 1, name), what, databasePath);
    CheckInstaller(MsiRecordSetStreamW(record.get(), 2, file), what, databasePath);
    CheckInstaller(query.Open(database, L"INSERT INTO `_Streams` (`Name`,`Data`) VALUES (?,?)"), what,
                   databasePath);
    CheckInstaller(query.Execute(record.get()), what, databasePath);
}

// The service's hash of an unversioned file, by which it tells whether the file was changed.
void SetHash(DatabaseSnapshot& database, const CString& key, const MSIFILEHASHINFO& hash)
{
    const WriteTable hashes = TableToWrite(database, L"MsiFileHash");
    if (!hashes.Exists() || !hashes.Has(key)) {
        return;
    }
    RowValues& row = hashes.Rows().at({key});
    const wchar_t* const columns[] = {L"HashPart1", L"HashPart2", L"HashPart3", L"HashPart4"};
    for (std::size_t part = 0; part < std::size(columns); ++part) {
        hashes.Set(row, columns[part], NumberText(static_cast<long>(hash.dwData[part])));
    }
}

} // namespace

CMergeWriter::CMergeWriter(BuildRun& run, DatabaseDecision& decision)
    : m_run(run), m_decision(decision), m_merge(decision.merge), m_database(*decision.database)
{
}

void CMergeWriter::WriteFiles()
{
    m_run.Step(L"Merging patches into " + m_database.strProductName);
    for (const PatchChanges& patch : m_merge.changes) {
        m_run.log.Write(L"Patch merged: " + patch.strName + L" (" + patch.strFile + L", " + patch.strCode +
                        L"), version " + patch.strOldVersion + L" -> " + patch.strNewVersion);
    }
    HoldPatches();
    UnpackPatches();
    LayLooseFiles();
    for (const MergedCabinet& cabinet : m_merge.cabinets) {
        MakeCabinet(cabinet);
    }
    m_run.log.Write(L"Files from patches: " + NumberText(static_cast<long long>(m_merge.files.size())) +
                    L", cabinets made anew: " + NumberText(static_cast<long long>(m_merge.cabinets.size())));
}

const CString& CMergeWriter::NewScratch()
{
    m_scratch.push_back(std::make_unique<CScratchFile>(m_database.strWorkingCopy + L".merged" +
                                                       NumberText(static_cast<long long>(m_scratch.size()))));
    return m_scratch.back()->Path();
}

// They are read once more here and in the end, a while after the check.
void CMergeWriter::HoldPatches()
{
    const std::function<void()> poll = [this] { m_run.meter.Poll(); };
    for (const ChosenPatch& chosen : m_merge.patches) {
        const CString& path = chosen.patch.strSource;
        m_held.push_back(OpenUnchanging(path));
        for (const ListedPatch& listed : m_database.patches) {
            const bool isThis = listed.use == ListedPatch::Use::Merged &&
                                listed.strCode.CompareNoCase(chosen.patch.strCode) == 0;
            if (isThis && !listed.strSha256.IsEmpty() && HashOfFile(path, poll) != listed.strSha256) {
                RefusePatch(BUILD_FILE_CHANGED, path, m_database.strProductName,
                            L"has changed since it was chosen");
            }
        }
    }
}

void CMergeWriter::UnpackPatches()
{
    std::map<std::pair<std::size_t, CString>, std::map<CString, CString>> wanted; // paths by key, by cabinet
    for (const MergedFile& file : m_merge.files) {
        m_contents[file.strKey] = NewScratch();
        wanted[{file.patch, file.strStream}][file.strKey] = m_contents[file.strKey];
    }
    for (const auto& [cabinet, targets] : wanted) {
        const CString& patch = m_merge.patches[cabinet.first].patch.strSource;
        const CScratchFile copy(m_database.strWorkingCopy + L".cabinet");
        if (!CPatchPackage(patch).SaveCabinet(cabinet.second, copy.Path(), [this] { m_run.meter.Poll(); })) {
            RefusePatch(BUILD_FILE_CHANGED, patch, m_database.strProductName,
                        L"no longer holds the cabinet " + ShownText(cabinet.second));
        }
        const std::set<CString> found =
            ReadCabinet(copy.Path(), targets, [this](std::uint64_t) { m_run.meter.Poll(); });
        if (found.size() != targets.size()) {
            RefusePatch(BUILD_FILE_CHANGED, patch, m_database.strProductName,
                        L"no longer holds all of its files");
        }
    }
    for (const MergedFile& file : m_merge.files) {
        RequireSize(file);
        NoteHash(file);
    }
}

// The patch was read when all was decided; another one may have taken its place.
void CMergeWriter::RequireSize(const MergedFile& file) const
{
    if (SizeOfFile(m_contents.at(file.strKey)) != file.size) {
        RefusePatch(BUILD_FILE_CHANGED, m_merge.patches[file.patch].patch.strSource,
                    m_database.strProductName, L"has changed since the build began");
    }
}

void CMergeWriter::NoteHash(const MergedFile& file)
{
    MSIFILEHASHINFO hash = {};
    hash.dwFileHashInfoSize = sizeof(hash);
    const CString& path = m_contents.at(file.strKey);
    const ReadTable hashes = TableToRead(m_decision.wanted, L"MsiFileHash");
    if (hashes.Exists() && hashes.Has(file.strKey)) {
        CheckInstaller(MsiGetFileHashW(path, 0, &hash), L"Hashing", path);
        SetHash(m_decision.merge.patched, file.strKey, hash);
        SetHash(m_decision.wanted, file.strKey, hash);
    }
}

void CMergeWriter::LayLooseFiles()
{
    for (const MergedFile& file : m_merge.files) {
        if (!file.strTarget.IsEmpty()) {
            CopyIntoStaging(m_run, m_contents.at(file.strKey), file.strTarget);
        }
    }
}

CString CMergeWriter::SaveOldCabinet(const MergedCabinet& cabinet, const CString& scratch) const
{
    const CString stream = StreamOfCabinet(cabinet.strName);
    if (stream.IsEmpty()) {
        return JoinFolder(FolderAbove(m_database.strOriginal), cabinet.strName);
    }
    const CInstallerHandle vendors = OpenDatabaseToRead(m_database.strOriginal);
    if (!SaveStream(vendors.get(), m_database.strOriginal, stream, scratch, [this] { m_run.meter.Poll(); })) {
        throw BuildFailure{BUILD_DATABASE_DAMAGED, L"The database \"" + m_database.strOriginal +
                                                       L"\" no longer holds its cabinet \"" + stream +
                                                       L"\". Start the build again."};
    }
    return scratch;
}

// With the product's other files as they are, in the order of their numbers.
void CMergeWriter::MakeCabinet(const MergedCabinet& cabinet)
{
    std::map<CString, CString> others;
    std::vector<std::unique_ptr<CScratchFile>> unpacked;
    for (const CString& key : cabinet.keys) {
        if (m_contents.count(key) == 0) {
            unpacked.push_back(
                std::make_unique<CScratchFile>(m_database.strWorkingCopy + L".member" +
                                               NumberText(static_cast<long long>(unpacked.size()))));
            others[key] = unpacked.back()->Path();
        }
    }
    {
        const CScratchFile old(m_database.strWorkingCopy + L".cabinet");
        const std::set<CString> found = ReadCabinet(SaveOldCabinet(cabinet, old.Path()), others,
                                                    [this](std::uint64_t) { m_run.meter.Poll(); });
        if (found.size() != others.size()) {
            throw BuildFailure{BUILD_DATABASE_DAMAGED,
                               L"The cabinet \"" + cabinet.strName + L"\" of " + m_database.strProductName +
                                   L" no longer holds all of its files. Start the build again."};
        }
    }
    std::vector<CabinetMember> members;
    for (const CString& key : cabinet.keys) {
        members.push_back({key, m_contents.count(key) ? m_contents.at(key) : others.at(key), 0});
    }
    const CString packed = NewScratch();
    WriteCabinet(packed, members, [this](std::uint64_t bytes) { m_run.meter.Add(bytes); });
    const CString stream = StreamOfCabinet(cabinet.strName);
    if (stream.IsEmpty()) {
        CopyIntoStaging(m_run, packed, JoinFolder(FolderAbove(m_database.strTarget), cabinet.strName));
        return;
    }
    m_streams[stream] = packed;
    for (DatabaseSnapshot* database : {&m_decision.merge.patched, &m_decision.wanted}) {
        const WriteTable streams = TableToWrite(*database, L"_Streams");
        streams.Set(streams.Rows()[{stream}], L"Data", DescribeStreamOf(packed));
    }
}

// Committed at once: a commit fails here when streams that a transform brings were read before it. The tables are read
// before, on which a commit depends (docs/wine.md).
void CMergeWriter::ApplyPatches(const CString& copy) const
{
    CPatchApplier applier(copy, m_database.strProductName);
    CInstallerHandle database;
    CheckInstaller(OpenDatabase(copy, MSIDBOPEN_TRANSACT, database), L"Opening the database", copy);
    static_cast<void>(ReadSnapshot(database.get(), copy, [this] { m_run.meter.Poll(); }));
    for (const ChosenPatch& chosen : m_merge.patches) {
        applier.Apply(database.get(), chosen, true);
    }
    CheckInstaller(MsiDatabaseCommit(database.get()), L"Writing the database", copy);
}

void CMergeWriter::WriteDatabase(const CString& copy)
{
    ApplyPatches(copy);
    const std::function<void()> poll = [this] { m_run.meter.Poll(); };
    CInstallerHandle database;
    CheckInstaller(OpenDatabase(copy, MSIDBOPEN_TRANSACT, database), L"Opening the database", copy);
    // The transforms know nothing of numbers, places and what the administrator chose.
    const DatabaseSnapshot found = ReadSnapshot(database.get(), copy, poll);
    ApplyDifferences(database.get(), copy, CompareSnapshots(found, m_decision.wanted), m_decision.wanted,
                     poll);
    for (const auto& [name, cabinet] : m_streams) {
        WriteStream(database.get(), copy, name, cabinet);
    }
    CheckInstaller(MsiDatabaseCommit(database.get()), L"Writing the database", copy);
}
