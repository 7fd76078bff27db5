// What a check of a deployment reads back of its texts, and how it says what it found.
#include "builder/change_report.h"
#include "builder/changes_codes.h"
#include "builder/command_settings.h"
#include "builder/command_text.h"
#include "builder/verify_result.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

namespace {

const wchar_t HOSTILE[] = L"a\"b\\c\r\n\x202E<U+000A>\x0001";

std::vector<DatabaseCodes> CodesOf(const std::string& text)
{
    std::vector<DatabaseCodes> codes;
    EXPECT_TRUE(ReadDatabaseCodes(text.data(), text.size(), codes)) << text;
    return codes;
}

bool HasCodes(const std::string& text)
{
    std::vector<DatabaseCodes> codes;
    return ReadDatabaseCodes(text.data(), text.size(), codes);
}

BuildPlan PlanWith(const WorkstationCommands& commands)
{
    BuildPlan plan;
    plan.commands = commands;
    plan.databases.emplace_back();
    plan.databases.back().strTarget = L"Image\\Zolt.msi";
    plan.databases.back().strProductName = L"Zolt";
    plan.databases.back().strProductCode = L"{11111111-2222-3333-4444-555555555556}";
    return plan;
}

VerifyResult ResultWith(std::vector<VerifyFinding> findings)
{
    VerifyResult result;
    result.strFolder = L"D:\\Out\\Office";
    result.bIsDeployment = true;
    result.findings = std::move(findings);
    SortFindings(result.findings);
    result.verdict = VerdictOf(result);
    return result;
}

} // namespace

// ---- codes of databases

TEST(BuildVerify, TheCodesThatABuildWritesAreReadBackWhateverTheNamesHold)
{
    std::vector<DatabaseChanges> changes(2);
    changes[0].strTarget = L"Image\\\x65E5.msi";
    changes[0].strProductName = HOSTILE;
    changes[0].strOldPackageCode = L"{A}";
    changes[0].strNewPackageCode = L"{B}";
    changes[0].rows = {
        {L"Property", RowChange::Added, {HOSTILE}, {{L"Value", L"", L"\r\n    {\"file\": \"x\""}}}};
    changes[1].strTarget = L"Image\\b.msi";
    changes[1].strNewPackageCode = L"{C}";
    const std::vector<DatabaseCodes> codes = CodesOf(Utf8(ComposeChangesJson(changes)));
    ASSERT_EQ(codes.size(), 2u);
    EXPECT_EQ(codes[0].strTarget, changes[0].strTarget);
    EXPECT_EQ(codes[0].strProductName, changes[0].strProductName);
    EXPECT_EQ(codes[0].strPackageCode, CString(L"{B}"));
    EXPECT_EQ(codes[1].strTarget, CString(L"Image\\b.msi"));
}

TEST(BuildVerify, AnythingElseHasNoCodes)
{
    const std::string start = "    {\"file\": \"a.msi\", ";
    EXPECT_TRUE(HasCodes(start + "\"newPackageCode\": \"{A}\", \"rows\": [\n"));
    for (const std::string& text :
         {std::string(), std::string("{}"), start, start + "\"rows\": [",
          start + "\"newPackageCode\": \"{A}\"}", start + "\"newPackageCode\": \"{A}",
          start + "\"newPackageCode\": {}, \"rows\": [", start + "\"newPackageCode\": \"\\u00\", \"rows\": [",
          start + "\"newPackageCode\": \"\\u0000\", \"rows\": [",
          start + "\"newPackageCode\": \"\\n\", \"rows\": [",
          std::string("    {\"file\": \"\", \"newPackageCode\": \"{A}\", \"rows\": [")}) {
        EXPECT_FALSE(HasCodes(text)) << text;
    }
}

// ---- settings of the commands

TEST(BuildVerify, AScriptWithItsSettingsPutBackIsTheOneThatWasBuilt)
{
    const WorkstationCommands built = {L"\\\\server\\100% \x65E5\\", true, L"/qb-!"};
    const WorkstationCommands edited = {L"\\\\server\\100% \x672C\\", false, L"/qn"};
    for (const auto compose : {ComposeInstallScript, ComposeUninstallScript}) {
        std::string restored;
        std::vector<SettingChange> changes;
        EXPECT_TRUE(RestoreSettings(Utf8(compose(PlanWith(edited))), built, restored, changes));
        EXPECT_EQ(restored, Utf8(compose(PlanWith(built))));
        ASSERT_EQ(changes.size(), 3u);
        EXPECT_EQ(changes[0].strBuilt, built.strLogFolder);
        EXPECT_EQ(changes[0].strNow, edited.strLogFolder);
        EXPECT_TRUE(RestoreSettings(restored, built, restored, changes));
        EXPECT_TRUE(changes.empty());
    }
}

TEST(BuildVerify, AValueThatASettingCannotHaveIsNoSetting)
{
    const std::string script = Utf8(ComposeInstallScript(PlanWith({L"x", false, L"/qn"})));
    for (const auto& [part, by] : std::vector<std::pair<std::string, std::string>>{
             {"DISPLAY_OPTION=/qn\"", "DISPLAY_OPTION=/qn /x\""},
             {"DISPLAY_OPTION=/qn\"", "DISPLAY_OPTION=\""},
             {"KEEP_LOCAL_LOG=0\"", "KEEP_LOCAL_LOG=2\""},
             {"KEEP_LOCAL_LOG=0\"", "KEEP_LOCAL_LOG=\""},
             {"LOG_FOLDER=x\"", "LOG_FOLDER=x\" & calc"},
             {"LOG_FOLDER=x\"", "LOG_FOLDER=x"},
             {"LOG_FOLDER=x\"\r\n", "LOG_FOLDER=x\"\n"},
             {"set \"LOG_FOLDER=x\"", "set LOG_FOLDER=x"},
             {"\r\nset \"LOG_FOLDER=", "\r\n set \"LOG_FOLDER="},
         }) {
        std::string edited = script;
        ASSERT_NE(edited.find(part), std::string::npos) << part;
        edited.replace(edited.find(part), part.size(), by);
        std::string restored;
        std::vector<SettingChange> changes;
        EXPECT_FALSE(RestoreSettings(edited, {L"x", false, L"/qn"}, restored, changes)) << by;
    }
}

// ---- the verdict

TEST(BuildVerify, OnlyWhatWasFoundToDifferDiffers)
{
    EXPECT_EQ(ResultWith({}).verdict, VerifyVerdict::AsBuilt);
    EXPECT_EQ(ResultWith({{FindingKind::Setting, L"Install.cmd", {}, L"log folder", L"a", L"b"}}).verdict,
              VerifyVerdict::AsBuilt);
    EXPECT_EQ(ResultWith({{FindingKind::Unreadable, L"a", {}, {}, {}, {}}}).verdict,
              VerifyVerdict::Undetermined);
    for (const FindingKind kind : {FindingKind::Missing, FindingKind::Added, FindingKind::Changed}) {
        EXPECT_EQ(ResultWith({{FindingKind::Unreadable, L"a", {}, {}, {}, {}}, {kind, L"b", {}, {}, {}, {}}})
                      .verdict,
                  VerifyVerdict::Differs);
    }
    VerifyResult unknown = ResultWith({});
    unknown.unknown = {L"Manifest.txt is missing."};
    EXPECT_EQ(VerdictOf(unknown), VerifyVerdict::Undetermined);
}

TEST(BuildVerify, WhatADeploymentDoesNotRecordIsNoDoubt)
{
    VerifyResult result = ResultWith({});
    result.unrecorded = {L"codes of the databases, as the deployment has no Changes.json"};
    EXPECT_EQ(VerdictOf(result), VerifyVerdict::AsBuilt);
}

TEST(BuildVerify, TextAndJsonHoldTheSameInASteadyOrder)
{
    VerifyResult result = ResultWith({{FindingKind::Setting, L"Install.cmd", {}, L"log folder", L"a", L"b"},
                                      {FindingKind::Added, L"z.txt", {}, {}, {}, {}},
                                      {FindingKind::Added, L"A.txt", {}, {}, {}, {}},
                                      {FindingKind::Missing, L"m.txt", {}, {}, {}, {}},
                                      {FindingKind::Changed, L"c.txt", L"1 byte", {}, {}, {}}});
    result.unrecorded = {L"the codes, as \"x\" has none"};
    EXPECT_EQ(
        ComposeVerifyText(result),
        CString(L"Deployment: D:\\Out\\Office\r\n"
                L"As they were built: 0 files\r\n"
                L"Missing: m.txt\r\n"
                L"Added: A.txt\r\n"
                L"Added: z.txt\r\n"
                L"Changed: c.txt (1 byte)\r\n"
                L"Setting: Install.cmd (log folder is \"b\", was built as \"a\")\r\n"
                L"Not checked: the codes, as \"x\" has none\r\n"
                L"Result: The deployment in \"D:\\Out\\Office\" is not what was built: 1 missing, 2 added, "
                L"1 changed.\r\n"));
    EXPECT_EQ(
        ComposeVerifyJson(result),
        CString(L"{\r\n"
                L"  \"version\": 1,\r\n"
                L"  \"command\": \"verify\",\r\n"
                L"  \"folder\": \"D:\\\\Out\\\\Office\",\r\n"
                L"  \"product\": \"\",\r\n"
                L"  \"verdict\": \"differs\",\r\n"
                L"  \"filesAsBuilt\": 0,\r\n"
                L"  \"findings\": [\r\n"
                L"    {\"kind\": \"missing\", \"path\": \"m.txt\"},\r\n"
                L"    {\"kind\": \"added\", \"path\": \"A.txt\"},\r\n"
                L"    {\"kind\": \"added\", \"path\": \"z.txt\"},\r\n"
                L"    {\"kind\": \"changed\", \"path\": \"c.txt\", \"detail\": \"1 byte\"},\r\n"
                L"    {\"kind\": \"setting\", \"path\": \"Install.cmd\", \"setting\": \"log folder\", "
                L"\"built\": \"a\", \"now\": \"b\"}\r\n"
                L"  ],\r\n"
                L"  \"notChecked\": [\r\n"
                L"    \"the codes, as \\\"x\\\" has none\"\r\n"
                L"  ],\r\n"
                L"  \"undetermined\": [],\r\n"
                L"  \"result\": \"The deployment in \\\"D:\\\\Out\\\\Office\\\" is not what was built: 1 "
                L"missing, 2 added, 1 changed.\"\r\n"
                L"}\r\n"));
}

TEST(BuildVerify, HostileNamesStayOnTheirLine)
{
    VerifyResult result =
        ResultWith({{FindingKind::Added, HOSTILE, HOSTILE, {}, {}, {}},
                    {FindingKind::Setting, L"Install.cmd", {}, L"log folder", HOSTILE, HOSTILE}});
    result.strFolder = result.strProduct = HOSTILE;
    result.unknown = result.unrecorded = {HOSTILE};
    const CString text = ComposeVerifyText(result);
    int lines = 0;
    for (int index = 0; index < text.GetLength(); ++index) {
        const wchar_t unit = text[index];
        lines += unit == L'\n' ? 1 : 0;
        EXPECT_TRUE(unit >= 0x20 || unit == L'\r' || unit == L'\n') << index;
        EXPECT_NE(unit, 0x202E);
    }
    EXPECT_EQ(lines, 8);
    const CString json = ComposeVerifyJson(result);
    EXPECT_LT(json.Find(L'\x202E'), 0);
    EXPECT_HOLDS(json, L"a\\\"b\\\\c\\u000d\\u000a");
}
