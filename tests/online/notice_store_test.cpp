// What the page of notices and feeds stores, in which order, and what the next visit shows of it.
#include "tests/online/online_page.h"

namespace {

class NoticeStore : public NoticePage
{
protected:
    // What the page writes from here on.
    void CountWritesFromHere()
    {
        Look([this] { host.log.Clear(); });
    }
    Calls Writes() const { return host.log.Of(L"Product.SetMsiProperty"); }

    static CString Write(const wchar_t* name, const wchar_t* value)
    {
        return CString(L"Product.SetMsiProperty(") + name + L", \"" + value + L"\", false)";
    }
};
INSTANTIATE_BOTH_SHAPES(NoticeStore);

} // namespace

TEST_P(NoticeStore, EverythingOnIsWrittenInOrderAndTheTemporaryTextsAreNotTouched)
{
    WithStoredPage();
    const CString list = folder.AddFile(L"updates.npl", "");
    const CString feed = folder.AddFile(L"feed.xml", "");
    Type(IDC_LIST_LOCATION, list);
    Type(IDC_FEED_LOCATION, feed);
    Type(IDC_DISPLAY_NAME, L"Site");
    CountWritesFromHere();
    Press(Next());
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(
        Writes(),
        Calls({Write(L"ZOLT_PATCHRELAY_ENABLE", L"#1"), Write(L"ZOLT_CHANNEL_NOTIFY_ENABLE", L"#1"),
               Write(L"ZOLT_SITEMGR_CHANNEL_ENABLE", L"#1"), Write(L"ZOLT_RSS_FEEDS_ENABLE", L"#1"),
               Write(L"ZOLT_RSS_FEEDS_CUSTOM_ENABLE", L"#1"),
               Write(L"ZOLT_TEMP_RSS_FEEDS_CUSTOM_ENABLE", L"#1"),
               Write(L"ZOLT_PATCHRELAY_PATCHNOTIFY", L"#2"), Write(L"ZOLT_PATCHRELAY_LISTLOCACTION", list),
               Write(L"ZOLT_SITEMGR_LOCATION", feed), Write(L"ZOLT_SITEMGR_DISPLAY_NAME", L"Site")}));
}

TEST_P(NoticeStore, EverythingOffIsWrittenInOrderWithTheTextsInTheTemporaryProperties)
{
    WithStoredPage();
    Type(IDC_DISPLAY_NAME, L"Site");
    for (const int id : {IDC_CUSTOM_FEEDS, IDC_UPDATES, IDC_CHANNEL_NOTICES, IDC_SITE_CHANNEL, IDC_FEEDS}) {
        SetChecked(id, false);
    }
    CountWritesFromHere();
    Press(Next());
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(
        Writes(),
        Calls({Write(L"ZOLT_PATCHRELAY_ENABLE", L"#0"), Write(L"ZOLT_CHANNEL_NOTIFY_ENABLE", L"#0"),
               Write(L"ZOLT_SITEMGR_CHANNEL_ENABLE", L"#0"), Write(L"ZOLT_RSS_FEEDS_ENABLE", L"#0"),
               Write(L"ZOLT_RSS_FEEDS_CUSTOM_ENABLE", L"#0"),
               Write(L"ZOLT_TEMP_RSS_FEEDS_CUSTOM_ENABLE", L"#0"),
               Write(L"ZOLT_PATCHRELAY_PATCHNOTIFY", L"#3"), Write(L"ZOLT_PATCHRELAY_LISTLOCACTION", L""),
               Write(L"ZOLT_TEMP_PATCHRELAY_LISTLOCATION", L"\\\\site\\lists\\on.npl"),
               Write(L"ZOLT_SITEMGR_LOCATION", L""),
               Write(L"ZOLT_TEMP_SITEMGR_LOCATION", L"\\\\site\\feeds\\on.xml"),
               Write(L"ZOLT_SITEMGR_DISPLAY_NAME", L""), Write(L"ZOLT_TEMP_SITEMGR_DISPLAY_NAME", L"Site")}));
}

TEST_P(NoticeStore, BackWritesTheSameWithoutAnyCheck)
{
    WithStoredPage();
    Type(IDC_LIST_LOCATION, L"no list at all");
    Type(IDC_FEED_LOCATION, L"\\");
    CountWritesFromHere();
    ShowAndGoBack();
    EXPECT_EQ(
        Writes(),
        Calls({Write(L"ZOLT_PATCHRELAY_ENABLE", L"#1"), Write(L"ZOLT_CHANNEL_NOTIFY_ENABLE", L"#1"),
               Write(L"ZOLT_SITEMGR_CHANNEL_ENABLE", L"#1"), Write(L"ZOLT_RSS_FEEDS_ENABLE", L"#1"),
               Write(L"ZOLT_RSS_FEEDS_CUSTOM_ENABLE", L"#1"),
               Write(L"ZOLT_TEMP_RSS_FEEDS_CUSTOM_ENABLE", L"#1"),
               Write(L"ZOLT_PATCHRELAY_PATCHNOTIFY", L"#2"),
               Write(L"ZOLT_PATCHRELAY_LISTLOCACTION", L"no list at all"),
               Write(L"ZOLT_SITEMGR_LOCATION", L"\\"), Write(L"ZOLT_SITEMGR_DISPLAY_NAME", L"Name on")}));
}

TEST_P(NoticeStore, BackDoesNotAskTheLeaveHooks)
{
    context.leaveHooks = {[](PageContext*) { return HOOK_VETO; }};
    ShowAndGoBack();
    EXPECT_EQ(Property(L"ZOLT_PATCHRELAY_PATCHNOTIFY"), CString(L"#1"));
}

TEST_P(NoticeStore, AVetoKeepsThePageUnstored)
{
    context.leaveHooks = {[](PageContext*) { return HOOK_VETO; }};
    CountWritesFromHere();
    Press(Next());
    Look([&] { EXPECT_EQ(Writes(), Calls()); });
    ShowAndGoBack();
}

TEST_P(NoticeStore, UpdatesUncheckedWithAListTypedKeepsItsPathForTheNextVisit)
{
    ChooseList(L"C:\\lists\\updates.npl");
    SetChecked(IDC_UPDATES, false);
    Press(Next());
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(Property(L"ZOLT_PATCHRELAY_ENABLE"), CString(L"#0"));
    EXPECT_EQ(Property(L"ZOLT_PATCHRELAY_PATCHNOTIFY"), CString(L"#3"));
    EXPECT_EQ(Property(L"ZOLT_PATCHRELAY_LISTLOCACTION"), CString());
    EXPECT_EQ(Property(L"ZOLT_TEMP_PATCHRELAY_LISTLOCATION"), CString(L"C:\\lists\\updates.npl"));
    Look([&] {
        EXPECT_EQ(Control(IDC_UPDATE_SOURCE).GetSelection(), 0);
        EXPECT_EQ(Text(IDC_LIST_LOCATION), CString(L"C:\\lists\\updates.npl"));
        EXPECT_FALSE(Control(IDC_LIST_LOCATION).IsEnabled());
    });
    ShowAndGoBack();
}

TEST_P(NoticeStore, FeedsUncheckedWithCustomFeedsCheckedBringTheMarkBack)
{
    SetChecked(IDC_FEEDS, false);
    Look([&] {
        EXPECT_FALSE(Control(IDC_CUSTOM_FEEDS).IsEnabled());
        EXPECT_TRUE(IsChecked(IDC_CUSTOM_FEEDS));
    });
    ShowAndGoBack();
    EXPECT_EQ(Property(L"ZOLT_RSS_FEEDS_CUSTOM_ENABLE"), CString(L"#0"));
    EXPECT_EQ(Property(L"ZOLT_TEMP_RSS_FEEDS_CUSTOM_ENABLE"), CString(L"#1"));
    Look([&] { EXPECT_TRUE(IsChecked(IDC_CUSTOM_FEEDS)); });
    ShowAndGoBack();
}

TEST_P(NoticeStore, CustomFeedsUncheckedStayUnchecked)
{
    SetChecked(IDC_CUSTOM_FEEDS, false);
    ShowAndGoBack();
    Look([&] { EXPECT_FALSE(IsChecked(IDC_CUSTOM_FEEDS)); });
    ShowAndGoBack();
}

// ---- re-entry after Back

TEST_P(NoticeStore, AfterBackTheListIsShownAgainWithUpdatesFromTheList)
{
    ChooseList(L"C:\\on.npl");
    ShowAndGoBack();
    Look([&] {
        EXPECT_EQ(Control(IDC_UPDATE_SOURCE).GetSelection(), 1);
        EXPECT_EQ(Text(IDC_LIST_LOCATION), CString(L"C:\\on.npl"));
        EXPECT_TRUE(Control(IDC_LIST_LOCATION).IsEnabled());
    });
    ShowAndGoBack();
}

TEST_P(NoticeStore, AfterBackTheListIsShownAgainWithUpdatesFromTheMaker)
{
    ChooseList(L"C:\\off.npl");
    SelectEntry(IDC_UPDATE_SOURCE, 0);
    ShowAndGoBack();
    EXPECT_EQ(Property(L"ZOLT_PATCHRELAY_PATCHNOTIFY"), CString(L"#1"));
    Look([&] { EXPECT_EQ(Text(IDC_LIST_LOCATION), CString(L"C:\\off.npl")); });
    ShowAndGoBack();
}

TEST_P(NoticeStore, AfterBackTheChannelIsShownAgainOnAndOff)
{
    for (const bool on : {true, false}) {
        SetChecked(IDC_SITE_CHANNEL, true);
        Type(IDC_FEED_LOCATION, on ? L"C:\\on.xml" : L"C:\\off.xml");
        Type(IDC_DISPLAY_NAME, on ? L"On" : L"Off");
        SetChecked(IDC_SITE_CHANNEL, on);
        ShowAndGoBack();
        Look([this, on] {
            EXPECT_EQ(IsChecked(IDC_SITE_CHANNEL), on);
            EXPECT_EQ(Text(IDC_FEED_LOCATION), CString(on ? L"C:\\on.xml" : L"C:\\off.xml"));
            EXPECT_EQ(Text(IDC_DISPLAY_NAME), CString(on ? L"On" : L"Off"));
        });
        ShowAndGoBack();
    }
}

TEST_P(NoticeStore, AnEmptiedDisplayNameStaysEmpty)
{
    SetChecked(IDC_SITE_CHANNEL, true);
    Type(IDC_DISPLAY_NAME, L"");
    ShowAndGoBack();
    Look([&] { EXPECT_EQ(Text(IDC_DISPLAY_NAME), CString()) << "only the first visit proposes a name"; });
    ShowAndGoBack();
}

TEST_P(NoticeStore, NoticesAndUpdatesThatAreOffStayOff)
{
    SetChecked(IDC_CHANNEL_NOTICES, false);
    SetChecked(IDC_UPDATES, false);
    ShowAndGoBack();
    Look([&] {
        EXPECT_FALSE(IsChecked(IDC_CHANNEL_NOTICES));
        EXPECT_FALSE(IsChecked(IDC_UPDATES));
    });
    ShowAndGoBack();
}

TEST_P(NoticeStore, FullSettingsSurviveATextOfBracketsAndQuotes)
{
    const CString text = L"[TARGETDIR] 'a' \"b\" %1 \x00E4\x4E2D";
    SetChecked(IDC_SITE_CHANNEL, true);
    Type(IDC_DISPLAY_NAME, text);
    ShowAndGoBack();
    EXPECT_EQ(Property(L"ZOLT_SITEMGR_DISPLAY_NAME"), text);
}
