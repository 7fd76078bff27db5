// Which product identity the page asks the service for: the folder of the configuration file, the libraries that have to be there,
// and what happens without them.
#include "tests/patches/service_pack_page.h"

namespace {

class CatalogIdentity : public PatchPage
{
protected:
    CatalogIdentity()
    {
        WithAnswer(0, 0);
        RemoveTree(folder / L"media\\kmd");
    }
    void WithPack(const wchar_t* language, const CString& package, bool bAbsolute = false)
    {
        TestProduct& pack = m_packs.emplace_back(host.log);
        pack.m_strLanguage = host.Keep(language);
        pack.m_strMsiFile = host.Keep(package);
        pack.m_bMsiFileIsAbsolute = bAbsolute;
        product.children.push_back(&pack);
    }
    // The page asks for that file, below the test's folder, and for none that stands elsewhere.
    void ExpectConfiguration(const CString& file)
    {
        ShowAndGoBack();
        EXPECT_EQ(queries.size(), 0u) << "a query without the file";
        WithFile(file);
        Look([this] { EXPECT_EQ(Stage(), CString(L"up to date")); });
        ShowAndGoBack();
        ASSERT_EQ(libraryCalls.size(), 2u);
        EXPECT_EQ(libraryCalls.at(1).CompareNoCase(CString(L"getKMDValue ") + (folder / file)), 0)
            << Utf8(libraryCalls.at(1));
    }
    void WithFile(const CString& file)
    {
        const CString path = folder / file;
        for (int end = path.Find(L'\\', folder.GetPath().GetLength()); end >= 0;
             end = path.Find(L'\\', end + 1)) {
            CreateDirectoryW(path.Left(end), nullptr);
        }
        WriteFileBytes(path, "<kmd/>");
    }
    // The page has its local choices, and has neither asked nor said anything.
    void ExpectNoService()
    {
        Look([this] { EXPECT_EQ(Stage(), CString(L"no service")); });
        ShowAndGoBack();
        EXPECT_EQ(queries.size(), 0u);
    }

private:
    std::deque<TestProduct> m_packs;
};
INSTANTIATE_BOTH_SHAPES(CatalogIdentity);

class KnownProduct : public CatalogIdentity
{
protected:
    KnownProduct() { WithFile(L"media\\kmd\\Kmdconfig.xml"); }
};
INSTANTIATE_BOTH_SHAPES(KnownProduct);

} // namespace

// ---- the reference path

TEST_P(CatalogIdentity, WithoutLanguagePacksTheFileLiesBelowTheMediaRoot)
{
    ExpectConfiguration(L"media\\kmd\\Kmdconfig.xml");
}

TEST_P(CatalogIdentity, OutsideADeploymentTheFirstPackLeadsWhateverItsLanguage)
{
    InMode(2);
    WithPack(L"de-DE", L"packs\\de\\de.msi");
    WithPack(L"en-US", L"packs\\en\\en.msi");
    ExpectConfiguration(L"media\\packs\\de\\kmd\\Kmdconfig.xml"); // relative: the media root comes in front
}

TEST_P(CatalogIdentity, OutsideADeploymentAFullPathOfThePackStandsAsItIs)
{
    InMode(3);
    WithPack(L"de-DE", folder / L"elsewhere\\de\\de.msi");
    ExpectConfiguration(L"elsewhere\\de\\kmd\\Kmdconfig.xml");
}

TEST_P(CatalogIdentity, InADeploymentThePackOfItsLanguageLeadsInAnyCase)
{
    for (const int mode : {4, 5, 6}) {
        SCOPED_TRACE(mode);
        InMode(mode);
        product.children.clear();
        libraryCalls.clear();
        queries.clear();
        RemoveTree(folder / L"media\\packs");
        host.language.language = L"EN-us";
        WithPack(L"de-DE", L"packs\\de\\de.msi");
        WithPack(L"en-US", L"packs\\en\\en.msi");
        WithPack(L"en-US", L"packs\\second\\en.msi");
        ExpectConfiguration(L"media\\packs\\en\\kmd\\Kmdconfig.xml");
    }
}

TEST_P(CatalogIdentity, AnAbsolutePackNeedsNoMediaRoot)
{
    WithPack(L"en-US", folder / L"elsewhere\\en\\en.msi", true);
    ExpectConfiguration(L"elsewhere\\en\\kmd\\Kmdconfig.xml");
}

// The flag says that no media root is needed; a path that is relative nevertheless gets it once the folder is known.
TEST_P(CatalogIdentity, ARelativePackThatIsSaidToBeAbsoluteGetsTheMediaRootAfterwards)
{
    WithPack(L"en-US", L"packs\\en\\en.msi", true);
    ExpectConfiguration(L"media\\packs\\en\\kmd\\Kmdconfig.xml");
}

TEST_P(CatalogIdentity, PacksOfOtherLanguagesLeadToTheMediaRootOnce)
{
    WithPack(L"de-DE", L"packs\\de\\de.msi");
    WithPack(L"fr-FR", folder / L"elsewhere\\fr\\fr.msi", true);
    ExpectConfiguration(L"media\\kmd\\Kmdconfig.xml");
}

TEST_P(CatalogIdentity, AFullPathInThePropertyStandsAsItIs)
{
    SetPackageProperty(L"MEDIAKMD32LOC", folder / L"elsewhere\\kmd");
    WithPack(L"en-US", L"packs\\en\\en.msi");
    ExpectConfiguration(L"elsewhere\\kmd\\Kmdconfig.xml");
}

TEST_P(CatalogIdentity, WithoutThePropertyTheFileLiesInTheReferenceFolderItself)
{
    SetPackageProperty(L"MEDIAKMD32LOC", L"");
    WithPack(L"en-US", L"packs\\en\\en.msi");
    ExpectConfiguration(L"media\\packs\\en\\Kmdconfig.xml");
}

TEST_P(CatalogIdentity, AFileAtTheMediaRootAloneDoesNotStandInForThatOfThePack)
{
    WithFile(L"media\\kmd\\Kmdconfig.xml");
    WithPack(L"en-US", L"packs\\en\\en.msi");
    ExpectNoService();
}

// ---- the libraries

TEST_P(KnownProduct, TheValueIsAskedForOnceRightBehindItsPreparation)
{
    ShowAndGoBack();
    EXPECT_EQ(libraryCalls, (Lines{L"setMRFlag", L"getKMDValue " + Media(L"kmd\\Kmdconfig.xml")}));
}

TEST_P(KnownProduct, NoConfigurationFileEndsItQuietly)
{
    DeleteFileW(Media(L"kmd\\Kmdconfig.xml"));
    ExpectNoService();
    EXPECT_EQ(libraryCalls, Lines());
}

TEST_P(KnownProduct, ALibraryThatTheResourceFolderLacksIsNotLoaded)
{
    DeleteFileW(folder / L"language\\Kmd32.dll");
    ExpectNoService();
    EXPECT_EQ(libraryCalls, Lines());
}

TEST_P(KnownProduct, ALibraryThatCannotBeLoadedEndsItQuietly)
{
    UseLibrary(L"Kmd32.dll", nullptr);
    ExpectNoService();
}

TEST_P(KnownProduct, ALibraryThatIsNoneEndsItQuietly)
{
    UseLibrary(L"Kmd32.dll", nullptr);
    WriteFileBytes(ProgramFolder() + L"Kmd32.dll", "no library");
    ExpectNoService();
}

TEST_P(KnownProduct, ALibraryWithoutItsEntryPointsEndsItQuietly)
{
    UseLibrary(L"Kmd32.dll", L"without_value");
    ExpectNoService();
    EXPECT_EQ(libraryCalls, Lines());
}

TEST_P(KnownProduct, AnEmptyValueIsNoIdentity)
{
    identity.Empty();
    ExpectNoService();
    EXPECT_EQ(libraryCalls.size(), 2u);
}

TEST_P(KnownProduct, TheLibrariesAreLoadedForTheirCallsAlone)
{
    bool bDuringTheValue = false, bDuringTheQuery = false;
    onQuery = [&](PatchInfoRecord& record) {
        bDuringTheValue = GetModuleHandleW(L"Kmd32.dll") != nullptr;
        bDuringTheQuery = GetModuleHandleW(L"FixMgr.dll") != nullptr;
        record = answer;
    };
    Look([] {
        EXPECT_EQ(GetModuleHandleW(L"Kmd32.dll"), nullptr);
        EXPECT_EQ(GetModuleHandleW(L"FixMgr.dll"), nullptr);
    });
    ShowAndGoBack();
    EXPECT_FALSE(bDuringTheValue) << "Kmd32.dll is still loaded while the service is asked";
    EXPECT_TRUE(bDuringTheQuery);
}

TEST_P(KnownProduct, AProductWithADownloadedPatchIsNotAskedAbout)
{
    WithDownloadedPatch(AddPatch(L"sp1.msp", 1));
    Look([this] { EXPECT_EQ(Stage(), CString(L"downloaded")); });
    ShowAndGoBack();
    EXPECT_EQ(libraryCalls, Lines());
    EXPECT_EQ(queries.size(), 0u);
}
