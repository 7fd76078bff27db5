// Files, folders and drives that were added to a product really arrive on a workstation, and go again.
#include "builder/build_names.h"
#include "builder/cabinet.h"
#include "builder/database_snapshot.h"
#include "builder/file_operations.h"
#include "tests/host/additions_build.h"
#include "tests/host/outside_links.h"

#include <windows.h>

#include <winioctl.h>

#include <msi.h>
#include <msiquery.h>
#include <objidl.h>

#include <algorithm>
#include <set>

namespace {

enum class Form
{
    Loose,      // the package isn't compressed
    Compressed, // the product's files lie in a cabinet
};

void SetWordCount(MSIHANDLE database, int words)
{
    MSIHANDLE summary = 0;
    ASSERT_EQ(MsiGetSummaryInformationW(database, nullptr, 1, &summary), 0u);
    EXPECT_EQ(MsiSummaryInfoSetPropertyW(summary, 15, VT_I4, words, nullptr, nullptr), 0u);
    EXPECT_EQ(MsiSummaryInfoPersist(summary), 0u);
    MsiCloseHandle(summary);
}

// The product's readme.txt goes into a cabinet of the vendor's.
void Compress(const CString& path)
{
    MSIHANDLE database = 0;
    ASSERT_EQ(MsiOpenDatabaseW(path, MSIDBOPEN_TRANSACT, &database), 0u);
    EXPECT_EQ(RunSql(database, L"UPDATE `File` SET `Attributes`=0"), 0u);
    EXPECT_EQ(RunSql(database, L"UPDATE `Media` SET `Cabinet`='vendor.cab'"), 0u);
    SetWordCount(database, 2);
    EXPECT_EQ(MsiDatabaseCommit(database), 0u);
    MsiCloseHandle(database);
    const CString readme = path + L".readme";
    WriteBytes(readme, "hello\n");
    std::vector<CabinetMember> members = {{L"Readme", readme, 0}};
    WriteCabinet(FolderAbove(path) + L"\\vendor.cab", members, [](std::uint64_t) {});
    DeleteFileW(readme);
}

ProductOptions OptionsFor(Form form)
{
    ProductOptions options;
    options.bytesOfLargeFile = 1000;
    options.prepare = [form](const CString& path) {
        MakeAdditionTables(path);
        if (form == Form::Compressed) {
            Compress(path);
        }
    };
    return options;
}

class UserFilesTest : public testing::TestWithParam<Form>, protected AdditionsBuild
{
protected:
    UserFilesTest() : AdditionsBuild(OptionsFor(GetParam())) {}
};

INSTANTIATE_TEST_SUITE_P(Packages, UserFilesTest, testing::Values(Form::Loose, Form::Compressed),
                         [](const auto& form) {
                             return std::string(form.param == Form::Loose ? "Loose" : "Compressed");
                         });

TEST_P(UserFilesTest, FilesAndFoldersArriveAndGo)
{
    const CString deep = added.AddFolder(L"It's one folder", L"INSTALLDIR");
    const CString inner = added.AddFolder(L"inner", deep);
    added.AddFolder(L"Empty", L"INSTALLDIR");
    added.AddFile(Source(L"a\\logo.txt", "first"), L"INSTALLDIR");
    const CString gone = added.AddFile(Source(L"x\\removed.txt", "removed"), deep);
    added.AddFile(Source(L"b\\logo.txt", "the second"), deep);
    added.RemoveFile(deep, gone);
    added.AddFile(Source(L"c\\logo.txt", std::string(100000, 'c')), inner);
    BuildIt();
    Install();
    Tree expected;
    expected[L"readme.txt"] = "hello\n";
    expected[L"logo.txt"] = "first";
    expected[L"Empty\\"] = "";
    expected[L"It's one folder\\"] = "";
    expected[L"It's one folder\\logo.txt"] = "the second";
    expected[L"It's one folder\\inner\\"] = "";
    expected[L"It's one folder\\inner\\logo.txt"] = std::string(100000, 'c');
    const Tree found = ReadTree(ProgramFolder());
    EXPECT_EQ(NamesOf(found), NamesOf(expected));
    EXPECT_TRUE(found == expected) << "a file has other bytes";
    EXPECT_EQ(Uninstall(), 0u);
    EXPECT_EQ(NamesOf(ReadTree(ProgramFolder())), "");
    EXPECT_FALSE(Exists(ProgramFolder()));
}

TEST_P(UserFilesTest, FilesOnADriveArriveOnThatDrive)
{
    const CString folder = build.Folder() / L"drive of the workstation";
    MakeFolders(folder);
    const LinkedDrive letter(L"X:", folder);
    if (!letter.IsThere()) {
        GTEST_SKIP() << "drives are made by a link of the prefix, which this system doesn't have";
    }
    const CString drive = added.AddDrive(L"x:");
    const CString shared = added.AddFolder(L"Shared", drive);
    added.AddFile(Source(L"on drive.txt", "on the drive"), drive);
    added.AddFile(Source(L"in folder.txt", "in the folder"), shared);
    BuildIt();
    Install();
    Tree expected;
    expected[L"on drive.txt"] = "on the drive";
    expected[L"Shared\\"] = "";
    expected[L"Shared\\in folder.txt"] = "in the folder";
    const Tree found = ReadTree(folder);
    EXPECT_TRUE(found == expected) << NamesOf(found);
    EXPECT_EQ(Uninstall(), 0u);
    EXPECT_EQ(NamesOf(ReadTree(folder)), "");
}

TEST_P(UserFilesTest, EmptyReadOnlyAndStrangelyNamedFilesArrive)
{
    Tree expected;
    expected[L"readme.txt"] = "hello\n";
    const auto add = [&](const CString& folder, const CString& name, const std::string& bytes) {
        const CString path = Source(folder + name, bytes);
        added.AddFile(path, L"INSTALLDIR");
        expected[name] = bytes;
        return path;
    };
    add(L"", L"empty.txt", "");
    SetFileAttributesW(add(L"", L"read only.txt", "kept"), FILE_ATTRIBUTE_READONLY);
    add(L"", L"it's 100% [INSTALLDIR] & co, (B\x00FCro).txt", "name");
    // The path of the source never leaves this computer, so its letters don't matter.
    add(L"\x0141\x00F3"
        L"d\x017A \x4E2D\\",
        L"plain.txt", "path");
    BuildIt();
    Install();
    const Tree found = ReadTree(ProgramFolder());
    EXPECT_TRUE(found == expected) << NamesOf(found);
    EXPECT_EQ(Uninstall(), 0u);
    EXPECT_FALSE(Exists(ProgramFolder()));
}

TEST_P(UserFilesTest, ThreeHundredFilesArrive)
{
    Tree expected;
    expected[L"readme.txt"] = "hello\n";
    for (int number = 0; number < 300; ++number) {
        const CString name = L"file " + NumberText(number) + L".txt";
        expected[name] =
            std::string(static_cast<std::size_t>(number * 37), static_cast<char>('a' + number % 26));
        added.AddFile(Source(name, expected[name]), L"INSTALLDIR");
    }
    BuildIt();
    Install();
    const Tree found = ReadTree(ProgramFolder());
    EXPECT_TRUE(found == expected) << NamesOf(found);
}

TEST_P(UserFilesTest, TheOpenDatabaseStaysAsThePagesLeftIt)
{
    const CString source = Source(L"a.txt", "1234");
    const CString key = added.AddFile(source, L"INSTALLDIR");
    BuildIt();
    const CString copy = build.Folder() / L"copy.msi";
    ASSERT_TRUE(CopyFileW(build.plan.databases[0].strWorkingCopy, copy, TRUE));
    for (const CString& database : {copy, build.Database()}) {
        const bool built = !(database == copy);
        const CString where = L" WHERE `File`='" + key + L"'";
        EXPECT_EQ(QueryText(database, L"SELECT `Attributes` FROM `File`" + where),
                  CString(built && GetParam() == Form::Loose ? L"16384" : L"0"));
        EXPECT_EQ(QueryText(database, L"SELECT `FileSize` FROM `File`" + where), CString(L"4"));
        EXPECT_EQ(QueryText(database, L"SELECT `SourceFileName` FROM `TarnCustomFile`"),
                  built ? CString(L"a.txt") : source);
        EXPECT_EQ(QueryText(database, L"SELECT `DiskId` FROM `Media` WHERE `Cabinet`='TARN0001.cab'"),
                  CString(built ? L"2" : L"(none)"));
    }
}

TEST_P(UserFilesTest, CollidingNumbersAreCorrectedAndFollowTheProducts)
{
    added.AddFile(Source(L"1.txt", "1"), L"INSTALLDIR");
    const CString second = added.AddFile(Source(L"2.txt", "22"), L"INSTALLDIR");
    added.AddFile(Source(L"3.txt", "333"), L"INSTALLDIR");
    added.RemoveFile(L"INSTALLDIR", second);
    added.AddFile(Source(L"4.txt", "4444"), L"INSTALLDIR"); // gets the number of the third
    BuildIt();
    const CString query = L"SELECT `FileName` FROM `File` WHERE `Sequence`=";
    EXPECT_EQ(QueryText(build.Database(), query + L"1"), CString(L"readme.txt"));
    std::set<CString> names;
    for (const wchar_t* number : {L"2", L"3", L"4"}) {
        names.insert(QueryText(build.Database(), query + number));
    }
    EXPECT_EQ(names, (std::set<CString>{L"1.txt|1.txt", L"3.txt|3.txt", L"4.txt|4.txt"}));
    EXPECT_EQ(QueryText(build.Database(), L"SELECT `LastSequence` FROM `Media` WHERE `DiskId`=2"),
              CString(L"4"));
}

TEST_P(UserFilesTest, ASecondBuildReplacesCabinetAndMediaRow)
{
    added.AddFile(Source(L"1.txt", "first"), L"INSTALLDIR");
    BuildIt();
    build.AllowReplacing();
    added.AddFile(Source(L"2.txt", "second"), L"INSTALLDIR");
    BuildIt();
    EXPECT_EQ(QueryText(build.Database(), L"SELECT `LastSequence` FROM `Media` WHERE `DiskId`=2"),
              CString(L"3"));
    EXPECT_EQ(QueryText(build.Database(), L"SELECT `DiskId` FROM `Media` WHERE `DiskId`=3"),
              CString(L"(none)"));
    Install();
    EXPECT_EQ(ReadBytes(ProgramFolder() + L"\\2.txt"), "second");
}

TEST_P(UserFilesTest, TheReportListsTheRowsAndTheManifestTheCabinet)
{
    const CString key = added.AddFile(Source(L"1.txt", "first"), L"INSTALLDIR");
    BuildIt();
    const std::string changes = ReadBytes(build.Target() + L"\\Changes.txt");
    for (const std::string& line :
         {"File: " + Utf8(key) + " added", std::string("Media: 2 added"), std::string("\"TARN0001.cab\""),
          "TarnCustomFile: " + Utf8(key) + " added", std::string("Feature: _UserDeploymentFile added")}) {
        EXPECT_NE(changes.find(line), std::string::npos) << line << " is missing in\n" << changes;
    }
    EXPECT_EQ(changes.find(Utf8(sources.Path())), std::string::npos) << "a path of this computer is reported";
    const std::string manifest = ReadBytes(build.Target() + L"\\Manifest.txt");
    EXPECT_NE(manifest.find("Image\\x64\\Zolt\\TARN0001.cab"), std::string::npos) << manifest;
}

TEST_P(UserFilesTest, TheNotesNameEveryAdditionWithItsTargetAndItsSource)
{
    const CString folder = added.AddFolder(L"Company", L"INSTALLDIR");
    const CString source = Source(L"1.txt", "first");
    added.AddFile(source, folder);
    added.AddFile(Source(L"2.txt", "second"), added.AddDrive(L"q:"));
    BuildIt();
    const std::string notes = ReadBytes(build.Target() + L"\\Additions.txt");
    EXPECT_NE(
        notes.find("  <Installation Directory>\\Company (added folder)\r\n      1.txt, 5 bytes, from \"" +
                   Utf8(source) + "\"\r\n"),
        std::string::npos)
        << notes;
    EXPECT_NE(notes.find("  Q: (added drive)\r\n      2.txt, 6 bytes"), std::string::npos) << notes;
    EXPECT_NE(ReadBytes(build.Target() + L"\\Manifest.txt").find("Additions.txt"), std::string::npos);
    EXPECT_NE(ReadBytes(build.Target() + L"\\ReadMe.txt").find("Additions.txt"), std::string::npos);
}

TEST_P(UserFilesTest, ADeploymentWithoutAdditionsHasNoNotesOfThem)
{
    BuildIt();
    EXPECT_FALSE(Exists(build.Target() + L"\\Additions.txt"));
    EXPECT_EQ(ReadBytes(build.Target() + L"\\ReadMe.txt").find("Additions.txt"), std::string::npos);
}

TEST_P(UserFilesTest, TheFeatureIsThereForEveryProduct)
{
    added.AddFile(Source(L"1.txt", "first"), L"INSTALLDIR");
    build.Change(L"DELETE FROM `Feature` WHERE `Feature`='_UserDeploymentFile'"); // as for a second product
    BuildIt();
    Install();
    EXPECT_EQ(ReadBytes(ProgramFolder() + L"\\1.txt"), "first");
}

// ---- what is refused or reported -----------------------------------------------------------------------------------

class RefusedFilesTest : public UserFilesTest
{
protected:
    // The tables of the built database, but that of directories, in which a row names the key.
    CString BuiltRowsNaming(const CString& key)
    {
        const CInstallerHandle database = OpenDatabaseToRead(build.Database());
        CString tables;
        for (const auto& [name, table] : ReadSnapshot(database.get(), build.Database(), [] {})) {
            for (const auto& row : table.rows) {
                const bool named = std::count(row.second.begin(), row.second.end(), key) != 0;
                if (named && !(name == L"Directory")) {
                    tables += name + L" ";
                }
            }
        }
        return tables;
    }
    void ExpectRefused(unsigned int code, const std::vector<CString>& words)
    {
        const BuildResult result = build.Build();
        EXPECT_EQ(result.error.code, code) << Utf8(result.error.message);
        for (const CString& word : words) {
            EXPECT_GE(result.error.message.Find(word), 0)
                << Utf8(word) << " is missing in: " << Utf8(result.error.message);
        }
        EXPECT_FALSE(Exists(build.Target()));
        EXPECT_TRUE(Leftovers(build.Location(), build.plan.strName).empty());
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
};

INSTANTIATE_TEST_SUITE_P(Packages, RefusedFilesTest, testing::Values(Form::Loose),
                         [](const auto&) { return std::string("Loose"); });

TEST_P(RefusedFilesTest, ASourceThatIsGoneIsNamedBeforeAnythingIsWritten)
{
    const CString source = Source(L"gone.txt", "1");
    added.AddFile(source, L"INSTALLDIR");
    DeleteFileW(source);
    std::vector<CString> warned;
    const OperationError error = CheckBuild(build.plan, warned);
    EXPECT_EQ(error.code, 2u);
    EXPECT_GE(error.message.Find(source), 0) << Utf8(error.message);
    ExpectRefused(2, {source, L"Zolt 2027", L"Put it back, or remove it from the additional files"});
    EXPECT_EQ(build.steps.size(), 1u) << "more was done than checking";
}

TEST_P(RefusedFilesTest, AChangedSourceIsTakenAsItIsNowAndReported)
{
    const CString source = Source(L"changed.txt", "1234");
    const CString key = added.AddFile(source, L"INSTALLDIR");
    WriteBytes(source, "now longer");
    BuildIt();
    ExpectWarned(L"4 bytes then, and has 10 now");
    EXPECT_EQ(QueryText(build.Database(), L"SELECT `FileSize` FROM `File` WHERE `File`='" + key + L"'"),
              CString(L"10"));
    Install();
    EXPECT_EQ(ReadBytes(ProgramFolder() + L"\\changed.txt"), "now longer");
}

TEST_P(RefusedFilesTest, AFileThatGrowsDuringTheBuildHasTheSizeThatWentIn)
{
    added.AddFile(Source(L"large.bin", std::string(64 << 20, 'x')), L"INSTALLDIR");
    const CString source = Source(L"growing.txt", "1234");
    const CString key = added.AddFile(source, L"INSTALLDIR");
    bool grown = false;
    build.onProgress = [&](std::uint64_t, std::uint64_t) {
        if (!grown && !build.steps.empty() && build.steps.back().Find(L"Packing") == 0) {
            WriteBytes(source, "grown by now");
            grown = true;
        }
        return true;
    };
    BuildIt();
    EXPECT_TRUE(grown);
    EXPECT_EQ(QueryText(build.Database(), L"SELECT `FileSize` FROM `File` WHERE `File`='" + key + L"'"),
              CString(L"12"));
}

TEST_P(RefusedFilesTest, ALockedSourceIsNamedWithTheRemedy)
{
    const CString source = Source(L"locked.txt", "1234");
    added.AddFile(source, L"INSTALLDIR");
    const CFileOwner lock = OpenAlone(source, false);
    ASSERT_TRUE(lock);
    ExpectRefused(32, {source, L"Close it there"});
}

TEST_P(RefusedFilesTest, ANameBeyondTheCodePageIsReported)
{
    const CString name = L"\x0142\x00F3"
                         L"d\x017A.txt";
    added.AddFile(Source(name, "1"), L"INSTALLDIR");
    ExpectRefused(1113, {name, L"1252", L"File"});
}

TEST_P(RefusedFilesTest, AFolderNameBeyondTheCodePageIsReported)
{
    added.AddFolder(L"\x4E2D", L"INSTALLDIR");
    ExpectRefused(1113, {L"\x4E2D", L"Directory"});
}

TEST_P(RefusedFilesTest, TwoFilesThatWouldBecomeOneAreRefused)
{
    const CString first = Source(L"a\\same.txt", "1");
    const CString second = Source(L"b\\SAME.txt", "2");
    added.AddFile(first, L"INSTALLDIR");
    added.AddFile(second, L"INSTALLDIR");
    ExpectRefused(183, {first, second, L"Remove one of them"});
}

// Renamed folders meet without a word of the page, and one file would be lost on every workstation.
TEST_P(RefusedFilesTest, FilesThatMeetInTwoFoldersOfOneNameAreRefused)
{
    const CString first = Source(L"a\\same.txt", "1");
    const CString second = Source(L"b\\same.txt", "2");
    added.AddFile(first, added.AddFolder(L"Company", L"INSTALLDIR"));
    added.AddFile(second, added.AddFolder(L"COMPANY", L"INSTALLDIR"));
    ExpectRefused(183, {first, second, L"Remove one of them"});
    EXPECT_EQ(build.steps.size(), 1u) << "more was done than checking";
}

TEST_P(RefusedFilesTest, AFolderInThePlaceOfAFileIsRefused)
{
    added.AddFolder(L"readme.txt", L"INSTALLDIR");
    ExpectRefused(183, {L"\"readme.txt\"", L"Zolt 2027", L"Rename the folder"});
    EXPECT_EQ(build.steps.size(), 1u) << "more was done than checking";
}

// Without its step the installer would make a folder DRIVE_Q on some other drive.
TEST_P(RefusedFilesTest, AFileOnADriveThatWasAddedHalfIsLeftOutAndReported)
{
    const CString drive = L"TARN_0D7A5C1E_0000_4000_8000_000000000001";
    build.Change(L"INSERT INTO `Directory` (`Directory`,`Directory_Parent`,`DefaultDir`) VALUES ('" + drive +
                 L"','TARGETDIR','DRIVE_Q')");
    build.Change(L"INSERT INTO `CustomAction` (`Action`,`Type`,`Source`,`Target`) VALUES ('" + drive +
                 L"',51,'" + drive + L"','Q:')");
    const CString lost = added.AddFile(Source(L"on drive.txt", "1"), drive);
    added.AddFile(Source(L"whole.txt", "2"), L"INSTALLDIR");
    BuildIt();
    ExpectWarned(L"\"on drive.txt\"");
    EXPECT_EQ(BuiltRowsNaming(lost), L"");
    const std::string notes = ReadBytes(build.Target() + L"\\Additions.txt");
    EXPECT_NE(notes.find("Left out\r\n      The addition \"on drive.txt\""), std::string::npos) << notes;
}

TEST_P(RefusedFilesTest, ASourcePathOfAnyLengthIsRefusedInWords)
{
    added.AddFile(sources / CString(L'n', 70000), L"INSTALLDIR");
    const BuildResult result = build.Build();
    EXPECT_NE(result.error.code, 0u);
    EXPECT_FALSE(result.error.message.IsEmpty());
    EXPECT_FALSE(Exists(build.Target()));
}

TEST_P(RefusedFilesTest, AFileOfMoreThanTwoGigabytesIsRefusedByName)
{
    const CString source = Source(L"huge.bin", "");
    {
        const CFileOwner file = OpenAlone(source, false);
        DWORD bytes = 0; // a hole on the disk
        DeviceIoControl(file.get(), FSCTL_SET_SPARSE, nullptr, 0, nullptr, 0, &bytes, nullptr);
        ASSERT_GT(SeekInFile(file, 3ll << 30, FILE_BEGIN, source), 0u);
        ASSERT_TRUE(SetEndOfFile(file.get())) << GetLastError();
    }
    added.AddFile(source, L"INSTALLDIR");
    ExpectRefused(223, {source, L"3072 MB", L"up to 2032 MB"});
    EXPECT_EQ(build.steps.size(), 1u) << "more was done than checking";
}

TEST_P(RefusedFilesTest, AFileOfTheProductsOwnNameIsTakenAndReported)
{
    added.AddFile(Source(L"README.txt", "ours"), L"INSTALLDIR");
    BuildIt();
    ExpectWarned(L"the product has a file of that name in the same folder");
}

TEST_P(RefusedFilesTest, ADriveThatWorkstationsNeedIsReported)
{
    added.AddFile(Source(L"a.txt", "1"), added.AddDrive(L"q:"));
    BuildIt();
    ExpectWarned(L"without that drive");
    ExpectWarned(L"Q:");
}

TEST_P(RefusedFilesTest, ADriveWithNothingOnItIsReportedToo)
{
    added.AddDrive(L"q:");
    BuildIt();
    ExpectWarned(L"The drive Q:");
}

TEST_P(RefusedFilesTest, AnAdditionThatWasNeverCompletedIsLeftOutAndReported)
{
    const CString half = added.AddFile(Source(L"half.txt", "1"), L"INSTALLDIR");
    added.AddFile(Source(L"whole.txt", "2"), L"INSTALLDIR");
    build.Change(L"DELETE FROM `TarnCustomFile` WHERE `Component_`='" + half + L"'");
    BuildIt();
    ExpectWarned(L"\"half.txt\"");
    ExpectWarned(L"never completed");
    Install();
    EXPECT_EQ(ReadBytes(ProgramFolder() + L"\\whole.txt"), "2");
    EXPECT_FALSE(Exists(ProgramFolder() + L"\\half.txt"));
}

TEST_P(RefusedFilesTest, AFolderThatWasAddedHalfIsLeftOutAndReported)
{
    const CString half = added.AddFolder(L"Half", L"INSTALLDIR");
    for (const wchar_t* table : {L"CreateFolder", L"TarnCustomFile"}) {
        build.Change(CString(L"DELETE FROM `") + table + L"` WHERE `Component_`='" + half + L"'");
    }
    build.Change(L"DELETE FROM `Feature` WHERE `Feature`='_UserDeploymentFile'"); // as for a second product
    BuildIt();
    ExpectWarned(L"\"Half\"");
    EXPECT_EQ(BuiltRowsNaming(half), L"");
    Install();
    EXPECT_FALSE(Exists(ProgramFolder() + L"\\Half"));
}

TEST_P(RefusedFilesTest, AFolderThatWasRemovedHalfIsLeftOutAndReported)
{
    const CString half = added.AddFolder(L"Half", L"INSTALLDIR");
    added.AddFile(Source(L"whole.txt", "2"), L"INSTALLDIR");
    build.Change(L"DELETE FROM `Directory` WHERE `Directory`='" + half + L"'");
    BuildIt();
    ExpectWarned(L"\"Half\"");
    EXPECT_EQ(BuiltRowsNaming(half), L"");
    Install();
    EXPECT_EQ(ReadBytes(ProgramFolder() + L"\\whole.txt"), "2");
    EXPECT_FALSE(Exists(ProgramFolder() + L"\\Half"));
}

TEST_P(RefusedFilesTest, WhatIsLeftOfADriveThatWasRemovedHalfIsLeftOutAndReported)
{
    const CString drive = added.AddDrive(L"q:");
    build.Change(L"DELETE FROM `Directory` WHERE `Directory`='" + drive + L"'");
    build.Change(L"DELETE FROM `CustomAction` WHERE `Action`='" + drive + L"'");
    BuildIt();
    ExpectWarned(L"half removed");
    EXPECT_EQ(BuiltRowsNaming(drive), L"");
    Install();
    EXPECT_EQ(Uninstall(), 0u);
}

TEST_P(RefusedFilesTest, ACancelWhilePackingLeavesNothing)
{
    added.AddFile(Source(L"large.bin", std::string(64 << 20, 'x')), L"INSTALLDIR");
    bool packing = false;
    build.onProgress = [&](std::uint64_t, std::uint64_t) {
        packing = packing || (!build.steps.empty() && build.steps.back().Find(L"Packing") == 0);
        return !packing;
    };
    ExpectRefused(1602, {L"canceled"});
    EXPECT_TRUE(packing);
}

} // namespace
