#include "setup/unattended_pages.h"

#include "automation/control.h"
#include "automation/message_box.h"
#include "automation/popup_menu.h"
#include "automation/window_finder.h"
#include "include/navigation.h"
#include "include/product.h"
#include "include/resource_ids.h"
#include "include/setup_manager.h"
#include "setup/box_rules.h"
#include "setup/configure_dialog.h"
#include "setup/configure_rules.h"
#include "setup/exit_codes.h"
#include "setup/page_controls.h"
#include "setup/product_names.h"
#include "setup/run_record.h"
#include "setup/text_forms.h"
#include "setup/texts.h"

namespace {

constexpr DWORD PAGE_MILLISECONDS = 30000;    // for a page to come, and for each step on it
constexpr ULONGLONG STAY_MILLISECONDS = 1500; // a page that has shown neither an end nor a box by then stays

// The same answer may be good for one product and refused for another.
CString BehindProduct(const CString& product, const CString& reason)
{
    return product.IsEmpty() ? reason : product + L": " + reason;
}

} // namespace

int CUnattendedPages::Show(const CString& page, const CProduct* product, const CString& shownProduct,
                           PageFunction show, PageContext& context)
{
    Begin(*context.pSetupManager);
    UsePage(page, product, shownProduct);
    m_pProduct = context.pProduct;
    m_log.Line(L"Page " + PageTitle());
    if (m_pAnswers && !m_pAnswers->bShow) {
        Fail(SETUP_PAGE_NOT_REACHED,
             RefusedAnswer(*m_pAnswers, SHOW_KEY, m_pAnswers->showOrigin,
                           BehindProduct(shownProduct,
                                         L"The pages are walked through one after the other in this run, "
                                         L"so none can be left out. Take the answer out."))
                 .Text());
        return NAVIGATION_CANCEL;
    }
    return Play([this](CScript& script) { AddSteps(script); }, [&] { return show(&context); });
}

void CUnattendedPages::Begin(CSetupManager& manager)
{
    m_pManager = &manager;
    m_pProduct = nullptr;
    m_pManager->m_hCurrentPage = nullptr; // the page before left its handle
    m_hPage = nullptr;
    m_hWindow = nullptr;
    m_hHandled = nullptr;
    m_pEntered = nullptr;
    ForgetQuestion();
}

// What came up before a page was asked to go on doesn't keep it.
void CUnattendedPages::ForgetQuestion()
{
    m_strLastBox.Empty();
    m_pLastQuestion = nullptr;
}

int CUnattendedPages::Play(const std::function<void(CScript&)>& addSteps, const std::function<int()>& show)
{
    CScript script;
    script.SetDeadline(PAGE_MILLISECONDS);
    script.SetWatcher([this] { return Watch(); });
    script.SetFailureHandler([] {
        while (CloseFrontWindow()) {
        }
    });
    addSteps(script);
    script.Start();
    const int result = show();
    if (script.HasFailed()) {
        const CString reason =
            L"The page " + PageTitle() + L" didn't come in time. " + OneLine(script.GetFailure());
        Fail(SETUP_PAGE_OVERDUE, m_pEntered ? EnteredError(*m_pEntered, reason).Text() : reason);
    }
    return result;
}

void CUnattendedPages::UsePage(const CString& page, const CProduct* product, const CString& shownProduct)
{
    m_strPage = page;
    m_strProduct = shownProduct;
    m_pTable = FindAnswerTableOfExport(m_tables, page);
    m_pRow = m_pTable ? m_pTable->page : FindPage(page);
    const CString section = m_pRow ? CString(m_pRow->section) : CString();
    m_pAnswers = m_answers.Find(section, m_pRow && m_pRow->bOfProduct ? NamesOf(product) : AnswerProduct());
}

void CUnattendedPages::AddSteps(CScript& script)
{
    script.Add(L"wait for the page", [this] { return WaitForPage(); });
    AddAnswerSteps(script);
    AddPictureStep(script);
    AddLeaveSteps(script);
}

void CUnattendedPages::AddAnswerSteps(CScript& script)
{
    if (m_pAnswers) {
        m_entry.AddSteps(script, *m_pAnswers);
    }
    if (m_pTable) {
        m_entry.AddWaitStep(script, *m_pTable, m_pAnswers);
    }
}

void CUnattendedPages::AddPictureStep(CScript& script)
{
    script.Add(L"take a picture", [this] {
        m_pictures.Take(m_hWindow, m_strPage);
        return StepOutcome::Done();
    });
}

void CUnattendedPages::AddLeaveSteps(CScript& script)
{
    script.Add(L"leave the page", [this] { return PressLeave(); });
    script.Add(L"wait for the page's end", [this] { return WaitForEnd(); });
}

// Looks for boxes before each step. After a failure nothing else is done but closing what is open.
StepOutcome CUnattendedPages::Watch()
{
    NoteSignOfLife(); // the page's loop runs; a page that is too slow has limits of its own
    if (m_hHandled && IsWindow(m_hHandled)) {
        return StepOutcome::Done(); // its answer is under way; the step's deadline guards it
    }
    m_hHandled = nullptr;
    if (const std::optional<MessageBoxView> box = FindMessageBox()) {
        OnBox(*box);
        return StepOutcome::NotYet(L"a box is being answered");
    }
    if (OnCancelQuestion()) {
        return StepOutcome::NotYet(L"the cancel question is being answered");
    }
    if (m_failure && m_hWindow && IsWindow(m_hWindow)) {
        if (CloseWindowOfPage()) {
            return StepOutcome::NotYet(L"what the page has opened is being closed");
        }
        DestroyWindow(m_hWindow); // no handler is left that could still use it
        return StepOutcome::NotYet(L"the page is being closed");
    }
    return StepOutcome::Done();
}

StepOutcome CUnattendedPages::WaitForPage()
{
    const HWND page = m_pManager->m_hCurrentPage;
    if (!page || !IsWindowVisible(page)) {
        return StepOutcome::NotYet(L"the page isn't there");
    }
    m_hPage = page;
    m_hWindow = page;
    return StepOutcome::Done();
}

StepOutcome CUnattendedPages::PressLeave()
{
    if (m_failure) {
        return StepOutcome::Done();
    }
    if (m_pDialog && !m_pDialog->MayBeLeft()) {
        return StepOutcome::NotYet(L"a page is at work and keeps the dialog from being left");
    }
    const bool cancels = m_pAnswers && m_pAnswers->bCancel;
    // Behind the build nothing is left to cancel: the page has one button, and both words press it.
    const bool isOutcome = m_pRow && m_pRow->IsOutcome();
    const CControl button(m_hWindow, cancels && !isOutcome ? IDC_CANCEL : IDC_NEXT);
    if (!button.NeedUsable().IsDone()) {
        Fail(SETUP_ANSWER_REFUSED,
             cancels ? PageError(L"The page can't be canceled: its button Cancel is off.").Text()
                     : WhyNextIsOff().Text());
        return StepOutcome::Done();
    }
    m_log.Line(cancels ? L"  leave = cancel" : L"  leave = next");
    m_leftAt = GetTickCount64();
    ForgetQuestion();
    return button.Click();
}

StepOutcome CUnattendedPages::WaitForEnd()
{
    if (m_failure || !IsWindow(m_hWindow) || GetTickCount64() - m_leftAt < STAY_MILLISECONDS) {
        return StepOutcome::NotYet(L"the page is still there");
    }
    if (m_pDialog) {
        UseTab(m_pDialog->GetFront());
    }
    Fail(SETUP_ANSWER_REFUSED, PageStayedText(L"The page stays after its button was pressed."));
    return StepOutcome::NotYet(L"the page is being closed");
}

CString CUnattendedPages::PageStayedText(const wchar_t* what) const
{
    const CString why = m_strLastBox.IsEmpty() ? CString(L" It doesn't say why.")
                                               : L" It asked last: \"" + OneLine(m_strLastBox) + L"\"";
    AnswersError error = PageError(what + why);
    if (m_pLastQuestion) {
        error.strKey = PageName() + L"." + QUESTION_PREFIX + m_pLastQuestion->pBox->role;
        error.strSource = m_pLastQuestion->origin.strSource;
        error.nLine = m_pLastQuestion->origin.nLine;
    }
    return error.Text();
}

void CUnattendedPages::OnBox(const MessageBoxView& box)
{
    m_hHandled = box.window;
    m_leftAt = GetTickCount64();
    if (m_failure) {
        Dismiss(box);
        return;
    }
    if (OnConfigureCancel(box)) {
        return;
    }
    if (m_pDialog && m_pDialog->GetBoxTab() >= 0) { // Continue asks the pages of other tabs too
        UseTab(m_pDialog->GetBoxTab());
    }
    m_strLastBox = box.text;
    m_log.Line(L"  Box \"" + OneLine(box.text) + L"\"");
    m_pictures.Take(box.window, m_strPage, L"-box");
    const BoxVerdict verdict = JudgeBox(m_pTable, m_pAnswers, box.text, box.buttons != MB_OK, PageText);
    if (const CString cause = CauseWithoutPage(box, verdict); !cause.IsEmpty()) {
        Fail(SETUP_FAILED, cause);
        Dismiss(box);
        return;
    }
    AnswerBox(box, verdict);
}

// Of a box that no page puts because of its answers; empty for all others.
CString CUnattendedPages::CauseWithoutPage(const MessageBoxView& box, const BoxVerdict& verdict) const
{
    using Subject = CConfigureDialog::BoxSubject;
    const Subject subject = m_pDialog ? m_pDialog->GetBoxSubject() : Subject::Page;
    if (subject != Subject::Dialog && verdict.pBox) {
        return CString(); // the page's own, even while it is being made
    }
    if (subject == Subject::NewPage) {
        return L"The page " + PageTitle() + L" can't be shown in the configure dialog. " + OneLine(box.text);
    }
    // Before there is a page, the library itself complains.
    return subject == Subject::Dialog || !m_hPage ? OneLine(box.text) : CString();
}

void CUnattendedPages::AnswerBox(const MessageBoxView& box, const BoxVerdict& verdict)
{
    switch (verdict.meaning) {
    case BoxMeaning::Answered: {
        const bool yes = verdict.pAnswer->bYes;
        m_pLastQuestion = verdict.pAnswer;
        m_log.Line(CString(L"  ") + QUESTION_PREFIX + verdict.pBox->role + (yes ? L" = yes" : L" = no"));
        PressBoxButton(box, yes ? IDYES : IDNO);
        return;
    }
    case BoxMeaning::Noticed:
        PressBoxButton(box, IDOK);
        return;
    case BoxMeaning::Unanswered:
        m_pictures.Take(m_hWindow, m_strPage, L"-stopped");
        ReportQuestion(box, verdict);
        break;
    case BoxMeaning::Refused:
        m_pictures.Take(m_hWindow, m_strPage, L"-stopped");
        ReportRefusal(box, verdict);
        break;
    }
    Dismiss(box);
}

void CUnattendedPages::PressBoxButton(const MessageBoxView& box, int button)
{
    const StepOutcome pressed = AnswerMessageBox(box, button);
    if (!pressed.IsDone()) {
        Fail(SETUP_UNANSWERED_BOX, PageTitle() + L": " + OneLine(box.text) + L" " + pressed.GetReason());
        Dismiss(box);
    }
}

void CUnattendedPages::ReportQuestion(const MessageBoxView& box, const BoxVerdict& verdict)
{
    const CString reason =
        L"A question has no answer: \"" + OneLine(box.text) + L"\"" +
        (verdict.pBox ? CString(L" Add ") + QUESTION_PREFIX + verdict.pBox->role + L" = yes or no."
                      : CString(L" Change the answers so that it doesn't come up."));
    Fail(SETUP_UNANSWERED_BOX, (m_pEntered ? EnteredError(*m_pEntered, reason) : PageError(reason)).Text());
}

// Names the answer that the page deals with or that the box is about, with its line.
void CUnattendedPages::ReportRefusal(const MessageBoxView& box, const BoxVerdict& verdict)
{
    const PageAnswer* refused = m_pEntered ? m_pEntered : verdict.pRefused;
    AnswersError error = refused ? EnteredError(*refused, OneLine(box.text)) : PageError(OneLine(box.text));
    if (!refused && verdict.pBox && verdict.pBox->key) {
        error.strKey = PageName() + L"." + verdict.pBox->key;
        error.strReason += L" The answers don't hold this key; the page proposed the value.";
    }
    Fail(SETUP_ANSWER_REFUSED, error.Text());
}

bool CUnattendedPages::OnCancelQuestion()
{
    const HWND question = FindWindowWithControls({IDC_CANCEL_QUESTION});
    if (!question) {
        return false;
    }
    m_hHandled = question;
    if (!m_failure) {
        m_pictures.Take(question, m_strPage, L"-box");
    }
    // Only "leave = cancel" brings it up, and who says that means it.
    const StepOutcome pressed = CControl(question, IDYES).Click();
    if (!pressed.IsDone()) {
        Fail(SETUP_UNANSWERED_BOX,
             PageTitle() + L": the cancel question can't be answered: " + pressed.GetReason());
        DestroyWindow(question);
    }
    return true;
}

// A picker or a menu: the page's handler that has opened it still waits for it.
bool CUnattendedPages::CloseWindowOfPage()
{
    const std::vector<HWND> windows = TopLevelWindows();
    if (windows.empty() || windows.front() == m_hWindow) {
        return false;
    }
    if (FindPopupMenu()) {
        EndMenu();
        return true;
    }
    m_hHandled = windows.front();
    PostMessageW(m_hHandled, WM_COMMAND, IDCANCEL, 0);
    return true;
}

// Says no as far as the box allows: nothing may happen because of a run that has failed.
void CUnattendedPages::Dismiss(const MessageBoxView& box)
{
    for (const int button : {IDNO, IDCANCEL, IDOK}) {
        if (AnswerMessageBox(box, button).IsDone()) {
            return;
        }
    }
    EndDialog(box.window, IDCANCEL);
}

void CUnattendedPages::OnEntering(const PageAnswer& answer)
{
    if (m_pEntered == &answer) { // another try, or another step of it
        return;
    }
    m_pEntered = &answer;
    CString values;
    for (const CString& field : answer.fields) {
        values += (values.IsEmpty() ? CString() : CString(L", ")) + field;
    }
    m_log.Line(CString(L"  ") + answer.pKey->word + (answer.bKept ? KEPT_SUFFIX : L"") + L" = " + values);
}

void CUnattendedPages::OnEntered()
{
    m_pEntered = nullptr;
}

bool CUnattendedPages::HasProduct(const PageAnswer& answer) const
{
    const AnswerKey& key = *answer.pKey;
    if (!key.property || !m_pProduct) {
        return false;
    }
    constexpr int CAPACITY = 1024; // as the page has it
    wchar_t buffer[CAPACITY] = L"";
    int size = CAPACITY;
    const CString value = m_pProduct->GetMsiProperty(key.property, buffer, &size) ? buffer : L"";
    return key.propertyOn ? (value.IsEmpty() || value == key.propertyOn) == IsYes(answer.Value())
                          : value == answer.Value();
}

void CUnattendedPages::OnRefused(const PageAnswer& answer, const CString& reason)
{
    if (!m_failure) {
        m_pictures.Take(m_hWindow, m_strPage, L"-stopped");
        Fail(SETUP_ANSWER_REFUSED,
             RefusedAnswer(*m_pAnswers, answer.pKey->word, answer.origin,
                           BehindProduct(m_strProduct, answer.QuotedFields() + L": " + reason))
                 .Text());
    }
}

// The first edit that is empty is what the page misses.
AnswersError CUnattendedPages::WhyNextIsOff() const
{
    AnswersError error =
        PageError(L"The page can't be left with these answers: its button Next is off. An answer that "
                  L"the page needs is missing or empty.");
    for (const AnswerKey& key : m_pTable ? m_pTable->keys : std::span<const AnswerKey>()) {
        const bool isEdit = key.kind == AnswerKind::Text || key.kind == AnswerKind::Path;
        if (!isEdit || !CanBeEntered(m_hPage, *m_pTable, key.word) ||
            !ReadAnswer(m_hPage, *m_pTable, key.word).value_or(L"x").IsEmpty()) {
            continue;
        }
        error.strKey = PageName() + L"." + key.word;
        for (const PageAnswer& answer : m_pAnswers ? m_pAnswers->entries : std::vector<PageAnswer>()) {
            if (answer.pKey == &key) {
                error.strSource = answer.origin.strSource;
                error.nLine = answer.origin.nLine;
            }
        }
        break;
    }
    return error;
}

void CUnattendedPages::Fail(unsigned int exitCode, const CString& cause)
{
    if (!m_failure) { // the first failure is the cause of all that follow
        m_failure = RunOutcome{exitCode, cause, false};
    }
}

AnswersError CUnattendedPages::PageError(const CString& reason) const
{
    return {PageOrigin().strSource, PageOrigin().nLine, PageName(), BehindProduct(m_strProduct, reason)};
}

// The fields tell lines of one key apart.
AnswersError CUnattendedPages::EnteredError(const PageAnswer& answer, const CString& reason) const
{
    const bool isLine = answer.pKey->kind == AnswerKind::List;
    return RefusedAnswer(
        *m_pAnswers, answer.pKey->word, answer.origin,
        BehindProduct(m_strProduct, isLine ? answer.QuotedFields() + L": " + reason : reason));
}

CString CUnattendedPages::PageTitle() const
{
    return OfProduct(PageName(), m_strProduct);
}

CString CUnattendedPages::PageName() const
{
    return m_pRow ? CString(m_pRow->section) : m_strPage;
}

AnswerOrigin CUnattendedPages::PageOrigin() const
{
    return m_pAnswers ? m_pAnswers->origin : AnswerOrigin();
}
