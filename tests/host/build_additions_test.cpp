// Additions to packages of other makers: what is decided about them before anything is written, and what a package's own
// numbers and limits make of them.
#include "builder/build_names.h"
#include "builder/database_snapshot.h"
#include "builder/file_operations.h"
#include "tests/host/additions_build.h"
#include "tests/support/processor_time.h"

#include <windows.h>

#include <winioctl.h>

#include <msi.h>
#include <msiquery.h>

namespace {

// A package whose columns hold short numbers alone, with the tables that additions need. `statements` make it some
// maker's.
ProductOptions PackageWith(const std::vector<CString>& statements, int codePage = 1252)
{
    ProductOptions options;
    options.bytesOfLargeFile = 1000;
    options.codePage = codePage;
    options.prepare = [statements](const CString& path) {
        MakeAdditionTables(path);
        MSIHANDLE database = 0;
        ASSERT_EQ(MsiOpenDatabaseW(path, MSIDBOPEN_TRANSACT, &database), 0u);
        for (const CString& statement : statements) {
            EXPECT_EQ(RunSql(database, statement), 0u) << Utf8(statement);
        }
        EXPECT_EQ(MsiDatabaseCommit(database), 0u);
        MsiCloseHandle(database);
    };
    return options;
}

void MakeHole(const CString& path, long long bytes)
{
    const CFileOwner file = OpenAlone(path, true);
    DWORD count = 0;
    DeviceIoControl(file.get(), FSCTL_SET_SPARSE, nullptr, 0, nullptr, 0, &count, nullptr);
    ASSERT_GT(SeekInFile(file, bytes, FILE_BEGIN, path), 0u);
    ASSERT_TRUE(SetEndOfFile(file.get())) << GetLastError();
}

class AdditionsTest : public testing::Test, protected AdditionsBuild
{
protected:
    explicit AdditionsTest(const std::vector<CString>& statements = {})
        : AdditionsBuild(PackageWith(statements))
    {
    }

    void AddFolders(int count, int first = 0)
    {
        for (int number = first; number < first + count; ++number) {
            added.AddFolder(L"folder " + NumberText(number), L"INSTALLDIR");
        }
    }

    void ExpectRefusedBeforehand(unsigned int code, const std::vector<CString>& words)
    {
        ::ExpectRefusedBeforehand(build, code, words);
    }

    void ExpectWarned(const CString& part) const
    {
        std::string reported;
        for (const CString& warning : warnings) {
            reported += Utf8(warning) + "\n";
        }
        EXPECT_NE(reported.find(Utf8(part)), std::string::npos) << Utf8(part) << " is missing in:\n"
                                                                << reported;
    }

    void ExpectFileArrivesAndGoes(const CString& name, const std::string& bytes)
    {
        Install();
        EXPECT_EQ(ReadBytes(ProgramFolder() + L"\\" + name), bytes);
        EXPECT_EQ(ReadBytes(ProgramFolder() + L"\\readme.txt"), "hello\n");
        EXPECT_EQ(Uninstall(), 0u);
        EXPECT_FALSE(Exists(ProgramFolder())) << NamesOf(ReadTree(ProgramFolder()));
    }

    CString BuiltValue(const CString& query) const { return QueryText(build.Database(), query); }
};

// ---- what is left out stops nothing --------------------------------------------------------------------------------

// Such an addition is left out anyway, and the pages show it to nobody who could remove it.
TEST_F(AdditionsTest, AnAdditionThatIsLeftOutNeedsNoSource)
{
    for (const wchar_t* place :
         {L"File` WHERE `File", L"Component` WHERE `Component", L"FeatureComponents` WHERE `Component_"}) {
        const CString source = Source(L"half.txt", "1");
        const CString half = added.AddFile(source, L"INSTALLDIR");
        DeleteFileW(source);
        build.Change(CString(L"DELETE FROM `") + place + L"`='" + half + L"'");
        BuildIt();
        ExpectWarned(L"never completed");
        build.AllowReplacing();
    }
}

TEST_F(AdditionsTest, AFileInAFolderThatIsGoneNeedsNoSource)
{
    const CString folder = added.AddFolder(L"Folder", L"INSTALLDIR");
    const CString source = Source(L"inside.txt", "1");
    added.AddFile(source, folder);
    DeleteFileW(source);
    build.Change(L"DELETE FROM `Directory` WHERE `Directory`='" + folder + L"'");
    BuildIt();
    ExpectWarned(L"\"inside.txt\"");
}

TEST_F(AdditionsTest, AnAdditionThatIsLeftOutMayHaveAnySize)
{
    const CString source = sources / L"huge.bin";
    MakeHole(source, 3ll << 30);
    const CString half = added.AddFile(source, L"INSTALLDIR");
    build.Change(L"DELETE FROM `Component` WHERE `Component`='" + half + L"'");
    BuildIt();
}

// ---- refused before anything is written ----------------------------------------------------------------------------

TEST_F(AdditionsTest, TwoFilesThatWouldBecomeOneAreRefusedBeforehand)
{
    const CString first = Source(L"a\\same.txt", "1");
    const CString second = Source(L"b\\SAME.txt", "2");
    added.AddFile(first, L"INSTALLDIR");
    added.AddFile(second, L"INSTALLDIR");
    ExpectRefusedBeforehand(183, {first, second, L"Remove one of them"});
}

TEST_F(AdditionsTest, ANameBeyondTheCodePageIsRefusedBeforehand)
{
    const CString name = L"\x0142\x00F3"
                         L"d\x017A.txt";
    added.AddFile(Source(name, "1"), L"INSTALLDIR");
    ExpectRefusedBeforehand(1113, {name, L"1252"});
}

TEST_F(AdditionsTest, AValueBeyondTheCodePageIsRefusedBeforehand)
{
    build.Change(L"INSERT INTO `Property` (`Property`,`Value`) VALUES ('SITE','\x4E2D')");
    ExpectRefusedBeforehand(1113, {L"SITE", L"1252"});
}

TEST_F(AdditionsTest, AFileAboveTheLimitIsRefusedWithTheLimitThatHolds)
{
    const CString source = sources / L"large.bin";
    MakeHole(source, (2032ll << 20) + 1);
    added.AddFile(source, L"INSTALLDIR");
    ExpectRefusedBeforehand(223, {source, L"has 2033 MB", L"up to 2032 MB"});
}

TEST_F(AdditionsTest, WhatIsTakenAsItIsIsReportedByTheCheckToo)
{
    added.AddFile(Source(L"README.txt", "ours"), L"INSTALLDIR");
    std::vector<CString> reported;
    EXPECT_EQ(CheckBuild(build.plan, reported).code, 0u);
    ASSERT_EQ(reported.size(), 1u);
    EXPECT_GE(reported[0].Find(L"takes the place of"), 0) << Utf8(reported[0]);
}

// ---- more components than a feature takes ---------------------------------------------------------------------------

TEST_F(AdditionsTest, ManyAdditionsAreSpreadOverFeaturesThatInstallLikeTheFirst)
{
    AddFolders(3300);
    added.AddFile(Source(L"added.txt", "added"), L"INSTALLDIR");
    BuildIt();
    const CInstallerHandle database = OpenDatabaseToRead(build.Database());
    const DatabaseSnapshot built =
        ReadTables(database.get(), build.Database(), {L"Feature", L"FeatureComponents"});
    std::map<CString, int> counts;
    for (const auto& row : built.at(L"FeatureComponents").rows) {
        ++counts[row.second[0]];
    }
    EXPECT_EQ(counts, (std::map<CString, int>{{L"All", 1},
                                              {L"_UserDeploymentFile", 1600},
                                              {L"_UserDeploymentFile2", 1600},
                                              {L"_UserDeploymentFile3", 101}}));
    RowValues first = built.at(L"Feature").rows.at({L"_UserDeploymentFile"});
    for (const wchar_t* name : {L"_UserDeploymentFile2", L"_UserDeploymentFile3"}) {
        first[0] = name;
        EXPECT_EQ(built.at(L"Feature").rows.at({name}), first);
    }
    const CString copy = build.Folder() / L"copy.msi";
    ASSERT_TRUE(CopyFileW(build.plan.databases[0].strWorkingCopy, copy, TRUE));
    EXPECT_EQ(QueryText(copy, L"SELECT `Feature` FROM `Feature` WHERE `Feature`='_UserDeploymentFile2'"),
              L"(none)")
        << "the open database was changed";
}

// A person waits for the review, and meanwhile only that grows which has to.
TEST_F(AdditionsTest, TenThousandAdditionsAreReviewedInTimeProportionalToThem)
{
    const auto secondsOfReview = [this](std::size_t folders) {
        BuildReview review;
        const double start = ProcessorSeconds();
        EXPECT_EQ(ReviewBuild(build.plan, review).code, 0u);
        const double seconds = ProcessorSeconds() - start;
        EXPECT_EQ(review.databases[0].addedFolders.size(), folders);
        return seconds;
    };
    AddFolders(1000);
    double ofThousand = 0;
    for (int time = 0; time < 10; ++time) {
        ofThousand += secondsOfReview(1000);
    }
    AddFolders(9000, 1000);
    EXPECT_LT(secondsOfReview(10000), 2 * ofThousand + 0.5);
}

// The service here takes 17 seconds to install and remove 3,300; two features show the same.
TEST_F(AdditionsTest, AdditionsOfTwoFeaturesArriveAndGo)
{
    constexpr int COUNT = 1600;
    AddFolders(COUNT);
    added.AddFile(Source(L"added.txt", "added"), L"INSTALLDIR");
    BuildIt();
    ASSERT_EQ(RunProgram(L"msiexec /i \"" + build.Database() + L"\" /qn /norestart"), 0u);
    EXPECT_EQ(ReadTree(ProgramFolder()).size(), COUNT + 2u); // the added file and the product's own
    EXPECT_EQ(RunProgram(CString(L"msiexec /x ") + PRODUCT_CODE + L" /qn /norestart"), 0u);
    EXPECT_FALSE(Exists(ProgramFolder())) << ReadTree(ProgramFolder()).size() << " are left";
}

// ---- the package's own numbers -------------------------------------------------------------------------------------

class CrowdedNumbersTest : public AdditionsTest
{
protected:
    CrowdedNumbersTest() : AdditionsTest({L"UPDATE `Media` SET `LastSequence`=32767"}) {}
};

TEST_F(CrowdedNumbersTest, AFileArrivesFromAPackageWhoseMediumReservesAllNumbers)
{
    added.AddFile(Source(L"added.txt", "added"), L"INSTALLDIR");
    BuildIt();
    EXPECT_EQ(BuiltValue(L"SELECT `LastSequence` FROM `Media` WHERE `DiskId`=1"), L"1");
    const CString copy = build.Folder() / L"copy.msi";
    ASSERT_TRUE(CopyFileW(build.plan.databases[0].strWorkingCopy, copy, TRUE));
    EXPECT_EQ(QueryText(copy, L"SELECT `LastSequence` FROM `Media` WHERE `DiskId`=1"), L"32767")
        << "the open database was changed";
    ExpectFileArrivesAndGoes(L"added.txt", "added");
}

class FullNumbersTest : public AdditionsTest
{
protected:
    FullNumbersTest() : AdditionsTest({L"UPDATE `File` SET `Sequence`=32767"}) {}
};

TEST_F(FullNumbersTest, AProductThatTakesAllNumbersIsRefusedBeforehand)
{
    added.AddFile(Source(L"added.txt", "added"), L"INSTALLDIR");
    ExpectRefusedBeforehand(1603, {L"32767", L"Remove the additional files"});
}

// The package's actions that change the computer stand behind the numbers that the installer suggests for files.
class LateActionsTest : public AdditionsTest
{
protected:
    static std::vector<CString> Statements()
    {
        std::vector<CString> statements = {
            L"DELETE FROM `InstallExecuteSequence` WHERE `Action`='InstallFiles'",
            L"DELETE FROM `InstallExecuteSequence` WHERE `Action`='RemoveFiles'"};
        int number = 5000;
        for (const wchar_t* action :
             {L"InstallValidate", L"InstallInitialize", L"ProcessComponents", L"UnpublishFeatures",
              L"RegisterProduct", L"PublishFeatures", L"PublishProduct", L"InstallFinalize"}) {
            statements.push_back(L"UPDATE `InstallExecuteSequence` SET `Sequence`=" + NumberText(number) +
                                 L" WHERE `Action`='" + action + L"'");
            number += 100;
        }
        return statements;
    }
    LateActionsTest() : AdditionsTest(Statements()) {}
};

TEST_F(LateActionsTest, AFileArrivesInAPackageWhoseActionsHaveHighNumbers)
{
    added.AddFile(Source(L"added.txt", "added"), L"INSTALLDIR");
    BuildIt();
    const CString query = L"SELECT `Sequence` FROM `InstallExecuteSequence` WHERE `Action`=";
    EXPECT_EQ(BuiltValue(query + L"'RemoveFiles'"), L"5301");
    EXPECT_EQ(BuiltValue(query + L"'InstallFiles'"), L"5303");
    ExpectFileArrivesAndGoes(L"added.txt", "added");
}

class NarrowActionsTest : public AdditionsTest
{
protected:
    NarrowActionsTest()
        : AdditionsTest({L"DELETE FROM `InstallExecuteSequence` WHERE `Action`='InstallFiles'",
                         L"UPDATE `InstallExecuteSequence` SET `Sequence`=3501 WHERE "
                         L"`Action`='InstallFinalize'"})
    {
    }
};

TEST_F(NarrowActionsTest, ASequenceWithoutRoomIsRefusedBeforehandByName)
{
    added.AddFile(Source(L"added.txt", "added"), L"INSTALLDIR");
    ExpectRefusedBeforehand(1603, {L"InstallFiles", L"RemoveFiles (3500)", L"InstallFinalize (3501)"});
}

} // namespace
