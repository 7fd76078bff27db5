// The place in which a tab page stands: the parent of all pages, of which it shows one at a time. Where the page is
// larger than the place, it scrolls, and follows the focus.
//
// A window of a class of its own, since the messages that a page sends to its parent have the numbers of dialog
// messages (DM_SETDEFID, DM_REPOSITION).
#pragma once

#include "window/message_map.h"
#include "window/window_impl.h"

#include <windows.h>

// What a page tells its parent.
class IPageViewEvents
{
public:
    virtual void OnPreviousTab() = 0;
    virtual void OnNextTab() = 0;
    // The page's window is being destroyed.
    virtual void OnPageGone(HWND page) = 0;

protected:
    ~IPageViewEvents() = default;
};

class CPageView : public CWindowImpl<CPageView>
{
public:
    DECLARE_WND_CLASS(L"RolloutPageView")

    // Borrows the listener.
    explicit CPageView(IPageViewEvents& events) : m_events(events) {}

    // Below `dialog` in front of its other controls; empty until ShowPage.
    [[nodiscard]] bool CreateIn(HWND dialog, UINT_PTR id);

    // Hides the page that stands there. `size` is the page's own: it grows with the view and never gets smaller.
    void ShowPage(HWND page, SIZE size);
    HWND GetPage() const { return m_page; }
    // Scrolls so that the control is seen, if it is one of the page's.
    void ScrollTo(HWND control);

    BEGIN_MSG_MAP(CPageView)
    MESSAGE_HANDLER(PREVIOUS_TAB, OnPrevious)
    MESSAGE_HANDLER(NEXT_TAB, OnNext)
    MESSAGE_HANDLER(WM_SIZE, OnSize)
    MESSAGE_HANDLER(WM_HSCROLL, OnScroll)
    MESSAGE_HANDLER(WM_VSCROLL, OnScroll)
    MESSAGE_HANDLER(WM_MOUSEWHEEL, OnWheel)
    MESSAGE_HANDLER(WM_PARENTNOTIFY, OnParentNotify)
    END_MSG_MAP()

    static WNDCLASSEXW GetWndClassInfo();

private:
    static constexpr UINT PREVIOUS_TAB = 1025;
    static constexpr UINT NEXT_TAB = 1026;

    LRESULT OnPrevious(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnNext(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnSize(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnScroll(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnWheel(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnParentNotify(UINT, WPARAM, LPARAM, BOOL&);

    void Arrange();
    void ScrollBy(int bar, int distance);
    void MoveBar(int bar, int position);
    void PlacePage() const;

    IPageViewEvents& m_events;
    HWND m_page = nullptr;    // its own
    SIZE m_pageSize = {};     // that it needs
    bool m_arranging = false; // scroll bars come and go, which changes the size again
};
