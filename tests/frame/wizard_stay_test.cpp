// When a wizard page must not be left: while it says so, and under its own handlers.
#include "tests/frame/frame_fixture.h"
#include "window/message_wait.h"

using WizardPageTest = FrameTest;

TEST_F(WizardPageTest, APageThatCannotBeLeftNowIsNotLeftByButtonKeyOrCloseBox)
{
    OnPage([](HWND page) { ::SendMessageW(page, TEST_MESSAGE_ENABLE_LEAVING, FALSE, 0); });
    OnPage([](HWND page) {
        for (const int id : {IDC_BACK, IDC_NEXT, IDC_CANCEL}) {
            EXPECT_FALSE(::IsWindowEnabled(::GetDlgItem(page, id))) << id;
        }
        for (const WPARAM key : {VK_ESCAPE, VK_RETURN}) {
            ::PostMessageW(::GetDlgItem(page, IDC_TEST_EDIT), WM_KEYDOWN, key, 0);
        }
        ::SendMessageW(page, WM_CLOSE, 0, 0); // posts a Cancel
    });
    OnPage([](HWND page) { ::SendMessageW(page, TEST_MESSAGE_ENABLE_LEAVING, TRUE, 0); });
    Press(IDC_BACK);
    EXPECT_EQ(Show<CTestWizardPage>(), NAVIGATION_BACK);
    EXPECT_EQ(g_record.stored, 0);
    EXPECT_TRUE(host.log.Of(L"EnableCancelling").empty()) << "Cancel asked";
}

TEST_F(WizardPageTest, ResetIsOffWhileThePageCannotBeLeftAndThenAsItWas)
{
    for (const bool allowed : {true, false}) {
        host.ui.m_bResetAllowed1 = host.ui.m_bResetAllowed2 = allowed;
        OnPage([allowed](HWND page) {
            const HWND reset = ::GetDlgItem(page, IDC_RESET);
            ::SendMessageW(page, TEST_MESSAGE_ENABLE_LEAVING, TRUE, 0); // ends nothing
            EXPECT_EQ(::IsWindowEnabled(reset) != FALSE, allowed);
            for (int times = 0; times < 2; ++times) {
                ::SendMessageW(page, TEST_MESSAGE_ENABLE_LEAVING, FALSE, 0);
                EXPECT_FALSE(::IsWindowEnabled(reset));
            }
            PostEnter(page, IDC_RESET);
            for (const int id : {IDC_RESET, IDC_NEXT, IDC_BACK}) {
                ::PostMessageW(::GetDlgItem(page, id), BM_CLICK, 0, 0);
            }
        });
        OnPage([allowed](HWND page) {
            ::SendMessageW(page, TEST_MESSAGE_ENABLE_LEAVING, TRUE, 0);
            EXPECT_EQ(::IsWindowEnabled(::GetDlgItem(page, IDC_RESET)) != FALSE, allowed);
        });
        Press(IDC_BACK);
        EXPECT_EQ(Show<CTestWizardPage>(), NAVIGATION_BACK);
        EXPECT_TRUE(host.log.Of(L"ResetSetupMode").empty());
        EXPECT_EQ(g_record.stored, 0);
    }
}

TEST_F(WizardPageTest, APageThatMayBeLeftAgainHasItsBackButtonOnAlsoWhereItOpenedWithoutIt)
{
    context.bCanGoBack = FALSE;
    OnPage([](HWND page) {
        ::SendMessageW(page, TEST_MESSAGE_ENABLE_LEAVING, FALSE, 0);
        ::SendMessageW(page, TEST_MESSAGE_ENABLE_LEAVING, TRUE, 0);
        EXPECT_TRUE(::IsWindowEnabled(::GetDlgItem(page, IDC_BACK)));
    });
    Press(IDC_NEXT);
    Show<CTestWizardPage>();
}

TEST_F(WizardPageTest, TheFocusMovesToAControlThatCanHaveItWhenThePageMustStay)
{
    OnPage([](HWND page) {
        for (const int id : {IDC_NEXT, IDC_BACK, IDC_CANCEL}) {
            ::SetFocus(::GetDlgItem(page, id));
            ::SendMessageW(page, TEST_MESSAGE_ENABLE_LEAVING, FALSE, 0);
            EXPECT_EQ(::GetFocus(), ::GetDlgItem(page, IDC_TEST_EDIT)) << id;
            ::SendMessageW(page, TEST_MESSAGE_ENABLE_LEAVING, TRUE, 0);
        }
        ::EnableWindow(::GetDlgItem(page, IDC_TEST_EDIT), FALSE);
        ::SetFocus(::GetDlgItem(page, IDC_NEXT));
        ::SendMessageW(page, TEST_MESSAGE_ENABLE_LEAVING, FALSE, 0);
        const HWND focus = ::GetFocus();
        EXPECT_TRUE(focus == page || ::IsChild(page, focus)) << focus;
        EXPECT_TRUE(::IsWindowEnabled(focus));
        ::SendMessageW(page, TEST_MESSAGE_ENABLE_LEAVING, TRUE, 0);
    });
    Press(IDC_NEXT);
    Show<CTestWizardPage>();
}

// The page's window went while the handler was still to use it.
TEST_F(WizardPageTest, NextBackAndResetDoNothingWhileAHandlerOfThePageShowsABoxWithoutAnOwner)
{
    HWND afterwards = nullptr;
    host.ui.m_bResetAllowed1 = host.ui.m_bResetAllowed2 = true;
    g_record.onWork = [&](HWND page) {
        ::MessageBoxW(nullptr, L"Failed", L"", MB_OK);
        afterwards = ::IsWindow(page) ? page : nullptr;
    };
    OnPage([](HWND page) { ::PostMessageW(page, TEST_MESSAGE_WORK, 0, 0); });
    Step(L"try to leave", [] {
        const std::optional<MessageBoxView> box = FindMessageBox();
        const HWND page = FindWindowWithControls({IDC_TEST_EDIT});
        if (!box || !page) {
            return StepOutcome::NotYet(L"no box is up");
        }
        EXPECT_TRUE(::IsWindowEnabled(page));
        for (const int id : {IDC_NEXT, IDC_BACK, IDC_RESET}) {
            Command(page, id);
        }
        return StepOutcome::Done();
    });
    AnswerBox(IDOK, L"Failed");
    Press(IDC_BACK);
    EXPECT_EQ(Show<CTestWizardPage>(), NAVIGATION_BACK);
    EXPECT_NE(afterwards, nullptr);
    EXPECT_EQ(g_record.stored, 0);
    EXPECT_EQ(g_record.storedWithoutValidation, 1);
    EXPECT_TRUE(host.log.Of(L"ResetSetupMode").empty());
}

TEST_F(WizardPageTest, ACancelUnderABoxWithoutAnOwnerClosesThePageAfterTheHandler)
{
    bool stayed = false;
    g_record.onWork = [&](HWND page) {
        ::MessageBoxW(nullptr, L"Failed", L"", MB_OK);
        stayed = ::IsWindow(page) != FALSE && g_record.destroyed == 0;
    };
    OnPage([](HWND page) { ::PostMessageW(page, TEST_MESSAGE_WORK, 0, 0); });
    Step(L"cancel", [] {
        const HWND page = FindWindowWithControls({IDC_TEST_EDIT});
        if (!FindMessageBox() || !page) {
            return StepOutcome::NotYet(L"no box is up");
        }
        ::PostMessageW(page, WM_CLOSE, 0, 0);
        return StepOutcome::Done();
    });
    AnswerQuestion(IDYES, L"Leave? deployment deployment deployment");
    EXPECT_EQ(Show<CTestWizardPage>(), NAVIGATION_CANCEL);
    EXPECT_TRUE(stayed);
    EXPECT_EQ(g_record.destroyed, 1);
    MSG left = {};
    EXPECT_FALSE(::PeekMessageW(&left, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE))
        << "a quit message is left over";
}

// The quit message came to the loop inside the handler; the page's own loop waited for it for ever.
TEST_F(WizardPageTest, ACancelWhileAHandlerWaitsEndsThePage)
{
    WaitEnd end = WaitEnd::Signaled;
    const HANDLE never = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    g_record.onWork = [&](HWND) { end = WaitWithMessages(never); };
    OnPage([](HWND page) { ::PostMessageW(page, TEST_MESSAGE_WORK, 0, 0); });
    Press(IDC_CANCEL);
    AnswerQuestion(IDYES, L"Leave? deployment deployment deployment");
    EXPECT_EQ(Show<CTestWizardPage>(), NAVIGATION_CANCEL);
    EXPECT_EQ(end, WaitEnd::Quit);
    ::CloseHandle(never);
}
