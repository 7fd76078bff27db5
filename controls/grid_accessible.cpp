#include "controls/grid_accessible.h"

#include "controls/grid.h"

#include <new>

namespace {

constexpr long CELL_STATE = STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_SELECTABLE;
constexpr long CURRENT_STATE = STATE_SYSTEM_FOCUSED | STATE_SYSTEM_SELECTED;

// Texts need memory; nothing is thrown to the system.
template <class Work>
HRESULT WithoutExceptions(const Work& work) noexcept
{
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}

} // namespace

// ---- the grid

CGridAccessible::CGridAccessible(CGrid& grid) : CAccessibleProxy(grid), m_grid(&grid)
{
}

void CGridAccessible::Disconnect()
{
    m_grid = nullptr;
    CAccessibleProxy::Disconnect();
}

GridCell CGridAccessible::CellOf(const VARIANT& child) const
{
    return m_grid && child.vt == VT_I4 ? GridCellOfNumber(child.lVal, m_grid->Size()) : NO_GRID_CELL;
}

HRESULT CGridAccessible::AnswerCell(VARIANT* answer, const GridCell& cell) const
{
    return AnswerNumber(answer, GridCellNumber(cell, m_grid->Size()));
}

HRESULT CGridAccessible::get_accChildCount(long* count)
{
    if (!m_grid || !count) {
        return m_grid ? E_INVALIDARG : CO_E_OBJNOTCONNECTED;
    }
    const GridSize size = m_grid->Size();
    *count = size.rows * size.columns;
    return S_OK;
}

// The cells have no objects of their own.
HRESULT CGridAccessible::get_accChild(VARIANT child, IDispatch** object)
{
    if (!object) {
        return E_INVALIDARG;
    }
    *object = nullptr;
    return CellOf(child) == NO_GRID_CELL ? E_INVALIDARG : S_FALSE;
}

HRESULT CGridAccessible::get_accName(VARIANT child, BSTR* name)
{
    if (IsSelf(child)) {
        return CAccessibleProxy::get_accName(child, name);
    }
    const GridCell cell = CellOf(child);
    if (cell == NO_GRID_CELL) {
        return E_INVALIDARG;
    }
    return WithoutExceptions([&] { return AnswerText(name, m_grid->CellName(cell)); });
}

HRESULT CGridAccessible::get_accValue(VARIANT child, BSTR* value)
{
    if (IsSelf(child)) {
        return CAccessibleProxy::get_accValue(child, value);
    }
    const GridCell cell = CellOf(child);
    if (cell == NO_GRID_CELL) {
        return E_INVALIDARG;
    }
    return WithoutExceptions([&] {
        CString text;
        m_grid->GetCellText(cell.row, cell.column, text);
        return AnswerText(value, text);
    });
}

HRESULT CGridAccessible::get_accDescription(VARIANT child, BSTR* description)
{
    if (IsSelf(child)) {
        return CAccessibleProxy::get_accDescription(child, description);
    }
    *description = nullptr; // a caller may free what it gets
    return S_FALSE;
}

HRESULT CGridAccessible::get_accRole(VARIANT child, VARIANT* role)
{
    if (IsSelf(child)) {
        return AnswerNumber(role, ROLE_SYSTEM_TABLE);
    }
    return CellOf(child) == NO_GRID_CELL ? E_INVALIDARG : AnswerNumber(role, ROLE_SYSTEM_CELL);
}

HRESULT CGridAccessible::get_accState(VARIANT child, VARIANT* state)
{
    if (IsSelf(child)) {
        return CAccessibleProxy::get_accState(child, state);
    }
    const GridCell cell = CellOf(child);
    if (cell == NO_GRID_CELL) {
        return E_INVALIDARG;
    }
    const bool isCurrent = cell == m_grid->CurrentCell();
    const bool hasFocus = ::GetFocus() == m_grid->m_hWnd;
    return AnswerNumber(state, !isCurrent ? CELL_STATE
                               : hasFocus ? CELL_STATE | CURRENT_STATE
                                          : CELL_STATE | STATE_SYSTEM_SELECTED);
}

HRESULT CGridAccessible::get_accFocus(VARIANT* child)
{
    const bool hasFocus = m_grid && ::GetFocus() == m_grid->m_hWnd;
    return hasFocus && m_grid->HasCurrentCell() ? AnswerCell(child, m_grid->CurrentCell())
                                                : CAccessibleProxy::get_accFocus(child);
}

HRESULT CGridAccessible::get_accSelection(VARIANT* children)
{
    if (!m_grid || !children) {
        return m_grid ? E_INVALIDARG : CO_E_OBJNOTCONNECTED;
    }
    children->vt = VT_EMPTY;
    return m_grid->HasCurrentCell() ? AnswerCell(children, m_grid->CurrentCell()) : S_OK;
}

HRESULT CGridAccessible::accSelect(long flags, VARIANT child)
{
    const GridCell cell = CellOf(child);
    if (cell == NO_GRID_CELL) {
        return CAccessibleProxy::accSelect(flags, child);
    }
    if ((flags & (SELFLAG_TAKEFOCUS | SELFLAG_TAKESELECTION)) == 0) {
        return E_INVALIDARG; // one cell is current, no more and no less
    }
    m_grid->GoToCell(cell);
    if (flags & SELFLAG_TAKEFOCUS) {
        m_grid->SetFocus();
    }
    return S_OK;
}

HRESULT CGridAccessible::accLocation(long* left, long* top, long* width, long* height, VARIANT child)
{
    const GridCell cell = CellOf(child);
    if (cell == NO_GRID_CELL) {
        return CAccessibleProxy::accLocation(left, top, width, height, child);
    }
    std::optional<RECT> place = m_grid->CellPlace(cell);
    if (!place || !left || !top || !width || !height) {
        return E_INVALIDARG;
    }
    ::MapWindowPoints(*m_grid, nullptr, reinterpret_cast<POINT*>(&*place), 2);
    *left = place->left;
    *top = place->top;
    *width = place->right - place->left;
    *height = place->bottom - place->top;
    return S_OK;
}

HRESULT CGridAccessible::accNavigate(long direction, VARIANT start, VARIANT* end)
{
    return CellOf(start) == NO_GRID_CELL ? CAccessibleProxy::accNavigate(direction, start, end)
                                         : DISP_E_MEMBERNOTFOUND;
}

HRESULT CGridAccessible::accHitTest(long x, long y, VARIANT* child)
{
    if (!m_grid) {
        return CO_E_OBJNOTCONNECTED;
    }
    POINT place = {x, y};
    m_grid->ScreenToClient(&place);
    const GridCell cell = m_grid->CellAt(place);
    return cell == NO_GRID_CELL ? CAccessibleProxy::accHitTest(x, y, child) : AnswerCell(child, cell);
}

// ---- the editor

CGridEditAccessible::CGridEditAccessible(HWND editor, const CGrid& grid)
    : CAccessibleProxy(editor), m_grid(&grid)
{
}

void CGridEditAccessible::Disconnect()
{
    m_grid = nullptr;
    CAccessibleProxy::Disconnect();
}

HRESULT CGridEditAccessible::get_accName(VARIANT child, BSTR* name)
{
    if (!m_grid || !IsSelf(child) || !m_grid->HasCurrentCell()) {
        return CAccessibleProxy::get_accName(child, name);
    }
    return WithoutExceptions([&] { return AnswerText(name, m_grid->CellName(m_grid->CurrentCell())); });
}

HRESULT CGridEditAccessible::get_accValue(VARIANT child, BSTR* value)
{
    if (!m_grid || !IsSelf(child)) {
        return CAccessibleProxy::get_accValue(child, value);
    }
    return WithoutExceptions([&] { return AnswerText(value, m_grid->m_edit.GetText()); });
}

HRESULT CGridEditAccessible::get_accRole(VARIANT child, VARIANT* role)
{
    return m_grid && IsSelf(child) ? AnswerNumber(role, ROLE_SYSTEM_TEXT)
                                   : CAccessibleProxy::get_accRole(child, role);
}
