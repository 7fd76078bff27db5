// Files and folders that are dropped on the tree from a file manager.
#include "tests/files/files_page.h"
#include "tests/host/outside_links.h"
#include "tests/rules/user_key.h"

namespace {

class FilesDrop : public FilesPage
{
protected:
    // Of the disk, below the test's folder.
    CString Folder(const CString& name)
    {
        const CString file = Source(name + L"\\x");
        DeleteFileW(file);
        return file.Left(file.ReverseFind(L'\\'));
    }
    CString SourcesFolder() const { return folder.GetPath() + L"sources"; }
    // A box of the page with what wasn't added; the items come with their reasons.
    void AnswerSummary(const std::vector<std::pair<CString, unsigned int>>& items)
    {
        CString lines;
        for (const auto& [path, reason] : items) {
            lines += (lines.IsEmpty() ? L"" : L"\n\n") + path + L"\n" + ResourceText(reason);
        }
        Answer(WarningBox(ResourceText(IDS_FILES_NOT_ADDED, lines)), IDOK);
    }
    void ExpectThere(const CString& path, bool isThere = true)
    {
        Look([this, path, isThere] { EXPECT_EQ(Node(path) != nullptr, isThere) << Utf8(path); });
    }
};
INSTANTIATE_BOTH_SHAPES(FilesDrop);

} // namespace

// ---- where to

TEST_P(FilesDrop, FilesGoIntoTheFolderUnderTheMouseWhateverIsSelected)
{
    const Lines files = {Source(L"b.txt"), Source(L"a.txt")};
    SelectNode(L"~");
    DropOnto(L"~\\Fonts", files);
    ExpectTree({L"<Zolt>", L"  Fonts", L"    a.txt*", L"    b.txt*", L"  Samples", L"    Deep"});
    Look([this] {
        EXPECT_TRUE(Tree().IsExpanded(Node(L"~\\Fonts")));
        EXPECT_EQ(Count(L"File"), 2);
    });
    ShowAndGoBack();
    EXPECT_EQ(Modified(), CString(L"1"));
}

TEST_P(FilesDrop, ADropThatAFileManagerPostsIsAdded)
{
    SelectNode(L"~\\Fonts");
    PostDrop({3, 200}, {Source(L"a.txt")});
    Await(L"the file isn't there", [this] { return Node(L"~\\Fonts\\a.txt") != nullptr; });
    ShowAndGoBack();
}

TEST_P(FilesDrop, BelowTheItemsFilesGoIntoTheSelectedFolder)
{
    SelectNode(L"~\\Samples");
    DropAt({3, 200}, {Source(L"a.txt")});
    ExpectThere(L"~\\Samples\\a.txt");
    ShowAndGoBack();
}

TEST_P(FilesDrop, OntoAFileTheyGoIntoItsFolder)
{
    WithFile(UserKey(1), L"FONTS", Source(L"old.txt"));
    Expand(L"~\\Fonts");
    DropOnto(L"~\\Fonts\\old.txt", {Source(L"new.txt")});
    ExpectThere(L"~\\Fonts\\new.txt");
    ShowAndGoBack();
}

TEST_P(FilesDrop, WithNothingSelectedTheyGoIntoTheLowestDisplayPath)
{
    SelectNothing();
    DropAt({3, 200}, {Source(L"a.txt")});
    ExpectThere(L"~\\a.txt");
    ShowAndGoBack();
}

TEST_P(FilesDrop, IntoAnEmptyTreeNothingIsAdded)
{
    WithFreshDatabase(L"bare.msi");
    DropAt({3, 3}, {Source(L"a.txt"), Folder(L"tree")});
    ExpectTree({});
    ShowAndGoBack();
    ExpectNoAdditions();
}

// ---- folders

TEST_P(FilesDrop, AFolderComesWithAllThatLiesInItAtAnyDepth)
{
    Source(L"tree\\a.txt", "1");
    Source(L"tree\\sub\\b.txt", "22");
    Source(L"tree\\sub\\deeper\\c.txt", "333");
    Folder(L"tree\\empty");
    DropOnto(L"~\\Fonts", {SourcesFolder() + L"\\tree"});
    for (int round = 0; round < 2; ++round) {
        ExpectTree({L"<Zolt>", L"  Fonts", L"    tree*", L"      a.txt*", L"      empty*", L"      sub*",
                    L"        b.txt*", L"        deeper*", L"          c.txt*", L"  Samples", L"    Deep"});
        ShowAndGoBack();
    }
    EXPECT_EQ(Count(L"File"), 3);
    EXPECT_EQ(Count(L"TarnCustomFile"), 7);
}

TEST_P(FilesDrop, AFolderOfANameThatIsThereIsFilledUp)
{
    WithFolder(UserKey(1), L"INSTALLDIR", L"Tree");
    WithFile(UserKey(2), UserKey(1), Source(L"first\\old.txt"));
    Source(L"tree\\new.txt");
    Source(L"Fonts\\font.txt");
    DropOnto(L"~", {SourcesFolder() + L"\\tree", SourcesFolder() + L"\\Fonts"});
    ExpectTree({L"<Zolt>", L"  Fonts", L"    font.txt*", L"  Samples", L"    Deep", L"  Tree*",
                L"    new.txt*", L"    old.txt*"});
    Look([this] { EXPECT_EQ(KeyOf(L"~\\Tree"), UserKey(1)); });
    ShowAndGoBack();
}

TEST_P(FilesDrop, TheSameFolderTwiceAddsNothingTheSecondTime)
{
    Source(L"tree\\a.txt");
    Source(L"tree\\sub\\b.txt");
    for (int round = 0; round < 2; ++round) {
        DropOnto(L"~\\Fonts", {SourcesFolder() + L"\\tree"});
        Look([this] { EXPECT_EQ(Count(L"TarnCustomFile"), 4); });
    }
    ShowAndGoBack();
}

TEST_P(FilesDrop, AFolderLoopIsReportedAndEndsTheAdditionOfThatBranchAlone)
{
    Source(L"tree\\a.txt");
    Source(L"tree\\z\\b.txt");
    const CString loop = SourcesFolder() + L"\\tree\\loop";
    const FolderLink link(loop, SourcesFolder() + L"\\tree");
    if (!link.IsThere()) {
        GTEST_SKIP() << "this system makes no links here";
    }
    DropOnto(L"~\\Fonts", {SourcesFolder() + L"\\tree"});
    AnswerSummary({{loop, IDS_FILES_REASON_LOOP}});
    ExpectThere(L"~\\Fonts\\tree\\a.txt");
    ExpectThere(L"~\\Fonts\\tree\\z\\b.txt");
    ShowAndGoBack();
}

TEST_P(FilesDrop, TheRootOfADriveComesWithoutAFolderOfItsOwn)
{
    Source(L"tree\\a.txt");
    Source(L"tree\\sub\\b.txt");
    const LinkedDrive drive(L"Q:", SourcesFolder() + L"\\tree\\");
    if (!drive.IsThere()) {
        GTEST_SKIP() << "this system makes no drives here";
    }
    DropOnto(L"~\\Fonts", {L"Q:\\"});
    ExpectTree(
        {L"<Zolt>", L"  Fonts", L"    a.txt*", L"    sub*", L"      b.txt*", L"  Samples", L"    Deep"});
    Look([this] { EXPECT_EQ(Data(L"~\\Fonts\\sub\\b.txt")->SourcePath, CString(L"Q:\\sub\\b.txt")); });
    ShowAndGoBack();
}

// ---- questions and refusals

TEST_P(FilesDrop, AFileOfTheSameNameAsksAsThePickersDo)
{
    const CString first = Source(L"one\\plan.txt");
    const CString second = Source(L"two\\plan.txt");
    DropOnto(L"~\\Fonts", {first});
    DropOnto(L"~\\Fonts", {second});
    Answer(ReplaceBox(L"plan.txt", first, second), IDNO);
    Look([this, first] { EXPECT_EQ(Data(L"~\\Fonts\\plan.txt")->SourcePath, first); });
    DropOnto(L"~\\Fonts", {second, first, second});
    Answer(ReplaceBox(L"plan.txt", first, second), IDYES);
    Answer(ReplaceBox(L"plan.txt", second, first), IDNO);
    Look([this, second] {
        EXPECT_EQ(Data(L"~\\Fonts\\plan.txt")->SourcePath, second);
        EXPECT_EQ(Count(L"File"), 1);
    });
    ShowAndGoBack();
}

TEST_P(FilesDrop, AFileThatHasVanishedIsReportedAndTheOthersAreAdded)
{
    const CString gone = SourcesFolder() + L"\\gone.txt";
    DropOnto(L"~\\Fonts", {Source(L"a.txt"), gone, Source(L"b.txt")});
    Answer(MissingBox(gone), IDOK);
    ExpectTree({L"<Zolt>", L"  Fonts", L"    a.txt*", L"    b.txt*", L"  Samples", L"    Deep"});
    ShowAndGoBack();
}

TEST_P(FilesDrop, AFileInTheWayOfAFolderAndAFolderInTheWayOfAFileAreReportedAtTheEnd)
{
    const CString file = Source(L"one\\name");
    const CString fileLikeFolder = Source(L"two\\Sub");
    const CString folderLikeFile = Folder(L"three\\name");
    Source(L"three\\name\\inner.txt");
    WithFile(UserKey(1), L"FONTS", file);
    WithFolder(UserKey(2), L"FONTS", L"sub");
    DropOnto(L"~\\Fonts", {folderLikeFile, fileLikeFolder, Source(L"good.txt")});
    AnswerSummary(
        {{folderLikeFile, IDS_FILES_REASON_FILE_IN_WAY}, {fileLikeFolder, IDS_FILES_REASON_FOLDER_IN_WAY}});
    ExpectTree(
        {L"<Zolt>", L"  Fonts", L"    good.txt*", L"    name*", L"    sub*", L"  Samples", L"    Deep"});
    ShowAndGoBack();
}

TEST_P(FilesDrop, WhatTheDatabaseRefusesIsReportedAtTheEnd)
{
    const CString first = Source(L"a.txt");
    const CString second = Source(L"tree\\b.txt");
    Look([this] { Run(L"DROP TABLE `File`"); });
    DropOnto(L"~\\Fonts", {first, SourcesFolder() + L"\\tree"});
    AnswerSummary({{first, IDS_FILES_REASON_REFUSED}, {second, IDS_FILES_REASON_REFUSED}});
    ExpectTree({L"<Zolt>", L"  Fonts", L"    tree*", L"  Samples", L"    Deep"});
    ShowAndGoBack();
}

TEST_P(FilesDrop, TenItemsAreListedAndTheOthersCounted)
{
    Lines files;
    CString lines;
    for (int number = 0; number < 12; ++number) {
        files.push_back(Source(L"f" + NumberText(number)));
        if (number < 10) {
            lines += files.back() + L"\n" + ResourceText(IDS_FILES_REASON_REFUSED) + L"\n\n";
        }
    }
    lines += ResourceText(IDS_FILES_NOT_ADDED_MORE, L"2");
    Look([this] { Run(L"DROP TABLE `File`"); });
    DropOnto(L"~\\Fonts", files);
    Answer(WarningBox(ResourceText(IDS_FILES_NOT_ADDED, lines)), IDOK);
    ExpectTree(OWN_FOLDERS);
    ShowAndGoBack();
}

TEST_P(FilesDrop, PathsThatAreTooLongHereOrOnAWorkstationAreReported)
{
    const CString longFolder(L'l', 200);
    WithFolder(UserKey(1), L"INSTALLDIR", longFolder);
    const CString file = Source(CString(L't', 52));
    const CString tree = Folder(CString(L'f', 52));
    DropOnto(L"~\\" + longFolder, {file, tree, Source(L"fits.txt")});
    AnswerSummary({{file, IDS_FILES_REASON_TOO_LONG}, {tree, IDS_FILES_REASON_TOO_LONG}});
    ExpectThere(L"~\\" + longFolder + L"\\fits.txt");
    ShowAndGoBack();
    EXPECT_EQ(Count(L"TarnCustomFile"), 2);
}

// ---- the page meanwhile

TEST_P(FilesDrop, AnEditUnderWayIsAcceptedFirst)
{
    WithFolder(UserKey(1), L"FONTS", L"mine");
    SelectNode(L"~\\Fonts\\mine");
    Key(VK_F2);
    AwaitEdit();
    TypeLabel(L"yours");
    DropOnto(L"~", {Source(L"a.txt")});
    AwaitNoEdit();
    ExpectThere(L"~\\Fonts\\yours");
    ExpectThere(L"~\\a.txt");
    ShowAndGoBack();
}

TEST_P(FilesDrop, WithARefusedNameUnderEditNothingIsAdded)
{
    WithFolder(UserKey(1), L"FONTS", L"mine");
    SelectNode(L"~\\Fonts\\mine");
    Key(VK_F2);
    AwaitEdit();
    TypeLabel(L"a*b");
    DropOnto(L"~", {Source(L"a.txt")});
    AnswerNameBox(IDS_FILES_NAME_INVALID);
    AwaitEdit();
    Key(VK_ESCAPE);
    AwaitNoEdit();
    ExpectThere(L"~\\a.txt", false);
    ShowAndGoBack();
}

TEST_P(FilesDrop, AFolderDroppedOntoAnItemOfItsNameGoesBelowIt)
{
    Source(L"Fonts\\a.txt");
    DropOnto(L"~\\Fonts", {SourcesFolder() + L"\\Fonts"});
    ExpectTree({L"<Zolt>", L"  Fonts", L"    Fonts*", L"      a.txt*", L"  Samples", L"    Deep"});
    ShowAndGoBack();
}
