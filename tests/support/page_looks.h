// What holds on any page however it is scaled: no text is cut off, nothing stands in another's place or outside.
#pragma once

#include <windows.h>

// Every visible button and static text of the page has room for its text, in as many lines as it has height for. HTML
// labels scroll and are left out.
void ExpectTextsFit(HWND page);
// No visible control stands in another's place, and none outside the page. Labels and marks behind the controls, those
// of the frame, are left out.
void ExpectControlsApart(HWND page);
