// The grid and its editor for screen readers. The grid's cells are its children, numbered row by row from 1; a cell is
// named by its column's caption and the number of its row, and its value is its text.
#pragma once

#include "controls/accessible_proxy.h"
#include "controls/grid_rules.h"

class CGrid;

class CGridAccessible final : public CAccessibleProxy
{
public:
    explicit CGridAccessible(CGrid& grid);

    void Disconnect() override;

    HRESULT STDMETHODCALLTYPE get_accChildCount(long* count) override;
    HRESULT STDMETHODCALLTYPE get_accChild(VARIANT child, IDispatch** object) override;
    HRESULT STDMETHODCALLTYPE get_accName(VARIANT child, BSTR* name) override;
    HRESULT STDMETHODCALLTYPE get_accValue(VARIANT child, BSTR* value) override;
    HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT child, BSTR* description) override;
    HRESULT STDMETHODCALLTYPE get_accRole(VARIANT child, VARIANT* role) override;
    HRESULT STDMETHODCALLTYPE get_accState(VARIANT child, VARIANT* state) override;
    HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT* child) override;
    HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT* children) override;
    HRESULT STDMETHODCALLTYPE accSelect(long flags, VARIANT child) override;
    HRESULT STDMETHODCALLTYPE accLocation(long* left, long* top, long* width, long* height,
                                          VARIANT child) override;
    HRESULT STDMETHODCALLTYPE accNavigate(long direction, VARIANT start, VARIANT* end) override;
    HRESULT STDMETHODCALLTYPE accHitTest(long x, long y, VARIANT* child) override;

private:
    // No cell for other children.
    GridCell CellOf(const VARIANT& child) const;
    HRESULT AnswerCell(VARIANT* answer, const GridCell& cell) const;

    CGrid* m_grid; // null once it is gone
};

// The editor, named as the cell that it edits. Not every system (Wine) sees the edit control below a class of our own, so
// value and role are answered too.
class CGridEditAccessible final : public CAccessibleProxy
{
public:
    CGridEditAccessible(HWND editor, const CGrid& grid);

    void Disconnect() override;

    HRESULT STDMETHODCALLTYPE get_accName(VARIANT child, BSTR* name) override;
    HRESULT STDMETHODCALLTYPE get_accValue(VARIANT child, BSTR* value) override;
    HRESULT STDMETHODCALLTYPE get_accRole(VARIANT child, VARIANT* role) override;

private:
    const CGrid* m_grid; // null once it is gone
};
