#include "controls/grid.h"

#include "controls/grid_accessible.h"
#include "window/gdi.h"

namespace {

constexpr int GRID_FONT_HEIGHT = 14; // pixels of letters at the scale of 96
constexpr int PLAIN_SCALE = 96;
constexpr int CAPTION_MARGIN = 15; // pixels
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

POINT PointOf(LPARAM place)
{
    return {static_cast<short>(LOWORD(place)), static_cast<short>(HIWORD(place))};
}

bool IsKeyDown(int key)
{
    return ::GetKeyState(key) < 0;
}

} // namespace

CGrid::~CGrid()
{
    Disconnect();
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
    m_edit.m_pGrid = this;
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
    if (::GetFocus() == m_hWnd) {
        Announce(EVENT_OBJECT_FOCUS);
    }
}

void CGrid::GoToCell(const GridCell& cell)
{
    CommitOpenEditor();
    SetCurrentCell(cell);
    ShowCurrentCell();
    RedrawRows();
}

GridCell CGrid::CellAt(POINT place) const
{
    LVHITTESTINFO hit = {};
    hit.pt = place;
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
    if (const std::optional<RECT> cell = CellPlace(CurrentCell())) {
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
    const GridCell cell = CellAt(PointOf(place));
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
    SetCurrentCell(CellAt(PointOf(place)));
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

LRESULT CGrid::OnSetFocus(UINT message, WPARAM former, LPARAM lParam, BOOL&)
{
    const LRESULT result = DefWindowProc(message, former, lParam);
    if (reinterpret_cast<HWND>(former) != m_hWnd && !HasCurrentCell()) {
        SetCurrentCell(IsKeyDown(VK_SHIFT) ? LastGridCell(Size()) : FirstGridCell(Size()));
    } else {
        Announce(EVENT_OBJECT_FOCUS); // behind what the list view says of its own rows
    }
    RedrawRows();
    return result;
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
        Announce(EVENT_OBJECT_VALUECHANGE);
    }
    m_bEditing = false;
}

// Those of column 0 span the whole row.
std::optional<RECT> CGrid::CellBounds(const GridCell& cell) const
{
    RECT bounds = {};
    bounds.left = LVIR_BOUNDS;
    bounds.top = cell.column;
    if (!Size().Holds(cell) ||
        !SendMessage(LVM_GETSUBITEMRECT, static_cast<WPARAM>(cell.row), reinterpret_cast<LPARAM>(&bounds))) {
        return std::nullopt;
    }
    return bounds;
}

std::optional<RECT> CGrid::CellPlace(const GridCell& cell) const
{
    const std::optional<RECT> bounds = CellBounds(cell);
    if (!bounds) {
        return std::nullopt;
    }
    std::optional<int> nextLeft;
    if (const std::optional<RECT> next = CellBounds({cell.row, cell.column + 1})) {
        nextLeft = next->left;
    }
    return RectOf(GridCellRectangle(ScreenRectangleOf(*bounds), cell.column, nextLeft));
}

std::optional<RECT> CGrid::EditorPlace() const
{
    const std::optional<RECT> cell = CellPlace(CurrentCell());
    return cell ? std::optional(RectOf(GridEditorRectangle(ScreenRectangleOf(*cell)))) : std::nullopt;
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

// ---- screen readers

CString CGrid::CellName(const GridCell& cell) const
{
    wchar_t caption[256] = {};
    LVCOLUMNW column = {};
    column.mask = LVCF_TEXT;
    column.pszText = caption;
    column.cchTextMax = 256;
    SendMessage(LVM_GETCOLUMNW, static_cast<WPARAM>(cell.column), reinterpret_cast<LPARAM>(&column));
    return CString(column.pszText) + L" " + NumberText(cell.row + 1);
}

void CGrid::Announce(DWORD event) const
{
    // Without a current cell, the number is that of the grid itself.
    ::NotifyWinEvent(event, m_hWnd, OBJID_CLIENT, GridCellNumber(CurrentCell(), Size()));
}

LRESULT CGrid::OnGetObject(UINT, WPARAM flags, LPARAM object, BOOL& handled)
{
    if (static_cast<LONG>(object) != OBJID_CLIENT) {
        handled = FALSE;
        return 0;
    }
    if (!m_accessible) {
        m_accessible.Attach(new CGridAccessible(*this));
    }
    return m_accessible->Offer(flags);
}

LRESULT CGrid::OnDestroy(UINT, WPARAM, LPARAM, BOOL& handled)
{
    Disconnect();
    handled = FALSE;
    return 0;
}

// Who holds the object still gets an answer from it, which says that the window is gone.
void CGrid::Disconnect()
{
    if (m_accessible) {
        m_accessible->Disconnect();
        m_accessible.Reset();
    }
}
