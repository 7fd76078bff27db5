#include "window/module.h"

void CAppModule::Init(HINSTANCE instance) noexcept
{
    m_hInst = instance;
    SetResourceInstance(instance);
}

void CAppModule::Term() noexcept
{
    const CCriticalSectionLock lock(m_section);
    m_messageLoops.clear();
    for (const ATOM windowClass : m_windowClasses) {
        UnregisterClassW(MAKEINTATOM(windowClass), m_hInst);
    }
    m_windowClasses.clear();
}

HINSTANCE CAppModule::GetResourceInstance() const noexcept
{
    return static_cast<HINSTANCE>(m_hInstResource);
}

HINSTANCE CAppModule::SetResourceInstance(HINSTANCE instance) noexcept
{
    return static_cast<HINSTANCE>(InterlockedExchangePointer(&m_hInstResource, instance));
}

BOOL CAppModule::AddMessageLoop(CMessageLoop* loop) noexcept
{
    const CCriticalSectionLock lock(m_section);
    try {
        m_messageLoops[GetCurrentThreadId()] = loop;
        return TRUE;
    } catch (...) {
        return FALSE;
    }
}

BOOL CAppModule::RemoveMessageLoop() noexcept
{
    const CCriticalSectionLock lock(m_section);
    return m_messageLoops.erase(GetCurrentThreadId()) != 0;
}

CMessageLoop* CAppModule::GetMessageLoop(DWORD threadId) const noexcept
{
    const CCriticalSectionLock lock(m_section);
    const auto found = m_messageLoops.find(threadId);
    return found == m_messageLoops.end() ? nullptr : found->second;
}

bool CAppModule::RegisterWindowClass(const WNDCLASSEXW& windowClass) noexcept
{
    const CCriticalSectionLock lock(m_section);
    WNDCLASSEXW known = {};
    known.cbSize = sizeof known;
    if (GetClassInfoExW(m_hInst, windowClass.lpszClassName, &known)) {
        return true;
    }
    try {
        m_windowClasses.reserve(m_windowClasses.size() + 1);
    } catch (...) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return false;
    }
    const ATOM atom = RegisterClassExW(&windowClass);
    if (atom == 0) {
        return false;
    }
    m_windowClasses.push_back(atom);
    return true;
}
