#include "host/compared_settings.h"

#include "base/string.h"

namespace {

void AddProperties(const PropertyStore& store, NamedValues& values)
{
    for (const StoredProperty& property : store) {
        values[L"property " + property.name] = property.value;
    }
}

void AddProduct(const SetupDescription& image, const ProductDescription& product, int platform,
                std::vector<ImageProduct>& products)
{
    if (const PackageDescription* package = product.FindPackage(platform)) {
        products.push_back({package->strProductCode, product.strName,
                            PackageFolder(image, product, platform) + package->strFile});
    }
    for (const ProductDescription& pack : product.languagePacks) {
        AddProduct(image, pack, platform, products);
    }
}

} // namespace

std::vector<ImageProduct> ListImageProducts(const SetupDescription& image, int platform)
{
    std::vector<ImageProduct> products;
    for (const ProductDescription& product : image.products) {
        AddProduct(image, product, platform, products);
    }
    return products;
}

NamedValues DescribeSettings(const DeploymentFile& file)
{
    NamedValues values = {
        {L"setupCode", file.strSetupCode},
        {L"productName", file.strProductName},
        {L"productVersion", file.strProductVersion},
        {L"platform", NumberText(file.platform)},
        {L"language", file.strLanguage},
        {L"installMode", NumberText(file.installMode)},
        {L"networkLog", NumberText(file.bNetworkLog)},
        {L"networkLogFolder", file.strNetworkLogFolder},
        {L"settingsOption", NumberText(file.bSettingsOption)},
    };
    AddProperties(file.properties, values);
    return values;
}

NamedValues DescribeSettings(const StoredProduct& product)
{
    NamedValues values = {
        {L"patchState", NumberText(product.patchState)},
        {L"includePatch", NumberText(product.includePatch)},
        {L"patchName", product.strPatchName},
        {L"patchReadme", product.strPatchReadme},
        {L"patchSize", product.strPatchSize},
    };
    AddProperties(product.properties, values);
    return values;
}

std::vector<CString> DescribePatches(const StoredProduct& product)
{
    std::vector<CString> patches;
    for (const StoredPatch& patch : product.patches) {
        // Deployments of earlier versions have no codes; the files themselves are compared as files.
        patches.push_back(patch.file + (patch.merged ? L" (merged)" : L"") +
                          (patch.file.IsEmpty() ? patch.code : CString()));
    }
    return patches;
}
