// The page's tree read and entered for runs without a person, on the real page in both shapes.
#include "setup/page_answers.h"
#include "setup/paths_lists.h"
#include "tests/paths/paths_page.h"
#include "window/module.h"

#include <list>

CAppModule _Module; // of the run that is linked in

namespace {

class PathAnswers : public PathsPage
{
protected:
    PathAnswers()
    {
        WithPath(PATH_SUPPORT, L"C:\\a;C:\\b;C:\\c");
        WithPath(PATH_TEMP, L"C:\\temp");
    }

    void Line(const wchar_t* word, const CString& text)
    {
        m_answers.push_back({FindAnswerKey(PATHS_ANSWERS, word), {text}, false, false, {}});
        m_given.push_back(&m_answers.back());
    }
    // Plays the steps of all lines so far. Behind each step of that name an answer to a box is played.
    void Enter(const wchar_t* asks = L"", const std::function<void()>& answerBox = {})
    {
        Look([] {}); // once the page is up
        for (const ListStep& step : PathsPageLists().MakeSteps(m_given)) {
            Step(step.strName, [this, step] {
                const StepOutcome outcome = step.run(Page());
                if (outcome.IsFailed()) {
                    refused.push_back(CString(step.pAnswer->pKey->word) + L" " + step.pAnswer->Value() +
                                      L": " + outcome.GetReason());
                    return StepOutcome::Done();
                }
                return outcome;
            });
            if (step.strName == asks) {
                answerBox();
            }
        }
        m_given.clear();
    }
    // What the adapter reads of the path.
    void ExpectRead(const wchar_t* word, const Texts& texts)
    {
        Look([this, word, texts] {
            Texts found;
            for (const ListLine& line : PathsPageLists().Read(Page())) {
                if (line.strWord == word) {
                    found.push_back(line.fields.at(0));
                }
            }
            EXPECT_EQ(found, texts) << Utf8(word);
        });
    }
    void EnterSupport(const Texts& texts)
    {
        for (const CString& text : texts) {
            Line(L"support_path", text);
        }
        Enter();
        ExpectRead(L"support_path", texts);
        ExpectValues(PATH_SUPPORT, texts);
    }

    // That of a refused text, which the page has begun anew.
    void CancelEdit()
    {
        AwaitEdit();
        Key(VK_ESCAPE);
        AwaitNoEdit();
    }

    Texts refused;

private:
    std::list<PageAnswer> m_answers;
    std::vector<const PageAnswer*> m_given;
};
INSTANTIATE_BOTH_SHAPES(PathAnswers);

} // namespace

TEST_P(PathAnswers, ReadingFindsEveryPathInTheTablesOrderAndExpandsNothing)
{
    Look([this] {
        Texts words;
        for (const ListLine& line : PathsPageLists().Read(Page())) {
            if (words.empty() || words.back() != line.strWord) {
                words.push_back(line.strWord);
            }
        }
        Texts expected;
        for (const AnswerKey& key : PATHS_ANSWERS.keys) {
            expected.emplace_back(key.word);
        }
        EXPECT_EQ(words, expected);
        for (const PathRow& row : PATH_TABLE) {
            const bool isExpanded = Tree().IsExpanded(Heading(row.property));
            EXPECT_EQ(isExpanded, row.property == PATH_SUPPORT && isExpanded) << row.property;
        }
    });
    ExpectRead(L"support_path", {L"C:\\a", L"C:\\b", L"C:\\c"});
    ExpectRead(L"temp_directory", {L"C:\\temp"});
    ExpectRead(L"texmaps", {L""});
    ExpectRead(L"menu_file", {L""});
    ShowAndGoBack();
}

TEST_P(PathAnswers, EveryPathIsEnteredAndEmptied)
{
    for (const AnswerKey& key : PATHS_ANSWERS.keys) {
        Line(key.word, CString(L"C:\\paths\\") + key.word);
    }
    Enter();
    for (const AnswerKey& key : PATHS_ANSWERS.keys) {
        ExpectRead(key.word, {CString(L"C:\\paths\\") + key.word});
    }
    for (const AnswerKey& key : PATHS_ANSWERS.keys) {
        Line(key.word, L"");
    }
    Enter();
    for (const AnswerKey& key : PATHS_ANSWERS.keys) {
        ExpectRead(key.word, {L""});
    }
    AwaitNoEdit();
    ShowAndGoBack();
    EXPECT_EQ(refused, Texts());
}

TEST_P(PathAnswers, AListBecomesTheAnsweredLinesWhateverItHeld)
{
    EnterSupport({L"C:\\new"});
    EnterSupport({L"C:\\new", L"C:\\second", L"C:\\third"});
    EnterSupport({L"C:\\third", L"C:\\new", L"C:\\second"});
    EnterSupport({L"C:\\first", L"C:\\second", L"C:\\third", L"C:\\third", L"C:\\first"});
    EnterSupport({L"C:\\third"});
    EnterSupport({L""});
    EnterSupport({L"C:\\a, b", L"C:\\x %s"});
    AwaitNoEdit();
    ShowAndGoBack();
    EXPECT_EQ(refused, Texts());
}

TEST_P(PathAnswers, WhatIsNotAcceptedFromAPersonStaysWhenItIsThereAlready)
{
    WithPath(PATH_SUPPORT, L"C:\\a;\\\\nowhere.invalid\\share");
    WithPath(PATH_MENU_FILE, L"a*b");
    Line(L"menu_file", L"a*b");
    Line(L"support_path", L"\\\\nowhere.invalid\\share");
    Line(L"support_path", L"C:\\b");
    Enter();
    ExpectRead(L"support_path", {L"\\\\nowhere.invalid\\share", L"C:\\b"});
    ShowAndGoBack();
    EXPECT_EQ(refused, Texts());
}

TEST_P(PathAnswers, APathThatTheQuestionKeepsIsEnteredAndOneThatItKeepsOutIsRefused)
{
    for (const int button : {IDYES, IDNO}) {
        const CString file = button == IDYES ? L"nowhere\\kept.dic" : L"nowhere\\out.dic";
        Line(L"custom_dictionary", file);
        Enter(L"edit or remove the path", [&] { AnswerPathBox(IDS_PATH_MISSING, file, button); });
        ExpectRead(L"custom_dictionary", {L"nowhere\\kept.dic"});
    }
    CancelEdit();
    ShowAndGoBack();
    EXPECT_EQ(refused, (Texts{L"custom_dictionary nowhere\\out.dic: The page hasn't accepted it."}));
}

TEST_P(PathAnswers, ARefusedPathFailsItsOwnLineAtOnce)
{
    Line(L"menu_file", L"a*b");
    Enter(L"edit or remove the path", [this] { AnswerPathBox(IDS_PATH_FILE_INVALID, L"a*b"); });
    CancelEdit();
    ShowAndGoBack();
    EXPECT_EQ(refused, (Texts{L"menu_file a*b: The page hasn't accepted it."}));
}

TEST_P(PathAnswers, AnEmptyLineAmongOthersIsRefusedWithTheReason)
{
    Line(L"support_path", L"C:\\x");
    Line(L"support_path", L"");
    Enter();
    ShowAndGoBack();
    EXPECT_EQ(refused,
              (Texts{L"support_path : The page has no empty entries among others. A single empty line "
                     L"empties the list."}));
}

TEST_P(PathAnswers, AHundredLinesAreEntered)
{
    Texts texts;
    for (int number = 100; number > 0; --number) {
        texts.push_back(L"C:\\folders\\" + NumberText(number));
    }
    EnterSupport(texts);
    ShowAndGoBack();
    EXPECT_EQ(refused, Texts());
}
