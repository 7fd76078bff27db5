// CTabPageImpl: a page as a child of the host's tabbed dialog. It has no message loop: the host forwards messages
// through the page's CTabPage.
#pragma once

#include "frame/page_impl.h"
#include "frame/resource_library.h"

template <class T>
class CTabPageImpl : public CPageImplBase<T>
{
    using Base = CPageImplBase<T>;

public:
    explicit CTabPageImpl(const PageContext* context)
        : Base(context), m_hParent(context->hParent), m_hFrame(context->hFrame),
          m_rcDisplay(context->rcDisplay)
    {
        m_resource.Load(context->pszResourcePath);
    }

    BEGIN_MSG_MAP(CTabPageImpl)
    MESSAGE_HANDLER(WM_INITDIALOG, OnInitDialogMessage)
    MESSAGE_HANDLER(WM_MOUSEMOVE, OnMouseMove)
    MESSAGE_RANGE_HANDLER(PAGE_MESSAGE_STORE, PAGE_MESSAGE_STORE_ALL, OnStore)
    MESSAGE_HANDLER(PAGE_MESSAGE_COUNTER, OnCounter)
    COMMAND_HANDLER(IDC_PREVIOUS_TAB, BN_CLICKED, OnPrevious)
    COMMAND_HANDLER(IDC_NEXT_TAB, BN_CLICKED, OnNext)
    CHAIN_MSG_MAP(Base)
    END_MSG_MAP()

    int RunHooks(const PageHookList& hooks) override
    {
        if (hooks.empty()) {
            return 0;
        }
        PageContext context = HookContext();
        return CallHooks(hooks, context, false);
    }

    // All hooks are asked and the last one's word counts. (A wizard page stops at the first veto.)
    int RunLeaveHooks() override
    {
        if (this->m_leaveHooks.empty()) {
            return 1;
        }
        PageContext context = HookContext();
        return CallHooks(this->m_leaveHooks, context, false);
    }

    BOOL PreTranslateMessage(MSG* message) override
    {
        const bool isMine = message->hwnd == this->m_hWnd || ::IsChild(this->m_hWnd, message->hwnd);
        if (isMine && message->message == WM_KEYDOWN && message->wParam == VK_RETURN) {
            GoNext(); // whichever control has the focus
            return TRUE;
        }
        return ::IsDialogMessageW(this->m_hWnd, message);
    }

    void LookupControls()
    {
        m_hPrevButton = this->GetDlgItem(IDC_PREVIOUS_TAB);
        m_hNextButton = this->GetDlgItem(IDC_NEXT_TAB);
    }

protected:
    // The frame's part of the init, before the page's own. A control that the template lacks is left out.
    void InitFrame()
    {
        this->Page().LookupControls();
        this->InitBanner();
        this->RunHooks(this->m_preInitHooks);
    }

    // A tab page leaves the focus where the host has it.
    void FocusAtStart(int) {}

    HWND m_hParent; // the host's
    HWND m_hFrame;  // the host's
    RECT m_rcDisplay;
    HWND m_hPrevButton = nullptr;
    HWND m_hNextButton = nullptr;
    CResourceLibrary m_resource;

private:
    PageContext HookContext() const
    {
        PageContext context;
        context.hParent = this->m_hWnd;
        context.hFrame = m_hFrame;
        context.rcDisplay = m_rcDisplay;
        context.pSetupManager = this->m_pSetupManager;
        context.pProduct = this->m_pProduct;
        context.hDatabase = this->m_hDatabase;
        return context;
    }

    // ---- navigation ----

    void GoNext()
    {
        const CBusyGuard guard(this->m_busy);
        if (!guard) {
            return;
        }
        const CPersistentWaitCursor waitCursor;
        if (this->RunLeaveHooks() != HOOK_VETO && this->Page().ValidateAndStore()) {
            ::SendMessageW(m_hParent, PAGE_MESSAGE_NEXT_TAB, 0, 0);
        }
    }

    void GoPrevious()
    {
        const CBusyGuard guard(this->m_busy);
        if (!guard) {
            return;
        }
        const typename T::BackCursor waitCursor;
        if (this->Page().StoreWithoutValidation()) {
            ::SendMessageW(m_hParent, PAGE_MESSAGE_PREVIOUS_TAB, 0, 0);
        }
    }

    // False when a hook vetoed, the page was busy or its own check refused: the host then stays with this page.
    bool Store()
    {
        const CBusyGuard guard(this->m_busy);
        if (!guard) {
            return false;
        }
        const CPersistentWaitCursor waitCursor;
        return this->RunLeaveHooks() != HOOK_VETO && this->Page().ValidateAndStore();
    }

    // ---- messages ----

    LRESULT OnInitDialogMessage(UINT, WPARAM, LPARAM, BOOL&) { return this->Page().OnInitDialog(); }

    LRESULT OnMouseMove(UINT, WPARAM, LPARAM, BOOL& handled)
    {
        if (m_hFrame && !::IsWindowEnabled(m_hFrame)) {
            ::SetCursor(::LoadCursorW(nullptr, IDC_WAIT));
        }
        handled = FALSE;
        return 0;
    }

    LRESULT OnStore(UINT, WPARAM, LPARAM, BOOL&) { return Store(); }

    // Never enables a button again: the host makes the pages anew when their number changes.
    LRESULT OnCounter(UINT, WPARAM wParam, LPARAM, BOOL&)
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
        const CWindow counter(this->GetDlgItem(IDC_PAGE_COUNTER));
        if (counter.IsWindow()) {
            counter.SetText(PageCounterText(LoadResourceString(IDS_PAGE_COUNTER), index, total));
        }
        return 0;
    }

    LRESULT OnPrevious(WORD, WORD, HWND, BOOL&)
    {
        GoPrevious();
        return 0;
    }
    LRESULT OnNext(WORD, WORD, HWND, BOOL&)
    {
        GoNext();
        return 0;
    }
};
