// For which product the changes of a patch are.
#include "builder/transform_fit.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

namespace {

const wchar_t g_code[] = L"{7C1E0000-2B5D-4E0C-9D41-3A6F00000000}";
const wchar_t g_upgrade[] = L"{7C1E0000-2B5D-4E0C-9D41-3A6F000000AA}";
constexpr unsigned int ALL = 0x09270000; // what patches require as a rule

TransformTarget Target(const CString& version = L"1.0.0", unsigned int flags = ALL)
{
    return {CString(g_code) + version + L";" + g_code + L"1.0.1;" + g_upgrade, L"x64;1033", flags};
}

PatchedProduct Product()
{
    return {g_code, L"1.0.0", g_upgrade, L"x64;1033,0", L"1033"};
}

} // namespace

TEST(TransformFit, FitsTheProductThatItWasMadeFor)
{
    EXPECT_EQ(Utf8(FindTransformMisfit(Target(), Product())), "");
}

TEST(TransformFit, TellsTheVersionsThatDiffer)
{
    EXPECT_EQ(FindTransformMisfit(Target(L"1.0.2"), Product()),
              L"is for version 1.0.2, and the product has version 1.0.0");
}

TEST(TransformFit, TellsAnotherProduct)
{
    PatchedProduct product = Product();
    product.strProductCode = g_upgrade;
    EXPECT_EQ(FindTransformMisfit(Target(), product), CString(L"is for the product ") + g_code);
}

TEST(TransformFit, TellsAnotherUpgradeCode)
{
    PatchedProduct product = Product();
    product.strUpgradeCode = g_code;
    EXPECT_EQ(FindTransformMisfit(Target(), product),
              CString(L"is for products of another upgrade code than ") + g_code);
}

TEST(TransformFit, TellsAnotherPlatform)
{
    PatchedProduct product = Product();
    product.strTemplate = L"Intel;1033";
    EXPECT_EQ(FindTransformMisfit(Target(), product), L"is for the platform x64");
    product.strTemplate = L";1033";
    TransformTarget target = Target();
    target.strTemplate = L"Intel;1033";
    EXPECT_EQ(Utf8(FindTransformMisfit(target, product)), "") << "no platform is the 32-bit one";
}

TEST(TransformFit, TellsAnotherLanguage)
{
    PatchedProduct product = Product();
    product.strLanguage = L"1031";
    EXPECT_EQ(FindTransformMisfit(Target(), product), L"is for the language 1033");
}

TEST(TransformFit, RequiresNothingThatItsFlagsDoNotName)
{
    const PatchedProduct other = {g_upgrade, L"9.9.9", g_code, L"Intel;1031", L"1031"};
    EXPECT_EQ(Utf8(FindTransformMisfit(Target(L"1.0.0", 0), other)), "");
}

TEST(TransformFit, RefusesCodesOfAnotherForm)
{
    TransformTarget target = Target();
    for (const wchar_t* codes : {L"", L";", L"1.0.0;1.0.1", L"{}1;{}2;{}"}) {
        target.strCodes = codes;
        EXPECT_EQ(FindTransformMisfit(target, Product()),
                  L"doesn't say for which product and version its changes are")
            << Utf8(codes);
    }
}
