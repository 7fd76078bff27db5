// Any bytes as Deployment.xml: no crash, what is accepted names nothing outside of the deployment, and it reads back
// equal after it is written.
#include "base/guid_text.h"
#include "base/name_rules.h"
#include "builder/manifest_text.h"
#include "host/read_again.h"
#include "host/xml_values.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    CDeploymentFileReader reader;
    if (ReadXml(reinterpret_cast<const char*>(data), size, reader)) {
        return 0;
    }
    const DeploymentFile& file = reader.GetDeployment();
    if (!IsSafeFileName(file.strName) || CheckReadsAgain(file)) {
        std::abort();
    }
    for (const StoredProduct& product : file.products) {
        for (const StoredPatch& patch : product.patches) {
            const bool isKnown = IsBracedGuid(patch.code) && IsHashText(patch.sha256);
            if (patch.merged ? !isKnown : patch.file.IsEmpty()) {
                std::abort();
            }
            if (!patch.file.IsEmpty() && !IsSafeRelativePath(patch.file)) {
                std::abort();
            }
        }
    }
    return 0;
}
