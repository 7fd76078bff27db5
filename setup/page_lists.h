// Pages with lists and trees: how what they hold is read, and entered as a person does, by the page's own commands, label
// edits, menus and pickers. Pages that need time say when they are at work.
#pragma once

#include "automation/step_outcome.h"
#include "setup/answers.h"

#include <windows.h>

#include <functional>
#include <span>
#include <vector>

// A line as an answer puts it.
struct ListLine
{
    CString strWord;
    std::vector<CString> fields;
    bool operator==(const ListLine&) const = default;
};

// One step of entering, tried again while it says "not yet". A failed one is a refusal of the answer, with the reason: so
// must a step end that sees that the page hasn't done what was asked, or the run waits until the page is overdue.
//
// Between the tries of all steps the run answers boxes. What is left open when it fails, a picker or a menu, is closed for
// the step. Before each step the page's work is waited for, so one that begins some is followed by one that finds it done;
// a box that comes meanwhile is about the answer of the step before.
struct ListStep
{
    const PageAnswer* pAnswer = nullptr;
    CString strName;
    std::function<StepOutcome(HWND page)> run;
};

class IPageLists
{
public:
    // What the page's lists hold now, values included, in the order in which it can be entered again. Looking changes
    // nothing on the page. A list whose lines replace the page's has one line with empty fields when it is empty.
    [[nodiscard]] virtual std::vector<ListLine> Read(HWND page) const = 0;

    // The steps that enter these answers, all of kinds List, Value and Clear, one after the other. They stay as long as the page.
    [[nodiscard]] virtual std::vector<ListStep>
    MakeSteps(const std::vector<const PageAnswer*>& answers) const = 0;

    // True while the page is at work and is to be waited for before it is left (PageAnswerTable::workSeconds).
    [[nodiscard]] virtual bool IsAtWork(HWND page) const = 0;

protected:
    ~IPageLists() = default;
};

// Which page has lists. The pages' own, or those of tests.
struct PageListsRow
{
    const PageAnswerTable* table = nullptr;
    const IPageLists* lists = nullptr;
};
using PageListsTable = std::span<const PageListsRow>;
PageListsTable AllPageLists();

// Null for a page without.
inline const IPageLists* FindPageLists(PageListsTable rows, const PageAnswerTable* table)
{
    for (const PageListsRow& row : rows) {
        if (row.table == table) {
            return row.lists;
        }
    }
    return nullptr;
}
