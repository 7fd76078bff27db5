#include "tests/host/outside_links.h"

#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <cstring>

namespace {

bool IsThere(const CString& path)
{
    return GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES;
}

// A program outside is not waited for.
void WaitUntil(const CString& path, bool there)
{
    const ULONGLONG deadline = GetTickCount64() + 20000;
    while (IsThere(path) != there && GetTickCount64() < deadline) {
        SwitchToThread();
    }
    EXPECT_EQ(IsThere(path), there) << Utf8(path);
}

CString PathOfSystem(const CString& path)
{
    using NameCall = char*(CDECL*)(const wchar_t*);
    // kernel32 of the prefix shows what a path is outside of it.
    const auto call = reinterpret_cast<NameCall>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32"), "wine_get_unix_file_name")));
    char* name = call ? call(path) : nullptr;
    if (!name) {
        return CString();
    }
    const CString text = TextFromUtf8(name, strlen(name));
    HeapFree(GetProcessHeap(), 0, name);
    return text;
}

bool RunOutside(CString command)
{
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    const CString program = command.Left(command.Find(L' '));
    if (!CreateProcessW(program, command.GetBuffer(command.GetLength()), nullptr, nullptr, FALSE, 0, nullptr,
                        nullptr, &startup, &process)) {
        return false;
    }
    WaitForSingleObject(process.hProcess, 20000);
    CloseHandle(process.hProcess);
    CloseHandle(process.hThread);
    return true;
}

// The prefix's folder of drives and shares; empty where there is none.
CString LinkFolder()
{
    const CString drive = PathOfSystem(L"C:\\"); // .../dosdevices/c:/
    const int end = drive.Find(L"/dosdevices/");
    return end < 0 ? CString() : drive.Left(end) + L"/dosdevices";
}

} // namespace

CString ShareFolder(const CString& folder, const wchar_t* name)
{
    const CString target = PathOfSystem(folder);
    const CString links = LinkFolder();
    if (target.IsEmpty() || links.IsEmpty()) {
        return CString();
    }
    const CString shares = links + L"/unc/HOSTTEST";
    // In one program: two would run side by side, and in a fresh prefix the link came before its folder.
    EXPECT_TRUE(RunOutside(L"Z:\\bin\\sh -c \"mkdir -p '" + shares + L"' && ln -sfn '" + target + L"' '" +
                           shares + L"/" + name + L"'\""));
    const CString share = CString(L"\\\\HOSTTEST\\") + name + L"\\";
    WaitUntil(share, true);
    return share;
}

LinkedDrive::LinkedDrive(const wchar_t* letter, const CString& folder) : m_letter(letter)
{
    const CString target = PathOfSystem(folder);
    m_link = LinkFolder();
    if (!target.IsEmpty() && !m_link.IsEmpty()) {
        m_link += L"/" + m_letter.MakeLower();
        EXPECT_TRUE(RunOutside(L"Z:\\bin\\ln -sfn \"" + target + L"\" \"" + m_link + L"\""));
        WaitUntil(m_letter + L"\\", true);
    }
}

LinkedDrive::~LinkedDrive()
{
    if (!m_link.IsEmpty()) {
        EXPECT_TRUE(RunOutside(L"Z:\\bin\\rm -f \"" + m_link + L"\""));
        WaitUntil(m_letter + L"\\", false);
    }
}

FolderLink::FolderLink(const CString& link, const CString& folder) : m_path(link)
{
    const int slash = link.ReverseFind(L'\\');
    const CString parent = PathOfSystem(link.Left(slash + 1));
    const CString target = PathOfSystem(folder);
    if (!parent.IsEmpty() && !target.IsEmpty()) {
        m_link = parent + L"/" + link.Mid(slash + 1);
        EXPECT_TRUE(RunOutside(L"Z:\\bin\\ln -sfn \"" + target + L"\" \"" + m_link + L"\""));
        WaitUntil(m_path, true);
    }
}

FolderLink::~FolderLink()
{
    if (!m_link.IsEmpty()) {
        EXPECT_TRUE(RunOutside(L"Z:\\bin\\rm -f \"" + m_link + L"\""));
        WaitUntil(m_path, false);
    }
}
