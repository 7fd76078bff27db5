// Shows pages without a person: enters their answers by their own controls, takes pictures, answers boxes, presses
// Next, and ends the run where a page won't go on.
#pragma once

#include "automation/script.h"
#include "setup/answers.h"
#include "setup/page_pictures.h"
#include "setup/program_libraries.h"
#include "setup/run_log.h"

#include <functional>
#include <optional>

class CConfigureDialog;
class CSetupManager;
struct BoxVerdict;
struct MessageBoxView;

class CUnattendedPages
{
public:
    // Borrows all three.
    CUnattendedPages(const CAnswers& answers, CPagePictures& pictures, CRunLog& log)
        : m_answers(answers), m_pictures(pictures), m_log(log)
    {
    }

    // Shows the page; its navigation result. Once GetFailure has something, that is how the run ends. `product`: of several,
    // the one whose page it is; else empty. The answers of a product's page count for each product.
    [[nodiscard]] int Show(const CString& page, const CString& product, PageFunction show,
                           PageContext& context);
    // Shows the dialog, goes to each of its tabs and enters the answers of its page.
    [[nodiscard]] int ShowConfigure(CConfigureDialog& dialog);
    [[nodiscard]] const std::optional<RunOutcome>& GetFailure() const { return m_failure; }

private:
    void Begin(CSetupManager& manager);
    int Play(const std::function<void(CScript&)>& addSteps, const std::function<int()>& show);
    void AddSteps(CScript& script);
    void AddConfigureSteps(CScript& script);
    void AddAnswerSteps(CScript& script, const PageAnswers* answers);
    void AddPictureStep(CScript& script);
    void AddLeaveSteps(CScript& script);
    void UsePage(const CString& page, const CString& product);
    void UseTab(int tab);
    StepOutcome WaitForTab(int tab);
    StepOutcome Watch();
    StepOutcome WaitForPage();
    StepOutcome Enter(const PageAnswer& answer);
    StepOutcome CheckEntered(const PageAnswer& answer);
    StepOutcome PressLeave();
    StepOutcome WaitForEnd();
    CString PageStayedText(const wchar_t* what) const;

    void OnBox(const MessageBoxView& box);
    CString CauseWithoutPage(const MessageBoxView& box) const;
    bool OnConfigureCancel(const MessageBoxView& box);
    void AnswerBox(const MessageBoxView& box, const BoxVerdict& verdict);
    void ReportRefusal(const MessageBoxView& box, const BoxVerdict& verdict);
    bool OnCancelQuestion();
    void Dismiss(const MessageBoxView& box);

    void LogAnswer(const PageAnswer& answer);
    StepOutcome Refuse(const PageAnswer& answer, const CString& reason);
    void Fail(unsigned int exitCode, const CString& cause);
    AnswersError PageError(const CString& reason) const;
    CString PageName() const;
    CString PageTitle() const;
    AnswerOrigin PageOrigin() const;

    const CAnswers& m_answers;
    CPagePictures& m_pictures;
    CRunLog& m_log;

    // Of the page that is shown
    CString m_strPage;
    CString m_strProduct; // empty without several
    const PageRow* m_pRow = nullptr;
    const PageAnswers* m_pAnswers = nullptr;
    CSetupManager* m_pManager = nullptr;
    HWND m_hPage = nullptr;   // whose controls take the answers
    HWND m_hWindow = nullptr; // in which it stands: the page itself, or the configure dialog
    CConfigureDialog* m_pDialog = nullptr;
    std::optional<bool> m_bTabChanged; // how the last try to go to a tab ended
    HWND m_hHandled = nullptr;         // the box that was answered last and may still be there
    CString m_strLastBox;              // its text
    ULONGLONG m_leftAt = 0; // tick count of the press that should close the page, moved on by each box

    std::optional<RunOutcome> m_failure;
};
