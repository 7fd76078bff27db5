// A person's hands: keys and mouse by the system's own input (SendInput). It goes where the system's focus and the
// windows on the screen lead it, into whatever process that is, as it does from a keyboard and a mouse. Whoever strikes a
// key waits first until the window that is meant has the focus.
#pragma once

#include "base/string.h"

#include <windows.h>

#include <initializer_list>

// Down and up, while the modifiers (VK_MENU, VK_SHIFT, VK_CONTROL) are held down.
void StrikeKey(WORD key, std::initializer_list<WORD> modifiers = {});
void TypeText(const CString& text);
// In screen coordinates.
void ClickAt(POINT point);
// The middle of a control.
void ClickOn(HWND control);
// The close box in a window's caption; false when the window has none.
[[nodiscard]] bool ClickCloseBox(HWND window);
