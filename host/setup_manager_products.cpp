// The products of the setup manager: opened in a fresh folder of working copies, dropped, opened anew.
#include "base/files.h"
#include "host/host_messages.h"
#include "host/host_setup_manager.h"

#include <utility>

namespace {

// Beside the working copies, whose folders the media name. What the pages download lives as long as the products know it.
constexpr const wchar_t* DOWNLOADS = L"-downloads\\";

} // namespace

void CHostSetupManager::ReloadProductData()
{
    DeleteProductList();
    if (const OperationError error = EnsureProducts()) {
        ReportFailure(error.message);
    }
}

void CHostSetupManager::DeleteProductList()
{
    m_products.clear();
    m_productObjects.clear();
    m_productsOpen = false;
}

OperationError CHostSetupManager::EnsureProducts()
{
    if (m_productsOpen && m_productsPlatform == m_platform) {
        return {};
    }
    DeleteProductList();
    RemoveWorkCopies(m_workNumber);
    OperationError error = OpenProducts();
    if (error) {
        DeleteProductList();
    }
    return error;
}

OperationError CHostSetupManager::ReplaceProducts()
{
    const int number = m_workNumber;
    std::vector<CProduct*> products = std::exchange(m_products, {});
    std::vector<std::unique_ptr<CHostProduct>> objects = std::exchange(m_productObjects, {});
    const bool wereOpen = std::exchange(m_productsOpen, false);
    const Setup::tagPLATFORM platform = m_productsPlatform;
    OperationError error = OpenProducts();
    if (!error) {
        objects.clear(); // an open database keeps its file
        RemoveWorkCopies(number);
        return error;
    }
    DeleteProductList();
    RemoveWorkCopies(std::exchange(m_workNumber, number));
    m_products = std::move(products);
    m_productObjects = std::move(objects);
    m_productsOpen = wereOpen;
    m_productsPlatform = platform;
    return error;
}

void CHostSetupManager::RemoveWorkCopies(int number)
{
    if (number > 0) {
        RemoveFolder(m_strWorkFolder + NumberText(number));
        RemoveFolder(m_strWorkFolder + NumberText(number) + DOWNLOADS);
    }
}

OperationError CHostSetupManager::OpenProducts()
{
    ++m_workNumber;
    for (const ProductDescription& described : m_media.description.products) {
        std::unique_ptr<CHostProduct> product;
        if (OperationError error = COpenProduct(described, product)) {
            return error;
        }
        if (!product) {
            continue;
        }
        for (const ProductDescription& pack : described.languagePacks) {
            std::unique_ptr<CHostProduct> opened;
            if (OperationError error = COpenProduct(pack, opened)) {
                return error;
            }
            if (opened) {
                product->AddLanguagePack(std::move(opened));
            }
        }
        m_products.push_back(product.get());
        m_productObjects.push_back(std::move(product));
    }
    if (m_products.empty()) {
        return {ERROR_FILE_NOT_FOUND,
                HostSentence(HostText::NoProductsForPlatform, {PlatformText(m_platform)})};
    }
    m_productsOpen = true;
    m_productsPlatform = m_platform;
    UpdatePathRule();
    return {};
}

OperationError CHostSetupManager::COpenProduct(const ProductDescription& described,
                                               std::unique_ptr<CHostProduct>& opened)
{
    const PackageDescription* package = described.FindPackage(m_platform);
    if (!package) {
        return {};
    }
    const CString folder = PackageFolder(m_media.description, described, m_platform);
    const CString number = NumberText(m_workNumber);
    auto product = std::make_unique<CHostProduct>(
        described, *package,
        ProductSource{m_media.strRoot, folder, m_strWorkFolder + number + L"\\" + folder,
                      m_strWorkFolder + number + DOWNLOADS + NumberText(++m_downloadNumber) + L"\\",
                      m_platform});
    std::vector<CString> warnings;
    OperationError error = product->Open(warnings);
    for (const CString& warning : warnings) {
        m_log.Append(warning);
    }
    if (error) {
        return error;
    }
    warnings.clear();
    error = LoadStored(*product, warnings);
    for (const CString& warning : warnings) {
        m_log.Append(warning);
    }
    opened = std::move(product);
    return error;
}

OperationError CHostSetupManager::LoadStored(CHostProduct& product, std::vector<CString>& warnings)
{
    const CString& code = product.GetPackage().strProductCode;
    if (IsBaseLoaded()) {
        const StoredProduct* const stored = m_base.file.FindProduct(code);
        if (stored) {
            product.Load(*stored, m_media.strRoot, warnings);
        }
        return {};
    }
    if (m_media.strDeploymentFile.IsEmpty()) {
        return {};
    }
    DeploymentFile file;
    const OperationError error = ReadDeploymentFile(m_media.strDeploymentFile, file);
    const StoredProduct* const stored = file.FindProduct(code);
    if (!error && stored) {
        product.LoadMergedPatches(*stored, m_media.strRoot, warnings);
    }
    return error;
}

void CHostSetupManager::UseFoldersOf(CProduct* product)
{
    const CHostProduct* const own = product ? FindProductByHandle(product->GetMsiHandle()) : nullptr;
    if (own && m_setupMode >= Setup::SETUPMODE_CREATE_DEPLOYMENT) {
        m_strDeploymentFolder = own->GetDownloadFolder();
    } else {
        UpdateDeploymentFolder();
    }
}
