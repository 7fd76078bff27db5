// Which texts of a plan are refused before anything is written, and the forms of codes, versions and names.
#include "builder/command_text.h"
#include "builder/plan_texts.h"
#include "builder/product_identity.h"
#include "builder/shown_text.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

BuildPlan FitPlan()
{
    BuildPlan plan;
    plan.strName = L"Office";
    plan.strLocation = L"\\\\?\\C:\\100% & ^!";
    plan.commands.strLogFolder = L"\\\\server\\logs & more";
    BuildDatabase database;
    database.strTarget = L"Image\\Zolt.msi";
    database.strProductName = L"Zolt\r\n\"";
    database.strProductVersion = L"27.0.0";
    database.strProductCode = L"{6F0C2A0C-9A3B-4D53-8B4A-0E2F5D0B7A11}";
    database.patchTargets = {L"Image\\ServicePacks\\sp 1.msp"};
    plan.databases = {database};
    return plan;
}

unsigned int CodeWith(const std::function<void(BuildPlan&)>& change)
{
    BuildPlan plan = FitPlan();
    change(plan);
    const BuildFailure failure = FindUnfitText(plan);
    EXPECT_EQ(failure.code != 0, !failure.message.IsEmpty());
    EXPECT_EQ(failure.message, ShownText(failure.message)) << "the message has more than a line";
    return failure.code;
}

} // namespace

TEST(PlanTexts, NamesOfAnyKindAreFit)
{
    EXPECT_EQ(CodeWith([](BuildPlan&) {}), 0u);
}

TEST(PlanTexts, AProductCodeThatIsNoGuidIsRefused)
{
    for (const wchar_t* code :
         {L"", L"{1}", L"6F0C2A0C-9A3B-4D53-8B4A-0E2F5D0B7A11",
          L"{6F0C2A0C-9A3B-4D53-8B4A-0E2F5D0B7A11} & calc", L"{6F0C2A0C-9A3B-4D53-8B4A-0E2F5D0B7A1\n}"}) {
        EXPECT_EQ(CodeWith([&](BuildPlan& plan) { plan.databases[0].strProductCode = code; }), 1620u)
            << Utf8(code);
    }
}

TEST(PlanTexts, AVersionThatIsNoneIsRefused)
{
    for (const wchar_t* version : {L"", L"27.", L"27.0.0 & calc", L"27\r\n"}) {
        EXPECT_EQ(CodeWith([&](BuildPlan& plan) { plan.databases[0].strProductVersion = version; }), 1620u)
            << Utf8(version);
    }
}

TEST(PlanTexts, AFolderWhoseCharactersNoPathHasIsRefused)
{
    for (const wchar_t* folder :
         {L"C:\\a\" & calc & \"", L"C:\\a\r\ncalc", L"C:\\a|b", L"C:\\a?", L"C:\\a*", L"C:\\<"}) {
        EXPECT_EQ(CodeWith([&](BuildPlan& plan) { plan.commands.strLogFolder = folder; }), 161u)
            << Utf8(folder);
        EXPECT_EQ(CodeWith([&](BuildPlan& plan) { plan.strLocation = folder; }), 161u) << Utf8(folder);
    }
}

TEST(PlanTexts, APatchThatCouldNotBeChainedIsRefused)
{
    for (const wchar_t* patch : {L"", L"Image\\a;b.msp", L"..\\a.msp", L"C:\\a.msp", L"Image\\a\".msp"}) {
        EXPECT_EQ(CodeWith([&](BuildPlan& plan) { plan.databases[0].patchTargets[0] = patch; }), 161u)
            << Utf8(patch);
    }
}

// The commands chain patches by their full paths.
TEST(PlanTexts, APlaceWithASemicolonIsRefusedForPatchesAlone)
{
    const auto inPlace = [](const wchar_t* location, const wchar_t* name, bool hasPatches) {
        return CodeWith([&](BuildPlan& plan) {
            plan.strLocation = location;
            plan.strName = name;
            if (!hasPatches) {
                plan.databases[0].patchTargets.clear();
            }
        });
    };
    EXPECT_EQ(inPlace(L"C:\\a;b", L"Office", true), 161u);
    EXPECT_EQ(inPlace(L"C:\\a", L"Office;1", true), 161u);
    EXPECT_EQ(inPlace(L"C:\\a;b", L"Office;1", false), 0u);
}

TEST(PlanTexts, OnlyDisplayOptionsOfTheInstallerAreFit)
{
    for (const wchar_t* option : {L"/qn", L"/qb-!", L"/QB+", L"/q", L"/qr", L"/qf"}) {
        EXPECT_TRUE(IsDisplayOption(option)) << Utf8(option);
    }
    for (const wchar_t* option : {L"", L"/", L"/qx", L"/qn ", L"/qn & calc", L"qn", L"/qn\n", L"/qb-!+-"}) {
        EXPECT_EQ(CodeWith([&](BuildPlan& plan) { plan.commands.strDisplay = option; }), 87u) << Utf8(option);
    }
}

TEST(ProductIdentity, AVersionIsOneToFourNumbers)
{
    for (const wchar_t* text : {L"0", L"27", L"27.0", L"27.0.1", L"27.0.1.4711", L"2027.0.0"}) {
        EXPECT_TRUE(IsInstallerVersion(text)) << Utf8(text);
    }
    for (const wchar_t* text :
         {L"", L".", L"1.", L".1", L"1..2", L"1.2.3.4.5", L"1a", L"-1", L" 1", L"1,2", L"1234567890"}) {
        EXPECT_FALSE(IsInstallerVersion(text)) << Utf8(text);
    }
}

TEST(ProductIdentity, TheInstallerHasRoomForSoMuchOfAVersion)
{
    for (const wchar_t* text : {L"27", L"255.255.65535", L"1.2.3.999999"}) {
        EXPECT_TRUE(IsVersionComparable(text)) << Utf8(text);
    }
    for (const wchar_t* text : {L"256", L"1.256", L"1.2.65536", L"2027.0.0", L"x"}) {
        EXPECT_FALSE(IsVersionComparable(text)) << Utf8(text);
    }
}

TEST(ShownTexts, OrdinaryLettersOfAllKindsStayAsTheyAre)
{
    const CString text = L"B\x00FCro \x4E2D \xD83D\xDE00 <U+000A> \"x\"";
    EXPECT_EQ(ShownText(text), text);
    EXPECT_EQ(PlainName(text), text);
}

TEST(ShownTexts, WhatHidesOrBreaksALineIsShownByItsCode)
{
    EXPECT_EQ(ShownText(CString(L"a\r\n\x85\x2028\x202E\xD800") + L"b\xDC00"),
              CString(L"a<U+000D><U+000A><U+0085><U+2028><U+202E><U+D800>b<U+DC00>"));
}

TEST(ShownTexts, AStoredNameHasBlanksInstead)
{
    EXPECT_EQ(PlainName(CString(L"\n a\r\nb\x2028\xD800 ")), CString(L"a  b"));
    EXPECT_EQ(PlainName(L"\r\n"), CString());
}
