// Finds the windows of a thread of this process and says what they are, for people and for error texts.
#pragma once

#include "base/string.h"

#include <windows.h>

#include <initializer_list>
#include <vector>

CString WindowClass(HWND window);
CString WindowText(HWND window);

// Every window below `parent`, grandchildren too, in the order of the dialog's template.
std::vector<HWND> ChildWindows(HWND parent);

// The visible top-level windows of a thread (0: the calling one), front first. Message-only windows and tooltips
// aren't among them.
std::vector<HWND> TopLevelWindows(DWORD thread = 0);

// The frontmost visible top-level window of the calling thread that has all these controls, or that is of that class;
// null when there is none.
HWND FindWindowWithControls(std::initializer_list<int> ids);
HWND FindWindowOfClass(const wchar_t* className);

// `Button 1 "&Next >" (disabled)`: enough to know the window again.
CString DescribeWindow(HWND window);
// All visible top-level windows of the calling thread with their visible texts, a line each; "no windows" for none.
CString DescribeThreadWindows();
