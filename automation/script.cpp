#include "automation/script.h"

#include "automation/message_box.h"
#include "automation/window_finder.h"

#include <cstddef>
#include <utility>

namespace {

constexpr UINT WM_TRY = WM_APP + 1;
constexpr UINT_PTR TRY_TIMER = 1;
constexpr wchar_t className[] = L"RolloutScript";

struct NamedStep
{
    CString name;
    CScript::Step run;
    DWORD deadline = 0; // 0: the script's
};

} // namespace

class CScript::Player
{
public:
    Player()
    {
        WNDCLASSW description = {};
        description.lpfnWndProc = WindowProcedure;
        description.hInstance = GetModuleHandleW(nullptr);
        description.lpszClassName = className;
        RegisterClassW(&description); // the second script finds it registered
        m_window = CreateWindowW(className, nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                 description.hInstance, nullptr);
        SetWindowLongPtrW(m_window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    }
    ~Player()
    {
        SetWindowLongPtrW(m_window, GWLP_USERDATA, 0);
        DestroyWindow(m_window);
    }
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    void Start()
    {
        m_since = GetTickCount64();
        TryAtOnce();
    }

    void Stop()
    {
        ending = {};
        KillTimer(m_window, TRY_TIMER);
    }

    std::deque<NamedStep> steps;
    std::ptrdiff_t added = 0; // steps that the running one has put in front
    Step watcher;
    NamedStep ending;
    std::function<void()> failureHandler;
    DWORD deadline = DEFAULT_DEADLINE;
    CString failure;

private:
    static LRESULT CALLBACK WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        Player* player = reinterpret_cast<Player*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (!player || (message != WM_TRY && message != WM_TIMER))
            return DefWindowProcW(window, message, wParam, lParam);
        player->Try();
        return 0;
    }

    void TryAtOnce() { PostMessageW(m_window, WM_TRY, 0, 0); }
    void TrySoon() { SetTimer(m_window, TRY_TIMER, USER_TIMER_MINIMUM, nullptr); }

    void Try()
    {
        KillTimer(m_window, TRY_TIMER);
        if (!failure.IsEmpty())
            return;
        if (steps.empty())
            return TryEnding();
        const StepOutcome watched = Run(watcher);
        if (watched.IsFailed())
            return Fail(watched.GetReason());
        if (watched.IsNotYet()) {
            m_since = GetTickCount64();
            return TrySoon();
        }
        TryStep();
    }

    void TryStep()
    {
        // Taken off before it runs: should it open a box, the loop of that box goes on with the next step.
        NamedStep step = std::move(steps.front());
        steps.pop_front();
        const ULONGLONG since = m_since;
        m_since = GetTickCount64();
        added = 0;
        TrySoon();
        const std::weak_ptr<int> alive = m_alive;
        const StepOutcome outcome = Run(step.run);
        if (alive.expired())
            return;
        if (outcome.IsDone())
            return TryAtOnce();
        steps.push_front(std::move(step));
        m_since = since;
        TryAgain(outcome);
    }

    void TryEnding()
    {
        if (!ending.run)
            return;
        const StepOutcome outcome = Run(ending.run);
        if (!outcome.IsDone())
            TryAgain(outcome);
    }

    void TryAgain(const StepOutcome& outcome)
    {
        if (outcome.IsFailed())
            Fail(outcome.GetReason());
        else if (GetTickCount64() - m_since > Limit())
            Fail(L"waited " + NumberText(Limit() / 1000) + L" seconds, but " + outcome.GetReason());
        else
            TrySoon();
    }

    // Of the step in front.
    DWORD Limit() const
    {
        return steps.empty() || steps.front().deadline == 0 ? deadline : steps.front().deadline;
    }

    // The boundary of the window procedure: nothing may be thrown through it.
    static StepOutcome Run(const Step& step) noexcept
    {
        try {
            return step ? step() : StepOutcome::Done();
        } catch (...) {
            return StepOutcome::Failed(L"the step threw an exception");
        }
    }

    void Fail(const CString& reason)
    {
        const CString name = steps.empty() ? ending.name : steps.front().name;
        failure = L"Step \"" + name + L"\" failed: " + reason + L"\nWindows: " + DescribeThreadWindows();
        if (failureHandler)
            failureHandler();
    }

    HWND m_window = nullptr;
    ULONGLONG m_since = 0; // when the step in front was tried for the first time
    std::shared_ptr<int> m_alive = std::make_shared<int>(0);
};

CScript::CScript() : m_player(std::make_unique<Player>())
{
}

CScript::~CScript() = default;

void CScript::Add(const CString& name, Step step, DWORD milliseconds)
{
    m_player->steps.push_back({name, std::move(step), milliseconds});
}

void CScript::AddNext(const CString& name, Step step)
{
    m_player->steps.insert(m_player->steps.begin() + m_player->added++, {name, std::move(step), 0});
}

void CScript::SetWatcher(Step watcher)
{
    m_player->watcher = std::move(watcher);
}

void CScript::SetFailureHandler(std::function<void()> handler)
{
    m_player->failureHandler = std::move(handler);
}

void CScript::SetDeadline(DWORD milliseconds)
{
    m_player->deadline = milliseconds;
}

void CScript::SetEnding(const CString& name, Step ending)
{
    m_player->ending = {name, std::move(ending), 0};
}

void CScript::Start()
{
    m_player->Start();
}

void CScript::Stop()
{
    m_player->Stop();
}

bool CScript::IsFinished() const
{
    return m_player->steps.empty() && m_player->failure.IsEmpty();
}

bool CScript::HasFailed() const
{
    return !m_player->failure.IsEmpty();
}

const CString& CScript::GetFailure() const
{
    return m_player->failure;
}

CString CScript::GetCurrentStep() const
{
    return m_player->steps.empty() ? CString() : m_player->steps.front().name;
}

StepOutcome Until(bool condition, const wchar_t* reason)
{
    return condition ? StepOutcome::Done() : StepOutcome::NotYet(reason);
}

namespace {

UINT_PTR g_closingTimer = 0;

void CALLBACK CloseOneWindow(HWND, UINT, UINT_PTR, DWORD)
{
    CloseFrontWindow();
}

} // namespace

void StartClosingWindows()
{
    g_closingTimer = SetTimer(nullptr, 0, USER_TIMER_MINIMUM, CloseOneWindow);
}

void StopClosingWindows()
{
    if (g_closingTimer)
        KillTimer(nullptr, std::exchange(g_closingTimer, 0));
}

bool CloseFrontWindow()
{
    const std::vector<HWND> windows = TopLevelWindows();
    if (windows.empty())
        return false;
    if (WindowClass(windows.front()) == CString(L"#32768")) {
        EndMenu();
        ShowWindow(windows.front(), SW_HIDE); // the menu's loop takes the window away only when it runs again
    } else if (ReadMessageBox(windows.front()))
        EndDialog(windows.front(), IDCANCEL);
    else
        DestroyWindow(windows.front());
    return true;
}
