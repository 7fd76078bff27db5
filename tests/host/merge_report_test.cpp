// What a build with merged patches writes about them, and that the administrator's own changes come on top.
#include "builder/content_hash.h"
#include "builder/database_snapshot.h"
#include "tests/host/merge_build.h"
#include "tests/host/user_additions.h"

#include <msi.h>
#include <msiquery.h>

namespace {

CString PropertyOf(const CString& database, const CString& name)
{
    return QueryText(database, L"SELECT `Value` FROM `Property` WHERE `Property`='" + name + L"'");
}

class MergeReportTest : public testing::Test
{
protected:
    std::string Text(const CString& name) const { return ReadBytes(build.Target() + L"\\" + name); }
    // The part of Changes.txt before the patches, and what follows.
    std::pair<std::string, std::string> Parts() const
    {
        const std::string text = Text(L"Changes.txt");
        const std::size_t patches = text.find("\r\n  Merged patch: ");
        EXPECT_NE(patches, std::string::npos) << text;
        return {text.substr(0, patches), text.substr(patches)};
    }
    static void ExpectHolds(const std::string& text, const std::string& part)
    {
        EXPECT_NE(text.find(part), std::string::npos) << part << " is missing in:\n" << text;
    }
    static void ExpectLacks(const std::string& text, const std::string& part)
    {
        EXPECT_EQ(text.find(part), std::string::npos) << part << " stands in:\n" << text;
    }
    MergeBuild build{L"beside"};
};

TEST_F(MergeReportTest, ListsThePatchesApartFromTheSettings)
{
    build.Change(L"INSERT INTO `Property` (`Property`,`Value`) VALUES ('MINE','1')");
    build.Merge(L"First", FIRST_PATCH_CODE);
    build.Merge(L"Second", SECOND_PATCH_CODE);
    build.BuildIt();
    const auto [settings, patches] = Parts();
    ExpectHolds(settings, "  The settings, beyond what the merged patches below change:\r\n"
                          "  Rows added: 1, changed: 0, removed: 0\r\n");
    ExpectHolds(settings, "  Property: MINE added\r\n");
    ExpectLacks(settings, "ProductVersion");
    ExpectHolds(patches, "  Merged patch: First (First.msp, " + Utf8(FIRST_PATCH_CODE) +
                             ")\r\n  Version: 1.0.0 -> 1.0.1\r\n  Rows added: ");
    ExpectHolds(patches, "  Merged patch: Second (Second.msp, " + Utf8(SECOND_PATCH_CODE) +
                             ")\r\n  Version: 1.0.1 -> 1.0.2\r\n  Rows added: ");
    ExpectHolds(patches, "  File: SUPPORTDIR_added_file_txt added\r\n");
    ExpectHolds(patches, "      Value: \"1.0.0\" -> \"1.0.1\"\r\n");
    ExpectHolds(patches, "      Value: \"1.0.1\" -> \"1.0.2\"\r\n");
    ExpectLacks(patches, "MINE");
    const std::string json = Text(L"Changes.json");
    ExpectHolds(
        json,
        "\"patches\": [\r\n      {\"name\": \"First\", \"file\": \"First.msp\", \"code\": \"" +
            Utf8(FIRST_PATCH_CODE) +
            "\", \"oldVersion\": \"1.0.0\", \"newVersion\": \"1.0.1\", \"rows\": [\r\n        {\"table\": ");
    ExpectHolds(json, "},\r\n      {\"name\": \"Second\"");
    ExpectHolds(Text(L"Build.log"), "Patch merged: First (First.msp, " + Utf8(FIRST_PATCH_CODE) +
                                        "), version 1.0.0 -> 1.0.1\r\n");
}

TEST_F(MergeReportTest, ShowsTheNewVersionInCommandsAndNotes)
{
    build.Merge(L"First", FIRST_PATCH_CODE);
    build.BuildIt();
    const std::string readMe = Text(L"ReadMe.txt");
    ExpectHolds(readMe, "Version:        1.0.1\r\n");
    ExpectHolds(readMe, "version equal to or above 1.0.1\r\n");
    ExpectLacks(readMe, "1.0.0\r\n");
    ExpectHolds(Text(L"Install.cmd"), "_1.0.1_Install_");
}

TEST_F(MergeReportTest, HasNoPartForPatchesWithoutAny)
{
    build.Change(L"INSERT INTO `Property` (`Property`,`Value`) VALUES ('MINE','1')");
    build.BuildIt();
    ExpectLacks(Text(L"Changes.txt"), "atch: ");
    ExpectLacks(Text(L"Changes.txt"), "atches");
    ExpectLacks(Text(L"Changes.json"), "patches");
}

TEST_F(MergeReportTest, NamesAPatchWithoutANameByItsFile)
{
    build.MergeFile(PatchFixture(L"NoMetadata.msp"), NO_METADATA_PATCH_CODE);
    build.BuildIt();
    ExpectHolds(Text(L"Changes.txt"), "Merged patch: NoMetadata.msp (NoMetadata.msp, ");
}

TEST_F(MergeReportTest, ShowsAHostileNameOnOneShortLine)
{
    build.MergeFile(PatchFixture(L"HostileName.msp"), HOSTILE_NAME_PATCH_CODE);
    build.BuildIt();
    const auto [settings, patches] = Parts();
    const std::string line = patches.substr(2, patches.find("\r\n", 2) - 2);
    ExpectHolds(line, "Merged patch: A \"quoted\" & <marked> %s %1 name");
    ExpectHolds(line, " (HostileName.msp, ");
    EXPECT_LT(line.size(), 400u);
    ExpectLacks(line, "\xE2\x80\xAE"); // the mark of direction
}

TEST_F(MergeReportTest, KeepsWhatTheAdministratorChoseInAChangedRow)
{
    ASSERT_EQ(PropertyOf(build.Original(), L"TOLD"), L"as it was");
    build.Change(L"UPDATE `Property` SET `Value`='my own' WHERE `Property`='TOLD'");
    build.Merge(L"First", FIRST_PATCH_CODE);
    build.BuildIt();
    EXPECT_EQ(PropertyOf(build.Database(), L"TOLD"), L"my own");
    const auto [settings, patches] = Parts();
    ExpectHolds(settings, "  Property: TOLD changed\r\n      Value: \"by 1.0.1\" -> \"my own\"\r\n");
    ExpectHolds(patches, "      Value: \"as it was\" -> \"by 1.0.1\"\r\n");
}

TEST_F(MergeReportTest, KeepsARowAwayThatTheAdministratorRemoved)
{
    build.Change(L"DELETE FROM `Property` WHERE `Property`='TOLD'");
    build.Merge(L"First", FIRST_PATCH_CODE);
    build.BuildIt();
    EXPECT_EQ(PropertyOf(build.Database(), L"TOLD"), L"(none)");
}

TEST_F(MergeReportTest, WarnsOfAChangeThatAPatchLeavesNoRowFor)
{
    build.Change(L"UPDATE `File` SET `Attributes`=1 WHERE `File`='INSTALLDIR_kept_txt'");
    build.Merge(L"Unusual", L"{7C1E0001-2B5D-4E0C-9D41-3A6F00000041}");
    build.BuildIt();
    ASSERT_EQ(build.warnings.size(), 1u);
    EXPECT_EQ(
        Utf8(build.warnings.front()),
        "The change of the row \"INSTALLDIR_kept_txt\" in the table File of \"Patch Test\" was left out "
        "because the patch \"Unusual.msp\" removes the row.");
    ExpectHolds(Text(L"Build.log"), Utf8(build.warnings.front()));
    ExpectHolds(Parts().first, "  Note: " + Utf8(build.warnings.front()) + "\r\n");
}

TEST_F(MergeReportTest, LeavesTheWorkingCopyAsThePagesKnowIt)
{
    build.Merge(L"First", FIRST_PATCH_CODE);
    build.BuildIt();
    const DatabaseSnapshot open = ReadTables(build.Product().hDatabase, L"work.msi", {L"Property"});
    EXPECT_EQ(open.at(L"Property").rows.at({L"ProductVersion"})[1], L"1.0.0");
    build.plan.strName = L"Again";
    build.BuildIt();
    EXPECT_EQ(PropertyOf(build.Database(), L"ProductVersion"), L"1.0.1");
}

TEST_F(MergeReportTest, LeavesOutWhatANewerPatchStandsInFor)
{
    const CString newer = PatchFixture(L"Superseding.msp");
    build.Merge(L"First", FIRST_PATCH_CODE);
    build.MergeFile(newer, SUPERSEDING_PATCH_CODE);
    build.Product().patches = {
        {PatchFixture(L"beside\\First.msp"), L"First.msp", FIRST_PATCH_CODE, L"", L"",
         ListedPatch::Use::Merged},
        {newer, L"Superseding.msp", SUPERSEDING_PATCH_CODE, L"", L"", ListedPatch::Use::Merged}};
    build.BuildIt();
    ASSERT_EQ(build.warnings.size(), 1u);
    EXPECT_EQ(Utf8(build.warnings.front()), Utf8(L"The patch \"" + PatchFixture(L"beside\\First.msp") +
                                                 L"\" was left out because \"Newer\" replaces it."));
    ExpectHolds(Text(L"Changes.txt"), Utf8(SUPERSEDING_PATCH_CODE));
    ExpectLacks(Text(L"Changes.txt"), Utf8(FIRST_PATCH_CODE));
    ExpectLacks(Text(L"ReadMe.txt"), Utf8(FIRST_PATCH_CODE));
    ExpectHolds(Text(L"ReadMe.txt"), Utf8(SUPERSEDING_PATCH_CODE));
}

TEST_F(MergeReportTest, ListsOnlyTheBytesThatAreThere)
{
    build.Merge(L"First", FIRST_PATCH_CODE);
    build.BuildIt();
    EXPECT_EQ(
        QueryText(build.Database(), L"SELECT `FileSize` FROM `File` WHERE `File`='INSTALLDIR_replaced_txt'"),
        L"29");
    EXPECT_EQ(QueryText(build.Database(), L"SELECT `LastSequence` FROM `Media` WHERE `DiskId`=1"), L"4");
    EXPECT_EQ(QueryText(build.Database(),
                        L"SELECT `Sequence` FROM `File` WHERE `File`='SUPPORTDIR_added_file_txt'"),
              L"4");
    EXPECT_EQ(QueryText(build.Database(), L"SELECT `DiskId` FROM `Media` WHERE `DiskId`=2"), L"(none)");
}

TEST_F(MergeReportTest, NumbersAddedFilesBehindThoseOfThePatch)
{
    const TestFolder sources(L"sources");
    WriteBytes(sources / L"mine.txt", "mine\n");
    CString key;
    {
        AddedRows added(build.Product().hDatabase, 3);
        key = added.AddFile(sources / L"mine.txt", L"INSTALLDIR");
    }
    build.Merge(L"First", FIRST_PATCH_CODE);
    build.BuildIt();
    EXPECT_EQ(QueryText(build.Database(), L"SELECT `Sequence` FROM `File` WHERE `File`='" + key + L"'"),
              L"5");
    EXPECT_EQ(QueryText(build.Database(), L"SELECT `Cabinet` FROM `Media` WHERE `DiskId`=2"),
              L"TARN0001.cab");
}

TEST_F(MergeReportTest, HashesReplacedFilesAnew)
{
    const CString hash = L"INSERT INTO `MsiFileHash` (`File_`,`Options`,`HashPart1`,`HashPart2`,`HashPart3`,"
                         L"`HashPart4`) VALUES ('INSTALLDIR_replaced_txt',0,1,2,3,4)";
    const CString table = L"CREATE TABLE `MsiFileHash` (`File_` CHAR(72) NOT NULL, `Options` SHORT NOT NULL, "
                          L"`HashPart1` LONG NOT NULL, `HashPart2` LONG NOT NULL, `HashPart3` LONG NOT NULL, "
                          L"`HashPart4` LONG NOT NULL PRIMARY KEY `File_`)";
    {
        CInstallerHandle original;
        ASSERT_EQ(MsiOpenDatabaseW(build.Original(), MSIDBOPEN_TRANSACT, original.put()), 0u);
        ASSERT_EQ(RunSql(original.get(), table), 0u);
        ASSERT_EQ(RunSql(original.get(), hash), 0u);
        ASSERT_EQ(MsiDatabaseCommit(original.get()), 0u);
    }
    build.Change(table);
    build.Change(hash);
    build.Merge(L"First", FIRST_PATCH_CODE);
    build.BuildIt();
    const TestFolder folder(L"hash");
    WriteBytes(folder / L"new.txt", "replaced by the first patch\r\n");
    MSIFILEHASHINFO expected = {};
    expected.dwFileHashInfoSize = sizeof(expected);
    ASSERT_EQ(MsiGetFileHashW(folder / L"new.txt", 0, &expected), 0u);
    EXPECT_EQ(QueryText(build.Database(), L"SELECT `HashPart3` FROM `MsiFileHash`"),
              NumberText(static_cast<long>(expected.dwData[2])));
    ExpectLacks(Parts().first, "MsiFileHash");
}

TEST_F(MergeReportTest, RefusesAPatchThatChangesWhileItIsBuilt)
{
    const CString copy = build.OwnPatch(L"beside\\First.msp");
    build.MergeFile(copy, FIRST_PATCH_CODE);
    build.onStep = [&](const CString& sentence) {
        if (sentence.Find(L"Copying") == 0) {
            EXPECT_TRUE(CopyFileW(PatchFixture(L"beside\\Independent.msp"), copy, FALSE));
        }
    };
    const BuildResult result = build.Build();
    EXPECT_GE(result.error.message.Find(copy), 0) << Utf8(result.error.message);
    EXPECT_NE(result.error.code, 0u);
    EXPECT_FALSE(Exists(build.Target()));
}

TEST_F(MergeReportTest, RefusesOtherFilesThanThoseThatWereDecidedOn)
{
    const CString copy = build.OwnPatch(L"beside\\First.msp");
    build.MergeFile(copy, FIRST_PATCH_CODE);
    build.onStep = [&](const CString& sentence) {
        if (sentence.Find(L"Copying") == 0) {
            EXPECT_TRUE(CopyFileW(PatchFixture(L"ChangedFirst.msp"), copy, FALSE));
        }
    };
    const BuildResult result = build.Build();
    EXPECT_GE(
        result.error.message.Find(L"\"" + copy + L"\" can't be merged into Patch Test: it has changed since"),
        0)
        << Utf8(result.error.message);
    EXPECT_FALSE(Exists(build.Target()));
}

// By another file of its size and code.
TEST_F(MergeReportTest, RefusesEveryPatchThatChangesAfterTheCheck)
{
    const CString code = FIRST_PATCH_CODE;
    for (const auto use :
         {ListedPatch::Use::Appended, ListedPatch::Use::Merged, ListedPatch::Use::MergedBefore}) {
        MergeBuild own(L"beside");
        const CString copy = own.OwnPatch(L"beside\\First.msp");
        WriteBytes(copy, ReadBytes(copy) + std::string(4096, '\0'));
        const CString target = L"Image\\x64\\PatchTest\\ServicePacks\\First.msp";
        own.plan.files.push_back({copy, target});
        own.Product().patches = {{copy, target, code, L"", HashOfFile(copy, [] {}), use}};
        if (use == ListedPatch::Use::Merged) {
            own.MergeFile(copy, code);
        }
        const CString step = use == ListedPatch::Use::Merged ? L"Merging" : L"Copying";
        own.onStep = [&](const CString& sentence) {
            if (sentence.Find(step) == 0) {
                WriteBytes(copy, ReadBytes(PatchFixture(L"beside\\First.msp")) + std::string(4096, '\1'));
            }
        };
        const BuildResult result = own.Build();
        EXPECT_EQ(result.error.code, 1006u) << Utf8(result.error.message);
        EXPECT_GE(result.error.message.Find(L"\"" + copy + L"\""), 0) << Utf8(result.error.message);
        EXPECT_GE(result.error.message.Find(L"has changed since it was "), 0) << Utf8(result.error.message);
        EXPECT_FALSE(Exists(own.Target()));
    }
}

// The image has its changes already, so the file is there for people alone.
TEST_F(MergeReportTest, RefusesAFileOfAPatchMergedBeforeThatIsAnother)
{
    const CString copy = build.OwnPatch(L"beside\\First.msp");
    const CString target = L"Image\\x64\\PatchTest\\ServicePacks\\First.msp";
    build.plan.files.push_back({copy, target});
    build.Product().patches = {{copy, target, FIRST_PATCH_CODE, L"", CString(std::wstring(64, L'0').c_str()),
                                ListedPatch::Use::MergedBefore}};
    std::vector<CString> warnings;
    const OperationError check = CheckBuild(build.plan, warnings);
    EXPECT_EQ(check.code, 1006u);
    EXPECT_GE(check.message.Find(L"\"" + copy + L"\""), 0) << Utf8(check.message);
    EXPECT_GE(check.message.Find(L"Put the file back as it was, or delete it"), 0) << Utf8(check.message);
}

TEST_F(MergeReportTest, LeavesNothingWhenItIsCanceledOnTheWay)
{
    const Tree before = ReadTree(build.Folder().Path());
    build.Merge(L"First", FIRST_PATCH_CODE);
    bool isMerging = false;
    build.onStep = [&](const CString& sentence) {
        isMerging = sentence == L"Merging patches into Patch Test";
    };
    build.onProgress = [&] {
        LetTheNextMomentBeReported();
        return !isMerging;
    };
    EXPECT_EQ(build.Build().error.code, 1602u);
    EXPECT_TRUE(isMerging) << "it was canceled elsewhere";
    const Tree after = ReadTree(build.Folder().Path());
    EXPECT_TRUE(after == before) << NamesOf(after);
}

} // namespace
