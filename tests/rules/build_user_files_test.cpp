// What becomes of added files in the database that is built, decided on snapshots.
#include "builder/user_files.h"
#include "tests/rules/snapshot_with_additions.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

class FinishedFiles : public SnapshotWithAdditions
{
protected:
    // The tables, but that of directories, in which a row still names the key.
    CString TablesNaming(const CString& key) const
    {
        CString tables;
        for (const auto& [name, table] : database) {
            for (const auto& row : table.rows) {
                const bool named = std::count(row.second.begin(), row.second.end(), key) != 0;
                if (named && !(name == L"Directory")) {
                    tables += name + L" ";
                }
            }
        }
        return tables;
    }

    std::vector<CString> StrayNames() const
    {
        std::vector<CString> names;
        for (const IncompleteAddition& stray : FindUserAdditions(database).strays) {
            names.push_back(stray.strName);
        }
        return names;
    }

    CString Finish(bool compressed = false, const PatchNumbers& patches = {})
    {
        UserAdditions additions = FindUserAdditions(database);
        for (UserFile& file : additions.files) {
            file.size = file.storedSize;
        }
        return FinishUserAdditions(database, additions, PackUserFiles(additions.files), compressed, patches);
    }

    CString FinishLoose()
    {
        UserAdditions additions = FindUserAdditions(database);
        additions.bLoose = true;
        return FinishUserAdditions(database, additions, {}, false);
    }
};

} // namespace

TEST_F(FinishedFiles, NumbersFollowThoseOfTheProductAndOfItsMedia)
{
    AddFile(1, L"a.txt", 8);
    AddFile(2, L"b.txt", 8);
    EXPECT_EQ(Finish(), L"");
    EXPECT_EQ(Value(L"File", L"Own", 5), L"7");
    EXPECT_EQ(Value(L"File", UserKey(1), 5), L"10");
    EXPECT_EQ(Value(L"File", UserKey(2), 5), L"11");
    EXPECT_EQ(Value(L"Media", L"4", 1), L"11");
    EXPECT_EQ(Value(L"Media", L"4", 2), L"TARN0001.cab");
    EXPECT_EQ(Value(L"Media", L"3", 1), L"9");
}

// A patch brought a medium of the same number, and the workstation looked for the added files in the patch's cabinet.
TEST_F(FinishedFiles, NumbersFollowThoseOfPatchesThatAreInstalledAlong)
{
    AddFile(1, L"a.txt", 8);
    AddFile(2, L"b.txt", 8);
    EXPECT_EQ(Finish(false, {7, 2000}), L"");
    EXPECT_EQ(Value(L"File", UserKey(1), 5), L"2001");
    EXPECT_EQ(Value(L"Media", L"8", 1), L"2002");
    EXPECT_EQ(Value(L"Media", L"8", 2), L"TARN0001.cab");
    EXPECT_EQ(Value(L"Media", L"3", 1), L"9") << "the product's own stay";
}

TEST_F(FinishedFiles, PatchesThatTakeAllNumbersLeaveNoRoom)
{
    AddFile(1, L"a.txt", 8);
    const DatabaseSnapshot before = database;
    EXPECT_NE(Finish(false, {7, 32767}), L"");
    database = before;
    EXPECT_NE(Finish(false, {32767, 2000}), L"");
}

TEST_F(FinishedFiles, OnlyAPackageThatIsNotCompressedNeedsTheAttribute)
{
    AddFile(1, L"a.txt", 8);
    const DatabaseSnapshot before = database;
    EXPECT_EQ(Finish(true), L"");
    EXPECT_EQ(Value(L"File", UserKey(1), 4), L"0");
    database = before;
    EXPECT_EQ(Finish(false), L"");
    EXPECT_EQ(Value(L"File", UserKey(1), 4), L"16384");
    EXPECT_EQ(Value(L"File", L"Own", 4), L"8192");
}

TEST_F(FinishedFiles, LooseFilesGetNoCabinetAndTheLastNumberOfTheMedia)
{
    AddFile(1, L"a.txt", 8);
    AddFile(2, L"b.txt", 8);
    EXPECT_EQ(FinishLoose(), L"");
    for (const int number : {1, 2}) {
        EXPECT_EQ(Value(L"File", UserKey(number), 4), L"8192");
        EXPECT_EQ(Value(L"File", UserKey(number), 5), L"9");
        EXPECT_EQ(Value(L"TarnCustomFile", UserKey(number), 1), number == 1 ? L"a.txt" : L"b.txt");
    }
    EXPECT_EQ(database[L"Media"].rows.size(), 1u);
}

TEST_F(FinishedFiles, LooseFilesOfAProductWithoutMediaGetAMediumOnce)
{
    AddFile(1, L"a.txt", 8);
    database[L"Media"].rows.clear();
    EXPECT_EQ(FinishLoose(), L"");
    EXPECT_EQ(FinishLoose(), L"");
    EXPECT_EQ(Value(L"File", UserKey(1), 5), L"1");
    EXPECT_EQ(Value(L"Media", L"1", 1), L"1");
    EXPECT_EQ(Value(L"Media", L"1", 2), L"");
    EXPECT_EQ(database[L"Media"].rows.size(), 1u);
}

TEST_F(FinishedFiles, FinishingTwiceComesToTheSame)
{
    AddFile(1, L"a.txt", 8);
    EXPECT_EQ(Finish(), L"");
    const DatabaseSnapshot once = database;
    EXPECT_EQ(Finish(), L"");
    EXPECT_TRUE(CompareSnapshots(once, database).empty());
}

TEST_F(FinishedFiles, WhenAllAdditionsAreGoneTheirMediumGoesToo)
{
    AddFile(1, L"a.txt", 8);
    const DatabaseSnapshot before = database;
    EXPECT_EQ(Finish(), L"");
    for (const wchar_t* table :
         {L"File", L"Component", L"FeatureComponents", L"CreateFolder", L"TarnCustomFile"}) {
        Lose(table, UserKey(1));
    }
    EXPECT_FALSE(FindUserAdditions(database).IsEmpty());
    EXPECT_EQ(Finish(), L"");
    EXPECT_EQ(Value(L"Media", L"4", 2), L"(none)");
    EXPECT_TRUE(FindUserAdditions(database).IsEmpty());
}

TEST_F(FinishedFiles, AProductWithoutAdditionsHasNothingToFinish)
{
    EXPECT_TRUE(FindUserAdditions(database).IsEmpty());
}

TEST_F(FinishedFiles, TheSourcePathGivesWayToTheName)
{
    AddFile(1, L"a.txt", 8);
    EXPECT_EQ(Finish(), L"");
    EXPECT_EQ(Value(L"TarnCustomFile", UserKey(1), 1), L"a.txt");
}

TEST_F(FinishedFiles, MoreFilesThanTheColumnsCanNumberAreRefused)
{
    Row(L"File", {L"Own", L"Own", L"own.txt", L"1", L"8192", L"32766"});
    AddFile(1, L"a.txt", 8);
    EXPECT_EQ(Finish(), L"");
    AddFile(2, L"b.txt", 9);
    const CString refused = Finish();
    EXPECT_GE(refused.Find(L"room for 1 added files, not for 2"), 0) << Utf8(refused);
}

// One addition was once refused with the advice to add fewer.
TEST_F(FinishedFiles, AProductThatTakesAllNumbersIsReportedAsSuch)
{
    Row(L"File", {L"Own", L"Own", L"own.txt", L"1", L"8192", L"32767"});
    AddFile(1, L"a.txt", 8);
    const CString refused = Finish();
    EXPECT_GE(refused.Find(L"the product takes all of these numbers. Remove the additional files."), 0)
        << Utf8(refused);
}

// Such a product once took no addition at all.
TEST_F(FinishedFiles, NumbersThatAMediumOnlyReservesAreGivenUpWhereTheyAreNeeded)
{
    Row(L"Media", {L"3", L"32767", L""});
    AddFile(1, L"a.txt", 8);
    EXPECT_EQ(Finish(), L"");
    EXPECT_EQ(Value(L"Media", L"3", 1), L"7");
    EXPECT_EQ(Value(L"File", UserKey(1), 5), L"8");
    EXPECT_EQ(Value(L"Media", L"4", 1), L"8");
}

TEST_F(FinishedFiles, NumbersThatAMediumReservesAreKeptWhereThereIsRoomBehindThem)
{
    Row(L"Media", {L"3", L"32766", L""});
    AddFile(1, L"a.txt", 8);
    EXPECT_EQ(Finish(), L"");
    EXPECT_EQ(Value(L"Media", L"3", 1), L"32766");
    EXPECT_EQ(Value(L"File", UserKey(1), 5), L"32767");
}

TEST_F(FinishedFiles, WideColumnsNeedNoRoom)
{
    database[L"File"].columnTypes[5] = L"i4";
    database[L"Media"].columnTypes[1] = L"i4";
    Row(L"Media", {L"3", L"40000", L""});
    AddFile(1, L"a.txt", 8);
    EXPECT_EQ(Finish(), L"");
    EXPECT_EQ(Value(L"Media", L"3", 1), L"40000");
    EXPECT_EQ(Value(L"File", UserKey(1), 5), L"40001");
}

TEST_F(FinishedFiles, AMediumOfTheHighestNumberIsRefused)
{
    Row(L"Media", {L"32767", L"9", L""});
    AddFile(1, L"a.txt", 8);
    const CString refused = Finish();
    EXPECT_GE(refused.Find(L"Media"), 0) << Utf8(refused);
    EXPECT_GE(refused.Find(L"32767"), 0) << Utf8(refused);
}

TEST_F(FinishedFiles, AFeatureNamesNoDirectoryThatTheProductLacks)
{
    AddFile(1, L"a.txt", 8, L"TARGETDIR");
    EXPECT_EQ(Finish(), L"");
    EXPECT_EQ(Value(L"Feature", L"_UserDeploymentFile", 1), L"INSTALLDIR");
    Lose(L"Directory", L"INSTALLDIR");
    EXPECT_EQ(Finish(), L"");
    EXPECT_EQ(Value(L"Feature", L"_UserDeploymentFile", 1), L"");
}

TEST_F(FinishedFiles, StandardActionsThatThePackageHasKeepTheirNumbers)
{
    AddFile(1, L"a.txt", 8);
    Row(L"InstallExecuteSequence", {L"InstallFiles", L"5000"});
    EXPECT_EQ(Finish(), L"");
    EXPECT_EQ(Value(L"InstallExecuteSequence", L"InstallFiles", 1), L"5000");
    EXPECT_EQ(Value(L"InstallExecuteSequence", L"CreateFolders", 1), L"3700");
}

TEST_F(FinishedFiles, OnlyDirectoriesThatWereAddedWithAnActionAreDrives)
{
    Row(L"Directory", {L"Own", L"DRIVE_Y", L"TARGETDIR"});
    Row(L"CustomAction", {L"Own"});
    Row(L"Directory", {UserKey(1), L"DRIVE_X", L"TARGETDIR"});
    Row(L"CustomAction", {UserKey(1)});
    AddFolder(2, L"DRIVE_D");
    EXPECT_EQ(FindUserDrives(database), std::vector<CString>{L"X:"});
}

TEST_F(FinishedFiles, AWholeAdditionIsNoStray)
{
    AddFile(1, L"a.txt", 8);
    AddFolder(2, L"Folder");
    AddFile(3, L"inside.txt", 9, UserKey(2));
    EXPECT_EQ(StrayNames(), std::vector<CString>());
    EXPECT_EQ(FindUserAdditions(database).folders.size(), 1u);
}

TEST_F(FinishedFiles, AFileThatLacksAnyOfItsRowsIsLeftOutWithAllOthers)
{
    for (const wchar_t* table : {L"File", L"Component", L"FeatureComponents", L"TarnCustomFile"}) {
        AddFile(1, L"half.txt", 8);
        AddFile(2, L"whole.txt", 9);
        Lose(table, UserKey(1));
        EXPECT_EQ(StrayNames().size(), 1u) << Utf8(table);
        EXPECT_EQ(Finish(), L"");
        EXPECT_EQ(TablesNaming(UserKey(1)), L"") << Utf8(table);
        EXPECT_EQ(Value(L"File", UserKey(2), 5), L"10") << Utf8(table);
    }
}

TEST_F(FinishedFiles, AFolderThatLacksAnyOfItsRowsIsLeftOutWithAllOthers)
{
    for (const wchar_t* table : {L"Directory", L"Component", L"FeatureComponents", L"TarnCustomFile"}) {
        AddFolder(1, L"Half");
        Lose(table, UserKey(1));
        EXPECT_EQ(StrayNames(), std::vector<CString>{L"Half"}) << Utf8(table);
        EXPECT_EQ(Finish(), L"");
        EXPECT_EQ(TablesNaming(UserKey(1)), L"") << Utf8(table);
        EXPECT_EQ(Value(L"Feature", L"_UserDeploymentFile", 0), L"(none)") << Utf8(table);
    }
}

TEST_F(FinishedFiles, AFileInAFolderThatIsGoneIsLeftOut)
{
    AddFolder(1, L"Folder");
    AddFile(2, L"inside.txt", 8, UserKey(1));
    Lose(L"Directory", UserKey(1));
    EXPECT_EQ(StrayNames(), (std::vector<CString>{L"Folder", L"inside.txt"}));
    EXPECT_EQ(Finish(), L"");
    EXPECT_EQ(TablesNaming(UserKey(2)), L"");
}

TEST_F(FinishedFiles, AFolderInAFolderThatIsGoneIsLeftOutWithItsFiles)
{
    AddFolder(1, L"Outer");
    AddFolder(2, L"Inner", UserKey(1));
    AddFile(3, L"deep.txt", 8, UserKey(2));
    EXPECT_EQ(StrayNames(), std::vector<CString>());
    Lose(L"Directory", UserKey(1));
    EXPECT_EQ(StrayNames(), (std::vector<CString>{L"Outer", L"Inner", L"deep.txt"}));
}

TEST_F(FinishedFiles, FoldersThatLieInEachOtherAreLeftOut)
{
    AddFolder(1, L"First", UserKey(2));
    AddFolder(2, L"Second", UserKey(1));
    EXPECT_EQ(StrayNames(), (std::vector<CString>{L"First", L"Second"}));
}

TEST_F(FinishedFiles, AStepOfADriveWithoutItsActionIsLeftOut)
{
    Row(L"InstallExecuteSequence", {UserKey(1), L"1"});
    Row(L"InstallExecuteSequence", {UserKey(2), L"1"});
    Row(L"CustomAction", {UserKey(2)});
    EXPECT_EQ(FindUserAdditions(database).straySteps, std::vector<CString>{UserKey(1)});
    EXPECT_FALSE(FindUserAdditions(database).IsEmpty());
    EXPECT_EQ(Finish(), L"");
    EXPECT_EQ(Value(L"InstallExecuteSequence", UserKey(1), 0), L"(none)");
    EXPECT_EQ(Value(L"InstallExecuteSequence", UserKey(2), 1), L"1");
}

TEST_F(FinishedFiles, AStrayIsCalledByWhatIsLeftOfIt)
{
    AddFile(1, L"a.txt", 8);
    AddFile(2, L"b.txt", 9);
    AddFile(3, L"c.txt", 10);
    Lose(L"TarnCustomFile", UserKey(1));
    Lose(L"File", UserKey(2));
    Lose(L"File", UserKey(3));
    Lose(L"TarnCustomFile", UserKey(3));
    EXPECT_EQ(StrayNames(), (std::vector<CString>{L"a.txt", L"C:\\Private\\b.txt", UserKey(3)}));
}

TEST_F(FinishedFiles, TheFeatureIsWrittenForAFolderAloneInAProductThatLacksIt)
{
    AddFolder(1, L"Folder");
    EXPECT_EQ(Finish(), L"");
    EXPECT_EQ(Value(L"Feature", L"_UserDeploymentFile", 0), L"_UserDeploymentFile");
}

TEST_F(FinishedFiles, AVendorsRowOfThePrivateTableIsNoAddition)
{
    Row(L"TarnCustomFile", {L"Own", L"own.txt", L"0"});
    EXPECT_TRUE(FindUserAdditions(database).files.empty());
}

TEST(UserFiles, CabinetsAreKnownByTheirNamesInAnyCase)
{
    EXPECT_TRUE(IsUserCabinet(L"TARN0001.cab"));
    EXPECT_TRUE(IsUserCabinet(L"tarn9999.CAB"));
    for (const wchar_t* name : {L"TARN001.cab", L"TARNxxxx.cab", L"TARN0001.cab2", L"#TARN0001.cab", L""}) {
        EXPECT_FALSE(IsUserCabinet(name)) << Utf8(name);
    }
}

TEST(UserFiles, ACabinetEndsBeforeItsContentPassesOneGigabyte)
{
    std::vector<UserFile> files(4);
    files[0].size = 1 << 30;
    files[1].size = 1;
    files[2].size = (1 << 30) - 1;
    files[3].size = 1;
    const std::vector<UserCabinet> cabinets = PackUserFiles(files);
    ASSERT_EQ(cabinets.size(), 3u);
    EXPECT_EQ(cabinets[0].count, 1u);
    EXPECT_EQ(cabinets[1].count, 2u);
    EXPECT_EQ(cabinets[2].first, 3u);
    EXPECT_EQ(cabinets[2].strName, L"TARN0003.cab");
}

TEST(UserFiles, ThirtyThousandFilesFillACabinet)
{
    const std::vector<UserCabinet> cabinets = PackUserFiles(std::vector<UserFile>(30001));
    ASSERT_EQ(cabinets.size(), 2u);
    EXPECT_EQ(cabinets[1].first, 30000u);
}
