// The page is left without being stored while a cell is being edited, and a product that answers oddly.
#include "include/navigation.h"
#include "tests/workstation/workstation_page.h"

namespace {

class LeavingWorkstations : public WorkstationPage
{
protected:
    void ExpectNothingStored()
    {
        ExpectRows(L"");
        EXPECT_EQ(List(), CString(L"(none)"));
        EXPECT_EQ(InDatabase(L"TARN_DESKTOPSHORTCUT_1"), CString(L"(none)"));
    }
};
class WizardWithAnOpenCell : public LeavingWorkstations
{
};
INSTANTIATE_TEST_SUITE_P(Shapes, WizardWithAnOpenCell, testing::Values(Shape::Wizard), ShapeName);
class TabWithAnOpenCell : public LeavingWorkstations
{
};
INSTANTIATE_TEST_SUITE_P(Shapes, TabWithAnOpenCell, testing::Values(Shape::Tab), ShapeName);

// Whose answers the test looks into.
class OddProduct : public TestProduct
{
public:
    using TestProduct::TestProduct;
    bool GetCustomShortcuts(std::vector<ShortcutStrings>& list) override
    {
        static_cast<void>(TestProduct::GetCustomShortcuts(list));
        return false;
    }
    bool SetMsiProperty(const wchar_t* name, const wchar_t* value, bool flag) override
    {
        if (onStore) {
            onStore();
        }
        return TestProduct::SetMsiProperty(name, value, flag);
    }

    std::function<void()> onStore;
};

class OddProducts : public WorkstationPage
{
protected:
    OddProducts()
    {
        odd.msiProperties = product.msiProperties;
        odd.m_strCatalogKey = product.m_strCatalogKey;
        odd.msiProperties[L"ZOLT_CUSTOM_SHORTCUT"] = L"3;K1;K2;";
        context.pProduct = &odd;
    }
    void WithTwoShortcuts()
    {
        WithShortcut(L"K1", L"A", L"/b");
        WithShortcut(L"K2", L"B", L"/c");
        odd.shortcuts = product.shortcuts;
    }
    void GoNext()
    {
        Press(Next());
        EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    }

    OddProduct odd{host.log};
};
INSTANTIATE_BOTH_SHAPES(OddProducts);

} // namespace

// ---- leaving

TEST_P(WizardWithAnOpenCell, CancelStoresNothingOfIt)
{
    BeginCell(0, 0, L"A");
    Press(IDC_CANCEL);
    AnswerCancelQuestion(IDYES);
    EXPECT_EQ(ShowPage(), NAVIGATION_CANCEL);
    ExpectNothingStored();
}

TEST_P(WizardWithAnOpenCell, TheCloseBoxStoresNothingOfItAndANoLeavesItOpen)
{
    BeginCell(0, 0, L"A");
    Look([this] { PostMessageW(Page(), WM_SYSCOMMAND, SC_CLOSE, 0); });
    AnswerCancelQuestion(IDNO);
    Look([this] {
        ASSERT_NE(Editor(), nullptr);
        EXPECT_EQ(CControl(Editor()).GetText(), CString(L"A"));
        PostMessageW(Page(), WM_SYSCOMMAND, SC_CLOSE, 0);
    });
    AnswerCancelQuestion(IDYES);
    EXPECT_EQ(ShowPage(), NAVIGATION_CANCEL);
    ExpectNothingStored();
}

TEST_P(TabWithAnOpenCell, APageThatItsHostDestroysStoresNothingOfIt)
{
    BeginCell(0, 0, L"A");
    Look([this] { SendMessageW(GetParent(Page()), PAGE_MESSAGE_PREVIOUS_TAB, 0, 0); });
    EXPECT_EQ(ShowPage(), NAVIGATION_BACK);
    ExpectNothingStored();
}

// ---- odd products

TEST_P(OddProducts, WhatCouldBeReadOfTheShortcutsIsShownThoughReadingFailed)
{
    WithTwoShortcuts();
    Look([this] {
        EXPECT_EQ(Row(0), CString(L"A|/b"));
        EXPECT_EQ(Row(1), CString(L"B|/c"));
    });
    GoNext();
    ExpectRows(L"K1: S|A, /b\nK2: S|B, /c\n");
}

TEST_P(OddProducts, RowsComeAndGoBeforeTheListIsStoredAndChangeBehindIt)
{
    CString atStore;
    odd.onStore = [this, &atStore] { atStore = DatabaseRows(); };
    WithTwoShortcuts();
    TypeRow(0, L"A", L"/v");
    TypeRow(2, L"C", L"/w");
    GoNext();
    EXPECT_EQ(atStore, CString(L"K1: S|A, /b\nK2: S|B, /c\nCUSTOM_SHORTCUT_3: C|C, /w\n"));
    ExpectRows(L"K1: A|A, /v\nK2: S|B, /c\nCUSTOM_SHORTCUT_3: C|C, /w\n");
}
