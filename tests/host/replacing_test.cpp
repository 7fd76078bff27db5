// Which deployment the host is about: names by folders, bases that can be used, the way back to the first stage, and what
// stands in a new deployment's place.
#include "builder/deployment_place.h"
#include "include/ui_manager.h"
#include "tests/host/folder_tree.h"
#include "tests/host/through_host.h"

namespace {

class ReplacingTest : public ThroughHostTest
{
protected:
    CSetupManager& OpenMediaFolder()
    {
        MakeMedia(scratch + L"media\\");
        return Open(scratch + L"media");
    }

    void MakeTestDeployment(const wchar_t* name)
    {
        MakeDeployment(location, name, DescribeTestDeployment(name));
    }

    // The first page's choice of a new deployment.
    void Choose(CSetupManager& manager, const CString& place, const wchar_t* name)
    {
        manager.GetDeploymentList(location);
        manager.SetDeploymentLocation(place);
        manager.SetBaseDeploymentName(L"");
        manager.SetDeploymentName(name);
        ASSERT_TRUE(manager.SetSetupMode(Setup::SETUPMODE_CREATE_DEPLOYMENT));
    }

    void ExpectRefused(const wchar_t* words)
    {
        const TargetVerdict verdict = host->JudgeTarget();
        EXPECT_EQ(verdict.state, TargetVerdict::State::Refused);
        EXPECT_GE(verdict.message.Find(words), 0) << Utf8(verdict.message);
        CSilentProgress progress;
        const BuildResult result = host->Build(progress);
        EXPECT_EQ(result.error.code, unsigned{ERROR_ALREADY_EXISTS});
        EXPECT_EQ(result.error.message, verdict.message);
    }
};

// What a page could say of the host's first stage.
std::string Describe(CSetupManager& manager)
{
    std::string text =
        Utf8(CString(manager.m_strDeploymentLocation)) + "|" + Utf8(CString(manager.m_strDeploymentName)) +
        "|" + Utf8(CString(manager.m_strBaseDeploymentName)) + "|" + std::to_string(manager.m_setupMode) +
        "|" + std::to_string(manager.m_platform) + "|" + std::to_string(manager.m_installMode) + "|" +
        std::to_string(manager.m_bNetworkLog) + "|" + Utf8(manager.m_strNetworkLogFolder) + "|" +
        std::to_string(manager.m_bSettingsOption) + "|" + std::to_string(manager.m_uiStage) + "|" +
        std::to_string(manager.m_exitCode) + "|" + std::to_string(manager.m_pUiManager->m_bResetAllowed1) +
        "|" + std::to_string(manager.m_pUiManager->m_bResetAllowed2) + "|" +
        Utf8(manager.m_strDeploymentFolder) + "|" + Utf8(CString(manager.m_strCompleteLine1)) + "|" +
        Utf8(CString(manager.m_strMediaRoot)) + "|" + Utf8(CString(manager.m_strImageSuffix));
    return text;
}

void ChangeAll(CSetupManager& manager)
{
    manager.m_installMode = manager.m_installMode == 2 ? 3 : 2;
    manager.m_bNetworkLog = !manager.m_bNetworkLog;
    manager.m_strNetworkLogFolder = L"\\\\elsewhere\\logs\\";
    manager.m_bSettingsOption = !manager.m_bSettingsOption;
    manager.m_uiStage = 4;
    manager.m_exitCode = 112;
    manager.SetMsiProperty(L"TARN_SETUP_SUCCEEDED", L"1", false);
    manager.m_pProducts->at(0)->SetProperty(L"ADDITIONALFILES_MODIFIED", L"changed");
    manager.m_pProducts->at(0)->SetMsiProperty(L"ZOLT_CHANGED", L"changed", false);
}

} // namespace

// ---- the first stage

TEST_F(ReplacingTest, ResetOnMediaReturnsToTheFirstStageWhole)
{
    CSetupManager& manager = OpenMediaFolder();
    const std::string first = Describe(manager);
    manager.SetDeploymentPlatform(Setup::PLATFORM_X86);
    Choose(manager, location, L"East");
    ChangeAll(manager);
    ASSERT_NE(Describe(manager), first);
    EXPECT_EQ(manager.ResetSetupMode(), 0);
    EXPECT_EQ(Describe(manager), first);
    EXPECT_EQ(Stored(manager, L"ZOLT_CHANGED"), CString(L"(none)"));
    EXPECT_EQ(OwnProperty(*manager.m_pProducts->at(0), L"ADDITIONALFILES_MODIFIED"), CString(L"(none)"));
    Choose(manager, location, L"East");
    Build();
    EXPECT_LT(ReadText(location + L"East\\Deployment.xml").Find(L"TARN_SETUP_SUCCEEDED"), 0);
}

TEST_F(ReplacingTest, ResetOnAnImageReturnsToThatDeploymentAndItsSettings)
{
    MakeTestDeployment(L"North");
    DeploymentFile south = DescribeTestDeployment(L"South");
    south.strNetworkLogFolder = L"\\\\south\\logs";
    MakeDeployment(location, L"South", south);
    CSetupManager& manager = Open(location + L"North");
    const std::string first = Describe(manager);
    const CString setting = OwnProperty(*manager.m_pProducts->at(0), L"ADDITIONALFILES_MODIFIED");
    Begin(manager, Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT, L"South", L"East");
    EXPECT_EQ(manager.m_strNetworkLogFolder, CString(L"\\\\south\\logs"));
    ChangeAll(manager);
    EXPECT_EQ(manager.ResetSetupMode(), 0);
    EXPECT_EQ(Describe(manager), first);
    EXPECT_EQ(OwnProperty(*manager.m_pProducts->at(0), L"ADDITIONALFILES_MODIFIED"), setting);
    EXPECT_EQ(Stored(manager, L"ZOLT_CHANGED"), CString(L"(none)"));
}

TEST_F(ReplacingTest, AResetThatFailsKeepsEveryChoice)
{
    MakeTestDeployment(L"North");
    MakeTestDeployment(L"South");
    CSetupManager& manager = Open(location + L"North");
    Begin(manager, Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT, L"South", L"East");
    ChangeAll(manager);
    const std::string chosen = Describe(manager);
    CProduct* const product = manager.m_pProducts->at(0);
    ASSERT_TRUE(MoveFileW(location + L"North", location + L"Away"));
    EXPECT_NE(manager.ResetSetupMode(), 0);
    EXPECT_EQ(Describe(manager), chosen);
    ASSERT_EQ(manager.m_pProducts->size(), 1u);
    EXPECT_EQ(manager.m_pProducts->at(0), product);
    EXPECT_EQ(Stored(manager, L"ZOLT_CHANGED"), CString(L"changed"));
}

TEST_F(ReplacingTest, AResetForgetsThatReplacingWasAllowed)
{
    MakeTestDeployment(L"North");
    CSetupManager& manager = OpenMediaFolder();
    const auto choose = [&] {
        manager.GetDeploymentList(scratch);
        manager.SetDeploymentLocation(location);
        manager.SetDeploymentName(L"North");
        EXPECT_TRUE(manager.SetSetupMode(Setup::SETUPMODE_CREATE_DEPLOYMENT));
    };
    choose();
    ASSERT_EQ(host->JudgeTarget().state, TargetVerdict::State::NeedsAnswer);
    host->AllowReplacing(host->JudgeTarget());
    EXPECT_EQ(host->JudgeTarget().state, TargetVerdict::State::MayBeReplaced);
    EXPECT_EQ(manager.ResetSetupMode(), 0);
    choose();
    EXPECT_EQ(host->JudgeTarget().state, TargetVerdict::State::NeedsAnswer);
}

TEST_F(ReplacingTest, SettingThePlatformOnlyStoresIt)
{
    CSetupManager& manager = OpenMediaFolder();
    CProduct* const product = manager.m_pProducts->at(0);
    manager.SetDeploymentPlatform(Setup::PLATFORM_X86);
    EXPECT_EQ(manager.m_platform, Setup::PLATFORM_X86);
    ASSERT_EQ(manager.m_pProducts->size(), 1u);
    EXPECT_EQ(manager.m_pProducts->at(0), product);
    EXPECT_EQ(CString(product->m_strMsiFile), CString(L"x64\\Zolt\\Zolt.msi"));
}

TEST_F(ReplacingTest, TheProgramSeesWhetherAPageAsksAboutItsEnd)
{
    CSetupManager& manager = OpenMediaFolder();
    EXPECT_TRUE(host->IsCancellingEnabled());
    manager.EnableCancelling(false);
    EXPECT_FALSE(host->IsCancellingEnabled());
    manager.EnableCancelling(true);
    EXPECT_TRUE(host->IsCancellingEnabled());
    manager.EnableCancelling(false);
    ASSERT_EQ(manager.ResetSetupMode(), 0);
    EXPECT_TRUE(host->IsCancellingEnabled()) << "the first stage could not be left any more";
}

// ---- bases

TEST_F(ReplacingTest, OnlyDeploymentsThatCanBeUsedAreListedAsBases)
{
    for (const wchar_t* name : {L"Good", L"NoImage", L"NoSetup", L"NoPackage", L"Damaged", L"Other"}) {
        MakeTestDeployment(name);
    }
    RemoveFolder(location + L"NoImage\\Image");
    ASSERT_TRUE(DeleteFileW(location + L"NoSetup\\Image\\Setup.xml"));
    ASSERT_TRUE(DeleteFileW(location + L"NoPackage\\Image\\x64\\Zolt\\Zolt.msi"));
    WriteFileBytes(location + L"Damaged\\Deployment.xml", "<Deployment");
    DeploymentFile other = DescribeTestDeployment(L"Other");
    other.strSetupCode = L"{99999999-2222-3333-4444-555555555555}";
    MakeDeployment(location, L"Other", other);
    CSetupManager& manager = Open(location + L"Good");
    const std::vector<CString> list = *manager.GetDeploymentList(location);
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(manager.GetDeploymentName(list[0]), CString(L"Good"));
    const CString log = ReadText(work + L"Setup.log");
    for (const wchar_t* name : {L"NoImage", L"NoSetup", L"NoPackage", L"Damaged", L"Other"}) {
        EXPECT_GE(log.Find(name), 0) << Utf8(name) << " isn't in the log\n" << Utf8(log);
    }
}

TEST_F(ReplacingTest, MediaThatAreNoImageListEveryReadableDeployment)
{
    MakeTestDeployment(L"NoImage");
    RemoveFolder(location + L"NoImage\\Image");
    EXPECT_EQ(OpenMediaFolder().GetDeploymentList(location)->size(), 1u);
}

// The page was left without a button, and without a word.
TEST_F(ReplacingTest, AModeThatCannotBeEnteredClosesThePageAndSaysWhy)
{
    MakeTestDeployment(L"North");
    MakeTestDeployment(L"South");
    CSetupManager& manager = Open(location + L"North");
    manager.GetDeploymentList(location);
    manager.SetBaseDeploymentName(L"South");
    RemoveFolder(location + L"South\\Image");
    const HWND page = CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPED, 0, 0, 10, 10, nullptr, nullptr,
                                      GetModuleHandleW(nullptr), nullptr);
    ASSERT_TRUE(page);
    manager.m_hCurrentPage = page;
    EXPECT_FALSE(manager.SetSetupMode(Setup::SETUPMODE_MODIFY_DEPLOYMENT));
    EXPECT_TRUE(IsWindow(page)) << "it went under the feet of its own handler";
    for (MSG message; IsWindow(page) && GetMessageW(&message, nullptr, 0, 0) > 0;) {
        DispatchMessageW(&message);
    }
    EXPECT_FALSE(IsWindow(page));
    const CString why = host->ReadModeFailure();
    EXPECT_GE(why.Find(L"\"South\" lacks its image folder"), 0) << Utf8(why);
    EXPECT_EQ(host->ReadModeFailure(), CString()) << "it is said once";
    EXPECT_EQ(manager.ResetSetupMode(), 0);
    EXPECT_EQ(manager.m_pProducts->size(), 1u);
}

TEST_F(ReplacingTest, ABaseThatWasChangedSinceItWasLoadedIsLoadedAnew)
{
    MakeTestDeployment(L"North");
    CSetupManager& manager = Open(location + L"North");
    DeploymentFile changed = DescribeTestDeployment(L"North");
    changed.strNetworkLogFolder = L"\\\\changed\\by another\\wizard";
    WriteText(location + L"North\\Deployment.xml", WriteDeploymentFile(changed));
    ASSERT_TRUE(manager.SetSetupMode(Setup::SETUPMODE_MODIFY_DEPLOYMENT));
    EXPECT_EQ(manager.m_strNetworkLogFolder, changed.strNetworkLogFolder);
}

// ---- what stands in the place

TEST_F(ReplacingTest, AFreePlaceIsFree)
{
    CSetupManager& manager = OpenMediaFolder();
    Choose(manager, location, L"East");
    EXPECT_EQ(host->JudgeTarget().state, TargetVerdict::State::Free);
    Choose(manager, location + L"not\\yet there", L"East");
    EXPECT_EQ(host->JudgeTarget().state, TargetVerdict::State::Free);
}

TEST_F(ReplacingTest, AFileInThePlaceIsRefused)
{
    WriteFileBytes(location + L"East", "a file");
    Choose(OpenMediaFolder(), location, L"East");
    ExpectRefused(L"East\" is a file.");
}

TEST_F(ReplacingTest, AFolderWithoutADeploymentIsRefusedWithTheListedNameToo)
{
    MakeTestDeployment(L"East");
    CSetupManager& manager = OpenMediaFolder();
    Choose(manager, location, L"East");
    ASSERT_EQ(host->JudgeTarget().state, TargetVerdict::State::MayBeReplaced);
    RemoveFolder(location + L"East");
    WriteFileBytes(location + L"East\\thesis.doc", "years of work");
    ExpectRefused(L"contains no deployment");
}

TEST_F(ReplacingTest, ALocationInsideADeploymentIsRefusedHoweverDeep)
{
    MakeTestDeployment(L"Outer");
    CSetupManager& manager = OpenMediaFolder();
    for (const wchar_t* below : {L"Outer", L"Outer\\Image", L"Outer\\Image\\x64\\not yet there"}) {
        Choose(manager, location + below, L"Inner");
        ExpectRefused(L"lies inside one");
        EXPECT_TRUE(host->JudgeTarget().bLocationRefused);
        EXPECT_EQ(manager.CheckForDeploymentLocation(location + below), Setup::DEPLOYMENTLOCATION_REFUSED);
    }
}

TEST_F(ReplacingTest, NamesThatNoFolderCanHaveAreRefusedBeforeTheBuild)
{
    CSetupManager& manager = OpenMediaFolder();
    for (const wchar_t* name : {L"CON", L"Office.", L"tab\there", L".Office.build-lock"}) {
        Choose(manager, location, name);
        EXPECT_EQ(host->JudgeTarget().state, TargetVerdict::State::Refused) << Utf8(name);
    }
}

TEST_F(ReplacingTest, ADeploymentThatChangedSinceItWasListedIsAskedAbout)
{
    MakeTestDeployment(L"East");
    CSetupManager& manager = OpenMediaFolder();
    Choose(manager, location, L"East");
    ASSERT_EQ(host->JudgeTarget().state, TargetVerdict::State::MayBeReplaced);
    WriteText(location + L"East\\Deployment.xml", WriteDeploymentFile(DescribeTestDeployment(L"By another")));
    EXPECT_EQ(host->JudgeTarget().state, TargetVerdict::State::NeedsAnswer);
    CSilentProgress progress;
    const BuildResult result = host->Build(progress);
    EXPECT_EQ(result.error.code, unsigned{ERROR_ALREADY_EXISTS});
    EXPECT_GE(result.error.message.Find(L"has not been confirmed"), 0) << Utf8(result.error.message);
}

TEST_F(ReplacingTest, ThePermissionGoesWithTheDeploymentItWasGivenFor)
{
    MakeTestDeployment(L"East");
    CSetupManager& manager = OpenMediaFolder();
    manager.GetDeploymentList(scratch);
    manager.SetDeploymentLocation(location);
    manager.SetDeploymentName(L"East");
    ASSERT_TRUE(manager.SetSetupMode(Setup::SETUPMODE_CREATE_DEPLOYMENT));
    host->AllowReplacing(host->JudgeTarget());
    ASSERT_EQ(host->JudgeTarget().state, TargetVerdict::State::MayBeReplaced);
    ASSERT_TRUE(MoveFileW(location + L"East", location + L"Elsewhere"));
    MakeTestDeployment(L"East");
    EXPECT_EQ(host->JudgeTarget().state, TargetVerdict::State::NeedsAnswer);
}

TEST_F(ReplacingTest, TheQuestionKnowsProductDateAndWhatIsNotTheBuilds)
{
    CSetupManager& manager = OpenMediaFolder();
    Choose(manager, location, L"East");
    Build();
    WriteFileBytes(location + L"East\\Image\\own.txt", "own");
    WriteFileBytes(location + L"East\\Install.cmd", "changed");
    manager.GetDeploymentList(scratch);
    const TargetVerdict verdict = host->JudgeTarget();
    ASSERT_EQ(verdict.state, TargetVerdict::State::NeedsAnswer);
    EXPECT_EQ(verdict.strFolder, location + L"East");
    EXPECT_GE(verdict.strProduct.Find(L"Zolt"), 0) << Utf8(verdict.strProduct);
    EXPECT_NE(verdict.builtAt.dwHighDateTime, 0u);
    EXPECT_EQ(verdict.ownFiles, (std::vector<CString>{L"Image\\own.txt", L"Install.cmd"}));
    EXPECT_FALSE(verdict.bKeptWhole);
    ASSERT_TRUE(DeleteFileW(location + L"East\\Manifest.txt"));
    EXPECT_TRUE(host->JudgeTarget().bKeptWhole);
}

TEST_F(ReplacingTest, ModifyingInAnotherPlaceAsksAboutTheDeploymentThatIsThere)
{
    MakeTestDeployment(L"North");
    const CString elsewhere = scratch + L"elsewhere\\";
    MakeDeployment(elsewhere, L"North", DescribeTestDeployment(L"North"));
    CSetupManager& manager = Open(location + L"North");
    Begin(manager, Setup::SETUPMODE_MODIFY_DEPLOYMENT, L"North", L"North");
    EXPECT_EQ(host->JudgeTarget().state, TargetVerdict::State::MayBeReplaced);
    manager.SetDeploymentLocation(elsewhere);
    EXPECT_EQ(host->JudgeTarget().state, TargetVerdict::State::NeedsAnswer);
}

// The page's hidden name was that of an earlier choice, so that another folder came out of the deployment selected.
TEST_F(ReplacingTest, ModifyingTakesTheNameOfTheDeploymentThatIsSelected)
{
    MakeTestDeployment(L"North");
    MakeTestDeployment(L"South");
    CSetupManager& manager = Open(location + L"North");
    Begin(manager, Setup::SETUPMODE_MODIFY_DEPLOYMENT, L"South", L"North");
    EXPECT_EQ(CString(manager.m_strDeploymentName), CString(L"South"));
    EXPECT_EQ(manager.m_strDeploymentFolder, location + L"South\\");
}

TEST_F(ReplacingTest, TheDeploymentThatIsModifiedIsListedInAnotherLocationToo)
{
    MakeTestDeployment(L"North");
    const CString elsewhere = scratch + L"elsewhere\\";
    MakeDeployment(elsewhere, L"Lab", DescribeTestDeployment(L"Lab"));
    CSetupManager& manager = Open(location + L"North");
    const std::vector<CString> list = *manager.GetDeploymentList(elsewhere);
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(manager.GetDeploymentName(list[0]), CString(L"Lab"));
    EXPECT_EQ(manager.GetDeploymentName(list[1]), CString(L"North"));
    manager.SetDeploymentLocation(elsewhere);
    ASSERT_TRUE(manager.SetSetupMode(Setup::SETUPMODE_MODIFY_DEPLOYMENT));
    EXPECT_EQ(manager.m_strDeploymentFolder, elsewhere + L"North\\");
    EXPECT_EQ(host->JudgeTarget().state, TargetVerdict::State::Free);
}

// The page listed the declined location then, and Next replaced the deployment there without a question.
TEST_F(ReplacingTest, DecliningReturnsToTheLocationOfTheDeploymentThatIsModified)
{
    MakeTestDeployment(L"North");
    const CString elsewhere = scratch + L"elsewhere\\";
    MakeDeployment(elsewhere, L"North", DescribeTestDeployment(L"North"));
    CSetupManager& manager = Open(location + L"North");
    Begin(manager, Setup::SETUPMODE_MODIFY_DEPLOYMENT, L"North", L"North");
    manager.SetDeploymentLocation(elsewhere);
    ASSERT_EQ(host->JudgeTarget().state, TargetVerdict::State::NeedsAnswer);
    host->DeclineReplacing();
    EXPECT_EQ(CString(manager.m_strDeploymentLocation), location);
}

TEST_F(ReplacingTest, ABaseThatChangesBehindTheFirstPageIsNotBuiltOn)
{
    MakeTestDeployment(L"North");
    for (const auto mode : {Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT, Setup::SETUPMODE_MODIFY_DEPLOYMENT}) {
        CSetupManager& manager = Open(location + L"North");
        Begin(manager, mode, L"North", mode == Setup::SETUPMODE_MODIFY_DEPLOYMENT ? L"North" : L"East");
        DeploymentFile changed = DescribeTestDeployment(L"North");
        changed.strNetworkLogFolder += CString(L'x', 1 + mode);
        WriteText(location + L"North\\Deployment.xml", WriteDeploymentFile(changed));
        ExpectRefused(L"has changed since the wizard read it");
    }
}

TEST_F(ReplacingTest, ALinkInThePlaceIsRefused)
{
    MakeTestDeployment(L"Real");
    const FolderLink link(location + L"Link", location + L"Real");
    if (!link.IsThere()) {
        GTEST_SKIP() << "this system makes no link for a test";
    }
    Choose(OpenMediaFolder(), location, L"Link");
    ExpectRefused(L"is a link to another folder");
}

TEST_F(ReplacingTest, ALocationInsideTheMediaIsRefusedWhereverItLies)
{
    CSetupManager& manager = OpenMediaFolder();
    for (const wchar_t* below : {L"media", L"media\\x64", L"media\\new"}) {
        Choose(manager, scratch + below, L"East");
        ExpectRefused(L"lies inside the media");
    }
}

TEST_F(ReplacingTest, AFolderAboveThatCannotBeLookedAtRefusesNoLocation)
{
    EXPECT_EQ(DeploymentAround(L"\\\\NOSUCHSERVER\\share\\deployments"), CString());
    EXPECT_EQ(DeploymentAround(L"Q:\\gone\\deployments"), CString());
}

TEST_F(ReplacingTest, APathByTheShortNameGivesTheDeploymentItsOwnName)
{
    MakeTestDeployment(L"Office of the north");
    wchar_t path[MAX_PATH] = {};
    const DWORD length = GetShortPathNameW(location + L"Office of the north", path, MAX_PATH);
    ASSERT_GT(length, 0u);
    CSetupManager& manager = Open(CString(path, static_cast<int>(length)));
    EXPECT_EQ(CString(manager.m_strDeploymentName), CString(L"Office of the north"));
    CSetupManager& upper = Open(CString(location + L"Office of the north").MakeUpper());
    EXPECT_EQ(CString(upper.m_strDeploymentName), CString(L"Office of the north"));
}
