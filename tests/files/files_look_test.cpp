// How the page of additional files looks and how the keyboard walks it. With ROLLOUT_PICTURES set to a folder, a picture of
// every state is saved there too.
#include "automation/picture.h"
#include "tests/files/files_page.h"
#include "tests/rules/user_key.h"
#include "tests/support/page_looks.h"

namespace {

class FilesLook : public FilesPage
{
protected:
    FilesLook()
    {
        context.strHelpFile = L"AddAdditionalFiles.html";
        WithFolder(UserKey(1), L"FONTS", L"Company fonts");
        WithFile(UserKey(2), UserKey(1), Source(L"letters.txt"));
        WithFile(UserKey(3), UserKey(1), folder / L"sources\\gone.txt");
        WithDrive(UserKey(4), L"E:");
        WithFolder(UserKey(5), UserKey(4), L"Plans");
    }
    // The shell fetches icons whenever it gets to them, and keeps them.
    void TearDown() override
    {
        CountFromHere();
        FilesPage::TearDown();
    }
    void SendCounter()
    {
        if (GetParam() == Shape::Tab) {
            Look([this] { SendMessageW(Page(), PAGE_MESSAGE_COUNTER, MAKEWPARAM(1, 3), 0); });
        }
    }
    void Save(HWND window, const CString& state)
    {
        wchar_t target[MAX_PATH] = {};
        if (GetEnvironmentVariableW(L"ROLLOUT_PICTURES", target, MAX_PATH) == 0) {
            return;
        }
        const wchar_t* shape = GetParam() == Shape::Wizard ? L"Wizard" : L"Tab";
        EXPECT_TRUE(
            SaveWindowPicture(window, CString(target) + L"\\files-" + state + L"-" + shape + L".png"));
    }
    // No text is cut off in this state and no control covers another.
    void LookAt(const wchar_t* state)
    {
        Look([this, state] {
            ExpectTextsFit(Page());
            ExpectControlsApart(Page());
            Save(GetAncestor(Page(), GA_ROOT), state);
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
INSTANTIATE_BOTH_SHAPES(FilesLook);

} // namespace

TEST_P(FilesLook, ThePageFitsInEachState)
{
    SendCounter();
    LookAt(L"fresh");
    Expand(L"~\\Fonts");
    Expand(L"~\\Fonts\\Company fonts");
    Expand(L"E:");
    for (const auto& [path, state] :
         {std::pair(L"~\\Fonts", L"folder"), std::pair(L"~\\Fonts\\Company fonts", L"added"),
          std::pair(L"~\\Fonts\\Company fonts\\letters.txt", L"file"),
          std::pair(L"~\\Fonts\\Company fonts\\gone.txt", L"gone"), std::pair(L"E:", L"drive")}) {
        SelectNode(path);
        LookAt(state);
    }
    Key(VK_F2);
    AwaitEdit();
    LookAt(L"edit");
    Key(VK_ESCAPE);
    AwaitNoEdit();
    RightClick(L"~\\Fonts\\Company fonts");
    Step(L"picture of the menu", [this] {
        if (!FindPopupMenu()) {
            return StepOutcome::NotYet(L"no menu is up");
        }
        Save(FindPopupMenu()->window, L"menu");
        return ClosePopupMenu();
    });
    Step(L"see the menu go", [] { return Until(!FindPopupMenu(), L"the menu is still up"); });
    SelectNothing();
    LookAt(L"nothing");
    ShowAndGoBack();
}

TEST_P(FilesLook, TheTextBelowTheTreeFitsWithALongSource)
{
    CString path = L"\\\\server\\share";
    for (int number = 0; number < 5; ++number) {
        path += L"\\Company standards";
    }
    WithFile(UserKey(9), L"FONTS", path + L"\\a.txt");
    SelectNode(L"~\\Fonts\\a.txt");
    LookAt(L"long");
    ShowAndGoBack();
}

TEST_P(FilesLook, TabWalksTheTreeAndTheButtonsThatAreOn)
{
    SelectNode(L"~\\Fonts\\Company fonts");
    for (const int control :
         {IDC_FILES_ADD, IDC_FILES_ADD_FOLDER, IDC_FILES_ADD_DRIVE, IDC_FILES_DELETE, Back(), Next()}) {
        Key(VK_TAB);
        ExpectFocus(control);
    }
    ShowAndGoBack();
}

// The tree's own doing, once it has the focus; the tab's host gives it.
TEST_P(FilesLook, TheTreeSelectsTheRootWhenItGetsTheFocus)
{
    Look([this] {
        if (GetParam() == Shape::Tab) {
            SetFocus(Tree().GetWindow());
        }
    });
    ExpectFocus(IDC_FILES_TREE);
    ExpectSelected(L"~");
    ExpectButtons(L"ED");
    ShowAndGoBack();
}
