// What the page shapes do with windows and files, apart from the templates.
#pragma once

#include "base/string.h"
#include "include/page_context.h"
#include "window/drawing_handles.h"

#include <windows.h>

class CSetupManager;
class CUiManager;

// Three colour bytes and one more.
struct PageColor
{
    BYTE red = 255;
    BYTE green = 255;
    BYTE blue = 255;
    BYTE alpha = 255;
};

// The background of a wizard page, the white panel on the hidden control IDC_PANEL, and the children's frames. With an
// image (a Gdiplus::Image*) that is drawn over the client area in place of the colour.
void PaintPage(HWND page, PageColor color, void* backgroundImage);

// What lies behind a control of a page, for the control to fill its rectangle with.
[[nodiscard]] CBrushOwner BackgroundBehind(HWND control);

// The icon of the file at 16 by 16 pixels. With an empty name, the resource library's, which nobody has to destroy:
// `owner` then stays empty. Null when it can't be loaded.
[[nodiscard]] HICON LoadPageIcon(const CString& file, CIconOwner& owner);

// Puts the window where the setup's windows are, or remembers where it is. `placed` is the page's memory of its first
// placing.
void TrackWindowPlace(HWND window, CUiManager* uiManager, bool& placed);

// Opens a link's target from the resource folder, else from the same folder on the source media; nothing when it lies
// in neither.
void OpenLinkTarget(CSetupManager& manager, const wchar_t* target);

// The path of an HTML file of the setup: in the resource folder, else in the same folder on the source media.
[[nodiscard]] CString FindHtmlFile(CSetupManager& manager, const wchar_t* target);

// Opens a document by the system, else the file of that name beside the program. Warns the user when no program is
// installed for it.
void OpenDocument(const wchar_t* target);

// Asks the user whether to leave the setup. The host's own cancelling is off while the question is up, and stays off
// after a Yes.
[[nodiscard]] bool AskToCancel(HWND owner, CSetupManager& manager);

// Runs the hooks in order; the last one's result. With `stopAtVeto` none is called after a veto.
int CallHooks(const PageHookList& hooks, PageContext& context, bool stopAtVeto);
