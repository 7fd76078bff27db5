// The rows of all pages' answers.
#include "setup/answer_table.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

TEST(SetupAnswerTable, EachPageThatIsWrittenHasATable)
{
    for (const PageRow& page : PAGE_TABLE) {
        const PageAnswerTable* table =
            page.section ? FindAnswerTable(PageAnswerTables(), page.section) : nullptr;
        EXPECT_EQ(table != nullptr, page.section != nullptr) << Utf8(page.stem);
        EXPECT_EQ(table ? table->page : nullptr, page.section ? &page : nullptr) << Utf8(page.stem);
    }
}

TEST(SetupAnswerTable, RadiosAndEntriesHaveChoicesAndOthersHaveNone)
{
    for (const PageAnswerTable* table : PageAnswerTables()) {
        for (const AnswerKey& key : table->keys) {
            const bool hasChoices = key.kind == AnswerKind::Radio || key.kind == AnswerKind::Entry ||
                                    key.kind == AnswerKind::Choice;
            EXPECT_EQ(hasChoices, key.choice != nullptr) << Utf8(key.word);
            const bool hasFields = key.kind == AnswerKind::List || key.kind == AnswerKind::Value;
            EXPECT_EQ(hasFields, !key.fields.empty()) << Utf8(key.word);
            EXPECT_TRUE(key.kind != AnswerKind::Value || key.fields.size() == 1u) << Utf8(key.word);
            EXPECT_TRUE(key.kind == AnswerKind::List || !key.bReplaces) << Utf8(key.word);
        }
    }
}

TEST(SetupAnswerTable, QuestionsHaveRolesAndTheKeysOfBoxesAreThePages)
{
    for (const PageAnswerTable* table : PageAnswerTables()) {
        for (const AnswerBox& box : table->boxes) {
            EXPECT_EQ(box.kind == BoxKind::Question, box.role != nullptr) << box.string;
            EXPECT_TRUE(!box.key || FindAnswerKey(*table, box.key)) << box.string;
            // What comes up behind Next is about no answer that is being entered.
            const CString section = table->page->section;
            const bool isWhileEntering = section == L"paths" || section == L"files";
            EXPECT_TRUE(box.key || isWhileEntering) << box.string;
            EXPECT_TRUE(!box.bWhileEntering || box.kind == BoxKind::Question) << box.string;
        }
    }
}

TEST(SetupAnswerTable, WhatAKeyNeedsStandsBeforeItAndIsOneOfItsValues)
{
    for (const PageAnswerTable* table : PageAnswerTables()) {
        for (const AnswerKey& key : table->keys) {
            if (!key.needs.word) {
                continue;
            }
            const AnswerKey* need = FindAnswerKey(*table, key.needs.word);
            ASSERT_NE(need, nullptr) << Utf8(key.word);
            EXPECT_LT(need, &key) << Utf8(key.word);
            const bool isCheck = need->kind == AnswerKind::Check && CString(key.needs.value) == L"yes";
            EXPECT_TRUE(isCheck || need->kind == AnswerKind::Entry || need->kind == AnswerKind::Radio)
                << Utf8(key.word);
        }
    }
}

TEST(SetupAnswerTable, NoControlAndNoStringStandsTwiceOnAPage)
{
    for (const PageAnswerTable* table : PageAnswerTables()) {
        std::set<std::string> seen;
        for (const AnswerKey& key : table->keys) {
            // An entry's rows are lines of one list.
            const std::string line = key.kind == AnswerKind::Entry ? Utf8(key.choice) : "";
            if (key.kind == AnswerKind::WorkLimit || (IsOfAdapter(key) && key.kind != AnswerKind::Choice)) {
                EXPECT_EQ(key.control, 0u) << Utf8(key.word);
                continue;
            }
            EXPECT_TRUE(seen.insert("control " + std::to_string(key.control) + line).second) << key.control;
        }
        for (const AnswerBox& box : table->boxes) {
            EXPECT_TRUE(seen.insert("string " + std::to_string(box.string)).second) << box.string;
        }
    }
}

} // namespace
