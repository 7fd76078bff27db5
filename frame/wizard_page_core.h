// CWizardPageCore: a page with a window of its own, apart from its class.
#pragma once

#include "controls/customize_hyper_link.h"
#include "controls/separator_static.h"
#include "frame/page_core.h"
#include "frame/page_services.h"
#include "include/ui_manager.h"

class CWizardPageCore : public CPageCore, public ISlimHtmlNotify
{
public:
    explicit CWizardPageCore(const PageContext* context) : CPageCore(context), m_hResource(context->hResource)
    {
    }

    BEGIN_MSG_MAP(CWizardPageCore)
    MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
    MESSAGE_HANDLER(WM_PAINT, OnPaint)
    MESSAGE_HANDLER(WM_ERASEBKGND, OnEraseBackground)
    MESSAGE_RANGE_HANDLER(WM_CTLCOLOREDIT, WM_CTLCOLORDLG, OnControlColor)
    MESSAGE_HANDLER(WM_CTLCOLORSTATIC, OnControlColor)
    MESSAGE_HANDLER(WM_WINDOWPOSCHANGED, OnWindowPosChanged)
    MESSAGE_HANDLER(PAGE_MESSAGE_SIDE_PANE, OnSidePaneText)
    COMMAND_HANDLER(IDC_NEXT, BN_CLICKED, OnNext)
    COMMAND_HANDLER(IDC_BACK, BN_CLICKED, OnBack)
    COMMAND_HANDLER(IDC_CANCEL, BN_CLICKED, OnCancel)
    COMMAND_HANDLER(IDC_RESET, BN_CLICKED, OnReset)
    COMMAND_HANDLER(IDC_LINK1, BN_CLICKED, OnLink)
    COMMAND_HANDLER(IDC_LINK2, BN_CLICKED, OnLink)
    CHAIN_MSG_MAP(CPageCore)
    END_MSG_MAP()

    int RunHooks(const PageHookList& hooks) override;
    // The first veto counts; the hooks behind it aren't asked. (A tab page asks them all and honours the last.)
    int RunLeaveHooks() override;

    BOOL PreTranslateMessage(MSG* message) override;

    int OnLinkClicked(HWND, const wchar_t* target) override;
    int OnReserved1(HWND, const wchar_t*) override { return 0; }
    int OnReserved2(HWND, const wchar_t*) override { return 0; }
    int OnKeyHandled(HWND control, int, bool* handled) override;

    void LookupControls() override;

protected:
    // The frame's part of the init, before the page's own. A control that the template lacks is left out.
    void InitFrame();

    // The control that has the focus when the page opens.
    void FocusAtStart(int id) { ::SetFocus(GetDlgItem(id)); }

    // The page is left with that result. Under another handler its window stays until that one has ended.
    void Close(int result);

    // Around each handler of the page.
    void BeginHandler() { ++m_handlers; }
    void EndHandler();

    CUiManager* GetUiManager() const { return m_pSetupManager->m_pUiManager; }

    CSlimHtmlCtrl m_sidePane;
    CSlimHtmlCtrl m_footer;
    CSlimHtmlCtrl m_stepLabel;
    CSlimHtmlCtrl m_unboundLabel; // for a label that the templates have given up; stays unbound
    CSeparatorStatic m_separator;
    CCustomizeHyperLink m_link1;
    CCustomizeHyperLink m_link2;
    HWND m_hResetButton = nullptr;
    HWND m_hBackButton = nullptr;
    HWND m_hNextButton = nullptr;
    HWND m_hCancelButton = nullptr;
    PageColor m_backgroundColor;
    bool m_useBackgroundImage = false;
    bool m_bPlaced = false;
    bool m_bCloseWaits = false; // for the end of the handlers under way
    HMODULE m_hResource;        // the entry's
    CIconOwner m_icon;          // when it came from a file

private:
    PageContext HookContext() const;
    WaysOut GetWaysOut() const override { return {m_hNextButton, m_hBackButton, m_hResetButton, m_hWnd}; }
    void Leave(NavigationResult direction) override { Close(direction); }

    // ---- init
    void AddToMessageLoop();
    void BindLabel(CSlimHtmlCtrl& label, HWND control);
    void InitIcon();
    void InitStepLabel();
    void InitSidePane();
    void InitFooter();
    void InitSeparator();
    void InitResetButton();

    // ---- navigation
    void Reset();
    void Cancel(HWND source);
    void OpenLink(UINT id);
    void FollowLink(const wchar_t* target);
    bool OnEnterKey(HWND focus);

    // ---- messages
    LRESULT OnDestroy(UINT, WPARAM, LPARAM, BOOL& handled);
    LRESULT OnPaint(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnEraseBackground(UINT, WPARAM, LPARAM, BOOL&) { return TRUE; }
    LRESULT OnControlColor(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnWindowPosChanged(UINT, WPARAM, LPARAM, BOOL& handled);
    LRESULT OnSidePaneText(UINT, WPARAM, LPARAM lParam, BOOL&);
    LRESULT OnNext(WORD, WORD, HWND, BOOL&);
    LRESULT OnBack(WORD, WORD, HWND, BOOL&);
    LRESULT OnCancel(WORD, WORD, HWND control, BOOL&);
    LRESULT OnReset(WORD, WORD, HWND, BOOL&);
    LRESULT OnLink(WORD, WORD id, HWND, BOOL&);
};
