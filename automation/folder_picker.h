// Drives the system's folder picker (SHBrowseForFolder) of the calling thread.
#pragma once

#include "automation/step_outcome.h"
#include "base/string.h"

#include <windows.h>

// The open picker; null when there is none.
HWND FindFolderPicker();

// Selects the folder in the open picker. "Not yet" while the picker isn't up or doesn't offer the folder.
StepOutcome SelectPickerFolder(const CString& folder);
// Presses OK (with the folder that is selected) or Cancel.
StepOutcome AcceptPicker();
StepOutcome CancelPicker();
