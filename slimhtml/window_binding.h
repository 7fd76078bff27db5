// Puts an object in charge of a window's messages: replaces the window procedure and gives it back.
#pragma once

#include <windows.h>

class IWindowMessages
{
public:
    virtual LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) = 0;
    // The window is going; the binding has ended.
    virtual void OnWindowGone() = 0;

protected:
    ~IWindowMessages() = default;
};

class WindowBinding
{
public:
    WindowBinding() = default;
    ~WindowBinding() { Unbind(); }
    WindowBinding(const WindowBinding&) = delete;
    WindowBinding& operator=(const WindowBinding&) = delete;

    // False when the window is none of this thread's, or has a binding already. The receiver must outlive the binding.
    [[nodiscard]] bool Bind(HWND window, IWindowMessages* receiver);
    // If someone has put a procedure of their own above this one, messages pass through it untouched from now on.
    void Unbind();

    [[nodiscard]] HWND Window() const { return m_window; }
    // What the window would do by itself.
    LRESULT CallFormer(UINT message, WPARAM wParam, LPARAM lParam) const;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    HWND m_window = nullptr;
    WNDPROC m_former = nullptr;
};
