// The pages of a package that comes without a description.
#include "include/ui_manager.h"
#include "online/notice_settings.h"
#include "online/resource_settings.h"
#include "tests/host/package_maker.h"

#include <gtest/gtest.h>
#include <msiquery.h>

#include <algorithm>
#include <set>

namespace {

class PackagePagesTest : public testing::Test
{
protected:
    // A package of another maker's, changed by statements.
    void Open(const std::vector<CString>& statements)
    {
        host.reset();
        const CString path = scratch + L"Someone's Tool.msi";
        DeleteFileW(path);
        MakePackage(path);
        {
            CInstallerHandle database;
            ASSERT_EQ(MsiOpenDatabaseW(path, MSIDBOPEN_TRANSACT, database.put()), 0u);
            for (const CString& statement : statements) {
                ASSERT_EQ(RunSql(database.get(), statement), 0u) << Utf8(statement);
            }
            ASSERT_EQ(MsiDatabaseCommit(database.get()), 0u);
        }
        host = OpenHost(path, work);
    }

    // Without the ending that all have.
    std::vector<CString> Pages() const
    {
        std::vector<CString> pages;
        for (const FlowPage& page : host->GetFlow()) {
            EXPECT_EQ(page.strName.Right(6), L"Dialog");
            pages.push_back(page.strName.Left(page.strName.GetLength() - 6));
        }
        return pages;
    }

    bool HasPage(const wchar_t* page) const
    {
        const std::vector<CString> pages = Pages();
        return std::count(pages.begin(), pages.end(), CString(page)) == 1;
    }

    static CString PropertyRow(const CString& name, const CString& value = L"1")
    {
        return L"INSERT INTO `Property` (`Property`,`Value`) VALUES ('" + name + L"','" + value + L"')";
    }

    ScratchFolder work{L"work"};
    ScratchFolder scratch{L"package"};
    HostOwner host;
};

// The properties that a page stores, but those that are its own memory.
class StoredNames final : public IPropertyStore
{
public:
    [[nodiscard]] CString Read(const wchar_t*) override { return CString(); }
    void Write(const wchar_t* name, const CString&) override
    {
        if (CString(name).Find(L"_TEMP_") < 0) {
            names.insert(name);
        }
    }
    std::set<CString> names;
};

const wchar_t g_createRegistry[] =
    L"CREATE TABLE `Registry` (`Registry` CHAR(72) NOT NULL, `Root` SHORT NOT NULL, `Key` CHAR(255) NOT NULL "
    L"LOCALIZABLE, `Name` CHAR(255) LOCALIZABLE, `Value` CHAR(0) LOCALIZABLE, `Component_` CHAR(72) NOT NULL "
    L"PRIMARY KEY `Registry`)";

} // namespace

TEST_F(PackagePagesTest, APackageOfAnotherMakerHasThePagesThatMeanSomethingForIt)
{
    Open({});
    EXPECT_EQ(Pages(), (std::vector<CString>{L"BeginDeployment", L"DeploymentSettings", L"AddAdditionalFiles",
                                             L"ServicePack", L"DeploymentComplete", L"DeploymentFailed"}));
    for (const FlowPage& page : host->GetFlow()) {
        EXPECT_EQ(page.strHelpFile, page.strName.Left(page.strName.GetLength() - 6) + L".html");
    }
}

TEST_F(PackagePagesTest, EachPropertyThatAnOnlinePageStoresBringsThatPageAlone)
{
    StoredNames notices;
    StoreNoticeSettings(notices, {});
    StoredNames resources;
    StoreResourceSettings(resources, {});
    EXPECT_EQ(notices.names.size(), 9u);
    EXPECT_EQ(resources.names.size(), 6u);
    for (const CString& name : notices.names) {
        Open({PropertyRow(name)});
        EXPECT_TRUE(HasPage(L"NoticeDeskFeedBoard")) << Utf8(name);
        EXPECT_FALSE(HasPage(L"OnlineResources")) << Utf8(name);
    }
    for (const CString& name : resources.names) {
        Open({PropertyRow(name)});
        EXPECT_TRUE(HasPage(L"OnlineResources")) << Utf8(name);
        EXPECT_FALSE(HasPage(L"NoticeDeskFeedBoard")) << Utf8(name);
    }
}

TEST_F(PackagePagesTest, APropertyThatATextOrAConditionNamesIsKnown)
{
    const CString columns = L" (`Registry`,`Root`,`Key`,`Name`,`Value`,`Component_`) VALUES ";
    for (const CString& statement :
         {CString(L"INSERT INTO `Registry`") + columns +
              L"('R',2,'Software\\Tool','Bay','[ZOLT_PARTSBAY_ENABLE]','C')",
          CString(L"INSERT INTO `Registry`") + columns +
              L"('R',2,'Software\\[ZOLT_PARTSBAY_ENABLE]','Bay','1','C')",
          CString(L"INSERT INTO `LaunchCondition` (`Condition`,`Description`) VALUES "
                  L"('NOT ZOLT_PARTSBAY_ENABLE=\"#0\"','No')"),
          CString(L"INSERT INTO `CustomAction` (`Action`,`Type`,`Source`,`Target`) VALUES "
                  L"('Set',51,'ZOLT_PARTSBAY_ENABLE','#1')"),
          PropertyRow(L"SecureCustomProperties", L"OTHER;ZOLT_PARTSBAY_ENABLE")}) {
        Open({g_createRegistry,
              L"CREATE TABLE `LaunchCondition` (`Condition` CHAR(255) NOT NULL, `Description` CHAR(255) NOT "
              L"NULL "
              L"LOCALIZABLE PRIMARY KEY `Condition`)",
              L"CREATE TABLE `CustomAction` (`Action` CHAR(72) NOT NULL, `Type` SHORT NOT NULL, `Source` "
              L"CHAR(72), "
              L"`Target` CHAR(255) PRIMARY KEY `Action`)",
              statement});
        EXPECT_TRUE(HasPage(L"OnlineResources")) << Utf8(statement);
    }
}

TEST_F(PackagePagesTest, ANameThatOnlyContainsThatOfAPropertyIsAnother)
{
    Open({PropertyRow(L"MY_ZOLT_PARTSBAY_ENABLE"), PropertyRow(L"ZOLT_PARTSBAY_ENABLED"),
          PropertyRow(L"zolt_partsbay_enable")});
    EXPECT_FALSE(HasPage(L"OnlineResources"));
}

TEST_F(PackagePagesTest, PathsAndWorkstationSettingsComeWithTheirProperties)
{
    Open({PropertyRow(L"ZOLTProfile_Fonts")});
    EXPECT_TRUE(HasPage(L"PathCustomization"));
    EXPECT_FALSE(HasPage(L"WorkstationSetting"));
    Open({PropertyRow(L"TARN_DESKTOPSHORTCUT_1")});
    EXPECT_FALSE(HasPage(L"PathCustomization"));
    EXPECT_TRUE(HasPage(L"WorkstationSetting"));
}

TEST_F(PackagePagesTest, NoPackageHasTheContactPageOfAnotherMakersProduct)
{
    Open({PropertyRow(L"ZOLT_PARTSBAY_ENABLE"), PropertyRow(L"ZOLT_RSS_FEEDS_ENABLE"),
          PropertyRow(L"ZOLTProfile_Fonts"), PropertyRow(L"ZOLT_SHORTCUT_TEMPLATE", L";;;;;;;;;;;")});
    EXPECT_EQ(Pages().size(), 10u);
    EXPECT_FALSE(HasPage(L"ProductContact"));
}

TEST_F(PackagePagesTest, TitlesAndTheStepAreThePackagesName)
{
    Open({});
    const CSetupManager& manager = host->GetSetupManager();
    EXPECT_EQ(CString(manager.m_strProductName), L"Zolt Test");
    EXPECT_EQ(CString(manager.m_pUiManager->m_strStepArgument), L"Zolt Test");
}

TEST_F(PackagePagesTest, APackageWithoutANameIsCalledByItsFile)
{
    Open({L"DELETE FROM `Property` WHERE `Property`='ProductName'"});
    const CSetupManager& manager = host->GetSetupManager();
    EXPECT_EQ(CString(manager.m_strProductName), L"Someone's Tool");
    EXPECT_EQ(CString(manager.m_pUiManager->m_strStepArgument), L"Someone's Tool");
}
