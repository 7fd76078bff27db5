#include "setup/page_controls.h"

#include "automation/control.h"
#include "automation/list_control.h"
#include "setup/answers.h"

namespace {

CControl ControlOf(HWND page, const AnswerKey& key)
{
    return CControl(page, static_cast<int>(key.control));
}

bool IsShownOn(HWND page, const CControl& control)
{
    HWND window = control.GetWindow();
    while (window && window != page && (GetWindowLongW(window, GWL_STYLE) & WS_VISIBLE)) {
        window = GetAncestor(window, GA_PARENT);
    }
    return window && window == page;
}

CString Lines(const std::vector<CString>& lines)
{
    CString list;
    for (const CString& line : lines) {
        list += (list.IsEmpty() ? CString(L"\"") : CString(L", \"")) + line + L"\"";
    }
    return list.IsEmpty() ? CString(L"nothing") : list;
}

// The choice of the button that is checked.
std::optional<CString> ReadRadio(HWND page, const PageAnswerTable& table, const CString& word)
{
    for (const AnswerKey& key : table.keys) {
        if (word == key.word && IsShownOn(page, ControlOf(page, key)) && ControlOf(page, key).IsChecked()) {
            return CString(key.choice);
        }
    }
    return std::nullopt;
}

// The choice that stands in the table where the selected line stands in the list.
std::optional<CString> ReadEntry(const CListControl& list, const PageAnswerTable& table, const CString& word)
{
    int place = list.GetSelection();
    for (const AnswerKey& key : table.keys) {
        if (word == key.word && place-- == 0) {
            return CString(key.choice);
        }
    }
    return std::nullopt;
}

StepOutcome SelectLine(const CListControl& list, const CString& line)
{
    const StepOutcome selected = list.Select(line);
    return selected.IsDone()
               ? selected
               : StepOutcome::Failed(L"It isn't in the list, which offers " + Lines(list.GetLines()) + L".");
}

} // namespace

std::optional<CString> ReadAnswer(HWND page, const PageAnswerTable& table, const CString& word)
{
    const AnswerKey* key = FindAnswerKey(table, word);
    if (!key) {
        return std::nullopt;
    }
    if (key->kind == AnswerKind::Radio) {
        return ReadRadio(page, table, word);
    }
    const CListControl control(page, static_cast<int>(key->control));
    if (!IsShownOn(page, control)) {
        return std::nullopt;
    }
    switch (key->kind) {
    case AnswerKind::Check:
        return CString(control.IsChecked() ? L"yes" : L"no");
    case AnswerKind::Entry:
        return ReadEntry(control, table, word);
    case AnswerKind::ListLine:
        return control.GetSelection() < 0 ? std::nullopt : std::optional(control.GetSelectedLine());
    case AnswerKind::Text:
    case AnswerKind::Path:
        return control.GetText();
    default:
        return std::nullopt;
    }
}

bool CanBeEntered(HWND page, const PageAnswerTable& table, const CString& word)
{
    for (const AnswerKey& key : table.keys) {
        if (word == key.word && IsShownOn(page, ControlOf(page, key)) && ControlOf(page, key).IsEnabled()) {
            return true;
        }
    }
    return false;
}

bool IsImplied(HWND page, const AnswerKey& key)
{
    const CControl control = ControlOf(page, key);
    return key.kind == AnswerKind::Radio && control.Exists() &&
           ((key.bDefaultWhenHidden && !control.IsVisible()) || control.IsChecked());
}

StepOutcome EnterAnswer(HWND page, const PageAnswerTable& table, const AnswerKey& key, const CString& value)
{
    const CListControl control(page, static_cast<int>(key.control));
    switch (key.kind) {
    case AnswerKind::Text:
    case AnswerKind::Path:
        return control.SetText(value);
    case AnswerKind::Radio:
        return control.Click();
    case AnswerKind::Check:
        return control.SetChecked(IsYes(value));
    case AnswerKind::Entry:
        return control.Select(EntryPlace(table, key));
    case AnswerKind::ListLine:
        return SelectLine(control, value);
    default:
        return StepOutcome::Failed(L"It is no single value.");
    }
}

StepOutcome WaitForAnswer(HWND page, const AnswerKey& key, const CString& value)
{
    const CControl control = ControlOf(page, key);
    if ((key.kind != AnswerKind::Radio && key.kind != AnswerKind::Check) || !control.IsVisible()) {
        return StepOutcome::Done();
    }
    const bool wanted = key.kind == AnswerKind::Radio || IsYes(value);
    return control.IsChecked() == wanted ? StepOutcome::Done()
                                         : StepOutcome::NotYet(L"the click has no effect yet");
}
