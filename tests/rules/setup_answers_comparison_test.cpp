// What the answers of two deployments differ in.
#include "setup/answers_comparison.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <string>

namespace {

const AnswerProduct ZOLT = {L"Zolt 2027", L"{11111111-2222-3333-4444-555555555556}"};
const AnswerProduct VIEWER = {L"Zolt Viewer", L"{11111111-2222-3333-4444-555555555557}"};

ComparedAnswers Answers(const std::string& text, const std::vector<AnswerProduct>& products = {ZOLT})
{
    ComparedAnswers answers{{}, products};
    const std::string bytes = "rollout-answers 1\n" + text;
    AnswersError error;
    EXPECT_TRUE(ParseAnswersFile(bytes.data(), bytes.size(), answers.file, error)) << Utf8(error.Text());
    return answers;
}

std::vector<std::string> Facts(const ComparedAnswers& first, const ComparedAnswers& second)
{
    DeploymentComparison comparison{L"", L"", CompareAnswers(first, second)};
    SortDifferences(comparison.differences);
    const std::string text = Utf8(ComposeComparisonText(comparison));
    std::vector<std::string> facts;
    std::size_t begin = text.find("\r\n\r\n");
    for (begin = begin == std::string::npos ? text.size() : begin + 4; begin < text.size();) {
        const std::size_t end = text.find("\r\n", begin);
        facts.push_back(text.substr(begin, end - begin));
        begin = end + 2;
    }
    return facts;
}

using Lines = std::vector<std::string>;

TEST(SetupAnswersComparison, PlainAnswersDifferByPageProductAndKey)
{
    EXPECT_EQ(Facts(Answers("[settings]\nlog_folder = a\n[notices]\nupdates = yes\nsite_name = x\n"),
                    Answers("[notices]\nsite_name = y\nupdate_list = l\n[settings]\nlog_folder = b\n")),
              (Lines{
                  "answer \"settings\" \"log_folder\": \"a\" -> \"b\"",
                  "answer of \"Zolt 2027\" \"notices\" \"site_name\": \"x\" -> \"y\"",
                  "answer of \"Zolt 2027\" \"notices\" \"update_list\": only in B, \"l\"",
                  "answer of \"Zolt 2027\" \"notices\" \"updates\": only in A, \"yes\"",
              }));
}

TEST(SetupAnswersComparison, CommentsOrderOfKeysAndOfSectionsDoNotCount)
{
    EXPECT_EQ(
        Facts(Answers("# a\n[settings]\nlog_folder = a\nmode = silent\n[notices]\nupdates = yes\n"),
              Answers("[notices]\n# b\nupdates = \"yes\"\n[settings]\nmode = silent\nlog_folder = a\n")),
        Lines{});
}

TEST(SetupAnswersComparison, ListsAreComparedLineByLine)
{
    const std::string one = "[files]\nfile = \"<root>\", \"C:\\a.txt\"\n";
    const std::string two = "file = \"<root>\\X\", \"C:\\b \"\"b\"\".txt\"\n";
    EXPECT_EQ(Facts(Answers(one), Answers(one + two)),
              (Lines{"answer of \"Zolt 2027\" \"files\" \"file\" \"\"\"<root>\\X\"\", \"\"C:\\b "
                     "\"\"\"\"b\"\"\"\".txt\"\"\": "
                     "only in B"}));
    EXPECT_EQ(Facts(Answers("[paths]\nsupport_path = a\nsupport_path = b\n"),
                    Answers("[paths]\nsupport_path = b\nsupport_path = a\n")),
              (Lines{"answer of \"Zolt 2027\" \"paths\" \"support_path\" \"order\": \"a\" -> \"b\""}));
}

TEST(SetupAnswersComparison, WhatSaysHowARunWentIsNoDifference)
{
    EXPECT_EQ(
        Facts(
            Answers("[begin]\nmode = create\nname = A\nlocation = C:\\\nplatform = x64\n"
                    "on_question.local_location = yes\n[notices]\nshow = no\n[files]\nclear = yes\n"),
            Answers("[begin]\nmode = modify\nbase = A\nname = B\nplatform = x64\non_question.replace = yes\n"
                    "leave = next\n")),
        Lines{});
    EXPECT_EQ(Facts(Answers("[begin]\nplatform = x64\n"), Answers("[begin]\nplatform = x86\n")),
              (Lines{"answer \"begin\" \"platform\": \"x64\" -> \"x86\""}));
}

TEST(SetupAnswersComparison, AProductIsTheSameByNameByCodeAndUnnamed)
{
    const ComparedAnswers alone = Answers("[notices]\nupdates = yes\n");
    EXPECT_EQ(Facts(alone, Answers("[notices \"Zolt 2027\"]\nupdates = yes\n", {ZOLT, VIEWER})), Lines{});
    EXPECT_EQ(
        Facts(alone, Answers("[notices \"" + Utf8(ZOLT.strCode) + "\"]\nupdates = yes\n", {ZOLT, VIEWER})),
        Lines{});
    EXPECT_EQ(Facts(alone, Answers("[notices \"Zolt Viewer\"]\nupdates = yes\n", {ZOLT, VIEWER})),
              (Lines{"answer of \"Zolt 2027\" \"notices\" \"updates\": only in A, \"yes\"",
                     "answer of \"Zolt Viewer\" \"notices\" \"updates\": only in B, \"yes\""}));
}

TEST(SetupAnswersComparison, AProductThatWasRenamedKeepsItsAnswers)
{
    const AnswerProduct renamed = {L"Another", ZOLT.strCode};
    EXPECT_EQ(Facts(Answers("[notices]\nupdates = yes\n"), Answers("[notices]\nupdates = no\n", {renamed})),
              (Lines{"answer of \"Another\" \"notices\" \"updates\": \"yes\" -> \"no\""}));
}

} // namespace
