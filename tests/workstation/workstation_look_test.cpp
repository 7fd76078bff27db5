// How the page of the workstations looks and how the keyboard walks it. With ROLLOUT_PICTURES set to a folder, a picture of
// every state is saved there too.
#include "automation/picture.h"
#include "base/com_ptr.h"
#include "tests/support/page_looks.h"
#include "tests/workstation/workstation_page.h"
#include "window/gdi.h"

#include <oleacc.h>

namespace {

class WorkstationLook : public WorkstationPage
{
protected:
    void WithTwoShortcuts()
    {
        WithProperty(L"ZOLT_CUSTOM_SHORTCUT", L"3;K1;K2;");
        WithShortcut(L"K1", L"Zolt for the office", L"/nologo /p Office");
        WithShortcut(L"K2", L"Zolt with the sheet set of the company and a long name",
                     L"/set \\\\server\\sets\\company /w Drafting");
    }
    // No text is cut off in this state and no control covers another.
    void LookAt(const wchar_t* state)
    {
        Look([this, state] {
            ExpectTextsFit(Page());
            ExpectControlsApart(Page());
            wchar_t target[MAX_PATH] = {};
            if (GetEnvironmentVariableW(L"ROLLOUT_PICTURES", target, MAX_PATH) == 0) {
                return;
            }
            const wchar_t* shape = GetParam() == Shape::Wizard ? L"Wizard" : L"Tab";
            EXPECT_TRUE(SaveWindowPicture(GetAncestor(Page(), GA_ROOT), CString(target) + L"\\workstation-" +
                                                                            state + L"-" + shape + L".png"));
        });
    }
    // The host's frame around a tab page is no dialog.
    void GiveFocus(int control)
    {
        Look([this, control] { SetFocus(Control(control).GetWindow()); });
        SeeFocus(control);
    }
    void AwaitEditor()
    {
        Await(L"no cell is being edited", [this] { return Editor() && GetFocus() == Editor(); });
    }
    void AwaitNoEditor()
    {
        Await(L"the cell is still being edited", [this] { return !Editor(); });
    }
    void Write(const CString& text)
    {
        Step(L"write", [text] { return TypeCharacters(text); });
        Await(L"the text isn't there",
              [this, text] { return Editor() && CControl(Editor()).GetText() == text; });
    }
};
INSTANTIATE_BOTH_SHAPES(WorkstationLook);

} // namespace

TEST_P(WorkstationLook, NothingIsCutOffOrCoveredInAnyState)
{
    LookAt(L"fresh");
    ShowAndGoBack();
    WithTwoShortcuts();
    GiveFocus(IDC_SHORTCUTS);
    LookAt(L"shortcuts");
    BeginCell(1, 1, L"/set changed");
    LookAt(L"editing");
    Key(VK_ESCAPE);
    AwaitNoEditor();
    ShowAndGoBack();
    WithPropertyRow(L"TARN_DO_NOT_SHOW_SHORTCUT_CHECKBOX", L"1");
    LookAt(L"without-desktop-shortcut");
    ShowAndGoBack();
    WithoutTemplate();
    LookAt(L"without-both");
    ShowAndGoBack();
}

TEST_P(WorkstationLook, TheWholePageCanBeFilledInByTheKeyboardAlone)
{
    GiveFocus(IDC_DESKTOP_SHORTCUT);
    Key(VK_SPACE);
    Await(L"the box is still checked", [this] { return !IsChecked(IDC_DESKTOP_SHORTCUT); });
    Key(VK_TAB);
    SeeFocus(IDC_SHORTCUTS);
    Key(VK_RETURN); // opens the cell, and neither goes on nor to the next tab
    AwaitEditor();
    Write(L"Office");
    Key(VK_TAB); // to the next cell
    Await(L"the name isn't in its cell", [this] { return Cell(0, 0) == L"Office"; });
    AwaitEditor();
    Write(L"/nologo");
    Key(VK_DOWN);
    Await(L"the switch isn't in its cell", [this] { return Cell(0, 1) == L"/nologo"; });
    AwaitEditor();
    Key(VK_ESCAPE); // ends the edit, and doesn't ask whether to leave
    AwaitNoEditor();
    SeeFocus(IDC_SHORTCUTS);
    for (int cell = 3; cell < 9; ++cell) {
        Key(VK_TAB); // cell by cell to the end of the table
    }
    Key(VK_TAB);
    SeeFocus(GetParam() == Shape::Wizard ? IDC_BACK : IDC_BROWSER_REQUIRED);
    Key(VK_TAB, KeyModifier::Shift);
    SeeFocus(IDC_SHORTCUTS);
    Press(Next());
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    ExpectRows(L"CUSTOM_SHORTCUT_1: Office|Office, /nologo\n");
    EXPECT_EQ(InDatabase(L"TARN_DESKTOPSHORTCUT_1"), CString(L"0"));
}

TEST_P(WorkstationLook, EscInACellKeepsItsTextAndThePage)
{
    WithTwoShortcuts();
    BeginCell(0, 0, L"changed");
    Key(VK_ESCAPE);
    AwaitNoEditor();
    Look([this] { EXPECT_EQ(Cell(0, 0), CString(L"Zolt for the office")); });
    ShowAndGoBack();
}

TEST_P(WorkstationLook, TheCurrentCellAndItsRowHaveTheirColors)
{
    const auto ground = [this](int row, int column) {
        const HWND grid = Control(IDC_SHORTCUTS).GetWindow();
        RedrawWindow(grid, nullptr, nullptr, RDW_UPDATENOW);
        const RECT cell = CellPlace(row, column);
        const CWindowDC dc(grid);
        return GetPixel(dc.get(), cell.right - 8, (cell.top + cell.bottom) / 2);
    };
    WithTwoShortcuts();
    GiveFocus(IDC_SHORTCUTS);
    Look([&] {
        EXPECT_EQ(ground(0, 0), 0xC0C0C0u);
        EXPECT_EQ(ground(0, 1), 0xE1E1E1u);
        EXPECT_EQ(ground(1, 0), 0xFFFFFFu);
    });
    GiveFocus(IDC_DESKTOP_SHORTCUT);
    Look([&] { EXPECT_EQ(ground(0, 0), 0xF0F0F0u); });
    ShowAndGoBack();
}

TEST_P(WorkstationLook, ScreenReadersGetTheCellsByTheirCaptionsAndRows)
{
    WithTwoShortcuts();
    Look([this] {
        void* found = nullptr;
        ASSERT_EQ(AccessibleObjectFromWindow(Control(IDC_SHORTCUTS).GetWindow(),
                                             static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible), &found),
                  S_OK);
        ComPtr<IAccessible> grid;
        grid.Attach(static_cast<IAccessible*>(found));
        VARIANT cell = {};
        cell.vt = VT_I4;
        cell.lVal = 2; // of the first row the second one
        BSTR name = nullptr, value = nullptr;
        EXPECT_EQ(grid->get_accName(cell, &name), S_OK);
        EXPECT_EQ(CString(name), ResourceText(IDS_SHORTCUT_SWITCHES_COLUMN) + L" 1");
        EXPECT_EQ(grid->get_accValue(cell, &value), S_OK);
        EXPECT_EQ(CString(value), CString(L"/nologo /p Office"));
        SysFreeString(name);
        SysFreeString(value);
    });
    ShowAndGoBack();
}

TEST_P(WorkstationLook, TheTableIsNamedByItsHeadingForScreenReaders)
{
    Look([this] {
        // Windows takes the label in front of a control that has no text of its own.
        const HWND before = GetWindow(Control(IDC_SHORTCUTS).GetWindow(), GW_HWNDPREV);
        EXPECT_EQ(GetDlgCtrlID(before), IDC_SHORTCUTS_HEADING);
    });
    ShowAndGoBack();
}
