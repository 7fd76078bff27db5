// Add, Remove, Move Up and Move Down, on first, middle, last and only entries, with an edit open and without.
#include "tests/paths/paths_page.h"

namespace {

class PathList : public PathsPage
{
protected:
    PathList() { WithPath(PATH_SUPPORT, L"C:\\a;C:\\b;C:\\c"); }

    void WithOneEntry() { WithPath(PATH_SUPPORT, L"C:\\a"); }
    void ExpectEdited(PathProperty property, int entry)
    {
        AwaitEdit();
        ExpectSelected(property, entry);
    }
    // By a message, as a program sends it: the mouse would note the button first, and those of moving are off.
    void Command(int button)
    {
        Step(L"send a command", [this, button] {
            PostMessageW(Page(), WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
                         reinterpret_cast<LPARAM>(GetDlgItem(Page(), button)));
            return StepOutcome::Done();
        });
    }
    void CancelEdit()
    {
        Key(VK_ESCAPE);
        AwaitNoEdit();
    }
};
INSTANTIATE_BOTH_SHAPES(PathList);

} // namespace

// ---- which buttons are enabled

TEST_P(PathList, TheButtonsFollowTheSelectedNodeAndItsNeighbors)
{
    SelectHeading(PATH_SUPPORT);
    ExpectButtons(L"EEDDD");
    SelectValue(PATH_SUPPORT, 0);
    ExpectButtons(L"EEEDE");
    SelectValue(PATH_SUPPORT, 1);
    ExpectButtons(L"EEEEE");
    SelectValue(PATH_SUPPORT, 2);
    ExpectButtons(L"EEEED");
    SelectValue(PATH_COLOR_BOOK);
    ExpectButtons(L"EEEDD");
    SelectValue(PATH_TEMP);
    ExpectButtons(L"EDEDD");
    SelectValue(PATH_MENU_FILE);
    ExpectButtons(L"EDEDD");
    SelectHeading(PATH_TEMP);
    ExpectButtons(L"EDDDD");
    ShowAndGoBack();
}

// ---- Add

TEST_P(PathList, AddOnAnyEntryAppendsOneAtTheEndAndEditsIt)
{
    for (const int entry : {0, 1, 2}) {
        SelectValue(PATH_SUPPORT, entry);
        Press(IDC_PATH_ADD);
        ExpectEdited(PATH_SUPPORT, 3);
        TypeLabel(L"C:\\new");
        EndEdit();
        AwaitNoEdit();
        ExpectValues(PATH_SUPPORT, {L"C:\\a", L"C:\\b", L"C:\\c", L"C:\\new"});
        ExpectButtons(L"EEEED");
        ShowAndGoBack();
    }
}

TEST_P(PathList, AddOnAListsHeadingAppendsAnEntryAndShowsItsDescription)
{
    CString description;
    SelectHeading(PATH_SUPPORT);
    Look([&] { description = Text(IDC_PATH_DESCRIPTION); });
    Press(IDC_PATH_ADD);
    ExpectEdited(PATH_SUPPORT, 3);
    Look([&] { EXPECT_EQ(Text(IDC_PATH_DESCRIPTION), description); });
    CancelEdit();
    ShowAndGoBack();
}

TEST_P(PathList, AddUsesTheEmptyEntryOfAnEmptyList)
{
    SelectHeading(PATH_COLOR_BOOK);
    Press(IDC_PATH_ADD);
    ExpectEdited(PATH_COLOR_BOOK, 0);
    TypeLabel(L"C:\\books");
    EndEdit();
    AwaitNoEdit();
    ExpectValues(PATH_COLOR_BOOK, {L"C:\\books"});
    ShowAndGoBack();
}

TEST_P(PathList, ANewEntryThatStaysEmptyGoesAgain)
{
    for (const WORD key : {WORD(VK_ESCAPE), WORD(VK_RETURN)}) {
        SelectValue(PATH_SUPPORT, 0);
        Press(IDC_PATH_ADD);
        AwaitEdit();
        Key(key);
        AwaitNoEdit();
        ExpectValues(PATH_SUPPORT, {L"C:\\a", L"C:\\b", L"C:\\c"});
        ExpectSelected(PATH_SUPPORT, 2);
        ExpectButtons(L"EEEED");
        ShowAndGoBack();
    }
}

TEST_P(PathList, AddEndsAnOpenEditAndKeepsItsText)
{
    SelectValue(PATH_SUPPORT, 0);
    BeginEdit();
    TypeLabel(L"C:\\changed");
    Press(IDC_PATH_ADD);
    ExpectEdited(PATH_SUPPORT, 3);
    CancelEdit();
    ExpectValues(PATH_SUPPORT, {L"C:\\changed", L"C:\\b", L"C:\\c"});
    ShowAndGoBack();
}

TEST_P(PathList, AddStopsAtARefusedTextWhichIsEditedAnew)
{
    SelectValue(PATH_SUPPORT, 0);
    BeginEdit();
    TypeLabel(L"no");
    Press(IDC_PATH_ADD);
    AnswerPathBox(IDS_PATH_FOLDER_INVALID, L"no");
    ExpectEdited(PATH_SUPPORT, 0);
    Look([this] { EXPECT_EQ(CControl(EditBox()).GetText(), CString(L"no")); });
    CancelEdit();
    ExpectValues(PATH_SUPPORT, {L"C:\\a", L"C:\\b", L"C:\\c"});
    ShowAndGoBack();
}

// ---- Remove

TEST_P(PathList, RemoveSelectsTheNextEntryAndBehindTheLastThePreviousOne)
{
    SelectValue(PATH_SUPPORT, 0);
    Press(IDC_PATH_REMOVE);
    ExpectValues(PATH_SUPPORT, {L"C:\\b", L"C:\\c"});
    ExpectSelected(PATH_SUPPORT, 0);
    ExpectButtons(L"EEEDE");
    SelectValue(PATH_SUPPORT, 1);
    Press(IDC_PATH_REMOVE);
    ExpectValues(PATH_SUPPORT, {L"C:\\b"});
    ExpectSelected(PATH_SUPPORT, 0);
    ExpectButtons(L"EEEDD");
    ShowAndGoBack();
    EXPECT_EQ(Stored(PATH_SUPPORT), CString(L"C:\\b"));
}

TEST_P(PathList, RemoveInTheMiddleSelectsTheNextEntry)
{
    SelectValue(PATH_SUPPORT, 1);
    Press(IDC_PATH_REMOVE);
    ExpectValues(PATH_SUPPORT, {L"C:\\a", L"C:\\c"});
    ExpectSelected(PATH_SUPPORT, 1);
    ShowAndGoBack();
}

TEST_P(PathList, RemoveEmptiesTheOnlyEntryAndEditsIt)
{
    WithOneEntry();
    SelectValue(PATH_SUPPORT);
    Press(IDC_PATH_REMOVE);
    ExpectEdited(PATH_SUPPORT, 0);
    CancelEdit();
    ExpectValues(PATH_SUPPORT, {L""});
    ShowAndGoBack();
    EXPECT_EQ(Stored(PATH_SUPPORT), CString(L"[NULL]"));
}

TEST_P(PathList, RemoveEmptiesASingleValueAndEditsIt)
{
    WithPath(PATH_TEMP, L"C:\\old");
    SelectValue(PATH_TEMP);
    Press(IDC_PATH_REMOVE);
    AwaitEdit();
    CancelEdit();
    ExpectValues(PATH_TEMP, {L""});
    ShowAndGoBack();
    EXPECT_EQ(Stored(PATH_TEMP), CString(L"[NULL]"));
}

TEST_P(PathList, RemoveWithTheMouseDropsAHalfTypedEntryWithoutAMessage)
{
    SelectValue(PATH_SUPPORT, 1);
    BeginEdit();
    TypeLabel(L"half typed*");
    MousePress(IDC_PATH_REMOVE);
    AwaitNoEdit();
    Await(L"the entry is still there", [this] { return Values(PATH_SUPPORT).size() == 2; });
    ExpectValues(PATH_SUPPORT, {L"C:\\a", L"C:\\c"});
    ShowAndGoBack();
}

TEST_P(PathList, RemoveWithTheMouseEmptiesAHalfTypedOnlyEntryWithoutAMessage)
{
    WithOneEntry();
    SelectValue(PATH_SUPPORT);
    BeginEdit();
    TypeLabel(L"half typed*");
    MousePress(IDC_PATH_REMOVE);
    Await(L"the entry is not being edited, empty",
          [this] { return EditBox() && CControl(EditBox()).GetText().IsEmpty(); });
    CancelEdit();
    ExpectValues(PATH_SUPPORT, {L""});
    ShowAndGoBack();
}

TEST_P(PathList, AMouseThatLeavesTheRemoveButtonHasEmptiedTheEntryOnly)
{
    SelectValue(PATH_SUPPORT, 1);
    BeginEdit();
    TypeLabel(L"half typed*");
    MouseDown(IDC_PATH_REMOVE);
    AwaitNoEdit();
    ExpectValues(PATH_SUPPORT, {L"C:\\a", L"", L"C:\\c"});
    Look(
        [this] { PostMessageW(GetDlgItem(Page(), IDC_PATH_REMOVE), WM_LBUTTONUP, 0, MAKELPARAM(-50, -50)); });
    ShowAndGoBack();
    EXPECT_EQ(Stored(PATH_SUPPORT), CString(L"C:\\a;C:\\c"));
}

// A press that was made while nothing was being edited doesn't count for the next edit.
TEST_P(PathList, APressOfRemoveIsForgottenByTheNextEdit)
{
    SelectValue(PATH_SUPPORT, 1);
    MousePress(IDC_PATH_REMOVE);
    Await(L"the entry is still there", [this] { return Values(PATH_SUPPORT).size() == 2; });
    Edit(PATH_SUPPORT, L"C:\\changed", 0);
    AwaitNoEdit();
    ExpectValues(PATH_SUPPORT, {L"C:\\changed", L"C:\\c"});
    ShowAndGoBack();
}

TEST_P(PathList, RemoveOfARefusedEntryLeavesNothingToEditAnew)
{
    SelectValue(PATH_SUPPORT, 1);
    BeginEdit();
    TypeLabel(L"no");
    Command(IDC_PATH_REMOVE);
    AnswerPathBox(IDS_PATH_FOLDER_INVALID, L"no");
    Await(L"the entry is still there", [this] { return Values(PATH_SUPPORT).size() == 2; });
    ExpectValues(PATH_SUPPORT, {L"C:\\a", L"C:\\c"});
    ExpectSelected(PATH_SUPPORT, 1);
    ExpectButtons(L"EEEED");
    Look([this] { EXPECT_EQ(EditBox(), nullptr); });
    ShowAndGoBack();
}

TEST_P(PathList, EntriesThatAreAddedAndRemovedLeaveNothingInMemory)
{
    const auto addAndRemove = [this](int count) {
        for (; count > 0; --count) {
            SendMessageW(Page(), WM_COMMAND, IDC_PATH_ADD, 0);
            SetWindowTextW(EditBox(), L"C:\\new");
            SendMessageW(Page(), WM_COMMAND, IDC_PATH_REMOVE, 0);
        }
    };
    SelectValue(PATH_SUPPORT, 0);
    Look([this, addAndRemove] {
        addAndRemove(10); // fills the system's caches
        const long long before = AllocatedBytes();
        addAndRemove(100);
        EXPECT_LT(AllocatedBytes() - before, 100 * 20)
            << "less than 20 bytes an entry; a record alone has more";
        EXPECT_EQ(Values(PATH_SUPPORT), (Texts{L"C:\\a", L"C:\\b", L"C:\\c"}));
    });
    ShowAndGoBack();
}

// ---- Move Up and Move Down

TEST_P(PathList, AMoveOfARefusedEntryLeavesNothingToEditAnew)
{
    SelectValue(PATH_SUPPORT, 1);
    BeginEdit();
    TypeLabel(L"no");
    Command(IDC_PATH_MOVE_UP);
    AnswerPathBox(IDS_PATH_FOLDER_INVALID, L"no");
    Await(L"the entry did not move", [this] { return Selected() == Value(PATH_SUPPORT, 0); });
    ExpectValues(PATH_SUPPORT, {L"C:\\b", L"C:\\a", L"C:\\c"});
    ExpectButtons(L"EEEDE");
    Look([this] { EXPECT_EQ(EditBox(), nullptr); });
    ShowAndGoBack();
}

TEST_P(PathList, AMoveGoesPastTheNeighborsThatTheEndOfTheEditHasLeft)
{
    WithPath(PATH_SUPPORT, L"C:\\a;C:\\b;C:\\c;C:\\d");
    SelectValue(PATH_SUPPORT, 1);
    BeginEdit();
    TypeLabel(L"");
    Command(IDC_PATH_MOVE_DOWN);
    AwaitNoEdit();
    ExpectValues(PATH_SUPPORT, {L"C:\\a", L"C:\\d", L"C:\\c"});
    ExpectSelected(PATH_SUPPORT, 2);
    BeginEdit();
    TypeLabel(L"");
    Command(IDC_PATH_MOVE_UP);
    AwaitNoEdit();
    ExpectValues(PATH_SUPPORT, {L"C:\\d", L"C:\\a"});
    ExpectSelected(PATH_SUPPORT, 0);
    ShowAndGoBack();
}

TEST_P(PathList, AnEntryMovesUpToTheFrontAndNoFurther)
{
    SelectValue(PATH_SUPPORT, 2);
    Press(IDC_PATH_MOVE_UP);
    ExpectValues(PATH_SUPPORT, {L"C:\\a", L"C:\\c", L"C:\\b"});
    ExpectSelected(PATH_SUPPORT, 1);
    ExpectButtons(L"EEEEE");
    Press(IDC_PATH_MOVE_UP);
    ExpectValues(PATH_SUPPORT, {L"C:\\c", L"C:\\a", L"C:\\b"});
    ExpectSelected(PATH_SUPPORT, 0);
    ExpectButtons(L"EEEDE");
    Look([this] { SendMessageW(Page(), WM_COMMAND, IDC_PATH_MOVE_UP, 0); });
    ExpectValues(PATH_SUPPORT, {L"C:\\c", L"C:\\a", L"C:\\b"});
    ShowAndGoBack();
    EXPECT_EQ(Stored(PATH_SUPPORT), CString(L"C:\\c;C:\\a;C:\\b"));
}

TEST_P(PathList, AnEntryMovesDownToTheEndAndNoFurther)
{
    SelectValue(PATH_SUPPORT, 0);
    Press(IDC_PATH_MOVE_DOWN);
    ExpectValues(PATH_SUPPORT, {L"C:\\b", L"C:\\a", L"C:\\c"});
    ExpectSelected(PATH_SUPPORT, 1);
    Press(IDC_PATH_MOVE_DOWN);
    ExpectValues(PATH_SUPPORT, {L"C:\\b", L"C:\\c", L"C:\\a"});
    ExpectSelected(PATH_SUPPORT, 2);
    ExpectButtons(L"EEEED");
    Look([this] { SendMessageW(Page(), WM_COMMAND, IDC_PATH_MOVE_DOWN, 0); });
    ExpectValues(PATH_SUPPORT, {L"C:\\b", L"C:\\c", L"C:\\a"});
    ShowAndGoBack();
}

TEST_P(PathList, DescriptionFlagsAndPictureGoWithAMovedEntry)
{
    LPARAM record = 0;
    SelectValue(PATH_SUPPORT, 1);
    Look([&] { record = Item(Selected()).lParam; });
    Press(IDC_PATH_MOVE_UP);
    Look([&] {
        EXPECT_EQ(Item(Selected()).lParam, record);
        EXPECT_EQ(Item(Selected()).iImage, PATH_VALUE_IMAGE);
        EXPECT_EQ(Item(Selected()).iSelectedImage, PATH_VALUE_IMAGE);
        EXPECT_HOLDS(Text(IDC_PATH_DESCRIPTION), CString(L"support files"));
    });
    BeginEdit();
    CancelEdit();
    ShowAndGoBack();
}

TEST_P(PathList, AMovedEntryKeepsItsFirst259Characters)
{
    const CString text = L"C:\\" + CString(L'x', 300);
    WithPath(PATH_SUPPORT, L"C:\\a;" + text);
    SelectValue(PATH_SUPPORT, 1);
    Press(IDC_PATH_MOVE_UP);
    ExpectValues(PATH_SUPPORT, {text.Left(259), L"C:\\a"});
    ShowAndGoBack();
}

TEST_P(PathList, HeadingsAndSingleValuesDoNotMoveWhateverIsSent)
{
    SelectHeading(PATH_CUSTOM_DICTIONARY);
    Look([this] {
        for (const int button : {IDC_PATH_MOVE_UP, IDC_PATH_MOVE_DOWN, IDC_PATH_REMOVE, IDC_PATH_ADD}) {
            SendMessageW(Page(), WM_COMMAND, button, 0);
        }
        EXPECT_NE(Value(PATH_CUSTOM_DICTIONARY), nullptr) << "a moved heading loses its values";
        EXPECT_EQ(EditBox(), nullptr);
    });
    ShowAndGoBack();
}

// ---- by keyboard alone

TEST_P(PathList, TheMnemonicsOfTheButtonsWorkFromTheTree)
{
    const auto mnemonic = [this](wchar_t letter) {
        Step(L"press a mnemonic", [letter] {
            PostMessageW(GetFocus(), WM_SYSCHAR, letter, LPARAM(1) << 29);
            return StepOutcome::Done();
        });
    };
    SelectValue(PATH_SUPPORT, 0);
    mnemonic(L'd');
    Await(L"the entry did not move down", [this] { return Selected() == Value(PATH_SUPPORT, 1); });
    mnemonic(L'u');
    Await(L"the entry did not move up", [this] { return Selected() == Value(PATH_SUPPORT, 0); });
    mnemonic(L'm');
    Await(L"the entry is still there", [this] { return Values(PATH_SUPPORT).size() == 2; });
    mnemonic(L'a');
    AwaitEdit();
    TypeLabel(L"C:\\new");
    EndEdit();
    AwaitNoEdit();
    ExpectValues(PATH_SUPPORT, {L"C:\\b", L"C:\\c", L"C:\\new"});
    Look([this] { EXPECT_EQ(GetFocus(), Tree().GetWindow()); });
    ShowAndGoBack();
}
