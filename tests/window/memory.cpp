#include "tests/window/memory.h"

#include <windows.h>

#include <cstdlib>
#include <new>

namespace {
volatile DWORD g_starvedThread = 0;
}

CNoMemory::CNoMemory() noexcept
{
    g_starvedThread = GetCurrentThreadId();
}

CNoMemory::~CNoMemory()
{
    g_starvedThread = 0;
}

void* operator new(std::size_t size)
{
    if (g_starvedThread != 0 && g_starvedThread == GetCurrentThreadId()) {
        throw std::bad_alloc();
    }
    if (void* memory = std::malloc(size != 0 ? size : 1)) {
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}
