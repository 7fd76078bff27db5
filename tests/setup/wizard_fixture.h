// Whole runs with the real host and the real pages, in this process: by a person, whose steps are played, or by answers.
#pragma once

#include "automation/control.h"
#include "automation/message_box.h"
#include "automation/script.h"
#include "automation/window_finder.h"
#include "include/resource_ids.h"
#include "setup/answers_input.h"
#include "setup/exit_codes.h"
#include "setup/resource.h"
#include "setup/wizard.h"
#include "tests/setup/recorded_text.h"
#include "tests/support/test_folder.h"
#include "tests/support/text.h"
#include "window/module.h"

#include <gtest/gtest.h>

#include <ole2.h>

// The sample's package for 64-bit workstations lies beside the programs.
inline constexpr wchar_t SAMPLE[] = L"..\\media\\x64\\Zolt\\";

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
        mediaFile = media + L"\\Zolt2027.msi";
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
        CAnswers answers;
        return Run(answers);
    }
    RunOutcome Run(CAnswers& answers)
    {
        CRunLog log(false, line.strLog);
        CWizard wizard(line, answers, log);
        m_script.SetEnding(L"the run's end", [] { return StepOutcome::NotYet(L"a window is still up"); });
        m_script.Start();
        const RunOutcome outcome = wizard.Run(mediaFile);
        m_script.Stop();
        recorded.Empty();
        recordedPaths.Empty();
        recordedFiles.Empty();
        titles.clear();
        for (const RecordedPage& page : wizard.GetRecorder().GetPages()) {
            const CString section = page.Page().section;
            CString& text = section == L"paths"   ? recordedPaths
                            : section == L"files" ? recordedFiles
                                                  : recorded;
            text += (text.IsEmpty() ? CString() : CString(L"\n")) + RecordedText(page);
            titles.push_back(page.strTitle);
        }
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
    void Play(const CString& name, CScript::Step step) { m_script.Add(name, std::move(step)); }
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
    static CControl Below(HWND window, int control)
    {
        for (const HWND child : ChildWindows(window)) {
            if (GetDlgCtrlID(child) == control) {
                return CControl(child);
            }
        }
        return CControl(window, control);
    }
    // By the button of the tab in front, up to the tab with that control.
    void GoToNextTab(int control)
    {
        OnPage(IDC_CONFIGURE_TABS, [](HWND dialog) { return UsableBelow(dialog, IDC_NEXT_TAB).Click(); });
        OnPage(IDC_CONFIGURE_TABS, [control](HWND dialog) {
            return Until(Below(dialog, control).IsVisible(), L"the next tab isn't there");
        });
    }
    // Each tab has its own buttons.
    static CControl UsableBelow(HWND window, int control)
    {
        for (const HWND child : ChildWindows(window)) {
            if (GetDlgCtrlID(child) == control && IsWindowVisible(child)) {
                return CControl(child);
            }
        }
        return CControl(window, control);
    }
    void CancelDialog()
    {
        Press(IDC_CONFIGURE_TABS, IDC_CONFIGURE_CANCEL);
        AnswerBox(IDYES);
    }

    struct Answer
    {
        const wchar_t* page;
        const wchar_t* key;
        CString value;
    };
    RunOutcome RunWith(const std::vector<Answer>& given)
    {
        for (const Answer& answer : given) {
            line.answers.push_back({answer.page, CString(), answer.key, answer.value});
        }
        CAnswers answers;
        AnswersError error;
        EXPECT_TRUE(ReadAnswers(line, folder.GetPath(), answers, error)) << Utf8(error.Text());
        const RunOutcome outcome = Run(answers);
        line.answers.clear();
        return outcome;
    }

    // A deployment, and its image as the media of the next run.
    void BuildBase(const wchar_t* name, const std::vector<Answer>& more = {})
    {
        std::vector<Answer> given = {{L"begin", L"location", location},
                                     {L"begin", L"name", name},
                                     {L"begin", L"on_question.local_location", L"yes"}};
        given.insert(given.end(), more.begin(), more.end());
        const RunOutcome outcome = RunWith(given);
        ASSERT_EQ(outcome.exitCode, static_cast<unsigned int>(SETUP_DONE)) << Utf8(outcome.strCause);
        mediaFile = location + L"\\" + name;
    }
    // From the second page through the build, of which it waits for the end.
    void BuildThatFails()
    {
        Press(IDC_NETWORK_LOG, IDC_NEXT);
        Press(IDC_SHORTCUTS, IDC_NEXT);
        Press(IDC_PATH_TREE, IDC_NEXT);
        Press(IDC_FILES_TREE, IDC_NEXT);
        Press(IDC_PARTS_BAY, IDC_NEXT);
        Press(IDC_UPDATES, IDC_NEXT);
        Press(IDC_PATCH_LIST, IDC_NEXT);
        OnPage(IDC_REVIEW_TREE, [this](HWND) { // earlier the review would refuse it
            EXPECT_TRUE(DeleteFileW(media + L"\\" + CABINET));
            return StepOutcome::Done();
        });
        Press(IDC_REVIEW_TREE, IDOK);
    }

    static constexpr const wchar_t* CABINET = L"Data1.cab";
    CTestFolder folder;
    CString media;
    CString mediaFile; // that is run
    CString location;
    CString recorded; // by the last run, without its many paths and the additional files
    CString recordedPaths;
    CString recordedFiles;
    std::vector<CString> titles; // of its pages
    CommandLine line;

private:
    CScript m_script;
};
