// Owners of the platform's handles. An owner is move-only and closes what it holds.
//
//   CModuleOwner CFileOwner CKernelOwner          libraries; files; events, threads, processes (null for none)
//   CFindOwner CRegistryOwner                     a file enumeration; an open registry key
//   CGlobalOwner CLocalOwner CTaskOwner           memory of GlobalAlloc, LocalAlloc, CoTaskMemAlloc
//   CLastErrorKeeper                              cleaning up doesn't hide why something failed
//
// All have the same verbs: `get` looks, `put` closes and hands out the slot, `reset` closes and may take another,
// `release` gives away. Closing keeps GetLastError as it was.
#pragma once

#include "base/scope_exit.h"

#include <windows.h>

#include <objbase.h>

#include <utility>

class CLastErrorKeeper
{
public:
    CLastErrorKeeper() noexcept = default;
    ~CLastErrorKeeper() { SetLastError(m_error); }
    CLastErrorKeeper(const CLastErrorKeeper&) = delete;
    CLastErrorKeeper& operator=(const CLastErrorKeeper&) = delete;

private:
    DWORD m_error = GetLastError();
};

// Kind says what is owned: the type `Handle`, `Invalid()`, which stands for none, and `Close`.
template <class Kind>
class CHandleOwner
{
public:
    using Handle = typename Kind::Handle;

    CHandleOwner() noexcept = default;
    explicit CHandleOwner(Handle handle) noexcept : m_handle(handle) {}
    CHandleOwner(CHandleOwner&& other) noexcept : m_handle(other.release()) {}
    CHandleOwner& operator=(CHandleOwner&& other) noexcept
    {
        reset(other.release());
        return *this;
    }
    ~CHandleOwner() { reset(); }

    Handle get() const noexcept { return m_handle; }
    explicit operator bool() const noexcept { return m_handle != Kind::Invalid(); }

    // For calls that fill a handle in.
    [[nodiscard]] Handle* put() noexcept
    {
        reset();
        return &m_handle;
    }

    void reset(Handle handle = Kind::Invalid()) noexcept
    {
        const Handle old = std::exchange(m_handle, handle);
        if (old != Kind::Invalid() && old != handle) {
            const CLastErrorKeeper keeper;
            Kind::Close(old);
        }
    }

    // The caller closes it from now on.
    [[nodiscard]] Handle release() noexcept { return std::exchange(m_handle, Kind::Invalid()); }

private:
    Handle m_handle = Kind::Invalid();
};

// ---- the kinds -------------------------------------------------------------------------------------------------

template <class HandleType>
struct NullableKind
{
    using Handle = HandleType;
    static Handle Invalid() noexcept { return nullptr; }
};

struct FileKind
{
    using Handle = HANDLE;
    static Handle Invalid() noexcept { return INVALID_HANDLE_VALUE; }
    static void Close(Handle handle) noexcept { CloseHandle(handle); }
};
struct FindKind : FileKind
{
    static void Close(Handle handle) noexcept { FindClose(handle); }
};

struct ModuleKind : NullableKind<HMODULE>
{
    static void Close(HMODULE handle) noexcept { FreeLibrary(handle); }
};
struct KernelKind : NullableKind<HANDLE>
{
    static void Close(HANDLE handle) noexcept { CloseHandle(handle); }
};
struct RegistryKind : NullableKind<HKEY>
{
    static void Close(HKEY handle) noexcept { RegCloseKey(handle); }
};
struct GlobalKind : NullableKind<HGLOBAL>
{
    static void Close(HGLOBAL handle) noexcept { GlobalFree(handle); }
};
struct LocalKind : NullableKind<HLOCAL>
{
    static void Close(HLOCAL handle) noexcept { LocalFree(handle); }
};
struct TaskKind : NullableKind<void*>
{
    static void Close(void* handle) noexcept { CoTaskMemFree(handle); }
};

using CModuleOwner = CHandleOwner<ModuleKind>;
using CFileOwner = CHandleOwner<FileKind>;
using CKernelOwner = CHandleOwner<KernelKind>;
using CFindOwner = CHandleOwner<FindKind>;
using CRegistryOwner = CHandleOwner<RegistryKind>;
using CGlobalOwner = CHandleOwner<GlobalKind>;
using CLocalOwner = CHandleOwner<LocalKind>;
using CTaskOwner = CHandleOwner<TaskKind>;
