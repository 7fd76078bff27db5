// The edit of a label of a tree or list view, as by a person.
#pragma once

#include "automation/step_outcome.h"
#include "base/string.h"

#include <windows.h>

// The edit of a label that is open; null for none. `getEdit` is the message that asks the control for it.
HWND OpenLabelEdit(HWND control, UINT getEdit);

// Types into the label's edit that the control has just opened, and presses Enter in it. `label` is what stood there.
StepOutcome TypeLabel(HWND control, UINT getEdit, const CString& label, const CString& text);

// Fails for a label that stayed as it was although another text was typed.
StepOutcome NeedChangedLabel(const CString& before, const CString& after, const CString& text);
