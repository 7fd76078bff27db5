// Shows pages without a person: enters their answers by their own controls, takes pictures, answers boxes, presses
// Next, and ends the run where a page won't go on.
#pragma once

#include "automation/script.h"
#include "setup/answer_entry.h"
#include "setup/answers.h"
#include "setup/page_pictures.h"
#include "setup/program_libraries.h"
#include "setup/run_log.h"

#include <functional>
#include <optional>

class CConfigureDialog;
class CProduct;
class CSetupManager;
struct BoxVerdict;
struct MessageBoxView;

class CUnattendedPages final : private IAnswerEntryEvents
{
public:
    // Borrows all of them.
    CUnattendedPages(const CAnswers& answers, CPagePictures& pictures, CRunLog& log,
                     AnswerTables tables = PageAnswerTables(), PageListsTable lists = AllPageLists())
        : m_answers(answers), m_pictures(pictures), m_log(log), m_tables(tables), m_entry(*this, lists)
    {
    }

    // Shows the page; its navigation result. Once GetFailure has something, that is how the run ends. `product`: whose page
    // it is, null for a page that belongs to none; `shownProduct`: its name where there are several, else empty.
    [[nodiscard]] int Show(const CString& page, const CProduct* product, const CString& shownProduct,
                           PageFunction show, PageContext& context);
    // Shows the dialog, goes to each of its tabs and enters the answers of its page.
    [[nodiscard]] int ShowConfigure(CConfigureDialog& dialog);
    [[nodiscard]] const std::optional<RunOutcome>& GetFailure() const { return m_failure; }

private:
    void Begin(CSetupManager& manager);
    int Play(const std::function<void(CScript&)>& addSteps, const std::function<int()>& show);
    void AddSteps(CScript& script);
    void AddConfigureSteps(CScript& script);
    void AddAnswerSteps(CScript& script);
    void AddPictureStep(CScript& script);
    void AddLeaveSteps(CScript& script);
    void UsePage(const CString& page, const CProduct* product, const CString& shownProduct);
    void UseTab(int tab);
    // Opens the dialog on a tab that is to be shown, as the page that it opens on is stored. False, with a failure, when the
    // answers leave none.
    [[nodiscard]] bool ChooseFirstTab();
    // False, with a failure, for a section that leaves its page's tab out and answers it too.
    [[nodiscard]] bool CheckLeftOutTabs();
    [[nodiscard]] bool IsShownAnywhere(const PageAnswers& section);
    void ForgetQuestion();
    StepOutcome WaitForTab(int tab);
    StepOutcome Watch();
    StepOutcome WaitForPage();
    StepOutcome PressLeave();
    StepOutcome WaitForEnd();
    CString PageStayedText(const wchar_t* what) const;

    void OnBox(const MessageBoxView& box);
    CString CauseWithoutPage(const MessageBoxView& box, const BoxVerdict& verdict) const;
    bool OnConfigureCancel(const MessageBoxView& box);
    void AnswerBox(const MessageBoxView& box, const BoxVerdict& verdict);
    void PressBoxButton(const MessageBoxView& box, int button);
    void ReportQuestion(const MessageBoxView& box, const BoxVerdict& verdict);
    void ReportRefusal(const MessageBoxView& box, const BoxVerdict& verdict);
    bool OnCancelQuestion();
    bool CloseWindowOfPage();
    void Dismiss(const MessageBoxView& box);

    // Of entering answers.
    [[nodiscard]] HWND GetPage() const override { return m_hPage; }
    [[nodiscard]] bool HasFailed() const override { return m_failure.has_value(); }
    void OnEntering(const PageAnswer& answer) override;
    void OnEntered() override;
    [[nodiscard]] bool HasProduct(const PageAnswer& answer) const override;
    void OnRefused(const PageAnswer& answer, const CString& reason) override;

    [[nodiscard]] AnswersError WhyNextIsOff() const;
    // Of the answer that the page deals with.
    [[nodiscard]] AnswersError EnteredError(const PageAnswer& answer, const CString& reason) const;
    void Fail(unsigned int exitCode, const CString& cause);
    AnswersError PageError(const CString& reason) const;
    CString PageName() const;
    CString PageTitle() const;
    AnswerOrigin PageOrigin() const;

    const CAnswers& m_answers;
    CPagePictures& m_pictures;
    CRunLog& m_log;
    AnswerTables m_tables;
    CAnswerEntry m_entry;

    // Of the page that is shown
    CString m_strPage;
    CString m_strProduct; // empty without several
    const PageRow* m_pRow = nullptr;
    const PageAnswerTable* m_pTable = nullptr;
    const PageAnswers* m_pAnswers = nullptr;
    const PageAnswer* m_pEntered = nullptr; // the answer that the page deals with
    CSetupManager* m_pManager = nullptr;
    CProduct* m_pProduct = nullptr; // of a page that is walked to
    HWND m_hPage = nullptr;         // whose controls take the answers
    HWND m_hWindow = nullptr;       // in which it stands: the page itself, or the configure dialog
    CConfigureDialog* m_pDialog = nullptr;
    std::optional<bool> m_bTabChanged;               // how the last try to go to a tab ended
    HWND m_hHandled = nullptr;                       // the box that was answered last and may still be there
    CString m_strLastBox;                            // its text
    const QuestionAnswer* m_pLastQuestion = nullptr; // what answered it
    ULONGLONG m_leftAt = 0; // tick count of the press that should close the page, moved on by each box

    std::optional<RunOutcome> m_failure;
};
