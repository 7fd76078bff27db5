// Puts an object in charge of a control's messages: replaces the window procedure and gives it back.
#pragma once

#include <windows.h>

class IControlMessages
{
public:
    virtual LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) = 0;
    // The control is going; the binding has ended.
    virtual void OnControlGone() = 0;

protected:
    ~IControlMessages() = default;
};

class CControlSubclass
{
public:
    // The receiver must outlive this object.
    explicit CControlSubclass(IControlMessages* receiver) : m_receiver(receiver) {}
    ~CControlSubclass() { Unbind(); }
    CControlSubclass(const CControlSubclass&) = delete;
    CControlSubclass& operator=(const CControlSubclass&) = delete;

    // False when the window is none of this thread's, or has such an object already.
    [[nodiscard]] bool Bind(HWND window);
    // If someone has put a procedure of their own above this one, messages pass through it untouched from now on.
    void Unbind();

    [[nodiscard]] HWND Window() const { return m_window; }
    // What the control would do by itself.
    LRESULT CallFormer(UINT message, WPARAM wParam, LPARAM lParam) const;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void OnLastMessage();

    IControlMessages* m_receiver;
    HWND m_window = nullptr;
    WNDPROC m_former = nullptr;
};
