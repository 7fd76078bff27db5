// What is recorded of wizard pages: windows with the controls of a page, which run the hooks as the page frame does.
#include "automation/message_box.h"
#include "automation/script.h"
#include "automation/window_finder.h"
#include "base/handle.h"
#include "setup/answers_recorder.h"
#include "tests/setup/recorded_text.h"
#include "tests/setup/recorder_table.h"
#include "tests/support/test_folder.h"
#include "tests/support/test_host.h"
#include "tests/support/text.h"
#include "window/window.h"

#include <gtest/gtest.h>

namespace {

class AnswersRecorder : public testing::Test
{
protected:
    AnswersRecorder()
    {
        m_script.SetFailureHandler([] {
            while (CloseFrontWindow()) {
            }
        });
    }
    ~AnswersRecorder() override
    {
        if (page) {
            DestroyWindow(page);
        }
    }

    // ---- a page: it comes up, is worked on, is asked to go on, and goes

    void ComeUp(const wchar_t* stem, const CProduct* product = nullptr)
    {
        context = {};
        recorder.WatchPage(context, CString(stem) + L"Dialog", product);
        page = CreateWindowExW(0, L"STATIC", L"page", WS_OVERLAPPEDWINDOW | (shown ? WS_VISIBLE : 0), 0, 0,
                               300, 300, nullptr, nullptr, nullptr, nullptr);
        Add(L"Button", IDC_TEST_CHECK, BS_AUTOCHECKBOX);
        Add(L"Edit", IDC_TEST_EDIT).SetText(first);
        Add(L"Button", IDC_TEST_CHOICE1, BS_AUTORADIOBUTTON);
        Add(L"Button", IDC_TEST_CHOICE2, BS_AUTORADIOBUTTON);
        Add(L"ListBox", IDC_TEST_COMBO, 0);
        CheckDlgButton(page, IDC_TEST_CHECK, BST_CHECKED);
        CheckRadioButton(page, IDC_TEST_CHOICE1, IDC_TEST_CHOICE2, IDC_TEST_CHOICE1);
        for (const wchar_t* line : lines) {
            AddLine(line);
        }
        RunPostInitHooks();
    }
    void RunPostInitHooks()
    {
        PageContext up;
        up.hParent = page;
        for (const PageHook hook : context.postInitHooks) {
            EXPECT_NE(hook(&up), 2);
        }
    }
    void GoOn()
    {
        PageContext leaving; // names no window in the wizard
        for (const PageHook hook : context.leaveHooks) {
            EXPECT_EQ(hook(&leaving), 1);
        }
    }
    void Go()
    {
        DestroyWindow(page);
        page = nullptr;
    }
    void GoOnAndGo()
    {
        GoOn();
        Go();
    }
    // A page with nothing on it but what it proposes.
    void WalkThrough(const wchar_t* stem, const CProduct* product = nullptr)
    {
        ComeUp(stem, product);
        GoOnAndGo();
    }

    CWindow Control(int id) const { return CWindow(GetDlgItem(page, id)); }
    void Enter(const wchar_t* text) const { Control(IDC_TEST_EDIT).SetText(text); }
    void AddLine(const wchar_t* line) const
    {
        Control(IDC_TEST_COMBO).SendMessage(LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line));
    }
    void ClearLines() const { Control(IDC_TEST_COMBO).SendMessage(LB_RESETCONTENT, 0); }
    void SwitchOff() const
    {
        CheckDlgButton(page, IDC_TEST_CHECK, BST_UNCHECKED);
        Control(IDC_TEST_EDIT).EnableWindow(FALSE);
    }

    // The page asks, and `answer` does something with the box.
    int Ask(const std::function<StepOutcome(const MessageBoxView& box)>& answer,
            const wchar_t* text = L"Page 1 asks", UINT buttons = MB_YESNO)
    {
        m_script.Add(L"answer the box", [answer] {
            const auto box = FindMessageBox();
            return box ? answer(*box) : StepOutcome::NotYet(L"there is no box");
        });
        m_script.Start();
        const int result = MessageBoxW(page, text, L"page", buttons);
        m_script.Stop();
        EXPECT_FALSE(m_script.HasFailed()) << Utf8(m_script.GetFailure());
        return result;
    }
    int AskAndPress(int button, const wchar_t* text = L"Page 1 asks", UINT buttons = MB_YESNO)
    {
        return Ask([button](const MessageBoxView& box) { return AnswerMessageBox(box, button); }, text,
                   buttons);
    }

    CString Recorded() const { return RecordedText(recorder.GetPages()); }

    CAnswersRecorder recorder{RecorderTable::TABLES, RecorderTable::LISTS};
    PageContext context;
    HWND page = nullptr;
    bool shown = true;
    const wchar_t* first = L"first"; // what the page proposes
    std::vector<const wchar_t*> lines;

private:
    CWindow Add(const wchar_t* windowClass, int id, DWORD style = 0) const
    {
        return CWindow(CreateWindowExW(0, windowClass, L"", WS_CHILD | WS_VISIBLE | style, 0, 0, 100, 20,
                                       page, reinterpret_cast<HMENU>(std::intptr_t{id}), nullptr, nullptr));
    }

    CModuleOwner m_texts{LoadLibraryW(ProgramFolder() + L"WizText.dll")};
    CScript m_script;
};

constexpr wchar_t UNTOUCHED[] = L"settings: (check=yes), (value=first), (choice=one)";

// ---- values

TEST_F(AnswersRecorder, APageLeftAsItCameUpHoldsWhatItProposed)
{
    WalkThrough(L"DeploymentSettings");
    EXPECT_EQ(Recorded(), CString(UNTOUCHED));
    EXPECT_EQ(recorder.GetPages().front().strTitle, CString(L"Deployment settings"));
}

TEST_F(AnswersRecorder, WhatWasEnteredStandsOutFromWhatWasProposed)
{
    ComeUp(L"DeploymentSettings");
    Enter(L"second");
    GoOnAndGo();
    EXPECT_EQ(Recorded(), CString(L"settings: (check=yes), value=second, (choice=one)"));
}

// The system hides a window before it destroys it.
TEST_F(AnswersRecorder, APageThatIsHiddenWhenItGoesIsRead)
{
    shown = false;
    ComeUp(L"DeploymentSettings");
    Enter(L"second");
    GoOnAndGo();
    EXPECT_EQ(Recorded(), CString(L"settings: (check=yes), value=second, (choice=one)"));
}

TEST_F(AnswersRecorder, AControlThatThePageHidesIsNoAnswer)
{
    ComeUp(L"DeploymentSettings");
    Control(IDC_TEST_EDIT).ShowWindow(SW_HIDE);
    GoOnAndGo();
    EXPECT_EQ(Recorded(), CString(L"settings: (check=yes), (choice=one)"));
}

TEST_F(AnswersRecorder, ASecondRunOfThePagesHooksLeavesWhatWasProposed)
{
    ComeUp(L"DeploymentSettings");
    Enter(L"second");
    RunPostInitHooks();
    GoOnAndGo();
    EXPECT_EQ(Recorded(), CString(L"settings: (check=yes), value=second, (choice=one)"));
}

// The page then proposes what was entered before.
TEST_F(AnswersRecorder, APageGoneBackToKeepsWhatItProposedFirst)
{
    ComeUp(L"DeploymentSettings");
    Enter(L"second");
    GoOnAndGo();
    WalkThrough(L"BeginDeployment");
    first = L"second";
    WalkThrough(L"DeploymentSettings");
    EXPECT_EQ(Recorded(), CString(L"settings: (check=yes), value=second, (choice=one)\n"
                                  L"begin: (check=yes), (value=first), (choice=one)"));
}

TEST_F(AnswersRecorder, WhatWasTakenBackLaterIsProposedAgain)
{
    ComeUp(L"DeploymentSettings");
    Enter(L"second");
    GoOnAndGo();
    first = L"second";
    ComeUp(L"DeploymentSettings");
    Enter(L"first");
    GoOnAndGo();
    EXPECT_EQ(Recorded(), CString(UNTOUCHED));
}

TEST_F(AnswersRecorder, TheChoiceOfADisabledGroupIsAnAnswer)
{
    ComeUp(L"DeploymentSettings");
    CheckRadioButton(page, IDC_TEST_CHOICE1, IDC_TEST_CHOICE2, IDC_TEST_CHOICE2);
    Control(IDC_TEST_CHOICE1).EnableWindow(FALSE);
    Control(IDC_TEST_CHOICE2).EnableWindow(FALSE);
    GoOnAndGo();
    EXPECT_EQ(Recorded(), CString(L"settings: (check=yes), (value=first), choice=two"));
}

TEST_F(AnswersRecorder, WhatIsOutOfReachIsKeptOnceItWasChanged)
{
    ComeUp(L"DeploymentSettings");
    Enter(L"second");
    SwitchOff();
    GoOnAndGo();
    EXPECT_EQ(Recorded(), CString(L"settings: check=no, ~value=second, (choice=one)"));
}

TEST_F(AnswersRecorder, WhatIsOutOfReachAndAsItWasIsNoAnswer)
{
    ComeUp(L"DeploymentSettings");
    SwitchOff();
    GoOnAndGo();
    EXPECT_EQ(Recorded(), CString(L"settings: check=no, (choice=one)"));
}

// Its default would be another one on a deployment that isn't built upon this one.
TEST_F(AnswersRecorder, UponABaseAllThatIsOutOfReachIsKept)
{
    recorder.NoteTarget(1, L"D:\\Deployments\\Base");
    ComeUp(L"DeploymentSettings");
    SwitchOff();
    GoOnAndGo();
    EXPECT_EQ(Recorded(), CString(L"settings: check=no, (~value=first), (choice=one)"));
}

// ---- lists

TEST_F(AnswersRecorder, LinesThatStayAreProposed)
{
    lines = {L"a", L"b"};
    WalkThrough(L"DeploymentSettings");
    EXPECT_EQ(Recorded(), CString(L"settings: (check=yes), (line=a), (line=b), (value=first), (choice=one)"));
}

TEST_F(AnswersRecorder, LinesThatChangedAreClearedAwayFirst)
{
    lines = {L"a", L"b"};
    ComeUp(L"DeploymentSettings");
    AddLine(L"c");
    GoOnAndGo();
    EXPECT_EQ(Recorded(), CString(L"settings: (check=yes), clear=yes, line=a, line=b, line=c, (value=first), "
                                  L"(choice=one)"));
}

TEST_F(AnswersRecorder, ALineInAnEmptyListNeedsNoClearing)
{
    ComeUp(L"DeploymentSettings");
    AddLine(L"c");
    GoOnAndGo();
    EXPECT_EQ(Recorded(), CString(L"settings: (check=yes), line=c, (value=first), (choice=one)"));
}

TEST_F(AnswersRecorder, AListThatWasEmptiedIsClearedAlone)
{
    lines = {L"a"};
    ComeUp(L"DeploymentSettings");
    ClearLines();
    GoOnAndGo();
    EXPECT_EQ(Recorded(), CString(L"settings: (check=yes), clear=yes, (value=first), (choice=one)"));
}

// ---- products, the first page, starting over

TEST_F(AnswersRecorder, EachProductHasItsOwn)
{
    TestHost host;
    TestProduct& zolt = host.AddProduct(L"Zolt.msi", L"{1}");
    TestProduct& volt = host.AddProduct(L"Volt.msi", L"{2}");
    zolt.m_strName = L"Zolt";
    volt.m_strName = L"Volt";
    ComeUp(L"NoticeDeskFeedBoard", &zolt);
    Enter(L"second");
    GoOnAndGo();
    WalkThrough(L"NoticeDeskFeedBoard", &volt);
    EXPECT_EQ(Recorded(), CString(L"notices/Zolt: (check=yes), value=second, (choice=one)\n"
                                  L"notices/Volt: (check=yes), (value=first), (choice=one)"));
}

TEST_F(AnswersRecorder, ProductsOpenedAnewLoseWhatWasRecordedOfThem)
{
    TestHost host;
    TestProduct& zolt = host.AddProduct(L"Zolt.msi", L"{1}");
    zolt.m_strName = L"Zolt";
    WalkThrough(L"BeginDeployment");
    recorder.NoteTarget(1, CString());
    WalkThrough(L"DeploymentSettings");
    WalkThrough(L"NoticeDeskFeedBoard", &zolt);
    recorder.NoteTarget(2, CString());
    EXPECT_EQ(Recorded(), L"begin: (check=yes), (value=first), (choice=one)\n" + CString(UNTOUCHED));
    first = L"of the other platform";
    WalkThrough(L"NoticeDeskFeedBoard", &zolt);
    EXPECT_EQ(RecordedText(recorder.GetPages().back()),
              CString(L"notices/Zolt: (check=yes), (value=of the other platform), (choice=one)"));
}

TEST_F(AnswersRecorder, AnotherBaseBringsItsOwnSettings)
{
    WalkThrough(L"BeginDeployment");
    recorder.NoteTarget(1, L"D:\\One");
    WalkThrough(L"DeploymentSettings");
    recorder.NoteTarget(2, L"D:\\Two");
    first = L"of the second base";
    WalkThrough(L"DeploymentSettings");
    EXPECT_EQ(Recorded(), CString(L"begin: (check=yes), (value=first), (choice=one)\n"
                                  L"settings: (check=yes), (value=of the second base), (choice=one)"));
}

TEST_F(AnswersRecorder, TheSameTargetAgainKeepsAll)
{
    TestHost host;
    TestProduct& zolt = host.AddProduct(L"Zolt.msi", L"{1}");
    recorder.NoteTarget(1, L"D:\\One");
    WalkThrough(L"DeploymentSettings");
    WalkThrough(L"NoticeDeskFeedBoard", &zolt);
    recorder.NoteTarget(1, L"D:\\One");
    EXPECT_EQ(recorder.GetPages().size(), 2u);
}

TEST_F(AnswersRecorder, StartingOverForgetsEverything)
{
    ComeUp(L"DeploymentSettings");
    Enter(L"second");
    GoOnAndGo();
    recorder.Forget();
    EXPECT_EQ(Recorded(), CString());
    first = L"second";
    WalkThrough(L"DeploymentSettings");
    EXPECT_EQ(Recorded(), CString(L"settings: (check=yes), (value=second), (choice=one)"));
}

TEST_F(AnswersRecorder, APageWithoutAnswersIsNotRecorded)
{
    WalkThrough(L"ServicePack");
    WalkThrough(L"Unknown");
    EXPECT_EQ(Recorded(), CString());
}

// ---- questions

TEST_F(AnswersRecorder, AnAnsweredQuestionIsRecorded)
{
    for (const auto& [button, text] : {std::pair(IDYES, L"yes"), std::pair(IDNO, L"no")}) {
        ComeUp(L"DeploymentSettings");
        GoOn();
        EXPECT_EQ(AskAndPress(button), button);
        Go();
        EXPECT_EQ(Recorded(), CString(UNTOUCHED) + L", ?sure=" + text);
    }
}

// In the box's own loop, as from a keyboard.
TEST_F(AnswersRecorder, AQuestionAnsweredByAKeyIsRecorded)
{
    ComeUp(L"DeploymentSettings");
    GoOn();
    const int pressed = Ask([](const MessageBoxView& box) {
        PostMessageW(GetDlgItem(box.window, IDYES), WM_KEYDOWN, VK_RETURN, 0);
        return StepOutcome::Done();
    });
    EXPECT_EQ(pressed, IDYES);
    Go();
    EXPECT_EQ(Recorded(), CString(UNTOUCHED) + L", ?sure=yes");
}

TEST_F(AnswersRecorder, TheAttemptThatLetThePageGoCounts)
{
    ComeUp(L"DeploymentSettings");
    GoOn();
    AskAndPress(IDNO);
    GoOn();
    AskAndPress(IDYES);
    GoOnAndGo();
    EXPECT_EQ(Recorded(), CString(UNTOUCHED)); // it didn't ask any more
    ComeUp(L"DeploymentSettings");
    GoOn();
    AskAndPress(IDNO);
    GoOn();
    AskAndPress(IDYES);
    Go();
    EXPECT_EQ(Recorded(), CString(UNTOUCHED) + L", ?sure=yes");
}

// A replay enters what Yes has kept, and not what No has kept out.
TEST_F(AnswersRecorder, YesToWhatEnteringAsksOutlastsANoAndTheAttemptsToLeave)
{
    ComeUp(L"DeploymentSettings");
    AskAndPress(IDNO, L"Entry 1 asks");
    GoOn();
    EXPECT_EQ(Recorded(), CString(UNTOUCHED) + L", ?entry=no");
    AskAndPress(IDYES, L"Entry 2 asks");
    AskAndPress(IDNO, L"Entry 3 asks");
    GoOnAndGo();
    EXPECT_EQ(Recorded(), CString(UNTOUCHED) + L", ?entry=yes");
}

TEST_F(AnswersRecorder, ALaterAnswerOfARoleReplacesTheEarlier)
{
    ComeUp(L"DeploymentSettings");
    GoOn();
    AskAndPress(IDNO);
    AskAndPress(IDYES, L"Page 2 asks");
    Go();
    EXPECT_EQ(Recorded(), CString(UNTOUCHED) + L", ?sure=yes");
}

TEST_F(AnswersRecorder, ARefusalAndABoxThatNoTableKnowsAreNoQuestions)
{
    ComeUp(L"DeploymentSettings");
    GoOn();
    AskAndPress(IDOK, L"Page 1 refuses", MB_OK);
    AskAndPress(IDYES, L"Something else?");
    Go();
    EXPECT_EQ(Recorded(), CString(UNTOUCHED));
}

TEST_F(AnswersRecorder, ABoxBehindThePageIsNotThePages)
{
    WalkThrough(L"DeploymentSettings");
    AskAndPress(IDYES);
    EXPECT_EQ(Recorded(), CString(UNTOUCHED));
}

TEST_F(AnswersRecorder, ABoxThatNobodyAnsweredIsNotRecorded)
{
    ComeUp(L"DeploymentSettings");
    GoOn();
    Ask([](const MessageBoxView& box) {
        EndDialog(box.window, IDYES);
        return StepOutcome::Done();
    });
    Go();
    EXPECT_EQ(Recorded(), CString(UNTOUCHED));
}

TEST_F(AnswersRecorder, TheProgramsOwnQuestionBelongsToItsPage)
{
    WalkThrough(L"BeginDeployment");
    recorder.NoteQuestion(L"begin", ROLE_REPLACE_UNLISTED, false);
    recorder.NoteQuestion(L"begin", ROLE_REPLACE_UNLISTED, true);
    EXPECT_EQ(Recorded(), CString(L"begin: (check=yes), (value=first), (choice=one), ?replace_unlisted=yes"));
}

// A tab asks all hooks, and the last one's answer counts.
TEST_F(AnswersRecorder, TheHostsOwnHooksHaveTheLastWord)
{
    PageHook veto = [](PageContext*) { return 2; };
    context.leaveHooks = {veto};
    recorder.AddTabHooks(context);
    EXPECT_EQ(context.leaveHooks.size(), 2u);
    EXPECT_EQ(context.leaveHooks.back(), veto);
}

} // namespace
