// Answers of the test pages, under the names of pages of the product: what their plain controls, their list and their question
// are called, and how the list is read.
#pragma once

#include "automation/list_control.h"
#include "setup/page_lists.h"
#include "tests/setup/tab_pages/tab_page_ids.h"

namespace RecorderTable {

inline constexpr AnswerNeed CHECKED = {L"check", L"yes"};
inline constexpr FieldKind LINE_FIELDS[] = {FieldKind::Text};
inline constexpr AnswerKey KEYS[] = {
    {.word = L"check", .kind = AnswerKind::Check, .control = IDC_TEST_CHECK},
    {.word = L"clear", .kind = AnswerKind::Clear},
    {.word = L"line", .kind = AnswerKind::List, .fields = LINE_FIELDS},
    {.word = L"value", .kind = AnswerKind::Text, .control = IDC_TEST_EDIT, .needs = CHECKED},
    {.word = L"choice", .kind = AnswerKind::Radio, .control = IDC_TEST_CHOICE1, .choice = L"one"},
    {.word = L"choice", .kind = AnswerKind::Radio, .control = IDC_TEST_CHOICE2, .choice = L"two"},
};
inline constexpr AnswerBox BOXES[] = {
    {BoxKind::Question, L"sure", L"value", IDS_TEST_QUESTION},
    {BoxKind::Refusal, nullptr, L"value", IDS_TEST_REFUSAL},
    {.role = L"entry", .key = L"value", .string = IDS_TEST_ENTRY_QUESTION, .bWhileEntering = true},
};
// Every question is one of this page's.
inline constexpr AnswerBox ALL_BOXES[] = {
    {BoxKind::Question, ROLE_REPLACE_UNLISTED, L"value", PROGRAM_BOX},
    {BoxKind::Question, L"any", L"value", IDS_TEST_ANY_QUESTION},
};
inline constexpr PageAnswerTable BEGIN = {.page = &RowOfSection(L"begin"), .keys = KEYS, .boxes = ALL_BOXES};
inline constexpr PageAnswerTable SETTINGS = {
    .page = &RowOfSection(L"settings"), .keys = KEYS, .boxes = BOXES};
inline constexpr PageAnswerTable RESOURCES = {
    .page = &RowOfSection(L"resources"), .keys = KEYS, .boxes = BOXES};
inline constexpr PageAnswerTable NOTICES = {.page = &RowOfSection(L"notices"), .keys = KEYS, .boxes = BOXES};
inline constexpr const PageAnswerTable* TABLES[] = {&BEGIN, &SETTINGS, &RESOURCES, &NOTICES};

// The lines of the list box that stands where the test pages have their drop-down list.
class CLines final : public IPageLists
{
public:
    std::vector<ListLine> Read(HWND page) const override
    {
        std::vector<ListLine> lines;
        for (const CString& line : CListControl(page, IDC_TEST_COMBO).GetLines()) {
            lines.push_back({L"line", {line}});
        }
        return lines;
    }
    std::vector<ListStep> MakeSteps(const std::vector<const PageAnswer*>&) const override { return {}; }
    bool IsAtWork(HWND) const override { return false; }
};
inline const CLines LINES;
inline const PageListsRow LISTS[] = {{&SETTINGS, &LINES}};

} // namespace RecorderTable
