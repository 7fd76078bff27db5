// The answers of the paths page: their words against the table of the paths, and what is read from a file.
#include "paths/path_table.h"
#include "setup/answers.h"
#include "setup/page_answers.h"
#include "setup/path_words.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <iterator>

namespace {

// "ZOLTProfile_SupportPath" -> "support_path", "ZOLTProfile_DGNMappingPath" -> "dgn_mapping_path".
CString WordOf(const CString& property)
{
    const auto isUpper = [](wchar_t character) { return character >= L'A' && character <= L'Z'; };
    const CString name = property.Mid(property.Find(L"_") + 1);
    CString word;
    for (int index = 0; index < name.GetLength(); ++index) {
        const bool begins =
            index > 0 && isUpper(name[index]) &&
            (!isUpper(name[index - 1]) || (index + 1 < name.GetLength() && !isUpper(name[index + 1])));
        word += (begins ? CString(L"_") : CString()) + name.Mid(index, 1).MakeLower();
    }
    return word;
}

AnswersError Join(const std::string& text, CAnswers& answers, const CommandLine& line = {})
{
    const std::string bytes = "rollout-answers 1\n" + text;
    AnswerSources sources;
    sources.strFile = L"C:\\jobs\\office.txt";
    sources.strFileFolder = L"C:\\jobs";
    sources.line = line;
    AnswersError error;
    EXPECT_TRUE(ParseAnswersFile(bytes.data(), bytes.size(), sources.file, error)) << Utf8(error.Text());
    static_cast<void>(JoinAnswers(sources, answers, error));
    return error;
}

std::string Entries(const CAnswers& answers, const AnswerProduct& product = {})
{
    std::string text;
    for (const PageAnswer& answer : answers.Find(L"paths", product)->entries) {
        text += Utf8(answer.pKey->word) + "=" + Utf8(answer.QuotedFields()) + " ";
    }
    return text;
}

TEST(SetupPathsAnswers, EachPathHasTheWordOfItsPropertyAndItsPlaceInTheTree)
{
    ASSERT_EQ(std::size(PATH_WORDS), PATH_TABLE.size());
    ASSERT_EQ(PATHS_ANSWERS.keys.size(), PATH_TABLE.size());
    for (std::size_t index = 0; index < PATH_TABLE.size(); ++index) {
        const PathRow& row = PATH_TABLE[index];
        const PathWord& path = PATH_WORDS[index];
        EXPECT_EQ(CString(path.word), WordOf(PathPropertyName(row.property)));
        EXPECT_EQ(path.parent, row.parent.label) << Utf8(path.word);
        EXPECT_EQ(path.heading, row.heading.label) << Utf8(path.word);
        EXPECT_EQ(path.kind == AnswerKind::List, row.IsList()) << Utf8(path.word);
        EXPECT_EQ(CString(PATHS_ANSWERS.keys[index].word), CString(path.word));
        EXPECT_EQ(PATHS_ANSWERS.keys[index].bReplaces, row.IsList()) << Utf8(path.word);
    }
}

TEST(SetupPathsAnswers, PathsAreThoseOfTheWorkstationAndEnteredLetterForLetter)
{
    CAnswers answers;
    EXPECT_TRUE(Join("[paths]\nsupport_path = Support Files\\Custom\nsupport_path = ..\\x, y\nmenu_file =\n"
                     "log_file_path = \"\"\"C:\\a\\\\\"\n",
                     answers)
                    .Text()
                    .IsEmpty());
    answers.UseMediaFolder(L"E:\\Media");
    EXPECT_EQ(Entries(answers),
              "support_path=\"Support Files\\Custom\" support_path=\"..\\x, y\" menu_file=\"\" "
              "log_file_path=\"\"C:\\a\\\\\" ");
}

TEST(SetupPathsAnswers, ASingleValueStandsOnceAndAListAsOftenAsThereAreLines)
{
    CAnswers answers;
    EXPECT_EQ(
        Join("[paths]\ntemplate_path = a\ntexmaps = a\ntexmaps = a\ntemplate_path = b\n", answers).Text(),
        CString(L"C:\\jobs\\office.txt(6): paths.template_path: The key stands in line 3 already. Keep "
                L"one of the two."));
    EXPECT_EQ(Join("[paths]\ntemplate_path = \"a\", \"b\"\n", answers).Text(),
              CString(L"C:\\jobs\\office.txt(3): paths.template_path: The key has one value, but several "
                      L"stand here with commas between them."));
    CommandLine line;
    line.answers = {{L"paths", {}, L"temp_directory", L"a"}, {L"paths", {}, L"temp_directory", L"b"}};
    EXPECT_NE(Join("", answers, line).Text().Find(L"has the key twice"), -1);
}

TEST(SetupPathsAnswers, AProductsLinesAndTheCommandLinesReplaceThoseOfTheSamePathAlone)
{
    CAnswers answers;
    CommandLine line;
    line.answers = {{L"paths", {}, L"temp_directory", L"\"t\""}, {L"paths", {}, L"texmaps", L"n"}};
    EXPECT_TRUE(Join("[paths]\nsupport_path = a\nsupport_path = b\ntexmaps = m\ntemplate_path = t\n"
                     "[paths \"Zolt\"]\nsupport_path = c\ntemplate_path = u\n",
                     answers, line)
                    .Text()
                    .IsEmpty());
    EXPECT_EQ(Entries(answers, {L"Zolt", L""}),
              "support_path=\"c\" template_path=\"u\" temp_directory=\"\"t\"\" texmaps=\"n\" ");
    EXPECT_EQ(
        Entries(answers, {L"Viewer", L""}),
        "support_path=\"a\" support_path=\"b\" template_path=\"t\" temp_directory=\"\"t\"\" texmaps=\"n\" ");
}

} // namespace
