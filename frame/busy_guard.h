// Keeps a page's navigation from starting again while a message box of the first one is up.
#pragma once

#include <atomic>

// Takes the flag from 0 to 1, if it is 0, and gives it back. Not against other threads' work: pages live on one.
class CBusyGuard
{
public:
    explicit CBusyGuard(std::atomic<int>& busy) : m_busy(busy)
    {
        int idle = 0;
        m_entered = m_busy.compare_exchange_strong(idle, 1);
    }
    ~CBusyGuard() { Release(); }
    CBusyGuard(const CBusyGuard&) = delete;
    CBusyGuard& operator=(const CBusyGuard&) = delete;

    // False when the page was busy: do nothing.
    explicit operator bool() const { return m_entered; }

    void Release()
    {
        if (m_entered) {
            m_busy.store(0);
        }
        m_entered = false;
    }

private:
    std::atomic<int>& m_busy;
    bool m_entered = false;
};
