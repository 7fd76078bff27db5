// Reads and drives a control as a person would: what is hidden or disabled can't be used, an edit notifies its parent of
// what was typed, a button is pressed through the message queue, so that it may open a box without holding the caller
// up. List, combo and tree controls have more in list_control.h and tree_control.h.
#pragma once

#include "automation/step_outcome.h"
#include "base/string.h"

#include <windows.h>

class CControl
{
public:
    explicit CControl(HWND window) : m_window(window) {}
    CControl(HWND dialog, int id) : m_window(GetDlgItem(dialog, id)), m_dialog(dialog), m_id(id) {}

    HWND GetWindow() const { return m_window; }
    bool Exists() const { return IsWindow(m_window) != FALSE; }
    // Visible and enabled with all its ancestors, so neither a hidden page nor an open box is in the way.
    bool IsUsable() const;
    bool IsVisible() const { return IsWindowVisible(m_window) != FALSE; }
    bool IsEnabled() const { return IsWindowEnabled(m_window) != FALSE; }
    bool HasFocus() const { return Exists() && GetFocus() == m_window; }
    // The text that a person sees; line ends as the control keeps them.
    CString GetText() const;
    // In pixels of the dialog's client area.
    RECT GetRectangle() const;
    // `Edit 1147 "..."`, or what is missing.
    CString Describe() const;

    // Buttons
    bool IsChecked() const;
    bool IsDefaultButton() const;
    // Posts the click; what it does has not happened yet when this returns.
    StepOutcome Click() const;
    // Clicks only when the state differs.
    StepOutcome SetChecked(bool checked) const;

    // Edits: replaces the whole text as by typing, with EN_UPDATE and EN_CHANGE, and leaves the focus there. What the
    // edit refuses (a text over its limit) fails.
    StepOutcome SetText(const CString& text) const;
    CString GetSelectedText() const;

    StepOutcome Focus() const;

    // Done when the control can be used, otherwise the reason why not.
    StepOutcome NeedUsable() const;

private:
    HWND m_window;
    HWND m_dialog = nullptr;
    int m_id = 0;
};
