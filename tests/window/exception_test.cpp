#include "tests/window/fixture.h"
#include "window/window_impl.h"

#include <stdexcept>
#include <string>
#include <thread>

namespace {

class ExceptionTest : public WindowTest
{
protected:
    static CTestDialog::Handler ThrowOn(UINT thrownOn, const char* text = "from the handler")
    {
        return [thrownOn, text](UINT message, WPARAM, LPARAM, BOOL& handled) -> LRESULT {
            handled = FALSE;
            if (message == thrownOn) {
                throw std::runtime_error(text);
            }
            return 0;
        };
    }

    // What comes out of the call.
    template <class Call>
    static std::string Caught(Call call)
    {
        try {
            call();
        } catch (const std::exception& exception) {
            return exception.what();
        }
        return "nothing";
    }
};

TEST_F(ExceptionTest, WhatAHandlerThrowsComesOutOfTheLoop)
{
    CTestDialog dialog;
    dialog.answer = ThrowOn(WM_APP);
    ASSERT_NE(dialog.Create(nullptr), nullptr);
    dialog.PostMessage(WM_APP);
    CMessageLoop loop;
    EXPECT_EQ(Caught([&loop] { loop.Run(); }), "from the handler");
}

TEST_F(ExceptionTest, OfTwoExceptionsTheFirstComesOut)
{
    CTestDialog dialog;
    dialog.answer = [&dialog](UINT message, WPARAM, LPARAM, BOOL& handled) -> LRESULT {
        handled = FALSE;
        if (message == WM_APP) {
            dialog.SendMessage(WM_APP + 1);
            throw std::runtime_error("second");
        }
        if (message == WM_APP + 1) {
            throw std::runtime_error("first");
        }
        return 0;
    };
    ASSERT_NE(dialog.Create(nullptr), nullptr);
    dialog.PostMessage(WM_APP);
    CMessageLoop loop;
    EXPECT_EQ(Caught([&loop] { loop.Run(); }), "first");
}

// Starts a thread that sends the message once the loop has nothing left to do.
struct CSenderWhenIdle final : CIdleHandler
{
    explicit CSenderWhenIdle(HWND receiver) : window(receiver) {}
    BOOL OnIdle() override
    {
        if (!sender.joinable()) {
            sender = std::thread([this] { SendMessageW(window, WM_APP, 0, 0); });
        }
        return FALSE;
    }
    HWND window;
    std::thread sender;
};

TEST_F(ExceptionTest, AMessageFromAnotherThreadWakesTheLoopToThrow)
{
    CTestDialog dialog;
    dialog.answer = ThrowOn(WM_APP);
    ASSERT_NE(dialog.Create(nullptr), nullptr);
    DispatchWaiting();
    CSenderWhenIdle handler(dialog);
    CMessageLoop loop;
    ASSERT_TRUE(loop.AddIdleHandler(&handler));
    const ULONGLONG start = GetTickCount64();
    EXPECT_EQ(Caught([&loop] { loop.Run(); }), "from the handler");
    // Nothing but the deadline's timer would wake the loop later on.
    EXPECT_LT(GetTickCount64() - start, 5'000u);
    handler.sender.join();
}

TEST_F(ExceptionTest, WhatTheInitHandlerThrowsComesOutOfCreateAndNoWindowStays)
{
    CTestDialog dialog;
    dialog.answer = ThrowOn(WM_INITDIALOG);
    const int windows = CountWindows();
    EXPECT_EQ(Caught([&dialog] { dialog.Create(nullptr); }), "from the handler");
    EXPECT_EQ(dialog.m_hWnd, nullptr);
    EXPECT_EQ(CountWindows(), windows);
}

TEST_F(ExceptionTest, AnExceptionEndsAModalDialogAndComesOutOfIt)
{
    CTestDialog dialog;
    dialog.answer = [&dialog](UINT message, WPARAM, LPARAM, BOOL& handled) -> LRESULT {
        handled = FALSE;
        if (message == WM_INITDIALOG) {
            dialog.PostMessage(WM_APP);
        } else if (message == WM_APP) {
            throw std::runtime_error("from the modal dialog");
        }
        return 0;
    };
    EXPECT_EQ(Caught([&dialog] { dialog.DoModal(nullptr); }), "from the modal dialog");
    EXPECT_EQ(dialog.m_hWnd, nullptr);
}

TEST_F(ExceptionTest, WhatTheInitHandlerOfAModalDialogThrowsComesOut)
{
    CTestDialog dialog;
    dialog.answer = ThrowOn(WM_INITDIALOG);
    EXPECT_EQ(Caught([&dialog] { dialog.DoModal(nullptr); }), "from the handler");
}

TEST_F(ExceptionTest, AnExceptionPassesFromAModalDialogThroughItsOwnersHandlerToTheLoop)
{
    CTestDialog inner;
    inner.answer = ThrowOn(WM_INITDIALOG, "from the inner dialog");
    CTestDialog outer;
    outer.answer = [&](UINT message, WPARAM, LPARAM, BOOL& handled) -> LRESULT {
        handled = message == WM_APP;
        if (handled) {
            inner.DoModal(outer);
        }
        return 0;
    };
    ASSERT_NE(outer.Create(nullptr), nullptr);
    outer.PostMessage(WM_APP);
    CMessageLoop loop;
    EXPECT_EQ(Caught([&loop] { loop.Run(); }), "from the inner dialog");
}

TEST_F(ExceptionTest, APaintHandlerThatThrowsDoesNotPaintForEver)
{
    CTestDialog dialog;
    int paints = 0;
    dialog.answer = [&paints](UINT message, WPARAM, LPARAM, BOOL& handled) -> LRESULT {
        handled = FALSE;
        if (message == WM_PAINT && ++paints == 1) {
            throw std::runtime_error("from painting");
        }
        return 0;
    };
    ASSERT_NE(dialog.Create(nullptr), nullptr);
    dialog.ShowWindow(SW_SHOW);
    dialog.Invalidate();
    CMessageLoop loop;
    EXPECT_EQ(Caught([&loop] { loop.Run(); }), "from painting");
    DispatchWaiting();
    EXPECT_LE(paints, 2);
}

std::string g_unawaited;

TEST_F(ExceptionTest, WithoutALoopOfThisLibraryTheHandlerForUnawaitedExceptionsIsCalled)
{
    g_unawaited.clear();
    const UnawaitedExceptionHandler former =
        SetUnawaitedExceptionHandler([](const std::exception_ptr& exception) {
            g_unawaited = Caught([&exception] { std::rethrow_exception(exception); });
        });
    CTestDialog dialog;
    dialog.answer = ThrowOn(WM_APP);
    ASSERT_NE(dialog.Create(nullptr), nullptr);
    dialog.SendMessage(WM_APP);
    SetUnawaitedExceptionHandler(former);
    EXPECT_EQ(g_unawaited, "from the handler");
}

class CThrowingWindow : public CWindowImpl<CThrowingWindow>
{
public:
    DECLARE_WND_CLASS(L"ExceptionTestWindow")
    BEGIN_MSG_MAP(CThrowingWindow)
    MESSAGE_HANDLER(WM_CREATE, OnCreate)
    END_MSG_MAP()

private:
    LRESULT OnCreate(UINT, WPARAM, LPARAM, BOOL&) { throw std::runtime_error("from the create message"); }
};

TEST_F(ExceptionTest, WhatTheCreateMessageThrowsComesOutOfCreate)
{
    CThrowingWindow window;
    EXPECT_EQ(Caught([&window] { window.Create(nullptr, nullptr, nullptr, WS_POPUP); }),
              "from the create message");
    EXPECT_EQ(window.m_hWnd, nullptr);
}

} // namespace
