#include "tests/window/fixture.h"
#include "tests/window/memory.h"

#include <functional>
#include <string>

namespace {

class MessageLoopTest : public WindowTest
{
};

struct CTestFilter final : CMessageFilter
{
    explicit CTestFilter(std::function<BOOL(MSG*)> call) : answer(std::move(call)) {}
    BOOL PreTranslateMessage(MSG* message) override { return answer(message); }
    std::function<BOOL(MSG*)> answer;
};

struct CTestIdleHandler final : CIdleHandler
{
    BOOL OnIdle() override
    {
        ++calls;
        PostQuitMessage(7);
        return FALSE;
    }
    int calls = 0;
};

void PostToThread(UINT message)
{
    PostThreadMessageW(GetCurrentThreadId(), message, 0, 0);
}

TEST_F(MessageLoopTest, RunReturnsTheCodeOfTheQuitMessage)
{
    CMessageLoop loop;
    PostQuitMessage(1278);
    EXPECT_EQ(loop.Run(), 1278);
}

TEST_F(MessageLoopTest, TheNewestFilterSeesAMessageFirst)
{
    CMessageLoop loop;
    std::string order;
    const auto note = [&order](char name) {
        return [&order, name](MSG* message) -> BOOL {
            if (message->message == WM_APP) {
                order += name;
            }
            return FALSE;
        };
    };
    CTestFilter older(note('o'));
    CTestFilter newer(note('n'));
    ASSERT_TRUE(loop.AddMessageFilter(&older));
    ASSERT_TRUE(loop.AddMessageFilter(&newer));
    PostToThread(WM_APP);
    PostQuitMessage(0);
    loop.Run();
    EXPECT_EQ(order, "no");
}

TEST_F(MessageLoopTest, AConsumedMessageReachesNeitherOlderFiltersNorItsWindow)
{
    CMessageLoop loop;
    int seen = 0;
    CTestFilter older([&seen](MSG* message) -> BOOL {
        seen += message->message == WM_APP;
        return FALSE;
    });
    CTestFilter newer([](MSG* message) -> BOOL { return message->message == WM_APP; });
    CTestDialog dialog;
    dialog.answer = [&seen](UINT message, WPARAM, LPARAM, BOOL& handled) -> LRESULT {
        seen += message == WM_APP;
        handled = FALSE;
        return 0;
    };
    ASSERT_NE(dialog.Create(nullptr), nullptr);
    ASSERT_TRUE(loop.AddMessageFilter(&older));
    ASSERT_TRUE(loop.AddMessageFilter(&newer));
    dialog.PostMessage(WM_APP);
    PostQuitMessage(0);
    loop.Run();
    EXPECT_EQ(seen, 0);
}

TEST_F(MessageLoopTest, AFilterCanRemoveItselfAndAnOlderOneWhileItIsCalled)
{
    CMessageLoop loop;
    std::string order;
    CTestFilter oldest([&order](MSG* message) -> BOOL {
        if (message->message == WM_APP) {
            order += "a";
        }
        return FALSE;
    });
    CTestFilter removed([&order](MSG*) -> BOOL {
        order += "REMOVED";
        return FALSE;
    });
    CTestFilter remover([&](MSG* message) -> BOOL {
        if (message->message == WM_APP) {
            order += "r";
            loop.RemoveMessageFilter(&removed);
            loop.RemoveMessageFilter(&remover);
        }
        return FALSE;
    });
    ASSERT_TRUE(loop.AddMessageFilter(&oldest));
    ASSERT_TRUE(loop.AddMessageFilter(&removed));
    ASSERT_TRUE(loop.AddMessageFilter(&remover));
    PostToThread(WM_APP);
    PostToThread(WM_APP);
    PostQuitMessage(0);
    loop.Run();
    EXPECT_EQ(order, "raa");
}

TEST_F(MessageLoopTest, RemovingAFilterTwiceReportsFailure)
{
    CMessageLoop loop;
    CTestFilter filter([](MSG*) -> BOOL { return FALSE; });
    EXPECT_FALSE(loop.RemoveMessageFilter(&filter));
    EXPECT_TRUE(loop.AddMessageFilter(&filter));
    EXPECT_TRUE(loop.RemoveMessageFilter(&filter));
    EXPECT_FALSE(loop.RemoveMessageFilter(&filter));
}

TEST_F(MessageLoopTest, AddingAFilterWithoutMemoryReportsFailure)
{
    CMessageLoop loop;
    CTestFilter filter([](MSG*) -> BOOL { return FALSE; });
    const CNoMemory noMemory;
    EXPECT_FALSE(loop.AddMessageFilter(&filter));
}

TEST_F(MessageLoopTest, IdleHandlersAreCalledWhenTheQueueIsEmpty)
{
    CMessageLoop loop;
    CTestIdleHandler handler;
    ASSERT_TRUE(loop.AddIdleHandler(&handler));
    PostToThread(WM_APP);
    EXPECT_EQ(loop.Run(), 7);
    EXPECT_EQ(handler.calls, 1);
}

TEST_F(MessageLoopTest, IdleWorkThatAMessageDelayedIsStillDone)
{
    // The last message before the queue runs empty is one after which no idle time is due.
    CMessageLoop loop;
    CTestIdleHandler handler;
    ASSERT_TRUE(loop.AddIdleHandler(&handler));
    PostToThread(WM_APP);
    PostToThread(0x0118);
    EXPECT_EQ(loop.Run(), 7);
    EXPECT_EQ(handler.calls, 1);
}

TEST_F(MessageLoopTest, PaintingAndTheCaretAskForNoIdleTime)
{
    CMessageLoop loop;
    const auto message = [](UINT id) { return MSG{nullptr, id, 0, 0, 0, {5, 5}}; };
    EXPECT_FALSE(loop.IsIdleMessage(message(WM_PAINT)));
    EXPECT_FALSE(loop.IsIdleMessage(message(0x0118)));
    EXPECT_TRUE(loop.IsIdleMessage(message(WM_KEYDOWN)));
}

TEST_F(MessageLoopTest, AMouseMoveAsksForIdleTimeOnlyWhenTheMouseMoved)
{
    CMessageLoop loop;
    EXPECT_TRUE(loop.IsIdleMessage({nullptr, WM_MOUSEMOVE, 0, 0, 0, {5, 5}}));
    EXPECT_FALSE(loop.IsIdleMessage({nullptr, WM_MOUSEMOVE, 0, 0, 0, {5, 5}}));
    EXPECT_TRUE(loop.IsIdleMessage({nullptr, WM_MOUSEMOVE, 0, 0, 0, {6, 5}}));
}

} // namespace
