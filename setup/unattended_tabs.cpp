// The tabs of the configure dialog without a person: which are shown, how one is reached, and the dialog's own question.
#include "automation/message_box.h"
#include "base/scope_exit.h"
#include "include/navigation.h"
#include "setup/configure_dialog.h"
#include "setup/exit_codes.h"
#include "setup/product_names.h"
#include "setup/resource.h"
#include "setup/texts.h"
#include "setup/unattended_pages.h"

namespace {

// An answer of a section beside its "show = no"; of no source when it says nothing else.
struct AnswerBeside
{
    CString strKey;
    AnswerOrigin origin;
};

AnswerBeside FindAnswerBesideShow(const PageAnswers& section)
{
    if (!section.entries.empty()) {
        return {section.entries.front().pKey->word, section.entries.front().origin};
    }
    if (!section.questions.empty()) {
        const QuestionAnswer& question = section.questions.front();
        return {CString(QUESTION_PREFIX) + question.pBox->role, question.origin};
    }
    return {LEAVE_KEY, section.leaveOrigin};
}

} // namespace

int CUnattendedPages::ShowConfigure(CConfigureDialog& dialog)
{
    Begin(dialog.GetManager());
    m_pDialog = &dialog;
    m_log.Line(L"Configure dialog");
    const scope_exit ended([this] { m_pDialog = nullptr; });
    if (!ChooseFirstTab() || !CheckLeftOutTabs()) {
        return NAVIGATION_CANCEL;
    }
    return Play([this](CScript& script) { AddConfigureSteps(script); }, [&] { return dialog.Run(); });
}

void CUnattendedPages::UseTab(int tab)
{
    const ConfigureTab& described = m_pDialog->GetTab(tab);
    UsePage(described.strPage, described.context.pProduct, described.strProduct);
}

bool CUnattendedPages::ChooseFirstTab()
{
    for (int tab = 0; tab < m_pDialog->GetTabCount(); ++tab) {
        UseTab(tab);
        if (!m_pAnswers || m_pAnswers->bShow) {
            m_pDialog->OpenOn(tab);
            return true;
        }
    }
    UseTab(0);
    Fail(SETUP_PAGE_NOT_REACHED,
         RefusedAnswer(*m_pAnswers, SHOW_KEY, m_pAnswers->showOrigin,
                       L"The answers leave out every tab of the configure dialog, which opens on one. Let it "
                       L"show at least one of them.")
             .Text());
    return false;
}

bool CUnattendedPages::CheckLeftOutTabs()
{
    for (const std::vector<PageAnswers>* sections : {&m_answers.fileSections, &m_answers.lineSections}) {
        for (const PageAnswers& section : *sections) {
            const AnswerBeside answer = FindAnswerBesideShow(section);
            if (section.bShow || answer.origin.strSource.IsEmpty() || IsShownAnywhere(section)) {
                continue;
            }
            Fail(SETUP_PAGE_NOT_REACHED,
                 RefusedAnswer(section, answer.strKey, answer.origin,
                               L"The answers leave out the page's tab by show = no, so this one can't be "
                               L"entered. Take one of the two out.")
                     .Text());
            return false;
        }
    }
    return true;
}

// The product's own section, or the command line, may show what a section leaves out.
bool CUnattendedPages::IsShownAnywhere(const PageAnswers& section)
{
    for (int tab = 0; tab < m_pDialog->GetTabCount(); ++tab) {
        UseTab(tab);
        const bool counts = section.strProduct.IsEmpty() ||
                            NamesOf(m_pDialog->GetTab(tab).context.pProduct).IsNamed(section.strProduct);
        if (counts && m_pTable == section.pTable && m_pAnswers && m_pAnswers->bShow) {
            return true;
        }
    }
    return false;
}

void CUnattendedPages::AddConfigureSteps(CScript& script)
{
    script.Add(L"wait for the dialog", [this] { return WaitForPage(); });
    for (int tab = 0; tab < m_pDialog->GetTabCount(); ++tab) {
        UseTab(tab);
        if (m_pAnswers && !m_pAnswers->bShow) {
            continue;
        }
        script.Add(L"go to the tab", [this, tab] {
            m_bTabChanged.reset();
            ForgetQuestion();
            m_bTabChanged = m_failure || m_pDialog->GoTo(tab); // answers boxes while it waits
            return StepOutcome::Done();
        });
        script.Add(L"wait for the tab", [this, tab] { return WaitForTab(tab); });
        AddAnswerSteps(script);
        AddPictureStep(script);
        if (m_pAnswers && m_pAnswers->bCancel) {
            break;
        }
    }
    AddLeaveSteps(script);
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

// Only "leave = cancel" brings it up, and who says that means it.
bool CUnattendedPages::OnConfigureCancel(const MessageBoxView& box)
{
    if (!m_pDialog || box.text != SetupText(IDS_CONFIGURE_CANCEL_QUESTION)) {
        return false;
    }
    m_pictures.Take(box.window, m_strPage, L"-box");
    return AnswerMessageBox(box, IDYES).IsDone();
}
