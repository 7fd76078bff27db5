// What counts as entered on a page, and that the pages of a walk are watched for it.
#include "setup/change_watch.h"
#include "setup/control_snapshot.h"
#include "tests/support/text.h"
#include "window/controls.h"
#include "window/window.h"

#include <gtest/gtest.h>

#include <commctrl.h>

namespace {

class WhatIsEntered : public testing::Test
{
protected:
    static HWND MakePage()
    {
        return CreateWindowExW(0, L"STATIC", L"page", WS_OVERLAPPEDWINDOW, 0, 0, 300, 300, nullptr, nullptr,
                               nullptr, nullptr);
    }
    ~WhatIsEntered() override { DestroyWindow(page); }

    CWindow Add(const wchar_t* windowClass, DWORD style = 0)
    {
        return CWindow(CreateWindowExW(0, windowClass, L"", WS_CHILD | style, 0, 0, 100, 100, page,
                                       reinterpret_cast<HMENU>(std::intptr_t{++m_id}), nullptr, nullptr));
    }
    // True when what is done now shows in the page's contents.
    template <class Act>
    bool Shows(Act act)
    {
        const std::vector<CString> before = ReadControls(page);
        act();
        return ReadControls(page) != before;
    }

    HWND page = MakePage();

private:
    int m_id = 100;
};

TEST_F(WhatIsEntered, ATextInAnEditIs)
{
    const CWindow edit = Add(L"Edit");
    EXPECT_TRUE(Shows([&] { edit.SetText(L"a"); }));
    EXPECT_FALSE(Shows([&] { edit.SetText(L"a"); }));
}

TEST_F(WhatIsEntered, ALabelIsNot)
{
    const CWindow label = Add(L"Static");
    EXPECT_FALSE(Shows([&] { label.SetText(L"Page 2 of 3"); }));
}

TEST_F(WhatIsEntered, ACheckIs)
{
    const CWindow check = Add(L"Button", BS_AUTOCHECKBOX);
    EXPECT_TRUE(Shows([&] { check.SendMessage(BM_SETCHECK, BST_CHECKED); }));
}

TEST_F(WhatIsEntered, TheChoiceOfADropDownListIs)
{
    const CWindow combo = Add(L"ComboBox", CBS_DROPDOWNLIST);
    for (const wchar_t* line : {L"same", L"same"}) {
        combo.SendMessage(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line));
    }
    EXPECT_TRUE(Shows([&] { combo.SendMessage(CB_SETCURSEL, 0); }));
    EXPECT_TRUE(Shows([&] { combo.SendMessage(CB_SETCURSEL, 1); }));
}

TEST_F(WhatIsEntered, ALineOfAListIsButNotWhichIsSelected)
{
    const CWindow list = Add(L"ListBox");
    EXPECT_TRUE(Shows([&] { list.SendMessage(LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(L"one")); }));
    EXPECT_TRUE(Shows([&] { list.SendMessage(LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(L"")); }));
    EXPECT_FALSE(Shows([&] { list.SendMessage(LB_SETCURSEL, 0); }));
}

TEST_F(WhatIsEntered, ACellOfAListViewAndItsCheckAre)
{
    const CWindow list = Add(WC_LISTVIEWW, LVS_REPORT);
    ListView_SetExtendedListViewStyle(list, LVS_EX_CHECKBOXES);
    for (int column = 0; column < 2; ++column) {
        LVCOLUMNW described = {};
        list.SendMessage(LVM_INSERTCOLUMNW, static_cast<WPARAM>(column),
                         reinterpret_cast<LPARAM>(&described));
    }
    LVITEMW item = {};
    EXPECT_TRUE(Shows([&] { list.SendMessage(LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item)); }));
    wchar_t text[] = L"second column";
    EXPECT_TRUE(Shows([&] { ListView_SetItemText(list, 0, 1, text); }));
    EXPECT_TRUE(Shows([&] { ListView_SetCheckState(list, 0, TRUE); }));
}

// Two paths of a tree or a list may differ far behind their beginning.
TEST_F(WhatIsEntered, TheEndOfALongTextInATreeAndAListViewIs)
{
    CString text(L'x', 5000);
    const auto withEnd = [&](wchar_t end) {
        text.SetAt(text.GetLength() - 1, end);
        return text.GetBuffer(0);
    };
    const CTreeViewCtrl tree(Add(WC_TREEVIEWW));
    TVINSERTSTRUCTW node = {};
    node.item.mask = TVIF_TEXT;
    node.item.pszText = withEnd(L'a');
    const HTREEITEM inserted = tree.InsertItem(node);
    EXPECT_TRUE(Shows([&] { tree.SetItemText(inserted, withEnd(L'b')); }));
    const CListViewCtrl list(Add(WC_LISTVIEWW, LVS_REPORT));
    list.InsertColumn(0, L"", 50);
    list.InsertItem(0, withEnd(L'a'));
    EXPECT_TRUE(Shows([&] { list.SetItemText(0, 0, withEnd(L'b')); }));
}

TEST_F(WhatIsEntered, ANodeOfATreeIsButNotWhetherItIsOpen)
{
    const CWindow tree = Add(WC_TREEVIEWW);
    const auto insert = [&](HTREEITEM parent) {
        wchar_t name[] = L"node";
        TVINSERTSTRUCTW node = {};
        node.hParent = parent;
        node.item.mask = TVIF_TEXT;
        node.item.pszText = name;
        return reinterpret_cast<HTREEITEM>(
            tree.SendMessage(TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&node)));
    };
    HTREEITEM root = nullptr;
    EXPECT_TRUE(Shows([&] { root = insert(TVI_ROOT); }));
    EXPECT_TRUE(Shows([&] { insert(root); }));
    EXPECT_FALSE(Shows([&] { TreeView_Expand(tree, root, TVE_EXPAND); }));
}

class ChangeWatch : public WhatIsEntered
{
protected:
    ChangeWatch() { edit = Add(L"Edit"); }

    // As a wizard page that comes up, is worked on and goes.
    template <class Act>
    void WalkThrough(Act act)
    {
        context = {};
        watch.Watch(context);
        RunPostInitHooks();
        act();
        DestroyWindow(page);
        watch.NotePage();
        page = MakePage();
        edit = Add(L"Edit");
    }

    void RunPostInitHooks()
    {
        PageContext up;
        up.hParent = page;
        EXPECT_NE(context.postInitHooks.at(0)(&up), 2) << "the watch vetoed";
    }

    CChangeWatch watch;
    PageContext context;
    CWindow edit;
};

TEST_F(ChangeWatch, APageThatIsLeftAsItCameUpIsNoChange)
{
    WalkThrough([] {});
    EXPECT_FALSE(watch.HasChanges());
}

TEST_F(ChangeWatch, AChangeStaysKnownOnThePagesBehind)
{
    WalkThrough([this] { edit.SetText(L"entered"); });
    WalkThrough([] {});
    EXPECT_TRUE(watch.HasChanges());
}

TEST_F(ChangeWatch, WhatWasTakenBackIsNoChange)
{
    WalkThrough([this] {
        edit.SetText(L"entered");
        edit.SetText(L"");
    });
    EXPECT_FALSE(watch.HasChanges());
}

TEST_F(ChangeWatch, APageThatNeverCameUpIsNoChange)
{
    watch.Watch(context);
    watch.NotePage();
    EXPECT_FALSE(watch.HasChanges());
}

// A page that adds something runs its hooks at the end of that, too.
TEST_F(ChangeWatch, AChangeBeforeASecondRunOfThePagesHooksStaysKnown)
{
    WalkThrough([this] {
        edit.SetText(L"added");
        RunPostInitHooks();
    });
    EXPECT_TRUE(watch.HasChanges());
}

TEST_F(ChangeWatch, StartingOverForgetsWhatIsGone)
{
    WalkThrough([this] { edit.SetText(L"entered"); });
    watch.Forget();
    EXPECT_FALSE(watch.HasChanges());
}

// Behind Start over comes the first page, which isn't watched: Cancel asked about what was long gone.
TEST_F(ChangeWatch, APageThatIsNotWatchedBringsNothingForgottenBack)
{
    WalkThrough([this] { edit.SetText(L"entered"); });
    watch.Forget();
    watch.NotePage();
    EXPECT_FALSE(watch.HasChanges());
}

} // namespace
