// The keys of the grid and of a cell's editor, as they come through a page's message loop.
#include "tests/controls/grid_fixture.h"

#include <algorithm>

namespace {

class GridKeys : public GridTest
{
protected:
    void SetUp() override
    {
        GridTest::SetUp();
        MakeGrid(); // three rows, two columns
    }
    bool ListGotTheKey() const
    {
        return std::count(notifications.begin(), notifications.end(), static_cast<UINT>(LVN_KEYDOWN)) > 0;
    }
};

constexpr GridCell FIRST = {0, 0};
constexpr GridCell LAST = {2, 1};

} // namespace

// ---- the grid's keys

TEST_F(GridKeys, ArrowsMoveTheCurrentCell)
{
    MakeCurrent(1, 0);
    Key(VK_RIGHT);
    EXPECT_EQ(Current(), (GridCell{1, 1}));
    Key(VK_DOWN);
    EXPECT_EQ(Current(), (GridCell{2, 1}));
    Key(VK_LEFT);
    EXPECT_EQ(Current(), (GridCell{2, 0}));
    Key(VK_UP);
    EXPECT_EQ(Current(), (GridCell{1, 0}));
    EXPECT_FALSE(ListGotTheKey());
}

TEST_F(GridKeys, UpOnTheFirstRowKeepsTheCellWhileLeftOnTheFirstCellClearsIt)
{
    MakeCurrent(0, 0);
    Key(VK_UP);
    EXPECT_EQ(Current(), FIRST);
    Key(VK_LEFT);
    EXPECT_EQ(Current(), NO_GRID_CELL);
    EXPECT_EQ(GetFocus(), list);
}

TEST_F(GridKeys, DownOnTheLastRowKeepsTheCellWhileRightOnTheLastCellClearsIt)
{
    MakeCurrent(2, 1);
    Key(VK_DOWN);
    EXPECT_EQ(Current(), LAST);
    Key(VK_RIGHT);
    EXPECT_EQ(Current(), NO_GRID_CELL);
}

TEST_F(GridKeys, AKeyAtAnEdgeReachesTheListView)
{
    struct Row
    {
        WPARAM key;
        GridCell cell;
    };
    for (const Row& row : {Row{VK_LEFT, FIRST}, Row{VK_UP, FIRST}, Row{VK_RIGHT, LAST}, Row{VK_DOWN, LAST}}) {
        MakeCurrent(row.cell.row, row.cell.column);
        notifications.clear();
        Key(row.key);
        EXPECT_TRUE(ListGotTheKey()) << row.key;
    }
}

TEST_F(GridKeys, LeftAndRightGoOnInTheNextRow)
{
    MakeCurrent(1, 0);
    Key(VK_LEFT);
    EXPECT_EQ(Current(), (GridCell{0, 1}));
    Key(VK_RIGHT);
    EXPECT_EQ(Current(), (GridCell{1, 0}));
}

TEST_F(GridKeys, EnterAndF2OpenTheEditor)
{
    for (const WPARAM key : {VK_RETURN, VK_F2}) {
        MakeCurrent(1, 1);
        Key(key);
        EXPECT_TRUE(IsEditorOpen()) << key;
        EXPECT_TRUE(grid.m_bEditing) << key;
        EXPECT_EQ(GetFocus(), grid.m_edit) << key;
        EXPECT_EQ(EditorText(), CString(L"B1")) << key;
        Key(VK_ESCAPE);
    }
}

TEST_F(GridKeys, EnterWithoutACurrentCellOpensNothingAndStaysTheGrids)
{
    MakeCurrent(2, 1);
    Key(VK_RIGHT);
    EXPECT_TRUE(IsFiltered(VK_RETURN)) << "or it would press the dialog's default button";
    Key(VK_F2);
    EXPECT_FALSE(IsEditorOpen());
    EXPECT_FALSE(grid.m_bEditing);
}

TEST_F(GridKeys, OtherKeysDoNothingAndDoNotReachTheListView)
{
    MakeCurrent(1, 1);
    for (const int key : {VK_SPACE, VK_HOME, VK_END, VK_NEXT, VK_PRIOR, VK_DELETE, VK_BACK, VK_F3, VK_ADD,
                          int{L'A'}, int{L'7'}}) {
        Key(static_cast<WPARAM>(key));
        EXPECT_EQ(Current(), (GridCell{1, 1})) << key;
        EXPECT_FALSE(IsEditorOpen()) << key;
    }
    EXPECT_FALSE(ListGotTheKey());
}

// The list view would look for a row that begins so, and select it.
TEST_F(GridKeys, TypingOnTheGridSelectsNoRow)
{
    MakeCurrent(0, 0);
    Type(L"A2");
    EXPECT_EQ(Current(), FIRST);
    EXPECT_EQ(CListViewCtrl(list).GetSelectedIndex(), -1);
}

TEST_F(GridKeys, WithoutACurrentCellDownLeadsBackIn)
{
    MakeCurrent(0, 0);
    Key(VK_LEFT);
    ASSERT_EQ(Current(), NO_GRID_CELL);
    Key(VK_RIGHT);
    EXPECT_EQ(Current(), NO_GRID_CELL);
    Key(VK_DOWN);
    EXPECT_EQ(Current(), FIRST);
}

// ---- Tab

TEST_F(GridKeys, TabThroughAllCellsEndsWithNoCurrentCellAndMovesTheFocusOut)
{
    Key(VK_TAB);
    EXPECT_EQ(GetFocus(), list);
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 2; ++column) {
            EXPECT_EQ(Current(), (GridCell{row, column}));
            EXPECT_EQ(GetFocus(), list);
            Key(VK_TAB);
        }
    }
    EXPECT_EQ(Current(), NO_GRID_CELL);
    EXPECT_EQ(GetFocus(), after);
}

TEST_F(GridKeys, ShiftTabBackInStartsAtTheLastCell)
{
    SetFocus(after);
    ShiftKey(VK_TAB);
    EXPECT_EQ(GetFocus(), list);
    EXPECT_EQ(Current(), LAST);
    for (int step = 0; step < 5; ++step) {
        ShiftKey(VK_TAB);
    }
    EXPECT_EQ(Current(), FIRST);
    EXPECT_EQ(GetFocus(), list);
    ShiftKey(VK_TAB);
    EXPECT_EQ(Current(), NO_GRID_CELL);
    EXPECT_EQ(GetFocus(), before);
}

TEST_F(GridKeys, TabWithoutACurrentCellMovesTheFocusOut)
{
    MakeCurrent(2, 1);
    Key(VK_RIGHT);
    Key(VK_TAB);
    EXPECT_EQ(GetFocus(), after);
}

TEST_F(GridKeys, TabWithCtrlIsNotTheGrids)
{
    MakeCurrent(0, 0);
    ControlKey(VK_TAB);
    EXPECT_EQ(Current(), FIRST);
    Edit(0, 0);
    ControlKey(VK_TAB);
    EXPECT_TRUE(IsEditorOpen());
}

TEST_F(GridKeys, TheFilterLeavesOtherWindowsAndMessagesAlone)
{
    MakeCurrent(0, 0);
    MSG message = {list, WM_KEYUP, VK_RETURN, 1, 0, {}};
    EXPECT_FALSE(grid.PreTranslateMessage(&message));
    message = {after, WM_KEYDOWN, VK_RETURN, 1, 0, {}};
    EXPECT_FALSE(grid.PreTranslateMessage(&message));
    for (const WPARAM key : {VK_F2, VK_LEFT, VK_RIGHT, VK_UP, VK_DOWN, VK_ESCAPE}) {
        EXPECT_FALSE(IsFiltered(key)) << key;
    }
    EXPECT_EQ(Current(), FIRST);
    EXPECT_FALSE(IsEditorOpen());
}

TEST_F(GridKeys, AnUnboundGridFiltersNothing)
{
    CGrid unbound;
    MSG message = {nullptr, WM_KEYDOWN, VK_RETURN, 1, 0, {}};
    EXPECT_FALSE(unbound.PreTranslateMessage(&message));
}

// ---- the editor's keys

TEST_F(GridKeys, EscKeepsTheOldText)
{
    Edit(1, 0);
    SetEditorText(L"typed");
    Key(VK_ESCAPE);
    EXPECT_FALSE(IsEditorOpen());
    EXPECT_FALSE(grid.m_bEditing);
    EXPECT_EQ(Cell(1, 0), CString(L"A1"));
    EXPECT_EQ(GetFocus(), list);
    EXPECT_EQ(Current(), (GridCell{1, 0}));
}

TEST_F(GridKeys, EnterStoresTheText)
{
    Edit(1, 0);
    SetEditorText(L"typed");
    Key(VK_RETURN);
    EXPECT_FALSE(IsEditorOpen());
    EXPECT_EQ(Cell(1, 0), CString(L"typed"));
    EXPECT_EQ(GetFocus(), list);
    EXPECT_EQ(Current(), (GridCell{1, 0}));
}

TEST_F(GridKeys, EnterStoresAnEmptyTextToo)
{
    Edit(1, 0);
    SetEditorText(L"");
    Key(VK_RETURN);
    EXPECT_EQ(Cell(1, 0), CString());
}

TEST_F(GridKeys, TypingReplacesTheWholeText)
{
    Edit(0, 0);
    Type(L"new");
    EXPECT_EQ(EditorText(), CString(L"new")) << "all of it was selected";
    Key(VK_RETURN);
    EXPECT_EQ(Cell(0, 0), CString(L"new"));
}

TEST_F(GridKeys, TabStoresAndOpensTheNextCell)
{
    Edit(0, 1);
    Type(L"typed");
    Key(VK_TAB);
    EXPECT_EQ(Cell(0, 1), CString(L"typed"));
    EXPECT_EQ(Current(), (GridCell{1, 0}));
    EXPECT_TRUE(IsEditorOpen());
    EXPECT_EQ(EditorText(), CString(L"A1"));
    EXPECT_EQ(GetFocus(), grid.m_edit);
    ExpectEditorOver(1, 0);
}

// The editor doesn't look at Shift.
TEST_F(GridKeys, ShiftTabInTheEditorOpensTheNextCellToo)
{
    Edit(0, 1);
    ShiftKey(VK_TAB);
    EXPECT_EQ(Current(), (GridCell{1, 0}));
    EXPECT_TRUE(IsEditorOpen());
}

TEST_F(GridKeys, TabInTheEditorOfTheLastCellStoresAndEndsWithoutACurrentCell)
{
    Edit(2, 1);
    Type(L"typed");
    Key(VK_TAB);
    EXPECT_EQ(Cell(2, 1), CString(L"typed"));
    EXPECT_FALSE(IsEditorOpen());
    EXPECT_EQ(Current(), NO_GRID_CELL);
    EXPECT_EQ(GetFocus(), list);
    Key(VK_TAB);
    EXPECT_EQ(GetFocus(), after);
}

TEST_F(GridKeys, UpAndDownStoreAndOpenTheCellsThere)
{
    Edit(1, 1);
    Type(L"first");
    Key(VK_DOWN);
    EXPECT_EQ(Cell(1, 1), CString(L"first"));
    EXPECT_EQ(Current(), (GridCell{2, 1}));
    EXPECT_TRUE(IsEditorOpen());
    Type(L"second");
    Key(VK_UP);
    EXPECT_EQ(Cell(2, 1), CString(L"second"));
    EXPECT_EQ(Current(), (GridCell{1, 1}));
    EXPECT_EQ(EditorText(), CString(L"first"));
}

TEST_F(GridKeys, UpAndDownAtTheEdgesOpenTheSameCellAgain)
{
    Edit(0, 1);
    Type(L"top");
    Key(VK_UP);
    EXPECT_EQ(Current(), (GridCell{0, 1}));
    EXPECT_TRUE(IsEditorOpen());
    EXPECT_EQ(EditorText(), CString(L"top"));
    Key(VK_ESCAPE);
    Edit(2, 0);
    Type(L"bottom");
    Key(VK_DOWN);
    EXPECT_EQ(Current(), (GridCell{2, 0}));
    EXPECT_TRUE(IsEditorOpen());
    EXPECT_EQ(Cell(2, 0), CString(L"bottom"));
}

TEST_F(GridKeys, LeftAndRightAreTheEditorsOwn)
{
    Edit(0, 0);
    Key(VK_RIGHT);
    Type(L"x");
    Key(VK_LEFT);
    Type(L"y");
    EXPECT_EQ(EditorText(), CString(L"A0yx"));
    EXPECT_EQ(Current(), FIRST);
}

TEST_F(GridKeys, AKeyReadsTheEditorsText)
{
    Edit(0, 0);
    EXPECT_EQ(CString(grid.m_edit.m_text), CString(L"A0"));
    SetEditorText(L"typed");
    Key(VK_HOME);
    EXPECT_EQ(CString(grid.m_edit.m_text), CString(L"typed"));
    EXPECT_TRUE(IsEditorOpen());
}

// A notification as the editor sends it, and one that means a canceled edit.
TEST_F(GridKeys, OnlyAnEndWithAnItemAndATextChangesTheCell)
{
    NMLVDISPINFOW end = {};
    end.hdr.code = LVN_ENDLABELEDITW;
    wchar_t text[] = L"sent";
    const auto send = [&](int item, wchar_t* what) {
        Edit(0, 0);
        end.item.iItem = item;
        end.item.pszText = what;
        SendMessageW(list, WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&end));
        EXPECT_FALSE(IsEditorOpen());
        EXPECT_FALSE(grid.m_bEditing);
        return Cell(0, 0);
    };
    EXPECT_EQ(send(-1, text), CString(L"A0"));
    EXPECT_EQ(send(0, nullptr), CString(L"A0"));
    EXPECT_EQ(send(0, text), CString(L"sent"));
}

// ---- an open editor that has lost the focus

TEST_F(GridKeys, TheEditorStaysOpenWhenTheFocusGoesElsewhere)
{
    Edit(1, 0);
    Type(L"typed");
    SetFocus(after);
    EXPECT_TRUE(IsEditorOpen());
    EXPECT_EQ(Cell(1, 0), CString(L"A1"));
    EXPECT_EQ(Current(), (GridCell{1, 0}));
}

TEST_F(GridKeys, AnOpenEditorIsStoredBeforeAKeyOnTheGridMoves)
{
    for (const WPARAM key : {VK_RIGHT, VK_TAB}) {
        Edit(1, 0);
        Type(L"typed");
        SetFocus(list);
        Key(key);
        EXPECT_EQ(Cell(1, 0), CString(L"typed"));
        EXPECT_FALSE(IsEditorOpen());
        EXPECT_EQ(Current(), (GridCell{1, 1}));
        grid.SetCellText(1, 0, L"");
    }
}

TEST_F(GridKeys, EnterOnTheGridGoesOnWithAnOpenEditor)
{
    Edit(1, 0);
    Type(L"typed");
    SetFocus(list);
    Key(VK_RETURN);
    EXPECT_TRUE(IsEditorOpen());
    EXPECT_EQ(EditorText(), CString(L"typed"));
    EXPECT_EQ(GetFocus(), grid.m_edit);
}

TEST_F(GridKeys, APageCanStoreAnOpenEditor)
{
    Edit(1, 0);
    Type(L"typed");
    SetFocus(after);
    grid.CommitOpenEditor();
    EXPECT_EQ(Cell(1, 0), CString(L"typed"));
    EXPECT_FALSE(IsEditorOpen());
    EXPECT_EQ(GetFocus(), after);
    grid.SetCellText(1, 0, L"later");
    grid.CommitOpenEditor();
    EXPECT_EQ(Cell(1, 0), CString(L"later")) << "nothing is open";
}

TEST_F(GridKeys, AnOpenEditorIsStoredWhileThePageIsHidden)
{
    Edit(1, 0);
    Type(L"typed");
    ShowWindow(window, SW_HIDE);
    grid.CommitOpenEditor();
    EXPECT_EQ(Cell(1, 0), CString(L"typed"));
    ShowWindow(window, SW_SHOW);
    EXPECT_FALSE(IsEditorOpen());
}
