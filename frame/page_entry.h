// How the exports show a page: ShowWizardPage runs one and gives its result, CreateTabPage makes one and comes back.
//
// Both form the resource library's path, load it, make it the module of all resources for the length of the call, and
// let no exception out: what failed is shown in a message box, and the module is put back.
#pragma once

#include "base/scope_exit.h"
#include "frame/resource_library.h"
#include "include/navigation.h"
#include "include/page_context.h"
#include "window/callback_exception.h"
#include "window/message_loop.h"
#include "window/module.h"
#include "window/window.h"

#include <memory>
#include <utility>

// Reports that a page failed: the exception under way (call it in a catch block), or why its dialog could not be made. The
// quit message of a page that is gone already is taken off the queue: it would close the box, and the host's loop.
void ShowPageException() noexcept;
void ShowDialogFailure(int dialogId, DWORD error);

// The calling thread's entry in the table of message loops.
class CMessageLoopEntry
{
public:
    // Without memory there is no entry, and the page fails when it looks for its loop.
    explicit CMessageLoopEntry(CMessageLoop& loop) { _Module.AddMessageLoop(&loop); }
    ~CMessageLoopEntry() { _Module.RemoveMessageLoop(); }
    CMessageLoopEntry(const CMessageLoopEntry&) = delete;
    CMessageLoopEntry& operator=(const CMessageLoopEntry&) = delete;
};

// A tab page on the heap that goes with its window. Its export has long returned when the page acts, so whatever it
// does runs with its own library as the module of all resources.
template <class T>
class COwnedTabPage : public T
{
public:
    using T::T;

    BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result,
                              DWORD map = 0) override
    {
        const CResourceInstanceSwap resources(this->m_resource.GetModule());
        return T::ProcessWindowMessage(window, message, wParam, lParam, result, map);
    }

    BOOL PreTranslateMessage(MSG* message) override
    {
        const bool outer = std::exchange(m_bTranslating, true);
        const scope_exit translated([this, outer] {
            m_bTranslating = outer;
            if (!outer) {
                DeleteIfOver();
            }
        });
        const CResourceInstanceSwap resources(this->m_resource.GetModule());
        try {
            return T::PreTranslateMessage(message);
        } catch (...) {
            KeepCurrentException(); // the host's loop calls; a click's handler ends in the same way
            return TRUE;
        }
    }

    void OnFinalMessage(HWND window) override
    {
        T::OnFinalMessage(window);
        m_bWindowIsGone = true;
        if (!m_bTranslating) { // a key may have had the host take the page away
            DeleteIfOver();
        }
    }

    void OwnItself() { m_bOwnsItself = true; }

private:
    void DeleteIfOver()
    {
        if (m_bOwnsItself && m_bWindowIsGone) {
            delete this;
        }
    }

    bool m_bOwnsItself = false;
    bool m_bTranslating = false;
    bool m_bWindowIsGone = false;
};

// A wizard page that knows which of its handlers are under way: it isn't closed under them.
template <class T>
class CCountingWizardPage : public T
{
public:
    using T::T;

    BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result,
                              DWORD map = 0) override
    {
        this->BeginHandler();
        const scope_exit ended([this] { this->EndHandler(); });
        return T::ProcessWindowMessage(window, message, wParam, lParam, result, map);
    }
};

template <class T>
int RunWizardPage(PageContext* context)
{
    CMessageLoop loop;
    const CMessageLoopEntry entry(loop);
    CCountingWizardPage<T> page(context);
    const HWND window = page.Create(nullptr);
    if (!window) {
        ShowDialogFailure(static_cast<int>(T::IDD), ::GetLastError());
        return NAVIGATION_LOAD_FAILED;
    }
    ::ShowWindow(window, SW_SHOW);
    return loop.Run();
}

template <class T>
CTabPage MakeTabPage(PageContext* context)
{
    CTabPage tabPage;
    auto page = std::make_unique<COwnedTabPage<T>>(context);
    const HWND window = page->Create(context->hParent);
    if (!window) {
        ShowDialogFailure(static_cast<int>(T::IDD), ::GetLastError());
        return tabPage;
    }
    tabPage.hWnd = window;
    tabPage.pFilter = page.get();
    page.release()->OwnItself();
    return tabPage;
}

// The body of every ...Dialog export.
template <class T>
int ShowWizardPage(PageContext* context) noexcept
try {
    CResourceLibrary library;
    if (!library.Load(GetResourceLibraryPath())) {
        return NAVIGATION_LOAD_FAILED;
    }
    const CResourceInstanceSwap resources(library.GetModule());
    context->hResource = library.GetModule();
    return RunWizardPage<T>(context);
} catch (...) {
    ShowPageException();
    return NAVIGATION_LOAD_FAILED;
}

// The body of every ...Page export. The page takes its own reference on the library before this one goes.
template <class T>
CTabPage CreateTabPage(PageContext* context) noexcept
try {
    const CString path = GetResourceLibraryPath();
    CResourceLibrary library;
    if (!library.Load(path)) {
        return CTabPage();
    }
    const CResourceInstanceSwap resources(library.GetModule());
    context->pszResourcePath = path;
    return MakeTabPage<T>(context);
} catch (...) {
    ShowPageException();
    return CTabPage();
}
