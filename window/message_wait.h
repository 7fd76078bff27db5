// Waiting on the thread of the user interface while its windows go on answering.
#pragma once

#include <windows.h>

enum class WaitEnd
{
    Signaled, // the object
    Quit,     // a quit message came and waits again, for the loop outside; the caller's window may be gone
    Failed,   // by GetLastError
};

// Waits for the object (a process, an event) and handles the thread's messages meanwhile. The mouse works; keys reach
// their control alone, as no message filter is asked: Tab, Enter, Esc and mnemonics of a modeless dialog do nothing. So
// a key can't start a page's navigation under the handler that waits. What a handler throws comes out here.
[[nodiscard]] WaitEnd WaitWithMessages(HANDLE object);
