#include "tests/window/fixture.h"
#include "window/message_wait.h"

#include "base/handle.h"

#include <stdexcept>

namespace {

class MessageWaitTest : public WindowTest
{
protected:
    // Answers one message of the tests' own.
    void OnMessage(std::function<void()> act)
    {
        dialog.answer = [act = std::move(act)](UINT message, WPARAM, LPARAM, BOOL& handled) -> LRESULT {
            if (message == WM_APP) {
                act();
            }
            handled = message == WM_APP;
            return 0;
        };
        ASSERT_NE(dialog.Create(nullptr), nullptr);
        PostMessageW(dialog, WM_APP, 0, 0);
    }

    CTestDialog dialog;
    const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    ~MessageWaitTest() override { CloseHandle(event); }
};

TEST_F(MessageWaitTest, MessagesAreHandledUntilTheObjectIsSignaled)
{
    OnMessage([this] { SetEvent(event); });
    EXPECT_EQ(WaitWithMessages(event), WaitEnd::Signaled);
}

// The loop outside would otherwise wait for ever.
TEST_F(MessageWaitTest, AQuitMessageEndsTheWaitAndTheLoopOutside)
{
    WaitEnd end = WaitEnd::Signaled;
    OnMessage([&] {
        PostQuitMessage(1602);
        end = WaitWithMessages(event);
    });
    CMessageLoop loop;
    EXPECT_EQ(loop.Run(), 1602);
    EXPECT_EQ(end, WaitEnd::Quit);
}

TEST_F(MessageWaitTest, WhatAHandlerThrowsComesOut)
{
    OnMessage([] { throw std::runtime_error("handler"); });
    EXPECT_THROW((void)WaitWithMessages(event), std::runtime_error);
}

TEST_F(MessageWaitTest, AnObjectThatCannotBeWaitedForFails)
{
    EXPECT_EQ(WaitWithMessages(nullptr), WaitEnd::Failed);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_HANDLE));
}

} // namespace
