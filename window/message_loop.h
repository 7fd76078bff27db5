// The message loop of a thread and those who look at its messages first.
#pragma once

#include <windows.h>

#include <vector>

// Sees each message before it is translated; a true answer consumes it.
class CMessageFilter
{
public:
    virtual BOOL PreTranslateMessage(MSG* message) = 0;

protected:
    ~CMessageFilter() = default;
};
