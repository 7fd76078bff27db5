// Opening media, working copies, properties and paths: what the pages ask of the host before anything is built.
#include "builder/deployment_place.h"
#include "include/product.h"
#include "include/ui_manager.h"
#include "installer/database.h"
#include "tests/host/package_maker.h"

#include <gtest/gtest.h>
#include <msiquery.h>

namespace {

class MediaTest : public testing::Test
{
protected:
    void TearDown() override
    {
        host.reset();
        EXPECT_EQ(MsiCloseAllHandles(), 0u) << "installer handles were left open";
    }

    CProduct& Open(const CString& path)
    {
        media = path;
        host = OpenHost(path, work);
        return *host->GetSetupManager().m_pProducts->at(0);
    }

    CProduct& OpenMediaFolder()
    {
        MakeMedia(scratch);
        return Open(scratch);
    }

    // For 64-bit workstations alone.
    void AddVolt() const
    {
        constexpr const wchar_t* CODE = L"{11111111-2222-3333-4444-555555555558}";
        PackageForm form;
        form.properties = {{L"ProductCode", CODE}};
        MakePackage(scratch + L"x64\\Volt\\Volt.msi", form);
        Media made;
        ASSERT_EQ(OpenMedia(scratch, made).code, 0u);
        ProductDescription volt;
        volt.strName = L"Volt & Co.";
        volt.strFolder = L"Volt";
        volt.packages = {{3, L"Volt.msi", CODE, L"27.0.0"}};
        made.description.products.push_back(volt);
        WriteText(scratch + SETUP_FILE, WriteSetupDescription(made.description));
    }

    CString Step() const { return host->GetSetupManager().m_pUiManager->m_strStepArgument; }

    OperationError Refusal(const CString& path)
    {
        OperationError error;
        const HostOwner opened(OpenSetupHost(OptionsFor(path, work), error));
        EXPECT_FALSE(opened) << "the media was opened";
        return error;
    }

    ScratchFolder work{L"work"};
    ScratchFolder scratch{L"m\u00E9dia \u4E2D"};
    CString media;
    HostOwner host;
};

CString TargetPath(InstallerHandle database, const wchar_t* key)
{
    wchar_t buffer[300] = {};
    unsigned long size = 300;
    EXPECT_EQ(WizGetTargetPathW(database, key, buffer, &size), 0u) << Utf8(key);
    return buffer;
}

CString MsiProperty(CProduct& product, const wchar_t* name)
{
    wchar_t buffer[300] = {};
    int size = 300;
    return product.GetMsiProperty(name, buffer, &size) ? CString(buffer) : CString(L"(none)");
}

} // namespace

TEST_F(MediaTest, AMediaFolderGivesItsProductsAndPages)
{
    CProduct& product = OpenMediaFolder();
    EXPECT_EQ(CString(product.m_strName), CString(L"Zolt 2027"));
    EXPECT_EQ(CString(product.m_strMsiFile), CString(L"x64\\Zolt\\Zolt.msi"));
    EXPECT_EQ(product.m_productKind, 8u);
    EXPECT_EQ(product.GetLPChildren().size(), 1u);
    EXPECT_EQ(host->GetFlow().size(), 2u);
    const PageContext context = host->MakePageContext(host->GetFlow()[0], false);
    EXPECT_EQ(context.pProduct, &product);
    EXPECT_EQ(context.hDatabase, product.GetMsiHandle());
    EXPECT_FALSE(context.bCanGoBack);
}

TEST_F(MediaTest, APageCanBeAskedForAnyProduct)
{
    CProduct& product = OpenMediaFolder();
    CProduct& pack = *product.GetLPChildren().at(0);
    const PageContext context = host->MakePageContext(host->GetFlow()[0], true, &pack);
    EXPECT_EQ(context.pProduct, &pack);
    EXPECT_EQ(context.hDatabase, pack.GetMsiHandle());
    EXPECT_NE(context.hDatabase, product.GetMsiHandle());
    EXPECT_EQ(host->MakePageContext(host->GetFlow()[0], true, nullptr).hDatabase, 0u);
}

TEST_F(MediaTest, TheStepNamesTheProductOfAPageWhereThereAreSeveral)
{
    MakeMedia(scratch);
    AddVolt();
    Open(scratch);
    const FlowPage& page = host->GetFlow()[0];
    ASSERT_EQ(host->GetProducts().size(), 2u);
    EXPECT_EQ(Step(), CString(L"Zolt 2027"));
    (void)host->MakePageContext(page, true, host->GetProducts()[0]);
    EXPECT_EQ(Step(), CString(L"Zolt 2027 - Zolt 2027"));
    const PageContext second = host->MakePageContext(page, true, host->GetProducts()[1]);
    EXPECT_EQ(Step(), CString(L"Zolt 2027 - Volt & Co."));
    EXPECT_EQ(second.hDatabase, host->GetProducts()[1]->GetMsiHandle());
    const PageContext ofNone = host->MakePageContext(page, true);
    EXPECT_EQ(Step(), CString(L"Zolt 2027")) << "a page of no product names the one before it";
    EXPECT_EQ(ofNone.pProduct, host->GetProducts()[0]);
}

TEST_F(MediaTest, TheStepNamesNoProductWhereThePlatformHasOne)
{
    MakeMedia(scratch);
    AddVolt();
    Open(scratch);
    CSetupManager& manager = host->GetSetupManager();
    (void)host->MakePageContext(host->GetFlow()[0], true, host->GetProducts()[1]);
    manager.SetDeploymentPlatform(Setup::PLATFORM_X86);
    ASSERT_EQ(host->GetProducts().size(), 1u);
    (void)host->MakePageContext(host->GetFlow()[0], true, host->GetProducts()[0]);
    EXPECT_EQ(Step(), CString(L"Zolt 2027"));
}

TEST_F(MediaTest, ProductsThatWereDroppedAreOpenedAgain)
{
    OpenMediaFolder();
    host->GetSetupManager().DeleteProductList();
    ASSERT_EQ(host->GetProducts().size(), 1u);
    EXPECT_EQ(host->CheckDatabase(*host->GetProducts()[0]).code, 0u);
}

TEST_F(MediaTest, ADatabaseThatWasClosedIsFoundOutAndSaysWhy)
{
    CProduct& product = OpenMediaFolder();
    EXPECT_EQ(host->CheckDatabase(product).code, 0u);
    MsiCloseHandle(product.GetMsiHandle());
    const OperationError error = host->CheckDatabase(product);
    EXPECT_EQ(error.code, static_cast<unsigned int>(ERROR_INVALID_HANDLE));
    EXPECT_FALSE(error.message.IsEmpty());
}

TEST_F(MediaTest, OnlyMediaThatSaySoOfferTheConfigureDialog)
{
    OpenMediaFolder();
    EXPECT_FALSE(host->OffersConfigure());
}

TEST_F(MediaTest, TheFileSequenceStartsAtTheHighestOfTheTable)
{
    CProduct& product = OpenMediaFolder();
    EXPECT_EQ(product.m_fileSequence, 7);
    EXPECT_GT(product.m_x64Marker, 0);
}

TEST_F(MediaTest, SwitchingThePlatformOpensThatPlatformsPackage)
{
    OpenMediaFolder();
    CSetupManager& manager = host->GetSetupManager();
    manager.SetDeploymentPlatform(Setup::PLATFORM_X86);
    ASSERT_TRUE(manager.SetSetupMode(Setup::SETUPMODE_CREATE_DEPLOYMENT));
    ASSERT_EQ(manager.m_pProducts->size(), 1u);
    CProduct& product = *manager.m_pProducts->at(0);
    EXPECT_EQ(CString(product.m_strMsiFile), CString(L"x86\\Zolt\\Zolt.msi"));
    EXPECT_EQ(product.m_x64Marker, 0);
    EXPECT_EQ(CString(manager.m_strImageSuffix), CString(L"x86"));
}

TEST_F(MediaTest, ADirectoryResolvesByTheInstallersSession)
{
    CProduct& product = OpenMediaFolder();
    EXPECT_EQ(TargetPath(product.GetMsiHandle(), L"INSTALLDIR"), CString(L"C:\\Program Files\\Zolt Test\\"));
}

TEST_F(MediaTest, TheSessionLeavesNoTableOfItsOwnInTheDatabase)
{
    CProduct& product = OpenMediaFolder();
    EXPECT_EQ(MsiDatabaseIsTablePersistentW(product.GetMsiHandle(), L"_Property"), MSICONDITION_NONE);
}

TEST_F(MediaTest, ADirectoryAddedSinceResolvesByTheTables)
{
    CProduct& product = OpenMediaFolder();
    ASSERT_EQ(RunSql(product.GetMsiHandle(),
                     L"INSERT INTO `Directory` (`Directory`,`Directory_Parent`,`DefaultDir`) "
                     L"VALUES ('TARN_x','INSTALLDIR','Added')"),
              0u);
    EXPECT_EQ(TargetPath(product.GetMsiHandle(), L"TARN_x"),
              CString(L"C:\\Program Files\\Zolt Test\\Added\\"));
    ASSERT_EQ(RunSql(product.GetMsiHandle(),
                     L"UPDATE `Directory` SET `DefaultDir`='Renamed' WHERE `Directory`='TARN_x'"),
              0u);
    EXPECT_EQ(TargetPath(product.GetMsiHandle(), L"TARN_x"),
              CString(L"C:\\Program Files\\Zolt Test\\Renamed\\"));
    EXPECT_EQ(product.m_pDirectoryManager->GetDirectories().count(L"TARN_x"), 1u);
}

TEST_F(MediaTest, TheSourcePathLiesBesideTheVendorsPackage)
{
    CProduct& product = OpenMediaFolder();
    wchar_t buffer[300] = {};
    unsigned int size = 300;
    ASSERT_TRUE(product.m_pDirectoryManager->GetSourcePath(L"INSTALLDIR", buffer, &size));
    EXPECT_EQ(CString(buffer), media + L"x64\\Zolt\\Zolt Test\\");
    EXPECT_EQ(size, static_cast<unsigned>(CString(buffer).GetLength()));
}

TEST_F(MediaTest, AnUnknownDirectoryIsRefused)
{
    CProduct& product = OpenMediaFolder();
    unsigned long size = 0;
    EXPECT_EQ(WizGetTargetPathW(product.GetMsiHandle(), L"NoSuchDirectory", nullptr, &size), 267u);
    EXPECT_EQ(WizGetTargetPathW(12345, L"INSTALLDIR", nullptr, &size), 6u);
    EXPECT_EQ(WizGetPropertyW(12345, L"ProductName", nullptr, &size), 6u);
}

TEST_F(MediaTest, PropertiesKeepApostrophesAndGoWhenEmptied)
{
    CProduct& product = OpenMediaFolder();
    EXPECT_TRUE(product.SetMsiProperty(L"ZOLT_A", L"it's `quoted' \u4E2D", false));
    EXPECT_EQ(MsiProperty(product, L"ZOLT_A"), CString(L"it's `quoted' \u4E2D"));
    EXPECT_TRUE(product.SetMsiProperty(L"ZOLT_A", L"second", false));
    EXPECT_EQ(MsiProperty(product, L"ZOLT_A"), CString(L"second"));
    EXPECT_TRUE(product.SetMsiProperty(L"ZOLT_A", L"", false));
    EXPECT_EQ(MsiProperty(product, L"ZOLT_A"), CString(L"(none)"));
}

TEST_F(MediaTest, AValueComesBackWholeOrNotAtAll)
{
    constexpr int ROOM = 1024; // what the pages offer
    CProduct& product = OpenMediaFolder();
    for (const int length : {1, 255, 1022, 1023, 1024, 5000}) {
        const CString value = CString(L'v', length - 1) + L"]";
        ASSERT_TRUE(product.SetMsiProperty(L"ZOLT_LONG", value, false));
        const std::vector<wchar_t> untouched(ROOM + 1, L'#');
        std::vector<wchar_t> buffer = untouched;
        int size = ROOM;
        const bool given = product.GetMsiProperty(L"ZOLT_LONG", buffer.data(), &size);
        EXPECT_EQ(given, length < ROOM) << length;
        EXPECT_EQ(size, length);
        if (given) {
            EXPECT_EQ(CString(buffer.data()), value);
            EXPECT_EQ(buffer[ROOM], L'#') << "written beyond the room";
        } else {
            EXPECT_TRUE(buffer == untouched) << length;
        }
    }
}

TEST_F(MediaTest, ValuesWithSignsOfTheInstallersOwnComeBackAsTheyAre)
{
    CProduct& product = OpenMediaFolder();
    for (const wchar_t* value : {L"#2", L"no", L"[ZOLT_A] [%PATH] {x}", L" # ", L"it's `so` ?", L"\\"}) {
        ASSERT_TRUE(product.SetMsiProperty(L"ZOLT_HOSTILE", value, false));
        EXPECT_EQ(MsiProperty(product, L"ZOLT_HOSTILE"), CString(value));
    }
}

TEST_F(MediaTest, WizGetPropertyReportsTheNeededSizeAsTheServiceDoes)
{
    CProduct& product = OpenMediaFolder();
    const InstallerHandle database = product.GetMsiHandle();
    unsigned long size = 0;
    EXPECT_EQ(WizGetPropertyW(database, L"ProductName", nullptr, &size), 0u);
    EXPECT_EQ(size, 9u);
    wchar_t buffer[20] = L"untouched";
    size = 5;
    EXPECT_EQ(WizGetPropertyW(database, L"ProductName", buffer, &size), 234u);
    EXPECT_EQ(size, 9u);
    EXPECT_EQ(CString(buffer), CString(L"Zolt"));
    size = 10;
    EXPECT_EQ(WizGetPropertyW(database, L"ProductName", buffer, &size), 0u);
    EXPECT_EQ(CString(buffer), CString(L"Zolt Test"));
    EXPECT_EQ(WizGetPropertyW(database, L"ProductName", buffer, nullptr), 87u);
    size = 20;
    EXPECT_EQ(WizGetPropertyW(database, L"Missing", buffer, &size), 0u);
    EXPECT_EQ(size, 0u);
}

TEST_F(MediaTest, TheProductsOwnStoreStaysOutOfTheDatabase)
{
    CProduct& product = OpenMediaFolder();
    product.SetProperty(L"ADDITIONALFILES_MODIFIED", L"1");
    wchar_t buffer[8] = {};
    int size = 8;
    EXPECT_TRUE(product.GetProperty(L"ADDITIONALFILES_MODIFIED", buffer, &size));
    EXPECT_EQ(CString(buffer), CString(L"1"));
    EXPECT_EQ(MsiProperty(product, L"ADDITIONALFILES_MODIFIED"), CString(L"(none)"));
    size = 1;
    EXPECT_FALSE(product.GetProperty(L"ADDITIONALFILES_MODIFIED", buffer, &size));
    EXPECT_EQ(size, 1);
}

TEST_F(MediaTest, AFeatureIsFoundAsSoonAsItsRowIsThere)
{
    CProduct& product = OpenMediaFolder();
    EXPECT_NE(product.m_pFeatureManager->FindFeature(L"Main"), nullptr);
    EXPECT_EQ(product.m_pFeatureManager->FindFeature(L"_UserDeploymentFile"), nullptr);
    ASSERT_EQ(
        RunSql(product.GetMsiHandle(),
               L"INSERT INTO `Feature` (`Feature`,`Level`,`Attributes`) VALUES ('_UserDeploymentFile',1,16)"),
        0u);
    EXPECT_NE(product.m_pFeatureManager->FindFeature(L"_UserDeploymentFile"), nullptr);
}

TEST_F(MediaTest, ASinglePackageIsDescribedByItself)
{
    MakePackage(scratch + L"Someone's Tool.msi");
    CProduct& product = Open(scratch + L"Someone's Tool.msi");
    CSetupManager& manager = host->GetSetupManager();
    EXPECT_EQ(CString(product.m_strName), CString(L"Zolt Test"));
    EXPECT_EQ(CString(manager.m_strSetupCode), CString(PRODUCT_CODE));
    EXPECT_EQ(manager.m_platform, Setup::PLATFORM_X64);
    EXPECT_TRUE(manager.DoesImageMatchPlatform(Setup::PLATFORM_X64));
    EXPECT_FALSE(manager.IsTargetPlatformAllowed(Setup::PLATFORM_X86));
}

TEST_F(MediaTest, APackageWithoutAnyOfThePagesTablesGetsThem)
{
    PackageForm bare;
    bare.bStandardTables = false;
    MakePackage(scratch + L"bare.msi", bare);
    CProduct& product = Open(scratch + L"bare.msi");
    for (const wchar_t* table : {L"TarnCustomFile", L"TarnDirectoryMap", L"CreateFolder", L"Shortcut",
                                 L"File", L"CustomAction", L"InstallExecuteSequence", L"Directory",
                                 L"Component", L"Feature", L"FeatureComponents", L"Media"}) {
        EXPECT_TRUE(HasTable(product.GetMsiHandle(), table)) << Utf8(table);
    }
    EXPECT_EQ(product.m_fileSequence, 0);
}

TEST_F(MediaTest, APackageWithoutInstallDirStillOpens)
{
    PackageForm form;
    form.bInstallFolder = false;
    MakePackage(scratch + L"x.msi", form);
    CProduct& product = Open(scratch + L"x.msi");
    unsigned int size = 0;
    EXPECT_FALSE(product.m_pDirectoryManager->GetTargetPath(L"INSTALLDIR", nullptr, &size));
    EXPECT_EQ(TargetPath(product.GetMsiHandle(), L"ProgramFiles64Folder"), CString(L"C:\\Program Files\\"));
}

TEST_F(MediaTest, TheVendorsPackageStaysAsItWas)
{
    MakeMedia(scratch);
    std::string before;
    ASSERT_EQ(ReadWholeFile(scratch + L"x64\\Zolt\\Zolt.msi", 1u << 24, before), 0u);
    Open(scratch).SetMsiProperty(L"ZOLT_A", L"1", false);
    host.reset();
    std::string after;
    ASSERT_EQ(ReadWholeFile(scratch + L"x64\\Zolt\\Zolt.msi", 1u << 24, after), 0u);
    EXPECT_TRUE(before == after);
}

TEST_F(MediaTest, TheWorkFolderGoesWithTheHost)
{
    OpenMediaFolder();
    host.reset();
    std::vector<FolderItem> left;
    ASSERT_EQ(ListFolder(work + L"work", left), 0u);
    EXPECT_TRUE(left.empty()) << Utf8(left[0].strName);
}

TEST_F(MediaTest, AMissingPackageIsNamed)
{
    MakeMedia(scratch);
    ASSERT_TRUE(DeleteFileW(scratch + L"x64\\ZoltDe\\ZoltDe.msi"));
    const OperationError error = Refusal(scratch);
    EXPECT_GE(error.message.Find(L"ZoltDe.msi"), 0) << Utf8(error.message);
    EXPECT_GE(error.message.Find(L"missing"), 0) << Utf8(error.message);
}

TEST_F(MediaTest, ACutOffPackageIsNamed)
{
    MakeMedia(scratch);
    std::string bytes;
    ASSERT_EQ(ReadWholeFile(scratch + L"x64\\Zolt\\Zolt.msi", 1u << 24, bytes), 0u);
    WriteFileBytes(scratch + L"x64\\Zolt\\Zolt.msi", bytes.substr(0, 700));
    const OperationError error = Refusal(scratch);
    EXPECT_GE(error.message.Find(L"can't be opened"), 0) << Utf8(error.message);
    EXPECT_GE(error.message.Find(L"Zolt.msi"), 0) << Utf8(error.message);
}

TEST_F(MediaTest, AFolderWithoutDescriptionIsRefused)
{
    const OperationError error = Refusal(scratch);
    EXPECT_GE(error.message.Find(L"neither a Setup.xml"), 0) << Utf8(error.message);
}

// It was said to hold neither a Setup.xml nor a Deployment.xml, which lay there for everybody to see.
TEST_F(MediaTest, ADeploymentWithoutItsImageIsRefusedForJustThat)
{
    WriteFileBytes(scratch + DEPLOYMENT_FILE, "<?xml version=\"1.0\"?>\n<Deployment version=\"1\"/>");
    const OperationError error = Refusal(scratch);
    EXPECT_GE(error.message.Find(L"a deployment whose image is damaged"), 0) << Utf8(error.message);
    EXPECT_GE(error.message.Find(L"Image\\Setup.xml\" is missing"), 0) << Utf8(error.message);
}

TEST_F(MediaTest, ADamagedDescriptionIsRefusedWithItsLine)
{
    MakeMedia(scratch);
    WriteFileBytes(scratch + SETUP_FILE, "<?xml version=\"1.0\"?>\n<Setup version=\"1\"\n</Setup>");
    const OperationError error = Refusal(scratch);
    EXPECT_GE(error.message.Find(L"Setup.xml, line 3"), 0) << Utf8(error.message);
}

TEST_F(MediaTest, MissingMediaAreNamed)
{
    const OperationError error = Refusal(scratch + L"nothing here");
    EXPECT_GE(error.message.Find(L"nothing here"), 0) << Utf8(error.message);
}

TEST_F(MediaTest, TwoHostsOfOneMediaWorkSideBySide)
{
    CProduct& first = OpenMediaFolder();
    const HostOwner second = OpenHost(media, work);
    ASSERT_TRUE(second);
    CProduct& other = *second->GetSetupManager().m_pProducts->at(0);
    ASSERT_TRUE(first.SetMsiProperty(L"ZOLT_A", L"1", false));
    EXPECT_EQ(MsiProperty(other, L"ZOLT_A"), CString(L"(none)"));
}
