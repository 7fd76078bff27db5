#include "include/resource_ids.h"
#include "setup/page_answers.h"

namespace {

constexpr AnswerKey KEYS[] = {
    {.word = L"network_log", .kind = AnswerKind::Check, .control = IDC_NETWORK_LOG},
    {.word = L"log_folder", .kind = AnswerKind::Path, .control = IDC_LOG_FOLDER},
    {.word = L"keep_copy", .kind = AnswerKind::Check, .control = IDC_SETTINGS_OPTION},
    {.word = L"install_mode", .kind = AnswerKind::Radio, .control = IDC_INSTALL_SILENT, .choice = L"silent"},
    {.word = L"install_mode",
     .kind = AnswerKind::Radio,
     .control = IDC_INSTALL_PROGRESS,
     .choice = L"progress"},
    {.word = L"mc3", .kind = AnswerKind::Check, .control = IDC_MC3},
};

constexpr AnswerBox BOXES[] = {
    {BoxKind::Question, L"doubtful_log_folder", L"log_folder", IDS_LOG_FOLDER_UNUSABLE},
    {BoxKind::Refusal, nullptr, L"log_folder", IDS_LOG_FOLDER_NOT_NETWORK},
};

} // namespace

constexpr PageAnswerTable SETTINGS_ANSWERS = {
    .page = &RowOfSection(L"settings"), .keys = KEYS, .boxes = BOXES};
