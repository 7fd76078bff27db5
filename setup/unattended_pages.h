// Shows pages without a person: enters their answers by their own controls, takes pictures, answers boxes, presses
// Next, and ends the run where a page won't go on.
#pragma once

#include "automation/script.h"
#include "setup/answers.h"
#include "setup/page_pictures.h"
#include "setup/program_libraries.h"
#include "setup/run_log.h"

#include <optional>

class CSetupManager;
struct BoxVerdict;
struct MessageBoxView;

class CUnattendedPages
{
public:
    // Borrows all three.
    CUnattendedPages(const Answers& answers, CPagePictures& pictures, CRunLog& log)
        : m_answers(answers), m_pictures(pictures), m_log(log)
    {
    }

    // Shows the page; its navigation result. Once GetFailure has something, that is how the run ends.
    [[nodiscard]] int Show(const CString& page, PageFunction show, PageContext& context);
    [[nodiscard]] const std::optional<RunOutcome>& GetFailure() const { return m_failure; }

private:
    void AddSteps(CScript& script);
    StepOutcome Watch();
    StepOutcome WaitForPage();
    StepOutcome Enter(const PageAnswer& answer);
    StepOutcome CheckEntered(const PageAnswer& answer);
    StepOutcome PressLeave();
    StepOutcome WaitForEnd();

    void OnBox(const MessageBoxView& box);
    void AnswerBox(const MessageBoxView& box, const BoxVerdict& verdict);
    void TellRefusal(const MessageBoxView& box, const BoxVerdict& verdict);
    bool OnCancelQuestion();
    void Dismiss(const MessageBoxView& box);

    void LogAnswer(const PageAnswer& answer);
    StepOutcome Refuse(const PageAnswer& answer, const CString& reason);
    void Fail(unsigned int exitCode, const CString& cause);
    CString PageName() const;
    AnswerOrigin PageOrigin() const;

    const Answers& m_answers;
    CPagePictures& m_pictures;
    CRunLog& m_log;

    // Of the page that is shown
    CString m_strPage;
    const AnswerPage* m_pRow = nullptr;
    const PageAnswers* m_pAnswers = nullptr;
    CSetupManager* m_pManager = nullptr;
    HWND m_hPage = nullptr;
    HWND m_hHandled = nullptr; // the box that was answered last and may still be there
    CString m_strLastBox;      // its text
    ULONGLONG m_leftAt = 0;    // tick count of the press that should close the page, moved on by each box

    std::optional<RunOutcome> m_failure;
};
