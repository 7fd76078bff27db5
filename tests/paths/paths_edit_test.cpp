// Editing a path in its place in the tree, and what is checked when the edit ends.
#include "tests/paths/paths_page.h"

namespace {

class PathEdit : public PathsPage
{
protected:
    PathEdit() { WithDirectory(L"FONTSDIR", L"<Fonts root>"); }

    void ExpectAccepted(PathProperty property, const CString& text)
    {
        Edit(property, text);
        AwaitNoEdit();
        ExpectValues(property, {text});
        ShowAndGoBack();
    }
    // The box comes, the node keeps its text, and the edit is open again with the whole refused text selected.
    void ExpectRefused(PathProperty property, const CString& text, unsigned int message)
    {
        Edit(property, text);
        AnswerPathBox(message, text);
        ExpectEditAnew(property, text);
        Cancel();
        ShowAndGoBack();
    }
    void ExpectEditAnew(PathProperty property, const CString& text)
    {
        AwaitEdit();
        Look([this, property, text] {
            EXPECT_EQ(Tree().GetItemText(Value(property)), CString());
            EXPECT_EQ(CControl(EditBox()).GetSelectedText(), text);
        });
    }
    void Cancel()
    {
        Key(VK_ESCAPE);
        AwaitNoEdit();
    }
    CString LabelText() const { return CControl(EditBox()).GetText(); }
};
INSTANTIATE_BOTH_SHAPES(PathEdit);

// For as long as it lives; a failed check in between doesn't leave the process elsewhere.
class CCurrentFolder
{
public:
    explicit CCurrentFolder(const CString& folder)
    {
        GetCurrentDirectoryW(MAX_PATH, m_before);
        EXPECT_TRUE(SetCurrentDirectoryW(folder));
    }
    ~CCurrentFolder() { SetCurrentDirectoryW(m_before); }
    CCurrentFolder(const CCurrentFolder&) = delete;
    CCurrentFolder& operator=(const CCurrentFolder&) = delete;

private:
    wchar_t m_before[MAX_PATH] = {};
};

} // namespace

// ---- a single folder

TEST_P(PathEdit, AFolderThatIsNotThereIsAcceptedWithADriveWithoutAMessage)
{
    ExpectAccepted(PATH_TEMP, L"C:\\no\\such\\folder");
    EXPECT_EQ(Stored(PATH_TEMP), CString(L"C:\\no\\such\\folder"));
}

TEST_P(PathEdit, AFolderBelowOneOfTheProductIsAcceptedByItsForm)
{
    ExpectAccepted(PATH_TEMP, L"<Fonts root>\\sub");
    EXPECT_EQ(Stored(PATH_TEMP), CString(L"[FONTSDIR]sub"));
}

TEST_P(PathEdit, AnAnchoredFolderWithARestThatIsNotValidIsRefused)
{
    for (const wchar_t* text : {L"C:\\a*b", L"<Fonts root>\\a\\\\b"}) {
        ExpectRefused(PATH_TEMP, text, IDS_PATH_FOLDER_INVALID);
    }
}

// The rest alone is looked at, and it is a valid path.
TEST_P(PathEdit, AnAnchoredFolderWithADriveInItsRestIsAccepted)
{
    ExpectAccepted(PATH_TEMP, L"<Fonts root>\\C:\\a");
}

TEST_P(PathEdit, ANetworkFolderThatIsNotThereIsRefusedAndTheEditOpensAnewWithItsTextSelected)
{
    ExpectRefused(PATH_TEMP, L"\\\\server\\share\\no\\such", IDS_PATH_FOLDER_INVALID);
}

TEST_P(PathEdit, ARelativeFolderIsRefusedUnlessItIsThereBelowTheCurrentFolder)
{
    ExpectRefused(PATH_TEMP, L"relative\\path", IDS_PATH_FOLDER_INVALID);
    folder.AddFolder(L"relative");
    folder.AddFolder(L"relative\\path");
    const CCurrentFolder current(folder.GetPath());
    ExpectAccepted(PATH_TEMP, L"relative\\path");
}

// Without a drive: with one, nothing is looked for on the disk.
TEST_P(PathEdit, AFolderThatIsAFileIsRefused)
{
    folder.AddFile(L"file.txt", "");
    const CCurrentFolder current(folder.GetPath());
    ASSERT_NE(GetFileAttributesW(L"file.txt"), INVALID_FILE_ATTRIBUTES);
    ExpectRefused(PATH_TEMP, L"file.txt", IDS_PATH_FOLDER_INVALID);
}

// ---- entries of lists

TEST_P(PathEdit, ASemicolonInAPaletteFolderIsPartOfOnePathUntilTheNextReading)
{
    ExpectAccepted(PATH_TOOL_PALETTE, L"C:\\a;b");
    EXPECT_EQ(Stored(PATH_TOOL_PALETTE), CString(L"C:\\a;b"));
    WithPath(PATH_TOOL_PALETTE, Stored(PATH_TOOL_PALETTE));
    ExpectValues(PATH_TOOL_PALETTE, {L"C:\\a", L"b"});
    ShowAndGoBack();
}

TEST_P(PathEdit, ASemicolonInAPaletteFolderWithoutADriveIsRefusedAsOnePath)
{
    ExpectRefused(PATH_TOOL_PALETTE, L"a;b", IDS_PATH_FOLDER_INVALID);
}

TEST_P(PathEdit, TwoSupportFoldersInOneEntryAreCheckedOneByOneAndAreTwoEntriesOnReturn)
{
    Edit(PATH_SUPPORT, L"a; C:\\b");
    AnswerPathBox(IDS_PATH_FOLDER_INVALID, L"a");
    AwaitEdit();
    TypeLabel(L"C:\\a; C:\\b");
    EndEdit();
    AwaitNoEdit();
    ExpectValues(PATH_SUPPORT, {L"C:\\a; C:\\b"});
    ShowAndGoBack();
    EXPECT_EQ(Stored(PATH_SUPPORT), CString(L"C:\\a;C:\\b"));
    WithPath(PATH_SUPPORT, Stored(PATH_SUPPORT));
    ExpectValues(PATH_SUPPORT, {L"C:\\a", L"C:\\b"});
    ShowAndGoBack();
}

TEST_P(PathEdit, AnErrorInOneOfSeveralSupportFoldersDoesNotHideTheNext)
{
    const CString text = L"no; <Fonts root>\\a ;;\\\\server\\none; C:\\good*";
    Edit(PATH_SUPPORT, text);
    AnswerPathBox(IDS_PATH_FOLDER_INVALID, L"no");
    AnswerPathBox(IDS_PATH_FOLDER_INVALID, L"\\\\server\\none");
    AnswerPathBox(IDS_PATH_FOLDER_INVALID, L"C:\\good*");
    ExpectEditAnew(PATH_SUPPORT, text);
    Cancel();
    ShowAndGoBack();
}

TEST_P(PathEdit, ASupportFolderIsNotHeldAgainstTheFormsOfPathsAsThoseOfOtherListsAre)
{
    ExpectAccepted(PATH_SUPPORT, L"\\"); // a folder on the disk, but no valid path
    ExpectRefused(PATH_TOOL_PALETTE, L"\\", IDS_PATH_FOLDER_INVALID);
}

// ---- files

TEST_P(PathEdit, AFileThatIsNotValidIsRefusedAsAFileWithoutADriveAndAsAFolderWithOne)
{
    ExpectRefused(PATH_MENU_FILE, L"a*b", IDS_PATH_FILE_INVALID);
    ExpectRefused(PATH_MENU_FILE, L"C:\\a*b", IDS_PATH_FOLDER_INVALID);
}

TEST_P(PathEdit, AFileThatIsNotThereIsKeptOnYes)
{
    Edit(PATH_MENU_FILE, L"none.menu");
    AnswerPathBox(IDS_PATH_MISSING, L"none.menu", IDYES);
    AwaitNoEdit();
    ExpectValues(PATH_MENU_FILE, {L"none.menu"});
    ShowAndGoBack();
}

TEST_P(PathEdit, NoIsTheDefaultOfTheQuestionAndOpensTheEditAnew)
{
    Edit(PATH_MENU_FILE, L"none.menu");
    Answer(PathBox(IDS_PATH_MISSING, L"none.menu"), IDNO,
           [] { EXPECT_EQ(FindMessageBox()->defaultButton, IDNO); });
    ExpectEditAnew(PATH_MENU_FILE, L"none.menu");
    Cancel();
    ShowAndGoBack();
}

TEST_P(PathEdit, TheAlternateFontNeedNotExist)
{
    ExpectAccepted(PATH_ALT_FONT, L"none.shx");
    ExpectRefused(PATH_ALT_FONT, L"none?.shx", IDS_PATH_FILE_INVALID);
}

TEST_P(PathEdit, EveryOtherFileAsksFirst)
{
    for (const PathProperty property : {PATH_ENTERPRISE_MENU_FILE, PATH_CUSTOM_DICTIONARY, PATH_FONT_MAP_FILE,
                                        PATH_QNEW_TEMPLATE, PATH_ALTERNATIVE_PAGE_SETUPS_TEMPLATE}) {
        Edit(property, L"none");
        AnswerPathBox(IDS_PATH_MISSING, L"none", IDYES);
        AwaitNoEdit();
    }
    ShowAndGoBack();
}

// ---- keys

TEST_P(PathEdit, EnterEndsTheEditAndDoesNotLeaveThePage)
{
    Edit(PATH_TEMP, L"C:\\a");
    AwaitNoEdit();
    Look([this] { EXPECT_EQ(GetFocus(), Tree().GetWindow()); });
    ShowAndGoBack();
}

TEST_P(PathEdit, EscLeavesTheOldTextAndDoesNotCancelTheSetup)
{
    WithPath(PATH_TEMP, L"C:\\old");
    SelectValue(PATH_TEMP);
    BeginEdit();
    TypeLabel(L"a*b");
    Cancel();
    ExpectValues(PATH_TEMP, {L"C:\\old"});
    ShowAndGoBack();
}

// Ended by a message, an edit that has the focus ends twice.
TEST_P(PathEdit, AnEditThatEndsTwiceIsCheckedOnce)
{
    SelectValue(PATH_TEMP);
    BeginEdit();
    TypeLabel(L"a*b");
    Look([this] { SendMessageW(Tree().GetWindow(), TVM_ENDEDITLABELNOW, FALSE, 0); });
    AnswerPathBox(IDS_PATH_FOLDER_INVALID, L"a*b");
    AwaitEdit();
    Cancel();
    ExpectValues(PATH_TEMP, {L""});
    ShowAndGoBack();
}

TEST_P(PathEdit, F2OnAHeadingEditsNothing)
{
    SelectHeading(PATH_TEMP);
    Key(VK_F2);
    Look([this] { EXPECT_EQ(EditBox(), nullptr); });
    ShowAndGoBack();
}

TEST_P(PathEdit, TheTreeItselfMayEditNoHeading)
{
    Look([this] {
        for (const PathRow& row : PATH_TABLE) {
            EXPECT_EQ(SendMessageW(Tree().GetWindow(), TVM_EDITLABELW, 0,
                                   reinterpret_cast<LPARAM>(Heading(row.property))),
                      0);
        }
    });
    ShowAndGoBack();
}

TEST_P(PathEdit, F2WithinTheEditChangesNothing)
{
    SelectValue(PATH_TEMP);
    BeginEdit();
    TypeLabel(L"C:\\a");
    Key(VK_F2);
    Look([this] { EXPECT_EQ(LabelText(), CString(L"C:\\a")); });
    EndEdit();
    AwaitNoEdit();
    ExpectValues(PATH_TEMP, {L"C:\\a"});
    ShowAndGoBack();
}

TEST_P(PathEdit, EnterOnTheTreeLeavesForwards)
{
    SelectValue(PATH_TEMP);
    Key(VK_RETURN);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
}

TEST_P(PathEdit, TheMoveButtonsAreOffDuringAnEditAndAsBeforeAfterIt)
{
    WithPath(PATH_SUPPORT, L"C:\\a;C:\\b;C:\\c");
    SelectValue(PATH_SUPPORT, 1);
    ExpectButtons(L"EEEEE");
    BeginEdit();
    ExpectButtons(L"EEEDD");
    Cancel();
    ExpectButtons(L"EEEEE");
    SelectValue(PATH_SUPPORT, 2);
    BeginEdit();
    EndEdit();
    AwaitNoEdit();
    ExpectButtons(L"EEEED");
    ShowAndGoBack();
}

// ---- what is typed

TEST_P(PathEdit, AnEmptiedValueStaysEmptyAndIsStoredAsNoPath)
{
    WithPath(PATH_TEMP, L"C:\\old");
    Edit(PATH_TEMP, L"");
    AwaitNoEdit();
    ExpectValues(PATH_TEMP, {L""});
    ShowAndGoBack();
    EXPECT_EQ(Stored(PATH_TEMP), CString(L"[NULL]"));
    EXPECT_EQ(Marker(), CString(L"1"));
}

TEST_P(PathEdit, BlanksAloneAreAPathThatIsNotThere)
{
    ExpectRefused(PATH_TEMP, L"   ", IDS_PATH_FOLDER_INVALID);
}

TEST_P(PathEdit, TextsOfAllScriptsAreKept)
{
    ExpectAccepted(PATH_TEMP,
                   L"C:\\\u00C4\u03A9\u0416\u05D0\u0639\u0E01\u4E2D\u3042\uD55C\U0001F5FA\\%s & %n");
    EXPECT_EQ(Stored(PATH_TEMP),
              CString(L"C:\\\u00C4\u03A9\u0416\u05D0\u0639\u0E01\u4E2D\u3042\uD55C\U0001F5FA\\%s & %n"));
}

TEST_P(PathEdit, AMessageShowsPercentSignsAndAmpersandsOfAPathAsTheyStand)
{
    ExpectRefused(PATH_TEMP, L"%s & %n", IDS_PATH_FOLDER_INVALID);
}

TEST_P(PathEdit, OfSeveralPastedLinesTheFirstIsInTheLabel)
{
    SelectValue(PATH_TEMP);
    BeginEdit();
    Look([this] {
        const CString lines = L"C:\\first\r\nC:\\second\r\n";
        ASSERT_TRUE(OpenClipboard(Page()));
        EmptyClipboard();
        const SIZE_T bytes = (lines.GetLength() + 1) * sizeof(wchar_t);
        const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes);
        memcpy(GlobalLock(memory), lines.GetString(), bytes);
        GlobalUnlock(memory);
        SetClipboardData(CF_UNICODETEXT, memory);
        CloseClipboard();
        SendMessageW(EditBox(), WM_PASTE, 0, 0);
        EXPECT_EQ(LabelText(), CString(L"C:\\first"));
    });
    EndEdit();
    AwaitNoEdit();
    ExpectValues(PATH_TEMP, {L"C:\\first"});
    ShowAndGoBack();
}

TEST_P(PathEdit, ALongPathIsNotCutByItsEdit)
{
    const CString text = L"C:\\" + CString(L'a', 500);
    WithPath(PATH_TEMP, text);
    SelectValue(PATH_TEMP);
    BeginEdit();
    Look([this, text] { EXPECT_EQ(LabelText(), text); });
    EndEdit();
    AwaitNoEdit();
    ExpectValues(PATH_TEMP, {text});
    Edit(PATH_TEMP, text + L"\\more");
    AwaitNoEdit();
    ExpectValues(PATH_TEMP, {text + L"\\more"});
    ShowAndGoBack();
}

// ---- emptied entries

TEST_P(PathEdit, TheOnlyEntryOfAListStaysEmptyAndIsStoredAsNoPath)
{
    WithPath(PATH_SUPPORT, L"C:\\a");
    Edit(PATH_SUPPORT, L"");
    AwaitNoEdit();
    ExpectValues(PATH_SUPPORT, {L""});
    ExpectSelected(PATH_SUPPORT, 0);
    ShowAndGoBack();
    EXPECT_EQ(Stored(PATH_SUPPORT), CString(L"[NULL]"));
}

TEST_P(PathEdit, OneOfTwoEmptiedEntriesGoesAndTheOtherIsSelected)
{
    WithPath(PATH_SUPPORT, L"C:\\a;C:\\b");
    for (const int entry : {0, 1}) {
        Edit(PATH_SUPPORT, L"", entry);
        AwaitNoEdit();
        ExpectValues(PATH_SUPPORT, {entry == 0 ? L"C:\\b" : L"C:\\a"});
        ExpectSelected(PATH_SUPPORT, 0);
        ExpectButtons(L"EEEDD");
        ShowAndGoBack();
    }
}

TEST_P(PathEdit, AnEmptiedEntryInTheMiddleSelectsTheNext)
{
    WithPath(PATH_SUPPORT, L"C:\\a;C:\\b;C:\\c");
    Edit(PATH_SUPPORT, L"", 1);
    AwaitNoEdit();
    ExpectValues(PATH_SUPPORT, {L"C:\\a", L"C:\\c"});
    ExpectSelected(PATH_SUPPORT, 1);
    ShowAndGoBack();
}
