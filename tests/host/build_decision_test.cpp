// What a build decides before it does anything: the decision as a value, and what refuses a build beforehand.
#include "tests/host/additions_build.h"

#include "builder/build_decision.h"
#include "builder/build_failure.h"
#include "builder/build_names.h"
#include "builder/cabinet.h"
#include "builder/copy_scan.h"
#include "msi/msi_rows.h"

#include <windows.h>

#include <msi.h>
#include <msiquery.h>

#include <algorithm>

namespace {

ProductOptions PackageWith(const std::vector<CString>& statements)
{
    ProductOptions options;
    options.bytesOfLargeFile = 1000;
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

class DecisionTest : public testing::Test, protected AdditionsBuild
{
protected:
    explicit DecisionTest(const std::vector<CString>& statements = {})
        : AdditionsBuild(PackageWith(statements))
    {
    }

    CString PackageFolder() const { return FolderAbove(build.plan.databases[0].strOriginal); }

    DatabaseDecision Decide()
    {
        DatabaseDecision decision = BeginDecision(build.plan.databases[0], [] {});
        DecideDatabase(decision, build.plan.cabinetLimits, [] {});
        return decision;
    }

    // A file that was added, and whose source is gone since.
    CString AddGoneFile(const CString& name)
    {
        const CString source = Source(name, "1");
        const CString key = added.AddFile(source, L"INSTALLDIR");
        DeleteFileW(source);
        return key;
    }

    // A cabinet of an earlier build beside the package.
    void PutEarlierCabinet(const CString& key, const std::string& bytes)
    {
        const CString content = Source(L"content", bytes);
        std::vector<CabinetMember> members = {{key, content, 0}};
        WriteCabinet(PackageFolder() + L"\\TARN0001.cab", members, [](std::uint64_t) {});
        DeleteFileW(content);
    }

    long long OperationsOfACheck()
    {
        const CFaultScope counting({});
        std::vector<CString> reported;
        EXPECT_EQ(CheckBuild(build.plan, reported).code, 0u);
        return CountedFileOperations();
    }

    void ExpectRefused(unsigned int code, const std::vector<CString>& words)
    {
        ExpectRefusedBeforehand(build, code, words);
    }
};

// With custom shortcuts as the page writes them.
class ShortcutDecisionTest : public DecisionTest
{
protected:
    ShortcutDecisionTest()
        : DecisionTest(
              {L"CREATE TABLE `Shortcut` (`Shortcut` CHAR(72) NOT NULL, `Directory_` CHAR(72) NOT NULL, "
               L"`Name` CHAR(128) NOT NULL LOCALIZABLE, `Component_` CHAR(72) NOT NULL, `Target` CHAR(72) "
               L"NOT NULL, `Arguments` CHAR(255), `Description` CHAR(255) LOCALIZABLE, `Hotkey` SHORT, "
               L"`Icon_` CHAR(72), `IconIndex` SHORT, `ShowCmd` SHORT, `WkDir` CHAR(72) PRIMARY KEY "
               L"`Shortcut`)"})
    {
    }

    void AddShortcut(const CString& name, const CString& command)
    {
        ShortcutData row;
        row.Shortcut = L"CUSTOM_SHORTCUT_" + NumberText(++m_last);
        row.Directory_ = L"INSTALLDIR";
        row.Name = name;
        row.Component_ = L"Main";
        row.Target = L"[INSTALLDIR]zolt.exe";
        row.Arguments = command;
        EXPECT_TRUE(row.Execute(build.plan.databases[0].hDatabase)) << Utf8(name);
    }

private:
    int m_last = 0;
};

// ---- the decision as a value ---------------------------------------------------------------------------------------

TEST_F(DecisionTest, AnUnchangedProductIsCopied)
{
    const DatabaseDecision decision = Decide();
    EXPECT_FALSE(decision.IsNeeded());
    EXPECT_TRUE(decision.changes.rows.empty());
    EXPECT_TRUE(decision.edits.empty());
}

TEST_F(DecisionTest, AFileIsTakenFromItsSourceWithTheSizeThatItHasNow)
{
    const CString source = Source(L"a.txt", "12345");
    added.AddFile(source, L"INSTALLDIR");
    WriteBytes(source, "1234567");
    const DatabaseDecision decision = Decide();
    ASSERT_EQ(decision.added.additions.files.size(), 1u);
    const UserFile& file = decision.added.additions.files[0];
    EXPECT_EQ(file.origin, UserFileOrigin::Source);
    EXPECT_EQ(Utf8(file.strContent), Utf8(source));
    EXPECT_EQ(file.size, 7u);
    EXPECT_EQ(decision.added.BytesToPack(), 7u);
    ASSERT_EQ(decision.added.warnings.size(), 1u);
    EXPECT_GE(decision.added.warnings[0].Find(L"had 5 bytes then, and has 7 now"), 0)
        << Utf8(decision.added.warnings[0]);
}

TEST_F(DecisionTest, AFileWithoutASourceComesFromTheCabinetOfTheEarlierBuild)
{
    const CString key = AddGoneFile(L"gone.txt");
    PutEarlierCabinet(key, "123");
    const DatabaseDecision decision = Decide();
    ASSERT_EQ(decision.added.additions.files.size(), 1u);
    const UserFile& file = decision.added.additions.files[0];
    EXPECT_EQ(file.origin, UserFileOrigin::EarlierCabinet);
    EXPECT_EQ(Utf8(file.strContent), Utf8(PackageFolder() + L"\\TARN0001.cab"));
    EXPECT_EQ(file.size, 3u);
    EXPECT_EQ(decision.added.BytesToPack(), 3u);
    ASSERT_EQ(decision.added.warnings.size(), 1u);
    EXPECT_GE(decision.added.warnings[0].Find(L"is not on this computer"), 0)
        << Utf8(decision.added.warnings[0]);
}

TEST_F(DecisionTest, FilesOfAnEarlierCabinetCountForTheRoomAndTheProgress)
{
    constexpr std::uint64_t BYTES = 1u << 20;
    PutEarlierCabinet(AddGoneFile(L"gone.bin"), std::string(BYTES, 'a'));
    const std::uint64_t others = ScanSources(build.plan, {}).bytes;
    std::uint64_t announced = 0; // before the copying, which corrects what was measured wrong
    build.onProgress = [&](std::uint64_t, std::uint64_t total) {
        announced = announced == 0 ? total : announced;
        return true;
    };
    ASSERT_EQ(build.Build().error.code, 0u);
    EXPECT_EQ(announced, others + BYTES + BYTES); // packed, then copied
}

TEST_F(DecisionTest, TheReportHasTheVendorsRowsForABaseAndTheCopyThePages)
{
    const CString key = added.AddFile(Source(L"a.txt", "12345"), L"INSTALLDIR");
    const DatabaseDecision decision = Decide();
    const auto find = [&](const std::vector<RowDifference>& rows) {
        return std::find_if(rows.begin(), rows.end(), [&](const RowDifference& row) {
            return row.strTable == L"File" && row.key.front() == key;
        });
    };
    const auto reported = find(decision.changes.rows);
    ASSERT_TRUE(reported != decision.changes.rows.end());
    EXPECT_EQ(reported->change, RowChange::Added);
    const auto edited = find(decision.edits);
    ASSERT_TRUE(edited != decision.edits.end());
    EXPECT_EQ(edited->change, RowChange::Changed);
    const RowValues& row = decision.wanted.at(L"File").rows.at({key});
    EXPECT_NE(row, decision.left.at(L"File").rows.at({key}));
}

TEST_F(DecisionTest, DecidingWritesNothing)
{
    added.AddFile(Source(L"a.txt", "12345"), L"INSTALLDIR");
    const CString gone = AddGoneFile(L"gone.txt");
    PutEarlierCabinet(gone, "123");
    const Tree before = ReadTree(build.Folder().Path());
    EXPECT_TRUE(Decide().IsNeeded());
    const Tree after = ReadTree(build.Folder().Path());
    EXPECT_EQ(NamesOf(after), NamesOf(before));
    EXPECT_TRUE(after == before) << "a file has other bytes";
}

// Whether it is a file, its size, and whether it can be opened.
TEST_F(DecisionTest, EachSourceIsLookedAtOnce)
{
    added.AddFile(Source(L"a.txt", "1"), L"INSTALLDIR");
    const long long withOne = OperationsOfACheck();
    added.AddFile(Source(L"b.txt", "2"), L"INSTALLDIR");
    EXPECT_EQ(OperationsOfACheck() - withOne, 3);
}

// ---- refused before anything is written ----------------------------------------------------------------------------

TEST_F(DecisionTest, ANameThatWindowsCannotHoldIsRefusedBeforehand)
{
    build.plan.strName = L"nul.txt";
    ExpectRefused(ERROR_INVALID_NAME, {L"Choose another name."});
}

TEST_F(DecisionTest, ALocationInsideTheMediaIsRefusedBeforehand)
{
    build.plan.strLocation = build.Media() + L"\\x64\\Zolt\\Empty";
    ExpectRefused(ERROR_BAD_PATHNAME, {L"lies inside the media"});
}

TEST_F(DecisionTest, MediaThatAreGoneAreRefusedBeforehand)
{
    build.plan.folders[0].strSource += L"\\gone";
    ExpectRefused(ERROR_PATH_NOT_FOUND, {L"\\gone"});
}

TEST_F(DecisionTest, TwoSourcesForOneFileAreRefusedBeforehand)
{
    build.plan.files.push_back({build.Media() + L"\\x64\\Zolt\\readme.txt", L"Install.cmd"});
    ExpectRefused(ERROR_BAD_PATHNAME, {L"would become \"Install.cmd\""});
}

// The clash was found when the cabinet was written, behind all copying.
TEST_F(DecisionTest, AFileInTheCabinetsPlaceIsRefusedBeforehand)
{
    const CString target = L"Image\\x64\\Zolt\\tarn0001.CAB";
    build.plan.files.push_back({build.Media() + L"\\x64\\Zolt\\readme.txt", target});
    added.AddFile(Source(L"a.txt", "1"), L"INSTALLDIR");
    ExpectRefused(ERROR_BAD_PATHNAME, {L"readme.txt\" and \"the files added to Zolt 2027\" would become"});
}

TEST_F(DecisionTest, AFolderNameBeyondTheCodePageIsRefusedBeforehand)
{
    added.AddFolder(L"\x4E2D", L"INSTALLDIR");
    ExpectRefused(ERROR_NO_UNICODE_TRANSLATION, {L"\x4E2D", L"Directory"});
}

TEST_F(ShortcutDecisionTest, ANameOfAShortcutBeyondTheCodePageIsRefusedBeforehandByItsName)
{
    AddShortcut(L"Dessin \x00E9t\x00E9 d'Anne", L"/p x");
    EXPECT_TRUE(Decide().IsNeeded()) << "its letters are all there";
    AddShortcut(L"\x4E2D plan", L"/b");
    ExpectRefused(ERROR_NO_UNICODE_TRANSLATION, {L"letters of \"\x4E2D plan\"", L"table Shortcut"});
}

TEST_F(ShortcutDecisionTest, ACommandOfAShortcutBeyondTheCodePageIsRefusedBeforehand)
{
    AddShortcut(L"Plan", L"/p \x4E2D");
    ExpectRefused(ERROR_NO_UNICODE_TRANSLATION, {L"letters of \"/p \x4E2D\"", L"table Shortcut"});
}

TEST_F(DecisionTest, ADamagedOriginalIsRefusedBeforehand)
{
    WriteBytes(build.plan.databases[0].strOriginal, "not a database");
    const BuildResult result = build.Build();
    EXPECT_NE(result.error.code, 0u);
    ExpectRefused(result.error.code, {build.plan.databases[0].strOriginal});
}

// Another program's file was found when it was packed.
TEST_F(DecisionTest, ASourceThatIsLockedIsRefusedBeforehand)
{
    const CString source = Source(L"locked.txt", "1234");
    added.AddFile(source, L"INSTALLDIR");
    const CFileOwner lock = OpenAlone(source, false);
    ASSERT_TRUE(lock);
    ExpectRefused(ERROR_SHARING_VIOLATION, {source, L"Close it there"});
}

// With any cabinet beside the package the file was searched in it behind all copying.
TEST_F(DecisionTest, AFileThatIsInNoEarlierCabinetIsRefusedBeforehand)
{
    AddGoneFile(L"gone.txt");
    PutEarlierCabinet(L"TARN_OTHER", "123");
    ExpectRefused(ERROR_FILE_NOT_FOUND, {L"gone.txt", L"Put it back, or remove it"});
}

TEST_F(DecisionTest, AnEarlierCabinetThatIsDamagedIsRefusedBeforehand)
{
    AddGoneFile(L"gone.txt");
    WriteBytes(PackageFolder() + L"\\TARN0001.cab", "not a cabinet");
    ExpectRefused(ERROR_WRITE_FAULT, {L"TARN0001.cab"});
}

class FullMediaTest : public DecisionTest
{
protected:
    FullMediaTest()
        : DecisionTest(
              {L"DELETE FROM `Media`", L"INSERT INTO `Media` (`DiskId`,`LastSequence`) VALUES (32767,1)"})
    {
    }
};

TEST_F(FullMediaTest, AProductWithoutAFreeMediumIsRefusedBeforehand)
{
    added.AddFile(Source(L"a.txt", "1"), L"INSTALLDIR");
    ExpectRefused(ERROR_INSTALL_FAILURE, {L"the medium 32767", L"Remove the additional files"});
}

class NoMediaTest : public DecisionTest
{
protected:
    NoMediaTest() : DecisionTest({L"DROP TABLE `Media`"}) {}
};

TEST_F(NoMediaTest, AProductWithoutTheTableOfMediaIsRefusedBeforehand)
{
    added.AddFile(Source(L"a.txt", "1"), L"INSTALLDIR");
    ExpectRefused(ERROR_INSTALL_FAILURE, {L"no table Media"});
}

// ---- what stands in the target's place -----------------------------------------------------------------------------

TEST_F(DecisionTest, AFolderInTheTargetsPlaceIsRefusedBeforehand)
{
    MakeFolders(build.Target());
    WriteBytes(build.Target() + L"\\thesis.doc", "years of work");
    ExpectRefused(ERROR_ALREADY_EXISTS, {build.Target()});
}

// The swap found it, when the whole deployment had been copied.
TEST_F(DecisionTest, AnOldDeploymentInUseIsRefusedBeforehand)
{
    BuildIt();
    build.AllowReplacing();
    const CString inUse = build.Target() + L"\\Image\\x64\\Zolt\\readme.txt";
    const CFileOwner lock = OpenAlone(inUse, false);
    ASSERT_TRUE(lock);
    const BuildResult result = build.Build();
    EXPECT_EQ(result.error.code, unsigned{ERROR_SHARING_VIOLATION});
    EXPECT_GE(result.error.message.Find(inUse), 0) << Utf8(result.error.message);
    EXPECT_EQ(build.steps.back(), L"Checking the location and the media");
    std::vector<CString> reported;
    EXPECT_EQ(Utf8(CheckBuild(build.plan, reported).message), Utf8(result.error.message));
}

// Each of its files is opened, which takes minutes on a slow share.
TEST_F(DecisionTest, ACancelIsNoticedWhileTheFilesOfTheOldDeploymentAreOpened)
{
    BuildIt();
    build.AllowReplacing();
    build.plan.folders[0].strSource = sources / L"gone"; // what is looked at next, and would fail
    build.onProgress = [](std::uint64_t, std::uint64_t) { return false; };
    const BuildResult result = build.Build();
    EXPECT_EQ(result.error.code, unsigned{BUILD_CANCELLED}) << Utf8(result.error.message);
}

TEST_F(DecisionTest, ABuildUnderWayIsReportedByTheCheck)
{
    const CString path = build.Location() + L"\\.Office.build-lock";
    const CFileOwner lock = OpenAlone(path, true);
    ASSERT_TRUE(lock);
    std::vector<CString> reported;
    const OperationError checked = CheckBuild(build.plan, reported);
    EXPECT_EQ(checked.code, unsigned{ERROR_BUSY});
    EXPECT_EQ(Utf8(checked.message), Utf8(build.Build().error.message));
}

TEST_F(DecisionTest, WhatStandsInTheLocksPlaceIsRefusedBeforehand)
{
    const CString path = build.Location() + L"\\.Office.build-lock";
    MakeFolders(path);
    ExpectRefused(ERROR_ALREADY_EXISTS, {path, L"stands where a build writes its lock file"});
    RemoveDirectoryW(path);
    WriteBytes(path, "my own notes");
    ExpectRefused(ERROR_ALREADY_EXISTS, {path, L"is not this program's"});
}

TEST_F(DecisionTest, TheLockOfADeadBuildRefusesNothing)
{
    WriteBytes(build.Location() + L"\\.Office.build-lock", "");
    std::vector<CString> reported;
    EXPECT_EQ(CheckBuild(build.plan, reported).code, 0u);
    EXPECT_TRUE(Exists(build.Location() + L"\\.Office.build-lock")) << "the check cleared it";
}

} // namespace
