#include "frame/tab_page_core.h"

#include "frame/busy_guard.h"
#include "frame/page_rules.h"
#include "frame/page_services.h"
#include "frame/resource_text.h"
#include "frame/wait_cursor.h"

namespace {

// As the system hands a device context to WM_CTLCOLORSTATIC.
bool IsUntouched(HDC dc)
{
    return ::GetTextColor(dc) == RGB(0, 0, 0) && ::GetBkColor(dc) == RGB(255, 255, 255) &&
           ::GetBkMode(dc) == OPAQUE;
}

} // namespace

CTabPageCore::CTabPageCore(const PageContext* context)
    : CPageCore(context), m_hParent(context->hParent), m_hFrame(context->hFrame),
      m_rcDisplay(context->rcDisplay)
{
    m_resource.Load(context->pszResourcePath);
}

// ---- hooks

PageContext CTabPageCore::HookContext() const
{
    PageContext context;
    context.hParent = m_hWnd;
    context.hFrame = m_hFrame;
    context.rcDisplay = m_rcDisplay;
    context.pSetupManager = m_pSetupManager;
    context.pProduct = m_pProduct;
    context.hDatabase = m_hDatabase;
    return context;
}

int CTabPageCore::RunHooks(const PageHookList& hooks)
{
    if (hooks.empty()) {
        return 0;
    }
    PageContext context = HookContext();
    return CallHooks(hooks, context, false);
}

int CTabPageCore::RunLeaveHooks()
{
    if (m_leaveHooks.empty()) {
        return 1;
    }
    PageContext context = HookContext();
    return CallHooks(m_leaveHooks, context, false);
}

// ---- keys

BOOL CTabPageCore::PreTranslateMessage(MSG* message)
{
    const bool isKey = message->message >= WM_KEYFIRST && message->message <= WM_KEYLAST;
    const bool isMine = message->hwnd == m_hWnd || ::IsChild(m_hWnd, message->hwnd);
    // What leads out of the page is the host's: a page knows only its own controls.
    if (isKey && isMine &&
        ::SendMessageW(m_hParent, PAGE_MESSAGE_KEY, 0, reinterpret_cast<LPARAM>(message)) != 0) {
        return TRUE;
    }
    if (!m_hWnd) { // the host took the page away, whatever it answered
        return TRUE;
    }
    if (isMine && message->message == WM_KEYDOWN && message->wParam == VK_RETURN) {
        if (MayBeLeft()) {
            GoNext(); // whichever control has the focus
        }
        return TRUE;
    }
    return ::IsDialogMessageW(m_hWnd, message);
}

// See EnableLeaving. The host, too, stays when either is off.
bool CTabPageCore::MayBeLeft() const
{
    const HWND back = ::GetDlgItem(m_hParent, IDC_BACK);
    const HWND cancel = ::GetDlgItem(m_hParent, IDC_CANCEL);
    return (!back || ::IsWindowEnabled(back)) && (!cancel || ::IsWindowEnabled(cancel));
}

// ---- init

void CTabPageCore::LookupControls()
{
    m_hPrevButton = GetDlgItem(IDC_PREVIOUS_TAB);
    m_hNextButton = GetDlgItem(IDC_NEXT_TAB);
}

void CTabPageCore::InitFrame()
{
    LookupControls();
    InitBanner();
    RunHooks(m_preInitHooks);
}

// ---- navigation

void CTabPageCore::Leave(NavigationResult direction)
{
    ::SendMessageW(m_hParent,
                   direction == NAVIGATION_NEXT ? PAGE_MESSAGE_NEXT_TAB : PAGE_MESSAGE_PREVIOUS_TAB, 0, 0);
}

bool CTabPageCore::Store()
{
    const CBusyGuard guard(m_busy);
    if (!guard) {
        return false;
    }
    const CPersistentWaitCursor waitCursor;
    return MayGoNext();
}

// ---- messages

LRESULT CTabPageCore::OnMouseMove(UINT, WPARAM, LPARAM, BOOL& handled)
{
    if (m_hFrame && !::IsWindowEnabled(m_hFrame)) {
        ::SetCursor(::LoadCursorW(nullptr, IDC_WAIT));
    }
    handled = FALSE;
    return 0;
}

// The system's own answer would put its colors in the place of those that the page has set.
LRESULT CTabPageCore::OnStaticColor(UINT, WPARAM wParam, LPARAM lParam, BOOL& handled)
{
    if (IsUntouched(reinterpret_cast<HDC>(wParam))) {
        handled = FALSE;
        return 0;
    }
    m_labelBackground = BackgroundBehind(reinterpret_cast<HWND>(lParam));
    return reinterpret_cast<LRESULT>(m_labelBackground.get());
}

// Enables no button again: the host makes the pages anew when their number changes. The end of a stay enables both,
// see EnableLeaving.
LRESULT CTabPageCore::OnCounter(UINT, WPARAM wParam, LPARAM, BOOL&)
{
    const int index = LOWORD(wParam);
    const int total = HIWORD(wParam);
    const TabButtons buttons = ButtonsToDisable(index, total);
    if (buttons.bDisablePrevious) {
        ::EnableWindow(m_hPrevButton, FALSE);
    }
    if (buttons.bDisableNext) {
        ::EnableWindow(m_hNextButton, FALSE);
    }
    const CWindow counter(GetDlgItem(IDC_PAGE_COUNTER));
    if (counter.IsWindow()) {
        counter.SetText(PageCounterText(LoadResourceString(IDS_PAGE_COUNTER), index, total));
    }
    return 0;
}

LRESULT CTabPageCore::OnPrevious(WORD, WORD, HWND, BOOL&)
{
    GoBack();
    return 0;
}

LRESULT CTabPageCore::OnNext(WORD, WORD, HWND, BOOL&)
{
    GoNext();
    return 0;
}
