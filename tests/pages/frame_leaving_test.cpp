// The ways out of a page: Next, Back, Cancel, Reset and the hooks that may keep it.
#include "tests/pages/contact_page.h"

namespace {

// Hooks are plain functions, so what they saw is kept beside them.
struct HookCall
{
    int hook;
    HWND window;
    HWND frame;
    RECT display;
    CSetupManager* manager;
    CProduct* product;
    InstallerHandle database;
};
std::vector<HookCall> hookCalls;

template <int number, int answer>
int Hook(PageContext* context)
{
    hookCalls.push_back({number, context->hParent, context->hFrame, context->rcDisplay,
                         context->pSetupManager, context->pProduct, context->hDatabase});
    return answer;
}

std::vector<int> HooksCalled()
{
    std::vector<int> numbers;
    for (const HookCall& call : hookCalls)
        numbers.push_back(call.hook);
    return numbers;
}

class Leaving : public ContactPage
{
protected:
    Leaving() { hookCalls.clear(); }
};

TEST_F(Leaving, NextClosesWithOneAndStoresNothing)
{
    Press(IDC_NEXT);
    EXPECT_EQ(ShowPage(), 1);
    EXPECT_EQ(host.log.Changes(), Calls());
}

TEST_F(Leaving, BackClosesWith1001AndStoresNothing)
{
    Press(IDC_BACK);
    EXPECT_EQ(ShowPage(), 1001);
    EXPECT_EQ(host.log.Changes(), Calls());
}

TEST_F(Leaving, BackIsDisabledWhenThePageCantGoBack)
{
    context.bCanGoBack = FALSE;
    Look([&] { EXPECT_FALSE(Control(IDC_BACK).IsEnabled()); });
    Press(IDC_NEXT);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
}

// ---- hooks

TEST_F(Leaving, InitHooksRunInOrderWithThePageAndTheSavedRectangle)
{
    context.preInitHooks = {Hook<1, 0>, Hook<2, 2>};
    context.postInitHooks = {Hook<3, 0>};
    host.ui.position = {11, 22, 33, 44};
    TestProduct& product = host.AddProduct(L"a.msi", L"a");
    context.pProduct = &product;
    context.hDatabase = 77;
    HWND page = nullptr;
    Look([&] { page = Page(); });
    ShowAndLeave();
    ASSERT_EQ(HooksCalled(), (std::vector<int>{1, 2, 3}));
    for (const HookCall& call : hookCalls) {
        EXPECT_EQ(call.window, page);
        EXPECT_EQ(call.frame, nullptr);
        EXPECT_EQ(call.manager, &host.manager);
        EXPECT_EQ(call.product, nullptr);
        EXPECT_EQ(call.database, 0u);
    }
    EXPECT_EQ(hookCalls[0].display.left, 11);
    EXPECT_EQ(hookCalls[0].display.bottom, 44);
}

TEST_F(Leaving, LeaveHooksRunInOrderOnNextWithTheManagerAlone)
{
    context.leaveHooks = {Hook<1, 0>, Hook<2, 1>};
    host.ui.position = {11, 22, 33, 44};
    Press(IDC_NEXT);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    ASSERT_EQ(HooksCalled(), (std::vector<int>{1, 2}));
    EXPECT_EQ(hookCalls[0].window, nullptr);
    EXPECT_EQ(hookCalls[0].manager, &host.manager);
    EXPECT_EQ(hookCalls[0].display.left, 0);
}

TEST_F(Leaving, TheFirstVetoKeepsThePageAndSparesTheOtherHooks)
{
    context.leaveHooks = {Hook<1, HOOK_VETO>, Hook<2, 1>, Hook<3, 1>};
    Press(IDC_NEXT);
    Await(L"no hook was called", [] { return !hookCalls.empty(); });
    Look([&] {
        EXPECT_EQ(HooksCalled(), (std::vector<int>{1}));
        EXPECT_TRUE(Control(IDC_NEXT).IsEnabled());
    });
    ShowAndLeave();
}

TEST_F(Leaving, AVetoIsHeardFromAnyHook)
{
    context.leaveHooks = {Hook<1, 1>, Hook<2, HOOK_VETO>, Hook<3, 1>};
    Press(IDC_NEXT);
    Await(L"no hook was called", [] { return hookCalls.size() >= 2; });
    ShowAndLeave();
    EXPECT_EQ(HooksCalled(), (std::vector<int>{1, 2}));
}

TEST_F(Leaving, BackDoesNotRunTheLeaveHooks)
{
    context.leaveHooks = {Hook<1, HOOK_VETO>};
    ShowAndLeave();
    EXPECT_EQ(HooksCalled(), std::vector<int>());
}

// ---- Cancel

struct CancelCase
{
    int mode;
    UINT question;
};

class CancelQuestions : public Leaving, public testing::WithParamInterface<CancelCase>
{
};

// The string as FormatMessage gives it with the picked question in all three places.
CString CancelText(UINT question)
{
    const CString picked = ResourceText(question);
    const CString form = ResourceText(IDS_CANCEL_TEMPLATE);
    DWORD_PTR arguments[3] = {reinterpret_cast<DWORD_PTR>(picked.GetString()),
                              reinterpret_cast<DWORD_PTR>(picked.GetString()),
                              reinterpret_cast<DWORD_PTR>(picked.GetString())};
    wchar_t text[2048] = {};
    FormatMessageW(FORMAT_MESSAGE_FROM_STRING | FORMAT_MESSAGE_ARGUMENT_ARRAY, form, 0, 0, text, 2048,
                   reinterpret_cast<va_list*>(arguments));
    return text;
}

TEST_P(CancelQuestions, SayWhatIsLeft)
{
    host.manager.m_setupMode = static_cast<Setup::tagSETUPMODE>(GetParam().mode);
    Press(IDC_CANCEL);
    AnswerCancelQuestion(IDNO, [&](HWND question) {
        EXPECT_EQ(CControl(question, IDC_CANCEL_QUESTION).GetText(), CancelText(GetParam().question));
    });
    ShowAndLeave();
}

INSTANTIATE_TEST_SUITE_P(OfEachMode, CancelQuestions,
                         testing::Values(CancelCase{2, IDS_CANCEL_INSTALL},
                                         CancelCase{3, IDS_CANCEL_MAINTAIN},
                                         CancelCase{4, IDS_CANCEL_DEPLOYMENT},
                                         CancelCase{5, IDS_CANCEL_DEPLOYMENT},
                                         CancelCase{6, IDS_CANCEL_DEPLOYMENT},
                                         CancelCase{0, IDS_CANCEL_OTHER}, CancelCase{7, IDS_CANCEL_OTHER}));

TEST_F(Leaving, CancelWithNoStaysEnablesCancellingAndGivesTheFocusBack)
{
    FocusOn(IDC_CANCEL);
    Press(IDC_CANCEL);
    AnswerCancelQuestion(IDNO, [&](HWND) {
        EXPECT_EQ(host.log.Of(L"EnableCancelling"), Calls({L"EnableCancelling(false)"}));
        EXPECT_FALSE(IsWindowEnabled(Page())) << "the question is not modal";
    });
    Await(L"cancelling isn't enabled again", [&] { return host.log.Of(L"EnableCancelling").size() == 2; });
    Await(L"the Cancel button has no focus", [&] { return HasFocus(IDC_CANCEL); });
    ShowAndLeave();
    EXPECT_EQ(host.log.Changes(), Calls({L"EnableCancelling(false)", L"EnableCancelling(true)"}));
    EXPECT_EQ(host.manager.m_exitCode, 0u);
}

// The command comes from the Cancel button, wherever the focus was when Esc was pressed.
TEST_F(Leaving, EscapeWithNoGivesTheFocusToTheCancelButton)
{
    FocusOn(IDC_NEXT);
    Key(VK_ESCAPE);
    AnswerCancelQuestion(IDNO);
    Await(L"the Cancel button has no focus", [&] { return HasFocus(IDC_CANCEL); });
    ShowAndLeave();
}

TEST_F(Leaving, CancelWithYesClosesWithTwoAndLeavesTheExitCode)
{
    Press(IDC_CANCEL);
    AnswerCancelQuestion(IDYES);
    EXPECT_EQ(ShowPage(), 2);
    EXPECT_EQ(host.manager.m_exitCode, 1602u);
    EXPECT_EQ(host.log.Changes(),
              Calls({L"EnableCancelling(false)", L"SetMsiProperty(TARN_SETUP_SUCCEEDED, \"\", false)"}));
}

TEST_F(Leaving, TheCancelQuestionStandsInTheMiddleOfThePage)
{
    Press(IDC_CANCEL);
    AnswerCancelQuestion(IDNO, [&](HWND question) {
        RECT inner = {};
        RECT outer = {};
        GetWindowRect(question, &inner);
        GetWindowRect(Page(), &outer);
        EXPECT_NEAR(inner.left + inner.right, outer.left + outer.right, 2);
        EXPECT_NEAR(inner.top + inner.bottom, outer.top + outer.bottom, 2);
    });
    ShowAndLeave();
}

TEST_F(Leaving, AtStageFourCancelIsNext)
{
    host.manager.m_uiStage = 4;
    context.leaveHooks = {Hook<1, 1>};
    Press(IDC_CANCEL);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(HooksCalled(), (std::vector<int>{1}));
    EXPECT_EQ(host.log.Changes(), Calls());
}

// ---- Reset

TEST_F(Leaving, ResetShowsOnlyWithBothFlags)
{
    for (const int flags : {0, 1, 2, 3}) {
        host.ui.m_bResetAllowed1 = (flags & 1) != 0;
        host.ui.m_bResetAllowed2 = (flags & 2) != 0;
        Look([&, flags] {
            EXPECT_EQ(Control(IDC_RESET).IsVisible(), flags == 3) << flags;
            EXPECT_EQ(Control(IDC_RESET).IsEnabled(), flags == 3) << flags;
        });
        ShowAndLeave();
    }
}

TEST_F(Leaving, ResetClosesWith1278WhenTheHostHasReset)
{
    host.ui.m_bResetAllowed1 = host.ui.m_bResetAllowed2 = true;
    context.leaveHooks = {Hook<1, HOOK_VETO>};
    Press(IDC_RESET);
    EXPECT_EQ(ShowPage(), 1278);
    EXPECT_EQ(host.log.Changes(), Calls({L"ResetSetupMode()"}));
}

TEST_F(Leaving, AFailedResetKeepsThePageWithoutAWord)
{
    host.ui.m_bResetAllowed1 = host.ui.m_bResetAllowed2 = true;
    host.manager.resetAnswer = 5;
    Press(IDC_RESET);
    Await(L"the host was not asked", [&] { return host.log.Of(L"ResetSetupMode").size() == 1; });
    Look([&] { EXPECT_TRUE(Control(IDC_RESET).IsEnabled()); });
    ShowAndLeave();
}

} // namespace
