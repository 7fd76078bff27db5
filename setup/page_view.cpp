#include "setup/page_view.h"

#include "base/scope_exit.h"
#include "include/navigation.h"
#include "setup/configure_rules.h"

#include <algorithm>

namespace {

constexpr int LINE_PIXELS = 20;
constexpr int BARS[] = {SB_HORZ, SB_VERT};

SCROLLINFO ReadBar(HWND view, int bar)
{
    SCROLLINFO info = {};
    info.cbSize = sizeof info;
    info.fMask = SIF_ALL;
    GetScrollInfo(view, bar, &info);
    return info;
}

} // namespace

WNDCLASSEXW CPageView::GetWndClassInfo()
{
    WNDCLASSEXW info = CWindowImpl::GetWndClassInfo();
    info.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_3DFACE + 1);
    return info;
}

bool CPageView::CreateIn(HWND dialog, UINT_PTR id)
{
    static_assert(PREVIOUS_TAB == PAGE_MESSAGE_PREVIOUS_TAB && NEXT_TAB == PAGE_MESSAGE_NEXT_TAB &&
                  KEY_OF_PAGE == PAGE_MESSAGE_KEY);
    const RECT nowhere = {};
    if (!Create(dialog, &nowhere, nullptr, WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_CLIPSIBLINGS,
                WS_EX_CONTROLPARENT, id) ||
        !m_back.Create(m_hWnd, &nowhere, nullptr, WS_CHILD, 0, NAVIGATION_BACK) ||
        !m_cancel.Create(m_hWnd, &nowhere, nullptr, WS_CHILD, 0, NAVIGATION_CANCEL)) {
        return false;
    }
    return SetWindowPos(HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE) != FALSE;
}

void CPageView::ShowPage(HWND page, SIZE size)
{
    const HWND former = m_page;
    m_page = page;
    m_pageSize = size;
    for (const int bar : BARS) {
        if (former != page) { // one that stands there stays as it is scrolled
            SetScrollPos(m_hWnd, bar, 0, FALSE);
        }
    }
    Arrange();
    ::ShowWindow(page, SW_SHOWNA);
    if (former && former != page) {
        ::ShowWindow(former, SW_HIDE); // last, so that the place is never seen empty
    }
}

void CPageView::LetPageBeLeft()
{
    m_back.EnableWindow();
    m_cancel.EnableWindow();
}

void CPageView::ScrollTo(HWND control)
{
    if (!m_page || control == m_page || !::IsChild(m_page, control)) {
        return;
    }
    RECT place = CWindow(control).GetWindowRect();
    MapWindowPoints(nullptr, m_page, reinterpret_cast<POINT*>(&place), 2);
    const RECT room = GetClientRect();
    const SCROLLINFO across = ReadBar(m_hWnd, SB_HORZ);
    const SCROLLINFO down = ReadBar(m_hWnd, SB_VERT);
    MoveBar(SB_HORZ, ScrollToShow(across.nPos, room.right, m_pageSize.cx, place.left, place.right));
    MoveBar(SB_VERT, ScrollToShow(down.nPos, room.bottom, m_pageSize.cy, place.top, place.bottom));
    PlacePage();
}

LRESULT CPageView::OnPrevious(UINT, WPARAM, LPARAM, BOOL&)
{
    m_events.OnPreviousTab();
    return 0;
}

LRESULT CPageView::OnNext(UINT, WPARAM, LPARAM, BOOL&)
{
    m_events.OnNextTab();
    return 0;
}

LRESULT CPageView::OnKey(UINT, WPARAM, LPARAM message, BOOL&)
{
    return m_events.OnPageKey(*reinterpret_cast<MSG*>(message));
}

LRESULT CPageView::OnSize(UINT, WPARAM, LPARAM, BOOL&)
{
    Arrange();
    return 0;
}

LRESULT CPageView::OnScroll(UINT message, WPARAM wParam, LPARAM, BOOL&)
{
    const int bar = message == WM_HSCROLL ? SB_HORZ : SB_VERT;
    const SCROLLINFO info = ReadBar(m_hWnd, bar);
    switch (LOWORD(wParam)) {
    case SB_LINEUP:
        ScrollBy(bar, -LINE_PIXELS);
        break;
    case SB_LINEDOWN:
        ScrollBy(bar, LINE_PIXELS);
        break;
    case SB_PAGEUP:
        ScrollBy(bar, -static_cast<int>(info.nPage));
        break;
    case SB_PAGEDOWN:
        ScrollBy(bar, static_cast<int>(info.nPage));
        break;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
        ScrollBy(bar, info.nTrackPos - info.nPos);
        break;
    default:
        break;
    }
    return 0;
}

LRESULT CPageView::OnWheel(UINT, WPARAM wParam, LPARAM, BOOL&)
{
    ScrollBy(SB_VERT, -GET_WHEEL_DELTA_WPARAM(wParam) * 3 * LINE_PIXELS / WHEEL_DELTA);
    return 0;
}

LRESULT CPageView::OnParentNotify(UINT, WPARAM wParam, LPARAM lParam, BOOL&)
{
    if (LOWORD(wParam) == WM_DESTROY) {
        const HWND gone = reinterpret_cast<HWND>(lParam);
        if (gone == m_page) {
            m_page = nullptr;
        }
        m_events.OnPageGone(gone);
    }
    return 0;
}

// Gives each bar its range, which shows or hides it, and the page its place.
void CPageView::Arrange()
{
    if (m_arranging || !m_page) {
        return;
    }
    m_arranging = true;
    const scope_exit done([this] { m_arranging = false; });
    for (int round = 0; round < 2; ++round) { // a bar that comes takes room from the other
        const RECT room = GetClientRect();
        for (const int bar : BARS) {
            SCROLLINFO info = {};
            info.cbSize = sizeof info;
            info.fMask = SIF_RANGE | SIF_PAGE;
            info.nMax = static_cast<int>(bar == SB_HORZ ? m_pageSize.cx : m_pageSize.cy) - 1;
            info.nPage = static_cast<UINT>(bar == SB_HORZ ? room.right : room.bottom);
            SetScrollInfo(m_hWnd, bar, &info, TRUE);
        }
    }
    PlacePage();
}

void CPageView::ScrollBy(int bar, int distance)
{
    MoveBar(bar, ReadBar(m_hWnd, bar).nPos + distance);
    PlacePage();
}

void CPageView::MoveBar(int bar, int position)
{
    SetScrollPos(m_hWnd, bar, std::max(position, 0), TRUE); // the system keeps it below the range's end
}

void CPageView::PlacePage() const
{
    const RECT room = GetClientRect();
    const int width = std::max(m_pageSize.cx, room.right);
    const int height = std::max(m_pageSize.cy, room.bottom);
    ::SetWindowPos(m_page, nullptr, -ReadBar(m_hWnd, SB_HORZ).nPos, -ReadBar(m_hWnd, SB_VERT).nPos, width,
                   height, SWP_NOZORDER | SWP_NOACTIVATE);
}
