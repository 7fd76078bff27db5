#include "builder/database_snapshot.h"

#include "builder/build_failure.h"
#include "builder/content_hash.h"
#include "builder/file_operations.h"
#include "installer/database.h"
#include "installer/summary.h"

namespace {

CString SizeAndHash(const StreamReader& read)
{
    std::vector<char> bytes(64 * 1024);
    CContentHash hash;
    long long size = 0;
    while (const std::size_t count = read(bytes.data(), bytes.size())) {
        hash.Add(bytes.data(), count);
        size += static_cast<long long>(count);
    }
    return NumberText(size) + L" bytes, SHA-256 " + hash.Finish();
}

void Stop(const SnapshotFailure& failure, const CString& path)
{
    if (failure.strPart.IsEmpty()) {
        throw BuildFailure{BUILD_DATABASE_DAMAGED, L"The database \"" + path +
                                                       L"\" lists a table without a name. " +
                                                       RemedyOf(BUILD_DATABASE_DAMAGED)};
    }
    CheckInstaller(failure.code, L"Reading " + failure.strPart + L" of", path);
}

// What `read` reads, with its failures in the words of a build.
template <class Read>
DatabaseSnapshot ReadOrStop(const CString& path, const Read& read)
{
    try {
        return read();
    } catch (const SnapshotFailure& failure) {
        Stop(failure, path);
        throw; // a failure has a code
    }
}

} // namespace

void CheckInstaller(unsigned int code, const CString& operation, const CString& path)
{
    if (code != ERROR_SUCCESS) {
        throw BuildFailure{code, DescribeFailure(operation, path, code, ReasonFor(code, path))};
    }
}

CInstallerHandle OpenDatabaseToRead(const CString& path)
{
    CInstallerHandle database;
    CheckInstaller(OpenDatabase(path, MSIDBOPEN_READONLY, database), L"Opening the database", path);
    return database;
}

DatabaseSnapshot ReadSnapshot(MSIHANDLE database, const CString& path, const std::function<void()>& poll)
{
    return ReadOrStop(path, [&] { return ReadDatabaseSnapshot(database, {SizeAndHash, poll}); });
}

DatabaseSnapshot ReadTables(MSIHANDLE database, const CString& path,
                            std::initializer_list<const wchar_t*> names)
{
    return ReadOrStop(path, [&] { return ReadTableSnapshots(database, names, {SizeAndHash, [] {}}); });
}

CString DescribeStreamOf(const CString& path)
{
    const CFileOwner file = OpenForReading(path);
    return SizeAndHash([&](void* bytes, std::size_t room) {
        return static_cast<std::size_t>(ReadChunk(file, bytes, static_cast<DWORD>(room), path));
    });
}

SnapshotPair ReadUnequalRows(const OpenedDatabase& first, const OpenedDatabase& second,
                             const std::set<CString>& whole, const std::function<void()>& poll)
{
    try {
        return ReadUnequalRows(first.hDatabase, second.hDatabase, whole, {SizeAndHash, poll});
    } catch (const SnapshotFailure& failure) {
        Stop(failure, failure.bOfSecond ? second.strPath : first.strPath);
        throw; // a failure has a code
    }
}

CString ReadPackageCode(MSIHANDLE database, const CString& path)
{
    CSummary summary;
    CString code;
    CheckInstaller(summary.Open(database), L"Reading the summary information of", path);
    CheckInstaller(summary.ReadText(SUMMARY_PACKAGE_CODE, code), L"Reading the package code of", path);
    return code;
}

void WritePackageCode(MSIHANDLE database, const CString& packageCode, const CString& path)
{
    CSummary summary;
    CheckInstaller(summary.Open(database, 1), L"Opening the summary information of", path);
    CheckInstaller(summary.WriteText(SUMMARY_PACKAGE_CODE, packageCode), L"Writing the package code of",
                   path);
    CheckInstaller(summary.Persist(), L"Writing the summary information of", path);
}
