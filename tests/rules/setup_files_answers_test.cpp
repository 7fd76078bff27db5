// The answers of the additional files: what is read from a file, and which of its lines win.
#include "setup/answers.h"
#include "setup/answers_record.h"
#include "setup/page_answers.h"
#include "tests/rules/answer_sources.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

namespace {

TEST(SetupFilesAnswers, LinesOfAllWordsStayInTheirOrderBehindClearing)
{
    CAnswers answers;
    EXPECT_EQ(
        Join("[files]\nremove = <root>\\Old\nfile = \"<root>\", \"C:\\a.txt\"\nfolder = \"<root>\", \"New\"\n"
             "drive = D:\nfile = \"D:\", \"C:\\b.txt\"\nfolder_tree = \"D:\", \"C:\\tree\"\nclear = yes\n"
             "rename = \"<root>\\New\", \"Newer\"\n",
             answers)
            .Text(),
        CString());
    EXPECT_EQ(Entries(answers, L"files"),
              "clear=\"yes\"\nremove=\"<root>\\Old\"\nfile=\"<root>\", \"C:\\a.txt\"\n"
              "folder=\"<root>\", \"New\"\ndrive=\"D:\"\nfile=\"D:\", \"C:\\b.txt\"\n"
              "folder_tree=\"D:\", \"C:\\tree\"\nrename=\"<root>\\New\", \"Newer\"\n");
}

TEST(SetupFilesAnswers, SourcesCountFromTheirFolderAndPlacesInTheTreeNever)
{
    CAnswers answers;
    EXPECT_EQ(Join("[files]\nfolder = \"Fonts\", \"..\"\nfile = \"Fonts\", \"sources/a.txt\"\n"
                   "folder_tree = \"<media>\", \"<media>\\tree\"\nfile.literal = \"Fonts\", \"a.txt\"\n",
                   answers)
                  .Text(),
              CString());
    answers.UseMediaFolder(L"E:\\Media");
    EXPECT_EQ(Entries(answers, L"files"),
              "folder=\"Fonts\", \"..\"\nfile=\"Fonts\", \"C:\\job\\sources\\a.txt\"\n"
              "folder_tree=\"<media>\", \"E:\\Media\\tree\"\nfile=\"Fonts\", \"a.txt\"\n");
}

TEST(SetupFilesAnswers, ALineWithTooFewOrTooManyValuesIsRefusedWithItsNumber)
{
    CAnswers answers;
    EXPECT_EQ(Join("[files]\nfolder = New\n", answers).Text(),
              CString(L"C:\\job\\answers.txt(3): files.folder: The key has 2 values, each in quotes and with "
                      L"commas between them, but 1 stand here."));
    EXPECT_EQ(Join("[files]\ndrive = \"D:\", \"E:\"\n", answers).Text(),
              CString(L"C:\\job\\answers.txt(3): files.drive: The key has 1 values, each in quotes and with "
                      L"commas between them, but 2 stand here."));
    EXPECT_NE(Join("[files]\nfiles = x\n", answers)
                  .Text()
                  .Find(L"Known are: clear, folder, file, folder_tree, drive, rename, remove, "
                        L"on_question.replace, show, leave."),
              -1);
}

TEST(SetupFilesAnswers, LinesOfTheCommandLineComeBehindThoseOfOtherWordsOfTheFile)
{
    CAnswers answers;
    CommandLine line;
    line.answers = {{L"files", {}, L"file", L"\"<root>\", \"b.txt\""}};
    EXPECT_EQ(Join("[files]\nfile = \"<root>\", \"C:\\a.txt\"\nremove = <root>\\Old\n", answers, line).Text(),
              CString());
    EXPECT_EQ(Entries(answers, L"files"), "remove=\"<root>\\Old\"\nfile=\"<root>\", \"D:\\here\\b.txt\"\n");
}

} // namespace
