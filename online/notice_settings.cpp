#include "online/notice_settings.h"

#include "base/number_text.h"

namespace {

constexpr wchar_t UPDATES[] = L"ZOLT_PATCHRELAY_ENABLE";
constexpr wchar_t UPDATE_SOURCE[] = L"ZOLT_PATCHRELAY_PATCHNOTIFY";
constexpr wchar_t CHANNEL_NOTICES[] = L"ZOLT_CHANNEL_NOTIFY_ENABLE";
constexpr wchar_t SITE_CHANNEL[] = L"ZOLT_SITEMGR_CHANNEL_ENABLE";
constexpr wchar_t FEEDS[] = L"ZOLT_RSS_FEEDS_ENABLE";
constexpr wchar_t CUSTOM_FEEDS[] = L"ZOLT_RSS_FEEDS_CUSTOM_ENABLE";
constexpr wchar_t CUSTOM_FEEDS_MARK[] = L"ZOLT_TEMP_RSS_FEEDS_CUSTOM_ENABLE";

// The plain name is misspelt in the product, which reads it so.
constexpr FeatureText LIST_LOCATION = {L"ZOLT_PATCHRELAY_LISTLOCACTION",
                                       L"ZOLT_TEMP_PATCHRELAY_LISTLOCATION"};
constexpr FeatureText FEED_LOCATION = {L"ZOLT_SITEMGR_LOCATION", L"ZOLT_TEMP_SITEMGR_LOCATION"};
constexpr FeatureText DISPLAY_NAME = {L"ZOLT_SITEMGR_DISPLAY_NAME", L"ZOLT_TEMP_SITEMGR_DISPLAY_NAME"};

bool IsListInUse(const NoticeSettings& settings)
{
    return settings.bUpdates && settings.updateSource == UPDATE_SOURCE_LIST;
}

CString LoadChannelText(IPropertyStore& store, const FeatureText& names, bool channelOn)
{
    return store.Read(channelOn ? names.plain : names.temporary);
}

// ZOLT_RSS_FEEDS_CUSTOM_ENABLE is off while the feeds are off, so the mark of the box has a property of its own.
bool LoadCustomFeeds(IPropertyStore& store)
{
    return LoadBooleanProperty(store, CUSTOM_FEEDS, true) ||
           store.Read(CUSTOM_FEEDS_MARK).CompareNoCase(BooleanText(true)) == 0;
}

} // namespace

int UpdateSourceOf(const CString& value)
{
    CString digits = value.Mid(1); // whatever stands in front, not only "#"
    digits.TrimLeft();
    int start = digits[0] == L'+' ? 1 : 0;
    return ReadDigits(digits, start, UPDATE_SOURCE_COUNT) == UPDATE_SOURCE_LIST + 1 ? UPDATE_SOURCE_LIST
                                                                                    : UPDATE_SOURCE_MAKER;
}

CString UpdateSourceText(bool updatesOn, int source)
{
    return L"#" + NumberText(1 + (updatesOn ? source : UPDATE_SOURCE_COUNT));
}

LoadedNoticeSettings LoadNoticeSettings(IPropertyStore& store)
{
    LoadedNoticeSettings loaded;
    NoticeSettings& settings = loaded.settings;
    settings.bUpdates = LoadBooleanProperty(store, UPDATES, true);
    settings.bChannelNotices = LoadBooleanProperty(store, CHANNEL_NOTICES, true);
    settings.bSiteChannel = LoadBooleanProperty(store, SITE_CHANNEL, false);
    settings.bFeeds = LoadBooleanProperty(store, FEEDS, true);
    settings.bCustomFeeds = LoadCustomFeeds(store);
    settings.updateSource = UpdateSourceOf(store.Read(UPDATE_SOURCE));
    settings.strListLocation = store.Read(LIST_LOCATION.plain);
    if (!IsListInUse(settings)) {
        settings.strListLocation = store.Read(LIST_LOCATION.temporary);
    }
    loaded.bFirstVisit = store.Read(CUSTOM_FEEDS_MARK).IsEmpty();
    if (!loaded.bFirstVisit) {
        settings.strFeedLocation = LoadChannelText(store, FEED_LOCATION, settings.bSiteChannel);
        settings.strDisplayName = LoadChannelText(store, DISPLAY_NAME, settings.bSiteChannel);
    }
    return loaded;
}

void StoreNoticeSettings(IPropertyStore& store, const NoticeSettings& settings)
{
    StoreBooleanProperty(store, UPDATES, settings.bUpdates);
    StoreBooleanProperty(store, CHANNEL_NOTICES, settings.bChannelNotices);
    StoreBooleanProperty(store, SITE_CHANNEL, settings.bSiteChannel);
    StoreBooleanProperty(store, FEEDS, settings.bFeeds);
    StoreBooleanProperty(store, CUSTOM_FEEDS, settings.bFeeds && settings.bCustomFeeds);
    StoreBooleanProperty(store, CUSTOM_FEEDS_MARK, settings.bCustomFeeds);
    store.Write(UPDATE_SOURCE, UpdateSourceText(settings.bUpdates, settings.updateSource));
    StoreFeatureText(store, LIST_LOCATION, IsListInUse(settings), settings.strListLocation);
    StoreFeatureText(store, FEED_LOCATION, settings.bSiteChannel, settings.strFeedLocation);
    StoreFeatureText(store, DISPLAY_NAME, settings.bSiteChannel, settings.strDisplayName);
}
