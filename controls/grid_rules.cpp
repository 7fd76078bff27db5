#include "controls/grid_rules.h"

namespace {

// Stages of drawing, as the system numbers them.
constexpr unsigned int WHOLE_PREPAINT = 1;
constexpr unsigned int LAST_OTHER_STAGE = 4; // after painting, before and after erasing
constexpr unsigned int ITEM = 0x10000;
constexpr unsigned int ITEM_PREPAINT = ITEM | WHOLE_PREPAINT;
constexpr unsigned int CELL_PREPAINT = 0x20000 | ITEM_PREPAINT;

// A row that is selected for the list, without and with its focus.
constexpr unsigned int STATE_SELECTED = 0x201;
constexpr unsigned int STATE_SELECTED_AND_FOCUSED = 0x211;

GridKeyAnswer Stay(const GridCell& current, bool isHandled)
{
    return {current, false, false, isHandled};
}

GridKeyAnswer MoveTo(const GridCell& cell)
{
    return {cell, false, true, true};
}

// Behind either end there is no current cell, and the key goes on to the list view.
constexpr GridKeyAnswer LEFT_THE_GRID = {NO_GRID_CELL, false, true, false};

GridKeyAnswer MoveLeft(const GridCell& current, const GridSize& size)
{
    if (current.column > 0) {
        return MoveTo({current.row, current.column - 1});
    }
    return current.row > 0 ? MoveTo({current.row - 1, size.columns - 1}) : LEFT_THE_GRID;
}

GridKeyAnswer MoveRight(const GridCell& current, const GridSize& size)
{
    if (current.column + 1 < size.columns) {
        return MoveTo({current.row, current.column + 1});
    }
    return current.row + 1 < size.rows ? MoveTo({current.row + 1, 0}) : LEFT_THE_GRID;
}

GridKeyAnswer MoveUp(const GridCell& current)
{
    return current.row > 0 ? MoveTo({current.row - 1, current.column}) : Stay(current, false);
}

GridKeyAnswer MoveDown(const GridCell& current, const GridSize& size)
{
    return current.row + 1 < size.rows ? MoveTo({current.row + 1, current.column}) : Stay(current, false);
}

// Down alone leads back in, so that Tab leaves a grid without a current cell.
GridKeyAnswer EnterByKey(unsigned int key, const GridSize& size)
{
    const GridCell first = FirstGridCell(size);
    if (key == GRID_KEY_DOWN && size.Holds(first)) {
        return MoveTo(first);
    }
    return Stay(NO_GRID_CELL, false);
}

GridKeyAnswer MoveByKey(unsigned int key, const GridCell& current, const GridSize& size)
{
    if (!size.Holds(current)) {
        return EnterByKey(key, size);
    }
    switch (key) {
    case GRID_KEY_LEFT:
        return MoveLeft(current, size);
    case GRID_KEY_RIGHT:
        return MoveRight(current, size);
    case GRID_KEY_UP:
        return MoveUp(current);
    default:
        return MoveDown(current, size);
    }
}

} // namespace

GridCell FirstGridCell(const GridSize& size)
{
    return size.Holds({0, 0}) ? GridCell{0, 0} : NO_GRID_CELL;
}

GridCell LastGridCell(const GridSize& size)
{
    return size.Holds({0, 0}) ? GridCell{size.rows - 1, size.columns - 1} : NO_GRID_CELL;
}

int GridCellNumber(const GridCell& cell, const GridSize& size)
{
    return size.Holds(cell) ? cell.row * size.columns + cell.column + 1 : 0;
}

GridCell GridCellOfNumber(long number, const GridSize& size)
{
    if (number < 1 || number > static_cast<long>(size.rows) * size.columns) {
        return NO_GRID_CELL;
    }
    const int index = static_cast<int>(number - 1);
    return {index / size.columns, index % size.columns};
}

GridKeyAnswer AnswerGridKey(unsigned int key, const GridCell& current, const GridSize& size)
{
    switch (key) {
    case GRID_KEY_ENTER:
    case GRID_KEY_F2:
        return {current, size.Holds(current), false, true};
    case GRID_KEY_LEFT:
    case GRID_KEY_RIGHT:
    case GRID_KEY_UP:
    case GRID_KEY_DOWN:
        return MoveByKey(key, current, size);
    default:
        return Stay(current, true);
    }
}

EditorKeyAnswer AnswerEditorKey(unsigned int key)
{
    switch (key) {
    case GRID_KEY_ENTER:
        return {true, true, 0};
    case GRID_KEY_ESCAPE:
        return {true, false, 0};
    case GRID_KEY_TAB:
        return {true, true, GRID_KEY_RIGHT}; // with Shift too: only the grid itself goes back by it
    case GRID_KEY_UP:
    case GRID_KEY_DOWN:
        return {true, true, key};
    default:
        return {};
    }
}

ScreenRectangle GridCellRectangle(const ScreenRectangle& bounds, int column,
                                  std::optional<int> nextColumnLeft)
{
    const int right = column == 0 && nextColumnLeft ? *nextColumnLeft : bounds.right;
    return {bounds.left, bounds.top, right, bounds.bottom};
}

ScreenRectangle GridEditorRectangle(const ScreenRectangle& cell)
{
    // One pixel beyond the cell on each side; the grid's lines, left and below, stay as they are.
    return {cell.left, cell.top - 1, cell.right + 1, cell.bottom};
}

int GridScrollDistance(int left, int right, int viewWidth)
{
    if (left < 0 || right - left > viewWidth) {
        return left;
    }
    return right > viewWidth ? right - viewWidth : 0;
}

GridDrawing JudgeGridDrawing(unsigned int stage, bool isCurrentRow, unsigned int itemState)
{
    if (stage == WHOLE_PREPAINT) {
        return GridDrawing::AskForItems;
    }
    if (stage == ITEM_PREPAINT) {
        const bool isSelected = itemState == STATE_SELECTED || itemState == STATE_SELECTED_AND_FOCUSED;
        return isCurrentRow || isSelected ? GridDrawing::AskForCells : GridDrawing::PlainRow;
    }
    if (stage == CELL_PREPAINT) {
        return GridDrawing::Cell;
    }
    const unsigned int ofItem = stage & ~ITEM;
    return ofItem > WHOLE_PREPAINT && ofItem <= LAST_OTHER_STAGE ? GridDrawing::Nothing
                                                                 : GridDrawing::NotHandled;
}
