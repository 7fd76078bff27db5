#include "slimhtml/window_binding.h"

#include <exception>
#include <map>
#include <mutex>
#include <optional>

namespace {

struct Bound
{
    WNDPROC former;
    IWindowMessages* receiver; // null once unbound below another procedure
    WindowBinding* binding;
};

std::mutex boundWindowsLock;

// Windows of all threads, by handle: a subclass by the system's own table costs a hundred times more a message.
std::map<HWND, Bound>& BoundWindows()
{
    static std::map<HWND, Bound> windows;
    return windows;
}

std::optional<Bound> FindBound(HWND window)
{
    const std::lock_guard lock(boundWindowsLock);
    const auto found = BoundWindows().find(window);
    return found == BoundWindows().end() ? std::nullopt : std::optional<Bound>(found->second);
}

void Forget(HWND window)
{
    const std::lock_guard lock(boundWindowsLock);
    BoundWindows().erase(window);
}

WNDPROC CurrentProcedure(HWND window)
{
    return reinterpret_cast<WNDPROC>(GetWindowLongPtrW(window, GWLP_WNDPROC));
}

void PutProcedure(HWND window, WNDPROC procedure)
{
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure));
}

} // namespace

bool WindowBinding::Bind(HWND window, IWindowMessages* receiver)
{
    if (m_window || GetWindowThreadProcessId(window, nullptr) != GetCurrentThreadId()) {
        return false;
    }
    std::optional<Bound> left = FindBound(window);
    if (left && left->receiver) {
        return false;
    }
    m_window = window;
    m_former = left ? left->former : CurrentProcedure(window);
    {
        const std::lock_guard lock(boundWindowsLock);
        BoundWindows()[window] = {m_former, receiver, this};
    }
    if (!left) {
        PutProcedure(window, Procedure);
    }
    return true;
}

void WindowBinding::Unbind()
{
    if (!m_window) {
        return;
    }
    if (CurrentProcedure(m_window) == Procedure) {
        PutProcedure(m_window, m_former);
        Forget(m_window);
    } else {
        const std::lock_guard lock(boundWindowsLock);
        BoundWindows()[m_window] = {m_former, nullptr, nullptr};
    }
    m_window = nullptr;
}

LRESULT WindowBinding::CallFormer(UINT message, WPARAM wParam, LPARAM lParam) const
{
    return CallWindowProcW(m_former, m_window, message, wParam, lParam);
}

LRESULT CALLBACK WindowBinding::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    const std::optional<Bound> bound = FindBound(window);
    if (!bound) {
        return DefWindowProcW(window, message, wParam, lParam);
    }
    if (message == WM_NCDESTROY) {
        if (CurrentProcedure(window) == Procedure) {
            PutProcedure(window, bound->former);
        }
        Forget(window);
        if (bound->receiver) {
            bound->binding->m_window = nullptr;
            bound->receiver->OnWindowGone();
        }
        return CallWindowProcW(bound->former, window, message, wParam, lParam);
    }
    if (!bound->receiver) {
        return CallWindowProcW(bound->former, window, message, wParam, lParam);
    }
    try {
        return bound->receiver->OnMessage(message, wParam, lParam);
    } catch (const std::exception&) {
        // Out of memory, say: the system's own answer also takes the paint message off the queue.
        return DefWindowProcW(window, message, wParam, lParam);
    }
}
