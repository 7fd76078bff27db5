// Clicks and double clicks inside and outside the cells and on the editor.
#include "tests/controls/grid_fixture.h"

namespace {

class GridMouse : public GridTest
{
protected:
    void SetUp() override
    {
        GridTest::SetUp();
        MakeGrid();
    }
};

} // namespace

TEST_F(GridMouse, AClickMakesTheCellCurrentAndGivesTheGridTheFocus)
{
    Click(MiddleOf(2, 1));
    EXPECT_EQ(Current(), (GridCell{2, 1}));
    EXPECT_EQ(GetFocus(), list);
    EXPECT_FALSE(IsEditorOpen());
    Click(MiddleOf(1, 0));
    EXPECT_EQ(Current(), (GridCell{1, 0}));
    EXPECT_FALSE(IsEditorOpen());
}

TEST_F(GridMouse, AClickOnTheCurrentCellOpensTheEditor)
{
    MakeCurrent(1, 1);
    Click(MiddleOf(1, 1));
    EXPECT_TRUE(IsEditorOpen());
    EXPECT_EQ(GetFocus(), grid.m_edit);
    ExpectEditorOver(1, 1);
}

// The focus comes before the hit test and makes the first cell current.
TEST_F(GridMouse, AFirstClickOnTheFirstCellOpensItAtOnce)
{
    Click(MiddleOf(0, 0));
    EXPECT_EQ(Current(), (GridCell{0, 0}));
    EXPECT_TRUE(IsEditorOpen());
}

TEST_F(GridMouse, AClickBelowTheLastRowClearsTheCurrentCell)
{
    MakeCurrent(1, 1);
    Click(BelowTheRows());
    EXPECT_EQ(Current(), NO_GRID_CELL);
    EXPECT_EQ(GetFocus(), list);
    EXPECT_FALSE(IsEditorOpen());
    Click(BelowTheRows());
    EXPECT_FALSE(IsEditorOpen()) << "no cell is no current cell";
}

TEST_F(GridMouse, AClickRightOfTheColumnsClearsTheCurrentCell)
{
    MakeCurrent(1, 1);
    Click(RightOfTheColumns());
    EXPECT_EQ(Current(), NO_GRID_CELL);
}

TEST_F(GridMouse, AClickSelectsNothingInTheListView)
{
    Click(MiddleOf(2, 1));
    EXPECT_EQ(CListViewCtrl(list).GetSelectedIndex(), -1);
    DoubleClick(MiddleOf(1, 1));
    EXPECT_EQ(CListViewCtrl(list).GetSelectedIndex(), -1);
}

TEST_F(GridMouse, ADoubleClickOpensTheEditorOfThatCell)
{
    MakeCurrent(0, 0);
    DoubleClick(MiddleOf(2, 0));
    EXPECT_EQ(Current(), (GridCell{2, 0}));
    EXPECT_TRUE(IsEditorOpen());
    EXPECT_EQ(EditorText(), CString(L"A2"));
    ExpectEditorOver(2, 0);
}

TEST_F(GridMouse, ADoubleClickOutsideTheCellsClearsTheCurrentCell)
{
    MakeCurrent(1, 1);
    DoubleClick(BelowTheRows());
    EXPECT_EQ(Current(), NO_GRID_CELL);
    EXPECT_FALSE(IsEditorOpen());
}

// ---- with the editor open

TEST_F(GridMouse, AClickOnAnotherCellStoresTheText)
{
    Edit(1, 0);
    Type(L"typed");
    Click(MiddleOf(2, 1));
    EXPECT_EQ(Cell(1, 0), CString(L"typed"));
    EXPECT_FALSE(IsEditorOpen());
    EXPECT_FALSE(grid.m_bEditing);
    EXPECT_EQ(Current(), (GridCell{2, 1}));
    EXPECT_EQ(Cell(2, 1), CString(L"B2"));
    EXPECT_EQ(GetFocus(), list);
}

TEST_F(GridMouse, AClickBelowTheRowsStoresTheText)
{
    Edit(1, 0);
    Type(L"typed");
    Click(BelowTheRows());
    EXPECT_EQ(Cell(1, 0), CString(L"typed"));
    EXPECT_FALSE(IsEditorOpen());
    EXPECT_EQ(Current(), NO_GRID_CELL);
}

TEST_F(GridMouse, AClickOnTheEditorIsTheEditors)
{
    Edit(1, 0);
    Type(L"typed");
    Click(MiddleOf(1, 0));
    EXPECT_TRUE(IsEditorOpen());
    EXPECT_EQ(Cell(1, 0), CString(L"A1"));
    EXPECT_EQ(GetFocus(), grid.m_edit);
    DoubleClick(MiddleOf(1, 0));
    EXPECT_TRUE(IsEditorOpen());
    EXPECT_EQ(EditorText(), CString(L"typed"));
}

TEST_F(GridMouse, ADoubleClickOnAnotherCellStoresTheTextAndOpensThatCell)
{
    Edit(1, 0);
    Type(L"typed");
    DoubleClick(MiddleOf(0, 1));
    EXPECT_EQ(Cell(1, 0), CString(L"typed"));
    EXPECT_TRUE(IsEditorOpen());
    EXPECT_TRUE(grid.m_bEditing);
    EXPECT_EQ(EditorText(), CString(L"B0"));
    ExpectEditorOver(0, 1);
}

TEST_F(GridMouse, AnotherButtonStoresTheTextToo)
{
    for (const UINT message : {WM_RBUTTONDOWN, WM_MBUTTONDOWN}) {
        Edit(1, 0);
        SetEditorText(NumberText(message));
        // The list view waits for the release or for a drag.
        PostMessageW(list, message == WM_RBUTTONDOWN ? WM_RBUTTONUP : WM_MBUTTONUP, 0, 0);
        Click(MiddleOf(2, 1), message);
        EXPECT_EQ(Cell(1, 0), NumberText(message));
        EXPECT_FALSE(IsEditorOpen()) << message;
        EXPECT_EQ(Current(), (GridCell{1, 0})) << message;
    }
}

TEST_F(GridMouse, AClickOnTheHeaderLeavesTheEditorOpen)
{
    Edit(1, 0);
    Click({10, 5}); // the header lies above the rows
    EXPECT_TRUE(IsEditorOpen());
    EXPECT_EQ(Current(), (GridCell{1, 0}));
}
