// Whether a transform of a patch is for a product, by all that its summary information requires. No window header.
#pragma once

#include "builder/patch_chain.h"

// What a transform's summary information says of what it changes.
struct TransformTarget
{
    CString strCodes;       // property 9, see ReadTransformCodes
    CString strTemplate;    // property 7: "platform;language"
    unsigned int flags = 0; // property 16
};

// A product as its database tells it.
struct PatchedProduct
{
    CString strProductCode;
    CString strVersion;
    CString strUpgradeCode;
    CString strTemplate; // of the summary information
    CString strLanguage; // a number
};

// Why it isn't for that product, to follow after "it"; empty when it is.
[[nodiscard]] CString FindTransformMisfit(const TransformTarget& target, const PatchedProduct& product);
