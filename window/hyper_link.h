// A link: a control whose label, or a part of it, opens a target or sends the parent a command.
//
//   HLINK_...             the extended style bits
//   CHyperLinkImpl<T>     to derive from: T may hide GetLinkColor, DoEraseBackground, DoPaint and DrawFocus
//   CHyperLink            to use
//
// The link is activated by a mouse release inside the link rectangle, by Enter and by the space bar. A label may hold
// tags ("See <A>the terms</A>."): then only the text between them is the link. The control's window text is the label
// without the tags, so that assistive tools read what is seen.
#pragma once

#include "window/controls.h"
#include "window/drawing_handles.h"
#include "window/gdi.h"
#include "window/hyper_link_paint.h"
#include "window/window_impl.h"

#include <windows.h>

#include <shellapi.h>

#include <utility>

constexpr DWORD HLINK_NOTUNDERLINED = 0x000;
constexpr DWORD HLINK_UNDERLINED = 0x001;
constexpr DWORD HLINK_UNDERLINEHOVER = 0x002; // underlined while the mouse is over it
constexpr DWORD HLINK_COMMANDBUTTON =
    0x004; // sends WM_COMMAND with the control's id instead of opening the target
constexpr DWORD HLINK_NOTIFYBUTTON = 0x00C; // sends WM_NOTIFY with NM_CLICK instead
constexpr DWORD HLINK_USETAGS = 0x010;
constexpr DWORD HLINK_USETAGSBOLD = 0x030; // the text between the tags is bold
constexpr DWORD HLINK_NOTOOLTIP = 0x040;   // otherwise the target is shown as tooltip
constexpr DWORD HLINK_SINGLELINE = 0x100;

template <class T, class TBase = CWindow, class TWinTraits = CControlWinTraits>
class CHyperLinkImpl : public CWindowImpl<T, TBase, TWinTraits>
{
public:
    using Base = CWindowImpl<T, TBase, TWinTraits>;

    DECLARE_WND_CLASS(L"RolloutHyperLink")

    CHyperLinkImpl() = default;
    ~CHyperLinkImpl() override
    {
        if (m_tip.m_hWnd) {
            m_tip.DestroyWindow();
        }
    }

    // ---- what is set before or after binding -------------------------------------------------------------------

    DWORD GetHyperLinkExtendedStyle() const noexcept { return m_dwExtendedStyle; }
    // The bits of the mask (0 for all) are set; returns the former bits.
    DWORD SetHyperLinkExtendedStyle(DWORD style, DWORD mask = 0);

    const CString& GetLabel() const noexcept { return m_strLabel; }
    void SetLabel(const CString& label);

    const CString& GetHyperLink() const noexcept { return m_strHyperLink; }
    void SetHyperLink(const CString& target);

    HFONT GetLinkFont() const noexcept { return m_hFontLink; }
    // Borrows the font.
    void SetLinkFont(HFONT font);
    // Takes the font over.
    void SetLinkFont(CFontOwner font);

    bool IsVisited() const noexcept { return m_bVisited; }
    void SetVisited(bool visited);

    // ---- binding and acting ------------------------------------------------------------------------------------

    // Subclasses the control and makes a link of it.
    BOOL SubclassWindow(HWND control);
    // Does what activating the link does. False when the target can't be opened.
    bool Navigate();

    // The part that reacts to the mouse, in client coordinates.
    const RECT& GetLinkRect() const noexcept { return m_rcLink; }
    // The label has the tagged form and the style asks for it.
    bool HasTags() const noexcept { return m_bTagged; }

    BEGIN_MSG_MAP(CHyperLinkImpl)
    MESSAGE_HANDLER(WM_CREATE, OnCreate)
    MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
    MESSAGE_RANGE_HANDLER(WM_MOUSEFIRST, WM_MOUSELAST, OnMouseMessage)
    MESSAGE_HANDLER(WM_ERASEBKGND, OnEraseBackground)
    MESSAGE_HANDLER(WM_PAINT, OnPaint)
    MESSAGE_HANDLER(WM_PRINTCLIENT, OnPrintClient)
    MESSAGE_HANDLER(WM_SETFOCUS, OnFocus)
    MESSAGE_HANDLER(WM_KILLFOCUS, OnFocus)
    MESSAGE_HANDLER(WM_MOUSEMOVE, OnMouseMove)
    MESSAGE_HANDLER(WM_MOUSELEAVE, OnMouseLeave)
    MESSAGE_HANDLER(WM_LBUTTONDOWN, OnLButtonDown)
    MESSAGE_HANDLER(WM_LBUTTONUP, OnLButtonUp)
    MESSAGE_HANDLER(WM_CHAR, OnChar)
    MESSAGE_HANDLER(WM_GETDLGCODE, OnGetDlgCode)
    MESSAGE_HANDLER(WM_SETCURSOR, OnSetCursor)
    MESSAGE_HANDLER(WM_ENABLE, OnEnable)
    MESSAGE_HANDLER(WM_SETTEXT, OnSetText)
    MESSAGE_HANDLER(WM_GETFONT, OnGetFont)
    MESSAGE_HANDLER(WM_SETFONT, OnSetFont)
    MESSAGE_HANDLER(WM_SIZE, OnSize)
    END_MSG_MAP()

    // ---- what T may hide ---------------------------------------------------------------------------------------

    // The link's colour while the control is enabled.
    COLORREF GetLinkColor() const noexcept { return m_bVisited ? m_clrVisited : m_clrLink; }
    // Fills the client area as the parent asks of static controls.
    void DoEraseBackground(HDC dc);
    // Draws the label and, while the control has the focus, DrawFocus.
    void DoPaint(HDC dc);
    void DrawFocus(HDC dc) { ::DrawFocusRect(dc, &m_rcLink); }

protected:
    // Makes a link of the window: called once the object is bound.
    void Init();
    void Recalculate();
    LinkFonts GetFonts() const noexcept;

    CString m_strLabel;     // with its tags
    CString m_strHyperLink; // the target
    HCURSOR m_hCursor = nullptr;
    HFONT m_hFontNormal = nullptr;    // borrowed
    HFONT m_hFontLink = nullptr;      // borrowed, or m_ownLinkFont
    CFontOwner m_ownLinkFont;         // handed over or made
    bool m_bInternalLinkFont = false; // made here, so it follows the label's font and the style
    RECT m_rcLink = {};
    CToolTipCtrl m_tip;
    COLORREF m_clrLink = RGB(0, 0, 255);
    COLORREF m_clrVisited = RGB(128, 0, 128);
    DWORD m_dwExtendedStyle = HLINK_UNDERLINED;
    bool m_bPaintLabel = true; // label mode: the link draws its text; false for a control with a picture
    bool m_bVisited = false;
    bool m_bHover = false;
    bool m_bTagged = false;

private:
    T* Self() noexcept { return static_cast<T*>(this); }
    bool Has(DWORD style) const noexcept { return (m_dwExtendedStyle & style) == style; }
    bool IsInLink(LPARAM lParam) const noexcept
    {
        // Signed: a captured mouse may be left of or above the control.
        const POINT point = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
        return ::PtInRect(&m_rcLink, point) != FALSE;
    }
    UINT TextFormat() const noexcept { return LinkTextFormat(this->GetStyle(), Has(HLINK_SINGLELINE)); }
    bool IsPicture() const noexcept;
    void LoadFonts();
    void MakeInternalLinkFont();
    void ShowPlainText();
    void PaintAll(HDC dc);
    void SetHover(bool hover);

    LRESULT OnCreate(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnDestroy(UINT, WPARAM, LPARAM, BOOL& handled);
    LRESULT OnMouseMessage(UINT, WPARAM, LPARAM, BOOL& handled);
    LRESULT OnEraseBackground(UINT, WPARAM, LPARAM, BOOL& handled);
    LRESULT OnPaint(UINT, WPARAM, LPARAM, BOOL& handled);
    LRESULT OnPrintClient(UINT, WPARAM wParam, LPARAM, BOOL& handled);
    LRESULT OnFocus(UINT, WPARAM, LPARAM, BOOL& handled);
    LRESULT OnMouseMove(UINT, WPARAM, LPARAM lParam, BOOL& handled);
    LRESULT OnMouseLeave(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnLButtonDown(UINT, WPARAM, LPARAM lParam, BOOL&);
    LRESULT OnLButtonUp(UINT, WPARAM, LPARAM lParam, BOOL&);
    LRESULT OnChar(UINT, WPARAM wParam, LPARAM, BOOL&);
    LRESULT OnGetDlgCode(UINT, WPARAM, LPARAM lParam, BOOL&);
    LRESULT OnSetCursor(UINT, WPARAM, LPARAM, BOOL& handled);
    LRESULT OnEnable(UINT, WPARAM, LPARAM, BOOL& handled);
    LRESULT OnSetText(UINT, WPARAM, LPARAM lParam, BOOL& handled);
    LRESULT OnGetFont(UINT, WPARAM, LPARAM, BOOL& handled);
    LRESULT OnSetFont(UINT, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnSize(UINT, WPARAM, LPARAM, BOOL& handled);

    TaggedLabel m_parts; // what the label shows
    LinkLayout m_layout;
};

#include "window/hyper_link_impl.h"

class CHyperLink final : public CHyperLinkImpl<CHyperLink>
{
};
