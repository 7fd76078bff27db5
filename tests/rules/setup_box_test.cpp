#include "include/resource_ids.h"
#include "setup/box_rules.h"
#include "setup/text_forms.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

namespace {

CString LoadText(unsigned int id)
{
    switch (id) {
    case IDS_REPLACE_DEPLOYMENT:
        return L"Replace \"%s\"?";
    case IDS_LOCATION_NOT_NETWORK:
        return L"Not a network path.";
    case IDS_NAME_INVALID:
        return L"No such name.";
    default:
        return CString();
    }
}

PageAnswers BeginAnswers()
{
    PageAnswers page;
    page.pPage = FindPageOfSection(L"begin");
    for (const AnswerKey& key : AnswerKeys()) {
        if (CString(key.word) == L"name") {
            page.entries.push_back({&key, L"a;b", {L"answers.txt", 7}});
        }
    }
    for (const AnswerBox& box : AnswerBoxes()) {
        if (box.string == IDS_REPLACE_DEPLOYMENT) {
            page.questions.push_back({&box, true, {L"answers.txt", 9}});
        }
    }
    return page;
}

TEST(SetupBoxes, AQuestionWithAnAnswerIsAnswered)
{
    const PageAnswers page = BeginAnswers();
    const BoxVerdict verdict = JudgeBox(L"begin", &page, L"Replace \"Office\"?", true, LoadText);
    EXPECT_EQ(verdict.meaning, BoxMeaning::Answered);
    ASSERT_NE(verdict.pAnswer, nullptr);
    EXPECT_TRUE(verdict.pAnswer->bYes);
}

TEST(SetupBoxes, AQuestionWithoutAnAnswerIsNamedByItsRole)
{
    const PageAnswers page = BeginAnswers();
    const BoxVerdict verdict = JudgeBox(L"begin", &page, L"Not a network path.", true, LoadText);
    EXPECT_EQ(verdict.meaning, BoxMeaning::Unanswered);
    ASSERT_NE(verdict.pBox, nullptr);
    EXPECT_EQ(CString(verdict.pBox->role), CString(L"local_location"));
}

TEST(SetupBoxes, AnUnknownQuestionStaysUnanswered)
{
    const PageAnswers page = BeginAnswers();
    const BoxVerdict verdict = JudgeBox(L"begin", &page, L"Something new?", true, LoadText);
    EXPECT_EQ(verdict.meaning, BoxMeaning::Unanswered);
    EXPECT_EQ(verdict.pBox, nullptr);
}

TEST(SetupBoxes, ARefusalBlamesTheAnswerThatItIsAbout)
{
    const PageAnswers page = BeginAnswers();
    const BoxVerdict verdict = JudgeBox(L"begin", &page, L"No such name.", false, LoadText);
    EXPECT_EQ(verdict.meaning, BoxMeaning::Refused);
    ASSERT_NE(verdict.pRefused, nullptr);
    EXPECT_EQ(verdict.pRefused->origin.nLine, 7);
}

TEST(SetupBoxes, AnUnknownComplaintIsARefusalWithoutAKey)
{
    const BoxVerdict verdict = JudgeBox(L"begin", nullptr, L"Something broke.", false, LoadText);
    EXPECT_EQ(verdict.meaning, BoxMeaning::Refused);
    EXPECT_EQ(verdict.pBox, nullptr);
}

TEST(SetupBoxes, AnotherPagesBoxesDoNotCount)
{
    const PageAnswers page = BeginAnswers();
    EXPECT_EQ(JudgeBox(L"contact", &page, L"Replace \"x\"?", true, LoadText).pBox, nullptr);
}

TEST(SetupTexts, ABoxesLinesBecomeOneWithABlankBetweenThem)
{
    EXPECT_EQ(OneLine(L"one\ntwo\r\nthree"), CString(L"one two three"));
    EXPECT_EQ(OneLine(L"one\n\ntwo\r\n\r\nthree"), CString(L"one two three"));
    EXPECT_EQ(OneLine(L"one  two"), CString(L"one  two"));
    EXPECT_EQ(OneLine(L""), CString());
}

TEST(SetupTexts, NothingInATextIsTakenForHtml)
{
    EXPECT_EQ(HtmlText(L"<b> & \"C:\\a\""), CString(L"&lt;b&gt; &amp; \"C:\\a\""));
    EXPECT_EQ(HtmlText(L"&lt;"), CString(L"&amp;lt;"));
    EXPECT_EQ(HtmlText(L"one\r\ntwo\n\nthree"), CString(L"one<br>two<br><br>three"));
}

} // namespace
