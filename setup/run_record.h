// What a run leaves behind about itself, in memory that outlives its process: signs of life, the last step, how it
// ended, or where it broke off. The guarding process makes the record (setup/run_guard.h), the run itself opens it by
// its own process id. Without a record the notes go nowhere.
#pragma once

#include "base/handle.h"
#include "base/string.h"

#include <windows.h>

constexpr int RECORD_STEP_LENGTH = 512;
constexpr int RECORD_LIBRARY_LENGTH = 512;

// A place in the code: the file that is mapped there, empty for none, and the distance from where it begins.
struct CodePlace
{
    wchar_t file[RECORD_LIBRARY_LENGTH];
    DWORD64 offset;
};

// Plain memory, all zero at first. The texts always end in a zero, whenever their writer dies.
struct RunRecord
{
    volatile LONG64 signsOfLife;
    wchar_t step[RECORD_STEP_LENGTH];
    wchar_t log[RECORD_LIBRARY_LENGTH];

    volatile LONG ended; // 1: the last line is written
    DWORD exitCode;

    volatile LONG broken; // 1: a crash was noted
    DWORD fault;
    CodePlace place;
    CodePlace caller; // only where the place itself lies in no file
};

// One record's memory, mapped.
class CRunRecord
{
public:
    // A new one for a process that doesn't run yet. False: the system's last error says why.
    [[nodiscard]] bool Create(DWORD processId);
    // The calling process's own; false when nobody guards it.
    [[nodiscard]] bool OpenOwn();

    RunRecord* get() const { return static_cast<RunRecord*>(m_view.get()); }

private:
    struct ViewKind
    {
        using Handle = void*;
        static Handle Invalid() noexcept { return nullptr; }
        static void Close(Handle handle) noexcept { UnmapViewOfFile(handle); }
    };

    [[nodiscard]] bool Map(HANDLE mapping);

    CKernelOwner m_mapping;
    CHandleOwner<ViewKind> m_view;
};

// The record of this process from now on; null for none. It outlives the process.
void UseRunRecord(RunRecord* record);
[[nodiscard]] RunRecord* GetRunRecord();

// Something gets done. Any thread, as often as wanted.
void NoteSignOfLife() noexcept;
// A line of the run's output, which says what begins now; one thread.
void NoteRunStep(const CString& line);
void NoteRunLog(const CString& path);
void NoteRunEnd(unsigned int exitCode) noexcept;
