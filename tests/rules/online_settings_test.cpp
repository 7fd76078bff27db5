#include "online/notice_settings.h"
#include "online/resource_settings.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

namespace {

// Properties in memory, with what was asked of them in order: "?NAME" for a read, "NAME=value" for a write.
class Store final : public IPropertyStore
{
public:
    [[nodiscard]] CString Read(const wchar_t* name) override
    {
        calls.push_back(CString(L"?") + name);
        const auto row = values.find(name);
        return row != values.end() ? row->second : CString();
    }
    void Write(const wchar_t* name, const CString& value) override
    {
        calls.push_back(CString(name) + L"=" + value);
        values[name] = value;
    }

    std::vector<CString> Writes() const
    {
        std::vector<CString> writes;
        for (const CString& call : calls) {
            if (call[0] != L'?') {
                writes.push_back(call);
            }
        }
        return writes;
    }

    std::map<CString, CString> values;
    std::vector<CString> calls;
};

using Texts = std::vector<CString>;

} // namespace

// ---- Booleans

TEST(BooleanPropertyTest, OnlyTheTextOfOffIsOff)
{
    EXPECT_FALSE(IsOn(L"#0"));
    for (const wchar_t* text : {L"#1", L"#2", L"0", L"no", L" #0", L"#0 ", L"#00", L"##0"}) {
        EXPECT_TRUE(IsOn(text)) << Utf8(text);
    }
}

TEST(BooleanPropertyTest, AMissingOneIsWrittenAtOnceAsItsDefault)
{
    for (const bool value : {true, false}) {
        Store store;
        EXPECT_EQ(LoadBooleanProperty(store, L"A", value), value);
        EXPECT_EQ(store.calls, (Texts{L"?A", value ? L"A=#1" : L"A=#0"}));
    }
}

TEST(BooleanPropertyTest, OneThatIsThereIsOnlyRead)
{
    Store store;
    store.values = {{L"A", L"no"}, {L"B", L"#0"}};
    EXPECT_TRUE(LoadBooleanProperty(store, L"A", false));
    EXPECT_FALSE(LoadBooleanProperty(store, L"B", true));
    EXPECT_EQ(store.Writes(), Texts());
}

TEST(FeatureTextTest, AFeatureThatIsOnLeavesItsTemporaryPropertyAlone)
{
    Store store;
    StoreFeatureText(store, {L"P", L"T"}, true, L"text");
    EXPECT_EQ(store.calls, Texts{L"P=text"});
}

TEST(FeatureTextTest, AFeatureThatIsOffEmptiesThePlainPropertyFirst)
{
    Store store;
    StoreFeatureText(store, {L"P", L"T"}, false, L"text");
    EXPECT_EQ(store.calls, (Texts{L"P=", L"T=text"}));
}

// ---- the source of updates

TEST(UpdateSourceTest, OnlyTheSecondEntryOfTheListGivesTheList)
{
    for (const wchar_t* text : {L"#2", L"x2", L"# 2", L"#+2", L"#2abc", L"#02"}) {
        EXPECT_EQ(UpdateSourceOf(text), UPDATE_SOURCE_LIST) << Utf8(text);
    }
    for (const wchar_t* text : {L"", L"#", L"2", L"#1", L"#3", L"#0", L"#-2", L"#22", L"no", L"##2",
                                L"#4294967298", L"#18446744073709551618"}) {
        EXPECT_EQ(UpdateSourceOf(text), UPDATE_SOURCE_MAKER) << Utf8(text);
    }
}

TEST(UpdateSourceTest, TheTextIsTheLineCountedFromOneAndThreeForOff)
{
    EXPECT_EQ(UpdateSourceText(true, UPDATE_SOURCE_MAKER), CString(L"#1"));
    EXPECT_EQ(UpdateSourceText(true, UPDATE_SOURCE_LIST), CString(L"#2"));
    EXPECT_EQ(UpdateSourceText(false, UPDATE_SOURCE_LIST), CString(L"#3"));
}

// ---- the page of notices

TEST(NoticeSettingsTest, AFreshDatabaseIsReadInOrderAndFilledWithTheFiveDefaults)
{
    Store store;
    const LoadedNoticeSettings loaded = LoadNoticeSettings(store);
    EXPECT_TRUE(loaded.bFirstVisit);
    EXPECT_EQ(
        store.calls,
        (Texts{L"?ZOLT_PATCHRELAY_ENABLE", L"ZOLT_PATCHRELAY_ENABLE=#1", L"?ZOLT_CHANNEL_NOTIFY_ENABLE",
               L"ZOLT_CHANNEL_NOTIFY_ENABLE=#1", L"?ZOLT_SITEMGR_CHANNEL_ENABLE",
               L"ZOLT_SITEMGR_CHANNEL_ENABLE=#0", L"?ZOLT_RSS_FEEDS_ENABLE", L"ZOLT_RSS_FEEDS_ENABLE=#1",
               L"?ZOLT_RSS_FEEDS_CUSTOM_ENABLE", L"ZOLT_RSS_FEEDS_CUSTOM_ENABLE=#1",
               L"?ZOLT_PATCHRELAY_PATCHNOTIFY", L"?ZOLT_PATCHRELAY_LISTLOCACTION",
               L"?ZOLT_TEMP_PATCHRELAY_LISTLOCATION", L"?ZOLT_TEMP_RSS_FEEDS_CUSTOM_ENABLE"}));
}

TEST(NoticeSettingsTest, AChannelThatIsOnReadsItsPlainTextsOnly)
{
    Store store;
    store.values = {{L"ZOLT_SITEMGR_CHANNEL_ENABLE", L"#1"}, {L"ZOLT_TEMP_RSS_FEEDS_CUSTOM_ENABLE", L"#0"}};
    const LoadedNoticeSettings loaded = LoadNoticeSettings(store);
    EXPECT_FALSE(loaded.bFirstVisit);
    const Texts last(store.calls.end() - 2, store.calls.end());
    EXPECT_EQ(last, (Texts{L"?ZOLT_SITEMGR_LOCATION", L"?ZOLT_SITEMGR_DISPLAY_NAME"}));
}

TEST(NoticeSettingsTest, WhatIsStoredIsLoadedForEachCombinationOfFeatures)
{
    for (int mask = 0; mask < 64; ++mask) {
        NoticeSettings stored;
        stored.bUpdates = mask & 1;
        stored.updateSource = mask & 2 ? UPDATE_SOURCE_LIST : UPDATE_SOURCE_MAKER;
        stored.bSiteChannel = mask & 4;
        stored.bFeeds = mask & 8;
        stored.bCustomFeeds = mask & 16;
        stored.bChannelNotices = mask & 32;
        stored.strListLocation = L"list";
        stored.strFeedLocation = L"feed";
        stored.strDisplayName = L"name";
        Store store;
        StoreNoticeSettings(store, stored);
        const LoadedNoticeSettings loaded = LoadNoticeSettings(store);
        const NoticeSettings& settings = loaded.settings;
        EXPECT_FALSE(loaded.bFirstVisit) << mask;
        EXPECT_EQ(settings.bUpdates, stored.bUpdates) << mask;
        // The property has no room for a source while the updates are off.
        EXPECT_EQ(settings.updateSource, stored.bUpdates ? stored.updateSource : UPDATE_SOURCE_MAKER) << mask;
        EXPECT_EQ(settings.bSiteChannel, stored.bSiteChannel) << mask;
        EXPECT_EQ(settings.bFeeds, stored.bFeeds) << mask;
        EXPECT_EQ(settings.bCustomFeeds, stored.bCustomFeeds) << mask;
        EXPECT_EQ(settings.bChannelNotices, stored.bChannelNotices) << mask;
        EXPECT_EQ(settings.strListLocation, stored.strListLocation) << mask;
        EXPECT_EQ(settings.strFeedLocation, stored.strFeedLocation) << mask;
        EXPECT_EQ(settings.strDisplayName, stored.strDisplayName) << mask;
    }
}

TEST(NoticeSettingsTest, CustomFeedsAreOffForTheProductWhileTheFeedsAreOff)
{
    NoticeSettings settings;
    settings.bCustomFeeds = true;
    Store store;
    StoreNoticeSettings(store, settings);
    EXPECT_EQ(store.values[L"ZOLT_RSS_FEEDS_CUSTOM_ENABLE"], CString(L"#0"));
    EXPECT_EQ(store.values[L"ZOLT_TEMP_RSS_FEEDS_CUSTOM_ENABLE"], CString(L"#1"));
}

// ---- the page of resources

TEST(ResourceSettingsTest, AFreshDatabaseIsFilledWithFiveDefaultsInOrder)
{
    Store store;
    EXPECT_EQ(LoadResourceSettings(store), (ResourceSettings{true, true, true, false, true}));
    EXPECT_EQ(store.Writes(),
              (Texts{L"ZOLT_PARTSBAY_ENABLE=#1", L"ZOLT_MEMBERBAY_ENABLE=#1", L"ZOLT_ENABLE_ROUNDTRIP=#1",
                     L"ZOLT_ENABLE_SEND_PC_NAME=#0", L"ZOLT_SEARCH_LOCATIONS_CUSTOM_ENABLE=#1"}));
}

TEST(ResourceSettingsTest, TheOppositeOfTheFirstSwitchIsWrittenRightBehindIt)
{
    Store store;
    StoreResourceSettings(store, {false, true, false, true, false});
    EXPECT_EQ(store.calls,
              (Texts{L"ZOLT_PARTSBAY_ENABLE=#0", L"ZOLT_PARTSBAY_DISABLE=#1", L"ZOLT_MEMBERBAY_ENABLE=#1",
                     L"ZOLT_ENABLE_ROUNDTRIP=#0", L"ZOLT_ENABLE_SEND_PC_NAME=#1",
                     L"ZOLT_SEARCH_LOCATIONS_CUSTOM_ENABLE=#0"}));
}
