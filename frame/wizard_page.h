// CWizardPageImpl: a page with a window of its own.
#pragma once

#include "controls/customize_hyper_link.h"
#include "controls/separator_static.h"
#include "frame/file_path.h"
#include "frame/page_impl.h"

#include <shlwapi.h>

#include <new>

template <class T>
class CWizardPageImpl : public CPageImplBase<T>, public ISlimHtmlNotify
{
    using Base = CPageImplBase<T>;

public:
    explicit CWizardPageImpl(const PageContext* context) : Base(context), m_hResource(context->hResource) {}

    BEGIN_MSG_MAP(CWizardPageImpl)
    MESSAGE_HANDLER(WM_INITDIALOG, OnInitDialogMessage)
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
    CHAIN_MSG_MAP(Base)
    END_MSG_MAP()

    int RunHooks(const PageHookList& hooks) override
    {
        if (hooks.empty()) {
            return 0;
        }
        PageContext context = HookContext();
        context.hParent = this->m_hWnd;
        if (CUiManager* uiManager = CHostUiManager()) {
            context.rcDisplay = *uiManager->GetWindowPos();
        }
        return CallHooks(hooks, context, false);
    }

    // The first veto counts; the hooks behind it aren't asked. (A tab page asks them all and honours the last.)
    int RunLeaveHooks() override
    {
        if (this->m_leaveHooks.empty()) {
            return 1;
        }
        PageContext context = HookContext();
        return CallHooks(this->m_leaveHooks, context, true);
    }

    BOOL PreTranslateMessage(MSG* message) override
    {
        if (m_sidePane.PreTranslateMessage(message)) {
            return TRUE;
        }
        if (message->message == WM_KEYDOWN && message->wParam == VK_RETURN && OnEnterKey(message->hwnd)) {
            return TRUE;
        }
        return ::IsDialogMessageW(this->m_hWnd, message);
    }

    int OnLinkClicked(HWND, const wchar_t* target) override
    {
        try {
            FollowLink(target);
        } catch (...) {
            KeepCurrentException(); // the label's library calls
        }
        return 0;
    }
    int OnReserved1(HWND, const wchar_t*) override { return 0; }
    int OnReserved2(HWND, const wchar_t*) override { return 0; }
    int OnKeyHandled(HWND control, int, bool* handled) override
    {
        if (control != m_sidePane.GetWindow() || *handled) {
            return 0;
        }
        *handled = true;
        return 1;
    }

    void LookupControls()
    {
        m_hResetButton = this->GetDlgItem(IDC_RESET);
        m_hBackButton = this->GetDlgItem(IDC_BACK);
        m_hNextButton = this->GetDlgItem(IDC_NEXT);
        m_hCancelButton = this->GetDlgItem(IDC_CANCEL);
    }

protected:
    // The frame's part of the init, before the page's own. A control that the template lacks is left out.
    void InitFrame()
    {
        InitIcon();
        this->m_pSetupManager->m_hCurrentPage = this->m_hWnd;
        AddToMessageLoop();
        this->KeepDialogFont();
        this->Page().LookupControls();
        InitStepLabel();
        this->SetWindowText(PageTitle(this->m_pSetupManager->m_strProductName,
                                      this->m_pSetupManager->m_setupMode,
                                      this->m_pSetupManager->m_strDeploymentName));
        this->InitBanner();
        InitSidePane();
        InitFooter();
        m_link1.SetUp(this->GetDlgItem(IDC_LINK1), this->m_pSetupManager->m_strLinkTarget1);
        m_link2.SetUp(this->GetDlgItem(IDC_LINK2), this->m_pSetupManager->m_strLinkTarget2);
        InitSeparator();
        InitResetButton();
        this->RunHooks(this->m_preInitHooks);
        if (const HWND hidden = this->GetDlgItem(IDC_HIDDEN_AT_START)) {
            ::ShowWindow(hidden, SW_HIDE);
        }
        if (!this->m_bCanGoBack) {
            ::EnableWindow(m_hBackButton, FALSE);
        }
    }

    // The control that has the focus when the page opens.
    void FocusAtStart(int id) { ::SetFocus(this->GetDlgItem(id)); }

    // The page is left with that result.
    void Close(int result)
    {
        this->m_result = result;
        this->DestroyWindow();
    }

    CUiManager* CHostUiManager() const { return this->m_pSetupManager->m_pUiManager; }

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
    HMODULE m_hResource; // the entry's
    CIconOwner m_icon;   // when it came from a file

private:
    static constexpr unsigned int STAGE_CANCEL_IS_NEXT = 4;

    PageContext HookContext() const
    {
        PageContext context;
        context.pSetupManager = this->m_pSetupManager;
        return context;
    }

    // ---- init ----

    void InitIcon()
    {
        this->SetIcon(
            LoadPageIcon(CHostUiManager() ? CString(CHostUiManager()->m_strIconFile) : CString(), m_icon));
    }

    void AddToMessageLoop()
    {
        CMessageLoop* loop = _Module.GetMessageLoop();
        if (!loop) {
            throw std::bad_alloc(); // the table had no room for it
        }
        loop->AddMessageFilter(this);
    }

    void BindLabel(CSlimHtmlCtrl& label, HWND control)
    {
        label.SubclassWindow(control);
        label.SetRenderFormat(PaneFormat());
    }

    void InitStepLabel()
    {
        const HWND control = this->GetDlgItem(IDC_STEP_LABEL);
        if (!control) {
            return;
        }
        BindLabel(m_stepLabel, control);
        if (CHostUiManager()) {
            m_stepLabel.LoadText(FormatResource(IDS_STEP, CString(CHostUiManager()->m_strStepArgument)));
        }
    }

    void InitSidePane()
    {
        const CWindow control(this->GetDlgItem(IDC_SIDE_PANE));
        if (!control.IsWindow()) {
            return;
        }
        BindLabel(m_sidePane, control);
        control.ModifyStyle(0, SS_NOTIFY);
        control.EnableWindow();
        if (!this->m_strHelpFile.IsEmpty()) {
            m_sidePane.LoadFile(JoinPath(this->m_pSetupManager->GetWizTextPath(), this->m_strHelpFile));
        }
        control.ShowWindow(SW_SHOW);
        m_sidePane.SetNotify(this);
    }

    void InitFooter()
    {
        const HWND control = this->GetDlgItem(IDC_FOOTER);
        if (!control) {
            return;
        }
        BindLabel(m_footer, control);
        ::ShowWindow(control, SW_SHOW);
    }

    void InitSeparator()
    {
        if (m_separator.SubclassWindow(this->GetDlgItem(IDC_SEPARATOR))) {
            m_separator.ShowWindow(SW_SHOW);
        }
    }

    void InitResetButton()
    {
        if (!m_hResetButton) {
            return;
        }
        const bool allowed =
            CHostUiManager() && CHostUiManager()->m_bResetAllowed1 && CHostUiManager()->m_bResetAllowed2;
        ::ShowWindow(m_hResetButton, allowed ? SW_SHOW : SW_HIDE);
        ::EnableWindow(m_hResetButton, allowed);
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
            Close(NAVIGATION_NEXT);
        }
    }

    void GoBack()
    {
        const CBusyGuard guard(this->m_busy);
        if (!guard) {
            return;
        }
        const typename T::BackCursor waitCursor;
        if (this->Page().StoreWithoutValidation()) {
            Close(NAVIGATION_BACK);
        }
    }

    void Reset()
    {
        const CBusyGuard guard(this->m_busy);
        if (!guard) {
            return;
        }
        const CPersistentWaitCursor waitCursor;
        if (this->m_pSetupManager->ResetSetupMode() == 0) {
            Close(NAVIGATION_RESET);
        }
    }

    // `source` is the window from which the command came.
    void Cancel(HWND source)
    {
        CBusyGuard guard(this->m_busy);
        if (!guard) {
            return;
        }
        if (this->m_pSetupManager->m_uiStage == STAGE_CANCEL_IS_NEXT) {
            guard.Release(); // Next takes it anew
            GoNext();
            return;
        }
        const CPersistentWaitCursor waitCursor;
        CSetupManager& manager = *this->m_pSetupManager;
        if (AskToCancel(this->m_hWnd, manager)) {
            manager.m_exitCode = EXIT_CODE_CANCELLED;
            manager.SetMsiProperty(L"TARN_SETUP_SUCCEEDED", L"", false);
            Close(NAVIGATION_CANCEL);
        } else {
            ::SetFocus(source);
        }
    }

    void OpenLink(UINT id)
    {
        const CBusyGuard guard(this->m_busy);
        if (!guard) {
            return;
        }
        const CPersistentWaitCursor waitCursor;
        OpenLinkTarget(*this->m_pSetupManager, (id == IDC_LINK1 ? m_link1 : m_link2).GetHyperLink());
    }

    // Enter on these presses them; on every other control it presses the default button.
    bool OnEnterKey(HWND focus)
    {
        if (!::IsWindowEnabled(focus) || ::GetParent(focus) != this->m_hWnd) {
            return false;
        }
        switch (const int id = ::GetDlgCtrlID(focus)) {
        case IDC_LINK1:
        case IDC_LINK2:
            OpenLink(static_cast<UINT>(id));
            return true;
        case IDC_RESET:
            Reset();
            return true;
        case IDC_BACK:
            GoBack();
            return true;
        case IDC_CANCEL:
            Cancel(focus);
            return true;
        default:
            return false;
        }
    }

    void FollowLink(const wchar_t* target)
    {
        switch (KindOfLink(::PathFindExtensionW(target))) {
        case LinkKind::Document:
            OpenDocument(target);
            break;
        case LinkKind::Html:
            m_sidePane.LoadFile(FindHtmlFile(*this->m_pSetupManager, target));
            break;
        case LinkKind::Unknown:
            break;
        }
    }

    // ---- messages ----

    LRESULT OnInitDialogMessage(UINT, WPARAM, LPARAM, BOOL&) { return this->Page().OnInitDialog(); }

    LRESULT OnDestroy(UINT, WPARAM, LPARAM, BOOL& handled)
    {
        if (CMessageLoop* loop = _Module.GetMessageLoop()) {
            loop->RemoveMessageFilter(this);
        }
        ::PostQuitMessage(this->m_result);
        handled = FALSE;
        return 0;
    }

    LRESULT OnPaint(UINT, WPARAM, LPARAM, BOOL&)
    {
        PaintPage(this->m_hWnd, m_backgroundColor,
                  m_useBackgroundImage && CHostUiManager() ? CHostUiManager()->m_pBackgroundImage : nullptr);
        return 0;
    }

    LRESULT OnEraseBackground(UINT, WPARAM, LPARAM, BOOL&) { return TRUE; }

    // Controls stand on the white page.
    LRESULT OnControlColor(UINT, WPARAM, LPARAM, BOOL&)
    {
        return reinterpret_cast<LRESULT>(::GetStockObject(WHITE_BRUSH));
    }

    LRESULT OnWindowPosChanged(UINT, WPARAM, LPARAM, BOOL& handled)
    {
        TrackWindowPlace(this->m_hWnd, CHostUiManager(), m_bPlaced);
        handled = FALSE;
        return 0;
    }

    LRESULT OnSidePaneText(UINT, WPARAM, LPARAM lParam, BOOL&)
    {
        const auto text = reinterpret_cast<const wchar_t*>(lParam);
        if (!IsEmptyText(text)) {
            m_sidePane.LoadText(text);
        }
        return 0;
    }

    LRESULT OnNext(WORD, WORD, HWND, BOOL&)
    {
        GoNext();
        return 0;
    }
    LRESULT OnBack(WORD, WORD, HWND, BOOL&)
    {
        GoBack();
        return 0;
    }
    LRESULT OnCancel(WORD, WORD, HWND control, BOOL&)
    {
        // Escape and the close box come here whatever state the button has.
        if (!m_hCancelButton || ::IsWindowEnabled(m_hCancelButton)) {
            Cancel(control);
        }
        return 0;
    }
    LRESULT OnReset(WORD, WORD, HWND, BOOL&)
    {
        Reset();
        return 0;
    }
    LRESULT OnLink(WORD, WORD id, HWND, BOOL&)
    {
        OpenLink(id);
        return 0;
    }
};
