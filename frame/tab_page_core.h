// CTabPageCore: a page as a child of the host's tabbed dialog, apart from its class. It has no message loop: the host
// forwards messages through the page's CTabPage.
#pragma once

#include "frame/page_core.h"
#include "frame/resource_library.h"
#include "window/drawing_handles.h"

class CTabPageCore : public CPageCore
{
public:
    explicit CTabPageCore(const PageContext* context);

    BEGIN_MSG_MAP(CTabPageCore)
    MESSAGE_HANDLER(WM_MOUSEMOVE, OnMouseMove)
    MESSAGE_HANDLER(WM_CTLCOLORSTATIC, OnStaticColor)
    MESSAGE_RANGE_HANDLER(PAGE_MESSAGE_STORE, PAGE_MESSAGE_STORE_ALL, OnStore)
    MESSAGE_HANDLER(PAGE_MESSAGE_COUNTER, OnCounter)
    COMMAND_HANDLER(IDC_PREVIOUS_TAB, BN_CLICKED, OnPrevious)
    COMMAND_HANDLER(IDC_NEXT_TAB, BN_CLICKED, OnNext)
    CHAIN_MSG_MAP(CPageCore)
    END_MSG_MAP()

    int RunHooks(const PageHookList& hooks) override;
    // All hooks are asked and the last one's word counts. (A wizard page stops at the first veto.)
    int RunLeaveHooks() override;

    BOOL PreTranslateMessage(MSG* message) override;

    void LookupControls() override;

protected:
    // The frame's part of the init, before the page's own. A control that the template lacks is left out.
    void InitFrame();

    // A tab page leaves the focus where the host has it.
    void FocusAtStart(int) {}

    HWND m_hParent; // the host's
    HWND m_hFrame;  // the host's
    RECT m_rcDisplay;
    HWND m_hPrevButton = nullptr;
    HWND m_hNextButton = nullptr;
    CResourceLibrary m_resource;
    CBrushOwner m_labelBackground; // of the label that was painted last

private:
    PageContext HookContext() const;
    WaysOut GetWaysOut() const override { return {m_hNextButton, m_hPrevButton, nullptr, m_hParent}; }
    void Leave(NavigationResult direction) override;
    bool MayBeLeft() const;

    // False when a hook vetoed, the page was busy or its own check refused: the host then stays with this page.
    bool Store();

    // ---- messages
    LRESULT OnMouseMove(UINT, WPARAM, LPARAM, BOOL& handled);
    LRESULT OnStaticColor(UINT, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnStore(UINT, WPARAM, LPARAM, BOOL&) { return Store(); }
    LRESULT OnCounter(UINT, WPARAM wParam, LPARAM, BOOL&);
    LRESULT OnPrevious(WORD, WORD, HWND, BOOL&);
    LRESULT OnNext(WORD, WORD, HWND, BOOL&);
};
