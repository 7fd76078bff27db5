// Editing labels in the tree: how an edit begins, how it ends, what is refused, what moves with a new name.
#include "tests/files/files_page.h"
#include "tests/rules/user_key.h"

namespace {

class FilesRename : public FilesPage
{
protected:
    FilesRename()
    {
        WithFolder(MINE, L"FONTS", L"mine");
        WithFolder(OTHER, L"FONTS", L"Other");
        WithFolder(INNER, MINE, L"inner");
        WithFile(PLAN, INNER, Source(L"plan.txt"));
        WithDrive(DRIVE, L"E:");
        WithDrive(SECOND_DRIVE, L"F:");
    }
    void BeginEdit(const CString& path)
    {
        SelectNode(path);
        Key(VK_F2);
        AwaitEdit();
    }
    void ExpectNoEdit(const CString& path)
    {
        SelectNode(path);
        Key(VK_F2);
        ExpectEditClosed();
        Look([this] {
            SendMessageW(Tree().GetWindow(), TVM_EDITLABELW, 0, reinterpret_cast<LPARAM>(Selected()));
        });
        ExpectEditClosed();
    }
    void ExpectEditClosed()
    {
        Look([this] { EXPECT_EQ(EditBox(), nullptr); });
    }
    // The message comes, and the edit is open again; the node has its old label.
    void ExpectRefused(const CString& path, const CString& text, unsigned int message)
    {
        Rename(path, text);
        AnswerNameBox(message);
        AwaitEdit();
        Look([this, path] { EXPECT_NE(Node(path), nullptr) << Utf8(path); });
        Key(VK_ESCAPE);
        AwaitNoEdit();
        Look([this, path] { EXPECT_NE(Node(path), nullptr) << Utf8(path); });
    }
    void NewFolder()
    {
        SelectNode(L"~\\Samples");
        Press(IDC_FILES_ADD_FOLDER);
        AwaitEdit();
    }
    void ExpectThere(const CString& path, bool isThere = true)
    {
        Look([this, path, isThere] { EXPECT_EQ(Node(path) != nullptr, isThere) << Utf8(path); });
    }
    CString DefaultDirOf(const CString& key)
    {
        return Select(L"SELECT `DefaultDir` FROM `Directory` WHERE `Directory`='" + key + L"'")[0][0];
    }

    const CString MINE = UserKey(1);
    const CString OTHER = UserKey(2);
    const CString INNER = UserKey(3);
    const CString PLAN = UserKey(4);
    const CString DRIVE = UserKey(5);
    const CString SECOND_DRIVE = UserKey(6);
};
INSTANTIATE_BOTH_SHAPES(FilesRename);

} // namespace

// ---- beginning

TEST_P(FilesRename, OnlyAddedFoldersAndDrivesAreEdited)
{
    ExpectNoEdit(L"~");
    ExpectNoEdit(L"~\\Fonts");
    ExpectNoEdit(L"~\\Fonts\\mine\\inner\\plan.txt");
    for (const wchar_t* path : {L"~\\Fonts\\mine", L"E:"}) {
        BeginEdit(path);
        Key(VK_ESCAPE);
        AwaitNoEdit();
    }
    ShowAndGoBack();
}

TEST_P(FilesRename, WithNothingSelectedF2DoesNothing)
{
    SelectNothing();
    Key(VK_F2);
    ExpectEditClosed();
    ShowAndGoBack();
}

TEST_P(FilesRename, TheMenuBeginsAnEdit)
{
    RightClick(L"~\\Fonts\\mine");
    ChooseInMenu(ID_FILES_RENAME);
    AwaitEdit();
    TypeLabel(L"yours");
    Key(VK_RETURN);
    AwaitNoEdit();
    ExpectThere(L"~\\Fonts\\yours");
    ShowAndGoBack();
}

// ---- ending

TEST_P(FilesRename, EnterWritesTheNameAndKeepsTheKey)
{
    Rename(L"~\\Fonts\\mine", L"yours");
    AwaitNoEdit();
    Look([this] {
        EXPECT_EQ(KeyOf(L"~\\Fonts\\yours"), MINE);
        EXPECT_EQ(DefaultDirOf(MINE), CString(L"yours"));
        EXPECT_EQ(Select(L"SELECT `SourceFileName`,`Flags` FROM `TarnCustomFile` WHERE `Component_`='" +
                         MINE + L"'"),
                  (Rows{{L"yours", L"2"}}));
    });
    for (int round = 0; round < 2; ++round) {
        ExpectThere(L"~\\Fonts\\yours\\inner\\plan.txt");
        ShowAndGoBack();
    }
}

TEST_P(FilesRename, EscapeAndCancelKeepTheNameOfAFolderThatWasThere)
{
    for (const WORD key : {WORD{VK_ESCAPE}, WORD{VK_CANCEL}}) {
        BeginEdit(L"~\\Fonts\\mine");
        TypeLabel(L"yours");
        Key(key);
        AwaitNoEdit();
        ExpectThere(L"~\\Fonts\\mine\\inner\\plan.txt");
        ExpectThere(L"~\\Fonts\\yours", false);
    }
    ShowAndGoBack();
    EXPECT_EQ(DefaultDirOf(MINE), CString(L"mine"));
}

TEST_P(FilesRename, LosingTheFocusAcceptsTheName)
{
    BeginEdit(L"~\\Fonts\\mine");
    TypeLabel(L"yours");
    FocusTo(IDC_FILES_ADD);
    AwaitNoEdit();
    ExpectThere(L"~\\Fonts\\yours");
    ShowAndGoBack();
}

TEST_P(FilesRename, AClickIntoTheTreeAcceptsTheNameOfTheFolderUnderEdit)
{
    BeginEdit(L"~\\Fonts\\mine");
    TypeLabel(L"yours");
    Look([this] {
        const POINT place = PlaceOf(Node(L"~"));
        PostMessageW(Tree().GetWindow(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(place.x, place.y));
        PostMessageW(Tree().GetWindow(), WM_LBUTTONUP, 0, MAKELPARAM(place.x, place.y));
    });
    AwaitNoEdit();
    ExpectThere(L"~\\Fonts\\yours");
    ExpectThere(L"~\\Fonts\\mine", false);
    ShowAndGoBack();
}

TEST_P(FilesRename, BlanksAtBothEndsAreLeftOutAndDotsStay)
{
    Rename(L"~\\Fonts\\mine", L"  a b.. ");
    AwaitNoEdit();
    ExpectThere(L"~\\Fonts\\a b..");
    ShowAndGoBack();
    EXPECT_EQ(DefaultDirOf(MINE), CString(L"a b.."));
}

TEST_P(FilesRename, AnEmptyTextKeepsTheName)
{
    for (const wchar_t* text : {L"", L"   "}) {
        Rename(L"~\\Fonts\\mine", text);
        AwaitNoEdit();
        ExpectThere(L"~\\Fonts\\mine");
    }
    ShowAndGoBack();
}

TEST_P(FilesRename, TheSameNameInAnotherCaseChangesNothing)
{
    Rename(L"~\\Fonts\\mine", L"MINE");
    AwaitNoEdit();
    ExpectThere(L"~\\Fonts\\mine");
    ShowAndGoBack();
    EXPECT_EQ(DefaultDirOf(MINE), CString(L"mine"));
}

TEST_P(FilesRename, NamesOfAllScriptsAreWrittenAndFoundAgain)
{
    for (const wchar_t* name :
         {L"it's", L"100%s", L"\x00C4\x00DF", L"\x4E2D\x6587", L"\x05E9\x05DC", L"\xD83D\xDE00"}) {
        Rename(L"~\\Fonts\\Other", name);
        AwaitNoEdit();
        ShowAndGoBack();
        ExpectThere(L"~\\Fonts\\" + CString(name));
        Rename(L"~\\Fonts\\" + CString(name), L"Other");
        AwaitNoEdit();
        ShowAndGoBack();
    }
}

// The path of what lies below then has more than 260 characters; it stays apart from others.
TEST_P(FilesRename, AVeryLongNameIsWrittenAndTheFolderCanBeDeletedWithAllBelow)
{
    const CString name(L'n', 250);
    Rename(L"~\\Fonts\\mine", name);
    AwaitNoEdit();
    ExpectThere(L"~\\Fonts\\" + name + L"\\inner\\plan.txt");
    SelectNode(L"~\\Fonts\\" + name);
    Press(IDC_FILES_DELETE);
    ExpectThere(L"~\\Fonts\\" + name, false);
    ShowAndGoBack();
    for (const Row& row : Select(L"SELECT `Component_` FROM `TarnCustomFile`")) {
        EXPECT_EQ(row[0], OTHER);
    }
}

// ---- new folders and drives

TEST_P(FilesRename, CancelingTheEditOfANewFolderRemovesTheFolderAndItsRows)
{
    const int before = Count(L"TarnCustomFile");
    for (const WORD key : {WORD{VK_ESCAPE}, WORD{VK_CANCEL}}) {
        NewFolder();
        Key(key);
        AwaitNoEdit();
        ExpectThere(L"~\\Samples\\New folder", false);
        Look([this, before] {
            EXPECT_EQ(Count(L"TarnCustomFile"), before);
            EXPECT_TRUE(Select(L"SELECT `Directory` FROM `Directory` WHERE `Directory_Parent`='SAMPLES' AND "
                               L"`Directory`<>'DEEP'")
                            .empty());
        });
    }
    ShowAndGoBack();
}

TEST_P(FilesRename, CancelingTheEditOfANewDriveKeepsTheDrive)
{
    Press(IDC_FILES_ADD_DRIVE);
    AwaitEdit();
    CString drive;
    Look([this, &drive] { drive = Tree().GetItemText(Selected()); });
    Key(VK_ESCAPE);
    AwaitNoEdit();
    Look([this, &drive] {
        EXPECT_EQ(drive.GetLength(), 2);
        EXPECT_NE(Node(drive), nullptr);
        EXPECT_EQ(Count(L"CustomAction"), 3);
    });
    ShowAndGoBack();
}

TEST_P(FilesRename, AnEmptyNameOnANewFolderKeepsTheDefaultName)
{
    NewFolder();
    TypeLabel(L"");
    Key(VK_RETURN);
    AwaitNoEdit();
    ExpectThere(L"~\\Samples\\New folder");
    ShowAndGoBack();
}

TEST_P(FilesRename, AnEditOfANewFolderThatTheViewEndsWithoutTextKeepsTheDefaultName)
{
    NewFolder();
    Look([this] { SendMessageW(Tree().GetWindow(), TVM_ENDEDITLABELNOW, TRUE, 0); });
    AwaitNoEdit();
    ExpectThere(L"~\\Samples\\New folder");
    ShowAndGoBack();
}

TEST_P(FilesRename, OnceItsNameIsAcceptedANewFolderStaysWhenALaterEditIsCanceled)
{
    NewFolder();
    TypeLabel(L"fresh");
    Key(VK_RETURN);
    AwaitNoEdit();
    BeginEdit(L"~\\Samples\\fresh");
    Key(VK_ESCAPE);
    AwaitNoEdit();
    ExpectThere(L"~\\Samples\\fresh");
    ShowAndGoBack();
}

TEST_P(FilesRename, ANewFolderWhoseNameIsRefusedGoesWhenTheEditIsThenCanceled)
{
    NewFolder();
    TypeLabel(L"a:b");
    Key(VK_RETURN);
    AnswerNameBox(IDS_FILES_NAME_INVALID);
    AwaitEdit();
    TypeLabel(L"deep");
    Key(VK_RETURN);
    AnswerNameBox(IDS_FILES_SIBLING_HAS_NAME);
    AwaitEdit();
    Key(VK_ESCAPE);
    AwaitNoEdit();
    ExpectThere(L"~\\Samples\\New folder", false);
    ShowAndGoBack();
}

TEST_P(FilesRename, ANewFolderWhoseNameIsRefusedIsNamedBetterInTheSameEdit)
{
    NewFolder();
    TypeLabel(L"..");
    Key(VK_RETURN);
    AnswerNameBox(IDS_FILES_NAME_INVALID);
    AwaitEdit();
    TypeLabel(L"better");
    Key(VK_RETURN);
    AwaitNoEdit();
    ExpectThere(L"~\\Samples\\better");
    ShowAndGoBack();
}

// ---- refused names

TEST_P(FilesRename, ANameThatNoFolderCanHaveIsRefused)
{
    for (const wchar_t* text :
         {L"a\\b", L"..", L".", L"a/b", L"a:b", L"a*b", L"a?b", L"a\"b", L"a<b", L"a>b", L"a|b", L" .. "}) {
        ExpectRefused(L"~\\Fonts\\mine", text, IDS_FILES_NAME_INVALID);
    }
    ShowAndGoBack();
}

TEST_P(FilesRename, ARefusalByLosingTheFocusComesBackIntoTheEdit)
{
    BeginEdit(L"~\\Fonts\\mine");
    TypeLabel(L"a*b");
    FocusTo(IDC_FILES_ADD);
    AnswerNameBox(IDS_FILES_NAME_INVALID);
    AwaitEdit();
    Key(VK_ESCAPE);
    AwaitNoEdit();
    ExpectThere(L"~\\Fonts\\mine");
    ShowAndGoBack();
}

TEST_P(FilesRename, ASiblingsNameInAnotherCaseIsRefused)
{
    ExpectRefused(L"~\\Fonts\\mine", L"OTHER", IDS_FILES_SIBLING_HAS_NAME);
    ShowAndGoBack();
}

TEST_P(FilesRename, AFilesNameBesideTheFolderIsRefusedToo)
{
    WithFile(UserKey(9), L"FONTS", Source(L"beside.txt"));
    ExpectRefused(L"~\\Fonts\\mine", L"Beside.TXT", IDS_FILES_SIBLING_HAS_NAME);
    ShowAndGoBack();
}

TEST_P(FilesRename, ADriveIsRenamedInUpperCaseAndWritten)
{
    Rename(L"E:", L"k:");
    AwaitNoEdit();
    Look([this] {
        EXPECT_EQ(KeyOf(L"K:"), DRIVE);
        EXPECT_EQ(DefaultDirOf(DRIVE), CString(L"DRIVE_K"));
        EXPECT_EQ(Select(L"SELECT `Target` FROM `CustomAction` WHERE `Action`='" + DRIVE + L"'"),
                  (Rows{{L"K:"}}));
        EXPECT_EQ(product.msiProperties[DRIVE + L"_SUBST"], CString(L"K:"));
    });
    ShowAndGoBack();
    ExpectThere(L"K:");
    ShowAndGoBack();
}

TEST_P(FilesRename, ATextThatIsNoDriveOfAWorkstationIsRefused)
{
    for (const wchar_t* text : {L"A:", L"b:", L"K:x", L"KLM", L"K", L"1:"}) {
        ExpectRefused(L"E:", text, IDS_FILES_DRIVE_INVALID);
    }
    ExpectRefused(L"E:", L"K:\\", IDS_FILES_NAME_INVALID);
    ExpectRefused(L"E:", L"f:", IDS_FILES_SIBLING_HAS_NAME);
    ShowAndGoBack();
}

// ---- what moves with a name

// Another file of the name asks at the new path and not at the old one: the paths below have moved.
TEST_P(FilesRename, ANewNameMovesThePathsOfAllBelow)
{
    const CString second = Source(L"second\\plan.txt");
    Rename(L"~\\Fonts\\mine", L"yours");
    AwaitNoEdit();
    SelectNode(L"~\\Fonts\\yours\\inner");
    AddFiles({second});
    Answer(ReplaceBox(L"plan.txt", folder / L"sources\\plan.txt", second), IDNO);
    AddFolder(L"~\\Fonts", L"mine");
    AwaitNoEdit();
    AddFolder(L"~\\Fonts\\mine", L"inner");
    AwaitNoEdit();
    SelectNode(L"~\\Fonts\\mine\\inner");
    AddFiles({second});
    ExpectThere(L"~\\Fonts\\mine\\inner\\plan.txt");
    ExpectThere(L"~\\Fonts\\yours\\inner\\plan.txt");
    Look([this] {
        EXPECT_EQ(KeyOf(L"~\\Fonts\\yours\\inner"), INNER);
        EXPECT_EQ(KeyOf(L"~\\Fonts\\yours\\inner\\plan.txt"), PLAN);
    });
    ShowAndGoBack();
}

TEST_P(FilesRename, TwoFoldersCanExchangeTheirNames)
{
    Rename(L"~\\Fonts\\mine", L"third");
    AwaitNoEdit();
    Rename(L"~\\Fonts\\Other", L"mine");
    AwaitNoEdit();
    Rename(L"~\\Fonts\\third", L"Other");
    AwaitNoEdit();
    for (int round = 0; round < 2; ++round) {
        Look([this] {
            EXPECT_EQ(KeyOf(L"~\\Fonts\\mine"), OTHER);
            EXPECT_EQ(KeyOf(L"~\\Fonts\\Other\\inner"), INNER);
        });
        ShowAndGoBack();
    }
}

TEST_P(FilesRename, ARowThatFailsIsNotReportedAndTheTreeShowsTheName)
{
    Look([this] { Run(L"DROP TABLE `TarnCustomFile`"); });
    Rename(L"~\\Fonts\\mine", L"yours");
    AwaitNoEdit();
    ExpectThere(L"~\\Fonts\\yours\\inner\\plan.txt");
    ShowAndGoBack();
}

TEST_P(FilesRename, AddingFilesDuringAnEditAcceptsTheNameAndSortsTheFolder)
{
    BeginEdit(L"~\\Fonts\\mine");
    TypeLabel(L"zz");
    FocusTo(IDC_FILES_ADD);
    AwaitNoEdit();
    SelectNode(L"~\\Fonts");
    AddFiles({Source(L"q.txt")});
    ExpectTree({L"<Zolt>", L"  Fonts", L"    Other*", L"    q.txt*", L"    zz*", L"      inner*",
                L"        plan.txt*", L"  Samples", L"    Deep", L"E:*", L"F:*"});
    ShowAndGoBack();
}
