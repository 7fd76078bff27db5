#include "setup/run_guard.h"

#include "base/path_text.h"
#include "base/system_text.h"
#include "setup/exit_codes.h"
#include "setup/paths.h"
#include "setup/resource.h"
#include "setup/run_end_rules.h"
#include "setup/run_record.h"
#include "setup/texts.h"

#include <vector>

namespace {

constexpr DWORD LOOK_MILLISECONDS = 200;     // between two looks at a run that has a limit
constexpr DWORD ENDING_MILLISECONDS = 10000; // for the system to end a process

struct RunningProcess
{
    CKernelOwner job; // ends what is left in it when the guard goes
    CKernelOwner process;
    CRunRecord record;
};

// What the run itself starts, a browser for a link, is none of the guard's business.
CKernelOwner MakeJob()
{
    CKernelOwner job(CreateJobObjectW(nullptr, nullptr));
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
    limits.BasicLimitInformation.LimitFlags =
        JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE | JOB_OBJECT_LIMIT_SILENT_BREAKAWAY_OK;
    SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);
    return job;
}

// The file or pipe that this process was started with goes to the run; to a console it attaches by itself.
STARTUPINFOW StartupOfRun()
{
    STARTUPINFOW startup = {};
    GetStartupInfoW(&startup);
    startup.cbReserved2 = 0;
    startup.lpReserved2 = nullptr;
    startup.dwFlags &= ~static_cast<DWORD>(STARTF_USESTDHANDLES);
    DWORD mode = 0;
    const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    if (output && output != INVALID_HANDLE_VALUE && !GetConsoleMode(output, &mode)) {
        startup.dwFlags |= STARTF_USESTDHANDLES;
        startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
        startup.hStdOutput = output;
        startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
        SetHandleInformation(output, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
    }
    return startup;
}

// 0, or the system's code.
DWORD StartRun(const CString& program, RunningProcess& run)
{
    STARTUPINFOW startup = StartupOfRun();
    const CString line = GetCommandLineW();
    std::vector<wchar_t> words(line.GetString(),
                               line.GetString() + line.GetLength() + 1); // may be written to
    PROCESS_INFORMATION started = {};
    if (!CreateProcessW(program, words.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED, nullptr, nullptr,
                        &startup, &started)) {
        return GetLastError();
    }
    run.process.reset(started.hProcess);
    const CKernelOwner thread(started.hThread);
    run.job = MakeJob();
    AssignProcessToJobObject(run.job.get(),
                             started.hProcess); // without it the run would just outlive a killed guard
    if (!run.record.Create(started.dwProcessId)) {
        const DWORD error = GetLastError();
        TerminateProcess(started.hProcess, SETUP_FAILED);
        return error;
    }
    ResumeThread(thread.get());
    return ERROR_SUCCESS;
}

// What it noted, and what the system counted of its reads and writes where it counts them.
std::uint64_t SignsOfLife(const RunningProcess& run)
{
    IO_COUNTERS counters = {};
    GetProcessIoCounters(run.process.get(), &counters);
    return static_cast<std::uint64_t>(run.record.get()->signsOfLife) + counters.ReadOperationCount +
           counters.WriteOperationCount + counters.OtherOperationCount;
}

// True when the run had to be ended.
bool WaitForRun(const RunningProcess& run, unsigned int quietSeconds)
{
    CQuietWatch watch(quietSeconds * 1000ULL);
    const DWORD interval = quietSeconds ? LOOK_MILLISECONDS : INFINITE;
    while (WaitForSingleObject(run.process.get(), interval) == WAIT_TIMEOUT) {
        if (watch.IsOverdue(GetTickCount64(), SignsOfLife(run))) {
            TerminateProcess(run.process.get(), SETUP_NO_SIGN_OF_LIFE);
            WaitForSingleObject(run.process.get(), ENDING_MILLISECONDS);
            return true;
        }
    }
    return false;
}

CString PlaceWords(const CodePlace& place)
{
    return PlaceText(LastName(place.file), place.offset);
}

CString StepWords(const RunRecord& record)
{
    const CString step = record.step;
    return step.IsEmpty() ? SetupText(IDS_RUN_STARTING) : step;
}

RunOutcome BrokenOutcome(const RunRecord& record)
{
    CString place = PlaceWords(record.place);
    if (record.caller.offset != 0) {
        place += L", called by " + PlaceWords(record.caller);
    }
    return {SETUP_BROKE_OFF,
            SetupText(IDS_RUN_BROKE_OFF, {FaultText(record.fault), place, StepWords(record)})};
}

RunOutcome OutcomeOf(const RunningProcess& run, bool ended, unsigned int quietSeconds)
{
    const RunRecord& record = *run.record.get();
    if (record.ended) {
        return {record.exitCode, CString(), true};
    }
    if (ended) {
        return {SETUP_NO_SIGN_OF_LIFE,
                SetupText(IDS_RUN_QUIET, {NumberText(quietSeconds), StepWords(record)})};
    }
    if (record.broken) {
        return BrokenOutcome(record);
    }
    DWORD code = 0;
    GetExitCodeProcess(run.process.get(), &code);
    if (code == STATUS_CONTROL_C_EXIT) {
        return {SETUP_BROKE_OFF, SetupText(IDS_RUN_INTERRUPTED, {StepWords(record)})};
    }
    return {SETUP_BROKE_OFF, SetupText(IDS_RUN_ENDED_EARLY, {FaultText(code), StepWords(record)})};
}

// Ctrl+C is for the run; who only waits for it stays, to say how it ended. (What the system ignores for a process without a
// handler, it ignores for the processes that this one starts, too.)
BOOL WINAPI OutliveRun(DWORD event)
{
    return event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT;
}

} // namespace

GuardedEnd GuardRun(unsigned int quietSeconds)
{
    SetConsoleCtrlHandler(OutliveRun, TRUE);
    RunningProcess run;
    const CString program = ProgramFile();
    if (const DWORD error = StartRun(program, run)) {
        return {{SETUP_FAILED, SetupText(IDS_RUN_NOT_STARTED, {program, SystemErrorText(error)})}, CString()};
    }
    const bool ended = WaitForRun(run, quietSeconds);
    const RunRecord& record = *run.record.get();
    return {OutcomeOf(run, ended, quietSeconds), CString(record.log), record.ended != 0};
}
