#include "include/resource_ids.h"
#include "setup/page_answers.h"

namespace {

constexpr AnswerKey KEYS[] = {
    {.word = L"parts_bay", .kind = AnswerKind::Check, .control = IDC_PARTS_BAY},
    {.word = L"member_bay", .kind = AnswerKind::Check, .control = IDC_MEMBER_BAY},
    {.word = L"round_trip", .kind = AnswerKind::Check, .control = IDC_ROUND_TRIP},
    {.word = L"send_computer_name", .kind = AnswerKind::Check, .control = IDC_SEND_COMPUTER_NAME},
    {.word = L"search_locations", .kind = AnswerKind::Check, .control = IDC_SEARCH_LOCATIONS},
};

} // namespace

constexpr PageAnswerTable RESOURCES_ANSWERS = {.page = &RowOfSection(L"resources"), .keys = KEYS};
