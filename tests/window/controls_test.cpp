#include "tests/support/text.h"
#include "tests/window/fixture.h"
#include "window/controls.h"
#include "window/data_exchange.h"

namespace {

class ControlsTest : public WindowTest
{
};

class CExchangeDialog : public CDialogImpl<CExchangeDialog>, public CWinDataExchange<CExchangeDialog>
{
public:
    enum
    {
        IDD = IDD_TEST
    };
    BEGIN_MSG_MAP(CExchangeDialog)
    END_MSG_MAP()
    BEGIN_DDX_MAP(CExchangeDialog)
    DDX_TEXT_LEN(IDC_NAME, name, 10)
    DDX_INT(IDC_COUNT, count)
    DDX_CHECK(IDC_CHECK, checked)
    DDX_RADIO(IDC_FIRST_RADIO, choice)
    END_DDX_MAP()

    void OnDataExchangeError(int id, BOOL) { refused = id; }

    CString name;
    int count = 0;
    bool checked = false;
    int choice = -1;
    int refused = 0;
};

TEST_F(ControlsTest, LoadedValuesComeBackWhenTheyAreSaved)
{
    CExchangeDialog dialog;
    ASSERT_NE(dialog.Create(nullptr), nullptr);
    dialog.name = L"name";
    dialog.count = -12;
    dialog.checked = true;
    dialog.choice = 1;
    ASSERT_TRUE(dialog.DoDataExchange(DDX_LOAD));
    EXPECT_EQ(dialog.GetDlgItemText(IDC_COUNT), CString(L"-12"));
    dialog.name.Empty();
    dialog.count = 0;
    dialog.checked = false;
    dialog.choice = -1;
    ASSERT_TRUE(dialog.DoDataExchange(DDX_SAVE));
    EXPECT_EQ(dialog.name, CString(L"name"));
    EXPECT_EQ(dialog.count, -12);
    EXPECT_TRUE(dialog.checked);
    EXPECT_EQ(dialog.choice, 1);
}

TEST_F(ControlsTest, AGroupWithoutACheckedButtonGivesMinusOne)
{
    CExchangeDialog dialog;
    ASSERT_NE(dialog.Create(nullptr), nullptr);
    EXPECT_EQ(ReadRadioGroup(dialog, IDC_FIRST_RADIO), -1);
}

TEST_F(ControlsTest, ATextThatIsNoNumberIsRefusedAndTheMemberStays)
{
    CExchangeDialog dialog;
    ASSERT_NE(dialog.Create(nullptr), nullptr);
    dialog.count = 5;
    dialog.SetDlgItemText(IDC_COUNT, L"five");
    EXPECT_FALSE(dialog.DoDataExchange(DDX_SAVE));
    EXPECT_EQ(dialog.refused, IDC_COUNT);
    EXPECT_EQ(dialog.count, 5);
}

TEST_F(ControlsTest, ATextThatIsTooLongIsRefused)
{
    CExchangeDialog dialog;
    ASSERT_NE(dialog.Create(nullptr), nullptr);
    dialog.SetDlgItemText(IDC_NAME, L"elevenchars");
    EXPECT_FALSE(dialog.DoDataExchange(DDX_SAVE, IDC_NAME));
    EXPECT_EQ(dialog.refused, IDC_NAME);
    EXPECT_TRUE(dialog.name.IsEmpty());
}

TEST_F(ControlsTest, AListBoxGivesItsItemsBack)
{
    CExchangeDialog dialog;
    ASSERT_NE(dialog.Create(nullptr), nullptr);
    const CListBox list(dialog.GetDlgItem(IDC_LIST));
    const CString text(L'i', 400);
    EXPECT_EQ(list.AddString(text), 0);
    EXPECT_EQ(list.GetText(0), text);
    EXPECT_EQ(list.GetText(1), CString());
}

TEST_F(ControlsTest, ATreeGivesLongItemTextsBack)
{
    CExchangeDialog dialog;
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
    CExchangeDialog dialog;
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
    CExchangeDialog dialog;
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
