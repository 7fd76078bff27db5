#include "tests/rules/answer_sources.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

namespace {

const PageAnswer* Entry(const CAnswers& answers, const wchar_t* word)
{
    const PageAnswers* page = answers.Find(L"begin");
    for (const PageAnswer& answer : page ? page->entries : std::vector<PageAnswer>()) {
        if (CString(word) == answer.pKey->word) {
            return &*std::find_if(page->entries.begin(), page->entries.end(),
                                  [&](const PageAnswer& other) { return other.pKey == answer.pKey; });
        }
    }
    return nullptr;
}

CString Value(const CAnswers& answers, const wchar_t* word)
{
    const PageAnswer* entry = Entry(answers, word);
    EXPECT_NE(entry, nullptr) << Utf8(word);
    return entry ? entry->Value() : CString();
}

TEST(SetupAnswers, EntriesComeInTheTablesOrderWhateverTheFilesOrder)
{
    const CAnswers answers =
        Joined(Sources().File("[begin]\nplatform=x64\nname=n\nlocation=\\\\s\\h\nmode=create\n"));
    std::string order;
    for (const PageAnswer& entry : answers.Find(L"begin")->entries) {
        order += Utf8(entry.pKey->word) + " ";
    }
    EXPECT_EQ(order, "mode location name platform ");
}

TEST(SetupAnswers, TheCommandLineWinsOverTheFile)
{
    const CAnswers answers = Joined(Sources().File("[begin]\nname=file\n").Set(L"begin", L"name", L"line"));
    EXPECT_EQ(Value(answers, L"name"), CString(L"line"));
    EXPECT_EQ(Entry(answers, L"name")->origin.strSource, CString(L"--set"));
}

TEST(SetupAnswers, OutWinsOverTheFilesLocation)
{
    EXPECT_EQ(Value(Joined(Sources().File("[begin]\nlocation=\\\\a\\b\n").Out(L"\\\\c\\d")), L"location"),
              CString(L"\\\\c\\d"));
}

TEST(SetupAnswers, AnotherRadioChoiceReplacesTheFilesOne)
{
    const CAnswers answers =
        Joined(Sources().File("[begin]\nplatform=x64\n").Set(L"begin", L"platform", L"x86"));
    EXPECT_EQ(answers.Find(L"begin")->entries.size(), 1u);
    EXPECT_EQ(Value(answers, L"platform"), CString(L"x86"));
}

TEST(SetupAnswers, RelativePathsCountFromTheFilesFolder)
{
    EXPECT_EQ(Value(Joined(Sources().File("[begin]\nlocation = ..\\out\n")), L"location"),
              CString(L"C:\\out"));
}

TEST(SetupAnswers, RelativePathsOfTheCommandLineCountFromTheCurrentFolder)
{
    EXPECT_EQ(Value(Joined(Sources().Out(L"out")), L"location"), CString(L"D:\\here\\out"));
    EXPECT_EQ(Value(Joined(Sources().Set(L"begin", L"location", L"x")), L"location"),
              CString(L"D:\\here\\x"));
}

TEST(SetupAnswers, NamesAreTextAndNeverJoinedToAFolder)
{
    EXPECT_EQ(Value(Joined(Sources().File("[begin]\nname = ..\\x\n")), L"name"), CString(L"..\\x"));
}

TEST(SetupAnswers, QuestionsAreAnsweredByTheirRole)
{
    const CAnswers answers =
        Joined(Sources().File("[begin]\non_question.local_location=yes\non_question.replace=no\n"));
    const PageAnswers* page = answers.Find(L"begin");
    ASSERT_EQ(page->questions.size(), 2u);
    EXPECT_TRUE(page->questions[0].bYes);
    EXPECT_FALSE(page->questions[1].bYes);
}

TEST(SetupAnswers, AnEmptySectionIsAPageThatMustBeReached)
{
    EXPECT_NE(Joined(Sources().File("[contact]\n")).Find(L"contact"), nullptr);
}

TEST(SetupAnswers, LeaveCancelCancels)
{
    EXPECT_TRUE(Joined(Sources().File("[contact]\nleave=cancel\n")).Find(L"contact")->bCancel);
    EXPECT_FALSE(Joined(Sources().File("[contact]\nleave=next\n")).Find(L"contact")->bCancel);
}

TEST(SetupAnswers, UnknownWordsAreRefusedWithFileLineAndKey)
{
    EXPECT_EQ(
        Refused(Sources().File("[begin]\n\nnaem = x\n")).Find(L"C:\\job\\answers.txt(4): begin.naem: T"), 0);
    EXPECT_EQ(Refused(Sources().File("[begn]\n")).Find(L"C:\\job\\answers.txt(2): T"), 0);
    EXPECT_EQ(Refused(Sources().Set(L"begin", L"naem", L"x")).Find(L"--set: begin.naem: T"), 0);
    EXPECT_NE(Refused(Sources().File("[begin]\non_question.unknown = yes\n")).Find(L"no such key"), -1);
    EXPECT_NE(Refused(Sources().File("[contact]\nname = x\n")).Find(L"no such key"), -1);
}

TEST(SetupAnswers, AnUnknownKeysComplaintNamesTheKnownOnes)
{
    const CString text = Refused(Sources().File("[begin]\nnaem = x\n"));
    EXPECT_NE(
        text.Find(L"mode, location, base, name, platform, on_question.local_location, "
                  L"on_question.confirm_folder, on_question.replace, on_question.replace_unlisted, leave"),
        -1)
        << Utf8(text);
}

TEST(SetupAnswers, ValuesOutsideTheChoicesAreRefusedWithTheChoices)
{
    EXPECT_NE(Refused(Sources().File("[begin]\nplatform = arm\n")).Find(L"Known are: x86, x64."), -1);
    EXPECT_NE(Refused(Sources().File("[begin]\nmode = Create\n")).Find(L"create, create_from, modify"), -1);
    EXPECT_NE(Refused(Sources().File("[begin]\non_question.replace = maybe\n")).Find(L"yes, no"), -1);
    EXPECT_NE(Refused(Sources().File("[begin]\nleave = back\n")).Find(L"next, cancel"), -1);
}

TEST(SetupAnswers, AnswersForAPageThatIsNotShownAreRefused)
{
    const CAnswers answers = Joined(Sources().File("[begin]\n[contact]\n"));
    AnswersError error;
    EXPECT_TRUE(CheckPagesReached(answers, {L"BeginDeploymentDialog", L"ProductContactDialog"}, error));
    EXPECT_FALSE(CheckPagesReached(answers, {L"BeginDeploymentDialog"}, error));
    EXPECT_EQ(error.nLine, 3);
}

TEST(SetupAnswers, OutcomePagesMayBeAnsweredWithoutBeingShown)
{
    AnswersError error;
    EXPECT_TRUE(CheckPagesReached(Joined(Sources().File("[complete]\n[failed]\n")),
                                  {L"DeploymentCompleteDialog"}, error));
}

TEST(SetupAnswers, AKeyTwiceInASectionIsRefusedWithBothLines)
{
    const CString text = Refused(Sources().File("[begin]\nname = a\n\nname = b\n"));
    EXPECT_EQ(text.Find(L"C:\\job\\answers.txt(5): begin.name: "), 0) << Utf8(text);
    EXPECT_NE(text.Find(L"line 3"), -1) << Utf8(text);
}

TEST(SetupAnswers, AKeyTwiceInWhateverFormIsRefused)
{
    for (const char* second : {"site_feed.kept = b", "site_feed.literal = b", "site_feed.kept.literal = b"}) {
        EXPECT_NE(Refused(Sources().File(std::string("[notices]\nsite_feed = a\n") + second + "\n"))
                      .Find(L"line 3"),
                  -1)
            << second;
    }
}

TEST(SetupAnswers, AQuestionAndAWayToLeaveStandOnce)
{
    EXPECT_NE(Refused(Sources().File("[begin]\non_question.replace=yes\non_question.replace=yes\n"))
                  .Find(L"line 3"),
              -1);
    EXPECT_NE(Refused(Sources().File("[begin]\nleave=next\nleave=next\n")).Find(L"line 3"), -1);
}

TEST(SetupAnswers, SeveralValuesInAPlainPlaceAreRefused)
{
    const CString text = Refused(Sources().File("[begin]\nname = \"a\", \"b\"\n"));
    EXPECT_EQ(text.Find(L"C:\\job\\answers.txt(3): begin.name: The key has one value"), 0) << Utf8(text);
    EXPECT_NE(Refused(Sources().File("[begin]\non_question.replace = \"yes\", \"no\"\n")).Find(L"one value"),
              -1);
    EXPECT_NE(Refused(Sources().File("[begin]\nleave = \"next\", \"next\"\n")).Find(L"one value"), -1);
}

TEST(SetupAnswers, ALiteralPathIsNotMadeFull)
{
    EXPECT_EQ(Value(Joined(Sources().File("[begin]\nlocation.literal = out\n")), L"location"),
              CString(L"out"));
    CAnswers answers = Joined(Sources().File("[begin]\nlocation.literal = <media>\\x\n"));
    answers.UseMediaFolder(L"E:\\Media");
    EXPECT_EQ(Value(answers, L"location"), CString(L"<media>\\x"));
}

TEST(SetupAnswers, PathsBelowTheMediaBecomeFullWhenTheMediaAreKnown)
{
    CAnswers answers = Joined(Sources().File("[begin]\nlocation = <media>\\x\nname = <media>\n"));
    answers.UseMediaFolder(L"E:\\Media");
    EXPECT_EQ(Value(answers, L"location"), CString(L"E:\\Media\\x"));
    EXPECT_EQ(Value(answers, L"name"), CString(L"<media>"));
}

TEST(SetupAnswers, OnlyWhatAnotherAnswerTurnsOffCanBeKept)
{
    const CAnswers answers =
        Joined(Sources().File("[notices]\nsite_channel = no\nsite_feed.kept = \\\\s\\h\\f.xml\n"));
    const PageAnswers* page = answers.Find(L"notices");
    ASSERT_EQ(page->entries.size(), 2u);
    EXPECT_FALSE(page->entries[0].bKept);
    EXPECT_TRUE(page->entries[1].bKept);
    EXPECT_NE(Refused(Sources().File("[notices]\nupdates.kept = yes\n")).Find(L"no such key"), -1);
}

TEST(SetupFormats, AHoleStandsForAnyText)
{
    EXPECT_TRUE(MatchesFormat(L"Replace \"%s\"?", L"Replace \"a \"b\"?"));
    EXPECT_TRUE(MatchesFormat(L"%s", L""));
    EXPECT_TRUE(MatchesFormat(L"%s and %s.", L"a and b."));
    EXPECT_TRUE(MatchesFormat(L"plain", L"plain"));
}

TEST(SetupFormats, NumberedHolesStandForAnyTextAndOtherPercentSignsForThemselves)
{
    EXPECT_TRUE(MatchesFormat(L"Replace %1: %2 by %3?", L"Replace a%: C:\\x by D:\\%1?"));
    EXPECT_TRUE(MatchesFormat(L"100% of %s", L"100% of it"));
    EXPECT_TRUE(MatchesFormat(L"100%", L"100%"));
    EXPECT_FALSE(MatchesFormat(L"Replace %1 by %2?", L"Replace a?"));
    EXPECT_FALSE(MatchesFormat(L"%0", L"x"));
    EXPECT_FALSE(MatchesFormat(L"100% of it", L"100 of it"));
}

TEST(SetupFormats, OtherTextsDoNotMatch)
{
    EXPECT_FALSE(MatchesFormat(L"Replace %s?", L"Remove x?"));
    EXPECT_FALSE(MatchesFormat(L"Replace %s?", L"Replace x"));
    EXPECT_FALSE(MatchesFormat(L"plain", L"plain "));
    EXPECT_FALSE(MatchesFormat(L"", L"x"));
}

TEST(SetupAnswers, CheckBoxesTakeYesAndNoAndNothingElse)
{
    for (const wchar_t* value : {L"yes", L"no"}) {
        const CAnswers answers = Joined(Sources().Set(L"settings", L"network_log", value));
        ASSERT_EQ(answers.Find(L"settings")->entries.size(), 1u);
        EXPECT_EQ(IsYes(answers.Find(L"settings")->entries[0].Value()), CString(value) == L"yes");
    }
    for (const wchar_t* value : {L"", L"Yes", L"on", L"1"}) {
        const CString error = Refused(Sources().Set(L"settings", L"network_log", value));
        EXPECT_NE(error.Find(L"Known are: yes, no."), -1) << Utf8(error);
    }
}

} // namespace
