// Where additions stand on a workstation, which of them meet there, and the notes that list them.
#include "builder/addition_findings.h"
#include "builder/addition_notes.h"
#include "builder/addition_targets.h"
#include "tests/rules/snapshot_with_additions.h"
#include "tests/support/text.h"

namespace {

constexpr unsigned int ALREADY_EXISTS = 183;
constexpr unsigned int INVALID_NAME = 123;

class Additions : public SnapshotWithAdditions
{
protected:
    Additions()
    {
        database[L"Property"] = {{L"Property", L"Value"}, {L"s72", L"l0"}, 1, {}};
        database[L"CustomAction"] = {
            {L"Action", L"Type", L"Source", L"Target"}, {L"s72", L"i2", L"S72", L"S255"}, 1, {}};
        database[L"TarnDirectoryMap"] = {
            {L"Directory_", L"LocalString", L"Flags"}, {L"s72", L"L255", L"I4"}, 1, {}};
        Row(L"Directory", {L"TARGETDIR", L"SourceDir", L""});
        Row(L"Directory", {L"ProgramFilesFolder", L".", L"TARGETDIR"});
        Row(L"Directory", {L"CommonFilesFolder", L".", L"TARGETDIR"});
        Row(L"Directory", {L"MAKER", L"MAKER|The maker", L"ProgramFilesFolder"});
        Row(L"Directory", {L"INSTALLDIR", L"ZOLT|Zolt 2027:Zolt", L"MAKER"});
        Row(L"Directory", {L"SUPPORT", L"Support", L"INSTALLDIR"});
        Row(L"Directory", {L"OTHER", L"Other", L"CommonFilesFolder"});
        Row(L"Component", {L"Own", L"INSTALLDIR"});
    }

    void AddDrive(int number, const CString& letter)
    {
        const CString key = UserKey(number);
        Row(L"Directory", {key, L"DRIVE_" + letter, L"TARGETDIR"});
        Row(L"CustomAction", {key, L"51", key, letter + L":"});
        Row(L"InstallExecuteSequence", {key, L"1"});
    }

    CString Shown(const CString& directory) const
    {
        const CTargetFolders folders(database);
        return folders.Shown(folders.Find(directory));
    }

    std::vector<AdditionFinding> Clashes() const
    {
        return FindTargetClashes(database, FindUserAdditions(database), L"Zolt");
    }

    void ExpectOneClash(unsigned int code, const CString& target, const CString& part) const
    {
        const std::vector<AdditionFinding> found = Clashes();
        ASSERT_EQ(found.size(), 1u);
        EXPECT_EQ(found[0].code, code);
        EXPECT_EQ(found[0].strTarget, target);
        EXPECT_HOLDS(found[0].strReason, part);
    }

    CString Notes()
    {
        const UserAdditions additions = FindUserAdditions(database);
        AddedItems items;
        items.strDatabase = L"Image\\Zolt.msi";
        items.strProductName = L"Zolt 2027";
        items.files = additions.files;
        for (UserFile& file : items.files) {
            file.size = file.storedSize;
        }
        for (const UserFolder& folder : additions.folders) {
            items.folders.push_back(folder.strShown);
        }
        items.drives = FindUserDrives(database);
        for (const AdditionFinding& finding : FindLeftOut(additions, L"Zolt 2027")) {
            items.leftOut.push_back(finding.strReason);
        }
        return ComposeAdditions({items});
    }
};

} // namespace

// ---- where they stand -----------------------------------------------------------------------------------------------

TEST_F(Additions, TheProductsFolderHasTheNameThatTheMakerChose)
{
    EXPECT_EQ(Shown(L"SUPPORT"), L"<Installation Directory>\\Support");
    Row(L"TarnDirectoryMap", {L"INSTALLDIR", L"Zolt's folder", L"0"});
    EXPECT_EQ(Shown(L"SUPPORT"), L"Zolt's folder\\Support");
    EXPECT_EQ(Shown(L"INSTALLDIR"), L"Zolt's folder");
}

TEST_F(Additions, WhatTheWorkstationSettlesIsNamedByItsKey)
{
    EXPECT_EQ(Shown(L"OTHER"), L"[CommonFilesFolder]\\Other");
    EXPECT_EQ(Shown(L"MAKER"), L"[ProgramFilesFolder]\\The maker");
}

TEST_F(Additions, AFolderOnADriveBeginsWithItsLetter)
{
    AddDrive(1, L"X");
    AddFolder(2, L"Shared", UserKey(1));
    EXPECT_EQ(Shown(UserKey(2)), L"X:\\Shared");
}

TEST_F(Additions, AFolderThatAPropertySettlesIsThere)
{
    Row(L"Property", {L"OTHER", L"D:\\Fonts\\"});
    AddFolder(1, L"Company", L"OTHER");
    EXPECT_EQ(Shown(UserKey(1)), L"D:\\Fonts\\Company");
    Row(L"Property", {L"OTHER", L"D:\\"});
    EXPECT_EQ(Shown(UserKey(1)), L"D:\\Company");
    Row(L"Property", {L"OTHER", L"[MAKER]Fonts"});
    EXPECT_EQ(Shown(UserKey(1)), L"[OTHER]\\Company");
}

TEST_F(Additions, FoldersInACircleOrWithoutAParentStandNowhere)
{
    Row(L"Directory", {L"A", L"a", L"B"});
    Row(L"Directory", {L"B", L"b", L"A"});
    Row(L"Directory", {L"C", L"c", L"GONE"});
    for (const wchar_t* key : {L"A", L"B", L"C", L"NONE"}) {
        EXPECT_EQ(Shown(key), L"") << Utf8(key);
    }
}

TEST_F(Additions, AChainOfFoldersAsLongAsTheTableIsWalked)
{
    CString parent = L"INSTALLDIR";
    for (int number = 1; number <= 20000; ++number) {
        AddFolder(number, L".", parent);
        parent = UserKey(number);
    }
    EXPECT_EQ(Shown(parent), L"<Installation Directory>");
}

TEST_F(Additions, DotsAndBlanksAtTheEndOfANameAreNotOnTheDisk)
{
    AddFolder(1, L"Company. .", L"INSTALLDIR");
    EXPECT_EQ(Shown(UserKey(1)), L"<Installation Directory>\\Company");
}

// ---- what meets there ------------------------------------------------------------------------------------------------

TEST_F(Additions, OneNameInTwoFoldersIsNoClashButInOneFolderInAnyCase)
{
    AddFile(1, L"a.txt", 8);
    AddFile(2, L"A.TXT", 9, L"OTHER");
    EXPECT_TRUE(Clashes().empty());
    AddFile(3, L"A.txt", 10);
    ExpectOneClash(ALREADY_EXISTS, L"<Installation Directory>\\A.txt",
                   L"Both \"C:\\Private\\a.txt\" and \"C:\\Private\\A.txt\" were added to one folder");
}

// Renamed folders may meet without a word of the page; the installer would overwrite one file by the other.
TEST_F(Additions, FilesOfOneNameMeetInTwoFoldersOfOneName)
{
    AddFolder(1, L"Company");
    AddFolder(2, L"COMPANY.");
    AddFile(3, L"a.txt", 8, UserKey(1));
    EXPECT_TRUE(Clashes().empty());
    AddFile(4, L"a.txt", 9, UserKey(2));
    ExpectOneClash(ALREADY_EXISTS, L"<Installation Directory>\\COMPANY\\a.txt", L"Remove one of them");
}

TEST_F(Additions, AFileOfTheProductsNameInItsFolderIsReportedAndNotRefused)
{
    AddFile(1, L"other.txt", 8);
    AddFile(2, L"OWN.TXT", 9, L"OTHER");
    EXPECT_TRUE(Clashes().empty());
    AddFile(3, L"OWN.TXT", 9);
    ExpectOneClash(0, L"<Installation Directory>\\OWN.TXT", L"takes the place of one of Zolt");
    EXPECT_EQ(Clashes()[0].strSource, L"C:\\Private\\OWN.TXT");
}

TEST_F(Additions, AFileMeetsTheProductsInAnAddedFolderOfTheProductsName)
{
    Row(L"Component", {L"Own", L"SUPPORT"});
    AddFolder(1, L"support");
    AddFile(2, L"own.txt", 8, UserKey(1));
    ExpectOneClash(0, L"<Installation Directory>\\support\\own.txt", L"takes the place of one of Zolt");
}

TEST_F(Additions, AFileInTheProductsFolderByAnotherDirectoryOfThatPathMeetsTheProducts)
{
    Row(L"Directory", {L"TWIN", L"Support", L"INSTALLDIR"});
    Row(L"Component", {L"Own", L"SUPPORT"});
    AddFile(1, L"own.txt", 8, L"TWIN");
    ExpectOneClash(0, L"<Installation Directory>\\Support\\own.txt", L"takes the place of one of Zolt");
}

TEST_F(Additions, AFileInTheProductsPlaceOnAnAddedDriveMeetsTheProducts)
{
    Row(L"Property", {L"INSTALLDIR", L"D:\\Zolt"});
    AddDrive(1, L"D");
    AddFolder(2, L"zolt", UserKey(1));
    AddFile(3, L"own.txt", 8, UserKey(2));
    ExpectOneClash(0, L"<Installation Directory>\\own.txt", L"takes the place of one of Zolt");
}

TEST_F(Additions, AFileInThePlaceOfAnAddedFolderIsRefused)
{
    AddFolder(1, L"Company");
    AddFile(2, L"company", 8);
    ExpectOneClash(ALREADY_EXISTS, L"<Installation Directory>\\company", L"a folder of that name");
}

TEST_F(Additions, AFileInThePlaceOfAFolderOfTheProductsIsRefused)
{
    AddFile(1, L"Support", 8);
    EXPECT_TRUE(Clashes().empty()) << "the product puts nothing there, so the folder is never made";
    Row(L"Component", {L"Own", L"SUPPORT"});
    ExpectOneClash(ALREADY_EXISTS, L"<Installation Directory>\\Support", L"a folder of that name");
}

TEST_F(Additions, AFolderInThePlaceOfAFileOfTheProductsIsRefused)
{
    AddFolder(1, L"own.txt");
    ExpectOneClash(ALREADY_EXISTS, L"<Installation Directory>\\own.txt",
                   L"the product has a file of that name");
}

TEST_F(Additions, TwoAddedFoldersOfOneNameAreOne)
{
    AddFolder(1, L"Company");
    AddFolder(2, L"company");
    AddFolder(3, L"Support");
    EXPECT_TRUE(Clashes().empty());
}

TEST_F(Additions, NamesOfDevicesAreRefused)
{
    AddFolder(1, L"aux");
    AddFile(2, L"nul.txt", 8);
    const std::vector<AdditionFinding> found = Clashes();
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0].code, INVALID_NAME);
    EXPECT_HOLDS(found[0].strReason, L"\"aux\"");
    EXPECT_EQ(found[1].code, INVALID_NAME);
    EXPECT_HOLDS(found[1].strReason, L"nul.txt");
}

TEST_F(Additions, NamesThatWindowsDoesNotHaveAreRefused)
{
    AddFolder(1, L"...");
    AddFile(2, L"a\tb.txt", 8);
    AddFolder(3, L"..x");
    const std::vector<AdditionFinding> found = Clashes();
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0].code, INVALID_NAME);
    EXPECT_HOLDS(found[0].strReason, L"The folder \"...\"");
    EXPECT_EQ(found[1].code, INVALID_NAME);
    EXPECT_HOLDS(found[1].strReason, L"a\tb.txt");
}

TEST_F(Additions, DirectoriesThatASettingOfTheirOwnMovesDontMeet)
{
    for (const wchar_t* key : {L"FIRST", L"SECOND"}) {
        Row(L"Directory", {key, L".", L"INSTALLDIR"});
        Row(L"CustomAction", {CString(L"Set") + key, L"307", key, L"[CommonFilesFolder]" + CString(key)});
    }
    AddFile(1, L"a.txt", 8, L"FIRST");
    AddFile(2, L"a.txt", 9, L"SECOND");
    EXPECT_TRUE(Clashes().empty());
}

// ---- what is left out ------------------------------------------------------------------------------------------------

TEST_F(Additions, AFileOnADriveThatIsNotWholeIsLeftOutByName)
{
    for (const wchar_t* table : {L"CustomAction", L"InstallExecuteSequence"}) {
        AddDrive(1, L"X");
        AddFile(2, L"a.txt", 8, UserKey(1));
        EXPECT_TRUE(FindUserAdditions(database).strays.empty());
        Lose(table, UserKey(1));
        const auto found = FindLeftOut(FindUserAdditions(database), L"Zolt");
        ASSERT_FALSE(found.empty()) << Utf8(table);
        EXPECT_EQ(found[0].strTarget, L"a.txt") << Utf8(table);
        EXPECT_FALSE(found[0].Blocks());
    }
}

TEST_F(Additions, AFileInAFolderOfTheProductsThatIsNotThereIsLeftOut)
{
    AddFile(1, L"a.txt", 8, L"GONE");
    const auto found = FindLeftOut(FindUserAdditions(database), L"Zolt");
    ASSERT_EQ(found.size(), 1u);
    EXPECT_HOLDS(found[0].strReason, L"\"a.txt\"");
}

// ---- the notes -------------------------------------------------------------------------------------------------------

TEST_F(Additions, TheNotesNameEveryItemSortedBelowItsFolderWithItsSource)
{
    AddDrive(1, L"X");
    AddFolder(2, L"Company");
    AddFolder(3, L"Empty", UserKey(2));
    AddFile(4, L"b.txt", 8, UserKey(2));
    AddFile(5, L"A.txt", 9, UserKey(2));
    AddFile(6, L"on drive.txt", 10, UserKey(1));
    AddFile(7, L"root.txt", 11);
    AddFile(8, L"half.txt", 12);
    Lose(L"Component", UserKey(8));
    EXPECT_EQ(
        Utf8(Notes()),
        "Files, folders and drives that were added to the products of this deployment\r\n"
        "Each file stands below its folder on a workstation, with the place that it was added from.\r\n"
        "\r\n"
        "Image\\Zolt.msi (Zolt 2027)\r\n"
        "  Files: 4 (20 bytes), folders: 2, drives: 1, left out: 1\r\n"
        "\r\n"
        "  <Installation Directory>\r\n"
        "      root.txt, 5 bytes, from \"C:\\Private\\root.txt\"\r\n"
        "\r\n"
        "  <Installation Directory>\\Company (added folder)\r\n"
        "      A.txt, 5 bytes, from \"C:\\Private\\A.txt\"\r\n"
        "      b.txt, 5 bytes, from \"C:\\Private\\b.txt\"\r\n"
        "\r\n"
        "  <Installation Directory>\\Company\\Empty (added folder)\r\n"
        "\r\n"
        "  X: (added drive)\r\n"
        "      on drive.txt, 5 bytes, from \"C:\\Private\\on drive.txt\"\r\n"
        "\r\n"
        "  Left out\r\n"
        "      The addition \"half.txt\" to Zolt 2027 was never completed, or only half removed, and is left "
        "out "
        "of the deployment. Remove it from the additional files, and add it again if it is wanted.\r\n");
}

TEST_F(Additions, AFileOutOfTheEarlierDeploymentIsMarkedInTheNotes)
{
    AddedItems items;
    items.files.emplace_back();
    items.files[0].strName = L"a.txt";
    items.files[0].strSource = L"C:\\gone\\a.txt";
    items.files[0].origin = UserFileOrigin::EarlierCabinet;
    items.files[0].strShownFolder = L"X:";
    EXPECT_HOLDS(ComposeAdditions({items}), L"the copy in the earlier deployment was used");
}

TEST_F(Additions, ANameOfSeveralLinesAddsNoneToTheNotes)
{
    AddedItems items;
    items.files.emplace_back();
    items.files[0].strName = L"a\r\nb.txt";
    items.files[0].strSource = L"C:\\a\nb";
    items.files[0].strShownFolder = L"X:\nY";
    const CString notes = ComposeAdditions({items});
    EXPECT_HOLDS(notes, L"a<U+000D><U+000A>b.txt");
    EXPECT_HOLDS(notes, L"C:\\a<U+000A>b");
    EXPECT_HOLDS(notes, L"X:<U+000A>Y");
}

TEST_F(Additions, AProductWithoutAdditionsHasNoNotes)
{
    AddedItems nothing;
    nothing.strProductName = L"Zolt 2027";
    EXPECT_LT(ComposeAdditions({nothing}).Find(L"Zolt"), 0);
}
