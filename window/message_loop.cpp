#include "window/message_loop.h"

#include "window/callback_exception.h"

namespace {
constexpr UINT systemTimer = 0x0118; // WM_SYSTIMER: the caret blinks
}

int CMessageLoop::Run()
{
    CExceptionBoundary boundary;
    bool idleIsDue = true;
    for (;;) {
        if (idleIsDue && DoIdle()) {
            idleIsDue = false;
        }
        MSG message = {};
        const BOOL got = GetMessageW(&message, nullptr, 0, 0);
        boundary.Rethrow(); // from a message that another thread sent
        if (got <= 0) {
            return static_cast<int>(message.wParam);
        }
        Handle(message);
        boundary.Rethrow();
        idleIsDue = IsIdleMessage(message) || idleIsDue;
    }
}

bool CMessageLoop::DoIdle()
{
    MSG waiting = {};
    for (int count = 0; !PeekMessageW(&waiting, nullptr, 0, 0, PM_NOREMOVE); ++count) {
        if (!OnIdle(count)) {
            return true;
        }
    }
    return false;
}

void CMessageLoop::Handle(MSG& message)
{
    if (!PreTranslateMessage(&message)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

BOOL CMessageLoop::PreTranslateMessage(MSG* message)
{
    return m_filters.CallEach(
        [message](CMessageFilter& filter) { return filter.PreTranslateMessage(message) != FALSE; });
}

BOOL CMessageLoop::OnIdle(int)
{
    m_idleHandlers.CallEach([](CIdleHandler& handler) {
        handler.OnIdle();
        return false;
    });
    return FALSE;
}

BOOL CMessageLoop::IsIdleMessage(const MSG& message) noexcept
{
    if (message.message == WM_MOUSEMOVE || message.message == WM_NCMOUSEMOVE) {
        const bool moved = message.message != m_lastMouseMessage || message.pt.x != m_lastMouse.x ||
                           message.pt.y != m_lastMouse.y;
        m_lastMouse = message.pt;
        m_lastMouseMessage = message.message;
        return moved;
    }
    return message.message != WM_PAINT && message.message != systemTimer;
}
