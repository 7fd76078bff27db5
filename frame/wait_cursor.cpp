#include "frame/wait_cursor.h"

std::atomic<int> g_waitCursorCount{0};

CPersistentWaitCursor::CPersistentWaitCursor()
{
    ++g_waitCursorCount;
}

CPersistentWaitCursor::~CPersistentWaitCursor()
{
    --g_waitCursorCount;
}

bool AnswerSetCursor()
{
    if (g_waitCursorCount.load() < 1) {
        return false;
    }
    ::SetCursor(::LoadCursorW(nullptr, IDC_WAIT));
    return true;
}
