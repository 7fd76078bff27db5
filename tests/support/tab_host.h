// A tabbed dialog as a tab page sees one: a frame, within it a parent window that hears which tab the page asks for, and
// a loop that offers each message to the page's filter.
#pragma once

#include "include/page_context.h"

#include <windows.h>

#include <vector>

using TabFunction = CTabPage (*)(PageContext*);

class CTabHost
{
public:
    CTabHost();
    ~CTabHost(); // the page goes with it
    CTabHost(const CTabHost&) = delete;
    CTabHost& operator=(const CTabHost&) = delete;

    HWND GetWindow() const { return m_window; } // the frame

    // Makes and shows the page. Null when it could not be made.
    HWND Open(TabFunction page, PageContext& context);
    void Close(); // takes the page away

    // Runs until the page asks for another tab, or the window goes: PAGE_MESSAGE_PREVIOUS_TAB, PAGE_MESSAGE_NEXT_TAB,
    // or 0.
    UINT Run();

    // Whatever the page has asked for since the last Open.
    const std::vector<UINT>& GetAsked() const { return m_asked; }

private:
    static LRESULT CALLBACK FrameProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    static LRESULT CALLBACK PaneProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    HWND m_window = nullptr; // the frame
    HWND m_pane = nullptr;   // the pages' parent
    CTabPage m_page;
    std::vector<UINT> m_asked;
    bool m_bRunning = false;
};
