// Keys by way of the thread's message queue, so that message filters and dialog keyboard handling see them.
#pragma once

#include "automation/step_outcome.h"

#include <windows.h>

enum class KeyModifier
{
    None,
    Shift,
    Control,
    Alt
};

// Posts key-down and key-up to the window that has the calling thread's focus. The key has not been handled yet when
// this returns. "Not yet" while no window of the thread has the focus.
StepOutcome PressKey(WORD virtualKey, KeyModifier modifier = KeyModifier::None);

// The same to a window that need not have the focus, without a modifier: the loop of a menu sees the keys of all windows.
void PressKeyIn(HWND window, WORD virtualKey);

// Posts the characters of a text, without key messages.
StepOutcome TypeCharacters(const wchar_t* text);
