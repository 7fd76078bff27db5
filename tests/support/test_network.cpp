#include "tests/support/test_network.h"

#include "base/handle.h"
#include "tests/support/test_folder.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>
#include <winioctl.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>

namespace {

constexpr wchar_t providerName[] = L"RolloutTestNetwork";
constexpr wchar_t startedAgain[] =
    L"ROLLOUT_TEST_NETWORK"; // environment: the list was written by our starter
constexpr wchar_t orderKey[] = L"System\\CurrentControlSet\\Control\\NetworkProvider\\Order";
constexpr wchar_t orderValue[] = L"ProviderOrder";

CString ReadText(const wchar_t* key, const wchar_t* value)
{
    wchar_t text[1024] = {};
    DWORD size = sizeof(text);
    RegGetValueW(HKEY_LOCAL_MACHINE, key, value, RRF_RT_REG_SZ, nullptr, text, &size);
    return text;
}

bool WriteText(const CString& key, const wchar_t* value, const CString& text)
{
    return RegSetKeyValueW(HKEY_LOCAL_MACHINE, key, value, REG_SZ, text,
                           static_cast<DWORD>((text.GetLength() + 1) * sizeof(wchar_t))) == ERROR_SUCCESS;
}

CString ServiceKey()
{
    return CString(L"System\\CurrentControlSet\\Services\\") + providerName + L"\\NetworkProvider";
}

CString ProviderPath()
{
    return ProgramFolder() + L"test_network_provider.dll";
}

bool IsProviderRegistered()
{
    return ReadText(orderKey, orderValue).Find(providerName) >= 0 &&
           ReadText(ServiceKey(), L"ProviderPath") == ProviderPath();
}

bool RegisterProvider()
{
    CString order = ReadText(orderKey, orderValue);
    if (order.Find(providerName) < 0)
        order = order.IsEmpty() ? CString(providerName) : order + L"," + providerName;
    return WriteText(ServiceKey(), L"Name", providerName) &&
           WriteText(ServiceKey(), L"ProviderPath", ProviderPath()) && WriteText(orderKey, orderValue, order);
}

[[noreturn]] void RunAgain()
{
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process = {};
    CString commandLine = GetCommandLineW();
    wchar_t* buffer = commandLine.GetBuffer(commandLine.GetLength());
    DWORD result = 1;
    if (CreateProcessW(nullptr, buffer, nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &process)) {
        const CKernelOwner thread(process.hThread);
        const CKernelOwner owner(process.hProcess);
        WaitForSingleObject(owner.get(), INFINITE);
        GetExitCodeProcess(owner.get(), &result);
    }
    ExitProcess(result);
}

// The prefix's list of devices, as seen from within.
CString DeviceFolder()
{
    return PrefixFolder() + L"dosdevices\\";
}

// The request by which winecfg registers a drive with the mount manager; the texts follow the record.
struct DriveRequest
{
    ULONG size;
    ULONG type;
    ULONG fileSystem;
    DWORD serial;
    ULONGLONG device;
    WCHAR letter;
    USHORT mountPointOffset;
    USHORT deviceOffset;
    USHORT labelOffset;
};
constexpr DWORD defineDrive = CTL_CODE('m', 32, METHOD_BUFFERED, FILE_READ_ACCESS | FILE_WRITE_ACCESS);

bool DefineDrive(wchar_t letter, DWORD kind, const char* unixFolder)
{
    char buffer[1024] = {};
    DriveRequest request = {};
    request.letter = letter;
    request.type = kind;
    request.size = sizeof(request);
    if (unixFolder) {
        request.mountPointOffset = sizeof(request);
        std::strcpy(buffer + sizeof(request), unixFolder);
        request.size += static_cast<ULONG>(std::strlen(unixFolder)) + 1;
    }
    std::memcpy(buffer, &request, sizeof(request));
    const CFileOwner manager(CreateFileW(L"\\\\.\\MountPointManager", GENERIC_READ | GENERIC_WRITE,
                                         FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0,
                                         nullptr));
    DWORD got = 0;
    return manager &&
           DeviceIoControl(manager.get(), defineDrive, buffer, request.size, nullptr, 0, &got, nullptr);
}

} // namespace

CString PrefixFolder()
{
    wchar_t text[MAX_PATH] = {};
    GetEnvironmentVariableW(L"WINECONFIGDIR", text, MAX_PATH); // \??\Z:\...
    const CString path = text;
    return path.Mid(4) + L"\\";
}

bool PrepareTestNetwork()
{
    if (IsProviderRegistered())
        return true;
    if (GetEnvironmentVariableW(startedAgain, nullptr, 0) || !RegisterProvider())
        return false;
    SetEnvironmentVariableW(startedAgain, L"1");
    RunAgain();
}

CTestShare::CTestShare(const wchar_t* server, const wchar_t* share)
    : m_path(CString(L"\\\\") + server + L"\\" + share + L"\\"),
      m_serverFolder(DeviceFolder() + L"unc\\" + server)
{
    CreateDirectoryW(DeviceFolder() + L"unc", nullptr);
    CreateDirectoryW(m_serverFolder, nullptr);
    CreateDirectoryW(m_serverFolder + L"\\" + share, nullptr);
    EXPECT_TRUE(FolderExists(m_path)) << Utf8(m_path) << " could not be made below " << Utf8(m_serverFolder);
}

CTestShare::~CTestShare()
{
    RemoveTree(m_serverFolder);
}

CTestDrive::CTestDrive(wchar_t letter, DWORD kind, const char* unixFolder) : m_letter(letter)
{
    EXPECT_TRUE(DefineDrive(letter, kind, unixFolder))
        << "drive " << Utf8(GetPath()) << ", error " << GetLastError();
    EXPECT_EQ(GetDriveTypeW(GetPath()), kind);
}

CTestDrive::~CTestDrive()
{
    DefineDrive(m_letter, 0, nullptr);
}

// The symbolic link of the system names the target, as SUBST leaves it; files are reached by the prefix's device.
CSubstitutedDrive::CSubstitutedDrive(wchar_t letter, const CString& folder)
    : m_letter(letter), m_link(L"\\\\?\\unix" + DeviceFolder().Mid(2) + Device().MakeLower())
{
    EXPECT_TRUE(CreateDirectoryW(m_link, nullptr)) << Utf8(m_link) << ", error " << GetLastError();
    EXPECT_TRUE(DefineDosDeviceW(0, Device(), folder)) << "error " << GetLastError();
}

CSubstitutedDrive::~CSubstitutedDrive()
{
    DefineDosDeviceW(DDD_REMOVE_DEFINITION, Device(), nullptr);
    RemoveDirectoryW(m_link);
}
