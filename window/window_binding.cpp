#include "window/window_binding.h"

#include <cstddef>
#include <functional>
#include <unordered_map>
#include <utility>

namespace {

struct Place
{
    HWND window;
    BindingKey key;
    bool operator==(const Place&) const = default;
};

struct PlaceHash
{
    std::size_t operator()(const Place& place) const noexcept
    {
        return std::hash<const void*>()(place.window) * 31 + std::hash<const void*>()(place.key);
    }
};

// A table instead of window properties: looked up for each message, and a property costs a call of the system.
SRWLOCK g_bindingLock = SRWLOCK_INIT;
std::unordered_map<Place, WindowBinding, PlaceHash> g_bindings;
CPendingBinding* g_newestPending = nullptr; // of all threads

class CExclusiveLock
{
public:
    CExclusiveLock() noexcept { AcquireSRWLockExclusive(&g_bindingLock); }
    ~CExclusiveLock() { ReleaseSRWLockExclusive(&g_bindingLock); }
    CExclusiveLock(const CExclusiveLock&) = delete;
    CExclusiveLock& operator=(const CExclusiveLock&) = delete;
};

bool LookUp(const Place& place, WindowBinding& binding) noexcept
{
    AcquireSRWLockShared(&g_bindingLock);
    const auto found = g_bindings.find(place);
    const bool bound = found != g_bindings.end();
    if (bound) {
        binding = found->second;
    }
    ReleaseSRWLockShared(&g_bindingLock);
    return bound;
}

} // namespace

WindowBinding FindBinding(HWND window, BindingKey key) noexcept
{
    WindowBinding binding;
    if (LookUp({window, key}, binding)) {
        return binding;
    }
    const DWORD threadId = GetCurrentThreadId();
    const CExclusiveLock lock;
    for (CPendingBinding* pending = g_newestPending; pending; pending = pending->m_next) {
        if (!pending->m_taken && pending->m_key == key && pending->m_threadId == threadId) {
            try {
                g_bindings.insert_or_assign({window, key}, pending->m_binding);
            } catch (...) {
                return {}; // no memory: the window stays without object, and its creation reports failure
            }
            pending->m_taken = true;
            return pending->m_binding;
        }
    }
    return {};
}

bool BindWindow(HWND window, BindingKey key, const WindowBinding& binding) noexcept
{
    const CExclusiveLock lock;
    try {
        return g_bindings.try_emplace({window, key}, binding).second;
    } catch (...) {
        return false;
    }
}

void ForgetObject(HWND window, BindingKey key) noexcept
{
    const CExclusiveLock lock;
    const auto found = g_bindings.find({window, key});
    if (found != g_bindings.end()) {
        found->second.object = nullptr;
    }
}

void UnbindWindow(HWND window, BindingKey key) noexcept
{
    const CExclusiveLock lock;
    g_bindings.erase({window, key});
}

CPendingBinding::CPendingBinding(BindingKey key, void* object, WNDPROC previous) noexcept
    : m_key(key), m_binding{true, object, previous}
{
    const CExclusiveLock lock;
    m_next = std::exchange(g_newestPending, this);
}

CPendingBinding::~CPendingBinding()
{
    const CExclusiveLock lock;
    CPendingBinding** link = &g_newestPending;
    while (*link != this) {
        link = &(*link)->m_next;
    }
    *link = m_next;
}
