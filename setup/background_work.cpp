#include "setup/background_work.h"

#include "base/handle.h"
#include "setup/run_record.h"
#include "window/wait_cursor.h"

#include <atomic>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>

namespace {

constexpr DWORD MOMENT_MILLISECONDS = 1000; // a window for less would only flicker

// A window may be put in front of it.
class CBackgroundWork final : private IBuildProgress
{
public:
    explicit CBackgroundWork(const std::function<void(IBuildProgress&)>& work)
        : m_done(CreateEventW(nullptr, TRUE, FALSE, nullptr)), m_thread([this, &work] { Run(work); })
    {
    }
    CBackgroundWork(const CBackgroundWork&) = delete;
    CBackgroundWork& operator=(const CBackgroundWork&) = delete;
    ~CBackgroundWork()
    {
        m_cancelled = true;
        m_thread.join();
    }

    // Answers what others send to this thread's windows meanwhile. True when the work is done.
    bool IsDoneWithin(DWORD milliseconds) const
    {
        const ULONGLONG end = GetTickCount64() + milliseconds;
        const HANDLE done = m_done.get();
        for (ULONGLONG now = GetTickCount64(); now < end; now = GetTickCount64()) {
            const DWORD waited =
                MsgWaitForMultipleObjects(1, &done, FALSE, static_cast<DWORD>(end - now), QS_SENDMESSAGE);
            if (waited != WAIT_OBJECT_0 + 1) {
                return waited == WAIT_OBJECT_0;
            }
            MSG message;
            PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
        }
        return WaitForSingleObject(done, 0) == WAIT_OBJECT_0;
    }

    // Behind the end.
    void ThrowFailure() const
    {
        if (m_failure) {
            std::rethrow_exception(m_failure);
        }
    }

    // Reports to the window until the work is done.
    void ReportTo(IBuildProgress& window)
    {
        {
            const std::lock_guard lock(m_mutex);
            m_window = &window;
            window.OnStep(m_step);
        }
        WaitForSingleObject(m_done.get(), INFINITE);
        const std::lock_guard lock(m_mutex);
        m_window = nullptr;
    }

private:
    void Run(const std::function<void(IBuildProgress&)>& work) noexcept
    {
        try {
            work(*this);
        } catch (...) {
            m_failure = std::current_exception();
        }
        SetEvent(m_done.get());
    }

    void OnStep(const CString& sentence) override
    {
        NoteSignOfLife();
        const std::lock_guard lock(m_mutex);
        m_step = sentence;
        if (m_window) {
            m_window->OnStep(sentence);
        }
    }

    bool OnProgress(std::uint64_t done, std::uint64_t total, const CString& file) override
    {
        NoteSignOfLife();
        const std::lock_guard lock(m_mutex);
        return !m_cancelled && (!m_window || m_window->OnProgress(done, total, file));
    }

    CKernelOwner m_done;
    std::atomic<bool> m_cancelled = false;
    std::exception_ptr m_failure; // the thread's until it is done
    std::mutex m_mutex;           // guards what follows
    IBuildProgress* m_window = nullptr;
    CString m_step;
    std::thread m_thread; // last: it uses the rest
};

} // namespace

void WaitForWork(const CString& name, const WorkTexts& texts, CRunLog& log,
                 const std::function<void(IBuildProgress&)>& work)
{
    const CWaitCursor waitCursor;
    CBackgroundWork background(work);
    if (!background.IsDoneWithin(MOMENT_MILLISECONDS)) {
        CBuildDialog dialog(
            name,
            [&background](IBuildProgress& window) {
                background.ReportTo(window);
                return BuildResult();
            },
            texts);
        const BuildResult shown = dialog.Run();
        if (shown.error) { // no window: it goes on without one
            log.Line(L"Warning: " + shown.error.message);
        }
        while (!background.IsDoneWithin(MOMENT_MILLISECONDS)) {
        }
    }
    background.ThrowFailure();
}
