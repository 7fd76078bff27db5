// Whether something was entered on the wizard pages of a run, so that leaving would lose it.
#pragma once

#include "base/string.h"
#include "include/page_context.h"

#include <windows.h>

#include <vector>

// Looks at what a page's controls hold when the page has come up and when its window goes, whichever way the page is
// left. One object at a time, as a hook has no argument of its own.
class CChangeWatch
{
public:
    CChangeWatch();
    ~CChangeWatch();
    CChangeWatch(const CChangeWatch&) = delete;
    CChangeWatch& operator=(const CChangeWatch&) = delete;

    // Call it with the context before the page is shown.
    void Watch(PageContext& context);
    // Call it after the page.
    void NotePage();
    [[nodiscard]] bool HasChanges() const { return m_bChanged; }
    void Note(bool changed) { m_bChanged = m_bChanged || changed; }
    // What was entered is gone, also for a NotePage behind a page that isn't watched.
    void Forget();

private:
    static int OnPageUp(PageContext* context);
    static LRESULT CALLBACK PageProcedure(HWND page, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                          DWORD_PTR data);

    static CChangeWatch* s_current;

    HWND m_page = nullptr; // the page that is up
    std::vector<CString> m_entered;
    std::vector<CString> m_left;
    bool m_bChanged = false;
};
