#include "tests/support/text.h"
#include "tests/window/fixture.h"
#include "window/controls.h"

#include <memory>
#include <optional>
#include <vector>

namespace {

class DialogTest : public WindowTest
{
};

TEST_F(DialogTest, AModelessDialogComesFromTheResourceModule)
{
    CTestDialog dialog;
    ASSERT_NE(dialog.Create(nullptr), nullptr);
    EXPECT_EQ(dialog.GetText(), CString(L"Window library test"));
    EXPECT_NE(dialog.GetDlgItem(IDC_NAME), nullptr);
}

TEST_F(DialogTest, AMissingTemplateMakesNoWindow)
{
    CTestDialog dialog;
    const CResourceInstanceSwap swap(GetModuleHandleW(L"user32.dll"));
    SetLastError(ERROR_SUCCESS);
    EXPECT_EQ(dialog.Create(nullptr), nullptr);
    EXPECT_NE(GetLastError(), static_cast<DWORD>(ERROR_SUCCESS));
    EXPECT_EQ(dialog.DoModal(nullptr), -1);
    EXPECT_EQ(dialog.m_hWnd, nullptr);
}

TEST_F(DialogTest, TheInitHandlerGetsTheParameterAndABoundObject)
{
    CTestDialog dialog;
    LPARAM parameter = 0;
    HWND bound = nullptr;
    dialog.answer = [&](UINT message, WPARAM, LPARAM lParam, BOOL& handled) -> LRESULT {
        handled = message == WM_INITDIALOG;
        if (handled) {
            parameter = lParam;
            bound = dialog.m_hWnd;
        }
        return TRUE;
    };
    const HWND window = dialog.Create(nullptr, 4711);
    EXPECT_EQ(parameter, 4711);
    EXPECT_EQ(bound, window);
}

TEST_F(DialogTest, AHandlersResultIsTheMessagesResult)
{
    CTestDialog dialog;
    dialog.answer = [](UINT message, WPARAM, LPARAM, BOOL& handled) -> LRESULT {
        handled = message == WM_APP;
        return 0x12345678;
    };
    ASSERT_NE(dialog.Create(nullptr), nullptr);
    EXPECT_EQ(dialog.SendMessage(WM_APP), 0x12345678);
    EXPECT_EQ(dialog.SendMessage(WM_APP + 1), 0);
}

TEST_F(DialogTest, AColourMessagesResultIsReturnedDirectly)
{
    CTestDialog dialog;
    const auto brush = reinterpret_cast<LRESULT>(GetStockObject(WHITE_BRUSH));
    dialog.answer = [brush](UINT message, WPARAM, LPARAM, BOOL& handled) -> LRESULT {
        handled = message == WM_CTLCOLOREDIT;
        return brush;
    };
    ASSERT_NE(dialog.Create(nullptr), nullptr);
    const HWND edit = dialog.GetDlgItem(IDC_NAME);
    const HDC dc = GetDC(edit);
    EXPECT_EQ(
        dialog.SendMessage(WM_CTLCOLOREDIT, reinterpret_cast<WPARAM>(dc), reinterpret_cast<LPARAM>(edit)),
        brush);
    ReleaseDC(edit, dc);
}

TEST_F(DialogTest, DoModalReturnsTheResultOfEndDialog)
{
    CTestDialog dialog;
    dialog.answer = [&dialog](UINT message, WPARAM wParam, LPARAM, BOOL& handled) -> LRESULT {
        handled = TRUE;
        if (message == WM_INITDIALOG) {
            dialog.PostMessage(WM_COMMAND, IDOK);
        } else if (message == WM_COMMAND && LOWORD(wParam) == IDOK) {
            dialog.EndDialog(1001);
        } else {
            handled = FALSE;
        }
        return TRUE;
    };
    EXPECT_EQ(dialog.DoModal(nullptr), 1001);
    EXPECT_EQ(dialog.m_hWnd, nullptr);
    EXPECT_EQ(dialog.finalMessages, 1);
}

TEST_F(DialogTest, OneObjectShowsItsDialogAgain)
{
    CTestDialog dialog;
    for (int turn = 1; turn <= 2; ++turn) {
        ASSERT_NE(dialog.Create(nullptr), nullptr);
        dialog.DestroyWindow();
        EXPECT_EQ(dialog.m_hWnd, nullptr);
        EXPECT_EQ(dialog.finalMessages, turn);
    }
}

TEST_F(DialogTest, ASecondCreateIsRefusedWhileTheWindowLives)
{
    CTestDialog dialog;
    const HWND window = dialog.Create(nullptr);
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(dialog.Create(nullptr), nullptr);
    EXPECT_EQ(dialog.m_hWnd, window);
}

TEST_F(DialogTest, AnObjectThatGoesFirstTakesItsWindowAlong)
{
    std::optional<CTestDialog> dialog(std::in_place);
    const HWND window = dialog->Create(nullptr);
    ASSERT_TRUE(IsWindow(window));
    dialog.reset();
    EXPECT_FALSE(IsWindow(window));
}

TEST_F(DialogTest, AHandlerMayDestroyADialogThatDeletesItself)
{
    auto* dialog = new CTestDialog;
    bool deleted = false;
    dialog->onFinalMessage = [&deleted, dialog](HWND) {
        deleted = true;
        delete dialog;
    };
    bool deletedTooEarly = true;
    dialog->answer = [&, dialog](UINT message, WPARAM, LPARAM, BOOL& handled) -> LRESULT {
        handled = message == WM_APP;
        if (handled) {
            dialog->DestroyWindow();
            deletedTooEarly = deleted;
        }
        return 0;
    };
    const HWND window = dialog->Create(nullptr);
    ASSERT_NE(window, nullptr);
    SendMessageW(window, WM_APP, 0, 0);
    EXPECT_FALSE(deletedTooEarly);
    EXPECT_TRUE(deleted);
}

TEST_F(DialogTest, AHundredDialogsLeaveNoWindowAndNoGdiObject)
{
    const auto openAndClose = [] {
        CTestDialog dialog;
        dialog.Create(nullptr);
        dialog.ShowWindow(SW_SHOW);
        dialog.UpdateWindow();
        dialog.DestroyWindow();
        DispatchWaiting();
    };
    for (int warmUp = 0; warmUp < 3; ++warmUp) {
        openAndClose(); // the system keeps a few objects of its own for the first windows
    }
    const int windows = CountWindows();
    const int gdiObjects = CountGdiObjects();
    for (int turn = 0; turn < 100; ++turn) {
        openAndClose();
    }
    EXPECT_EQ(CountWindows(), windows);
    EXPECT_EQ(CountGdiObjects(), gdiObjects);
}

// The order of a page's virtual operations is a contract with code that was compiled elsewhere: the slots are read
// from the object's table.
TEST_F(DialogTest, VirtualOperationsStandInTheOrderOfAPage)
{
    struct CProbe : CDialogImpl<CProbe>
    {
        enum
        {
            IDD = IDD_TEST
        };
        BOOL ProcessWindowMessage(HWND, UINT, WPARAM, LPARAM, LRESULT&, DWORD) override { return 11; }
        DLGPROC GetDialogProc() override { return reinterpret_cast<DLGPROC>(22); }
        void OnFinalMessage(HWND window) override { final = window; }
        HWND final = nullptr;
    };
    CProbe probe;
    void** slots = *reinterpret_cast<void***>(&probe);
    LRESULT result = 0;
    using Process = BOOL (*)(CProbe*, HWND, UINT, WPARAM, LPARAM, LRESULT&, DWORD);
    using GetProcedure = DLGPROC (*)(CProbe*);
    using Final = void (*)(CProbe*, HWND);
    EXPECT_EQ(reinterpret_cast<Process>(slots[0])(&probe, nullptr, 0, 0, 0, result, 0), 11);
    // Slots 1 and 2 are the destructor's two entries.
    EXPECT_EQ(reinterpret_cast<GetProcedure>(slots[3])(&probe), reinterpret_cast<DLGPROC>(22));
    reinterpret_cast<Final>(slots[4])(&probe, reinterpret_cast<HWND>(33));
    EXPECT_EQ(probe.final, reinterpret_cast<HWND>(33));
}

} // namespace
