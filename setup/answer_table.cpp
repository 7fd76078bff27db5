#include "setup/answer_table.h"

#include "setup/page_answers.h"

#include <algorithm>

namespace {

constexpr const PageAnswerTable* TABLES[] = {&BEGIN_ANSWERS,   &SETTINGS_ANSWERS, &RESOURCES_ANSWERS,
                                             &NOTICES_ANSWERS, &CONTACT_ANSWERS,  &COMPLETE_ANSWERS,
                                             &FAILED_ANSWERS};

} // namespace

AnswerTables PageAnswerTables()
{
    return TABLES;
}

const PageAnswerTable* FindAnswerTable(AnswerTables tables, const CString& section)
{
    for (const PageAnswerTable* table : tables) {
        if (section == table->page->section) {
            return table;
        }
    }
    return nullptr;
}

const PageAnswerTable* FindAnswerTableOfExport(AnswerTables tables, const CString& exportName)
{
    for (const PageAnswerTable* table : tables) {
        if (exportName == WizardExport(*table->page) ||
            (table->page->bTab && exportName == TabExport(*table->page))) {
            return table;
        }
    }
    return nullptr;
}

const AnswerKey* FindAnswerKey(const PageAnswerTable& table, const CString& word)
{
    for (const AnswerKey& key : table.keys) {
        if (word == key.word) {
            return &key;
        }
    }
    return nullptr;
}

const AnswerBox* FindQuestion(const PageAnswerTable& table, const CString& role)
{
    for (const AnswerBox& box : table.boxes) {
        if (box.kind == BoxKind::Question && role == box.role) {
            return &box;
        }
    }
    return nullptr;
}

bool IsPathField(const AnswerKey& key, std::size_t field)
{
    return key.kind == AnswerKind::List ? key.fields[field] == FieldKind::Path : key.kind == AnswerKind::Path;
}

bool IsListKey(const PageAnswerTable& table, const CString& word)
{
    const AnswerKey* key = FindAnswerKey(table, word);
    return key && key->kind == AnswerKind::List;
}

std::size_t EntryOrder(const PageAnswerTable& table, const AnswerKey& key)
{
    const auto isOfList = [](const AnswerKey& row) {
        return row.kind == AnswerKind::List || row.kind == AnswerKind::Clear;
    };
    const AnswerKey* row =
        isOfList(key) ? &*std::find_if(table.keys.begin(), table.keys.end(), isOfList) : &key;
    return static_cast<std::size_t>(row - table.keys.data()) * 2 + (key.kind == AnswerKind::List ? 1 : 0);
}

int EntryPlace(const PageAnswerTable& table, const AnswerKey& entry)
{
    int place = 0;
    for (const AnswerKey& key : table.keys) {
        if (&key == &entry) {
            break;
        }
        if (key.control == entry.control) {
            ++place;
        }
    }
    return place;
}
