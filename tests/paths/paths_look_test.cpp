// How the page of the paths looks and how the keyboard walks it. With ROLLOUT_PICTURES set to a folder, a picture of
// every state is saved there too.
#include "automation/picture.h"
#include "tests/paths/paths_page.h"
#include "tests/support/page_looks.h"
#include "window/gdi.h"
#include "window/window.h"

namespace {

class PathsLook : public PathsPage
{
protected:
    PathsLook()
    {
        context.strHelpFile = L"PathCustomization.html";
        WithDirectory(L"FONTSDIR", L"<Program folder>\\Fonts");
        WithPath(PATH_SUPPORT, L"[FONTSDIR];\\\\server\\standards\\support;C:\\Support");
        WithPath(PATH_MENU_FILE, L"C:\\Menus\\main.menu");
    }
    void SendCounter()
    {
        if (GetParam() == Shape::Tab) {
            Look([this] { SendMessageW(Page(), PAGE_MESSAGE_COUNTER, MAKEWPARAM(1, 3), 0); });
        }
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
            EXPECT_TRUE(SaveWindowPicture(GetAncestor(Page(), GA_ROOT),
                                          CString(target) + L"\\paths-" + state + L"-" + shape + L".png"));
        });
    }
    void ExpectFocus(int control)
    {
        Step(L"the focus", [this, control] {
            return HasFocus(control) ? StepOutcome::Done()
                                     : StepOutcome::NotYet(L"not " + NumberText(control) + L" but " +
                                                           DescribeWindow(GetFocus()) + L" has it");
        });
    }
};
INSTANTIATE_BOTH_SHAPES(PathsLook);

} // namespace

TEST_P(PathsLook, ThePageFitsInEachState)
{
    SendCounter();
    LookAt(L"fresh");
    SelectValue(PATH_SUPPORT, 1);
    LookAt(L"list");
    BeginEdit();
    LookAt(L"edit");
    Key(VK_ESCAPE);
    AwaitNoEdit();
    Look([this] {
        for (const PathRow& row : PATH_TABLE) {
            SendMessageW(Tree().GetWindow(), TVM_EXPAND, TVE_EXPAND,
                         reinterpret_cast<LPARAM>(Relative(Heading(row.property), TVGN_PARENT)));
        }
    });
    SelectHeading(PATH_PRINTER_CONFIG);
    Press(IDC_PATH_BROWSE);
    LookAt(L"groups");
    SelectValue(PATH_ADDITIONAL_ACTIONS);
    LookAt(L"end");
    ShowAndGoBack();
}

TEST_P(PathsLook, TabWalksTheTreeAndTheButtonsInTheirOrder)
{
    SelectValue(PATH_SUPPORT, 1);
    for (const int next : {IDC_PATH_BROWSE, IDC_PATH_ADD, IDC_PATH_REMOVE, IDC_PATH_MOVE_UP,
                           IDC_PATH_MOVE_DOWN, Back(), Next()}) {
        Key(VK_TAB);
        ExpectFocus(next);
    }
    ShowAndGoBack();
}

TEST_P(PathsLook, TheMnemonicOfTheTreeReachesIt)
{
    Look([this] { SetFocus(GetDlgItem(Page(), IDC_PATH_ADD)); });
    Step(L"press a mnemonic", [] {
        PostMessageW(GetFocus(), WM_SYSCHAR, L'p', LPARAM(1) << 29);
        return StepOutcome::Done();
    });
    ExpectFocus(IDC_PATH_TREE);
    ShowAndGoBack();
}

// The product's name may be long, and another language needs a third more.
TEST_P(PathsLook, EveryDescriptionHasRoomForAThirdMore)
{
    product.m_strName = L"Zolt Drafting Professional Edition 2027";
    Look([this] {
        for (const PathRow& row : PATH_TABLE) {
            for (HTREEITEM node = Heading(row.property); node; node = Relative(node, TVGN_PARENT)) {
                SendMessageW(Tree().GetWindow(), TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(node));
                const CWindow pane(GetDlgItem(Page(), IDC_PATH_DESCRIPTION));
                RECT needed = pane.GetClientRect();
                const int height = needed.bottom;
                needed.right = needed.right * 3 / 4;
                const CWindowDC dc(pane);
                const CSelectObject font(dc.get(), pane.GetFont());
                DrawTextW(dc.get(), pane.GetText(), -1, &needed, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
                EXPECT_LE(needed.bottom, height) << Utf8(pane.GetText());
                EXPECT_GT(pane.GetText().GetLength(), 60);
                EXPECT_LT(pane.GetText().Find(L"["), 0) << Utf8(pane.GetText());
            }
        }
    });
    ShowAndGoBack();
}
