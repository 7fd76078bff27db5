#include "setup/answers.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
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
        line.answers.push_back({page, L"", key, value});
        return *this;
    }
    Sources& SetFor(const wchar_t* page, const wchar_t* product, const wchar_t* key, const wchar_t* value)
    {
        line.answers.push_back({page, product, key, value});
        return *this;
    }
    Sources& Tables(AnswerTables others)
    {
        tables = others;
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

// ---- products

const AnswerProduct ZOLT = {L"Zolt 2027", L"{11111111-0000-0000-0000-000000000000}"};
const AnswerProduct VIEWER = {L"Zolt Viewer 2027", L"{22222222-0000-0000-0000-00000000000A}"};

CString ValueFor(const CAnswers& answers, const AnswerProduct& product, const wchar_t* word)
{
    const PageAnswers* page = answers.Find(L"notices", product);
    for (const PageAnswer& answer : page ? page->entries : std::vector<PageAnswer>()) {
        if (CString(word) == answer.pKey->word) {
            return answer.Value();
        }
    }
    return L"(none)";
}

TEST(SetupAnswerProducts, ASectionWithoutAProductCountsForEach)
{
    const CAnswers answers = Joined(Sources().File("[notices]\nsite_name = both\n"));
    EXPECT_EQ(ValueFor(answers, ZOLT, L"site_name"), CString(L"both"));
    EXPECT_EQ(ValueFor(answers, VIEWER, L"site_name"), CString(L"both"));
}

TEST(SetupAnswerProducts, TheProductsOwnSectionWinsKeyByKey)
{
    for (const char* name :
         {"Zolt Viewer 2027", "ZOLT viewer 2027", "{22222222-0000-0000-0000-00000000000a}"}) {
        const CAnswers answers =
            Joined(Sources().File(std::string("[notices \"") + name +
                                  "\"]\nsite_name = viewer\n[notices]\nsite_name = both\nfeeds = no\n"));
        EXPECT_EQ(ValueFor(answers, VIEWER, L"site_name"), CString(L"viewer")) << name;
        EXPECT_EQ(ValueFor(answers, VIEWER, L"feeds"), CString(L"no")) << name;
        EXPECT_EQ(ValueFor(answers, ZOLT, L"site_name"), CString(L"both")) << name;
    }
}

TEST(SetupAnswerProducts, AProductsSectionAloneLeavesTheOtherUnanswered)
{
    const CAnswers answers = Joined(Sources().File("[notices \"Zolt 2027\"]\nfeeds = no\n"));
    EXPECT_EQ(ValueFor(answers, ZOLT, L"feeds"), CString(L"no"));
    EXPECT_EQ(answers.Find(L"notices", VIEWER), nullptr);
    EXPECT_EQ(answers.Find(L"notices"), nullptr);
}

TEST(SetupAnswerProducts, TheCommandLineWinsAlsoOverAProductsSection)
{
    const CAnswers answers = Joined(
        Sources().File("[notices \"Zolt 2027\"]\nsite_name = file\n").Set(L"notices", L"site_name", L"line"));
    EXPECT_EQ(ValueFor(answers, ZOLT, L"site_name"), CString(L"line"));
    const CAnswers named = Joined(Sources()
                                      .Set(L"notices", L"site_name", L"any")
                                      .SetFor(L"notices", L"Zolt 2027", L"site_name", L"named"));
    EXPECT_EQ(ValueFor(named, ZOLT, L"site_name"), CString(L"named"));
    EXPECT_EQ(ValueFor(named, VIEWER, L"site_name"), CString(L"any"));
}

TEST(SetupAnswerProducts, LeaveAndQuestionsOfTheProductWinToo)
{
    const CAnswers answers = Joined(
        Sources().File("[notices]\nleave = cancel\non_question.empty_list = no\n[notices \"Zolt 2027\"]\n"
                       "leave = next\non_question.empty_list = yes\n"));
    EXPECT_FALSE(answers.Find(L"notices", ZOLT)->bCancel);
    ASSERT_EQ(answers.Find(L"notices", ZOLT)->questions.size(), 1u);
    EXPECT_TRUE(answers.Find(L"notices", ZOLT)->questions[0].bYes);
    EXPECT_TRUE(answers.Find(L"notices", VIEWER)->bCancel);
}

TEST(SetupAnswerProducts, APageThatBelongsToNoProductTakesNone)
{
    const CString text = Refused(Sources().File("[begin \"Zolt 2027\"]\n"));
    EXPECT_EQ(text.Find(L"C:\\job\\answers.txt(2): The page \"begin\" belongs to no product."), 0)
        << Utf8(text);
}

CString ProductRefused(const std::string& file, const std::vector<AnswerProduct>& products)
{
    AnswersError error;
    EXPECT_FALSE(CheckProductsReached(Joined(Sources().File(file)), products, error)) << file;
    return error.Text();
}

TEST(SetupAnswerProducts, AProductThatIsNotThereIsRefusedWithItsLineAndTheOnesThatAre)
{
    const CString text = ProductRefused("[notices]\n[notices \"Zolt 2026\"]\n", {ZOLT, VIEWER});
    EXPECT_EQ(text.Find(L"C:\\job\\answers.txt(3): There is no product \"Zolt 2026\""), 0) << Utf8(text);
    EXPECT_NE(text.Find(L"\"Zolt 2027\", \"Zolt Viewer 2027\""), -1) << Utf8(text);
}

TEST(SetupAnswerProducts, ANameOfTwoProductsIsRefusedAndTheirCodesAreNot)
{
    const AnswerProduct twin = {L"Zolt 2027", L"{33333333-0000-0000-0000-000000000000}"};
    EXPECT_NE(ProductRefused("[notices \"Zolt 2027\"]\n", {ZOLT, twin}).Find(L"product code"), -1);
    AnswersError error;
    EXPECT_TRUE(
        CheckProductsReached(Joined(Sources().File("[notices \"{33333333-0000-0000-0000-000000000000}\"]\n")),
                             {ZOLT, twin}, error));
}

TEST(SetupAnswerProducts, AProductByNameAndByCodeOnOnePageIsRefusedWithBothLines)
{
    const CString text =
        ProductRefused("[notices \"Zolt 2027\"]\n[resources \"{11111111-0000-0000-0000-000000000000}\"]\n"
                       "[notices \"{11111111-0000-0000-0000-000000000000}\"]\n",
                       {ZOLT});
    EXPECT_EQ(text.Find(L"C:\\job\\answers.txt(4): "), 0) << Utf8(text);
    EXPECT_NE(text.Find(L"line 2"), -1) << Utf8(text);
}

// ---- lists

constexpr FieldKind TARGET_AND_FILE[] = {FieldKind::Text, FieldKind::Path};
constexpr FieldKind FOLDER[] = {FieldKind::Text};
constexpr AnswerKey LIST_KEYS[] = {
    {.word = L"before", .kind = AnswerKind::Text, .control = 1},
    {.word = L"folder", .kind = AnswerKind::List, .fields = FOLDER},
    {.word = L"clear", .kind = AnswerKind::Clear},
    {.word = L"file", .kind = AnswerKind::List, .fields = TARGET_AND_FILE},
    {.word = L"after", .kind = AnswerKind::Text, .control = 2},
};
constexpr PageRow LIST_PAGE = {.stem = L"List", .bTab = true, .bOfProduct = true, .section = L"things"};
constexpr PageAnswerTable LIST_TABLE = {.page = &LIST_PAGE, .keys = LIST_KEYS};
constexpr const PageAnswerTable* LIST_TABLES[] = {&LIST_TABLE};

std::string Order(const CAnswers& answers, const AnswerProduct& product = ZOLT)
{
    const PageAnswers* page = answers.Find(L"things", product);
    std::string order;
    for (const PageAnswer& answer : page ? page->entries : std::vector<PageAnswer>()) {
        order += Utf8(answer.pKey->word);
        for (const CString& field : answer.fields) {
            order += ":" + Utf8(field);
        }
        order += " ";
    }
    return order;
}

TEST(SetupAnswerLists, LinesKeepTheirOrderAmongEachOtherAndClearingComesFirst)
{
    const CAnswers answers = Joined(Sources()
                                        .Tables(LIST_TABLES)
                                        .File("[things]\nafter = z\nfile = \"t\", \"C:\\1\"\nfolder = "
                                              "a\nclear = yes\nfile = \"t\", \"C:\\2\"\nfolder = b\n"
                                              "before = y\n"));
    EXPECT_EQ(Order(answers), "before:y clear:yes file:t:C:\\1 folder:a file:t:C:\\2 folder:b after:z ");
}

TEST(SetupAnswerLists, OnlyFieldsThatArePathsAreMadeFull)
{
    const CAnswers answers =
        Joined(Sources().Tables(LIST_TABLES).File("[things]\nfile = \"t\\u\", \"logo.png\"\n"));
    EXPECT_EQ(Order(answers), "file:t\\u:C:\\job\\logo.png ");
    EXPECT_EQ(
        Order(Joined(Sources().Tables(LIST_TABLES).File("[things]\nfile.literal = \"t\", \"logo.png\"\n"))),
        "file:t:logo.png ");
}

TEST(SetupAnswerLists, ALineWithTooFewOrTooManyValuesIsRefused)
{
    for (const char* value : {"a", "\"a\"", "\"a\", \"b\", \"c\""}) {
        const CString text =
            Refused(Sources().Tables(LIST_TABLES).File(std::string("[things]\nfile = ") + value + "\n"));
        EXPECT_EQ(text.Find(L"C:\\job\\answers.txt(3): things.file: The key has 2 values"), 0) << Utf8(text);
    }
}

TEST(SetupAnswerLists, TheProductsLinesReplaceThoseOfTheSameWordForAny)
{
    const CAnswers answers = Joined(Sources()
                                        .Tables(LIST_TABLES)
                                        .File("[things]\nfolder = a\nfile = \"t\", \"C:\\1\"\n"
                                              "[things \"Zolt 2027\"]\nfolder = b\nfolder = c\n"));
    EXPECT_EQ(Order(answers, ZOLT), "file:t:C:\\1 folder:b folder:c ");
    EXPECT_EQ(Order(answers, VIEWER), "folder:a file:t:C:\\1 ");
}

TEST(SetupAnswerLists, ClearingForAProductReplacesAllLinesForAny)
{
    const CAnswers answers = Joined(Sources()
                                        .Tables(LIST_TABLES)
                                        .File("[things]\nfolder = a\nfile = \"t\", \"C:\\1\"\n"
                                              "[things \"Zolt 2027\"]\nclear = yes\nfolder = b\n"));
    EXPECT_EQ(Order(answers, ZOLT), "clear:yes folder:b ");
}

TEST(SetupAnswerLists, TheCommandLineMaySetAListSeveralTimes)
{
    const CAnswers answers = Joined(Sources()
                                        .Tables(LIST_TABLES)
                                        .File("[things]\nfolder = a\n")
                                        .Set(L"things", L"folder", L"b")
                                        .Set(L"things", L"folder", L"\"c\"")
                                        .Set(L"things", L"file", L"\"t\", \"x.png\""));
    EXPECT_EQ(Order(answers), "folder:b folder:c file:t:D:\\here\\x.png ");
    EXPECT_NE(
        Refused(Sources().Tables(LIST_TABLES).Set(L"things", L"file", L"\"t\", \"x")).Find(L"closing quote"),
        -1);
}

TEST(SetupAnswerLists, ClearingThatIsSaidNotToBeDoneReplacesNothing)
{
    const CAnswers answers =
        Joined(Sources()
                   .Tables(LIST_TABLES)
                   .File("[things]\nfolder = a\nclear = yes\n[things \"Zolt 2027\"]\nclear = no\n"));
    EXPECT_EQ(Order(answers), "clear:no folder:a ");
}

TEST(SetupAnswerLists, ALiteralLineMayBeSetSeveralTimesToo)
{
    EXPECT_EQ(AnswerKeyForm(L"file.kept.literal").strWord, CString(L"file"));
    EXPECT_EQ(AnswerKeyForm(L"on_question.replace").strWord, CString(L"on_question.replace"));
    EXPECT_EQ(AnswerKeyForm(L".literal").strWord, CString(L".literal"));
}

// Seconds for reading, joining and finding that many lines: half of them of any product, half of the one that wins.
double SecondsFor(int lines)
{
    std::string any = "[things]\n";
    std::string own = "[things \"Zolt 2027\"]\n";
    std::string others;
    for (int line = 0; line < lines / 4; ++line) {
        const std::string number = std::to_string(line);
        any += "file = \"t" + number + "\", \"C:\\" + number + "\"\n";
        own += "folder = f" + number + "\nfolder = g" + number + "\n";
        others += "[things \"" + number + "\"]\n";
    }
    const auto start = std::chrono::steady_clock::now();
    const CAnswers answers = Joined(Sources().Tables(LIST_TABLES).File(any + own + others));
    EXPECT_EQ(answers.Find(L"things", ZOLT)->entries.size(), static_cast<std::size_t>(lines / 4 * 3));
    AnswersError error;
    EXPECT_FALSE(CheckProductsReached(answers, {ZOLT, VIEWER}, error));
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

TEST(SetupAnswerLists, AHundredThousandLinesJoinInTimeProportionalToThem)
{
    const double some = SecondsFor(10000);
    const double many = SecondsFor(100000);
    RecordProperty("milliseconds", static_cast<int>(many * 1000));
    EXPECT_LT(many, some * 30) << "ten times as many; with a square it would be a hundred times";
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
        EXPECT_EQ(IsYes(answers.Find(L"settings")->entries[0].Value()), CString(value) == L"yes");
    }
    for (const wchar_t* value : {L"", L"Yes", L"on", L"1"}) {
        const CString error = Refused(Sources().Set(L"settings", L"network_log", value));
        EXPECT_NE(error.Find(L"Known are: yes, no."), -1) << Utf8(error);
    }
}

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
            const bool hasChoices = key.kind == AnswerKind::Radio || key.kind == AnswerKind::Entry;
            EXPECT_EQ(hasChoices, key.choice != nullptr) << Utf8(key.word);
            EXPECT_EQ(key.kind == AnswerKind::List, !key.fields.empty()) << Utf8(key.word);
        }
    }
}

TEST(SetupAnswerTable, QuestionsHaveRolesAndEveryBoxNamesAKey)
{
    for (const PageAnswerTable* table : PageAnswerTables()) {
        for (const AnswerBox& box : table->boxes) {
            EXPECT_EQ(box.kind == BoxKind::Question, box.role != nullptr) << box.string;
            EXPECT_NE(FindAnswerKey(*table, box.key), nullptr) << box.string;
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
            EXPECT_TRUE(seen.insert("control " + std::to_string(key.control) + line).second) << key.control;
        }
        for (const AnswerBox& box : table->boxes) {
            EXPECT_TRUE(seen.insert("string " + std::to_string(box.string)).second) << box.string;
        }
    }
}

} // namespace
