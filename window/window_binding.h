// Which object answers for which window: the one place that knows.
//
// Several objects may answer for one window, each by a window procedure of its own (a subclass chain). The key, the
// address of something that the procedure has to itself, distinguishes them.
#pragma once

#include <windows.h>

using BindingKey = const void*;

struct WindowBinding
{
    bool bound = false;         // the procedure stands in the window's chain
    void* object = nullptr;     // null when the object went before its window
    WNDPROC previous = nullptr; // the procedure below; null for a dialog
};

// The binding of this window under `key`. On the first message of a window that is just being made it is bound to the
// object that a CPendingBinding of this thread announces.
[[nodiscard]] WindowBinding FindBinding(HWND window, BindingKey key) noexcept;

// False when the window is bound under this key already, or without memory.
[[nodiscard]] bool BindWindow(HWND window, BindingKey key, const WindowBinding& binding) noexcept;

// The object goes, the procedure stays in the chain and hands everything on.
void ForgetObject(HWND window, BindingKey key) noexcept;

// The procedure stands in the chain no more.
void UnbindWindow(HWND window, BindingKey key) noexcept;

// Announces the object for the window that this thread is about to make under `key`.
class CPendingBinding
{
public:
    CPendingBinding(BindingKey key, void* object, WNDPROC previous) noexcept;
    ~CPendingBinding();
    CPendingBinding(const CPendingBinding&) = delete;
    CPendingBinding& operator=(const CPendingBinding&) = delete;

private:
    friend WindowBinding FindBinding(HWND window, BindingKey key) noexcept;

    DWORD m_threadId = GetCurrentThreadId();
    BindingKey m_key;
    WindowBinding m_binding;
    bool m_taken = false;
    CPendingBinding* m_next = nullptr;
};
