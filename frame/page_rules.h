// What the page frame decides without a window: titles, places, texts of buttons' messages, files behind links.
#pragma once

#include "base/rectangle.h"
#include "base/string.h"
#include "include/setup_enums.h"

// The saved rectangle grown or shrunk around its middle by whole halves of the difference, so an odd difference leaves
// the new page one pixel smaller.
[[nodiscard]] ScreenRectangle ResizeAroundMiddle(const ScreenRectangle& saved, int width, int height);

// True for the modes that make or change a deployment.
[[nodiscard]] bool IsDeploymentMode(Setup::tagSETUPMODE mode);

// The window text: the product, and in a deployment mode the deployment's name if there is one. Either may be null.
[[nodiscard]] CString PageTitle(const wchar_t* productName, Setup::tagSETUPMODE mode,
                                const wchar_t* deploymentName);

// The string that asks whether to leave the setup.
[[nodiscard]] unsigned int CancelQuestionId(Setup::tagSETUPMODE mode);

// "[%INDEX]" (counted from 1) and "[%TOTAL]" of the page counter's text put in.
[[nodiscard]] CString PageCounterText(const CString& text, int index, int total);

// Which button of a tab page has nowhere to go.
struct TabButtons
{
    bool bDisablePrevious = false;
    bool bDisableNext = false;
};
[[nodiscard]] TabButtons ButtonsToDisable(int index, int total);

// The target as far as a link opens it: empty from 2084 characters on.
[[nodiscard]] CString LinkFile(const wchar_t* target);

enum class LinkKind
{
    Document, // ".pdf": opened by the system
    Html,     // ".html", ".htm": shown in the side pane
    Unknown,
};
// By the extension, without regard to case.
[[nodiscard]] LinkKind KindOfLink(const wchar_t* extension);

// True when a null-or-text member is null or empty.
[[nodiscard]] bool IsEmptyText(const wchar_t* text);
