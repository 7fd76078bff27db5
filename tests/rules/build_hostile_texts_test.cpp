// Texts of packages and settings that were made to get out of the place where they are written: a deployment's scripts
// once ran what stood in a product code.
#include "base/name_rules.h"
#include "builder/build_names.h"
#include "builder/change_report.h"
#include "builder/command_text.h"
#include "builder/manifest_text.h"
#include "builder/readme_text.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

const wchar_t* const g_hostile[] = {
    L"{12345678-1234-1234-1234-123456789012} & echo pwned>C:\\pwned.txt & rem ",
    L"\" & echo pwned>C:\\pwned.txt & rem \"",
    L"a\r\necho pwned>C:\\pwned.txt\r\nrem ",
    L"%COMSPEC% /c echo pwned|more",
    L"^\"^& echo pwned ^& rem ",
    L"100% & ^^ ! (x) || echo pwned",
    L"\x1A\x0C\x0B\x7F & echo pwned",
};

BuildPlan HarmlessPlan()
{
    BuildPlan plan;
    plan.strName = L"Office";
    plan.strBuiltBy = L"the wizard";
    plan.strMediaName = L"Zolt";
    plan.commands.strLogFolder = L"\\\\server\\logs";
    BuildDatabase database;
    database.strTarget = L"Image\\Zolt\\Zolt.msi";
    database.strProductName = L"Zolt";
    database.strProductVersion = L"27.0.0";
    database.strProductCode = L"{6F0C2A0C-9A3B-4D53-8B4A-0E2F5D0B7A11}";
    database.strMaker = L"Velkmora";
    database.patchTargets = {L"Image\\sp1.msp", L"Image\\sp2.msp"};
    database.patches = {{L"C:\\sp1.msp", L"Image\\sp1.msp", L"{6F0C2A0C-9A3B-4D53-8B4A-0E2F5D0B7A12}",
                         L"Zolt one", L"", ListedPatch::Use::Appended}};
    plan.databases = {database};
    return plan;
}

struct Place
{
    const char* name;
    std::function<void(BuildPlan&, const CString&)> put;
};

const std::vector<Place>& Places()
{
    static const std::vector<Place> places = {
        {"deployment", [](BuildPlan& plan, const CString& text) { plan.strName = text; }},
        {"media", [](BuildPlan& plan, const CString& text) { plan.strMediaName = text; }},
        {"builder", [](BuildPlan& plan, const CString& text) { plan.strBuiltBy = text; }},
        {"log folder", [](BuildPlan& plan, const CString& text) { plan.commands.strLogFolder = text; }},
        {"display option", [](BuildPlan& plan, const CString& text) { plan.commands.strDisplay = text; }},
        {"package", [](BuildPlan& plan, const CString& text) { plan.databases[0].strTarget = text; }},
        {"product", [](BuildPlan& plan, const CString& text) { plan.databases[0].strProductName = text; }},
        {"code", [](BuildPlan& plan, const CString& text) { plan.databases[0].strProductCode = text; }},
        {"version", [](BuildPlan& plan, const CString& text) { plan.databases[0].strProductVersion = text; }},
        {"maker", [](BuildPlan& plan, const CString& text) { plan.databases[0].strMaker = text; }},
        {"patch's name",
         [](BuildPlan& plan, const CString& text) { plan.databases[0].patches[0].strName = text; }},
        {"patch's code",
         [](BuildPlan& plan, const CString& text) { plan.databases[0].patches[0].strCode = text; }},
        {"patch's file",
         [](BuildPlan& plan, const CString& text) { plan.databases[0].patches[0].strTarget = text; }},
        {"patch", [](BuildPlan& plan, const CString& text) { plan.databases[0].patchTargets[0] = text; }},
    };
    return places;
}

bool IsLineSeparator(wchar_t unit)
{
    return unit < 32 || (unit >= 0x7F && unit < 0xA0) || unit == 0x2028 || unit == 0x2029;
}

std::vector<CString> LinesOf(const CString& text)
{
    std::vector<CString> lines(1);
    for (int index = 0; index < text.GetLength(); ++index) {
        if (text[index] == L'\r' && text[index + 1] == L'\n') {
            lines.emplace_back();
            ++index;
        } else {
            lines.back() += text[index];
        }
    }
    return lines;
}

// What the interpreter would see of a line outside of quotes, variables left out: the signs that end a command or
// redirect it, in their order.
CString SignsOutsideQuotes(const CString& line)
{
    CString signs;
    bool quoted = false;
    for (int index = 0; index < line.GetLength(); ++index) {
        const wchar_t unit = line[index];
        if (unit == L'"') {
            quoted = !quoted;
        } else if (!quoted && CString(L"&|<>^").Find(unit) >= 0) {
            signs += unit;
        }
    }
    return quoted ? signs + L"(open)" : signs;
}

// True when each percent sign starts one of the variables of the scripts, or stands twice.
bool HasOnlyKnownVariables(const CString& line)
{
    for (int index = line.Find(L'%'); index >= 0; index = line.Find(L'%', index)) {
        bool known = false;
        for (const wchar_t* start :
             {L"%%", L"%~dp0", L"%windir%", L"%TEMP%", L"%LOG", L"%LOCAL_LOGS%", L"%DISPLAY_OPTION%",
              L"%COMPUTERNAME%", L"%ERRORLEVEL%", L"%CODE%", L"%RESULT%", L"%KEEP_LOCAL_LOG%", L"%PROBE%",
              L"%RANDOM%", L"%CODE_PAGE%", L"%~1", L"%USERDOMAIN%", L"%USERNAME%"}) {
            const CString variable = start;
            if (line.Mid(index, variable.GetLength()) == variable) {
                known = true;
                index += variable == L"%LOG" ? line.Mid(index + 1).Find(L'%') + 2 : variable.GetLength();
                break;
            }
        }
        if (!known) {
            return false;
        }
    }
    return true;
}

void ExpectSameCommands(const CString& script, const CString& harmless)
{
    const std::vector<CString> lines = LinesOf(script);
    const std::vector<CString> expected = LinesOf(harmless);
    ASSERT_EQ(lines.size(), expected.size()) << Utf8(script);
    for (std::size_t index = 0; index < lines.size(); ++index) {
        EXPECT_EQ(SignsOutsideQuotes(lines[index]), SignsOutsideQuotes(expected[index]))
            << Utf8(lines[index]);
        EXPECT_TRUE(HasOnlyKnownVariables(lines[index])) << Utf8(lines[index]);
    }
}

template <class Check>
void WithEachTextInEachPlace(const Check& check)
{
    for (const Place& place : Places()) {
        for (const wchar_t* text : g_hostile) {
            BuildPlan plan = HarmlessPlan();
            place.put(plan, text);
            SCOPED_TRACE(place.name + (" = " + Utf8(text)));
            check(plan);
        }
    }
}

// The lines to paste, which are set off by four blanks.
std::vector<CString> PastedLines(const CString& readMe)
{
    std::vector<CString> lines;
    for (const CString& line : LinesOf(readMe)) {
        for (const wchar_t* start : {L"    \"", L"    call ", L"    cmd ", L"    msiexec "}) {
            if (line.Left(TextLength(start)) == start) {
                lines.push_back(line);
            }
        }
    }
    return lines;
}

} // namespace

TEST(HostileTexts, NoneAddsACommandToTheScriptThatInstalls)
{
    const CString harmless = ComposeInstallScript(HarmlessPlan());
    WithEachTextInEachPlace(
        [&](const BuildPlan& plan) { ExpectSameCommands(ComposeInstallScript(plan), harmless); });
}

TEST(HostileTexts, NoneAddsACommandToTheScriptThatRemoves)
{
    const CString harmless = ComposeUninstallScript(HarmlessPlan());
    WithEachTextInEachPlace(
        [&](const BuildPlan& plan) { ExpectSameCommands(ComposeUninstallScript(plan), harmless); });
}

TEST(HostileTexts, NoneAddsACommandToALineToPaste)
{
    ASSERT_EQ(PastedLines(ComposeReadMe(HarmlessPlan(), L"\\\\server\\apps\\Office")).size(), 7u);
    WithEachTextInEachPlace([](const BuildPlan& plan) {
        for (const CString& line : PastedLines(ComposeReadMe(plan, L"\\\\server\\apps\\" + plan.strName))) {
            EXPECT_EQ(SignsOutsideQuotes(line), CString()) << Utf8(line);
        }
    });
}

TEST(HostileTexts, NoneAddsALineToTheNotes)
{
    const std::size_t expected = LinesOf(ComposeReadMe(HarmlessPlan(), L"\\\\server\\apps\\Office")).size();
    WithEachTextInEachPlace([&](const BuildPlan& plan) {
        std::size_t scripted = 0;
        const std::vector<CString> lines = LinesOf(ComposeReadMe(plan, L"\\\\server\\apps\\Office"));
        for (const CString& line : lines) {
            scripted +=
                line.Find(L"in a script") >= 0 ? 2 : 0; // the same line once more, in the form of a script
            for (int index = 0; index < line.GetLength(); ++index) {
                EXPECT_FALSE(IsLineSeparator(line[index])) << Utf8(line);
            }
        }
        EXPECT_EQ(lines.size() - scripted, expected);
    });
}

TEST(HostileTexts, NoneLeadsTheFileForANameOfALogElsewhere)
{
    for (const wchar_t* text : g_hostile) {
        BuildPlan plan = HarmlessPlan();
        plan.databases[0].strProductName = L"\x00E9..\\..\\" + CString(text);
        const CString file = LogNameFile(plan, plan.databases[0]);
        EXPECT_TRUE(IsPlainRelativePath(file)) << Utf8(file);
        EXPECT_EQ(FolderAbove(file), CString(L"Image\\LogNames"));
        for (const CString& line : LinesOf(ComposeInstallScript(plan))) {
            EXPECT_TRUE(line.Find(L"LOG=") < 0 || SignsOutsideQuotes(line).IsEmpty()) << Utf8(line);
        }
    }
}

TEST(HostileTexts, ACodeThatIsNoGuidStandsBetweenQuotes)
{
    BuildPlan plan = HarmlessPlan();
    plan.databases[0].strProductCode = L"{1} & echo \"pwned\"";
    const CString script = ComposeUninstallScript(plan);
    EXPECT_GE(script.Find(L"msiexec.exe\" /x \"{1} & echo pwned\" %DISPLAY_OPTION%"), 0) << Utf8(script);
    EXPECT_GE(ComposeUninstallScript(HarmlessPlan())
                  .Find(L"msiexec.exe\" /x {6F0C2A0C-9A3B-4D53-8B4A-0E2F5D0B7A11} %DISPLAY_OPTION%"),
              0);
}

TEST(HostileTexts, ADisplayOptionThatIsNoneMeansSilence)
{
    BuildPlan plan = HarmlessPlan();
    plan.commands.strDisplay = L"/qn & echo pwned";
    EXPECT_GE(ComposeInstallScript(plan).Find(L"set \"DISPLAY_OPTION=/qn\"\r\n"), 0);
}

TEST(HostileTexts, ALogFolderWithOtherLettersIsReadInTheCodePageOfTheScript)
{
    BuildPlan plan = HarmlessPlan();
    plan.commands.strLogFolder = L"\\\\server\\B\x00FCro";
    const CString script = ComposeInstallScript(plan);
    ASSERT_GE(script.Find(L"chcp 65001"), 0);
    EXPECT_LT(script.Find(L"chcp 65001"), script.Find(L"set \"LOG_FOLDER="));
}

TEST(HostileTexts, NoFileNameAddsALineToTheManifest)
{
    const CString manifest = ComposeManifest({{L"a\x2028"
                                               L"b\x85\x7F.txt",
                                               1, L"aa"},
                                              {L"\x202E"
                                               L"fdp.exe",
                                               1, L"bb"}});
    EXPECT_GE(manifest.Find(L"aa 1 a<U+2028>b<U+0085><U+007F>.txt\r\n"), 0) << Utf8(manifest);
    EXPECT_GE(manifest.Find(L"bb 1 <U+202E>fdp.exe\r\n"), 0) << Utf8(manifest);
}

// A build that replaces a deployment goes by its manifest.
TEST(HostileTexts, NamesOfTheManifestAreReadBackAsTheyWere)
{
    const CString hash(L'a', 64);
    for (const CString& name :
         {CString(L"a\x2028") + L"b\x85.txt", CString(L"\xD800") + L"x", CString(L"<U+2028>"),
          CString(L"<U+12>"), CString(L"<U+000G>"), CString(L"a<U+")}) {
        std::string bytes;
        AppendUtf8(bytes, ComposeManifest({{name, 1, hash}}));
        std::vector<ManifestEntry> entries;
        ASSERT_TRUE(ReadManifest(bytes.data(), bytes.size(), entries)) << bytes;
        ASSERT_EQ(entries.size(), 1u);
        // No file can have a code for its name; read back it would be the character.
        EXPECT_EQ(entries[0].strPath, name == L"<U+2028>" ? CString(L"\x2028") : name) << bytes;
    }
}

TEST(HostileTexts, NoCauseAddsALineToTheEndOfALog)
{
    EXPECT_EQ(ComposeLogEnd(0, L"x\r\nCode:   0\x2029").Find(L"x\r\n"), -1);
    EXPECT_EQ(LinesOf(ComposeLogEnd(0, L"x\r\nCode:   0\x2029")).size(),
              LinesOf(ComposeLogEnd(0, L"x")).size());
}

TEST(HostileTexts, NoValueFakesALineOrAnotherValueOfTheReportOfChanges)
{
    DatabaseChanges database;
    database.strTarget = L"Image\\a.msi";
    database.strProductName = L"Zolt\r\n  File: fake added";
    database.rows = {{L"T\n",
                      RowChange::Changed,
                      {L"1\r\n  T: 2 added\x2028"},
                      {{L"A\r", L"x\r\n  T: 3 removed\x0B\x85", L"C:\\new\" -> \"y"}}}};
    const CString text = ComposeChangesText({database});
    EXPECT_GE(text.Find(L"Image\\a.msi (Zolt<U+000D><U+000A>  File: fake added)\r\n"), 0) << Utf8(text);
    EXPECT_GE(text.Find(L"  T<U+000A>: 1<U+000D><U+000A>  T: 2 added<U+2028> changed\r\n"), 0) << Utf8(text);
    EXPECT_GE(text.Find(L"A<U+000D>: \"x<U+000D><U+000A>  T: 3 removed<U+000B><U+0085>\" -> \"C:\\new\"\" -> "
                        L"\"\"y\"\r\n"),
              0)
        << Utf8(text);
    for (const CString& line : LinesOf(text)) {
        for (int index = 0; index < line.GetLength(); ++index) {
            EXPECT_FALSE(IsLineSeparator(line[index])) << Utf8(line);
        }
    }
}

TEST(HostileTexts, JsonHoldsNoControlCharacterAndNoHalfPair)
{
    EXPECT_EQ(JsonText(CString(L"\x01\x1F\x7F\x85\x2028\x2029\xD800") + L"x\xDC00\xD83D\xDE00"),
              CString(L"\"\\u0001\\u001f\\u007f\\u0085\\u2028\\u2029\\ud800x\\udc00\xD83D\xDE00\""));
}

// What PowerShell would see of a line outside of its single quotes. Typographic ones are quotes to it too, and two in a row
// stand for one.
CString OutsideSingleQuotes(const CString& line)
{
    const CString quotes = L"'\x2018\x2019\x201A\x201B";
    CString outside;
    bool quoted = false;
    for (int index = 0; index < line.GetLength(); ++index) {
        const bool isQuote = quotes.Find(line[index]) >= 0;
        if (quoted && isQuote && index + 1 < line.GetLength() && quotes.Find(line[index + 1]) >= 0) {
            ++index;
        } else if (isQuote) {
            quoted = !quoted;
        } else if (!quoted) {
            outside += line[index];
        }
    }
    return quoted ? outside + L"(open)" : outside;
}

std::vector<CString> PowerShellLines(const BuildPlan& plan)
{
    std::vector<CString> lines;
    for (const CString& line : LinesOf(ComposeReadMe(plan, L"\\\\server\\apps\\" + plan.strName))) {
        if (line.Find(L"(Start-Process ") >= 0) {
            lines.push_back(line);
        }
    }
    return lines;
}

TEST(PastedLines, PowerShellRunsNothingThatStandsInAName)
{
    BuildPlan harmless = HarmlessPlan();
    std::vector<CString> expected;
    for (const CString& line : PowerShellLines(harmless)) {
        expected.push_back(OutsideSingleQuotes(line));
    }
    ASSERT_EQ(expected.size(), 5u);
    EXPECT_EQ(expected[0], CString(L"    (Start-Process cmd.exe -Wait -PassThru -ArgumentList ()).ExitCode"));
    EXPECT_EQ(expected[2], CString(L"    (Start-Process msiexec.exe -Wait -PassThru -ArgumentList ( + "
                                   L"$env:COMPUTERNAME + )).ExitCode"));
    for (const wchar_t* text : {L"$(calc)", L"`$(calc)`", L"'; calc; '", L"\x2019; calc; \x2019",
                                L"\x201A; calc; \x201B", L"a'", L"''", L"\x2018'"}) {
        for (const Place& place : Places()) {
            BuildPlan plan = HarmlessPlan();
            place.put(plan, text);
            const std::vector<CString> lines = PowerShellLines(plan);
            ASSERT_EQ(lines.size(), expected.size()) << place.name;
            for (std::size_t index = 0; index < lines.size(); ++index) {
                EXPECT_EQ(OutsideSingleQuotes(lines[index]), expected[index])
                    << place.name << ": " << Utf8(lines[index]);
            }
        }
    }
}

TEST(PastedLines, PowerShellGetsNamesAndVariablesInItsOwnForm)
{
    BuildPlan plan = HarmlessPlan();
    plan.commands.strLogFolder.Empty();
    plan.databases[0].patchTargets.clear();
    plan.databases[0].strTarget = L"Image\\it's 100%.msi";
    const CString text = ComposeReadMe(plan, L"\\\\server\\apps\\$(North)");
    EXPECT_HOLDS(text, L"(Start-Process msiexec.exe -Wait -PassThru -ArgumentList ('/i "
                       L"\"\\\\server\\apps\\$(North)\\Image\\it''s 100%.msi\" /qn /norestart /L*V \"' + "
                       L"$env:windir + '\\Logs\\Software\\Zolt_27.0.0_Install_' + $env:COMPUTERNAME + "
                       L"'.log\"')).ExitCode\r\n");
    EXPECT_HOLDS(text, L"'/d /c \"\"\\\\server\\apps\\$(North)\\Install.cmd\"\"')).ExitCode\r\n");
}

TEST(PastedLines, LettersBeyondAsciiNeedTheirCodePageInABatchFile)
{
    const wchar_t* const advice = L"    chcp 65001 >nul\r\n";
    EXPECT_EQ(ComposeReadMe(HarmlessPlan(), L"\\\\server\\apps\\Office").Find(advice), -1);
    EXPECT_HOLDS(ComposeReadMe(HarmlessPlan(), L"\\\\server\\apps\\B\x00FCro"), advice);
    BuildPlan plan = HarmlessPlan();
    plan.databases[0].strProductName = L"Fran\x00E7"
                                       L"ais";
    EXPECT_HOLDS(ComposeReadMe(plan, L"\\\\server\\apps\\Office"), advice);
}

TEST(PastedLines, AreCalledInAScript)
{
    const CString text = ComposeReadMe(HarmlessPlan(), L"\\\\server\\apps\\Office & North");
    EXPECT_GE(text.Find(L"    \"\\\\server\\apps\\Office & North\\Install.cmd\"\r\n"), 0) << Utf8(text);
    EXPECT_GE(text.Find(L"    call \"\\\\server\\apps\\Office & North\\Install.cmd\"\r\n"), 0) << Utf8(text);
    EXPECT_EQ(text.Find(L"stands twice"), -1) << Utf8(text);
}

TEST(PastedLines, APercentSignOfANameStandsTwiceInTheFormForScripts)
{
    BuildPlan plan = HarmlessPlan();
    plan.databases[0].strTarget = L"Image\\100% Zolt.msi";
    plan.databases[0].strProductName = L"100% Zolt";
    const CString text = ComposeReadMe(plan, L"\\\\server\\apps\\50% North");
    for (const wchar_t* line :
         {L"    \"\\\\server\\apps\\50% North\\Install.cmd\"\r\n",
          L"    cmd /d /c @\"\\\\server\\apps\\50%% North\\Install.cmd\"\r\n",
          L"    msiexec /i \"\\\\server\\apps\\50% North\\Image\\100% Zolt.msi\" PATCH=",
          L"    msiexec /i \"\\\\server\\apps\\50%% North\\Image\\100%% Zolt.msi\" PATCH="}) {
        EXPECT_GE(text.Find(line), 0) << Utf8(line) << " is missing in\n" << Utf8(text);
    }
    EXPECT_EQ(text.Find(L"%%COMPUTERNAME"), -1) << "a variable would not be replaced in a script";
    EXPECT_EQ(text.Find(L"100%%_"), -1) << "the name of a log has a percent sign";
}
