// How a list view becomes a grid, and what is left when it goes.
#include "tests/controls/grid_fixture.h"
#include "tests/support/leftovers.h"
#include "window/gdi.h"

namespace {

class GridSetup : public GridTest
{
};

LOGFONTW RecordOf(HFONT font)
{
    LOGFONTW record = {};
    GetObjectW(font, sizeof record, &record);
    return record;
}

CString ClassOf(HWND window)
{
    wchar_t name[64] = {};
    GetClassNameW(window, name, 64);
    return name;
}

} // namespace

TEST_F(GridSetup, BindingSetsTheStylesAndTheBackground)
{
    MakeList(LVS_LIST & LVS_REPORT);
    SendMessageW(list, LVM_SETBKCOLOR, 0, RGB(1, 2, 3));
    ASSERT_TRUE(grid.Bind(list));
    EXPECT_EQ(grid.m_hWnd, list);
    EXPECT_EQ(grid.GetStyle() & 13u, 13u);
    EXPECT_EQ(grid.SendMessage(LVM_GETEXTENDEDLISTVIEWSTYLE), 33);
    EXPECT_EQ(grid.SendMessage(LVM_GETBKCOLOR), 0xFFFFFF);
}

TEST_F(GridSetup, AFreshGridHasNoCurrentCellAndCountsNoColumns)
{
    MakeGrid();
    grid.UnsubclassWindow();
    grid.m_edit.DestroyWindow();
    ASSERT_TRUE(grid.Bind(list)); // with columns that it has not seen come
    EXPECT_EQ(grid.m_columnCount, 0);
    EXPECT_EQ(Current(), NO_GRID_CELL);
    EXPECT_FALSE(grid.m_bEditing);
}

TEST_F(GridSetup, NoWindowIsNotBound)
{
    EXPECT_FALSE(grid.Bind(nullptr));
    EXPECT_EQ(grid.m_hWnd, nullptr);
}

TEST_F(GridSetup, TheColorsAreThoseOfTheTable)
{
    EXPECT_EQ(grid.m_cellTextColor, 0u);
    EXPECT_EQ(grid.m_cellBackColor, 0xC0C0C0u);
    EXPECT_EQ(grid.m_rowTextColor, 0u);
    EXPECT_EQ(grid.m_rowBackColor, 0xE1E1E1u);
    EXPECT_EQ(grid.m_normalTextColor, 0u);
    EXPECT_EQ(grid.m_normalBackColor, 0xFFFFFFu);
    EXPECT_EQ(grid.m_gridBackColor, 0xFFFFFFu);
}

TEST_F(GridSetup, TheFontsComeFromTheSystemsFontOfControls)
{
    MakeGrid();
    const LOGFONTW system = RecordOf(static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT)));
    const LOGFONTW edit = RecordOf(grid.m_editFont.get());
    const LOGFONTW cells = RecordOf(grid.m_gridFont.get());
    EXPECT_EQ(edit.lfHeight, system.lfHeight);
    EXPECT_EQ(edit.lfWidth, system.lfWidth);
    EXPECT_EQ(CString(edit.lfFaceName), CString(system.lfFaceName));
    EXPECT_EQ(CString(cells.lfFaceName), CString(system.lfFaceName));
    const CWindowDC screen(nullptr);
    EXPECT_EQ(cells.lfHeight, -MulDiv(14, GetDeviceCaps(screen.get(), LOGPIXELSY), 96));
    EXPECT_EQ(cells.lfWidth, 0);
    EXPECT_EQ(grid.GetFont(), grid.m_gridFont.get());
}

TEST_F(GridSetup, TheEditorIsAHiddenChildOfAClassOfItsOwn)
{
    MakeGrid();
    const CWindow edit(grid.m_edit);
    EXPECT_EQ(edit.GetParent(), list);
    EXPECT_EQ(ClassOf(edit), CString(L"RolloutGridEdit"));
    EXPECT_EQ(edit.GetText(), CString(L"GridEdit"));
    // Wine's edit control has no bit for the border that it draws.
    EXPECT_EQ(edit.GetStyle() | WS_BORDER, 0x44800080u) << "and so neither visible nor a stop of Tab";
}

TEST_F(GridSetup, AColumnIsAsWideAsItsCaptionAnd15)
{
    MakeList();
    ASSERT_TRUE(grid.Bind(list));
    const wchar_t* caption = L"Command line switches";
    grid.AddColumn(caption, 0);
    LVCOLUMNW column = {};
    wchar_t text[64] = {};
    column.mask = LVCF_FMT | LVCF_WIDTH | LVCF_TEXT;
    column.pszText = text;
    column.cchTextMax = 64;
    ASSERT_TRUE(grid.SendMessage(LVM_GETCOLUMNW, 0, reinterpret_cast<LPARAM>(&column)));
    EXPECT_EQ(column.cx, grid.SendMessage(LVM_GETSTRINGWIDTHW, 0, reinterpret_cast<LPARAM>(caption)) + 15);
    EXPECT_EQ(column.fmt & LVCFMT_JUSTIFYMASK, LVCFMT_LEFT);
    EXPECT_EQ(CString(text), CString(caption));
}

TEST_F(GridSetup, ColumnsAreCountedAsTheyComeAndGo)
{
    MakeGrid(1, 3);
    EXPECT_EQ(grid.m_columnCount, 3);
    ListView_DeleteColumn(list, 1);
    EXPECT_EQ(grid.m_columnCount, 2);
    ListView_DeleteColumn(list, 7);
    EXPECT_EQ(grid.m_columnCount, 2) << "there is no such column";
    CListViewCtrl(list).InsertColumn(0, L"Another", 40);
    EXPECT_EQ(grid.m_columnCount, 3) << "whoever inserts it";
}

TEST_F(GridSetup, ACellGivesBackATextOfAnyLength)
{
    MakeGrid();
    for (const int length : {0, 1, 254, 255, 256, 257, 511, 512, 1023, 1024, 1025, 5000}) {
        const CString text(L'x', length);
        grid.SetCellText(1, 1, text);
        EXPECT_EQ(Cell(1, 1), text) << length;
    }
}

TEST_F(GridSetup, ACellThatIsNotThereIsEmpty)
{
    MakeGrid();
    EXPECT_EQ(Cell(9, 0), CString());
    EXPECT_EQ(Cell(-1, 0), CString());
}

TEST_F(GridSetup, AGridThatGoesFirstLeavesAnOrdinaryListView)
{
    MakeList();
    const auto procedure = GetWindowLongPtrW(list, GWLP_WNDPROC);
    {
        CGrid shortLived;
        ASSERT_TRUE(shortLived.Bind(list));
        shortLived.AddColumn(L"Name", 0);
        shortLived.InsertItem(0, L"One");
        MSG key = {list, WM_KEYDOWN, VK_F2, 1, 0, {}};
        SetFocus(list);
        DispatchMessageW(&key);
        EXPECT_TRUE(shortLived.m_bEditing);
    }
    EXPECT_EQ(GetWindowLongPtrW(list, GWLP_WNDPROC), procedure);
    EXPECT_EQ(FindWindowExW(list, nullptr, L"RolloutGridEdit", nullptr), nullptr);
    Paint();
    EXPECT_EQ(CListViewCtrl(list).GetItemText(0, 0), CString(L"One"));
    const HFONT font = CWindow(list).GetFont();
    EXPECT_TRUE(font == nullptr || GetObjectType(font) == OBJ_FONT) << "it draws with a font that is gone";
}

TEST_F(GridSetup, AGridCanBeBoundAgainWhenItsWindowIsGone)
{
    MakeGrid();
    DestroyWindow(list);
    DestroyWindow(after);
    EXPECT_EQ(grid.m_hWnd, nullptr);
    EXPECT_EQ(grid.m_edit.m_hWnd, nullptr);
    MakeGrid(2, 1);
    Edit(1, 0);
    EXPECT_EQ(EditorText(), CString(L"A1"));
}

TEST_F(GridSetup, NothingIsLeftOfAGridThatWasUsed)
{
    MakeList();
    const auto use = [this] {
        CGrid used;
        ASSERT_TRUE(used.Bind(list));
        used.AddColumn(L"Name", 0);
        used.InsertItem(0, L"One");
        SetFocus(before);
        SetFocus(list);
        SendMessageW(list, WM_KEYDOWN, VK_RETURN, 0);
        ASSERT_TRUE(used.m_bEditing);
        Paint();
        SendMessageW(used.m_edit, WM_KEYDOWN, VK_TAB, 0);
        Paint();
        used.DeleteAllItems();
        ListView_DeleteColumn(list, 0);
    };
    use();
    const ProcessState former = ReadProcessState();
    for (int round = 0; round < 5; ++round) {
        use();
    }
    EXPECT_EQ(DescribeChange(former, ReadProcessState()), CString());
}

TEST_F(GridSetup, MovesAndEditsLeaveNothingBehind)
{
    MakeGrid();
    const auto use = [this] {
        Edit(0, 0);
        Type(L"typed");
        for (int cell = 0; cell < 6; ++cell) {
            Key(VK_TAB);
        }
        Click(MiddleOf(1, 1));
        Key(VK_UP);
        grid.SetColumnWidth(0, 90);
        grid.SetColumnWidth(0, 100);
        Paint();
    };
    use();
    const ProcessState former = ReadProcessState();
    for (int round = 0; round < 20; ++round) {
        use();
    }
    EXPECT_EQ(DescribeChange(former, ReadProcessState()), CString());
}

TEST_F(GridSetup, TheEditorsBrushIsMadeOnceAColor)
{
    MakeGrid();
    Edit(0, 0);
    Paint();
    const ProcessState former = ReadProcessState();
    for (int round = 0; round < 100; ++round) {
        grid.m_edit.Invalidate();
        grid.m_edit.UpdateWindow();
    }
    EXPECT_EQ(DescribeChange(former, ReadProcessState()), CString()) << "the same color";
    for (int round = 0; round < 100; ++round) {
        grid.m_normalBackColor = RGB(round, 200, 200);
        grid.m_edit.Invalidate();
        grid.m_edit.UpdateWindow();
    }
    EXPECT_EQ(DescribeChange(former, ReadProcessState()), CString()) << "another color each time";
}

TEST_F(GridSetup, TheEditorIsPaintedInTheNormalColors)
{
    MakeGrid();
    const CWindowDC dc(list);
    for (const COLORREF back : {COLORREF{0xFFFFFF}, RGB(200, 255, 220)}) {
        grid.m_normalBackColor = back;
        grid.m_normalTextColor = ~back & 0xFFFFFF;
        const auto brush =
            reinterpret_cast<HBRUSH>(SendMessageW(list, WM_CTLCOLOREDIT, reinterpret_cast<WPARAM>(dc.get()),
                                                  reinterpret_cast<LPARAM>(grid.m_edit.m_hWnd)));
        LOGBRUSH record = {};
        ASSERT_TRUE(GetObjectW(brush, sizeof record, &record));
        EXPECT_EQ(record.lbStyle, UINT{BS_SOLID});
        EXPECT_EQ(record.lbColor, back);
        EXPECT_EQ(GetBkColor(dc.get()), back);
        EXPECT_EQ(GetTextColor(dc.get()), ~back & 0xFFFFFF);
    }
}
