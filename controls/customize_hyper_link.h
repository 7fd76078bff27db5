// The link of the page frame: a CHyperLink with colours of its own.
#pragma once

#include "controls/background_image.h"
#include "controls/link_rules.h"
#include "window/hyper_link.h"

template <class T>
class CCustomizeHyperLinkImpl : public CHyperLinkImpl<T>
{
    using Base = CHyperLinkImpl<T>;

public:
    BEGIN_MSG_MAP(CCustomizeHyperLinkImpl)
    MESSAGE_HANDLER(WM_KILLFOCUS, OnKillFocus)
    CHAIN_MSG_MAP(Base)
    END_MSG_MAP()

    // The browser's colours, which the base reads, stay unused: a page's links have colours of their own.
    COLORREF GetLinkColor() const noexcept
    {
        return LinkColour(this->HasTags(), this->m_bVisited, m_clrPaintA, m_clrPaintB);
    }

    void DoEraseBackground(HDC dc)
    {
        if (m_pBackground) {
            PaintBackgroundImage(this->m_hWnd, dc, *m_pBackground, m_opacity);
        } else {
            Base::DoEraseBackground(dc);
        }
    }

    void DrawFocus(HDC dc)
    {
        Base::DrawFocus(dc);
        m_bFocusDrawn = TRUE;
    }

    COLORREF m_clrPaintA = 0xFFFFFF;
    COLORREF m_clrPaintB = 0xC0C0C0;
    Gdiplus::Image* m_pBackground = nullptr; // the host's; no page sets one
    float m_opacity = 1.0f;
    BOOL m_bFocusDrawn = FALSE; // a focus rectangle is on the screen

private:
    // DrawFocusRect is a pen with exclusive or: drawing the rectangle again removes it, before anything is painted.
    LRESULT OnKillFocus(UINT, WPARAM, LPARAM, BOOL& handled)
    {
        if (m_bFocusDrawn) {
            const CWindowDC dc(this->m_hWnd);
            Base::DrawFocus(dc.get());
            m_bFocusDrawn = FALSE;
        }
        handled = FALSE;
        return 0;
    }
};

class CCustomizeHyperLink : public CCustomizeHyperLinkImpl<CCustomizeHyperLink>
{
public:
    // Makes a link of a page's control that sends the page a command; the page opens the target. Without a control or
    // a target the control stays as the template has it.
    void SetUp(HWND control, const wchar_t* target);

private:
    CFontOwner MakeLinkFont() const;
};
