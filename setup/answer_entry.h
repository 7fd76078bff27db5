// Enters the answers of a page by its own controls, step by step.
#pragma once

#include "automation/script.h"
#include "setup/answers.h"
#include "setup/page_lists.h"

#include <windows.h>

// Who has the page shown.
class IAnswerEntryEvents
{
public:
    // Whose controls take the answers.
    [[nodiscard]] virtual HWND GetPage() const = 0;
    // True once the run has failed: nothing more is entered.
    [[nodiscard]] virtual bool HasFailed() const = 0;
    // From now on the page deals with this answer; a box that comes up is about it.
    virtual void OnEntering(const PageAnswer& answer) = 0;
    // All answers are entered; what comes up now is about the page.
    virtual void OnEntered() = 0;
    // Whether the product has the value of an answer that stands on the tab alone, so that nothing need be entered.
    [[nodiscard]] virtual bool HasProduct(const PageAnswer& answer) const = 0;
    // The page doesn't take the answer.
    virtual void OnRefused(const PageAnswer& answer, const CString& reason) = 0;

protected:
    ~IAnswerEntryEvents() = default;
};

class CAnswerEntry
{
public:
    // Borrows both.
    CAnswerEntry(IAnswerEntryEvents& events, PageListsTable lists) : m_events(events), m_lists(lists) {}

    // The steps for all answers of a page; `answers` stay as long as the script.
    void AddSteps(CScript& script, const PageAnswers& answers);
    // The step that waits until the page is no longer at work; none for a page that never is. The limit of the answers counts,
    // or else the table's.
    void AddWaitStep(CScript& script, const PageAnswerTable& table, const PageAnswers* answers);

private:
    void AddPlainSteps(CScript& script, const PageAnswers& answers, const PageAnswer& answer);
    void AddKeptSteps(CScript& script, const PageAnswers& answers, const PageAnswer& answer);
    void AddListSteps(CScript& script, const PageAnswers& answers);
    StepOutcome Enter(const PageAnswers& answers, const PageAnswer& answer);
    StepOutcome RunListStep(const ListStep& step);
    // Gives `outcome` back, or has its answer refused.
    StepOutcome Judge(const PageAnswer& answer, const StepOutcome& outcome);

    IAnswerEntryEvents& m_events;
    PageListsTable m_lists;
};
