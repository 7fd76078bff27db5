// What of a page's contents is worth an answer, where lists and values stand for themselves.
#include "setup/page_contents.h"
#include "tests/setup/recorded_text.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

namespace {

constexpr FieldKind TEXT[] = {FieldKind::Text};
constexpr AnswerKey KEYS[] = {
    {.word = L"fonts", .kind = AnswerKind::List, .fields = TEXT, .bReplaces = true},
    {.word = L"log", .kind = AnswerKind::Value, .fields = TEXT},
    {.word = L"clear", .kind = AnswerKind::Clear},
    {.word = L"file", .kind = AnswerKind::List, .fields = TEXT},
    {.word = L"colors", .kind = AnswerKind::List, .fields = TEXT, .bReplaces = true},
    {.word = L"way", .kind = AnswerKind::Choice, .control = 1, .choice = L"long"},
    {.word = L"way", .kind = AnswerKind::Choice, .control = 2, .choice = L"short"},
};
constexpr PageRow ROW = {.stem = L"Any", .section = L"any"};
constexpr PageAnswerTable TABLE = {.page = &ROW, .keys = KEYS};

PageContents Contents(const std::vector<ListLine>& lines)
{
    PageContents contents;
    contents.lines = lines;
    return contents;
}

CString Recorded(const std::vector<ListLine>& proposed, const std::vector<ListLine>& held)
{
    RecordedPage page;
    page.pTable = &TABLE;
    page.values = RecordContents(TABLE, Contents(proposed), Contents(held), false);
    return RecordedText(page);
}

const std::vector<ListLine> PROPOSED = {
    {L"fonts", {L"a"}}, {L"fonts", {L"b"}}, {L"log", {L"c"}}, {L"file", {L"d"}}, {L"colors", {L""}}};

TEST(PageContents, WhatNobodyChangedIsProposedInTheTablesOrder)
{
    EXPECT_EQ(Recorded(PROPOSED, PROPOSED),
              CString(L"any: (fonts=a), (fonts=b), (log=c), (file=d), (colors=)"));
}

// Or the new line would come before the others when it is entered again.
TEST(PageContents, AListThatReplacesIsChangedAsAWholeAndByItself)
{
    EXPECT_EQ(Recorded(PROPOSED, {{L"fonts", {L"a"}},
                                  {L"fonts", {L"new"}},
                                  {L"fonts", {L"b"}},
                                  {L"log", {L"c"}},
                                  {L"file", {L"d"}},
                                  {L"colors", {L""}}}),
              CString(L"any: fonts=a, fonts=new, fonts=b, (log=c), (file=d), (colors=)"));
    EXPECT_EQ(Recorded(PROPOSED, {{L"fonts", {L""}}, {L"log", {L""}}, {L"colors", {L""}}}),
              CString(L"any: fonts=, log=, clear=yes, (colors=)"));
}

TEST(PageContents, AChoiceIsRecordedOnceHoweverManyButtonsItHas)
{
    EXPECT_EQ(Recorded({{L"way", {L"long"}}}, {{L"way", {L"short"}}}), CString(L"any: way=short"));
    EXPECT_EQ(Recorded({{L"way", {L"long"}}}, {{L"way", {L"long"}}}), CString(L"any: (way=long)"));
}

} // namespace
