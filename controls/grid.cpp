#include "controls/grid.h"

#include "window/gdi.h"

namespace {

constexpr int GRID_FONT_HEIGHT = 14; // pixels of letters at the scale of 96
constexpr int PLAIN_SCALE = 96;
constexpr int CAPTION_MARGIN = 15; // pixels
constexpr COLORREF UNFOCUSED_BACK_COLOR = 0xF0F0F0;
constexpr DWORD LIST_STYLE = LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS;
constexpr DWORD LIST_EX_STYLE = LVS_EX_GRIDLINES | LVS_EX_FULLROWSELECT;
constexpr DWORD EDIT_STYLE = WS_CHILD | WS_CLIPSIBLINGS | WS_BORDER | ES_AUTOHSCROLL;
static_assert(LIST_STYLE == 13 && LIST_EX_STYLE == 33 && EDIT_STYLE == 0x44800080);

static_assert(GRID_KEY_TAB == VK_TAB && GRID_KEY_ENTER == VK_RETURN && GRID_KEY_ESCAPE == VK_ESCAPE);
static_assert(GRID_KEY_LEFT == VK_LEFT && GRID_KEY_UP == VK_UP && GRID_KEY_RIGHT == VK_RIGHT);
static_assert(GRID_KEY_DOWN == VK_DOWN && GRID_KEY_F2 == VK_F2);

// The system's font of controls, read once a process.
const LOGFONTW& GuiFontRecord()
{
    static const LOGFONTW record = [] {
        LOGFONTW font = {};
        ::GetObjectW(::GetStockObject(DEFAULT_GUI_FONT), sizeof font, &font);
        return font;
    }();
    return record;
}

bool IsKeyDown(int key)
{
    return ::GetKeyState(key) < 0;
}

} // namespace

CGrid::~CGrid()
{
    // The list view may stay: it must neither call this object any more nor draw with its font.
    const CWindow list(UnsubclassWindow(TRUE));
    if (list && list.GetFont() == m_gridFont.get()) {
        list.SetFont(nullptr);
    }
}

// ---- setting up

bool CGrid::Bind(HWND list)
{
    if (!SubclassWindow(list)) {
        return false;
    }
    Initialise();
    return m_edit.IsWindow();
}

void CGrid::Initialise()
{
    if ((GetStyle() & LIST_STYLE) != LIST_STYLE) {
        ModifyStyle(0, LIST_STYLE);
    }
    MakeFonts();
    SetCurrentCell(NO_GRID_CELL);
    m_columnCount = 0;
    m_bEditing = false;
    const RECT nowhere = {};
    if (m_edit.Create(m_hWnd, &nowhere, L"GridEdit", EDIT_STYLE)) {
        // What is typed beyond it would be cut without a word.
        m_edit.SendMessage(EM_SETLIMITTEXT, CGridEdit::TEXT_CAPACITY - 1);
    }
    SetFont(m_gridFont.get());
    SetExtendedListViewStyle(LIST_EX_STYLE, LIST_EX_STYLE);
    SendMessage(LVM_SETBKCOLOR, 0, static_cast<LPARAM>(m_gridBackColor));
}

void CGrid::MakeFonts()
{
    LOGFONTW font = GuiFontRecord();
    m_editFont.reset(::CreateFontIndirectW(&font));
    const CWindowDC screen(nullptr);
    // The system scales its own font; at a fixed height the letters of the grid would stay small beside all others.
    font.lfHeight = -::MulDiv(GRID_FONT_HEIGHT, ::GetDeviceCaps(screen.get(), LOGPIXELSY), PLAIN_SCALE);
    font.lfWidth = 0;
    m_gridFont.reset(::CreateFontIndirectW(&font));
}

// ---- columns and cells

void CGrid::AddColumn(const wchar_t* caption, int index)
{
    LVCOLUMNW column = {};
    column.mask = LVCF_FMT | LVCF_WIDTH | LVCF_TEXT | LVCF_SUBITEM;
    column.fmt = LVCFMT_LEFT;
    column.cx = static_cast<int>(SendMessage(LVM_GETSTRINGWIDTHW, 0, reinterpret_cast<LPARAM>(caption))) +
                CAPTION_MARGIN;
    column.pszText = const_cast<wchar_t*>(caption); // the control only reads it
    column.iSubItem = index;
    SendMessage(LVM_INSERTCOLUMNW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&column));
}

void CGrid::SetCellText(int row, int column, const wchar_t* text)
{
    SetItemText(row, column, text);
}

void CGrid::GetCellText(int row, int column, CString& text) const
{
    text = GetItemText(row, column);
}

// The list view reports no count of its columns.
LRESULT CGrid::OnInsertColumn(UINT message, WPARAM index, LPARAM column, BOOL&)
{
    const LRESULT inserted = DefWindowProc(message, index, column);
    if (inserted >= 0) {
        ++m_columnCount;
    }
    return inserted;
}

LRESULT CGrid::OnDeleteColumn(UINT message, WPARAM index, LPARAM lParam, BOOL&)
{
    const LRESULT isDeleted = DefWindowProc(message, index, lParam);
    if (isDeleted && m_columnCount > 0) {
        --m_columnCount;
    }
    return isDeleted;
}

// ---- current cell

void CGrid::SetCurrentCell(const GridCell& cell)
{
    m_currentRow = cell.row;
    m_currentColumn = cell.column;
}

GridCell CGrid::CellAt(LPARAM place) const
{
    LVHITTESTINFO hit = {};
    hit.pt = {static_cast<short>(LOWORD(place)), static_cast<short>(HIWORD(place))};
    SendMessage(LVM_SUBITEMHITTEST, 0, reinterpret_cast<LPARAM>(&hit));
    const GridCell cell = {hit.iItem, hit.iSubItem};
    return Size().Holds(cell) ? cell : NO_GRID_CELL;
}

void CGrid::RedrawRows()
{
    SendMessage(LVM_REDRAWITEMS, 0, GetItemCount() - 1);
}

// By its row as the list view does it; sideways too, since its own keys for that don't reach it.
void CGrid::ShowCurrentCell()
{
    if (!HasCurrentCell()) {
        return;
    }
    SendMessage(LVM_ENSUREVISIBLE, static_cast<WPARAM>(m_currentRow), FALSE);
    if (const std::optional<RECT> cell = EditorPlace()) {
        const int distance = GridScrollDistance(cell->left, cell->right, GetClientRect().right);
        if (distance != 0) {
            SendMessage(LVM_SCROLL, static_cast<WPARAM>(distance), 0);
        }
    }
    PlaceEditor();
}

// ---- keys

BOOL CGrid::PreTranslateMessage(MSG* message)
{
    const bool isSwitchingTabs = message->wParam == VK_TAB && IsKeyDown(VK_CONTROL); // the host's key
    if (!m_hWnd || message->message != WM_KEYDOWN || isSwitchingTabs) {
        return FALSE;
    }
    if (message->hwnd == m_edit && m_edit.IsWindowVisible()) {
        return m_edit.HandleKey(message->wParam);
    }
    if (message->hwnd != m_hWnd) {
        return FALSE;
    }
    switch (message->wParam) {
    case VK_RETURN:
        HandleKey(VK_RETURN);
        ShowCurrentCell();
        return TRUE;
    case VK_TAB:
        HandleKey(IsKeyDown(VK_SHIFT) ? VK_LEFT : VK_RIGHT);
        ShowCurrentCell();
        return HasCurrentCell();
    default:
        return FALSE;
    }
}

LRESULT CGrid::OnKeyDown(UINT message, WPARAM key, LPARAM lParam, BOOL&)
{
    LRESULT result = 0;
    if (!HandleKey(key)) {
        result = DefWindowProc(message, key, lParam);
    }
    ShowCurrentCell();
    return result;
}

bool CGrid::HandleKey(WPARAM key)
{
    const GridKeyAnswer answer = AnswerGridKey(static_cast<unsigned int>(key), CurrentCell(), Size());
    if (answer.isMove || answer.opensEditor) {
        CommitOpenEditor(); // left open when the focus went elsewhere; the cell doesn't change under it
    }
    if (answer.isMove) {
        SetCurrentCell(answer.cell);
        RedrawRows();
    }
    if (answer.opensEditor) {
        BeginEdit();
    }
    return answer.isHandled;
}

// ---- mouse

LRESULT CGrid::OnLeftButtonDown(UINT, WPARAM, LPARAM place, BOOL&)
{
    CommitOpenEditor();
    // Before the hit test: the first click into a fresh grid finds the first cell current and opens it.
    SetFocus();
    const GridCell cell = CellAt(place);
    if (HasCurrentCell() && cell == CurrentCell()) {
        BeginEdit();
    } else {
        SetCurrentCell(cell);
        RedrawRows();
    }
    return 0;
}

LRESULT CGrid::OnLeftDoubleClick(UINT, WPARAM, LPARAM place, BOOL&)
{
    CommitOpenEditor();
    SetCurrentCell(CellAt(place));
    if (HasCurrentCell()) {
        BeginEdit();
    }
    RedrawRows();
    return 0;
}

LRESULT CGrid::OnOtherButtonDown(UINT, WPARAM, LPARAM, BOOL& handled)
{
    CommitOpenEditor();
    handled = FALSE;
    return 0;
}

// ---- focus

LRESULT CGrid::OnSetFocus(UINT, WPARAM former, LPARAM, BOOL& handled)
{
    if (reinterpret_cast<HWND>(former) != m_hWnd && !HasCurrentCell()) {
        SetCurrentCell(IsKeyDown(VK_SHIFT) ? LastGridCell(Size()) : FirstGridCell(Size()));
    }
    RedrawRows();
    handled = FALSE;
    return 0;
}

LRESULT CGrid::OnKillFocus(UINT, WPARAM, LPARAM, BOOL& handled)
{
    RedrawRows();
    handled = FALSE;
    return 0;
}

// ---- editor

void CGrid::CommitOpenEditor()
{
    if (m_edit.GetStyle() & WS_VISIBLE) { // its own bit: the page may be hidden
        m_edit.StoreText();
    }
    m_bEditing = false;
}

void CGrid::BeginEdit()
{
    NMLVDISPINFOW begin = {};
    begin.hdr.hwndFrom = m_hWnd;
    begin.hdr.idFrom = static_cast<UINT_PTR>(GetDlgCtrlID());
    begin.hdr.code = LVN_BEGINLABELEDITW;
    begin.item.iItem = m_currentRow;
    begin.item.iSubItem = m_currentColumn;
    SendMessage(WM_NOTIFY, begin.hdr.idFrom, reinterpret_cast<LPARAM>(&begin));
}

LRESULT CGrid::OnBeginLabelEdit(int, NMHDR*, BOOL&)
{
    OpenCellEditor();
    return 0;
}

LRESULT CGrid::OnEndLabelEdit(int, NMHDR* header, BOOL&)
{
    CloseCellEditor(reinterpret_cast<NMLVDISPINFOW*>(header)->item);
    return 0;
}

void CGrid::OpenCellEditor()
{
    const std::optional<RECT> place = EditorPlace();
    if (!place || !m_edit.IsWindow()) {
        return;
    }
    CString text;
    GetCellText(m_currentRow, m_currentColumn, text);
    ::lstrcpynW(m_edit.m_text, text, CGridEdit::TEXT_CAPACITY); // a longer text stays whole only by Esc
    m_edit.MoveWindow(*place);
    m_edit.SetFont(m_editFont.get());
    m_edit.SetText(m_edit.m_text);
    m_edit.ShowWindow(SW_SHOW);
    m_edit.SetFocus();
    m_edit.SetSelAll();
    m_edit.SendMessage(EM_SCROLLCARET);
    m_edit.UpdateWindow();
    m_bEditing = true;
}

void CGrid::CloseCellEditor(const LVITEMW& item)
{
    m_edit.ShowWindow(SW_HIDE);
    if (item.iItem != -1 && item.pszText && HasCurrentCell()) {
        SetCellText(m_currentRow, m_currentColumn, item.pszText);
    }
    m_bEditing = false;
}

// In client pixels; of column 0 the whole row. None for a cell that isn't there.
std::optional<RECT> CGrid::CellBounds(int column) const
{
    RECT bounds = {};
    bounds.left = LVIR_BOUNDS;
    bounds.top = column;
    if (!Size().Holds({m_currentRow, column}) ||
        !SendMessage(LVM_GETSUBITEMRECT, static_cast<WPARAM>(m_currentRow),
                     reinterpret_cast<LPARAM>(&bounds))) {
        return std::nullopt;
    }
    return bounds;
}

std::optional<RECT> CGrid::EditorPlace() const
{
    const std::optional<RECT> bounds = CellBounds(m_currentColumn);
    if (!bounds) {
        return std::nullopt;
    }
    std::optional<int> nextLeft;
    if (const std::optional<RECT> next = CellBounds(m_currentColumn + 1)) {
        nextLeft = next->left;
    }
    return RectOf(GridEditorRectangle(ScreenRectangleOf(*bounds), m_currentColumn, nextLeft));
}

void CGrid::PlaceEditor()
{
    const std::optional<RECT> place = EditorPlace();
    if (!place || !m_edit.IsWindow()) {
        return;
    }
    m_edit.MoveWindow(*place);
    if (m_edit.IsWindowVisible()) {
        Invalidate();
        m_edit.Invalidate();
    }
}

LRESULT CGrid::OnCellsMoved(UINT message, WPARAM wParam, LPARAM lParam, BOOL&)
{
    const LRESULT result = DefWindowProc(message, wParam, lParam);
    PlaceEditor(); // the list view leaves it where it is
    return result;
}

LRESULT CGrid::OnColumnTrack(int, NMHDR*, BOOL& handled)
{
    PlaceEditor();
    handled = FALSE;
    return 0;
}

// The width counts only now: the end of tracking is reported before.
LRESULT CGrid::OnColumnChanged(int, NMHDR*, BOOL&)
{
    const LRESULT result = DefWindowProc();
    PlaceEditor();
    return result;
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

// ---- drawing

LRESULT CGrid::OnCustomDraw(int, NMHDR* header, BOOL& handled)
{
    if (header->hwndFrom !=
        m_hWnd) { // the header reports to the list view too, with less than what is set here
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
