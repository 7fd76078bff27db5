#include "setup/end_requests.h"

#include "host/setup_host.h"
#include "setup/resource.h"
#include "setup/texts.h"

#include <mutex>

namespace {

std::mutex g_mutex; // guards the host against going while the console asks
CSetupHost* g_host = nullptr;

void UseHost(CSetupHost* host)
{
    const std::lock_guard lock(g_mutex);
    g_host = host;
}

} // namespace

CEndRequests::CEndRequests(CSetupHost& host) : m_host(host)
{
    const RECT nowhere = {};
    Create(nullptr, &nowhere, nullptr, WS_POPUP, 0, 0); // hidden; a message-only window isn't asked
    UseHost(&host);
    SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
}

CEndRequests::~CEndRequests()
{
    SetConsoleCtrlHandler(OnConsoleEvent, FALSE);
    UseHost(nullptr);
    if (IsWindow()) {
        DestroyWindow();
    }
}

BOOL WINAPI CEndRequests::OnConsoleEvent(DWORD event)
{
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) {
        return FALSE; // nothing keeps the system from ending the process for the others
    }
    const std::lock_guard lock(g_mutex);
    return g_host && !g_host->IsCancellingEnabled();
}

LRESULT CEndRequests::OnQueryEndSession(UINT, WPARAM, LPARAM, BOOL&)
{
    if (m_host.IsCancellingEnabled()) {
        ShutdownBlockReasonDestroy(m_hWnd);
        return TRUE;
    }
    ShutdownBlockReasonCreate(m_hWnd, SetupText(IDS_SESSION_END_WAITS));
    return FALSE; // the system shows the reason and lets the user decide
}
