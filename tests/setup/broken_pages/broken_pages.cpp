// Stands in for RolloutUi.dll in a copy of the program's folder, with pages that break in their own ways when they are
// called. Media choose them by name in their flow. The begin page is the product's own, from RealPages.dll beside it.
#include "base/string.h"
#include "include/page_context.h"
#include "include/setup_manager.h"

#include <windows.h>

#include <exception>
#include <stdexcept>
#include <thread>

#define BROKEN_PAGE extern "C" __declspec(dllexport) int

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

constexpr int NEXT = 1;
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

} // namespace

BROKEN_PAGE BeginDeploymentDialog(PageContext* context)
{
    static const HMODULE real = LoadLibraryW(L"RealPages.dll");
    const FARPROC page = GetProcAddress(real, "BeginDeploymentDialog");
    return reinterpret_cast<int (*)(PageContext*)>(reinterpret_cast<void*>(page))(context);
}

BROKEN_PAGE AccessViolationDialog(PageContext*)
{
    WriteToNothing();
    return NEXT;
}

BROKEN_PAGE CallOfNothingDialog(PageContext*)
{
    void (*volatile nothing)() = nullptr;
    nothing();
    return NEXT;
}

BROKEN_PAGE StackOverflowDialog(PageContext*)
{
    return CallDeeper(0) + NEXT;
}

BROKEN_PAGE PureCallDialog(PageContext*)
{
    Finished finished;
    CallWork(finished);
    return NEXT;
}

BROKEN_PAGE TerminateDialog(PageContext*)
{
    std::terminate();
}

BROKEN_PAGE ThreadExceptionDialog(PageContext*)
{
    std::thread([] { throw std::runtime_error("nobody catches this"); }).join();
    return NEXT;
}

// Whatever wants memory after this crashes again.
BROKEN_PAGE BrokenHeapDialog(PageContext*)
{
    FillMemory(GetProcessHeap(), 1024, 0xCC);
    WriteToNothing();
    return NEXT;
}

BROKEN_PAGE EarlyExitDialog(PageContext*)
{
    ExitProcess(0);
}

BROKEN_PAGE HangDialog(PageContext*)
{
    Sleep(INFINITE);
    return NEXT;
}

// Slow, but its messages are read all the while.
BROKEN_PAGE SlowDialog(PageContext*)
{
    const ULONGLONG end = GetTickCount64() + SLOW_MILLISECONDS;
    while (GetTickCount64() < end) {
        MSG message = {};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            DispatchMessageW(&message);
        }
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 50, QS_ALLINPUT);
    }
    return NEXT;
}

// Lets the wizard go on, and breaks off in the middle of the build.
BROKEN_PAGE BrokenBuildDialog(PageContext* context)
{
    const CString location = context->pSetupManager->m_strDeploymentLocation;
    std::thread([location] {
        while (!IsBuilding(location)) {
            SwitchToThread();
        }
        WriteToNothing();
    }).detach();
    return NEXT;
}

// What a flow may never reach: a tab page's export, and one that is no page at all.
extern "C" __declspec(dllexport) CTabPage BrokenTabPage(PageContext*)
{
    WriteToNothing();
    return {};
}
