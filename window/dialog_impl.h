// CDialogImpl: a dialog, modeless or modal, from a template of the module's resources.
//
// T defines the message map and `enum { IDD = ... }`. The virtual operations stand in the order: ProcessWindowMessage,
// the destructor, GetDialogProc, OnFinalMessage. A handler's result becomes the message's result; the few messages
// whose result a dialog procedure returns directly need nothing special. An object that goes before its window takes
// the window along.
#pragma once

#include "window/window_impl.h"

#include <windows.h>

// What a dialog procedure returns for a message that a handler answered with `result`.
INT_PTR DialogProcedureResult(HWND dialog, UINT message, LRESULT result) noexcept;

template <class TBase = CWindow>
class CDialogImplBase : public CWindowImplRoot<TBase>
{
public:
    virtual ~CDialogImplBase() { LeaveWindow(); }

    virtual DLGPROC GetDialogProc() { return DialogProc; }
    // The last call for a window: the handle is no window any more, the object may delete itself.
    virtual void OnFinalMessage(HWND) {}

    // Ends DoModal with the result.
    BOOL EndDialog(INT_PTR result) noexcept { return ::EndDialog(this->m_hWnd, result); }

    // Dialog units to pixels.
    BOOL MapDialogRect(RECT* rectangle) const noexcept { return ::MapDialogRect(this->m_hWnd, rectangle); }

    // A dialog has no procedure below its own; the system answers what the map leaves.
    LRESULT DefWindowProc() const noexcept { return 0; }

    static INT_PTR CALLBACK DialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

protected:
    CDialogImplBase() = default;

    HWND CreateFromTemplate(int id, HWND parent, LPARAM parameter);
    INT_PTR RunFromTemplate(int id, HWND parent, LPARAM parameter);
    // `run` shows the dialog by GetDialogProc and comes back at its end, with its result. -1 when the object has a window.
    template <class Run>
    INT_PTR RunWithBinding(Run run);

private:
    void LeaveWindow() noexcept;

    // Its address is the binding's key; it is never read.
    inline static const char s_key = 0;

    CExceptionBoundary* m_modalCall = nullptr; // while DoModal runs
};

// TImpl: a CDialogImplBase, or a class of T's own that derives from one.
template <class T, class TImpl = CDialogImplBase<CWindow>>
class CDialogImpl : public TImpl
{
public:
    using TImpl::TImpl;

    // Modeless. Null with GetLastError on failure; what the init handler throws comes out here.
    HWND Create(HWND parent, LPARAM parameter = 0)
    {
        return this->CreateFromTemplate(static_cast<int>(T::IDD), parent, parameter);
    }

    // Modal: the result of EndDialog, -1 with GetLastError when the dialog can't be made. An exception from a handler
    // ends the dialog and comes out here.
    INT_PTR DoModal(HWND parent = ::GetActiveWindow(), LPARAM parameter = 0)
    {
        return this->RunFromTemplate(static_cast<int>(T::IDD), parent, parameter);
    }
};

template <class TBase>
HWND CDialogImplBase<TBase>::CreateFromTemplate(int id, HWND parent, LPARAM parameter)
{
    if (this->m_hWnd) {
        SetLastError(ERROR_INVALID_HANDLE);
        return nullptr;
    }
    CExceptionBoundary boundary;
    this->m_creationFailed = false;
    HWND window = nullptr;
    {
        const CPendingBinding pending(&s_key, this, nullptr);
        window = ::CreateDialogParamW(_Module.GetResourceInstance(), MAKEINTRESOURCEW(id), parent,
                                      GetDialogProc(), parameter);
    }
    if (window && boundary.HasException()) {
        ::DestroyWindow(window);
    }
    boundary.Rethrow();
    return window;
}

template <class TBase>
template <class Run>
INT_PTR CDialogImplBase<TBase>::RunWithBinding(Run run)
{
    if (this->m_hWnd) {
        SetLastError(ERROR_INVALID_HANDLE);
        return -1;
    }
    CExceptionBoundary boundary;
    m_modalCall = &boundary;
    INT_PTR result = -1;
    {
        const CPendingBinding pending(&s_key, this, nullptr);
        result = run();
    }
    m_modalCall = nullptr;
    boundary.Rethrow();
    return result;
}

template <class TBase>
INT_PTR CDialogImplBase<TBase>::RunFromTemplate(int id, HWND parent, LPARAM parameter)
{
    return RunWithBinding([=, this] {
        return ::DialogBoxParamW(_Module.GetResourceInstance(), MAKEINTRESOURCEW(id), parent, GetDialogProc(),
                                 parameter);
    });
}

template <class TBase>
INT_PTR CALLBACK CDialogImplBase<TBase>::DialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    const WindowBinding binding = FindBinding(window, &s_key);
    auto* self = static_cast<CDialogImplBase*>(binding.object);
    if (!self) {
        if (message == WM_NCDESTROY) {
            UnbindWindow(window, &s_key);
        }
        return FALSE;
    }
    if (!self->m_hWnd && message != WM_NCDESTROY) {
        self->m_hWnd = window; // the first message of a window that is being made
        if (self->m_modalCall) {
            self->m_modalCall->SetModalDialog(window);
        }
    }
    LRESULT result = 0;
    const bool handled = self->RunMessageMap(window, message, wParam, lParam, result);
    const INT_PTR answer = handled ? DialogProcedureResult(window, message, result) : FALSE;
    if (message == WM_NCDESTROY) {
        UnbindWindow(window, &s_key);
        if (self->m_modalCall) {
            self->m_modalCall->SetModalDialog(nullptr);
        }
        self->ForgetWindow();
    }
    if (self->IsLastMessage()) {
        try {
            self->OnFinalMessage(window);
        } catch (...) {
            KeepCurrentException();
        }
    }
    return answer;
}

template <class TBase>
void CDialogImplBase<TBase>::LeaveWindow() noexcept
{
    // A handle that was merely attached is not this object's to destroy.
    if (this->m_hWnd && FindBinding(this->m_hWnd, &s_key).object == this) {
        ForgetObject(this->m_hWnd, &s_key);
        ::DestroyWindow(std::exchange(this->m_hWnd, nullptr));
    }
}
