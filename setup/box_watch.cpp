#include "setup/box_watch.h"

#include <commctrl.h>

#include <algorithm>
#include <utility>

CBoxWatch* CBoxWatch::s_current = nullptr;

CBoxWatch::CBoxWatch(Handler onAnswered) : m_onAnswered(std::move(onAnswered))
{
    s_current = this;
    m_hook = SetWindowsHookExW(WH_CBT, OnHook, nullptr, GetCurrentThreadId());
}

CBoxWatch::~CBoxWatch()
{
    UnhookWindowsHookEx(m_hook);
    for (const OpenBox& box : m_open) {
        RemoveWindowSubclass(box.view.window, BoxProcedure, 0);
    }
    s_current = nullptr;
}

// A box has all its parts by the time when it comes to the front.
LRESULT CBoxWatch::OnHook(int code, WPARAM wParam, LPARAM lParam)
{
    if (code == HCBT_ACTIVATE && s_current) {
        s_current->OnActivated(reinterpret_cast<HWND>(wParam));
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

// Without memory the box isn't seen.
void CBoxWatch::OnActivated(HWND window) noexcept
try {
    const auto isIt = [window](const OpenBox& box) { return box.view.window == window; };
    if (std::any_of(m_open.begin(), m_open.end(), isIt)) {
        return;
    }
    if (const std::optional<MessageBoxView> view = ReadMessageBox(window)) {
        m_open.push_back({.view = *view});
        SetWindowSubclass(window, BoxProcedure, 0, 0);
    }
} catch (...) {
}

LRESULT CBoxWatch::BoxProcedure(HWND box, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id, DWORD_PTR)
{
    if (message == WM_COMMAND && s_current && HIWORD(wParam) == BN_CLICKED) {
        s_current->OnPressed(box, LOWORD(wParam));
    }
    if (message == WM_DESTROY) {
        RemoveWindowSubclass(box, BoxProcedure, id);
        if (s_current) {
            s_current->OnGone(box);
        }
    }
    return DefSubclassProc(box, message, wParam, lParam);
}

// A key that presses no button of the box, such as Escape on one with Yes and No, comes as a command too.
void CBoxWatch::OnPressed(HWND box, int button)
{
    for (OpenBox& open : m_open) {
        if (open.view.window == box && GetDlgItem(box, button)) {
            open.nButton = button;
        }
    }
}

void CBoxWatch::OnGone(HWND box) noexcept
try {
    const auto found = std::find_if(m_open.begin(), m_open.end(),
                                    [box](const OpenBox& open) { return open.view.window == box; });
    if (found == m_open.end()) {
        return;
    }
    const OpenBox gone = std::move(*found);
    m_open.erase(found);
    if (gone.nButton != 0) {
        m_onAnswered(gone.view, gone.nButton);
    }
} catch (...) {
}
