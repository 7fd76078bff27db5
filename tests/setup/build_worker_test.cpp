#include "setup/build_worker.h"
#include "setup/run_record.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>

namespace {

// A window without a picture that counts what the worker posts.
class CountingWindow
{
public:
    CountingWindow()
        : m_hWindow(CreateWindowW(L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr))
    {
    }
    ~CountingWindow() { DestroyWindow(m_hWindow); }
    CountingWindow(const CountingWindow&) = delete;
    CountingWindow& operator=(const CountingWindow&) = delete;

    HWND Get() const { return m_hWindow; }

    // Reads messages until the build has ended; calls `look` at each piece of news.
    template <class Look>
    void ReadUntilDone(Look look)
    {
        MSG message = {};
        while (GetMessageW(&message, m_hWindow, 0, 0) > 0 && message.message != BUILD_MESSAGE_DONE) {
            if (message.message == BUILD_MESSAGE_PROGRESS) {
                ++progressMessages;
                look();
            }
        }
    }

    int progressMessages = 0;

private:
    HWND m_hWindow;
};

BuildResult Done()
{
    return {};
}

TEST(BuildWorker, ABuildThatReportsAsFastAsItCanPostsAtMostTwentyMessagesASecond)
{
    CountingWindow window;
    CBuildWorker worker;
    const ULONGLONG start = GetTickCount64();
    std::atomic<int> looks = 0;
    worker.Start(window.Get(), [&looks](IBuildProgress& progress) {
        const ULONGLONG end = GetTickCount64() + 300;
        // On a busy computer the window comes to look later.
        for (std::uint64_t bytes = 0; GetTickCount64() < end || looks < 2; ++bytes) {
            progress.OnProgress(bytes, bytes + 1, L"file");
        }
        return Done();
    });
    window.ReadUntilDone([&] {
        static_cast<void>(worker.GetSnapshot());
        ++looks;
    });
    const ULONGLONG elapsed = GetTickCount64() - start;
    EXPECT_LE(window.progressMessages, static_cast<int>(elapsed / 50) + 1);
    EXPECT_GE(window.progressMessages, 2);
}

TEST(BuildWorker, WhileNobodyLooksOneMessageWaits)
{
    CountingWindow window;
    CBuildWorker worker;
    worker.Start(window.Get(), [](IBuildProgress& progress) {
        for (int step = 0; step < 1000; ++step) {
            progress.OnStep(L"step");
        }
        return Done();
    });
    window.ReadUntilDone([] {});
    EXPECT_EQ(window.progressMessages, 1);
}

TEST(BuildWorker, TheSnapshotHoldsTheLastNews)
{
    CountingWindow window;
    CBuildWorker worker;
    worker.Start(window.Get(), [](IBuildProgress& progress) {
        progress.OnStep(L"first");
        progress.OnStep(L"second");
        progress.OnProgress(3, 7, L"C:\\file");
        return Done();
    });
    window.ReadUntilDone([] {});
    const BuildSnapshot snapshot = worker.GetSnapshot();
    EXPECT_EQ(snapshot.strStep, CString(L"second"));
    EXPECT_EQ(snapshot.strFile, CString(L"C:\\file"));
    EXPECT_EQ(snapshot.bytesDone, 3u);
    EXPECT_EQ(snapshot.bytesTotal, 7u);
    EXPECT_EQ(snapshot.nStep, 2);
}

TEST(BuildWorker, AnExceptionBecomesAFailedResult)
{
    CountingWindow window;
    CBuildWorker worker;
    worker.Start(window.Get(),
                 [](IBuildProgress&) -> BuildResult { throw std::runtime_error("broken plan"); });
    window.ReadUntilDone([] {});
    const BuildResult result = worker.GetResult();
    EXPECT_EQ(result.error.code, 1603u);
    EXPECT_NE(result.error.message.Find(L"broken plan"), -1) << Utf8(result.error.message);
}

TEST(BuildWorker, ItsEndCancelsTheBuildAndWaitsForIt)
{
    bool cancelled = false;
    {
        CountingWindow window;
        CBuildWorker worker;
        worker.Start(window.Get(), [&cancelled](IBuildProgress& progress) {
            while (progress.OnProgress(0, 0, L"")) {
                SwitchToThread();
            }
            cancelled = true;
            return Done();
        });
    }
    EXPECT_TRUE(cancelled);
}

std::atomic<int> g_refusals = 0; // that are still to come
std::atomic<int> g_doneTries = 0;

// As a system whose queues are full: Windows refuses the 10,000th message that waits.
BOOL WINAPI PostWhenThereIsRoom(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    g_doneTries += message == BUILD_MESSAGE_DONE;
    return g_refusals > 0 && g_refusals-- > 0 ? FALSE : PostMessageW(window, message, wParam, lParam);
}

// Posted only once, it never came, and the window stayed up for ever.
TEST(BuildWorker, TheEndOfTheBuildComesThroughAFullQueue)
{
    CountingWindow window;
    g_refusals = 3;
    g_doneTries = 0;
    CBuildWorker worker(PostWhenThereIsRoom);
    worker.Start(window.Get(), [](IBuildProgress&) { return Done(); });
    static_cast<void>(worker.GetResult()); // its thread has done all it will do
    MSG message = {};
    EXPECT_TRUE(PeekMessageW(&message, window.Get(), BUILD_MESSAGE_DONE, BUILD_MESSAGE_DONE, PM_REMOVE));
    EXPECT_EQ(g_doneTries, 4);
}

TEST(BuildWorker, NewsThatFoundAFullQueueIsFollowedByTheNext)
{
    CountingWindow window;
    g_refusals = 1;
    CBuildWorker worker(PostWhenThereIsRoom);
    worker.Start(window.Get(), [](IBuildProgress& progress) {
        progress.OnStep(L"lost");
        progress.OnStep(L"reported");
        return Done();
    });
    window.ReadUntilDone([] {});
    EXPECT_EQ(window.progressMessages, 1);
}

// Who guards the run ends it when there is no sign of life, and a slow copy isn't to be ended.
TEST(BuildWorker, EachStepAndEachPieceOfProgressIsASignOfLife)
{
    RunRecord record = {};
    UseRunRecord(&record);
    CountingWindow window;
    CBuildWorker worker;
    worker.Start(window.Get(), [](IBuildProgress& progress) {
        progress.OnStep(L"Copying");
        progress.OnProgress(1, 3, L"file");
        progress.OnProgress(2, 3, L"file");
        return Done();
    });
    window.ReadUntilDone([&] { static_cast<void>(worker.GetSnapshot()); });
    static_cast<void>(worker.GetResult());
    UseRunRecord(nullptr);
    EXPECT_EQ(record.signsOfLife, 3);
}

} // namespace
