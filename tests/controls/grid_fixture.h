// A grid in a plain window between two buttons, driven as a page's message loop would.
#pragma once

#include "controls/grid.h"
#include "tests/support/text.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <ostream>
#include <vector>

class GridTest : public testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

    // The usual one: captions "Name" and "Command", each column COLUMN_WIDTH wide, and rows of the texts "A0", "B0", ...
    void MakeGrid(int rows = 3, int columns = 2);
    void AddRows(int rows);
    // The list view alone, not bound yet.
    void MakeList(DWORD style = LVS_REPORT);

    // A key goes the way of a page's loop: the grid's filter, the dialog's keys, the window; with the characters that
    // come of it.
    void Key(WPARAM key);
    void ShiftKey(WPARAM key);
    void ControlKey(WPARAM key);
    void Type(const wchar_t* text);
    // True when the grid's filter wants the key for itself.
    bool IsFiltered(WPARAM key);

    POINT MiddleOf(int row, int column) const;
    POINT BelowTheRows() const;
    POINT RightOfTheColumns() const;
    // By the system's hit testing: what lies there gets the click.
    void Click(POINT place, UINT message = WM_LBUTTONDOWN);
    void DoubleClick(POINT place) { Click(place, WM_LBUTTONDBLCLK); }

    void MakeCurrent(int row, int column);
    // The editor over that cell, with the focus.
    void Edit(int row, int column);
    GridCell Current() const { return {grid.m_currentRow, grid.m_currentColumn}; }
    CString Cell(int row, int column) const;
    CString EditorText() const { return ReadWindowText(grid.m_edit); }
    void SetEditorText(const CString& text) { SetWindowTextW(grid.m_edit, text); }
    bool IsEditorOpen() const { return IsWindowVisible(grid.m_edit); }
    // In client pixels of the list; of column 0 without the others.
    RECT CellPlace(int row, int column) const;
    RECT EditorPlace() const { return grid.m_edit.GetRectInParent(); }
    void ExpectEditorOver(int row, int column) const;
    HWND Header() const { return reinterpret_cast<HWND>(SendMessageW(list, LVM_GETHEADER, 0, 0)); }

    // Has everything painted that waits.
    void Paint() const;
    // On the screen, inside the cell and beside its text.
    COLORREF GroundOf(int row, int column) const;
    void SavePicture(const wchar_t* state) const;

    static constexpr int LIST = 1197;
    static constexpr int COLUMN_WIDTH = 120;
    HWND window = nullptr;
    HWND before = nullptr; // buttons around the list in the order of Tab
    HWND list = nullptr;
    HWND after = nullptr;
    CGrid grid;
    std::vector<UINT> notifications; // codes of what came from the list and its header

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    HWND MakeButton(const wchar_t* text, int top);
    void Send(MSG message);
    void PressWith(int modifier, WPARAM key);
};

void PrintTo(const GridCell& cell, std::ostream* stream);
void PrintTo(const ScreenRectangle& place, std::ostream* stream);
