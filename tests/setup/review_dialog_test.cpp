// The window of the review, with reviews of the tests' own.
#include "setup/review_dialog.h"

#include "automation/control.h"
#include "automation/keyboard.h"
#include "automation/message_box.h"
#include "automation/picture.h"
#include "automation/script.h"
#include "automation/tree_control.h"
#include "automation/window_finder.h"
#include "base/number_text.h"
#include "include/navigation.h"
#include "setup/review_lines.h"
#include "setup/texts.h"
#include "tests/support/import_redirect.h"
#include "tests/support/page_looks.h"
#include "tests/support/processor_time.h"
#include "tests/support/text.h"
#include "window/drawing_handles.h"
#include "window/module.h"

#include <gtest/gtest.h>

namespace {

using Path = CTreeControl::Path;

ReviewNode PageLine(const wchar_t* text, const wchar_t* page, const wchar_t* product, ReviewDocument children)
{
    ReviewNode node = ReviewLine(text);
    node.strPage = page;
    node.strProductCode = product;
    node.children = std::move(children);
    return node;
}

ReviewNode Marked(const CString& text, bool isWarning)
{
    ReviewNode node = ReviewLine(text);
    (isWarning ? node.bWarning : node.bChanged) = true;
    return node;
}

// What stands on the screen of a window's inside, its pending painting done.
std::vector<std::uint32_t> PixelsOf(HWND window)
{
    RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    RECT inside = {};
    GetClientRect(window, &inside);
    const int width = inside.right, height = inside.bottom;
    BITMAPINFO format = {};
    format.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    const CBitmapOwner bitmap(CreateDIBSection(nullptr, &format, DIB_RGB_COLORS, &bits, nullptr, 0));
    const HDC screen = GetDC(window), memory = CreateCompatibleDC(screen);
    const HGDIOBJ before = SelectObject(memory, bitmap.get());
    EXPECT_TRUE(BitBlt(memory, 0, 0, width, height, screen, 0, 0, SRCCOPY));
    GdiFlush();
    const auto* const first = static_cast<const std::uint32_t*>(bits);
    std::vector<std::uint32_t> pixels(first, first + static_cast<std::size_t>(width) * height);
    SelectObject(memory, before);
    DeleteDC(memory);
    ReleaseDC(window, screen);
    return pixels;
}

ReviewDocument MakeReview()
{
    ReviewNode chosen = ReviewLine(L"What was chosen");
    chosen.children = {
        PageLine(L"Begin", L"BeginDeploymentDialog", L"", {ReviewLine(L"Name: \"Office\"")}),
        PageLine(L"Paths", L"PathsDialog", L"{CODE}", {Marked(L"Temp directory: \"X:\\\"", false)})};
    ReviewNode warnings = Marked(L"Warnings: 1", true);
    warnings.children = {Marked(L"The log folder can't be reached.", true)};
    return {ReviewLine(L"This can be built. Nothing has been built yet."), chosen, warnings};
}

bool g_clipboardIsTaken = false;
BOOL WINAPI OpenNoClipboard(HWND)
{
    g_clipboardIsTaken = true;
    return FALSE;
}

class ReviewDialog : public testing::Test
{
protected:
    static void SetUpTestSuite() { _Module.Init(GetModuleHandleW(nullptr)); }

    ReviewDialog()
    {
        window.strName = L"Office";
        window.review = MakeReview();
        m_script.SetFailureHandler([] {
            while (CloseFrontWindow()) {
            }
        });
    }

    int Run()
    {
        CReviewDialog dialog(window);
        m_script.Start();
        const int result = dialog.Run();
        EXPECT_FALSE(m_script.HasFailed()) << Utf8(m_script.GetFailure());
        EXPECT_TRUE(m_script.IsFinished()) << "the window went before its steps";
        EXPECT_EQ(TopLevelWindows().size(), 0u) << Utf8(DescribeThreadWindows());
        if (result == CReviewDialog::VISIT) {
            visited = dialog.GetVisited();
        }
        return result;
    }

    static HWND Window() { return FindWindowWithControls({IDC_REVIEW_TREE, IDC_REVIEW_LINE}); }
    static CTreeControl Tree() { return CTreeControl(Window(), IDC_REVIEW_TREE); }
    static CControl Control(int id) { return CControl(Window(), id); }

    void Do(std::function<void()> act)
    {
        m_script.Add(L"act", [act] {
            if (!Window()) {
                return StepOutcome::NotYet(L"the window isn't up");
            }
            act();
            return StepOutcome::Done();
        });
    }
    void Select(const Path& path)
    {
        m_script.Add(L"select a line", [path] { return Tree().Select(path); });
    }
    void Click(int control)
    {
        m_script.Add(L"click", [control] { return Control(control).Click(); });
    }
    void Press(WORD key, KeyModifier modifier = KeyModifier::None)
    {
        m_script.Add(L"press a key", [key, modifier] { return PressKey(key, modifier); });
    }
    // `endsWindow`: the window goes with it, and with the window the steps.
    void AnswerBox(unsigned int text, int button, bool endsWindow = false)
    {
        m_script.Add(L"answer the box", [text, button] {
            const auto box = FindMessageBox();
            if (!box) {
                return StepOutcome::NotYet(L"there is no box");
            }
            EXPECT_EQ(box->text, SetupText(text));
            return AnswerMessageBox(*box, button);
        });
        if (!endsWindow) {
            m_script.Add(L"wait for its end",
                         [] { return Until(!FindMessageBox(), L"the box is still there"); });
        }
    }
    void Picture(const wchar_t* state)
    {
        Do([state] {
            ExpectTextsFit(Window());
            ExpectControlsApart(Window());
            wchar_t folder[MAX_PATH] = L"";
            if (GetEnvironmentVariableW(L"ROLLOUT_PICTURES", folder, MAX_PATH) != 0) {
                EXPECT_TRUE(SaveWindowPicture(Window(), CString(folder) + L"\\review-" + state + L".png"));
            }
        });
    }

    static CString ClipboardText()
    {
        CString text;
        if (OpenClipboard(nullptr)) {
            const HANDLE memory = GetClipboardData(CF_UNICODETEXT);
            text = memory ? static_cast<const wchar_t*>(GlobalLock(memory)) : L"";
            CloseClipboard();
        }
        return text;
    }

    ReviewWindow window;
    ReviewNode visited;
    CScript m_script;
};

} // namespace

TEST_F(ReviewDialog, EveryLineStandsInTheTreeWithItsMark)
{
    Do([] {
        EXPECT_EQ(WindowText(Window()), CString(L"Review of Office"));
        EXPECT_EQ(Tree().GetChildren({}), (Path{L"This can be built. Nothing has been built yet.",
                                                L"What was chosen", L"! Warnings: 1"}));
        EXPECT_EQ(Tree().GetChildren({L"What was chosen"}), (Path{L"Begin", L"Paths"}));
        EXPECT_EQ(Tree().GetChildren({L"What was chosen", L"Paths"}), Path{L"* Temp directory: \"X:\\\""});
        EXPECT_EQ(Tree().GetChildren({L"! Warnings: 1"}), Path{L"! The log folder can't be reached."});
    });
    Press(VK_RETURN);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
}

TEST_F(ReviewDialog, PagesOnWhichNothingStandsOutAreClosed)
{
    window.review[1].children.push_back(ReviewLine(L"Zolt 2027"));
    window.review[1].children.back().children = {
        PageLine(L"Notices", L"NoticesDialog", L"{CODE}", {ReviewLine(L"Updates: yes")}),
        PageLine(L"Files", L"FilesDialog", L"{CODE}", {Marked(L"File: \"a.txt\"", false)})};
    Do([] {
        const auto isOpen = [](HTREEITEM item) { return Tree().IsExpanded(item); };
        const auto item = [](HTREEITEM parent, UINT relation) {
            return TreeView_GetNextItem(Tree().GetWindow(), parent, relation);
        };
        const HTREEITEM chosen = item(item(nullptr, TVGN_ROOT), TVGN_NEXT);
        const HTREEITEM begin = item(chosen, TVGN_CHILD), paths = item(begin, TVGN_NEXT);
        const HTREEITEM product = item(paths, TVGN_NEXT), notices = item(product, TVGN_CHILD);
        EXPECT_TRUE(isOpen(chosen));
        EXPECT_FALSE(isOpen(begin));
        EXPECT_TRUE(isOpen(paths));
        EXPECT_TRUE(isOpen(product));
        EXPECT_FALSE(isOpen(notices));
        EXPECT_TRUE(isOpen(item(notices, TVGN_NEXT)));
    });
    Press(VK_RETURN);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
}

TEST_F(ReviewDialog, TheChosenLineStandsInFullBelowTheTree)
{
    CString text(L"long");
    for (int word = 0; word < 100; ++word) {
        text += L" words";
    }
    window.review[0].strText = text;
    Do([text] { EXPECT_EQ(Control(IDC_REVIEW_LINE).GetText(), text) << "the first line is chosen"; });
    Select({L"What was chosen", L"Begin"});
    Do([] { EXPECT_EQ(Control(IDC_REVIEW_LINE).GetText(), CString(L"Begin")); });
    Press(VK_RETURN);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
}

// A screen reader calls an edit by the label in front of it.
TEST_F(ReviewDialog, TheLineBelowTheTreeHasALabelWithAKey)
{
    Do([] {
        const HWND label = GetWindow(Control(IDC_REVIEW_LINE).GetWindow(), GW_HWNDPREV);
        EXPECT_EQ(WindowText(label), CString(L"&Selected line:"));
        EXPECT_NE(GetFocus(), Control(IDC_REVIEW_LINE).GetWindow());
    });
    Press('S', KeyModifier::Alt);
    m_script.Add(L"wait for the focus", [] {
        return Until(GetFocus() == Control(IDC_REVIEW_LINE).GetWindow(), L"the line doesn't have it");
    });
    Click(IDC_REVIEW_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
}

// As ShownText has them: nothing is underlined, broken or filled in.
TEST_F(ReviewDialog, HostileTextsStandAsTheyAreInTheTreeAndBelowIt)
{
    const CString hostile[] = {L"Nuts && &Bolts", L"%1 %s%n \\n", L"a\r\n! b\tc\x07",
                               L"\x202E"
                               L"gpj.exe\xD800",
                               L"\x5E9\x5DC\x5D5\x5DD \xD83D\xDE00"};
    window.strName = hostile[0];
    Path shown;
    window.review[2].children.clear();
    for (const CString& text : hostile) {
        ReviewNode node = ReviewLine(text);
        shown.push_back(node.strText);
        window.review[2].children.push_back(std::move(node));
    }
    Do([shown, hostile] {
        EXPECT_EQ(WindowText(Window()), L"Review of " + hostile[0]);
        EXPECT_EQ(Tree().GetChildren({L"! Warnings: 1"}), shown);
    });
    for (const CString& line : shown) {
        Select({L"! Warnings: 1", line});
        Do([line] { EXPECT_EQ(Utf8(Control(IDC_REVIEW_LINE).GetText()), Utf8(line)); });
    }
    Click(IDC_REVIEW_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
}

// Each addition and each row may have a warning. The same number of lines is to cost about what it costs in ten windows.
TEST_F(ReviewDialog, ManyWarningsComeUpInTimeProportionalToThemAndAreWalked)
{
    const auto seconds = [this](int warnings, int rounds) {
        window.review = MakeReview();
        for (int number = 1; number < warnings; ++number) {
            window.review[2].children.push_back(Marked(L"Warning " + NumberText(number), true));
        }
        const CString last = window.review[2].children.back().strText;
        const double start = ProcessorSeconds();
        for (int round = 0; round < rounds; ++round) {
            Press(VK_END);
            m_script.Add(L"wait for the last line", [last] {
                return Until(Control(IDC_REVIEW_LINE).GetText() == last, L"another one is selected");
            });
            Press(VK_HOME);
            m_script.Add(L"wait for the first line", [] {
                return Until(Control(IDC_REVIEW_LINE).GetText() == MakeReview()[0].strText,
                             L"another one is selected");
            });
            Press('C', KeyModifier::Control);
            m_script.Add(L"wait for the copy",
                         [last] { return Until(ClipboardText().Find(last) >= 0, L"there is none"); });
            Click(IDC_REVIEW_BACK);
            EXPECT_EQ(Run(), NAVIGATION_BACK);
            if (OpenClipboard(nullptr)) {
                EmptyClipboard();
                CloseClipboard();
            }
        }
        return ProcessorSeconds() - start;
    };
    const double few = seconds(1000, 10);
    const double many = seconds(10000, 1);
    EXPECT_LT(many, 3 * few) << "in ten windows " << few << " s";
}

TEST_F(ReviewDialog, APagesLinesLeadToItAndOthersNowhere)
{
    Do([] { EXPECT_FALSE(Control(IDC_REVIEW_PAGE).IsEnabled()); });
    Select({L"! Warnings: 1", L"! The log folder can't be reached."});
    Do([] { EXPECT_FALSE(Control(IDC_REVIEW_PAGE).IsEnabled()); });
    Select({L"What was chosen", L"Paths", L"* Temp directory: \"X:\\\""});
    Do([] { EXPECT_TRUE(Control(IDC_REVIEW_PAGE).IsEnabled()); });
    Press('G', KeyModifier::Alt);
    EXPECT_EQ(Run(), CReviewDialog::VISIT);
    EXPECT_EQ(visited.strPage, CString(L"PathsDialog"));
    EXPECT_EQ(visited.strProductCode, CString(L"{CODE}"));
}

// The window began at its top again, with all pages closed, however far down the page's line stood.
TEST_F(ReviewDialog, WhoComesBackFromAPageStandsOnItsOpenedLine)
{
    window.visited = {L"BeginDeploymentDialog", L""};
    Do([] {
        EXPECT_EQ(Control(IDC_REVIEW_LINE).GetText(), CString(L"Begin"));
        EXPECT_TRUE(Tree().IsExpanded(TreeView_GetSelection(Tree().GetWindow())));
        EXPECT_TRUE(Control(IDC_REVIEW_PAGE).IsEnabled());
    });
    Click(IDC_REVIEW_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
    window.visited = {L"PathsDialog", L"{CODE}"};
    Do([] { EXPECT_EQ(Control(IDC_REVIEW_LINE).GetText(), CString(L"Paths")); });
    Click(IDC_REVIEW_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
    window.visited = {L"PathsDialog", L"{OTHER}"};
    Do([] {
        EXPECT_EQ(Control(IDC_REVIEW_LINE).GetText(),
                  CString(L"This can be built. Nothing has been built yet."));
    });
    Click(IDC_REVIEW_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
}

TEST_F(ReviewDialog, WhoComesBackToARefusalStandsOnIt)
{
    window.visited = {L"BeginDeploymentDialog", L""};
    window.bRefused = true;
    window.review[0] = Marked(L"This can't be built (code 2): gone", true);
    Do([] { EXPECT_EQ(Control(IDC_REVIEW_LINE).GetText(), CString(L"This can't be built (code 2): gone")); });
    Click(IDC_REVIEW_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
}

TEST_F(ReviewDialog, ADoubleClickOnALineLeadsToItsPage)
{
    Select({L"What was chosen", L"Begin", L"Name: \"Office\""});
    Do([] {
        NMHDR click = {Tree().GetWindow(), IDC_REVIEW_TREE, static_cast<UINT>(NM_DBLCLK)};
        SendMessageW(Window(), WM_NOTIFY, IDC_REVIEW_TREE, reinterpret_cast<LPARAM>(&click));
    });
    EXPECT_EQ(Run(), CReviewDialog::VISIT);
    EXPECT_EQ(visited.strPage, CString(L"BeginDeploymentDialog"));
    EXPECT_EQ(visited.strProductCode, CString());
}

TEST_F(ReviewDialog, ADoubleClickOnAPagesOwnLineStays)
{
    Select({L"What was chosen", L"Begin"});
    Do([] {
        NMHDR click = {Tree().GetWindow(), IDC_REVIEW_TREE, static_cast<UINT>(NM_DBLCLK)};
        SendMessageW(Window(), WM_NOTIFY, IDC_REVIEW_TREE, reinterpret_cast<LPARAM>(&click));
    });
    Click(IDC_REVIEW_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
}

TEST_F(ReviewDialog, AllLinesAreCopiedByButtonAndByKey)
{
    const CString text = ComposeReviewText(window.review);
    Click(IDC_REVIEW_COPY);
    Do([text] { EXPECT_EQ(Utf8(ClipboardText()), Utf8(text)); });
    Do([] {
        ASSERT_TRUE(OpenClipboard(Window()));
        EmptyClipboard();
        CloseClipboard();
        SetFocus(Tree().GetWindow());
    });
    Press('C', KeyModifier::Control);
    m_script.Add(L"wait for the copy",
                 [text] { return Until(ClipboardText() == text, L"the clipboard has another text"); });
    Click(IDC_REVIEW_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
}

TEST_F(ReviewDialog, ACopyThatFailsIsReported)
{
    const CImportRedirect clipboard(nullptr, "OpenClipboard", reinterpret_cast<void*>(OpenNoClipboard));
    ASSERT_TRUE(clipboard.IsInPlace());
    Click(IDC_REVIEW_COPY);
    AnswerBox(IDS_REVIEW_NOT_COPIED, IDOK);
    Click(IDC_REVIEW_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
    EXPECT_TRUE(g_clipboardIsTaken);
}

TEST_F(ReviewDialog, CancelAsksAndNoStays)
{
    Press(VK_ESCAPE);
    AnswerBox(IDS_REVIEW_CANCEL_QUESTION, IDNO);
    Press(VK_ESCAPE);
    AnswerBox(IDS_REVIEW_CANCEL_QUESTION, IDYES, true);
    EXPECT_EQ(Run(), NAVIGATION_CANCEL);
}

TEST_F(ReviewDialog, ARefusedDeploymentIsNotBuilt)
{
    window.bRefused = true;
    Do([] {
        EXPECT_FALSE(Control(IDOK).IsEnabled());
        EXPECT_EQ(Control(IDC_REVIEW_HEADING).GetText(), SetupText(IDS_REVIEW_REFUSED));
        SendMessageW(Window(), WM_COMMAND, IDOK, 0);
    });
    Press(VK_RETURN); // Back is the default button
    EXPECT_EQ(Run(), NAVIGATION_BACK);
}

TEST_F(ReviewDialog, ARefusedCheckEnds)
{
    window.bRefused = true;
    window.bBuilds = false;
    Do([] { EXPECT_EQ(Control(IDOK).GetText(), SetupText(IDS_REVIEW_FINISH)); });
    Press(VK_RETURN);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
}

TEST_F(ReviewDialog, ALargerWindowHasRoomForMoreLinesAndNoSmallerOneIsMade)
{
    Do([] {
        RECT before = {}, after = {}, tree = {}, grown = {}, cancel = {};
        GetWindowRect(Window(), &before);
        GetWindowRect(Tree().GetWindow(), &tree);
        SetWindowPos(Window(), nullptr, 0, 0, before.right - before.left + 100,
                     before.bottom - before.top + 50, SWP_NOMOVE | SWP_NOZORDER);
        GetWindowRect(Tree().GetWindow(), &grown);
        EXPECT_EQ(grown.right - grown.left, tree.right - tree.left + 100);
        EXPECT_EQ(grown.bottom - grown.top, tree.bottom - tree.top + 50);
        GetWindowRect(Window(), &after);
        GetWindowRect(Control(IDCANCEL).GetWindow(), &cancel);
        EXPECT_LT(cancel.bottom, after.bottom);
        EXPECT_GT(cancel.top, grown.bottom);
        ExpectControlsApart(Window());
        SetWindowPos(Window(), nullptr, 0, 0, 50, 50, SWP_NOMOVE | SWP_NOZORDER);
        GetWindowRect(Window(), &after);
        EXPECT_EQ(after.right - after.left, before.right - before.left);
        EXPECT_EQ(after.bottom - after.top, before.bottom - before.top);
    });
    Click(IDC_REVIEW_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
}

// Dragged larger, the buttons went and the heading kept pieces of its old lines.
TEST_F(ReviewDialog, AWindowOfAnotherSizeIsPaintedWhole)
{
    Do([] {
        for (int step = 0; step < 3; ++step) {
            RECT place = {};
            GetWindowRect(Window(), &place);
            PixelsOf(Window());
            SetWindowPos(Window(), nullptr, 0, 0, place.right - place.left + 40,
                         place.bottom - place.top + 45, SWP_NOMOVE | SWP_NOZORDER);
        }
        const std::vector<std::uint32_t> shown = PixelsOf(Window());
        RedrawWindow(Window(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
        EXPECT_TRUE(shown == PixelsOf(Window())) << "what is painted anew looks otherwise";
    });
    Click(IDC_REVIEW_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
}

TEST_F(ReviewDialog, LooksWholeInEachState)
{
    Picture(L"good");
    Click(IDC_REVIEW_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
    window.bRefused = true;
    Picture(L"refused");
    Click(IDC_REVIEW_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
    window.bRefused = false;
    window.bBuilds = false;
    Picture(L"check");
    Click(IDC_REVIEW_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
}
