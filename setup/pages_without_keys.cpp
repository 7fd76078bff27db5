// Pages that ask nothing but whether to go on.
#include "setup/page_answers.h"

constexpr PageAnswerTable CONTACT_ANSWERS = {.page = &RowOfSection(L"contact")};
constexpr PageAnswerTable COMPLETE_ANSWERS = {.page = &RowOfSection(L"complete")};
constexpr PageAnswerTable FAILED_ANSWERS = {.page = &RowOfSection(L"failed")};
