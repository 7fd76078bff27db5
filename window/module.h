// What a binary knows of itself.
//
//   CCriticalSection, CCriticalSectionLock
//   CAppModule               instance handles, the table of message loops, registered window classes
//   CResourceInstanceSwap    another resource module for the length of a scope
//
// Each binary that uses the window library defines `CAppModule _Module;`, calls Init when it is attached or starts and
// Term when it ends.
#pragma once

#include <windows.h>

#include <map>
#include <vector>

class CMessageLoop;

class CCriticalSection
{
public:
    CCriticalSection() noexcept { InitializeCriticalSection(&m_section); }
    ~CCriticalSection() { DeleteCriticalSection(&m_section); }
    CCriticalSection(const CCriticalSection&) = delete;
    CCriticalSection& operator=(const CCriticalSection&) = delete;

    void Lock() noexcept { EnterCriticalSection(&m_section); }
    void Unlock() noexcept { LeaveCriticalSection(&m_section); }

private:
    CRITICAL_SECTION m_section;
};

class CCriticalSectionLock
{
public:
    explicit CCriticalSectionLock(CCriticalSection& section) noexcept : m_section(section) { section.Lock(); }
    ~CCriticalSectionLock() { m_section.Unlock(); }
    CCriticalSectionLock(const CCriticalSectionLock&) = delete;
    CCriticalSectionLock& operator=(const CCriticalSectionLock&) = delete;

private:
    CCriticalSection& m_section;
};

class CAppModule
{
public:
    // The resources come from the binary itself until they are swapped.
    void Init(HINSTANCE instance) noexcept;
    // Forgets the message loops and unregisters the window classes, so that the binary can be unloaded.
    void Term() noexcept;

    HINSTANCE GetModuleInstance() const noexcept { return m_hInst; }

    // The module from which dialogs, icons, menus and strings are loaded. Setting it returns the former one; the
    // exchange is atomic.
    HINSTANCE GetResourceInstance() const noexcept;
    HINSTANCE SetResourceInstance(HINSTANCE instance) noexcept;

    // The calling thread's loop. A loop replaces the one that the thread had; the table borrows it. FALSE without
    // memory.
    BOOL AddMessageLoop(CMessageLoop* loop) noexcept;
    BOOL RemoveMessageLoop() noexcept;
    // Null for a thread without one.
    CMessageLoop* GetMessageLoop(DWORD threadId = GetCurrentThreadId()) const noexcept;

    // Registers the class unless it is registered already. False with GetLastError when the system refuses.
    [[nodiscard]] bool RegisterWindowClass(const WNDCLASSEXW& windowClass) noexcept;

private:
    HINSTANCE m_hInst = nullptr;
    void* volatile m_hInstResource = nullptr;
    mutable CCriticalSection m_section; // guards what follows
    std::map<DWORD, CMessageLoop*> m_messageLoops;
    std::vector<ATOM> m_windowClasses;
};

extern CAppModule _Module;

// Each swap keeps the module that it found, so swaps nest.
class CResourceInstanceSwap
{
public:
    explicit CResourceInstanceSwap(HINSTANCE instance) noexcept : m_old(_Module.SetResourceInstance(instance))
    {
    }
    ~CResourceInstanceSwap() { _Module.SetResourceInstance(m_old); }
    CResourceInstanceSwap(const CResourceInstanceSwap&) = delete;
    CResourceInstanceSwap& operator=(const CResourceInstanceSwap&) = delete;

private:
    HINSTANCE m_old;
};
