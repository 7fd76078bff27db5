#include "controls/grid_rules.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <ostream>

static void PrintTo(const GridCell& cell, std::ostream* stream)
{
    *stream << "row " << cell.row << ", column " << cell.column;
}

namespace {

constexpr GridSize THREE_BY_TWO = {3, 2};
constexpr std::initializer_list<unsigned int> MOVES = {GRID_KEY_LEFT, GRID_KEY_RIGHT, GRID_KEY_UP,
                                                       GRID_KEY_DOWN};

void ExpectMove(unsigned int key, const GridCell& from, const GridCell& to,
                const GridSize& size = THREE_BY_TWO)
{
    const GridKeyAnswer answer = AnswerGridKey(key, from, size);
    EXPECT_EQ(answer.cell, to) << "key " << key;
    EXPECT_TRUE(answer.isMove) << "key " << key;
    EXPECT_TRUE(answer.isHandled) << "key " << key;
    EXPECT_FALSE(answer.opensEditor) << "key " << key;
}

void ExpectStay(unsigned int key, const GridCell& cell, const GridSize& size = THREE_BY_TWO)
{
    const GridKeyAnswer answer = AnswerGridKey(key, cell, size);
    EXPECT_EQ(answer.cell, cell) << "key " << key;
    EXPECT_FALSE(answer.isMove) << "key " << key;
    EXPECT_FALSE(answer.isHandled) << "key " << key;
}

void ExpectLeaves(unsigned int key, const GridCell& from, const GridSize& size = THREE_BY_TWO)
{
    const GridKeyAnswer answer = AnswerGridKey(key, from, size);
    EXPECT_EQ(answer.cell, NO_GRID_CELL) << "key " << key;
    EXPECT_TRUE(answer.isMove) << "key " << key;
    EXPECT_FALSE(answer.isHandled) << "key " << key;
}

} // namespace

TEST(GridRules, EachArrowMovesByOne)
{
    ExpectMove(GRID_KEY_LEFT, {1, 1}, {1, 0});
    ExpectMove(GRID_KEY_RIGHT, {1, 0}, {1, 1});
    ExpectMove(GRID_KEY_UP, {1, 1}, {0, 1});
    ExpectMove(GRID_KEY_DOWN, {1, 1}, {2, 1});
}

TEST(GridRules, LeftAndRightGoOnInTheNextRow)
{
    ExpectMove(GRID_KEY_LEFT, {1, 0}, {0, 1});
    ExpectMove(GRID_KEY_LEFT, {2, 0}, {1, 1});
    ExpectMove(GRID_KEY_RIGHT, {0, 1}, {1, 0});
    ExpectMove(GRID_KEY_RIGHT, {1, 1}, {2, 0});
}

TEST(GridRules, LeftAndRightLeaveTheGridAtItsEnds)
{
    ExpectLeaves(GRID_KEY_LEFT, {0, 0});
    ExpectLeaves(GRID_KEY_RIGHT, {2, 1});
}

TEST(GridRules, UpAndDownStayAtTheEdges)
{
    for (const int column : {0, 1}) {
        ExpectStay(GRID_KEY_UP, {0, column});
        ExpectStay(GRID_KEY_DOWN, {2, column});
    }
}

TEST(GridRules, AGridOfOneCellHasAllEdges)
{
    constexpr GridSize one = {1, 1};
    ExpectLeaves(GRID_KEY_LEFT, {0, 0}, one);
    ExpectLeaves(GRID_KEY_RIGHT, {0, 0}, one);
    ExpectStay(GRID_KEY_UP, {0, 0}, one);
    ExpectStay(GRID_KEY_DOWN, {0, 0}, one);
}

TEST(GridRules, WithoutACurrentCellDownAloneLeadsIn)
{
    ExpectMove(GRID_KEY_DOWN, NO_GRID_CELL, {0, 0});
    for (const unsigned int key : {GRID_KEY_LEFT, GRID_KEY_RIGHT, GRID_KEY_UP}) {
        ExpectStay(key, NO_GRID_CELL);
    }
}

TEST(GridRules, NothingMovesInAGridWithoutCells)
{
    for (const GridSize& size : {GridSize{0, 2}, GridSize{3, 0}, GridSize{0, 0}}) {
        for (const unsigned int key : MOVES) {
            ExpectStay(key, NO_GRID_CELL, size);
        }
        EXPECT_FALSE(AnswerGridKey(GRID_KEY_ENTER, NO_GRID_CELL, size).opensEditor);
        EXPECT_EQ(FirstGridCell(size), NO_GRID_CELL);
        EXPECT_EQ(LastGridCell(size), NO_GRID_CELL);
    }
}

// The page may have removed the row.
TEST(GridRules, ACellThatIsGoneCountsAsNone)
{
    for (const unsigned int key : {GRID_KEY_LEFT, GRID_KEY_RIGHT, GRID_KEY_UP}) {
        EXPECT_EQ(AnswerGridKey(key, {7, 0}, THREE_BY_TWO).cell, NO_GRID_CELL) << key;
    }
    EXPECT_FALSE(AnswerGridKey(GRID_KEY_F2, {7, 0}, THREE_BY_TWO).opensEditor);
}

TEST(GridRules, EnterAndF2OpenTheEditorOfACellThatIsThere)
{
    for (const unsigned int key : {GRID_KEY_ENTER, GRID_KEY_F2}) {
        const GridKeyAnswer answer = AnswerGridKey(key, {1, 1}, THREE_BY_TWO);
        EXPECT_TRUE(answer.opensEditor) << key;
        EXPECT_TRUE(answer.isHandled) << key;
        EXPECT_EQ(answer.cell, (GridCell{1, 1})) << key;
        EXPECT_FALSE(AnswerGridKey(key, NO_GRID_CELL, THREE_BY_TWO).opensEditor) << key;
    }
}

TEST(GridRules, OtherKeysDoNothingAndStopHere)
{
    for (unsigned int key = 0; key < 256; ++key) {
        const bool isKnown =
            (key >= GRID_KEY_LEFT && key <= GRID_KEY_DOWN) || key == GRID_KEY_ENTER || key == GRID_KEY_F2;
        const GridKeyAnswer answer = AnswerGridKey(key, {1, 1}, THREE_BY_TWO);
        EXPECT_TRUE(answer.isHandled) << key;
        EXPECT_EQ(answer.isMove || answer.opensEditor, isKnown) << key;
    }
}

TEST(GridRules, TheEndsAreTheFirstAndTheLastCell)
{
    EXPECT_EQ(FirstGridCell(THREE_BY_TWO), (GridCell{0, 0}));
    EXPECT_EQ(LastGridCell(THREE_BY_TWO), (GridCell{2, 1}));
}

TEST(GridRules, EveryKeyThatClosesTheEditorButEscStoresItsText)
{
    struct Row
    {
        unsigned int key;
        bool storesText;
        unsigned int gridKey;
    };
    for (const Row& row : {Row{GRID_KEY_ENTER, true, 0}, Row{GRID_KEY_ESCAPE, false, 0},
                           Row{GRID_KEY_TAB, true, GRID_KEY_RIGHT}, Row{GRID_KEY_UP, true, GRID_KEY_UP},
                           Row{GRID_KEY_DOWN, true, GRID_KEY_DOWN}}) {
        const EditorKeyAnswer answer = AnswerEditorKey(row.key);
        EXPECT_TRUE(answer.isHandled) << row.key;
        EXPECT_EQ(answer.storesText, row.storesText) << row.key;
        EXPECT_EQ(answer.gridKey, row.gridKey) << row.key;
    }
}

TEST(GridRules, OtherKeysAreTheEditors)
{
    for (const unsigned int key : {GRID_KEY_LEFT, GRID_KEY_RIGHT, GRID_KEY_F2, 0x24u, 0x23u, 0x2Eu, 0x41u}) {
        EXPECT_FALSE(AnswerEditorKey(key).isHandled) << key;
    }
}

TEST(GridRules, TheEditorReachesAPixelBeyondTheCellAboveAndAtTheRight)
{
    EXPECT_EQ(GridEditorRectangle({100, 40, 180, 60}), (ScreenRectangle{100, 39, 181, 60}));
}

TEST(GridRules, ACellOfTheFirstColumnEndsAtTheSecond)
{
    EXPECT_EQ(GridCellRectangle({0, 40, 180, 60}, 0, 100), (ScreenRectangle{0, 40, 100, 60}));
    EXPECT_EQ(GridCellRectangle({0, 40, 180, 60}, 0, std::nullopt), (ScreenRectangle{0, 40, 180, 60}));
    EXPECT_EQ(GridCellRectangle({100, 40, 180, 60}, 1, 500), (ScreenRectangle{100, 40, 180, 60}));
}

TEST(GridRules, CellsAreNumberedRowByRowFromOne)
{
    int number = 0;
    for (int row = 0; row < THREE_BY_TWO.rows; ++row) {
        for (int column = 0; column < THREE_BY_TWO.columns; ++column) {
            EXPECT_EQ(GridCellNumber({row, column}, THREE_BY_TWO), ++number);
            EXPECT_EQ(GridCellOfNumber(number, THREE_BY_TWO), (GridCell{row, column}));
        }
    }
    for (const long none : {-1L, 0L, 7L}) {
        EXPECT_EQ(GridCellOfNumber(none, THREE_BY_TWO), NO_GRID_CELL) << none;
    }
    EXPECT_EQ(GridCellNumber(NO_GRID_CELL, THREE_BY_TWO), 0);
    EXPECT_EQ(GridCellNumber({0, 2}, THREE_BY_TWO), 0);
    EXPECT_EQ(GridCellOfNumber(1, {3, 0}), NO_GRID_CELL);
}

TEST(GridRules, ACellIsScrolledIntoTheViewByTheLeastDistance)
{
    EXPECT_EQ(GridScrollDistance(0, 200, 200), 0);
    EXPECT_EQ(GridScrollDistance(20, 220, 200), 20);
    EXPECT_EQ(GridScrollDistance(-30, 100, 200), -30);
    EXPECT_EQ(GridScrollDistance(50, 300, 200), 50) << "wider than the view: its left edge";
    EXPECT_EQ(GridScrollDistance(-50, 300, 200), -50);
    EXPECT_EQ(GridScrollDistance(0, 300, 200), 0);
}

// ---- drawing; the numbers are those that the system sends

TEST(GridRules, BeforeAnythingIsPaintedItAsksForTheRows)
{
    EXPECT_EQ(JudgeGridDrawing(1, false, 0), GridDrawing::AskForItems);
    EXPECT_EQ(JudgeGridDrawing(1, true, 0), GridDrawing::AskForItems);
}

TEST(GridRules, TheCurrentRowIsDrawnCellByCell)
{
    for (const unsigned int state : {0u, 1u, 17u, 512u, 513u, 529u}) {
        EXPECT_EQ(JudgeGridDrawing(0x10001, true, state), GridDrawing::AskForCells) << state;
    }
}

TEST(GridRules, OfTheOtherRowsOnlySelectedOnesAreDrawnCellByCell)
{
    EXPECT_EQ(JudgeGridDrawing(0x10001, false, 513), GridDrawing::AskForCells);
    EXPECT_EQ(JudgeGridDrawing(0x10001, false, 529), GridDrawing::AskForCells);
    for (const unsigned int state : {0u, 1u, 16u, 17u, 512u, 528u, 577u}) {
        EXPECT_EQ(JudgeGridDrawing(0x10001, false, state), GridDrawing::PlainRow) << state;
    }
}

TEST(GridRules, EachCellIsDrawnByItself)
{
    EXPECT_EQ(JudgeGridDrawing(0x30001, true, 0), GridDrawing::Cell);
    EXPECT_EQ(JudgeGridDrawing(0x30001, false, 513), GridDrawing::Cell);
}

TEST(GridRules, TheOtherStagesUpToTheRowsAreHandledWithoutDrawing)
{
    for (const unsigned int stage : {2u, 3u, 4u, 0x10002u, 0x10003u, 0x10004u}) {
        EXPECT_EQ(JudgeGridDrawing(stage, true, 0), GridDrawing::Nothing) << stage;
    }
}

TEST(GridRules, StagesBeyondAreNotHandled)
{
    for (const unsigned int stage :
         {0u, 5u, 0x10000u, 0x10005u, 0x20001u, 0x30000u, 0x30002u, 0x30003u, 0x30004u, 0x40001u}) {
        EXPECT_EQ(JudgeGridDrawing(stage, true, 0), GridDrawing::NotHandled) << stage;
    }
}
