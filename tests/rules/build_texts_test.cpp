// The texts of a deployment, composed without building one.
#include "builder/build_failure.h"
#include "builder/build_names.h"
#include "builder/change_report.h"
#include "builder/command_text.h"
#include "builder/copy_list.h"
#include "builder/readme_text.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

namespace {

constexpr const wchar_t* FIRST_CODE = L"{6F0C2A0C-9A3B-4D53-8B4A-0E2F5D0B7A11}";
constexpr const wchar_t* SECOND_CODE = L"{6F0C2A0C-9A3B-4D53-8B4A-0E2F5D0B7A12}";

BuildDatabase Product(const CString& name, const CString& target, const CString& code)
{
    BuildDatabase database;
    database.strTarget = target;
    database.strProductName = name;
    database.strProductVersion = L"27.0.0";
    database.strProductCode = code;
    return database;
}

BuildPlan TwoProducts()
{
    BuildPlan plan;
    plan.strName = L"Office";
    plan.databases = {Product(L"Zolt", L"Image\\Zolt\\Zolt.msi", FIRST_CODE),
                      Product(L"Pack", L"Image\\Pack\\Pack.msi", SECOND_CODE)};
    return plan;
}

// The script without its own check, which reads names of files in any case.
CString WithoutCheck(const CString& script)
{
    const int check = script.Find(L"\r\n:check\r\n");
    EXPECT_GT(check, 0) << Utf8(script);
    return script.Left(check);
}

#define EXPECT_LACKS(text, part) EXPECT_EQ((text).Find(part), -1) << "found in:\n" << Utf8(text)

} // namespace

TEST(BuildCommands, ProductsAreInstalledInOrderAndRemovedInReverse)
{
    const CString install = ComposeInstallScript(TwoProducts());
    EXPECT_LT(install.Find(L"/i \"%~dp0Image\\Zolt\\Zolt.msi\""),
              install.Find(L"/i \"%~dp0Image\\Pack\\Pack.msi\""));
    const CString uninstall = ComposeUninstallScript(TwoProducts());
    EXPECT_LT(uninstall.Find(CString(L"/x ") + SECOND_CODE), uninstall.Find(CString(L"/x ") + FIRST_CODE));
}

TEST(BuildCommands, TheInstallerRunsSilentlyInTheForegroundWithALog)
{
    const CString script = ComposeInstallScript(TwoProducts());
    EXPECT_HOLDS(script, L"set \"DISPLAY_OPTION=/qn\"\r\n");
    EXPECT_HOLDS(script, L"set \"LOG=Zolt_27.0.0_Install_%COMPUTERNAME%.log\"\r\n");
    EXPECT_HOLDS(script,
                 L"start \"\" /wait \"%windir%\\System32\\msiexec.exe\" /i \"%~dp0Image\\Zolt\\Zolt.msi\" "
                 L"%DISPLAY_OPTION% /norestart /L*V \"%LOGS%\\%LOG%\"\r\n");
}

TEST(BuildCommands, OnlyRemovingTakesAnAbsentProductForSuccess)
{
    EXPECT_HOLDS(ComposeUninstallScript(TwoProducts()), L"\"1605\" exit /b 0");
    EXPECT_LACKS(ComposeInstallScript(TwoProducts()), L"1605");
}

TEST(BuildCommands, PercentSignsInNamesAreDoubled)
{
    BuildPlan plan = TwoProducts();
    plan.databases[0].strTarget = L"Image\\100% & ^!\\Zolt.msi";
    plan.commands.strLogFolder = L"\\\\server\\100%";
    const CString script = ComposeInstallScript(plan);
    EXPECT_HOLDS(script, L"/i \"%~dp0Image\\100%% & ^!\\Zolt.msi\"");
    EXPECT_HOLDS(script, L"set \"LOG_FOLDER=\\\\server\\100%%\"");
}

TEST(BuildCommands, ANameCannotBreakOutOfItsQuotes)
{
    BuildPlan plan = TwoProducts();
    plan.databases[0].strProductName = L"Zolt\" & del *.* & \"\r\nformat c:";
    plan.commands.strLogFolder = L"x\" & del *.*\r\n";
    const CString script = ComposeInstallScript(plan);
    EXPECT_LACKS(script, L"\" & del");
    EXPECT_LACKS(script, L"\nformat");
}

TEST(BuildCommands, PatchesAreChainedByFullPath)
{
    BuildPlan plan = TwoProducts();
    plan.databases[0].patchTargets = {L"Image\\sp1.msp", L"Image\\sp2.msp"};
    EXPECT_HOLDS(ComposeInstallScript(plan), L" PATCH=\"%~dp0Image\\sp1.msp;%~dp0Image\\sp2.msp\"");
}

TEST(BuildCommands, AChainOfPatchesWithOddNamesIsWholeInScriptAndNotes)
{
    BuildPlan plan = TwoProducts();
    plan.databases[1].patchTargets = {L"Image\\Service Packs\\100% & (1)!.msp", L"Image\\b 'c' ^.msp"};
    EXPECT_HOLDS(ComposeInstallScript(plan),
                 L"/i \"%~dp0Image\\Pack\\Pack.msi\" PATCH=\"%~dp0Image\\Service Packs"
                 L"\\100%% & (1)!.msp;%~dp0Image\\b 'c' ^.msp\" %DISPLAY_OPTION%");
    const CString notes = ComposeReadMe(plan, L"\\\\server\\50% & more");
    for (const wchar_t* line :
         {L"    msiexec /i \"\\\\server\\50% & more\\Image\\Pack\\Pack.msi\" PATCH=\"\\\\server\\50% & "
          L"more\\Image\\Service Packs\\100% & (1)!.msp;\\\\server\\50% & more\\Image\\b 'c' ^.msp\" /qn",
          L"    msiexec /i \"\\\\server\\50%% & more\\Image\\Pack\\Pack.msi\" PATCH=\"\\\\server\\50%% & "
          L"more\\Image\\Service Packs\\100%% & (1)!.msp;\\\\server\\50%% & more\\Image\\b 'c' ^.msp\" /qn",
          L"('/i \"\\\\server\\50% & more\\Image\\Pack\\Pack.msi\" PATCH=\"\\\\server\\50% & "
          L"more\\Image\\Service Packs\\100% & (1)!.msp;\\\\server\\50% & more\\Image\\b ''c'' ^.msp\" "
          L"/qn"}) {
        EXPECT_HOLDS(notes, line);
    }
}

TEST(Notes, ListPatchesWithCodeAndNameAppendedAndMergedApart)
{
    BuildPlan plan = TwoProducts();
    BuildDatabase& database = plan.databases[0];
    EXPECT_LACKS(ComposeReadMe(plan, L"C:\\Office"), L"Patch");
    database.patches = {
        {L"", L"", L"{11111111-2222-3333-4444-555555555501}", L"", L"", ListedPatch::Use::MergedBefore},
        {L"C:\\sp2.msp", L"Image\\sp2.msp", L"{11111111-2222-3333-4444-555555555502}", L"Zolt Update 2", L"",
         ListedPatch::Use::Merged},
        {L"C:\\sp3.msp", L"Image\\sp3.msp", L"{11111111-2222-3333-4444-555555555503}", L"", L"",
         ListedPatch::Use::Appended}};
    const CString merged = L"  Patches, merged into the package and its files:\r\n"
                           L"    (no name)\r\n"
                           L"      Patch code:   {11111111-2222-3333-4444-555555555501}\r\n"
                           L"      File:         (not kept)\r\n"
                           L"    Zolt Update 2\r\n"
                           L"      Patch code:   {11111111-2222-3333-4444-555555555502}\r\n"
                           L"      File:         Image\\sp2.msp\r\n";
    EXPECT_HOLDS(ComposeReadMe(plan, L"C:\\Office"), merged);
    EXPECT_LACKS(ComposeReadMe(plan, L"C:\\Office"), L"Merge them");
    database.patchTargets = {L"Image\\sp3.msp"};
    EXPECT_HOLDS(ComposeReadMe(plan, L"C:\\Office"),
                 L"  Patches, installed along with it in this order (by full paths, which must hold no "
                 L"semicolon):\r\n"
                 L"    sp3.msp\r\n"
                 L"      Patch code:   {11111111-2222-3333-4444-555555555503}\r\n"
                 L"      File:         Image\\sp3.msp\r\n" +
                     merged);
    EXPECT_HOLDS(ComposeReadMe(plan, L"C:\\Office"),
                 L"Group policy installs the package without the patches below.");
}

TEST(BuildCommands, TheScriptIsAsciiUnlessANameHasOtherLetters)
{
    BuildPlan plan = TwoProducts();
    EXPECT_TRUE(IsAscii(ComposeInstallScript(plan)));
    EXPECT_LACKS(WithoutCheck(ComposeInstallScript(plan)), L"chcp 65001");
    plan.databases[0].strTarget = L"Image\\Z\x00F6lt.msi";
    EXPECT_HOLDS(ComposeInstallScript(plan), L"chcp 65001 >nul");
}

TEST(BuildCommands, TheCheckShowsEachCommandAsItWouldRun)
{
    BuildPlan plan = TwoProducts();
    plan.databases[0].patchTargets = {L"Image\\100% & more.msp"};
    const CString install = ComposeInstallScript(plan);
    const CString check = install.Mid(WithoutCheck(install).GetLength());
    EXPECT_HOLDS(
        check,
        L"echo     msiexec.exe /i \"%~dp0Image\\Zolt\\Zolt.msi\" PATCH=\"%~dp0Image\\100%% & more.msp\" "
        L"%DISPLAY_OPTION% /norestart /L*V \"%LOGS%\\%LOG%\"\r\n");
    EXPECT_LT(check.Find(L"Zolt.msi"), check.Find(L"Pack.msi"));
    const CString uninstall = ComposeUninstallScript(plan);
    const CString removal = uninstall.Mid(WithoutCheck(uninstall).GetLength());
    EXPECT_LT(removal.Find(CString(L"msiexec.exe /x ") + SECOND_CODE),
              removal.Find(CString(L"msiexec.exe /x ") + FIRST_CODE));
    EXPECT_LACKS(check, L"start \"\"");
    EXPECT_LACKS(removal, L"start \"\"");
}

// A line with the sign for help makes the interpreter show the help of its own command.
TEST(BuildCommands, NoLineThatIsShownHasTheSignForHelp)
{
    for (const CString& script :
         {ComposeInstallScript(TwoProducts()), ComposeUninstallScript(TwoProducts())}) {
        EXPECT_LACKS(script, L"/?\r\n");
        EXPECT_LACKS(script, L" /? ");
    }
}

TEST(BuildCommands, ALogTakesTheLettersOfItsProductFromTheNameOfAFile)
{
    BuildPlan plan = TwoProducts();
    plan.databases[1].strProductName = L"Fran\x00E7"
                                       L"ais \x65E5";
    EXPECT_EQ(LogNameFile(plan, plan.databases[0]), CString());
    EXPECT_EQ(LogNameFile(plan, plan.databases[1]), CString(L"Image\\LogNames\\2-Fran\x00E7"
                                                            L"ais \x65E5"));
    const CString script = ComposeInstallScript(plan);
    EXPECT_HOLDS(script, L"set \"LOG=Fran_ais __27.0.0_Install_%COMPUTERNAME%.log\"\r\n"
                         L"set \"NAME=\"\r\n"
                         L"for /r \"%~dp0Image\\LogNames\" %%F in (2-*) do set \"NAME=%%~nxF\"\r\n"
                         L"if defined NAME set \"LOG=%NAME:~2%_27.0.0_Install_%COMPUTERNAME%.log\"\r\n");
    EXPECT_LACKS(WithoutCheck(script), L"chcp 65001");
    EXPECT_LACKS(script, L"(1-*)");
    const TargetNames targets = NamedTargets(plan);
    EXPECT_EQ(targets.count(LogNameFile(plan, plan.databases[1])), 1u);
}

// Disks behind many shares take names of 255 bytes; a log must not stop the build.
TEST(BuildCommands, ANameOfTooManyBytesIsNoNameOfAFile)
{
    BuildPlan plan = TwoProducts();
    plan.databases[0].strProductName = CString(L'\x65E5', 66);
    EXPECT_FALSE(LogNameFile(plan, plan.databases[0]).IsEmpty());
    plan.databases[0].strProductName = CString(L'\x65E5', 67);
    EXPECT_EQ(LogNameFile(plan, plan.databases[0]), CString());
}

TEST(BuildCommands, ALogsNameLosesWhatNobodySeesAndWhatInterpretersRead)
{
    BuildPlan plan = TwoProducts();
    plan.databases[0].strProductName = L"a\x202E"
                                       L"b$c`d%e\xD800"
                                       L"f\x85g:h";
    EXPECT_EQ(LogFileBase(plan.databases[0], L"Install"), CString(L"a_b_c_d_e_f_g_h_27.0.0_Install_"));
}

TEST(BuildCommands, EveryLineEndsAsTheInterpreterWantsIt)
{
    CString script = ComposeInstallScript(TwoProducts());
    const int pairs = script.Replace(L"\r\n", L"");
    EXPECT_GT(pairs, 20);
    EXPECT_EQ(script.Find(L'\n'), -1);
    EXPECT_EQ(script.Find(L'\r'), -1);
}

TEST(BuildNotes, TheManifestIsSortedAndComplete)
{
    const CString manifest = ComposeManifest({{L"b.txt", 5, L"bb"}, {L"A.txt", 0, L"aa"}});
    EXPECT_HOLDS(manifest, L"\r\naa 0 A.txt\r\nbb 5 b.txt\r\n");
}

TEST(BuildNotes, TheReadMeUsesThePathOfTheWorkstations)
{
    const CString text = ComposeReadMe(TwoProducts(), L"\\\\server\\apps\\Office");
    EXPECT_HOLDS(text,
                 L"msiexec /i \"\\\\server\\apps\\Office\\Image\\Zolt\\Zolt.msi\" /qn /norestart /L*V ");
    EXPECT_HOLDS(text, CString(L"msiexec /fomus ") + FIRST_CODE + L" /qn /norestart");
    EXPECT_HOLDS(text, CString(L"MSI product code ") + SECOND_CODE + L", version equal to or above 27.0.0");
}

TEST(BuildNotes, TheReadMeHasTheLineThatChecksTheFolder)
{
    EXPECT_HOLDS(ComposeReadMe(TwoProducts(), L"\\\\server\\apps\\Of\"fice"),
                 L"\r\n    Setup.exe --verify \"\\\\server\\apps\\Office\"\r\n");
}

TEST(BuildNotes, TheReadMeNamesTheAnswersWhereThereAreAny)
{
    BuildPlan plan = TwoProducts();
    plan.texts.push_back({L"Image\\Answers.txt", L"a file of the media", false});
    EXPECT_LT(ComposeReadMe(plan, L"\\\\server\\apps\\Office").Find(L"--answers"), 0);
    plan.texts.push_back({L"Answers.txt", L"[begin]\r\n", true});
    EXPECT_HOLDS(ComposeReadMe(plan, L"\\\\server\\apps\\Office"), L"\r\n  Answers.txt  ");
}

TEST(BuildNotes, EveryCodeHasARemedy)
{
    for (unsigned int code = 0; code < 2000; ++code) {
        EXPECT_GT(RemedyOf(code).GetLength(), 10) << code;
    }
}

TEST(BuildNotes, AFailureNamesWhatWhyAndWhatToDo)
{
    EXPECT_EQ(
        DescribeFailure(L"Writing", L"C:\\a", 112, L"Disk full.\r\n"),
        CString(L"Writing \"C:\\a\" failed: Disk full (code 112). Free space on the disk, or choose another "
                L"location."));
}

TEST(BuildChanges, RowsAreMatchedByKeyAndColumnsByName)
{
    DatabaseSnapshot before;
    before[L"T"] = {{L"Key", L"A"}, {L"s72", L"s0"}, 1, {{{L"1"}, {L"1", L"x"}}, {{L"2"}, {L"2", L"y"}}}};
    DatabaseSnapshot after;
    after[L"T"] = {{L"Key", L"A", L"B"},
                   {L"s72", L"s0", L"S0"},
                   1,
                   {{{L"1"}, {L"1", L"x", L""}}, {{L"3"}, {L"3", L"z", L"w"}}}};
    const std::vector<RowDifference> rows = CompareSnapshots(before, after);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].change, RowChange::Removed);
    EXPECT_EQ(rows[0].key[0], CString(L"2"));
    EXPECT_EQ(rows[1].change, RowChange::Added);
    EXPECT_EQ(rows[1].columns.size(), 3u);
}

TEST(BuildChanges, AColumnGainedWithAValueIsAChange)
{
    DatabaseSnapshot before;
    before[L"T"] = {{L"Key"}, {L"s72"}, 1, {{{L"1"}, {L"1"}}}};
    DatabaseSnapshot after;
    after[L"T"] = {{L"Key", L"B"}, {L"s72", L"S0"}, 1, {{{L"1"}, {L"1", L"new"}}}};
    const std::vector<RowDifference> rows = CompareSnapshots(before, after);
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0].columns[0].strColumn, CString(L"B"));
    EXPECT_EQ(rows[0].columns[0].strNew, CString(L"new"));
    EXPECT_EQ(CompareSnapshots(after, before).size(), 1u);
}

TEST(BuildChanges, ATableThatGoesTakesItsRowsIntoTheReport)
{
    DatabaseSnapshot before;
    before[L"T"] = {{L"Key"}, {L"s72"}, 1, {{{L"1"}, {L"1"}}}};
    const std::vector<RowDifference> rows = CompareSnapshots(before, {});
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0].change, RowChange::Removed);
}

TEST(BuildChanges, JsonTextsAreEscaped)
{
    EXPECT_EQ(JsonText(L"a\"\\\n\x01\x00FC"), CString(L"\"a\\\"\\\\\\u000a\\u0001\x00FC\""));
}

TEST(BuildChanges, AValueOfSeveralLinesStaysOneLine)
{
    DatabaseChanges database;
    database.rows = {{L"T", RowChange::Changed, {L"1"}, {{L"A", L"x\r\ny", L"z\n"}}}};
    EXPECT_HOLDS(ComposeChangesText({database}), L"A: \"x<U+000D><U+000A>y\" -> \"z<U+000A>\"\r\n");
}

TEST(BuildTargets, TwoSourcesOfOneNameAreRefusedInAnyCase)
{
    CopyList list;
    list.files = {{L"C:\\a\\One.txt", L"Image\\One.txt", 1}, {L"C:\\b\\one.TXT", L"Image\\one.TXT", 1}};
    EXPECT_HOLDS(RefusedTargets(TwoProducts(), list), L"Both \"C:\\a\\One.txt\" and \"C:\\b\\one.TXT\"");
}

TEST(BuildTargets, AFileInTheBuildersPlaceIsRefused)
{
    CopyList list;
    list.files = {{L"C:\\a\\readme.TXT", L"readme.TXT", 1}};
    EXPECT_HOLDS(RefusedTargets(TwoProducts(), list), L"the builder's own file");
}

// The next wizard would take somebody's file for the answers that the deployment was built from.
TEST(BuildTargets, AFileInThePlaceOfTheAnswersIsRefusedWithOrWithoutAnswers)
{
    CopyList list;
    list.files = {{L"C:\\a\\answers.TXT", L"answers.TXT", 1}};
    EXPECT_HOLDS(RefusedTargets(TwoProducts(), list), L"would become \"answers.TXT\"");
    BuildPlan plan = TwoProducts();
    plan.texts.push_back({L"Answers.txt", L"[begin]\r\n", true});
    EXPECT_HOLDS(RefusedTargets(plan, list), L"would become \"answers.TXT\"");
    EXPECT_EQ(RefusedTargets(plan, {}), CString()) << "the answers stand in their own place";
}

TEST(BuildTargets, TheLongestPathIsThatOfTheWorkstations)
{
    CopyList list;
    list.files = {{L"C:\\a", CString(L'a', 40), 1}};
    EXPECT_EQ(LongestPath(TwoProducts(), list, L"\\\\s\\x"), CString(L"\\\\s\\x\\") + CString(L'a', 40));
}

TEST(BuildCommands, ALogOnTheNetworkIsCopiedToTheComputerOnlyWhenAsked)
{
    BuildPlan plan = TwoProducts();
    plan.commands.strLogFolder = L"\\\\server\\logs\\";
    EXPECT_HOLDS(ComposeInstallScript(plan), L"set \"KEEP_LOCAL_LOG=0\"\r\n");
    plan.commands.bKeepLocalLog = true;
    const CString script = ComposeInstallScript(plan);
    EXPECT_HOLDS(script, L"set \"KEEP_LOCAL_LOG=1\"\r\n");
    EXPECT_LT(script.Find(L"set \"CODE=%ERRORLEVEL%\""), script.Find(L"call :keep_local_log"))
        << "the copy's own result would be taken for the installer's";
}

TEST(BuildNotes, TheyNameTheCheckOfTheScripts)
{
    EXPECT_HOLDS(ComposeReadMe(TwoProducts(), L"\\\\server\\apps\\Office"),
                 L"the word /check behind the name");
}
