// The table of custom shortcuts: what it shows, what it refuses and what becomes of it in the database.
#include "base/files.h"
#include "installer/query.h"
#include "installer/record.h"
#include "tests/workstation/workstation_page.h"
#include "workstation/shortcut_switch_rules.h"

#include <msiquery.h>

namespace {

class CustomShortcuts : public WorkstationPage
{
protected:
    void GoNext()
    {
        Press(Next());
        EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    }
    // Next is refused by that box; then the page is left by Back.
    void ExpectRefused(unsigned int text, const CString& refused)
    {
        Press(Next());
        AnswerError(text, refused);
        Look([this] { ExpectRows(L""); });
        ShowAndGoBack();
    }
};
INSTANTIATE_BOTH_SHAPES(CustomShortcuts);

// A wizard page stores once.
class ShortcutsOfATab : public CustomShortcuts
{
};
INSTANTIATE_TEST_SUITE_P(Shapes, ShortcutsOfATab, testing::Values(Shape::Tab), ShapeName);

} // namespace

// ---- what the page shows

TEST_P(CustomShortcuts, TheTableOpensWithPromptsInTheFirstOfFiveRows)
{
    Look([this] {
        const CListControl grid = Control(IDC_SHORTCUTS);
        EXPECT_EQ(grid.GetLines().size(), 5u);
        EXPECT_EQ(grid.GetColumnCount(), 2);
        EXPECT_EQ(Row(0),
                  ResourceText(IDS_SHORTCUT_NAME_PROMPT) + L"|" + ResourceText(IDS_SHORTCUT_SWITCHES_PROMPT));
        for (int row = 1; row < 5; ++row) {
            EXPECT_EQ(Row(row), CString(L"|"));
        }
        EXPECT_TRUE(IsShown(IDC_SHORTCUTS));
        EXPECT_TRUE(IsShown(IDC_SHORTCUTS_HEADING));
    });
    ShowAndGoBack();
}

TEST_P(CustomShortcuts, TheColumnsShareTheWidthUnderTheirCaptions)
{
    Look([this] {
        const HWND grid = Control(IDC_SHORTCUTS).GetWindow();
        RECT client = {};
        GetClientRect(grid, &client);
        for (const int column : {0, 1}) {
            EXPECT_EQ(SendMessageW(grid, LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column), 0),
                      client.right / 2);
            wchar_t caption[50] = L"";
            LVCOLUMNW found = {};
            found.mask = LVCF_TEXT;
            found.pszText = caption;
            found.cchTextMax = ARRAYSIZE(caption);
            SendMessageW(grid, LVM_GETCOLUMNW, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&found));
            EXPECT_EQ(CString(caption),
                      ResourceText(column == 0 ? IDS_SHORTCUT_NAME_COLUMN : IDS_SHORTCUT_SWITCHES_COLUMN));
        }
    });
    ShowAndGoBack();
}

TEST_P(CustomShortcuts, TheTableIsAsHighAsItsRowsAndNeverHigherThanItsPlace)
{
    Look([this] {
        const HWND grid = Control(IDC_SHORTCUTS).GetWindow();
        RECT client = {}, header = {}, last = {};
        GetClientRect(grid, &client);
        GetWindowRect(reinterpret_cast<HWND>(SendMessageW(grid, LVM_GETHEADER, 0, 0)), &header);
        SendMessageW(grid, LVM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&last));
        const int rows = 5 * (last.bottom - last.top);
        EXPECT_EQ(client.bottom, header.bottom - header.top + rows + 2);
        RECT place = {0, 0, 311, 88};
        MapDialogRect(Page(), &place);
        EXPECT_LE(Control(IDC_SHORTCUTS).GetRectangle().bottom - Control(IDC_SHORTCUTS).GetRectangle().top,
                  place.bottom);
    });
    ShowAndGoBack();
}

TEST_P(CustomShortcuts, ATableThatIsLowerThanItsRowsStaysSo)
{
    static constexpr int HEIGHT = 40;
    context.preInitHooks = {[](PageContext* page) {
        SetWindowPos(GetDlgItem(page->hParent, IDC_SHORTCUTS), nullptr, 0, 0, 300, HEIGHT,
                     SWP_NOMOVE | SWP_NOZORDER);
        return 1;
    }};
    Look([this] {
        const RECT place = Control(IDC_SHORTCUTS).GetRectangle();
        EXPECT_EQ(place.bottom - place.top, HEIGHT);
    });
    ShowAndGoBack();
}

TEST_P(CustomShortcuts, APageWhoseTemplateLacksTheTableDeletesNothing)
{
    WithProperty(L"ZOLT_CUSTOM_SHORTCUT", L"2;A;");
    WithShortcut(L"A", L"First", L"/b");
    context.preInitHooks = {[](PageContext* page) {
        DestroyWindow(GetDlgItem(page->hParent, IDC_SHORTCUTS));
        return 1;
    }};
    GoNext();
    ExpectRows(L"A: S|First, /b\n");
    EXPECT_EQ(List(), CString(L"2;A;"));
}

TEST_P(CustomShortcuts, ExistingOnesAreShownInTheHostsOrder)
{
    WithProperty(L"ZOLT_CUSTOM_SHORTCUT", L"3;B;A;");
    WithShortcut(L"B", L"Second", L"/c");
    WithShortcut(L"A", L"First", L"/b");
    Look([this] {
        EXPECT_EQ(Row(0), CString(L"Second|/c"));
        EXPECT_EQ(Row(1), CString(L"First|/b"));
        EXPECT_EQ(Row(2), CString(L"|"));
    });
    ShowAndGoBack();
    ExpectRows(L"B: S|Second, /c\nA: S|First, /b\n"); // untouched
}

TEST_P(CustomShortcuts, WithoutAListTheHostIsNotAsked)
{
    WithShortcut(L"A", L"First", L"/b");
    Look([this] {
        EXPECT_EQ(Cell(0, 0), ResourceText(IDS_SHORTCUT_NAME_PROMPT));
        EXPECT_EQ(host.log.Changes(), Calls());
    });
    ShowAndGoBack();
}

TEST_P(CustomShortcuts, WithoutATemplateTheTableIsHiddenWithItsHeadingAndNothingIsDeleted)
{
    WithoutTemplate();
    WithProperty(L"ZOLT_CUSTOM_SHORTCUT", L"2;A;");
    WithShortcut(L"A", L"First", L"/b");
    Look([this] {
        EXPECT_FALSE(IsShown(IDC_SHORTCUTS));
        EXPECT_FALSE(IsShown(IDC_SHORTCUTS_HEADING));
        EXPECT_EQ(Control(IDC_SHORTCUTS).GetLines().size(), 5u);
        EXPECT_EQ(Cell(0, 0), ResourceText(IDS_SHORTCUT_NAME_PROMPT)) << "existing ones aren't loaded";
    });
    GoNext();
    ExpectRows(L"A: S|First, /b\n");
    EXPECT_EQ(List(), CString(L"2;A;"));
}

// The host refuses such media; a page that met one once ended the process.
TEST_P(CustomShortcuts, ATemplateOfElevenFieldsDoesNotEndTheProcess)
{
    WithProperty(L"ZOLT_SHORTCUT_TEMPLATE", L"K;MENUDIR;N;Main;t;;d;;;;1");
    TypeRow(0, L"A", L"/b");
    GoNext();
    ExpectRows(L"CUSTOM_SHORTCUT_1: A|A, /b\n");
}

// ---- what is stored

TEST_P(CustomShortcuts, TheFirstOfAFreshProductIsMadeFromTheTemplate)
{
    TypeRow(0, L"Office", L"/nologo /p Office");
    GoNext();
    ExpectRows(L"CUSTOM_SHORTCUT_1: Office|Office, /nologo /p Office\n");
    EXPECT_EQ(List(), CString(L"2;CUSTOM_SHORTCUT_1;"));
    CString columns;
    EXPECT_EQ(ForEachRow(
                  m_database.get(),
                  L"SELECT `Directory_`,`Component_`,`Target`,`Description`,`WkDir`,`Hotkey` FROM `Shortcut`",
                  {},
                  [&columns](MSIHANDLE record) {
                      for (unsigned int column = 1; column <= 6; ++column) {
                          columns += RecordText(record, column) + L";";
                      }
                      return true;
                  }),
              0u);
    EXPECT_EQ(columns, CString(L"MENUDIR;Main;[INSTALLDIR]zolt.exe;Starts it;WORKDIR;;"));
}

TEST_P(CustomShortcuts, AFirstRowLeftAtItsPromptsIsSkipped)
{
    TypeRow(1, L"B", L"/b");
    GoNext();
    ExpectRows(L"CUSTOM_SHORTCUT_1: B|B, /b\n");
}

TEST_P(CustomShortcuts, APromptThatIsTypedInAnotherCaseIsBlank)
{
    CString prompt = ResourceText(IDS_SHORTCUT_NAME_PROMPT);
    prompt.MakeUpper();
    TypeRow(2, prompt, L"");
    GoNext();
    ExpectRows(L"");
    EXPECT_EQ(List(), CString()) << "stored though nothing has changed";
}

TEST_P(CustomShortcuts, GapsCloseUp)
{
    TypeRow(0, L"A", L"/b");
    TypeRow(2, L"C", L"/c");
    GoNext();
    ExpectRows(L"CUSTOM_SHORTCUT_1: A|A, /b\nCUSTOM_SHORTCUT_2: C|C, /c\n");
    EXPECT_EQ(List(), CString(L"3;CUSTOM_SHORTCUT_1;CUSTOM_SHORTCUT_2;"));
}

TEST_P(CustomShortcuts, OfMoreThanFiveExistingTheFirstFiveShowAndTheOthersAreDeleted)
{
    CString list = L"8;";
    for (const wchar_t* key : {L"K1", L"K2", L"K3", L"K4", L"K5", L"K6", L"K7"}) {
        WithShortcut(key, key, L"/b");
        list += CString(key) + L";";
    }
    WithProperty(L"ZOLT_CUSTOM_SHORTCUT", list);
    Look([this] { EXPECT_EQ(Row(4), CString(L"K5|/b")); });
    GoNext();
    ExpectRows(L"K1: S|K1, /b\nK2: S|K2, /b\nK3: S|K3, /b\nK4: S|K4, /b\nK5: S|K5, /b\n");
    EXPECT_EQ(List(), CString(L"8;K1;K2;K3;K4;K5;"));
}

TEST_P(CustomShortcuts, ANumberThatIsNotTheCountOfKeysIsTheNextOne)
{
    WithProperty(L"ZOLT_CUSTOM_SHORTCUT", L"41;CUSTOM_SHORTCUT_8;");
    WithShortcut(L"CUSTOM_SHORTCUT_8", L"A", L"/b");
    TypeRow(1, L"B", L"/c");
    GoNext();
    EXPECT_EQ(List(), CString(L"42;CUSTOM_SHORTCUT_8;CUSTOM_SHORTCUT_41;"));
}

TEST_P(CustomShortcuts, AListThatDoesNotBeginWithTheNumberKeepsItsBeginning)
{
    WithProperty(L"ZOLT_CUSTOM_SHORTCUT", L"x;A;");
    WithShortcut(L"A", L"A", L"/b");
    TypeRow(1, L"B", L"/c");
    GoNext();
    EXPECT_EQ(List(), CString(L"2;x;A;CUSTOM_SHORTCUT_1;"));
}

TEST_P(CustomShortcuts, WithoutTheFirstOfThreeTheOthersMoveUp)
{
    WithProperty(L"ZOLT_CUSTOM_SHORTCUT", L"4;K1;K2;K3;");
    WithShortcut(L"K1", L"A", L"/b");
    WithShortcut(L"K2", L"B", L"/c");
    WithShortcut(L"K3", L"C", L"/v");
    TypeRow(0, L"", L"");
    GoNext();
    ExpectRows(L"K1: B|B, /c\nK2: C|C, /v\n");
    EXPECT_EQ(List(), CString(L"4;K1;K2;"));
}

TEST_P(CustomShortcuts, RowsThatAreAsBeforeAreNotWritten)
{
    WithProperty(L"ZOLT_CUSTOM_SHORTCUT", L"3;K1;K2;");
    WithShortcut(L"K1", L"A", L"/b");
    WithShortcut(L"K2", L"B", L"/c");
    TypeCell(1, 0, L"b");
    GoNext();
    ExpectRows(L"K1: S|A, /b\nK2: b|b, /c\n"); // the first keeps its short name
}

TEST_P(CustomShortcuts, ANameMayHaveAnApostropheAndLettersOfAnyScript)
{
    TypeRow(0, L"Anne's \x4E2D plan", L"/p \x00E9t\x00E9");
    GoNext();
    ExpectRows(L"CUSTOM_SHORTCUT_1: Anne's \x4E2D plan|Anne's \x4E2D plan, /p \x00E9t\x00E9\n");
}

// An apostrophe in the command line makes a statement that the service refuses.
TEST_P(CustomShortcuts, ARowThatTheDatabaseRefusesIsNotReported)
{
    TypeRow(0, L"A", L"/p Anne's");
    TypeRow(1, L"B", L"/b");
    GoNext();
    ExpectRows(L"CUSTOM_SHORTCUT_2: B|B, /b\n");
    EXPECT_EQ(List(), CString(L"3;CUSTOM_SHORTCUT_1;CUSTOM_SHORTCUT_2;"));
}

TEST_P(CustomShortcuts, ACellThatIsBeingEditedCountsWithItsNewText)
{
    TypeCell(0, 0, L"A");
    BeginCell(0, 1, L"/nologo");
    GoNext();
    ExpectRows(L"CUSTOM_SHORTCUT_1: A|A, /nologo\n");
}

TEST_P(CustomShortcuts, ACommandLineThatFillsTheEditorIsStoredWhole)
{
    const CString command = L"/p " + CString(L'x', 1020); // 1,023 characters
    TypeRow(0, L"A", command);
    GoNext();
    ExpectRows(L"CUSTOM_SHORTCUT_1: A|A, " + command + L"\n");
}

// ---- what is refused

TEST_P(CustomShortcuts, HalfARowIsRefused)
{
    TypeCell(1, 0, L"A");
    ExpectRefused(IDS_SHORTCUT_INCOMPLETE, L"");
}

TEST_P(CustomShortcuts, ACommandLineWithoutANameIsRefused)
{
    TypeCell(0, 1, L"/b");
    ExpectRefused(IDS_SHORTCUT_INCOMPLETE, L"");
}

TEST_P(CustomShortcuts, AForbiddenCharacterIsRefusedWithTheName)
{
    TypeRow(0, L"a|b", L"/b");
    ExpectRefused(IDS_SHORTCUT_NAME_INVALID, L"a|b");
}

TEST_P(CustomShortcuts, TheSameNameTwiceIsRefusedAsItStandsBelow)
{
    TypeRow(0, L"Office", L"/b");
    TypeRow(3, L"OFFICE", L"/c");
    Press(Next());
    AnswerError(IDS_SHORTCUT_NAME_TWICE, L"OFFICE");
    Look([this] { ExpectRows(L""); });
    ShowAndGoBack();
    ExpectRows(L"CUSTOM_SHORTCUT_1: Office|Office, /b\n"); // the way back drops the second
}

TEST_P(CustomShortcuts, AnUnknownSwitchIsRefusedByItsPiece)
{
    TypeRow(0, L"A", L"/nologo / tool.exe 1 /p x");
    ExpectRefused(IDS_SHORTCUT_SWITCH_UNKNOWN, L"tool.exe 1");
}

TEST_P(CustomShortcuts, ARefusalLeadsToTheCellAndTheRowCanBeCorrected)
{
    TypeRow(2, L"A", L"/x");
    Press(Next());
    AnswerError(IDS_SHORTCUT_SWITCH_UNKNOWN, L"x");
    SeeFocus(IDC_SHORTCUTS);
    Key(VK_F2);
    Await(L"no cell is being edited", [this] { return Editor() != nullptr; });
    Look([this] {
        EXPECT_EQ(CControl(Editor()).GetText(), CString(L"/x"));
        EXPECT_TRUE(CControl(Editor()).SetText(L"/w").IsDone());
    });
    Key(VK_RETURN);
    Await(L"the cell is still being edited", [this] { return !Editor(); });
    GoNext();
    ExpectRows(L"CUSTOM_SHORTCUT_1: A|A, /w\n");
}

TEST_P(CustomShortcuts, EachSwitchIsNamedByTheRefusalAndBesideThePage)
{
    CString refusal = ResourceText(IDS_SHORTCUT_SWITCH_UNKNOWN);
    refusal.Replace(L'\n', L' ');
    std::string html;
    ASSERT_EQ(ReadWholeFile(host.manager.resourceFolder + L"WorkstationSetting.html", 1u << 16, html), 0u);
    const CString pane = TextFromUtf8(html.data(), html.size());
    for (const wchar_t* name : SHORTCUT_SWITCHES) {
        EXPECT_HOLDS(refusal, CString(L" /") + name + L" ");
        EXPECT_HOLDS(pane, CString(L"<b>/") + name + L"</b>");
    }
}

// ---- the way back

TEST_P(CustomShortcuts, TheWayBackDropsWhatIsRefusedAndStoresTheRest)
{
    WithProperty(L"ZOLT_CUSTOM_SHORTCUT", L"3;K1;K2;");
    WithShortcut(L"K1", L"A", L"/b");
    WithShortcut(L"K2", L"B", L"/c");
    TypeCell(0, 1, L"/bad");
    BeginCell(2, 0, L"half");
    ShowAndGoBack();
    ExpectRows(L"K1: B|B, /c\n"); // by position: the second has moved up
    EXPECT_EQ(List(), CString(L"3;K1;"));
}

// ---- storing more than once

// Kept on purpose: the page is left behind a store, or made anew.
TEST_P(ShortcutsOfATab, ThatStoresAgainStartFromWhatThePageReadAtFirst)
{
    LRESULT first = -1, second = -1;
    TypeRow(0, L"A", L"/b");
    Send(PAGE_MESSAGE_STORE, first);
    Look([this] { ExpectRows(L"CUSTOM_SHORTCUT_1: A|A, /b\n"); });
    Send(PAGE_MESSAGE_STORE_ALL, second);
    Look([&] {
        EXPECT_EQ(first, 1);
        EXPECT_EQ(second, 1);
        EXPECT_EQ(List(), CString(L"3;CUSTOM_SHORTCUT_1;CUSTOM_SHORTCUT_2;"));
    });
    Press(IDC_PREVIOUS_TAB);
    ShowPage();
}
