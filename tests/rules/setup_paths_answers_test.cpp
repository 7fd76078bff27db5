// The answers of the paths page: their words against the table of the paths, and what is read from a file.
#include "paths/path_table.h"
#include "setup/answers.h"
#include "setup/page_answers.h"
#include "setup/path_words.h"
#include "tests/rules/answer_sources.h"
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
    EXPECT_EQ(Entries(answers, L"paths"),
              "support_path=\"Support Files\\Custom\"\nsupport_path=\"..\\x, y\"\nmenu_file=\"\"\n"
              "log_file_path=\"\"C:\\a\\\\\"\n");
}

TEST(SetupPathsAnswers, ASingleValueStandsOnceAndAListAsOftenAsThereAreLines)
{
    CAnswers answers;
    EXPECT_EQ(
        Join("[paths]\ntemplate_path = a\ntexmaps = a\ntexmaps = a\ntemplate_path = b\n", answers).Text(),
        CString(L"C:\\job\\answers.txt(6): paths.template_path: The key stands in line 3 already. Keep "
                L"one of the two."));
    EXPECT_EQ(Join("[paths]\ntemplate_path = \"a\", \"b\"\n", answers).Text(),
              CString(L"C:\\job\\answers.txt(3): paths.template_path: The key has one value, but several "
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
    EXPECT_EQ(Entries(answers, L"paths", {L"Zolt", L""}),
              "support_path=\"c\"\ntemplate_path=\"u\"\ntemp_directory=\"\"t\"\"\ntexmaps=\"n\"\n");
    EXPECT_EQ(Entries(answers, L"paths", {L"Viewer", L""}),
              "support_path=\"a\"\nsupport_path=\"b\"\ntemplate_path=\"t\"\ntemp_directory="
              "\"\"t\"\"\ntexmaps=\"n\"\n");
}

} // namespace
