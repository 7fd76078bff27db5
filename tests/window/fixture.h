// What the window library's tests share: a dialog, a loop with a deadline, a count of GDI objects.
#pragma once

#include "tests/window/resource_ids.h"
#include "window/dialog_impl.h"
#include "window/message_loop.h"
#include "window/module.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <functional>

// A loop that doesn't end by itself within ten seconds is ended by a quit message and fails the test.
class WindowTest : public testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

private:
    UINT_PTR m_deadline = 0;
};

// Dispatches what waits.
void DispatchWaiting();

// This process's live GDI objects.
int CountGdiObjects();
// This thread's windows, top-level ones and their children.
int CountWindows();

// A dialog whose messages a test answers.
class CTestDialog : public CDialogImpl<CTestDialog>
{
public:
    enum
    {
        IDD = IDD_TEST
    };
    using Handler = std::function<LRESULT(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled)>;

    BEGIN_MSG_MAP(CTestDialog)
    MESSAGE_RANGE_HANDLER(1, 0xFFFF, OnAny)
    END_MSG_MAP()

    void OnFinalMessage(HWND window) override
    {
        ++finalMessages;
        if (onFinalMessage) {
            onFinalMessage(window);
        }
    }

    Handler answer = [](UINT, WPARAM, LPARAM, BOOL& handled) -> LRESULT {
        handled = FALSE;
        return 0;
    };
    std::function<void(HWND)> onFinalMessage;
    int finalMessages = 0;

private:
    LRESULT OnAny(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled)
    {
        return answer(message, wParam, lParam, handled);
    }
};
