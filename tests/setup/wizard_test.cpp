// Whole runs for a person, with the real host and the real pages, whose steps are played in this process.
#include "automation/control.h"
#include "automation/message_box.h"
#include "automation/script.h"
#include "automation/window_finder.h"
#include "include/resource_ids.h"
#include "setup/exit_codes.h"
#include "setup/resource.h"
#include "setup/wizard.h"
#include "tests/support/test_folder.h"
#include "tests/support/text.h"
#include "window/module.h"

#include <gtest/gtest.h>

#include <ole2.h>

CAppModule _Module;

namespace {

// The sample's package for 64-bit workstations lies beside the programs.
constexpr wchar_t SAMPLE[] = L"..\\media\\x64\\Zolt\\";

class Wizard : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        _Module.Init(GetModuleHandleW(nullptr));
        ASSERT_TRUE(SUCCEEDED(OleInitialize(nullptr)));
    }
    static void TearDownTestSuite() { OleUninitialize(); }

    Wizard()
    {
        media = folder.AddFolder(L"MediaInAFolderWhoseLongNameHasNoBlankAtWhichALineOfTheSidePaneCouldEnd");
        for (const wchar_t* file : {L"Zolt2027.msi", CABINET}) {
            CopyFromSample(file);
        }
        location = folder.AddFolder(L"Deployments");
        line.strLog = folder / L"run.log";
        m_script.SetFailureHandler([] {
            while (CloseFrontWindow()) {
            }
        });
    }

    void CopyFromSample(const wchar_t* file) const
    {
        EXPECT_TRUE(CopyFileW(ProgramFolder() + SAMPLE + file, media + L"\\" + file, TRUE)) << Utf8(file);
    }

    RunOutcome Run()
    {
        CRunLog log(false, line.strLog);
        CWizard wizard(line, m_answers, log);
        m_script.SetEnding(L"the run's end", [] { return StepOutcome::NotYet(L"a window is still up"); });
        m_script.Start();
        const RunOutcome outcome = wizard.Run(media + L"\\Zolt2027.msi");
        m_script.Stop();
        EXPECT_FALSE(m_script.HasFailed()) << Utf8(m_script.GetFailure());
        return outcome;
    }

    // Once the page with that control is up and no box hides it.
    void OnPage(int control, std::function<StepOutcome(HWND page)> act)
    {
        m_script.Add(L"on the page with " + NumberText(control), [control, act = std::move(act)] {
            const HWND page = FindWindowWithControls({control});
            return page && IsWindowEnabled(page) ? act(page)
                                                 : StepOutcome::NotYet(L"it isn't up, or a box hides it");
        });
    }
    void Press(int page, int button)
    {
        OnPage(page, [button](HWND window) { return CControl(window, button).Click(); });
    }
    void AnswerBox(int button, CString* text = nullptr)
    {
        m_script.Add(L"answer a box", [button, text] {
            const auto box = FindMessageBox();
            if (!box) {
                return StepOutcome::NotYet(L"there is no box");
            }
            if (text) {
                *text = box->text;
            }
            return AnswerMessageBox(*box, button);
        });
        m_script.Add(L"wait for its end", [] { return Until(!FindMessageBox(), L"the box is still there"); });
    }
    // Fills the first page and says that the location may be on this computer.
    void Begin(const CString& name)
    {
        OnPage(IDC_LOCATION, [this](HWND page) { return CControl(page, IDC_LOCATION).SetText(location); });
        OnPage(IDC_LOCATION, [name](HWND page) { return CControl(page, IDC_NAME).SetText(name); });
        Press(IDC_LOCATION, IDC_NEXT);
        AnswerBox(IDYES);
    }
    void Cancel(int page)
    {
        Press(page, IDC_CANCEL);
        m_script.Add(L"confirm it", [] {
            const HWND question = FindWindowWithControls({IDC_CANCEL_QUESTION});
            return question ? CControl(question, IDYES).Click()
                            : StepOutcome::NotYet(L"there is no question");
        });
    }
    // From the second page through the build, of which it waits for the end.
    void BuildThatFails()
    {
        OnPage(IDC_NETWORK_LOG, [this](HWND) {
            EXPECT_TRUE(DeleteFileW(media + L"\\" + CABINET));
            return StepOutcome::Done();
        });
        Press(IDC_NETWORK_LOG, IDC_NEXT);
        Press(IDC_PARTS_BAY, IDC_NEXT);
        Press(IDC_UPDATES, IDC_NEXT);
    }

    static constexpr const wchar_t* CABINET = L"Data1.cab";
    CTestFolder folder;
    CString media;
    CString location;
    CommandLine line;

private:
    CAnswers m_answers;
    CScript m_script;
};

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
