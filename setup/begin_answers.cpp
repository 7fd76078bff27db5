#include "include/resource_ids.h"
#include "setup/page_answers.h"

namespace {

constexpr AnswerKey KEYS[] = {
    // Media that is no deployment's image shows no choice of mode: it can only create.
    {.word = L"mode",
     .kind = AnswerKind::Radio,
     .control = IDC_MODE_CREATE,
     .choice = L"create",
     .bDefaultWhenHidden = true},
    {.word = L"mode", .kind = AnswerKind::Radio, .control = IDC_MODE_CREATE_FROM, .choice = L"create_from"},
    {.word = L"mode", .kind = AnswerKind::Radio, .control = IDC_MODE_MODIFY, .choice = L"modify"},
    {.word = L"location", .kind = AnswerKind::Path, .control = IDC_LOCATION},
    {.word = L"base", .kind = AnswerKind::ListLine, .control = IDC_DEPLOYMENTS},
    {.word = L"name", .kind = AnswerKind::Text, .control = IDC_NAME},
    {.word = L"platform", .kind = AnswerKind::Radio, .control = IDC_PLATFORM_X86, .choice = L"x86"},
    {.word = L"platform", .kind = AnswerKind::Radio, .control = IDC_PLATFORM_X64, .choice = L"x64"},
};

constexpr AnswerBox BOXES[] = {
    {BoxKind::Question, ROLE_LOCAL_LOCATION, L"location", IDS_LOCATION_NOT_NETWORK},
    {BoxKind::Question, L"confirm_folder", L"location", IDS_CONFIRM_FOLDER},
    {BoxKind::Question, L"replace", L"name", IDS_REPLACE_DEPLOYMENT},
    {BoxKind::Question, ROLE_REPLACE_UNLISTED, L"name", PROGRAM_BOX},
    {BoxKind::Refusal, nullptr, L"location", IDS_OTHER_PRODUCTS_DEPLOYMENT},
    {BoxKind::Refusal, nullptr, L"location", IDS_LOCATION_MISSING},
    {BoxKind::Refusal, nullptr, L"location", IDS_LOCATION_UNUSABLE},
    {BoxKind::Refusal, nullptr, L"location", IDS_LOCATION_ACCESS_DENIED},
    {BoxKind::Refusal, nullptr, L"location", IDS_PATH_TOO_LONG},
    {BoxKind::Refusal, nullptr, L"name", IDS_NAME_INVALID},
    {BoxKind::Refusal, nullptr, L"platform", IDS_PLATFORM_NOT_ALLOWED},
};

} // namespace

constexpr PageAnswerTable BEGIN_ANSWERS = {.page = &RowOfSection(L"begin"), .keys = KEYS, .boxes = BOXES};
