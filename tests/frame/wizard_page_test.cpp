#include "frame/cancel_dialog.h"
#include "tests/frame/frame_fixture.h"
#include "window/gdi.h"

#include <stdexcept>

using WizardPageTest = FrameTest;

namespace {

// Whole-frame paints of a control, as the page sends them.
int g_framePaints = 0;
WNDPROC g_formerProcedure = nullptr;

LRESULT CALLBACK CountFramePaints(HWND control, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_NCPAINT && wParam == 1) {
        ++g_framePaints;
    }
    return ::CallWindowProcW(g_formerProcedure, control, message, wParam, lParam);
}

} // namespace

TEST_F(WizardPageTest, NextStoresAndClosesWithOne)
{
    Press(IDC_NEXT);
    EXPECT_EQ(Show<CTestWizardPage>(), NAVIGATION_NEXT);
    EXPECT_EQ(g_record.stored, 1);
    EXPECT_EQ(g_record.destroyed, 1);
}

TEST_F(WizardPageTest, BackStoresWithoutValidationAndWithoutLeaveHooks)
{
    context.leaveHooks = THREE_HOOKS;
    Press(IDC_BACK);
    EXPECT_EQ(Show<CTestWizardPage>(), NAVIGATION_BACK);
    EXPECT_EQ(g_record.stored, 0);
    EXPECT_EQ(g_record.storedWithoutValidation, 1);
    EXPECT_TRUE(g_hooks.calls.empty());
}

TEST_F(WizardPageTest, ARefusedBackKeepsThePage)
{
    g_record.letsGoBack = false;
    Press(IDC_BACK);
    Press(IDC_NEXT);
    EXPECT_EQ(Show<CTestWizardPage>(), NAVIGATION_NEXT);
    EXPECT_EQ(g_record.storedWithoutValidation, 1);
}

TEST_F(WizardPageTest, ColorsThatThePageSetsForALabelStay)
{
    g_record.onLabelColors = [](HDC dc) { ::SetTextColor(dc, 0x0F9F3F); };
    OnPage([](HWND page) {
        const CWindowDC dc(page);
        const LRESULT brush =
            ::SendMessageW(page, WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc.get()),
                           reinterpret_cast<LPARAM>(::GetDlgItem(page, IDC_HIDDEN_AT_START)));
        EXPECT_EQ(brush, reinterpret_cast<LRESULT>(::GetStockObject(WHITE_BRUSH)));
        EXPECT_EQ(::GetTextColor(dc.get()), static_cast<COLORREF>(0x0F9F3F));
    });
    Press(IDC_BACK);
    Show<CTestWizardPage>();
}

TEST_F(WizardPageTest, ARefusedNextKeepsThePage)
{
    g_record.accepts = false;
    Press(IDC_NEXT);
    Press(IDC_BACK);
    EXPECT_EQ(Show<CTestWizardPage>(), NAVIGATION_BACK);
    EXPECT_EQ(g_record.stored, 1);
}

TEST_F(WizardPageTest, APageWithoutHandlersClosesAtOnceOnATemplateWithoutTheFramesControls)
{
    Press(IDC_NEXT);
    EXPECT_EQ(Show<CBarePage>(), NAVIGATION_NEXT);
}

TEST_F(WizardPageTest, ASecondNextWhileTheFirstRunsDoesNothing)
{
    g_record.onStore = [](HWND page) { Command(page, IDC_NEXT); };
    Press(IDC_NEXT);
    EXPECT_EQ(Show<CTestWizardPage>(), NAVIGATION_NEXT);
    EXPECT_EQ(g_record.stored, 1);
}

TEST_F(WizardPageTest, BackCancelAndResetDoNothingWhileNextRuns)
{
    g_record.accepts = false;
    g_record.onStore = [](HWND page) {
        for (const int id : {IDC_BACK, IDC_CANCEL, IDC_RESET, IDC_LINK1}) {
            Command(page, id);
        }
    };
    Press(IDC_NEXT);
    Press(IDC_BACK);
    EXPECT_EQ(Show<CTestWizardPage>(), NAVIGATION_BACK);
    EXPECT_EQ(g_record.storedWithoutValidation, 1);
    EXPECT_TRUE(host.log.Of(L"EnableCancelling").empty());
    EXPECT_TRUE(host.log.Of(L"ResetSetupMode").empty());
}

TEST_F(WizardPageTest, TheFirstVetoCountsAndTheOtherHooksAreNotAsked)
{
    context.leaveHooks = THREE_HOOKS;
    g_hooks.results[0] = HOOK_VETO;
    Press(IDC_NEXT);
    Press(IDC_BACK);
    EXPECT_EQ(Show<CTestWizardPage>(), NAVIGATION_BACK);
    EXPECT_EQ(g_hooks.calls, (std::vector<int>{0}));
    EXPECT_EQ(g_record.stored, 0);
}

TEST_F(WizardPageTest, WithoutAVetoAllLeaveHooksRunInOrder)
{
    context.leaveHooks = THREE_HOOKS;
    Press(IDC_NEXT);
    EXPECT_EQ(Show<CTestWizardPage>(), NAVIGATION_NEXT);
    EXPECT_EQ(g_hooks.calls, (std::vector<int>{0, 1, 2}));
}

TEST_F(WizardPageTest, LeaveHooksGetTheSetupManagerAlone)
{
    context.leaveHooks = THREE_HOOKS;
    context.pProduct = &host.AddProduct(L"a.msi", L"a");
    context.hDatabase = 7;
    Press(IDC_NEXT);
    Show<CTestWizardPage>();
    const PageContext& hook = g_hooks.contexts.at(0);
    EXPECT_EQ(hook.pSetupManager, &host.manager);
    EXPECT_EQ(hook.hParent, nullptr);
    EXPECT_EQ(hook.pProduct, nullptr);
    EXPECT_EQ(hook.hDatabase, 0u);
}

TEST_F(WizardPageTest, InitHooksGetThePageAndTheSavedRectangle)
{
    context.preInitHooks = {RecordHook<0>};
    context.postInitHooks = {RecordHook<1>};
    context.pProduct = &host.AddProduct(L"a.msi", L"a");
    context.hFrame = ::GetDesktopWindow();
    host.ui.position = {1, 2, 3, 4};
    HWND page = nullptr;
    g_record.onInit = [&page](HWND window) { page = window; };
    Press(IDC_BACK);
    Show<CTestWizardPage>();
    EXPECT_EQ(g_hooks.calls, (std::vector<int>{0, 1}));
    const PageContext& hook = g_hooks.contexts.at(0);
    EXPECT_EQ(hook.hParent, page);
    EXPECT_EQ(hook.hFrame, nullptr);
    EXPECT_EQ(hook.pProduct, nullptr);
    EXPECT_EQ(hook.rcDisplay.right, 3);
}

TEST_F(WizardPageTest, CancelWithNoStaysAndGivesTheFocusBack)
{
    host.manager.m_setupMode = Setup::SETUPMODE_INSTALL;
    Press(IDC_CANCEL);
    AnswerQuestion(IDNO, L"Leave? install install install");
    Step(L"await the focus", [] {
        const HWND page = FindWindowOfClass(L"#32770");
        return Until(page && ::GetFocus() == ::GetDlgItem(page, IDC_CANCEL), L"the focus is elsewhere");
    });
    Press(IDC_BACK);
    EXPECT_EQ(Show<CTestWizardPage>(), NAVIGATION_BACK);
    EXPECT_EQ(host.log.Of(L"EnableCancelling"),
              (Calls{L"EnableCancelling(false)", L"EnableCancelling(true)"}));
    EXPECT_EQ(host.manager.m_exitCode, 0u);
}

TEST_F(WizardPageTest, CancelWithYesSetsTheExitCodeAndClosesWithTwo)
{
    host.manager.m_setupMode = Setup::SETUPMODE_MODIFY_DEPLOYMENT;
    Press(IDC_CANCEL);
    AnswerQuestion(IDYES, L"Leave? deployment deployment deployment");
    EXPECT_EQ(Show<CTestWizardPage>(), NAVIGATION_CANCEL);
    EXPECT_EQ(host.manager.m_exitCode, 1602u);
    EXPECT_EQ(host.log.Of(L"SetMsiProperty").size(), 1u);
    EXPECT_EQ(host.log.Of(L"EnableCancelling"), (Calls{L"EnableCancelling(false)"}));
    EXPECT_EQ(g_record.stored, 0);
}

TEST_F(WizardPageTest, AtStageFourCancelMeansNext)
{
    host.manager.m_uiStage = 4;
    Press(IDC_CANCEL);
    EXPECT_EQ(Show<CTestWizardPage>(), NAVIGATION_NEXT);
    EXPECT_EQ(g_record.stored, 1);
}

TEST_F(WizardPageTest, ResetClosesWhenTheHostHasReset)
{
    host.ui.m_bResetAllowed1 = host.ui.m_bResetAllowed2 = true;
    Press(IDC_RESET);
    EXPECT_EQ(Show<CTestWizardPage>(), NAVIGATION_RESET);
    EXPECT_EQ(g_record.stored + g_record.storedWithoutValidation, 0);
}

TEST_F(WizardPageTest, AFailedResetKeepsThePage)
{
    host.manager.resetAnswer = 5;
    Press(IDC_RESET);
    Press(IDC_BACK);
    EXPECT_EQ(Show<CTestWizardPage>(), NAVIGATION_BACK);
}

TEST_F(WizardPageTest, ResetShowsOnlyWithBothFlags)
{
    for (const int flags : {0, 1, 2, 3}) {
        host.ui.m_bResetAllowed1 = (flags & 1) != 0;
        host.ui.m_bResetAllowed2 = (flags & 2) != 0;
        OnPage([flags](HWND page) {
            const HWND reset = ::GetDlgItem(page, IDC_RESET);
            EXPECT_EQ(::IsWindowVisible(reset) != FALSE, flags == 3) << flags;
            EXPECT_EQ(::IsWindowEnabled(reset) != FALSE, flags == 3) << flags;
        });
        Press(IDC_BACK);
        Show<CTestWizardPage>();
    }
}

TEST_F(WizardPageTest, BackIsDisabledWhereThePageCantGoBack)
{
    context.bCanGoBack = FALSE;
    OnPage([](HWND page) { EXPECT_FALSE(::IsWindowEnabled(::GetDlgItem(page, IDC_BACK))); });
    Press(IDC_NEXT);
    Show<CTestWizardPage>();
}

TEST_F(WizardPageTest, NamesOfTheMediaAreNotTakenForHtml)
{
    host.manager.m_strProductName = L"R&amp;D <img src=\"C:\\a.gif\" alt=\"x\">";
    host.ui.m_strStepArgument = L"<b>3";
    OnPage([](HWND page) {
        EXPECT_EQ(WindowText(::GetDlgItem(page, IDC_BANNER)),
                  CString(L"Welcome to R&amp;D <img src=\"C:\\a.gif\" alt=\"x\">"));
        EXPECT_EQ(WindowText(::GetDlgItem(page, IDC_STEP_LABEL)), CString(L"Step <b>3"));
    });
    Press(IDC_NEXT);
    Show<CTestWizardPage>();
}

TEST_F(WizardPageTest, InitFillsTheFramesControls)
{
    host.manager.m_strProductName = L"Zolt 2027";
    host.manager.m_setupMode = Setup::SETUPMODE_CREATE_DEPLOYMENT;
    host.manager.m_strDeploymentName = L"Office";
    host.ui.m_strStepArgument = L"3";
    host.manager.m_strLinkTarget1 = L"guide.pdf";
    OnPage([this](HWND page) {
        EXPECT_EQ(WindowText(page), CString(L"Zolt 2027 - Office"));
        EXPECT_EQ(WindowText(::GetDlgItem(page, IDC_BANNER)), CString(L"Welcome to Zolt 2027"));
        EXPECT_EQ(WindowText(::GetDlgItem(page, IDC_STEP_LABEL)), CString(L"Step 3"));
        EXPECT_FALSE(::IsWindowVisible(::GetDlgItem(page, IDC_HIDDEN_AT_START)));
        EXPECT_FALSE(::IsWindowVisible(::GetDlgItem(page, IDC_PANEL)));
        EXPECT_TRUE(::IsWindowEnabled(::GetDlgItem(page, IDC_LINK1)));
        EXPECT_FALSE(::IsWindowEnabled(::GetDlgItem(page, IDC_LINK2))) << "it has no target";
        EXPECT_EQ(host.manager.m_hCurrentPage, page);
    });
    Press(IDC_NEXT);
    Show<CTestWizardPage>();
}

TEST_F(WizardPageTest, ThePanelThatATemplateShowsIsHiddenWhenThePageIsPainted)
{
    g_record.onInit = [](HWND page) { ::ShowWindow(::GetDlgItem(page, IDC_PANEL), SW_SHOW); };
    OnPage([](HWND page) {
        ::RedrawWindow(page, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        EXPECT_FALSE(::IsWindowVisible(::GetDlgItem(page, IDC_PANEL)));
    });
    Press(IDC_NEXT);
    Show<CTestWizardPage>();
}

TEST_F(WizardPageTest, TheSidePaneShowsTheTextThatTheHostSends)
{
    OnPage([](HWND page) {
        ::SendMessageW(page, PAGE_MESSAGE_SIDE_PANE, 0, reinterpret_cast<LPARAM>(L"<b>Hello</b>"));
        ::SendMessageW(page, PAGE_MESSAGE_SIDE_PANE, 0, reinterpret_cast<LPARAM>(L""));
        EXPECT_EQ(WindowText(::GetDlgItem(page, IDC_SIDE_PANE)), CString(L"Hello"));
    });
    Press(IDC_NEXT);
    Show<CTestWizardPage>();
}

TEST_F(WizardPageTest, AutoPlayIsAskedToStayClosed)
{
    OnPage([](HWND page) {
        const UINT message = ::RegisterWindowMessageW(L"QueryCancelAutoPlay");
        EXPECT_EQ(::SendMessageW(page, message, 0, 0), 1);
    });
    Press(IDC_NEXT);
    Show<CTestWizardPage>();
}

TEST_F(WizardPageTest, ControlsStandOnWhite)
{
    OnPage([](HWND page) {
        const auto white = reinterpret_cast<LRESULT>(::GetStockObject(WHITE_BRUSH));
        const CWindowDC dc(page);
        for (const UINT message :
             {WM_CTLCOLOREDIT, WM_CTLCOLORLISTBOX, WM_CTLCOLORBTN, WM_CTLCOLORDLG, WM_CTLCOLORSTATIC}) {
            EXPECT_EQ(::SendMessageW(page, message, reinterpret_cast<WPARAM>(dc.get()), 0), white) << message;
        }
        EXPECT_NE(::SendMessageW(page, WM_CTLCOLORSCROLLBAR, reinterpret_cast<WPARAM>(dc.get()), 0), white);
        EXPECT_EQ(::SendMessageW(page, WM_ERASEBKGND, reinterpret_cast<WPARAM>(dc.get()), 0), 1);
    });
    Press(IDC_NEXT);
    Show<CTestWizardPage>();
}

// The page's paint goes over the edges of its controls.
TEST_F(WizardPageTest, PaintingThePageRepaintsTheFramesOfVisibleControlsAlone)
{
    OnPage([](HWND page) {
        const auto framesPainted = [page](int id) {
            const HWND control = ::GetDlgItem(page, id);
            g_framePaints = 0;
            const auto former = reinterpret_cast<WNDPROC>(
                ::SetWindowLongPtrW(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(CountFramePaints)));
            g_formerProcedure = former;
            ::InvalidateRect(page, nullptr, FALSE);
            ::SendMessageW(page, WM_PAINT, 0, 0);
            ::SetWindowLongPtrW(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(former));
            return g_framePaints;
        };
        ::RedrawWindow(page, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
        EXPECT_EQ(framesPainted(IDC_TEST_EDIT), 1);
        EXPECT_EQ(framesPainted(IDC_HIDDEN_AT_START), 0) << "it is hidden";
    });
    Press(IDC_NEXT);
    Show<CTestWizardPage>();
}

// Painting it is most of what a page with a scrolling side pane costs.
TEST_F(WizardPageTest, TheScrollBarOfTheSidePaneIsPaintedOnceAPainting)
{
    OnPage([](HWND page) {
        const HWND pane = ::GetDlgItem(page, IDC_SIDE_PANE);
        CString text;
        for (int line = 0; line < 40; ++line) {
            text += L"Line<br>";
        }
        ::SendMessageW(page, PAGE_MESSAGE_SIDE_PANE, 0, reinterpret_cast<LPARAM>(text.GetString()));
        ASSERT_TRUE(::GetWindowLongPtrW(pane, GWL_STYLE) & WS_VSCROLL);
        g_framePaints = 0;
        g_formerProcedure = reinterpret_cast<WNDPROC>(
            ::SetWindowLongPtrW(pane, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(CountFramePaints)));
        ::RedrawWindow(page, nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
        ::SetWindowLongPtrW(pane, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(g_formerProcedure));
        EXPECT_EQ(g_framePaints, 1);
        EXPECT_FALSE(::GetUpdateRect(pane, nullptr, FALSE)) << "the text is painted too";
    });
    Press(IDC_NEXT);
    Show<CTestWizardPage>();
}

TEST_F(WizardPageTest, TheWaitCursorStaysUntilTheLastOfTwoHasEnded)
{
    OnPage([](HWND page) {
        const auto answer = [page] {
            return ::SendMessageW(page, WM_SETCURSOR, reinterpret_cast<WPARAM>(page),
                                  MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
        };
        auto first = std::make_unique<CPersistentWaitCursor>();
        auto second = std::make_unique<CPersistentWaitCursor>();
        EXPECT_EQ(g_waitCursorCount.load(), 2);
        EXPECT_EQ(answer(), 1);
        second.reset();
        EXPECT_EQ(answer(), 1);
        EXPECT_EQ(::GetCursor(), ::LoadCursorW(nullptr, IDC_WAIT));
        first.reset();
        EXPECT_EQ(answer(), 0);
    });
    Press(IDC_NEXT);
    Show<CTestWizardPage>();
    EXPECT_EQ(g_waitCursorCount.load(), 0);
}

TEST_F(WizardPageTest, EnterOnBackGoesBackInsteadOfPressingNext)
{
    OnPage([](HWND page) { PostEnter(page, IDC_BACK); });
    EXPECT_EQ(Show<CTestWizardPage>(), NAVIGATION_BACK);
}

TEST_F(WizardPageTest, EnterOnTheEditPressesTheDefaultButton)
{
    OnPage([](HWND page) { PostEnter(page, IDC_TEST_EDIT); });
    EXPECT_EQ(Show<CTestWizardPage>(), NAVIGATION_NEXT);
}

TEST_F(WizardPageTest, EnterOnCancelAsks)
{
    OnPage([](HWND page) { PostEnter(page, IDC_CANCEL); });
    AnswerQuestion(IDYES, L"Leave? deployment deployment deployment");
    EXPECT_EQ(Show<CTestWizardPage>(), NAVIGATION_CANCEL);
}

TEST_F(WizardPageTest, EscapeDoesNothingWhileCancelIsDisabled)
{
    OnPage([](HWND page) {
        ::EnableWindow(::GetDlgItem(page, IDC_CANCEL), FALSE);
        Command(page, IDC_CANCEL);
    });
    Press(IDC_BACK);
    EXPECT_EQ(Show<CTestWizardPage>(), NAVIGATION_BACK);
}

TEST_F(WizardPageTest, ALargerPageOpensCentredOnTheFormerOneOnePixelSmaller)
{
    RECT natural = {};
    g_record.onInit = [&natural](HWND page) { ::GetWindowRect(page, &natural); };
    RECT shown = {};
    OnPage([&shown](HWND page) { ::GetWindowRect(page, &shown); });
    Press(IDC_NEXT);
    // The former page was three pixels narrower, as the init hook says when the size is known.
    context.preInitHooks = {[](PageContext* hook) {
        auto& ui = static_cast<TestUiManager&>(*hook->pSetupManager->m_pUiManager);
        RECT page = {};
        ::GetWindowRect(hook->hParent, &page);
        ui.saved = true;
        ui.position = {200, 200, 200 + page.right - page.left - 3, 200 + page.bottom - page.top};
        return 0;
    }};
    Show<CTestWizardPage>();
    const LONG width = natural.right - natural.left;
    EXPECT_EQ(shown.left, 199);
    EXPECT_EQ(shown.right - shown.left, width - 1);
    EXPECT_EQ(shown.top, 200);
}

TEST_F(WizardPageTest, WithoutASavedPlaceThePageIsCentredAndItsPlaceStored)
{
    RECT shown = {};
    OnPage([&shown](HWND page) { ::GetWindowRect(page, &shown); });
    Press(IDC_NEXT);
    Show<CTestWizardPage>();
    ASSERT_FALSE(host.ui.stored.empty());
    EXPECT_TRUE(::EqualRect(&host.ui.stored.back(), &shown));
    RECT work = {};
    ::SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    EXPECT_NEAR(shown.left + shown.right, work.left + work.right, 2);
}

TEST_F(WizardPageTest, AMissingResourceLibraryIsReportedOnceAndGives1603)
{
    host.language.wizTextPath = L"C:\\no such folder\\";
    const HINSTANCE before = _Module.GetResourceInstance();
    AnswerBox(IDOK, L"Failed to load C:\\no such folder\\WizText.dll");
    EXPECT_EQ(Show<CTestWizardPage>(), NAVIGATION_LOAD_FAILED);
    EXPECT_EQ(_Module.GetResourceInstance(), before);
    EXPECT_EQ(g_record.destroyed, 0) << "no page object exists then";
}

TEST_F(WizardPageTest, TheResourceModuleIsThePagesDuringTheCallAndComesBack)
{
    const HINSTANCE before = _Module.GetResourceInstance();
    OnPage([before](HWND) {
        EXPECT_NE(_Module.GetResourceInstance(), before);
        EXPECT_EQ(_Module.GetResourceInstance(), ::GetModuleHandleW(L"WizText.dll"));
    });
    Press(IDC_NEXT);
    Show<CTestWizardPage>();
    EXPECT_EQ(_Module.GetResourceInstance(), before);
    EXPECT_EQ(::GetModuleHandleW(L"WizText.dll"), nullptr);
    EXPECT_EQ(_Module.GetMessageLoop(), nullptr);
}

TEST_F(WizardPageTest, AClosedPageSeesNoMessageThatStillWaits)
{
    g_record.onStore = [](HWND) { ::PostThreadMessageW(::GetCurrentThreadId(), WM_NULL, 0, 0); };
    Press(IDC_NEXT);
    EXPECT_EQ(Show<CTestWizardPage>(), NAVIGATION_NEXT);
    EXPECT_EQ(g_record.askedWhenClosed, 0);
}

TEST_F(WizardPageTest, AnExceptionInAHandlerEndsThePageAndPutsTheModuleBack)
{
    const HINSTANCE before = _Module.GetResourceInstance();
    g_record.onStore = [](HWND) { throw std::runtime_error("no room"); };
    Press(IDC_NEXT);
    AnswerBox(IDOK, L"The page had to be closed: no room");
    EXPECT_EQ(Show<CTestWizardPage>(), NAVIGATION_LOAD_FAILED);
    EXPECT_EQ(_Module.GetResourceInstance(), before);
    EXPECT_EQ(_Module.GetMessageLoop(), nullptr);
    EXPECT_EQ(g_waitCursorCount.load(), 0);
}

TEST_F(WizardPageTest, AnExceptionDuringInitEndsThePage)
{
    g_record.onInit = [](HWND) { throw std::runtime_error("no room"); };
    AnswerBox(IDOK, L"The page had to be closed: no room");
    EXPECT_EQ(Show<CTestWizardPage>(), NAVIGATION_LOAD_FAILED);
}
