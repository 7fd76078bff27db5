// Packages of other makers' tools: numbers beyond 32,767, media with gaps, columns of their own, many and large additions.
#include "tests/host/additions_build.h"

#include "builder/build_names.h"
#include "builder/file_operations.h"

#include <windows.h>

#include <winioctl.h>

#include <msi.h>
#include <msiquery.h>

#include <chrono>
#include <cstdlib>

namespace {

// Numbers of four bytes, and media that leave numbers out.
const wchar_t* const g_wideNumbers[] = {
    L"DROP TABLE `File`",
    L"CREATE TABLE `File` (`File` CHAR(72) NOT NULL, `Component_` CHAR(72) NOT NULL, `FileName` CHAR(255) "
    L"NOT NULL "
    L"LOCALIZABLE, `FileSize` LONG NOT NULL, `Version` CHAR(72), `Language` CHAR(20), `Attributes` SHORT, "
    L"`Sequence` "
    L"LONG NOT NULL PRIMARY KEY `File`)",
    L"INSERT INTO `File` (`File`, `Component_`, `FileName`, `FileSize`, `Attributes`, `Sequence`) VALUES "
    L"('Readme', "
    L"'Main', 'readme.txt', 6, 8192, 39990)",
    L"DROP TABLE `Media`",
    L"CREATE TABLE `Media` (`DiskId` SHORT NOT NULL, `LastSequence` LONG NOT NULL, `DiskPrompt` CHAR(64) "
    L"LOCALIZABLE, `Cabinet` CHAR(255), `VolumeLabel` CHAR(32), `Source` CHAR(72) PRIMARY KEY `DiskId`)",
    L"INSERT INTO `Media` (`DiskId`, `LastSequence`) VALUES (1, 10)",
    L"INSERT INTO `Media` (`DiskId`, `LastSequence`) VALUES (5, 40000)",
    L"INSERT INTO `Media` (`DiskId`, `LastSequence`) VALUES (9, 70000)",
};

// Columns of the maker's between the usual ones. Wine's installer goes by their places, so such a package is only built.
const wchar_t* const g_makersColumns[] = {
    L"DROP TABLE `File`",
    L"CREATE TABLE `File` (`File` CHAR(72) NOT NULL, `Component_` CHAR(72) NOT NULL, `FileName` CHAR(255) "
    L"NOT NULL "
    L"LOCALIZABLE, `MakersNote` CHAR(50), `FileSize` LONG NOT NULL, `Version` CHAR(72), `Language` CHAR(20), "
    L"`Attributes` SHORT, `Sequence` SHORT NOT NULL, `MakersCount` LONG PRIMARY KEY `File`)",
    L"INSERT INTO `File` (`File`, `Component_`, `FileName`, `MakersNote`, `FileSize`, `Attributes`, "
    L"`Sequence`, "
    L"`MakersCount`) VALUES ('Readme', 'Main', 'readme.txt', 'of the maker', 6, 8192, 1, 123456)",
    L"DROP TABLE `Component`",
    L"CREATE TABLE `Component` (`Component` CHAR(72) NOT NULL, `MakersMark` CHAR(50), `ComponentId` "
    L"CHAR(38), "
    L"`Directory_` CHAR(72) NOT NULL, `Attributes` SHORT NOT NULL, `Condition` CHAR(255), `KeyPath` CHAR(72) "
    L"PRIMARY KEY `Component`)",
    L"INSERT INTO `Component` (`Component`, `MakersMark`, `ComponentId`, `Directory_`, `Attributes`, "
    L"`KeyPath`) "
    L"VALUES ('Main', 'mark', '{0B6B6E9C-6E3A-4A63-9A5F-3C1F0D7E8A33}', 'INSTALLDIR', 256, 'Readme')",
};

ProductOptions PackageWith(const std::vector<const wchar_t*>& statements)
{
    ProductOptions options;
    options.bytesOfLargeFile = 1000;
    options.prepare = [statements](const CString& path) {
        MakeAdditionTables(path);
        MSIHANDLE database = 0;
        ASSERT_EQ(MsiOpenDatabaseW(path, MSIDBOPEN_TRANSACT, &database), 0u);
        for (const wchar_t* statement : statements) {
            EXPECT_EQ(RunSql(database, statement), 0u) << Utf8(statement);
        }
        EXPECT_EQ(MsiDatabaseCommit(database), 0u);
        MsiCloseHandle(database);
    };
    return options;
}

class PackageBuild : public testing::Test, protected AdditionsBuild
{
protected:
    explicit PackageBuild(const std::vector<const wchar_t*>& statements)
        : AdditionsBuild(PackageWith(statements))
    {
    }

    CString Value(const CString& statement) { return QueryText(build.Database(), statement); }

    CString Sequence(const CString& key)
    {
        return Value(L"SELECT `Sequence` FROM `File` WHERE `File`='" + key + L"'");
    }
    CString Medium(int disk, const wchar_t* column)
    {
        return Value(CString(L"SELECT `") + column + L"` FROM `Media` WHERE `DiskId`=" + NumberText(disk));
    }
};

class WideNumbers : public PackageBuild
{
protected:
    WideNumbers() : PackageBuild({std::begin(g_wideNumbers), std::end(g_wideNumbers)}) {}
};

class MakersColumns : public PackageBuild
{
protected:
    MakersColumns() : PackageBuild({std::begin(g_makersColumns), std::end(g_makersColumns)}) {}
};

class SeveralCabinets : public PackageBuild
{
protected:
    SeveralCabinets() : PackageBuild({}) {}
};

TEST_F(WideNumbers, GoOnBehindTheLastMediumBeyondTwoBytes)
{
    const CString key = added.AddFile(Source(L"added.txt", "added"), L"INSTALLDIR");
    BuildIt();
    EXPECT_EQ(Sequence(key), L"70001");
    EXPECT_EQ(Medium(10, L"LastSequence"), L"70001");
    EXPECT_EQ(Medium(10, L"Cabinet"), L"TARN0001.cab");
    EXPECT_EQ(Medium(5, L"LastSequence"), L"40000");
    EXPECT_EQ(Sequence(L"Readme"), L"39990");
    Install();
    Tree found = ReadTree(ProgramFolder());
    EXPECT_EQ(found[L"added.txt"], "added") << NamesOf(found);
    EXPECT_EQ(found[L"readme.txt"], "hello\n") << NamesOf(found);
    EXPECT_EQ(Uninstall(), 0u);
}

TEST_F(MakersColumns, KeepTheirValues)
{
    const CString key = added.AddFile(Source(L"added.txt", "added"), L"INSTALLDIR");
    BuildIt();
    EXPECT_EQ(Value(L"SELECT `MakersNote` FROM `File` WHERE `File`='Readme'"), L"of the maker");
    EXPECT_EQ(Value(L"SELECT `MakersCount` FROM `File` WHERE `File`='Readme'"), L"123456");
    EXPECT_EQ(Value(L"SELECT `MakersMark` FROM `Component` WHERE `Component`='Main'"), L"mark");
    EXPECT_EQ(Value(L"SELECT `MakersNote` FROM `File` WHERE `File`='" + key + L"'"), L"");
    EXPECT_EQ(Value(L"SELECT `FileSize` FROM `File` WHERE `File`='" + key + L"'"), L"5");
    EXPECT_EQ(Value(L"SELECT `Directory_` FROM `Component` WHERE `Component`='" + key + L"'"), L"INSTALLDIR");
}

// ---- several cabinets

TEST_F(SeveralCabinets, AFullCabinetIsFollowedByTheNext)
{
    build.plan.cabinetLimits = {10, 2}; // bytes, files
    std::vector<CString> keys;
    Tree expected{{L"readme.txt", "hello\n"}};
    for (const auto& [name, bytes] : std::vector<std::pair<const wchar_t*, std::string>>{
             {L"a.txt", "1"}, {L"b.txt", "22"}, {L"c.txt", "333"}, {L"d.txt", std::string(8, '4')}}) {
        keys.push_back(added.AddFile(Source(name, bytes), L"INSTALLDIR"));
        expected[name] = bytes;
    }
    BuildIt();
    const CString folder = FolderAbove(build.Database());
    for (const wchar_t* cabinet : {L"\\TARN0001.cab", L"\\TARN0002.cab", L"\\TARN0003.cab"}) {
        EXPECT_TRUE(Exists(folder + cabinet)) << Utf8(cabinet);
    }
    EXPECT_FALSE(Exists(folder + L"\\TARN0004.cab"));
    EXPECT_EQ(Medium(2, L"LastSequence"), Sequence(keys[1])); // two files
    EXPECT_EQ(Medium(3, L"LastSequence"), Sequence(keys[2])); // three bytes, and eight would be one too many
    EXPECT_EQ(Medium(4, L"LastSequence"), Sequence(keys[3]));
    Install();
    const Tree found = ReadTree(ProgramFolder());
    EXPECT_TRUE(found == expected) << NamesOf(found);
    EXPECT_EQ(Uninstall(), 0u);
}

// ---- large additions

void MakeHole(const CString& path, long long bytes)
{
    const CFileOwner file = OpenAlone(path, true);
    DWORD count = 0;
    DeviceIoControl(file.get(), FSCTL_SET_SPARSE, nullptr, 0, nullptr, 0, &count, nullptr);
    ASSERT_GT(SeekInFile(file, bytes, FILE_BEGIN, path), 0u);
    ASSERT_TRUE(SetEndOfFile(file.get())) << GetLastError();
}

TEST_F(SeveralCabinets, AFileOfTwoGigabytesLessAByteIsRefusedWithTheLimit)
{
    const CString source = sources / L"large.bin";
    MakeHole(source, (2ll << 30) - 1);
    added.AddFile(source, L"INSTALLDIR");
    const BuildResult result = build.Build();
    EXPECT_EQ(result.error.code, static_cast<unsigned>(ERROR_FILE_TOO_LARGE));
    EXPECT_HOLDS(result.error.message,
                 L"has 2048 MB. The installer takes added files of up to 2032 MB each.");
}

// Minutes, and gigabytes of room: ROLLOUT_LARGE_FILES=1 asks for it.
TEST_F(SeveralCabinets, LargeFilesArriveWhole)
{
    if (!std::getenv("ROLLOUT_LARGE_FILES")) {
        GTEST_SKIP() << "set ROLLOUT_LARGE_FILES=1 and ROLLOUT_TEST_SECONDS=1200 to build and install files "
                        "of 1 and 2 gigabytes";
    }
    const CString one = sources / L"one.bin";
    const CString two = sources / L"two.bin";
    MakeHole(one, 1ll << 30);
    MakeHole(two, 2032ll << 20);
    added.AddFile(one, L"INSTALLDIR");
    added.AddFile(two, L"INSTALLDIR");
    const auto start = std::chrono::steady_clock::now();
    const auto seconds = [&] {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    };
    BuildIt();
    printf("built after %.1f s\n", seconds());
    EXPECT_TRUE(Exists(FolderAbove(build.Database()) + L"\\TARN0002.cab"));
    Install();
    printf("installed after %.1f s\n", seconds());
    EXPECT_EQ(SizeOfFile(ProgramFolder() + L"\\one.bin"), 1ull << 30);
    EXPECT_EQ(SizeOfFile(ProgramFolder() + L"\\two.bin"), 2032ull << 20);
    EXPECT_EQ(Uninstall(), 0u);
}

} // namespace
