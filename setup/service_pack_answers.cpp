#include "include/resource_ids.h"
#include "setup/page_answers.h"
#include "setup/service_pack_words.h"

namespace {

constexpr FieldKind PATCH_PATH[] = {FieldKind::Path};

constexpr AnswerKey KEYS[] = {
    {.word = SERVICE_PACK_CHOICE,
     .kind = AnswerKind::Choice,
     .control = IDC_PATCH_NONE,
     .choice = SERVICE_PACK_NONE},
    {.word = SERVICE_PACK_CHOICE,
     .kind = AnswerKind::Choice,
     .control = IDC_PATCH_OFFERED,
     .choice = SERVICE_PACK_OFFERED},
    {.word = SERVICE_PACK_CHOICE,
     .kind = AnswerKind::Choice,
     .control = IDC_PATCH_LISTED,
     .choice = SERVICE_PACK_FILES},
    {.word = L"clear", .kind = AnswerKind::Clear},
    {.word = SERVICE_PACK_FILE, .kind = AnswerKind::List, .fields = PATCH_PATH},
    {.word = SERVICE_PACK_WAY,
     .kind = AnswerKind::Choice,
     .control = IDC_PATCH_APPEND,
     .choice = SERVICE_PACK_APPEND},
    {.word = SERVICE_PACK_WAY,
     .kind = AnswerKind::Choice,
     .control = IDC_PATCH_MERGE,
     .choice = SERVICE_PACK_MERGE},
    {.word = L"download_limit", .kind = AnswerKind::WorkLimit},
};

// What the system says of a download or of the installer's call has no row: it refuses the answer that is being entered.
constexpr AnswerBox BOXES[] = {
    {.kind = BoxKind::Refusal, .key = SERVICE_PACK_CHOICE, .string = IDS_PATCH_NOT_DOWNLOADED},
    {.kind = BoxKind::Refusal, .key = SERVICE_PACK_CHOICE, .string = IDS_PATCH_CHANGED},
    {.kind = BoxKind::Refusal, .key = SERVICE_PACK_CHOICE, .string = IDS_PATCHES_NOT_APPLICABLE},
    {.kind = BoxKind::Refusal, .key = SERVICE_PACK_FILE, .string = IDS_PATCH_UNUSABLE},
    {.kind = BoxKind::Refusal, .key = SERVICE_PACK_FILE, .string = IDS_PATCH_LISTED_ALREADY},
    {.kind = BoxKind::Refusal, .key = SERVICE_PACK_FILE, .string = IDS_PATCH_OF_OTHER_PRODUCT},
};

// A service pack of a gigabyte over a slow line comes within it.
constexpr unsigned int WORK_SECONDS = 3600;

} // namespace

constexpr PageAnswerTable SERVICE_PACK_ANSWERS = {
    .page = &RowOfSection(L"service_pack"), .keys = KEYS, .boxes = BOXES, .workSeconds = WORK_SECONDS};
