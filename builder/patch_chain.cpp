#include "builder/patch_chain.h"

#include "base/guid_text.h"
#include "base/number_text.h"
#include "builder/product_identity.h"

#include <algorithm>
#include <array>
#include <list>

namespace {

constexpr int GUID_UNITS = 38; // with braces

// Of the installer's header, which the native build lacks.
constexpr unsigned int SAME_PRODUCT = 0x2;
constexpr unsigned int COUNTS_MAJOR = 0x8;
constexpr unsigned int COUNTS_MINOR = 0x10;
constexpr unsigned int COUNTS_UPDATE = 0x20;
constexpr unsigned int IS_LESS = 0x40; // the product's version, compared with that of the transform
constexpr unsigned int IS_LESS_OR_EQUAL = 0x80;
constexpr unsigned int IS_EQUAL = 0x100;
constexpr unsigned int IS_GREATER_OR_EQUAL = 0x200;
constexpr unsigned int IS_GREATER = 0x400;

using Version = std::array<long long, 3>; // the installer counts three numbers

Version NumbersOf(const CString& text, std::size_t count)
{
    Version version = {};
    int start = 0;
    for (std::size_t index = 0; index < count && start <= text.GetLength(); ++index) {
        const int dot = text.Find(L'.', start);
        const int end = dot < 0 ? text.GetLength() : dot;
        version[index] = ReadWholeNumber(text.Mid(start, end - start), 0, 999999999).value_or(0);
        start = end + 1;
    }
    return version;
}

bool FitsCode(const PatchTransform& transform, const CString& productCode)
{
    return (transform.conditions & SAME_PRODUCT) == 0 ||
           transform.strProductCode.CompareNoCase(productCode) == 0;
}

bool FitsVersion(const PatchTransform& transform, const CString& version)
{
    const std::size_t count = transform.conditions & COUNTS_UPDATE  ? 3
                              : transform.conditions & COUNTS_MINOR ? 2
                              : transform.conditions & COUNTS_MAJOR ? 1
                                                                    : 0;
    if (count == 0) {
        return true;
    }
    const Version own = NumbersOf(version, count);
    const Version base = NumbersOf(transform.strOldVersion, count);
    const struct
    {
        unsigned int condition;
        bool holds;
    } comparisons[] = {
        {IS_LESS, own < base},    {IS_LESS_OR_EQUAL, own <= base},    {IS_EQUAL, own == base},
        {IS_GREATER, own > base}, {IS_GREATER_OR_EQUAL, own >= base},
    };
    return std::all_of(std::begin(comparisons), std::end(comparisons), [&](const auto& comparison) {
        return (transform.conditions & comparison.condition) == 0 || comparison.holds;
    });
}

const PatchTransform* FindFitting(const std::vector<PatchTransform>& patch, const CString& code,
                                  const CString& version)
{
    const auto fitting = std::find_if(patch.begin(), patch.end(), [&](const PatchTransform& transform) {
        return FitsProduct(transform, code, version);
    });
    return fitting == patch.end() ? nullptr : &*fitting;
}

} // namespace

bool ReadTransformCodes(const CString& codes, unsigned int flags, PatchTransform& transform)
{
    const int first = codes.Find(L';');
    if (first < 0) {
        return false;
    }
    const int second = codes.Find(L';', first + 1);
    const CString before = codes.Left(first);
    const CString after = codes.Mid(first + 1, (second < 0 ? codes.GetLength() : second) - first - 1);
    transform.strProductCode = before.Left(GUID_UNITS);
    transform.strOldVersion = before.Mid(GUID_UNITS);
    transform.strNewVersion = after.Mid(GUID_UNITS);
    transform.conditions = flags >> 16;
    return IsBracedGuid(transform.strProductCode) && IsBracedGuid(after.Left(GUID_UNITS)) &&
           IsInstallerVersion(transform.strOldVersion) && IsInstallerVersion(transform.strNewVersion);
}

bool FitsProduct(const PatchTransform& transform, const CString& productCode, const CString& version)
{
    return FitsCode(transform, productCode) && FitsVersion(transform, version);
}

std::vector<CString> VersionsMadeFor(const std::vector<PatchTransform>& patch, const CString& productCode)
{
    std::vector<CString> versions;
    for (const PatchTransform& transform : patch) {
        if (FitsCode(transform, productCode) &&
            std::find(versions.begin(), versions.end(), transform.strOldVersion) == versions.end()) {
            versions.push_back(transform.strOldVersion);
        }
    }
    return versions;
}

PatchChain ChainPatches(const std::vector<std::vector<PatchTransform>>& patches, const CString& productCode,
                        const CString& version, const std::set<std::size_t>& replaced)
{
    PatchChain chain;
    std::list<std::size_t> left;
    for (std::size_t index = 0; index < patches.size(); ++index) {
        left.push_back(index);
    }
    std::vector<CString> versions{version}; // all that the product has on the way
    const auto placeNext = [&](const auto& findStep, const std::set<std::size_t>& passedOver) {
        for (auto next = left.begin(); next != left.end(); ++next) {
            if (passedOver.count(*next) != 0) {
                continue;
            }
            const PatchTransform* const step = findStep(patches[*next]);
            if (step || patches[*next].empty()) {
                versions.push_back(step ? step->strNewVersion : CString(versions.back()));
                chain.order.push_back(*next);
                left.erase(next);
                return true;
            }
        }
        return false;
    };
    const auto findNext = [&](const auto& patch) { return FindFitting(patch, productCode, versions.back()); };
    const auto findKeeping = [&](const auto& patch) {
        const PatchTransform* const step = findNext(patch);
        return step && step->strNewVersion == versions.back() ? step : nullptr;
    };
    // Those that keep the version come first: behind one that raises it they would fit no more.
    while (placeNext(findKeeping, replaced) || placeNext(findNext, replaced)) {
    }
    chain.strVersion = versions.back();
    // What fits a version on the way is needless beside another one, or the other way round: the installer sorts it out.
    const auto findOnTheWay = [&](const auto& patch) {
        const PatchTransform* step = nullptr;
        for (const CString& reached : versions) {
            step = step ? step : FindFitting(patch, productCode, reached);
        }
        return step;
    };
    while (placeNext(findOnTheWay, {})) {
    }
    chain.unfit.assign(left.begin(), left.end());
    chain.order.insert(chain.order.end(), left.begin(), left.end());
    return chain;
}
