// For which versions of a product the transforms of patches are made, and in which order the patches lead from one version to
// the next. No window header.
#pragma once

#include "base/string.h"

#include <set>
#include <vector>

// One step of a patch, from the summary of its transform.
struct PatchTransform
{
    CString strProductCode; // of the product before it
    CString strOldVersion;
    CString strNewVersion;
    unsigned int conditions =
        0; // what must hold of the product: bits of the installer's MSITRANSFORM_VALIDATE
};

// `codes`: the text `{product}version;{product}version;{upgrade}` of the summary's property 9. `flags`: its property 16,
// whose upper half holds the conditions. False for a text of another form.
[[nodiscard]] bool ReadTransformCodes(const CString& codes, unsigned int flags, PatchTransform& transform);

// True when the installer would apply the transform to a product of that code and version. Language, platform and upgrade
// code are left to the installer.
[[nodiscard]] bool FitsProduct(const PatchTransform& transform, const CString& productCode,
                               const CString& version);

// The versions of that product that they are made for, each once; empty when they are made for other products.
[[nodiscard]] std::vector<CString> VersionsMadeFor(const std::vector<PatchTransform>& patch,
                                                   const CString& productCode);

struct PatchChain
{
    // Indexes of the patches: each behind those that lead to the version that it is made for; otherwise as they were.
    std::vector<std::size_t> order;
    // Those that are for no version that the product has or gets from the others. A patch without transforms is none of
    // them: nothing is known of it.
    std::vector<std::size_t> unfit;
    CString strVersion; // of the product, once each that follows on the one before has been applied
};
// `patches`: the transforms of each. `replaced`: indexes of those that another one stands in for; they come last, as one that
// was applied before could keep the newer one out.
[[nodiscard]] PatchChain ChainPatches(const std::vector<std::vector<PatchTransform>>& patches,
                                      const CString& productCode, const CString& version,
                                      const std::set<std::size_t>& replaced = {});
