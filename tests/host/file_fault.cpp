#include "tests/host/file_fault.h"

#include "builder/file_fault.h"

#include <atomic>

namespace {

FileFault g_fault;
std::atomic<long long> g_operations = 0;
std::atomic<long long> g_flushes = 0;
int g_scopes = 0;

} // namespace

bool IsFaultDue()
{
    const long long number = ++g_operations;
    if (g_fault.operation == 0 || number < g_fault.operation ||
        (number > g_fault.operation && !g_fault.stays)) {
        return false;
    }
    if (g_fault.code == 0) {
        TerminateProcess(GetCurrentProcess(), KILLED_BY_FAULT);
    }
    SetLastError(g_fault.code);
    return true;
}

void CountFlush()
{
    ++g_flushes;
}

void SetFileFault(const FileFault& fault)
{
    g_fault = fault;
    g_operations = 0;
    g_flushes = 0;
}

long long CountedFileOperations()
{
    return g_operations;
}

long long CountedFlushes()
{
    return g_flushes;
}

bool IsFaultScopeOpen()
{
    return g_scopes > 0;
}

CFaultScope::CFaultScope(const FileFault& fault)
{
    ++g_scopes;
    SetFileFault(fault);
}

CFaultScope::~CFaultScope()
{
    --g_scopes;
    SetFileFault({});
}
