// What a page with lists refuses without a person: which code the run ends with, and which line is named.
#include "include/navigation.h"
#include "setup/exit_codes.h"
#include "tests/setup/list_answers_fixture.h"

namespace {

class ListRefusals : public ListAnswersTest
{
protected:
    static CString FileLine(const CString& path)
    {
        return L"file = \"<Installation Directory>\", \"" + path + L"\"\n";
    }
    static CString Fields(const CString& name)
    {
        return L"\"<Installation Directory>\", \"" + name + L"\": ";
    }
};

INSTANTIATE_TEST_SUITE_P(Shapes, ListRefusals, testing::Values(PageShape::Walked, PageShape::Tab),
                         [](const auto& shape) {
                             return shape.param == PageShape::Walked ? "Walked" : "Tab";
                         });

TEST_P(ListRefusals, ARefusedFileIsNamedByItsOwnLineAmongOthers)
{
    const CString bad = AddFile(L"two.bad");
    UseAnswers(L"[things]\n" + FileLine(AddFile(L"one.txt")) + FileLine(bad) +
               FileLine(AddFile(L"three.txt")));
    ExpectFailure(SETUP_ANSWER_REFUSED,
                  AtLine(4, L"file", Fields(bad) + L"The file " + bad + L" can't be added."));
}

TEST_P(ListRefusals, ARefusedLabelIsNamedByItsOwnLineAmongOthers)
{
    UseAnswers(L"[things]\nfolder = \"<Installation Directory>\", \"one\"\n"
               L"folder = \"<Installation Directory>\", \"what?\"\n"
               L"folder = \"<Installation Directory>\", \"three\"\n");
    ExpectFailure(SETUP_ANSWER_REFUSED,
                  AtLine(4, L"folder", Fields(L"what?") + L"No folder can be called \"what?\" here."));
}

TEST_P(ListRefusals, ALineForAFolderThatIsNotThereIsNamed)
{
    UseAnswers(L"[things]\nfolder = \"<Installation Directory>\", \"one\"\n"
               L"folder = \"<Installation Directory>\\two\", \"inner\"\n");
    ExpectFailure(SETUP_ANSWER_REFUSED,
                  AtLine(4, L"folder",
                         L"\"<Installation Directory>\\two\", \"inner\": There is no folder "
                         L"\"<Installation Directory>\\two\"."));
}

TEST_P(ListRefusals, AQuestionAboutALineNeedsItsAnswer)
{
    const CString file = AddFile(L"one.txt");
    page.rows = {{LIST_ROOT, file}};
    UseAnswers(L"[things]\n" + FileLine(file));
    ExpectFailure(SETUP_UNANSWERED_BOX,
                  AtLine(3, L"file",
                         Fields(file) + L"A question has no answer: \"The file " + file +
                             L" is in the list already. Add it again?\" Add on_question.twice = yes or no."));
}

TEST_P(ListRefusals, ALineThatItsQuestionHasKeptOutIsRefused)
{
    const CString file = AddFile(L"one.txt");
    page.rows = {{LIST_ROOT, file}};
    UseAnswers(L"[things]\non_question.twice = no\n" + FileLine(file));
    ExpectFailure(SETUP_ANSWER_REFUSED, AtLine(4, L"file", Fields(file) + L"The page hasn't accepted it."));
}

TEST_P(ListRefusals, ClearingThatItsQuestionHasPreventedIsRefused)
{
    page.folders = {L"Old"};
    UseAnswers(L"[things]\nclear = yes\non_question.delete = no\n");
    ExpectFailure(SETUP_ANSWER_REFUSED, AtLine(3, L"clear", L"\"yes\": The page hasn't accepted it."));
}

TEST_P(ListRefusals, AFileThatIsNotThereEndsTheRunWithItsPickerClosed)
{
    const CString missing = files / L"missing.txt";
    UseAnswers(L"[things]\n" + FileLine(missing));
    Run();
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->exitCode, static_cast<unsigned int>(SETUP_ANSWER_REFUSED));
    EXPECT_EQ(failure->strCause.Find(AtLine(3, L"file", Fields(missing))), 0) << Utf8(failure->strCause);
}

// The page was closed under its open picker.
TEST_P(ListRefusals, APathThatNobodyCanTypeEndsTheRunWithItsPickerClosed)
{
    static bool returned;
    returned = false;
    UseAnswers(L"[things]\n" + FileLine(L"C:\\a|b.txt"));
    page.onPicked = [] { returned = true; };
    ExpectFailure(
        SETUP_ANSWER_REFUSED,
        AtLine(3, L"file",
               Fields(L"C:\\a|b.txt") + L"\"C:\\a|b.txt\" holds a character that no file's name can have"));
    EXPECT_TRUE(returned);
}

TEST_P(ListRefusals, WorkThatFailsIsBlamedOnTheLineThatHasBegunIt)
{
    UseAnswers(L"[things]\ndownload = \"fine\"\ndownload = \"broken\"\ndownload = \"fine too\"\n");
    ExpectFailure(SETUP_ANSWER_REFUSED,
                  AtLine(4, L"download", L"\"broken\": broken could not be downloaded."));
}

TEST_P(ListRefusals, WorkBeyondItsLimitEndsTheRunAtTheLimit)
{
    page.downloadMilliseconds = 60000;
    UseAnswers(L"[things]\ndownload = \"endless\"\n");
    const ULONGLONG start = GetTickCount64();
    Run();
    EXPECT_LT(GetTickCount64() - start, 10000u);
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->exitCode, static_cast<unsigned int>(SETUP_PAGE_OVERDUE));
    EXPECT_EQ(
        failure->strCause.Find(AtLine(3, L"download", L"\"endless\": The page things didn't come in time. ")),
        0)
        << Utf8(failure->strCause);
    EXPECT_HOLDS(failure->strCause, L"waited 1 seconds, but the page is at work");
}

TEST_P(ListRefusals, ARefusedValueIsNamedByItsLine)
{
    UseAnswers(L"[things]\nlogo = C:\\logo.png\ncaption = bad\n");
    ExpectFailure(SETUP_ANSWER_REFUSED, AtLine(4, L"caption", L"The caption \"bad\" can't be used."));
}

TEST_P(ListRefusals, ARefusedValueThatThePageHasProposedIsSaidToStandInNoAnswer)
{
    page.strCaption = L"bad";
    UseAnswers(L"[things]\nlogo = C:\\logo.png\n");
    ExpectFailure(SETUP_ANSWER_REFUSED,
                  AtLine(2, L"caption",
                         L"The caption \"bad\" can't be used. The answers don't hold this key; the page "
                         L"proposed the value."));
}

TEST_P(ListRefusals, APageThatStaysBecauseOfAQuestionsAnswerNamesThatAnswersLine)
{
    UseAnswers(L"[things]\nlogo = C:\\ask.png\non_question.missing_logo = no\n");
    ExpectFailure(
        SETUP_ANSWER_REFUSED,
        AtLine(4, L"on_question.missing_logo",
               L"The page stays after its button was pressed. It asked last: \"The logo C:\\ask.png is "
               L"missing. Go on?\""));
}

class ListWalk : public ListAnswersTest
{
};

INSTANTIATE_TEST_SUITE_P(Shapes, ListWalk, testing::Values(PageShape::Walked));

TEST_P(ListWalk, APageThatIsWalkedToCantBeLeftOut)
{
    UseAnswers(L"[things]\ncaption = Office\nshow = no\n");
    ExpectFailure(SETUP_PAGE_NOT_REACHED,
                  AtLine(4, L"show",
                         L"The pages are walked through one after the other in this run, so none can be left "
                         L"out. Take the answer out."));
    EXPECT_TRUE(held.empty());
}

TEST_P(ListWalk, AnEmptyEditThatKeepsThePageIsNamedByItsLine)
{
    UseAnswers(L"[things]\nlogo = C:\\logo.png\ncaption =\n");
    ExpectFailure(SETUP_ANSWER_REFUSED,
                  AtLine(4, L"caption",
                         L"The page can't be left with these answers: its button Next is off. An answer that "
                         L"the page needs is missing or empty."));
}

class ListTabRefusals : public ListAnswersTest
{
};

INSTANTIATE_TEST_SUITE_P(Shapes, ListTabRefusals, testing::Values(PageShape::Tab));

// The question of the tab before was named, which had long been answered.
TEST_P(ListTabRefusals, ALaterTabThatStaysIsNotBlamedOnTheQuestionOfAnEarlierOne)
{
    hasTabs = true;
    TestProduct& zolt = AddProduct(L"Zolt");
    AddListTab(zolt);
    leaveHooks = {[](PageContext*) { return HOOK_VETO; }};
    AddTab(0, zolt);
    UseAnswers(L"[things]\nlogo = C:\\ask.png\non_question.missing_logo = yes\n");
    ExpectFailure(SETUP_ANSWER_REFUSED,
                  L"Test0Page: The page stays after its button was pressed. It doesn't say why.");
}

TEST_P(ListTabRefusals, ARefusedLineNamesTheProductOfItsTab)
{
    hasTabs = true;
    AddListTab(AddProduct(L"Zolt"));
    AddListTab(AddProduct(L"Volt"));
    UseAnswers(L"[things \"Volt\"]\nfolder = \"<Installation Directory>\", \"what?\"\n");
    ExpectFailure(SETUP_ANSWER_REFUSED,
                  AtLine(3, L"folder",
                         L"Volt: \"<Installation Directory>\", \"what?\": No folder can be called \"what?\" "
                         L"here."));
}

} // namespace
