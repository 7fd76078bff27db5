// How an exception gets past the system: nothing is thrown through a window procedure. It is kept at the procedure's
// edge and thrown on by the innermost call of this library that waits on the thread: a message loop, a modal dialog,
// the creation of a window.
#pragma once

#include <windows.h>

#include <exception>

// Stands in a call that lets the system call window procedures.
class CExceptionBoundary
{
public:
    CExceptionBoundary() noexcept;
    ~CExceptionBoundary();
    CExceptionBoundary(const CExceptionBoundary&) = delete;
    CExceptionBoundary& operator=(const CExceptionBoundary&) = delete;

    bool HasException() const noexcept { return m_exception != nullptr; }
    // Throws what waits, once.
    void Rethrow();

    // The modal dialog that the call shows; an exception ends it, since its loop is the system's.
    void SetModalDialog(HWND dialog) noexcept { m_modalDialog = dialog; }

private:
    friend void KeepCurrentException() noexcept;

    DWORD m_threadId = GetCurrentThreadId();
    CExceptionBoundary* m_outer = nullptr;
    HWND m_modalDialog = nullptr;
    std::exception_ptr m_exception;
};

// Call it in the catch block at the edge of a callback. The first exception counts: those that follow it before it is
// thrown on come of it. Without a boundary on the thread, the handler below gets it.
void KeepCurrentException() noexcept;

// Called with an exception that no boundary waits for (a foreign loop drives the window). The default shows it in a
// message box. Returns the former handler.
using UnawaitedExceptionHandler = void (*)(const std::exception_ptr& exception);
UnawaitedExceptionHandler SetUnawaitedExceptionHandler(UnawaitedExceptionHandler handler) noexcept;
