#include "tests/window/fixture.h"

#include <winternl.h>

CAppModule _Module;

void DispatchWaiting()
{
    MSG message = {};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

void WindowTest::SetUp()
{
    _Module.Init(GetModuleHandleW(nullptr));
    m_deadline = SetTimer(nullptr, 0, 10'000, [](HWND, UINT, UINT_PTR, DWORD) {
        ADD_FAILURE() << "The message loop did not end within ten seconds.";
        PostQuitMessage(-1);
    });
}

void WindowTest::TearDown()
{
    KillTimer(nullptr, m_deadline);
    DispatchWaiting(); // what a test left in the queue is not the next one's
    _Module.Term();
}

namespace {

// An entry of the table of GDI handles that the system shares with each process.
struct GdiTableEntry
{
    void* object;
    USHORT processId;
    USHORT count;
    USHORT unique;
    UCHAR type;
    UCHAR flags;
    void* user;
};

constexpr std::size_t gdiTableOffset = 0xF8; // GdiSharedHandleTable in the 64-bit process environment block
constexpr int gdiTableEntries = 0x4000;

} // namespace

int CountGdiObjects()
{
    PROCESS_BASIC_INFORMATION process = {};
    if (NtQueryInformationProcess(GetCurrentProcess(), ProcessBasicInformation, &process, sizeof process,
                                  nullptr) < 0) {
        ADD_FAILURE() << "The process environment block can't be found.";
        return -1;
    }
    const auto* block = reinterpret_cast<const char*>(process.PebBaseAddress);
    const auto* table = *reinterpret_cast<GdiTableEntry* const*>(block + gdiTableOffset);
    int count = 0;
    for (int index = 0; index < gdiTableEntries; ++index) {
        // Windows shares the table among all processes; Wine has one for each and leaves the owner at 0.
        const USHORT owner = table[index].processId;
        count +=
            table[index].type != 0 && (owner == 0 || owner == static_cast<USHORT>(GetCurrentProcessId()));
    }
    return count;
}

int CountWindows()
{
    int count = 0;
    const auto countFamily = [](HWND window, LPARAM parameter) -> BOOL {
        const auto countChild = [](HWND, LPARAM inner) -> BOOL {
            ++*reinterpret_cast<int*>(inner);
            return TRUE;
        };
        countChild(window, parameter);
        EnumChildWindows(window, countChild, parameter);
        return TRUE;
    };
    EnumThreadWindows(GetCurrentThreadId(), countFamily, reinterpret_cast<LPARAM>(&count));
    return count;
}
