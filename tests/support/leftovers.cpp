#include "tests/support/leftovers.h"

#include "window/drawing_handles.h"

#include <windows.h>

#include <cstdint>
#include <vector>

namespace {

BOOL CALLBACK CountWindow(HWND, LPARAM count)
{
    ++*reinterpret_cast<int*>(count);
    return TRUE;
}

BOOL CALLBACK CountWithChildren(HWND window, LPARAM count)
{
    CountWindow(window, count);
    EnumChildWindows(window, CountWindow, count);
    return TRUE;
}

int CountWindows()
{
    int count = 0;
    EnumThreadWindows(GetCurrentThreadId(), CountWithChildren, reinterpret_cast<LPARAM>(&count));
    return count;
}

// Handles of menus and icons are even numbers below 65536 with a counter above them that need not be known.
template <class Test>
int CountUserHandles(Test test)
{
    int count = 0;
    for (std::uintptr_t handle = 0x20; handle < 0xFFF0; handle += 2)
        count += test(handle);
    return count;
}

bool IsIcon(std::uintptr_t handle)
{
    ICONINFO information = {};
    if (!GetIconInfo(reinterpret_cast<HICON>(handle), &information))
        return false;
    const CBitmapOwner mask(information.hbmMask);
    const CBitmapOwner color(information.hbmColor);
    return true;
}

// The process's table of GDI objects, to which its environment block points. GetGuiResources answers nothing on Wine.
struct GdiEntry
{
    std::uint64_t object;
    std::uint32_t owner;
    std::uint16_t unique;
    std::uint8_t type; // 0: free
    std::uint8_t flags;
    std::uint64_t user;
};

int CountGdiObjects()
{
    const DWORD answered = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    if (answered)
        return static_cast<int>(answered);
    constexpr int tableSize = 65536;
    constexpr std::size_t gdiTableField = 0xF8; // of the process's block
    using CurrentBlock = const char*(WINAPI*)();
    const auto currentBlock = reinterpret_cast<CurrentBlock>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlGetCurrentPeb")));
    const char* peb = currentBlock();
    const auto* table = *reinterpret_cast<const GdiEntry* const*>(peb + gdiTableField);
    int count = 0;
    for (int index = 0; index < tableSize; ++index)
        count += table[index].type != 0;
    return count;
}

std::set<CString> ProjectModules()
{
    std::set<CString> loaded;
    for (const wchar_t* name :
         {L"rolloutui.dll", L"wizcore.dll", L"wiztext.dll", L"slimhtml.dll", L"kmd32.dll", L"fixmgr.dll"}) {
        if (GetModuleHandleW(name))
            loaded.insert(name);
    }
    return loaded;
}

void DescribeCount(CString& text, const wchar_t* what, int before, int after)
{
    if (before != after)
        text += CString(what) + L": " + NumberText(before) + L" before, " + NumberText(after) + L" after\n";
}

long long AllocatedBytesOf(HANDLE heap)
{
    long long bytes = 0;
    HeapLock(heap);
    PROCESS_HEAP_ENTRY entry = {};
    while (HeapWalk(heap, &entry)) {
        if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY)
            bytes += entry.cbData;
    }
    HeapUnlock(heap);
    return bytes;
}

} // namespace

ProcessState ReadProcessState()
{
    ProcessState state;
    state.windows = CountWindows();
    state.menus =
        CountUserHandles([](std::uintptr_t handle) { return IsMenu(reinterpret_cast<HMENU>(handle)); });
    state.icons = CountUserHandles(IsIcon);
    state.gdiObjects = CountGdiObjects();
    state.modules = ProjectModules();
    return state;
}

CString DescribeChange(const ProcessState& before, const ProcessState& after)
{
    CString text;
    DescribeCount(text, L"windows", before.windows, after.windows);
    DescribeCount(text, L"menus", before.menus, after.menus);
    DescribeCount(text, L"icons", before.icons, after.icons);
    DescribeCount(text, L"GDI objects", before.gdiObjects, after.gdiObjects);
    for (const CString& name : after.modules) {
        if (!before.modules.contains(name))
            text += L"library " + name + L" is still loaded\n";
    }
    for (const CString& name : before.modules) {
        if (!after.modules.contains(name))
            text += L"library " + name + L" is gone\n";
    }
    return text;
}

long long AllocatedBytes()
{
    HANDLE heaps[64] = {};
    const DWORD count = GetProcessHeaps(64, heaps);
    long long bytes = 0;
    for (DWORD index = 0; index < count && index < 64; ++index)
        bytes += AllocatedBytesOf(heaps[index]);
    return bytes;
}
