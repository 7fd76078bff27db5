#include "setup/unattended_pages.h"

#include "automation/control.h"
#include "automation/list_control.h"
#include "automation/message_box.h"
#include "automation/window_finder.h"
#include "base/scope_exit.h"
#include "include/navigation.h"
#include "include/resource_ids.h"
#include "include/setup_manager.h"
#include "setup/box_rules.h"
#include "setup/configure_dialog.h"
#include "setup/configure_rules.h"
#include "setup/exit_codes.h"
#include "setup/run_record.h"
#include "setup/text_forms.h"
#include "setup/texts.h"

namespace {

constexpr DWORD PAGE_MILLISECONDS = 30000;    // for a page to come, and for each step on it
constexpr ULONGLONG STAY_MILLISECONDS = 1500; // a page that has shown neither an end nor a box by then stays

// The rows of a drop-down list's word stand in the order of its lines.
int EntryPlace(const AnswerKey& entry)
{
    int place = 0;
    for (const AnswerKey& row : AnswerKeys()) {
        if (&row == &entry) {
            break;
        }
        if (CString(row.section) == entry.section && row.control == entry.control) {
            ++place;
        }
    }
    return place;
}

// The same answer may be good for one product and refused for another.
CString BehindProduct(const CString& product, const CString& reason)
{
    return product.IsEmpty() ? reason : product + L": " + reason;
}

CString Lines(const std::vector<CString>& lines)
{
    CString list;
    for (const CString& line : lines) {
        list += (list.IsEmpty() ? CString(L"\"") : CString(L", \"")) + line + L"\"";
    }
    return list.IsEmpty() ? CString(L"nothing") : list;
}

} // namespace

int CUnattendedPages::Show(const CString& page, const CString& product, PageFunction show,
                           PageContext& context)
{
    Begin(*context.pSetupManager);
    UsePage(page, product);
    m_log.Line(L"Page " + PageTitle());
    return Play([this](CScript& script) { AddSteps(script); }, [&] { return show(&context); });
}

int CUnattendedPages::ShowConfigure(CConfigureDialog& dialog)
{
    Begin(dialog.GetManager());
    m_pDialog = &dialog;
    m_log.Line(L"Configure dialog");
    const scope_exit ended([this] { m_pDialog = nullptr; });
    return Play([this](CScript& script) { AddConfigureSteps(script); }, [&] { return dialog.Run(); });
}

void CUnattendedPages::Begin(CSetupManager& manager)
{
    m_pManager = &manager;
    m_pManager->m_hCurrentPage = nullptr; // the page before left its handle
    m_hPage = nullptr;
    m_hWindow = nullptr;
    m_hHandled = nullptr;
    m_strLastBox.Empty();
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
        Fail(SETUP_PAGE_OVERDUE,
             L"The page " + PageTitle() + L" is overdue. " + OneLine(script.GetFailure()));
    }
    return result;
}

void CUnattendedPages::UsePage(const CString& page, const CString& product)
{
    m_strPage = page;
    m_strProduct = product;
    m_pRow = FindPage(page);
    m_pAnswers = m_pRow ? m_answers.Find(m_pRow->section) : nullptr;
}

void CUnattendedPages::UseTab(int tab)
{
    UsePage(m_pDialog->GetTab(tab).strPage, m_pDialog->GetTab(tab).strProduct);
}

void CUnattendedPages::AddSteps(CScript& script)
{
    script.Add(L"wait for the page", [this] { return WaitForPage(); });
    AddAnswerSteps(script, m_pAnswers);
    AddPictureStep(script);
    AddLeaveSteps(script);
}

void CUnattendedPages::AddConfigureSteps(CScript& script)
{
    script.Add(L"wait for the dialog", [this] { return WaitForPage(); });
    for (int tab = 0; tab < m_pDialog->GetTabCount(); ++tab) {
        script.Add(L"go to the tab", [this, tab] {
            m_bTabChanged.reset();
            m_bTabChanged = m_failure || m_pDialog->GoTo(tab); // answers boxes while it waits
            return StepOutcome::Done();
        });
        script.Add(L"wait for the tab", [this, tab] { return WaitForTab(tab); });
        UseTab(tab);
        AddAnswerSteps(script, m_pAnswers);
        AddPictureStep(script);
        if (m_pAnswers && m_pAnswers->bCancel) {
            break;
        }
    }
    AddLeaveSteps(script);
}

void CUnattendedPages::AddAnswerSteps(CScript& script, const PageAnswers* answers)
{
    if (!answers) {
        return;
    }
    for (const PageAnswer& answer : answers->entries) {
        script.Add(CString(L"enter ") + answer.pKey->word, [this, &answer] { return Enter(answer); });
        script.Add(CString(L"check ") + answer.pKey->word, [this, &answer] { return CheckEntered(answer); });
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
        DestroyWindow(m_hWindow); // no box is left whose handler could still use it
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

StepOutcome CUnattendedPages::WaitForTab(int tab)
{
    if (m_failure) {
        return StepOutcome::Done();
    }
    if (!m_bTabChanged) {
        return StepOutcome::NotYet(L"the page before is still being stored");
    }
    if (!*m_bTabChanged) {
        Fail(SETUP_ANSWER_REFUSED, PageStayedText(L"The page stays when another tab is chosen."));
        return StepOutcome::Done();
    }
    UseTab(tab);
    m_log.Line(L"Page " + PageTitle() + L" (tab)");
    m_hPage = m_pDialog->GetPage(tab);
    if (!m_hPage) {
        m_pictures.Take(m_hWindow, m_strPage, L"-stopped");
        Fail(SETUP_FAILED, L"The page " + PageTitle() + L" can't be shown in the configure dialog.");
    }
    return StepOutcome::Done();
}

StepOutcome CUnattendedPages::Enter(const PageAnswer& answer)
{
    const int id = static_cast<int>(answer.pKey->control);
    const CControl control(m_hPage, id);
    if (answer.pKey->kind == AnswerKind::Radio) {
        // What is so already needs no click, though the page may not let it be changed.
        const bool implied = answer.pKey->bDefaultWhenHidden && !control.IsVisible();
        if (control.Exists() && (implied || control.IsChecked())) {
            LogAnswer(answer);
            return StepOutcome::Done();
        }
    }
    if (!control.IsVisible()) {
        return Refuse(answer,
                      L"The page doesn't offer it here. It belongs to another mode, or to other media.");
    }
    if (!control.IsUsable()) {
        return Refuse(answer, L"The page shows it but doesn't let it be changed here. Take the answer out.");
    }
    LogAnswer(answer);
    StepOutcome entered = StepOutcome::Done();
    switch (answer.pKey->kind) {
    case AnswerKind::Text:
    case AnswerKind::Path:
        entered = control.SetText(answer.strValue);
        break;
    case AnswerKind::Radio:
        entered = control.Click();
        break;
    case AnswerKind::Check:
        entered = control.SetChecked(IsYes(answer.strValue));
        break;
    case AnswerKind::Entry:
        entered = CListControl(m_hPage, id).Select(EntryPlace(*answer.pKey));
        break;
    case AnswerKind::ListLine: {
        const CListControl list(m_hPage, id);
        entered = list.Select(answer.strValue);
        if (!entered.IsDone()) {
            return Refuse(answer, L"It isn't in the list, which offers " + Lines(list.GetLines()) + L".");
        }
        break;
    }
    }
    return entered.IsDone() ? entered : Refuse(answer, L"The page doesn't take it: " + entered.GetReason());
}

StepOutcome CUnattendedPages::CheckEntered(const PageAnswer& answer)
{
    const CControl control(m_hPage, static_cast<int>(answer.pKey->control));
    const AnswerKind kind = answer.pKey->kind;
    if (m_failure || (kind != AnswerKind::Radio && kind != AnswerKind::Check) || !control.IsVisible()) {
        return StepOutcome::Done();
    }
    const bool wanted = kind == AnswerKind::Radio || IsYes(answer.strValue);
    return Until(control.IsChecked() == wanted, L"the click has no effect yet");
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
    const bool isOutcome = m_pAnswers && m_pAnswers->pPage->IsOutcome();
    const CControl button(m_hWindow, cancels && !isOutcome ? IDC_CANCEL : IDC_NEXT);
    if (!button.NeedUsable().IsDone()) {
        Fail(SETUP_ANSWER_REFUSED,
             PageError(cancels ? L"The page can't be canceled: its button Cancel is off."
                               : L"The page can't be left with these answers: its button Next is off. An "
                                 L"answer that the page needs is missing or empty.")
                 .Text());
        return StepOutcome::Done();
    }
    m_log.Line(cancels ? L"  leave = cancel" : L"  leave = next");
    m_leftAt = GetTickCount64();
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
    return PageError(what + why).Text();
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
    if (const CString cause = CauseWithoutPage(box); !cause.IsEmpty()) {
        Fail(SETUP_FAILED, cause);
        Dismiss(box);
        return;
    }
    const CString section = m_pRow ? m_pRow->section : L"";
    AnswerBox(box, JudgeBox(section, m_pAnswers, box.text, box.buttons != MB_OK, PageText));
}

// Of a box that no page puts because of its answers; empty for all others.
CString CUnattendedPages::CauseWithoutPage(const MessageBoxView& box) const
{
    using Subject = CConfigureDialog::BoxSubject;
    const Subject subject = m_pDialog ? m_pDialog->GetBoxSubject() : Subject::Page;
    if (subject == Subject::NewPage) {
        return L"The page " + PageTitle() + L" can't be shown in the configure dialog. " + OneLine(box.text);
    }
    // Before there is a page, the library itself complains.
    return subject == Subject::Dialog || !m_hPage ? OneLine(box.text) : CString();
}

// Only "leave = cancel" brings it up, and who says that means it.
bool CUnattendedPages::OnConfigureCancel(const MessageBoxView& box)
{
    if (!m_pDialog || box.text != SetupText(IDS_CONFIGURE_CANCEL_QUESTION)) {
        return false;
    }
    m_pictures.Take(box.window, m_strPage, L"-box");
    return AnswerMessageBox(box, IDYES).IsDone();
}

void CUnattendedPages::AnswerBox(const MessageBoxView& box, const BoxVerdict& verdict)
{
    switch (verdict.meaning) {
    case BoxMeaning::Answered: {
        const bool yes = verdict.pAnswer->bYes;
        m_log.Line(CString(L"  ") + QUESTION_PREFIX + verdict.pBox->role + (yes ? L" = yes" : L" = no"));
        const StepOutcome pressed = AnswerMessageBox(box, yes ? IDYES : IDNO);
        if (!pressed.IsDone()) {
            Fail(SETUP_UNANSWERED_BOX, PageTitle() + L": " + OneLine(box.text) + L" " + pressed.GetReason());
            Dismiss(box);
        }
        return;
    }
    case BoxMeaning::Unanswered:
        m_pictures.Take(m_hWindow, m_strPage, L"-stopped");
        Fail(SETUP_UNANSWERED_BOX,
             PageError(L"A question has no answer: \"" + OneLine(box.text) + L"\"" +
                       (verdict.pBox
                            ? CString(L" Add ") + QUESTION_PREFIX + verdict.pBox->role + L" = yes or no."
                            : CString(L" Change the answers so that it doesn't come up.")))
                 .Text());
        break;
    case BoxMeaning::Refused:
        m_pictures.Take(m_hWindow, m_strPage, L"-stopped");
        ReportRefusal(box, verdict);
        break;
    }
    Dismiss(box);
}

void CUnattendedPages::ReportRefusal(const MessageBoxView& box, const BoxVerdict& verdict)
{
    AnswersError error = PageError(OneLine(box.text));
    if (verdict.pBox) {
        error.strKey = CString(verdict.pBox->section) + L"." + verdict.pBox->key;
    }
    if (verdict.pRefused) {
        error.strSource = verdict.pRefused->origin.strSource;
        error.nLine = verdict.pRefused->origin.nLine;
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

void CUnattendedPages::LogAnswer(const PageAnswer& answer)
{
    m_log.Line(CString(L"  ") + answer.pKey->word + L" = " + answer.strValue);
}

StepOutcome CUnattendedPages::Refuse(const PageAnswer& answer, const CString& reason)
{
    if (!m_failure) {
        m_pictures.Take(m_hWindow, m_strPage, L"-stopped");
        Fail(SETUP_ANSWER_REFUSED,
             RefusedAnswer(*m_pAnswers, answer.pKey->word, answer.origin,
                           BehindProduct(m_strProduct, L"\"" + answer.strValue + L"\": " + reason))
                 .Text());
    }
    return StepOutcome::Done();
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
