// The check of the locations on going forward: every outcome with its box, and what the page does then.
#include "tests/online/online_page.h"

namespace {

enum class Field
{
    List,
    Feed,
};

class NoticeLocation : public NoticePage
{
protected:
    void Choose(Field field, const CString& location)
    {
        if (field == Field::List) {
            ChooseList(location);
        } else {
            ChooseFeed(location);
        }
    }

    // The page goes without a box.
    void ExpectAccepted()
    {
        Press(Next());
        EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    }

    // The page stays with the focus on the field and its text selected, and has stored the text.
    void ExpectStays(Field field, const CString& location)
    {
        const int edit = field == Field::List ? IDC_LIST_LOCATION : IDC_FEED_LOCATION;
        const wchar_t* name =
            field == Field::List ? L"ZOLT_PATCHRELAY_LISTLOCACTION" : L"ZOLT_SITEMGR_LOCATION";
        Await(L"the field has not got the focus", [this, edit] { return HasFocus(edit); });
        Look([this, edit, name, location] {
            EXPECT_EQ(Control(edit).GetSelectedText(), location);
            EXPECT_EQ(Property(name), location) << "what stays is stored already";
        });
        ShowAndGoBack();
    }

    void ExpectRefused(Field field, const CString& location, unsigned int text)
    {
        Choose(field, location);
        Press(Next());
        Answer(RefusingBox(text), IDOK);
        ExpectStays(field, location);
    }

    // No stays, Yes goes on.
    void ExpectAsked(Field field, const CString& location, unsigned int text)
    {
        Choose(field, location);
        Press(Next());
        Answer(AskingBox(text), IDNO);
        ExpectStays(field, location);
        Press(Next());
        Answer(AskingBox(text), IDYES);
        EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    }
};
INSTANTIATE_BOTH_SHAPES(NoticeLocation);

} // namespace

// ---- the list

TEST_P(NoticeLocation, AListFileThatExistsIsUsable)
{
    ChooseList(folder.AddFile(L"updates.npl", ""));
    ExpectAccepted();
}

TEST_P(NoticeLocation, AListFileWithTheExtensionInCapitalsIsUsable)
{
    ChooseList(folder.AddFile(L"UPDATES.NPL", ""));
    ExpectAccepted();
}

TEST_P(NoticeLocation, AListOfAnotherKindIsRefusedThoughItExists)
{
    ExpectRefused(Field::List, folder.AddFile(L"updates.txt", ""), IDS_LIST_WRONG_KIND);
}

TEST_P(NoticeLocation, AListWithoutADotIsOfTheWrongKind)
{
    ExpectRefused(Field::List, L"npl", IDS_LIST_WRONG_KIND);
}

TEST_P(NoticeLocation, AListThatDoesNotExistIsRefused)
{
    ExpectRefused(Field::List, folder / L"missing.npl", IDS_LIST_MISSING);
}

TEST_P(NoticeLocation, AListLocationThatIsNoPathIsRefused)
{
    ExpectRefused(Field::List, L"C:\\a:b.npl", IDS_LIST_MISSING);
}

TEST_P(NoticeLocation, AnEmptyListIsAskedAboutAndStoredEmpty)
{
    ExpectAsked(Field::List, L"", IDS_LIST_EMPTY);
    EXPECT_EQ(Property(L"ZOLT_PATCHRELAY_LISTLOCACTION"), CString());
    EXPECT_EQ(Property(L"ZOLT_PATCHRELAY_PATCHNOTIFY"), CString(L"#2"));
}

TEST_P(NoticeLocation, AListOnAServerThatCannotBeResolvedIsAskedAbout)
{
    // The name has 15 characters, and no name below "invalid" is ever given to a server.
    ExpectAsked(Field::List, L"\\\\nowhere.invalid\\lists\\updates.npl", IDS_LIST_HOST_UNKNOWN);
}

TEST_P(NoticeLocation, AListOnAServerOfFifteenCharactersThatResolvesIsUsableWithoutItsFile)
{
    ChooseList(L"\\\\127.000.000.001\\no such share\\updates.npl");
    ExpectAccepted();
}

TEST_P(NoticeLocation, AListOnThisComputerIsUsableWithoutItsFile)
{
    ChooseList(L"\\\\localhost\\no such share\\updates.npl");
    ExpectAccepted();
}

TEST_P(NoticeLocation, AListOnAServerOfSixteenCharactersIsTakenWithoutAnyTest)
{
    ChooseList(L"\\\\nowhere1.invalid\\lists\\updates.npl");
    ExpectAccepted();
}

TEST_P(NoticeLocation, TheListIsNotCheckedWhileItIsNotInUse)
{
    ChooseList(L"no list");
    SelectEntry(IDC_UPDATE_SOURCE, 0);
    ExpectAccepted();
    SelectEntry(IDC_UPDATE_SOURCE, 1);
    SetChecked(IDC_UPDATES, false);
    ExpectAccepted();
}

// ---- the site manager's feed

TEST_P(NoticeLocation, AFeedThatExistsIsUsableInBothKinds)
{
    for (const wchar_t* name : {L"feed.xml", L"feed.RDF"}) {
        ChooseFeed(folder.AddFile(name, ""));
        ExpectAccepted();
    }
}

TEST_P(NoticeLocation, AFeedOfAnotherKindIsAskedAboutThoughItExists)
{
    ExpectAsked(Field::Feed, folder.AddFile(L"feed.txt", ""), IDS_FEED_WRONG_KIND);
}

TEST_P(NoticeLocation, AFeedOfAnotherKindOnAServerIsAskedAboutForItsKind)
{
    ExpectAsked(Field::Feed, L"\\\\server\\share\\feed.txt", IDS_FEED_WRONG_KIND);
}

TEST_P(NoticeLocation, AFeedThatDoesNotExistIsAskedAbout)
{
    ExpectAsked(Field::Feed, folder / L"missing.xml", IDS_FEED_NOT_FOUND);
}

TEST_P(NoticeLocation, AFeedOnAServerIsAskedAboutEvenWhenTheServerResolves)
{
    ExpectAsked(Field::Feed, L"\\\\localhost\\no such share\\feed.xml", IDS_FEED_NOT_FOUND);
}

TEST_P(NoticeLocation, AnEmptyFeedWasNotFound)
{
    ExpectAsked(Field::Feed, L"", IDS_FEED_NOT_FOUND);
}

TEST_P(NoticeLocation, AFeedThatIsOnlyABackslashIsRefused)
{
    ExpectRefused(Field::Feed, L"\\", IDS_FEED_INVALID);
}

TEST_P(NoticeLocation, AFeedLocationThatIsNoPathIsRefused)
{
    ExpectRefused(Field::Feed, L"C:\\feeds|new.xml", IDS_FEED_INVALID);
}

TEST_P(NoticeLocation, AFeedOnAServerOfSixteenCharactersIsRefused)
{
    ExpectRefused(Field::Feed, L"\\\\sixteencharacter\\share\\feed.xml", IDS_FEED_SERVER_TOO_LONG);
}

TEST_P(NoticeLocation, AFeedOnAServerOfFifteenCharactersIsOnlyAskedAbout)
{
    ExpectAsked(Field::Feed, L"\\\\fifteencharacte\\share\\feed.xml", IDS_FEED_NOT_FOUND);
}

TEST_P(NoticeLocation, TheFeedIsNotCheckedWhileTheChannelIsOff)
{
    ChooseFeed(L"\\");
    SetChecked(IDC_SITE_CHANNEL, false);
    ExpectAccepted();
}

// ---- both

TEST_P(NoticeLocation, AListThatIsRefusedLeavesTheFeedUnchecked)
{
    ChooseFeed(L"\\");
    ExpectRefused(Field::List, L"bad", IDS_LIST_WRONG_KIND);
    EXPECT_EQ(Property(L"ZOLT_SITEMGR_LOCATION"), CString(L"\\")) << "stored all the same";
}

TEST_P(NoticeLocation, NoToTheListLeavesTheFeedUnchecked)
{
    ChooseFeed(L"\\");
    ChooseList(L"");
    Press(Next());
    Answer(AskingBox(IDS_LIST_EMPTY), IDNO);
    ExpectStays(Field::List, L"");
}

TEST_P(NoticeLocation, YesToTheListGoesOnToTheFeed)
{
    ChooseList(L"");
    ChooseFeed(L"\\");
    Press(Next());
    Answer(AskingBox(IDS_LIST_EMPTY), IDYES);
    Answer(RefusingBox(IDS_FEED_INVALID), IDOK);
    ExpectStays(Field::Feed, L"\\");
}

TEST_P(NoticeLocation, ALocationIsCheckedAnewAfterItWasCorrected)
{
    ChooseList(L"bad");
    Press(Next());
    Answer(RefusingBox(IDS_LIST_WRONG_KIND), IDOK);
    Type(IDC_LIST_LOCATION, folder.AddFile(L"good.npl", ""));
    ExpectAccepted();
}
