// Requests from outside to end the run: Ctrl+C in the console that it writes to, and the end of the user's session. While
// a page asks whether to cancel, and once it was asked to, both have to wait, so that no run ends in two ways at once.
#pragma once

#include "window/message_map.h"
#include "window/window_impl.h"

#include <windows.h>

class CSetupHost;

// One object at a time, on a thread that reads messages.
class CEndRequests : public CWindowImpl<CEndRequests>
{
public:
    DECLARE_WND_CLASS(L"RolloutEndRequests")

    // Borrows the host. Without its window, for want of memory, the session ends unasked.
    explicit CEndRequests(CSetupHost& host);
    ~CEndRequests();
    CEndRequests(const CEndRequests&) = delete;
    CEndRequests& operator=(const CEndRequests&) = delete;

    BEGIN_MSG_MAP(CEndRequests)
    MESSAGE_HANDLER(WM_QUERYENDSESSION, OnQueryEndSession)
    END_MSG_MAP()

    // As the system asks, on a thread of its own: TRUE when the event is to do nothing.
    static BOOL WINAPI OnConsoleEvent(DWORD event);

private:
    LRESULT OnQueryEndSession(UINT, WPARAM, LPARAM, BOOL&);

    CSetupHost& m_host;
};
