// The fixture of page tests: calls an export of the real page library on the test's own thread and plays a script of
// steps against the real window.
//
//     Type(IDC_NAME, L"a;b");
//     Press(IDC_NEXT);
//     Answer(WarningBox(ResourceText(IDS_NAME_INVALID)), IDOK);
//     Look([&] { EXPECT_FALSE(Control(IDC_NEXT).IsEnabled()); });
//     Press(IDC_BACK);
//     EXPECT_EQ(Show(BeginDeploymentDialog), NAVIGATION_BACK);
//
// Steps are noted first and played while the export runs. Every step waits until it can be done and fails after a
// deadline, with the windows that were there. A message box that comes up where no step answers one fails the test with
// its text. After each test no window, GDI object, menu, icon, installer handle or library may be left over.
#pragma once

#include "automation/keyboard.h"
#include "automation/list_control.h"
#include "automation/message_box.h"
#include "automation/script.h"
#include "automation/window_finder.h"
#include "include/navigation.h"
#include "include/resource_ids.h"
#include "include/rollout_ui.h"
#include "tests/support/leftovers.h"
#include "tests/support/resource_strings.h"
#include "tests/support/tab_host.h"
#include "tests/support/test_folder.h"
#include "tests/support/test_host.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>

// The message box that a step expects. Without further words it is owned by the page and titled with the product.
struct ExpectedBox
{
    CString text;
    UINT buttons = MB_OK;
    UINT icon = 0;
    std::optional<CString> title;
    bool owned = true;

    ExpectedBox Titled(const CString& words) const;
    ExpectedBox WithoutOwner() const;
};

ExpectedBox ErrorBox(const CString& text);
ExpectedBox WarningBox(const CString& text);
ExpectedBox QuestionBox(const CString& text); // Yes and No, question icon
ExpectedBox YesNoBox(const CString& text);    // Yes and No, no icon
ExpectedBox PlainBox(const CString& text);    // OK, no icon

class PageTest : public testing::Test
{
protected:
    using PageFunction = int (*)(PageContext*);

    PageTest();
    ~PageTest() override;
    void TearDown() override;

    // ---- steps, in the order of their noting

    void Press(int button);
    void Type(int edit, const CString& text);
    void SelectLine(int list, const CString& line);
    // The line by its place.
    void SelectEntry(int list, int index);
    void SetChecked(int box, bool checked);
    void FocusOn(int control);
    void Key(WORD virtualKey, KeyModifier modifier = KeyModifier::None);
    // Runs the look once, with the page up and no box.
    void Look(std::function<void()> look);
    // Waits for the condition; `what` says what was missing when it fails.
    void Await(const wchar_t* what, std::function<bool()> condition);
    // Until a window of the thread has the focus, for a look at which. A box that closes hands it back by way of the display's
    // server, which may be a moment later than the page's own doings.
    void AwaitFocus();
    // Waits for the box, fails on another one, runs the look while it is up, presses the button.
    void Answer(const ExpectedBox& box, int button, std::function<void()> look = nullptr);
    // Waits for the question whether to leave the setup, runs the look with its window, presses IDYES or IDNO.
    void AnswerCancelQuestion(int button, std::function<void(HWND)> look = nullptr);
    // A step of any other make; it must deal with boxes itself.
    void Step(const wchar_t* name, CScript::Step step);

    // Plays the steps against the export and returns its result. Every step must have been played by then.
    int Show(PageFunction page);
    // The same for a tab page in a host of the test's; returns what the page asked it for, PAGE_MESSAGE_PREVIOUS_TAB or
    // PAGE_MESSAGE_NEXT_TAB, and takes the page away.
    UINT ShowTab(TabFunction page);
    // Plays the steps with a page that stands in its host already.
    UINT RunTab(CTabHost& tabs);
    // Plays the steps in a loop of the test's own; for windows that are already there. Ends when all are played.
    void Play();

    // Counts what is left over from here on; for a test that has made the system fill another cache of its own.
    void CountFromHere();

    // ---- looks

    HWND Page() const { return m_page; }
    CListControl Control(int id) const { return CListControl(m_page, id); }
    // The focus stands in that control of the page.
    bool HasFocus(int id) const { return Control(id).HasFocus(); }

    TestHost host;
    PageContext context; // refers to the host; the test may change it before Show
    CScript script;

    // The window that steps and looks mean; found by itself when an export runs.
    HWND m_page = nullptr;

private:
    void AddStep(const CString& name, CScript::Step step);
    StepOutcome FindPage();
    StepOutcome MeetBox(const ExpectedBox& expected, int button, const std::function<void()>& look);
    CString ExpectedBoxText(const ExpectedBox& expected) const;
    bool BelongsToPage(HWND owner) const;
    void StartScript();
    void ReportFailure();
    void WarmUp();

    ProcessState m_before;
};
