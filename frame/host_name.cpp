#include "frame/host_name.h"

#include "frame/procedure.h"
#include "frame/resource_library.h"

#include <winsock2.h>
#include <ws2tcpip.h>

#include <windows.h>

namespace {

constexpr WORD SOCKETS_VERSION = 0x102;
constexpr int HOST_CAPACITY = 16;

// The first 15 characters in the system's code page. A longer name is cut, as it always was: the servers in use have
// NetBIOS names.
void ToHostName(const wchar_t* host, char (&name)[HOST_CAPACITY])
{
    ::WideCharToMultiByte(CP_ACP, 0, host, -1, name, HOST_CAPACITY, nullptr, nullptr);
    name[HOST_CAPACITY - 1] = 0; // the call fills the buffer without an end when the name is longer
}

bool ResolveHost(HMODULE sockets, const char* name)
{
    const auto getAddresses = FindProcedure<decltype(&::getaddrinfo)>(sockets, "getaddrinfo");
    const auto freeAddresses = FindProcedure<decltype(&::freeaddrinfo)>(sockets, "freeaddrinfo");
    if (getAddresses && freeAddresses) {
        addrinfo* addresses = nullptr;
        if (getAddresses(name, nullptr, nullptr, &addresses) != 0) {
            return false;
        }
        freeAddresses(addresses);
        return true;
    }
    const auto getHost = FindProcedure<decltype(&::gethostbyname)>(sockets, "gethostbyname");
    return getHost && getHost(name);
}

} // namespace

bool IsHostResolvable(const wchar_t* host)
{
    CResourceLibrary library;
    if (!host || !library.Load(L"ws2_32.dll")) {
        return false;
    }
    const HMODULE sockets = library.GetModule();
    const auto start = FindProcedure<decltype(&::WSAStartup)>(sockets, "WSAStartup");
    const auto cleanUp = FindProcedure<decltype(&::WSACleanup)>(sockets, "WSACleanup");
    WSADATA data = {};
    if (!start || !cleanUp || start(SOCKETS_VERSION, &data) != 0) {
        return false;
    }
    char name[HOST_CAPACITY] = {};
    ToHostName(host, name);
    const bool resolved = ResolveHost(sockets, name);
    cleanUp();
    return resolved;
}
