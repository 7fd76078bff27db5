#include "pages/begin_deployment_rules.h"

#include "frame/path_rules.h"
#include "include/resource_ids.h"

#include <algorithm>

namespace {

constexpr int PATH_LIMIT = 259;
constexpr int SEPARATORS = 4; // room for the backslashes between the parts, whether they bring theirs or not

} // namespace

bool ArePathsShortEnough(const PathLengths& lengths, const std::vector<ProductPathLengths>& products)
{
    const int base = lengths.location + lengths.name + lengths.imageFolder + lengths.imageSuffix + SEPARATORS;
    if (lengths.mediaFile + base - lengths.resourceFolder + 1 >= PATH_LIMIT) {
        return false;
    }
    return std::all_of(products.begin(), products.end(), [base](const ProductPathLengths& product) {
        return product.msiFile + base + product.folder + 1 < PATH_LIMIT;
    });
}

BeginLayout LayoutFor(bool hasDeployments, Setup::tagSETUPMODE mode)
{
    if (!hasDeployments) {
        return BeginLayout::Plain;
    }
    switch (mode) {
    case Setup::SETUPMODE_CREATE_DEPLOYMENT:
        return BeginLayout::Create;
    case Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT:
        return BeginLayout::CreateFrom;
    case Setup::SETUPMODE_MODIFY_DEPLOYMENT:
        return BeginLayout::Modify;
    default:
        return BeginLayout::None;
    }
}

bool IsChoiceComplete(BeginLayout layout, bool hasSelection, const CString& location, const CString& name)
{
    if (layout == BeginLayout::None) {
        return false; // nobody sees what would be stored
    }
    const bool needsSelection = layout == BeginLayout::CreateFrom || layout == BeginLayout::Modify;
    return (hasSelection || !needsSelection) && !location.IsEmpty() && !name.IsEmpty();
}

CString FindDeploymentName(const std::vector<CString>& names, const CString& name)
{
    if (names.empty()) {
        return CString();
    }
    const auto found = std::find_if(names.begin(), names.end(),
                                    [&name](const CString& other) { return other.CompareNoCase(name) == 0; });
    return name.IsEmpty() || found == names.end() ? names.front() : *found;
}

bool IsDeploymentNameValid(const CString& name)
{
    return !name.IsEmpty() && name.Find(L';') < 0 && IsValidFileName(name);
}

bool IsLocationUsable(PathCheckResult result)
{
    return result == PCR_OK || result == PCR_NOT_EMPTY || result == PCR_IS_ROOT;
}

unsigned int LocationErrorId(PathCheckResult result)
{
    switch (result) {
    case PCR_EMPTY:
        return IDS_LOCATION_MISSING;
    case PCR_ACCESS_DENIED:
        return IDS_LOCATION_ACCESS_DENIED;
    default:
        return IDS_LOCATION_UNUSABLE;
    }
}
