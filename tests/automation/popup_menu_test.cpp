// The driver of menus, against a real one that a button of a dialog opens.
#include "automation/popup_menu.h"

#include "automation/control.h"
#include "automation/window_finder.h"
#include "tests/automation/dialog_fixture.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <optional>

namespace {

constexpr int ID_RENAME = 40001;
constexpr int ID_DELETE = 40002;
constexpr int ID_PROPERTIES = 40003;
constexpr int ID_NEW_FOLDER = 40011;
constexpr int ID_NEW_FILE = 40012;
constexpr int ID_MORE = 40021;
constexpr int ID_HIDDEN_BY_PARENT = 40031;

class Menu : public CDialogFixture
{
protected:
    Menu()
    {
        HMENU more = CreatePopupMenu();
        AppendMenuW(more, MF_STRING, ID_MORE, L"&More");
        HMENU created = CreatePopupMenu();
        AppendMenuW(created, MF_STRING, ID_NEW_FOLDER, L"&Folder");
        AppendMenuW(created, MF_POPUP, reinterpret_cast<UINT_PTR>(more), L"&Other");
        AppendMenuW(created, MF_STRING, ID_NEW_FILE, L"F&ile");
        HMENU closed = CreatePopupMenu();
        AppendMenuW(closed, MF_STRING, ID_HIDDEN_BY_PARENT, L"Hidden");
        AppendMenuW(menu, MF_STRING, ID_RENAME, L"&Rename\tF2");
        AppendMenuW(menu, MF_STRING | MF_GRAYED, ID_DELETE, L"&Delete\tDel");
        AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
        AppendMenuW(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(created), L"&New");
        AppendMenuW(menu, MF_POPUP | MF_GRAYED, reinterpret_cast<UINT_PTR>(closed), L"&Closed");
        AppendMenuW(menu, MF_STRING | MF_CHECKED, ID_PROPERTIES, L"&Properties");
        onCheck = [this] {
            result = TrackPopupMenu(menu, flags, 20, 20, 0, dialog, nullptr);
            hasReturned = true;
        };
        script.Add(L"press the button", [this] { return CControl(dialog, ID_CHECK).Click(); });
    }
    ~Menu() override { DestroyMenu(menu); }

    void PlayUntilMenuCloses()
    {
        script.Add(L"see the menu closed", [this] { return Until(hasReturned, L"the menu is still up"); });
        Play();
        EXPECT_EQ(script.GetFailure(), CString());
    }

    // What choosing the item returns; the reason for which it fails goes to `refusal`.
    int Choose(int id)
    {
        script.Add(L"choose", [this, id] {
            const StepOutcome outcome = ChooseMenuItem(id);
            if (!outcome.IsFailed())
                return outcome;
            refusal = outcome.GetReason();
            return ClosePopupMenu();
        });
        PlayUntilMenuCloses();
        return result;
    }

    HMENU menu = CreatePopupMenu();
    UINT flags = TPM_RETURNCMD;
    int result = -1;
    bool hasReturned = false;
    CString refusal;
};

TEST_F(Menu, ReturnsTheItemThatWasChosen)
{
    EXPECT_EQ(Choose(ID_PROPERTIES), ID_PROPERTIES);
}

TEST_F(Menu, ReturnsItsFirstItem)
{
    EXPECT_EQ(Choose(ID_RENAME), ID_RENAME);
}

TEST_F(Menu, PostsTheCommandOfTheItemToItsOwner)
{
    flags = 0;
    script.Add(L"choose", [] { return ChooseMenuItem(ID_RENAME); });
    script.Add(L"see the command", [this] {
        return Until(Count({ID_RENAME, 0}) == 1, L"the command did not come");
    });
    PlayUntilMenuCloses();
}

TEST_F(Menu, ReturnsAnItemOfASubmenu)
{
    EXPECT_EQ(Choose(ID_NEW_FILE), ID_NEW_FILE);
}

TEST_F(Menu, ReturnsAnItemOfASubmenusSubmenu)
{
    EXPECT_EQ(Choose(ID_MORE), ID_MORE);
}

// Moves on from an item that stays only a stop on the way.
void AddReaching(CScript& script, int id)
{
    script.Add(L"reach the item", [id] {
        const std::optional<PopupMenuView> view = FindPopupMenu();
        if (!view || (GetMenuState(view->menu, static_cast<UINT>(id), MF_BYCOMMAND) & MF_HILITE))
            return Until(view.has_value(), L"no menu is up");
        const StepOutcome outcome = ChooseMenuItem(id);
        return outcome.IsDone() ? StepOutcome::Failed(L"the item was chosen") : outcome;
    });
}

TEST_F(Menu, LeavesAnOpenSubmenuForAnItemBesideIt)
{
    AddReaching(script, ID_NEW_FILE);
    EXPECT_EQ(Choose(ID_PROPERTIES), ID_PROPERTIES);
}

TEST_F(Menu, ReturnsNothingWhenItIsClosed)
{
    script.Add(L"close", [] { return ClosePopupMenu(); });
    PlayUntilMenuCloses();
    EXPECT_EQ(result, 0);
}

TEST_F(Menu, ReturnsNothingWhenItIsClosedWithItsSubmenusOpen)
{
    AddReaching(script, ID_NEW_FILE);
    script.Add(L"close", [] { return ClosePopupMenu(); });
    PlayUntilMenuCloses();
    EXPECT_EQ(result, 0);
}

TEST_F(Menu, RefusesADisabledItemByItsText)
{
    EXPECT_EQ(Choose(ID_DELETE), 0);
    EXPECT_EQ(refusal, CString(L"the menu item \"&Delete\tDel\" is disabled"));
}

TEST_F(Menu, RefusesAnItemOfADisabledSubmenuByTheSubmenusText)
{
    EXPECT_EQ(Choose(ID_HIDDEN_BY_PARENT), 0);
    EXPECT_EQ(refusal, CString(L"the menu item \"&Closed\" is disabled"));
}

TEST_F(Menu, RefusesAMissingItemByWhatThereIs)
{
    EXPECT_EQ(Choose(7), 0);
    EXPECT_EQ(refusal, CString(L"the menu has no item 7 among [\"&Rename\tF2\", \"&Delete\tDel\", \"&New\" "
                               L"[\"&Folder\", \"&Other\" [\"&More\"], \"F&ile\"], \"&Closed\" [\"Hidden\"], "
                               L"\"&Properties\"]"));
}

TEST_F(Menu, IsReadWithTheStateOfItsItems)
{
    std::optional<PopupMenuView> view;
    script.Add(L"read", [&] {
        view = FindPopupMenu();
        return view ? ClosePopupMenu() : StepOutcome::NotYet(L"no menu is up");
    });
    PlayUntilMenuCloses();
    ASSERT_TRUE(view.has_value());
    EXPECT_EQ(view->menu, menu);
    ASSERT_EQ(view->items.size(), 6u);
    EXPECT_EQ(view->items[0].text, CString(L"&Rename\tF2"));
    EXPECT_EQ(view->items[0].id, ID_RENAME);
    EXPECT_TRUE(view->items[0].isEnabled);
    EXPECT_FALSE(view->items[0].isChecked);
    EXPECT_FALSE(view->items[1].isEnabled);
    EXPECT_TRUE(view->items[2].isSeparator);
    EXPECT_EQ(view->items[3].id, 0);
    ASSERT_EQ(view->items[3].submenu.size(), 3u);
    EXPECT_EQ(view->items[3].submenu[2].id, ID_NEW_FILE);
    EXPECT_TRUE(view->items[5].isChecked);
}

TEST_F(Menu, IsNotYetThereWhileNoneIsOpen)
{
    EXPECT_FALSE(FindPopupMenu().has_value());
    EXPECT_TRUE(ChooseMenuItem(ID_RENAME).IsNotYet());
    EXPECT_TRUE(ClosePopupMenu().IsNotYet());
}

TEST_F(Menu, IsClosedByTheWayOutOfAFailedScript)
{
    script.Add(L"open a submenu", [] {
        const StepOutcome outcome = ChooseMenuItem(ID_NEW_FILE);
        const std::optional<PopupMenuView> view = FindPopupMenu();
        return view && TopLevelWindows().size() > 2 ? StepOutcome::Done() : outcome;
    });
    script.Add(L"close the windows of the menu", [] {
        while (FindPopupMenu())
            CloseFrontWindow();
        return StepOutcome::Done();
    });
    PlayUntilMenuCloses();
    EXPECT_EQ(result, 0);
    EXPECT_TRUE(IsWindow(dialog));
}

} // namespace
