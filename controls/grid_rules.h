// What the grid decides without a window: which cell follows which key, what a key does in a cell's editor, where that
// editor lies, and in which stages of drawing colors are set.
#pragma once

#include "base/rectangle.h"

#include <optional>

// -1 and -1 stand for no cell.
struct GridCell
{
    int row = -1;
    int column = -1;

    bool operator==(const GridCell&) const = default;
};
inline constexpr GridCell NO_GRID_CELL = {};

struct GridSize
{
    int rows = 0;
    int columns = 0;

    [[nodiscard]] constexpr bool Holds(const GridCell& cell) const
    {
        return cell.row >= 0 && cell.row < rows && cell.column >= 0 && cell.column < columns;
    }
};

// No cell in a grid without rows or columns.
[[nodiscard]] GridCell FirstGridCell(const GridSize& size);
[[nodiscard]] GridCell LastGridCell(const GridSize& size);

// Cells are numbered row by row from 1; 0 is no cell.
[[nodiscard]] int GridCellNumber(const GridCell& cell, const GridSize& size);
[[nodiscard]] GridCell GridCellOfNumber(long number, const GridSize& size);

// ---- keys; their values are the system's

inline constexpr unsigned int GRID_KEY_TAB = 0x09;
inline constexpr unsigned int GRID_KEY_ENTER = 0x0D;
inline constexpr unsigned int GRID_KEY_ESCAPE = 0x1B;
inline constexpr unsigned int GRID_KEY_LEFT = 0x25;
inline constexpr unsigned int GRID_KEY_UP = 0x26;
inline constexpr unsigned int GRID_KEY_RIGHT = 0x27;
inline constexpr unsigned int GRID_KEY_DOWN = 0x28;
inline constexpr unsigned int GRID_KEY_F2 = 0x71;

struct GridKeyAnswer
{
    GridCell cell; // current from now on
    bool opensEditor = false;
    bool isMove = false;   // the rows are drawn again, whether the cell changed or not
    bool isHandled = true; // otherwise the list view gets the key
};

// A key of the grid itself; one that it has no use for changes nothing and still is handled.
[[nodiscard]] GridKeyAnswer AnswerGridKey(unsigned int key, const GridCell& current, const GridSize& size);

struct EditorKeyAnswer
{
    bool isHandled = false;
    bool storesText = false;  // otherwise the cell keeps its text
    unsigned int gridKey = 0; // sent to the grid afterwards, and Enter behind it; 0 for none
};

// A key of the cell's editor.
[[nodiscard]] EditorKeyAnswer AnswerEditorKey(unsigned int key);

// ---- places

// The rectangle of a cell. Of the list view's `bounds` those of column 0 span the whole row; the cell ends where the next
// column begins, if there is one.
[[nodiscard]] ScreenRectangle GridCellRectangle(const ScreenRectangle& bounds, int column,
                                                std::optional<int> nextColumnLeft);
// Where the editor lies over that rectangle.
[[nodiscard]] ScreenRectangle GridEditorRectangle(const ScreenRectangle& cell);

// How far a view of that width has to scroll to the right (below zero: to the left) to show the cell between both
// edges; of one that is wider than the view the left edge.
[[nodiscard]] int GridScrollDistance(int left, int right, int viewWidth);

// ---- drawing; stages and item states have the system's values

inline constexpr unsigned int GRID_STATE_DRAWN = 0x200; // of a cell that the list draws without a selection

enum class GridDrawing
{
    NotHandled,
    Nothing, // handled, and nothing is drawn
    AskForItems,
    AskForCells,
    PlainRow, // normal colors for the whole row
    Cell      // each cell by itself
};

[[nodiscard]] GridDrawing JudgeGridDrawing(unsigned int stage, bool isCurrentRow, unsigned int itemState);
