#include "frame/wizard_page_core.h"

#include "base/html_text.h"
#include "base/scope_exit.h"
#include "frame/busy_guard.h"
#include "frame/file_path.h"
#include "frame/label_format.h"
#include "frame/page_rules.h"
#include "frame/resource_text.h"
#include "frame/wait_cursor.h"
#include "window/callback_exception.h"
#include "window/module.h"

#include <shlwapi.h>

#include <new>
#include <utility>

namespace {

constexpr unsigned int STAGE_CANCEL_IS_NEXT = 4;

} // namespace

// ---- hooks

PageContext CWizardPageCore::HookContext() const
{
    PageContext context;
    context.pSetupManager = m_pSetupManager;
    return context;
}

int CWizardPageCore::RunHooks(const PageHookList& hooks)
{
    if (hooks.empty()) {
        return 0;
    }
    PageContext context = HookContext();
    context.hParent = m_hWnd;
    if (CUiManager* uiManager = GetUiManager()) {
        context.rcDisplay = *uiManager->GetWindowPos();
    }
    return CallHooks(hooks, context, false);
}

int CWizardPageCore::RunLeaveHooks()
{
    if (m_leaveHooks.empty()) {
        return 1;
    }
    PageContext context = HookContext();
    return CallHooks(m_leaveHooks, context, true);
}

// ---- keys and the side pane

BOOL CWizardPageCore::PreTranslateMessage(MSG* message)
{
    if (m_sidePane.PreTranslateMessage(message)) {
        return TRUE;
    }
    if (message->message == WM_KEYDOWN && message->wParam == VK_RETURN && OnEnterKey(message->hwnd)) {
        return TRUE;
    }
    return ::IsDialogMessageW(m_hWnd, message);
}

// Enter on these presses them; on every other control it presses the default button.
bool CWizardPageCore::OnEnterKey(HWND focus)
{
    if (!::IsWindowEnabled(focus) || ::GetParent(focus) != m_hWnd) {
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

int CWizardPageCore::OnLinkClicked(HWND, const wchar_t* target)
{
    try {
        BeginHandler(); // a box about a document has no owner
        const scope_exit ended([this] { EndHandler(); });
        FollowLink(target);
    } catch (...) {
        KeepCurrentException(); // the label's library calls
    }
    return 0;
}

int CWizardPageCore::OnKeyHandled(HWND control, int, bool* handled)
{
    if (control != m_sidePane.GetWindow() || *handled) {
        return 0;
    }
    *handled = true;
    return 1;
}

void CWizardPageCore::FollowLink(const wchar_t* target)
{
    switch (KindOfLink(::PathFindExtensionW(target))) {
    case LinkKind::Document:
        OpenDocument(target);
        break;
    case LinkKind::Html:
        m_sidePane.LoadFile(FindHtmlFile(*m_pSetupManager, target));
        break;
    case LinkKind::Unknown:
        break;
    }
}

// ---- init

void CWizardPageCore::InitFrame()
{
    InitIcon();
    m_pSetupManager->m_hCurrentPage = m_hWnd;
    AddToMessageLoop();
    KeepDialogFont();
    LookupControls();
    InitStepLabel();
    SetWindowText(PageTitle(m_pSetupManager->m_strProductName, m_pSetupManager->m_setupMode,
                            m_pSetupManager->m_strDeploymentName));
    InitBanner();
    InitSidePane();
    InitFooter();
    m_link1.SetUp(GetDlgItem(IDC_LINK1), m_pSetupManager->m_strLinkTarget1);
    m_link2.SetUp(GetDlgItem(IDC_LINK2), m_pSetupManager->m_strLinkTarget2);
    InitSeparator();
    InitResetButton();
    RunHooks(m_preInitHooks);
    if (const HWND hidden = GetDlgItem(IDC_HIDDEN_AT_START)) {
        ::ShowWindow(hidden, SW_HIDE);
    }
    if (!m_bCanGoBack) {
        ::EnableWindow(m_hBackButton, FALSE);
    }
}

void CWizardPageCore::LookupControls()
{
    m_hResetButton = GetDlgItem(IDC_RESET);
    m_hBackButton = GetDlgItem(IDC_BACK);
    m_hNextButton = GetDlgItem(IDC_NEXT);
    m_hCancelButton = GetDlgItem(IDC_CANCEL);
}

void CWizardPageCore::InitIcon()
{
    SetIcon(LoadPageIcon(GetUiManager() ? CString(GetUiManager()->m_strIconFile) : CString(), m_icon));
}

void CWizardPageCore::AddToMessageLoop()
{
    CMessageLoop* loop = _Module.GetMessageLoop();
    if (!loop) {
        throw std::bad_alloc(); // the table had no room for it
    }
    loop->AddMessageFilter(this);
}

void CWizardPageCore::BindLabel(CSlimHtmlCtrl& label, HWND control)
{
    label.SubclassWindow(control);
    label.SetRenderFormat(PaneFormat());
}

void CWizardPageCore::InitStepLabel()
{
    const HWND control = GetDlgItem(IDC_STEP_LABEL);
    if (!control) {
        return;
    }
    BindLabel(m_stepLabel, control);
    if (GetUiManager()) {
        m_stepLabel.LoadText(FormatResource(IDS_STEP, HtmlText(CString(GetUiManager()->m_strStepArgument))));
    }
}

void CWizardPageCore::InitSidePane()
{
    const CWindow control(GetDlgItem(IDC_SIDE_PANE));
    if (!control.IsWindow()) {
        return;
    }
    BindLabel(m_sidePane, control);
    control.ModifyStyle(0, SS_NOTIFY);
    control.EnableWindow();
    if (!m_strHelpFile.IsEmpty()) {
        m_sidePane.LoadFile(JoinPath(m_pSetupManager->GetWizTextPath(), m_strHelpFile));
    }
    control.ShowWindow(SW_SHOW);
    m_sidePane.SetNotify(this);
}

void CWizardPageCore::InitFooter()
{
    const HWND control = GetDlgItem(IDC_FOOTER);
    if (!control) {
        return;
    }
    BindLabel(m_footer, control);
    ::ShowWindow(control, SW_SHOW);
}

void CWizardPageCore::InitSeparator()
{
    if (m_separator.SubclassWindow(GetDlgItem(IDC_SEPARATOR))) {
        m_separator.ShowWindow(SW_SHOW);
    }
}

void CWizardPageCore::InitResetButton()
{
    if (!m_hResetButton) {
        return;
    }
    const bool allowed =
        GetUiManager() && GetUiManager()->m_bResetAllowed1 && GetUiManager()->m_bResetAllowed2;
    ::ShowWindow(m_hResetButton, allowed ? SW_SHOW : SW_HIDE);
    ::EnableWindow(m_hResetButton, allowed);
}

// ---- navigation

void CWizardPageCore::Close(int result)
{
    m_result = result;
    m_bCloseWaits = IsUnderHandler();
    if (m_bCloseWaits) {
        ::PostQuitMessage(result); // ends the box or the wait of the handler below
    } else {
        DestroyWindow();
    }
}

void CWizardPageCore::EndHandler()
{
    --m_handlers;
    if (m_handlers == 0 && std::exchange(m_bCloseWaits, false)) {
        DestroyWindow();
    }
}

void CWizardPageCore::Reset()
{
    const CBusyGuard guard(m_busy);
    if (!guard || IsUnderHandler()) {
        return;
    }
    const CPersistentWaitCursor waitCursor;
    if (m_pSetupManager->ResetSetupMode() == 0) {
        Close(NAVIGATION_RESET);
    }
}

// `source` is the window from which the command came.
void CWizardPageCore::Cancel(HWND source)
{
    CBusyGuard guard(m_busy);
    if (!guard || m_bCloseWaits) {
        return;
    }
    if (m_pSetupManager->m_uiStage == STAGE_CANCEL_IS_NEXT) {
        guard.Release(); // Next takes it anew
        GoNext();
        return;
    }
    const CPersistentWaitCursor waitCursor;
    CSetupManager& manager = *m_pSetupManager;
    if (AskToCancel(m_hWnd, manager)) {
        manager.m_exitCode = EXIT_CODE_CANCELLED;
        manager.SetMsiProperty(L"TARN_SETUP_SUCCEEDED", L"", false);
        Close(NAVIGATION_CANCEL);
    } else {
        ::SetFocus(source);
    }
}

void CWizardPageCore::OpenLink(UINT id)
{
    const CBusyGuard guard(m_busy);
    if (!guard) {
        return;
    }
    const CPersistentWaitCursor waitCursor;
    OpenLinkTarget(*m_pSetupManager, (id == IDC_LINK1 ? m_link1 : m_link2).GetHyperLink());
}

// ---- messages

LRESULT CWizardPageCore::OnDestroy(UINT, WPARAM, LPARAM, BOOL& handled)
{
    if (CMessageLoop* loop = _Module.GetMessageLoop()) {
        loop->RemoveMessageFilter(this);
    }
    ::PostQuitMessage(m_result);
    handled = FALSE;
    return 0;
}

LRESULT CWizardPageCore::OnPaint(UINT, WPARAM, LPARAM, BOOL&)
{
    PaintPage(m_hWnd, m_backgroundColor,
              m_useBackgroundImage && GetUiManager() ? GetUiManager()->m_pBackgroundImage : nullptr);
    return 0;
}

// Controls stand on the white page.
LRESULT CWizardPageCore::OnControlColor(UINT, WPARAM, LPARAM, BOOL&)
{
    return reinterpret_cast<LRESULT>(::GetStockObject(WHITE_BRUSH));
}

LRESULT CWizardPageCore::OnWindowPosChanged(UINT, WPARAM, LPARAM, BOOL& handled)
{
    TrackWindowPlace(m_hWnd, GetUiManager(), m_bPlaced);
    handled = FALSE;
    return 0;
}

LRESULT CWizardPageCore::OnSidePaneText(UINT, WPARAM, LPARAM lParam, BOOL&)
{
    const auto text = reinterpret_cast<const wchar_t*>(lParam);
    if (!IsEmptyText(text)) {
        m_sidePane.LoadText(text);
    }
    return 0;
}

// A button that is off can still be clicked by a message, here and below.
LRESULT CWizardPageCore::OnNext(WORD, WORD, HWND, BOOL&)
{
    if (!MustStay()) {
        GoNext();
    }
    return 0;
}

LRESULT CWizardPageCore::OnBack(WORD, WORD, HWND, BOOL&)
{
    if (!MustStay()) {
        GoBack();
    }
    return 0;
}

LRESULT CWizardPageCore::OnCancel(WORD, WORD, HWND control, BOOL&)
{
    // Escape and the close box come here whatever state the button has.
    if (!m_hCancelButton || ::IsWindowEnabled(m_hCancelButton)) {
        Cancel(control);
    }
    return 0;
}

LRESULT CWizardPageCore::OnReset(WORD, WORD, HWND, BOOL&)
{
    if (!MustStay()) {
        Reset();
    }
    return 0;
}

LRESULT CWizardPageCore::OnLink(WORD, WORD id, HWND, BOOL&)
{
    OpenLink(id);
    return 0;
}
