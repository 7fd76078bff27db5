#include "frame/page_services.h"

#include "frame/cancel_dialog.h"
#include "frame/file_path.h"
#include "frame/page_rules.h"
#include "frame/resource_text.h"
#include "include/navigation.h"
#include "include/resource_ids.h"
#include "include/setup_manager.h"
#include "include/ui_manager.h"
#include "window/window.h"

#include <shellapi.h>
#include <shlwapi.h>

#include <optional>

namespace {

bool OpenByShell(const wchar_t* file, INT_PTR& result)
{
    constexpr INT_PTR LAST_ERROR_CODE = 32; // above it the call succeeded
    result =
        reinterpret_cast<INT_PTR>(::ShellExecuteW(nullptr, L"open", file, nullptr, nullptr, SW_SHOWNORMAL));
    return result > LAST_ERROR_CODE;
}

// Empty when the path would have 260 characters or more.
CString FileBesideProgram(const wchar_t* file)
{
    CString program;
    const DWORD length = ::GetModuleFileNameW(nullptr, program.GetBuffer(MAX_PATH), MAX_PATH);
    program.ReleaseBuffer(static_cast<int>(length));
    ::PathRemoveFileSpecW(program.GetBuffer(MAX_PATH));
    program.ReleaseBuffer();
    return JoinPath(program, file);
}

void MoveAndStore(HWND window, CUiManager* uiManager, const RECT& rectangle)
{
    if (uiManager) {
        uiManager->SetWindowPos(rectangle);
    }
    ::SetWindowPos(window, nullptr, rectangle.left, rectangle.top, rectangle.right - rectangle.left,
                   rectangle.bottom - rectangle.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

} // namespace

HICON LoadPageIcon(const CString& file, CIconOwner& owner)
{
    constexpr int ICON_SIZE = 16;
    if (file.IsEmpty()) {
        return ::LoadIconW(_Module.GetResourceInstance(), MAKEINTRESOURCEW(IDI_SETUP));
    }
    owner.reset(
        static_cast<HICON>(::LoadImageW(nullptr, file, IMAGE_ICON, ICON_SIZE, ICON_SIZE, LR_LOADFROMFILE)));
    return owner.get();
}

void TrackWindowPlace(HWND window, CUiManager* uiManager, bool& placed)
{
    if (::IsIconic(window)) {
        return;
    }
    const RECT now = CWindow(window).GetWindowRect();
    if (placed) {
        MoveAndStore(window, uiManager, now);
        return;
    }
    placed = true; // before moving, which sends the next message
    if (!uiManager || !uiManager->IsWindowPosSaved()) {
        CWindow(window).CenterWindow();
        return;
    }
    const ScreenRectangle saved = ScreenRectangleOf(*uiManager->GetWindowPos());
    const ScreenRectangle place = ResizeAroundMiddle(saved, now.right - now.left, now.bottom - now.top);
    MoveAndStore(window, uiManager, {place.left, place.top, place.right, place.bottom});
}

void OpenLinkTarget(CSetupManager& manager, const wchar_t* target)
{
    const CString file = LinkFile(target);
    if (file.IsEmpty()) {
        return; // the folder itself is no target
    }
    CString path = JoinPath(manager.GetWizTextPath(), file);
    if (!::PathFileExistsW(path)) {
        path = JoinPath(manager.GetSrcWizTextPath(), file);
    }
    if (::PathFileExistsW(path)) {
        ::ShellExecuteW(nullptr, L"open", path, nullptr, nullptr, SW_SHOWNORMAL);
    }
}

CString FindHtmlFile(CSetupManager& manager, const wchar_t* target)
{
    const CString path = JoinPath(manager.GetWizTextPath(), target);
    return ::PathFileExistsW(path) ? path : JoinPath(manager.GetSrcWizTextPath(), target);
}

void OpenDocument(const wchar_t* target)
{
    INT_PTR result = 0;
    if (!OpenByShell(target, result) && result != SE_ERR_NOASSOC) {
        const CString path = FileBesideProgram(target);
        if (!path.IsEmpty()) {
            OpenByShell(path, result);
        }
    }
    if (result == SE_ERR_NOASSOC) {
        ::MessageBoxW(nullptr, LoadResourceString(IDS_PDF_NO_VIEWER),
                      LoadResourceString(IDS_PDF_NO_VIEWER_TITLE), MB_OK | MB_ICONWARNING);
    }
}

bool AskToCancel(HWND owner, CSetupManager& manager)
{
    CResourceLibrary library;
    std::optional<CResourceInstanceSwap> resources;
    const bool found = library.Load(GetResourceLibraryPath());
    if (found) {
        resources.emplace(library.GetModule()); // otherwise the page's own serve
    }
    manager.EnableCancelling(false);
    const bool leave = CCancelDialog(manager.m_setupMode, found).DoModal(owner) == IDYES;
    if (!leave) {
        manager.EnableCancelling(true);
    }
    return leave;
}

int CallHooks(const PageHookList& hooks, PageContext& context, bool stopAtVeto)
{
    int result = 0;
    for (const PageHook hook : hooks) {
        result = hook(&context);
        if (stopAtVeto && result == HOOK_VETO) {
            break;
        }
    }
    return result;
}
