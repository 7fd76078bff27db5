// What the tree of additional files shows of a product's database when the page opens.
#include "tests/files/files_page.h"
#include "tests/rules/user_key.h"

namespace {

class FilesModel : public FilesPage
{
protected:
    void ExpectLoaded(const Lines& lines)
    {
        ExpectTree(lines);
        ShowAndGoBack();
    }
    void ExpectKey(const CString& path, const CString& key)
    {
        Look([this, path, key] { EXPECT_EQ(KeyOf(path), key) << Utf8(path); });
    }
    // A directory of the product below the installation folder, with its source in another place for `outside`.
    void WithSame(const CString& key, bool outside)
    {
        WithUsedDirectory(key, L"INSTALLDIR", L"Same", L"C:\\Zolt\\Same\\",
                          outside ? CString(L"E:\\pack\\Same\\") : CString(L"D:\\media\\Zolt\\Same\\"));
    }
};
INSTANTIATE_BOTH_SHAPES(FilesModel);

} // namespace

// ---- directories of the product

TEST_P(FilesModel, ADirectoryBelowTheInstallationTargetShowsAndOneElsewhereDoesNot)
{
    WithUsedDirectory(L"ELSEWHERE", L"TARGETDIR", L"Other", L"C:\\Other\\", L"D:\\media\\Zolt\\Other\\");
    WithUsedDirectory(L"BESIDE", L"INSTALLDIR", L"Beside", L"c:\\zolt\\Beside\\",
                      L"D:\\media\\Zolt\\Beside\\");
    ExpectLoaded({L"<Zolt>", L"  Beside", L"  Fonts", L"  Samples", L"    Deep"});
}

TEST_P(FilesModel, ADirectoryWithoutAComponentShowsOnlyAsTheParentOfOneThatHas)
{
    WithDirectory(L"BARE", L"INSTALLDIR", L"Bare", L"C:\\Zolt\\Bare\\", L"D:\\media\\Zolt\\Bare\\");
    ExpectKey(L"~", L"INSTALLDIR");
    ExpectKey(L"~\\Samples", L"SAMPLES");
    ExpectKey(L"~\\Samples\\Deep", L"DEEP");
    ExpectLoaded(OWN_FOLDERS);
}

TEST_P(FilesModel, OfTwoDirectoriesWithOneTargetTheFirstWithASourceOutsideIsKept)
{
    WithSame(L"A_INSIDE", false);
    WithSame(L"B_OUTSIDE", true);
    WithSame(L"C_OUTSIDE", true);
    ExpectKey(L"~\\Same", L"B_OUTSIDE");
    ExpectLoaded({L"<Zolt>", L"  Fonts", L"  Same", L"  Samples", L"    Deep"});
}

TEST_P(FilesModel, OfTwoDirectoriesWithOneTargetAndNoSourceOutsideTheFirstIsKept)
{
    WithSame(L"A_INSIDE", false);
    WithSame(L"B_INSIDE", false);
    ExpectKey(L"~\\Same", L"A_INSIDE");
    ShowAndGoBack();
}

TEST_P(FilesModel, OfTwoDirectoriesWithOneTargetTheFirstIsKeptWhenItsSourceLiesOutside)
{
    WithSame(L"A_OUTSIDE", true);
    WithSame(L"B_INSIDE", false);
    ExpectKey(L"~\\Same", L"A_OUTSIDE");
    ShowAndGoBack();
}

TEST_P(FilesModel, ADirectoryWithTheHidingFlagAndAnyDirectoryBelowItDoNotShow)
{
    WithMapRow(L"SAMPLES", L"", 4);
    WithUsedDirectory(L"DEEPER", L"DEEP", L"Deeper", L"C:\\Zolt\\Samples\\Deep\\Deeper\\",
                      L"D:\\media\\Zolt\\Samples\\Deep\\Deeper\\");
    ExpectLoaded({L"<Zolt>", L"  Fonts"});
}

TEST_P(FilesModel, TheChildOfAHiddenDirectoryDoesNotShowWhereverItsTargetLies)
{
    WithMapRow(L"SAMPLES", L"", 6);
    WithUsedDirectory(L"MOVED", L"SAMPLES", L"Moved", L"C:\\Zolt\\Moved\\", L"D:\\media\\Zolt\\Moved\\");
    ExpectLoaded({L"<Zolt>", L"  Fonts"});
}

// By exact comparison, unlike the installation folder's.
TEST_P(FilesModel, AHiddenPathHidesItsOwnCaseAlone)
{
    WithMapRow(L"SAMPLES", L"", 4);
    WithUsedDirectory(L"OTHERCASE", L"INSTALLDIR", L"x", L"C:\\Zolt\\SAMPLES\\x\\", L"D:\\media\\Zolt\\x\\");
    ExpectLoaded({L"<Zolt>", L"  Fonts", L"x"});
}

TEST_P(FilesModel, OtherFlagsHideNothing)
{
    WithMapRow(L"FONTS", L"Letters", 3);
    ExpectLoaded(OWN_FOLDERS);
}

TEST_P(FilesModel, AHiddenDirectoryWithoutATargetHidesNoPaths)
{
    WithMapRow(L"UNKNOWN", L"", 4);
    ExpectLoaded(OWN_FOLDERS);
}

TEST_P(FilesModel, WithNothingButHiddenDirectoriesTheTreeIsEmpty)
{
    WithMapRow(L"SAMPLES", L"", 4);
    WithMapRow(L"FONTS", L"", 4);
    ExpectButtons(L"DD");
    ExpectLoaded({});
    EXPECT_EQ(Modified(), CString(L"0"));
}

TEST_P(FilesModel, AKeyLikeAUsersWithoutAGuidIsTheProducts)
{
    const CString key = L"TARN_XXXXXXXX_1111_2222_3333_444444444444";
    ASSERT_EQ(key.GetLength(), 41);
    WithUsedDirectory(key, L"INSTALLDIR", L"Like", L"C:\\Zolt\\Like\\", L"D:\\media\\Zolt\\Like\\");
    ExpectKey(L"~\\Like", key);
    ExpectLoaded({L"<Zolt>", L"  Fonts", L"  Like", L"  Samples", L"    Deep"});
}

TEST_P(FilesModel, AUsersKeyAmongTheProductsDirectoriesDoesNotShowByItself)
{
    WithUsedDirectory(UserKey(7), L"INSTALLDIR", L"Mine", L"C:\\Zolt\\Mine\\", L"D:\\media\\Zolt\\Mine\\");
    ExpectLoaded(OWN_FOLDERS);
}

TEST_P(FilesModel, AnEntryWithoutARowDoesNotShow)
{
    directories.SetWithoutRow(L"FONTS", L"C:\\Zolt\\Fonts\\", L"D:\\media\\Zolt\\Fonts\\");
    ExpectLoaded({L"<Zolt>", L"  Samples", L"    Deep"});
}

TEST_P(FilesModel, ADirectoryWithoutASourceOrATargetDoesNotShow)
{
    WithUsedDirectory(L"NOSOURCE", L"INSTALLDIR", L"a", L"C:\\Zolt\\a\\", L"");
    WithUsedDirectory(L"NOTARGET", L"INSTALLDIR", L"b", L"", L"D:\\media\\Zolt\\b\\");
    ExpectLoaded(OWN_FOLDERS);
}

TEST_P(FilesModel, ATargetOfMoreThan260CharactersDoesNotShow)
{
    const CString longest = L"C:\\Zolt\\" + CString(L'l', 251) + L"\\"; // 260 with the backslash
    ASSERT_EQ(longest.GetLength(), 260);
    WithUsedDirectory(L"LONGEST", L"INSTALLDIR", L"l", longest, L"D:\\l\\");
    WithUsedDirectory(L"TOOLONG", L"INSTALLDIR", L"m", L"C:\\Zolt\\" + CString(L'm', 252) + L"\\",
                      L"D:\\m\\");
    ExpectLoaded({L"<Zolt>", L"  Fonts", L"  " + CString(L'l', 251), L"  Samples", L"    Deep"});
}

// ---- the root

TEST_P(FilesModel, WithoutARowOfItsOwnTheRootReadsInstallationDirectory)
{
    Run(L"DELETE FROM `TarnDirectoryMap`");
    ExpectLoaded({L"<Installation Directory>", L"  Fonts", L"  Samples", L"    Deep"});
}

TEST_P(FilesModel, WithAnEmptyTextTheRootReadsInstallationDirectory)
{
    Run(L"UPDATE `TarnDirectoryMap` SET `LocalString`=''");
    ExpectLoaded({L"<Installation Directory>", L"  Fonts", L"  Samples", L"    Deep"});
}

TEST_P(FilesModel, TheChainOfParentsEndsAtTheLanguageFolder)
{
    WithDirectory(L"InstallDirLocLang", L"INSTALLDIR", L"en", L"C:\\Zolt\\en\\", L"D:\\media\\Zolt\\en\\");
    WithUsedDirectory(L"HELP", L"InstallDirLocLang", L"Help", L"C:\\Zolt\\en\\Help\\",
                      L"D:\\media\\Zolt\\en\\Help\\");
    Run(L"DELETE FROM `Component` WHERE `Component`='ofFONTS'");
    Run(L"DELETE FROM `Component` WHERE `Component`='ofDEEP'");
    // Nothing leads on to the root, which so has no row.
    ExpectLoaded({L"en", L"  Help"});
}

TEST_P(FilesModel, TheChainOfParentsEndsAtADirectoryThatTheHostDoesNotKnow)
{
    WithUsedDirectory(L"STRAY", L"GONE", L"Stray", L"C:\\Zolt\\Gone\\Stray\\", L"D:\\media\\Zolt\\Stray\\");
    ExpectLoaded({L"<Zolt>", L"  Fonts", L"  Samples", L"    Deep", L"Stray"});
}

TEST_P(FilesModel, ParentsThatLeadInACircleEndTheChain)
{
    WithUsedDirectory(L"ONE", L"TWO", L"One", L"C:\\Zolt\\Two\\One\\", L"D:\\media\\Zolt\\One\\");
    WithDirectory(L"TWO", L"ONE", L"Two", L"C:\\Zolt\\Two\\", L"D:\\media\\Zolt\\Two\\");
    ExpectLoaded({L"<Zolt>", L"  Fonts", L"  Samples", L"    Deep", L"  Two", L"    One"});
}

TEST_P(FilesModel, AProductWithoutADirectoryManagerShowsItsAdditionsAlone)
{
    product.m_pDirectoryManager = nullptr;
    WithDrive(UserKey(1), L"E:");
    WithFolder(UserKey(2), UserKey(1), L"Plans");
    WithFile(UserKey(3), UserKey(2), L"C:\\nowhere\\plan.txt");
    ExpectLoaded({L"E:*", L"  Plans*", L"    plan.txt*"});
    EXPECT_EQ(Modified(), CString(L"1"));
}

TEST_P(FilesModel, WithoutAnInstallationFolderThePageOpensWithTheAdditions)
{
    WithFreshDatabase(L"bare.msi");
    WithDrive(UserKey(1), L"E:");
    ExpectLoaded({L"E:*"});
}

// ---- additions

TEST_P(FilesModel, AFileWhoseComponentIsGoneIsSkippedAndTheRestLoads)
{
    WithFile(UserKey(1), L"FONTS", L"C:\\nowhere\\a.txt");
    WithFile(UserKey(2), L"FONTS", L"C:\\nowhere\\b.txt");
    Run(L"DELETE FROM `Component` WHERE `Component`='" + UserKey(1) + L"'");
    ExpectLoaded({L"<Zolt>", L"  Fonts", L"    b.txt*", L"  Samples", L"    Deep"});
}

TEST_P(FilesModel, ADriveWhoseRowNamesNoDriveIsSkipped)
{
    WithDrive(UserKey(1), L"E:");
    WithDrive(UserKey(2), L"F:");
    WithDrive(UserKey(3), L"G:");
    Run(L"UPDATE `Directory` SET `DefaultDir`='LAUFWERK_E' WHERE `Directory`='" + UserKey(1) + L"'");
    Run(L"UPDATE `Directory` SET `DefaultDir`='DRIVE_7' WHERE `Directory`='" + UserKey(2) + L"'");
    ExpectLoaded({L"<Zolt>", L"  Fonts", L"  Samples", L"    Deep", L"G:*"});
}

TEST_P(FilesModel, ADriveWithoutItsActionOrWithAForeignKeyIsSkipped)
{
    WithDrive(UserKey(1), L"E:");
    WithDrive(L"FOREIGN", L"F:");
    Run(L"DELETE FROM `CustomAction` WHERE `Action`='" + UserKey(1) + L"'");
    ExpectLoaded(OWN_FOLDERS);
}

TEST_P(FilesModel, AFileOfAnEarlierRunShowsAlthoughItsSourceHasBeenDeleted)
{
    const CString source = Source(L"gone.txt");
    WithFile(UserKey(1), L"FONTS", source);
    DeleteFileW(source);
    ExpectLoaded({L"<Zolt>", L"  Fonts", L"    gone.txt*", L"  Samples", L"    Deep"});
}

TEST_P(FilesModel, AFolderWhoseParentIsGoneIsDroppedFromTheViewWhileItsRowsStay)
{
    WithFolder(UserKey(1), UserKey(9), L"Orphan");
    WithFolder(UserKey(2), UserKey(1), L"Below");
    ExpectLoaded(OWN_FOLDERS);
    EXPECT_EQ(Count(L"TarnCustomFile"), 2);
    EXPECT_EQ(Modified(), CString(L"0"));
}

TEST_P(FilesModel, AddedFoldersThatLeadInACircleAreDropped)
{
    WithFolder(UserKey(1), UserKey(2), L"One");
    WithFolder(UserKey(2), UserKey(1), L"Two");
    WithFolder(UserKey(3), UserKey(3), L"Self");
    ExpectLoaded(OWN_FOLDERS);
}

TEST_P(FilesModel, EmptyFoldersInFoldersAndOnDrivesLoadWhateverTheirKeysOrder)
{
    WithFolder(UserKey(1), UserKey(2), L"Inner");
    WithFolder(UserKey(2), UserKey(3), L"Outer");
    WithFolder(UserKey(3), L"FONTS", L"Top");
    WithFolder(UserKey(4), UserKey(5), L"On it");
    WithDrive(UserKey(5), L"E:");
    ExpectLoaded({L"<Zolt>", L"  Fonts", L"    Top*", L"      Outer*", L"        Inner*", L"  Samples",
                  L"    Deep", L"E:*", L"  On it*"});
}

TEST_P(FilesModel, AFileInADirectoryThatOnlyTheServiceKnowsStandsAtTheRootLevel)
{
    servicePaths[L"SYSTEM"] = L"C:\\windows\\system32\\";
    WithFile(UserKey(1), L"SYSTEM", L"C:\\nowhere\\a.txt");
    ExpectLoaded({L"<Zolt>", L"  Fonts", L"  Samples", L"    Deep", L"a.txt*"});
}

TEST_P(FilesModel, EachLevelIsSortedAndTheFirstRootIsOpen)
{
    int number = 1;
    for (const wchar_t* name : {L"b", L"A", L"c", L"B2"}) {
        WithFolder(UserKey(number++), L"INSTALLDIR", name);
    }
    WithFile(UserKey(number++), UserKey(1), L"C:\\z.txt");
    WithFile(UserKey(number++), UserKey(1), L"C:\\y.txt");
    Look([this] {
        EXPECT_TRUE(Tree().IsExpanded(Node(L"~")));
        EXPECT_FALSE(Tree().IsExpanded(Node(L"~\\b")));
    });
    ExpectLoaded({L"<Zolt>", L"  A*", L"  b*", L"    y.txt*", L"    z.txt*", L"  B2*", L"  c*", L"  Fonts",
                  L"  Samples", L"    Deep"});
}

TEST_P(FilesModel, ADatabaseWithoutTheTablesOfAdditionsShowsTheProductsFolders)
{
    Run(L"DROP TABLE `TarnCustomFile`");
    Run(L"DROP TABLE `CustomAction`");
    ExpectLoaded(OWN_FOLDERS);
}

TEST_P(FilesModel, ADatabaseWithoutAnyTableLeavesTheTreeEmpty)
{
    for (const wchar_t* table :
         {L"TarnCustomFile", L"CustomAction", L"Component", L"Directory", L"TarnDirectoryMap"}) {
        Run(CString(L"DROP TABLE `") + table + L"`");
    }
    ExpectLoaded({});
}

// ---- one product after the other

TEST_P(FilesModel, APathOfOneProductDoesNotShowInTheNext)
{
    WithFolder(UserKey(1), L"FONTS", L"Mine");
    WithFile(UserKey(2), UserKey(1), L"C:\\nowhere\\a.txt");
    WithDrive(UserKey(3), L"E:");
    ShowAndGoBack();

    product.msiProperties.clear();
    WithFreshDatabase(L"next.msi");
    WithMapRow(L"INSTALLDIR", L"<Next>", 0);
    WithDirectory(L"INSTALLDIR", L"TARGETDIR", L"Next", L"D:\\Next\\", L"D:\\media\\Next\\");
    WithUsedDirectory(L"FONTS", L"INSTALLDIR", L"Letters", L"D:\\Next\\Letters\\",
                      L"D:\\media\\Next\\Letters\\");
    WithFolder(UserKey(1), L"FONTS", L"Yours");
    WithFile(UserKey(2), L"FONTS", L"C:\\nowhere\\b.txt");
    WithDrive(UserKey(3), L"F:");
    WithFolder(UserKey(4), UserKey(3), L"On F");
    ExpectLoaded({L"<Next>", L"  Letters", L"    b.txt*", L"    Yours*", L"F:*", L"  On F*"});
}

// The directory of its file isn't the host's, so only the service can resolve it, and for this product it can't.
TEST_P(FilesModel, APathOfOneProductIsNotThatOfADirectoryThatTheNextOnesHostDoesNotKnow)
{
    ShowAndGoBack();
    WithFreshDatabase(L"next.msi");
    WithMapRow(L"INSTALLDIR", L"<Zolt>", 0);
    WithDirectory(L"INSTALLDIR", L"TARGETDIR", L"Zolt", L"C:\\Zolt\\", L"D:\\media\\Zolt\\");
    WithUsedDirectory(L"LETTERS", L"INSTALLDIR", L"Fonts", L"C:\\Zolt\\Fonts\\", L"D:\\media\\Zolt\\Fonts\\");
    WithFile(UserKey(2), L"FONTS", L"C:\\nowhere\\b.txt");
    ExpectLoaded({L"<Zolt>", L"  Fonts", L"b.txt*"});
}
