// The plain controls of a page, by the rows of its answers: what they hold, and how a person would enter it.
#pragma once

#include "automation/step_outcome.h"
#include "setup/answer_table.h"

#include <windows.h>

#include <optional>

// What the control of the word holds, as an answer puts it. Nothing when it isn't there, isn't shown on the page (a radio's
// answer counts while one of its buttons is), or holds what no answer can say, such as no selection. The page itself may be
// hidden, as one that is going is.
[[nodiscard]] std::optional<CString> ReadAnswer(HWND page, const PageAnswerTable& table, const CString& word);

// True while a person could enter another value, were the page shown.
[[nodiscard]] bool CanBeEntered(HWND page, const PageAnswerTable& table, const CString& word);

// True when the page does by itself, or holds already, what the answer asks for, so that nothing need be entered.
[[nodiscard]] bool IsImplied(HWND page, const AnswerKey& key);

// Enters the value, which is one of the row's, by the row's control. Done doesn't mean that a click has its effect yet.
// Failed: the page doesn't take it, with the reason.
[[nodiscard]] StepOutcome EnterAnswer(HWND page, const PageAnswerTable& table, const AnswerKey& key,
                                      const CString& value);

// Done once a click has its effect.
[[nodiscard]] StepOutcome WaitForAnswer(HWND page, const AnswerKey& key, const CString& value);
