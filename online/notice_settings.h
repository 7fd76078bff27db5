// What the notice and feed page shows and stores, and the order in which its properties are read and written.
#pragma once

#include "online/online_property_rules.h"

// Where updates come from: the lines of the drop-down list, in its order.
enum UpdateSource : int
{
    UPDATE_SOURCE_MAKER = 0,
    UPDATE_SOURCE_LIST = 1,
};
constexpr int UPDATE_SOURCE_COUNT = 2;

// The state of the page's controls.
struct NoticeSettings
{
    bool bUpdates = false;
    int updateSource = UPDATE_SOURCE_MAKER;
    CString strListLocation;
    bool bChannelNotices = false;
    bool bSiteChannel = false;
    CString strFeedLocation;
    CString strDisplayName;
    bool bFeeds = false;
    bool bCustomFeeds = false; // the box's own mark, which it keeps while the feeds are off
};

// The second entry of the source is that of ZOLT_PATCHRELAY_PATCHNOTIFY: "#1" and "#2" are a line of the list, counted
// from one, and "#3" says that the update service is off. Every other text gives the first line.
[[nodiscard]] int UpdateSourceOf(const CString& value);
[[nodiscard]] CString UpdateSourceText(bool updatesOn, int source);

struct LoadedNoticeSettings
{
    NoticeSettings settings;
    // The page has stored nothing yet: the location of the feed stays as the template has it, and the display name is
    // the one that the page proposes.
    bool bFirstVisit = false;
};
// Writes the Booleans that are missing.
[[nodiscard]] LoadedNoticeSettings LoadNoticeSettings(IPropertyStore& store);
void StoreNoticeSettings(IPropertyStore& store, const NoticeSettings& settings);
