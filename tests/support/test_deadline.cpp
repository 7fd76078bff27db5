#include "tests/support/test_deadline.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>
#include <thread>

namespace {

constexpr int DEFAULT_SECONDS = 240;
constexpr int LONGEST_TEXT = 1024; // characters of a window's text that are printed

int SecondsOfEachTest()
{
    const char* words = std::getenv("ROLLOUT_TEST_SECONDS");
    return words ? std::atoi(words) : DEFAULT_SECONDS;
}

std::string Utf8Of(const wchar_t* text)
{
    char bytes[LONGEST_TEXT * 4] = "";
    WideCharToMultiByte(CP_UTF8, 0, text, -1, bytes, sizeof bytes, nullptr, nullptr);
    return bytes;
}

// Asks nothing of the window's thread, which may be the one that hangs.
void PrintWindow(HWND window, const char* indent)
{
    wchar_t className[LONGEST_TEXT] = L"";
    wchar_t text[LONGEST_TEXT] = L"";
    GetClassNameW(window, className, LONGEST_TEXT);
    InternalGetWindowText(window, text, LONGEST_TEXT);
    std::printf("%s%s %ld \"%s\"\n", indent, Utf8Of(className).c_str(),
                static_cast<long>(GetDlgCtrlID(window)), Utf8Of(text).c_str());
}

BOOL CALLBACK PrintChild(HWND window, LPARAM)
{
    wchar_t text[2] = L"";
    if (IsWindowVisible(window) && InternalGetWindowText(window, text, 2) > 0)
        PrintWindow(window, "        ");
    return TRUE;
}

BOOL CALLBACK PrintOwnWindow(HWND window, LPARAM)
{
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process != GetCurrentProcessId() || !IsWindowVisible(window))
        return TRUE;
    PrintWindow(window, "    ");
    EnumChildWindows(window, PrintChild, 0);
    return TRUE;
}

class TestDeadline final : public testing::EmptyTestEventListener
{
public:
    explicit TestDeadline(int seconds) : m_seconds(seconds), m_thread([this] { Watch(); }) {}
    ~TestDeadline() override
    {
        Change([this] { m_ended = true; });
        m_thread.join();
    }

private:
    void OnTestStart(const testing::TestInfo& info) override
    {
        Change([&] {
            m_test = std::string(info.test_suite_name()) + "." + info.name();
            m_due = std::chrono::steady_clock::now() + std::chrono::seconds(m_seconds);
        });
    }

    void OnTestEnd(const testing::TestInfo&) override
    {
        Change([this] { m_test.clear(); });
    }

    template <class Action>
    void Change(Action action)
    {
        const std::lock_guard lock(m_mutex);
        action();
        m_changed.notify_one();
    }

    void Watch()
    {
        std::unique_lock lock(m_mutex);
        while (!m_ended) {
            if (m_test.empty())
                m_changed.wait(lock);
            else if (std::chrono::steady_clock::now() >= m_due)
                EndProgram();
            else
                m_changed.wait_until(lock, m_due);
        }
    }

    [[noreturn]] void EndProgram() const
    {
        std::printf("%s still runs after %d seconds, with these windows:\n", m_test.c_str(), m_seconds);
        EnumWindows(PrintOwnWindow, 0);
        std::fflush(stdout);
        TerminateProcess(GetCurrentProcess(), TEST_OVERDUE);
        std::abort(); // not reached
    }

    const int m_seconds;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::string m_test; // empty between tests
    std::chrono::steady_clock::time_point m_due;
    bool m_ended = false;
    std::thread m_thread; // behind all that it reads
};

} // namespace

testing::TestEventListener* MakeTestDeadline()
{
    const int seconds = SecondsOfEachTest();
    return seconds > 0 ? new TestDeadline(seconds) : nullptr;
}
