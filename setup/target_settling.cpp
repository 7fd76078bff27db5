#include "setup/target_settling.h"

#include "setup/exit_codes.h"
#include "setup/resource.h"
#include "setup/text_forms.h"
#include "setup/texts.h"
#include "window/wait_cursor.h"

namespace {

constexpr wchar_t SECTION[] = L"begin";
constexpr std::size_t NAMED_FILES = 10; // more would make a box that no screen holds

CString DateOf(const FILETIME& time)
{
    SYSTEMTIME universal = {};
    SYSTEMTIME local = {};
    wchar_t date[100] = {};
    wchar_t clock[100] = {};
    if (!FileTimeToSystemTime(&time, &universal) ||
        !SystemTimeToTzSpecificLocalTime(nullptr, &universal, &local)) {
        return CString(L"?");
    }
    GetDateFormatEx(LOCALE_NAME_USER_DEFAULT, DATE_LONGDATE, &local, nullptr, date, ARRAYSIZE(date), nullptr);
    GetTimeFormatEx(LOCALE_NAME_USER_DEFAULT, TIME_NOSECONDS, &local, nullptr, clock, ARRAYSIZE(clock));
    return CString(date) + L", " + clock;
}

CString FileNames(const std::vector<CString>& files)
{
    CString names;
    for (std::size_t index = 0; index < files.size() && index < NAMED_FILES; ++index) {
        names += (index > 0 ? CString(L"\n") : CString()) + files[index];
    }
    if (files.size() > NAMED_FILES) {
        names += L"\n" + SetupText(IDS_REPLACE_MORE_FILES,
                                   {NumberText(static_cast<long long>(files.size() - NAMED_FILES))});
    }
    return names;
}

// Null without one.
const QuestionAnswer* FindAnswer(const PageAnswers* page)
{
    if (page) {
        for (const QuestionAnswer& answer : page->questions) {
            if (CString(answer.pBox->role) == ROLE_REPLACE_UNLISTED) {
                return &answer;
            }
        }
    }
    return nullptr;
}

TargetVerdict JudgeTarget(CSetupHost& host)
{
    const CWaitCursor waitCursor; // a deployment that has to be asked about is read whole
    return host.JudgeTarget();
}

int ShowBox(const CString& text, UINT style)
{
    return MessageBoxW(nullptr, text, SetupText(IDS_PROGRAM_TITLE), style | MB_SETFOREGROUND);
}

} // namespace

CString ReplacementQuestion(const TargetVerdict& verdict)
{
    CString text =
        SetupText(IDS_REPLACE_UNLISTED, {verdict.strFolder, verdict.strProduct, DateOf(verdict.builtAt)});
    if (verdict.bKeptWhole) {
        text += SetupText(IDS_REPLACE_KEPT_WHOLE);
    } else if (!verdict.ownFiles.empty()) {
        text += SetupText(IDS_REPLACE_OWN_FILES, {FileNames(verdict.ownFiles)});
    }
    return text + SetupText(IDS_REPLACE_QUESTION);
}

TargetSettled CTargetSettling::Settle(CSetupHost& host, bool unattended)
{
    const TargetVerdict verdict = JudgeTarget(host);
    switch (verdict.state) {
    case TargetVerdict::State::Refused:
        return Refuse(verdict, unattended);
    case TargetVerdict::State::NeedsAnswer:
        return unattended ? AskAnswers(host, verdict) : AskPerson(host, verdict);
    case TargetVerdict::State::Free:
    case TargetVerdict::State::MayBeReplaced:
        break;
    }
    return TargetSettled::GoOn;
}

void CTargetSettling::NoteAnswer(bool yes) const
{
    if (m_note) {
        m_note(SECTION, ROLE_REPLACE_UNLISTED, yes);
    }
}

TargetSettled CTargetSettling::Refuse(const TargetVerdict& verdict, bool unattended)
{
    if (unattended) {
        return Fail(SETUP_ANSWER_REFUSED, verdict.bLocationRefused ? L"location" : L"name", verdict.message);
    }
    m_log.Line(L"Refused: " + verdict.message);
    ShowBox(verdict.message, MB_OK | MB_ICONERROR);
    return TargetSettled::ChooseAgain;
}

TargetSettled CTargetSettling::AskPerson(CSetupHost& host, const TargetVerdict& verdict)
{
    const CString question = ReplacementQuestion(verdict);
    const bool yes = ShowBox(question, MB_YESNO | MB_ICONWARNING | MB_DEFBUTTON2) == IDYES;
    m_log.Line(L"Question \"" + OneLine(question) + (yes ? L"\" = yes" : L"\" = no"));
    NoteAnswer(yes);
    if (!yes) {
        host.DeclineReplacing();
        return TargetSettled::ChooseAgain;
    }
    host.AllowReplacing(verdict);
    return TargetSettled::GoOn;
}

TargetSettled CTargetSettling::AskAnswers(CSetupHost& host, const TargetVerdict& verdict)
{
    const CString question = OneLine(ReplacementQuestion(verdict));
    m_log.Line(L"Question \"" + question + L"\"");
    const QuestionAnswer* const answer = FindAnswer(m_answers.Find(SECTION));
    const CString key = CString(QUESTION_PREFIX) + ROLE_REPLACE_UNLISTED;
    if (!answer) {
        return Fail(SETUP_UNANSWERED_BOX, L"name",
                    L"A question has no answer: \"" + question + L"\" Add " + key + L" = yes or no.");
    }
    m_log.Line(L"  " + key + (answer->bYes ? L" = yes" : L" = no"));
    NoteAnswer(answer->bYes);
    if (!answer->bYes) {
        return Fail(SETUP_ANSWER_REFUSED, L"name",
                    L"The deployment in \"" + verdict.strFolder +
                        L"\" is not to be replaced. Choose another name or "
                        L"location.");
    }
    host.AllowReplacing(verdict);
    return TargetSettled::GoOn;
}

TargetSettled CTargetSettling::Fail(unsigned int exitCode, const wchar_t* key, const CString& reason)
{
    AnswersError error{CString(), 0, CString(SECTION) + L"." + key, reason};
    if (const PageAnswers* page = m_answers.Find(SECTION)) {
        error.strSource = page->origin.strSource;
        error.nLine = page->origin.nLine;
        for (const PageAnswer& answer : page->entries) {
            if (CString(answer.pKey->word) == key) {
                error.strSource = answer.origin.strSource;
                error.nLine = answer.origin.nLine;
            }
        }
    }
    m_failure = RunOutcome{exitCode, error.Text(), false};
    return TargetSettled::EndRun;
}
