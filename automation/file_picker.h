// Drives the system's dialog for opening files (GetOpenFileNameW with OFN_EXPLORER) of the calling thread.
//
// A dialog that complains (a file that isn't there, a folder that can't be opened) stays up behind a message box, which
// message_box.h reads and answers; until then the dialog's controls are "not yet".
#pragma once

#include "automation/step_outcome.h"
#include "base/string.h"

#include <windows.h>

#include <vector>

// The open dialog; null when there is none. No other dialog has its box for names beside a view of the shell's.
HWND FindFilePicker();

// Types files into the dialog's box for names; all are full paths. One stands there as it is. Several need one folder:
// the dialog is led there first ("not yet" until it shows that folder), then it accepts their quoted names side by side.
// Fails, with the path, for what can't be typed: no full path, a character that no name has (a quote would end the
// name), 260 characters and more, files of different folders, a folder that is a file.
StepOutcome EnterPickerFiles(const std::vector<CString>& files);
// Presses Open (with the names that were entered) or Cancel.
StepOutcome AcceptFilePicker();
StepOutcome CancelFilePicker();
