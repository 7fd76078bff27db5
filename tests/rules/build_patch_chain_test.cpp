// Which patches fit a product, by the versions that their transforms are made for.
#include "builder/patch_chain.h"

#include <gtest/gtest.h>

namespace {

constexpr const wchar_t* CODE = L"{11111111-2222-3333-4444-555555555555}";
constexpr const wchar_t* OTHER_CODE = L"{11111111-2222-3333-4444-666666666666}";
constexpr unsigned int EXACT = 0x0927; // language, product, platform, three numbers, equal, upgrade code

PatchTransform Step(const wchar_t* from, const wchar_t* to, unsigned int conditions = EXACT)
{
    return {CODE, from, to, conditions};
}

using Patches = std::vector<std::vector<PatchTransform>>;
using Indexes = std::vector<std::size_t>;

CString CodesText(const wchar_t* from, const wchar_t* to)
{
    return CString(CODE) + from + L";" + CODE + to + L";{11111111-2222-3333-4444-777777777777}";
}

} // namespace

TEST(PatchTransformTest, CodesVersionsAndConditionsAreRead)
{
    PatchTransform transform;
    ASSERT_TRUE(ReadTransformCodes(CodesText(L"1.0.0", L"1.0.1"), 0x0927003F, transform));
    EXPECT_EQ(transform.strProductCode, CString(CODE));
    EXPECT_EQ(transform.strOldVersion, CString(L"1.0.0"));
    EXPECT_EQ(transform.strNewVersion, CString(L"1.0.1"));
    EXPECT_EQ(transform.conditions, EXACT);
    EXPECT_TRUE(ReadTransformCodes(CString(CODE) + L"1;" + CODE + L"2", 0, transform))
        << "without an upgrade code";
}

TEST(PatchTransformTest, ATextOfAnotherFormIsNotRead)
{
    PatchTransform transform;
    const CString code = CODE;
    for (const CString& text :
         {CString(), CString(L";"), code, code + L"1.0.0", code + L"1.0.0;", code + L"1.0.0;" + code,
          code + L";" + code + L"1.0.1", code + L"1.0.0;1.0.1", L"1.0.0;" + code + L"1.0.1",
          code + L"one;" + code + L"1.0.1", code + L"1.0.0;" + code + L"1.0.x"}) {
        EXPECT_FALSE(ReadTransformCodes(text, 0x09270000, transform)) << text.GetLength();
    }
}

TEST(PatchTransformTest, OnlyTheVersionsOfTheProductItselfAreNamedAndEachOnce)
{
    const PatchTransform other{OTHER_CODE, L"9.0.0", L"9.0.1", EXACT};
    EXPECT_EQ(
        VersionsMadeFor({other, Step(L"1.0.0", L"1.0.2"), Step(L"1.0.1", L"1.0.2"), Step(L"1.0.0", L"1.0.3")},
                        CODE),
        (std::vector<CString>{L"1.0.0", L"1.0.1"}));
    EXPECT_TRUE(VersionsMadeFor({other}, CODE).empty());
}

TEST(PatchTransformTest, EachConditionIsLookedAtAndNoOther)
{
    const struct
    {
        unsigned int conditions;
        const wchar_t* code;
        const wchar_t* version; // of the product; the transform is made for 2.5.7
        bool fits;
    } ROWS[] = {
        {0x0, OTHER_CODE, L"9.9.9", true},  {0x2, CODE, L"9.9.9", true},
        {0x2, OTHER_CODE, L"2.5.7", false}, {0x108, CODE, L"2.9.9", true},
        {0x108, CODE, L"3.5.7", false},     {0x110, CODE, L"2.5.9", true},
        {0x110, CODE, L"2.6.7", false},     {0x120, CODE, L"2.5.7", true},
        {0x120, CODE, L"2.5.7.8", true},    {0x120, CODE, L"2.05.07", true},
        {0x120, CODE, L"2.5.8", false},     {0x120, CODE, L"2.5", false},
        {0x60, CODE, L"2.5.6", true},       {0x60, CODE, L"2.5.7", false},
        {0xA0, CODE, L"2.5.7", true},       {0xA0, CODE, L"2.5.10", false},
        {0x220, CODE, L"2.5.10", true},     {0x220, CODE, L"2.5.7", true},
        {0x220, CODE, L"2.5.6", false},     {0x420, CODE, L"2.5.10", true},
        {0x420, CODE, L"2.5.7", false},     {0x20, CODE, L"9.9.9", true}, // numbers that nothing compares
        {0x100, CODE, L"9.9.9", true},                                    // a comparison of no numbers
        {EXACT, CODE, L"2.5.7", true},      {EXACT, OTHER_CODE, L"2.5.7", false},
        {EXACT, CODE, L"2.5.8", false},
    };
    for (const auto& row : ROWS) {
        EXPECT_EQ(FitsProduct(Step(L"2.5.7", L"3.0.0", row.conditions), row.code, row.version), row.fits)
            << std::hex << row.conditions;
    }
    PatchTransform lower = Step(L"2.5.7", L"3.0.0");
    lower.strProductCode.MakeLower();
    EXPECT_TRUE(FitsProduct(lower, CODE, L"2.5.7"));
}

TEST(PatchChainTest, PatchesFollowOnTheVersionsThatTheyLeadTo)
{
    const PatchChain chain = ChainPatches(
        {{Step(L"1.0.2", L"1.0.3")}, {Step(L"1.0.0", L"1.0.1")}, {Step(L"1.0.1", L"1.0.2")}}, CODE, L"1.0.0");
    EXPECT_EQ(chain.order, (Indexes{1, 2, 0}));
    EXPECT_EQ(chain.unfit, Indexes());
    EXPECT_EQ(chain.strVersion, CString(L"1.0.3"));
}

TEST(PatchChainTest, PatchesThatKeepTheVersionStayInTheirOrder)
{
    const Patches patches = {
        {Step(L"1.0.0", L"1.0.0")}, {Step(L"1.0.0", L"1.0.0")}, {Step(L"1.0.0", L"1.0.0")}};
    const PatchChain chain = ChainPatches(patches, CODE, L"1.0.0");
    EXPECT_EQ(chain.order, (Indexes{0, 1, 2}));
    EXPECT_EQ(chain.strVersion, CString(L"1.0.0"));
}

// Behind one that raises the version it would be skipped, without a word.
TEST(PatchChainTest, APatchThatKeepsTheVersionComesBeforeOneThatRaisesIt)
{
    const PatchChain chain = ChainPatches({{Step(L"1.0.0", L"1.0.1")},
                                           {Step(L"1.0.1", L"1.0.2")},
                                           {Step(L"1.0.1", L"1.0.1")},
                                           {Step(L"1.0.0", L"1.0.0")}},
                                          CODE, L"1.0.0");
    EXPECT_EQ(chain.order, (Indexes{3, 0, 2, 1}));
    EXPECT_EQ(chain.unfit, Indexes());
    EXPECT_EQ(chain.strVersion, CString(L"1.0.2"));
}

TEST(PatchChainTest, APatchForAVersionThatNothingLeadsToIsUnfit)
{
    const PatchChain chain =
        ChainPatches({{Step(L"1.0.1", L"1.0.2")}, {Step(L"1.0.0", L"1.0.0")}}, CODE, L"1.0.0");
    EXPECT_EQ(chain.unfit, Indexes{0});
    EXPECT_EQ(chain.order, (Indexes{1, 0}));
    EXPECT_EQ(chain.strVersion, CString(L"1.0.0"));
}

TEST(PatchChainTest, OneOfSeveralTransformsIsEnough)
{
    const PatchChain chain =
        ChainPatches({{Step(L"0.9.0", L"1.0.2"), Step(L"1.0.0", L"1.0.2")}}, CODE, L"1.0.0");
    EXPECT_EQ(chain.unfit, Indexes());
    EXPECT_EQ(chain.strVersion, CString(L"1.0.2"));
}

// One of them is needless, which is the installer's to find out.
TEST(PatchChainTest, APatchBesideTheOneThatReplacesItIsNotUnfit)
{
    const PatchChain chain = ChainPatches(
        {{Step(L"1.0.0", L"1.0.2")}, {Step(L"1.0.0", L"1.0.1")}, {Step(L"1.0.1", L"1.0.2")}}, CODE, L"1.0.0");
    EXPECT_EQ(chain.unfit, Indexes());
    EXPECT_EQ(chain.order, (Indexes{0, 1, 2}));
    EXPECT_EQ(chain.strVersion, CString(L"1.0.2"));
}

TEST(PatchChainTest, APatchThatAnotherOneStandsInForComesBehindIt)
{
    const Patches patches = {{Step(L"1.0.0", L"1.0.1")}, {Step(L"1.0.0", L"1.0.3")}};
    const PatchChain chain = ChainPatches(patches, CODE, L"1.0.0", {0});
    EXPECT_EQ(chain.order, (Indexes{1, 0}));
    EXPECT_EQ(chain.unfit, Indexes());
    EXPECT_EQ(chain.strVersion, CString(L"1.0.3"));
    EXPECT_EQ(ChainPatches(patches, CODE, L"1.0.0").strVersion, CString(L"1.0.1"));
    EXPECT_EQ(ChainPatches(patches, CODE, L"1.0.0", {0, 1}).order, (Indexes{0, 1})) << "each for the other";
}

TEST(PatchChainTest, OfAPatchWithoutTransformsNothingIsSaid)
{
    const PatchChain chain = ChainPatches({{}, {Step(L"1.0.0", L"1.0.1")}, {}}, CODE, L"1.0.0");
    EXPECT_EQ(chain.unfit, Indexes());
    EXPECT_EQ(chain.order, (Indexes{0, 2, 1}));
    EXPECT_EQ(chain.strVersion, CString(L"1.0.1"));
}

TEST(PatchChainTest, NoPatchesLeaveTheVersionAsItIs)
{
    const PatchChain chain = ChainPatches({}, CODE, L"27.0.1");
    EXPECT_EQ(chain.order, Indexes());
    EXPECT_EQ(chain.strVersion, CString(L"27.0.1"));
}
