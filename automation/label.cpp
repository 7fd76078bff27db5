#include "automation/label.h"

#include "automation/control.h"

HWND OpenLabelEdit(HWND control, UINT getEdit)
{
    return reinterpret_cast<HWND>(SendMessageW(control, getEdit, 0, 0));
}

StepOutcome TypeLabel(HWND control, UINT getEdit, const CString& label, const CString& text)
{
    HWND edit = OpenLabelEdit(control, getEdit);
    if (!edit)
        return StepOutcome::Failed(L"the label \"" + label + L"\" can't be edited");
    const StepOutcome typed = CControl(edit).SetText(text);
    // Sent, not posted: the message loop of a dialog would press the default button instead.
    SendMessageW(edit, WM_KEYDOWN, typed.IsDone() ? VK_RETURN : VK_ESCAPE, 1);
    return typed;
}

StepOutcome NeedChangedLabel(const CString& before, const CString& after, const CString& text)
{
    return after == before && after != text
               ? StepOutcome::Failed(L"the label \"" + before + L"\" did not become \"" + text + L"\"")
               : StepOutcome::Done();
}
