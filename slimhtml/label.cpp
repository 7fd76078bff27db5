#include "slimhtml/label.h"

#include "slimhtml/html_parser.h"
#include "slimhtml/link_walk.h"
#include "window/gdi.h"

#include <windowsx.h>

#include <algorithm>
#include <utility>

namespace {

constexpr LONG_PTR changedStyles = WS_TABSTOP | SS_NOPREFIX;

LabelKey KeyOf(WPARAM virtualKey)
{
    if (GetKeyState(VK_CONTROL) < 0 || GetKeyState(VK_MENU) < 0) {
        return LabelKey::Other;
    }
    switch (virtualKey) {
    case VK_TAB:
        return GetKeyState(VK_SHIFT) < 0 ? LabelKey::Previous : LabelKey::Next;
    case VK_RETURN:
    case VK_SPACE:
        return LabelKey::Activate;
    case VK_UP:
        return LabelKey::Up;
    case VK_DOWN:
        return LabelKey::Down;
    case VK_PRIOR:
        return LabelKey::PageUp;
    case VK_NEXT:
        return LabelKey::PageDown;
    case VK_HOME:
        return LabelKey::Home;
    case VK_END:
        return LabelKey::End;
    default:
        return LabelKey::Other;
    }
}

CString TextOf(HWND window)
{
    CString text;
    const int length = GetWindowTextLengthW(window);
    wchar_t* buffer = text.GetBuffer(length);
    text.ReleaseBuffer(GetWindowTextW(window, buffer, length + 1));
    return text;
}

} // namespace

CLabel::~CLabel()
{
    if (const HWND window = Window()) {
        m_bLayingOut = true; // the change of size that follows must not show the bar again
        ShowScrollBar(false);
        m_binding.Unbind();
        const LONG_PTR style = GetWindowLongPtrW(window, GWL_STYLE);
        SetWindowLongPtrW(window, GWL_STYLE, (style & ~changedStyles) | (m_formerStyle & changedStyles));
        InvalidateRect(window, nullptr, TRUE);
    }
}

bool CLabel::Bind(HWND control)
{
    if (!m_binding.Bind(control)) {
        return false;
    }
    m_formerStyle = GetWindowLongPtrW(control, GWL_STYLE);
    // The text is plain: an "&" in it is no mnemonic of the dialog's.
    SetWindowLongPtrW(control, GWL_STYLE, m_formerStyle | SS_NOPREFIX);
    const CString text = TextOf(control);
    Load(text, text.GetLength(), CString());
    return true;
}

void CLabel::OnControlGone()
{
    m_fonts.Release();
    m_images.Release();
    m_document = HtmlDocument();
    m_layout = HtmlLayout();
    m_focusOrder.clear();
    m_range = ScrollRange();
    m_bScrollBar = false;
    m_focusedLink = -1;
    m_pressedLink = -1;
    m_bPainted = false;
}

void CLabel::SetFormat(const RenderFormat& format)
{
    m_format = format;
    if (Window()) {
        ResetFonts();
        LayOut();
    }
}

void CLabel::Load(const wchar_t* html, int length, const CString& folder)
{
    if (!Window()) {
        return;
    }
    HtmlDocument document = ParseHtml(html, length);
    m_fonts.Forget(); // they refer to the document that goes
    m_document = std::move(document);
    m_folder = folder;
    m_images.Load(m_document, folder);
    m_focusedLink = -1;
    m_pressedLink = -1;
    m_range.position = 0;
    ResetFonts();
    LayOut();
    // Straight to the system: the static control would draw the text at once, in its own way.
    DefWindowProcW(Window(), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(PlainText(m_document).GetString()));
}

bool CLabel::PreTranslateMessage(const MSG& message)
{
    if (!Window() || message.hwnd != Window() || message.message != WM_KEYDOWN) {
        return false;
    }
    const LabelDecision decision = Decide(message.wParam);
    if (decision.action == LabelAction::None || !OwnerAgrees()) {
        return false;
    }
    Act(decision);
    return true;
}

LRESULT CLabel::OnMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_PAINT:
        OnPaint();
        return 0;
    case WM_PRINTCLIENT:
        OnPrint(reinterpret_cast<HDC>(wParam));
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_SETTEXT:
        OnSetText(reinterpret_cast<const wchar_t*>(lParam));
        return TRUE;
    case WM_SETFONT:
        m_binding.CallFormer(message, wParam, FALSE);
        ResetFonts();
        LayOut();
        return 0;
    case WM_SIZE:
    case WM_DPICHANGED_AFTERPARENT:
        LayOut();
        return 0;
    case WM_ENABLE:
    case WM_SYSCOLORCHANGE:
    case WM_THEMECHANGED:
        Redraw();
        return 0;
    case WM_NCHITTEST:
        return OnHitTest(wParam, lParam);
    case WM_GETDLGCODE:
        return OnGetDialogCode(wParam, lParam);
    case WM_SETFOCUS:
        OnSetFocus(reinterpret_cast<HWND>(wParam));
        return 0;
    case WM_KILLFOCUS:
        OnKillFocus(reinterpret_cast<HWND>(wParam));
        return 0;
    case WM_SETCURSOR:
        return OnSetCursor(lParam) ? TRUE : DefWindowProcW(Window(), message, wParam, lParam);
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
        return OnButtonDown(lParam) ? 0 : m_binding.CallFormer(message, wParam, lParam);
    case WM_LBUTTONUP:
        OnButtonUp(lParam);
        return 0;
    case WM_CAPTURECHANGED:
        m_pressedLink = -1;
        return 0;
    case WM_VSCROLL:
        OnVerticalScroll(LOWORD(wParam));
        return 0;
    case WM_MOUSEWHEEL:
        if (!IsScrollable()) {
            return DefWindowProcW(Window(), message, wParam, lParam);
        }
        OnWheel(GET_WHEEL_DELTA_WPARAM(wParam));
        return 0;
    case WM_KEYDOWN: {
        const LabelDecision decision = Decide(wParam);
        if (decision.action == LabelAction::None || !OwnerAgrees()) {
            return m_binding.CallFormer(message, wParam, lParam);
        }
        Act(decision);
        return 0;
    }
    default:
        return m_binding.CallFormer(message, wParam, lParam);
    }
}

void CLabel::OnPaint()
{
    const CPaintDC paint(Window());
    // Nothing of the label is on the screen yet, so nothing can flicker.
    if (!std::exchange(m_bPainted, true)) {
        PaintLabel(Window(), paint.get(), Picture());
        return;
    }
    PaintLabelBuffered(Window(), paint.get(), paint.Rectangle(), Picture());
}

void CLabel::OnPrint(HDC dc)
{
    PaintLabel(Window(), dc, Picture());
}

LabelPicture CLabel::Picture()
{
    const bool bFocused = GetFocus() == Window();
    return {m_document,
            m_layout,
            m_format,
            m_fonts,
            m_images,
            m_range.position,
            bFocused ? m_focusedLink : -1,
            bFocused && m_focusedLink < 0};
}

void CLabel::OnSetText(const wchar_t* text)
{
    Load(text, TextLength(text), CString());
}

// Without the notify style a static control lets the mouse through to the dialog; links and scroll bars need it.
LRESULT CLabel::OnHitTest(WPARAM wParam, LPARAM lParam)
{
    return IsInteractive() ? DefWindowProcW(Window(), WM_NCHITTEST, wParam, lParam)
                           : m_binding.CallFormer(WM_NCHITTEST, wParam, lParam);
}

// A dialog that doesn't offer its messages first asks here who wants a key.
LRESULT CLabel::OnGetDialogCode(WPARAM wParam, LPARAM lParam)
{
    const LRESULT code = m_binding.CallFormer(WM_GETDLGCODE, wParam, lParam);
    const auto* message = reinterpret_cast<const MSG*>(lParam);
    if (!message || message->message != WM_KEYDOWN || Decide(message->wParam).action == LabelAction::None ||
        !OwnerAgrees()) {
        return code;
    }
    return code | DLGC_WANTMESSAGE;
}

void CLabel::OnSetFocus(HWND loser)
{
    const bool bFromThisWindow = loser && GetAncestor(loser, GA_ROOT) == GetAncestor(Window(), GA_ROOT);
    if (!m_bFocusByMouse && (bFromThisWindow || m_focusedLink < 0) && !m_focusOrder.empty()) {
        const bool bBackwards = GetKeyState(VK_TAB) < 0 && GetKeyState(VK_SHIFT) < 0;
        FocusLink(bBackwards ? m_focusOrder.back() : m_focusOrder.front());
    }
    Redraw();
}

void CLabel::OnKillFocus(HWND winner)
{
    // Whoever leaves within the window comes back to its first link; another program comes back to this one.
    if (winner && GetAncestor(winner, GA_ROOT) == GetAncestor(Window(), GA_ROOT)) {
        m_focusedLink = -1;
    }
    Redraw();
}

int CLabel::LinkUnder(POINT point) const
{
    return LinkAt(m_document, m_layout, point.x, point.y + m_range.position);
}

bool CLabel::OnSetCursor(LPARAM lParam)
{
    POINT point = {};
    if (LOWORD(lParam) != HTCLIENT || !GetCursorPos(&point) || !ScreenToClient(Window(), &point) ||
        LinkUnder(point) < 0) {
        return false;
    }
    SetCursor(LoadCursorW(nullptr, IDC_HAND));
    return true;
}

bool CLabel::OnButtonDown(LPARAM lParam)
{
    const int link = LinkUnder({GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
    if (link < 0 && !IsScrollable()) {
        return false;
    }
    m_bFocusByMouse = true;
    SetFocus(Window());
    m_bFocusByMouse = false;
    if (link < 0) {
        return false;
    }
    FocusLink(link);
    SetCapture(Window());
    m_pressedLink = link;
    return true;
}

void CLabel::OnButtonUp(LPARAM lParam)
{
    const int pressed = std::exchange(m_pressedLink, -1);
    if (pressed < 0) {
        return;
    }
    ReleaseCapture();
    if (LinkUnder({GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)}) == pressed) {
        Activate(pressed);
    }
}

void CLabel::OnVerticalScroll(int code)
{
    const auto byKey = [this](LabelKey key) { ScrollTo(DecideKey(key, {}, -1, m_range).value); };
    if (!IsScrollable()) {
        return;
    }
    switch (code) {
    case SB_LINEUP:
        return byKey(LabelKey::Up);
    case SB_LINEDOWN:
        return byKey(LabelKey::Down);
    case SB_PAGEUP:
        return byKey(LabelKey::PageUp);
    case SB_PAGEDOWN:
        return byKey(LabelKey::PageDown);
    case SB_TOP:
        return byKey(LabelKey::Home);
    case SB_BOTTOM:
        return byKey(LabelKey::End);
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION: {
        SCROLLINFO info = {}; // the message itself holds 16 bits of the position alone
        info.cbSize = sizeof(info);
        info.fMask = SIF_TRACKPOS;
        if (GetScrollInfo(Window(), SB_VERT, &info)) {
            ScrollTo(ClampScroll(m_range, info.nTrackPos));
        }
        return;
    }
    default:
        return;
    }
}

void CLabel::OnWheel(int delta)
{
    UINT lines = 3;
    SystemParametersInfoW(SPI_GETWHEELSCROLLLINES, 0, &lines, 0);
    ScrollTo(ScrollByWheel(m_range, delta, static_cast<int>(lines), m_wheelRest));
}

LabelDecision CLabel::Decide(WPARAM virtualKey) const
{
    return DecideKey(KeyOf(virtualKey), m_focusOrder, m_focusedLink, m_range);
}

bool CLabel::OwnerAgrees() const
{
    if (!m_notify) {
        return true;
    }
    bool bHandled = false;
    m_notify->OnKeyHandled(Window(), 0, &bHandled);
    return bHandled;
}

void CLabel::Act(const LabelDecision& decision)
{
    switch (decision.action) {
    case LabelAction::None:
        break;
    case LabelAction::FocusLink:
        FocusLink(decision.value);
        break;
    case LabelAction::Scroll:
        ScrollTo(decision.value);
        break;
    case LabelAction::ActivateLink:
        Activate(decision.value);
        break;
    }
}

void CLabel::FocusLink(int link)
{
    m_focusedLink = link;
    const std::vector<HtmlBox> boxes = LinkBoxes(m_document, m_layout, link);
    if (!boxes.empty()) {
        ScrollTo(ScrollIntoView(m_range, boxes.front().top, boxes.back().bottom));
    }
    Redraw();
}

void CLabel::ScrollTo(int position)
{
    if (position != m_range.position) {
        m_range.position = position;
        UpdateScrollBar();
        Redraw();
    }
}

// The owner may load another page into this label or end it altogether: nothing here is touched after the call.
void CLabel::Activate(int link)
{
    const CString target = m_document.links[link];
    if (m_notify) {
        m_notify->OnLinkClicked(Window(), target);
    }
}

void CLabel::Redraw()
{
    if (IsWindowVisible(Window())) { // a page that is being made is not, and each call is one of the system
        InvalidateRect(Window(), nullptr, FALSE);
    }
}
