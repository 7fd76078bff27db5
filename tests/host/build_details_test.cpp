// What a build does besides its files: probes, marks, room, what it counts and when it listens.
#include "tests/host/additions_build.h"
#include "tests/host/outside_links.h"
#include "tests/support/import_redirect.h"

#include "builder/build_check.h"
#include "builder/build_failure.h"
#include "builder/build_names.h"
#include "builder/copy_scan.h"
#include "builder/file_operations.h"

#include <windows.h>

#include <winioctl.h>

#include <msi.h>
#include <msiquery.h>
#include <objidl.h>

#include <cstring>

namespace {

void MakeHole(const CString& path, std::uint64_t bytes)
{
    const CFileOwner file = OpenAlone(path, true);
    DWORD count = 0;
    DeviceIoControl(file.get(), FSCTL_SET_SPARSE, nullptr, 0, nullptr, 0, &count, nullptr);
    ASSERT_GT(SeekInFile(file, static_cast<long long>(bytes), FILE_BEGIN, path), 0u);
    ASSERT_TRUE(SetEndOfFile(file.get())) << GetLastError();
}

bool IsHidden(const CString& path)
{
    const DWORD attributes = GetFileAttributesW(UnlimitedPath(path));
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_HIDDEN);
}

// ---- the log folder

TEST(BuildDetails, TheProbeOfTheLogFolderLeavesNothingThere)
{
    TestBuild build;
    const TestFolder logs(L"logs");
    const CString share = ShareFolder(logs.Path() + L"\\", L"logs");
    if (share.IsEmpty()) {
        GTEST_SKIP() << "shares are made by a link of the prefix, which this system doesn't have";
    }
    build.plan.commands.strLogFolder = share;
    const BuildResult result = build.Build();
    ASSERT_EQ(result.error.code, 0u) << Utf8(result.error.message);
    EXPECT_TRUE(result.warnings.empty()) << Utf8(result.warnings.front());
    EXPECT_EQ(NamesOf(ReadTree(logs.Path())), "");
}

TEST(BuildDetails, ALogFolderThatNoPathCanNameIsRefusedByTheCheckToo)
{
    TestBuild build;
    build.plan.commands.strLogFolder = L"\\\\server\\a>b";
    std::vector<CString> warnings;
    const OperationError checked = CheckBuild(build.plan, warnings);
    EXPECT_EQ(checked.code, static_cast<unsigned>(ERROR_BAD_PATHNAME));
    EXPECT_HOLDS(checked.message,
                 L"The log folder \"\\\\server\\a>b\" holds a character that paths can't have");
    EXPECT_EQ(build.Build().error.message, checked.message);
    EXPECT_EQ(ReadTree(build.Location()).size(), 0u);
}

TEST(BuildDetails, ALogFolderOutOfReachIsAWarning)
{
    TestBuild build;
    build.plan.commands.strLogFolder = L"\\\\BUILDTEST\\gone";
    const BuildResult result = build.Build();
    ASSERT_EQ(result.error.code, 0u) << Utf8(result.error.message);
    ASSERT_EQ(result.warnings.size(), 1u);
    EXPECT_HOLDS(result.warnings[0], L"The log folder \"\\\\BUILDTEST\\gone\" can't be written to from here");
}

// ---- mapped drives

// Of all drives, as long as the object lives.
class CMappedDrives
{
public:
    CMappedDrives()
        : m_kind(nullptr, "GetDriveTypeW", reinterpret_cast<void*>(KindOfDrive)),
          m_share(nullptr, "WNetGetConnectionW", reinterpret_cast<void*>(ShareOfDrive))
    {
        EXPECT_TRUE(m_kind.IsInPlace());
        EXPECT_TRUE(m_share.IsInPlace());
    }

    static CString Share() { return L"\\\\server\\" + CString(L's', 220); }

private:
    static UINT WINAPI KindOfDrive(const wchar_t*) { return DRIVE_REMOTE; }
    static DWORD WINAPI ShareOfDrive(const wchar_t*, wchar_t* share, DWORD* length)
    {
        lstrcpynW(share, Share(), static_cast<int>(*length));
        return NO_ERROR;
    }

    CImportRedirect m_kind;
    CImportRedirect m_share;
};

TEST(BuildDetails, ALocationOnAMappedDriveIsAWarningAndItsPathsAreThoseOfTheShare)
{
    TestBuild build;
    ASSERT_LT(build.Target().GetLength(), 150);
    const CMappedDrives mapped;
    const BuildResult result = build.Build();
    ASSERT_EQ(result.error.code, 0u) << Utf8(result.error.message);
    ASSERT_EQ(result.warnings.size(), 2u);
    const CString shared = CMappedDrives::Share() + build.Target().Mid(2);
    EXPECT_HOLDS(result.warnings[0], L"Hand the deployment out as \"" + shared + L"\".");
    EXPECT_HOLDS(result.warnings[1], L"installing may fail beyond 259");
    EXPECT_HOLDS(result.warnings[1], L"The path is \"" + shared + L"\\Image\\");
}

TEST(BuildDetails, ALogFolderOnAMappedDriveIsAWarningWithItsShare)
{
    TestBuild build;
    const CString logs = build.Location().Left(2) + L"\\logs";
    build.plan.commands.strLogFolder = logs;
    const CMappedDrives mapped;
    const BuildResult result = build.Build();
    ASSERT_EQ(result.error.code, 0u) << Utf8(result.error.message);
    ASSERT_EQ(result.warnings.size(), 3u);
    EXPECT_HOLDS(result.warnings[1], L"The log folder \"" + logs + L"\" is on a mapped drive");
    EXPECT_HOLDS(result.warnings[1], L"Use \"" + CMappedDrives::Share() + L"\\logs\".");
}

// ---- room

TEST(BuildDetails, TheTextsBesideTheFilesNeedRoomToo)
{
    constexpr std::uint64_t MEGABYTE = 1u << 20;
    EXPECT_TRUE(HasRoom(10 * MEGABYTE, 6 * MEGABYTE));
    EXPECT_FALSE(HasRoom(10 * MEGABYTE, 6 * MEGABYTE + 1));
    EXPECT_FALSE(HasRoom(3 * MEGABYTE, 0));
}

// The check for room counts all bytes of such a file, and so does whoever copies the deployment on.
TEST(BuildDetails, AFileWithAHoleComesOutWithAllItsBytesAndNoHole)
{
    TestBuild build;
    const CString source = build.Media() + L"\\x64\\Zolt\\hole.bin";
    MakeHole(source, 3 << 20);
    const std::string bytes = ReadBytes(source);
    ASSERT_EQ(bytes.size(), std::size_t{3 << 20});
    const BuildResult result = build.Build();
    ASSERT_EQ(result.error.code, 0u) << Utf8(result.error.message);
    const CString built = build.Target() + L"\\Image\\x64\\Zolt\\hole.bin";
    EXPECT_TRUE(ReadBytes(built) == bytes);
    EXPECT_EQ(GetFileAttributesW(built) & FILE_ATTRIBUTE_SPARSE_FILE, 0u);
    FILE_STANDARD_INFO information = {};
    EXPECT_TRUE(GetFileInformationByHandleEx(OpenForReading(built).get(), FileStandardInfo, &information,
                                             sizeof(information)));
    EXPECT_GE(information.AllocationSize.QuadPart, 3 << 20);
}

TEST(BuildDetails, ADiskThatIsTooSmallIsReportedWithBothNumbersBeforeAnythingIsWritten)
{
    TestBuild build;
    const CString source = build.Folder() / L"huge.bin";
    const std::uint64_t bytes = FreeBytes(build.Location()) + (8ull << 30);
    MakeHole(source, bytes);
    build.plan.files.push_back({source, L"Image\\huge.bin"});
    build.onProgress = [](std::uint64_t, std::uint64_t total) {
        return total == 0;
    }; // no copying, should it begin
    const BuildResult result = build.Build();
    EXPECT_EQ(result.error.code, static_cast<unsigned>(ERROR_DISK_FULL)) << Utf8(result.error.message);
    EXPECT_HOLDS(result.error.message, L" MB in \"" + build.Location() + L"\". Only ");
    EXPECT_HOLDS(result.error.message, L" MB are free. Free space on the disk");
    EXPECT_EQ(ReadTree(build.Location()).size(), 0u);
}

// "Disk full" said neither which disk nor how much.
TEST(BuildDetails, ADiskThatFillsUpMeanwhileIsReportedWithWhatIsFreeAndNeeded)
{
    for (const unsigned int code : {ERROR_DISK_FULL, ERROR_HANDLE_DISK_FULL}) {
        TestBuild build;
        BuildResult result;
        {
            const CFaultScope fault({60, code, false});
            result = build.Build();
        }
        ASSERT_EQ(result.error.code, code);
        EXPECT_HOLDS(result.error.message, L" MB free (code ");
        EXPECT_HOLDS(result.error.message, L"The deployment needs ");
        EXPECT_HOLDS(result.error.message, L" MB in \"" + build.Location() + L"\".");
    }
}

TEST(BuildDetails, ASizeBeyondFourGigabytesIsReadWhole)
{
    const TestFolder folder;
    const std::uint64_t bytes = (4ull << 30) + 5;
    MakeHole(folder / L"huge.bin", bytes);
    EXPECT_EQ(SizeOfFile(folder / L"huge.bin"), bytes);
}

TEST(BuildDetails, AnotherFailureSaysNothingOfRoom)
{
    const CString path = L"C:\\folder\\file";
    EXPECT_EQ(ReasonFor(ERROR_ACCESS_DENIED, path).Find(L"free"), -1);
    EXPECT_HOLDS(ReasonFor(ERROR_DISK_FULL, L"C:\\file"), L"\"C:\\\" has ");
}

// ---- the log and the flushes

TEST(BuildDetails, TheLogCountsTheFilesOfTheDeployment)
{
    TestBuild build;
    ASSERT_EQ(build.Build().error.code, 0u);
    long long files = 0;
    for (const auto& [path, bytes] : ReadTree(build.Target())) {
        files += path.Right(1) == L"\\" ? 0 : 1;
    }
    const std::string log = ReadBytes(build.Target() + L"\\Build.log");
    EXPECT_NE(log.find("  Files: " + std::to_string(files) + "\r\n"), std::string::npos) << files << "\n"
                                                                                         << log;
}

// Each file of a deployment that replaces another one, and the lock file. A loss of power must not cost both deployments.
TEST(BuildDetails, EveryFileOfAReplacementIsFlushedOnce)
{
    TestBuild build;
    ASSERT_EQ(build.Build().error.code, 0u);
    build.AllowReplacing();
    SetFileFault({});
    ASSERT_EQ(build.Build().error.code, 0u);
    long long files = 0;
    for (const auto& [path, bytes] : ReadTree(build.Target())) {
        files += path.Right(1) == L"\\" ? 0 : 1;
    }
    EXPECT_EQ(CountedFlushes(), files + 1);
}

// Without the right to write the system refuses the flush, so that one which does nothing is found.
TEST(BuildDetails, AFlushReachesTheSystem)
{
    const TestFolder folder;
    WriteBytes(folder / L"file", "x");
    const CFileOwner file = OpenForReading(folder / L"file");
    EXPECT_THROW(FlushToDisk(file, folder / L"file"), BuildFailure);
}

// ---- attributes and times

TEST(BuildDetails, HiddenFilesStayHiddenAndFilesForOneselfBecomeIt)
{
    TestBuild build;
    const CString source = build.Media() + L"\\x64\\Zolt\\readme.txt";
    SetFileAttributesW(source, FILE_ATTRIBUTE_HIDDEN);
    if (!IsHidden(source)) {
        GTEST_SKIP() << "the disk of the tests keeps no such attribute";
    }
    ASSERT_EQ(build.Build().error.code, 0u);
    EXPECT_TRUE(IsHidden(build.Target() + L"\\Image\\x64\\Zolt\\readme.txt"));
    EXPECT_FALSE(IsHidden(build.Target() + L"\\Install.cmd"));
    // A name without a dot: Wine hides every file whose name starts with one.
    const CString own = build.Folder() / L"lock";
    const CFileOwner file = OpenAlone(own, true);
    EXPECT_TRUE(IsHidden(own));
}

class AddedDetails : public testing::Test, protected AdditionsBuild
{
protected:
    AddedDetails() : AdditionsBuild(Options()) {}

    static ProductOptions Options()
    {
        ProductOptions options;
        options.bytesOfLargeFile = 1000;
        options.prepare = MakeAdditionTables;
        return options;
    }

    // Date and time of the first file, as they stand in the cabinet.
    static std::pair<USHORT, USHORT> StampInCabinet(const CString& path)
    {
        const std::string cabinet = ReadBytes(path);
        std::uint32_t place = 0;
        std::memcpy(&place, cabinet.data() + 16, 4); // where the list of files begins
        USHORT date = 0;
        USHORT time = 0;
        std::memcpy(&date, cabinet.data() + place + 10, 2);
        std::memcpy(&time, cabinet.data() + place + 12, 2);
        return {date, time};
    }
};

TEST_F(AddedDetails, AddedFilesKeepTheirTimeInTheCabinet)
{
    const CString source = Source(L"old.txt", "old");
    SYSTEMTIME moment = {2019, 5, 0, 17, 13, 45, 20, 0};
    FILETIME local = {};
    FILETIME written = {};
    ASSERT_TRUE(SystemTimeToFileTime(&moment, &local) && LocalFileTimeToFileTime(&local, &written));
    {
        const CFileOwner file = OpenAlone(source, false);
        ASSERT_TRUE(SetFileTime(file.get(), nullptr, nullptr, &written));
    }
    added.AddFile(source, L"INSTALLDIR");
    BuildIt();
    const auto [date, time] = StampInCabinet(FolderAbove(build.Database()) + L"\\TARN0001.cab");
    EXPECT_EQ(date, ((2019 - 1980) << 9) | (5 << 5) | 17);
    EXPECT_EQ(time, (13 << 11) | (45 << 5) | (20 / 2));
}

// FILETIME reaches back to 1601, the cabinet's numbers to 1980. Wine's conversion refuses only what lies before 1970.
TEST_F(AddedDetails, AFileOlderThanACabinetsTimeIsOfItsFirstDay)
{
    const CString source = Source(L"old.txt", "old");
    SYSTEMTIME moment = {1965, 5, 0, 17, 13, 45, 20, 0};
    FILETIME written = {};
    FILETIME found = {};
    ASSERT_TRUE(SystemTimeToFileTime(&moment, &written));
    {
        const CFileOwner file = OpenAlone(source, false);
        ASSERT_TRUE(SetFileTime(file.get(), nullptr, nullptr, &written));
        ASSERT_TRUE(GetFileTime(file.get(), nullptr, nullptr, &found));
    }
    if (CompareFileTime(&written, &found) != 0) {
        GTEST_SKIP() << "the disk of the tests keeps no such time";
    }
    added.AddFile(source, L"INSTALLDIR");
    BuildIt();
    const auto [date, time] = StampInCabinet(FolderAbove(build.Database()) + L"\\TARN0001.cab");
    EXPECT_EQ(date, (0 << 9) | (1 << 5) | 1);
    EXPECT_EQ(time, 0);
}

TEST_F(AddedDetails, TheRoomForAddedFilesIsNeededToo)
{
    constexpr std::uint64_t MEGABYTE = 1u << 20;
    added.AddFile(Source(L"added.bin", std::string(5 * MEGABYTE, 'a')), L"INSTALLDIR");
    const std::uint64_t bytes = ScanSources(build.plan, {}).bytes + 5 * MEGABYTE;
    BuildResult result;
    {
        const CFaultScope fault({60, ERROR_DISK_FULL, false});
        result = build.Build();
    }
    ASSERT_EQ(result.error.code, static_cast<unsigned>(ERROR_DISK_FULL));
    const auto needed =
        static_cast<long long>((bytes + 5 * MEGABYTE - 1) / MEGABYTE); // with 4 MB for the texts
    EXPECT_HOLDS(result.error.message, L"The deployment needs " + NumberText(needed) + L" MB in ");
}

// ---- the number of a build

HRESULT STDAPICALLTYPE MakeNoGuid(GUID*)
{
    return E_FAIL;
}

// All such builds had the number 0, and so the same working folders.
TEST(BuildDetails, ABuildThatGetsNoNumberOfItsOwnIsRefused)
{
    TestBuild build;
    const CImportRedirect redirect(nullptr, "CoCreateGuid", reinterpret_cast<void*>(MakeNoGuid));
    ASSERT_TRUE(redirect.IsInPlace());
    const BuildResult result = build.Build();
    EXPECT_EQ(result.error.code, unsigned{BUILD_INSTALLER_FAILED});
    EXPECT_HOLDS(result.error.message, L"could not make a number for this build");
    EXPECT_TRUE(build.steps.empty());
}

// ---- links

// Windows deletes the link itself. Wine would delete what it leads to, and refuses as that isn't empty.
TEST(BuildDetails, WhatALinkInADeletedFolderLeadsToStays)
{
    const TestFolder folder;
    MakeFolders(folder / L"real");
    MakeFolders(folder / L"deleted");
    WriteBytes(folder / L"real\\thesis.doc", "years of work");
    const FolderLink link(folder / L"deleted\\link", folder / L"real");
    if (!link.IsThere()) {
        GTEST_SKIP() << "this system makes no link for a test";
    }
    try {
        DeleteTree(folder / L"deleted");
    } catch (const BuildFailure& failure) {
        EXPECT_HOLDS(failure.message, L"deleted\\link\"");
    }
    EXPECT_EQ(ReadBytes(folder / L"real\\thesis.doc"), "years of work");
}

// ---- listening

// Only size and hash of a stream are kept, so the copy behind the commit is what takes time.
TEST(BuildDetails, CancelIsHeardWhileALargeDatabaseIsCopied)
{
    constexpr std::size_t BYTES = 8u << 20;
    ProductOptions options;
    options.prepare = [](const CString& path) {
        WriteBytes(path + L".bin", std::string(BYTES, 'b'));
        MSIHANDLE database = 0;
        MSIHANDLE view = 0;
        const MSIHANDLE record = MsiCreateRecord(1);
        ASSERT_EQ(MsiRecordSetStreamW(record, 1, path + L".bin"), 0u);
        ASSERT_EQ(MsiOpenDatabaseW(path, MSIDBOPEN_TRANSACT, &database), 0u);
        EXPECT_EQ(MsiDatabaseOpenViewW(database, L"INSERT INTO `Binary` (`Name`, `Data`) VALUES ('Large', ?)",
                                       &view),
                  0u);
        EXPECT_EQ(MsiViewExecute(view, record), 0u);
        MsiCloseHandle(record);
        MsiCloseHandle(view);
        EXPECT_EQ(MsiDatabaseCommit(database), 0u);
        MsiCloseHandle(database);
        DeleteFileW(path + L".bin");
    };
    TestBuild build(options);
    build.Change(CHANGE_DATABASE);
    const CString copy = build.plan.databases[0].strWorkingCopy + L".built";
    bool heard = false;
    build.onProgress = [&](std::uint64_t, std::uint64_t) {
        heard = heard || (Exists(copy) && SizeOfFile(copy) < BYTES);
        return !heard;
    };
    build.onStep = [](const CString&) { LetTheNextMomentBeReported(); }; // the first chunk
    EXPECT_EQ(build.Build().error.code, 1602u);
    EXPECT_TRUE(heard) << "nobody was asked before the copy was whole";
    EXPECT_FALSE(Exists(copy));
    EXPECT_EQ(ReadTree(build.Location()).size(), 0u);
}

// ---- a damaged package

// The list of tables is a stream of numbers of texts, two bytes each; number 0 is the empty text. The service writes the
// names of such streams in letters of its own: a sign for tables, then two characters to a unit.
CString EncodedStreamName(const char* name)
{
    const CString digits = L"0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz._";
    CString encoded = L"\x4840";
    for (; *name; ++name) {
        const int first = digits.Find(static_cast<wchar_t>(*name));
        if (name[1] == 0) {
            encoded += static_cast<wchar_t>(0x4800 + first);
            break;
        }
        encoded += static_cast<wchar_t>(0x3800 + first + (digits.Find(static_cast<wchar_t>(*++name)) << 6));
    }
    return encoded;
}

void ListATableWithoutName(const CString& path)
{
    IStorage* storage = nullptr;
    IStream* stream = nullptr;
    ASSERT_EQ(StgOpenStorage(path, nullptr, STGM_TRANSACTED | STGM_READWRITE | STGM_SHARE_EXCLUSIVE, nullptr,
                             0, &storage),
              S_OK);
    ASSERT_EQ(storage->OpenStream(EncodedStreamName("_Tables"), nullptr,
                                  STGM_READWRITE | STGM_SHARE_EXCLUSIVE, 0, &stream),
              S_OK);
    LARGE_INTEGER end = {};
    EXPECT_EQ(stream->Seek(end, STREAM_SEEK_END, nullptr), S_OK);
    EXPECT_EQ(stream->Write("\0\0", 2, nullptr), S_OK);
    stream->Release();
    EXPECT_EQ(storage->Commit(STGC_DEFAULT), S_OK);
    storage->Release();
}

// "Reading the table  of ..." named nothing.
TEST(BuildDetails, APackageThatListsATableWithoutNameIsRefusedAsDamaged)
{
    ProductOptions options;
    options.prepare = ListATableWithoutName;
    TestBuild build(options);
    const BuildResult result = build.Build();
    EXPECT_EQ(result.error.code, 1620u);
    EXPECT_HOLDS(result.error.message, L"\" lists a table without a name. The database is damaged.");
    EXPECT_FALSE(Exists(build.Target()));
}

} // namespace
