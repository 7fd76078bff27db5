// What the page of notices and feeds shows on entry, and which of its controls are enabled.
#include "tests/online/online_page.h"

namespace {

constexpr std::initializer_list<int> LIST_CONTROLS = {IDC_LIST_LOCATION, IDC_LIST_BROWSE, IDC_LIST_HEADING};
constexpr std::initializer_list<int> SITE_CONTROLS = {IDC_DISPLAY_NAME, IDC_FEED_LOCATION, IDC_FEED_BROWSE,
                                                      IDC_FEED_HEADING, IDC_DISPLAY_NAME_HEADING};
constexpr wchar_t ENABLED[] = L"EEEEE";
constexpr wchar_t DISABLED[] = L"DDDDD";

class NoticeEntry : public NoticePage
{
protected:
    CString ListStates() const { return States(LIST_CONTROLS); }
    CString SiteStates() const { return States(SITE_CONTROLS); }
    CString UpdateStates() const { return States({IDC_UPDATE_SOURCE}) + ListStates(); }
    int SelectedSource() const { return Control(IDC_UPDATE_SOURCE).GetSelection(); }

    void ExpectList(const wchar_t* states)
    {
        Look([this, states] { EXPECT_EQ(ListStates(), CString(states)); });
    }
};
INSTANTIATE_BOTH_SHAPES(NoticeEntry);

} // namespace

// ---- first visit

TEST_P(NoticeEntry, AFreshDatabaseGetsTheFiveDefaultsAtOnceInTheirOrder)
{
    Look([&] {
        EXPECT_EQ(host.log.Of(L"Product.SetMsiProperty"),
                  Calls({L"Product.SetMsiProperty(ZOLT_PATCHRELAY_ENABLE, \"#1\", false)",
                         L"Product.SetMsiProperty(ZOLT_CHANNEL_NOTIFY_ENABLE, \"#1\", false)",
                         L"Product.SetMsiProperty(ZOLT_SITEMGR_CHANNEL_ENABLE, \"#0\", false)",
                         L"Product.SetMsiProperty(ZOLT_RSS_FEEDS_ENABLE, \"#1\", false)",
                         L"Product.SetMsiProperty(ZOLT_RSS_FEEDS_CUSTOM_ENABLE, \"#1\", false)"}));
    });
    ShowAndGoBack();
}

TEST_P(NoticeEntry, OnAFreshDatabaseTheBoxesShowTheDefaults)
{
    Look([&] {
        for (const int id : {IDC_UPDATES, IDC_CHANNEL_NOTICES, IDC_FEEDS, IDC_CUSTOM_FEEDS}) {
            EXPECT_TRUE(IsChecked(id)) << id;
        }
        EXPECT_FALSE(IsChecked(IDC_SITE_CHANNEL));
    });
    ShowAndGoBack();
}

TEST_P(NoticeEntry, OnAFreshDatabaseTheDisplayNameIsTheProposedOneAndTheFeedsLocationIsEmpty)
{
    Look([&] {
        EXPECT_EQ(Text(IDC_DISPLAY_NAME), ResourceText(IDS_DEFAULT_DISPLAY_NAME));
        EXPECT_EQ(Text(IDC_FEED_LOCATION), CString());
        EXPECT_EQ(Text(IDC_LIST_LOCATION), CString());
        EXPECT_EQ(Property(L"ZOLT_TEMP_RSS_FEEDS_CUSTOM_ENABLE"), CString(L"(none)"));
    });
    ShowAndGoBack();
    EXPECT_EQ(Property(L"ZOLT_TEMP_RSS_FEEDS_CUSTOM_ENABLE"), CString(L"#1")) << "the first store writes it";
}

TEST_P(NoticeEntry, BeforeTheFirstStoreTheChannelsPropertiesAreNotShown)
{
    WithStoredPage();
    product.msiProperties.erase(L"ZOLT_TEMP_RSS_FEEDS_CUSTOM_ENABLE");
    Look([&] {
        EXPECT_EQ(Text(IDC_DISPLAY_NAME), ResourceText(IDS_DEFAULT_DISPLAY_NAME));
        EXPECT_EQ(Text(IDC_FEED_LOCATION), CString());
    });
    ShowAndGoBack();
}

TEST_P(NoticeEntry, TheSourcesAreTheMakersServiceAndTheLocalList)
{
    Look([&] {
        EXPECT_EQ(Control(IDC_UPDATE_SOURCE).GetLines(),
                  (std::vector<CString>{ResourceText(IDS_UPDATE_SOURCE_MAKER),
                                        ResourceText(IDS_UPDATE_SOURCE_LIST)}));
        EXPECT_EQ(SelectedSource(), 0);
    });
    ShowAndGoBack();
}

// ---- stored and hostile values

TEST_P(NoticeEntry, AStoredPageShowsThePlainTextsAndWritesNothing)
{
    WithStoredPage();
    Look([&] {
        EXPECT_EQ(SelectedSource(), 1);
        EXPECT_EQ(Text(IDC_LIST_LOCATION), CString(L"\\\\site\\lists\\on.npl"));
        EXPECT_EQ(Text(IDC_FEED_LOCATION), CString(L"\\\\site\\feeds\\on.xml"));
        EXPECT_EQ(Text(IDC_DISPLAY_NAME), CString(L"Name on"));
        EXPECT_EQ(UpdateStates(), CString(L"EEEE"));
        EXPECT_EQ(SiteStates(), CString(ENABLED));
        EXPECT_EQ(host.log.Of(L"Product.SetMsiProperty"), Calls());
    });
    ShowAndGoBack();
}

TEST_P(NoticeEntry, WithUpdatesOffTheListsTextIsTheTemporaryOne)
{
    WithStoredPage();
    WithProperty(L"ZOLT_PATCHRELAY_ENABLE", L"#0");
    Look([&] {
        EXPECT_EQ(Text(IDC_LIST_LOCATION), CString(L"\\\\site\\lists\\off.npl"));
        EXPECT_EQ(UpdateStates(), CString(L"DDDD"));
    });
    ShowAndGoBack();
}

TEST_P(NoticeEntry, WithTheMakersServiceTheListsTextIsTheTemporaryOne)
{
    WithStoredPage();
    WithProperty(L"ZOLT_PATCHRELAY_PATCHNOTIFY", L"#1");
    Look([&] {
        EXPECT_EQ(SelectedSource(), 0);
        EXPECT_EQ(Text(IDC_LIST_LOCATION), CString(L"\\\\site\\lists\\off.npl"));
        EXPECT_EQ(UpdateStates(), CString(L"EDDD"));
    });
    ShowAndGoBack();
}

TEST_P(NoticeEntry, WithTheChannelOffItsTextsAreTheTemporaryOnes)
{
    WithStoredPage();
    WithProperty(L"ZOLT_SITEMGR_CHANNEL_ENABLE", L"#0");
    Look([&] {
        EXPECT_EQ(Text(IDC_FEED_LOCATION), CString(L"\\\\site\\feeds\\off.xml"));
        EXPECT_EQ(Text(IDC_DISPLAY_NAME), CString(L"Name off"));
        EXPECT_EQ(SiteStates(), CString(DISABLED));
    });
    ShowAndGoBack();
}

TEST_P(NoticeEntry, TheValueWithThreeShowsTheFirstEntry)
{
    WithProperty(L"ZOLT_PATCHRELAY_PATCHNOTIFY", L"#3");
    Look([&] { EXPECT_EQ(SelectedSource(), 0); });
    ShowAndGoBack();
}

TEST_P(NoticeEntry, AnUncheckedCustomBoxIsCheckedAgainByItsTemporaryProperty)
{
    WithProperty(L"ZOLT_RSS_FEEDS_CUSTOM_ENABLE", L"#0");
    WithProperty(L"ZOLT_TEMP_RSS_FEEDS_CUSTOM_ENABLE", L"#1");
    Look([&] { EXPECT_TRUE(IsChecked(IDC_CUSTOM_FEEDS)); });
    ShowAndGoBack();
}

TEST_P(NoticeEntry, ACheckedCustomBoxIsNotUncheckedByItsTemporaryProperty)
{
    WithProperty(L"ZOLT_RSS_FEEDS_CUSTOM_ENABLE", L"#1");
    WithProperty(L"ZOLT_TEMP_RSS_FEEDS_CUSTOM_ENABLE", L"#0");
    Look([&] { EXPECT_TRUE(IsChecked(IDC_CUSTOM_FEEDS)); });
    ShowAndGoBack();
}

TEST_P(NoticeEntry, OnlyTheExactTextOfOffIsOff)
{
    const std::pair<const wchar_t*, const wchar_t*> values[] = {{L"ZOLT_PATCHRELAY_ENABLE", L"no"},
                                                                {L"ZOLT_CHANNEL_NOTIFY_ENABLE", L"#2"},
                                                                {L"ZOLT_SITEMGR_CHANNEL_ENABLE", L"0"},
                                                                {L"ZOLT_RSS_FEEDS_ENABLE", L"[#0]"}};
    for (const auto& [name, value] : values) {
        WithProperty(name, value);
    }
    Look([&] {
        for (const int id : {IDC_UPDATES, IDC_CHANNEL_NOTICES, IDC_SITE_CHANNEL, IDC_FEEDS}) {
            EXPECT_TRUE(IsChecked(id)) << id;
        }
    });
    ShowAndGoBack();
}

TEST_P(NoticeEntry, AValueOfFiveThousandCharactersCountsAsEmpty)
{
    WithStoredPage();
    WithProperty(L"ZOLT_SITEMGR_CHANNEL_ENABLE", CString(L'1', 5000));
    WithProperty(L"ZOLT_TEMP_SITEMGR_LOCATION", CString(L'x', 5000));
    Look([&] {
        EXPECT_FALSE(IsChecked(IDC_SITE_CHANNEL)) << "the default";
        EXPECT_EQ(Property(L"ZOLT_SITEMGR_CHANNEL_ENABLE"), CString(L"#0"));
        EXPECT_EQ(Text(IDC_FEED_LOCATION), CString());
    });
    ShowAndGoBack();
}

TEST_P(NoticeEntry, ATextThatJustFitsIsShownWhole)
{
    WithStoredPage();
    WithProperty(L"ZOLT_SITEMGR_LOCATION", CString(L'x', 1023));
    WithProperty(L"ZOLT_SITEMGR_DISPLAY_NAME", CString(L'y', 1024));
    Look([&] {
        EXPECT_EQ(Text(IDC_FEED_LOCATION).GetLength(), 1023);
        EXPECT_EQ(Text(IDC_DISPLAY_NAME).GetLength(), 0) << "no room for the closing zero";
    });
    ShowAndGoBack();
}

TEST_P(NoticeEntry, TextsWithBracketsAndPercentSignsAreShownAsTheyStand)
{
    WithStoredPage();
    WithProperty(L"ZOLT_SITEMGR_DISPLAY_NAME", L"[ProductName] 100% %s & \"x\"");
    Look([&] { EXPECT_EQ(Text(IDC_DISPLAY_NAME), CString(L"[ProductName] 100% %s & \"x\"")); });
    ShowAndGoBack();
    EXPECT_EQ(Property(L"ZOLT_SITEMGR_DISPLAY_NAME"), CString(L"[ProductName] 100% %s & \"x\""));
}

// ---- enable rules

TEST_P(NoticeEntry, UpdatesOffDisablesSourceAndList)
{
    WithStoredPage();
    SetChecked(IDC_UPDATES, false);
    Look([&] { EXPECT_EQ(UpdateStates(), CString(L"DDDD")); });
    ShowAndGoBack();
}

TEST_P(NoticeEntry, UpdatesOnEnablesTheSourceAndWithItTheList)
{
    WithStoredPage();
    SetChecked(IDC_UPDATES, false);
    SetChecked(IDC_UPDATES, true);
    Look([&] { EXPECT_EQ(UpdateStates(), CString(L"EEEE")); });
    ShowAndGoBack();
}

TEST_P(NoticeEntry, UpdatesOnLeavesTheListDisabledForTheMakersService)
{
    WithProperty(L"ZOLT_PATCHRELAY_ENABLE", L"#0");
    SetChecked(IDC_UPDATES, true);
    Look([&] { EXPECT_EQ(UpdateStates(), CString(L"EDDD")); });
    ShowAndGoBack();
}

TEST_P(NoticeEntry, TheSourceEnablesTheListAndDisablesIt)
{
    ExpectList(L"DDD");
    SelectEntry(IDC_UPDATE_SOURCE, 1);
    ExpectList(L"EEE");
    SelectEntry(IDC_UPDATE_SOURCE, 0);
    ExpectList(L"DDD");
    ShowAndGoBack();
}

TEST_P(NoticeEntry, AChangeOfTheSourceDoesNotAskWhetherUpdatesAreOn)
{
    WithProperty(L"ZOLT_PATCHRELAY_ENABLE", L"#0");
    Look([&] {
        SendDlgItemMessageW(Page(), IDC_UPDATE_SOURCE, CB_SETCURSEL, 1, 0);
        SendMessageW(Page(), WM_COMMAND, MAKEWPARAM(IDC_UPDATE_SOURCE, CBN_SELCHANGE),
                     reinterpret_cast<LPARAM>(GetDlgItem(Page(), IDC_UPDATE_SOURCE)));
        EXPECT_EQ(ListStates(), CString(L"EEE"));
    });
    ShowAndGoBack();
}

TEST_P(NoticeEntry, TheSiteChannelEnablesItsFiveControlsAndDisablesThem)
{
    Look([&] { EXPECT_EQ(SiteStates(), CString(DISABLED)); });
    SetChecked(IDC_SITE_CHANNEL, true);
    Look([&] { EXPECT_EQ(SiteStates(), CString(ENABLED)); });
    SetChecked(IDC_SITE_CHANNEL, false);
    Look([&] { EXPECT_EQ(SiteStates(), CString(DISABLED)); });
    ShowAndGoBack();
}

TEST_P(NoticeEntry, TheFeedsEnableTheCustomBoxWhichKeepsItsMark)
{
    SetChecked(IDC_FEEDS, false);
    Look([&] {
        EXPECT_FALSE(Control(IDC_CUSTOM_FEEDS).IsEnabled());
        EXPECT_TRUE(IsChecked(IDC_CUSTOM_FEEDS));
    });
    SetChecked(IDC_FEEDS, true);
    Look([&] { EXPECT_TRUE(Control(IDC_CUSTOM_FEEDS).IsEnabled()); });
    ShowAndGoBack();
}

TEST_P(NoticeEntry, ChannelNoticesAndCustomFeedsEnableNothing)
{
    const std::initializer_list<int> all = {
        IDC_UPDATES,      IDC_UPDATE_SOURCE,   IDC_LIST_LOCATION, IDC_LIST_BROWSE,  IDC_LIST_HEADING,
        IDC_SITE_CHANNEL, IDC_FEED_LOCATION,   IDC_FEED_BROWSE,   IDC_FEED_HEADING, IDC_DISPLAY_NAME,
        IDC_FEEDS,        IDC_CHANNEL_NOTICES, IDC_CUSTOM_FEEDS};
    CString before;
    Look([&] { before = States(all); });
    SetChecked(IDC_CHANNEL_NOTICES, false);
    SetChecked(IDC_CUSTOM_FEEDS, false);
    Look([&] { EXPECT_EQ(States(all), before); });
    ShowAndGoBack();
}

TEST_P(NoticeEntry, FeedsThatAreOffDisableTheCustomBoxOnEntry)
{
    WithProperty(L"ZOLT_RSS_FEEDS_ENABLE", L"#0");
    Look([&] { EXPECT_FALSE(Control(IDC_CUSTOM_FEEDS).IsEnabled()); });
    ShowAndGoBack();
}
