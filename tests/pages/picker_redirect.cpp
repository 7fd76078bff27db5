#include "tests/pages/picker_redirect.h"

#include "base/handle.h"

#include <shlobj.h>

BrowseCall browseCall;

namespace {

LRESULT CALLBACK NoteSelection(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == BFFM_SETSELECTIONW && wParam)
        browseCall.selection = reinterpret_cast<const wchar_t*>(lParam);
    return DefWindowProcW(window, message, wParam, lParam);
}

// Notifies the page's callback that a picker is up, with a window that only takes notes. Wine's own picker may stop above
// the folder (docs/wine.md), so what it shows doesn't show what it was asked for.
void NoteInitialSelection(const BROWSEINFOW& browse)
{
    const HWND note =
        CreateWindowExW(0, L"Static", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    SetWindowLongPtrW(note, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(NoteSelection));
    if (browse.lpfn)
        browse.lpfn(note, BFFM_INITIALIZED, 0, browse.lParam);
    DestroyWindow(note);
}

LPITEMIDLIST WINAPI BrowseFromDesktop(BROWSEINFOW* browse)
{
    LPITEMIDLIST network = nullptr;
    SHGetSpecialFolderLocation(nullptr, CSIDL_NETWORK, &network);
    const CTaskOwner owner(network);
    ++browseCall.times;
    browseCall.flags = browse->ulFlags;
    browseCall.owner = browse->hwndOwner;
    browseCall.title = browse->lpszTitle;
    browseCall.fromNetwork = browse->pidlRoot && ILIsEqual(browse->pidlRoot, network);
    browse->pidlRoot = nullptr;
    NoteInitialSelection(*browse);
    return SHBrowseForFolderW(browse);
}

} // namespace

CPickerRedirect::CPickerRedirect()
    : CImportRedirect(L"RolloutUi.dll", "SHBrowseForFolderW", reinterpret_cast<void*>(BrowseFromDesktop))
{
    browseCall = BrowseCall();
}
