// The message loop of a thread and those who take part in it.
//
//   CMessageFilter   sees each message before it is translated
//   CIdleHandler     works while no message waits
//   CMessageLoop     the loop; ends at WM_QUIT
#pragma once

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

// Sees each message before it is translated; a true answer consumes it.
class CMessageFilter
{
public:
    virtual BOOL PreTranslateMessage(MSG* message) = 0;

protected:
    ~CMessageFilter() = default;
};

// Called when the thread's queue has run empty, once for each time.
class CIdleHandler
{
public:
    virtual BOOL OnIdle() = 0;

protected:
    ~CIdleHandler() = default;
};

// Borrowed listeners that may come and go while they are being called.
template <class Listener>
class CListenerList
{
public:
    // False for a null, a listener that is listed already, and when there is no memory.
    [[nodiscard]] bool Add(Listener* listener) noexcept
    {
        if (!listener || Contains(listener)) {
            return false;
        }
        try {
            m_listeners.push_back(listener);
        } catch (...) {
            return false;
        }
        return true;
    }

    // False when it isn't listed. It is not called any more, even when the calls are under way.
    bool Remove(Listener* listener) noexcept
    {
        const auto found = std::find(m_listeners.begin(), m_listeners.end(), listener);
        if (!listener || found == m_listeners.end()) {
            return false;
        }
        *found = nullptr; // places must not shift while CallEach counts them
        Compact();
        return true;
    }

    // Calls from the newest to the oldest until one answers true. One that is added meanwhile has to wait.
    template <class Call>
    bool CallEach(Call call)
    {
        const CallScope scope(*this);
        for (std::size_t index = m_listeners.size(); index-- > 0;) {
            if (m_listeners[index] && call(*m_listeners[index])) {
                return true;
            }
        }
        return false;
    }

private:
    struct CallScope
    {
        explicit CallScope(CListenerList& owner) noexcept : list(owner) { ++list.m_calls; }
        ~CallScope()
        {
            --list.m_calls;
            list.Compact();
        }
        CallScope(const CallScope&) = delete;
        CallScope& operator=(const CallScope&) = delete;
        CListenerList& list;
    };

    bool Contains(const Listener* listener) const noexcept
    {
        return std::find(m_listeners.begin(), m_listeners.end(), listener) != m_listeners.end();
    }
    void Compact() noexcept
    {
        if (m_calls == 0) {
            std::erase(m_listeners, nullptr);
        }
    }

    std::vector<Listener*> m_listeners;
    int m_calls = 0;
};

class CMessageLoop
{
public:
    CMessageLoop() = default;
    virtual ~CMessageLoop() = default;
    CMessageLoop(const CMessageLoop&) = delete;
    CMessageLoop& operator=(const CMessageLoop&) = delete;

    // Runs until WM_QUIT and returns its code. An exception that a window procedure, a filter or an idle handler
    // threw is thrown on from here.
    int Run();

    // The loop borrows them. A filter may remove itself and others from within its call.
    BOOL AddMessageFilter(CMessageFilter* filter) noexcept { return m_filters.Add(filter); }
    BOOL RemoveMessageFilter(CMessageFilter* filter) noexcept { return m_filters.Remove(filter); }
    BOOL AddIdleHandler(CIdleHandler* handler) noexcept { return m_idleHandlers.Add(handler); }

    // Offers the message to the filters, the newest first.
    virtual BOOL PreTranslateMessage(MSG* message);
    // Calls the idle handlers; a true answer asks for another call before the loop waits.
    virtual BOOL OnIdle(int idleCount);
    // False for messages that come often and change nothing (mouse moves, painting, the caret's timer): no idle time
    // follows them. A mouse move counts when the mouse really moved.
    virtual BOOL IsIdleMessage(const MSG& message) noexcept;

private:
    bool DoIdle(); // false when a message came before the idle work was done
    void Handle(MSG& message);

    CListenerList<CMessageFilter> m_filters;
    CListenerList<CIdleHandler> m_idleHandlers;
    POINT m_lastMouse = {};
    UINT m_lastMouseMessage = WM_NULL;
};
