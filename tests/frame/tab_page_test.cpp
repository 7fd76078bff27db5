#include "tests/frame/frame_fixture.h"
#include "window/drawing_handles.h"
#include "window/gdi.h"

#include <functional>

namespace {

// The messages that a tab page sent to its parent.
std::vector<UINT> g_sent;
std::function<void()> g_onNextTab;
std::function<void()> g_onKey;

LRESULT CALLBACK ParentProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == PAGE_MESSAGE_PREVIOUS_TAB || message == PAGE_MESSAGE_NEXT_TAB) {
        EXPECT_EQ(wParam, 0u);
        EXPECT_EQ(lParam, 0);
        g_sent.push_back(message);
        if (message == PAGE_MESSAGE_NEXT_TAB && g_onNextTab) {
            g_onNextTab();
        }
    }
    if (message == PAGE_MESSAGE_KEY && g_onKey) {
        g_onKey();
    }
    return ::DefWindowProcW(window, message, wParam, lParam);
}

} // namespace

class TabPageTest : public FrameTest
{
protected:
    TabPageTest()
    {
        g_sent.clear();
        g_onNextTab = nullptr;
        g_onKey = nullptr;
        // Two windows: what is sent to the frame is not sent to the parent.
        frame = ::CreateWindowExW(0, L"STATIC", L"host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 50, 50, 500, 400,
                                  nullptr, nullptr, nullptr, nullptr);
        parent = ::CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 0, 0, 480, 360, frame, nullptr,
                                   nullptr, nullptr);
        ::SetWindowLongPtrW(parent, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(ParentProcedure));
        context.hParent = parent;
        context.hFrame = frame;
        context.rcDisplay = {1, 2, 3, 4};
        context.pProduct = &host.AddProduct(L"a.msi", L"a");
        context.hDatabase = 7;
    }
    ~TabPageTest() override { ::DestroyWindow(frame); }

    HWND Create()
    {
        tab = CreateTabPage<CTestTabPage>(&context);
        ::ShowWindow(tab.hWnd, SW_SHOW);
        return tab.hWnd;
    }
    void AddWaysOut()
    {
        for (const int id : {IDC_BACK, IDC_CANCEL}) {
            ::CreateWindowExW(0, L"BUTTON", L"", WS_CHILD, 0, 0, 9, 9, parent,
                              reinterpret_cast<HMENU>(std::intptr_t{id}), nullptr, nullptr);
        }
    }
    LRESULT Send(UINT message, WPARAM wParam = 0) { return ::SendMessageW(tab.hWnd, message, wParam, 0); }
    void Click(int id) { ::SendMessageW(::GetDlgItem(tab.hWnd, id), BM_CLICK, 0, 0); }
    bool IsEnabled(int id) const { return ::IsWindowEnabled(::GetDlgItem(tab.hWnd, id)) != FALSE; }

    HWND frame = nullptr;
    HWND parent = nullptr;
    CTabPage tab;
};

TEST_F(TabPageTest, TheEntryComesBackAtOnceWithAChildOfTheParent)
{
    const HINSTANCE before = _Module.GetResourceInstance();
    ASSERT_NE(Create(), nullptr);
    EXPECT_EQ(::GetParent(tab.hWnd), parent);
    EXPECT_NE(tab.pFilter, nullptr);
    EXPECT_EQ(_Module.GetResourceInstance(), before);
    EXPECT_EQ(_Module.GetMessageLoop(), nullptr);
}

TEST_F(TabPageTest, ThePageGoesWithItsWindowAndGivesTheLibraryBack)
{
    Create();
    EXPECT_NE(::GetModuleHandleW(L"WizText.dll"), nullptr) << "the page holds its own reference";
    ::DestroyWindow(tab.hWnd);
    EXPECT_EQ(g_record.destroyed, 1);
    EXPECT_EQ(::GetModuleHandleW(L"WizText.dll"), nullptr);
}

TEST_F(TabPageTest, AMissingLibraryGivesAnEmptyTabPageAfterOneBox)
{
    host.language.wizTextPath = L"C:\\no such folder\\";
    const HINSTANCE before = _Module.GetResourceInstance();
    AnswerBox(IDOK, L"Failed to load C:\\no such folder\\WizText.dll");
    script.Start();
    EXPECT_EQ(Create(), nullptr);
    EXPECT_EQ(tab.pFilter, nullptr);
    EXPECT_TRUE(script.IsFinished());
    EXPECT_EQ(_Module.GetResourceInstance(), before);
}

TEST_F(TabPageTest, InitUsesThePagesOwnLibrary)
{
    HINSTANCE during = nullptr;
    g_record.onInit = [&during](HWND) { during = _Module.GetResourceInstance(); };
    Create();
    EXPECT_EQ(during, ::GetModuleHandleW(L"WizText.dll"));
}

TEST_F(TabPageTest, HooksGetThePagesOwnContext)
{
    context.preInitHooks = {RecordHook<0>};
    context.leaveHooks = {RecordHook<1>};
    Create();
    Send(PAGE_MESSAGE_STORE);
    ASSERT_EQ(g_hooks.calls, (std::vector<int>{0, 1}));
    for (const PageContext& hook : g_hooks.contexts) {
        EXPECT_EQ(hook.hParent, tab.hWnd);
        EXPECT_EQ(hook.hFrame, frame);
        EXPECT_EQ(hook.rcDisplay.bottom, 4);
        EXPECT_EQ(hook.pProduct, context.pProduct);
        EXPECT_EQ(hook.hDatabase, 7u);
    }
}

TEST_F(TabPageTest, AllLeaveHooksAreAskedAndTheLastOneCounts)
{
    context.leaveHooks = THREE_HOOKS;
    g_hooks.results[0] = HOOK_VETO;
    Create();
    EXPECT_EQ(Send(PAGE_MESSAGE_STORE), 1);
    EXPECT_EQ(g_hooks.calls, (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(g_record.stored, 1);
}

TEST_F(TabPageTest, AVetoOfTheLastHookKeepsThePageUnstored)
{
    context.leaveHooks = THREE_HOOKS;
    g_hooks.results[2] = HOOK_VETO;
    Create();
    EXPECT_EQ(Send(PAGE_MESSAGE_STORE), 0);
    EXPECT_EQ(Send(PAGE_MESSAGE_STORE_ALL), 0);
    Click(IDC_NEXT_TAB);
    EXPECT_EQ(g_record.stored, 0);
    EXPECT_TRUE(g_sent.empty());
}

TEST_F(TabPageTest, APageThatRefusesAnswersZeroToTheHost)
{
    g_record.accepts = false;
    Create();
    EXPECT_EQ(Send(PAGE_MESSAGE_STORE), 0);
    EXPECT_EQ(Send(PAGE_MESSAGE_STORE_ALL), 0);
}

TEST_F(TabPageTest, StoringUsesThePagesOwnLibraryLongAfterTheExport)
{
    HINSTANCE during = nullptr;
    g_record.onStore = [&during](HWND) { during = _Module.GetResourceInstance(); };
    Create();
    const HINSTANCE before = _Module.GetResourceInstance();
    Send(PAGE_MESSAGE_STORE);
    EXPECT_EQ(during, ::GetModuleHandleW(L"WizText.dll"));
    EXPECT_EQ(_Module.GetResourceInstance(), before);
}

TEST_F(TabPageTest, StoringAnswersZeroWhileThePageIsBusy)
{
    LRESULT inner = 1;
    g_record.onStore = [&inner](HWND page) { inner = ::SendMessageW(page, PAGE_MESSAGE_STORE, 0, 0); };
    Create();
    EXPECT_EQ(Send(PAGE_MESSAGE_STORE_ALL), 1);
    EXPECT_EQ(inner, 0);
    EXPECT_EQ(g_record.stored, 1);
}

TEST_F(TabPageTest, TheNextButtonStoresAndNotifiesTheParent)
{
    Create();
    Click(IDC_NEXT_TAB);
    EXPECT_EQ(g_record.stored, 1);
    EXPECT_EQ(g_sent, (std::vector<UINT>{PAGE_MESSAGE_NEXT_TAB}));
}

TEST_F(TabPageTest, AFailedValidationStopsTheMove)
{
    g_record.accepts = false;
    Create();
    Click(IDC_NEXT_TAB);
    EXPECT_TRUE(g_sent.empty());
}

TEST_F(TabPageTest, ASecondNextOrPreviousWhileTheFirstRunsDoesNothing)
{
    g_record.onStore = [](HWND page) {
        ::SendMessageW(::GetDlgItem(page, IDC_NEXT_TAB), BM_CLICK, 0, 0);
        ::SendMessageW(::GetDlgItem(page, IDC_PREVIOUS_TAB), BM_CLICK, 0, 0);
    };
    Create();
    Click(IDC_NEXT_TAB);
    EXPECT_EQ(g_record.stored, 1);
    EXPECT_EQ(g_record.storedWithoutValidation, 0);
    EXPECT_EQ(g_sent, (std::vector<UINT>{PAGE_MESSAGE_NEXT_TAB}));
}

TEST_F(TabPageTest, ThePreviousButtonStoresWithoutValidationAndNotifiesTheParent)
{
    context.leaveHooks = THREE_HOOKS;
    Create();
    Click(IDC_PREVIOUS_TAB);
    EXPECT_EQ(g_record.storedWithoutValidation, 1);
    EXPECT_EQ(g_record.stored, 0);
    EXPECT_TRUE(g_hooks.calls.empty());
    EXPECT_EQ(g_sent, (std::vector<UINT>{PAGE_MESSAGE_PREVIOUS_TAB}));
}

TEST_F(TabPageTest, ARefusedPreviousSendsNothing)
{
    g_record.letsGoBack = false;
    Create();
    Click(IDC_PREVIOUS_TAB);
    EXPECT_EQ(g_record.storedWithoutValidation, 1);
    EXPECT_TRUE(g_sent.empty());
}

TEST_F(TabPageTest, EnterGoesToTheNextTabWhateverHasTheFocus)
{
    Create();
    for (const int id : {IDC_TEST_EDIT, IDC_PREVIOUS_TAB}) {
        MSG enter = {::GetDlgItem(tab.hWnd, id), WM_KEYDOWN, VK_RETURN, 0, 0, {}};
        EXPECT_TRUE(tab.PreTranslateMessage(&enter));
    }
    EXPECT_EQ(g_sent, (std::vector<UINT>{PAGE_MESSAGE_NEXT_TAB, PAGE_MESSAGE_NEXT_TAB}));
}

// Thrown into the host's loop, it ended the host's dialog with all that was chosen.
TEST_F(TabPageTest, WhatEnterThrowsEndsInABoxAsWithAClick)
{
    g_record.onStore = [](HWND) { throw std::bad_alloc(); };
    Create();
    const auto enter = [this] {
        MSG message = {::GetDlgItem(tab.hWnd, IDC_TEST_EDIT), WM_KEYDOWN, VK_RETURN, 0, 0, {}};
        EXPECT_TRUE(tab.PreTranslateMessage(&message));
    };
    const HINSTANCE before = _Module.GetResourceInstance();
    const wchar_t box[] = L"The last action could not be finished because of an unexpected error "
                          L"(std::bad_alloc). Check what it changed before you go on.";
    AnswerBox(IDOK, box);
    AnswerBox(IDOK, box);
    script.Start();
    EXPECT_NO_THROW(enter());
    Click(IDC_NEXT_TAB);
    EXPECT_TRUE(script.IsFinished());
    EXPECT_EQ(_Module.GetResourceInstance(), before);
    g_record.onStore = nullptr;
    EXPECT_EQ(Send(PAGE_MESSAGE_STORE), 1) << "the page stayed busy";
}

TEST_F(TabPageTest, APageThatCannotBeLeftNowDisablesTheWaysOutOfItsParentToo)
{
    AddWaysOut();
    Create();
    for (const BOOL enabled : {FALSE, TRUE}) {
        Send(TEST_MESSAGE_ENABLE_LEAVING, static_cast<WPARAM>(enabled));
        EXPECT_EQ(::IsWindowEnabled(::GetDlgItem(parent, IDC_BACK)), enabled);
        EXPECT_EQ(::IsWindowEnabled(::GetDlgItem(parent, IDC_CANCEL)), enabled);
        EXPECT_EQ(IsEnabled(IDC_PREVIOUS_TAB), enabled != FALSE);
        EXPECT_EQ(IsEnabled(IDC_NEXT_TAB), enabled != FALSE);
    }
}

TEST_F(TabPageTest, EnterStaysWhileEitherWayOutOfTheParentIsOff)
{
    AddWaysOut();
    Create();
    for (const int off : {IDC_BACK, IDC_CANCEL}) {
        ::EnableWindow(::GetDlgItem(parent, off), FALSE);
        MSG enter = {::GetDlgItem(tab.hWnd, IDC_TEST_EDIT), WM_KEYDOWN, VK_RETURN, 0, 0, {}};
        EXPECT_TRUE(tab.PreTranslateMessage(&enter));
        EXPECT_EQ(g_record.stored, 0) << off;
        ::EnableWindow(::GetDlgItem(parent, off), TRUE);
    }
}

// A label's colors and brush, as the page answers for it.
struct LabelAnswer
{
    COLORREF text;
    int backgroundMode;
    COLORREF pixel; // of the brush
};

LabelAnswer AskForColors(HWND label)
{
    const CWindowDC screen(nullptr);
    const CDcOwner dc(::CreateCompatibleDC(screen.get()));
    const CBitmapOwner bitmap(::CreateCompatibleBitmap(screen.get(), 8, 8));
    const CSelectObject selected(dc.get(), bitmap.get());
    const auto brush = reinterpret_cast<HBRUSH>(::SendMessageW(::GetParent(label), WM_CTLCOLORSTATIC,
                                                               reinterpret_cast<WPARAM>(dc.get()),
                                                               reinterpret_cast<LPARAM>(label)));
    const RECT all = {0, 0, 8, 8};
    ::FillRect(dc.get(), &all, brush);
    return {::GetTextColor(dc.get()), ::GetBkMode(dc.get()), ::GetPixel(dc.get(), 4, 4)};
}

// The system's answer put its own colors in their place.
TEST_F(TabPageTest, ColorsThatThePageSetsForALabelStayOnThePagesBackground)
{
    Create();
    const HWND label = ::GetDlgItem(tab.hWnd, IDC_PAGE_COUNTER);
    const LabelAnswer plain = AskForColors(label);
    EXPECT_EQ(plain.text, ::GetSysColor(COLOR_WINDOWTEXT));
    g_record.onLabelColors = [](HDC dc) {
        ::SetTextColor(dc, 0x0F9F3F);
        ::SetBkMode(dc, TRANSPARENT);
    };
    const LabelAnswer colored = AskForColors(label);
    EXPECT_EQ(colored.text, static_cast<COLORREF>(0x0F9F3F));
    EXPECT_EQ(colored.backgroundMode, TRANSPARENT);
    EXPECT_EQ(colored.pixel, plain.pixel);
}

TEST_F(TabPageTest, AHostMayTakeThePageAwayWhenEnterAsksItToGoOn)
{
    Create();
    g_onNextTab = [this] {
        ::DestroyWindow(tab.hWnd);
        EXPECT_EQ(g_record.destroyed, 0) << "the page went while it ran";
    };
    MSG enter = {::GetDlgItem(tab.hWnd, IDC_TEST_EDIT), WM_KEYDOWN, VK_RETURN, 0, 0, {}};
    EXPECT_TRUE(tab.PreTranslateMessage(&enter));
    EXPECT_EQ(g_record.destroyed, 1) << "the page was left over";
}

TEST_F(TabPageTest, AHostMayTakeThePageAwayWhenItIsOfferedAKeyAndAnswerZero)
{
    for (const WPARAM key : {VK_RETURN, VK_TAB}) {
        Create();
        g_record.destroyed = 0;
        g_onKey = [this] { ::DestroyWindow(tab.hWnd); };
        MSG message = {::GetDlgItem(tab.hWnd, IDC_TEST_EDIT), WM_KEYDOWN, key, 0, 0, {}};
        EXPECT_TRUE(tab.PreTranslateMessage(&message)) << "its window is gone";
        EXPECT_EQ(g_record.stored, 0);
        EXPECT_EQ(g_record.destroyed, 1);
    }
}

TEST_F(TabPageTest, ASinglePageHasBothButtonsDisabledAndReadsOneOfOne)
{
    Create();
    Send(PAGE_MESSAGE_COUNTER, MAKEWPARAM(0, 1));
    EXPECT_FALSE(IsEnabled(IDC_PREVIOUS_TAB));
    EXPECT_FALSE(IsEnabled(IDC_NEXT_TAB));
    EXPECT_EQ(WindowText(::GetDlgItem(tab.hWnd, IDC_PAGE_COUNTER)), CString(L"Page 1 of 1"));
}

TEST_F(TabPageTest, APageInTheMiddleKeepsBothButtons)
{
    Create();
    Send(PAGE_MESSAGE_COUNTER, MAKEWPARAM(1, 3));
    EXPECT_TRUE(IsEnabled(IDC_PREVIOUS_TAB));
    EXPECT_TRUE(IsEnabled(IDC_NEXT_TAB));
    EXPECT_EQ(WindowText(::GetDlgItem(tab.hWnd, IDC_PAGE_COUNTER)), CString(L"Page 2 of 3"));
}

TEST_F(TabPageTest, TheCounterNeverEnablesAButtonAgain)
{
    Create();
    Send(PAGE_MESSAGE_COUNTER, MAKEWPARAM(0, 3));
    EXPECT_FALSE(IsEnabled(IDC_PREVIOUS_TAB));
    EXPECT_TRUE(IsEnabled(IDC_NEXT_TAB));
    Send(PAGE_MESSAGE_COUNTER, MAKEWPARAM(1, 3));
    EXPECT_FALSE(IsEnabled(IDC_PREVIOUS_TAB));
    EXPECT_EQ(WindowText(::GetDlgItem(tab.hWnd, IDC_PAGE_COUNTER)), CString(L"Page 2 of 3"));
}

TEST_F(TabPageTest, TheMouseShowsTheWaitCursorWhileTheFrameIsDisabled)
{
    Create();
    ::SetCursor(::LoadCursorW(nullptr, IDC_ARROW));
    Send(WM_MOUSEMOVE);
    EXPECT_EQ(::GetCursor(), ::LoadCursorW(nullptr, IDC_ARROW));
    ::EnableWindow(frame, FALSE);
    Send(WM_MOUSEMOVE);
    EXPECT_EQ(::GetCursor(), ::LoadCursorW(nullptr, IDC_WAIT));
}

TEST_F(TabPageTest, AnExceptionDuringInitGivesAnEmptyTabPage)
{
    const HINSTANCE before = _Module.GetResourceInstance();
    g_record.onInit = [](HWND) { throw std::bad_alloc(); };
    Step(L"answer the box", [] {
        const std::optional<MessageBoxView> box = FindMessageBox();
        return box ? AnswerMessageBox(*box, IDOK) : StepOutcome::NotYet(L"no box is up");
    });
    script.Start();
    EXPECT_EQ(Create(), nullptr);
    EXPECT_EQ(g_record.destroyed, 1);
    EXPECT_EQ(_Module.GetResourceInstance(), before);
    EXPECT_EQ(::GetModuleHandleW(L"WizText.dll"), nullptr) << "the library is still held";
}

TEST_F(TabPageTest, AutoPlayIsAskedToStayClosed)
{
    Create();
    EXPECT_EQ(Send(::RegisterWindowMessageW(L"QueryCancelAutoPlay")), 1);
}

TEST_F(TabPageTest, TheWaitCursorOfAnyPageShowsOnThisOneUntilItsEnd)
{
    Create();
    const auto answer = [this] {
        return ::SendMessageW(tab.hWnd, WM_SETCURSOR, reinterpret_cast<WPARAM>(tab.hWnd),
                              MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    };
    {
        const CPersistentWaitCursor waitCursor;
        EXPECT_EQ(answer(), 1);
        EXPECT_EQ(::GetCursor(), ::LoadCursorW(nullptr, IDC_WAIT));
    }
    EXPECT_EQ(answer(), 0);
}
