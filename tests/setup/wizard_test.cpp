// Whole runs for a person, with the real host and the real pages, whose steps are played in this process.
#include "tests/setup/wizard_fixture.h"

CAppModule _Module;

namespace {

// After the last page it was, when everything had been chosen.
TEST_F(Wizard, ANameThatTheBuildWouldRefuseIsRefusedBehindTheFirstPageWhichThenComesAgain)
{
    for (const wchar_t* name : {L"CON", L"Office.", L"Off\tice"}) {
        CString reported;
        Begin(name);
        AnswerBox(IDOK, &reported);
        CString kept;
        CString keptLocation;
        OnPage(IDC_LOCATION, [&](HWND page) {
            kept = CControl(page, IDC_NAME).GetText();
            keptLocation = CControl(page, IDC_LOCATION).GetText();
            return StepOutcome::Done();
        });
        Cancel(IDC_LOCATION);
        EXPECT_EQ(Run().exitCode, static_cast<unsigned int>(SETUP_CANCELLED));
        EXPECT_GE(reported.Find(CString(L"\"") + name + L"\""), 0) << Utf8(reported);
        EXPECT_EQ(kept, CString(name));
        EXPECT_EQ(keptLocation, location + L"\\"); // as the page stores it
    }
}

TEST_F(Wizard, ThePageForAFailedBuildNamesWhatFailedAndWhatToDo)
{
    Begin(L"Office & Lab");
    BuildThatFails();
    CString pane;
    OnPage(IDC_FAILURE_REASON, [&pane](HWND page) {
        pane = WindowText(GetDlgItem(page, IDC_SIDE_PANE));
        return StepOutcome::Done();
    });
    Press(IDC_FAILURE_REASON, IDC_NEXT);
    const RunOutcome outcome = Run();
    EXPECT_EQ(outcome.exitCode, static_cast<unsigned int>(SETUP_FAILED));
    ASSERT_FALSE(outcome.strCause.IsEmpty());
    EXPECT_GE(pane.Find(outcome.strCause), 0) << Utf8(pane);
    EXPECT_GE(outcome.strCause.Find(media + L"\\" + CABINET), 0) << Utf8(outcome.strCause);
    EXPECT_GE(pane.Find(line.strLog), 0) << Utf8(pane);
}

TEST_F(Wizard, ThePageForAFailedBuildClosesWithoutAQuestion)
{
    Begin(L"Office");
    BuildThatFails();
    OnPage(IDC_FAILURE_REASON, [](HWND page) {
        PostMessageW(page, WM_CLOSE, 0, 0); // as its close box and Escape
        return StepOutcome::Done();
    });
    EXPECT_EQ(Run().exitCode, static_cast<unsigned int>(SETUP_FAILED));
}

TEST_F(Wizard, TheEndOfTheSessionWaitsWhileThePageAsksWhetherToCancel)
{
    const auto mayEnd = [] {
        return SendMessageW(FindWindowW(L"RolloutEndRequests", nullptr), WM_QUERYENDSESSION, 0, 0) != FALSE;
    };
    bool mayEndBefore = false;
    bool mayEndMeanwhile = true;
    bool mayEndBehind = false;
    OnPage(IDC_LOCATION, [&](HWND page) {
        mayEndBefore = mayEnd();
        return CControl(page, IDC_CANCEL).Click();
    });
    OnPage(IDC_CANCEL_QUESTION, [&](HWND question) {
        mayEndMeanwhile = mayEnd();
        return CControl(question, IDNO).Click();
    });
    OnPage(IDC_LOCATION, [&](HWND) {
        mayEndBehind = mayEnd();
        return StepOutcome::Done();
    });
    Cancel(IDC_LOCATION);
    EXPECT_EQ(Run().exitCode, static_cast<unsigned int>(SETUP_CANCELLED));
    EXPECT_TRUE(mayEndBefore);
    EXPECT_FALSE(mayEndMeanwhile);
    EXPECT_TRUE(mayEndBehind);
}

// The next run's end was reported with the failure of the one before.
TEST_F(Wizard, WhatAnEarlierBuildFailedOfIsForgottenWhenTheWizardStartsOver)
{
    Begin(L"Office");
    BuildThatFails();
    OnPage(IDC_FAILURE_REASON, [this](HWND) {
        CopyFromSample(CABINET); // or the package could not be opened anew
        return StepOutcome::Done();
    });
    Press(IDC_FAILURE_REASON, IDC_RESET);
    Cancel(IDC_LOCATION);
    const RunOutcome outcome = Run();
    EXPECT_EQ(outcome.exitCode, static_cast<unsigned int>(SETUP_CANCELLED));
    EXPECT_EQ(outcome.strCause, CString(L"canceled"));
}

} // namespace
