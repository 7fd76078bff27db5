// Shares and drives made by the platform's own means in the Wine prefix of the tests.
//
// A share is a folder below the prefix's dosdevices/unc, which makes \\SERVER\SHARE a real UNC path for every file call;
// connections to it are answered by a network provider DLL of the tests, registered as on Windows.
#pragma once

#include "base/string.h"

#include <windows.h>

// Registers the network provider. The system reads the list when a process starts, so a process that finds it missing
// registers it, starts itself again with the same arguments and ends with the result of that. Call it before anything
// else: a static object of the program is the right place.
bool PrepareTestNetwork();

// A share with an empty folder; removed with the object.
class CTestShare
{
public:
    CTestShare(const wchar_t* server, const wchar_t* share);
    ~CTestShare();
    CTestShare(const CTestShare&) = delete;
    CTestShare& operator=(const CTestShare&) = delete;

    // `\\SERVER\SHARE\`
    const CString& GetPath() const { return m_path; }

private:
    CString m_path;
    CString m_serverFolder;
};

// A drive of a kind (DRIVE_FIXED, DRIVE_REMOVABLE, DRIVE_REMOTE) for a folder of the machine below Wine, as winecfg makes
// one; removed with the object.
class CTestDrive
{
public:
    CTestDrive(wchar_t letter, DWORD kind, const char* unixFolder);
    ~CTestDrive();
    CTestDrive(const CTestDrive&) = delete;
    CTestDrive& operator=(const CTestDrive&) = delete;

    // `X:\`
    CString GetPath() const { return CString(m_letter) + L":\\"; }

private:
    wchar_t m_letter;
};

// A drive that stands for a folder, as by SUBST.
class CSubstitutedDrive
{
public:
    CSubstitutedDrive(wchar_t letter, const CString& folder);
    ~CSubstitutedDrive();
    CSubstitutedDrive(const CSubstitutedDrive&) = delete;
    CSubstitutedDrive& operator=(const CSubstitutedDrive&) = delete;

    CString GetPath() const { return CString(m_letter) + L":\\"; }

private:
    CString Device() const { return CString(m_letter) + L":"; }

    wchar_t m_letter;
    CString m_link;
};

// The Wine prefix as a Windows path, ending in a backslash.
CString PrefixFolder();
