#include "tests/support/page_test.h"

#include "window/gdi.h"

#include <msi.h>

namespace {

void CloseNextBox(CScript& script)
{
    script.Add(L"close the box", [] {
        const std::optional<MessageBoxView> box = FindMessageBox();
        return box ? AnswerMessageBox(*box, IDOK) : StepOutcome::NotYet(L"no box is up");
    });
    script.Start();
}

StepOutcome PressOn(std::initializer_list<int> controls, int button)
{
    HWND window = FindWindowWithControls(controls);
    return window ? CControl(window, button).Click() : StepOutcome::NotYet(L"no such window is up");
}

// By the caption's X: not every page shows its Cancel button.
StepOutcome CloseOn(std::initializer_list<int> controls)
{
    HWND window = FindWindowWithControls(controls);
    return Until(window && PostMessageW(window, WM_CLOSE, 0, 0), L"no such window is up");
}

void AskAndLeaveNextPage(CScript& script)
{
    script.Add(L"cancel", [] { return CloseOn({IDC_NEXT, IDC_CANCEL, IDC_BACK}); });
    script.Add(L"stay", [] { return PressOn({IDC_CANCEL_QUESTION}, IDNO); });
    script.Add(L"leave", [] { return PressOn({IDC_NEXT, IDC_CANCEL, IDC_BACK}, IDC_BACK); });
    script.Start();
}

} // namespace

ExpectedBox ExpectedBox::Titled(const CString& words) const
{
    ExpectedBox box = *this;
    box.title = words;
    return box;
}

ExpectedBox ExpectedBox::WithoutOwner() const
{
    ExpectedBox box = *this;
    box.owned = false;
    return box;
}

ExpectedBox ErrorBox(const CString& text)
{
    return {text, MB_OK, MB_ICONERROR, std::nullopt, true};
}

ExpectedBox WarningBox(const CString& text)
{
    return {text, MB_OK, MB_ICONWARNING, std::nullopt, true};
}

ExpectedBox QuestionBox(const CString& text)
{
    return {text, MB_YESNO, MB_ICONQUESTION, std::nullopt, true};
}

ExpectedBox YesNoBox(const CString& text)
{
    return {text, MB_YESNO, 0, std::nullopt, true};
}

ExpectedBox PlainBox(const CString& text)
{
    return {text, MB_OK, 0, std::nullopt, true};
}

PageTest::PageTest()
{
    host.language.wizTextPath = BuiltLanguageFolder();
    host.manager.resourceFolder = BuiltLanguageFolder();
    host.manager.m_strResourceFolder = host.Keep(BuiltLanguageFolder());
    host.manager.sourceResourceFolder = BuiltLanguageFolder();
    context.pSetupManager = &host.manager;
    script.SetFailureHandler(StartClosingWindows);
    WarmUp();
    m_before = ReadProcessState();
}

// Icons of boxes, shared cursors, fonts and the like are made once for a process and kept. They must be there before
// anything is counted.
void PageTest::WarmUp()
{
    static bool done = false;
    if (done)
        return;
    done = true;
    for (const UINT icon : {MB_ICONERROR, MB_ICONQUESTION, MB_ICONWARNING, MB_ICONINFORMATION}) {
        CScript closing;
        CloseNextBox(closing);
        MessageBoxW(nullptr, CString(L'w', 40) + L" \x00E4\n" + CString(L'w', 400), L"Title", MB_OK | icon);
    }
    host.manager.m_strLinkTarget1 = L"guide.pdf"; // links have a cursor of their own
    for (PageFunction page : {BeginDeploymentDialog, ProductContactDialog, DeploymentCompleteDialog}) {
        CScript leaving;
        AskAndLeaveNextPage(leaving);
        PageContext copy = context;
        (void)page(&copy);
    }
    {
        PageContext copy = context;
        CTabHost tabs;
        tabs.Open(OnlineResourcesPage, copy);
        for (const UINT icon : {MB_ICONERROR, MB_ICONWARNING}) {
            CScript closing;
            CloseNextBox(closing);
            MessageBoxW(tabs.GetWindow(), L"w", L"Title", MB_OK | icon);
        }
    }
    HWND bar = CreateWindowW(L"ScrollBar", nullptr, 0, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
    const CWindowDC screen(nullptr);
    DefWindowProcW(bar, WM_CTLCOLORSCROLLBAR, reinterpret_cast<WPARAM>(screen.get()),
                   reinterpret_cast<LPARAM>(bar));
    DestroyWindow(bar);
    host.manager.m_strLinkTarget1 = nullptr;
    host.log.Clear();
    host.ui.saved = false;
    host.ui.stored.clear();
}

PageTest::~PageTest() = default;

void PageTest::TearDown()
{
    EXPECT_EQ(DescribeChange(m_before, ReadProcessState()), CString());
    EXPECT_EQ(MsiCloseAllHandles(), 0u) << "installer handles were left open";
}

void PageTest::CountFromHere()
{
    m_before = ReadProcessState();
}

// ---- steps

void PageTest::Step(const wchar_t* name, CScript::Step step)
{
    script.Add(name, std::move(step));
}

void PageTest::AddStep(const CString& name, CScript::Step step)
{
    script.Add(name, [this, step = std::move(step)] {
        const StepOutcome clear = ExpectNoMessageBox();
        if (clear.IsFailed())
            return clear;
        const StepOutcome found = FindPage();
        return found.IsDone() ? step() : found;
    });
}

StepOutcome PageTest::FindPage()
{
    if (!IsWindow(m_page))
        m_page = FindWindowWithControls({IDC_NEXT, IDC_CANCEL, IDC_BACK});
    return Until(m_page != nullptr, L"no page is up");
}

void PageTest::Press(int button)
{
    AddStep(L"press " + NumberText(button), [this, button] { return Control(button).Click(); });
}

void PageTest::Type(int edit, const CString& text)
{
    AddStep(L"type \"" + text + L"\" into " + NumberText(edit),
            [this, edit, text] { return Control(edit).SetText(text); });
}

void PageTest::SelectLine(int list, const CString& line)
{
    AddStep(L"select \"" + line + L"\" in " + NumberText(list),
            [this, list, line] { return Control(list).Select(line); });
}

void PageTest::SelectEntry(int list, int index)
{
    AddStep(L"select line " + NumberText(index) + L" in " + NumberText(list),
            [this, list, index] { return Control(list).Select(index); });
}

void PageTest::SetChecked(int box, bool checked)
{
    AddStep((checked ? L"check " : L"uncheck ") + NumberText(box),
            [this, box, checked] { return Control(box).SetChecked(checked); });
    Await(L"the check mark did not change",
          [this, box, checked] { return Control(box).IsChecked() == checked; });
}

void PageTest::FocusOn(int control)
{
    AddStep(L"focus " + NumberText(control), [this, control] { return Control(control).Focus(); });
}

void PageTest::Key(WORD virtualKey, KeyModifier modifier)
{
    AddStep(L"press key " + NumberText(virtualKey),
            [virtualKey, modifier] { return PressKey(virtualKey, modifier); });
}

void PageTest::Look(std::function<void()> look)
{
    AddStep(L"look", [look = std::move(look)] {
        look();
        return StepOutcome::Done();
    });
}

void PageTest::Await(const wchar_t* what, std::function<bool()> condition)
{
    AddStep(L"wait", [what, condition = std::move(condition)] { return Until(condition(), what); });
}

void PageTest::AwaitFocus()
{
    Await(L"no window of the thread has the focus", [] { return GetFocus() != nullptr; });
}

void PageTest::Answer(const ExpectedBox& box, int button, std::function<void()> look)
{
    script.Add(L"answer the box \"" + box.text + L"\" with " + NumberText(button),
               [this, box, button, look = std::move(look)] { return MeetBox(box, button, look); });
}

void PageTest::AnswerCancelQuestion(int button, std::function<void(HWND)> look)
{
    script.Add(L"answer whether to leave the setup", [button, look = std::move(look)] {
        HWND question = FindWindowWithControls({IDC_CANCEL_QUESTION, IDYES, IDNO});
        if (!question)
            return StepOutcome::NotYet(L"the cancel question isn't up");
        if (look)
            look(question);
        return CControl(question, button).Click();
    });
}

CString PageTest::ExpectedBoxText(const ExpectedBox& expected) const
{
    MessageBoxView view;
    view.title = expected.title.value_or(host.manager.m_strProductName);
    view.text = expected.text;
    view.buttons = expected.buttons;
    view.icon = expected.icon;
    return view.Describe() + (expected.owned ? L" owned by the page" : L" without owner");
}

// The system gives a child's box to the top-level window around the child.
bool PageTest::BelongsToPage(HWND owner) const
{
    return owner == GetAncestor(m_page, GA_ROOT);
}

StepOutcome PageTest::MeetBox(const ExpectedBox& expected, int button, const std::function<void()>& look)
{
    const std::optional<MessageBoxView> box = FindMessageBox();
    if (!box)
        return StepOutcome::NotYet(L"no message box is up");
    const wchar_t* owner = !box->owner                 ? L" without owner"
                           : BelongsToPage(box->owner) ? L" owned by the page"
                                                       : L" owned by another window";
    const CString came = box->Describe() + owner;
    const CString wanted = ExpectedBoxText(expected);
    if (!(came == wanted))
        return StepOutcome::Failed(L"expected the box " + wanted + L"\nbut this one came: " + came);
    if (look)
        look();
    return AnswerMessageBox(*box, button);
}

// ---- playing

// A box that nobody expects, or a page that stays, would otherwise hold the test program for ever.
void PageTest::StartScript()
{
    script.SetEnding(L"the page's end", [] {
        const StepOutcome clear = ExpectNoMessageBox();
        return clear.IsFailed() ? clear : StepOutcome::NotYet(L"the page is still up");
    });
    script.Start();
}

int PageTest::Show(PageFunction page)
{
    m_page = nullptr;
    StartScript();
    const int result = page(&context);
    ReportFailure();
    return result;
}

UINT PageTest::ShowTab(TabFunction page)
{
    UINT asked = 0;
    {
        CTabHost tabs;
        m_page = tabs.Open(page, context);
        if (m_page) {
            asked = RunTab(tabs);
        } else {
            ADD_FAILURE() << "the page was not made";
        }
    }
    m_page = nullptr;
    return asked;
}

UINT PageTest::RunTab(CTabHost& tabs)
{
    StartScript();
    const UINT asked = tabs.Run();
    ReportFailure();
    return asked;
}

void PageTest::Play()
{
    script.Add(L"leave the loop", [] {
        PostQuitMessage(0);
        return StepOutcome::Done();
    });
    script.Start();
    for (MSG message; GetMessageW(&message, nullptr, 0, 0) > 0;) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
        if (script.HasFailed() && TopLevelWindows().empty())
            break;
    }
    ReportFailure();
}

void PageTest::ReportFailure()
{
    StopClosingWindows();
    script.Stop();
    if (script.HasFailed())
        ADD_FAILURE() << Utf8(script.GetFailure());
    else if (!script.IsFinished())
        ADD_FAILURE() << "The page closed before the step \"" << Utf8(script.GetCurrentStep()) << "\"";
}
