// The network provider of the tests: what a maker of network software installs, made for a network of one machine.
//
// The platform's WNet calls load it like any other. A share is there when the prefix has a folder for it; the server
// LOCKED asks for a password that nobody knows.
#define _WINSOCKAPI_
#include <windows.h>

#include <winnetwk.h>

#include <wchar.h>

// Numbers of the provider interface, as documented; its own header declares the functions for callers, not for makers.
#define WNNC_NET_TYPE 2
#define WNNC_SPEC_VERSION 1
#define WNNC_START 12
#define WNNC_CONNECTION 6
#define WNNC_CON_ADDCONNECTION3 8
#define WNNC_CON_GETCONNECTIONS 4

namespace {

constexpr DWORD interfaceVersion = 0x00050001;
constexpr DWORD networkType = 0x00370000; // one that no known network has

bool HasServer(const wchar_t* name, const wchar_t* server)
{
    const size_t length = wcslen(server);
    return name[0] == L'\\' && name[1] == L'\\' && _wcsnicmp(name + 2, server, length) == 0 &&
           (name[2 + length] == L'\\' || name[2 + length] == 0);
}

} // namespace

extern "C" __declspec(dllexport) DWORD APIENTRY NPGetCaps(DWORD index)
{
    switch (index) {
    case WNNC_SPEC_VERSION:
        return interfaceVersion;
    case WNNC_NET_TYPE:
        return networkType;
    case WNNC_START:
        return 1;
    case WNNC_CONNECTION:
        return WNNC_CON_ADDCONNECTION3;
    default:
        return 0;
    }
}

extern "C" __declspec(dllexport) DWORD APIENTRY
    NPAddConnection3(HWND, NETRESOURCEW* resource, wchar_t*, wchar_t*, DWORD)
{
    if (!resource || !resource->lpRemoteName)
        return ERROR_BAD_NET_NAME;
    if (HasServer(resource->lpRemoteName, L"LOCKED"))
        return ERROR_INVALID_PASSWORD;
    return GetFileAttributesW(resource->lpRemoteName) == INVALID_FILE_ATTRIBUTES ? ERROR_BAD_NET_NAME
                                                                                 : NO_ERROR;
}
