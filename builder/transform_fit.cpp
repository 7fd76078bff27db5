#include "builder/transform_fit.h"

#include "builder/shown_text.h"

namespace {

// The installer's MSITRANSFORM_VALIDATE; patch_chain.h looks at the product and its version.
constexpr unsigned int SAME_LANGUAGE = 0x1;
constexpr unsigned int SAME_PLATFORM = 0x4;
constexpr unsigned int SAME_UPGRADE_CODE = 0x800;

// The part between separators, from 0 on; empty behind the last.
CString PartOf(const CString& text, wchar_t separator, int number)
{
    int start = 0;
    for (; number > 0; --number) {
        start = text.Find(separator, start) + 1;
        if (start == 0) {
            return {};
        }
    }
    const int end = text.Find(separator, start);
    return end < 0 ? text.Mid(start) : text.Mid(start, end - start);
}

// An empty platform is the 32-bit one.
CString PlatformOf(const CString& summaryTemplate)
{
    const CString platform = PartOf(PartOf(summaryTemplate, L';', 0), L',', 0);
    return platform.IsEmpty() ? CString(L"Intel") : platform;
}

} // namespace

CString FindTransformMisfit(const TransformTarget& target, const PatchedProduct& product)
{
    PatchTransform transform;
    if (!ReadTransformCodes(target.strCodes, target.flags, transform)) {
        return L"doesn't say for which product and version its changes are";
    }
    const unsigned int conditions = transform.conditions;
    if (!FitsProduct(transform, product.strProductCode, product.strVersion)) {
        return FitsProduct(transform, transform.strProductCode, product.strVersion)
                   ? L"is for the product " + ShownText(transform.strProductCode)
                   : L"is for version " + ShownText(transform.strOldVersion) +
                         L", and the product has version " + ShownText(product.strVersion);
    }
    if (conditions & SAME_UPGRADE_CODE &&
        PartOf(target.strCodes, L';', 2).CompareNoCase(product.strUpgradeCode) != 0) {
        return L"is for products of another upgrade code than " + ShownText(product.strUpgradeCode);
    }
    const CString platform = PlatformOf(target.strTemplate);
    if (conditions & SAME_PLATFORM && platform.CompareNoCase(PlatformOf(product.strTemplate)) != 0) {
        return L"is for the platform " + ShownText(platform);
    }
    const CString language = PartOf(PartOf(target.strTemplate, L';', 1), L',', 0);
    if (conditions & SAME_LANGUAGE && !(language == product.strLanguage)) {
        return L"is for the language " + ShownText(language);
    }
    return {};
}
