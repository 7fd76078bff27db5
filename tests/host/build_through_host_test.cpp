// From media to a deployment and on: create, base on, modify, as the wizard does it.
#include "tests/host/through_host.h"

#include "msi/msi_property.h"

#include <msiquery.h>

namespace {

class BuildThroughHostTest : public ThroughHostTest
{
protected:
    void SetUp() override
    {
        MakeMedia(scratch + L"media\\");
        ThroughHostTest::SetUp();
    }
};

} // namespace

TEST_F(BuildThroughHostTest, WhatPagesStoreIsInTheDeploymentAndComesBack)
{
    CSetupManager& manager = Open(scratch + L"media");
    Begin(manager, Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), L"North");
    CProduct& product = *manager.m_pProducts->at(0);
    ASSERT_TRUE(product.SetMsiProperty(L"ZOLT_NEW", L"it's new", false));
    product.SetProperty(L"ADDITIONALFILES_MODIFIED", L"1");
    manager.SetMsiProperty(L"TARN_SETUP_SUCCEEDED", L"1", false);
    manager.m_bNetworkLog = true;
    manager.m_strNetworkLogFolder = L"\\\\server\\logs";
    Build();
    EXPECT_EQ(CString(manager.m_strCompleteLine1), CString(L"North"));
    EXPECT_TRUE(IsFile(location + L"North\\Image\\x64\\Zolt\\Zolt.msi"));
    EXPECT_FALSE(IsFolder(location + L"North\\Image\\x86")) << "the other platform came along";

    CSetupManager& again = Open(location + L"North");
    EXPECT_TRUE(again.m_bHasDeployments);
    EXPECT_EQ(Stored(again, L"ZOLT_NEW"), CString(L"it's new"));
    EXPECT_TRUE(again.m_bNetworkLog);
    wchar_t buffer[8] = {};
    int size = 8;
    EXPECT_TRUE(again.m_pProducts->at(0)->GetProperty(L"ADDITIONALFILES_MODIFIED", buffer, &size));
    EXPECT_FALSE(again.DoesImageMatchPlatform(Setup::PLATFORM_X86));
}

TEST_F(BuildThroughHostTest, ModifyingReplacesTheDeploymentAndBasingLeavesItsBaseAlone)
{
    CSetupManager& manager = Open(scratch + L"media");
    Begin(manager, Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), L"North");
    Build();

    CSetupManager& modified = Open(location + L"North");
    Begin(modified, Setup::SETUPMODE_MODIFY_DEPLOYMENT, L"North", L"North");
    ASSERT_TRUE(modified.m_pProducts->at(0)->SetMsiProperty(L"ZOLT_NEW", L"modified", false));
    Build();

    CSetupManager& based = Open(location + L"North\\Image");
    Begin(based, Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT, L"North", L"South");
    EXPECT_EQ(Stored(based, L"ZOLT_NEW"), CString(L"modified"));
    ASSERT_TRUE(based.m_pProducts->at(0)->SetMsiProperty(L"ZOLT_NEW", L"south", false));
    Build();
    EXPECT_EQ(based.GetDeploymentList(location)->size(), 2u);

    EXPECT_EQ(Stored(Open(location + L"North"), L"ZOLT_NEW"), CString(L"modified"));
    EXPECT_EQ(Stored(Open(location + L"South"), L"ZOLT_NEW"), CString(L"south"));
}

TEST_F(BuildThroughHostTest, ACancelledBuildLeavesNoDeployment)
{
    CSetupManager& manager = Open(scratch + L"media");
    Begin(manager, Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), L"North");
    CSilentProgress progress;
    progress.cancel = true;
    const BuildResult result = host->Build(progress);
    EXPECT_EQ(result.error.code, 1602u);
    EXPECT_EQ(manager.m_exitCode, 1602u);
    EXPECT_TRUE(manager.GetDeploymentList(location)->empty());
}

TEST_F(BuildThroughHostTest, ASinglePackageTakesOnlyItsOwnFilesAlong)
{
    MakePackage(scratch + L"downloads\\Tool.msi");
    WriteFileBytes(scratch + L"downloads\\private letter.txt", "not for everybody");
    CSetupManager& manager = Open(scratch + L"downloads\\Tool.msi");
    Begin(manager, Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), L"Tool");
    Build();
    EXPECT_TRUE(IsFile(location + L"Tool\\Image\\Tool.msi"));
    EXPECT_FALSE(IsFile(location + L"Tool\\Image\\private letter.txt"));
    EXPECT_EQ(CString(Open(location + L"Tool").m_pProducts->at(0)->m_strName), CString(L"Zolt Test"));
}

TEST_F(BuildThroughHostTest, ADeploymentOnAShareIsBuiltAndModifiedThere)
{
    location = ShareFolder(location, L"deployments");
    if (location.IsEmpty()) {
        GTEST_SKIP() << "shares are made by a link of the prefix, which this system doesn't have";
    }
    CSetupManager& manager = Open(scratch + L"media");
    Begin(manager, Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), L"B\u00FCro Nord");
    Build();
    CSetupManager& modified = Open(location + L"B\u00FCro Nord");
    EXPECT_EQ(CString(modified.m_strDeploymentLocation), location);
    Begin(modified, Setup::SETUPMODE_MODIFY_DEPLOYMENT, L"B\u00FCro Nord", L"B\u00FCro Nord");
    ASSERT_TRUE(modified.m_pProducts->at(0)->SetMsiProperty(L"ZOLT_NEW", L"on the share", false));
    Build();
    EXPECT_EQ(Stored(Open(location + L"B\u00FCro Nord"), L"ZOLT_NEW"), CString(L"on the share"));
}

TEST_F(BuildThroughHostTest, ALocationAsLongAsTheLengthRuleAllowsIsBuilt)
{
    // The begin page lets a path pass up to 258 characters by its measure; the name takes what is left.
    CSetupManager& manager = Open(scratch + L"media");
    const int fixed = location.GetLength() + manager.GetImageFolder().GetLength() +
                      CString(manager.m_strImageSuffix).GetLength() + 4;
    const int rest =
        CString(manager.m_strMediaFile).GetLength() - CString(manager.m_strResourceFolder).GetLength() + 1;
    const CString name(L'n', 258 - fixed - rest);
    Begin(manager, Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), name);
    Build();
    EXPECT_EQ(CString(Open(location + name).m_strDeploymentName), name);
}

TEST_F(BuildThroughHostTest, TheSettingsReachTheCommandsAndComeBack)
{
    CSetupManager& manager = Open(scratch + L"media");
    Begin(manager, Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), L"North");
    manager.m_bNetworkLog = true;
    manager.m_strNetworkLogFolder = L"\\\\server\\logs\\";
    manager.m_bSettingsOption = true;
    manager.m_installMode = 3;
    Build();
    const CString script = ReadText(location + L"North\\Install.cmd");
    for (const wchar_t* line : {L"set \"LOG_FOLDER=\\\\server\\logs\\\"", L"set \"KEEP_LOCAL_LOG=1\"",
                                L"set \"DISPLAY_OPTION=/qb-!\""}) {
        EXPECT_GE(script.Find(line), 0) << Utf8(line) << " is missing in\n" << Utf8(script);
    }
    CSetupManager& again = Open(location + L"North");
    EXPECT_TRUE(again.m_bNetworkLog);
    EXPECT_EQ(again.m_strNetworkLogFolder, CString(L"\\\\server\\logs\\"));
    EXPECT_TRUE(again.m_bSettingsOption);
    EXPECT_EQ(again.m_installMode, 3);
}

TEST_F(BuildThroughHostTest, WithoutANetworkLogItsFolderIsNotUsed)
{
    CSetupManager& manager = Open(scratch + L"media");
    Begin(manager, Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), L"North");
    manager.m_bNetworkLog = false;
    manager.m_strNetworkLogFolder = L"\\\\server\\logs\\";
    manager.m_installMode = 2;
    Build();
    const CString script = ReadText(location + L"North\\Install.cmd");
    EXPECT_GE(script.Find(L"set \"LOG_FOLDER=\""), 0) << Utf8(script);
    EXPECT_GE(script.Find(L"set \"DISPLAY_OPTION=/qn\""), 0) << Utf8(script);
}

TEST_F(BuildThroughHostTest, APropertyThatAPageWroteOnTheHandleIsInTheBuiltDatabase)
{
    CSetupManager& manager = Open(scratch + L"media");
    Begin(manager, Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), L"North");
    ASSERT_TRUE(WriteProperty(manager.m_pProducts->at(0)->GetMsiHandle(), L"MC3_ENABLED", L"#1"));
    Build();
    CInstallerHandle built;
    ASSERT_EQ(
        MsiOpenDatabaseW(location + L"North\\Image\\x64\\Zolt\\Zolt.msi", MSIDBOPEN_READONLY, built.put()),
        0u);
    EXPECT_EQ(ReadProperty(built.get(), L"MC3_ENABLED"), CString(L"#1"));
}

// The service's session for the target paths knows such values too. Written through the object that it worked on, they
// were null in the file, and the build was refused as damaged.
TEST_F(BuildThroughHostTest, AValueThatAlsoStandsInASessionsPropertyIsInTheBuiltDatabase)
{
    CSetupManager& manager = Open(scratch + L"media");
    Begin(manager, Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), L"North");
    CProduct& product = *manager.m_pProducts->at(0);
    const std::vector<std::pair<CString, CString>> values = {
        {L"ZOLT_ONE", L"1"}, {L"ZOLT_ZERO", L"0"}, {L"ZOLT_WINDOWS", L"C:\\windows\\"}};
    for (const auto& [name, value] : values) {
        ASSERT_TRUE(product.SetMsiProperty(name, value, false));
    }
    Build();
    CInstallerHandle built;
    ASSERT_EQ(
        MsiOpenDatabaseW(location + L"North\\Image\\x64\\Zolt\\Zolt.msi", MSIDBOPEN_READONLY, built.put()),
        0u);
    for (const auto& [name, value] : values) {
        EXPECT_EQ(ReadProperty(built.get(), name), value);
    }
}
