#include "builder/transform_fit.h"

#include "base/number_text.h"
#include "builder/shown_text.h"

#include <array>

namespace {

constexpr int CODE_LENGTH = 38;
constexpr std::uint64_t MOST_IN_VERSION = 999'999'999;

// The part between separators, from 0 on; empty behind the last.
CString PartOf(const CString& text, wchar_t separator, int number)
{
    int start = 0;
    for (; number > 0 && start >= 0; --number) {
        start = text.Find(separator, start) + 1;
        if (start == 0) {
            return {};
        }
    }
    const int end = text.Find(separator, start);
    return end < 0 ? text.Mid(start) : text.Mid(start, end - start);
}

using Version = std::array<std::uint64_t, 3>;

// What isn't there counts as 0.
Version ReadVersion(const CString& text)
{
    Version version = {};
    int index = 0;
    for (std::uint64_t& number : version) {
        number = ReadDigits(text, index, MOST_IN_VERSION);
        if (index < text.GetLength() && text[index] == L'.') {
            ++index;
        }
    }
    return version;
}

std::size_t NumbersToCompare(unsigned int requirements)
{
    return requirements & REQUIRE_UPDATE_VERSION  ? 3
           : requirements & REQUIRE_MINOR_VERSION ? 2
           : requirements & REQUIRE_MAJOR_VERSION ? 1
                                                  : 0;
}

// Of the product's version to the one that the transform starts from.
bool IsVersionMet(unsigned int requirements, const CString& productVersion, const CString& baseVersion)
{
    Version product = ReadVersion(productVersion);
    Version base = ReadVersion(baseVersion);
    for (std::size_t index = NumbersToCompare(requirements); index < product.size(); ++index) {
        product[index] = base[index] = 0;
    }
    return !((requirements & REQUIRE_LOWER && !(product < base)) ||
             (requirements & REQUIRE_LOWER_OR_EQUAL && !(product <= base)) ||
             (requirements & REQUIRE_EQUAL && !(product == base)) ||
             (requirements & REQUIRE_HIGHER_OR_EQUAL && !(product >= base)) ||
             (requirements & REQUIRE_HIGHER && !(product > base)));
}

// An empty platform is the 32-bit one.
CString PlatformOf(const CString& summaryTemplate)
{
    const CString platform = PartOf(PartOf(summaryTemplate, L';', 0), L',', 0);
    return platform.IsEmpty() ? CString(L"Intel") : platform;
}

} // namespace

CString ProductOfTransform(const TransformTarget& target)
{
    const CString code = target.strCodes.Left(CODE_LENGTH);
    return code.GetLength() == CODE_LENGTH && code[0] == L'{' && code[CODE_LENGTH - 1] == L'}' ? code
                                                                                               : CString();
}

CString FindTransformMisfit(const TransformTarget& target, const PatchedProduct& product)
{
    const unsigned int requirements = target.requirements;
    const CString base = PartOf(target.strCodes, L';', 0);
    const CString code = ProductOfTransform(target);
    if (requirements & REQUIRE_PRODUCT && code.CompareNoCase(product.strProductCode) != 0) {
        return L"is for the product " + ShownText(code.IsEmpty() ? CString(L"(none)") : code);
    }
    const CString version = base.Mid(CODE_LENGTH);
    if (NumbersToCompare(requirements) > 0 && !IsVersionMet(requirements, product.strVersion, version)) {
        return L"is for version " + ShownText(version) + L", and the product has version " +
               ShownText(product.strVersion);
    }
    if (requirements & REQUIRE_UPGRADE_CODE &&
        PartOf(target.strCodes, L';', 2).CompareNoCase(product.strUpgradeCode) != 0) {
        return L"is for products of another upgrade code than " + ShownText(product.strUpgradeCode);
    }
    if (requirements & REQUIRE_PLATFORM &&
        PlatformOf(target.strTemplate).CompareNoCase(PlatformOf(product.strTemplate)) != 0) {
        return L"is for the platform " + ShownText(PlatformOf(target.strTemplate));
    }
    const CString language = PartOf(PartOf(target.strTemplate, L';', 1), L',', 0);
    if (requirements & REQUIRE_LANGUAGE && !(language == product.strLanguage)) {
        return L"is for the language " + ShownText(language);
    }
    return {};
}
