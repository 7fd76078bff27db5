#include "slimhtml/control_subclass.h"

#include "window/window_binding.h"

#include <exception>
#include <utility>

namespace {

const char labelKey = 0; // its address is the key of this module's bindings

WNDPROC CurrentProcedure(HWND window)
{
    return reinterpret_cast<WNDPROC>(GetWindowLongPtrW(window, GWLP_WNDPROC));
}

void PutProcedure(HWND window, WNDPROC procedure)
{
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure));
}

} // namespace

bool CControlSubclass::Bind(HWND window)
{
    if (m_window || GetWindowThreadProcessId(window, nullptr) != GetCurrentThreadId()) {
        return false;
    }
    const WindowBinding left = FindBinding(window, &labelKey);
    if (left.object) {
        return false;
    }
    const WNDPROC former = left.bound ? left.previous : CurrentProcedure(window);
    UnbindWindow(window, &labelKey);
    if (!BindWindow(window, &labelKey, {true, this, former})) {
        return false;
    }
    m_window = window;
    m_former = former;
    // Still in the chain, below a procedure of someone else's: once is enough.
    if (!left.bound) {
        PutProcedure(window, Procedure);
    }
    return true;
}

void CControlSubclass::Unbind()
{
    const HWND window = std::exchange(m_window, nullptr);
    if (!window) {
        return;
    }
    if (CurrentProcedure(window) == Procedure) {
        PutProcedure(window, m_former);
        UnbindWindow(window, &labelKey);
    } else {
        ForgetObject(window, &labelKey);
    }
}

LRESULT CControlSubclass::CallFormer(UINT message, WPARAM wParam, LPARAM lParam) const
{
    return CallWindowProcW(m_former, m_window, message, wParam, lParam);
}

void CControlSubclass::OnLastMessage()
{
    m_window = nullptr;
    m_receiver->OnControlGone();
}

LRESULT CALLBACK CControlSubclass::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    const WindowBinding binding = FindBinding(window, &labelKey);
    if (!binding.bound) {
        return DefWindowProcW(window, message, wParam, lParam);
    }
    auto* self = static_cast<CControlSubclass*>(binding.object);
    if (message == WM_NCDESTROY) {
        if (CurrentProcedure(window) == Procedure) {
            PutProcedure(window, binding.previous);
        }
        UnbindWindow(window, &labelKey);
        if (self) {
            self->OnLastMessage();
        }
        return CallWindowProcW(binding.previous, window, message, wParam, lParam);
    }
    if (!self) {
        return CallWindowProcW(binding.previous, window, message, wParam, lParam);
    }
    try {
        return self->m_receiver->OnMessage(message, wParam, lParam);
    } catch (const std::exception&) {
        // Out of memory, say: the system's own answer also takes the paint message off the queue.
        return DefWindowProcW(window, message, wParam, lParam);
    }
}
