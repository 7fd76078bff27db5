// The page's grid read and entered for runs without a person, on the real page in both shapes.
#include "setup/page_answers.h"
#include "setup/workstation_lists.h"
#include "tests/workstation/workstation_page.h"
#include "window/module.h"

#include <list>

CAppModule _Module; // of the run that is linked in

namespace {

class ShortcutAnswers : public WorkstationPage
{
protected:
    void Line(const CString& name, const CString& command)
    {
        m_answers.push_back(
            {FindAnswerKey(WORKSTATION_ANSWERS, L"shortcut"), {name, command}, false, false, {}});
        m_given.push_back(&m_answers.back());
    }
    // Plays the steps of all lines so far.
    void Enter()
    {
        Look([] {}); // once the page is up
        for (const ListStep& step : WorkstationPageLists().MakeSteps(m_given)) {
            Step(step.strName, [this, step] {
                const StepOutcome outcome = step.run(Page());
                if (outcome.IsFailed()) {
                    refused += step.pAnswer->QuotedFields() + L": " + outcome.GetReason() + L"\n";
                    return StepOutcome::Done();
                }
                return outcome;
            });
        }
        m_given.clear();
    }
    // "name, command" of each line that the adapter reads.
    void ExpectRead(const CString& lines)
    {
        Look([this, lines] {
            CString found;
            for (const ListLine& line : WorkstationPageLists().Read(Page())) {
                EXPECT_EQ(line.strWord, CString(L"shortcut"));
                found += line.fields.at(0) + L", " + line.fields.at(1) + L"\n";
            }
            EXPECT_EQ(found, lines);
        });
    }
    void WithTwoShortcuts()
    {
        WithProperty(L"ZOLT_CUSTOM_SHORTCUT", L"3;K1;K2;");
        WithShortcut(L"K1", L"A", L"/b");
        WithShortcut(L"K2", L"B", L"/c");
    }
    void GoNext()
    {
        Press(Next());
        EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
        EXPECT_EQ(refused, CString());
    }

    CString refused;

private:
    std::list<PageAnswer> m_answers;
    std::vector<const PageAnswer*> m_given;
};
INSTANTIATE_BOTH_SHAPES(ShortcutAnswers);

} // namespace

TEST_P(ShortcutAnswers, PromptsAreNoShortcutAndNoneIsAnEmptyLine)
{
    ExpectRead(L", \n");
    ShowAndGoBack();
}

TEST_P(ShortcutAnswers, EveryRowWithATextIsRead)
{
    WithTwoShortcuts();
    TypeCell(3, 0, L"half");
    ExpectRead(L"A, /b\nB, /c\nhalf, \n");
    ShowAndGoBack();
}

TEST_P(ShortcutAnswers, AProductWithoutATemplateHasNoLines)
{
    WithoutTemplate();
    ExpectRead(L"");
    ShowAndGoBack();
}

TEST_P(ShortcutAnswers, LinesReplaceWhatThePageHas)
{
    WithTwoShortcuts();
    Line(L"C", L"/v");
    Enter();
    ExpectRead(L"C, /v\n");
    GoNext();
    ExpectRows(L"K1: C|C, /v\n");
}

TEST_P(ShortcutAnswers, FiveLinesFillTheTableInTheirOrder)
{
    CString lines;
    for (const wchar_t* name : {L"E", L"D", L"C's", L"B", L"A"}) {
        Line(name, L"/p \"x, y\"");
        lines += CString(name) + L", /p \"x, y\"\n";
    }
    Enter();
    ExpectRead(lines);
    GoNext();
}

TEST_P(ShortcutAnswers, ASixthLineIsRefusedByItsFields)
{
    for (const wchar_t* name : {L"A", L"B", L"C", L"D", L"E", L"F"}) {
        Line(name, L"/b");
    }
    Enter();
    Look([this] { EXPECT_HOLDS(refused, L"\"F\", \"/b\": The page has room for 5 custom shortcuts."); });
    ShowAndGoBack();
}

TEST_P(ShortcutAnswers, OneEmptyLineEmptiesTheTable)
{
    WithTwoShortcuts();
    Line(L"", L"");
    Enter();
    ExpectRead(L", \n");
    GoNext();
    ExpectRows(L"");
}

TEST_P(ShortcutAnswers, HalfALineIsRefusedAndNothingBehindItIsEntered)
{
    Line(L"A", L"/b");
    Line(L"B", L"");
    Line(L"C", L"/c");
    Enter();
    ExpectRead(L"A, /b\n");
    Look([this] {
        EXPECT_HOLDS(refused, L"\"B\", \"\": A custom shortcut needs a name and a command line.");
        EXPECT_EQ(refused.Find(L"\"C\""), -1);
    });
    ShowAndGoBack();
}

TEST_P(ShortcutAnswers, ACommandLineWithAnApostropheIsRefused)
{
    Line(L"Anne's", L"/b");
    Line(L"B", L"/p Anne's");
    Enter();
    Look([this] {
        EXPECT_HOLDS(refused,
                     L"\"B\", \"/p Anne's\": The command line of a custom shortcut can't have an apostrophe");
        EXPECT_EQ(refused.Find(L"\"Anne's\""), -1) << "a name may have one";
    });
    ShowAndGoBack();
}

// Such as the maker's own.
TEST_P(ShortcutAnswers, AnApostropheThatTheDatabaseHasAlreadyIsGood)
{
    WithProperty(L"ZOLT_CUSTOM_SHORTCUT", L"2;K1;");
    Run(L"INSERT INTO `Shortcut` (`Shortcut`,`Directory_`,`Name`,`Component_`,`Target`) VALUES "
        L"('K1','MENUDIR','A','Main','t')");
    product.shortcuts.push_back({L"K1", L"A", L"/p Anne's"});
    Line(L"A", L"/p Anne's");
    Enter();
    ExpectRead(L"A, /p Anne's\n");
    GoNext();
}

TEST_P(ShortcutAnswers, ALineOnAPageWithoutShortcutsIsRefused)
{
    WithoutTemplate();
    Line(L"A", L"/b");
    Enter();
    Look([this] { EXPECT_HOLDS(refused, L"The product has no custom shortcuts."); });
    ShowAndGoBack();
}

TEST_P(ShortcutAnswers, AnEmptyLineOnAPageWithoutShortcutsAsksForWhatIsThere)
{
    WithoutTemplate();
    Line(L"", L"");
    Enter();
    GoNext();
}

TEST_P(ShortcutAnswers, ATextThatIsTooLongForACellIsRefused)
{
    Line(L"A", L"/p " + CString(L'x', 1021)); // one more than fits
    Enter();
    Look([this] { EXPECT_HOLDS(refused, L"did not take"); });
    Key(VK_ESCAPE);
    ShowAndGoBack();
}
