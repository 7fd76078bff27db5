#include "tests/controls/grid_fixture.h"

#include "automation/picture.h"
#include "window/gdi.h"
#include "window/message_map.h"
#include "window/module.h"

#include <array>

namespace {

constexpr wchar_t WINDOW_CLASS[] = L"RolloutGridTest";
constexpr int PLAIN_SCALE = 96;

// Pixels at the scale that the prefix has.
int Scaled(int pixels)
{
    const CWindowDC screen(nullptr);
    return MulDiv(pixels, GetDeviceCaps(screen.get(), LOGPIXELSX), PLAIN_SCALE);
}

void HoldKey(int key, bool isDown)
{
    std::array<BYTE, 256> keys = {};
    GetKeyboardState(keys.data());
    keys[static_cast<std::size_t>(key)] = isDown ? 0x80 : 0;
    SetKeyboardState(keys.data());
}

} // namespace

void PrintTo(const GridCell& cell, std::ostream* stream)
{
    *stream << "row " << cell.row << ", column " << cell.column;
}

void PrintTo(const ScreenRectangle& place, std::ostream* stream)
{
    *stream << place.left << ", " << place.top << ", " << place.right << ", " << place.bottom;
}

void GridTest::SetUp()
{
    const HINSTANCE instance = GetModuleHandleW(nullptr);
    _Module.Init(instance);
    const INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&controls);
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = Procedure;
    windowClass.hInstance = instance;
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    windowClass.lpszClassName = WINDOW_CLASS;
    RegisterClassW(&windowClass); // fails from the second test on: the class is there
    window = CreateWindowExW(WS_EX_CONTROLPARENT, WINDOW_CLASS, L"Grid", WS_POPUP, 40, 40, Scaled(360),
                             Scaled(240), nullptr, nullptr, instance, this);
    before = MakeButton(L"Before", 4);
    ShowWindow(window, SW_SHOW);
    SetForegroundWindow(window);
    SetFocus(before);
}

void GridTest::TearDown()
{
    HoldKey(VK_SHIFT, false);
    HoldKey(VK_CONTROL, false);
    DestroyWindow(window);
    _Module.Term();
}

HWND GridTest::MakeButton(const wchar_t* text, int top)
{
    return CreateWindowExW(0, L"BUTTON", text, WS_CHILD | WS_VISIBLE | WS_TABSTOP, Scaled(4), Scaled(top),
                           Scaled(80), Scaled(24), window, nullptr, GetModuleHandleW(nullptr), nullptr);
}

void GridTest::MakeList(DWORD style)
{
    list = CreateWindowExW(WS_EX_CLIENTEDGE, WC_LISTVIEWW, L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP | style,
                           Scaled(4), Scaled(32), Scaled(340), Scaled(160), window,
                           reinterpret_cast<HMENU>(static_cast<INT_PTR>(LIST)), GetModuleHandleW(nullptr),
                           nullptr);
    ASSERT_NE(list, nullptr);
    after = MakeButton(L"After", 200);
}

void GridTest::MakeGrid(int rows, int columns)
{
    MakeList();
    ASSERT_TRUE(grid.Bind(list));
    for (int column = 0; column < columns; ++column) {
        grid.AddColumn(column == 0 ? L"Name" : L"Command", column);
        grid.SetColumnWidth(column, Scaled(COLUMN_WIDTH));
    }
    AddRows(rows);
    Paint();
}

void GridTest::AddRows(int rows)
{
    for (int row = 0; row < rows; ++row) {
        grid.InsertItem(row, L"");
        for (int column = 0; column < grid.m_columnCount; ++column) {
            grid.SetCellText(row, column, CString(static_cast<wchar_t>(L'A' + column)) + NumberText(row));
        }
    }
}

LRESULT CALLBACK GridTest::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_NCCREATE) {
        const auto* creation = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(creation->lpCreateParams));
    }
    auto* test = reinterpret_cast<GridTest*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    const HWND control = NotifyingControl(window, message, wParam, lParam);
    if (test && message == WM_NOTIFY) {
        test->notifications.push_back(reinterpret_cast<NMHDR*>(lParam)->code);
        if (control == test->list) {
            return SendMessageW(control, message + reflectionOffset, wParam,
                                lParam); // as a page's frame does
        }
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

// ---- keys

void GridTest::Send(MSG message)
{
    if (!grid.PreTranslateMessage(&message) && !IsDialogMessageW(window, &message)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    while (PeekMessageW(&message, nullptr, WM_KEYFIRST, WM_KEYLAST, PM_REMOVE)) {
        if (!grid.PreTranslateMessage(&message) && !IsDialogMessageW(window, &message)) {
            DispatchMessageW(&message);
        }
    }
}

void GridTest::Key(WPARAM key)
{
    const auto scan = static_cast<LPARAM>(MapVirtualKeyW(static_cast<UINT>(key), MAPVK_VK_TO_VSC)) << 16;
    Send({GetFocus(), WM_KEYDOWN, key, scan | 1, 0, {}});
}

void GridTest::PressWith(int modifier, WPARAM key)
{
    HoldKey(modifier, true);
    Key(key);
    HoldKey(modifier, false);
}

void GridTest::ShiftKey(WPARAM key)
{
    PressWith(VK_SHIFT, key);
}

void GridTest::ControlKey(WPARAM key)
{
    PressWith(VK_CONTROL, key);
}

void GridTest::Type(const wchar_t* text)
{
    for (; *text; ++text) {
        Send({GetFocus(), WM_CHAR, *text, 1, 0, {}});
    }
}

bool GridTest::IsFiltered(WPARAM key)
{
    MSG message = {GetFocus(), WM_KEYDOWN, key, 1, 0, {}};
    return grid.PreTranslateMessage(&message) != FALSE;
}

// ---- mouse

POINT GridTest::MiddleOf(int row, int column) const
{
    const RECT place = CellPlace(row, column);
    return {(place.left + place.right) / 2, (place.top + place.bottom) / 2};
}

POINT GridTest::BelowTheRows() const
{
    const RECT last = CellPlace(grid.GetItemCount() - 1, 0);
    return {last.left + 5, last.bottom + 10};
}

POINT GridTest::RightOfTheColumns() const
{
    const RECT last = CellPlace(0, grid.m_columnCount - 1);
    return {last.right + 5, (last.top + last.bottom) / 2};
}

void GridTest::Click(POINT place, UINT message)
{
    const HWND hit = ChildWindowFromPointEx(list, place, CWP_SKIPINVISIBLE | CWP_SKIPDISABLED);
    ASSERT_NE(hit, nullptr);
    MapWindowPoints(list, hit, &place, 1);
    SendMessageW(hit, message, MK_LBUTTON, MAKELPARAM(place.x, place.y));
}

// ---- cells

void GridTest::MakeCurrent(int row, int column)
{
    grid.m_currentRow = row;
    grid.m_currentColumn = column;
    SetFocus(list);
    Paint();
}

void GridTest::Edit(int row, int column)
{
    MakeCurrent(row, column);
    Key(VK_F2);
    ASSERT_TRUE(IsEditorOpen());
    ASSERT_EQ(GetFocus(), grid.m_edit);
}

CString GridTest::Cell(int row, int column) const
{
    CString text;
    grid.GetCellText(row, column, text);
    return text;
}

RECT GridTest::CellPlace(int row, int column) const
{
    RECT place = {};
    place.left = LVIR_BOUNDS;
    place.top = column;
    SendMessageW(list, LVM_GETSUBITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&place));
    if (column == 0) {
        const auto width = SendMessageW(list, LVM_GETCOLUMNWIDTH, 0, 0);
        place.right = place.left + static_cast<LONG>(width);
    }
    return place;
}

void GridTest::ExpectEditorOver(int row, int column) const
{
    const RECT cell = CellPlace(row, column);
    EXPECT_EQ(ScreenRectangleOf(EditorPlace()),
              (ScreenRectangle{cell.left, cell.top - 1, cell.right + 1, cell.bottom}));
}

// ---- looks

void GridTest::Paint() const
{
    RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

COLORREF GridTest::GroundOf(int row, int column) const
{
    Paint();
    const RECT place = CellPlace(row, column);
    const CWindowDC dc(list);
    return GetPixel(dc.get(), place.right - 8, (place.top + place.bottom) / 2);
}

void GridTest::SavePicture(const wchar_t* state) const
{
    wchar_t folder[MAX_PATH] = {};
    if (GetEnvironmentVariableW(L"ROLLOUT_PICTURES", folder, MAX_PATH) != 0) {
        Paint();
        EXPECT_TRUE(SaveWindowPicture(window, CString(folder) + L"\\grid-" + state + L".png"));
    }
}
