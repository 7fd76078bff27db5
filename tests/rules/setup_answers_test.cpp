#include "setup/answers.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

namespace {

// The sources of a run, built up as prose.
struct Sources : AnswerSources
{
    Sources()
    {
        strFile = L"C:\\job\\answers.txt";
        strFileFolder = L"C:\\job";
        strCurrentFolder = L"D:\\here";
    }
    Sources& File(const std::string& text)
    {
        const std::string bytes = "rollout-answers 1\n" + text;
        AnswersError error;
        EXPECT_TRUE(ParseAnswersFile(bytes.data(), bytes.size(), file, error)) << Utf8(error.Text());
        return *this;
    }
    Sources& Set(const wchar_t* page, const wchar_t* key, const wchar_t* value)
    {
        line.answers.push_back({page, key, value});
        return *this;
    }
    Sources& Out(const wchar_t* folder)
    {
        line.strOut = folder;
        return *this;
    }
};

CAnswers Joined(const Sources& sources)
{
    CAnswers answers;
    AnswersError error;
    EXPECT_TRUE(JoinAnswers(sources, answers, error)) << Utf8(error.Text());
    return answers;
}

CString Refused(const Sources& sources)
{
    CAnswers answers;
    AnswersError error;
    EXPECT_FALSE(JoinAnswers(sources, answers, error));
    return error.Text();
}

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
    return entry ? entry->strValue : CString();
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

TEST(SetupAnswerPaths, FullPathsStay)
{
    for (const wchar_t* path :
         {L"C:\\", L"C:\\a b\\c", L"\\\\s\\h", L"\\\\s\\h\\x", L"\\\\s", L"C:", L"C:x", L""}) {
        EXPECT_EQ(ResolveAnswerPath(L"D:\\base", path), CString(path));
    }
}

TEST(SetupAnswerPaths, RelativeOnesAreJoinedAndTidied)
{
    const auto resolved = [](const wchar_t* folder, const wchar_t* path) {
        return ResolveAnswerPath(folder, path);
    };
    EXPECT_EQ(resolved(L"D:\\base", L"x"), CString(L"D:\\base\\x"));
    EXPECT_EQ(resolved(L"D:\\base\\", L".\\x\\.\\y"), CString(L"D:\\base\\x\\y"));
    EXPECT_EQ(resolved(L"D:\\base", L"x/y"), CString(L"D:\\base\\x\\y"));
    EXPECT_EQ(resolved(L"D:\\base", L"..\\..\\..\\x"), CString(L"D:\\x"));
    EXPECT_EQ(resolved(L"\\\\s\\h\\base", L"..\\..\\x"), CString(L"\\\\s\\h\\x"));
    EXPECT_EQ(resolved(L"\\\\s\\h", L"x"), CString(L"\\\\s\\h\\x"));
    EXPECT_EQ(resolved(L"D:\\base", L"\\x"), CString(L"D:\\x"));
    EXPECT_EQ(resolved(L"D:\\base", L"."), CString(L"D:\\base"));
    EXPECT_EQ(resolved(L"D:\\", L"x"), CString(L"D:\\x"));
    EXPECT_EQ(resolved(L"D:\\", L"\\x"), CString(L"D:\\x"));
    EXPECT_EQ(resolved(L"D:\\", L"."), CString(L"D:\\"));
}

// The page refused them from a person, and never saw them from a file.
TEST(SetupAnswerPaths, DoubledAndClosingBackslashesStayForThePageToJudge)
{
    for (const wchar_t* path :
         {L"C:\\a\\\\b.xml", L"C:\\a\\", L"C:\\\\a", L"\\\\s\\h\\a\\\\b", L"\\\\s\\h\\", L"C:\\a\\\\\\"}) {
        EXPECT_EQ(ResolveAnswerPath(L"D:\\base", path), CString(path)) << Utf8(path);
    }
    EXPECT_EQ(ResolveAnswerPath(L"D:\\base", L"a\\\\b.xml"), CString(L"D:\\base\\a\\\\b.xml"));
    EXPECT_EQ(ResolveAnswerPath(L"D:\\base", L"a\\"), CString(L"D:\\base\\a\\"));
    EXPECT_EQ(ResolveAnswerPath(L"D:\\base", L"\\a\\\\b"), CString(L"D:\\a\\\\b"));
}

TEST(SetupAnswerPaths, DotsLeaveThePartBeforeDoubledBackslashes)
{
    EXPECT_EQ(ResolveAnswerPath(L"D:\\base", L"C:\\a\\\\..\\b"), CString(L"C:\\b"));
    EXPECT_EQ(ResolveAnswerPath(L"D:\\base", L"C:\\a\\b\\..\\"), CString(L"C:\\a\\"));
}

TEST(SetupFormats, AHoleStandsForAnyText)
{
    EXPECT_TRUE(MatchesFormat(L"Replace \"%s\"?", L"Replace \"a \"b\"?"));
    EXPECT_TRUE(MatchesFormat(L"%s", L""));
    EXPECT_TRUE(MatchesFormat(L"%s and %s.", L"a and b."));
    EXPECT_TRUE(MatchesFormat(L"plain", L"plain"));
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
        EXPECT_EQ(IsYes(answers.Find(L"settings")->entries[0].strValue), CString(value) == L"yes");
    }
    for (const wchar_t* value : {L"", L"Yes", L"on", L"1"}) {
        const CString error = Refused(Sources().Set(L"settings", L"network_log", value));
        EXPECT_NE(error.Find(L"Known are: yes, no."), -1) << Utf8(error);
    }
}

TEST(SetupAnswerTable, EveryRowBelongsToAKnownPage)
{
    for (const AnswerKey& key : AnswerKeys()) {
        EXPECT_NE(FindPageOfSection(key.section), nullptr) << Utf8(key.section);
    }
    for (const AnswerBox& box : AnswerBoxes()) {
        EXPECT_NE(FindPageOfSection(box.section), nullptr) << Utf8(box.section);
    }
}

TEST(SetupAnswerTable, RadiosAndEntriesHaveChoicesAndOthersHaveNone)
{
    for (const AnswerKey& key : AnswerKeys()) {
        const bool hasChoices = key.kind == AnswerKind::Radio || key.kind == AnswerKind::Entry;
        EXPECT_EQ(hasChoices, key.choice != nullptr) << Utf8(key.word);
    }
}

TEST(SetupAnswerTable, QuestionsHaveRolesAndEveryBoxNamesAKey)
{
    for (const AnswerBox& box : AnswerBoxes()) {
        EXPECT_EQ(box.kind == BoxKind::Question, box.role != nullptr) << box.string;
        const auto keys = AnswerKeys();
        EXPECT_TRUE(std::any_of(keys.begin(), keys.end(), [&](const AnswerKey& key) {
            return CString(key.section) == box.section && CString(key.word) == box.key;
        })) << box.string;
    }
}

TEST(SetupAnswerTable, NoControlAndNoStringStandsTwiceOnAPage)
{
    std::set<std::string> seen;
    for (const AnswerKey& key : AnswerKeys()) {
        // An entry's rows are lines of one list.
        const std::string line = key.kind == AnswerKind::Entry ? Utf8(key.choice) : "";
        EXPECT_TRUE(seen.insert(Utf8(key.section) + " control " + std::to_string(key.control) + line).second)
            << key.control;
    }
    for (const AnswerBox& box : AnswerBoxes()) {
        EXPECT_TRUE(seen.insert(Utf8(box.section) + " string " + std::to_string(box.string)).second)
            << box.string;
    }
}

} // namespace
