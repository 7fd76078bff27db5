// What goes wrong while the dialog is up, what closing it would lose, and where it stands.
#include "automation/picture.h"
#include "base/system_text.h"
#include "msi/msi_property.h"
#include "setup/texts.h"
#include "setup/window_place.h"
#include "tests/setup/configure_fixture.h"

namespace {

class ConfigureTrouble : public ConfigureTest
{
protected:
    CString Question() { return SetupText(IDS_CONFIGURE_CANCEL_QUESTION); }
    HWND Reason()
    {
        for (const HWND window : ChildWindows(Dialog())) {
            if (GetDlgCtrlID(window) == IDC_CONFIGURE_REASON && IsWindowVisible(window)) {
                return window;
            }
        }
        return nullptr;
    }
    CString ReasonText()
    {
        CString text = WindowText(Reason());
        text.Replace(L"\r\n", L"\n");
        return text;
    }
    void SavePicture(const wchar_t* name)
    {
        wchar_t folder[MAX_PATH] = L"";
        GetTempPathW(MAX_PATH, folder);
        (void)SaveWindowPicture(Dialog(), CString(folder) + name); // for who wants to look
    }
    ScreenRectangle Place() { return ScreenRectangleOf(CWindow(Dialog()).GetWindowRect()); }
    CString FailedToLoad() { return L"Failed to load C:\\no such folder\\WizText.dll"; }
    void AnswerLoadBox()
    {
        Step(L"answer the library's box", [this] {
            const auto box = FindMessageBox();
            if (!box) {
                return StepOutcome::NotYet(L"no box is up");
            }
            EXPECT_EQ(box->text, FailedToLoad());
            return AnswerMessageBox(*box, IDOK);
        });
        Step(L"wait for its end", [] { return Until(!FindMessageBox(), L"the box is still there"); });
    }
};

// ---- a page that can't be made

TEST_F(ConfigureTrouble, APageThatCantBeMadeLeavesASentenceInItsPlace)
{
    AddProduct(L"Zolt");
    AddTabs(3);
    Do([this] { host.language.wizTextPath = L"C:\\no such folder\\"; });
    GoTo(1);
    AnswerLoadBox();
    Look([&] {
        EXPECT_EQ(Dialog().GetFront(), 1);
        EXPECT_EQ(Page(1), nullptr);
        EXPECT_EQ(VisiblePages(), 0);
        CString expected = SetupText(IDS_CONFIGURE_NO_PAGE, {L"Page 1"});
        expected.Replace(L"\r\n", L"\n");
        EXPECT_EQ(ReasonText(), expected);
        EXPECT_EQ(GetFocus(), Reason()) << "a screen reader doesn't come to the words";
        SavePicture(L"configure-no-page.png");
    });
    Do([this] { host.language.wizTextPath = ProgramFolder(); }); // for the page that is made anew
    GoTo(0);
    Look([&] {
        EXPECT_EQ(VisiblePages(), 1);
        EXPECT_EQ(Reason(), nullptr);
    });
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
}

TEST_F(ConfigureTrouble, APageThatCouldNotBeMadeIsTriedAgainWhenItsTabIsChosenAnew)
{
    AddProduct(L"Zolt");
    AddTabs(2);
    Do([this] { host.language.wizTextPath = L"C:\\no such folder\\"; });
    GoTo(1);
    AnswerLoadBox();
    Do([this] { host.language.wizTextPath = ProgramFolder(); });
    GoTo(0);
    GoTo(1);
    Look([&] {
        EXPECT_NE(Page(1), nullptr);
        EXPECT_EQ(Reason(), nullptr);
    });
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
}

TEST_F(ConfigureTrouble, KeysWorkWhereAPageCouldNotBeMade)
{
    AddProduct(L"Zolt");
    AddTabs(3);
    Do([this] { host.language.wizTextPath = L"C:\\no such folder\\"; });
    GoTo(1);
    AnswerLoadBox();
    Do([this] { host.language.wizTextPath = ProgramFolder(); });
    Key(VK_TAB, KeyModifier::Control);
    Await(L"the next tab", [this] { return Dialog().GetFront() == 2; });
    LastKey(VK_ESCAPE);
    EXPECT_EQ(Run(), NAVIGATION_CANCEL);
}

TEST_F(ConfigureTrouble, EscapeWhereAPageCouldNotBeMadeIsCancel)
{
    AddProduct(L"Zolt");
    AddTabs(2);
    Do([this] { host.language.wizTextPath = L"C:\\no such folder\\"; });
    GoTo(1);
    AnswerLoadBox();
    LastKey(VK_ESCAPE);
    EXPECT_EQ(Run(), NAVIGATION_CANCEL);
}

TEST_F(ConfigureTrouble, APageWhoseWindowGoesIsMadeAnew)
{
    AddProduct(L"Zolt");
    AddTabs(2);
    Do([this] { DestroyWindow(Page(0)); });
    Key(VK_TAB, KeyModifier::Control);
    GoTo(1);
    GoTo(0);
    Look([&] { EXPECT_TRUE(IsWindowVisible(Page(0))); });
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
}

TEST_F(ConfigureTrouble, APageIsNotMadeWithoutAProduct)
{
    AddTabWithoutProduct(0);
    Look([&] {
        EXPECT_EQ(Page(0), nullptr);
        CString expected = SetupText(IDS_CONFIGURE_NO_PRODUCT, {L"Page 0"});
        expected.Replace(L"\r\n", L"\n");
        EXPECT_EQ(ReasonText(), expected);
        SavePicture(L"configure-no-product.png");
    });
    Press(IDC_CONFIGURE_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
}

// ---- a page's own box

TEST_F(ConfigureTrouble, ItStaysWhileAPagesOwnBoxIsUp)
{
    for (const int turn : {0, 1}) {
        if (turn == 0) {
            AddProduct(L"Zolt");
            AddTabs(2);
        }
        Type(L"bad");
        if (turn == 0) {
            Key(VK_RETURN);
        } else {
            PressOnPage(IDC_NEXT_TAB);
        }
        Step(L"close the window under the box", [this] {
            if (!FindMessageBox()) {
                return StepOutcome::NotYet(L"no box is up");
            }
            for (const UINT command : {IDC_CONFIGURE_NEXT, IDC_CONFIGURE_BACK, IDC_CONFIGURE_CANCEL}) {
                SendMessageW(Dialog(), WM_COMMAND, command, 0);
            }
            SendMessageW(Dialog(), WM_CLOSE, 0, 0);
            return StepOutcome::Done();
        });
        Answer(IDOK, L"Page 0 refuses");
        Look([&] {
            EXPECT_EQ(Dialog().GetFront(), 0);
            EXPECT_EQ(record.alive, 1);
        });
    }
    Press(IDC_CONFIGURE_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
}

// ---- a database that goes away

TEST_F(ConfigureTrouble, ADatabaseThatGoesIsReportedOnceAndItsPagesMayBeLeft)
{
    TestProduct& zolt = AddProduct(L"Zolt");
    TestProduct& volt = AddProduct(L"Volt");
    AddTabs(2);
    Type(L"lost");
    Do([&] { CloseDatabase(zolt); });
    GoTo(2);
    Answer(IDOK, SetupText(IDS_CONFIGURE_NO_DATABASE, {L"Zolt", SystemErrorText(ERROR_INVALID_HANDLE)}));
    Look([&] { EXPECT_EQ(Dialog().GetFront(), 2); });
    Type(L"kept");
    GoTo(0);
    Look([&] { EXPECT_EQ(OnPage(IDC_TEST_EDIT).GetText(), CString(L"lost")) << "it never was stored"; });
    GoTo(2); // no second box
    Look([&] { EXPECT_EQ(Property(volt, L"TEST_VALUE_0"), CString(L"kept")); });
    Press(IDC_CONFIGURE_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
    EXPECT_EQ(record.stored, (std::vector<int>{0})) << "the page without a database was asked to store";
}

TEST_F(ConfigureTrouble, ContinueDoesNotGoOnWithoutADatabaseAndSaysWhy)
{
    TestProduct& zolt = AddProduct(L"Zolt");
    AddProduct(L"Volt");
    AddTabs(1);
    GoTo(1);
    Do([&] { CloseDatabase(zolt); });
    for (int turn = 0; turn < 2; ++turn) {
        Press(IDC_CONFIGURE_NEXT);
        Answer(IDOK,
               SetupText(IDS_CONFIGURE_NO_DATABASE_SAVE, {L"Zolt", SystemErrorText(ERROR_INVALID_HANDLE)}));
        Look([&] { EXPECT_EQ(Dialog().GetFront(), 0) << "the page that can't be stored isn't in front"; });
    }
    Press(IDC_CONFIGURE_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
}

TEST_F(ConfigureTrouble, ATabOfAProductWithoutADatabaseSaysSoInThePagesPlace)
{
    TestProduct& zolt = AddProduct(L"Zolt");
    AddTabs(2);
    Do([&] { CloseDatabase(zolt); });
    GoTo(1);
    Answer(IDOK, SetupText(IDS_CONFIGURE_NO_DATABASE, {L"Zolt", SystemErrorText(ERROR_INVALID_HANDLE)}));
    Look([&] {
        EXPECT_EQ(ReasonText(),
                  SetupText(IDS_CONFIGURE_NO_DATABASE, {L"Zolt", SystemErrorText(ERROR_INVALID_HANDLE)}));
    });
    Press(IDC_CONFIGURE_CANCEL);
    EXPECT_EQ(Run(), NAVIGATION_CANCEL);
}

TEST_F(ConfigureTrouble, ADatabaseThatGoesLeavesTheTabsOfOtherProductsAsTheyAre)
{
    TestProduct& zolt = AddProduct(L"Zolt");
    TestProduct& volt = AddProduct(L"Volt");
    AddTabs(1);
    Type(L"of Zolt");
    GoTo(1);
    Type(L"of Volt");
    Do([&] { CloseDatabase(zolt); });
    GoTo(0);
    Look([&] {
        EXPECT_EQ(Page(0), nullptr);
        EXPECT_EQ(ReasonText(),
                  SetupText(IDS_CONFIGURE_NO_DATABASE, {L"Zolt", SystemErrorText(ERROR_INVALID_HANDLE)}));
        EXPECT_TRUE(Dialog().HasChanges()) << "what Zolt's page had stored is lost with Cancel";
    });
    for (int turn = 0; turn < 2; ++turn) {
        GoTo(1);
        Look([&] { EXPECT_EQ(OnPage(IDC_TEST_EDIT).GetText(), CString(L"of Volt")); });
        Press(IDC_CONFIGURE_NEXT); // a build would leave out what Zolt's page has stored
        Answer(IDOK,
               SetupText(IDS_CONFIGURE_NO_DATABASE_SAVE, {L"Zolt", SystemErrorText(ERROR_INVALID_HANDLE)}));
        Look([&] { EXPECT_EQ(Dialog().GetFront(), 0); });
    }
    Press(IDC_CONFIGURE_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
    EXPECT_EQ(Property(volt, L"TEST_VALUE_0"), CString(L"of Volt"));
}

TEST_F(ConfigureTrouble, BackReportsThatNothingWasStored)
{
    TestProduct& zolt = AddProduct(L"Zolt");
    AddTabs(1);
    Type(L"lost");
    Do([&] { CloseDatabase(zolt); });
    Press(IDC_CONFIGURE_BACK);
    Answer(IDOK, SetupText(IDS_CONFIGURE_NO_DATABASE, {L"Zolt", SystemErrorText(ERROR_INVALID_HANDLE)}));
    EXPECT_EQ(Run(), NAVIGATION_BACK);
}

TEST_F(ConfigureTrouble, ThePagesOwnWayOnReportsThatNothingWasStored)
{
    TestProduct& zolt = AddProduct(L"Zolt");
    AddProduct(L"Volt");
    AddTabs(1);
    Do([&] { CloseDatabase(zolt); });
    PressOnPage(IDC_NEXT_TAB);
    Answer(IDOK, SetupText(IDS_CONFIGURE_NO_DATABASE, {L"Zolt", SystemErrorText(ERROR_INVALID_HANDLE)}));
    Look([&] { EXPECT_EQ(Dialog().GetFront(), 1); });
    Press(IDC_CONFIGURE_CANCEL);
    EXPECT_EQ(Run(), NAVIGATION_CANCEL);
}

// Once reported, a silence was forgotten for good: of the second one nobody heard.
TEST_F(ConfigureTrouble, ADatabaseThatGoesASecondTimeIsReportedAgain)
{
    bool silent = false;
    options.checkDatabase = [&silent](CProduct&) { return silent ? CString(L"gone") : CString(); };
    AddProduct(L"Zolt");
    AddTabs(2);
    GoTo(1);
    for (int turn = 0; turn < 2; ++turn) {
        Type(L"something");
        Do([&silent] { silent = true; });
        GoTo(0);
        Answer(IDOK, SetupText(IDS_CONFIGURE_NO_DATABASE, {L"Zolt", L"gone"}));
        Do([&silent] { silent = false; });
        GoTo(1); // answers again
    }
    Do([this] { SetDlgItemTextW(FrontPage(), IDC_TEST_EDIT, L""); }); // so that Cancel doesn't ask
    Press(IDC_CONFIGURE_CANCEL);
    EXPECT_EQ(Run(), NAVIGATION_CANCEL);
}

// ---- what nobody has checked

// The sentence in the page's place counted as accepted, and the build got what nobody had checked.
TEST_F(ConfigureTrouble, WhatAPageHasStoredUncheckedIsCheckedAlthoughItsDatabaseWasSilentMeanwhile)
{
    bool silent = false;
    options.checkDatabase = [&silent](CProduct&) { return silent ? CString(L"gone") : CString(); };
    AddProduct(L"Zolt");
    AddTabs(2);
    GoTo(1);
    Type(L"bad");
    PressOnPage(IDC_PREVIOUS_TAB); // stores unchecked
    Await(L"the tab before", [this] { return Dialog().GetFront() == 0; });
    Do([&silent] { silent = true; });
    GoTo(1);
    Answer(IDOK, SetupText(IDS_CONFIGURE_NO_DATABASE, {L"Zolt", L"gone"}));
    Look([&] { EXPECT_EQ(OnPage(IDC_TEST_EDIT).GetText(), CString(L"bad")) << "nobody has checked it"; });
    Do([&silent] { silent = false; });
    Press(IDC_CONFIGURE_NEXT);
    Answer(IDOK, L"Page 1 refuses");
    Look([&] { EXPECT_EQ(Dialog().GetFront(), 1); });
    Press(IDC_CONFIGURE_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
}

TEST_F(ConfigureTrouble, ContinueMakesAndAsksAPageThatCouldNotBeMadeAnew)
{
    AddProduct(L"Zolt");
    AddTabs(2);
    GoTo(1);
    Type(L"bad");
    PressOnPage(IDC_PREVIOUS_TAB); // stores unchecked
    Await(L"the tab before", [this] { return Dialog().GetFront() == 0; });
    Do([this] { host.language.wizTextPath = L"C:\\no such folder\\"; });
    for (int turn = 0; turn < 2; ++turn) {
        Press(IDC_CONFIGURE_NEXT);
        AnswerLoadBox();
        Look([&] {
            EXPECT_EQ(Dialog().GetFront(), 1);
            EXPECT_EQ(Page(1), nullptr);
        });
    }
    Do([this] { host.language.wizTextPath = ProgramFolder(); });
    Press(IDC_CONFIGURE_NEXT);
    Answer(IDOK, L"Page 1 refuses");
    Press(IDC_CONFIGURE_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
}

// What it shows then was never checked by it.
TEST_F(ConfigureTrouble, APageIsAskedAgainThatShowsWhatAnotherOneHasStoredSince)
{
    TestProduct& zolt = AddProduct(L"Zolt");
    AddTabs(2);
    Type(L"checked");
    GoTo(1);
    Do([&] { WriteProperty(zolt.database, L"TEST_VALUE_0", L"bad"); });
    GoTo(0);
    Look([&] { EXPECT_EQ(OnPage(IDC_TEST_EDIT).GetText(), CString(L"bad")); });
    for (const bool byContinue : {false, true}) {
        if (byContinue) {
            Press(IDC_CONFIGURE_NEXT);
        } else {
            GoTo(1);
        }
        Answer(IDOK, L"Page 0 refuses");
        Look([&] { EXPECT_EQ(Dialog().GetFront(), 0); });
    }
    Press(IDC_CONFIGURE_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
}

// ---- what Cancel would lose

// The window is gone by then, and with it all that could be compared.
TEST_F(ConfigureTrouble, WhatWasEnteredIsStillKnownOnceTheDialogWasLeftByBack)
{
    AddProduct(L"Zolt");
    AddTabs(1);
    Type(L"something");
    Press(IDC_CONFIGURE_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
    EXPECT_TRUE(Dialog().HasChanges());
}

TEST_F(ConfigureTrouble, CancelDoesNotAskWhenNothingWasEntered)
{
    AddProduct(L"Zolt");
    AddTabs(3);
    GoTo(1);
    GoTo(2);
    Press(IDC_CONFIGURE_CANCEL);
    EXPECT_EQ(Run(), NAVIGATION_CANCEL);
    EXPECT_FALSE(Dialog().HasChanges());
}

TEST_F(ConfigureTrouble, CancelAsksWhenATextWasEntered)
{
    AddProduct(L"Zolt");
    AddTabs(2);
    Type(L"something");
    Press(IDC_CONFIGURE_CANCEL);
    Answer(IDNO, Question());
    Look([&] { EXPECT_EQ(host.log.Of(L"EnableCancelling").back(), CString(L"EnableCancelling(true)")); });
    Press(IDC_CONFIGURE_CANCEL);
    Answer(IDYES, Question());
    EXPECT_EQ(Run(), NAVIGATION_CANCEL);
    EXPECT_EQ(host.manager.m_exitCode, 1602u);
}

TEST_F(ConfigureTrouble, CancelAsksForWhatWasEnteredOnAnotherTabAndStoredThere)
{
    AddProduct(L"Zolt");
    AddTabs(2);
    Type(L"something");
    GoTo(1);
    Press(IDC_CONFIGURE_CANCEL);
    Answer(IDYES, Question());
    EXPECT_EQ(Run(), NAVIGATION_CANCEL);
}

TEST_F(ConfigureTrouble, CancelAsksForAClickAndAChoice)
{
    AddProduct(L"Zolt");
    AddTabs(1);
    PressOnPage(IDC_TEST_CHECK);
    Await(L"the check", [this] { return OnPage(IDC_TEST_CHECK).IsChecked(); });
    Press(IDC_CONFIGURE_CANCEL);
    Answer(IDNO, Question());
    PressOnPage(IDC_TEST_CHECK);
    Await(L"the check is off", [this] { return !OnPage(IDC_TEST_CHECK).IsChecked(); });
    Look([&] { EXPECT_FALSE(Dialog().HasChanges()) << "it is as it was"; });
    Do([this] { SendMessageW(OnPage(IDC_TEST_COMBO).GetWindow(), CB_SETCURSEL, 1, 0); });
    Press(IDC_CONFIGURE_CANCEL);
    Answer(IDYES, Question());
    EXPECT_EQ(Run(), NAVIGATION_CANCEL);
}

TEST_F(ConfigureTrouble, CancelDoesNotAskWhenWhatWasEnteredWasTakenBack)
{
    AddProduct(L"Zolt");
    AddTabs(1);
    Type(L"something");
    Type(L"");
    Press(IDC_CONFIGURE_CANCEL);
    EXPECT_EQ(Run(), NAVIGATION_CANCEL);
}

TEST_F(ConfigureTrouble, CancelAsksWhereThePagesBeforeHaveGatheredChoices)
{
    AddProduct(L"Zolt");
    AddTabs(1);
    options.bLosesChoices = true;
    Press(IDC_CONFIGURE_CANCEL);
    Answer(IDYES, Question());
    EXPECT_EQ(Run(), NAVIGATION_CANCEL);
}

TEST_F(ConfigureTrouble, TheCloseButtonOfTheWindowAsksLikeCancel)
{
    AddProduct(L"Zolt");
    AddTabs(1);
    Type(L"something");
    Do([this] { PostMessageW(Dialog(), WM_CLOSE, 0, 0); });
    Answer(IDYES, Question());
    EXPECT_EQ(Run(), NAVIGATION_CANCEL);
}

// ---- where it stands

TEST_F(ConfigureTrouble, ItComesBackWhereTheUserLeftIt)
{
    AddProduct(L"Zolt");
    AddTabs(1);
    ScreenRectangle left;
    Do([&] {
        SetWindowPos(Dialog(), nullptr, 33, 44, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
        left = Place();
    });
    Press(IDC_CONFIGURE_NEXT);
    (void)Run();
    Look([&] { EXPECT_EQ(Place(), left); });
    Press(IDC_CONFIGURE_NEXT);
    (void)Run();
    ASSERT_FALSE(host.ui.stored.empty());
    EXPECT_EQ(ScreenRectangleOf(host.ui.stored.back()), left) << "the next page opens elsewhere";
}

TEST_F(ConfigureTrouble, APlaceOnAMonitorThatIsGoneIsBroughtOntoTheScreen)
{
    AddProduct(L"Zolt");
    AddTabs(1);
    WriteWindowCorner(TEST_PLACE_KEY, L"ConfigureDialog", {9000, -9000});
    Look([&] { EXPECT_EQ(FitInto(Place(), WorkAreaNear(Place())), Place()); });
    Press(IDC_CONFIGURE_NEXT);
    (void)Run();
}

TEST_F(ConfigureTrouble, WithoutAPlaceOfItsOwnItOpensOverThePageBefore)
{
    AddProduct(L"Zolt");
    AddTabs(1);
    host.ui.saved = true;
    host.ui.position = {200, 100, 900, 700};
    Look([&] { EXPECT_EQ(Place(), CentredOn({200, 100, 900, 700}, Place().Width(), Place().Height())); });
    Press(IDC_CONFIGURE_NEXT);
    (void)Run();
}

TEST_F(ConfigureTrouble, WithoutAKeyNothingIsRemembered)
{
    AddProduct(L"Zolt");
    AddTabs(1);
    options.strPlaceKey = L"";
    Press(IDC_CONFIGURE_NEXT);
    (void)Run();
    EXPECT_FALSE(ReadWindowCorner(TEST_PLACE_KEY, L"ConfigureDialog"));
}

TEST_F(ConfigureTrouble, APageLargerThanTheScreenIsScrolledInADialogThatFits)
{
    TestProduct& product = AddProduct(L"Zolt");
    AddTab(0, product);
    AddTab(TEST_PAGES, product);
    GoTo(1);
    Look([&] {
        EXPECT_EQ(FitInto(Place(), WorkAreaNear(Place())), Place());
        const HWND view = InDialog(IDC_CONFIGURE_VIEW).GetWindow();
        EXPECT_TRUE(GetWindowLongPtrW(view, GWL_STYLE) & WS_VSCROLL);
        EXPECT_TRUE(GetWindowLongPtrW(view, GWL_STYLE) & WS_HSCROLL);
        EXPECT_TRUE(InDialog(IDC_CONFIGURE_NEXT).IsVisible());
        SavePicture(L"configure-large.png");
    });
    GoTo(0);
    Look([&] {
        const HWND view = InDialog(IDC_CONFIGURE_VIEW).GetWindow();
        EXPECT_FALSE(GetWindowLongPtrW(view, GWL_STYLE) & WS_VSCROLL) << "a small page scrolls";
    });
    Press(IDC_CONFIGURE_NEXT);
    (void)Run();
}

// The page had come to the front again at its top, with the focus where it was before, so nothing scrolled.
TEST_F(ConfigureTrouble, ARefusedFieldIsInSightWhereverThePageWasScrolledTo)
{
    AddTab(TEST_PAGES, AddProduct(L"Zolt"));
    const auto scroll = [this](int where) {
        Do([this, where] {
            const HWND view = InDialog(IDC_CONFIGURE_VIEW).GetWindow();
            for (int page = 0; page < 10; ++page) {
                SendMessageW(view, WM_VSCROLL, where, 0);
            }
        });
    };
    const auto isInSight = [this] {
        RECT field = OnPage(IDC_TEST_LAST).GetRectangle();
        const HWND view = InDialog(IDC_CONFIGURE_VIEW).GetWindow();
        MapWindowPoints(FrontPage(), view, reinterpret_cast<POINT*>(&field), 2);
        RECT room = {};
        GetClientRect(view, &room);
        return field.top >= 0 && field.left >= 0 && field.bottom <= room.bottom && field.right <= room.right;
    };
    Step(L"type into the last field", [this] { return OnPage(IDC_TEST_LAST).SetText(L"bad"); });
    Await(L"the last field in sight", isInSight);
    for (const int where : {SB_PAGEDOWN, SB_PAGEUP}) {
        scroll(where);
        Do([this] { PostMessageW(Dialog(), WM_COMMAND, IDC_CONFIGURE_NEXT, 0); }); // as by Alt+O
        Answer(IDOK, L"Page 12 refuses");
        Await(L"the refused field in sight", isInSight);
    }
    Press(IDC_CONFIGURE_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
}

} // namespace
