#include "tests/host/patched_media.h"

#include "base/path_text.h"
#include "builder/deployment_place.h"

namespace {

void CopyWithoutPatches(const CString& source, const CString& target)
{
    std::vector<FolderItem> items;
    ASSERT_EQ(ListFolder(source, items), 0u) << Utf8(source);
    ASSERT_EQ(MakeFolders(target), 0u);
    for (const FolderItem& item : items) {
        if (item.isFolder) {
            CopyWithoutPatches(source + item.strName + L"\\", target + item.strName + L"\\");
        } else if (item.strName.Right(4) != L".msp") {
            ASSERT_TRUE(CopyFileW(source + item.strName, target + item.strName, TRUE)) << GetLastError();
        }
    }
}

} // namespace

void CopyPatchedPackage(const CString& folder, const CString& layout)
{
    CopyWithoutPatches(PatchFixture(layout) + L"\\", folder);
}

void MakePatchedMedia(const CString& folder, const CString& layout)
{
    SetupDescription setup;
    setup.strCode = SETUP_CODE;
    setup.strName = L"Patch Test";
    setup.strMaker = L"Velkmora";
    setup.strProductVersion = L"1.0.0";
    setup.strDefaultLanguage = L"en-US";
    setup.languages = {L"en-US"};
    setup.flow = {{L"BeginDeploymentDialog", L"BeginDeployment.html"}};
    setup.platforms = {{3, L"x64"}};
    ProductDescription product;
    product.strName = L"Patch Test";
    product.strFolder = L"Patch";
    product.kind = 8;
    product.packages = {{3, L"PatchTest.msi", PATCHED_PRODUCT_CODE, L"1.0.0"}};
    setup.products.push_back(product);
    ProductDescription other;
    other.strName = L"Zolt 2027";
    other.strFolder = L"Zolt";
    other.kind = 8;
    other.packages = {{3, L"Zolt.msi", PRODUCT_CODE, L"27.0.0"}};
    setup.products.push_back(other);
    WriteText(folder + SETUP_FILE, WriteSetupDescription(setup));
    CopyPatchedPackage(folder + L"x64\\Patch\\", layout);
    MakePackage(folder + L"x64\\Zolt\\Zolt.msi");
}

CProduct& PatchedProductTest::Start(const wchar_t* name, const CString& layout)
{
    MakePatchedMedia(plain + L"media\\", layout);
    CSetupManager& manager = Open(plain + L"media");
    Begin(manager, Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), name);
    return FirstOf(*host);
}

CProduct& PatchedProductTest::OpenAgain(Setup::tagSETUPMODE mode, const wchar_t* name, const wchar_t* base)
{
    CSetupManager& manager = Open(location + base);
    const bool hasBase = mode != Setup::SETUPMODE_CREATE_DEPLOYMENT;
    Begin(manager, mode, hasBase ? CString(base) : CString(), name);
    return FirstOf(*host);
}

void PatchedProductTest::Choose(CProduct& product, const std::vector<CString>& files,
                                Setup::tagPATCHSTATE state, int includeChoice)
{
    for (const CString& file : files) {
        static_cast<void>(product.IsPatchMerged(file));
    }
    product.SetIncludeSP(includeChoice);
    product.SetPatchState(state);
    product.m_patchFiles = files;
}

CString PatchedProductTest::Download(CProduct& product, const wchar_t* fixture, const wchar_t* name)
{
    static_cast<void>(host->MakePageContext(host->GetFlow()[0], true, &product));
    const CString folder = host->GetSetupManager().m_strDeploymentFolder + L"ServicePacks\\";
    EXPECT_EQ(MakeFolders(folder), 0u);
    EXPECT_TRUE(CopyFileW(PatchFixture(fixture), folder + name, TRUE));
    WriteFileBytes(folder + L"patchlist.npl", "list");
    WriteFileBytes(folder + L"download.exe", "program");
    product.SetDownloadedPatchName(L"Patch Test First");
    product.SetDownloadedPatchReadmeURL(L"https://updates.example/first");
    product.SetDownloadedPatchSize(L"12 kb");
    product.SetDownloadedMSPPath(folder + name);
    product.m_bPatchDownloaded = true;
    return folder + name;
}

CString PatchedProductTest::CopyOf(const CString& fixture, const CString& name) const
{
    const CString path = plain + L"patches\\" + name;
    EXPECT_EQ(MakeFolders(FolderOfFile(path)), 0u);
    EXPECT_TRUE(CopyFileW(PatchFixture(fixture), path, TRUE)) << GetLastError() << " " << Utf8(path);
    return path;
}

DeploymentFile PatchedProductTest::ReadBuilt(const wchar_t* name) const
{
    DeploymentFile file;
    const OperationError error = ReadDeploymentFile(location + name + L"\\" + DEPLOYMENT_FILE, file);
    EXPECT_FALSE(error) << Utf8(error.message);
    file.products.resize(std::max<std::size_t>(file.products.size(), 1)); // so that a failure is no crash
    return file;
}

std::vector<CString> PatchedProductTest::PatchesInImage(const wchar_t* name) const
{
    std::vector<FolderItem> items;
    static_cast<void>(ListFolder(location + name + L"\\Image\\" + BELOW_IMAGE, items));
    std::vector<CString> names;
    for (const FolderItem& item : items) {
        names.push_back(item.strName);
    }
    return names;
}

CString PatchedProductTest::RefusedBuild(unsigned int code)
{
    std::vector<CString> warnings;
    const OperationError check = host->CheckBuild(warnings);
    CSilentProgress progress;
    const BuildResult result = host->Build(progress);
    EXPECT_EQ(result.error.code, code) << Utf8(result.error.message);
    EXPECT_EQ(check.code, code);
    EXPECT_EQ(check.message, result.error.message);
    std::vector<FolderItem> items;
    EXPECT_EQ(ListFolder(location, items), 0u);
    for (const FolderItem& item : items) {
        EXPECT_TRUE(item.isFolder && item.strName == L"North") << Utf8(item.strName) << " was left";
    }
    return result.error.message;
}
