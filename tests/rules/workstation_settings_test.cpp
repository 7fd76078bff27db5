#include "tests/support/text.h"
#include "workstation/workstation_settings_rules.h"

#include <gtest/gtest.h>

namespace {

struct Reading
{
    const wchar_t* value;
    bool on;
};

void ExpectReadings(const WorkstationSwitch& setting, std::initializer_list<Reading> readings)
{
    for (const Reading& reading : readings) {
        EXPECT_EQ(IsSwitchedOn(setting, reading.value), reading.on)
            << Utf8(setting.property) << " \"" << Utf8(reading.value) << '"';
    }
}

} // namespace

// ---- properties

TEST(WorkstationSwitchTest, TheDesktopShortcutIsOnWhenEmptyOrOne)
{
    ExpectReadings(DESKTOP_SHORTCUT, {{L"", true},
                                      {L"1", true},
                                      {L"0", false},
                                      {L"#1", false},
                                      {L"11", false},
                                      {L" 1", false},
                                      {L"yes", false}});
}

TEST(WorkstationSwitchTest, TheBrowserIsRequiredWhenEmptyOrOne)
{
    ExpectReadings(
        BROWSER_REQUIRED,
        {{L"", true}, {L"1", true}, {L"0", false}, {L"#1", false}, {L"1 ", false}, {L"TRUE", false}});
}

TEST(WorkstationSwitchTest, TheSheetFormatIsOnWhenEmptyOrOneWithItsMark)
{
    ExpectReadings(
        SHEET_FORMAT,
        {{L"", true}, {L"#1", true}, {L"#0", false}, {L"1", false}, {L"#11", false}, {L"# 1", false}});
}

TEST(WorkstationSwitchTest, WhatIsWrittenIsReadTheSame)
{
    for (const WorkstationSwitch& setting : {DESKTOP_SHORTCUT, BROWSER_REQUIRED, SHEET_FORMAT}) {
        EXPECT_TRUE(IsSwitchedOn(setting, SwitchValue(setting, true))) << Utf8(setting.property);
        EXPECT_FALSE(IsSwitchedOn(setting, SwitchValue(setting, false))) << Utf8(setting.property);
    }
    EXPECT_EQ(CString(SwitchValue(DESKTOP_SHORTCUT, false)), CString(L"0"));
    EXPECT_EQ(CString(SwitchValue(BROWSER_REQUIRED, false)), CString(L"0"));
    EXPECT_EQ(CString(SwitchValue(SHEET_FORMAT, false)), CString(L"#0"));
}

// ---- profile names

TEST(ProfileNameTest, PlainNamesAndTheEmptyOneAreAccepted)
{
    for (const wchar_t* name : {L"", L"Default", L"My profile", L" ", L"caf\x00E9 \x4E2D", L"a.b", L"..."}) {
        EXPECT_TRUE(IsProfileNameAccepted(name)) << Utf8(name);
    }
}

TEST(ProfileNameTest, MarksMayStandAtEitherEndOrBoth)
{
    for (const wchar_t* name : {L"<<Default>>", L"<<Default", L"Default>>", L"<<a", L"a>>"}) {
        EXPECT_TRUE(IsProfileNameAccepted(name)) << Utf8(name);
    }
}

TEST(ProfileNameTest, MarksAloneAreRefused)
{
    for (const wchar_t* name : {L"<<>>", L"<<", L">>"}) {
        EXPECT_FALSE(IsProfileNameAccepted(name)) << Utf8(name);
    }
}

TEST(ProfileNameTest, MarksElsewhereOrTwiceAreRefused)
{
    for (const wchar_t* name :
         {L"De<<fault", L"Default<<", L">>Default", L"<Default>", L"<<<Default", L"<<<<a", L"a>>>>",
          L"<< <<a", L"<", L">", L"<>", L"<<<", L"<<>", L"<<>>>>"}) {
        EXPECT_FALSE(IsProfileNameAccepted(name)) << Utf8(name);
    }
}

TEST(ProfileNameTest, EachCharacterThatFileNamesCannotHaveIsRefused)
{
    for (const wchar_t character : {L'\\', L'/', L':', L'*', L'?', L'"', L'<', L'>', L'|'}) {
        EXPECT_FALSE(IsProfileNameAccepted(CString(L"a") + character + L"b")) << static_cast<char>(character);
        EXPECT_FALSE(IsProfileNameAccepted(CString(L"<<a") + character + L"b>>"))
            << static_cast<char>(character);
    }
}

// ---- the label of the desktop shortcut

TEST(ProductLabelTest, EachPlaceHasTheProductAndItsAmpersandsAreDoubled)
{
    EXPECT_EQ(LabelWithProduct(L"[ProductName] && [ProductName]", L"A&B").value_or(L""),
              CString(L"A&&B && A&&B"));
    EXPECT_EQ(LabelWithProduct(L"x [ProductName]", L"").value_or(L"-"), CString(L"x "));
    EXPECT_EQ(LabelWithProduct(L"[ProductName]", L"[ProductName]").value_or(L"-"), CString(L"[ProductName]"));
}

TEST(ProductLabelTest, ALabelWithoutThePlaceIsLeftAlone)
{
    EXPECT_FALSE(LabelWithProduct(L"Desktop shortcut", L"Zolt"));
    EXPECT_FALSE(LabelWithProduct(L"[productname]", L"Zolt"));
    EXPECT_FALSE(LabelWithProduct(L"", L"Zolt"));
}
