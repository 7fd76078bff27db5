// Two deployments compared: each kind of difference is named, and nothing else.
#include "tests/host/through_host.h"

#include "base/path_text.h"
#include "builder/build_names.h"
#include "host/deployment_comparison.h"
#include "tests/host/user_additions.h"

#include <filesystem>
#include <functional>

namespace {

using Lines = std::vector<std::string>;

// Each fact as its line of the report.
Lines FactsOf(std::vector<DeploymentDifference> differences)
{
    SortDifferences(differences);
    Lines lines;
    for (const DeploymentDifference& difference : differences) {
        const CString text = ComposeComparisonText({L"", L"", {difference}});
        const int begin = text.Find(L"\r\n\r\n") + 4;
        lines.push_back(Utf8(text.Mid(begin, text.GetLength() - begin - 2)));
    }
    return lines;
}

class CompareDeploymentsTest : public ThroughHostTest
{
protected:
    void SetUp() override
    {
        MakeMedia(scratch + L"media\\");
        ThroughHostTest::SetUp();
    }

    // A new deployment; `prepare` stores what pages would.
    CString BuildOne(const CString& name, const std::function<void(CSetupManager&)>& prepare = {})
    {
        CSetupManager& manager = Open(scratch + L"media");
        Begin(manager, Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), name);
        if (prepare) {
            prepare(manager);
        }
        Build();
        host.reset();
        return location + name;
    }

    CString CopyOf(const CString& deployment, const wchar_t* name)
    {
        const CString copy = scratch + L"copies\\" + name;
        std::filesystem::create_directories((scratch + L"copies").GetString());
        std::filesystem::copy(deployment.GetString(), copy.GetString(),
                              std::filesystem::copy_options::recursive);
        return copy;
    }

    static OperationError Try(const CString& first, const CString& second)
    {
        TwoDeployments compared;
        OperationError error;
        EXPECT_FALSE(CompareTwoDeployments(first, second, compared, error));
        return error;
    }

    static Lines Compare(const CString& first, const CString& second)
    {
        TwoDeployments one;
        TwoDeployments other;
        OperationError error;
        EXPECT_TRUE(CompareTwoDeployments(first, second, one, error)) << Utf8(error.message);
        EXPECT_TRUE(CompareTwoDeployments(second, first, other, error)) << Utf8(error.message);
        for (DeploymentDifference& difference : other.differences) {
            if (difference.side != DifferenceSide::Both) {
                difference.side = difference.side == DifferenceSide::OnlyFirst ? DifferenceSide::OnlySecond
                                                                               : DifferenceSide::OnlyFirst;
            }
            for (DifferenceValue& value : difference.values) {
                std::swap(value.strFirst, value.strSecond);
            }
        }
        EXPECT_EQ(FactsOf(one.differences), FactsOf(other.differences)) << "swapped they are no mirror";
        return FactsOf(one.differences);
    }

    static void ChangeFile(const CString& path, const std::function<void(DeploymentFile&)>& change)
    {
        DeploymentFile file;
        ASSERT_FALSE(ReadDeploymentFile(path, file));
        change(file);
        WriteText(path, WriteDeploymentFile(file));
    }

    static void ChangeDatabase(const CString& deployment, const wchar_t* statement)
    {
        MSIHANDLE database = 0;
        ASSERT_EQ(MsiOpenDatabaseW(deployment + PACKAGE, MSIDBOPEN_TRANSACT, &database), 0u);
        EXPECT_EQ(RunSql(database, statement), 0u) << Utf8(statement);
        EXPECT_EQ(MsiDatabaseCommit(database), 0u);
        MsiCloseHandle(database);
    }

    static constexpr const wchar_t* PACKAGE = L"\\Image\\x64\\Zolt\\Zolt.msi";
};

} // namespace

TEST_F(CompareDeploymentsTest, ADeploymentAndItselfMovedAndRenamedAreEqual)
{
    const CString north = BuildOne(L"North");
    EXPECT_EQ(Compare(north, north), Lines{});
    EXPECT_EQ(Compare(north, CopyOf(north, L"Elsewhere")), Lines{});
    EXPECT_EQ(Compare(north + L"\\", CopyOf(north, L"Again")), Lines{});
}

TEST_F(CompareDeploymentsTest, TwoBuildsOfTheSameChoicesAreEqual)
{
    const CString source = scratch + L"added.txt";
    WriteFileBytes(source, "added");
    const auto choose = [&](CSetupManager& manager) {
        CProduct& product = *manager.m_pProducts->at(0);
        ASSERT_TRUE(product.SetMsiProperty(L"ZOLT_NEW", L"1", false));
        AddedRows added(product);
        const CString folder = added.AddFolder(L"Plans", L"INSTALLDIR");
        static_cast<void>(added.AddFile(source, folder));
        static_cast<void>(added.AddDrive(L"D:"));
    };
    EXPECT_EQ(Compare(BuildOne(L"North", choose), BuildOne(L"South", choose)), Lines{});
}

TEST_F(CompareDeploymentsTest, AdditionsAreNamedByTheirPathsOnAWorkstation)
{
    const CString source = scratch + L"added.txt";
    const auto build = [&](const CString& name, const std::string& bytes, bool more) {
        WriteFileBytes(source, bytes);
        return BuildOne(name, [&](CSetupManager& manager) {
            AddedRows added(*manager.m_pProducts->at(0));
            static_cast<void>(added.AddFile(source, L"INSTALLDIR"));
            if (more) {
                static_cast<void>(added.AddDrive(L"D:"));
                static_cast<void>(added.AddFolder(L"Plans", L"INSTALLDIR"));
            }
        });
    };
    const CString north = build(L"North", "one", false);
    EXPECT_EQ(Compare(north, build(L"South", "two", false)).size(), 1u);
    const Lines longer = Compare(north, build(L"East", "longer", false));
    ASSERT_EQ(longer.size(), 1u);
    EXPECT_NE(longer.front().find("\\added.txt\" \"contents\": \"3 bytes\" -> \"6 bytes\""),
              std::string::npos)
        << longer.front();
    const Lines more = Compare(north, build(L"West", "one", true));
    ASSERT_GE(more.size(), 2u);
    EXPECT_EQ(std::count_if(more.begin(), more.end(),
                            [](const std::string& line) { return line.find("added of") == 0; }),
              2)
        << testing::PrintToString(more);
    for (const std::string& line : more) {
        EXPECT_EQ(line.find("TARN_"), std::string::npos) << "a key is shown: " << line;
    }
}

TEST_F(CompareDeploymentsTest, EachChangeIsNamedAlone)
{
    const CString north = BuildOne(L"North");
    struct Row
    {
        const wchar_t* name;
        std::function<void(const CString&)> change;
        Lines facts;
    };
    const auto file = [](const CString& folder) { return folder + L"\\Deployment.xml"; };
    const Row rows[] = {
        {L"setting",
         [&](const CString& folder) {
             ChangeFile(file(folder), [](DeploymentFile& d) { d.installMode = 3; });
         },
         {"setting \"installMode\": \"2\" -> \"3\""}},
        {L"property",
         [&](const CString& folder) {
             ChangeFile(file(folder),
                        [](DeploymentFile& d) { StoreProperty(d.properties, L"OWN", L"\"x\""); });
         },
         {"setting \"property OWN\": only in B, \"\"\"x\"\"\""}},
        {L"property of a product",
         [&](const CString& folder) {
             ChangeFile(file(folder),
                        [](DeploymentFile& d) { StoreProperty(d.products.at(0).properties, L"OWN", L""); });
         },
         {"setting of \"Zolt 2027\" \"property OWN\": only in B, \"\""}},
        {L"patch",
         [&](const CString& folder) {
             ChangeFile(file(folder), [](DeploymentFile& d) {
                 d.products.at(0).patches.push_back({L"x64\\Zolt\\ServicePacks\\sp1.msp", true,
                                                     L"{11111111-2222-3333-4444-555555555599}",
                                                     CString(std::wstring(64, L'a').c_str())});
             });
         },
         {"patch of \"Zolt 2027\" \"x64\\Zolt\\ServicePacks\\sp1.msp (merged)\": only in B"}},
        {L"row",
         [](const CString& folder) {
             ChangeDatabase(folder, L"INSERT INTO `Property` (`Property`, `Value`) VALUES ('OWN', 'a -> b')");
         },
         {"row of \"Zolt 2027\" \"Property\" \"OWN\": only in B, \"Property\" = \"OWN\", \"Value\" = \"a -> "
          "b\""}},
        {L"changed row",
         [](const CString& folder) {
             ChangeDatabase(folder, L"UPDATE `Feature` SET `Title` = 'Other' WHERE `Level` = 1");
         },
         {"row of \"Zolt 2027\" \"Feature\" \"Main\" \"Title\": \"\" -> \"Other\""}},
        {L"file that was changed",
         [](const CString& folder) { WriteFileBytes(folder + L"\\Image\\own.txt", "1"); },
         {"file \"Image\\own.txt\": only in B, \"1 bytes\""}},
        {L"display",
         [](const CString& folder) {
             CString text = ReadText(folder + L"\\Install.cmd");
             text.Replace(L"DISPLAY_OPTION=/qn", L"DISPLAY_OPTION=/qb");
             WriteFileBytes(folder + L"\\Install.cmd", Utf8(text));
         },
         {"command \"Install.cmd\" \"DISPLAY_OPTION\": \"/qn\" -> \"/qb\""}},
        {L"script that is gone", [](const CString& folder) { DeleteFileW(folder + L"\\Uninstall.cmd"); }, {}},
        {L"notes",
         [](const CString& folder) {
             for (const wchar_t* name : {L"ReadMe.txt", L"Build.log", L"Changes.txt", L"Changes.json"}) {
                 WriteFileBytes(folder + L"\\" + name, "other");
             }
             DeleteFileW(folder + L"\\Manifest.txt");
         },
         {}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(Utf8(row.name));
        const CString copy = CopyOf(north, row.name);
        row.change(copy);
        const Lines facts = Compare(north, copy);
        if (CString(row.name) == L"script that is gone") {
            ASSERT_EQ(facts.size(), 1u);
            EXPECT_EQ(facts.front().find("file \"Uninstall.cmd\": only in A"), 0u) << facts.front();
        } else {
            EXPECT_EQ(facts, row.facts);
        }
    }
}

TEST_F(CompareDeploymentsTest, EachDamageIsNamedAlone)
{
    const CString north = BuildOne(L"North");
    WriteFileBytes(north + L"\\Image\\data.bin", "12345");
    struct Row
    {
        const wchar_t* name;
        std::function<void(const CString&)> damage;
        Lines facts;
    };
    const auto stored = [](std::function<void(DeploymentFile&)> change) {
        return [change](const CString& folder) { ChangeFile(folder + L"\\Deployment.xml", change); };
    };
    const auto row = [](const wchar_t* statement) {
        return [statement](const CString& folder) { ChangeDatabase(folder, statement); };
    };
    const auto script = [](const wchar_t* name, const wchar_t* was, const wchar_t* becomes) {
        return [=](const CString& folder) {
            CString text = ReadText(folder + L"\\" + name);
            EXPECT_GE(text.Find(was), 0) << Utf8(text);
            text.Replace(was, becomes);
            WriteFileBytes(folder + L"\\" + name, Utf8(text));
        };
    };
    const auto file = [](const wchar_t* bytes) {
        return [bytes](const CString& folder) { WriteFileBytes(folder + L"\\Image\\data.bin", Utf8(bytes)); };
    };
    const Row rows[] = {
        {L"language",
         stored([](DeploymentFile& d) { d.strLanguage = L"de-DE"; }),
         {"setting \"language\": \"en-US\" -> \"de-DE\""}},
        {L"log switch",
         stored([](DeploymentFile& d) { d.bNetworkLog = !d.bNetworkLog; }),
         {"setting \"networkLog\": \"0\" -> \"1\""}},
        {L"log folder",
         stored([](DeploymentFile& d) { d.strNetworkLogFolder = L"\\\\s\\l"; }),
         {"setting \"networkLogFolder\": \"\" -> \"\\\\s\\l\""}},
        {L"log copy",
         stored([](DeploymentFile& d) { d.bSettingsOption = !d.bSettingsOption; }),
         {"setting \"settingsOption\": \"0\" -> \"1\""}},
        {L"version",
         stored([](DeploymentFile& d) { d.strProductVersion = L"27.0.1"; }),
         {"setting \"productVersion\": \"27.0.0\" -> \"27.0.1\""}},
        {L"patch choice",
         stored([](DeploymentFile& d) { d.products.at(0).includePatch = 2; }),
         {"setting of \"Zolt 2027\" \"includePatch\": \"-1\" -> \"2\""}},
        {L"patch state",
         stored([](DeploymentFile& d) { d.products.at(0).patchState = 2; }),
         {"setting of \"Zolt 2027\" \"patchState\": \"0\" -> \"2\""}},
        {L"patch name",
         stored([](DeploymentFile& d) { d.products.at(0).strPatchName = L"SP"; }),
         {"setting of \"Zolt 2027\" \"patchName\": \"\" -> \"SP\""}},
        {L"added row",
         row(L"INSERT INTO `Property` (`Property`, `Value`) VALUES ('A', 'b')"),
         {"row of \"Zolt 2027\" \"Property\" \"A\": only in B, \"Property\" = \"A\", \"Value\" = \"b\""}},
        {L"removed row",
         row(L"DELETE FROM `Property` WHERE `Property` = 'ProductVersion'"),
         {"row of \"Zolt 2027\" \"Property\" \"ProductVersion\": only in A, \"Property\" = "
          "\"ProductVersion\", \"Value\" = \"27.0.0\""}},
        {L"changed value",
         row(L"UPDATE `Property` SET `Value` = '1' WHERE `Property` = 'ProductVersion'"),
         {"row of \"Zolt 2027\" \"Property\" \"ProductVersion\" \"Value\": \"27.0.0\" -> \"1\""}},
        {L"new table", row(L"CREATE TABLE `Own` (`Key` CHAR(9) NOT NULL PRIMARY KEY `Key`)"), {}},
        {L"larger file", file(L"123456"), {"file \"Image\\data.bin\": \"5 bytes\" -> \"6 bytes\""}},
        {L"file of the same size",
         file(L"12346"),
         {"file \"Image\\data.bin\": \"SHA-256 "
          "5994471abb01112afcc18159f6cc74b4f511b99806da59b3caf5a9c173cacfc5\" -> \"SHA-256 "
          "34d128f5b3dede622e107438fbefabdf0519ebab21ac7b6f2075f974d09ce524\""}},
        {L"file that is gone",
         [](const CString& folder) { DeleteFileW(folder + L"\\Image\\data.bin"); },
         {"file \"Image\\data.bin\": only in A, \"5 bytes\""}},
        {L"file that is renamed",
         [](const CString& folder) {
             MoveFileW(folder + L"\\Image\\data.bin", folder + L"\\Image\\other.bin");
         },
         {"file \"Image\\data.bin\": only in A, \"5 bytes\"",
          "file \"Image\\other.bin\": only in B, \"5 bytes\""}},
        {L"file in another letter case",
         [](const CString& folder) {
             MoveFileW(folder + L"\\Image\\data.bin", folder + L"\\Image\\DATA.bin");
         },
         {}},
        {L"empty folder",
         [](const CString& folder) { EXPECT_EQ(MakeFolders(folder + L"\\Image\\More"), 0u); },
         {}},
        {L"other notes", [](const CString& folder) { WriteFileBytes(folder + L"\\Additions.txt", "x"); }, {}},
        {L"display of the removal",
         script(L"Uninstall.cmd", L"DISPLAY_OPTION=/qn", L"DISPLAY_OPTION=/qb"),
         {"command \"Uninstall.cmd\" \"DISPLAY_OPTION\": \"/qn\" -> \"/qb\""}},
        {L"another line of a command",
         script(L"Install.cmd", L"@echo off\r\n", L"@echo off\r\nset OWN=1\r\n"),
         {"command \"Install.cmd\" \"set OWN=1\": only in B"}},
        {L"remark", script(L"Uninstall.cmd", L"@echo off\r\n", L"@echo off\r\nrem own\r\n"), {}},
    };
    for (const Row& each : rows) {
        SCOPED_TRACE(Utf8(each.name));
        const CString copy = CopyOf(north, each.name);
        each.damage(copy);
        EXPECT_EQ(Compare(north, copy), each.facts);
    }
}

TEST_F(CompareDeploymentsTest, WhatIsNoDeploymentOrCannotBeReadIsNamed)
{
    const CString north = BuildOne(L"North");
    struct Row
    {
        const wchar_t* name;
        std::function<void(const CString&)> damage;
        const wchar_t* named;
    };
    const Row rows[] = {
        {L"no file", [](const CString& folder) { DeleteFileW(folder + L"\\Deployment.xml"); },
         L"Deployment.xml"},
        {L"no image", [](const CString& folder) { DeleteFileW(folder + L"\\Image\\Setup.xml"); },
         L"Setup.xml"},
        {L"file of a newer version",
         [](const CString& folder) {
             CString text = ReadText(folder + L"\\Deployment.xml");
             text.Replace(L"<Deployment version=\"2\"", L"<Deployment version=\"99\"");
             WriteFileBytes(folder + L"\\Deployment.xml", Utf8(text));
         },
         L"newer program"},
        {L"no database", [](const CString& folder) { DeleteFileW(folder + PACKAGE); }, L"Zolt.msi"},
        {L"damaged database", [](const CString& folder) { WriteFileBytes(folder + PACKAGE, "junk"); },
         L"Zolt.msi"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(Utf8(row.name));
        const CString copy = CopyOf(north, row.name);
        row.damage(copy);
        for (const OperationError& error : {Try(north, copy), Try(copy, north)}) {
            EXPECT_NE(error.code, 0u);
            EXPECT_GE(error.message.Find(row.named), 0) << Utf8(error.message);
            EXPECT_GE(error.message.Find(copy), 0) << Utf8(error.message);
        }
    }
}
