// A host, a context and a script for pages of the tests' own.
#pragma once

#include "automation/message_box.h"
#include "automation/script.h"
#include "automation/window_finder.h"
#include "frame/page_frame.h"
#include "frame/wait_cursor.h"
#include "tests/frame/test_ids.h"
#include "tests/support/test_folder.h"
#include "tests/support/test_host.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

// What the test pages do, and what was done to them.
struct PageRecord
{
    bool accepts = true;
    bool letsGoBack = true;
    std::function<void(HWND page)> onInit;
    std::function<void(HWND page)> onStore;
    std::function<void(HWND page)> onWork;
    std::function<void(HDC dc)> onLabelColors;
    int stored = 0;
    int storedWithoutValidation = 0;
    int destroyed = 0;
    int askedWhenClosed = 0; // for a message, without a window
};
inline PageRecord g_record;

// To a test page: run g_record.onWork in a handler that isn't the navigation's; wParam: whether it may be left.
constexpr UINT TEST_MESSAGE_WORK = WM_APP;
constexpr UINT TEST_MESSAGE_ENABLE_LEAVING = WM_APP + 1;

template <class Shape>
class CRecordingPage : public Shape
{
public:
    using Shape::Shape;
    ~CRecordingPage() override { ++g_record.destroyed; }

    BEGIN_MSG_MAP(CRecordingPage)
    MESSAGE_HANDLER(TEST_MESSAGE_WORK, OnWork)
    MESSAGE_HANDLER(TEST_MESSAGE_ENABLE_LEAVING, OnEnableLeaving)
    MESSAGE_HANDLER(WM_CTLCOLORSTATIC, OnLabelColors)
    CHAIN_MSG_MAP(Shape)
    END_MSG_MAP()

    LRESULT OnInitDialog() override
    {
        this->InitFrame();
        if (g_record.onInit) {
            g_record.onInit(this->m_hWnd);
        }
        this->RunHooks(this->m_postInitHooks);
        return TRUE;
    }
    bool ValidateAndStore() override
    {
        ++g_record.stored;
        if (g_record.onStore) {
            g_record.onStore(this->m_hWnd);
        }
        return g_record.accepts;
    }
    bool StoreWithoutValidation() override
    {
        ++g_record.storedWithoutValidation;
        return g_record.letsGoBack;
    }
    BOOL PreTranslateMessage(MSG* message) override
    {
        g_record.askedWhenClosed += this->m_hWnd ? 0 : 1;
        return Shape::PreTranslateMessage(message);
    }

private:
    LRESULT OnWork(UINT, WPARAM, LPARAM, BOOL&)
    {
        g_record.onWork(this->m_hWnd);
        return 0;
    }
    LRESULT OnEnableLeaving(UINT, WPARAM enabled, LPARAM, BOOL&)
    {
        this->EnableLeaving(enabled != 0);
        return 0;
    }
    // Passes on to the frame for its brush.
    LRESULT OnLabelColors(UINT, WPARAM dc, LPARAM, BOOL& handled)
    {
        if (g_record.onLabelColors) {
            g_record.onLabelColors(reinterpret_cast<HDC>(dc));
        }
        handled = FALSE;
        return 0;
    }
};

class CTestWizardPage : public CRecordingPage<CWizardPageImpl<CTestWizardPage>>
{
public:
    enum
    {
        IDD = IDD_TEST_WIZARD
    };
    using CRecordingPage::CRecordingPage;
};

class CTestTabPage : public CRecordingPage<CTabPageImpl<CTestTabPage>>
{
public:
    enum
    {
        IDD = IDD_TEST_TAB
    };
    using CRecordingPage::CRecordingPage;
};

// A page without a handler of its own, on a template that lacks nearly all of the frame's controls.
class CBarePage : public CWizardPageImpl<CBarePage>
{
public:
    enum
    {
        IDD = IDD_TEST_BARE
    };
    using CWizardPageImpl::CWizardPageImpl;
    LRESULT OnInitDialog() override
    {
        InitFrame();
        if (g_record.onInit) {
            g_record.onInit(m_hWnd);
        }
        return TRUE;
    }
};

// Results that the hooks give, by their place, and the contexts that they were called with.
struct HookRecord
{
    int results[3] = {1, 1, 1};
    std::vector<int> calls;
    std::vector<PageContext> contexts;
};
inline HookRecord g_hooks;

template <int place>
int RecordHook(PageContext* context)
{
    g_hooks.calls.push_back(place);
    g_hooks.contexts.push_back(*context);
    return g_hooks.results[place];
}
inline const PageHookList THREE_HOOKS{RecordHook<0>, RecordHook<1>, RecordHook<2>};

inline void Command(HWND page, int id)
{
    ::SendMessageW(page, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED),
                   reinterpret_cast<LPARAM>(::GetDlgItem(page, id)));
}

inline void PostEnter(HWND page, int id)
{
    const HWND control = ::GetDlgItem(page, id);
    ::SetFocus(control);
    ::PostMessageW(control, WM_KEYDOWN, VK_RETURN, 0);
}

class FrameTest : public testing::Test
{
protected:
    FrameTest()
    {
        g_record = {};
        g_hooks = {};
        host.language.wizTextPath = ProgramFolder();
        host.manager.resourceFolder = ProgramFolder();
        host.manager.sourceResourceFolder = ProgramFolder();
        context.pSetupManager = &host.manager;
        script.SetFailureHandler([] {
            while (CloseFrontWindow()) {
            }
        });
    }

    void Step(const wchar_t* name, CScript::Step step) { script.Add(name, std::move(step)); }

    // Done when the page is up and no box hides it.
    void OnPage(std::function<void(HWND page)> act)
    {
        Step(L"act on the page", [act = std::move(act)] {
            const HWND page = FindWindowOfClass(L"#32770");
            if (!page || FindMessageBox() || !::IsWindowEnabled(page)) {
                return StepOutcome::NotYet(L"no page is up");
            }
            act(page);
            return StepOutcome::Done();
        });
    }
    void Press(int id)
    {
        OnPage([id](HWND page) {
            ::PostMessageW(page, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED),
                           reinterpret_cast<LPARAM>(::GetDlgItem(page, id)));
        });
    }
    void AnswerBox(int button, const wchar_t* text)
    {
        Step(L"answer a box", [button, text] {
            const std::optional<MessageBoxView> box = FindMessageBox();
            if (!box) {
                return StepOutcome::NotYet(L"no box is up");
            }
            EXPECT_EQ(box->text, CString(text));
            return AnswerMessageBox(*box, button);
        });
    }
    // The cancel question, by its own control.
    void AnswerQuestion(int button, const wchar_t* text)
    {
        Step(L"answer the question", [button, text] {
            const HWND question = FindWindowWithControls({IDC_CANCEL_QUESTION});
            if (!question) {
                return StepOutcome::NotYet(L"no question is up");
            }
            EXPECT_EQ(WindowText(::GetDlgItem(question, IDC_CANCEL_QUESTION)), CString(text));
            ::PostMessageW(::GetDlgItem(question, button), BM_CLICK, 0, 0);
            return StepOutcome::Done();
        });
    }

    template <class T>
    int Show()
    {
        script.Start();
        const int result = ShowWizardPage<T>(&context);
        EXPECT_FALSE(script.HasFailed()) << Utf8(script.GetFailure());
        EXPECT_TRUE(script.IsFinished()) << "left before: " << Utf8(script.GetCurrentStep());
        return result;
    }

    TestHost host;
    PageContext context;
    CScript script;
};
