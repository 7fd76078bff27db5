// Pages by keyboard alone: what Enter does where, and Tab through every control in the order of the eye.
#include "tests/support/page_test.h"

#include <algorithm>

namespace {

class Keyboard : public PageTest
{
protected:
    void ShowAndLeave(PageFunction page)
    {
        Press(IDC_BACK);
        EXPECT_EQ(Show(page), NAVIGATION_BACK);
    }
};

TEST_F(Keyboard, EnterPressesNextWhereverTheFocusIs)
{
    host.manager.m_strDeploymentName = L"Alpha";
    host.manager.m_strDeploymentLocation = L"deployments"; // refused, so Next was pressed when the box comes
    FocusOn(IDC_NAME);
    Key(VK_RETURN);
    Answer(ErrorBox(ResourceText(IDS_LOCATION_UNUSABLE, L"deployments\\")), IDOK);
    Await(L"Cancel is still disabled", [&] { return Control(IDC_CANCEL).IsEnabled(); });
    ShowAndLeave(BeginDeploymentDialog);
}

TEST_F(Keyboard, EnterOnBackGoesBack)
{
    FocusOn(IDC_BACK);
    Key(VK_RETURN);
    EXPECT_EQ(Show(ProductContactDialog), NAVIGATION_BACK);
}

TEST_F(Keyboard, EnterOnCancelAsks)
{
    FocusOn(IDC_CANCEL);
    Key(VK_RETURN);
    AnswerCancelQuestion(IDYES);
    EXPECT_EQ(Show(ProductContactDialog), NAVIGATION_CANCEL);
}

TEST_F(Keyboard, EnterOnResetResets)
{
    host.ui.m_bResetAllowed1 = host.ui.m_bResetAllowed2 = true;
    FocusOn(IDC_RESET);
    Key(VK_RETURN);
    EXPECT_EQ(Show(ProductContactDialog), NAVIGATION_RESET);
}

TEST_F(Keyboard, EscapeAsksWhetherToLeave)
{
    Key(VK_ESCAPE);
    AnswerCancelQuestion(IDYES);
    EXPECT_EQ(Show(ProductContactDialog), NAVIGATION_CANCEL);
}

TEST_F(Keyboard, SpaceOnNextGoesOn)
{
    FocusOn(IDC_NEXT);
    Key(VK_SPACE);
    EXPECT_EQ(Show(ProductContactDialog), NAVIGATION_NEXT);
}

TEST_F(Keyboard, TheCancelQuestionIsAnsweredByKeyboardAndEscapeMeansNo)
{
    Press(IDC_CANCEL);
    Step(L"press Escape in the question", [] {
        return FindWindowWithControls({IDC_CANCEL_QUESTION}) ? PressKey(VK_ESCAPE)
                                                             : StepOutcome::NotYet(L"the question isn't up");
    });
    Await(L"cancelling isn't enabled again", [&] { return host.log.Of(L"EnableCancelling").size() == 2; });
    ShowAndLeave(ProductContactDialog);
}

// A stray Enter must not throw the work away.
TEST_F(Keyboard, EnterInTheCancelQuestionMeansNo)
{
    Press(IDC_CANCEL);
    Step(L"press Enter in the question", [] {
        const HWND question = FindWindowWithControls({IDC_CANCEL_QUESTION});
        if (!question)
            return StepOutcome::NotYet(L"the question isn't up");
        EXPECT_EQ(GetFocus(), GetDlgItem(question, IDNO)) << Utf8(DescribeWindow(GetFocus()));
        EXPECT_EQ(LOWORD(SendMessageW(question, DM_GETDEFID, 0, 0)), IDNO);
        return PressKey(VK_RETURN);
    });
    Await(L"cancelling isn't enabled again", [&] { return host.log.Of(L"EnableCancelling").size() == 2; });
    ShowAndLeave(ProductContactDialog);
    EXPECT_EQ(host.manager.m_exitCode, 0u);
}

// ---- the walk

struct Walk
{
    const wchar_t* name;
    int (*show)(PageContext*);
    int mode;         // of the setup
    bool deployments; // with two of them to choose from
    bool reset;       // with the Reset button
};

void PrintTo(const Walk& walk, std::ostream* stream)
{
    *stream << Utf8(walk.name);
}

class Walks : public Keyboard, public testing::WithParamInterface<Walk>
{
protected:
    Walks()
    {
        host.manager.m_setupMode = static_cast<Setup::tagSETUPMODE>(GetParam().mode);
        host.manager.m_bHasDeployments = GetParam().deployments;
        if (GetParam().deployments) {
            host.AddDeployment(L"Alpha");
            host.AddDeployment(L"Beta");
        }
        host.manager.m_strDeploymentLocation = L"C:\\deployments";
        host.manager.m_strDeploymentName = L"Gamma";
        host.ui.m_bResetAllowed1 = host.ui.m_bResetAllowed2 = GetParam().reset;
        host.manager.m_strLinkTarget1 = L"guide.pdf";
        host.manager.m_strLinkTarget2 = L"notes.html";
        host.manager.m_bNetworkLog = true; // the settings page then has its folder to walk through
    }

    // Presses Tab until the focus is where it began, and notes where it was.
    void WalkRound()
    {
        Look([&] {
            visited = {GetFocus()};
            StepOn();
        });
    }

    // What a person can reach by Tab: usable, with a tab stop, of a group of radio buttons the checked one.
    std::vector<HWND> Reachable() const
    {
        std::vector<HWND> controls;
        for (HWND child : ChildWindows(Page())) {
            const LONG style = GetWindowLongW(child, GWL_STYLE);
            if (!(style & WS_TABSTOP) || !CControl(child).IsUsable())
                continue;
            const bool isRadio = (SendMessageW(child, WM_GETDLGCODE, 0, 0) & DLGC_RADIOBUTTON) != 0;
            if (!isRadio || CControl(child).IsChecked())
                controls.push_back(child);
        }
        return controls;
    }

    std::vector<HWND> visited;

private:
    void StepOn()
    {
        script.AddNext(L"press Tab", [] { return PressKey(VK_TAB); });
        script.AddNext(L"see the focus move", [this] { return NoteFocus(); });
    }
    StepOutcome NoteFocus()
    {
        HWND now = GetFocus();
        if (!now || now == visited.back())
            return StepOutcome::NotYet(L"the focus stays on " + DescribeWindow(now));
        if (now == visited.front())
            return StepOutcome::Done();
        if (std::find(visited.begin(), visited.end(), now) != visited.end())
            return StepOutcome::Failed(L"Tab goes in circles at " + DescribeWindow(now));
        visited.push_back(now);
        StepOn();
        return StepOutcome::Done();
    }
};

// Upper rows come first; controls that overlap in height stand in one row and are read from the left.
bool StandsBehind(HWND control, HWND former)
{
    RECT a = {};
    RECT b = {};
    GetWindowRect(former, &a);
    GetWindowRect(control, &b);
    return b.top >= a.bottom || (b.bottom > a.top && b.left >= a.right);
}

TEST_P(Walks, ReachEveryControlInTheOrderOfTheEye)
{
    WalkRound();
    Look([&] {
        for (HWND control : Reachable()) {
            EXPECT_NE(std::find(visited.begin(), visited.end(), control), visited.end())
                << "Tab doesn't reach " << Utf8(DescribeWindow(control));
        }
        // The walk may begin anywhere; it comes round once.
        const auto first = std::min_element(visited.begin(), visited.end(), [](HWND a, HWND b) {
            return StandsBehind(b, a) && !StandsBehind(a, b);
        });
        std::rotate(visited.begin(), first, visited.end());
        for (std::size_t index = 1; index < visited.size(); ++index) {
            EXPECT_TRUE(StandsBehind(visited[index], visited[index - 1]))
                << Utf8(DescribeWindow(visited[index])) << " comes after "
                << Utf8(DescribeWindow(visited[index - 1]));
        }
    });
    ShowAndLeave(GetParam().show);
}

TEST_P(Walks, FindADefaultButtonAndNoMnemonicTwice)
{
    Look([&] {
        EXPECT_EQ(LOWORD(SendMessageW(Page(), DM_GETDEFID, 0, 0)), IDC_NEXT);
        CString taken;
        for (HWND child : ChildWindows(Page())) {
            if (!IsWindowVisible(child))
                continue;
            CString text = WindowText(child);
            const bool isEdit = WindowClass(child).CompareNoCase(L"Edit") == 0;
            const bool isList = WindowClass(child).CompareNoCase(L"ListBox") == 0;
            const bool isPane = GetDlgCtrlID(child) == IDC_SIDE_PANE || GetDlgCtrlID(child) == IDC_BANNER;
            text.Replace(L"&&", L"");
            const int mark = isEdit || isList || isPane ? -1 : text.Find(L'&');
            if (mark < 0)
                continue;
            const CString letter = text.Mid(mark + 1, 1).MakeUpper();
            EXPECT_EQ(taken.Find(letter), -1) << Utf8(DescribeWindow(child)) << " takes a mnemonic again";
            taken += letter;
        }
    });
    ShowAndLeave(GetParam().show);
}

INSTANTIATE_TEST_SUITE_P(ByTab, Walks,
                         testing::Values(Walk{L"begin", BeginDeploymentDialog, 4, false, false},
                                         Walk{L"begin with reset", BeginDeploymentDialog, 4, false, true},
                                         Walk{L"begin, create", BeginDeploymentDialog, 4, true, false},
                                         Walk{L"begin, create from", BeginDeploymentDialog, 5, true, true},
                                         Walk{L"begin, modify", BeginDeploymentDialog, 6, true, false},
                                         Walk{L"settings", DeploymentSettingsDialog, 4, false, false},
                                         Walk{L"contact", ProductContactDialog, 4, false, true},
                                         Walk{L"complete", DeploymentCompleteDialog, 4, false, false},
                                         Walk{L"failed", DeploymentFailedDialog, 4, false, false}));

} // namespace
