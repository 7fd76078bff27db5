// Answers for one of several products, and answers that are lines of lists.
#include "tests/rules/answer_sources.h"
#include "tests/support/processor_time.h"

#include <string>

namespace {

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
double SecondsFor(int lines, int rounds)
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
    const double start = ProcessorSeconds();
    for (int round = 0; round < rounds; ++round) {
        const CAnswers answers = Joined(Sources().Tables(LIST_TABLES).File(any + own + others));
        EXPECT_EQ(answers.Find(L"things", ZOLT)->entries.size(), static_cast<std::size_t>(lines / 4 * 3));
        AnswersError error;
        EXPECT_FALSE(CheckProductsReached(answers, {ZOLT, VIEWER}, error));
    }
    return ProcessorSeconds() - start;
}

TEST(SetupAnswerLists, AHundredThousandLinesJoinInTimeProportionalToThem)
{
    const double inTenFiles = SecondsFor(10000, 10);
    const double inOneFile = SecondsFor(100000, 1);
    RecordProperty("milliseconds", static_cast<int>(inOneFile * 1000));
    EXPECT_LT(inOneFile, inTenFiles * 3) << "with a square it would be ten times as long";
}

} // namespace
