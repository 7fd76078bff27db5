// What the grid answers to each stage of custom drawing, and the colors that stand on the screen.
#include "tests/controls/grid_fixture.h"

namespace {

constexpr COLORREF CELL = 0xC0C0C0;
constexpr COLORREF ROW = 0xE1E1E1;
constexpr COLORREF NORMAL = 0xFFFFFF;
constexpr COLORREF UNFOCUSED = 0xF0F0F0;
constexpr COLORREF UNTOUCHED = 0x123456;
constexpr UINT UNTOUCHED_STATE = 0x40;

struct Answer
{
    LRESULT result = 0;
    BOOL isHandled = TRUE;
    COLORREF text = UNTOUCHED;
    COLORREF back = UNTOUCHED;
    UINT state = 0;
};

class GridDrawn : public GridTest
{
protected:
    void SetUp() override
    {
        GridTest::SetUp();
        MakeGrid();
    }
    static NMLVCUSTOMDRAW MakeDraw(HWND sender, DWORD stage, int row, int column, UINT state)
    {
        NMLVCUSTOMDRAW draw = {};
        draw.nmcd.hdr.hwndFrom = sender;
        draw.nmcd.hdr.code = static_cast<UINT>(NM_CUSTOMDRAW);
        draw.nmcd.dwDrawStage = stage;
        draw.nmcd.dwItemSpec = static_cast<DWORD_PTR>(row);
        draw.nmcd.uItemState = state;
        draw.iSubItem = column;
        draw.clrText = draw.clrTextBk = UNTOUCHED;
        return draw;
    }
    Answer Ask(DWORD stage, int row = 0, int column = 0, UINT state = UNTOUCHED_STATE)
    {
        NMLVCUSTOMDRAW draw = MakeDraw(list, stage, row, column, state);
        Answer answer;
        answer.result = grid.OnCustomDraw(LIST, &draw.nmcd.hdr, answer.isHandled);
        answer.text = draw.clrText;
        answer.back = draw.clrTextBk;
        answer.state = draw.nmcd.uItemState;
        return answer;
    }
};

} // namespace

// ---- stages

TEST_F(GridDrawn, BeforePaintingItAsksForTheRows)
{
    const Answer answer = Ask(CDDS_PREPAINT);
    EXPECT_TRUE(answer.isHandled);
    EXPECT_EQ(answer.result, CDRF_NOTIFYITEMDRAW);
    EXPECT_EQ(answer.state, UNTOUCHED_STATE);
}

TEST_F(GridDrawn, ARowThatIsNotCurrentTakesTheNormalColorsAndNothingMore)
{
    MakeCurrent(1, 0);
    grid.m_normalTextColor = 0x010203;
    for (const UINT state : {0x0u, 0x1u, 0x11u, 0x200u}) {
        const Answer answer = Ask(CDDS_ITEMPREPAINT, 0, 0, state);
        EXPECT_TRUE(answer.isHandled);
        EXPECT_EQ(answer.result, CDRF_DODEFAULT) << state;
        EXPECT_EQ(answer.text, 0x010203u) << state;
        EXPECT_EQ(answer.back, NORMAL) << state;
    }
}

TEST_F(GridDrawn, ASelectedRowAsksForItsCells)
{
    MakeCurrent(1, 0);
    for (const UINT state : {513u, 529u}) {
        EXPECT_EQ(Ask(CDDS_ITEMPREPAINT, 0, 0, state).result, CDRF_NOTIFYSUBITEMDRAW) << state;
    }
}

TEST_F(GridDrawn, TheCurrentRowAsksForItsCells)
{
    MakeCurrent(1, 0);
    const Answer answer = Ask(CDDS_ITEMPREPAINT, 1);
    EXPECT_EQ(answer.result, CDRF_NOTIFYSUBITEMDRAW);
    EXPECT_EQ(answer.back, UNTOUCHED);
}

TEST_F(GridDrawn, ACellIsDrawnWithoutASelection)
{
    MakeCurrent(1, 0);
    for (const int row : {0, 1}) {
        EXPECT_EQ(Ask(CDDS_ITEMPREPAINT | CDDS_SUBITEM, row, 0, 529).state, 512u) << row;
    }
}

TEST_F(GridDrawn, TheCurrentCellAndItsRowHaveTheirColorsWithTheFocus)
{
    MakeCurrent(1, 1);
    grid.m_cellTextColor = 0x0A0000;
    grid.m_rowTextColor = 0x0B0000;
    const Answer cell = Ask(CDDS_ITEMPREPAINT | CDDS_SUBITEM, 1, 1);
    EXPECT_EQ(cell.text, 0x0A0000u);
    EXPECT_EQ(cell.back, CELL);
    const Answer beside = Ask(CDDS_ITEMPREPAINT | CDDS_SUBITEM, 1, 0);
    EXPECT_EQ(beside.text, 0x0B0000u);
    EXPECT_EQ(beside.back, ROW);
}

TEST_F(GridDrawn, WithoutTheFocusTheGroundOfTheWholeRowIsAnother)
{
    MakeCurrent(1, 1);
    grid.m_cellTextColor = 0x0A0000;
    grid.m_rowTextColor = 0x0B0000;
    SetFocus(after);
    const Answer cell = Ask(CDDS_ITEMPREPAINT | CDDS_SUBITEM, 1, 1);
    EXPECT_EQ(cell.text, 0x0A0000u);
    EXPECT_EQ(cell.back, UNFOCUSED);
    const Answer beside = Ask(CDDS_ITEMPREPAINT | CDDS_SUBITEM, 1, 0);
    EXPECT_EQ(beside.text, 0x0B0000u);
    EXPECT_EQ(beside.back, UNFOCUSED);
}

TEST_F(GridDrawn, ASelectedRowThatIsNotCurrentHasTheNormalColors)
{
    MakeCurrent(1, 0);
    const Answer answer = Ask(CDDS_ITEMPREPAINT | CDDS_SUBITEM, 0, 0, 529);
    EXPECT_EQ(answer.text, 0u);
    EXPECT_EQ(answer.back, NORMAL);
}

TEST_F(GridDrawn, TheOtherStagesAreHandledWithoutDrawing)
{
    for (const DWORD stage : {CDDS_POSTPAINT, CDDS_PREERASE, CDDS_POSTERASE, CDDS_ITEMPOSTPAINT,
                              CDDS_ITEMPREERASE, CDDS_ITEMPOSTERASE}) {
        const Answer answer = Ask(stage);
        EXPECT_TRUE(answer.isHandled) << stage;
        EXPECT_EQ(answer.result, CDRF_DODEFAULT) << stage;
        EXPECT_EQ(answer.back, UNTOUCHED) << stage;
        EXPECT_EQ(answer.state, UNTOUCHED_STATE) << stage;
    }
}

TEST_F(GridDrawn, AnythingElseIsNotHandled)
{
    for (const DWORD stage :
         {DWORD{0}, DWORD{5}, DWORD{CDDS_ITEM}, DWORD{CDDS_SUBITEM | CDDS_ITEMPOSTPAINT}}) {
        EXPECT_FALSE(Ask(stage).isHandled) << stage;
    }
}

// ---- ways of the notification

TEST_F(GridDrawn, ANotificationThatReachesTheGridsOwnProcedureIsAnswered)
{
    NMLVCUSTOMDRAW draw = MakeDraw(list, CDDS_PREPAINT, 0, 0, 0);
    EXPECT_EQ(SendMessageW(list, WM_NOTIFY, LIST, reinterpret_cast<LPARAM>(&draw)), CDRF_NOTIFYITEMDRAW);
}

TEST_F(GridDrawn, ANotificationThatThePageReflectsIsAnswered)
{
    NMLVCUSTOMDRAW draw = MakeDraw(list, CDDS_PREPAINT, 0, 0, 0);
    EXPECT_EQ(SendMessageW(window, WM_NOTIFY, LIST, reinterpret_cast<LPARAM>(&draw)), CDRF_NOTIFYITEMDRAW);
}

// The header reports to the list view, with a record that ends before the colors.
TEST_F(GridDrawn, NotificationsOfTheHeaderAreLeftAlone)
{
    MakeCurrent(0, 0);
    NMLVCUSTOMDRAW draw = MakeDraw(Header(), CDDS_ITEMPREPAINT | CDDS_SUBITEM, 0, 0, UNTOUCHED_STATE);
    BOOL isHandled = TRUE;
    grid.OnCustomDraw(0, &draw.nmcd.hdr, isHandled);
    EXPECT_FALSE(isHandled);
    EXPECT_EQ(draw.clrText, UNTOUCHED);
    EXPECT_EQ(draw.clrTextBk, UNTOUCHED);
    EXPECT_EQ(draw.nmcd.uItemState, UNTOUCHED_STATE);
}

// ---- on the screen

TEST_F(GridDrawn, TheScreenShowsTheColorsWithTheFocus)
{
    MakeCurrent(1, 1);
    EXPECT_EQ(GroundOf(1, 1), CELL);
    EXPECT_EQ(GroundOf(1, 0), ROW);
    EXPECT_EQ(GroundOf(0, 0), NORMAL);
    EXPECT_EQ(GroundOf(2, 1), NORMAL);
}

TEST_F(GridDrawn, TheScreenShowsTheColorsWithoutTheFocus)
{
    MakeCurrent(1, 1);
    Paint();
    SetFocus(after); // and so the rows are drawn again
    EXPECT_EQ(GroundOf(1, 1), UNFOCUSED);
    EXPECT_EQ(GroundOf(1, 0), UNFOCUSED);
    EXPECT_EQ(GroundOf(0, 0), NORMAL);
    SetFocus(list);
    EXPECT_EQ(GroundOf(1, 1), CELL);
}

TEST_F(GridDrawn, AMoveIsDrawn)
{
    MakeCurrent(0, 0);
    Paint();
    Key(VK_DOWN);
    EXPECT_EQ(GroundOf(0, 0), NORMAL);
    EXPECT_EQ(GroundOf(0, 1), NORMAL);
    EXPECT_EQ(GroundOf(1, 0), CELL);
    EXPECT_EQ(GroundOf(1, 1), ROW);
    Click(MiddleOf(2, 1));
    EXPECT_EQ(GroundOf(1, 0), NORMAL);
    EXPECT_EQ(GroundOf(2, 1), CELL);
    Click(BelowTheRows());
    EXPECT_EQ(GroundOf(2, 1), NORMAL);
}

// Down on the last row goes to the list view, which selects a row of its own.
TEST_F(GridDrawn, ARowThatTheListViewSelectsLooksLikeTheOthers)
{
    MakeCurrent(0, 0);
    CListViewCtrl(list).SelectItem(2);
    EXPECT_EQ(GroundOf(2, 0), NORMAL);
    EXPECT_EQ(GroundOf(2, 1), NORMAL);
    CListViewCtrl(list).SelectItem(0);
    EXPECT_EQ(GroundOf(0, 0), CELL);
    EXPECT_EQ(GroundOf(0, 1), ROW);
}
