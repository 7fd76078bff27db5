#include "setup/page_answers.h"
#include "setup/path_words.h"

#include <array>
#include <iterator>

namespace {

// Paths of the workstations, in the words of the page's tree: "Support Files\Custom" is a folder of the product. So none is made
// full against a folder of this computer.
constexpr FieldKind FIELDS[] = {FieldKind::Text};

constexpr auto KEYS = [] {
    std::array<AnswerKey, std::size(PATH_WORDS)> keys;
    for (std::size_t index = 0; index < keys.size(); ++index) {
        keys[index].word = PATH_WORDS[index].word;
        keys[index].kind = PATH_WORDS[index].kind;
        keys[index].fields = FIELDS;
        keys[index].bReplaces = PATH_WORDS[index].kind == AnswerKind::List;
    }
    return keys;
}();

// What is wrong with a path is said as soon as it is entered. Behind Next a path that can't be empty gets its default back.
constexpr AnswerBox BOXES[] = {
    {.kind = BoxKind::Question, .role = L"missing_path", .string = IDS_PATH_MISSING, .bWhileEntering = true},
    {.kind = BoxKind::Refusal, .string = IDS_PATH_FOLDER_INVALID},
    {.kind = BoxKind::Refusal, .string = IDS_PATH_FILE_INVALID},
    {.kind = BoxKind::Refusal, .string = IDS_PATH_UNC},
    {.kind = BoxKind::Notice, .key = L"printer_config_dir", .string = IDS_PRINTER_CONFIG_EMPTY},
    {.kind = BoxKind::Notice, .key = L"printer_desc_dir", .string = IDS_PRINTER_DESC_EMPTY},
    {.kind = BoxKind::Notice, .key = L"printer_style_sheet_dir", .string = IDS_PRINTER_STYLE_SHEET_EMPTY},
    {.kind = BoxKind::Notice, .string = IDS_ACTION_PATH_EMPTY}, // of two keys
};

} // namespace

constexpr PageAnswerTable PATHS_ANSWERS = {.page = &RowOfSection(L"paths"), .keys = KEYS, .boxes = BOXES};
