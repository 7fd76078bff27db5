// Deployments on disk: lists, locations, loading and modes.
#include "host/languages.h"
#include "include/product.h"
#include "tests/host/package_maker.h"

#include <gtest/gtest.h>
#include <msiquery.h>

namespace {

class DeploymentsTest : public testing::Test
{
protected:
    void TearDown() override
    {
        host.reset();
        EXPECT_EQ(MsiCloseAllHandles(), 0u) << "installer handles were left open";
    }

    CSetupManager& Open(const CString& path)
    {
        host = OpenHost(path, work);
        return host->GetSetupManager();
    }

    CSetupManager& OpenMediaFolder()
    {
        MakeMedia(scratch + L"media\\");
        return Open(scratch + L"media");
    }

    CString Log()
    {
        std::string bytes;
        EXPECT_EQ(ReadWholeFile(work + L"Setup.log", 1u << 20, bytes), 0u);
        return TextFromUtf8(bytes.data(), bytes.size());
    }

    ScratchFolder work{L"work"};
    ScratchFolder scratch{L"deploy \u00FC"};
    CString location = scratch + L"shared\\";
    HostOwner host;
};

CString Stored(CProduct& product, const wchar_t* name)
{
    wchar_t buffer[300] = {};
    int size = 300;
    return product.GetMsiProperty(name, buffer, &size) ? CString(buffer) : CString(L"(none)");
}

void ChangeImage(const CString& package, const wchar_t* value)
{
    CInstallerHandle database;
    ASSERT_EQ(MsiOpenDatabaseW(package, MSIDBOPEN_TRANSACT, database.put()), 0u);
    CString statement;
    statement.Format(L"INSERT INTO `Property` (`Property`,`Value`) VALUES ('ZOLT_CHANGED','%s')", value);
    ASSERT_EQ(RunSql(database.get(), statement), 0u);
    ASSERT_EQ(MsiDatabaseCommit(database.get()), 0u);
}

} // namespace

TEST_F(DeploymentsTest, ADamagedDeploymentHidesNoWholeOne)
{
    MakeDeployment(location, L"North", DescribeTestDeployment(L"North"));
    MakeDeployment(location, L"South", DescribeTestDeployment(L"An earlier name"));
    WriteFileBytes(location + L"Broken\\Deployment.xml", "<Deployment version=\"1\"");
    WriteFileBytes(location + L".North.staging-0123abcd\\Deployment.xml", "<Deployment/>");
    CSetupManager& manager = OpenMediaFolder();
    const std::vector<CString>& list = *manager.GetDeploymentList(location);
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(manager.GetDeploymentName(list[0]), CString(L"North"));
    EXPECT_EQ(manager.GetDeploymentName(list[1]), CString(L"South"));
    EXPECT_EQ(manager.GetSetupCode(list[0]), CString(SETUP_CODE));
    EXPECT_GE(Log().Find(L"Broken\\Deployment.xml"), 0) << Utf8(Log());
    EXPECT_LT(Log().Find(L".staging-"), 0) << Utf8(Log());
}

TEST_F(DeploymentsTest, AMissingLocationGivesAnEmptyList)
{
    EXPECT_TRUE(OpenMediaFolder().GetDeploymentList(scratch + L"none")->empty());
    EXPECT_TRUE(host->GetSetupManager().GetDeploymentList(L"")->empty());
}

TEST_F(DeploymentsTest, LocationsAreDistinguished)
{
    MakeDeployment(location, L"North", DescribeTestDeployment(L"North"));
    CSetupManager& manager = OpenMediaFolder();
    ASSERT_EQ(MakeFolders(scratch + L"empty"), 0u);
    WriteFileBytes(scratch + L"other\\file.txt", "x");
    EXPECT_EQ(manager.CheckForDeploymentLocation(scratch + L"empty"), Setup::DEPLOYMENTLOCATION_EMPTY);
    EXPECT_EQ(manager.CheckForDeploymentLocation(location), Setup::DEPLOYMENTLOCATION_HAS_DEPLOYMENTS);
    EXPECT_EQ(manager.CheckForDeploymentLocation(scratch + L"other"),
              Setup::DEPLOYMENTLOCATION_HAS_OTHER_FILES);
    EXPECT_EQ(manager.CheckForDeploymentLocation(scratch + L"other\\file.txt"),
              Setup::DEPLOYMENTLOCATION_REFUSED);
    EXPECT_EQ(manager.CheckForDeploymentLocation(scratch + L"none"), Setup::DEPLOYMENTLOCATION_REFUSED);
    EXPECT_EQ(manager.CheckForDeploymentLocation(location + L"North"), Setup::DEPLOYMENTLOCATION_REFUSED);
    EXPECT_EQ(manager.CheckForDeploymentLocation(scratch + L"media\\x64"), Setup::DEPLOYMENTLOCATION_REFUSED);
    EXPECT_EQ(manager.CheckForDeploymentLocation(L""), Setup::DEPLOYMENTLOCATION_REFUSED);
}

TEST_F(DeploymentsTest, TheImageOfADeploymentOpensWithItsSettings)
{
    MakeDeployment(location, L"North", DescribeTestDeployment(L"North"));
    ChangeImage(location + L"North\\Image\\x64\\Zolt\\Zolt.msi", L"north");
    for (const wchar_t* media : {L"North", L"North\\Image"}) {
        CSetupManager& manager = Open(location + media);
        EXPECT_TRUE(manager.m_bHasDeployments);
        EXPECT_EQ(CString(manager.m_strDeploymentLocation), location);
        EXPECT_EQ(CString(manager.m_strDeploymentName), CString(L"North"));
        EXPECT_EQ(manager.m_installMode, 3);
        EXPECT_EQ(manager.m_strNetworkLogFolder, CString(L"\\\\server\\logs"));
        CProduct& product = *manager.m_pProducts->at(0);
        EXPECT_EQ(OwnProperty(product, L"ADDITIONALFILES_MODIFIED"), CString(L"1"));
        EXPECT_EQ(Stored(product, L"ZOLT_CHANGED"), CString(L"north"));
        EXPECT_EQ(product.GetMsiPatchState(), Setup::PATCHSTATE_MERGED);
        host.reset();
    }
}

TEST_F(DeploymentsTest, AnotherBaseBringsItsOwnDatabaseThroughTheStepsOfTheBeginPage)
{
    MakeDeployment(location, L"North", DescribeTestDeployment(L"North"));
    DeploymentFile south = DescribeTestDeployment(L"South");
    south.installMode = 2;
    south.products[0].properties[0].value = L"south";
    MakeDeployment(location, L"South", south);
    ChangeImage(location + L"South\\Image\\x64\\Zolt\\Zolt.msi", L"south");
    CSetupManager& manager = Open(location + L"North");
    EXPECT_EQ(manager.GetDeploymentList(location)->size(), 2u);
    manager.SetBaseDeploymentName(L"South");
    manager.SetDeploymentName(L"East");
    manager.ReloadProductData();
    EXPECT_TRUE(manager.LoadDeploymentInfo(L"South"));
    manager.DeleteProductList();
    EXPECT_TRUE(CLangMgr::Instance().Init(manager.m_pConfigReader));
    CLangMgr::Instance().Reset();
    ASSERT_TRUE(manager.SetSetupMode(Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT));
    ASSERT_EQ(manager.m_pProducts->size(), 1u);
    EXPECT_EQ(Stored(*manager.m_pProducts->at(0), L"ZOLT_CHANGED"), CString(L"south"));
    EXPECT_EQ(OwnProperty(*manager.m_pProducts->at(0), L"ADDITIONALFILES_MODIFIED"), CString(L"south"));
    EXPECT_EQ(manager.m_installMode, 2);
    EXPECT_EQ(manager.m_strDeploymentFolder, location + L"East\\");
    EXPECT_EQ(CLangMgr::Instance().GetDeploymentLanguage(nullptr), CString(L"de-DE"));
}

TEST_F(DeploymentsTest, AModeWhoseBaseIsGoneIsRefusedWithAReason)
{
    MakeDeployment(location, L"North", DescribeTestDeployment(L"North"));
    MakeDeployment(location, L"South", DescribeTestDeployment(L"South"));
    CSetupManager& manager = Open(location + L"North");
    manager.SetBaseDeploymentName(L"South");
    RemoveFolder(location + L"South");
    EXPECT_FALSE(manager.LoadDeploymentInfo(L"South"));
    EXPECT_FALSE(manager.SetSetupMode(Setup::SETUPMODE_MODIFY_DEPLOYMENT));
    EXPECT_GE(Log().Find(L"\"South\" is no longer in"), 0) << Utf8(Log());
}

TEST_F(DeploymentsTest, ADeploymentOfAnotherProductIsNoBase)
{
    MakeDeployment(location, L"North", DescribeTestDeployment(L"North"));
    DeploymentFile other = DescribeTestDeployment(L"Other");
    other.strSetupCode = L"{99999999-2222-3333-4444-555555555555}";
    MakeDeployment(location, L"Other", other);
    CSetupManager& manager = Open(location + L"North");
    EXPECT_EQ(manager.GetDeploymentList(location)->size(), 1u);
    EXPECT_GE(Log().Find(L"belongs to another product"), 0) << Utf8(Log());
    EXPECT_FALSE(manager.LoadDeploymentInfo(L"Other"));
}

TEST_F(DeploymentsTest, ResettingDropsWhatThePagesChanged)
{
    CSetupManager& manager = OpenMediaFolder();
    manager.m_pProducts->at(0)->SetMsiProperty(L"ZOLT_CHANGED", L"1", false);
    EXPECT_EQ(manager.ResetSetupMode(), 0);
    EXPECT_EQ(Stored(*manager.m_pProducts->at(0), L"ZOLT_CHANGED"), CString(L"(none)"));
}

// The page stays then, and its next button wrote to a product that was gone.
TEST_F(DeploymentsTest, AResetThatFailsLeavesThePageItsProduct)
{
    CSetupManager& manager = OpenMediaFolder();
    CProduct* product = manager.m_pProducts->at(0);
    ASSERT_TRUE(product->SetMsiProperty(L"ZOLT_CHANGED", L"1", false));
    const CString package = CString(manager.m_strMediaRoot) + product->m_strMsiFile;
    ASSERT_TRUE(MoveFileW(package, package + L".away"));

    EXPECT_NE(manager.ResetSetupMode(), 0);
    ASSERT_EQ(manager.m_pProducts->size(), 1u);
    ASSERT_EQ(manager.m_pProducts->at(0), product);
    EXPECT_EQ(Stored(*product, L"ZOLT_CHANGED"), CString(L"1"));

    ASSERT_TRUE(MoveFileW(package + L".away", package));
    EXPECT_EQ(manager.ResetSetupMode(), 0);
    EXPECT_EQ(Stored(*manager.m_pProducts->at(0), L"ZOLT_CHANGED"), CString(L"(none)"));
}

TEST_F(DeploymentsTest, TheMediaFileMeasuresTheLongestPathOfTheImage)
{
    WriteFileBytes(scratch + L"media\\x64\\Zolt\\a folder\\the longest name of all files.txt", "x");
    CSetupManager& manager = OpenMediaFolder();
    const CString rest =
        CString(manager.m_strMediaFile).Mid(CString(manager.m_strResourceFolder).GetLength());
    EXPECT_EQ(rest, CString(L"x64\\Zolt\\a folder\\the longest name of all files.txt"));
    EXPECT_EQ(CString(manager.m_strImageSuffix), CString(L"x64"));
}

TEST_F(DeploymentsTest, LanguagesFallBackToTheirKinAndThenToEnglish)
{
    for (const wchar_t* folder : {L"de-DE", L"en-US"}) {
        ASSERT_EQ(MakeFolders(work + L"program\\Languages\\" + folder), 0u);
    }
    CHostLangMgr& languages = CHostLangMgr::Object();
    for (const auto& [asked, found] :
         {std::pair{L"de-DE", L"de-DE"}, {L"de-AT", L"de-DE"}, {L"fr-FR", L"en-US"}}) {
        languages.Choose(work + L"program\\", asked);
        EXPECT_EQ(languages.GetWizCoreLanguage(), CString(found)) << Utf8(asked);
        EXPECT_EQ(languages.GetWizTextPath(), work + L"program\\Languages\\" + found + L"\\");
    }
    EXPECT_EQ(languages.LocaleNameToLANGID(L"en-US"), 0x409);
    EXPECT_EQ(languages.LocaleNameToLANGID(L"no such name"), 0);
    EXPECT_FALSE(languages.Init(nullptr));
}

TEST_F(DeploymentsTest, TheSetupsOwnPropertiesAreLogged)
{
    CSetupManager& manager = OpenMediaFolder();
    manager.SetMsiProperty(L"TARN_SETUP_SUCCEEDED", L"1", false);
    EXPECT_GE(Log().Find(L"TARN_SETUP_SUCCEEDED = \"1\""), 0) << Utf8(Log());
}

TEST_F(DeploymentsTest, AValueOfTwoLinesForgesNoLineOfTheLog)
{
    CSetupManager& manager = OpenMediaFolder();
    manager.SetMsiProperty(L"NOTE", L"one\r\ntwo", false);
    EXPECT_GE(Log().Find(L"one<U+000D><U+000A>two"), 0) << Utf8(Log());
}
