#include "tests/support/test_folder.h"

#include "base/handle.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <cstring>

CString ProgramFolder()
{
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    const CString file = path;
    return file.Left(file.ReverseFind(L'\\') + 1);
}

bool FolderExists(const CString& path)
{
    const DWORD attributes = GetFileAttributesW(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

bool FileExists(const CString& path)
{
    const DWORD attributes = GetFileAttributesW(path);
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

void WriteFileBytes(const CString& path, const char* bytes)
{
    const CFileOwner file(
        CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    ASSERT_TRUE(file) << Utf8(path) << " can't be written, error " << GetLastError();
    DWORD written = 0;
    const DWORD length = static_cast<DWORD>(std::strlen(bytes));
    ASSERT_TRUE(WriteFile(file.get(), bytes, length, &written, nullptr) && written == length) << Utf8(path);
}

void RemoveTree(const CString& path)
{
    WIN32_FIND_DATAW data = {};
    {
        const CFindOwner search(FindFirstFileW(path + L"\\*", &data));
        if (!search)
            return;
        do {
            const CString name = data.cFileName;
            const CString full = path + L"\\" + name;
            SetFileAttributesW(full, FILE_ATTRIBUTE_NORMAL);
            if (!(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY))
                DeleteFileW(full);
            else if (name != CString(L".") && name != CString(L".."))
                RemoveTree(full);
        } while (FindNextFileW(search.get(), &data));
    }
    RemoveDirectoryW(path);
}

CTestFolder::CTestFolder()
{
    static int count = 0;
    wchar_t temporary[MAX_PATH] = {};
    GetTempPathW(MAX_PATH, temporary);
    CreateDirectoryW(temporary, nullptr);
    m_root = CString(temporary) + L"rollout test " + NumberText(static_cast<long long>(GetTickCount64())) +
             L" " + NumberText(++count);
    EXPECT_TRUE(CreateDirectoryW(m_root, nullptr)) << Utf8(m_root) << ", error " << GetLastError();
    // The probe of a new folder removes empty parents, %TEMP% included; it stops at this file.
    WriteFileBytes(m_root + L"\\stays.txt", "A test is running.");
    m_path = m_root + L"\\folder\\";
    EXPECT_TRUE(CreateDirectoryW(m_path, nullptr)) << Utf8(m_path) << ", error " << GetLastError();
}

CTestFolder::~CTestFolder()
{
    // A program that a test started may still stand in the folder for a moment.
    const ULONGLONG deadline = GetTickCount64() + 10000;
    for (RemoveTree(m_root); FolderExists(m_root) && GetTickCount64() < deadline; RemoveTree(m_root))
        SwitchToThread();
    EXPECT_FALSE(FolderExists(m_root)) << Utf8(m_root) << " can't be removed";
}

CString CTestFolder::AddFolder(const wchar_t* name) const
{
    const CString path = m_path + name;
    EXPECT_TRUE(CreateDirectoryW(path, nullptr)) << Utf8(path) << ", error " << GetLastError();
    return path;
}

CString CTestFolder::AddFile(const wchar_t* name, const char* bytes) const
{
    const CString path = m_path + name;
    WriteFileBytes(path, bytes);
    return path;
}
