#include "setup/answer_entry.h"

#include "automation/control.h"
#include "base/number_text.h"
#include "setup/page_controls.h"

#include <algorithm>
#include <memory>
#include <optional>

namespace {

constexpr wchar_t OFFERED_ELSEWHERE[] =
    L"The page doesn't offer it here. It belongs to another mode, or to other media.";
constexpr wchar_t OFFERED_ON_THE_TAB[] = L"The page doesn't offer it here, but only as a tab of the "
                                         L"configure dialog: when a deployment is modified, or "
                                         L"on media whose flow says configure=\"yes\".";

// The row of the word that the value picks.
const AnswerKey* RowOf(const PageAnswerTable& table, const CString& word, const CString& value)
{
    for (const AnswerKey& key : table.keys) {
        if (word == key.word && (!key.choice || value == key.choice)) {
            return &key;
        }
    }
    return nullptr;
}

// What has to be answered so that the key's control can be reached: what the rest needs comes first.
std::vector<AnswerNeed> NeedsOf(const PageAnswerTable& table, const AnswerKey& key)
{
    std::vector<AnswerNeed> needs;
    for (const AnswerKey* row = &key; row && row->needs.word; row = FindAnswerKey(table, row->needs.word)) {
        needs.insert(needs.begin(), row->needs);
    }
    return needs;
}

// An answer that is another one for a while.
struct Detour
{
    AnswerNeed need;
    std::optional<CString> before;
};

StepOutcome EnterIfOther(HWND page, const PageAnswerTable& table, const CString& word, const CString& value)
{
    const AnswerKey* row = RowOf(table, word, value);
    if (!row || ReadAnswer(page, table, word) == value) {
        return StepOutcome::Done();
    }
    return CanBeEntered(page, table, word)
               ? EnterAnswer(page, table, *row, value)
               : StepOutcome::Failed(L"The page doesn't let " + word + L" be changed here.");
}

// The answers' own limit, where they have one.
unsigned int WorkSeconds(const PageAnswerTable& table, const PageAnswers* answers)
{
    for (const PageAnswer& answer : answers ? answers->entries : std::vector<PageAnswer>()) {
        if (answer.pKey->kind == AnswerKind::WorkLimit) {
            return static_cast<unsigned int>(*ReadWholeNumber(answer.Value(), 1, MOST_WORK_SECONDS));
        }
    }
    return table.workSeconds;
}

StepOutcome WaitForWord(HWND page, const PageAnswerTable& table, const CString& word, const CString& value)
{
    const AnswerKey* row = RowOf(table, word, value);
    return row ? WaitForAnswer(page, *row, value) : StepOutcome::Done();
}

} // namespace

void CAnswerEntry::AddSteps(CScript& script, const PageAnswers& answers)
{
    for (const PageAnswer& answer : answers.entries) {
        if (answer.bKept) { // before the others turn off what it needs
            AddKeptSteps(script, answers, answer);
        }
    }
    bool listsAdded = false;
    for (const PageAnswer& answer : answers.entries) {
        if (answer.pKey->kind == AnswerKind::WorkLimit) {
            continue; // nothing of the page's
        }
        const bool isOfAdapter = IsOfAdapter(*answer.pKey);
        if (isOfAdapter && !listsAdded) {
            AddListSteps(script, answers);
        } else if (!isOfAdapter && !answer.bKept) {
            AddPlainSteps(script, answers, answer);
        }
        listsAdded = listsAdded || isOfAdapter;
    }
    AddWaitStep(script, *answers.pTable, &answers); // what the last answer has begun is still about it
    script.Add(L"end the entering", [this] {
        m_events.OnEntered();
        return StepOutcome::Done();
    });
}

void CAnswerEntry::AddWaitStep(CScript& script, const PageAnswerTable& table, const PageAnswers* answers)
{
    const IPageLists* lists = FindPageLists(m_lists, &table);
    const unsigned int seconds = WorkSeconds(table, answers);
    if (!lists || seconds == 0) {
        return;
    }
    script.Add(
        L"wait for the page's work",
        [this, lists] {
            return m_events.HasFailed() || !lists->IsAtWork(m_events.GetPage())
                       ? StepOutcome::Done()
                       : StepOutcome::NotYet(L"the page is at work");
        },
        seconds * 1000);
}

void CAnswerEntry::AddPlainSteps(CScript& script, const PageAnswers& answers, const PageAnswer& answer)
{
    AddWaitStep(script, *answers.pTable, &answers);
    script.Add(CString(L"enter ") + answer.pKey->word,
               [this, &answers, &answer] { return Enter(answers, answer); });
    script.Add(CString(L"check ") + answer.pKey->word, [this, &answer] {
        const bool isShown =
            ::GetDlgItem(m_events.GetPage(), static_cast<int>(answer.pKey->control)) != nullptr;
        return m_events.HasFailed() || (!isShown && m_events.HasProduct(answer))
                   ? StepOutcome::Done()
                   : WaitForAnswer(m_events.GetPage(), *answer.pKey, answer.Value());
    });
}

// What isn't reached while another answer stands is entered as a person does it: by way of that other answer.
void CAnswerEntry::AddKeptSteps(CScript& script, const PageAnswers& answers, const PageAnswer& answer)
{
    const PageAnswerTable& table = *answers.pTable;
    const auto detours = std::make_shared<std::vector<Detour>>();
    for (const AnswerNeed& need : NeedsOf(table, *answer.pKey)) {
        detours->push_back({need, {}});
    }
    const auto add = [&](const CString& name, std::size_t index, bool back, bool waits) {
        AddWaitStep(script, table, &answers);
        script.Add(name, [this, &table, &answer, detours, index, back, waits] {
            Detour& detour = (*detours)[index];
            if (m_events.HasFailed() || (back && !detour.before)) {
                return StepOutcome::Done();
            }
            m_events.OnEntering(answer);
            const HWND page = m_events.GetPage();
            const CString word = detour.need.word;
            if (!back && !waits) {
                detour.before = ReadAnswer(page, table, word);
            }
            const CString value = back ? *detour.before : CString(detour.need.value);
            return Judge(answer, waits ? WaitForWord(page, table, word, value)
                                       : EnterIfOther(page, table, word, value));
        });
    };
    for (std::size_t index = 0; index < detours->size(); ++index) {
        add(CString(L"reach ") + answer.pKey->word, index, false, false);
        add(CString(L"check ") + (*detours)[index].need.word, index, false, true);
    }
    AddPlainSteps(script, answers, answer);
    for (std::size_t index = detours->size(); index-- > 0;) {
        add(CString(L"put back ") + (*detours)[index].need.word, index, true, false);
        add(CString(L"check ") + (*detours)[index].need.word, index, true, true);
    }
}

void CAnswerEntry::AddListSteps(CScript& script, const PageAnswers& answers)
{
    const IPageLists* lists = FindPageLists(m_lists, answers.pTable);
    std::vector<const PageAnswer*> lines;
    for (const PageAnswer& answer : answers.entries) {
        if (IsOfAdapter(*answer.pKey) && (answer.pKey->kind != AnswerKind::Clear || IsYes(answer.Value()))) {
            lines.push_back(&answer);
        }
    }
    if (!lists || lines.empty()) {
        return;
    }
    for (const ListStep& step : lists->MakeSteps(lines)) {
        AddWaitStep(script, *answers.pTable, &answers);
        script.Add(step.strName, [this, step] { return RunListStep(step); });
    }
}

StepOutcome CAnswerEntry::RunListStep(const ListStep& step)
{
    if (m_events.HasFailed()) {
        return StepOutcome::Done();
    }
    m_events.OnEntering(*step.pAnswer);
    return Judge(*step.pAnswer, step.run(m_events.GetPage()));
}

StepOutcome CAnswerEntry::Enter(const PageAnswers& answers, const PageAnswer& answer)
{
    if (m_events.HasFailed()) {
        return StepOutcome::Done();
    }
    m_events.OnEntering(answer);
    const HWND page = m_events.GetPage();
    const AnswerKey& key = *answer.pKey;
    // What is so already needs no click, though the page may not let it be changed.
    if (IsImplied(page, key)) {
        return StepOutcome::Done();
    }
    const CControl control(page, static_cast<int>(key.control));
    if (!control.Exists() && m_events.HasProduct(answer)) {
        return StepOutcome::Done();
    }
    if (!control.IsVisible()) {
        const bool isOfTheTab = key.property && !control.Exists();
        return Judge(answer, StepOutcome::Failed(isOfTheTab ? OFFERED_ON_THE_TAB : OFFERED_ELSEWHERE));
    }
    if (!control.IsUsable()) {
        return Judge(answer,
                     StepOutcome::Failed(L"The page shows it but doesn't let it be changed here. Take the "
                                         L"answer out."));
    }
    const StepOutcome entered = EnterAnswer(page, *answers.pTable, key, answer.Value());
    if (entered.IsDone() || key.kind == AnswerKind::ListLine) {
        return Judge(answer, entered);
    }
    return Judge(answer, StepOutcome::Failed(L"The page doesn't take it: " + entered.GetReason()));
}

StepOutcome CAnswerEntry::Judge(const PageAnswer& answer, const StepOutcome& outcome)
{
    if (outcome.IsFailed()) {
        m_events.OnRefused(answer, outcome.GetReason());
        return StepOutcome::Done();
    }
    return outcome;
}
