// Lets a test see what the code does when memory runs out.
#pragma once

// While it lives, `new` fails on the calling thread.
class CNoMemory
{
public:
    CNoMemory() noexcept;
    ~CNoMemory();
    CNoMemory(const CNoMemory&) = delete;
    CNoMemory& operator=(const CNoMemory&) = delete;
};
