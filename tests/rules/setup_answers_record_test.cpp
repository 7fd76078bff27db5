#include "setup/answers_record.h"
#include "setup/record_comments.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

const AnswerProduct ZOLT = {L"Zolt 2027", L"{11111111-0000-0000-0000-000000000000}"};
const AnswerProduct VIEWER = {L"Zolt Viewer 2027", L"{22222222-0000-0000-0000-00000000000A}"};

RecordedPage Page(const wchar_t* section, const AnswerProduct& product = {})
{
    RecordedPage page;
    page.pTable = FindAnswerTable(PageAnswerTables(), section);
    page.product = product;
    page.strTitle = CString(L"Page ") + section;
    return page;
}

RecordedPage With(RecordedPage page, std::vector<RecordedValue> values)
{
    page.values = std::move(values);
    return page;
}

RecordedQuestion Asked(const wchar_t* section, const wchar_t* role, bool yes)
{
    return {FindQuestion(*FindAnswerTable(PageAnswerTables(), section), role), yes};
}

RecordForm Form()
{
    RecordForm form;
    form.folders = {L"D:\\Out\\Office", L"D:\\Media"};
    form.products = {ZOLT};
    return form;
}

std::string Text(const std::vector<RecordedPage>& pages, const RecordForm& form)
{
    std::vector<CString> warnings;
    CString text;
    AnswersError error;
    EXPECT_TRUE(WriteAnswersFile(ComposeAnswers(pages, form, warnings), text, error)) << Utf8(error.Text());
    EXPECT_TRUE(warnings.empty());
    text.Replace(L"\r\n", L"\n");
    return Utf8(text);
}

TEST(SetupRecord, ChangedValuesStandOutFromProposedOnesAndQuestionsComeLast)
{
    RecordedPage page = With(Page(L"begin"), {{L"mode", {L"create"}, false, true}, {L"name", {L"Office"}}});
    page.questions = {Asked(L"begin", L"replace", true)};
    RecordForm form = Form();
    form.comments = {L"by a run"};
    EXPECT_EQ(Text({page}, form), "rollout-answers 1\n# by a run\n\n# Page begin\n[begin]\n"
                                  "# Changed from what the page proposed:\nname = Office\n"
                                  "# As the page proposed:\nmode = create\n"
                                  "# Questions that came up:\non_question.replace = yes\n");
}

TEST(SetupRecord, ThePlaceOfTheDeploymentIsLeftOutUnlessItIsAskedFor)
{
    const RecordedPage page = With(Page(L"begin"), {{L"location", {L"D:\\Out"}}, {L"name", {L"Office"}}});
    RecordForm form = Form();
    const std::string without = Text({page}, form);
    EXPECT_EQ(without.find("D:\\Out"), std::string::npos) << without;
    form.bWithLocation = true;
    EXPECT_NE(Text({page}, form).find("\nlocation = D:\\Out\n"), std::string::npos);
}

TEST(SetupRecord, ADeploymentIsCreatedUnderItsNameWhateverItWasMadeFrom)
{
    RecordForm form = Form();
    form.strDeployment = L"Lab";
    const std::string text =
        Text({With(Page(L"begin"),
                   {{L"mode", {L"modify"}}, {L"base", {L"Lab"}}, {L"platform", {L"x64"}, false, true}})},
             form);
    EXPECT_NE(text.find("\nmode = create\nname = Lab\n"), std::string::npos) << text;
    EXPECT_EQ(text.find("base"), std::string::npos) << text;
    EXPECT_NE(text.find("platform = x64"), std::string::npos) << text;
}

TEST(SetupRecord, PathsBelowTheFileOrTheMediaAreWrittenRelative)
{
    const std::string text =
        Text({With(Page(L"notices", ZOLT), {{L"update_list", {L"D:\\Media\\lists\\a.npl"}},
                                            {L"site_feed", {L"D:\\Out\\Office\\feed.xml"}},
                                            {L"site_name", {L"D:\\Media\\x"}}})},
             Form());
    EXPECT_NE(text.find("update_list = <media>\\lists\\a.npl\n"), std::string::npos) << text;
    EXPECT_NE(text.find("site_feed = feed.xml\n"), std::string::npos) << text;
    EXPECT_NE(text.find("site_name = D:\\Media\\x\n"), std::string::npos) << "a name is no path";
}

TEST(SetupRecord, WhatLiesBesideTheDeploymentIsWrittenRelativeInItsOwnFileAlone)
{
    const std::vector<RecordedPage> pages = {With(Page(L"settings"), {{L"log_folder", {L"D:\\Out\\Log\\"}}})};
    RecordForm form = Form();
    EXPECT_NE(Text(pages, form).find("log_folder = D:\\Out\\Log\\\n"), std::string::npos)
        << Text(pages, form);
    form.strDeployment = L"Office";
    EXPECT_NE(Text(pages, form).find("log_folder = ..\\Log\\\n"), std::string::npos) << Text(pages, form);
}

TEST(SetupRecord, APathThatWouldBeMadeFullIsWrittenAsLiteralAndAKeptOneAsKept)
{
    const std::string text =
        Text({With(Page(L"notices", ZOLT), {{L"site_feed", {L"feeds\\a.xml"}, true}})}, Form());
    EXPECT_NE(text.find("\nsite_feed.kept.literal = feeds\\a.xml\n"), std::string::npos) << text;
}

TEST(SetupRecord, SectionsNameTheirProductWhereThereAreSeveral)
{
    RecordForm form = Form();
    const std::vector<RecordedPage> pages = {With(Page(L"notices", ZOLT), {{L"feeds", {L"no"}}}),
                                             With(Page(L"notices", VIEWER), {{L"feeds", {L"yes"}}})};
    EXPECT_NE(Text({pages[0]}, form).find("\n[notices]\n"), std::string::npos);
    form.products = {ZOLT, VIEWER};
    const std::string text = Text(pages, form);
    EXPECT_NE(text.find("# Page notices, Zolt 2027\n[notices \"Zolt 2027\"]\n"), std::string::npos) << text;
    EXPECT_NE(text.find("[notices \"Zolt Viewer 2027\"]\n"), std::string::npos) << text;
}

TEST(SetupRecord, TwoProductsOfOneNameAreNamedByTheirCodes)
{
    RecordForm form = Form();
    form.products = {ZOLT, {L"zolt 2027", L"{33333333-0000-0000-0000-000000000000}"}};
    const std::string text = Text({With(Page(L"notices", ZOLT), {{L"feeds", {L"no"}}})}, form);
    EXPECT_NE(text.find("[notices \"{11111111-0000-0000-0000-000000000000}\"]"), std::string::npos) << text;
}

TEST(SetupRecord, APageThatAsksNothingLeavesNoSectionAndOneNobodyWentToSaysSo)
{
    RecordedPage unseen = Page(L"notices", ZOLT);
    unseen.bShown = false;
    const std::string text = Text({Page(L"contact"), unseen}, Form());
    EXPECT_EQ(text.find("contact"), std::string::npos) << text;
    EXPECT_NE(text.find("[notices]\n# Nobody went to its tab.\nshow = no\n"), std::string::npos) << text;
}

TEST(SetupRecord, WhatNoFileCanHoldStopsTheReplayByName)
{
    std::vector<CString> warnings;
    const AnswersFile file =
        ComposeAnswers({With(Page(L"notices", ZOLT), {{L"site_name", {L"a\x0001"}}, {L"feeds", {L"no"}}})},
                       Form(), warnings);
    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_EQ(warnings[0].Find(L"notices.site_name: "), 0) << Utf8(warnings[0]);
    ASSERT_EQ(file.sections.at(0).answers.size(), 2u);
    EXPECT_EQ(file.sections[0].answers[0].strKey, CString(L"site_name.left_out"));
    EXPECT_EQ(file.sections[0].answers[0].comments, (std::vector<CString>{RECORD_CHANGED, warnings[0]}));
    EXPECT_EQ(file.sections[0].answers[1].strKey, CString(L"feeds"));
    AnswerSources sources;
    sources.file = file;
    CAnswers answers;
    AnswersError error;
    EXPECT_FALSE(JoinAnswers(sources, answers, error));
    EXPECT_EQ(error.strKey, CString(L"notices.site_name.left_out"));
    BaseAnswers base;
    ASSERT_TRUE(ReadBaseAnswers(file, L"D:\\Base", {ZOLT}, PageAnswerTables(), base, error))
        << Utf8(error.Text());
    EXPECT_EQ(base.pages.at(0).values.size(), 1u);
}

// ---- a base

BaseAnswers Base(const std::string& text, const std::vector<AnswerProduct>& products = {ZOLT})
{
    const std::string bytes = "rollout-answers 1\n" + text;
    AnswersFile file;
    AnswersError error;
    EXPECT_TRUE(ParseAnswersFile(bytes.data(), bytes.size(), file, error)) << Utf8(error.Text());
    BaseAnswers base;
    EXPECT_TRUE(ReadBaseAnswers(file, L"D:\\Base", products, PageAnswerTables(), base, error))
        << Utf8(error.Text());
    return base;
}

std::string Merged(const std::string& base, const std::vector<RecordedPage>& run)
{
    std::vector<RecordedPage> unknown;
    const std::string text = Text(MergeAnswers(Base(base), run, unknown), Form());
    EXPECT_TRUE(unknown.empty());
    return text;
}

TEST(SetupRecord, AValueThatNobodyChangedStaysAsTheBaseHasIt)
{
    const std::string text =
        Merged("[notices]\nfeeds = no\nsite_name = Old\n",
               {With(Page(L"notices", ZOLT), {{L"site_name", {L"New"}}, {L"feeds", {L"no"}, false, true}})});
    EXPECT_NE(text.find("site_name = New\nfeeds = no\n"), std::string::npos) << text;
    EXPECT_EQ(text.find("As the page"), std::string::npos)
        << "somebody changed feeds when the base was made\n"
        << text;
}

TEST(SetupRecord, WhatTheBasesPageProposedIsStillProposed)
{
    const std::string text = Merged("[notices]\n# As the page proposed:\nfeeds = yes\n",
                                    {With(Page(L"notices", ZOLT), {{L"feeds", {L"yes"}, false, true}})});
    EXPECT_NE(text.find("# As the page proposed:\nfeeds = yes\n"), std::string::npos) << text;
}

TEST(SetupRecord, APageThatWasNotShownStaysAsTheBaseHasIt)
{
    RecordedPage unseen = Page(L"notices", ZOLT);
    unseen.bShown = false;
    const std::string text = Merged("[notices]\nfeeds = no\non_question.empty_list = yes\n", {unseen});
    EXPECT_NE(text.find("feeds = no\n"), std::string::npos) << text;
    EXPECT_NE(text.find("on_question.empty_list = yes\n"), std::string::npos) << text;
    EXPECT_EQ(text.find("show"), std::string::npos) << text;
    EXPECT_EQ(Merged("[notices]\nfeeds = no\n", {}).find("show"), std::string::npos);
}

TEST(SetupRecord, WhatThePageNoLongerOffersGoesAndWhatIsKeptTakesItsPlace)
{
    const std::string text =
        Merged("[notices]\nsite_channel = yes\nsite_feed = \\\\s\\h\\a.xml\n",
               {With(Page(L"notices", ZOLT),
                     {{L"site_channel", {L"no"}}, {L"site_feed", {L"\\\\s\\h\\a.xml"}, true}})});
    EXPECT_NE(text.find("site_channel = no\nsite_feed.kept = \\\\s\\h\\a.xml\n"), std::string::npos) << text;
    EXPECT_EQ(text.find("site_feed ="), std::string::npos) << text;
}

// The page shows the text that it showed before, but can't be entered any more.
TEST(SetupRecord, WhatTheBaseAnsweredIsKeptWhenItsFeatureIsSwitchedOff)
{
    const std::string text =
        Merged("[notices]\nsite_channel = yes\nsite_feed = \\\\s\\h\\a.xml\n",
               {With(Page(L"notices", ZOLT), {{L"site_channel", {L"no"}},
                                              {L"site_feed", {L"\\\\s\\h\\a.xml"}, true, true},
                                              {L"site_name", {L"Site"}, true, true}})});
    EXPECT_NE(text.find("site_feed.kept = \\\\s\\h\\a.xml\n"), std::string::npos) << text;
    EXPECT_EQ(text.find("site_name"), std::string::npos) << "the page keeps it by itself\n" << text;
}

TEST(SetupRecord, WhatThePageShowsWinsOverABaseThatSaysSomethingElse)
{
    const std::string text = Merged("[settings]\nlog_folder = ..\\Log\nkeep_copy = yes\n",
                                    {With(Page(L"settings"), {{L"log_folder", {L"E:\\Old\\Log"}, false, true},
                                                              {L"keep_copy", {L"yes"}, false, true}})});
    EXPECT_NE(
        text.find("# Changed from what the page proposed:\nlog_folder = E:\\Old\\Log\nkeep_copy = yes\n"),
        std::string::npos)
        << text;
}

TEST(SetupRecord, NobodyAgreesToReplacingAnotherDeployment)
{
    const std::string text = Merged("[begin]\nname = Old\non_question.replace = "
                                    "yes\non_question.local_location = yes\nlocation = D:\\Old\n",
                                    {With(Page(L"begin"), {{L"name", {L"New"}}})});
    EXPECT_EQ(text.find("replace"), std::string::npos) << text;
    EXPECT_NE(text.find("on_question.local_location = yes"), std::string::npos) << text;
    EXPECT_EQ(text.find("D:\\Old"), std::string::npos) << text;
}

TEST(SetupRecord, APageOfWhichNobodyKnowsWhatItHoldsIsReported)
{
    RecordedPage unseen = Page(L"notices", ZOLT);
    unseen.bShown = false;
    std::vector<RecordedPage> unknown;
    EXPECT_TRUE(MergeAnswers(BaseAnswers(), {unseen}, unknown).empty());
    ASSERT_EQ(unknown.size(), 1u);
    EXPECT_EQ(unknown[0].pTable, unseen.pTable);
}

TEST(SetupRecord, ABasesSectionForAProductThatIsGoneIsReportedWithItsLine)
{
    const BaseAnswers base = Base("[notices \"Zolt 2020\"]\nfeeds = no\n");
    ASSERT_EQ(base.warnings.size(), 1u);
    EXPECT_NE(base.warnings[0].Find(L"(2): There is no product \"Zolt 2020\""), -1) << Utf8(base.warnings[0]);
}

TEST(SetupRecord, QuestionsOfBothStandAndTheRunsWin)
{
    RecordedPage page = Page(L"notices", ZOLT);
    page.questions = {Asked(L"notices", L"empty_list", false)};
    const std::string text =
        Merged("[notices]\non_question.empty_list = yes\non_question.feed_kind = yes\n", {page});
    EXPECT_NE(text.find("on_question.empty_list = no\non_question.feed_kind = yes\n"), std::string::npos)
        << text;
}

TEST(SetupRecord, TheBasesRelativePathsCountFromTheBaseAndThoseOfTheMediaStay)
{
    const std::string text = Merged("[notices]\nsite_feed = feed.xml\nupdate_list = <media>\\a.npl\n", {});
    EXPECT_NE(text.find("site_feed = D:\\Base\\feed.xml\n"), std::string::npos) << text;
    EXPECT_NE(text.find("update_list = <media>\\a.npl\n"), std::string::npos) << text;
}

TEST(SetupRecord, ABaseForAnyProductCountsForEach)
{
    const BaseAnswers base =
        Base("[notices]\nfeeds = no\n[notices \"Zolt Viewer 2027\"]\nfeeds = yes\n", {ZOLT, VIEWER});
    ASSERT_EQ(base.pages.size(), 2u);
    EXPECT_EQ(base.pages[0].values.at(0).fields.at(0), CString(L"no"));
    EXPECT_EQ(base.pages[1].values.at(0).fields.at(0), CString(L"yes"));
}

TEST(SetupRecord, ABaseThatNobodyCanReadIsRefusedWithItsLine)
{
    const std::string bytes = "rollout-answers 1\n[notices]\nnews = x\n";
    AnswersFile file;
    AnswersError error;
    ASSERT_TRUE(ParseAnswersFile(bytes.data(), bytes.size(), file, error));
    BaseAnswers base;
    EXPECT_FALSE(ReadBaseAnswers(file, L"D:\\Base", {ZOLT}, PageAnswerTables(), base, error));
    EXPECT_EQ(error.nLine, 3);
}

// ---- what is recorded is what is replayed

using Values = std::vector<RecordedValue>;

constexpr FieldKind TARGET_AND_FILE[] = {FieldKind::Text, FieldKind::Path};
constexpr AnswerKey KEYS[] = {
    {.word = L"text", .kind = AnswerKind::Text, .control = 1},
    {.word = L"path", .kind = AnswerKind::Path, .control = 2},
    {.word = L"check", .kind = AnswerKind::Check, .control = 3},
    {.word = L"kept", .kind = AnswerKind::Path, .control = 4, .needs = {L"check", L"yes"}},
    {.word = L"file", .kind = AnswerKind::List, .fields = TARGET_AND_FILE},
};
constexpr AnswerBox BOXES[] = {{BoxKind::Question, L"sure", L"text", 1}};
constexpr PageRow ROW = {.stem = L"Any", .bTab = true, .bOfProduct = true, .section = L"any"};
constexpr PageAnswerTable TABLE = {.page = &ROW, .keys = KEYS, .boxes = BOXES};
constexpr const PageAnswerTable* TABLES[] = {&TABLE};

constexpr AnswerKey LIST_KEYS[] = {
    {.word = L"text", .kind = AnswerKind::Text, .control = 1},
    {.word = L"clear", .kind = AnswerKind::Clear},
    {.word = L"folder", .kind = AnswerKind::List, .fields = TARGET_AND_FILE},
    {.word = L"file", .kind = AnswerKind::List, .fields = TARGET_AND_FILE},
};
constexpr PageAnswerTable LIST_TABLE = {.page = &ROW, .keys = LIST_KEYS};

std::string MergedLists(const Values& base, const Values& run)
{
    BaseAnswers answers;
    RecordedPage page;
    page.pTable = &LIST_TABLE;
    answers.pages = {With(page, base)};
    std::vector<RecordedPage> unknown;
    std::string text;
    const std::vector<RecordedPage> merged = MergeAnswers(answers, {With(page, run)}, unknown);
    for (const RecordedValue& value : merged.at(0).values) {
        text += Utf8(value.strWord) + ":" + Utf8(value.fields.front()) + " ";
    }
    return text;
}

TEST(SetupRecord, UnchangedListsStayAsTheBaseHasThemInItsOrder)
{
    const Values base = {
        {L"clear", {L"yes"}}, {L"file", {L"a", L""}}, {L"folder", {L"b", L""}}, {L"file", {L"c", L""}}};
    EXPECT_EQ(MergedLists(base, {{L"text", {L"t"}},
                                 {L"folder", {L"b", L""}, false, true},
                                 {L"file", {L"a", L""}, false, true},
                                 {L"file", {L"c", L""}, false, true}}),
              "text:t clear:yes file:a folder:b file:c ");
    EXPECT_EQ(MergedLists({{L"clear", {L"yes"}}}, {{L"text", {L"t"}, false, true}}), "text:t clear:yes ");
}

TEST(SetupRecord, ChangedListsAreTheRunsAlone)
{
    EXPECT_EQ(MergedLists({{L"file", {L"a", L""}}}, {{L"clear", {L"yes"}}, {L"file", {L"b", L""}}}),
              "clear:yes file:b ");
}

// Lists and values that stand for themselves
constexpr FieldKind PATH_TEXT[] = {FieldKind::Text};
constexpr AnswerKey OWN_KEYS[] = {
    {.word = L"fonts", .kind = AnswerKind::List, .fields = PATH_TEXT, .bReplaces = true},
    {.word = L"log", .kind = AnswerKind::Value, .fields = PATH_TEXT},
    {.word = L"colors", .kind = AnswerKind::List, .fields = PATH_TEXT, .bReplaces = true},
};
constexpr PageAnswerTable OWN_TABLE = {.page = &ROW, .keys = OWN_KEYS};

std::string MergedOwn(const Values& base, const Values& run)
{
    BaseAnswers answers;
    RecordedPage page;
    page.pTable = &OWN_TABLE;
    answers.pages = {With(page, base)};
    std::vector<RecordedPage> unknown;
    std::string text;
    const std::vector<RecordedPage> merged = MergeAnswers(answers, {With(page, run)}, unknown);
    for (const RecordedValue& value : merged.at(0).values) {
        text += Utf8(value.strWord) + (value.bProposed ? "~" : "=") + Utf8(value.fields.front()) + " ";
    }
    return text;
}

TEST(SetupRecord, AListThatStandsForItselfStaysOrChangesByItself)
{
    const Values base = {{L"fonts", {L"a"}}, {L"fonts", {L"b"}}, {L"colors", {L"c"}}, {L"log", {L"d"}}};
    EXPECT_EQ(MergedOwn(base, {{L"fonts", {L"a"}, false, true},
                               {L"fonts", {L"b"}, false, true},
                               {L"log", {L"x"}},
                               {L"colors", {L"c"}, false, true}}),
              "fonts=a fonts=b log=x colors=c ");
    EXPECT_EQ(MergedOwn(base, {{L"fonts", {L"b"}}, {L"fonts", {L"a"}}, {L"log", {L"d"}, false, true}}),
              "fonts=b fonts=a log=d ");
}

TEST(SetupRecord, AListThatThePageShowsOtherwiseThanTheBaseSaysIsTheRuns)
{
    const Values base = {{L"fonts", {L"a"}}, {L"fonts", {L"b"}}};
    EXPECT_EQ(MergedOwn(base, {{L"fonts", {L"a"}, false, true}}), "fonts=a ");
    EXPECT_EQ(MergedOwn(base, {{L"colors", {L"c"}, false, true}}), "colors~c ");
}

TEST(SetupRecord, AListThatTheBasesPageProposedIsStillProposed)
{
    EXPECT_EQ(MergedOwn({{L"fonts", {L"a"}, false, true}}, {{L"fonts", {L"a"}, false, true}}), "fonts~a ");
}

class CRandom
{
public:
    std::uint32_t Below(std::uint32_t limit)
    {
        m_state = m_state * 1664525u + 1013904223u;
        return (m_state >> 16) % limit;
    }
    CString Text()
    {
        static const wchar_t* const pieces[] = {
            L"\"", L",",      L" ",       L"\t", L"#",       L"[",     L"]",      L"=",
            L"a",  L"\\",     L"D:\\",    L"..", L"<media>", L"/",     L"\x4E2D", L"\xD83D\xDE00",
            L"'",  L"\x05D0", L"Media\\", L".",  L"%s",      L"\xFEFF"};
        CString text;
        for (std::uint32_t left = Below(7); left > 0; --left) {
            text += pieces[Below(static_cast<std::uint32_t>(std::size(pieces)))];
        }
        return text;
    }

private:
    std::uint32_t m_state = 7;
};

RecordedPage AnyPage(CRandom& random, const AnswerProduct& product)
{
    RecordedPage page;
    page.pTable = &TABLE;
    page.product = product;
    page.strTitle = random.Text();
    page.values = {{L"text", {random.Text()}},
                   {L"path", {random.Text()}},
                   {L"check", {random.Below(2) ? L"yes" : L"no"}}};
    if (random.Below(2)) {
        page.values.push_back({L"kept", {random.Text()}, random.Below(2) == 1});
    }
    for (std::uint32_t left = random.Below(5); left > 0; --left) {
        page.values.push_back({L"file", {random.Text(), random.Text()}});
    }
    if (random.Below(2)) {
        page.questions = {{&BOXES[0], random.Below(2) == 1}};
    }
    return page;
}

TEST(SetupRecord, AnyAnswersComeBackFromTheFileThatTheyAreWrittenTo)
{
    CRandom random;
    for (int round = 0; round < 500; ++round) {
        RecordForm form;
        form.folders = {L"D:\\Media\\x", L"D:\\Media"};
        form.products = {{L"A " + random.Text() + L"\x4E2D", L"{A}"}, {L"B" + random.Text(), L"{B}"}};
        form.tables = TABLES;
        const std::vector<RecordedPage> pages = {AnyPage(random, form.products[0]),
                                                 AnyPage(random, form.products[1])};
        std::vector<CString> warnings;
        CString text;
        AnswersError error;
        ASSERT_TRUE(WriteAnswersFile(ComposeAnswers(pages, form, warnings), text, error));
        ASSERT_TRUE(warnings.empty()) << Utf8(warnings[0]);
        std::string bytes;
        AppendUtf8(bytes, text);
        AnswerSources sources;
        sources.tables = TABLES;
        sources.strFileFolder = form.folders.strBase;
        ASSERT_TRUE(ParseAnswersFile(bytes.data(), bytes.size(), sources.file, error))
            << bytes << Utf8(error.Text());
        CAnswers answers;
        ASSERT_TRUE(JoinAnswers(sources, answers, error)) << bytes << Utf8(error.Text());
        answers.UseMediaFolder(form.folders.strMedia);
        ASSERT_TRUE(CheckProductsReached(answers, form.products, error)) << bytes << Utf8(error.Text());
        for (const RecordedPage& page : pages) {
            const PageAnswers* again = answers.Find(L"any", page.product);
            ASSERT_NE(again, nullptr) << bytes;
            ASSERT_EQ(again->entries.size(), page.values.size()) << bytes;
            for (std::size_t index = 0; index < page.values.size(); ++index) {
                EXPECT_EQ(again->entries[index].pKey->word, page.values[index].strWord);
                EXPECT_EQ(again->entries[index].fields, page.values[index].fields) << bytes;
                EXPECT_EQ(again->entries[index].bKept, page.values[index].bKept) << bytes;
            }
            ASSERT_EQ(again->questions.size(), page.questions.size());
            EXPECT_TRUE(page.questions.empty() || again->questions[0].bYes == page.questions[0].bYes);
        }
    }
}

} // namespace
