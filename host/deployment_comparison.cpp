#include "host/deployment_comparison.h"

#include "base/files.h"
#include "builder/build_failure.h"
#include "builder/deployment_compare.h"
#include "builder/deployment_place.h"
#include "host/compared_settings.h"
#include "host/host_messages.h"
#include "host/media.h"
#include "host/silent_installer.h"
#include "host/system_reason.h"

#include <exception>

namespace {

// A product of the image that the deployment's file doesn't name, and that isn't there, is none of the deployment's.
void AddProduct(const ImageProduct& product, const DeploymentFile& file, ComparedDeployment& deployment)
{
    const StoredProduct* const stored = file.FindProduct(product.strCode);
    ComparedProduct compared;
    compared.strCode = product.strCode;
    compared.strName = product.strName;
    compared.strDatabase = CString(IMAGE_FOLDER) + L"\\" + product.strDatabase;
    if (stored) {
        compared.settings = DescribeSettings(*stored);
        compared.patches = DescribePatches(*stored);
        for (const StoredAddedFile& added : stored->addedFiles) {
            compared.sources[added.component] = added.source;
        }
    } else if (!IsFile(FolderPath(deployment.strFolder) + compared.strDatabase)) {
        return;
    }
    deployment.products.push_back(std::move(compared));
}

OperationError ReadDeployment(const CString& folder, ComparedDeployment& deployment)
{
    const CString path = FolderPath(folder);
    if (!IsFile(path + DEPLOYMENT_FILE)) {
        return {ERROR_FILE_NOT_FOUND, HostSentence(HostText::NoDeploymentToCompare, {folder})};
    }
    DeploymentFile file;
    if (OperationError error = ReadDeploymentFile(path + DEPLOYMENT_FILE, file)) {
        return error;
    }
    SetupDescription image;
    if (OperationError error = ReadSetupFile(path + IMAGE_FOLDER + L"\\" + SETUP_FILE, image)) {
        return error;
    }
    deployment.strFolder = folder;
    deployment.settings = DescribeSettings(file);
    for (const ImageProduct& product : ListImageProducts(image, file.platform)) {
        AddProduct(product, file, deployment);
    }
    return {};
}

std::vector<ComparedProductName> NamesOf(const ComparedDeployment& deployment)
{
    std::vector<ComparedProductName> names;
    for (const ComparedProduct& product : deployment.products) {
        names.push_back({product.strCode, product.strName});
    }
    return names;
}

OperationError Compare(const CString& first, const CString& second, TwoDeployments& compared)
{
    const CSilentInstaller silent;
    ComparedDeployment left;
    ComparedDeployment right;
    if (OperationError error = ReadDeployment(first, left)) {
        return error;
    }
    if (OperationError error = ReadDeployment(second, right)) {
        return error;
    }
    compared = {NamesOf(left), NamesOf(right), CompareDeployments(left, right, [] {})};
    return {};
}

} // namespace

bool CompareTwoDeployments(const CString& first, const CString& second, TwoDeployments& compared,
                           OperationError& error)
{
    try {
        error = Compare(first, second, compared);
    } catch (const BuildFailure& failure) {
        error = {failure.code, failure.message};
    } catch (const std::exception&) {
        error = {ERROR_OUTOFMEMORY, SystemReason(ERROR_OUTOFMEMORY)};
    }
    return !error;
}
