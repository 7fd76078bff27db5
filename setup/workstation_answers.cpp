#include "include/resource_ids.h"
#include "setup/page_answers.h"

namespace {

constexpr FieldKind NAME_AND_COMMAND[] = {FieldKind::Text, FieldKind::Text};

// The wizard page has the first two alone.
constexpr AnswerKey KEYS[] = {
    {.word = L"desktop_shortcut", .kind = AnswerKind::Check, .control = IDC_DESKTOP_SHORTCUT},
    {.word = L"shortcut", .kind = AnswerKind::List, .fields = NAME_AND_COMMAND, .bReplaces = true},
    {.word = L"browser_required",
     .kind = AnswerKind::Check,
     .control = IDC_BROWSER_REQUIRED,
     .property = L"ZOLT_IE_REQUIRED",
     .propertyOn = L"1"},
    {.word = L"sheet_format",
     .kind = AnswerKind::Check,
     .control = IDC_SHEET_FORMAT,
     .property = L"ZOLT_SHEETX_FORMAT",
     .propertyOn = L"#1"},
    {.word = L"profile",
     .kind = AnswerKind::Text,
     .control = IDC_PROFILE_NAME,
     .property = L"ZOLTDEFAULTPROFILENAME"},
};

constexpr AnswerBox BOXES[] = {
    {.kind = BoxKind::Refusal, .key = L"profile", .string = IDS_PROFILE_NAME_INVALID},
    {.kind = BoxKind::Refusal, .key = L"shortcut", .string = IDS_SHORTCUT_INCOMPLETE},
    {.kind = BoxKind::Refusal,
     .key = L"shortcut",
     .string = IDS_SHORTCUT_NAME_INVALID,
     .bNamesRefused = true},
    {.kind = BoxKind::Refusal, .key = L"shortcut", .string = IDS_SHORTCUT_NAME_TWICE, .bNamesRefused = true},
    {.kind = BoxKind::Refusal,
     .key = L"shortcut",
     .string = IDS_SHORTCUT_SWITCH_UNKNOWN,
     .bNamesRefused = true,
     .bRefusesPiece = true},
};

} // namespace

constexpr PageAnswerTable WORKSTATION_ANSWERS = {
    .page = &RowOfSection(L"workstation"), .keys = KEYS, .boxes = BOXES};
