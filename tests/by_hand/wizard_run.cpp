#include "tests/by_hand/wizard_run.h"

#include "automation/window_finder.h"
#include "tests/support/test_folder.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <regex>

#include <tlhelp32.h>

namespace {

constexpr DWORD END_MILLISECONDS = 10000; // for the system to end a process

constexpr DWORD CONSOLE_BYTES = 64 * 1024; // far more than a run writes

std::string ReadBytes(const CString& path)
{
    const CFileOwner file(CreateFileW(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    std::string bytes;
    char part[4096];
    DWORD read = 0;
    while (file && ReadFile(file.get(), part, sizeof part, &read, nullptr) && read > 0) {
        bytes.append(part, read);
    }
    return bytes;
}

struct WindowSearch
{
    const std::vector<DWORD>& processes;
    std::vector<HWND> found;
};

BOOL CALLBACK AddWindow(HWND window, LPARAM data)
{
    WindowSearch& search = *reinterpret_cast<WindowSearch*>(data);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (IsWindowVisible(window) &&
        std::find(search.processes.begin(), search.processes.end(), process) != search.processes.end()) {
        search.found.push_back(window);
    }
    return TRUE;
}

} // namespace

CString BuiltProgram()
{
    const CString folder = ProgramFolder(); // bin\by_hand\ of the build
    const CString above = folder.Left(folder.GetLength() - 1);
    return above.Left(above.ReverseFind(L'\\') + 1) + L"Setup.exe";
}

CWizardRun::CWizardRun(const CString& words, const CString& folder) : m_strLog(folder + L"setup.log")
{
    SECURITY_ATTRIBUTES inherited = {sizeof(inherited), nullptr, TRUE};
    CKernelOwner console;
    EXPECT_TRUE(CreatePipe(m_console.put(), console.put(), &inherited, CONSOLE_BYTES));
    SetHandleInformation(m_console.get(), HANDLE_FLAG_INHERIT, 0);
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = startup.hStdError = console.get();
    CString line = L"\"" + BuiltProgram() + L"\" --log \"" + m_strLog + L"\" " + words;
    PROCESS_INFORMATION started = {};
    if (!CreateProcessW(nullptr, line.GetBuffer(line.GetLength()), nullptr, nullptr, TRUE, 0, nullptr,
                        nullptr, &startup, &started)) {
        ADD_FAILURE() << Utf8(line) << " did not start, error " << GetLastError();
        return;
    }
    m_process.reset(started.hProcess);
    const CKernelOwner thread(started.hThread);
    m_guard = started.dwProcessId;
}

CWizardRun::~CWizardRun()
{
    if (!m_process || HasEnded(0)) {
        return;
    }
    for (const DWORD process : GetProcesses()) {
        const CKernelOwner opened(OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, process));
        TerminateProcess(opened.get(), 1);
        WaitForSingleObject(opened.get(), END_MILLISECONDS);
    }
}

std::vector<DWORD> CWizardRun::GetProcesses() const
{
    std::vector<DWORD> processes = {m_guard};
    const CFileOwner snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof entry;
    for (BOOL found = Process32FirstW(snapshot.get(), &entry); found;
         found = Process32NextW(snapshot.get(), &entry)) {
        if (entry.th32ParentProcessID == m_guard) {
            processes.push_back(entry.th32ProcessID);
        }
    }
    return processes;
}

std::vector<HWND> CWizardRun::GetWindows() const
{
    const std::vector<DWORD> processes = GetProcesses();
    WindowSearch search = {processes, {}};
    EnumWindows(AddWindow, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

CString CWizardRun::DescribeWindows() const
{
    CString text;
    for (HWND window : GetWindows()) {
        text += L"\n    " + DescribeWindow(window);
        if (GetForegroundWindow() == window) {
            text += L" (in front)";
        }
        for (HWND child : ChildWindows(window)) {
            if (IsWindowVisible(child) && !WindowText(child).IsEmpty()) {
                text += L"\n        " + DescribeWindow(child);
            }
        }
        GUITHREADINFO thread = {};
        thread.cbSize = sizeof thread;
        if (GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &thread)) {
            text += L"\n        focus: " + DescribeWindow(thread.hwndFocus);
        }
    }
    return text.IsEmpty() ? CString(L" no windows") : text;
}

bool CWizardRun::HasEnded(DWORD milliseconds) const
{
    return WaitForSingleObject(m_process.get(), milliseconds) == WAIT_OBJECT_0;
}

unsigned int CWizardRun::GetExitCode() const
{
    DWORD code = 0;
    GetExitCodeProcess(m_process.get(), &code);
    return code;
}

// Without waiting for the pipe's end: what the system itself starts for the first program, as Wine does, may hold it.
CString CWizardRun::ReadConsole() const
{
    std::string bytes(CONSOLE_BYTES, 0);
    DWORD count = 0;
    PeekNamedPipe(m_console.get(), bytes.data(), CONSOLE_BYTES, &count, nullptr, nullptr);
    return TextFromUtf8(bytes.data(), count);
}

CString CWizardRun::ReadLog() const
{
    static const std::regex stamp("(^|\n)\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d  ");
    std::string bytes = ReadBytes(m_strLog);
    std::erase(bytes, '\r');
    bytes = std::regex_replace(bytes, stamp, "$1");
    return TextFromUtf8(bytes.data(), bytes.size());
}
