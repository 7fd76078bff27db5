#include "setup/files_words.h"
#include "setup/page_answers.h"

namespace {

// A page's own path is a text: folders of the workstations, as the tree shows them. Sources are paths of this computer.
constexpr FieldKind PATH_IN_TREE[] = {FieldKind::Text};
constexpr FieldKind PATH_AND_NAME[] = {FieldKind::Text, FieldKind::Text};
constexpr FieldKind PATH_AND_SOURCE[] = {FieldKind::Text, FieldKind::Path};

// The lines are entered in the order in which they stand.
constexpr AnswerKey KEYS[] = {
    {.word = L"clear", .kind = AnswerKind::Clear},
    {.word = FILES_FOLDER, .kind = AnswerKind::List, .fields = PATH_AND_NAME},
    {.word = FILES_FILE, .kind = AnswerKind::List, .fields = PATH_AND_SOURCE},
    {.word = FILES_FOLDER_TREE, .kind = AnswerKind::List, .fields = PATH_AND_SOURCE},
    {.word = FILES_DRIVE, .kind = AnswerKind::List, .fields = PATH_IN_TREE},
    {.word = FILES_RENAME, .kind = AnswerKind::List, .fields = PATH_AND_NAME},
    {.word = FILES_REMOVE, .kind = AnswerKind::List, .fields = PATH_IN_TREE},
};

// All come up while a line is entered.
constexpr AnswerBox BOXES[] = {
    {.kind = BoxKind::Question, .role = L"replace", .string = IDS_FILES_REPLACE, .bWhileEntering = true},
    {.kind = BoxKind::Refusal, .string = IDS_FILES_MISSING},
    {.kind = BoxKind::Refusal, .string = IDS_FILES_SIBLING_HAS_NAME},
    {.kind = BoxKind::Refusal, .string = IDS_FILES_DRIVE_INVALID},
    {.kind = BoxKind::Refusal, .string = IDS_FILES_NAME_INVALID},
    {.kind = BoxKind::Refusal, .string = IDS_FILES_NOT_ADDED},
};

// A folder of many thousand files on a share comes in one line.
constexpr unsigned int WORK_SECONDS = 3600;

} // namespace

constexpr PageAnswerTable FILES_ANSWERS = {
    .page = &RowOfSection(L"files"), .keys = KEYS, .boxes = BOXES, .workSeconds = WORK_SECONDS};
