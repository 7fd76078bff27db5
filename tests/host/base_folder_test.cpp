// The folder of the deployment that is built upon or modified, and that of the media.
#include "tests/host/through_host.h"

namespace {

class BaseFolderTest : public ThroughHostTest
{
protected:
    void MakeBoth()
    {
        MakeDeployment(location, L"North", DescribeTestDeployment(L"North"));
        MakeDeployment(location, L"South", DescribeTestDeployment(L"South"));
    }
};

} // namespace

TEST_F(BaseFolderTest, ANewDeploymentHasNoBase)
{
    MakeMedia(scratch + L"media\\");
    CSetupManager& manager = Open(scratch + L"media\\");
    EXPECT_EQ(host->GetBaseFolder(), CString());
    Begin(manager, Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), L"North");
    EXPECT_EQ(host->GetBaseFolder(), CString());
    EXPECT_EQ(host->GetMediaFolder(), scratch + L"media");
}

TEST_F(BaseFolderTest, TheBaseIsTheChosenDeploymentThroughEveryChangeOfTheChoice)
{
    MakeBoth();
    CSetupManager& manager = Open(location + L"North\\Image");
    EXPECT_EQ(host->GetBaseFolder(), location + L"North") << "the one that the wizard was started on";
    Begin(manager, Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT, L"South", L"East");
    EXPECT_EQ(host->GetBaseFolder(), location + L"South");
    Begin(manager, Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), L"East");
    EXPECT_EQ(host->GetBaseFolder(), CString());
    ASSERT_TRUE(manager.LoadDeploymentInfo(L"South"));
    EXPECT_EQ(host->GetBaseFolder(), CString()) << "the mode that needs it has not been entered";
    Begin(manager, Setup::SETUPMODE_MODIFY_DEPLOYMENT, L"South", L"South");
    EXPECT_EQ(host->GetBaseFolder(), location + L"South");
    manager.ReloadProductData();
    EXPECT_EQ(host->GetBaseFolder(), location + L"South");
    Begin(manager, Setup::SETUPMODE_MODIFY_DEPLOYMENT, L"North", L"North");
    EXPECT_EQ(host->GetBaseFolder(), location + L"North");
    ASSERT_TRUE(manager.LoadDeploymentInfo(L"South"));
    EXPECT_EQ(host->GetBaseFolder(), location + L"South");
    ASSERT_TRUE(manager.LoadDeploymentInfo(CString()));
    EXPECT_EQ(host->GetBaseFolder(), CString());
    ASSERT_EQ(manager.ResetSetupMode(), 0);
    EXPECT_EQ(host->GetBaseFolder(), location + L"North");
}

TEST_F(BaseFolderTest, TheMediaStayThoseThatTheWizardWasStartedOn)
{
    MakeBoth();
    for (const wchar_t* path : {L"North", L"North\\", L"North\\Image", L"North\\Image\\"}) {
        CSetupManager& manager = Open(location + path);
        EXPECT_EQ(host->GetMediaFolder(), location + L"North\\Image") << Utf8(path);
        Begin(manager, Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT, L"South", L"East");
        EXPECT_EQ(host->GetMediaFolder(), location + L"North\\Image") << Utf8(path);
    }
}

TEST_F(BaseFolderTest, ADeploymentModifiedIntoAnotherLocationIsStillTheBase)
{
    MakeBoth();
    CSetupManager& manager = Open(location + L"North");
    Begin(manager, Setup::SETUPMODE_MODIFY_DEPLOYMENT, L"North", L"North");
    manager.SetDeploymentLocation(scratch + L"elsewhere\\");
    ASSERT_TRUE(manager.SetSetupMode(Setup::SETUPMODE_MODIFY_DEPLOYMENT));
    EXPECT_EQ(manager.m_strDeploymentFolder, scratch + L"elsewhere\\North\\");
    EXPECT_EQ(host->GetBaseFolder(), location + L"North");
}

TEST_F(BaseFolderTest, ABaseOnAShareIsNamedByTheShare)
{
    MakeBoth();
    location = ShareFolder(location, L"deployments");
    if (location.IsEmpty()) {
        GTEST_SKIP() << "shares are made by a link of the prefix, which this system doesn't have";
    }
    CSetupManager& manager = Open(location + L"North");
    EXPECT_EQ(host->GetBaseFolder(), location + L"North");
    EXPECT_EQ(host->GetMediaFolder(), location + L"North\\Image");
    Begin(manager, Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT, L"South", L"East");
    EXPECT_EQ(host->GetBaseFolder(), location + L"South");
}

TEST_F(BaseFolderTest, TheMediaOfASinglePackageAreItsFolderARootIncluded)
{
    MakePackage(scratch + L"downloads\\Tool.msi");
    Open(scratch + L"downloads\\Tool.msi");
    EXPECT_EQ(host->GetMediaFolder(), scratch + L"downloads");
    const LinkedDrive drive(L"X:", scratch + L"downloads\\");
    if (!drive.IsThere()) {
        GTEST_SKIP() << "this system makes no drive for a test";
    }
    Open(L"X:\\Tool.msi");
    EXPECT_EQ(host->GetMediaFolder(), CString(L"X:\\"));
    host.reset();
}
