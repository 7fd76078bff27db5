// The menu of the tree, by mouse and by keyboard, the buttons' states, and the keys of the page.
#include "tests/files/files_page.h"
#include "tests/rules/user_key.h"

namespace {

class FilesMenu : public FilesPage
{
protected:
    FilesMenu()
    {
        WithFolder(UserKey(1), L"FONTS", L"mine");
        WithFile(UserKey(2), L"FONTS", Source(L"plan.txt"));
        WithDrive(UserKey(3), L"E:");
    }
    // What Shift+F10 and the menu key ask for.
    void KeyboardMenu()
    {
        Look([this] {
            PostMessageW(Tree().GetWindow(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(Tree().GetWindow()),
                         -1);
        });
    }
    CString StatusText() const { return Text(IDC_FILES_STATUS); }
    void ExpectStatus(const CString& path, const CString& text)
    {
        SelectNode(path);
        Look([this, text] { EXPECT_EQ(StatusText(), text); });
    }
    void ExpectLeft(NavigationResult result) { EXPECT_EQ(ShowPage(), result); }
};
INSTANTIATE_BOTH_SHAPES(FilesMenu);

} // namespace

// ---- states: drive, folder, rename, delete

TEST_P(FilesMenu, ARightClickSelectsTheItemAndTheMenuFitsIt)
{
    const struct
    {
        const wchar_t* path;
        const wchar_t* states;
    } cases[] = {{L"~", L"EEDD"},
                 {L"~\\Fonts", L"EEDD"},
                 {L"~\\Fonts\\mine", L"EEEE"},
                 {L"E:", L"EEEE"},
                 {L"~\\Fonts\\plan.txt", L"EEDE"}};
    for (const auto& [path, states] : cases) {
        RightClick(path);
        ExpectMenu(states);
        ExpectSelected(path);
    }
    ShowAndGoBack();
}

TEST_P(FilesMenu, ARightClickBelowTheItemsSelectsNothing)
{
    SelectNode(L"~\\Fonts");
    RightClick(L"");
    ExpectMenu(L"EDDD");
    Look([this] { EXPECT_EQ(Selected(), nullptr); });
    ExpectButtons(L"DD");
    ShowAndGoBack();
}

TEST_P(FilesMenu, TheKeyboardsMenuFitsTheSelectedItem)
{
    for (const wchar_t* path : {L"~", L"~\\Fonts\\mine", L"~\\Fonts\\plan.txt"}) {
        SelectNode(path);
        KeyboardMenu();
        ExpectMenu(CString(path) == L"~" ? L"EEDD" : CString(path) == L"~\\Fonts\\mine" ? L"EEEE" : L"EEDE");
        ExpectSelected(path);
    }
    SelectNothing();
    KeyboardMenu();
    ExpectMenu(L"EDDD");
    ShowAndGoBack();
}

TEST_P(FilesMenu, TheButtonsFitTheSelectedItem)
{
    const struct
    {
        const wchar_t* path;
        const wchar_t* states;
    } cases[] = {{L"~", L"ED"}, {L"~\\Fonts\\mine", L"EE"}, {L"E:", L"EE"}, {L"~\\Fonts\\plan.txt", L"EE"}};
    for (const auto& [path, states] : cases) {
        SelectNode(path);
        ExpectButtons(states);
    }
    SelectNothing();
    ExpectButtons(L"DD");
    ShowAndGoBack();
}

// ---- commands

TEST_P(FilesMenu, AddsAFolderInTheItemOfTheMenu)
{
    RightClick(L"~\\Fonts\\mine");
    ChooseInMenu(ID_FILES_ADD_FOLDER);
    AwaitEdit();
    ExpectSelected(L"~\\Fonts\\mine\\New folder");
    Key(VK_ESCAPE);
    AwaitNoEdit();
    Look([this] { EXPECT_EQ(Node(L"~\\Fonts\\mine\\New folder"), nullptr) << "it was a new one"; });
    ShowAndGoBack();
}

TEST_P(FilesMenu, AddsADriveWhateverIsSelected)
{
    RightClick(L"~\\Fonts\\mine");
    ChooseInMenu(ID_FILES_ADD_DRIVE);
    AwaitEdit();
    Look([this] {
        EXPECT_EQ(Relative(Selected(), TVGN_PARENT), nullptr);
        EXPECT_EQ(Tree().GetItemText(Selected()).Mid(1), CString(L":"));
    });
    Key(VK_RETURN);
    AwaitNoEdit();
    ShowAndGoBack();
    EXPECT_EQ(Count(L"CustomAction"), 2);
}

TEST_P(FilesMenu, DeletesTheItemOfTheMenu)
{
    RightClick(L"~\\Fonts\\plan.txt");
    ChooseInMenu(ID_FILES_DELETE);
    Look([this] { EXPECT_EQ(Node(L"~\\Fonts\\plan.txt"), nullptr); });
    ShowAndGoBack();
}

TEST_P(FilesMenu, TheMenuOfTheKeyboardRenames)
{
    SelectNode(L"~\\Fonts\\mine");
    KeyboardMenu();
    ChooseInMenu(ID_FILES_RENAME);
    AwaitEdit();
    TypeLabel(L"yours");
    Key(VK_RETURN);
    AwaitNoEdit();
    Look([this] { EXPECT_NE(Node(L"~\\Fonts\\yours"), nullptr); });
    ShowAndGoBack();
}

// ---- keys

TEST_P(FilesMenu, EnterWithoutAnEditSelectsATargetAndLeavesThePage)
{
    SelectNothing();
    FocusTo(IDC_FILES_TREE);
    SelectNothing();
    Key(VK_RETURN);
    ExpectLeft(NAVIGATION_NEXT);
}

TEST_P(FilesMenu, EnterInAnEditDoesNotLeaveThePage)
{
    Rename(L"~\\Fonts\\mine", L"yours");
    AwaitNoEdit();
    ShowAndGoBack();
}

TEST_P(FilesMenu, EscapeInAnEditDoesNotAskWhetherToLeave)
{
    SelectNode(L"~\\Fonts\\mine");
    Key(VK_F2);
    AwaitEdit();
    Key(VK_ESCAPE);
    AwaitNoEdit();
    ShowAndGoBack(); // a question would fail it
}

// ---- in words

TEST_P(FilesMenu, TheLineBelowTheTreeReportsWhatIsSelected)
{
    const CString gone = folder.GetPath() + L"sources\\gone & 100%.txt";
    WithFile(UserKey(4), L"FONTS", gone);
    ExpectStatus(L"~", ResourceText(IDS_FILES_PRODUCT_FOLDER));
    ExpectStatus(L"~\\Fonts", ResourceText(IDS_FILES_PRODUCT_FOLDER));
    ExpectStatus(L"~\\Fonts\\mine", ResourceText(IDS_FILES_ADDED_FOLDER));
    ExpectStatus(L"E:", ResourceText(IDS_FILES_ADDED_DRIVE));
    ExpectStatus(L"~\\Fonts\\plan.txt", ResourceText(IDS_FILES_ADDED_FILE, folder / L"sources\\plan.txt"));
    ExpectStatus(L"~\\Fonts\\gone & 100%.txt", ResourceText(IDS_FILES_SOURCE_GONE, gone));
    SelectNothing();
    Look([this] { EXPECT_EQ(StatusText(), ResourceText(IDS_FILES_NOTHING_SELECTED)); });
    ShowAndGoBack();
}
