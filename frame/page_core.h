// CPageCore: what all pages have in common, whatever their class and shape.
//
// The shapes stand above it: wizard_page_core.h, tab_page_core.h. A page class T derives from their templates,
// CWizardPageImpl<T> or CTabPageImpl<T>, and overrides what it needs of:
//
//   LRESULT OnInitDialog()          its own init: calls InitFrame first and RunHooks(m_postInitHooks) last. The result
//                                   is the init message's: nonzero lets the dialog manager set the focus.
//   void LookupControls()           caches handles of controls; calls the base's
//   bool ValidateAndStore()         the Next handler: true when the page may be left
//   bool StoreWithoutValidation()   the Back handler: true when the page may be left
//   BOOL PreTranslateMessage()      takes the keys that the page has a use of its own for (F2 in a tree, Tab in a grid,
//                                   Esc in a cell's editor); hands every other message to the base's
//
// What a page of both shapes calls means the same in each: InitFrame, FocusAtStart, ShowPageBox, EnableLeaving.
#pragma once

#include "include/navigation.h"
#include "include/page_context.h"
#include "include/resource_ids.h"
#include "include/setup_manager.h"
#include "slimhtml/slim_html.h"
#include "window/dialog_impl.h"
#include "window/message_loop.h"

#include <atomic>
#include <optional>

class CPageCore : public CDialogImplBase<CWindow>, public CMessageFilter
{
public:
    explicit CPageCore(const PageContext* context);

    void OnFinalMessage(HWND) override {}

    // Calls the hooks in order; the last one's result, 0 for an empty list.
    virtual int RunHooks(const PageHookList& hooks) = 0;
    // HOOK_VETO keeps the page; 1 for an empty list.
    virtual int RunLeaveHooks() = 0;

    virtual LRESULT OnInitDialog() = 0;
    virtual void LookupControls() = 0;
    virtual bool ValidateAndStore() { return true; }
    virtual bool StoreWithoutValidation() { return true; }
    // Whether the plain wait cursor shows while the Back handler runs, in place of the one that outlives mouse moves.
    virtual bool HasPlainBackCursor() const { return false; }

    BEGIN_MSG_MAP(CPageCore)
    MESSAGE_HANDLER(WM_INITDIALOG, OnInitDialogMessage)
    MESSAGE_HANDLER(WM_SETCURSOR, OnSetCursor)
    MESSAGE_HANDLER(m_autoPlayMessage, OnQueryCancelAutoPlay)
    REFLECT_NOTIFICATIONS()
    END_MSG_MAP()

protected:
    CString ProductName() const;

    // A box of the page, with the product as title.
    int ShowPageBox(const CString& text, UINT type);

    // Selects an edit's whole text, to be typed over.
    void FocusWholeText(int edit);

    // The frame's buttons for the way on and the way back, null when the template lacks it: 1 and 1001 of a wizard page,
    // 1014 and 1013 of a tab page.
    HWND GetNextButton() const { return GetWaysOut().next; }
    HWND GetBackButton() const { return GetWaysOut().back; }
    // For a page that must stay while it works by itself (a download): Next and Back, and 1001 and 2 of the window that
    // leads out, which is a tab page's parent and the wizard page itself. Reset goes off with them.
    void EnableLeaving(bool enabled);
    bool MustStay() const { return m_resetBeforeStay.has_value(); }
    // For a page that turns controls off and on by itself, which takes the focus from them: it comes back to `former`, which
    // had it before, or goes to the next control when that one is off or hidden now.
    void RestoreFocus(HWND former);

    // The banner shows its own text from the template. Without one it stays a static.
    void InitBanner();
    // The window lends its font, and a former one is no longer in use.
    void KeepDialogFont();

    // Leaves the page if hooks and handler agree; nothing while the page is busy.
    void GoNext();
    void GoBack();
    // Whether the handler that is running was called under another one, which may show a box without an owner or wait:
    // the page isn't to be left under it. A tab page's host sees to that.
    bool IsUnderHandler() const { return m_handlers > 1; }
    // Asks the leave hooks, then the page's Next handler.
    bool MayGoNext();

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
    int m_handlers = 0;         // of a wizard page's messages, under way
    int m_result = 0;           // what the closing page posts
    UINT m_autoPlayMessage;     // "QueryCancelAutoPlay"

    struct WaysOut
    {
        HWND next;
        HWND back;
        HWND reset;  // a wizard page's
        HWND window; // whose controls 1001 and 2 lead out
    };

private:
    virtual WaysOut GetWaysOut() const = 0;
    // NAVIGATION_NEXT or NAVIGATION_BACK, once the page has agreed.
    virtual void Leave(NavigationResult direction) = 0;
    void EnableReset(HWND reset, bool enabled);
    void MoveFocusOn(HWND former);

    LRESULT OnInitDialogMessage(UINT, WPARAM, LPARAM, BOOL&) { return OnInitDialog(); }
    LRESULT OnSetCursor(UINT, WPARAM, LPARAM, BOOL& handled);
    // 1: AutoPlay doesn't open for media that the user inserts while the page is up.
    LRESULT OnQueryCancelAutoPlay(UINT, WPARAM, LPARAM, BOOL&) { return 1; }

    std::optional<bool> m_resetBeforeStay; // whether Reset was on when EnableLeaving turned it off
};
