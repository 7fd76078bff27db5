// Reads and answers the system's message boxes of the calling thread.
#pragma once

#include "automation/step_outcome.h"
#include "base/string.h"

#include <windows.h>

#include <optional>
#include <vector>

struct MessageBoxView
{
    HWND window = nullptr;
    HWND owner = nullptr; // null for a box without one
    CString title;
    CString text;
    UINT buttons = MB_OK;  // MB_OK, MB_YESNO, ...
    UINT icon = 0;         // MB_ICONERROR, MB_ICONQUESTION, MB_ICONWARNING, MB_ICONINFORMATION; 0 for none
    int defaultButton = 0; // id of the button that Enter presses

    // `"title": "text" [YESNO, question icon]`
    CString Describe() const;
};

// The view of that window, or nothing when it isn't a message box.
std::optional<MessageBoxView> ReadMessageBox(HWND window);
// The frontmost one.
std::optional<MessageBoxView> FindMessageBox();

// Done while no box is up; one that is fails with its words.
StepOutcome ExpectNoMessageBox();

// Posts the click on the button with that id (IDOK, IDYES, ...).
StepOutcome AnswerMessageBox(const MessageBoxView& box, int button);
