#include "pages/share_resolving.h"

#include "base/path_text.h"
#include "frame/folder_check.h"
#include "pages/library_cache.h"

#include <windows.h>

#include <lm.h>
#include <shlwapi.h>
#include <winnetwk.h>

#include <cstring>
#include <vector>

namespace {

constexpr DWORD DRIVE_LIST_CAPACITY = 105; // characters: 26 drives of four, and a zero
constexpr DWORD CONNECTION_CAPACITY = 520; // characters
constexpr DWORD RESOURCE_BYTES = 480;
constexpr DWORD NAME_CAPACITY = 260; // characters, or bytes of a system without wide calls

// What a system of the other kind reports of a share (its header names it share_info_50).
#pragma pack(push, 1)
struct ShareInfo50
{
    char netName[13];
    unsigned char type;
    unsigned short flags;
    char* remark;
    char* path;
    char writePassword[9];
    char readPassword[9];
};
#pragma pack(pop)

using WideShareCall = DWORD(__stdcall*)(wchar_t* server, wchar_t* name, DWORD level, BYTE** buffer);
using BufferFreeCall = DWORD(__stdcall*)(void* buffer);
using NarrowShareCall = DWORD(__stdcall*)(const char* server, const char* name, short level, char* buffer,
                                          unsigned short size, unsigned short* needed);

// The function by name as one of the calls above; null when there is none.
template <class Call>
Call FindCall(const wchar_t* library, const wchar_t* procedure)
{
    return reinterpret_cast<Call>(
        reinterpret_cast<void*>(CLibraryCache::Instance().GetProc(library, procedure)));
}

bool IsWindowsNt()
{
    OSVERSIONINFOW version = {};
    version.dwOSVersionInfoSize = sizeof version;
    return GetVersionExW(&version) && version.dwPlatformId == VER_PLATFORM_WIN32_NT;
}

// The name under which a share is looked up. An extension goes, so "tools.v2" is looked up as "tools"; callers live
// with that.
CString ShareNameOf(const CString& remote)
{
    CString name(PathFindFileNameW(remote));
    PathRemoveExtensionW(name.GetBuffer(name.GetLength()));
    name.ReleaseBuffer();
    return name;
}

int WidePathOfShare(CString& out, const CString& name)
{
    const auto getInfo = FindCall<WideShareCall>(L"netapi32.dll", L"NetShareGetInfo");
    if (!getInfo) {
        return 0; // reported already; the look-up of the next would report the same library again
    }
    const auto freeBuffer = FindCall<BufferFreeCall>(L"netapi32.dll", L"NetApiBufferFree");
    if (!freeBuffer) {
        return 0;
    }
    CString shareName = name.Left(NAME_CAPACITY);
    BYTE* buffer = nullptr;
    if (getInfo(nullptr, shareName.GetBuffer(shareName.GetLength()), 2, &buffer) != NERR_Success) {
        return 0;
    }
    out = WithoutBackslashes(CString(reinterpret_cast<const SHARE_INFO_2*>(buffer)->shi2_path));
    freeBuffer(buffer);
    return 1;
}

int NarrowPathOfShare(CString& out, const CString& name)
{
    const auto getInfo = FindCall<NarrowShareCall>(L"svrapi.dll", L"NetShareGetInfo");
    if (!getInfo) {
        return 0;
    }
    char shareName[NAME_CAPACITY + 1] = "";
    const CString upperCaseName = CString(name).MakeUpper();
    WideCharToMultiByte(CP_THREAD_ACP, 0, upperCaseName, upperCaseName.GetLength(), shareName, NAME_CAPACITY,
                        nullptr, nullptr);
    unsigned short needed = 0;
    getInfo(nullptr, shareName, 50, nullptr, 0, &needed);
    std::vector<char> buffer(needed);
    if (needed < sizeof(ShareInfo50) ||
        getInfo(nullptr, shareName, 50, buffer.data(), needed, &needed) != NERR_Success) {
        return 0;
    }
    ShareInfo50 info;
    std::memcpy(&info, buffer.data(), sizeof info);
    CString path;
    const int length = MultiByteToWideChar(CP_THREAD_ACP, 0, info.path, -1, nullptr, 0);
    MultiByteToWideChar(CP_THREAD_ACP, 0, info.path, -1, path.GetBuffer(length), length);
    path.ReleaseBuffer();
    out = WithoutBackslashes(path);
    return 1;
}

// Reads the entries of an enumeration; 0 when the local path of one can't be found.
int ReadShares(HANDLE enumeration, ShareMap& shares)
{
    alignas(NETRESOURCEW) BYTE buffer[RESOURCE_BYTES];
    for (;;) {
        DWORD count = 1;
        DWORD size = sizeof buffer;
        if (WNetEnumResourceW(enumeration, &count, buffer, &size) != NO_ERROR) {
            return 1;
        }
        const auto* entry = reinterpret_cast<const NETRESOURCEW*>(buffer);
        if (!entry->lpRemoteName) {
            continue;
        }
        CString local(entry->lpLocalName);
        if (local.IsEmpty() && !LocalPathOfShare(local, entry->lpRemoteName)) {
            return 0;
        }
        CharUpperW(local.GetBuffer(local.GetLength()));
        local.ReleaseBuffer();
        shares[WithoutBackslashes(entry->lpRemoteName)] = WithoutBackslashes(local);
    }
}

} // namespace

CString ComputerName()
{
    CString name;
    DWORD size = NAME_CAPACITY;
    const BOOL read = GetComputerNameW(name.GetBuffer(NAME_CAPACITY), &size);
    name.ReleaseBuffer(read ? static_cast<int>(size) : 0);
    return name;
}

int LocalPathOfShare(CString& out, const CString& remote)
{
    out.Empty();
    const CString name = ShareNameOf(remote);
    return IsWindowsNt() ? WidePathOfShare(out, name) : NarrowPathOfShare(out, name);
}

int EnumerateShares(ShareMap& shares)
{
    shares.clear();
    CString container = ComputerRoot(ComputerName());
    NETRESOURCEW resource = {};
    resource.dwScope = RESOURCE_GLOBALNET;
    resource.dwType = RESOURCETYPE_DISK;
    resource.dwUsage = RESOURCEUSAGE_CONTAINER;
    resource.lpRemoteName = container.GetBuffer(container.GetLength());
    HANDLE enumeration = nullptr;
    const DWORD opened = WNetOpenEnumW(RESOURCE_GLOBALNET, RESOURCETYPE_DISK, 0, &resource, &enumeration);
    // A network that answers ends it too, with the enumeration left open: the local path then has no network form, and
    // the settings page offers the folder below the computer's name.
    if (opened == ERROR_NO_NETWORK || opened == NO_ERROR) {
        return 0;
    }
    const int result = ReadShares(enumeration, shares);
    if (enumeration) {
        WNetCloseEnum(enumeration);
    }
    return result;
}

int ResolveMappedDrive(CString& out, const CString& in)
{
    CString remote;
    DWORD size = CONNECTION_CAPACITY;
    const DWORD result = WNetGetConnectionW(in.Left(2), remote.GetBuffer(CONNECTION_CAPACITY), &size);
    remote.ReleaseBuffer(result == NO_ERROR ? -1 : 0);
    if (result != NO_ERROR) {
        return 0;
    }
    out = MappedPath(remote, in);
    return 1;
}

int ResolveNetworkPath(CString& out, const CString& in)
{
    out.Empty();
    if (in.IsEmpty()) {
        return 0;
    }
    if (PathIsUNCW(in)) {
        out = in;
        return 1;
    }
    if (!IsLocalOrNetworkPath(in)) {
        return 0;
    }
    if (GetDriveTypeW(WithClosingBackslash(in)) == DRIVE_REMOTE) {
        return ResolveMappedDrive(out, in);
    }
    wchar_t drives[DRIVE_LIST_CAPACITY + 1] = L"";
    if (GetLogicalDriveStringsW(DRIVE_LIST_CAPACITY, drives) < 1 || !IsDriveInList(in, drives)) {
        return 0;
    }
    ShareMap shares;
    if (!EnumerateShares(shares)) {
        return 0;
    }
    return FindShareOfPath(shares, in, out) ? 1 : 0;
}
