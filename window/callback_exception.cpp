#include "window/callback_exception.h"

#include "base/string.h"

#include <atomic>
#include <cstring>
#include <utility>

namespace {

SRWLOCK g_boundaryLock = SRWLOCK_INIT;
CExceptionBoundary* g_newestBoundary = nullptr; // of all threads, linked by m_outer

void ShowUnawaitedException(const std::exception_ptr& exception)
{
    CString reason(L"unknown");
    try {
        std::rethrow_exception(exception);
    } catch (const std::exception& known) {
        reason = TextFromUtf8(known.what(), std::strlen(known.what()));
    } catch (...) {
        // not a std::exception: nothing more can be said
    }
    const CString text = L"The last action could not be finished because of an unexpected error (" + reason +
                         L"). Check what it changed before you go on.";
    MessageBoxW(nullptr, text, L"Error", MB_OK | MB_ICONERROR);
}

std::atomic<UnawaitedExceptionHandler> g_unawaitedHandler = ShowUnawaitedException;

} // namespace

CExceptionBoundary::CExceptionBoundary() noexcept
{
    AcquireSRWLockExclusive(&g_boundaryLock);
    m_outer = std::exchange(g_newestBoundary, this);
    ReleaseSRWLockExclusive(&g_boundaryLock);
}

CExceptionBoundary::~CExceptionBoundary()
{
    AcquireSRWLockExclusive(&g_boundaryLock);
    CExceptionBoundary** link = &g_newestBoundary;
    while (*link != this) {
        link = &(*link)->m_outer;
    }
    *link = m_outer;
    ReleaseSRWLockExclusive(&g_boundaryLock);
}

void CExceptionBoundary::Rethrow()
{
    if (m_exception) {
        std::rethrow_exception(std::exchange(m_exception, nullptr));
    }
}

void KeepCurrentException() noexcept
{
    const DWORD threadId = GetCurrentThreadId();
    AcquireSRWLockShared(&g_boundaryLock);
    CExceptionBoundary* boundary = g_newestBoundary;
    while (boundary && boundary->m_threadId != threadId) {
        boundary = boundary->m_outer;
    }
    ReleaseSRWLockShared(&g_boundaryLock);

    // From here on the boundary is this thread's own affair: it stands in a frame further up.
    if (!boundary) {
        g_unawaitedHandler.load()(std::current_exception());
        return;
    }
    if (!boundary->m_exception) {
        boundary->m_exception = std::current_exception();
    }
    if (boundary->m_modalDialog) {
        EndDialog(boundary->m_modalDialog, -1);
    } else {
        PostThreadMessageW(threadId, WM_NULL, 0, 0); // wakes a loop that waits in GetMessageW
    }
}

UnawaitedExceptionHandler SetUnawaitedExceptionHandler(UnawaitedExceptionHandler handler) noexcept
{
    return g_unawaitedHandler.exchange(handler ? handler : ShowUnawaitedException);
}
