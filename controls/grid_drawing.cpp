// What the grid looks like: the colors of its rows, cells and editor.
#include "controls/grid.h"

namespace {

constexpr COLORREF UNFOCUSED_BACK_COLOR = 0xF0F0F0;

} // namespace

LRESULT CGrid::OnCustomDraw(int, NMHDR* header, BOOL& handled)
{
    // The header reports to the list view too, with a record that ends before the colors.
    if (header->hwndFrom != m_hWnd) {
        handled = FALSE;
        return CDRF_DODEFAULT;
    }
    auto& draw = *reinterpret_cast<NMLVCUSTOMDRAW*>(header);
    const bool isCurrentRow = static_cast<int>(draw.nmcd.dwItemSpec) == m_currentRow;
    switch (JudgeGridDrawing(draw.nmcd.dwDrawStage, isCurrentRow, draw.nmcd.uItemState)) {
    case GridDrawing::AskForItems:
        return CDRF_NOTIFYITEMDRAW;
    case GridDrawing::AskForCells:
        return CDRF_NOTIFYSUBITEMDRAW;
    case GridDrawing::PlainRow:
        draw.clrText = m_normalTextColor;
        draw.clrTextBk = m_normalBackColor;
        draw.nmcd.uItemState &= ~static_cast<UINT>(CDIS_SELECTED | CDIS_FOCUS); // or the colors don't count
        return CDRF_DODEFAULT;
    case GridDrawing::Cell:
        draw.nmcd.uItemState = GRID_STATE_DRAWN;
        SetColors(draw);
        return CDRF_DODEFAULT;
    case GridDrawing::Nothing:
        return CDRF_DODEFAULT;
    case GridDrawing::NotHandled:
        break;
    }
    handled = FALSE;
    return CDRF_DODEFAULT;
}

void CGrid::SetColors(NMLVCUSTOMDRAW& draw) const
{
    if (static_cast<int>(draw.nmcd.dwItemSpec) != m_currentRow) {
        draw.clrText = m_normalTextColor;
        draw.clrTextBk = m_normalBackColor;
        return;
    }
    const bool isCurrentCell = draw.iSubItem == m_currentColumn;
    draw.clrText = isCurrentCell ? m_cellTextColor : m_rowTextColor;
    draw.clrTextBk = isCurrentCell ? m_cellBackColor : m_rowBackColor;
    if (::GetFocus() != m_hWnd) {
        draw.clrTextBk = UNFOCUSED_BACK_COLOR;
    }
}

LRESULT CGrid::OnColorEdit(UINT, WPARAM dc, LPARAM control, BOOL& handled)
{
    if (reinterpret_cast<HWND>(control) != m_edit) {
        handled = FALSE;
        return 0;
    }
    if (m_editBrushColor != m_normalBackColor) {
        m_editBrush.reset(::CreateSolidBrush(m_normalBackColor));
        m_editBrushColor = m_normalBackColor;
    }
    const auto target = reinterpret_cast<HDC>(dc);
    ::SetTextColor(target, m_normalTextColor);
    ::SetBkColor(target, m_normalBackColor);
    return reinterpret_cast<LRESULT>(m_editBrush.get());
}
