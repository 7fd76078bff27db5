// Any text as the codes of transforms, a line each: no crash, what is accepted has the form of codes and versions, and each
// patch has one place in the chain.
#include "builder/patch_chain.h"
#include "base/guid_text.h"
#include "builder/product_identity.h"
#include "fuzz/wide_input.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    constexpr std::size_t MOST_PATCHES = 20;
    std::vector<std::vector<PatchTransform>> patches;
    CString rest = WideInput(data, size);
    while (!rest.IsEmpty() && patches.size() < MOST_PATCHES) {
        const CString line = FirstLine(rest, rest);
        PatchTransform transform;
        std::vector<PatchTransform> patch;
        // The first unit stands for the conditions.
        if (ReadTransformCodes(line.Mid(1), static_cast<unsigned int>(line[0]) << 16, transform)) {
            if (!IsBracedGuid(transform.strProductCode) || !IsInstallerVersion(transform.strOldVersion) ||
                !IsInstallerVersion(transform.strNewVersion)) {
                std::abort();
            }
            patch.push_back(transform);
        }
        patches.push_back(patch);
    }
    const PatchChain chain =
        ChainPatches(patches, L"{11111111-2222-3333-4444-555555555555}", L"1.0.0", {0, 2});
    const std::set<std::size_t> placed(chain.order.begin(), chain.order.end());
    if (placed.size() != patches.size() || chain.order.size() != patches.size() ||
        chain.unfit.size() > patches.size()) {
        std::abort();
    }
    return 0;
}
