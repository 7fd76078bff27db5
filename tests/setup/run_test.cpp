// What a run reads and writes by itself: its answers file and its log.
#include "base/system_text.h"
#include "setup/answers_input.h"
#include "setup/run_log.h"
#include "setup/run_record.h"
#include "setup/texts.h"
#include "tests/support/test_folder.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace {

std::string BytesOf(const CString& path)
{
    std::ifstream file(Utf8(path).c_str(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// ---- the log

TEST(RunLog, ARunEndsOnceHoweverOftenItIsSaid)
{
    const CTestFolder folder;
    CRunLog log(false, folder / L"run.log");
    log.Finish({1603, L"first"});
    log.Finish({0, L"second"});
    EXPECT_EQ(BytesOf(folder / L"run.log"), "Exit code 1603: first\r\n");
}

TEST(RunLog, ACauseOfSeveralLinesStaysInTheLastLine)
{
    const CTestFolder folder;
    CRunLog log(false, folder / L"run.log");
    log.Finish({1603, L"first\n\nsecond\r\nthird"});
    EXPECT_EQ(BytesOf(folder / L"run.log"), "Exit code 1603: first second third\r\n");
}

// It was passed over, and the log that was asked for never came.
TEST(RunLog, AFileThatCantBeWrittenIsFoundOutWithItsReason)
{
    const CTestFolder folder;
    EXPECT_EQ(CRunLog(false, folder.GetPath() + L"missing\\run.log").TryFile(),
              SystemErrorText(ERROR_PATH_NOT_FOUND));
    EXPECT_EQ(CRunLog(false, folder.AddFolder(L"folder")).TryFile(), SystemErrorText(ERROR_ACCESS_DENIED));
    EXPECT_EQ(CRunLog(false, folder / L"run.log").TryFile(), CString());
    EXPECT_EQ(CRunLog(false, CString()).TryFile(), CString());
}

TEST(RunLog, TryingALogKeepsWhatItHolds)
{
    const CTestFolder folder;
    const CString path = folder.AddFile(L"run.log", "before\r\n");
    CRunLog log(false, path);
    EXPECT_EQ(log.TryFile(), CString());
    log.Finish({0, CString()});
    EXPECT_EQ(BytesOf(path), "before\r\nExit code 0\r\n");
}

// The last line of a review stood for what a run did when it broke off.
TEST(RunLog, ATextToReadIsNoStepOfTheRun)
{
    const CTestFolder folder;
    CRunLog log(false, folder / L"run.log");
    RunRecord record = {};
    UseRunRecord(&record);
    log.Line(L"Building Office");
    log.Text(L"  This can be built.\r\n!   It replaces a deployment.\r\n*     Name: x\r\nlast");
    UseRunRecord(nullptr);
    EXPECT_EQ(CString(record.step), CString(L"Building Office"));
    log.Finish({0, CString()});
    EXPECT_EQ(BytesOf(folder / L"run.log"),
              "Building Office\r\n  This can be built.\r\n!   It replaces a deployment.\r\n*     Name: x\r\n"
              "last\r\nExit code 0\r\n");
}

// A run for a person wrote nothing to the console of the program that started it, but ended with Ctrl+C there.
TEST(RunLog, ARunThatReportsNothingToAConsoleHasNone)
{
    EXPECT_FALSE(CRunLog(false, CString()).HasConsole());
    EXPECT_TRUE(CRunLog(true, CString()).HasConsole()) << "the test's own output is none";
}

// ---- the answers file

bool ReadsFile(std::size_t bytes, AnswersError& error)
{
    const CTestFolder folder;
    std::string text = "rollout-answers 1\n[begin]\nname = Office\n";
    text.resize(bytes, '#');
    CommandLine line;
    line.strAnswers = folder.AddFile(L"answers.txt", text.c_str());
    CAnswers answers;
    return ReadAnswers(line, L"C:\\", answers, error);
}

// Its beginning was obeyed as if it were all.
TEST(AnswersInput, AFileAboveTheLimitIsRefusedAndNotCut)
{
    AnswersError error;
    EXPECT_TRUE(ReadsFile(LONGEST_ANSWERS_FILE, error)) << Utf8(error.Text());
    EXPECT_FALSE(ReadsFile(LONGEST_ANSWERS_FILE + 1, error));
    EXPECT_GE(error.Text().Find(L"answers.txt"), 0) << Utf8(error.Text());
}

} // namespace
