// The editor: where it lies while columns change and the list scrolls, long texts, and grids without cells.
#include "tests/controls/grid_fixture.h"

#include <algorithm>

namespace {

class GridEditor : public GridTest
{
protected:
    int ColumnWidth(int column) const
    {
        return static_cast<int>(SendMessageW(list, LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column), 0));
    }
    POINT EdgeOf(int column) const
    {
        RECT item = {};
        SendMessageW(Header(), HDM_GETITEMRECT, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&item));
        return {item.right - 1, item.bottom / 2};
    }
    // By the header's edge, as a person does.
    void DragEdge(int column, int distance)
    {
        const POINT edge = EdgeOf(column);
        SendMessageW(Header(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(edge.x, edge.y));
        SendMessageW(Header(), WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(edge.x + distance, edge.y));
        SendMessageW(Header(), WM_LBUTTONUP, 0, MAKELPARAM(edge.x + distance, edge.y));
    }
    LRESULT NotifyFromHeader(UINT code) const
    {
        NMHEADERW notification = {};
        notification.hdr.hwndFrom = Header();
        notification.hdr.code = code;
        return SendMessageW(list, WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&notification));
    }
};

} // namespace

TEST_F(GridEditor, ItLiesOverItsCell)
{
    MakeGrid(3, 3);
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            Edit(row, column);
            ExpectEditorOver(row, column);
            Key(VK_ESCAPE);
        }
    }
}

TEST_F(GridEditor, OfTheOnlyColumnItSpansTheColumn)
{
    MakeGrid(2, 1);
    Edit(1, 0);
    ExpectEditorOver(1, 0);
}

TEST_F(GridEditor, ItHasTheFontOfControls)
{
    MakeGrid();
    Edit(0, 0);
    EXPECT_EQ(grid.m_edit.GetFont(), grid.m_editFont.get());
}

TEST_F(GridEditor, AllOfTheTextIsSelected)
{
    MakeGrid();
    Edit(1, 1);
    DWORD first = 9;
    DWORD end = 9;
    grid.m_edit.SendMessage(EM_GETSEL, reinterpret_cast<WPARAM>(&first), reinterpret_cast<LPARAM>(&end));
    EXPECT_EQ(first, 0u);
    EXPECT_EQ(end, 2u);
}

// ---- columns that change

TEST_F(GridEditor, ResizingAColumnWhileEditingKeepsItOverItsCell)
{
    MakeGrid();
    for (const int column : {0, 1}) {
        Edit(1, column);
        Type(L"typed");
        const int former = ColumnWidth(0);
        DragEdge(0, 25);
        ASSERT_EQ(ColumnWidth(0), former + 25) << "the edge was not caught";
        ExpectEditorOver(1, column);
        DragEdge(0, -40);
        ExpectEditorOver(1, column);
        EXPECT_TRUE(IsEditorOpen());
        EXPECT_EQ(EditorText(), CString(L"typed"));
        Key(VK_ESCAPE);
    }
}

TEST_F(GridEditor, AColumnThatTheProgramResizesTakesItAlong)
{
    MakeGrid();
    Edit(1, 1);
    grid.SetColumnWidth(0, 33);
    ExpectEditorOver(1, 1);
    grid.SetColumnWidth(1, 77);
    ExpectEditorOver(1, 1);
}

// As systems do that move the edge while it is dragged, before tracking ends.
TEST_F(GridEditor, AnEdgeThatMovesWhileItIsDraggedTakesItAlong)
{
    MakeGrid();
    Edit(1, 1);
    CWindow(Header()).ModifyStyle(0, HDS_FULLDRAG);
    const int former = ColumnWidth(0);
    const POINT edge = EdgeOf(0);
    SendMessageW(Header(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(edge.x, edge.y));
    SendMessageW(Header(), WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(edge.x + 30, edge.y));
    EXPECT_EQ(ColumnWidth(0), former + 30);
    ExpectEditorOver(1, 1);
    SendMessageW(Header(), WM_LBUTTONUP, 0, MAKELPARAM(edge.x + 30, edge.y));
    ExpectEditorOver(1, 1);
}

TEST_F(GridEditor, TheNotificationsOfTrackingPlaceItAndDrawTheListAgain)
{
    MakeGrid();
    for (const UINT code : {static_cast<UINT>(HDN_BEGINTRACKW), static_cast<UINT>(HDN_ENDTRACKW)}) {
        Edit(1, 1);
        grid.m_edit.MoveWindow({0, 0, 5, 5});
        EXPECT_EQ(NotifyFromHeader(code), 0) << "it was stopped";
        ExpectEditorOver(1, 1);
        EXPECT_TRUE(GetUpdateRect(list, nullptr, FALSE)) << "nothing is drawn again";
        EXPECT_TRUE(GetUpdateRect(grid.m_edit, nullptr, FALSE));
        Paint();
    }
}

// The list view hands the end of tracking on to its parent.
TEST_F(GridEditor, TheNotificationsOfTrackingReachTheListView)
{
    MakeGrid();
    notifications.clear();
    NotifyFromHeader(static_cast<UINT>(HDN_ENDTRACKW));
    EXPECT_EQ(std::count(notifications.begin(), notifications.end(), static_cast<UINT>(HDN_ENDTRACKW)), 1);
}

TEST_F(GridEditor, ResizingWithoutAnEditorOpensNone)
{
    MakeGrid();
    MakeCurrent(1, 1);
    DragEdge(0, 25);
    EXPECT_FALSE(IsEditorOpen());
    MakeCurrent(-1, -1);
    DragEdge(0, -10);
    EXPECT_FALSE(IsEditorOpen());
}

// ---- scrolling

TEST_F(GridEditor, ScrollingTakesItAlong)
{
    MakeGrid(30, 2);
    grid.SetColumnWidth(1, 600);
    Edit(3, 0);
    SendMessageW(list, WM_VSCROLL, SB_LINEDOWN, 0);
    ExpectEditorOver(3, 0);
    SendMessageW(list, WM_HSCROLL, SB_LINERIGHT, 0);
    ExpectEditorOver(3, 0);
    const LONG former = CellPlace(3, 0).top;
    SendMessageW(list, WM_MOUSEWHEEL, MAKEWPARAM(0, -WHEEL_DELTA), 0);
    EXPECT_LT(CellPlace(3, 0).top, former) << "the wheel doesn't scroll";
    ExpectEditorOver(3, 0);
}

TEST_F(GridEditor, AKeyMakesTheRowOfTheCurrentCellWhollyVisible)
{
    MakeGrid(30, 2);
    MakeCurrent(0, 0);
    for (int row = 1; row < 30; ++row) {
        Key(VK_DOWN);
        const RECT cell = CellPlace(row, 0);
        EXPECT_LE(cell.bottom, CWindow(list).GetClientRect().bottom) << row;
    }
    for (int row = 28; row >= 0; --row) {
        Key(VK_UP);
        RECT header = {};
        GetClientRect(Header(), &header);
        EXPECT_GE(CellPlace(row, 0).top, header.bottom) << row;
    }
}

TEST_F(GridEditor, ItOpensOverARowThatHadToScrollIntoView)
{
    MakeGrid(30, 2);
    MakeCurrent(29, 1);
    Key(VK_F2);
    ASSERT_TRUE(IsEditorOpen());
    ExpectEditorOver(29, 1);
    EXPECT_LE(EditorPlace().bottom, CWindow(list).GetClientRect().bottom);
}

// Left and Right are the grid's, so nothing else would scroll there without a mouse.
TEST_F(GridEditor, AKeyShowsACellOfAColumnBeyondTheEdge)
{
    MakeGrid(3, 4);
    MakeCurrent(0, 0);
    for (int column = 1; column < 4; ++column) {
        Key(VK_RIGHT);
        EXPECT_LE(CellPlace(0, column).right, CWindow(list).GetClientRect().right) << column;
    }
    Key(VK_RIGHT);
    EXPECT_EQ(Current(), (GridCell{1, 0}));
    EXPECT_EQ(CellPlace(1, 0).left, 0);
}

TEST_F(GridEditor, AColumnWiderThanTheListIsEdited)
{
    MakeGrid(3, 2);
    grid.SetColumnWidth(0, 3000);
    Edit(1, 0);
    ExpectEditorOver(1, 0);
    Key(VK_TAB);
    EXPECT_EQ(Current(), (GridCell{1, 1}));
    ExpectEditorOver(1, 1);
    EXPECT_GE(EditorPlace().left, 0);
    EXPECT_LE(CellPlace(1, 1).right, CWindow(list).GetClientRect().right);
}

// ---- long texts

TEST_F(GridEditor, ATextLongerThan1024UnitsIsCutAtThatLengthOnOpening)
{
    MakeGrid();
    for (const int length : {1022, 1023, 1024, 1025, 5000}) {
        const CString text = CString(L'x', length - 1) + L"y";
        grid.SetCellText(1, 0, text);
        Edit(1, 0);
        EXPECT_EQ(EditorText(), text.Left(1023)) << length << ": 1,024 units with the closing zero";
        Key(VK_ESCAPE);
        EXPECT_EQ(Cell(1, 0), text) << length << ": Esc keeps all of it";
        Edit(1, 0);
        Key(VK_RETURN);
        EXPECT_EQ(Cell(1, 0), text.Left(1023)) << length;
    }
}

TEST_F(GridEditor, NoMoreIsTypedThanIsStored)
{
    MakeGrid();
    Edit(0, 0);
    SetEditorText(CString(L'x', 1022));
    grid.m_edit.SetSel(1022, 1022);
    Type(L"yz");
    EXPECT_EQ(EditorText().GetLength(), 1023);
    Key(VK_RETURN);
    EXPECT_EQ(Cell(0, 0), CString(L'x', 1022) + L"y");
}

TEST_F(GridEditor, ATextThatThePageSetsBeyondTheLimitIsStoredCut)
{
    MakeGrid();
    Edit(0, 0);
    SetEditorText(CString(L'x', 5000));
    Key(VK_RETURN);
    EXPECT_EQ(Cell(0, 0), CString(L'x', 1023));
}

// ---- grids without cells

TEST_F(GridEditor, AGridWithoutRowsHasNoCellToGoTo)
{
    MakeGrid(0, 2);
    SetFocus(before);
    Key(VK_TAB);
    EXPECT_EQ(GetFocus(), list);
    EXPECT_EQ(Current(), NO_GRID_CELL);
    for (const WPARAM key : {VK_LEFT, VK_RIGHT, VK_UP, VK_DOWN, VK_RETURN, VK_F2}) {
        Key(key);
        EXPECT_EQ(Current(), NO_GRID_CELL) << key;
        EXPECT_FALSE(IsEditorOpen()) << key;
    }
    DoubleClick({20, 60});
    EXPECT_FALSE(IsEditorOpen());
    Key(VK_TAB);
    EXPECT_EQ(GetFocus(), after);
}

TEST_F(GridEditor, AGridWithoutColumnsHasNoCellToGoTo)
{
    MakeGrid(3, 0);
    SetFocus(after);
    ShiftKey(VK_TAB);
    EXPECT_EQ(GetFocus(), list);
    EXPECT_EQ(Current(), NO_GRID_CELL);
    for (const WPARAM key : {VK_LEFT, VK_RIGHT, VK_UP, VK_DOWN, VK_RETURN, VK_F2}) {
        Key(key);
        EXPECT_EQ(Current(), NO_GRID_CELL) << key;
        EXPECT_FALSE(IsEditorOpen()) << key;
    }
    Click({5, 30});
    Click({5, 30});
    EXPECT_EQ(Current(), NO_GRID_CELL);
    EXPECT_FALSE(IsEditorOpen());
    SetFocus(list);
    ShiftKey(VK_TAB);
    EXPECT_EQ(GetFocus(), before);
}

TEST_F(GridEditor, ARowThatIsRemovedWhileItIsEditedIsNotStored)
{
    MakeGrid(1, 2);
    Edit(0, 1);
    Type(L"typed");
    grid.DeleteAllItems();
    Key(VK_RETURN);
    EXPECT_FALSE(IsEditorOpen());
    EXPECT_EQ(grid.GetItemCount(), 0);
    SetFocus(before);
    SetFocus(list);
    EXPECT_EQ(Current(), NO_GRID_CELL);
}

// ---- focus

TEST_F(GridEditor, TheFocusMakesTheFirstCellCurrentAndKeepsOneThatIsThere)
{
    MakeGrid();
    SetFocus(list);
    EXPECT_EQ(Current(), (GridCell{0, 0}));
    Key(VK_DOWN);
    SetFocus(before);
    SetFocus(list);
    EXPECT_EQ(Current(), (GridCell{1, 0}));
}

TEST_F(GridEditor, TheFocusThatComesBackToTheGridItselfMakesNoCellCurrent)
{
    MakeGrid();
    SendMessageW(list, WM_SETFOCUS, reinterpret_cast<WPARAM>(list), 0);
    EXPECT_EQ(Current(), NO_GRID_CELL);
}
