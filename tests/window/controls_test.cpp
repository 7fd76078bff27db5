#include "tests/support/text.h"
#include "tests/window/fixture.h"
#include "window/controls.h"

namespace {

class ControlsTest : public WindowTest
{
};

class CControlsDialog : public CDialogImpl<CControlsDialog>
{
public:
    enum
    {
        IDD = IDD_TEST
    };
    BEGIN_MSG_MAP(CControlsDialog)
    END_MSG_MAP()
};

TEST_F(ControlsTest, AListBoxGivesItsItemsBack)
{
    CControlsDialog dialog;
    ASSERT_NE(dialog.Create(nullptr), nullptr);
    const CListBox list(dialog.GetDlgItem(IDC_LIST));
    const CString text(L'i', 400);
    EXPECT_EQ(list.AddString(text), 0);
    EXPECT_EQ(list.GetText(0), text);
    EXPECT_EQ(list.GetText(1), CString());
}

TEST_F(ControlsTest, ATreeGivesLongItemTextsBack)
{
    CControlsDialog dialog;
    ASSERT_NE(dialog.Create(nullptr), nullptr);
    const CTreeViewCtrl tree(
        CreateWindowExW(0, WC_TREEVIEWW, nullptr, WS_CHILD, 0, 0, 50, 50, dialog, nullptr, nullptr, nullptr));
    ASSERT_NE(tree.m_hWnd, nullptr);
    CString text(L't', 1000);
    TVINSERTSTRUCTW insert = {};
    insert.hInsertAfter = TVI_LAST;
    insert.item.mask = TVIF_TEXT | TVIF_PARAM;
    insert.item.pszText = text.GetBuffer(0);
    insert.item.lParam = 9;
    const HTREEITEM item = tree.InsertItem(insert);
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(tree.GetItemText(item), text);
    EXPECT_EQ(tree.GetItemData(item), 9);
    EXPECT_EQ(tree.GetRootItem(), item);
}

TEST_F(ControlsTest, AListViewGivesItsCellsBack)
{
    CControlsDialog dialog;
    ASSERT_NE(dialog.Create(nullptr), nullptr);
    const CListViewCtrl list(CreateWindowExW(0, WC_LISTVIEWW, nullptr, WS_CHILD | LVS_REPORT, 0, 0, 50, 50,
                                             dialog, nullptr, nullptr, nullptr));
    ASSERT_NE(list.m_hWnd, nullptr);
    list.InsertColumn(0, L"first", 20);
    list.InsertColumn(1, L"second", 20);
    EXPECT_EQ(list.InsertItem(0, L"row", 31), 0);
    EXPECT_TRUE(list.SetItemText(0, 1, L"cell"));
    EXPECT_EQ(list.GetItemText(0, 1), CString(L"cell"));
    EXPECT_EQ(list.GetItemData(0), 31);
    list.SelectItem(0);
    EXPECT_EQ(list.GetSelectedIndex(), 0);
}

TEST_F(ControlsTest, AnItemOfAListViewHasTheImageThatItWasGiven)
{
    CControlsDialog dialog;
    ASSERT_NE(dialog.Create(nullptr), nullptr);
    const CListViewCtrl list(CreateWindowExW(0, WC_LISTVIEWW, nullptr, WS_CHILD | LVS_REPORT, 0, 0, 50, 50,
                                             dialog, nullptr, nullptr, nullptr));
    ASSERT_EQ(list.InsertItem(0, L"row", 31, 3), 0);
    LVITEMW item = {};
    item.mask = LVIF_IMAGE;
    ASSERT_TRUE(SendMessageW(list, LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item)));
    EXPECT_EQ(item.iImage, 3);
}

} // namespace
