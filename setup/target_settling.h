// Before the wizard goes on from its first page, and before it builds: what stands in the new deployment's place is refused,
// or its replacement is confirmed, by a person or by the answers.
#pragma once

#include "host/setup_host.h"
#include "setup/answers.h"
#include "setup/run_log.h"

#include <functional>
#include <optional>
#include <utility>

enum class TargetSettled
{
    GoOn,
    ChooseAgain, // refused, or not confirmed: a person goes back to the first page
    EndRun,      // the same without a person; GetFailure has the outcome
};

class CTargetSettling
{
public:
    // What is to be known of an answer to a question of this class.
    using AnswerNote = std::function<void(const CString& section, const wchar_t* role, bool yes)>;

    // Borrows both.
    CTargetSettling(const CAnswers& answers, CRunLog& log, AnswerNote note = {})
        : m_answers(answers), m_log(log), m_note(std::move(note))
    {
    }

    [[nodiscard]] TargetSettled Settle(CSetupHost& host, bool unattended);
    [[nodiscard]] const std::optional<RunOutcome>& GetFailure() const { return m_failure; }

private:
    void NoteAnswer(bool yes) const;
    TargetSettled Refuse(const TargetVerdict& verdict, bool unattended);
    TargetSettled AskPerson(CSetupHost& host, const TargetVerdict& verdict);
    TargetSettled AskAnswers(CSetupHost& host, const TargetVerdict& verdict);
    TargetSettled Fail(unsigned int exitCode, const wchar_t* key, const CString& reason);

    const CAnswers& m_answers;
    CRunLog& m_log;
    const AnswerNote m_note;
    std::optional<RunOutcome> m_failure;
};

// The question about a deployment that the first page had no reason to ask about.
[[nodiscard]] CString ReplacementQuestion(const TargetVerdict& verdict);
