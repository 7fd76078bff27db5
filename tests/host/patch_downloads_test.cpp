// Where a page of a product downloads to, and what becomes of it.
#include "builder/deployment_place.h"
#include "tests/host/patched_media.h"

#include "base/path_text.h"

namespace {

class PatchDownloadsTest : public PatchedProductTest
{
protected:
    CString FolderFor(CProduct* product)
    {
        static_cast<void>(host->MakePageContext(host->GetFlow()[0], true, product));
        return host->GetSetupManager().m_strDeploymentFolder;
    }
};

} // namespace

// Patches that were downloaded into the deployment's own place made it be there before it was built.
TEST_F(PatchDownloadsTest, APageOfAProductDownloadsBelowTheRunsFolderAndNothingAppearsInTheDeploymentsPlace)
{
    CProduct& product = Start();
    const CString folder = FolderFor(&product);
    EXPECT_TRUE(IsSameOrBelow(folder, work + L"work")) << Utf8(folder);
    EXPECT_EQ(folder.Right(1), CString(L"\\"));
    EXPECT_FALSE(IsFolder(folder)) << "the page makes it when it needs it";
    EXPECT_FALSE(IsFolder(location + L"North"));
}

TEST_F(PatchDownloadsTest, ProductsHaveFoldersOfTheirOwnInEachMode)
{
    Start();
    Build();
    for (const auto mode : {Setup::SETUPMODE_CREATE_DEPLOYMENT, Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT,
                            Setup::SETUPMODE_MODIFY_DEPLOYMENT}) {
        OpenAgain(mode, mode == Setup::SETUPMODE_MODIFY_DEPLOYMENT ? L"North" : L"South");
        const std::vector<CProduct*> products = host->GetProducts();
        ASSERT_EQ(products.size(), 2u);
        const CString first = FolderFor(products[0]);
        const CString second = FolderFor(products[1]);
        EXPECT_TRUE(IsSameOrBelow(first, work + L"work")) << mode;
        EXPECT_FALSE(IsSameOrBelow(first, second)) << mode;
        EXPECT_FALSE(IsSameOrBelow(second, first)) << mode;
        EXPECT_EQ(FolderFor(products[0]), first) << mode;
    }
}

TEST_F(PatchDownloadsTest, APageOfNoProductFindsTheDeploymentsFolder)
{
    CProduct& product = Start();
    CSetupManager& manager = host->GetSetupManager();
    static_cast<void>(FolderFor(&product));
    const PageContext context = host->MakePageContext(host->GetFlow()[0], true);
    EXPECT_EQ(manager.m_strDeploymentFolder, location + L"North\\");
    EXPECT_TRUE(context.preInitHooks.empty());
    static_cast<void>(FolderFor(&product));
    EXPECT_EQ(FolderFor(nullptr), location + L"North\\");
}

TEST_F(PatchDownloadsTest, OutsideOfTheModesForDeploymentsThereIsNoFolder)
{
    CProduct& product = Start();
    host->GetSetupManager().m_setupMode = Setup::SETUPMODE_INSTALL;
    EXPECT_EQ(FolderFor(&product), CString());
}

// The records of all tabs are filled before the first of them comes up.
TEST_F(PatchDownloadsTest, EachTabPageFindsTheFolderOfItsProductWhenItComesUp)
{
    Start();
    CSetupManager& manager = host->GetSetupManager();
    const std::vector<CProduct*> products = host->GetProducts();
    PageContext first = host->MakePageContext(host->GetFlow()[0], true, products[0]);
    const CString firstFolder = manager.m_strDeploymentFolder;
    PageContext second = host->MakePageContext(host->GetFlow()[0], true, products[1]);
    const CString secondFolder = manager.m_strDeploymentFolder;
    const auto comeUp = [&](PageContext& context) {
        for (const PageHook hook : context.preInitHooks) {
            hook(&context);
        }
        return manager.m_strDeploymentFolder;
    };
    EXPECT_EQ(comeUp(first), firstFolder);
    EXPECT_EQ(comeUp(second), secondFolder);
    EXPECT_EQ(comeUp(first), firstFolder);
}

// A wizard page's own context names none. Downloads went into the deployment's place then, before it was built.
TEST_F(PatchDownloadsTest, AHookThatIsCalledWithoutAProductKeepsTheFolderOfTheProductsPage)
{
    CProduct& product = Start();
    PageContext context = host->MakePageContext(host->GetFlow()[0], true, &product);
    const CString folder = host->GetSetupManager().m_strDeploymentFolder;
    context.pProduct = nullptr;
    for (const PageHook hook : context.preInitHooks) {
        hook(&context);
    }
    EXPECT_EQ(host->GetSetupManager().m_strDeploymentFolder, folder);
}

TEST_F(PatchDownloadsTest, ADownloadLastsAsLongAsItsProductAndGoesWithTheRun)
{
    CString file = Download(Start(), L"beside\\First.msp", L"first.msp");
    EXPECT_TRUE(IsFile(file));
    ASSERT_EQ(host->GetSetupManager().ResetSetupMode(), 0);
    EXPECT_FALSE(IsFile(file));
    EXPECT_FALSE(FirstOf(*host).m_bPatchDownloaded);
    EXPECT_EQ(FirstOf(*host).GetDownloadedMSPPath(), CString());
    Begin(host->GetSetupManager(), Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), L"North");
    file = Download(FirstOf(*host), L"beside\\First.msp", L"first.msp");
    Begin(host->GetSetupManager(), Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), L"North");
    EXPECT_TRUE(IsFile(file)) << "going back to the first page and forward again lost it";
    EXPECT_TRUE(FirstOf(*host).m_bPatchDownloaded);
    host.reset();
    std::vector<FolderItem> items;
    EXPECT_EQ(ListFolder(work + L"work\\", items), 0u);
    EXPECT_TRUE(items.empty()) << Utf8(items[0].strName);
}

TEST_F(PatchDownloadsTest, OnlyTheListedPatchComesIntoTheImage)
{
    CProduct& product = Start();
    const CString file = Download(product, L"beside\\First.msp", L"first.msp");
    Choose(product, {file}, Setup::PATCHSTATE_APPEND, 1);
    Build();
    EXPECT_EQ(PatchesInImage(), std::vector<CString>{L"first.msp"});
    EXPECT_TRUE(IsFile(file)) << "the page of this run still shows it";
}

TEST_F(PatchDownloadsTest, ADownloadThatWasTakenOverIsFoundInTheImageAfterwards)
{
    CProduct& product = Start();
    Choose(product, {Download(product, L"beside\\First.msp", L"first.msp")}, Setup::PATCHSTATE_APPEND, 1);
    Build();
    EXPECT_EQ(ReadBuilt().products[0].strPatchPath, BELOW_IMAGE + L"first.msp");
    for (const auto mode : {Setup::SETUPMODE_MODIFY_DEPLOYMENT, Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT}) {
        const bool isNew = mode == Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT;
        CProduct& again = OpenAgain(mode, isNew ? L"South" : L"North");
        const CString path = location + L"North\\Image\\" + BELOW_IMAGE + L"first.msp";
        EXPECT_TRUE(again.m_bPatchDownloaded) << mode;
        EXPECT_EQ(again.GetDownloadedMSPPath(), path) << mode;
        EXPECT_EQ(again.GetDownloadedPatchName(), CString(L"Patch Test First"));
        EXPECT_EQ(again.GetDownloadedPatchReadmeURL(), CString(L"https://updates.example/first"));
        EXPECT_EQ(again.GetDownloadedPatchSize(), CString(L"12 kb"));
        EXPECT_EQ(again.m_patchFlag, 1);
        Choose(again, {path}, Setup::PATCHSTATE_APPEND, 1); // as the page does with what it finds
        Build();
        EXPECT_EQ(PatchesInImage(isNew ? L"South" : L"North"), std::vector<CString>{L"first.msp"}) << mode;
        EXPECT_EQ(ReadBuilt(isNew ? L"South" : L"North").products[0].strPatchPath,
                  BELOW_IMAGE + L"first.msp");
    }
}

TEST_F(PatchDownloadsTest, ADownloadThatDidNotGoIntoTheImageIsGoneAfterARestart)
{
    CProduct& product = Start();
    Download(product, L"beside\\First.msp", L"first.msp");
    Choose(product, {}, Setup::PATCHSTATE_NONE, 0);
    Build();
    EXPECT_EQ(ReadBuilt().products[0].strPatchPath, CString());
    CProduct& again = OpenAgain();
    EXPECT_FALSE(again.m_bPatchDownloaded);
    EXPECT_EQ(again.GetDownloadedMSPPath(), CString());
    EXPECT_EQ(again.m_patchFlag, 0);
}

// Deployment.xml is anybody's: it must not make the program look at a share, or call a file a download.
TEST_F(PatchDownloadsTest, APathThatNoPatchOfTheImageHasIsNoDownload)
{
    Start();
    Build();
    const CString entry = location + L"North\\" + DEPLOYMENT_FILE;
    const CString outside = CopyOf(L"beside\\First.msp", L"first.msp");
    for (const CString& path : {outside, CString(L"\\\\server\\share\\first.msp"),
                                CString(L"x64\\Patch\\PatchTest.msi"), CString(L"..\\..\\Deployment.xml")}) {
        DeploymentFile file = ReadBuilt();
        file.products[0].strPatchPath = path;
        WriteText(entry, WriteDeploymentFile(file));
        CProduct& again = OpenAgain();
        EXPECT_FALSE(again.m_bPatchDownloaded) << Utf8(path);
        EXPECT_EQ(again.GetDownloadedMSPPath(), CString()) << Utf8(path);
    }
}

TEST_F(PatchDownloadsTest, ADownloadWhoseFileWasTakenFromTheImageIsNone)
{
    CProduct& product = Start();
    Choose(product, {Download(product, L"beside\\First.msp", L"first.msp")}, Setup::PATCHSTATE_APPEND, 1);
    Build();
    host.reset();
    const CString file = location + L"North\\Image\\" + BELOW_IMAGE + L"first.msp";
    ASSERT_TRUE(DeleteFileW(file));
    CProduct& again = OpenAgain();
    EXPECT_FALSE(again.m_bPatchDownloaded);
    EXPECT_EQ(again.GetDownloadedMSPPath(), CString());
    EXPECT_EQ(again.m_patchFiles, std::vector<CString>());
    EXPECT_EQ(again.GetPatchState(), Setup::PATCHSTATE_NONE);
    EXPECT_EQ(again.GetMsiPatchState(), Setup::PATCHSTATE_NONE);
    const CString log = ReadText(work + L"Setup.log");
    EXPECT_GE(log.Find(L"\"" + BELOW_IMAGE + L"first.msp\" of \"Patch Test\""), 0) << Utf8(log);
}
