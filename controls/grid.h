// CGrid: a list view in report mode as a small spreadsheet. It has a current cell instead of a selected line, which
// arrows and Tab move, and a cell is edited in place.
//
// A page binds it to its list view, adds columns by AddColumn and inserts rows itself (InsertItem). It calls
// PreTranslateMessage first in its own, and lets the list view's notifications come back to it by reflection, or hands
// NM_CUSTOMDRAW to OnCustomDraw. Before it reads the cells it calls CommitOpenEditor.
#pragma once

#include "controls/accessible_proxy.h"
#include "controls/grid_edit.h"
#include "controls/grid_rules.h"
#include "window/controls.h"
#include "window/drawing_handles.h"
#include "window/window_impl.h"

#include <optional>

class CGrid : public CWindowImpl<CGrid, CListViewCtrl>
{
public:
    CGrid() = default;
    ~CGrid() override;

    BEGIN_MSG_MAP(CGrid)
    MESSAGE_HANDLER(WM_KEYDOWN, OnKeyDown)
    MESSAGE_HANDLER(WM_CHAR, OnChar)
    MESSAGE_HANDLER(WM_LBUTTONDOWN, OnLeftButtonDown)
    MESSAGE_HANDLER(WM_LBUTTONDBLCLK, OnLeftDoubleClick)
    MESSAGE_HANDLER(WM_RBUTTONDOWN, OnOtherButtonDown)
    MESSAGE_HANDLER(WM_MBUTTONDOWN, OnOtherButtonDown)
    MESSAGE_HANDLER(WM_SETFOCUS, OnSetFocus)
    MESSAGE_HANDLER(WM_KILLFOCUS, OnKillFocus)
    MESSAGE_HANDLER(WM_CTLCOLOREDIT, OnColorEdit)
    MESSAGE_HANDLER(WM_GETOBJECT, OnGetObject)
    MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
    MESSAGE_HANDLER(WM_HSCROLL, OnCellsMoved)
    MESSAGE_HANDLER(WM_VSCROLL, OnCellsMoved)
    MESSAGE_HANDLER(WM_MOUSEWHEEL, OnCellsMoved)
    MESSAGE_HANDLER(WM_MOUSEHWHEEL, OnCellsMoved)
    MESSAGE_HANDLER(LVM_SCROLL, OnCellsMoved)
    MESSAGE_HANDLER(LVM_SETCOLUMNWIDTH, OnCellsMoved)
    MESSAGE_HANDLER(LVM_INSERTCOLUMNA, OnInsertColumn)
    MESSAGE_HANDLER(LVM_INSERTCOLUMNW, OnInsertColumn)
    MESSAGE_HANDLER(LVM_DELETECOLUMN, OnDeleteColumn)
    NOTIFY_CODE_HANDLER(LVN_BEGINLABELEDITW, OnBeginLabelEdit)
    NOTIFY_CODE_HANDLER(LVN_ENDLABELEDITW, OnEndLabelEdit)
    NOTIFY_CODE_HANDLER(HDN_BEGINTRACKW, OnColumnTrack)
    NOTIFY_CODE_HANDLER(HDN_ENDTRACKW, OnColumnTrack)
    NOTIFY_CODE_HANDLER(HDN_ITEMCHANGEDW, OnColumnChanged)
    NOTIFY_CODE_HANDLER(NM_CUSTOMDRAW, OnCustomDraw)
    REFLECTED_NOTIFY_CODE_HANDLER(NM_CUSTOMDRAW, OnCustomDraw)
    END_MSG_MAP()

    // Subclasses a list view and sets it up: no columns are counted, no cell is current. False when it can't be
    // subclassed or the editor can't be made.
    bool Bind(HWND list);

    // The grid's keys, before a dialog sees them. TRUE when the message is done with.
    BOOL PreTranslateMessage(MSG* message);

    // A left-aligned column as wide as its caption and a little more.
    void AddColumn(const wchar_t* caption, int index);
    void SetCellText(int row, int column, const wchar_t* text);
    // The whole text, whatever its length; empty for no cell.
    void GetCellText(int row, int column, CString& text) const;

    // Stores what stands in an open editor in its cell and closes it. Nothing without one.
    void CommitOpenEditor();

    GridSize Size() const { return {GetItemCount(), m_columnCount}; }
    GridCell CurrentCell() const { return {m_currentRow, m_currentColumn}; }
    bool HasCurrentCell() const { return Size().Holds(CurrentCell()); }
    // As a click on another cell does it: an open editor is stored.
    void GoToCell(const GridCell& cell);
    // In client pixels; none and no cell for what isn't there.
    std::optional<RECT> CellPlace(const GridCell& cell) const;
    GridCell CellAt(POINT place) const;
    // What screen readers call it: its column's caption and the number of its row, counted from 1.
    CString CellName(const GridCell& cell) const;

    // The grid's answer to the list view's NM_CUSTOMDRAW. Not handled: stages that it has no use for, and
    // notifications of other controls.
    LRESULT OnCustomDraw(int id, NMHDR* header, BOOL& handled);

    bool m_bEditing = false; // the editor is open
    int m_columnCount = 0;   // counted from the messages that pass
    int m_currentRow = -1;   // -1 and -1: none
    int m_currentColumn = -1;
    COLORREF m_cellTextColor = 0; // of the current cell
    COLORREF m_cellBackColor = 0xC0C0C0;
    COLORREF m_rowTextColor = 0; // of the rest of its row
    COLORREF m_rowBackColor = 0xE1E1E1;
    COLORREF m_normalTextColor = 0; // of the editor too
    COLORREF m_normalBackColor = 0xFFFFFF;
    COLORREF m_gridBackColor = 0xFFFFFF; // behind and below the rows
    CFontOwner m_gridFont;
    CFontOwner m_editFont;
    CGridEdit m_edit;

private:
    LRESULT OnKeyDown(UINT message, WPARAM key, LPARAM lParam, BOOL& handled);
    LRESULT OnChar(UINT, WPARAM, LPARAM, BOOL&) { return 0; }
    LRESULT OnLeftButtonDown(UINT message, WPARAM keys, LPARAM place, BOOL& handled);
    LRESULT OnLeftDoubleClick(UINT message, WPARAM keys, LPARAM place, BOOL& handled);
    LRESULT OnOtherButtonDown(UINT message, WPARAM keys, LPARAM place, BOOL& handled);
    LRESULT OnSetFocus(UINT message, WPARAM former, LPARAM lParam, BOOL& handled);
    LRESULT OnKillFocus(UINT message, WPARAM next, LPARAM lParam, BOOL& handled);
    LRESULT OnColorEdit(UINT message, WPARAM dc, LPARAM control, BOOL& handled);
    LRESULT OnGetObject(UINT message, WPARAM flags, LPARAM object, BOOL& handled);
    LRESULT OnDestroy(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnCellsMoved(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnInsertColumn(UINT message, WPARAM index, LPARAM column, BOOL& handled);
    LRESULT OnDeleteColumn(UINT message, WPARAM index, LPARAM lParam, BOOL& handled);
    LRESULT OnBeginLabelEdit(int id, NMHDR* header, BOOL& handled);
    LRESULT OnEndLabelEdit(int id, NMHDR* header, BOOL& handled);
    LRESULT OnColumnTrack(int id, NMHDR* header, BOOL& handled);
    LRESULT OnColumnChanged(int id, NMHDR* header, BOOL& handled);

    void Disconnect();
    void Initialise();
    void MakeFonts();

    void SetCurrentCell(const GridCell& cell);
    void Announce(DWORD event) const;
    bool HandleKey(WPARAM key);
    void ShowCurrentCell();
    void RedrawRows();

    void BeginEdit();
    void OpenCellEditor();
    void CloseCellEditor(const LVITEMW& item);
    std::optional<RECT> CellBounds(const GridCell& cell) const;
    std::optional<RECT> EditorPlace() const;
    void PlaceEditor();
    void SetColors(NMLVCUSTOMDRAW& draw) const;

    CBrushOwner m_editBrush;
    COLORREF m_editBrushColor = CLR_INVALID; // of the brush
    ComPtr<CAccessibleProxy> m_accessible;   // made when somebody asks
};
