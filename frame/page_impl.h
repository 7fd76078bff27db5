// CPageImplBase: what a wizard page and a tab page have in common.
//
// A page class T derives from CWizardPageImpl<T> or CTabPageImpl<T> and supplies what it needs of:
//
//   LRESULT OnInitDialog()           its own init: calls InitFrame first and RunHooks(m_postInitHooks) last. The result
//                                    is the init message's: nonzero lets the dialog manager set the focus.
//   void LookupControls()            caches handles of controls; calls the base's
//   bool ValidateAndStore()          the Next handler: true when the page may be left
//   bool StoreWithoutValidation()    the Back handler: true when the page may be left
//   using BackCursor = ...           the wait cursor that shows while the Back handler runs
//
// What a page of both shapes calls here means the same in each: InitFrame, FocusAtStart, ShowPageBox.
#pragma once

#include "frame/busy_guard.h"
#include "frame/label_format.h"
#include "frame/page_rules.h"
#include "frame/page_services.h"
#include "frame/resource_text.h"
#include "frame/text_rules.h"
#include "frame/wait_cursor.h"
#include "include/navigation.h"
#include "include/page_context.h"
#include "include/resource_ids.h"
#include "include/setup_manager.h"
#include "include/ui_manager.h"
#include "slimhtml/slim_html.h"
#include "window/data_exchange.h"
#include "window/dialog_impl.h"

#include <atomic>

template <class T>
class CPageImplBase : public CDialogImpl<T>, public CWinDataExchange<T>, public CMessageFilter
{
public:
    explicit CPageImplBase(const PageContext* context)
        : m_strHelpFile(context->strHelpFile), m_pSetupManager(context->pSetupManager),
          m_pProduct(context->pProduct), m_preInitHooks(context->preInitHooks),
          m_postInitHooks(context->postInitHooks), m_leaveHooks(context->leaveHooks),
          m_hDatabase(context->hDatabase), m_bCanGoBack(context->bCanGoBack),
          m_nReserved1(context->nReserved1), m_nReserved2(context->nReserved2),
          m_autoPlayMessage(::RegisterWindowMessageW(L"QueryCancelAutoPlay"))
    {
    }

    void OnFinalMessage(HWND) override {}

    // Calls the hooks in order; the last one's result, 0 for an empty list.
    virtual int RunHooks(const PageHookList& hooks) = 0;
    // HOOK_VETO keeps the page; 1 for an empty list.
    virtual int RunLeaveHooks() = 0;

    BEGIN_MSG_MAP(CPageImplBase)
    MESSAGE_HANDLER(WM_SETCURSOR, OnSetCursor)
    MESSAGE_HANDLER(m_autoPlayMessage, OnQueryCancelAutoPlay)
    REFLECT_NOTIFICATIONS()
    END_MSG_MAP()

    // The page's part when it has none of its own.
    using BackCursor = CPersistentWaitCursor;
    bool ValidateAndStore() { return true; }
    bool StoreWithoutValidation() { return true; }

protected:
    T& Page() { return static_cast<T&>(*this); }

    CString ProductName() const { return CString(m_pSetupManager->m_strProductName); }

    // A box of the page, with the product as title.
    int ShowPageBox(const CString& text, UINT type) { return this->MessageBox(text, ProductName(), type); }

    // Puts an edit's whole text under the user's hands, to be typed over.
    void FocusWholeText(int edit)
    {
        const HWND control = this->GetDlgItem(edit);
        ::SendMessageW(control, EM_SETSEL, 0, -1);
        ::SendMessageW(control, EM_SCROLLCARET, 0, 0);
        ::SetFocus(control);
    }

    // The banner shows its own text from the template. Without one it stays a static.
    void InitBanner()
    {
        const CWindow banner(this->GetDlgItem(IDC_BANNER));
        CString text = banner.GetText();
        if (text.IsEmpty()) {
            return;
        }
        m_banner.SubclassWindow(banner);
        m_banner.SetRenderFormat(BannerFormat());
        text = LoadResourceString(IDS_BANNER_PREFIX) + text;
        ReplaceAll(text, L"[ProductName]", m_pSetupManager->m_strProductName);
        m_banner.LoadText(text);
    }

    // The window lends its font, and a former one is no longer in use.
    void KeepDialogFont()
    {
        const HFONT font = this->GetFont();
        if (m_hDialogFont && m_hDialogFont != font) {
            ::DeleteObject(m_hDialogFont);
        }
        m_hDialogFont = font;
    }

    CSlimHtmlCtrl m_banner;
    CString m_strHelpFile;
    CSetupManager* m_pSetupManager; // the host's
    CProduct* m_pProduct;           // the host's
    PageHookList m_preInitHooks;
    PageHookList m_postInitHooks;
    PageHookList m_leaveHooks;
    InstallerHandle m_hDatabase; // the host's
    HFONT m_hDialogFont = nullptr;
    BOOL m_bCanGoBack;
    int m_nReserved1;
    int m_nReserved2;
    std::atomic<int> m_busy{0}; // 1 while a navigation handler runs
    int m_result = 0;           // what the closing page posts
    UINT m_autoPlayMessage;     // "QueryCancelAutoPlay"

private:
    LRESULT OnSetCursor(UINT, WPARAM, LPARAM, BOOL& handled)
    {
        handled = AnswerSetCursor();
        return handled;
    }

    // 1: AutoPlay doesn't open for media that the user inserts while the page is up.
    LRESULT OnQueryCancelAutoPlay(UINT, WPARAM, LPARAM, BOOL&) { return 1; }
};
