#include "host/deployment_check.h"

#include "base/path_text.h"
#include "builder/deployment_verify.h"
#include "host/build_request.h"
#include "host/media.h"

#include <exception>

namespace {

CString ReadRecord(const CString& file, DeploymentRecord& record)
{
    DeploymentFile deployment;
    if (const OperationError error = ReadDeploymentFile(file, deployment)) {
        return error.message;
    }
    record.strProduct = deployment.strProductName + L" " + deployment.strProductVersion;
    record.commands = CommandsOf(deployment);
    for (const StoredProduct& product : deployment.products) {
        record.productCodes.push_back(product.strProductCode);
        for (const StoredPatch& patch : product.patches) {
            if (!patch.file.IsEmpty()) { // of one that was merged without its file nothing can be looked at
                record.patches.push_back(
                    {JoinFolder(IMAGE_FOLDER, patch.file), patch.code, patch.sha256, patch.merged});
            }
        }
    }
    return {};
}

} // namespace

void VerifyDeploymentFolder(const CString& folder, IBuildProgress& progress, VerifyResult& result) noexcept
{
    try {
        result = VerifyDeployment(folder, ReadRecord, progress);
    } catch (const std::exception&) {
        result = VerifyResult();
        result.unknown.push_back(L"There was not enough memory. Close other programs and try again.");
    }
}
