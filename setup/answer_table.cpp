#include "setup/answer_table.h"

#include "setup/page_answers.h"

#include <algorithm>

namespace {

constexpr const PageAnswerTable* TABLES[] = {&BEGIN_ANSWERS,        &SETTINGS_ANSWERS,   &RESOURCES_ANSWERS,
                                             &NOTICES_ANSWERS,      &PATHS_ANSWERS,      &FILES_ANSWERS,
                                             &SERVICE_PACK_ANSWERS, &CONTACT_ANSWERS,    &COMPLETE_ANSWERS,
                                             &FAILED_ANSWERS,       &WORKSTATION_ANSWERS};

bool TrimSuffix(CString& key, const wchar_t* suffix)
{
    const int length = CString(suffix).GetLength();
    if (key.GetLength() <= length || key.Right(length) != suffix) {
        return false;
    }
    key = key.Left(key.GetLength() - length);
    return true;
}

} // namespace

AnswerKeyForm::AnswerKeyForm(const CString& key) : strWord(key)
{
    bLeftOut = TrimSuffix(strWord, LEFT_OUT_SUFFIX);
    bLiteral = TrimSuffix(strWord, LITERAL_SUFFIX);
    bKept = TrimSuffix(strWord, KEPT_SUFFIX);
}

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
    return key.fields.empty() ? key.kind == AnswerKind::Path : key.fields[field] == FieldKind::Path;
}

bool IsListKey(const PageAnswerTable& table, const CString& word)
{
    const AnswerKey* key = FindAnswerKey(table, word);
    return key && key->kind == AnswerKind::List;
}

std::size_t EntryOrder(const PageAnswerTable& table, const AnswerKey& key)
{
    const AnswerKey* row =
        IsOfAdapter(key) ? &*std::find_if(table.keys.begin(), table.keys.end(), IsOfAdapter) : &key;
    const bool isBehindClearing = IsOfAdapter(key) && key.kind != AnswerKind::Clear;
    return static_cast<std::size_t>(row - table.keys.data()) * 2 + (isBehindClearing ? 1 : 0);
}

bool IsOfAdapter(const AnswerKey& key)
{
    return key.kind == AnswerKind::Value || key.kind == AnswerKind::List || key.kind == AnswerKind::Clear ||
           key.kind == AnswerKind::Choice;
}

bool IsOfList(const AnswerKey& key)
{
    return key.kind == AnswerKind::Clear || (key.kind == AnswerKind::List && !key.bReplaces);
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
