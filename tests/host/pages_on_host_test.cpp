// What the pages' choices do to the host, and what the deployment says of them: the page library and the host that Setup.exe
// brings together, with nothing in between.
#include "automation/control.h"
#include "tests/host/pages_on_host.h"

#include <msiquery.h>

namespace {

// What the host's members say, in the order in which a failure is read.
CString FieldsOf(CSetupManager& manager)
{
    return L"mode " + NumberText(manager.m_setupMode) + L", platform " + NumberText(manager.m_platform) +
           L", name " + manager.m_strDeploymentName + L", base " + manager.m_strBaseDeploymentName +
           L", stage " + NumberText(static_cast<long long>(manager.m_uiStage)) + L", exit code " +
           NumberText(static_cast<long long>(manager.m_exitCode)) + L", reset " +
           NumberText(manager.m_pUiManager->m_bResetAllowed1) +
           NumberText(manager.m_pUiManager->m_bResetAllowed2) + L", line " + manager.m_strCompleteLine1;
}

CString PackagesOf(CSetupManager& manager)
{
    CString packages;
    for (const CProduct* product : *manager.m_pProducts) {
        packages += CString(product->m_strMsiFile) + L";";
    }
    return packages;
}

class NewDeploymentOnHost : public PagesOnHost
{
protected:
    NewDeploymentOnHost()
    {
        MakeMedia(scratch + L"media\\");
        manager = &OpenWithTexts(scratch + L"media");
    }

    void Enter(const CString& name)
    {
        Type(IDC_LOCATION, location);
        Type(IDC_NAME, name);
        Press(IDC_NEXT);
        AnswerQuestion(IDYES); // a local path
    }

    // As the system sends it for the key; the last pages show no Cancel button.
    void PressEscape()
    {
        Look([this] { PostMessageW(Page(), WM_COMMAND, MAKEWPARAM(IDC_CANCEL, BN_CLICKED), 0); });
    }

    CSetupManager* manager = nullptr;
};

// Two deployments of one location, the wizard on the first one's image.
class ExistingDeploymentOnHost : public PagesOnHost
{
protected:
    ExistingDeploymentOnHost()
    {
        for (const wchar_t* name : {L"North", L"South"}) {
            DeploymentFile file = DescribeTestDeployment(name);
            file.strBaseName = CString(L"Base of ") + name;
            file.strNetworkLogFolder = CString(L"\\\\server\\") + name;
            file.products[0].patches.clear();
            MakeDeployment(location, name, file);
        }
        manager = &OpenWithTexts(location + L"North");
    }

    CString BaseInFile(const wchar_t* name)
    {
        DeploymentFile file;
        const OperationError error = ReadDeploymentFile(location + name + L"\\Deployment.xml", file);
        EXPECT_FALSE(error) << Utf8(error.message);
        return file.strBaseName;
    }

    CSetupManager* manager = nullptr;
};

} // namespace

TEST_F(NewDeploymentOnHost, TheFirstPageStoresItsChoiceInTheHostAndTheDeployment)
{
    EXPECT_EQ(FieldsOf(*manager),
              CString(L"mode 4, platform 3, name , base , stage 0, exit code 0, reset 00, line "));
    Press(IDC_PLATFORM_X86);
    Enter(L"East");
    ASSERT_EQ(Show(BeginDeploymentDialog), NAVIGATION_NEXT);
    EXPECT_EQ(FieldsOf(*manager),
              CString(L"mode 4, platform 2, name East, base , stage 0, exit code 0, reset 11, line "));
    EXPECT_EQ(CString(manager->m_strDeploymentLocation), location);
    EXPECT_EQ(manager->m_strDeploymentFolder, location + L"East\\");
    EXPECT_EQ(PackagesOf(*manager), CString(L"x86\\Zolt\\Zolt.msi;"));
    Build();
    DeploymentFile built;
    ASSERT_FALSE(ReadDeploymentFile(location + L"East\\Deployment.xml", built));
    EXPECT_EQ(built.strName, CString(L"East"));
    EXPECT_EQ(built.platform, 2);
    EXPECT_EQ(built.strBaseName, CString());
}

TEST_F(NewDeploymentOnHost, AfterABuildTheLastPageShowsItAndEscapeAsksNothing)
{
    Enter(L"East");
    ASSERT_EQ(Show(BeginDeploymentDialog), NAVIGATION_NEXT);
    Build();
    EXPECT_EQ(FieldsOf(*manager),
              CString(L"mode 4, platform 3, name East, base , stage 4, exit code 0, reset 11, line East"));
    Look([&] {
        EXPECT_HOLDS(CControl(Page(), IDC_RESULT_LINE1).GetText(), L"East");
        EXPECT_HOLDS(CControl(Page(), IDC_RESULT_LINE2).GetText(), location + L"East\\");
    });
    PressEscape();
    EXPECT_EQ(Show(DeploymentCompleteDialog), NAVIGATION_NEXT);
}

TEST_F(NewDeploymentOnHost, ResetAfterABuildBringsTheFirstStageBack)
{
    Enter(L"East");
    ASSERT_EQ(Show(BeginDeploymentDialog), NAVIGATION_NEXT);
    Build();
    Press(IDC_RESET);
    EXPECT_EQ(Show(DeploymentCompleteDialog), NAVIGATION_RESET);
    EXPECT_EQ(FieldsOf(*manager),
              CString(L"mode 4, platform 3, name , base , stage 0, exit code 0, reset 00, line "));
    EXPECT_EQ(PackagesOf(*manager), CString(L"x64\\Zolt\\Zolt.msi;"));
    Look([&] {
        EXPECT_EQ(CControl(Page(), IDC_LOCATION).GetText(), CString());
        EXPECT_EQ(CControl(Page(), IDC_NAME).GetText(), CString());
        EXPECT_FALSE(CControl(Page(), IDC_RESET).IsVisible());
    });
    // Cancel asks again: the stage behind the build is over.
    Press(IDC_CANCEL);
    AnswerCancelQuestion(IDYES, [] {});
    EXPECT_EQ(Show(BeginDeploymentDialog), NAVIGATION_CANCEL);
    EXPECT_EQ(manager->m_exitCode, 1602u);
}

TEST_F(NewDeploymentOnHost, AFailedBuildLeavesTheLastPageWithItsCode)
{
    Enter(L"East");
    ASSERT_EQ(Show(BeginDeploymentDialog), NAVIGATION_NEXT);
    CSilentProgress progress;
    progress.cancel = true;
    EXPECT_EQ(host->Build(progress).error.code, 1602u);
    EXPECT_EQ(FieldsOf(*manager),
              CString(L"mode 4, platform 3, name East, base , stage 4, exit code 1602, reset 11, line "));
    PressEscape();
    EXPECT_EQ(Show(DeploymentFailedDialog), NAVIGATION_NEXT);
}

TEST_F(NewDeploymentOnHost, WhileThePageAsksAboutTheEndTheProgramSeesIt)
{
    Press(IDC_CANCEL);
    AnswerCancelQuestion(IDNO, [&] { EXPECT_FALSE(host->IsCancellingEnabled()); });
    Look([&] { EXPECT_TRUE(host->IsCancellingEnabled()); });
    Enter(L"East");
    EXPECT_EQ(Show(BeginDeploymentDialog), NAVIGATION_NEXT);
    EXPECT_TRUE(host->IsCancellingEnabled());
}

TEST_F(NewDeploymentOnHost, WhatTheNoticePageStoresIsInTheBuiltDatabaseAndOnThePageAgain)
{
    Enter(L"East");
    ASSERT_EQ(Show(BeginDeploymentDialog), NAVIGATION_NEXT);
    const CString feed = work + L"feed.xml"; // the package takes ASCII alone
    WriteFileBytes(feed, "<rss/>");
    SetChecked(IDC_SITE_CHANNEL, true);
    Type(IDC_FEED_LOCATION, feed);
    Type(IDC_DISPLAY_NAME, L"Site news");
    SetChecked(IDC_CHANNEL_NOTICES, false);
    Press(IDC_NEXT);
    ASSERT_EQ(Show(NoticeDeskFeedBoardDialog, true), NAVIGATION_NEXT);
    Build();

    CSetupManager& again = OpenWithTexts(location + L"East");
    EXPECT_EQ(Stored(again, L"ZOLT_SITEMGR_CHANNEL_ENABLE"), CString(L"#1"));
    EXPECT_EQ(Stored(again, L"ZOLT_CHANNEL_NOTIFY_ENABLE"), CString(L"#0"));
    EXPECT_EQ(Stored(again, L"ZOLT_SITEMGR_LOCATION"), feed);
    EXPECT_EQ(Stored(again, L"ZOLT_SITEMGR_DISPLAY_NAME"), CString(L"Site news"));
    Look([&] {
        EXPECT_TRUE(CControl(Page(), IDC_SITE_CHANNEL).IsChecked());
        EXPECT_FALSE(CControl(Page(), IDC_CHANNEL_NOTICES).IsChecked());
        EXPECT_EQ(CControl(Page(), IDC_FEED_LOCATION).GetText(), feed);
        EXPECT_EQ(CControl(Page(), IDC_DISPLAY_NAME).GetText(), CString(L"Site news"));
    });
    Press(IDC_BACK);
    EXPECT_EQ(Show(NoticeDeskFeedBoardDialog, true), NAVIGATION_BACK);
}

// ---- on an image

TEST_F(ExistingDeploymentOnHost, TheImageOpensToModifyItsDeployment)
{
    EXPECT_EQ(FieldsOf(*manager),
              CString(L"mode 6, platform 3, name North, base North, stage 0, exit code 0, reset 00, line "));
    Press(IDC_NEXT);
    ASSERT_EQ(Show(BeginDeploymentDialog), NAVIGATION_NEXT);
    EXPECT_EQ(FieldsOf(*manager),
              CString(L"mode 6, platform 3, name North, base North, stage 0, exit code 0, reset 11, line "));
    Build();
    EXPECT_EQ(BaseInFile(L"North"), CString(L"Base of North")) << "a modified deployment has the base it had";
}

TEST_F(ExistingDeploymentOnHost, BasingOnTheOtherOneTakesItsSettingsAndNamesItAsTheBase)
{
    Press(IDC_MODE_CREATE_FROM);
    SelectLine(IDC_DEPLOYMENTS, L"South");
    Type(IDC_NAME, L"East");
    Press(IDC_NEXT);
    ASSERT_EQ(Show(BeginDeploymentDialog), NAVIGATION_NEXT);
    EXPECT_EQ(FieldsOf(*manager),
              CString(L"mode 5, platform 3, name East, base South, stage 0, exit code 0, reset 11, line "));
    EXPECT_EQ(manager->m_strNetworkLogFolder, CString(L"\\\\server\\South"));
    EXPECT_EQ(CString(manager->m_strMediaRoot), location + L"South\\Image\\");
    Build();
    EXPECT_EQ(BaseInFile(L"East"), CString(L"South"));
}

TEST_F(ExistingDeploymentOnHost, ModifyingTheOtherOneKeepsTheBaseThatItHas)
{
    Press(IDC_MODE_MODIFY);
    SelectLine(IDC_DEPLOYMENTS, L"South");
    Press(IDC_NEXT);
    ASSERT_EQ(Show(BeginDeploymentDialog), NAVIGATION_NEXT);
    EXPECT_EQ(FieldsOf(*manager),
              CString(L"mode 6, platform 3, name South, base South, stage 0, exit code 0, reset 11, line "));
    Build();
    EXPECT_EQ(BaseInFile(L"South"), CString(L"Base of South"));
    EXPECT_EQ(BaseInFile(L"North"), CString(L"Base of North")) << "the other one was touched";
}

TEST_F(ExistingDeploymentOnHost, ANewDeploymentOfTheImageStartsWithoutABase)
{
    Press(IDC_MODE_CREATE);
    Type(IDC_NAME, L"East");
    Press(IDC_NEXT);
    ASSERT_EQ(Show(BeginDeploymentDialog), NAVIGATION_NEXT);
    EXPECT_EQ(FieldsOf(*manager),
              CString(L"mode 4, platform 3, name East, base , stage 0, exit code 0, reset 11, line "));
    EXPECT_EQ(manager->m_strNetworkLogFolder, CString());
    Build();
    EXPECT_EQ(BaseInFile(L"East"), CString());
}

TEST_F(ExistingDeploymentOnHost, EachWayBackThroughTheFirstPageChangesTheModeWhole)
{
    Press(IDC_MODE_CREATE_FROM);
    SelectLine(IDC_DEPLOYMENTS, L"South");
    Type(IDC_NAME, L"East");
    Press(IDC_NEXT);
    ASSERT_EQ(Show(BeginDeploymentDialog), NAVIGATION_NEXT);
    Press(IDC_BACK);
    ASSERT_EQ(Show(DeploymentSettingsDialog, true), NAVIGATION_BACK);
    Press(IDC_MODE_CREATE);
    Type(IDC_NAME, L"West");
    Press(IDC_NEXT);
    ASSERT_EQ(Show(BeginDeploymentDialog), NAVIGATION_NEXT);
    EXPECT_EQ(FieldsOf(*manager),
              CString(L"mode 4, platform 3, name West, base , stage 0, exit code 0, reset 11, line "));
    EXPECT_EQ(CString(manager->m_strMediaRoot), location + L"North\\Image\\");
    Press(IDC_MODE_MODIFY);
    SelectLine(IDC_DEPLOYMENTS, L"North");
    Press(IDC_NEXT);
    ASSERT_EQ(Show(BeginDeploymentDialog), NAVIGATION_NEXT);
    EXPECT_EQ(FieldsOf(*manager),
              CString(L"mode 6, platform 3, name North, base North, stage 0, exit code 0, reset 11, line "));
    EXPECT_EQ(manager->m_strNetworkLogFolder, CString(L"\\\\server\\North"));
}

TEST_F(ExistingDeploymentOnHost, ResetOnALaterPageReturnsToTheDeploymentOfTheImage)
{
    Press(IDC_MODE_CREATE_FROM);
    SelectLine(IDC_DEPLOYMENTS, L"South");
    Type(IDC_NAME, L"East");
    Press(IDC_NEXT);
    ASSERT_EQ(Show(BeginDeploymentDialog), NAVIGATION_NEXT);
    Press(IDC_RESET);
    ASSERT_EQ(Show(DeploymentSettingsDialog, true), NAVIGATION_RESET);
    EXPECT_EQ(FieldsOf(*manager),
              CString(L"mode 6, platform 3, name North, base North, stage 0, exit code 0, reset 00, line "));
    EXPECT_EQ(manager->m_strNetworkLogFolder, CString(L"\\\\server\\North"));
    EXPECT_EQ(CString(manager->m_strDeploymentLocation), location);
}
