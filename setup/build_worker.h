// A build on a thread of its own, seen from the thread with the window: a snapshot of how far it is, and messages that
// say when to look. At most one of them waits in the queue and at most twenty come in a second, however fast the build
// runs; who wants the last figures looks once more by itself.
#pragma once

#include "base/string.h"
#include "host/setup_host.h"

#include <windows.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <thread>

// Posted to the window, both parameters 0.
constexpr UINT BUILD_MESSAGE_PROGRESS = WM_APP + 1; // take a snapshot
constexpr UINT BUILD_MESSAGE_DONE = WM_APP + 2;     // call GetResult

using BuildFunction = std::function<BuildResult(IBuildProgress&)>;

struct BuildSnapshot
{
    CString strStep;
    CString strFile;
    std::uint64_t bytesDone = 0;
    std::uint64_t bytesTotal = 0;
    int nStep = 0; // counts the steps, so that one of the same words is reported again
};

class CBuildWorker final : private IBuildProgress
{
public:
    using PostFunction = BOOL(WINAPI*)(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    explicit CBuildWorker(PostFunction post = PostMessageW) : m_post(post) {}
    // Cancels and waits for the build's end.
    ~CBuildWorker();
    CBuildWorker(const CBuildWorker&) = delete;
    CBuildWorker& operator=(const CBuildWorker&) = delete;

    // Once an object. What the build throws becomes a result with code 1603.
    void Start(HWND window, BuildFunction build);
    // The build undoes itself; its end comes by BUILD_MESSAGE_DONE as always.
    void Cancel() noexcept { m_bCancelled = true; }
    // Lets the next progress message be posted.
    [[nodiscard]] BuildSnapshot GetSnapshot();
    // Waits for the thread, which has nothing left to do.
    [[nodiscard]] BuildResult GetResult();

private:
    void OnStep(const CString& sentence) override;
    bool OnProgress(std::uint64_t bytesDone, std::uint64_t bytesTotal, const CString& file) override;
    void Run() noexcept;
    void Notify(bool atOnce);

    PostFunction m_post; // may refuse while the queue is full
    HWND m_hWindow = nullptr;
    BuildFunction m_build;
    std::thread m_thread;
    std::atomic<bool> m_bCancelled = false;
    std::atomic<bool> m_bNotified = false; // a progress message waits
    ULONGLONG m_notifiedAt = 0;            // tick count; the worker's own
    std::mutex m_mutex;                    // guards the snapshot
    BuildSnapshot m_snapshot;
    BuildResult m_result; // the worker's until its thread has ended
};
