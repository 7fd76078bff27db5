// A wait cursor that outlives mouse moves.
#pragma once

#include "window/wait_cursor.h"

#include <atomic>

// Number of live CPersistentWaitCursor objects. While there is one, every page answers WM_SETCURSOR by the wait
// cursor.
extern std::atomic<int> g_waitCursorCount;

class CPersistentWaitCursor : public CWaitCursor
{
public:
    CPersistentWaitCursor();
    ~CPersistentWaitCursor(); // puts the former cursor back
};

// The answer to WM_SETCURSOR: sets the wait cursor and gives true while one is due.
[[nodiscard]] bool AnswerSetCursor();
