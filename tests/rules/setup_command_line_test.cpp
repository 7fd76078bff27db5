#include "setup/command_line.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

namespace {

CommandLine Parsed(const std::vector<CString>& arguments)
{
    CommandLine line;
    const CString complaint = ParseCommandLine(arguments, line);
    EXPECT_EQ(complaint, CString());
    return line;
}

CString Complaint(const std::vector<CString>& arguments)
{
    CommandLine line;
    return ParseCommandLine(arguments, line);
}

TEST(SetupCommandLine, NoArgumentsRunTheWizardForAPerson)
{
    const CommandLine line = Parsed({});
    EXPECT_FALSE(line.IsUnattended());
    EXPECT_EQ(line.strMedia, CString());
}

TEST(SetupCommandLine, EveryOptionTakesTheNextArgument)
{
    const CommandLine line =
        Parsed({L"--media", L"D:\\Media", L"--answers", L"a.txt", L"--out", L"\\\\s\\h", L"--language",
                L"de-DE", L"--pictures", L"p", L"--log", L"l.log", L"--check"});
    EXPECT_EQ(line.strMedia, CString(L"D:\\Media"));
    EXPECT_EQ(line.strAnswers, CString(L"a.txt"));
    EXPECT_EQ(line.strOut, CString(L"\\\\s\\h"));
    EXPECT_EQ(line.strLanguage, CString(L"de-DE"));
    EXPECT_EQ(line.strPictures, CString(L"p"));
    EXPECT_EQ(line.strLog, CString(L"l.log"));
    EXPECT_TRUE(line.bCheck);
}

TEST(SetupCommandLine, APlanEndsTheRunBeforeTheBuildWithOrWithoutAPerson)
{
    const CommandLine byHand = Parsed({L"--plan", L"plan.txt"});
    EXPECT_EQ(byHand.strPlan, CString(L"plan.txt"));
    EXPECT_FALSE(byHand.Builds());
    EXPECT_FALSE(byHand.IsUnattended());
    EXPECT_TRUE(Parsed({L"--plan", L"plan.txt", L"--answers", L"a.txt"}).IsUnattended());
    EXPECT_FALSE(Parsed({L"--check"}).Builds());
    EXPECT_TRUE(Parsed({L"--answers", L"a.txt"}).Builds());
}

TEST(SetupCommandLine, TheUsageShowsHowAPlanIsWritten)
{
    EXPECT_HOLDS(CommandLineUsage(),
                 L"Examples: Setup.exe --media D:\\Media --answers office.txt --plan office-plan.txt");
}

TEST(SetupCommandLine, TheUsageSaysWhatMakesARunUnattendedAndHowToWaitForIt)
{
    const CString usage = CommandLineUsage();
    EXPECT_HOLDS(usage, L"Without --answers, --set and --check a person goes through the pages.");
    EXPECT_HOLDS(usage, L"use start /wait Setup.exe.");
}

TEST(SetupCommandLine, AValueMayStandBehindAnEqualsSign)
{
    EXPECT_EQ(Parsed({L"--media=D:\\a=b"}).strMedia, CString(L"D:\\a=b"));
}

TEST(SetupCommandLine, ValuesWithBlanksAndForeignLettersStayWhole)
{
    EXPECT_EQ(Parsed({L"--media", L"D:\\M\x00E9"
                                  L"dia \x30C4"})
                  .strMedia,
              CString(L"D:\\M\x00E9"
                      L"dia \x30C4"));
}

TEST(SetupCommandLine, SetNamesPageKeyAndValue)
{
    const CommandLine line =
        Parsed({L"--set", L"begin.on_question.replace=yes", L"--set", L"begin.name=a=b c"});
    ASSERT_EQ(line.answers.size(), 2u);
    EXPECT_EQ(line.answers[0].strPage, CString(L"begin"));
    EXPECT_EQ(line.answers[0].strKey, CString(L"on_question.replace"));
    EXPECT_EQ(line.answers[0].strValue, CString(L"yes"));
    EXPECT_EQ(line.answers[1].strValue, CString(L"a=b c"));
    EXPECT_TRUE(line.IsUnattended());
}

TEST(SetupCommandLine, SetWithAnEmptyValueEmptiesTheAnswer)
{
    EXPECT_EQ(Parsed({L"--set", L"begin.name="}).answers.at(0).strValue, CString());
}

TEST(SetupCommandLine, SetWithoutPageKeyOrEqualsSignIsRefused)
{
    for (const wchar_t* text : {L"name=x", L".name=x", L"begin.=x", L"begin.name", L""}) {
        EXPECT_NE(Complaint({L"--set", text}).Find(L"page.key=value"), -1) << Utf8(text);
    }
}

TEST(SetupCommandLine, SetOfOneKeyTwiceIsRefused)
{
    EXPECT_NE(Complaint({L"--set", L"begin.name=a", L"--set", L"begin.name=b"}).Find(L"begin.name twice"),
              -1);
}

TEST(SetupCommandLine, AnOptionTwiceIsRefused)
{
    EXPECT_EQ(Complaint({L"--out", L"a", L"--out", L"b"}),
              CString(L"--out stands twice. Keep one of the two."));
}

TEST(SetupCommandLine, AnOptionWithoutItsValueIsRefused)
{
    EXPECT_EQ(Complaint({L"--media"}), CString(L"--media needs a value behind it."));
    EXPECT_EQ(Complaint({L"--media="}), CString(L"--media needs a value behind it."));
}

TEST(SetupCommandLine, AnOptionIsNeverTakenForTheValueOfTheOneBefore)
{
    EXPECT_EQ(Complaint({L"--out", L"--check"}), CString(L"--out needs a value behind it."));
}

TEST(SetupCommandLine, UnknownWordsAreRefusedByName)
{
    EXPECT_NE(Complaint({L"--quick"}).Find(L"\"--quick\""), -1);
    EXPECT_NE(Complaint({L"media"}).Find(L"\"media\""), -1);
    EXPECT_NE(Complaint({L"--check=1"}).Find(L"\"--check=1\""), -1);
}

TEST(SetupCommandLine, HelpIsKnownInThreeForms)
{
    for (const wchar_t* word : {L"--help", L"-h", L"/?"}) {
        EXPECT_TRUE(Parsed({word}).bHelp) << Utf8(word);
    }
}

TEST(SetupCommandLine, TheQuietLimitIsTenMinutesUnlessItIsNamed)
{
    EXPECT_EQ(Parsed({}).QuietSeconds(), 600u);
    EXPECT_EQ(Parsed({L"--quiet-limit", L"5"}).QuietSeconds(), 5u);
    EXPECT_EQ(Parsed({L"--quiet-limit", L"86400"}).QuietSeconds(), 86400u);
}

TEST(SetupCommandLine, AQuietLimitThatIsNoNumberOfSecondsIsRefused)
{
    for (const wchar_t* text : {L"0", L"-1", L"soon", L"5s", L"86401", L"99999999999999999999"}) {
        EXPECT_NE(Complaint({L"--quiet-limit", text}).Find(L"1 to 86400"), -1) << Utf8(text);
    }
}

TEST(SetupCommandLine, VerifyNamesAFolderAndRunsWithoutAPerson)
{
    const CommandLine line = Parsed({L"--verify", L"D:\\Out\\Office", L"--report", L"office.json"});
    EXPECT_EQ(line.strVerify, CString(L"D:\\Out\\Office"));
    EXPECT_EQ(line.strReport, CString(L"office.json"));
    EXPECT_TRUE(line.IsDeploymentCommand());
    EXPECT_TRUE(line.IsUnattended());
}

TEST(SetupCommandLine, VerifyGoesWithTheOptionsOfEveryRun)
{
    const CommandLine line = Parsed(
        {L"--verify", L"D:\\Out", L"--log", L"l.log", L"--language", L"en-US", L"--quiet-limit", L"5"});
    EXPECT_EQ(line.strLog, CString(L"l.log"));
}

TEST(SetupCommandLine, VerifyBesideAnOptionOfTheWizardIsRefusedByName)
{
    const std::vector<std::vector<CString>> options = {
        {L"--media", L"m"},  {L"--answers", L"a"},        {L"--out", L"o"}, {L"--pictures", L"p"},
        {L"--record", L"r"}, {L"--set", L"begin.name=a"}, {L"--check"},     {L"--with-location"},
    };
    for (const std::vector<CString>& option : options) {
        std::vector<CString> words = {L"--verify", L"D:\\Out"};
        words.insert(words.end(), option.begin(), option.end());
        EXPECT_NE(Complaint(words).Find(option.front() + L" has no meaning"), -1) << Utf8(option.front());
    }
}

TEST(SetupCommandLine, CompareNamesTwoFoldersAndRunsWithoutAPerson)
{
    for (const std::vector<CString>& words :
         {std::vector<CString>{L"--compare", L"D:\\Out\\A", L"D:\\Out\\B", L"--report", L"r.json"},
          std::vector<CString>{L"--report", L"r.json", L"--compare=D:\\Out\\A", L"D:\\Out\\B"}}) {
        const CommandLine line = Parsed(words);
        EXPECT_EQ(line.strCompare, CString(L"D:\\Out\\A"));
        EXPECT_EQ(line.strCompareWith, CString(L"D:\\Out\\B"));
        EXPECT_EQ(line.strReport, CString(L"r.json"));
        EXPECT_TRUE(line.IsDeploymentCommand());
        EXPECT_TRUE(line.IsUnattended());
    }
}

TEST(SetupCommandLine, CompareNeedsTwoFoldersAndGoesWithoutTheWizardsOptions)
{
    EXPECT_NE(Complaint({L"--compare", L"A"}).Find(L"two deployments"), -1);
    EXPECT_NE(Complaint({L"--compare", L"A", L"--log", L"l"}).Find(L"two deployments"), -1);
    EXPECT_NE(Complaint({L"--compare", L"A", L"B", L"C"}).Find(L"\"C\""), -1);
    EXPECT_NE(Complaint({L"--compare", L"A", L"B", L"--verify", L"A"}).Find(L"Keep one"), -1);
    EXPECT_NE(Complaint({L"--compare", L"A", L"B", L"--check"}).Find(L"--check has no meaning"), -1);
}

TEST(SetupCommandLine, AReportWithoutACommandIsRefused)
{
    EXPECT_NE(Complaint({L"--report", L"r.txt"}).Find(L"--report needs --verify"), -1);
}

TEST(SetupCommandLine, TheUsageHasAnExampleOfEachRunThatBuildsNothing)
{
    const CString usage = CommandLineUsage();
    const CString examples = usage.Mid(usage.Find(L"\n\nExamples: "));
    for (const wchar_t* option : {L" --plan ", L" --check\n", L" --verify ", L" --compare "}) {
        EXPECT_HOLDS(examples, option);
    }
}
TEST(SetupCommandLine, TheUsageNamesEveryOption)
{
    const CString usage = CommandLineUsage();
    for (const wchar_t* option : {L"--media", L"--answers", L"--set", L"--out", L"--language", L"--pictures",
                                  L"--log", L"--quiet-limit", L"--record", L"--with-location", L"--check",
                                  L"--plan", L"--verify", L"--compare", L"--report", L"--help"}) {
        EXPECT_NE(usage.Find(option), -1) << Utf8(option);
    }
}

} // namespace
