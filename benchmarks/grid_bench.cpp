// The current cell of a grid moved over all of its cells a hundred times, beside a bare list view of the same cells whose
// rows are drawn anew as often.
#include "benchmarks/measurement.h"
#include "controls/grid.h"
#include "window/message_map.h"
#include "window/module.h"

#include <windows.h>

#include <commctrl.h>

namespace {

constexpr wchar_t WINDOW_CLASS[] = L"RolloutGridBench";
constexpr int ROWS = 5; // as many as the page of the shortcuts has
constexpr int COLUMNS = 2;
constexpr int COLUMN_WIDTH = 180;
constexpr int ROUNDS = 100;

// Returns the list view's notifications to it, as a page does.
LRESULT CALLBACK Reflect(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    const HWND control = message == WM_NOTIFY ? NotifyingControl(window, message, wParam, lParam) : nullptr;
    if (control && GetParent(control) == window) {
        return SendMessageW(control, message + reflectionOffset, wParam, lParam);
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

class CBenchWindow
{
public:
    CBenchWindow()
    {
        WNDCLASSW windowClass = {};
        windowClass.lpfnWndProc = Reflect;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
        windowClass.lpszClassName = WINDOW_CLASS;
        RegisterClassW(&windowClass); // fails from the second window on: the class is there
        m_window = CreateWindowExW(0, WINDOW_CLASS, L"Grid", WS_POPUP | WS_VISIBLE, 40, 40, 400, 160, nullptr,
                                   nullptr, windowClass.hInstance, nullptr);
        m_list = CreateWindowExW(WS_EX_CLIENTEDGE, WC_LISTVIEWW, L"",
                                 WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS, 5, 5,
                                 390, 150, m_window, nullptr, windowClass.hInstance, nullptr);
        if (!m_list) {
            throw CannotMeasure{L"The list view of the grid could not be made"};
        }
    }
    ~CBenchWindow() { DestroyWindow(m_window); }
    CBenchWindow(const CBenchWindow&) = delete;
    CBenchWindow& operator=(const CBenchWindow&) = delete;

    HWND List() const { return m_list; }

private:
    HWND m_window = nullptr;
    HWND m_list = nullptr;
};

void Fill(const CListViewCtrl& list)
{
    for (int column = 0; column < COLUMNS; ++column) {
        list.InsertColumn(column, column == 0 ? L"Name" : L"Command", COLUMN_WIDTH);
    }
    for (int row = 0; row < ROWS; ++row) {
        list.InsertItem(row, L"A shortcut of mine");
        list.SetItemText(row, 1, L"/nologo /p Company");
    }
}

double MoveGrid(CGrid& grid)
{
    const double start = NowMilliseconds();
    for (int round = 0; round < ROUNDS; ++round) {
        for (int move = 0; move < ROWS * COLUMNS - 1; ++move) {
            grid.SendMessage(WM_KEYDOWN, VK_RIGHT);
            grid.UpdateWindow();
        }
        if (grid.m_currentRow != ROWS - 1 || grid.m_currentColumn != COLUMNS - 1) {
            throw CannotMeasure{L"The grid's current cell didn't move"};
        }
        grid.m_currentRow = grid.m_currentColumn = 0;
    }
    return NowMilliseconds() - start;
}

double RedrawBare(const CListViewCtrl& list)
{
    const double start = NowMilliseconds();
    for (int redraw = 0; redraw < ROUNDS * (ROWS * COLUMNS - 1); ++redraw) {
        list.SendMessage(LVM_REDRAWITEMS, 0, ROWS - 1);
        list.UpdateWindow();
    }
    return NowMilliseconds() - start;
}

} // namespace

std::vector<Comparison> MeasureGrid(const BenchOptions& options)
{
    _Module.Init(GetModuleHandleW(nullptr));
    Comparison comparison;
    comparison.strWhat = L"grid of 10 cells, gone over " + NumberText(ROUNDS) + L" times";
    comparison.goal = 1.5;
    {
        const CBenchWindow ours;
        CGrid grid;
        if (!grid.Bind(ours.List())) {
            throw CannotMeasure{L"The grid could not be bound"};
        }
        Fill(grid);
        const CBenchWindow other;
        const CListViewCtrl bare(other.List());
        bare.SetExtendedListViewStyle(LVS_EX_GRIDLINES | LVS_EX_FULLROWSELECT,
                                      LVS_EX_GRIDLINES | LVS_EX_FULLROWSELECT);
        bare.SetFont(grid.m_gridFont.get());
        Fill(bare);
        for (int run = 0; run <= options.runs; ++run) { // the first one warms up
            bare.SetFocus();
            SetForegroundWindow(GetParent(bare));
            const double bareTime = RedrawBare(bare);
            SetForegroundWindow(GetParent(grid));
            grid.m_currentRow = grid.m_currentColumn = 0;
            grid.SetFocus();
            const double time = MoveGrid(grid);
            if (run > 0) {
                comparison.bare.push_back(bareTime);
                comparison.ours.push_back(time);
            }
        }
    }
    return {comparison};
}
