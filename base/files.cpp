#include "base/files.h"

#include "base/handle.h"
#include "base/link_rule.h"
#include "base/path_text.h"

#include <algorithm>

CString FolderPath(const CString& path)
{
    CString full;
    const DWORD capacity = GetFullPathNameW(path, 0, nullptr, nullptr);
    if (capacity != 0) {
        GetFullPathNameW(path, capacity, full.GetBuffer(static_cast<int>(capacity)), nullptr);
        full.ReleaseBuffer();
    }
    if (full.IsEmpty()) {
        full = path;
    }
    full.TrimRight(L"\\");
    return full + L"\\";
}

bool IsFile(const CString& path)
{
    const DWORD attributes = GetFileAttributesW(FilePath(path));
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

bool IsFolder(const CString& path)
{
    const DWORD attributes = GetFileAttributesW(FilePath(path));
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

unsigned int ReadWholeFile(const CString& path, std::size_t limit, std::string& bytes)
{
    const CFileOwner file(CreateFileW(FilePath(path), GENERIC_READ,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                      OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!file) {
        return GetLastError();
    }
    LARGE_INTEGER size = {};
    if (!GetFileSizeEx(file.get(), &size)) {
        return GetLastError();
    }
    if (static_cast<unsigned long long>(size.QuadPart) > limit) {
        return ERROR_FILE_TOO_LARGE;
    }
    bytes.resize(static_cast<std::size_t>(size.QuadPart));
    DWORD read = 0;
    if (!ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr)) {
        return GetLastError();
    }
    bytes.resize(read);
    return ERROR_SUCCESS;
}

unsigned int MakeFolders(const CString& path)
{
    if (IsFolder(path)) {
        return ERROR_SUCCESS;
    }
    const CString parent = ParentFolder(path);
    if (!parent.IsEmpty()) {
        const unsigned int error = MakeFolders(parent);
        if (error != ERROR_SUCCESS) {
            return error;
        }
    }
    if (CreateDirectoryW(FilePath(path), nullptr)) {
        return ERROR_SUCCESS;
    }
    const DWORD error = GetLastError();
    return error == ERROR_ALREADY_EXISTS && IsFolder(path) ? DWORD{ERROR_SUCCESS} : error;
}

void RemoveFolder(const CString& path)
{
    const CString folder = FolderPath(path);
    const DWORD attributes = GetFileAttributesW(FilePath(path));
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return;
    }
    std::vector<FolderItem> items;
    if (!(attributes & FILE_ATTRIBUTE_REPARSE_POINT) && ListFolder(folder, items) == ERROR_SUCCESS) {
        for (const FolderItem& item : items) {
            const CString full = folder + item.strName;
            if (item.isFolder) {
                RemoveFolder(full);
            } else {
                SetFileAttributesW(FilePath(full), FILE_ATTRIBUTE_NORMAL);
                DeleteFileW(FilePath(full));
            }
        }
    }
    RemoveDirectoryW(FilePath(path));
}

unsigned int ListFolder(const CString& path, std::vector<FolderItem>& items)
{
    items.clear();
    WIN32_FIND_DATAW found = {};
    const CFindOwner search(FindFirstFileW(FilePath(FolderPath(path)) + L"*", &found));
    if (!search) {
        const DWORD error = GetLastError();
        return error == ERROR_FILE_NOT_FOUND ? DWORD{ERROR_SUCCESS} : error;
    }
    do {
        const CString name = found.cFileName;
        if (name != L"." && name != L"..") {
            items.push_back(
                {name, (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0,
                 IsLinkMark(found.dwFileAttributes, found.dwReserved0),
                 (static_cast<unsigned long long>(found.nFileSizeHigh) << 32) | found.nFileSizeLow});
        }
    } while (FindNextFileW(search.get(), &found));
    const DWORD error = GetLastError();
    std::sort(items.begin(), items.end(), [](const FolderItem& left, const FolderItem& right) {
        return left.strName.CompareNoCase(right.strName) < 0;
    });
    return error == ERROR_NO_MORE_FILES ? DWORD{ERROR_SUCCESS} : error;
}
