// What a refused custom shortcut leaves on the page: the cell that it leads to, and what was done while its box was up.
#include "include/navigation.h"
#include "tests/workstation/workstation_page.h"

namespace {

class RefusedShortcuts : public WorkstationPage
{
protected:
    void WithOneShortcut(const CString& name, const CString& command)
    {
        WithProperty(L"ZOLT_CUSTOM_SHORTCUT", L"2;K1;");
        WithShortcut(L"K1", name, command);
    }
    void SetColumnWidth(int column, int width)
    {
        Look([this, column, width] {
            SendMessageW(Control(IDC_SHORTCUTS).GetWindow(), LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(column),
                         width);
        });
    }
    LONG Width() const
    {
        RECT client = {};
        GetClientRect(Control(IDC_SHORTCUTS).GetWindow(), &client);
        return client.right;
    }
};
INSTANTIATE_BOTH_SHAPES(RefusedShortcuts);

// A host may take a tab's page away at any time.
class RefusedOnATab : public RefusedShortcuts
{
protected:
    // Next is refused by the box, and the page goes while it is up.
    void LoseThePageUnder(unsigned int text, const CString& refused)
    {
        CTabHost tabs;
        Press(Next());
        AnswerError(text, refused, [&tabs] { tabs.Close(); });
        script.Add(L"look for the focus", [&tabs] {
            return GetFocus() == tabs.GetWindow() ? StepOutcome::Done()
                                                  : StepOutcome::NotYet(L"the frame hasn't the focus");
        });
        script.Add(L"leave", [&tabs] {
            DestroyWindow(tabs.GetWindow());
            return StepOutcome::Done();
        });
        m_page = tabs.Open(m_functions.page, context);
        EXPECT_EQ(RunTab(tabs), 0u);
    }
};
INSTANTIATE_TEST_SUITE_P(Shapes, RefusedOnATab, testing::Values(Shape::Tab), ShapeName);

} // namespace

TEST_P(RefusedShortcuts, LeadToTheCellThatHasToChange)
{
    struct Row
    {
        const wchar_t* name;
        const wchar_t* command;
        unsigned int text;
        const wchar_t* refused;
        int column;
    };
    WithOneShortcut(L"K", L"/b");
    for (const Row& row :
         {Row{L"A", L"", IDS_SHORTCUT_INCOMPLETE, L"", 1}, Row{L"", L"/b", IDS_SHORTCUT_INCOMPLETE, L"", 0},
          Row{L"a|b", L"/b", IDS_SHORTCUT_NAME_INVALID, L"a|b", 0},
          Row{L"k", L"/c", IDS_SHORTCUT_NAME_TWICE, L"k", 0},
          Row{L"A", L"/b /x", IDS_SHORTCUT_SWITCH_UNKNOWN, L"x", 1}}) {
        TypeRow(2, row.name, row.command);
        Press(Next());
        AnswerError(row.text, row.refused);
        SeeFocus(IDC_SHORTCUTS);
        Key(VK_F2);
        Await(L"no cell is being edited", [this] { return Editor() != nullptr; });
        Look([this] { EXPECT_TRUE(CControl(Editor()).SetText(L"here").IsDone()); });
        Key(VK_RETURN);
        Await(L"the cell is still being edited", [this] { return !Editor(); });
        Look([this, row] {
            EXPECT_EQ(Cell(2, row.column), CString(L"here")) << Utf8(row.name) << ", " << Utf8(row.command);
        });
        ShowAndGoBack();
    }
}

TEST_P(RefusedShortcuts, AreScrolledTo)
{
    TypeRow(0, L"A", L"/x");
    SetColumnWidth(0, 2000);
    Look([this] { EXPECT_GE(CellPlace(0, 1).left, Width()) << "it is in sight already"; });
    Press(Next());
    AnswerError(IDS_SHORTCUT_SWITCH_UNKNOWN, L"x");
    SeeFocus(IDC_SHORTCUTS);
    Look([this] {
        EXPECT_GE(CellPlace(0, 1).left, 0);
        EXPECT_LT(CellPlace(0, 1).left, Width());
    });
    ShowAndGoBack();
}

// The box has no owner, so the page can be worked on.
TEST_P(RefusedShortcuts, KeepTheTextOfACellThatIsBegunUnderTheBox)
{
    WithOneShortcut(L"A", L"/b");
    TypeRow(1, L"B", L"/x");
    Press(Next());
    AnswerError(IDS_SHORTCUT_SWITCH_UNKNOWN, L"x",
                [this] { EXPECT_TRUE(EditCell(0, 0, L"begun").IsDone()); });
    SeeFocus(IDC_SHORTCUTS);
    Look([this] {
        EXPECT_EQ(Editor(), nullptr);
        EXPECT_EQ(Row(0), CString(L"begun|/b"));
        EXPECT_EQ(Row(1), CString(L"B|/x"));
    });
    ShowAndGoBack();
    ExpectRows(L"K1: begun|begun, /b\n");
}

TEST_P(RefusedShortcuts, OfTheDatabaseHoldThePageAndAreDeletedOnTheWayBack)
{
    struct Row
    {
        const wchar_t* command;
        unsigned int text;
        const wchar_t* refused;
    };
    for (const Row& row :
         {Row{L"", IDS_SHORTCUT_INCOMPLETE, L""}, Row{L"/tool", IDS_SHORTCUT_SWITCH_UNKNOWN, L"tool"}}) {
        WithOneShortcut(L"A", row.command);
        Press(Next());
        AnswerError(row.text, row.refused);
        Look([this, row] { ExpectRows(CString(L"K1: S|A, ") + row.command + L"\n"); });
        ShowAndGoBack();
        ExpectRows(L"");
        EXPECT_EQ(List(), CString(L"2;"));
        product.shortcuts.clear();
    }
}

TEST_P(RefusedOnATab, LeaveTheFocusWhereItIsWhenThePageIsGone)
{
    TypeRow(0, L"A", L"/x");
    LoseThePageUnder(IDS_SHORTCUT_SWITCH_UNKNOWN, L"x");
}

TEST_P(RefusedOnATab, OrItsProfileLeaveTheFocusWhereItIsWhenThePageIsGone)
{
    Type(IDC_PROFILE_NAME, L"a*b");
    LoseThePageUnder(IDS_PROFILE_NAME_INVALID, L"");
}
