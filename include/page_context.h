// The one argument of every page function and hook, and the value that a tab page's function returns.
#pragma once

#include "base/string.h"
#include "include/setup_enums.h"
#include "window/message_loop.h"

#include <windows.h>

#include <vector>

class CProduct;
class CSetupManager;
struct PageContext;

// A host function that a page runs at init or on leaving. A leave hook vetoes with 2.
using PageHook = int (*)(PageContext* context);
using PageHookList = std::vector<PageHook>;

// Filled by the host and kept alive for the whole life of the page. The page reads it once, in its constructor;
// only the two resource fields are written, by the entry function. Hooks get one of their own.
struct PageContext
{
    HWND hParent = nullptr;                 // parent of a tab page; for a hook: the page's own window
    HWND hFrame = nullptr;                  // frame window of the tabbed dialog
    RECT rcDisplay = {};                    // handed on to hooks
    CSetupManager* pSetupManager = nullptr; // never null
    CProduct* pProduct = nullptr;  // the product that the page edits; pages that exist as tab pages need one
    CString strHelpFile;           // HTML of the side pane, relative to the resource folder; empty for none
    CString strSpare;              // no page reads it
    PageHookList preInitHooks;     // run at the end of the frame's init
    PageHookList postInitHooks;    // run at the end of the page's init
    PageHookList leaveHooks;       // run before the page is left forward
    InstallerHandle hDatabase = 0; // the product's open database; the host closes it
    HMODULE hResource = nullptr;   // written by a ...Dialog entry: the loaded resource library
    // Written by a ...Page entry: the resource library's full path. Valid only during the call.
    const wchar_t* pszResourcePath = nullptr;
    BOOL bCanGoBack = TRUE; // zero disables the Back button of a wizard page
    int nReserved1 = 0;     // copied into the page and not read
    int nReserved2 = 0;
};

// What a ...Page function returns: the created page and its message filter, for the host's filter chain. The page
// belongs to itself and goes with its window.
class CTabPage final : public CMessageFilter
{
public:
    BOOL PreTranslateMessage(MSG* message) override
    {
        return pFilter ? pFilter->PreTranslateMessage(message) : FALSE;
    }

    HWND hWnd = nullptr; // null when the page could not be made
    CMessageFilter* pFilter = nullptr;
};
