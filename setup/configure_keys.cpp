// The keys of the configure dialog: where they lead, and which button says so.
#include "setup/configure_dialog.h"
#include "setup/configure_rules.h"

namespace {

bool IsKeyDown(int virtualKey)
{
    return GetKeyState(virtualKey) < 0;
}

// How many tabs a key goes on: 0 for any other key.
int TabsOfKey(const MSG& message)
{
    if (message.message != WM_KEYDOWN || !IsKeyDown(VK_CONTROL)) {
        return 0;
    }
    switch (message.wParam) {
    case VK_TAB:
        return IsKeyDown(VK_SHIFT) ? -1 : 1;
    case VK_NEXT:
        return 1;
    case VK_PRIOR:
        return -1;
    default:
        return 0;
    }
}

// A page knows only its own controls, so what may lead out of it is the dialog's: Tab, Esc, mnemonics.
bool LeadsOutOfPage(const MSG& message)
{
    if (message.message == WM_SYSCHAR || message.message == WM_CHAR) {
        return true;
    }
    return message.message == WM_KEYDOWN && (message.wParam == VK_TAB || message.wParam == VK_ESCAPE);
}

} // namespace

BOOL CConfigureDialog::OnIdle()
{
    const HWND focus = GetFocus();
    if (focus != m_lastFocus) {
        m_lastFocus = focus;
        m_view.ScrollTo(focus);
        ShowDefaultButton(focus);
    }
    return FALSE;
}

bool CConfigureDialog::IsMine(const MSG& message) const
{
    return message.hwnd == m_hWnd || IsChild(m_hWnd, message.hwnd);
}

BOOL CConfigureDialog::OnMessageForPage(MSG* message)
{
    return m_front >= 0 && Front().activity.Watch([&] { return Front().page.PreTranslateMessage(message); });
}

bool CConfigureDialog::GoByKey(const MSG& message)
{
    const int distance = TabsOfKey(message);
    if (distance != 0) {
        GoTo(TabAround(m_front, distance, GetTabCount()));
    }
    return distance != 0;
}

// The page has not used it.
bool CConfigureDialog::OnPageKey(MSG& message)
{
    return m_front >= 0 && Front().activity.Suspend([&] {
        return GoByKey(message) || (LeadsOutOfPage(message) && IsDialogMessageW(m_hWnd, &message));
    });
}

BOOL CConfigureDialog::OnKeyOutsidePage(MSG* message)
{
    if (!IsMine(*message)) {
        return FALSE;
    }
    if (GoByKey(*message)) {
        return TRUE;
    }
    const bool onSubstitute = message->message == WM_KEYDOWN &&
                              message->hwnd == ::GetDlgItem(Front().substitute, IDC_CONFIGURE_REASON);
    if (onSubstitute && (message->wParam == VK_RETURN || message->wParam == VK_ESCAPE)) {
        // An edit of several lines would keep both keys to itself.
        PostMessage(WM_COMMAND, message->wParam == VK_RETURN ? IDC_CONFIGURE_NEXT : IDC_CONFIGURE_CANCEL);
        return TRUE;
    }
    return IsDialogMessageW(m_hWnd, message);
}

// Enter on a page is the page's own way on, whatever button has the focus there; elsewhere it is Continue. One of the two
// looks like it, and no other button.
void CConfigureDialog::ShowDefaultButton(HWND focus)
{
    const HWND page = m_view.GetPage();
    const auto pageDefault = static_cast<DWORD>(page ? ::SendMessageW(page, DM_GETDEFID, 0, 0) : 0);
    const HWND onward =
        HIWORD(pageDefault) == DC_HASDEFID ? ::GetDlgItem(page, LOWORD(pageDefault)) : nullptr;
    const bool pageTakesEnter = onward && ::IsWindowEnabled(onward) && IsChild(page, focus);
    const auto look = [](HWND button, bool isDefault) {
        ::SendMessageW(button, BM_SETSTYLE, isDefault ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON, TRUE);
    };
    if (onward) {
        look(onward, pageTakesEnter);
    }
    const bool focusLooksDefault = (::SendMessageW(focus, WM_GETDLGCODE, 0, 0) & DLGC_DEFPUSHBUTTON) != 0;
    if (pageTakesEnter && focus != onward && focusLooksDefault) {
        look(focus, false);
    }
    const int id = ::GetDlgCtrlID(focus);
    if (pageTakesEnter || (id != IDC_CONFIGURE_BACK && id != IDC_CONFIGURE_CANCEL)) {
        look(GetDlgItem(IDC_CONFIGURE_NEXT), !pageTakesEnter);
    }
}
