// The dialog by keyboard alone.
#include "tests/setup/configure_fixture.h"

namespace {

class ConfigureKeyboard : public ConfigureTest
{
protected:
    ConfigureKeyboard() { AddProduct(L"Zolt"); }

    void ExpectFront(int tab)
    {
        Await(L"the tab that the key means", [this, tab] { return Dialog().GetFront() == tab; });
    }
    void ExpectFocusOnPage(int control)
    {
        Step(L"the focus on the page's control", [this, control] {
            return OnPage(control).HasFocus() ? StepOutcome::Done()
                                              : StepOutcome::NotYet(L"not " + NumberText(control) + L" but " +
                                                                    DescribeWindow(GetFocus()) + L" has it");
        });
    }
    void ExpectFocus(int control)
    {
        Await(L"the focus on the dialog's control", [this, control] { return InDialog(control).HasFocus(); });
    }
};

TEST_F(ConfigureKeyboard, TheFocusBeginsOnTheFirstControlOfTheFirstPage)
{
    AddTabs(2);
    ExpectFocusOnPage(IDC_TEST_EDIT);
    Press(IDC_CONFIGURE_NEXT);
    (void)Run();
}

TEST_F(ConfigureKeyboard, ControlTabGoesToTheNextTabAndRoundTheEnd)
{
    AddTabs(3);
    for (const int tab : {1, 2, 0}) {
        Key(VK_TAB, KeyModifier::Control);
        ExpectFront(tab);
        ExpectFocusOnPage(IDC_TEST_EDIT);
    }
    Press(IDC_CONFIGURE_NEXT);
    (void)Run();
}

TEST_F(ConfigureKeyboard, ControlPageDownAndUpGoToTheTabsBehindAndBefore)
{
    AddTabs(3);
    Key(VK_NEXT, KeyModifier::Control);
    ExpectFront(1);
    Key(VK_NEXT, KeyModifier::Control);
    ExpectFront(2);
    Key(VK_PRIOR, KeyModifier::Control);
    ExpectFront(1);
    Press(IDC_CONFIGURE_NEXT);
    (void)Run();
}

TEST_F(ConfigureKeyboard, ControlShiftTabGoesToTheTabBefore)
{
    AddTabs(3);
    Step(L"hold Shift down", [] {
        BYTE state[256] = {};
        GetKeyboardState(state);
        state[VK_SHIFT] = 0x80;
        SetKeyboardState(state);
        return StepOutcome::Done();
    });
    Key(VK_TAB, KeyModifier::Control);
    ExpectFront(2);
    Press(IDC_CONFIGURE_NEXT);
    (void)Run();
}

TEST_F(ConfigureKeyboard, TabGoesFromThePageToTheButtonsToTheTabsAndRound)
{
    AddTabs(2);
    ExpectFocusOnPage(IDC_TEST_EDIT);
    for (const int control : {IDC_TEST_CHECK, IDC_TEST_CHOICE1, IDC_TEST_COMBO, IDC_NEXT_TAB}) {
        Key(VK_TAB);
        ExpectFocusOnPage(control);
    }
    for (const int control :
         {IDC_CONFIGURE_BACK, IDC_CONFIGURE_NEXT, IDC_CONFIGURE_CANCEL, IDC_CONFIGURE_TABS}) {
        Key(VK_TAB);
        ExpectFocus(control);
    }
    Key(VK_TAB);
    ExpectFocusOnPage(IDC_TEST_EDIT);
    Press(IDC_CONFIGURE_NEXT);
    (void)Run();
}

TEST_F(ConfigureKeyboard, ShiftTabGoesTheSameWayBack)
{
    AddTabs(2);
    ExpectFocusOnPage(IDC_TEST_EDIT);
    Key(VK_TAB, KeyModifier::Shift);
    ExpectFocus(IDC_CONFIGURE_TABS);
    Key(VK_TAB, KeyModifier::Shift);
    ExpectFocus(IDC_CONFIGURE_CANCEL);
    Press(IDC_CONFIGURE_NEXT);
    (void)Run();
}

TEST_F(ConfigureKeyboard, ArrowsOnTheTabsChangeThePageAndKeepTheFocusThere)
{
    AddTabs(3);
    Key(VK_TAB, KeyModifier::Shift);
    ExpectFocus(IDC_CONFIGURE_TABS);
    Key(VK_RIGHT);
    ExpectFront(1);
    ExpectFocus(IDC_CONFIGURE_TABS);
    Key(VK_LEFT);
    ExpectFront(0);
    Press(IDC_CONFIGURE_NEXT);
    (void)Run();
}

TEST_F(ConfigureKeyboard, EnterOnAPageIsThePagesWayOn)
{
    AddTabs(3);
    ExpectFocusOnPage(IDC_TEST_EDIT);
    Key(VK_RETURN);
    ExpectFront(1);
    Look([&] { EXPECT_EQ(record.stored, (std::vector<int>{0})); });
    Press(IDC_CONFIGURE_NEXT);
    (void)Run();
}

TEST_F(ConfigureKeyboard, EnterOnTheLastPageComesToContinueAndASecondGoesOn)
{
    AddTabs(2);
    GoTo(1);
    ExpectFocusOnPage(IDC_TEST_EDIT);
    Key(VK_RETURN);
    ExpectFocus(IDC_CONFIGURE_NEXT);
    LastKey(VK_RETURN);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
}

TEST_F(ConfigureKeyboard, EnterOnTheTabsIsContinue)
{
    AddTabs(2);
    Key(VK_TAB, KeyModifier::Shift);
    ExpectFocus(IDC_CONFIGURE_TABS);
    LastKey(VK_RETURN);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
}

TEST_F(ConfigureKeyboard, EscapeIsCancel)
{
    AddTabs(2);
    ExpectFocusOnPage(IDC_TEST_EDIT);
    LastKey(VK_ESCAPE);
    EXPECT_EQ(Run(), NAVIGATION_CANCEL);
}

TEST_F(ConfigureKeyboard, MnemonicsOfThePageAndOfTheDialogWorkFromEverywhere)
{
    AddTabs(2);
    ExpectFocusOnPage(IDC_TEST_EDIT);
    const auto mnemonic = [this](wchar_t letter) {
        Step(L"press a mnemonic", [letter] {
            PostMessageW(GetFocus(), WM_SYSCHAR, letter, LPARAM(1) << 29);
            return StepOutcome::Done();
        });
    };
    mnemonic(L'u');
    Await(L"the page's check box", [this] { return OnPage(IDC_TEST_CHECK).IsChecked(); });
    mnemonic(L'o');
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
}

TEST_F(ConfigureKeyboard, LettersThatAreMnemonicsTooReachTheEditThatHasTheFocus)
{
    AddTabs(2);
    ExpectFocusOnPage(IDC_TEST_EDIT);
    Step(L"type", [] { return TypeCharacters(L"uko"); });
    Await(L"the letters in the edit", [this] { return OnPage(IDC_TEST_EDIT).GetText() == L"uko"; });
    Look([&] { EXPECT_FALSE(OnPage(IDC_TEST_CHECK).IsChecked()); });
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
}

TEST_F(ConfigureKeyboard, OnlyThePageInFrontSeesKeys)
{
    AddTabs(3);
    GoTo(1);
    GoTo(2);
    Key(VK_END);
    Press(IDC_CONFIGURE_NEXT);
    (void)Run();
    EXPECT_FALSE(record.keys.empty());
    for (const int page : record.keys) {
        EXPECT_EQ(page, 2);
    }
}

TEST_F(ConfigureKeyboard, TheButtonThatEnterPressesIsTheOneThatLooksLikeIt)
{
    AddTabs(2);
    ExpectFocusOnPage(IDC_TEST_EDIT);
    Await(L"the page's own way on", [this] {
        return OnPage(IDC_NEXT_TAB).IsDefaultButton() && !InDialog(IDC_CONFIGURE_NEXT).IsDefaultButton();
    });
    Key(VK_TAB, KeyModifier::Shift);
    ExpectFocus(IDC_CONFIGURE_TABS);
    Await(L"Continue", [this] {
        return !OnPage(IDC_NEXT_TAB).IsDefaultButton() && InDialog(IDC_CONFIGURE_NEXT).IsDefaultButton();
    });
    GoTo(1); // the last page has no way on
    Await(L"Continue again", [this] { return InDialog(IDC_CONFIGURE_NEXT).IsDefaultButton(); });
    Press(IDC_CONFIGURE_NEXT);
    (void)Run();
}

TEST_F(ConfigureKeyboard, AButtonOfThePageThatEnterDoesNotPressDoesNotLookLikeIt)
{
    AddTabs(3);
    GoTo(1);
    ExpectFocusOnPage(IDC_TEST_EDIT);
    Key(VK_TAB);
    Key(VK_TAB);
    Key(VK_TAB);
    Key(VK_TAB);
    ExpectFocusOnPage(IDC_PREVIOUS_TAB);
    Await(L"the page's own way on", [this] {
        return OnPage(IDC_NEXT_TAB).IsDefaultButton() && !OnPage(IDC_PREVIOUS_TAB).IsDefaultButton();
    });
    Key(VK_RETURN);
    ExpectFront(2);
    Press(IDC_CONFIGURE_NEXT);
    (void)Run();
}

TEST_F(ConfigureKeyboard, ContinueIsTheDefaultButton)
{
    AddTabs(2);
    Look([&] { EXPECT_EQ(LOWORD(SendMessageW(Dialog(), DM_GETDEFID, 0, 0)), IDC_CONFIGURE_NEXT); });
    Press(IDC_CONFIGURE_NEXT);
    (void)Run();
}

TEST_F(ConfigureKeyboard, AControlOfALargePageIsScrolledIntoSightWhenItTakesTheFocus)
{
    TestProduct& product = AddProduct(L"Large");
    AddTab(TEST_PAGES, product);
    AddTab(0, product);
    ExpectFocusOnPage(IDC_TEST_EDIT);
    Key(VK_TAB);
    ExpectFocusOnPage(IDC_TEST_LAST);
    Await(L"the control in sight", [this] {
        const RECT view = CWindow(InDialog(IDC_CONFIGURE_VIEW).GetWindow()).GetWindowRect();
        const RECT edit = CWindow(OnPage(IDC_TEST_LAST).GetWindow()).GetWindowRect();
        return edit.left >= view.left && edit.right <= view.right && edit.bottom <= view.bottom;
    });
    Press(IDC_CONFIGURE_NEXT);
    (void)Run();
}

// Esc in an edit of the page's own canceled the whole dialog, and Tab left a grid.
TEST_F(ConfigureKeyboard, AKeyThatThePageUsesItselfLeadsNowhereElse)
{
    AddTabs(3);
    Type(L"own keys");
    const std::vector<WPARAM> keys = {VK_ESCAPE, VK_TAB, VK_RETURN, VK_DELETE};
    for (const WPARAM key : keys) {
        Key(static_cast<WORD>(key));
    }
    Key(VK_NEXT, KeyModifier::Control);
    Look([&] {
        std::vector<WPARAM> used = record.ownKeys;
        std::erase(used, static_cast<WPARAM>(VK_CONTROL));
        EXPECT_EQ(used, (std::vector<WPARAM>{VK_ESCAPE, VK_TAB, VK_RETURN, VK_DELETE, VK_NEXT}));
        EXPECT_EQ(Dialog().GetFront(), 0);
        EXPECT_TRUE(OnPage(IDC_TEST_EDIT).HasFocus());
        EXPECT_TRUE(record.stored.empty());
    });
    Type(L"own keys no more");
    Key(VK_TAB);
    ExpectFocusOnPage(IDC_TEST_CHECK);
    Press(IDC_CONFIGURE_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
}

} // namespace
