// The 26 paths between page, host and a real database.
#include "msi/msi_property.h"
#include "paths/path_properties.h"
#include "tests/installer/database_fixture.h"
#include "tests/support/call_log.h"
#include "tests/support/test_product.h"

#include <algorithm>
#include <vector>

namespace {

// The host's own properties are in memory; those of the installer go into the test's database.
class ProductOnDatabase final : public TestProduct
{
public:
    using TestProduct::TestProduct;

    bool SetMsiProperty(const wchar_t* name, const wchar_t* value, bool flag) override
    {
        EXPECT_FALSE(flag);
        stored.push_back(name);
        return setMsiPropertyAnswer && WriteProperty(database, name, value);
    }
    void SetProperty(const wchar_t* name, const wchar_t* value) override
    {
        kept.push_back(name);
        TestProduct::SetProperty(name, value);
    }

    std::vector<CString> stored; // names in the order of the calls
    std::vector<CString> kept;
};

std::vector<CString> StoreOrder()
{
    std::vector<CString> names;
    for (const PathProperty property : PATH_STORE_ORDER) {
        names.push_back(PathPropertyName(property));
    }
    return names;
}

constexpr const wchar_t* FONT = L"ZOLTProfile_AltFont";
constexpr const wchar_t* SUPPORT = L"ZOLTProfile_SupportPath";
const CString NOTHING_HELD = L"(none)";

class PathPropertiesTest : public DatabaseTest
{
protected:
    void SetUp() override
    {
        DatabaseTest::SetUp();
        product.database = Database();
    }

    void AddDirectory(const CString& key, const CString& text, const wchar_t* flags)
    {
        Run(L"INSERT INTO `TarnDirectoryMap` (`Directory_`,`LocalString`,`Flags`) VALUES ('" + key + L"','" +
            text + L"'," + flags + L")");
    }
    void SetInDatabase(const wchar_t* name, const CString& value)
    {
        ASSERT_TRUE(WriteProperty(Database(), name, value));
    }
    CString InDatabase(const wchar_t* name)
    {
        const Rows rows = Select(CString(L"SELECT `Value` FROM `Property` WHERE `Property`='") + name + L"'");
        return rows.empty() ? NOTHING_HELD : rows[0][0];
    }
    CString Marker() { return InDatabase(L"NIW_Custom_Paths_Are_Set"); }
    CString HeldByHost(const wchar_t* name)
    {
        const auto row = product.properties.find(name);
        return row == product.properties.end() ? NOTHING_HELD : row->second;
    }

    // What a page does on entry.
    CPathProperties Enter()
    {
        CPathProperties paths(product, Database());
        paths.LoadDirectoryMap();
        paths.ReadAllPathProperties();
        return paths;
    }
    std::vector<CString> Keys()
    {
        CPathProperties paths(product, Database());
        paths.LoadDirectoryMap();
        std::vector<CString> keys;
        for (const auto& row : paths.GetResolver().GetDirectoryMap()) {
            keys.push_back(row.first);
        }
        return keys;
    }

    CallLog log;
    ProductOnDatabase product{log};
};

using Names = std::vector<CString>;

} // namespace

// ---- the map of directories

TEST_F(PathPropertiesTest, EveryRowComesIntoTheMapInTheOrderOfItsKey)
{
    for (const wchar_t* key : {L"b", L"Z", L"a", L"\u00C4"}) {
        AddDirectory(key, L"text", L"0");
    }
    EXPECT_EQ(Keys(), (Names{L"Z", L"a", L"b", L"\u00C4"}));
}

TEST_F(PathPropertiesTest, WithoutATableValuesShowWithTheirKeysDropped)
{
    Run(L"DROP TABLE `TarnDirectoryMap`");
    SetInDatabase(FONT, L"[FONTDIR]Simple.zfont");
    CPathProperties paths = Enter();
    EXPECT_TRUE(paths.GetResolver().GetDirectoryMap().empty());
    EXPECT_EQ(paths[PATH_ALT_FONT], CString(L"Simple.zfont"));
}

TEST_F(PathPropertiesTest, WithAnEmptyTableValuesShowWithTheirKeysDropped)
{
    SetInDatabase(FONT, L"[FONTDIR]Simple.zfont");
    EXPECT_EQ(Enter()[PATH_ALT_FONT], CString(L"Simple.zfont"));
}

TEST_F(PathPropertiesTest, ATableOfAnotherShapeGivesNoMap)
{
    Run(L"DROP TABLE `TarnDirectoryMap`");
    Run(L"CREATE TABLE `TarnDirectoryMap` (`Directory_` CHAR(72) NOT NULL PRIMARY KEY `Directory_`)");
    Run(L"INSERT INTO `TarnDirectoryMap` (`Directory_`) VALUES ('A')");
    EXPECT_EQ(Keys(), Names());
}

TEST_F(PathPropertiesTest, WithoutADatabaseAllPathsAreEmpty)
{
    CPathProperties paths(product, 0);
    paths.LoadDirectoryMap();
    paths.ReadAllPathProperties();
    EXPECT_TRUE(paths.GetResolver().GetDirectoryMap().empty());
    for (int property = 0; property < PATH_COUNT; ++property) {
        EXPECT_EQ(paths[static_cast<PathProperty>(property)], CString());
    }
}

TEST_F(PathPropertiesTest, ARowWithoutFlagsEndsTheWalkAndThoseBeforeItStay)
{
    AddDirectory(L"A", L"first", L"2");
    AddDirectory(L"B", L"second", L"Null");
    AddDirectory(L"C", L"third", L"2");
    EXPECT_EQ(Keys(), (Names{L"A"}));
}

TEST_F(PathPropertiesTest, OfTwoRowsWithOneKeyTheSecondCounts)
{
    Run(L"DROP TABLE `TarnDirectoryMap`");
    Run(L"CREATE TABLE `TarnDirectoryMap` (`Directory_` CHAR(72) NOT NULL, `LocalString` CHAR(255) NOT NULL, "
        L"`Flags` LONG PRIMARY KEY `Directory_`, `LocalString`)");
    AddDirectory(L"A", L"first", L"0");
    AddDirectory(L"A", L"second", L"2");
    EXPECT_EQ(Select(L"SELECT `LocalString` FROM `TarnDirectoryMap`"), (Rows{{L"first"}, {L"second"}}));
    CPathProperties paths(product, Database());
    paths.LoadDirectoryMap();
    ASSERT_EQ(paths.GetResolver().GetDirectoryMap().size(), 1u);
    const TarnDirectoryMapColumns& row = *paths.GetResolver().GetDirectoryMap().at(L"A");
    EXPECT_EQ(row.LocalString, CString(L"second"));
    EXPECT_EQ(row.Flags, 2);
}

TEST_F(PathPropertiesTest, ARowWithoutTextHasNotThatOfTheRowBefore)
{
    AddDirectory(L"A", L"first", L"2");
    Run(L"INSERT INTO `TarnDirectoryMap` (`Directory_`,`Flags`) VALUES ('B',2)");
    SetInDatabase(SUPPORT, L"[A]x;[B]y");
    EXPECT_EQ(Enter()[PATH_SUPPORT], CString(L"first\\x;\\y"));
}

TEST_F(PathPropertiesTest, AnotherLoadingReplacesTheMap)
{
    AddDirectory(L"A", L"first", L"2");
    CPathProperties paths(product, Database());
    paths.LoadDirectoryMap();
    Run(L"DELETE FROM `TarnDirectoryMap` WHERE `Directory_`='A'");
    AddDirectory(L"B", L"second", L"2");
    paths.LoadDirectoryMap();
    EXPECT_EQ(paths.GetResolver().GetDirectoryMap().size(), 1u);
    CString key, rest;
    EXPECT_FALSE(paths.GetResolver().SplitDirectoryPrefix(key, rest, L"first\\x"));
    EXPECT_TRUE(paths.GetResolver().SplitDirectoryPrefix(key, rest, L"second\\x"));
}

// ---- reading

TEST_F(PathPropertiesTest, EachPathIsReadFromItsOwnProperty)
{
    for (int property = 0; property < PATH_COUNT; ++property) {
        SetInDatabase(PathPropertyName(static_cast<PathProperty>(property)), L"path " + NumberText(property));
    }
    CPathProperties paths = Enter();
    for (int property = 0; property < PATH_COUNT; ++property) {
        EXPECT_EQ(paths[static_cast<PathProperty>(property)], L"path " + NumberText(property));
    }
}

TEST_F(PathPropertiesTest, AMissingPropertyAndTheMarkerInAnyCaseAreShownEmpty)
{
    SetInDatabase(SUPPORT, L"[null]");
    CPathProperties paths = Enter();
    EXPECT_EQ(paths[PATH_SUPPORT], CString());
    EXPECT_EQ(paths[PATH_ALT_FONT], CString());
}

TEST_F(PathPropertiesTest, TheMarkerIsNoDirectoryOfThatName)
{
    AddDirectory(L"NULL", L"Nowhere", L"2");
    SetInDatabase(SUPPORT, L"[NULL]");
    SetInDatabase(FONT, L"[NULL]x");
    CPathProperties paths = Enter();
    EXPECT_EQ(paths[PATH_SUPPORT], CString());
    EXPECT_EQ(paths[PATH_ALT_FONT], CString(L"Nowhere\\x"));
}

TEST_F(PathPropertiesTest, TheFirstReadingIsKeptByTheHostInDisplayFormInTheStoreOrder)
{
    AddDirectory(L"FONTDIR", L"Fonts", L"2");
    SetInDatabase(FONT, L"[FONTDIR]Simple.zfont");
    Enter();
    EXPECT_EQ(product.kept, StoreOrder());
    EXPECT_EQ(HeldByHost(FONT), CString(L"Fonts\\Simple.zfont"));
    EXPECT_EQ(HeldByHost(SUPPORT), CString());
}

TEST_F(PathPropertiesTest, WhatTheHostKeepsIsNotReplacedAsLongAsTheProductLives)
{
    SetInDatabase(FONT, L"first");
    Enter();
    product.kept.clear();
    SetInDatabase(FONT, L"second");
    SetInDatabase(SUPPORT, L"was empty");
    CPathProperties paths = Enter();
    EXPECT_EQ(paths[PATH_ALT_FONT], CString(L"second"));
    EXPECT_EQ(paths[PATH_SUPPORT], CString(L"was empty"));
    EXPECT_EQ(product.kept, Names());
    EXPECT_EQ(HeldByHost(FONT), CString(L"first"));
    EXPECT_EQ(HeldByHost(SUPPORT), CString());
}

TEST_F(PathPropertiesTest, TheHostsValueCountsWhereItIsPreferredAndThere)
{
    product.properties[FONT] = L"[A]of the host;";
    SetInDatabase(FONT, L"of the database");
    SetInDatabase(SUPPORT, L"support");
    CPathProperties paths(product, Database());
    CString value = L"from before";
    EXPECT_TRUE(paths.ReadPathProperty(FONT, value, true));
    EXPECT_EQ(value, CString(L"[A]of the host;"));
    EXPECT_TRUE(paths.ReadPathProperty(FONT, value, false));
    EXPECT_EQ(value, CString(L"of the database"));
    EXPECT_TRUE(paths.ReadPathProperty(SUPPORT, value, true));
    EXPECT_EQ(value, CString(L"support"));
    EXPECT_EQ(HeldByHost(SUPPORT), CString(L"support"));
}

TEST_F(PathPropertiesTest, AnEmptyValueOfTheHostIsOne)
{
    product.properties[FONT] = L"";
    SetInDatabase(FONT, L"of the database");
    CPathProperties paths(product, Database());
    CString value = L"from before";
    EXPECT_TRUE(paths.ReadPathProperty(FONT, value, true));
    EXPECT_EQ(value, CString());
}

TEST_F(PathPropertiesTest, OfALongValue1023CharactersAreRead)
{
    for (const int length : {400, 511, 512, 1023, 1024, 5000}) {
        SetInDatabase(FONT, CString(L'v', length));
        EXPECT_EQ(Enter()[PATH_ALT_FONT], CString(L'v', std::min(length, 1023))) << length;
    }
}

// ---- storing

TEST_F(PathPropertiesTest, EachPathIsStoredInItsOwnPropertyInTheStoreOrder)
{
    CPathProperties paths = Enter();
    for (int property = 0; property < PATH_COUNT; ++property) {
        paths[static_cast<PathProperty>(property)] = L"path " + NumberText(property);
    }
    paths.SaveAllPathProperties();
    EXPECT_EQ(product.stored, StoreOrder());
    for (int property = 0; property < PATH_COUNT; ++property) {
        EXPECT_EQ(InDatabase(PathPropertyName(static_cast<PathProperty>(property))),
                  L"path " + NumberText(property));
    }
}

TEST_F(PathPropertiesTest, AStoredPathHasItsKeyAgainAndThePageItsInstallerForm)
{
    AddDirectory(L"FONTDIR", L"Fonts", L"2");
    SetInDatabase(FONT, L"[FONTDIR]Simple.zfont");
    CPathProperties paths = Enter();
    paths.SaveAllPathProperties();
    EXPECT_EQ(InDatabase(FONT), CString(L"[FONTDIR]Simple.zfont"));
    EXPECT_EQ(paths[PATH_ALT_FONT], CString(L"[FONTDIR]Simple.zfont"));
}

TEST_F(PathPropertiesTest, AnEmptyPathIsStoredAsTheMarkerInCapitals)
{
    SetInDatabase(FONT, L"[null]");
    Enter().SaveAllPathProperties();
    EXPECT_EQ(InDatabase(FONT), CString(L"[NULL]"));
    EXPECT_EQ(InDatabase(SUPPORT), CString(L"[NULL]"));
}

TEST_F(PathPropertiesTest, AMarkerThatWasTypedIsStoredAsItStands)
{
    AddDirectory(L"A", L"[Nu", L"2");
    CPathProperties paths = Enter();
    paths[PATH_ALT_FONT] = L"[Null]";
    paths.SaveAllPathProperties();
    EXPECT_EQ(InDatabase(FONT), CString(L"[Null]"));
}

TEST_F(PathPropertiesTest, APathOfSeparatorsAloneRemovesTheProperty)
{
    SetInDatabase(FONT, L"a");
    CPathProperties paths = Enter();
    paths[PATH_ALT_FONT] = L" ; ;";
    paths.SavePathProperty(FONT, paths[PATH_ALT_FONT]);
    EXPECT_EQ(paths[PATH_ALT_FONT], CString());
    EXPECT_EQ(InDatabase(FONT), NOTHING_HELD);
}

TEST_F(PathPropertiesTest, ARefusalOfTheHostLeavesTheOtherPathsToBeStored)
{
    CPathProperties paths = Enter();
    product.setMsiPropertyAnswer = false;
    paths.SaveAllPathProperties();
    EXPECT_EQ(product.stored, StoreOrder());
}

// ---- the marker of changed paths

TEST_F(PathPropertiesTest, WithoutAChangeTheMarkerIsOff)
{
    SetInDatabase(L"NIW_Custom_Paths_Are_Set", L"1");
    SetInDatabase(FONT, L"font");
    Enter().SaveAllPathProperties();
    EXPECT_EQ(Marker(), CString(L"0"));
}

TEST_F(PathPropertiesTest, AChangeOfCaseAloneLeavesTheMarkerOff)
{
    SetInDatabase(FONT, L"font \u00E4");
    CPathProperties paths = Enter();
    paths[PATH_ALT_FONT] = L"FONT \u00C4";
    paths.SaveAllPathProperties();
    EXPECT_EQ(Marker(), CString(L"0"));
    EXPECT_EQ(InDatabase(FONT), CString(L"FONT \u00C4"));
}

TEST_F(PathPropertiesTest, OnePathOfTheFirstOrTheLastIsEnoughToSetTheMarker)
{
    for (const PathProperty property : {PATH_STORE_ORDER.front(), PATH_ALT_FONT, PATH_STORE_ORDER.back()}) {
        CPathProperties paths = Enter();
        paths[property] = L"changed";
        paths.SaveAllPathProperties();
        EXPECT_EQ(Marker(), CString(L"1")) << Utf8(PathPropertyName(property));
        CPathProperties again = Enter();
        again[property] = L"";
        again.SaveAllPathProperties();
        EXPECT_EQ(Marker(), CString(L"0")) << Utf8(PathPropertyName(property));
    }
}

TEST_F(PathPropertiesTest, ThePathBeforeItIsEncodedIsCompared)
{
    AddDirectory(L"FONTDIR", L"Fonts", L"2");
    SetInDatabase(FONT, L"[FONTDIR]Simple.zfont");
    CPathProperties paths = Enter();
    paths[PATH_ALT_FONT] = L"[FONTDIR]Simple.zfont";
    paths.SaveAllPathProperties();
    EXPECT_EQ(Marker(), CString(L"1"));
}

TEST_F(PathPropertiesTest, AnEmptiedPathSetsTheMarker)
{
    SetInDatabase(FONT, L"font");
    CPathProperties paths = Enter();
    paths[PATH_ALT_FONT] = L"";
    paths.SaveAllPathProperties();
    EXPECT_EQ(Marker(), CString(L"1"));
    EXPECT_EQ(InDatabase(FONT), CString(L"[NULL]"));
}

// A store that drops empty values has no baseline for them, and the marker would stay off.
TEST_F(PathPropertiesTest, AnEmptyPathThatIsFilledInSetsTheMarker)
{
    SetInDatabase(FONT, L"[NULL]");
    CPathProperties paths = Enter();
    paths[PATH_ALT_FONT] = L"font";
    paths.SaveAllPathProperties();
    EXPECT_EQ(Marker(), CString(L"1"));
}

TEST_F(PathPropertiesTest, TheMarkerStaysOverVisitsUntilTheFirstTextIsBack)
{
    SetInDatabase(FONT, L"first");
    CPathProperties changed = Enter();
    changed[PATH_ALT_FONT] = L"second";
    changed.SaveAllPathProperties();
    Enter().SaveAllPathProperties();
    EXPECT_EQ(Marker(), CString(L"1"));
    EXPECT_EQ(InDatabase(FONT), CString(L"second"));
    CPathProperties back = Enter();
    back[PATH_ALT_FONT] = L"FIRST";
    back.SaveAllPathProperties();
    EXPECT_EQ(Marker(), CString(L"0"));
}

TEST_F(PathPropertiesTest, WithoutAValueOfTheHostNothingCountsAsAChange)
{
    CPathProperties paths(product, Database());
    paths[PATH_ALT_FONT] = L"font";
    paths.SaveAllPathProperties();
    EXPECT_EQ(Marker(), CString(L"0"));
    EXPECT_EQ(InDatabase(FONT), CString(L"font"));
}

// The host's value is read with room for 511 characters; a longer one counts as none.
TEST_F(PathPropertiesTest, AChangeIsSeenOnPathsOfUpTo511Characters)
{
    for (const int length : {400, 511, 512, 1023, 1024, 5000}) {
        SetInDatabase(FONT, CString(L'v', length));
        product.properties.clear();
        CPathProperties paths = Enter();
        paths[PATH_ALT_FONT] = L"changed";
        paths.SaveAllPathProperties();
        EXPECT_EQ(Marker(), CString(length <= 511 ? L"1" : L"0")) << length;
        EXPECT_EQ(HeldByHost(FONT).GetLength(), std::min(length, 1023));
    }
}

TEST_F(PathPropertiesTest, AnEnteredPathOfAnyLengthIsStoredWholeAndSetsTheMarker)
{
    for (const int length : {400, 511, 512, 1023, 1024, 5000}) {
        product.properties.clear();
        SetInDatabase(FONT, L"short");
        CPathProperties paths = Enter();
        paths[PATH_ALT_FONT] = CString(L'v', length);
        paths.SaveAllPathProperties();
        EXPECT_EQ(Marker(), CString(L"1")) << length;
        EXPECT_EQ(InDatabase(FONT), CString(L'v', length));
    }
}

TEST_F(PathPropertiesTest, AMapOf5000DirectoriesIsLoadedWhole)
{
    for (int row = 0; row < 5000; ++row) {
        AddDirectory(L"DIR" + NumberText(row), L"Folder " + NumberText(row), L"2");
    }
    SetInDatabase(SUPPORT, L"[DIR4999]a;[DIR0]b");
    CPathProperties paths = Enter();
    EXPECT_EQ(paths.GetResolver().GetDirectoryMap().size(), 5000u);
    EXPECT_EQ(paths[PATH_SUPPORT], CString(L"Folder 4999\\a;Folder 0\\b"));
}
