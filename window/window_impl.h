// Classes whose objects answer for a window.
//
//   CWindowImplRoot<TBase>       the message under way, reflection, the end of a window
//   CWindowImpl<T, TBase, ...>   creates a window of an own class, or subclasses one
//   CWinTraits, CControlWinTraits   styles for Create
//   DECLARE_WND_CLASS            the name of a window class
//   DECLARE_WND_SUPERCLASS       the name of one that is made from a class of the system
//
// T defines the message map. An object is bound to its window on the window's first message and unbound at
// WM_NCDESTROY; an object that goes before its window takes a window that it created along, and gives a subclassed one
// its former procedure back. What a handler throws doesn't reach the system: see callback_exception.h.
#pragma once

#include "window/callback_exception.h"
#include "window/message_map.h"
#include "window/module.h"
#include "window/window.h"
#include "window/window_binding.h"

#include <windows.h>

#include <utility>

template <class TBase>
class CWindowImplRoot : public TBase, public CMessageMap
{
public:
    CWindowImplRoot() = default;
    CWindowImplRoot(const CWindowImplRoot&) = delete;
    CWindowImplRoot& operator=(const CWindowImplRoot&) = delete;

    // The object may be gone afterwards: OnFinalMessage can delete it.
    BOOL DestroyWindow() noexcept { return ::DestroyWindow(this->m_hWnd); }

    // The message that is being answered; null outside a handler.
    const MSG* GetCurrentMessage() const noexcept { return m_currentMessage; }

    // Sends a control's notification back to it; `handled` becomes false when the message is none.
    LRESULT ReflectNotifications(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled)
    {
        const HWND control = NotifyingControl(this->m_hWnd, message, wParam, lParam);
        if (!control) {
            handled = FALSE;
            return 0;
        }
        return ::SendMessageW(control, message + reflectionOffset, wParam, lParam);
    }

protected:
    ~CWindowImplRoot() = default;

    // False when the map doesn't answer. An exception counts as no answer, so that the default procedure cleans up
    // (a paint message that nobody answers would come for ever).
    bool RunMessageMap(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) noexcept
    {
        const MSG current = {window, message, wParam, lParam, 0, {}};
        const MSG* outer = std::exchange(m_currentMessage, &current);
        bool handled = false;
        try {
            handled = this->ProcessWindowMessage(window, message, wParam, lParam, result) != FALSE;
        } catch (...) {
            KeepCurrentException();
            m_creationFailed = true;
        }
        m_currentMessage = outer;
        return handled;
    }

    // True when the window is gone and no handler of the object is running any more: the time for OnFinalMessage.
    bool IsLastMessage() noexcept { return !m_currentMessage && std::exchange(m_windowIsGone, false); }

    void ForgetWindow() noexcept
    {
        this->m_hWnd = nullptr;
        m_windowIsGone = true;
    }

    bool m_creationFailed = false; // a handler threw; looked at while the window is being made

private:
    const MSG* m_currentMessage = nullptr;
    bool m_windowIsGone = false;
};

// Styles that Create uses when it is given none.
template <DWORD style, DWORD exStyle = 0>
struct CWinTraits
{
    static constexpr DWORD GetWndStyle(DWORD wanted) noexcept { return wanted == 0 ? style : wanted; }
    static constexpr DWORD GetWndExStyle(DWORD wanted) noexcept { return wanted == 0 ? exStyle : wanted; }
};
using CControlWinTraits = CWinTraits<WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_CLIPSIBLINGS>;

#define DECLARE_WND_CLASS(name)                                                                              \
    static const wchar_t* GetWndClassName() noexcept                                                         \
    {                                                                                                        \
        return name;                                                                                         \
    }

// The class has the procedure of `original` (L"EDIT") below T's message map.
#define DECLARE_WND_SUPERCLASS(name, original)                                                               \
    DECLARE_WND_CLASS(name)                                                                                  \
    static const wchar_t* GetOriginalClassName() noexcept                                                    \
    {                                                                                                        \
        return original;                                                                                     \
    }

template <class T, class TBase = CWindow, class TWinTraits = CControlWinTraits>
class CWindowImpl : public CWindowImplRoot<TBase>
{
public:
    CWindowImpl() = default;
    virtual ~CWindowImpl() { LeaveWindow(); }

    virtual WNDPROC GetWindowProc() { return WindowProc; }
    // The last call for a window: the handle is no window any more, the object may delete itself.
    virtual void OnFinalMessage(HWND) {}

    // Creates a window of T's class (DECLARE_WND_CLASS or _SUPERCLASS, registered at the first need). A null rectangle leaves place
    // and size to the system. Null with GetLastError on failure; what a handler throws meanwhile comes out here.
    HWND Create(HWND parent, const RECT* rectangle = nullptr, const wchar_t* name = nullptr, DWORD style = 0,
                DWORD exStyle = 0, UINT_PTR menuOrId = 0, void* parameter = nullptr);

    // Puts the object's procedure before the window's. False for no window, a window that T subclasses already, and
    // an object that has a window.
    BOOL SubclassWindow(HWND window);
    // Gives the window its former procedure back and returns it. Null when there is none, or when another subclass
    // stands above: with `force` the object goes all the same and its procedure hands everything on.
    HWND UnsubclassWindow(BOOL force = FALSE) noexcept;

    // The procedure below this object's.
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam)
    {
        return CallPrevious(m_pfnSuperWindowProc, this->m_hWnd, message, wParam, lParam);
    }
    LRESULT DefWindowProc()
    {
        const MSG* message = this->GetCurrentMessage();
        return CallPrevious(m_pfnSuperWindowProc, message->hwnd, message->message, message->wParam,
                            message->lParam);
    }

    static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    // The class below T's; null for a class of T's own.
    static const wchar_t* GetOriginalClassName() noexcept { return nullptr; }
    // What the window's class has beyond its name. T may hide it. A superclass has what its original has.
    static WNDCLASSEXW GetWndClassInfo()
    {
        WNDCLASSEXW info = {};
        info.cbSize = sizeof info;
        info.style = CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS;
        info.hCursor = LoadCursorW(nullptr, IDC_ARROW);
        info.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
        return info;
    }

protected:
    WNDPROC m_pfnSuperWindowProc = ::DefWindowProcW;

private:
    enum class Origin
    {
        None,
        Created,
        Subclassed
    };

    static LRESULT CallPrevious(WNDPROC previous, HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        return ::CallWindowProcW(previous ? previous : ::DefWindowProcW, window, message, wParam, lParam);
    }
    static LRESULT PassOn(const WindowBinding& binding, HWND window, UINT message, WPARAM wParam,
                          LPARAM lParam);
    static bool RestoreProcedure(HWND window, WNDPROC procedure, WNDPROC previous) noexcept;
    void LeaveWindow() noexcept;

    // Its address is the binding's key; it is never read.
    inline static const char s_key = 0;

    WNDPROC m_procedure = nullptr; // what stands in the window
    Origin m_origin = Origin::None;
};

template <class T, class TBase, class TWinTraits>
HWND CWindowImpl<T, TBase, TWinTraits>::Create(HWND parent, const RECT* rectangle, const wchar_t* name,
                                               DWORD style, DWORD exStyle, UINT_PTR menuOrId, void* parameter)
{
    if (this->m_hWnd) {
        SetLastError(ERROR_INVALID_HANDLE);
        return nullptr;
    }
    WNDCLASSEXW info = T::GetWndClassInfo();
    WNDPROC original = nullptr;
    if (T::GetOriginalClassName()) {
        if (!::GetClassInfoExW(nullptr, T::GetOriginalClassName(), &info)) {
            return nullptr;
        }
        original = info.lpfnWndProc;
        info.style &= ~static_cast<UINT>(CS_GLOBALCLASS); // the new class is this binary's alone
    }
    info.lpszClassName = T::GetWndClassName();
    info.hInstance = _Module.GetModuleInstance();
    info.lpfnWndProc = GetWindowProc();
    if (!_Module.RegisterWindowClass(info)) {
        return nullptr;
    }
    m_pfnSuperWindowProc = original ? original : ::DefWindowProcW;
    m_procedure = info.lpfnWndProc;
    m_origin = Origin::Created;
    this->m_creationFailed = false;

    const int x = rectangle ? rectangle->left : CW_USEDEFAULT;
    const int y = rectangle ? rectangle->top : CW_USEDEFAULT;
    const int width = rectangle ? rectangle->right - rectangle->left : CW_USEDEFAULT;
    const int height = rectangle ? rectangle->bottom - rectangle->top : CW_USEDEFAULT;
    CExceptionBoundary boundary;
    HWND window = nullptr;
    {
        const CPendingBinding pending(&s_key, this, original);
        window = ::CreateWindowExW(TWinTraits::GetWndExStyle(exStyle), info.lpszClassName, name,
                                   TWinTraits::GetWndStyle(style), x, y, width, height, parent,
                                   reinterpret_cast<HMENU>(menuOrId), info.hInstance, parameter);
    }
    if (window && (this->m_creationFailed || boundary.HasException())) {
        ::DestroyWindow(window);
        window = nullptr;
    }
    boundary.Rethrow();
    return window;
}

template <class T, class TBase, class TWinTraits>
BOOL CWindowImpl<T, TBase, TWinTraits>::SubclassWindow(HWND window)
{
    if (this->m_hWnd || !::IsWindow(window)) {
        return FALSE;
    }
    const WNDPROC procedure = GetWindowProc();
    const auto previous = reinterpret_cast<WNDPROC>(::GetWindowLongPtrW(window, GWLP_WNDPROC));
    if (!BindWindow(window, &s_key, {true, this, previous})) {
        return FALSE;
    }
    m_pfnSuperWindowProc = previous;
    m_procedure = procedure;
    m_origin = Origin::Subclassed;
    this->m_hWnd = window;
    if (::SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure)) == 0) {
        UnbindWindow(window, &s_key); // another process's window
        this->m_hWnd = nullptr;
        m_origin = Origin::None;
        return FALSE;
    }
    return TRUE;
}

template <class T, class TBase, class TWinTraits>
HWND CWindowImpl<T, TBase, TWinTraits>::UnsubclassWindow(BOOL force) noexcept
{
    const HWND window = this->m_hWnd;
    if (!window || m_origin != Origin::Subclassed) {
        return nullptr;
    }
    if (RestoreProcedure(window, m_procedure, m_pfnSuperWindowProc)) {
        UnbindWindow(window, &s_key);
    } else if (force) {
        ForgetObject(window, &s_key);
    } else {
        return nullptr;
    }
    this->m_hWnd = nullptr;
    m_origin = Origin::None;
    return window;
}

template <class T, class TBase, class TWinTraits>
LRESULT CALLBACK CWindowImpl<T, TBase, TWinTraits>::WindowProc(HWND window, UINT message, WPARAM wParam,
                                                               LPARAM lParam)
{
    // A copy: the handler may unsubclass the window, and the message still has to reach the procedure below.
    const WindowBinding binding = FindBinding(window, &s_key);
    auto* self = static_cast<CWindowImpl*>(binding.object);
    if (!self) {
        return PassOn(binding, window, message, wParam, lParam);
    }
    if (!self->m_hWnd && message != WM_NCDESTROY) {
        self->m_hWnd = window; // the first message of a window that is being made
    }
    LRESULT result = 0;
    if (!self->RunMessageMap(window, message, wParam, lParam, result)) {
        result = CallPrevious(binding.previous, window, message, wParam, lParam);
    }
    if (message == WM_CREATE && self->m_creationFailed) {
        result = -1;
    }
    if (message == WM_NCDESTROY) {
        RestoreProcedure(window, self->m_procedure, binding.previous);
        UnbindWindow(window, &s_key);
        self->m_origin = Origin::None;
        self->ForgetWindow();
    }
    if (self->IsLastMessage()) {
        try {
            self->OnFinalMessage(window);
        } catch (...) {
            KeepCurrentException();
        }
    }
    return result;
}

template <class T, class TBase, class TWinTraits>
LRESULT CWindowImpl<T, TBase, TWinTraits>::PassOn(const WindowBinding& binding, HWND window, UINT message,
                                                  WPARAM wParam, LPARAM lParam)
{
    const LRESULT result = CallPrevious(binding.previous, window, message, wParam, lParam);
    if (message == WM_NCDESTROY) {
        UnbindWindow(window, &s_key);
    }
    return result;
}

// False when another subclass stands above: taking ours out of the middle would cut the chain.
template <class T, class TBase, class TWinTraits>
bool CWindowImpl<T, TBase, TWinTraits>::RestoreProcedure(HWND window, WNDPROC procedure,
                                                         WNDPROC previous) noexcept
{
    if (::GetWindowLongPtrW(window, GWLP_WNDPROC) != reinterpret_cast<LONG_PTR>(procedure)) {
        return false;
    }
    return !previous || ::SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(previous)) != 0;
}

template <class T, class TBase, class TWinTraits>
void CWindowImpl<T, TBase, TWinTraits>::LeaveWindow() noexcept
{
    UnsubclassWindow(TRUE);
    if (m_origin == Origin::Created && this->m_hWnd) {
        ForgetObject(this->m_hWnd, &s_key);
        ::DestroyWindow(std::exchange(this->m_hWnd, nullptr));
    }
}
