// Stands in for RolloutUi.dll in a copy of the program's folder. Its contact page breaks when it is called, in the way that
// the media name as the page's help file. The begin page is the product's own, from RealPages.dll beside it.
#include "base/string.h"
#include "include/navigation.h"
#include "include/page_context.h"
#include "include/setup_manager.h"

#include <windows.h>

#include <exception>
#include <initializer_list>
#include <stdexcept>
#include <thread>

// Not in the unnamed namespace, where the compiler would know that there is no other class, and call its function.
class Unfinished
{
public:
    Unfinished();
    virtual ~Unfinished() = default;
    virtual void Work() = 0;
};

// Where the compiler can't see which object it is.
__attribute__((noipa)) void CallWork(Unfinished& unfinished)
{
    unfinished.Work();
}

Unfinished::Unfinished()
{
    CallWork(*this);
}

class Finished final : public Unfinished
{
public:
    void Work() override {}
};

namespace {

constexpr ULONGLONG SLOW_MILLISECONDS = 12000; // longer than the limit of the test that shows it
constexpr int TOO_MANY_PAGES = 1 << 24;        // of the stack; never reached

volatile int g_depth = 0;

void WriteToNothing()
{
    volatile int* volatile nothing = nullptr;
    *nothing = 1;
}

// The volatile counter keeps the compiler from turning the calls into a loop.
int CallDeeper(int level)
{
    volatile char room[4096] = {};
    g_depth = level;
    return level < TOO_MANY_PAGES ? CallDeeper(level + 1) + room[0] : 0;
}

// True once the builder's working folder lies in the location.
bool IsBuilding(const CString& location)
{
    WIN32_FIND_DATAW found = {};
    const HANDLE search = FindFirstFileW(location + L"\\.*.staging-*", &found);
    if (search != INVALID_HANDLE_VALUE) {
        FindClose(search);
    }
    return search != INVALID_HANDLE_VALUE;
}

int AccessViolation(PageContext*)
{
    WriteToNothing();
    return NAVIGATION_NEXT;
}

int CallOfNothing(PageContext*)
{
    void (*volatile nothing)() = nullptr;
    nothing();
    return NAVIGATION_NEXT;
}

int StackOverflow(PageContext*)
{
    return CallDeeper(0) + NAVIGATION_NEXT;
}

int PureCall(PageContext*)
{
    Finished finished;
    CallWork(finished);
    return NAVIGATION_NEXT;
}

int Terminate(PageContext*)
{
    std::terminate();
}

int ThreadException(PageContext*)
{
    std::thread([] { throw std::runtime_error("nobody catches this"); }).join();
    return NAVIGATION_NEXT;
}

// Whatever wants memory after this crashes again.
int BrokenHeap(PageContext*)
{
    FillMemory(GetProcessHeap(), 1024, 0xCC);
    WriteToNothing();
    return NAVIGATION_NEXT;
}

int EarlyExit(PageContext*)
{
    ExitProcess(0);
}

int Hang(PageContext*)
{
    Sleep(INFINITE);
    return NAVIGATION_NEXT;
}

// Slow, but its messages are read all the while.
int Slow(PageContext*)
{
    const ULONGLONG end = GetTickCount64() + SLOW_MILLISECONDS;
    while (GetTickCount64() < end) {
        MSG message = {};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            DispatchMessageW(&message);
        }
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 50, QS_ALLINPUT);
    }
    return NAVIGATION_NEXT;
}

// Lets the wizard go on, and breaks off in the middle of the build.
int BrokenBuild(PageContext* context)
{
    const CString location = context->pSetupManager->m_strDeploymentLocation;
    std::thread([location] {
        while (!IsBuilding(location)) {
            SwitchToThread();
        }
        WriteToNothing();
    }).detach();
    return NAVIGATION_NEXT;
}

// A person cancels when the folder that the environment names has gone.
int CancelBehindFolder(PageContext*)
{
    wchar_t folder[MAX_PATH] = {};
    GetEnvironmentVariableW(L"ROLLOUT_FOLDER_THAT_GOES", folder, ARRAYSIZE(folder));
    RemoveDirectoryW(folder);
    return NAVIGATION_CANCEL;
}

// As the service pack page loads its libraries. Here none lies beside the program, so that the search goes on.
int LoadsByName(PageContext*)
{
    for (const wchar_t* name : {L"FixMgr.dll", L"Kmd32.dll"}) {
        if (const HMODULE library = LoadLibraryExW(name, nullptr, LOAD_WITH_ALTERED_SEARCH_PATH)) {
            FreeLibrary(library);
        }
    }
    return NAVIGATION_NEXT;
}

int Exception(PageContext*)
{
    throw std::runtime_error("the page has thrown this");
}

struct Fault
{
    const wchar_t* name;
    int (*show)(PageContext*);
};

const Fault g_faults[] = {
    {L"AccessViolation", AccessViolation},
    {L"CallOfNothing", CallOfNothing},
    {L"StackOverflow", StackOverflow},
    {L"PureCall", PureCall},
    {L"Terminate", Terminate},
    {L"ThreadException", ThreadException},
    {L"BrokenHeap", BrokenHeap},
    {L"EarlyExit", EarlyExit},
    {L"Hang", Hang},
    {L"Slow", Slow},
    {L"BrokenBuild", BrokenBuild},
    {L"CancelBehindFolder", CancelBehindFolder},
    {L"LoadsByName", LoadsByName},
    {L"Exception", Exception},
};

} // namespace

extern "C" __declspec(dllexport) int BeginDeploymentDialog(PageContext* context)
{
    static const HMODULE real = LoadLibraryW(L"RealPages.dll");
    const FARPROC page = GetProcAddress(real, "BeginDeploymentDialog");
    return reinterpret_cast<int (*)(PageContext*)>(reinterpret_cast<void*>(page))(context);
}

extern "C" __declspec(dllexport) int ProductContactDialog(PageContext* context)
{
    for (const Fault& fault : g_faults) {
        if (context->strHelpFile == fault.name) {
            return fault.show(context);
        }
    }
    return NAVIGATION_LOAD_FAILED;
}

// What a flow may never reach.
extern "C" __declspec(dllexport) CTabPage BrokenTabPage(PageContext*)
{
    WriteToNothing();
    return {};
}
