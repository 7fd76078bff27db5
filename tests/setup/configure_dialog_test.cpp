// What the dialog and its pages say to each other, and when.
#include "automation/picture.h"
#include "msi/msi_property.h"
#include "setup/configure_rules.h"
#include "setup/texts.h"
#include "setup/window_place.h"
#include "tests/setup/configure_fixture.h"

#include <algorithm>
#include <utility>

void PrintTo(const PageMessage& message, std::ostream* stream)
{
    *stream << "page " << message.page << " got " << message.message;
}

namespace {

using Stored = std::vector<PageMessage>;

PageMessage StoreOf(int page)
{
    return {page, PAGE_MESSAGE_STORE, 0};
}

PageMessage StoreAllOf(int page)
{
    return {page, PAGE_MESSAGE_STORE_ALL, 0};
}

class ConfigureDialog : public ConfigureTest
{
protected:
    CString Caption(int tab)
    {
        wchar_t text[200] = L"";
        TCITEMW item = {};
        item.mask = TCIF_TEXT;
        item.pszText = text;
        item.cchTextMax = 200;
        SendMessageW(InDialog(IDC_CONFIGURE_TABS).GetWindow(), TCM_GETITEMW, static_cast<WPARAM>(tab),
                     reinterpret_cast<LPARAM>(&item));
        return text;
    }
    int SelectedTab() { return TabCtrl_GetCurSel(InDialog(IDC_CONFIGURE_TABS).GetWindow()); }
    // As a person's click in the middle of the tab.
    void ClickTab(int tab)
    {
        Do([this, tab] {
            const HWND tabs = InDialog(IDC_CONFIGURE_TABS).GetWindow();
            RECT place = {};
            TabCtrl_GetItemRect(tabs, tab, &place);
            const LPARAM point = MAKELPARAM((place.left + place.right) / 2, (place.top + place.bottom) / 2);
            PostMessageW(tabs, WM_LBUTTONDOWN, MK_LBUTTON, point);
            PostMessageW(tabs, WM_LBUTTONUP, 0, point);
        });
    }
};

TEST_F(ConfigureDialog, EachProductHasATabForEachPageInTheirOrder)
{
    AddProduct(L"Zolt");
    AddProduct(L"Nuts & Bolts");
    AddTabs(2);
    Look([&] {
        EXPECT_EQ(Caption(0), CString(L"Zolt - Page 0"));
        EXPECT_EQ(Caption(1), CString(L"Zolt - Page 1"));
        EXPECT_EQ(Caption(2), CString(L"Nuts && Bolts - Page 0"));
        EXPECT_EQ(Caption(3), CString(L"Nuts && Bolts - Page 1"));
    });
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
}

TEST_F(ConfigureDialog, APageIsMadeWhenItsTabIsFirstShown)
{
    AddProduct(L"Zolt");
    AddTabs(3);
    Look([&] { EXPECT_EQ(record.created, (std::vector<int>{0})); });
    GoTo(2);
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
    EXPECT_EQ(record.created, (std::vector<int>{0, 2}));
}

// It went on showing what it had read when it came up first, and stored that over what was there by then.
TEST_F(ConfigureDialog, APageThatHasStoredStartsFromTheDatabaseWhenItsTabIsShownAgain)
{
    TestProduct& zolt = AddProduct(L"Zolt");
    AddTabs(3);
    Type(L"first");
    GoTo(1);
    GoTo(2);
    PressOnPage(IDC_PREVIOUS_TAB); // stores unchecked
    Await(L"the tab before", [this] { return Dialog().GetFront() == 1; });
    Do([&] {
        WriteProperty(zolt.database, L"TEST_VALUE_0", L"written since");
        WriteProperty(zolt.database, L"TEST_VALUE_2", L"written too");
    });
    for (const auto& [tab, text] : {std::pair{0, L"written since"}, std::pair{2, L"written too"}}) {
        GoTo(tab);
        Look([this, text = CString(text)] { EXPECT_EQ(OnPage(IDC_TEST_EDIT).GetText(), text); });
    }
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
    EXPECT_EQ(record.created, (std::vector<int>{0, 1, 2, 1, 0, 2}));
    EXPECT_EQ(Property(zolt, L"TEST_VALUE_0"), CString(L"written since"));
}

TEST_F(ConfigureDialog, WhatIsEnteredOnAPageThatWasMadeAnewIsAChangeAgainstTheFirstOne)
{
    AddProduct(L"Zolt");
    AddTabs(2);
    Type(L"something");
    GoTo(1);
    GoTo(0);
    Look([&] { EXPECT_TRUE(Dialog().HasChanges()) << "what was stored counts no more"; });
    Type(L"");
    Look([&] { EXPECT_FALSE(Dialog().HasChanges()) << "it is as it was"; });
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
}

TEST_F(ConfigureDialog, EachPageGetsItsNumberAmongAllTabsWhenItIsMade)
{
    AddProduct(L"Zolt");
    AddTabs(3);
    GoTo(2);
    GoTo(0);
    Look([&] {
        Stored counters = record.messages;
        std::erase_if(counters,
                      [](const PageMessage& message) { return message.message != PAGE_MESSAGE_COUNTER; });
        EXPECT_EQ(counters, (Stored{{0, PAGE_MESSAGE_COUNTER, CounterParameter(0, 3)},
                                    {2, PAGE_MESSAGE_COUNTER, CounterParameter(2, 3)},
                                    {0, PAGE_MESSAGE_COUNTER, CounterParameter(0, 3)}}));
        EXPECT_EQ(OnPage(IDC_PAGE_COUNTER).GetText(), CString(L"Page 1 of 3"));
        EXPECT_FALSE(OnPage(IDC_PREVIOUS_TAB).IsEnabled());
        EXPECT_TRUE(OnPage(IDC_NEXT_TAB).IsEnabled());
    });
    Press(IDC_CONFIGURE_NEXT);
    (void)Run();
}

TEST_F(ConfigureDialog, OnlyThePageInFrontIsSeen)
{
    AddProduct(L"Zolt");
    AddTabs(3);
    for (const int tab : {1, 2, 0}) {
        GoTo(tab);
        Look([this, tab] {
            EXPECT_EQ(VisiblePages(), 1);
            EXPECT_TRUE(IsWindowVisible(Page(tab)));
            EXPECT_EQ(SelectedTab(), tab);
        });
    }
    Press(IDC_CONFIGURE_NEXT);
    (void)Run();
}

TEST_F(ConfigureDialog, AClickOnATabStoresThePageThatIsLeft)
{
    AddProduct(L"Zolt");
    AddTabs(3);
    ClickTab(1);
    Await(L"the other tab", [this] { return Dialog().GetFront() == 1; });
    Look([&] { EXPECT_EQ(Stores(), (Stored{StoreOf(0)})); });
    Press(IDC_CONFIGURE_NEXT);
    (void)Run();
}

TEST_F(ConfigureDialog, APageThatRefusesKeepsItsTabOnAClick)
{
    AddProduct(L"Zolt");
    AddTabs(3);
    Type(L"bad");
    ClickTab(1);
    Answer(IDOK, L"Page 0 refuses");
    Look([&] {
        EXPECT_EQ(Dialog().GetFront(), 0);
        EXPECT_EQ(SelectedTab(), 0);
        EXPECT_TRUE(OnPage(IDC_TEST_EDIT).HasFocus());
    });
    Type(L"good");
    ClickTab(1);
    Await(L"the other tab", [this] { return Dialog().GetFront() == 1; });
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
}

TEST_F(ConfigureDialog, AVetoOfAHookKeepsTheTabByEveryWay)
{
    leaveHooks = {[](PageContext*) { return HOOK_VETO; }};
    AddProduct(L"Zolt");
    AddTabs(2);
    ClickTab(1);
    Key(VK_TAB, KeyModifier::Control);
    PressOnPage(IDC_NEXT_TAB);
    Press(IDC_CONFIGURE_NEXT);
    // Behind what was posted by then.
    Step(L"let all be handled",
         [turn = 0]() mutable { return Until(++turn > 5, L"messages are under way"); });
    Look([&] {
        EXPECT_EQ(Dialog().GetFront(), 0);
        EXPECT_EQ(SelectedTab(), 0);
        EXPECT_TRUE(record.stored.empty());
        EXPECT_EQ(Stores(), (Stored{StoreOf(0), StoreOf(0), StoreAllOf(0)}));
    });
    Press(IDC_CONFIGURE_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
}

TEST_F(ConfigureDialog, ThePagesOwnButtonsGoToTheTabsBeforeAndBehind)
{
    AddProduct(L"Zolt");
    AddTabs(3);
    PressOnPage(IDC_NEXT_TAB);
    Await(L"tab 1", [this] { return Dialog().GetFront() == 1; });
    PressOnPage(IDC_NEXT_TAB);
    Await(L"tab 2", [this] { return Dialog().GetFront() == 2; });
    PressOnPage(IDC_PREVIOUS_TAB);
    Await(L"tab 1 again", [this] { return Dialog().GetFront() == 1 && SelectedTab() == 1; });
    Look([&] {
        EXPECT_EQ(record.stored, (std::vector<int>{0, 1}));
        EXPECT_EQ(record.storedUnchecked, (std::vector<int>{2}));
        EXPECT_EQ(Stores(), Stored()) << "a page that goes by itself has stored by itself";
    });
    Press(IDC_CONFIGURE_NEXT);
    (void)Run();
}

TEST_F(ConfigureDialog, EveryPageThatWasMadeIsAskedOnceBeforeContinueEnds)
{
    AddProduct(L"Zolt");
    AddTabs(4);
    GoTo(3);
    GoTo(1);
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
    EXPECT_EQ(Stores(), (Stored{StoreOf(0), StoreOf(3), StoreAllOf(1)}));
}

TEST_F(ConfigureDialog, ContinueAsksAPageThatItsOwnWayBackHasLeftUnchecked)
{
    AddProduct(L"Zolt");
    AddTabs(4);
    GoTo(2);
    PressOnPage(IDC_PREVIOUS_TAB);
    Await(L"the tab before", [this] { return Dialog().GetFront() == 1; });
    Do([this] { record.messages.clear(); });
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
    EXPECT_EQ(Stores(), (Stored{StoreAllOf(1), StoreAllOf(2)}));
}

TEST_F(ConfigureDialog, AValueThatIsPutBackAfterThePagesOwnWayBackIsStoredAgain)
{
    TestProduct& zolt = AddProduct(L"Zolt");
    AddTabs(2);
    GoTo(1);
    Type(L"first");
    GoTo(0); // accepted with "first"
    GoTo(1);
    Type(L"second");
    PressOnPage(IDC_PREVIOUS_TAB); // stores "second" unchecked
    Await(L"the tab before", [this] { return Dialog().GetFront() == 0; });
    GoTo(1);
    Type(L"first");
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
    EXPECT_EQ(Property(zolt, L"TEST_VALUE_1"), CString(L"first"));
}

// A page with a question asked it at each pass.
TEST_F(ConfigureDialog, APageIsNotAskedAgainWhileNothingHasChangedOnIt)
{
    AddProduct(L"Zolt");
    AddTabs(3);
    for (const int tab : {2, 0, 1, 0, 2, 0}) {
        GoTo(tab);
    }
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
    EXPECT_EQ(Stores(), (Stored{StoreOf(0), StoreOf(2), StoreOf(1)}));
}

TEST_F(ConfigureDialog, APageThatWasChangedIsAskedAgainWhenItIsLeft)
{
    TestProduct& zolt = AddProduct(L"Zolt");
    AddTabs(2);
    GoTo(1);
    GoTo(0);
    Do([this] { record.messages.clear(); });
    Type(L"late");
    GoTo(1);
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
    EXPECT_EQ(Stores(), (Stored{StoreOf(0)}));
    EXPECT_EQ(Property(zolt, L"TEST_VALUE_0"), CString(L"late"));
}

TEST_F(ConfigureDialog, APageIsAskedAgainAfterADialogOfItsOwn)
{
    AddProduct(L"Zolt");
    AddTabs(2);
    GoTo(1);
    GoTo(0);
    Do([this] { record.messages.clear(); });
    Do([this] { MessageBoxW(FrontPage(), L"changes what no control shows", L"Zolt & Sons", MB_OK); });
    Answer(IDOK, L"changes what no control shows");
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
    EXPECT_EQ(Stores(), (Stored{StoreAllOf(0)}));
}

TEST_F(ConfigureDialog, TheDialogsOwnQuestionDoesNotHaveAPageAskedAgain)
{
    AddProduct(L"Zolt");
    AddTabs(2);
    options.bLosesChoices = true;
    GoTo(1);
    GoTo(0);
    Do([this] { record.messages.clear(); });
    Press(IDC_CONFIGURE_CANCEL);
    Answer(IDNO, SetupText(IDS_CONFIGURE_CANCEL_QUESTION));
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
    EXPECT_EQ(Stores(), Stored());
}

TEST_F(ConfigureDialog, ContinueDoesNotAskTheLastPageAgainThatItsOwnWayOnHasStored)
{
    AddProduct(L"Zolt");
    AddTabs(2);
    GoTo(1);
    Key(VK_RETURN);
    Await(L"the focus on Continue", [this] { return InDialog(IDC_CONFIGURE_NEXT).HasFocus(); });
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
    EXPECT_EQ(Stores(), (Stored{StoreOf(0)}));
    EXPECT_EQ(record.stored, (std::vector<int>{0, 1}));
}

TEST_F(ConfigureDialog, WhatIsChangedOnTheLastPageAfterItsOwnWayOnIsStoredToo)
{
    TestProduct& zolt = AddProduct(L"Zolt");
    AddTabs(2);
    GoTo(1);
    Key(VK_RETURN);
    Await(L"the focus on Continue", [this] { return InDialog(IDC_CONFIGURE_NEXT).HasFocus(); });
    Type(L"late");
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
    EXPECT_EQ(Property(zolt, L"TEST_VALUE_1"), CString(L"late"));
}

TEST_F(ConfigureDialog, WhatIsChangedOnTheLastPageAfterItsOwnWayOnIsCheckedToo)
{
    AddProduct(L"Zolt");
    AddTabs(2);
    GoTo(1);
    Key(VK_RETURN);
    Await(L"the focus on Continue", [this] { return InDialog(IDC_CONFIGURE_NEXT).HasFocus(); });
    Type(L"bad");
    Press(IDC_CONFIGURE_NEXT);
    Answer(IDOK, L"Page 1 refuses");
    Look([&] {
        EXPECT_EQ(Dialog().GetFront(), 1);
        EXPECT_EQ(OnPage(IDC_TEST_EDIT).GetText(), CString(L"bad")) << "what was refused is gone";
    });
    Press(IDC_CONFIGURE_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
}

TEST_F(ConfigureDialog, WhatIsEnteredStandsInTheDatabaseOfItsProduct)
{
    TestProduct& zolt = AddProduct(L"Zolt");
    TestProduct& volt = AddProduct(L"Volt");
    AddTabs(2);
    Type(L"for Zolt");
    GoTo(2);
    Type(L"for Volt");
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
    EXPECT_EQ(Property(zolt, L"TEST_VALUE_0"), CString(L"for Zolt"));
    EXPECT_EQ(Property(volt, L"TEST_VALUE_0"), CString(L"for Volt"));
}

TEST_F(ConfigureDialog, APageThatRefusesToBeSavedIsBroughtToTheFrontWithItsBox)
{
    AddProduct(L"Zolt");
    AddTabs(4);
    GoTo(2);
    Type(L"bad");
    PressOnPage(IDC_PREVIOUS_TAB); // doesn't validate
    Await(L"the tab before", [this] { return Dialog().GetFront() == 1; });
    Press(IDC_CONFIGURE_NEXT);
    Step(L"look behind the box", [this] {
        if (!FindMessageBox()) {
            return StepOutcome::NotYet(L"no box is up");
        }
        EXPECT_TRUE(IsWindowVisible(Page(2))) << "the box stands over another page";
        return StepOutcome::Done();
    });
    Answer(IDOK, L"Page 2 refuses");
    Look([&] {
        EXPECT_EQ(Dialog().GetFront(), 2);
        EXPECT_EQ(SelectedTab(), 2);
        EXPECT_TRUE(OnPage(IDC_TEST_EDIT).HasFocus());
    });
    Type(L"good");
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
}

TEST_F(ConfigureDialog, BackStoresThePageInFrontWithoutValidation)
{
    TestProduct& zolt = AddProduct(L"Zolt");
    AddTabs(3);
    GoTo(1);
    Type(L"bad");
    Press(IDC_CONFIGURE_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
    EXPECT_EQ(record.storedUnchecked, (std::vector<int>{1}));
    EXPECT_EQ(Property(zolt, L"TEST_VALUE_1"), CString(L"bad"));
}

// The page's own way back stores it and goes to the tab before; Back only stores.
TEST_F(ConfigureDialog, BackMakesNoPageThatNobodyLookedAt)
{
    AddProduct(L"Zolt");
    AddTabs(3);
    GoTo(2);
    Press(IDC_CONFIGURE_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
    EXPECT_EQ(record.created, (std::vector<int>{0, 2}));
}

TEST_F(ConfigureDialog, BackStaysWhileThePageInFrontRefusesTheWayBack)
{
    AddProduct(L"Zolt");
    AddTabs(2);
    GoTo(1);
    Type(L"no way back");
    Press(IDC_CONFIGURE_BACK);
    Await(L"the page was asked", [this] { return record.storedUnchecked == std::vector<int>{1}; });
    Look([&] { EXPECT_EQ(Dialog().GetFront(), 1); });
    PressOnPage(IDC_PREVIOUS_TAB);
    Await(L"the page was asked", [this] { return record.storedUnchecked == std::vector<int>{1, 1}; });
    Look([&] { EXPECT_EQ(Dialog().GetFront(), 1); });
    Type(L"a way back");
    Press(IDC_CONFIGURE_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
    EXPECT_EQ(record.storedUnchecked, (std::vector<int>{1, 1, 1}));
}

TEST_F(ConfigureDialog, BackIsOffWhereThereIsNothingBefore)
{
    AddProduct(L"Zolt");
    AddTabs(2);
    options.bCanGoBack = false;
    Look([&] { EXPECT_FALSE(InDialog(IDC_CONFIGURE_BACK).IsEnabled()); });
    Press(IDC_CONFIGURE_NEXT);
    (void)Run();
}

TEST_F(ConfigureDialog, CancelEndsWith1602AsOnEveryPage)
{
    AddProduct(L"Zolt");
    AddTabs(2);
    Press(IDC_CONFIGURE_CANCEL);
    EXPECT_EQ(Run(), NAVIGATION_CANCEL);
    EXPECT_EQ(host.manager.m_exitCode, 1602u);
    EXPECT_EQ(host.log.Of(L"SetMsiProperty"), Calls({L"SetMsiProperty(TARN_SETUP_SUCCEEDED, \"\", false)"}));
    EXPECT_EQ(Stores(), Stored());
}

TEST_F(ConfigureDialog, TheTitleIsThatOfTheWizardsPages)
{
    AddProduct(L"Zolt");
    AddTabs(1);
    Look([&] { EXPECT_EQ(WindowText(Dialog()), CString(L"Zolt & Sons - Office")); });
    Press(IDC_CONFIGURE_NEXT);
    (void)Run();
}

TEST_F(ConfigureDialog, APageIsAChildOfTheDialogAndKnowsItsFrameAndItsProduct)
{
    static PageContext seen;
    seen = PageContext();
    leaveHooks = {[](PageContext* context) {
        seen = *context;
        return 1;
    }};
    TestProduct& zolt = AddProduct(L"Zolt");
    AddTabs(2);
    GoTo(1);
    Look([&] {
        EXPECT_TRUE(IsChild(Dialog(), Page(0)));
        EXPECT_EQ(seen.hParent, Page(0));
        EXPECT_EQ(seen.hFrame, Dialog().m_hWnd);
        EXPECT_EQ(seen.pProduct, &zolt);
        EXPECT_EQ(seen.hDatabase, zolt.database);
        const RECT view = CWindow(InDialog(IDC_CONFIGURE_VIEW).GetWindow()).GetRectInParent();
        EXPECT_EQ(ScreenRectangleOf(seen.rcDisplay), ScreenRectangleOf(view));
    });
    Press(IDC_CONFIGURE_NEXT);
    (void)Run();
}

TEST_F(ConfigureDialog, OneTabAloneHasNoWayToOthers)
{
    AddProduct(L"Zolt");
    AddTabs(1);
    Look([&] {
        EXPECT_EQ(OnPage(IDC_PAGE_COUNTER).GetText(), CString(L"Page 1 of 1"));
        EXPECT_FALSE(OnPage(IDC_PREVIOUS_TAB).IsEnabled());
        EXPECT_FALSE(OnPage(IDC_NEXT_TAB).IsEnabled());
    });
    Press(IDC_CONFIGURE_NEXT);
    (void)Run();
}

TEST_F(ConfigureDialog, NothingOfTwelveTabsIsCutOff)
{
    AddProduct(L"Zolt Professional 2027");
    AddProduct(L"Volt");
    AddTabs(6);
    Look([&] {
        const HWND tabs = InDialog(IDC_CONFIGURE_TABS).GetWindow();
        RECT room = {};
        GetClientRect(tabs, &room);
        for (int tab = 0; tab < 12; ++tab) {
            RECT place = {};
            TabCtrl_GetItemRect(tabs, tab, &place);
            EXPECT_GE(place.left, 0) << tab;
            EXPECT_LE(place.right, room.right) << tab;
        }
        const RECT view = CWindow(InDialog(IDC_CONFIGURE_VIEW).GetWindow()).GetClientRect();
        const RECT page = CWindow(Page(0)).GetRectInParent();
        EXPECT_LE(page.right, view.right);
        EXPECT_LE(page.bottom, view.bottom);
        wchar_t folder[MAX_PATH] = L"";
        GetTempPathW(MAX_PATH, folder);
        (void)SaveWindowPicture(Dialog(), CString(folder) + L"configure-twelve.png"); // for who wants to look
    });
    Press(IDC_CONFIGURE_NEXT);
    (void)Run();
}

TEST_F(ConfigureDialog, LeavingAndEnteringTabs300TimesLeavesNothingBehind)
{
    AddProduct(L"Zolt");
    AddTabs(TEST_PAGES);
    ProcessState before;
    for (int tab = 1; tab <= TEST_PAGES; ++tab) {
        GoTo(tab % TEST_PAGES); // every page is there
    }
    Do([&] { before = ReadProcessState(); });
    for (int turn = 0; turn < 25; ++turn) {
        Do([this, turn] {
            for (int step = 1; step <= TEST_PAGES; ++step) {
                SetDlgItemTextW(FrontPage(), IDC_TEST_EDIT, NumberText(turn)); // so that it stores again
                EXPECT_TRUE(Dialog().GoTo(step % TEST_PAGES));
            }
        });
    }
    Do([&] {
        EXPECT_EQ(DescribeChange(before, ReadProcessState()), CString());
        EXPECT_EQ(Stores().size(), 312u);
    });
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
}

TEST_F(ConfigureDialog, OpeningAndClosingItManyTimesLeavesNothingBehind)
{
    AddProduct(L"Zolt");
    AddTabs(3);
    for (int turn = 0; turn < 25; ++turn) {
        GoTo(turn % 3);
        Press(IDC_CONFIGURE_NEXT);
        EXPECT_EQ(Run(), NAVIGATION_NEXT);
    }
}

} // namespace
