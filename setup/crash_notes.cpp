#include "setup/crash_notes.h"

#include "setup/run_end_rules.h"
#include "setup/run_record.h"

#include <psapi.h>

#include <csignal>
#include <cstdlib>

namespace {

constexpr DWORD CPLUSPLUS_EXCEPTION = 0x20474343; // thrown by the compiler's own library
constexpr ULONG STACK_FOR_NOTES = 65536;          // bytes that are left when a stack has overflowed
constexpr DWORD FRAMES = 24;

LPTOP_LEVEL_EXCEPTION_FILTER g_before = nullptr;
volatile LONG g_noting = 0;

// Where the file that holds the address is mapped; null when none does. Asks the kernel and not the loader, whose lock
// may be held by whoever crashed.
void* FileStart(const void* address)
{
    MEMORY_BASIC_INFORMATION area = {};
    const bool known = VirtualQuery(address, &area, sizeof area) != 0;
    return known && area.State == MEM_COMMIT && area.Type == MEM_IMAGE ? area.AllocationBase : nullptr;
}

void NotePlace(CodePlace& place, const void* address)
{
    void* const start = FileStart(address);
    place.offset = reinterpret_cast<DWORD64>(address) - reinterpret_cast<DWORD64>(start);
    if (start && K32GetMappedFileNameW(GetCurrentProcess(), start, place.file, RECORD_LIBRARY_LENGTH) == 0) {
        place.file[0] = 0;
        place.offset = reinterpret_cast<DWORD64>(address);
    }
}

[[noreturn]] void EndProcess(DWORD code)
{
    TerminateProcess(GetCurrentProcess(), code);
    for (;;) {
        Sleep(INFINITE); // until the kernel has done it
    }
}

// One thread notes; the others that crash meanwhile wait for the end.
RunRecord* BeginNote(DWORD fault)
{
    if (InterlockedExchange(&g_noting, 1) != 0) {
        Sleep(INFINITE);
    }
    RunRecord* const record = GetRunRecord();
    record->fault = fault;
    InterlockedExchange(&record->broken, 1); // already counts, should finding the place crash too
    return record;
}

LONG WINAPI OnUnhandled(EXCEPTION_POINTERS* exception)
{
    const EXCEPTION_RECORD& what = *exception->ExceptionRecord;
    if (what.ExceptionCode == CPLUSPLUS_EXCEPTION) { // goes back to the library, which aborts
        return g_before ? g_before(exception) : EXCEPTION_CONTINUE_EXECUTION;
    }
    RunRecord* const record = BeginNote(what.ExceptionCode);
    NotePlace(record->place, what.ExceptionAddress);
    // A call of nothing: who called stands on the stack.
    const void* const* const stack = reinterpret_cast<const void* const*>(exception->ContextRecord->Rsp);
    if (!FileStart(what.ExceptionAddress) && what.ExceptionCode == EXCEPTION_ACCESS_VIOLATION &&
        what.ExceptionInformation[0] == EXCEPTION_EXECUTE_FAULT) {
        NotePlace(record->caller, *stack);
    }
    EndProcess(what.ExceptionCode);
}

// The place is the first caller outside of the C library, which calls this one.
void OnAbort(int)
{
    RunRecord* const record = BeginNote(FAULT_ABORT);
    void* frames[FRAMES] = {};
    const USHORT count = CaptureStackBackTrace(1, FRAMES, frames, nullptr);
    for (USHORT index = 0; index < count; ++index) {
        if (FileStart(frames[index]) && FileStart(frames[index]) != FileStart(frames[0])) {
            NotePlace(record->place, frames[index]);
            break;
        }
    }
    EndProcess(FAULT_ABORT);
}

// A system may commit a stack as a whole and keep its guard page at the very end, where no guarantee counts: the handlers
// of the overflow would overflow again. The page that ends the guarantee becomes one then.
void GuardStack(ULONG guaranteed)
{
    MEMORY_BASIC_INFORMATION area = {};
    VirtualQuery(&area, &area, sizeof area); // which lies on the stack itself
    char* const stack = static_cast<char*>(area.AllocationBase);
    char* place = stack;
    while (VirtualQuery(place, &area, sizeof area) != 0 && area.AllocationBase == stack &&
           !(area.Protect & PAGE_GUARD)) {
        place += area.RegionSize;
    }
    SYSTEM_INFO system = {};
    GetSystemInfo(&system);
    char* const first = stack + system.dwPageSize + guaranteed; // the lowest page is never used
    if (area.AllocationBase == stack && place + area.RegionSize < first) {
        DWORD before = 0;
        VirtualProtect(first, system.dwPageSize, PAGE_READWRITE | PAGE_GUARD, &before);
    }
}

} // namespace

void NoteCrashes()
{
    SetErrorMode(GetErrorMode() | SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
    _set_error_mode(_OUT_TO_STDERR); // an abort would show a box of the C library's before it says anything
    ULONG bytes = STACK_FOR_NOTES;
    SetThreadStackGuarantee(&bytes); // of this thread; others have what the system leaves them
    GuardStack(STACK_FOR_NOTES);
    g_before = SetUnhandledExceptionFilter(OnUnhandled);
    std::signal(SIGABRT, OnAbort);
}
