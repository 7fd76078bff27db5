// The grid under keys and mouse of the system, through a message loop as a page has it.
#include "tests/by_hand/hand.h"
#include "tests/controls/grid_fixture.h"

#include <functional>

namespace {

class GridByHand : public GridTest
{
protected:
    void SetUp() override
    {
        GridTest::SetUp();
        MakeGrid();
    }
    // Runs the loop until the condition holds; a failure says what was waited for.
    void Await(const char* what, const std::function<bool()>& condition)
    {
        constexpr ULONGLONG limit = 10'000; // milliseconds
        const ULONGLONG start = GetTickCount64();
        while (!condition()) {
            ASSERT_LT(GetTickCount64() - start, limit) << "no sign of: " << what;
            MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
            MSG message = {};
            while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
                if (!grid.PreTranslateMessage(&message) && !IsDialogMessageW(window, &message)) {
                    TranslateMessage(&message);
                    DispatchMessageW(&message);
                }
            }
        }
    }
    void AwaitCurrent(int row, int column)
    {
        Await("the current cell", [=, this] { return Current() == GridCell{row, column}; });
    }
    void AwaitEditor(int row, int column, const wchar_t* text)
    {
        AwaitCurrent(row, column);
        Await("the editor",
              [=, this] { return IsEditorOpen() && GetFocus() == grid.m_edit && EditorText() == text; });
    }
    void ClickCell(int row, int column) const
    {
        POINT place = MiddleOf(row, column);
        ClientToScreen(list, &place);
        ClickAt(place);
    }
};

} // namespace

TEST_F(GridByHand, CellsAreFilledByKeysAlone)
{
    SetForegroundWindow(window);
    SetFocus(before);
    StrikeKey(VK_TAB);
    AwaitCurrent(0, 0);
    StrikeKey(VK_DOWN);
    AwaitCurrent(1, 0);
    StrikeKey(VK_F2);
    AwaitEditor(1, 0, L"A1");
    TypeText(L"mine");
    AwaitEditor(1, 0, L"mine");
    StrikeKey(VK_TAB);
    AwaitEditor(1, 1, L"B1");
    TypeText(L"/p x");
    AwaitEditor(1, 1, L"/p x");
    StrikeKey(VK_RETURN);
    Await("the focus", [this] { return GetFocus() == list && !IsEditorOpen(); });
    EXPECT_EQ(Cell(1, 0), CString(L"mine"));
    EXPECT_EQ(Cell(1, 1), CString(L"/p x"));
    StrikeKey(VK_TAB, {VK_SHIFT});
    AwaitCurrent(1, 0);
}

TEST_F(GridByHand, ClicksMakeACellCurrentOpenItAndStoreIt)
{
    SetForegroundWindow(window);
    ClickCell(2, 1);
    AwaitCurrent(2, 1);
    EXPECT_FALSE(IsEditorOpen());
    ClickCell(1, 1);
    AwaitCurrent(1, 1);
    ClickCell(1, 1);
    AwaitEditor(1, 1, L"B1");
    TypeText(L"typed");
    AwaitEditor(1, 1, L"typed");
    ClickCell(0, 0);
    AwaitCurrent(0, 0);
    EXPECT_EQ(Cell(1, 1), CString(L"typed"));
    EXPECT_FALSE(IsEditorOpen());
    EXPECT_EQ(GetFocus(), list);
}
