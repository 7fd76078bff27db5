// Requests from outside to end the run, while a page asks the same.
#include "setup/end_requests.h"
#include "tests/setup/stub_host.h"

#include <gtest/gtest.h>

namespace {

TEST(EndRequests, TheEndOfTheSessionWaitsWhileAPageAsksWhetherToCancel)
{
    StubHost host;
    const CEndRequests requests(host);
    ASSERT_TRUE(requests.IsWindow());
    EXPECT_EQ(SendMessageW(requests.m_hWnd, WM_QUERYENDSESSION, 0, 0), TRUE);
    host.cancelling = false;
    EXPECT_EQ(SendMessageW(requests.m_hWnd, WM_QUERYENDSESSION, 0, 0), FALSE);
    host.cancelling = true;
    EXPECT_EQ(SendMessageW(requests.m_hWnd, WM_QUERYENDSESSION, 0, 0), TRUE);
}

TEST(EndRequests, TheSystemAsksItsWindowToo)
{
    StubHost host;
    const CEndRequests requests(host);
    HWND found = nullptr; // message-only windows aren't enumerated, nor asked
    EnumWindows(
        [](HWND window, LPARAM parameter) {
            wchar_t name[32] = {};
            GetClassNameW(window, name, ARRAYSIZE(name));
            *reinterpret_cast<HWND*>(parameter) =
                CString(name) == L"RolloutEndRequests" ? window : *reinterpret_cast<HWND*>(parameter);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&found));
    EXPECT_EQ(found, requests.m_hWnd);
    EXPECT_FALSE(IsWindowVisible(requests.m_hWnd));
}

TEST(EndRequests, CtrlCDoesNothingWhileAPageAsksWhetherToCancel)
{
    StubHost host;
    EXPECT_FALSE(CEndRequests::OnConsoleEvent(CTRL_C_EVENT)) << "there is no host yet";
    {
        const CEndRequests requests(host);
        EXPECT_FALSE(CEndRequests::OnConsoleEvent(CTRL_C_EVENT));
        host.cancelling = false;
        EXPECT_TRUE(CEndRequests::OnConsoleEvent(CTRL_C_EVENT));
        EXPECT_TRUE(CEndRequests::OnConsoleEvent(CTRL_BREAK_EVENT));
        EXPECT_FALSE(CEndRequests::OnConsoleEvent(CTRL_CLOSE_EVENT));
    }
    EXPECT_FALSE(CEndRequests::OnConsoleEvent(CTRL_C_EVENT)) << "the host is gone";
}

} // namespace
