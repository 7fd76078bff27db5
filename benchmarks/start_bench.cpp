// The start of Setup.exe up to its first page, and its working set there, beside a bare program with a dialog of the
// same template. The bench sees the page when a window with the page's Next button is shown and has nothing to paint.
// Setup.exe guards a second process of its own, which shows the pages; both count.
#include "base/handle.h"
#include "benchmarks/measurement.h"
#include "include/resource_ids.h"

#include <windows.h>

#include <psapi.h>
#include <tlhelp32.h>

#include <algorithm>

namespace {

constexpr double DEADLINE_MILLISECONDS = 60000;

struct Started
{
    double milliseconds = 0;
    double megabytes = 0;
};

struct Search
{
    std::vector<DWORD> processes;
    HWND page = nullptr;
};

// A program and what it has started itself, by the numbers of the processes.
std::vector<DWORD> FamilyOf(DWORD program)
{
    std::vector<DWORD> family = {program};
    const CFileOwner processes(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof(entry);
    for (BOOL found = Process32FirstW(processes.get(), &entry); found;
         found = Process32NextW(processes.get(), &entry)) {
        if (entry.th32ParentProcessID == program && entry.th32ProcessID != program) {
            family.push_back(entry.th32ProcessID);
        }
    }
    return family;
}

BOOL CALLBACK LookForPage(HWND window, LPARAM parameter)
{
    Search& search = *reinterpret_cast<Search*>(parameter);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    const bool isTheirs =
        std::find(search.processes.begin(), search.processes.end(), process) != search.processes.end();
    if (!isTheirs || !IsWindowVisible(window) || !GetDlgItem(window, IDC_NEXT) ||
        !GetDlgItem(window, IDC_SIDE_PANE)) {
        return TRUE;
    }
    search.page = window;
    return FALSE;
}

// A program that is ended whatever happens, with what it has started.
class CProgram
{
public:
    explicit CProgram(const CString& commandLine)
    {
        STARTUPINFOW startup = {};
        startup.cb = sizeof(startup);
        CString words = commandLine; // the system writes into the line
        if (!CreateProcessW(nullptr, words.GetBuffer(words.GetLength() + 1), nullptr, nullptr, FALSE, 0,
                            nullptr, nullptr, &startup, &m_process)) {
            throw CannotMeasure{L"Can't start " + commandLine};
        }
    }
    ~CProgram()
    {
        const std::vector<DWORD> family = FamilyOf(m_process.dwProcessId);
        TerminateProcess(m_process.hProcess, 1);
        for (std::size_t index = 1; index < family.size(); ++index) {
            const CKernelOwner child(OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, family[index]));
            TerminateProcess(child.get(), 1);
            WaitForSingleObject(child.get(), INFINITE);
        }
        WaitForSingleObject(m_process.hProcess, INFINITE);
        CloseHandle(m_process.hThread);
        CloseHandle(m_process.hProcess);
    }
    CProgram(const CProgram&) = delete;
    CProgram& operator=(const CProgram&) = delete;

    // Waits for the page, painted and answering.
    void AwaitPage(double start)
    {
        Search search;
        for (;;) {
            search.processes = FamilyOf(m_process.dwProcessId);
            EnumWindows(LookForPage, reinterpret_cast<LPARAM>(&search));
            if (search.page && !GetUpdateRect(search.page, nullptr, FALSE)) {
                SendMessageW(search.page, WM_NULL, 0, 0);
                GetWindowThreadProcessId(search.page, &m_pageProcess);
                return;
            }
            if (WaitForSingleObject(m_process.hProcess, 1) == WAIT_OBJECT_0) {
                throw CannotMeasure{L"The program ended before its page came"};
            }
            if (NowMilliseconds() - start > DEADLINE_MILLISECONDS) {
                throw CannotMeasure{L"The program showed no page within a minute"};
            }
        }
    }

    double Megabytes() const
    {
        double megabytes = 0;
        for (const DWORD process : FamilyOf(m_process.dwProcessId)) {
            const CKernelOwner handle(
                OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ | SYNCHRONIZE, FALSE, process));
            if (process == m_pageProcess) { // waiting for input means that the page is at rest
                WaitForInputIdle(handle.get(), static_cast<DWORD>(DEADLINE_MILLISECONDS));
            }
            PROCESS_MEMORY_COUNTERS counters = {};
            if (!GetProcessMemoryInfo(handle.get(), &counters, sizeof(counters)) ||
                counters.WorkingSetSize == 0) {
                throw CannotMeasure{L"The system doesn't report the working set"};
            }
            megabytes += static_cast<double>(counters.WorkingSetSize) / (1 << 20);
        }
        return megabytes;
    }

private:
    PROCESS_INFORMATION m_process = {};
    DWORD m_pageProcess = 0;
};

Started Start(const CString& commandLine)
{
    const double start = NowMilliseconds();
    CProgram program(commandLine);
    program.AwaitPage(start);
    Started started;
    started.milliseconds = NowMilliseconds() - start;
    started.megabytes = program.Megabytes();
    return started;
}

} // namespace

std::vector<Comparison> MeasureStart(const BenchOptions& options)
{
    const CString folder = options.strProgramFolder;
    const CString ours = L"\"" + folder + L"Setup.exe\" --media \"" + options.strMedia + L"\" --log \"" +
                         options.strScratch + L"\\setup.log\" --language en-US";
    const CString bare = L"\"" + folder + L"bare_dialog.exe\" " + folder + L"Languages\\en-US\\WizText.dll";
    Comparison time;
    time.strWhat = L"Setup.exe, start to first page";
    Comparison memory;
    memory.strWhat = L"Setup.exe, working set at rest";
    memory.unit = "MB";
    static_cast<void>(Start(bare)); // warms up
    static_cast<void>(Start(ours));
    for (int run = 0; run < options.runs; ++run) {
        const Started bareStart = Start(bare);
        const Started ourStart = Start(ours);
        time.bare.push_back(bareStart.milliseconds);
        time.ours.push_back(ourStart.milliseconds);
        memory.bare.push_back(bareStart.megabytes);
        memory.ours.push_back(ourStart.megabytes);
    }
    return {time, memory};
}
