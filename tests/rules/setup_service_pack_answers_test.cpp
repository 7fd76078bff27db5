// The answers of the service packs: what is read from a file, what is recorded, and what of a base stays.
#include "include/resource_ids.h"
#include "setup/answers.h"
#include "setup/answers_record.h"
#include "setup/box_rules.h"
#include "setup/page_answers.h"
#include "tests/rules/answer_sources.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

namespace {

std::string Refusal(const std::string& text)
{
    CAnswers answers;
    return Utf8(Join("[service_pack]\n" + text, answers).Text());
}

TEST(SetupServicePackAnswers, FilesCountFromTheAnswersFileAndTheMedia)
{
    CAnswers answers;
    EXPECT_EQ(Join("[service_pack]\nchoice = files\nfile = patches/one.msp\nfile = <media>\\two.msp\nfile = "
                   "\"E:\\three.msp\"\n"
                   "way = merge\n",
                   answers)
                  .Text(),
              CString());
    answers.UseMediaFolder(L"E:\\Media");
    EXPECT_EQ(Entries(answers, L"service_pack"),
              "choice=\"files\"\nfile=\"C:\\job\\patches\\one.msp\"\n"
              "file=\"E:\\Media\\two.msp\"\nfile=\"E:\\three.msp\"\nway=\"merge\"\n");
}

TEST(SetupServicePackAnswers, WhatIsNoneOfTheValuesIsRefusedWithTheKnownOnes)
{
    EXPECT_EQ(Refusal("choice = all\n"),
              "C:\\job\\answers.txt(3): service_pack.choice: \"all\" is none of its "
              "values. Known are: none, offered, files.");
    EXPECT_EQ(Refusal("way = both\n"), "C:\\job\\answers.txt(3): service_pack.way: \"both\" is none of its "
                                       "values. Known are: append, merge.");
    EXPECT_EQ(Refusal("choice = none\nchoice = files\n"),
              "C:\\job\\answers.txt(4): service_pack.choice: The key stands in line 3 already. Keep one of "
              "the two.");
    EXPECT_NE(
        Refusal("patch = x\n").find("Known are: choice, clear, file, way, download_limit, show, leave."),
        std::string::npos)
        << Refusal("patch = x\n");
}

TEST(SetupServicePackAnswers, ADownloadsLimitIsANumberOfSecondsUpToADay)
{
    for (const char* good : {"1", "600", "86400"}) {
        EXPECT_EQ(Refusal(std::string("download_limit = ") + good + "\n"), "") << good;
    }
    for (const char* bad : {"0", "86401", "-5", "10 minutes", "99999999999999999999"}) {
        EXPECT_EQ(Refusal(std::string("download_limit = ") + bad + "\n"),
                  std::string("C:\\job\\answers.txt(3): service_pack.download_limit: \"") + bad +
                      "\" is none of its values. Known are: 1 to 86400 seconds.");
    }
}

TEST(SetupServicePackAnswers, AProductsOwnLinesReplaceThoseOfAllProducts)
{
    CAnswers answers;
    EXPECT_EQ(
        Join("[service_pack]\nchoice = files\nfile = C:\\all.msp\nway = merge\n[service_pack \"Viewer\"]\n"
             "file = C:\\one.msp\nfile = C:\\two.msp\nway = append\n",
             answers)
            .Text(),
        CString());
    EXPECT_EQ(Entries(answers, L"service_pack", {L"Viewer", L"{1}"}),
              "choice=\"files\"\nfile=\"C:\\one.msp\"\nfile=\"C:\\two.msp\"\nway=\"append\"\n");
    EXPECT_EQ(Entries(answers, L"service_pack", {L"Other", L"{2}"}),
              "choice=\"files\"\nfile=\"C:\\all.msp\"\nway=\"merge\"\n");
}

// ---- boxes

CString TextOfBox(unsigned int id)
{
    switch (id) {
    case IDS_PATCH_NOT_DOWNLOADED:
        return L"Not downloaded yet.";
    case IDS_PATCHES_NOT_APPLICABLE:
        return L"Do not apply:\n\n%s";
    case IDS_PATCH_CHANGED:
        return L"\"%s\" is another one.";
    default:
        return L"box " + NumberText(static_cast<long long>(id)) + L" \"%s\".";
    }
}

TEST(SetupServicePackAnswers, EveryBoxRefusesAndNamesItsLine)
{
    CAnswers answers;
    EXPECT_EQ(
        Join("[service_pack]\nchoice = offered\nfile = C:\\one.msp\nfile = C:\\two.msp\n", answers).Text(),
        CString());
    const auto blamed = [&](const CString& text) {
        const BoxVerdict verdict =
            JudgeBox(&SERVICE_PACK_ANSWERS, answers.Find(L"service_pack", {}), text, false, TextOfBox);
        EXPECT_EQ(verdict.meaning, BoxMeaning::Refused) << Utf8(text);
        return verdict.pRefused ? verdict.pRefused->origin.nLine : 0;
    };
    EXPECT_EQ(blamed(L"Not downloaded yet."), 3);
    EXPECT_EQ(blamed(L"Do not apply:\n\nC:\\one.msp\nC:\\two.msp\n"), 3);
    EXPECT_EQ(blamed(L"\"C:\\x\\sp1.exe\" is another one."), 3);
    EXPECT_EQ(blamed(L"box 328 \"C:\\two.msp\"."), 5);
    EXPECT_EQ(blamed(L"box 396 \"C:\\one.msp\"."), 4);
    EXPECT_EQ(blamed(L"box 520 \"C:\\two.msp\"."), 5);
    EXPECT_EQ(blamed(L"The server returned an invalid response."), 0) << "the system's own words name none";
}

// ---- recording

RecordedPage Page(const std::vector<std::pair<CString, CString>>& values, bool proposed)
{
    RecordedPage page;
    page.pTable = &SERVICE_PACK_ANSWERS;
    page.strTitle = L"Service pack";
    for (const auto& [word, value] : values) {
        page.values.push_back({.strWord = word, .fields = {value}, .bProposed = proposed});
    }
    return page;
}

TEST(SetupServicePackAnswers, ChoiceFilesAndWayAreWrittenWithPathsBelowTheFile)
{
    RecordForm form;
    form.folders.strBase = L"C:\\job";
    std::vector<CString> warnings;
    const AnswersFile file = ComposeAnswers(
        {Page({{L"choice", L"files"}, {L"file", L"C:\\job\\patches\\one.msp"}, {L"way", L"merge"}}, false)},
        form, warnings);
    ASSERT_EQ(file.sections.size(), 1u);
    std::string lines;
    for (const AnswerLine& answer : file.sections[0].answers) {
        lines += Utf8(answer.strKey) + "=" + Utf8(answer.fields[0]) + "\n";
    }
    EXPECT_EQ(lines, "choice=files\nfile=patches\\one.msp\nway=merge\n");
    EXPECT_TRUE(warnings.empty());
}

TEST(SetupServicePackAnswers, WhatNobodyChangedStaysAsTheBaseHasIt)
{
    BaseAnswers base;
    base.pages = {Page({{L"choice", L"offered"}, {L"way", L"append"}}, false)};
    std::vector<RecordedPage> unknown;
    const std::vector<RecordedPage> merged =
        MergeAnswers(base, {Page({{L"choice", L"offered"}, {L"way", L"append"}}, true)}, unknown);
    ASSERT_EQ(merged.size(), 1u);
    ASSERT_EQ(merged[0].values.size(), 2u);
    EXPECT_FALSE(merged[0].values[0].bProposed) << "the base's own answer, as it was entered";
}

} // namespace
