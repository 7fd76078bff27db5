// A deployment's file and its image's description as a comparison needs them. No window header.
#pragma once

#include "builder/compare_rules.h"
#include "host/deployment_file.h"
#include "host/setup_description.h"

// A product of the image.
struct ImageProduct
{
    CString strCode;
    CString strName;
    CString strDatabase; // relative to the image
};
// In the order in which they are installed, language packs behind their product.
[[nodiscard]] std::vector<ImageProduct> ListImageProducts(const SetupDescription& image, int platform);

// By the names that they have in the file. Without the deployment's name, nor that of the deployment that it was made from.
[[nodiscard]] NamedValues DescribeSettings(const DeploymentFile& file);
// Without the place where a patch was downloaded to.
[[nodiscard]] NamedValues DescribeSettings(const StoredProduct& product);
[[nodiscard]] std::vector<CString> DescribePatches(const StoredProduct& product);
