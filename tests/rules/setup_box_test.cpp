#include "include/resource_ids.h"
#include "setup/box_rules.h"
#include "setup/text_forms.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

CString LoadText(unsigned int id)
{
    switch (id) {
    case IDS_REPLACE_DEPLOYMENT:
        return L"Replace \"%s\"?";
    case IDS_LOCATION_NOT_NETWORK:
        return L"Not a network path.";
    case IDS_SHORTCUT_SWITCH_UNKNOWN:
        return L"Only /b and /nologo. Change this part";
    case IDS_SHORTCUT_NAME_TWICE:
        return L"Change this name";
    case IDS_NAME_INVALID:
        return L"No such name.";
    default:
        return CString();
    }
}

const PageAnswerTable* TableOf(const wchar_t* section)
{
    return FindAnswerTable(PageAnswerTables(), section);
}

PageAnswers BeginAnswers()
{
    PageAnswers page;
    page.pTable = TableOf(L"begin");
    page.entries.push_back(
        {FindAnswerKey(*page.pTable, L"name"), {L"a;b"}, false, false, {L"answers.txt", 7}});
    page.questions.push_back({FindQuestion(*page.pTable, L"replace"), true, {L"answers.txt", 9}});
    return page;
}

constexpr FieldKind FILE_FIELDS[] = {FieldKind::Text, FieldKind::Path};
constexpr AnswerKey LIST_KEYS[] = {{.word = L"file", .kind = AnswerKind::List, .fields = FILE_FIELDS}};
constexpr AnswerBox LIST_BOXES[] = {{BoxKind::Refusal, nullptr, L"file", IDS_NAME_INVALID}};
constexpr PageAnswerTable LIST_TABLE = {
    .page = &RowOfSection(L"begin"), .keys = LIST_KEYS, .boxes = LIST_BOXES};

TEST(SetupBoxes, OfSeveralLinesTheOneThatTheBoxNamesIsRefused)
{
    PageAnswers page;
    page.pTable = &LIST_TABLE;
    for (const wchar_t* file : {L"C:\\one.txt", L"C:\\two.txt", L"C:\\three.txt"}) {
        page.entries.push_back({LIST_KEYS, {L"", file}, false, false, {}});
    }
    const auto refused = [&page](const wchar_t* text) {
        const auto load = [](unsigned int) { return CString(L"The file %s is missing."); };
        return JudgeBox(&LIST_TABLE, &page, text, false, load).pRefused;
    };
    EXPECT_EQ(refused(L"The file C:\\two.txt is missing."), &page.entries[1]);
    EXPECT_EQ(refused(L"The file D:\\other.txt is missing."), &page.entries[2]);
}

// Whatever is being entered is meant.
constexpr AnswerBox ENTRY_BOXES[] = {{.kind = BoxKind::Refusal, .string = IDS_NAME_INVALID},
                                     {.kind = BoxKind::Notice, .string = IDS_LOCATION_NOT_NETWORK}};
constexpr PageAnswerTable ENTRY_TABLE = {
    .page = &RowOfSection(L"begin"), .keys = LIST_KEYS, .boxes = ENTRY_BOXES};

TEST(SetupBoxes, ARefusalOfWhateverIsBeingEnteredBlamesNoKey)
{
    PageAnswers page;
    page.pTable = &ENTRY_TABLE;
    page.entries.push_back({LIST_KEYS, {L"", L"No such name."}, false, false, {}});
    const BoxVerdict verdict = JudgeBox(&ENTRY_TABLE, &page, L"No such name.", false, LoadText);
    EXPECT_EQ(verdict.meaning, BoxMeaning::Refused);
    EXPECT_EQ(verdict.pBox, &ENTRY_BOXES[0]);
    EXPECT_EQ(verdict.pRefused, nullptr);
}

TEST(SetupBoxes, ATextThatTheSystemHasFilledInIsKnownWithItsLineEnds)
{
    const auto load = [](unsigned int) { return CString(L"Replace \"%1\"?\n\nNew file:\n%2"); };
    PageAnswers page;
    page.pTable = TableOf(L"files");
    page.questions.push_back({FindQuestion(*page.pTable, L"replace"), false, {L"answers.txt", 9}});
    const BoxVerdict verdict =
        JudgeBox(page.pTable, &page, L"Replace \"a.txt\"?\r\n\r\nNew file:\r\nC:\\a.txt", true, load);
    EXPECT_EQ(verdict.meaning, BoxMeaning::Answered);
    EXPECT_EQ(verdict.pAnswer, &page.questions.front());
}

TEST(SetupBoxes, ANoticeIsNoRefusalWhateverIsAnswered)
{
    PageAnswers page;
    page.pTable = &ENTRY_TABLE;
    for (const PageAnswers* answers : {static_cast<const PageAnswers*>(nullptr), &std::as_const(page)}) {
        const BoxVerdict verdict = JudgeBox(&ENTRY_TABLE, answers, L"Not a network path.", false, LoadText);
        EXPECT_EQ(verdict.meaning, BoxMeaning::Noticed);
        EXPECT_EQ(verdict.pBox, &ENTRY_BOXES[1]);
    }
    // With a choice it would be a question that nobody knows.
    const BoxVerdict asked = JudgeBox(&ENTRY_TABLE, &page, L"Not a network path.", true, LoadText);
    EXPECT_EQ(asked.meaning, BoxMeaning::Unanswered);
    EXPECT_EQ(asked.pBox, nullptr);
}

TEST(SetupBoxes, AQuestionWithAnAnswerIsAnswered)
{
    const PageAnswers page = BeginAnswers();
    const BoxVerdict verdict = JudgeBox(TableOf(L"begin"), &page, L"Replace \"Office\"?", true, LoadText);
    EXPECT_EQ(verdict.meaning, BoxMeaning::Answered);
    ASSERT_NE(verdict.pAnswer, nullptr);
    EXPECT_TRUE(verdict.pAnswer->bYes);
}

TEST(SetupBoxes, AQuestionWithoutAnAnswerIsNamedByItsRole)
{
    const PageAnswers page = BeginAnswers();
    const BoxVerdict verdict = JudgeBox(TableOf(L"begin"), &page, L"Not a network path.", true, LoadText);
    EXPECT_EQ(verdict.meaning, BoxMeaning::Unanswered);
    ASSERT_NE(verdict.pBox, nullptr);
    EXPECT_EQ(CString(verdict.pBox->role), CString(L"local_location"));
}

TEST(SetupBoxes, AnUnknownQuestionStaysUnanswered)
{
    const PageAnswers page = BeginAnswers();
    const BoxVerdict verdict = JudgeBox(TableOf(L"begin"), &page, L"Something new?", true, LoadText);
    EXPECT_EQ(verdict.meaning, BoxMeaning::Unanswered);
    EXPECT_EQ(verdict.pBox, nullptr);
}

TEST(SetupBoxes, ARefusalBlamesTheAnswerThatItIsAbout)
{
    const PageAnswers page = BeginAnswers();
    const BoxVerdict verdict = JudgeBox(TableOf(L"begin"), &page, L"No such name.", false, LoadText);
    EXPECT_EQ(verdict.meaning, BoxMeaning::Refused);
    ASSERT_NE(verdict.pRefused, nullptr);
    EXPECT_EQ(verdict.pRefused->origin.nLine, 7);
}

TEST(SetupBoxes, AnUnknownComplaintIsARefusalWithoutAKey)
{
    const BoxVerdict verdict = JudgeBox(TableOf(L"begin"), nullptr, L"Something broke.", false, LoadText);
    EXPECT_EQ(verdict.meaning, BoxMeaning::Refused);
    EXPECT_EQ(verdict.pBox, nullptr);
}

TEST(SetupBoxes, AnotherPagesBoxesDoNotCount)
{
    const PageAnswers page = BeginAnswers();
    EXPECT_EQ(JudgeBox(TableOf(L"contact"), &page, L"Replace \"x\"?", true, LoadText).pBox, nullptr);
}

TEST(SetupTexts, ABoxesLinesBecomeOneWithABlankBetweenThem)
{
    EXPECT_EQ(OneLine(L"one\ntwo\r\nthree"), CString(L"one two three"));
    EXPECT_EQ(OneLine(L"one\n\ntwo\r\n\r\nthree"), CString(L"one two three"));
    EXPECT_EQ(OneLine(L"one  two"), CString(L"one  two"));
    EXPECT_EQ(OneLine(L""), CString());
}

TEST(SetupTexts, AStemIsWrittenAsWords)
{
    EXPECT_EQ(StemInWords(L"DeploymentSettings"), CString(L"Deployment settings"));
    EXPECT_EQ(StemInWords(L"ABc"), CString(L"A bc"));
    EXPECT_EQ(StemInWords(L""), CString());
}

// The text in front names all switches, so it would fit any line.
TEST(SetupBoxes, ARefusalThatNamesWhatItRefusesBlamesTheLineThatHoldsIt)
{
    PageAnswers page;
    page.pTable = TableOf(L"workstation");
    const auto add = [&page](const wchar_t* name, const wchar_t* command) {
        page.entries.push_back(
            {FindAnswerKey(*page.pTable, L"shortcut"), {name, command}, false, false, {L"answers.txt", 7}});
    };
    add(L"A", L"/b");
    add(L"B", L"/tool x /b");
    add(L"a", L"/nologo");
    const auto refused = [&page](const wchar_t* text) -> CString {
        const BoxVerdict verdict = JudgeBox(page.pTable, &page, text, false, LoadText);
        EXPECT_EQ(verdict.meaning, BoxMeaning::Refused);
        return verdict.pRefused ? verdict.pRefused->Value() : CString(L"(none)");
    };
    EXPECT_EQ(refused(L"Only /b and /nologo. Change this part: tool x"), CString(L"B"));
    EXPECT_EQ(refused(L"Change this name: a"), CString(L"a"));
    EXPECT_EQ(refused(L"Change this name: gone"), CString(L"a")) << "the last of the key";
    EXPECT_EQ(refused(L"Change this name"), CString(L"(none)")) << "a text without a name is another one";
    page.entries.clear();
    add(L"tool x", L"/set tool x"); // the name, and a part of the value
    add(L"B", L"/b / tool x /c");
    add(L"C", L"tool x");
    EXPECT_EQ(refused(L"Only /b and /nologo. Change this part: tool x"), CString(L"B"));
}

} // namespace
