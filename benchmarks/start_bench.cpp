// The start of Setup.exe up to its first page, and its working set there, beside a bare program with a dialog of the
// same template. The parent sees the page when a window with the page's Next button is shown and has nothing to paint.
#include "benchmarks/measurement.h"
#include "include/resource_ids.h"

#include <windows.h>

#include <psapi.h>

namespace {

constexpr double DEADLINE_MILLISECONDS = 60000;

struct Started
{
    double milliseconds = 0;
    double megabytes = 0;
};

struct Search
{
    DWORD process = 0;
    HWND page = nullptr;
};

BOOL CALLBACK LookForPage(HWND window, LPARAM parameter)
{
    Search& search = *reinterpret_cast<Search*>(parameter);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process != search.process || !IsWindowVisible(window) || !GetDlgItem(window, IDC_NEXT) ||
        !GetDlgItem(window, IDC_SIDE_PANE)) {
        return TRUE;
    }
    search.page = window;
    return FALSE;
}

// A program that is ended whatever happens.
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
        TerminateProcess(m_process.hProcess, 1);
        WaitForSingleObject(m_process.hProcess, INFINITE);
        CloseHandle(m_process.hThread);
        CloseHandle(m_process.hProcess);
    }
    CProgram(const CProgram&) = delete;
    CProgram& operator=(const CProgram&) = delete;

    // Waits for the page, painted and answering.
    void AwaitPage(double start) const
    {
        Search search = {m_process.dwProcessId, nullptr};
        for (;;) {
            EnumWindows(LookForPage, reinterpret_cast<LPARAM>(&search));
            if (search.page && !GetUpdateRect(search.page, nullptr, FALSE)) {
                SendMessageW(search.page, WM_NULL, 0, 0);
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
        // Waiting for input means that the page is at rest.
        WaitForInputIdle(m_process.hProcess, static_cast<DWORD>(DEADLINE_MILLISECONDS));
        PROCESS_MEMORY_COUNTERS counters = {};
        if (!GetProcessMemoryInfo(m_process.hProcess, &counters, sizeof(counters)) ||
            counters.WorkingSetSize == 0) {
            throw CannotMeasure{L"The system doesn't tell the working set"};
        }
        return static_cast<double>(counters.WorkingSetSize) / (1 << 20);
    }

private:
    PROCESS_INFORMATION m_process = {};
};

Started Start(const CString& commandLine)
{
    const double start = NowMilliseconds();
    const CProgram program(commandLine);
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
