#include "frame/page_core.h"

#include "base/html_text.h"
#include "frame/busy_guard.h"
#include "frame/label_format.h"
#include "frame/resource_text.h"
#include "frame/text_rules.h"
#include "frame/wait_cursor.h"

#include <optional>
#include <utility>

CPageCore::CPageCore(const PageContext* context)
    : m_strHelpFile(context->strHelpFile), m_pSetupManager(context->pSetupManager),
      m_pProduct(context->pProduct), m_preInitHooks(context->preInitHooks),
      m_postInitHooks(context->postInitHooks), m_leaveHooks(context->leaveHooks),
      m_hDatabase(context->hDatabase), m_bCanGoBack(context->bCanGoBack), m_nReserved1(context->nReserved1),
      m_nReserved2(context->nReserved2), m_autoPlayMessage(::RegisterWindowMessageW(L"QueryCancelAutoPlay"))
{
}

CString CPageCore::ProductName() const
{
    return CString(m_pSetupManager->m_strProductName);
}

int CPageCore::ShowPageBox(const CString& text, UINT type)
{
    return MessageBox(text, ProductName(), type);
}

void CPageCore::FocusWholeText(int edit)
{
    const HWND control = GetDlgItem(edit);
    ::SendMessageW(control, EM_SETSEL, 0, -1);
    ::SendMessageW(control, EM_SCROLLCARET, 0, 0);
    ::SetFocus(control);
}

// Enables what was off before, too: a page that shows its stage anew has every way out unless the stage takes it.
void CPageCore::EnableLeaving(bool enabled)
{
    const WaysOut ways = GetWaysOut();
    const HWND focus = ::GetFocus(); // the system takes it from a control that goes off
    for (const HWND button :
         {ways.next, ways.back, ::GetDlgItem(ways.window, IDC_BACK), ::GetDlgItem(ways.window, IDC_CANCEL)}) {
        ::EnableWindow(button, enabled);
    }
    EnableReset(ways.reset, enabled);
    RestoreFocus(focus);
}

void CPageCore::RestoreFocus(HWND former)
{
    if (!former) {
        return;
    }
    const bool isOnPage = ::IsChild(m_hWnd, former) != FALSE;
    const bool isShown = !isOnPage || (CWindow(former).GetStyle() & WS_VISIBLE) != 0;
    if (!isShown || !::IsWindowEnabled(former)) {
        MoveFocusOn(former);
    } else if (isOnPage && ::GetFocus() != former) {
        ::SetFocus(former);
    }
}

// Without a focus the page would have no keys: neither Tab nor mnemonics.
void CPageCore::MoveFocusOn(HWND former)
{
    const HWND next = ::GetNextDlgTabItem(m_hWnd, ::IsChild(m_hWnd, former) ? former : nullptr, FALSE);
    if (next && ::IsWindowEnabled(next)) {
        ::SendMessageW(m_hWnd, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(next), TRUE);
    } else {
        ::SetFocus(m_hWnd);
    }
}

// Not every page has it: it comes back only where it was on.
void CPageCore::EnableReset(HWND reset, bool enabled)
{
    if (!enabled && !m_resetBeforeStay) {
        m_resetBeforeStay = ::IsWindowEnabled(reset) != FALSE;
        ::EnableWindow(reset, FALSE);
    } else if (enabled && m_resetBeforeStay) {
        ::EnableWindow(reset, *std::exchange(m_resetBeforeStay, std::nullopt));
    }
}

// ---- init

void CPageCore::InitBanner()
{
    const CWindow banner(GetDlgItem(IDC_BANNER));
    CString text = banner.GetText();
    if (text.IsEmpty()) {
        return;
    }
    m_banner.SubclassWindow(banner);
    m_banner.SetRenderFormat(BannerFormat());
    text = LoadResourceString(IDS_BANNER_PREFIX) + text;
    // Media name the product: a tag in its name must not read a picture from somewhere.
    ReplaceAll(text, L"[ProductName]", HtmlText(ProductName()));
    m_banner.LoadText(text);
}

void CPageCore::KeepDialogFont()
{
    const HFONT font = GetFont();
    if (m_hDialogFont && m_hDialogFont != font) {
        ::DeleteObject(m_hDialogFont);
    }
    m_hDialogFont = font;
}

// ---- navigation

bool CPageCore::MayGoNext()
{
    return RunLeaveHooks() != HOOK_VETO && ValidateAndStore();
}

void CPageCore::GoNext()
{
    const CBusyGuard guard(m_busy);
    if (!guard || IsUnderHandler()) {
        return;
    }
    const CPersistentWaitCursor waitCursor;
    if (MayGoNext()) {
        Leave(NAVIGATION_NEXT);
    }
}

void CPageCore::GoBack()
{
    const CBusyGuard guard(m_busy);
    if (!guard || IsUnderHandler()) {
        return;
    }
    std::optional<CPersistentWaitCursor> persistentCursor;
    const CWaitCursor plainCursor(HasPlainBackCursor());
    if (!HasPlainBackCursor()) {
        persistentCursor.emplace();
    }
    if (StoreWithoutValidation()) {
        Leave(NAVIGATION_BACK);
    }
}

// ---- messages

LRESULT CPageCore::OnSetCursor(UINT, WPARAM, LPARAM, BOOL& handled)
{
    handled = AnswerSetCursor();
    return handled;
}
