// The place in which a tab page stands: the parent of all pages, of which it shows one at a time. Where the page is
// larger than the place, it scrolls, and follows the focus.
//
// A window of a class of its own, since the messages that a page sends to its parent have the numbers of dialog
// messages (DM_SETDEFID, DM_REPOSITION).
#pragma once

#include "window/message_map.h"
#include "window/window_impl.h"

#include <windows.h>

// What a page reports to its parent.
class IPageViewEvents
{
public:
    virtual void OnPreviousTab() = 0;
    virtual void OnNextTab() = 0;
    // A key on the page that the page has no use of its own for. True when it leads elsewhere and is used up.
    virtual bool OnPageKey(MSG& message) = 0;
    // What MayPageBeLeft answers has changed.
    virtual void OnLeavingChanged() = 0;
    // The page's window is being destroyed.
    virtual void OnPageGone(HWND page) = 0;

protected:
    ~IPageViewEvents() = default;
};

// Stands for a button of the dialog, which a page disables in its parent while it can't be left. Nobody sees it.
class CWayOut : public CWindowImpl<CWayOut>
{
public:
    DECLARE_WND_CLASS(L"RolloutWayOut")

    // Borrows the listener.
    explicit CWayOut(IPageViewEvents& events) : m_events(events) {}

    BEGIN_MSG_MAP(CWayOut)
    MESSAGE_HANDLER(WM_ENABLE, OnEnable)
    END_MSG_MAP()

private:
    LRESULT OnEnable(UINT, WPARAM, LPARAM, BOOL&)
    {
        m_events.OnLeavingChanged();
        return 0;
    }

    IPageViewEvents& m_events;
};

class CPageView : public CWindowImpl<CPageView>
{
public:
    DECLARE_WND_CLASS(L"RolloutPageView")

    // Borrows the listener.
    explicit CPageView(IPageViewEvents& events) : m_events(events), m_back(events), m_cancel(events) {}

    // Below `dialog` in front of its other controls; empty until ShowPage.
    [[nodiscard]] bool CreateIn(HWND dialog, UINT_PTR id);

    // Hides the page that stands there. `size` is the page's own: it grows with the view and never gets smaller.
    void ShowPage(HWND page, SIZE size);
    HWND GetPage() const { return m_page; }
    // False while a page has disabled the view's controls 1001 or 2.
    bool MayPageBeLeft() const { return m_back.IsWindowEnabled() && m_cancel.IsWindowEnabled(); }
    // For a page that went without enabling them again.
    void LetPageBeLeft();
    // Scrolls so that the control is seen, if it is one of the page's.
    void ScrollTo(HWND control);

    BEGIN_MSG_MAP(CPageView)
    MESSAGE_HANDLER(PREVIOUS_TAB, OnPrevious)
    MESSAGE_HANDLER(NEXT_TAB, OnNext)
    MESSAGE_HANDLER(KEY_OF_PAGE, OnKey)
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
    static constexpr UINT KEY_OF_PAGE = 1032;

    LRESULT OnPrevious(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnNext(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnKey(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnSize(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnScroll(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnWheel(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnParentNotify(UINT, WPARAM, LPARAM, BOOL&);

    void Arrange();
    void ScrollBy(int bar, int distance);
    void MoveBar(int bar, int position);
    void PlacePage() const;

    IPageViewEvents& m_events;
    CWayOut m_back;           // 1001
    CWayOut m_cancel;         // 2
    HWND m_page = nullptr;    // its own
    SIZE m_pageSize = {};     // that it needs
    bool m_arranging = false; // scroll bars come and go, which changes the size again
};
