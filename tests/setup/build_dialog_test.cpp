// The build window with builds of the tests' own: real threads, real windows.
#include "automation/control.h"
#include "automation/keyboard.h"
#include "automation/message_box.h"
#include "automation/picture.h"
#include "automation/script.h"
#include "automation/window_finder.h"
#include "setup/build_dialog.h"
#include "setup/texts.h"
#include "tests/support/import_redirect.h"
#include "tests/support/text.h"
#include "window/module.h"

#include <gtest/gtest.h>

#include <atomic>

CAppModule _Module;

namespace {

// For who wants to look at the window; kept out of the checkout.
CString PicturePath(const wchar_t* name)
{
    CString folder;
    GetTempPathW(MAX_PATH, folder.GetBuffer(MAX_PATH));
    folder.ReleaseBuffer();
    return folder + name;
}

constexpr std::uint64_t MEGABYTE = 1024 * 1024;

class BuildDialog : public testing::Test
{
protected:
    static void SetUpTestSuite() { _Module.Init(GetModuleHandleW(nullptr)); }

    BuildDialog()
    {
        m_script.SetFailureHandler([] {
            while (CloseFrontWindow()) {
            }
        });
    }

    // A build that reports its news and then goes on until it is let go or cancelled.
    BuildFunction HeldBuild(std::uint64_t done, std::uint64_t total)
    {
        return [this, done, total](IBuildProgress& progress) {
            progress.OnStep(L"Copying Zolt & Sons");
            BuildResult result;
            while (!m_bLetGo) {
                if (!progress.OnProgress(done, total, L"Image\\x64\\Zolt\\Zolt2027.msi")) {
                    result.error = {1602, L"Cancelled."};
                    break;
                }
                SwitchToThread();
            }
            return result;
        };
    }

    BuildResult Run(BuildFunction build)
    {
        CBuildDialog dialog(L"Office", std::move(build));
        m_script.Start();
        const BuildResult result = dialog.Run();
        EXPECT_FALSE(m_script.HasFailed()) << Utf8(m_script.GetFailure());
        EXPECT_EQ(TopLevelWindows().size(), 0u) << Utf8(DescribeThreadWindows());
        return result;
    }

    static HWND Window() { return FindWindowWithControls({IDC_BUILD_STEP, IDC_BUILD_BAR}); }
    static CString Text(int control) { return CControl(Window(), control).GetText(); }

    void WaitForText(int control, const wchar_t* text)
    {
        m_script.Add(CString(L"wait for ") + text, [control, text] {
            const CString found = Text(control);
            return found == text ? StepOutcome::Done() : StepOutcome::NotYet(L"it reads \"" + found + L"\"");
        });
    }
    void Click(int control)
    {
        m_script.Add(L"click", [control] { return CControl(Window(), control).Click(); });
    }
    void AnswerQuestion(int button)
    {
        m_script.Add(L"answer the question", [button] {
            const auto box = FindMessageBox();
            return box ? AnswerMessageBox(*box, button) : StepOutcome::NotYet(L"there is no box");
        });
        m_script.Add(L"wait for its end", [] { return Until(!FindMessageBox(), L"the box is still there"); });
    }
    void Do(std::function<void()> act)
    {
        m_script.Add(L"act", [act] {
            act();
            return StepOutcome::Done();
        });
    }
    void LetGo()
    {
        Do([this] { m_bLetGo = true; });
    }

    CScript m_script;
    std::atomic<bool> m_bLetGo = false;
};

TEST_F(BuildDialog, TheResultOfTheBuildComesBack)
{
    const BuildResult result = Run([](IBuildProgress&) {
        BuildResult failed;
        failed.error = {112, L"The disk is full."};
        failed.warnings.push_back(L"warned");
        return failed;
    });
    EXPECT_EQ(result.error.code, 112u);
    EXPECT_EQ(result.error.message, CString(L"The disk is full."));
    EXPECT_EQ(result.warnings.size(), 1u);
}

TEST_F(BuildDialog, StepFileAndAmountAreShown)
{
    WaitForText(IDC_BUILD_STEP, L"Copying Zolt & Sons");
    WaitForText(IDC_BUILD_AMOUNT, L"130 MB of 500 MB");
    CString file;
    Do([&] {
        file = Text(IDC_BUILD_FILE);
        EXPECT_TRUE(SaveWindowPicture(Window(), PicturePath(L"build_window.png")));
    });
    LetGo();
    static_cast<void>(Run(HeldBuild(130 * MEGABYTE, 500 * MEGABYTE)));
    EXPECT_EQ(file, CString(L"Image\\x64\\Zolt\\Zolt2027.msi"));
}

TEST_F(BuildDialog, TheTitleShowsTheShareAndTheBarFollows)
{
    WaitForText(IDC_BUILD_AMOUNT, L"130 MB of 500 MB");
    CString title;
    LRESULT position = 0;
    Do([&] {
        title = WindowText(Window());
        position = SendDlgItemMessageW(Window(), IDC_BUILD_BAR, PBM_GETPOS, 0, 0);
    });
    LetGo();
    static_cast<void>(Run(HeldBuild(130 * MEGABYTE, 500 * MEGABYTE)));
    EXPECT_EQ(title, CString(L"26% - Building Office"));
    EXPECT_EQ(position, 260);
}

TEST_F(BuildDialog, TheTimeLeftIsShownOnceTheSpeedIsKnown)
{
    m_script.Add(L"wait for the time left",
                 [] { return Until(Text(IDC_BUILD_TIME_LEFT).Find(L"About ") == 0, L"it isn't shown"); });
    LetGo();
    static_cast<void>(Run(HeldBuild(250 * MEGABYTE, 500 * MEGABYTE)));
}

// A window would have to be up for a minute before it shows hours.
TEST_F(BuildDialog, EachTimeLeftIsShownInItsUnit)
{
    EXPECT_GE(SetupText(IDS_BUILD_SECONDS_LEFT, {L"3"}).Find(L"3 seconds"), 0);
    EXPECT_GE(SetupText(IDS_BUILD_MINUTES_LEFT, {L"3"}).Find(L"3 minutes"), 0);
    EXPECT_GE(SetupText(IDS_BUILD_HOURS_LEFT, {L"3"}).Find(L"3 hours"), 0);
}

TEST_F(BuildDialog, WithoutATotalTheBarOnlyMoves)
{
    WaitForText(IDC_BUILD_STEP, L"Copying Zolt & Sons");
    LONG style = 0;
    CString amount;
    Do([&] {
        style = GetWindowLongW(GetDlgItem(Window(), IDC_BUILD_BAR), GWL_STYLE);
        amount = Text(IDC_BUILD_AMOUNT);
    });
    LetGo();
    static_cast<void>(Run(HeldBuild(0, 0)));
    EXPECT_TRUE(style & PBS_MARQUEE);
    EXPECT_EQ(amount, CString());
}

std::vector<CString> g_reasons; // given to the system, empty when one was withdrawn

BOOL WINAPI NoteReason(HWND, const wchar_t* reason)
{
    g_reasons.push_back(reason);
    return TRUE;
}

BOOL WINAPI NoteNoReason(HWND)
{
    g_reasons.push_back(CString());
    return TRUE;
}

TEST_F(BuildDialog, TheSystemKnowsWhyItCanNotEndTheSessionAsLongAsTheWindowIsUp)
{
    g_reasons.clear();
    const CImportRedirect create(nullptr, "ShutdownBlockReasonCreate", reinterpret_cast<void*>(NoteReason));
    const CImportRedirect destroy(nullptr, "ShutdownBlockReasonDestroy",
                                  reinterpret_cast<void*>(NoteNoReason));
    ASSERT_TRUE(create.IsInPlace() && destroy.IsInPlace());
    WaitForText(IDC_BUILD_STEP, L"Copying Zolt & Sons");
    std::vector<CString> meanwhile;
    LRESULT mayEnd = TRUE;
    Do([&] {
        meanwhile = g_reasons;
        mayEnd = SendMessageW(Window(), WM_QUERYENDSESSION, 0, 0);
    });
    LetGo();
    static_cast<void>(Run(HeldBuild(0, 0)));
    EXPECT_EQ(meanwhile, std::vector<CString>{SetupText(IDS_BUILD_SHUTDOWN_REASON)});
    EXPECT_FALSE(mayEnd);
    EXPECT_EQ(g_reasons, (std::vector<CString>{SetupText(IDS_BUILD_SHUTDOWN_REASON), CString()}));
}

TEST_F(BuildDialog, CancelAsksFirstAndNoGoesOn)
{
    WaitForText(IDC_BUILD_STEP, L"Copying Zolt & Sons");
    Click(IDCANCEL);
    AnswerQuestion(IDNO);
    bool canCancel = false;
    Do([&] { canCancel = CControl(Window(), IDCANCEL).IsUsable(); });
    LetGo();
    EXPECT_EQ(Run(HeldBuild(1, 2)).error.code, 0u);
    EXPECT_TRUE(canCancel);
}

// The question's loop hands on what others send to the window behind it.
TEST_F(BuildDialog, ASecondCancelDuringTheQuestionAsksNoMore)
{
    WaitForText(IDC_BUILD_STEP, L"Copying Zolt & Sons");
    Click(IDCANCEL);
    m_script.Add(L"cancel again behind the question", [] {
        const HWND build = Window();
        if (!FindMessageBox() || !build) {
            return StepOutcome::NotYet(L"there is no box");
        }
        PostMessageW(build, WM_COMMAND, IDCANCEL, 0);
        PostMessageW(build, WM_NULL, 0, 0);
        return StepOutcome::Done();
    });
    std::size_t windows = 0;
    m_script.Add(L"let the second one come", [] {
        MSG waiting = {};
        return Until(!PeekMessageW(&waiting, Window(), 0, 0, PM_NOREMOVE), L"it still waits");
    });
    Do([&] { windows = TopLevelWindows().size(); });
    AnswerQuestion(IDNO);
    LetGo();
    EXPECT_EQ(Run(HeldBuild(1, 2)).error.code, 0u);
    EXPECT_EQ(windows, 2u) << "the build's window and one question";
}

TEST_F(BuildDialog, NoIsTheDefaultAnswer)
{
    WaitForText(IDC_BUILD_STEP, L"Copying Zolt & Sons");
    Click(IDCANCEL);
    int defaultButton = 0;
    m_script.Add(L"look at the question", [&] {
        const auto box = FindMessageBox();
        defaultButton = box ? box->defaultButton : 0;
        return Until(box.has_value(), L"there is no box");
    });
    AnswerQuestion(IDNO);
    LetGo();
    static_cast<void>(Run(HeldBuild(1, 2)));
    EXPECT_EQ(defaultButton, IDNO);
}

TEST_F(BuildDialog, CancelWithYesCancelsTheBuild)
{
    WaitForText(IDC_BUILD_STEP, L"Copying Zolt & Sons");
    Click(IDCANCEL);
    AnswerQuestion(IDYES);
    EXPECT_EQ(Run(HeldBuild(1, 2)).error.code, 1602u);
}

TEST_F(BuildDialog, WhileCancellingTheWindowSaysSoAndAsksNoMore)
{
    WaitForText(IDC_BUILD_STEP, L"Copying");
    Click(IDCANCEL);
    AnswerQuestion(IDYES);
    WaitForText(IDC_BUILD_STEP, L"Canceling: putting everything back as it was");
    bool usable = true;
    Do([&] { usable = CControl(Window(), IDCANCEL).IsUsable(); });
    LetGo();
    const BuildResult result = Run([this](IBuildProgress& progress) {
        progress.OnStep(L"Copying");
        while (!m_bLetGo) { // a build that takes its time to undo itself
            progress.OnProgress(1, 2, L"file");
            SwitchToThread();
        }
        BuildResult cancelled;
        cancelled.error.code = 1602;
        return cancelled;
    });
    EXPECT_EQ(result.error.code, 1602u);
    EXPECT_FALSE(usable);
}

TEST_F(BuildDialog, EscapeAsksToo)
{
    WaitForText(IDC_BUILD_STEP, L"Copying Zolt & Sons");
    m_script.Add(L"press Escape", [] { return PressKey(VK_ESCAPE); });
    AnswerQuestion(IDYES);
    EXPECT_EQ(Run(HeldBuild(1, 2)).error.code, 1602u);
}

TEST_F(BuildDialog, TheEndOfTheSessionWaitsForTheBuild)
{
    WaitForText(IDC_BUILD_STEP, L"Copying Zolt & Sons");
    LRESULT mayEnd = TRUE;
    Do([&] { mayEnd = SendMessageW(Window(), WM_QUERYENDSESSION, 0, 0); });
    LetGo();
    static_cast<void>(Run(HeldBuild(1, 2)));
    EXPECT_EQ(mayEnd, FALSE);
}

TEST_F(BuildDialog, ABuildThatEndsDuringTheQuestionTakesTheQuestionAway)
{
    WaitForText(IDC_BUILD_STEP, L"Copying Zolt & Sons");
    Click(IDCANCEL);
    m_script.Add(L"wait for the question",
                 [] { return Until(FindMessageBox().has_value(), L"there is no box"); });
    LetGo();
    EXPECT_EQ(Run(HeldBuild(1, 2)).error.code, 0u);
}

TEST_F(BuildDialog, NothingIsCutOff)
{
    WaitForText(IDC_BUILD_STEP, L"Copying Zolt & Sons");
    Do([&] {
        RECT client = {};
        GetClientRect(Window(), &client);
        for (HWND child : ChildWindows(Window())) {
            const RECT place = CControl(child).GetRectangle();
            EXPECT_TRUE(place.left >= 0 && place.top >= 0 && place.right <= client.right &&
                        place.bottom <= client.bottom)
                << Utf8(DescribeWindow(child));
        }
    });
    LetGo();
    static_cast<void>(Run(HeldBuild(1, 2)));
}

} // namespace
