// Whether a page is at work: one of its handlers, which may show a box or run a loop of its own without disabling the
// dialog around the page. The dialog must not be left under it.
#pragma once

#include "base/scope_exit.h"
#include "window/window_impl.h"

#include <windows.h>

#include <utility>

// Watches the page's window (SubclassWindow) and learns what the page does without a message to it.
class CPageActivity : public CWindowImpl<CPageActivity>
{
public:
    [[nodiscard]] bool IsAtWork() const { return m_running > 0; }
    // Of several that are at work, the one that began last.
    [[nodiscard]] bool IsInnermost() const { return s_innermost == this; }

    // Runs what the page does by itself, such as its message filter.
    template <class Act>
    auto Watch(Act act)
    {
        ++m_running;
        const scope_exit done([this, outer = std::exchange(s_innermost, this)] {
            --m_running;
            s_innermost = outer;
        });
        return act();
    }
    // Runs what the dialog does when the page has called it.
    template <class Act>
    auto Suspend(Act act)
    {
        const int running = std::exchange(m_running, 0);
        const scope_exit done([this, running] { m_running = running; });
        return act();
    }

    BOOL ProcessWindowMessage(HWND, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result,
                              DWORD = 0) override
    {
        result = Watch([&] { return DefWindowProc(message, wParam, lParam); });
        return TRUE;
    }

private:
    inline static const CPageActivity* s_innermost = nullptr; // all pages are of one thread
    int m_running = 0;
};
