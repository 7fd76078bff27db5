// The members of CHyperLinkImpl. Included by window/hyper_link.h alone.
#pragma once

#include "window/hyper_link.h"

#define HYPER_LINK_MEMBER(Result)                                                                            \
    template <class T, class TBase, class TWinTraits>                                                        \
    Result CHyperLinkImpl<T, TBase, TWinTraits>

// ---- settings ----------------------------------------------------------------------------------------------------

HYPER_LINK_MEMBER(DWORD)::SetHyperLinkExtendedStyle(DWORD style, DWORD mask)
{
    const DWORD former = m_dwExtendedStyle;
    m_dwExtendedStyle = mask == 0 ? style : (former & ~mask) | (style & mask);
    if (m_bInternalLinkFont) {
        MakeInternalLinkFont();
    }
    Recalculate();
    return former;
}

HYPER_LINK_MEMBER(void)::SetLabel(const CString& label)
{
    m_strLabel = label;
    Recalculate();
    ShowPlainText();
}

HYPER_LINK_MEMBER(void)::SetHyperLink(const CString& target)
{
    m_strHyperLink = target;
    Recalculate();
}

HYPER_LINK_MEMBER(void)::SetLinkFont(HFONT font)
{
    m_hFontLink = font;
    if (font != m_ownLinkFont.get()) {
        m_ownLinkFont.reset();
    }
    m_bInternalLinkFont = false;
    Recalculate();
}

HYPER_LINK_MEMBER(void)::SetLinkFont(CFontOwner font)
{
    m_hFontLink = font.get();
    m_ownLinkFont = std::move(font);
    m_bInternalLinkFont = false;
    Recalculate();
}

HYPER_LINK_MEMBER(void)::SetVisited(bool visited)
{
    m_bVisited = visited;
    if (this->m_hWnd) {
        this->Invalidate();
    }
}

// ---- binding -----------------------------------------------------------------------------------------------------

HYPER_LINK_MEMBER(BOOL)::SubclassWindow(HWND control)
{
    if (!Base::SubclassWindow(control)) {
        return FALSE;
    }
    Self()->Init();
    return TRUE;
}

HYPER_LINK_MEMBER(void)::Init()
{
    wchar_t className[16] = {};
    ::GetClassNameW(this->m_hWnd, className, 16);
    if (CString(className).CompareNoCase(WC_STATICW) == 0) {
        m_bPaintLabel = !IsPicture();
        this->ModifyStyle(0, SS_NOTIFY); // a static control without it lets the mouse through
    }
    m_hCursor = ::LoadCursorW(nullptr, IDC_HAND);
    if (m_strLabel.IsEmpty()) {
        m_strLabel = this->GetText();
    }
    if (m_bPaintLabel) {
        LoadFonts();
        ReadBrowserLinkColors(m_clrLink, m_clrVisited);
    }
    if (!Has(HLINK_NOTOOLTIP)) {
        m_tip.Attach(CToolTipCtrl::CreateFor(this->m_hWnd));
        m_tip.AddTool(this->m_hWnd, m_rcLink, m_strHyperLink);
    }
    Recalculate();
    ShowPlainText();
}

HYPER_LINK_MEMBER(bool)::IsPicture() const noexcept
{
    const DWORD type = this->GetStyle() & SS_TYPEMASK;
    return type == SS_ICON || type == SS_BITMAP || type == SS_ENHMETAFILE || type == SS_OWNERDRAW;
}

HYPER_LINK_MEMBER(void)::LoadFonts()
{
    m_hFontNormal = CWindow(this->GetParent()).GetFont();
    if (!m_hFontNormal) {
        m_hFontNormal = static_cast<HFONT>(::GetStockObject(SYSTEM_FONT));
    }
    if (!m_hFontLink) {
        MakeInternalLinkFont();
    }
}

HYPER_LINK_MEMBER(void)::MakeInternalLinkFont()
{
    const bool underlined = (m_dwExtendedStyle & (HLINK_UNDERLINED | HLINK_UNDERLINEHOVER)) != 0;
    m_ownLinkFont.reset(MakeLinkFont(m_hFontNormal, underlined, Has(HLINK_USETAGSBOLD)));
    m_hFontLink = m_ownLinkFont.get();
    m_bInternalLinkFont = true;
}

HYPER_LINK_MEMBER(void)::Recalculate()
{
    const std::optional<TaggedLabel> tagged =
        Has(HLINK_USETAGS) ? SplitTaggedLabel(m_strLabel) : std::optional<TaggedLabel>();
    m_bTagged = tagged.has_value();
    m_parts = tagged.value_or(TaggedLabel{CString(), m_strLabel, CString()});
    if (!this->m_hWnd) {
        return;
    }
    m_rcLink = this->GetClientRect();
    if (m_bPaintLabel) {
        const CWindowDC dc(this->m_hWnd);
        m_layout =
            MeasureLink(dc.get(), m_parts, {m_hFontNormal, m_hFontLink}, this->GetClientRect(), TextFormat());
        m_rcLink = m_layout.link;
    }
    if (m_tip.m_hWnd) {
        m_tip.UpdateTool(this->m_hWnd, m_rcLink, m_strHyperLink);
    }
    this->Invalidate();
}

HYPER_LINK_MEMBER(void)::ShowPlainText()
{
    if (this->m_hWnd && m_bPaintLabel) {
        const CString text = m_parts.PlainText();
        Base::DefWindowProc(WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.GetString()));
        this->Invalidate(); // a static control draws a new text at once, in its own way
    }
}

HYPER_LINK_MEMBER(LRESULT)::OnCreate(UINT, WPARAM, LPARAM, BOOL&)
{
    Self()->Init();
    return 0;
}

HYPER_LINK_MEMBER(LRESULT)::OnDestroy(UINT, WPARAM, LPARAM, BOOL& handled)
{
    if (m_tip.m_hWnd) {
        m_tip.DestroyWindow();
    }
    handled = FALSE;
    return 0;
}

// ---- activating --------------------------------------------------------------------------------------------------

HYPER_LINK_MEMBER(bool)::Navigate()
{
    const HWND parent = this->GetParent();
    const int id = this->GetDlgCtrlID();
    // Visited first: the parent may close the window, and the object with it.
    if (Has(HLINK_NOTIFYBUTTON)) {
        SetVisited(true);
        NMHDR header = {this->m_hWnd, static_cast<UINT_PTR>(id), NM_CLICK};
        ::SendMessageW(parent, WM_NOTIFY, static_cast<WPARAM>(id), reinterpret_cast<LPARAM>(&header));
        return true;
    }
    if (Has(HLINK_COMMANDBUTTON)) {
        SetVisited(true);
        ::SendMessageW(parent, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED),
                       reinterpret_cast<LPARAM>(this->m_hWnd));
        return true;
    }
    constexpr INT_PTR lastErrorCode = 32; // the shell's answer is an error up to this value
    const auto answer = reinterpret_cast<INT_PTR>(
        ::ShellExecuteW(this->m_hWnd, L"open", m_strHyperLink, nullptr, nullptr, SW_SHOWNORMAL));
    if (answer <= lastErrorCode) {
        ::MessageBeep(MB_ICONWARNING);
        return false;
    }
    SetVisited(true);
    return true;
}

HYPER_LINK_MEMBER(LRESULT)::OnLButtonDown(UINT, WPARAM, LPARAM lParam, BOOL&)
{
    if (IsInLink(lParam)) {
        this->SetFocus();
        this->SetCapture();
    }
    return 0;
}

HYPER_LINK_MEMBER(LRESULT)::OnLButtonUp(UINT, WPARAM, LPARAM lParam, BOOL&)
{
    if (::GetCapture() == this->m_hWnd) {
        ::ReleaseCapture();
        if (IsInLink(lParam)) {
            Self()->Navigate();
        }
    }
    return 0;
}

HYPER_LINK_MEMBER(LRESULT)::OnChar(UINT, WPARAM wParam, LPARAM, BOOL&)
{
    if (wParam == VK_RETURN || wParam == VK_SPACE) {
        Self()->Navigate();
    }
    return 0;
}

HYPER_LINK_MEMBER(LRESULT)::OnGetDlgCode(UINT, WPARAM, LPARAM lParam, BOOL&)
{
    // Enter has to be asked for, or the dialog presses its default button instead.
    const auto* message = reinterpret_cast<const MSG*>(lParam);
    const bool isEnter = message && message->message == WM_KEYDOWN && message->wParam == VK_RETURN;
    return isEnter ? DLGC_WANTCHARS | DLGC_WANTMESSAGE : DLGC_WANTCHARS;
}

// ---- mouse -------------------------------------------------------------------------------------------------------

HYPER_LINK_MEMBER(LRESULT)::OnMouseMessage(UINT, WPARAM, LPARAM, BOOL& handled)
{
    if (m_tip.m_hWnd) {
        m_tip.RelayEvent(*this->GetCurrentMessage());
    }
    handled = FALSE;
    return 0;
}

HYPER_LINK_MEMBER(LRESULT)::OnMouseMove(UINT, WPARAM, LPARAM lParam, BOOL& handled)
{
    SetHover(IsInLink(lParam));
    handled = FALSE;
    return 0;
}

HYPER_LINK_MEMBER(LRESULT)::OnMouseLeave(UINT, WPARAM, LPARAM, BOOL&)
{
    SetHover(false);
    return 0;
}

HYPER_LINK_MEMBER(void)::SetHover(bool hover)
{
    if (std::exchange(m_bHover, hover) == hover) {
        return;
    }
    if (hover) {
        TRACKMOUSEEVENT track = {sizeof track, TME_LEAVE, this->m_hWnd, 0};
        ::TrackMouseEvent(&track);
    }
    if (Has(HLINK_UNDERLINEHOVER)) {
        this->Invalidate();
    }
}

HYPER_LINK_MEMBER(LRESULT)::OnSetCursor(UINT, WPARAM, LPARAM, BOOL& handled)
{
    POINT point = {};
    if (::GetCursorPos(&point) && this->ScreenToClient(&point) && ::PtInRect(&m_rcLink, point)) {
        ::SetCursor(m_hCursor);
        return TRUE;
    }
    handled = FALSE;
    return FALSE;
}

// ---- painting ----------------------------------------------------------------------------------------------------

HYPER_LINK_MEMBER(LinkFonts)::GetFonts() const noexcept
{
    const bool plain = Has(HLINK_UNDERLINEHOVER) && !m_bHover;
    return {m_hFontNormal, plain ? m_hFontNormal : m_hFontLink};
}

HYPER_LINK_MEMBER(void)::DoEraseBackground(HDC dc)
{
    const RECT client = this->GetClientRect();
    auto brush = reinterpret_cast<HBRUSH>(::SendMessageW(this->GetParent(), WM_CTLCOLORSTATIC,
                                                         reinterpret_cast<WPARAM>(dc),
                                                         reinterpret_cast<LPARAM>(this->m_hWnd)));
    ::FillRect(dc, &client, brush ? brush : ::GetSysColorBrush(COLOR_BTNFACE));
}

HYPER_LINK_MEMBER(void)::DoPaint(HDC dc)
{
    COLORREF color = Self()->GetLinkColor();
    if (!this->IsWindowEnabled()) {
        color = ::GetSysColor(COLOR_GRAYTEXT);
        ::SetTextColor(dc, color);
    }
    ::SetBkMode(dc, TRANSPARENT);
    PaintLink(dc, m_parts, GetFonts(), m_layout, color, TextFormat());
    if (::GetFocus() == this->m_hWnd) {
        Self()->DrawFocus(dc);
    }
}

HYPER_LINK_MEMBER(void)::PaintAll(HDC dc)
{
    const CSavedDC saved(dc);
    Self()->DoEraseBackground(dc);
    Self()->DoPaint(dc);
}

HYPER_LINK_MEMBER(LRESULT)::OnEraseBackground(UINT, WPARAM, LPARAM, BOOL& handled)
{
    handled = m_bPaintLabel; // painting erases, so that nothing flickers
    return TRUE;
}

HYPER_LINK_MEMBER(LRESULT)::OnPaint(UINT, WPARAM, LPARAM, BOOL& handled)
{
    handled = m_bPaintLabel;
    if (m_bPaintLabel) {
        const CPaintDC dc(this->m_hWnd);
        PaintAll(dc.get());
    }
    return 0;
}

HYPER_LINK_MEMBER(LRESULT)::OnPrintClient(UINT, WPARAM wParam, LPARAM, BOOL& handled)
{
    handled = m_bPaintLabel;
    if (m_bPaintLabel) {
        PaintAll(reinterpret_cast<HDC>(wParam));
    }
    return 0;
}

HYPER_LINK_MEMBER(LRESULT)::OnFocus(UINT, WPARAM, LPARAM, BOOL& handled)
{
    this->Invalidate();
    handled = FALSE;
    return 0;
}

HYPER_LINK_MEMBER(LRESULT)::OnEnable(UINT, WPARAM, LPARAM, BOOL& handled)
{
    this->Invalidate();
    handled = m_bPaintLabel; // a static control would draw itself
    return 0;
}

// ---- text, font, size --------------------------------------------------------------------------------------------

HYPER_LINK_MEMBER(LRESULT)::OnSetText(UINT, WPARAM, LPARAM lParam, BOOL& handled)
{
    handled = m_bPaintLabel;
    if (m_bPaintLabel) {
        SetLabel(CString(reinterpret_cast<const wchar_t*>(lParam)));
    }
    return TRUE;
}

HYPER_LINK_MEMBER(LRESULT)::OnGetFont(UINT, WPARAM, LPARAM, BOOL& handled)
{
    handled = m_bPaintLabel;
    return reinterpret_cast<LRESULT>(m_hFontNormal);
}

HYPER_LINK_MEMBER(LRESULT)::OnSetFont(UINT, WPARAM wParam, LPARAM lParam, BOOL& handled)
{
    handled = m_bPaintLabel;
    if (m_bPaintLabel && wParam != 0) {
        m_hFontNormal = reinterpret_cast<HFONT>(wParam);
        if (!m_hFontLink || m_bInternalLinkFont) {
            MakeInternalLinkFont();
        }
        Recalculate();
        if (LOWORD(lParam) != 0) {
            this->UpdateWindow();
        }
    }
    return 0;
}

HYPER_LINK_MEMBER(LRESULT)::OnSize(UINT, WPARAM, LPARAM, BOOL& handled)
{
    Recalculate();
    handled = FALSE;
    return 0;
}

#undef HYPER_LINK_MEMBER
