// Browse: the system's pickers, answered and canceled, with an edit open and without.
#include "automation/file_picker.h"
#include "automation/folder_picker.h"
#include "tests/paths/paths_page.h"
#include "tests/support/import_redirect.h"

#include <commdlg.h>
#include <shlobj.h>

namespace {

// What the page asks of the file dialog; the call goes on to the system's.
OPENFILENAMEW fileCall;
CString fileTitle;
CString fileFilter;
CString fileFolder;

BOOL WINAPI NoteFileDialog(OPENFILENAMEW* dialog)
{
    fileCall = *dialog;
    fileTitle = dialog->lpstrTitle;
    fileFilter = CString(dialog->lpstrFilter) + L"|" +
                 (dialog->lpstrFilter + CString(dialog->lpstrFilter).GetLength() + 1);
    fileFolder = dialog->lpstrFile;
    return GetOpenFileNameW(dialog);
}

BROWSEINFOW folderCall;
CString folderTitle;
CString folderSelection;

LPITEMIDLIST WINAPI NoteFolderPicker(BROWSEINFOW* browse)
{
    folderCall = *browse;
    folderTitle = browse->lpszTitle;
    folderSelection = reinterpret_cast<const wchar_t*>(browse->lParam);
    return SHBrowseForFolderW(browse);
}

class PathBrowse : public PathsPage
{
protected:
    PathBrowse()
    {
        picked = folder.AddFolder(L"picked");
        WithPath(PATH_TEMP, picked);
        WithPath(PATH_SUPPORT, L"C:\\a;C:\\b");
    }
    // The shell fetches icons whenever it gets to them, and keeps them.
    void TearDown() override
    {
        CountFromHere();
        PathsPage::TearDown();
    }
    void ExpectPicked(PathProperty property, int entry = 0)
    {
        Look([this, property, entry] {
            EXPECT_EQ(Tree().GetItemText(Value(property, entry)).CompareNoCase(picked), 0)
                << Utf8(Tree().GetItemText(Value(property, entry)));
            EXPECT_EQ(Selected(), Value(property, entry));
        });
    }

    CString picked;
};
INSTANTIATE_BOTH_SHAPES(PathBrowse);

} // namespace

// ---- folders

TEST_P(PathBrowse, APickedFolderIsTheNodesText)
{
    WithPath(PATH_SAVE_FILE, L"C:\\old");
    SelectValue(PATH_SAVE_FILE);
    Press(IDC_PATH_BROWSE);
    PickFolder(picked);
    ExpectPicked(PATH_SAVE_FILE);
    ExpectButtons(L"EDEDD");
    ShowAndGoBack();
    EXPECT_EQ(Stored(PATH_SAVE_FILE).CompareNoCase(picked), 0);
}

TEST_P(PathBrowse, ACanceledPickerChangesNothing)
{
    SelectValue(PATH_SUPPORT, 1);
    Press(IDC_PATH_BROWSE);
    PickFolder(L"");
    ExpectValues(PATH_SUPPORT, {L"C:\\a", L"C:\\b"});
    ExpectSelected(PATH_SUPPORT, 1);
    ExpectButtons(L"EEEED");
    ShowAndGoBack();
}

TEST_P(PathBrowse, ThePickerBeginsAtTheNodesTextWithoutATitleInFileSystemsOnly)
{
    const CImportRedirect redirect(L"RolloutUi.dll", "SHBrowseForFolderW",
                                   reinterpret_cast<void*>(NoteFolderPicker));
    ASSERT_TRUE(redirect.IsInPlace());
    SelectValue(PATH_TEMP);
    Press(IDC_PATH_BROWSE);
    PickFolder(L"");
    Look([this] {
        EXPECT_EQ(folderSelection, picked);
        EXPECT_EQ(folderTitle, CString());
        EXPECT_NE(folderCall.ulFlags & BIF_RETURNONLYFSDIRS, 0u);
        EXPECT_EQ(folderCall.pidlRoot, nullptr);
        EXPECT_EQ(folderCall.hwndOwner, Page());
    });
    ShowAndGoBack();
}

TEST_P(PathBrowse, AFolderThatIsGoneDoesNotKeepThePickerFromOpening)
{
    WithPath(PATH_TEMP, L"\\\\server\\gone\\folder");
    SelectValue(PATH_TEMP);
    Press(IDC_PATH_BROWSE);
    PickFolder(picked);
    ExpectPicked(PATH_TEMP);
    ShowAndGoBack();
}

// ---- headings

TEST_P(PathBrowse, BrowseOnAHeadingOpensItAndSelectsItsFirstValue)
{
    for (const PathProperty property : {PATH_SUPPORT, PATH_SAVE_FILE}) {
        SelectHeading(property);
        Press(IDC_PATH_BROWSE);
        Await(L"the value is not selected", [this, property] { return Selected() == Value(property); });
        Look([this, property] {
            const int open = RowOf(property).heading.image + 1;
            EXPECT_EQ(Item(Heading(property)).iImage, open);
            EXPECT_EQ(Item(Heading(property)).iSelectedImage, open);
            EXPECT_TRUE(Tree().IsExpanded(Heading(property)));
            EXPECT_EQ(FindFolderPicker(), nullptr);
        });
    }
    ShowAndGoBack();
}

TEST_P(PathBrowse, BrowseOnAHeadingOfHeadingsSelectsTheFirstOfThem)
{
    Look([this] {
        SendMessageW(Tree().GetWindow(), TVM_SELECTITEM, TVGN_CARET,
                     reinterpret_cast<LPARAM>(Relative(Heading(PATH_PRINTER_CONFIG), TVGN_PARENT)));
    });
    Press(IDC_PATH_BROWSE);
    Await(L"the heading is not selected", [this] { return Selected() == Heading(PATH_PRINTER_CONFIG); });
    Look([this] { EXPECT_EQ(Item(Relative(Selected(), TVGN_PARENT)).iImage, 22); });
    ShowAndGoBack();
}

TEST_P(PathBrowse, OnlyBrowseChangesThePictureOfAHeading)
{
    Look([this] {
        const HTREEITEM heading = Heading(PATH_SUPPORT);
        for (const UINT code : {TVE_EXPAND, TVE_COLLAPSE, TVE_EXPAND}) {
            SendMessageW(Tree().GetWindow(), TVM_EXPAND, code, reinterpret_cast<LPARAM>(heading));
            EXPECT_EQ(Item(heading).iImage, 17);
        }
    });
    SelectHeading(PATH_SUPPORT);
    Press(IDC_PATH_BROWSE); // expanded already
    Await(L"the value is not selected", [this] { return Selected() == Value(PATH_SUPPORT); });
    Look([this] { EXPECT_EQ(Item(Heading(PATH_SUPPORT)).iImage, 17); });
    ShowAndGoBack();
}

// ---- with an edit open

TEST_P(PathBrowse, AHalfTypedEntryIsReplacedByThePickedFolderWithoutAMessage)
{
    SelectValue(PATH_SUPPORT, 1);
    BeginEdit();
    TypeLabel(L"half typed*");
    MousePress(IDC_PATH_BROWSE);
    PickFolder(picked);
    ExpectPicked(PATH_SUPPORT, 1);
    Look([this] { EXPECT_EQ(Values(PATH_SUPPORT).size(), 2u); });
    ShowAndGoBack();
}

TEST_P(PathBrowse, CancelingThePickerLeavesTheOldTextOfAHalfTypedEntry)
{
    SelectValue(PATH_SUPPORT, 1);
    BeginEdit();
    TypeLabel(L"half typed*");
    MousePress(IDC_PATH_BROWSE);
    PickFolder(L"");
    ExpectValues(PATH_SUPPORT, {L"C:\\a", L"C:\\b"});
    ShowAndGoBack();
}

TEST_P(PathBrowse, ANewEntryGoesAgainWhenThePickerIsCanceled)
{
    SelectValue(PATH_SUPPORT, 0);
    Press(IDC_PATH_ADD);
    AwaitEdit();
    MousePress(IDC_PATH_BROWSE);
    PickFolder(L"");
    Await(L"the entry is still there", [this] { return Values(PATH_SUPPORT).size() == 2; });
    ExpectSelected(PATH_SUPPORT, 1);
    ShowAndGoBack();
}

TEST_P(PathBrowse, AnEmptyOnlyEntryStaysWhenThePickerIsCanceled)
{
    SelectValue(PATH_COLOR_BOOK);
    Press(IDC_PATH_BROWSE);
    PickFolder(L"");
    ExpectValues(PATH_COLOR_BOOK, {L""});
    ShowAndGoBack();
}

// By keyboard nothing arms the button: the emptied entry goes at once, and Browse puts one back in its place.
TEST_P(PathBrowse, AnEmptiedEntryComesBackInItsPlaceWithThePickedFolder)
{
    WithPath(PATH_SUPPORT, L"C:\\a;C:\\b;C:\\c");
    for (const int entry : {0, 1, 2}) {
        SelectValue(PATH_SUPPORT, entry);
        BeginEdit();
        TypeLabel(L"");
        Step(L"press a mnemonic", [] {
            PostMessageW(GetFocus(), WM_SYSCHAR, L'r', LPARAM(1) << 29);
            return StepOutcome::Done();
        });
        PickFolder(picked);
        ExpectPicked(PATH_SUPPORT, entry);
        Look([this] { EXPECT_EQ(Values(PATH_SUPPORT).size(), 3u); });
        BeginEdit(); // it can be edited as any other
        Key(VK_ESCAPE);
        AwaitNoEdit();
        ShowAndGoBack();
    }
}

TEST_P(PathBrowse, AnEntryThatWasEmptiedBeforeDoesNotComeBack)
{
    for (const bool byEnter : {true, false}) {
        WithPath(PATH_SUPPORT, L"C:\\a;C:\\b");
        SelectValue(PATH_SUPPORT, 0);
        BeginEdit();
        TypeLabel(L"");
        if (byEnter) {
            Key(VK_RETURN);
        } else {
            Look([this] { SetFocus(GetDlgItem(Page(), IDC_PATH_ADD)); });
            Look([this] { SetFocus(Tree().GetWindow()); });
            Look([this] { SetFocus(GetDlgItem(Page(), IDC_PATH_BROWSE)); });
        }
        AwaitNoEdit();
        Press(IDC_PATH_BROWSE);
        PickFolder(picked);
        Look([this] { EXPECT_EQ(Values(PATH_SUPPORT).size(), 1u); });
        ExpectPicked(PATH_SUPPORT, 0);
        ShowAndGoBack();
    }
}

// ---- files

TEST_P(PathBrowse, APickedFileShowsInSmallLettersAndIsStoredSo)
{
    const CString file = folder.AddFile(L"X.TTF", "");
    SelectValue(PATH_FONT_MAP_FILE);
    Press(IDC_PATH_BROWSE);
    PickFile(file);
    CString expected = file;
    ExpectValues(PATH_FONT_MAP_FILE, {expected.MakeLower()});
    ShowAndGoBack();
    EXPECT_EQ(Stored(PATH_FONT_MAP_FILE), expected);
}

TEST_P(PathBrowse, ACanceledFileDialogChangesNothing)
{
    WithPath(PATH_MENU_FILE, L"C:\\Old.menu");
    SelectValue(PATH_MENU_FILE);
    Press(IDC_PATH_BROWSE);
    PickFile(L"");
    ExpectValues(PATH_MENU_FILE, {L"C:\\Old.menu"});
    ShowAndGoBack();
}

TEST_P(PathBrowse, TheFileDialogIsTitledFilteredAndDoesNotStartFromTheValue)
{
    const CImportRedirect redirect(L"RolloutUi.dll", "GetOpenFileNameW",
                                   reinterpret_cast<void*>(NoteFileDialog));
    ASSERT_TRUE(redirect.IsInPlace());
    WithPath(PATH_MENU_FILE, L"C:\\Old.menu");
    SelectValue(PATH_MENU_FILE);
    Press(IDC_PATH_BROWSE);
    PickFile(L"");
    Look([this] {
        EXPECT_EQ(fileCall.Flags, DWORD(OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT | OFN_FILEMUSTEXIST));
        EXPECT_EQ(fileCall.nMaxFile, 260u);
        EXPECT_EQ(fileFolder, CString());
        EXPECT_EQ(fileTitle, ResourceText(IDS_PATH_FILE_TITLE));
        EXPECT_EQ(fileFilter,
                  ResourceText(IDS_ALL_FILES_FILTER) + L"|" + ResourceText(IDS_ALL_FILES_FILTER_PATTERN));
        EXPECT_EQ(fileCall.hwndOwner, Page());
    });
    ShowAndGoBack();
}

TEST_P(PathBrowse, TheCurrentFolderStaysWhatItWas)
{
    const auto currentFolder = [] {
        wchar_t current[MAX_PATH] = {};
        GetCurrentDirectoryW(MAX_PATH, current);
        return CString(current);
    };
    const CString before = currentFolder();
    SelectValue(PATH_MENU_FILE);
    Press(IDC_PATH_BROWSE);
    PickFile(folder.AddFile(L"a.menu", ""));
    ShowAndGoBack();
    EXPECT_EQ(currentFolder(), before);
}

// ---- the mouse on the tree

TEST_P(PathBrowse, ADoubleClickOnAValueBrowsesForIt)
{
    SelectValue(PATH_TEMP);
    Look([this] {
        POINT point = PlaceOf(Value(PATH_TEMP));
        const LPARAM where = MAKELPARAM(point.x, point.y);
        ClientToScreen(Tree().GetWindow(), &point);
        SetCursorPos(point.x, point.y);
        PostMessageW(Tree().GetWindow(), WM_LBUTTONDBLCLK, MK_LBUTTON, where);
        PostMessageW(Tree().GetWindow(), WM_LBUTTONUP, 0, where);
    });
    PickFolder(L"");
    ExpectSelected(PATH_TEMP, 0);
    Await(L"the tree has not got the focus", [this] { return GetFocus() == Tree().GetWindow(); });
    ShowAndGoBack();
}

TEST_P(PathBrowse, AClickOnNothingLeavesNoNodeForTheButtons)
{
    Look([this] {
        NMHDR click = {Tree().GetWindow(), IDC_PATH_TREE, UINT(NM_CLICK)};
        SetCursorPos(0, 0);
        SendMessageW(Page(), WM_NOTIFY, IDC_PATH_TREE, reinterpret_cast<LPARAM>(&click));
    });
    ExpectButtons(L"DDDDD");
    for (const int button : {IDC_PATH_BROWSE, IDC_PATH_ADD, IDC_PATH_REMOVE, IDC_PATH_MOVE_UP}) {
        Look([this, button] { SendMessageW(Page(), WM_COMMAND, button, 0); });
    }
    SelectHeading(PATH_SUPPORT);
    ExpectButtons(L"EEDDD");
    ShowAndGoBack();
}

TEST_P(PathBrowse, ARightClickSelectsTheNodeBelowIt)
{
    Look([this] {
        POINT point = PlaceOf(Heading(PATH_ALT_FONT));
        ClientToScreen(Tree().GetWindow(), &point);
        SetCursorPos(point.x, point.y);
        NMHDR click = {Tree().GetWindow(), IDC_PATH_TREE, UINT(NM_RCLICK)};
        SendMessageW(Page(), WM_NOTIFY, IDC_PATH_TREE, reinterpret_cast<LPARAM>(&click));
        EXPECT_EQ(Selected(), Heading(PATH_ALT_FONT));
        EXPECT_HOLDS(Text(IDC_PATH_DESCRIPTION), CString(L"doesn't have to exist"));
    });
    ShowAndGoBack();
}
