#include "setup/change_watch.h"

#include "setup/control_snapshot.h"

#include <commctrl.h>

namespace {

constexpr int GO_ON = 1; // no veto

// Without memory the snapshot is empty, which at worst has Cancel ask for nothing.
std::vector<CString> TryReadControls(HWND page) noexcept
try {
    return ReadControls(page);
} catch (...) {
    return {};
}

} // namespace

CChangeWatch* CChangeWatch::s_current = nullptr;

CChangeWatch::CChangeWatch()
{
    s_current = this;
}

CChangeWatch::~CChangeWatch()
{
    s_current = nullptr;
}

void CChangeWatch::Watch(PageContext& context)
{
    m_entered.clear();
    m_left.clear();
    context.postInitHooks.push_back(OnPageUp);
}

void CChangeWatch::NotePage()
{
    Note(m_left != m_entered);
}

void CChangeWatch::Forget()
{
    m_entered.clear();
    m_left.clear();
    m_bChanged = false;
}

int CChangeWatch::OnPageUp(PageContext* context)
{
    // A page runs the hooks again when it has changed itself; what was changed until then is a change nevertheless.
    if (s_current && s_current->m_page != context->hParent) {
        s_current->m_page = context->hParent;
        s_current->m_entered = TryReadControls(context->hParent);
        s_current->m_left = s_current->m_entered;
        SetWindowSubclass(context->hParent, PageProcedure, 0, 0);
    }
    return GO_ON;
}

LRESULT CALLBACK CChangeWatch::PageProcedure(HWND page, UINT message, WPARAM wParam, LPARAM lParam,
                                             UINT_PTR id, DWORD_PTR)
{
    if (message == WM_DESTROY) { // the controls are still there
        if (s_current) {
            s_current->m_left = TryReadControls(page);
            s_current->m_page = nullptr; // the next page may get the same handle
        }
        RemoveWindowSubclass(page, PageProcedure, id);
    }
    return DefSubclassProc(page, message, wParam, lParam);
}
