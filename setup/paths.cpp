#include "setup/paths.h"

#include "base/path_text.h"
#include "base/system_text.h"
#include "setup/texts.h"

#include <windows.h>

#include <shlobj.h>

namespace {

// Calls that answer the length with the closing zero when the buffer is short, else without.
template <class Call>
CString GrowingText(Call call)
{
    CString text;
    for (int capacity = MAX_PATH;;) {
        const int length = static_cast<int>(call(text.GetBuffer(capacity), static_cast<DWORD>(capacity + 1)));
        const bool fits = length <= capacity;
        text.ReleaseBuffer(fits ? length : 0);
        if (fits) {
            return text;
        }
        capacity = length;
    }
}

} // namespace

CString ProgramFile()
{
    // This call cuts a path that is too long, and answers the buffer's size.
    return GrowingText([](wchar_t* buffer, DWORD size) {
        const DWORD length = GetModuleFileNameW(nullptr, buffer, size);
        return length == size ? size * 2 : length;
    });
}

CString FolderOfProgram()
{
    return FolderOfFile(ProgramFile());
}

CString CurrentFolder()
{
    return GrowingText([](wchar_t* buffer, DWORD size) { return GetCurrentDirectoryW(size, buffer); });
}

CString FullPath(const CString& path)
{
    const CString full = GrowingText(
        [&path](wchar_t* buffer, DWORD size) { return GetFullPathNameW(path, size, buffer, nullptr); });
    return full.IsEmpty() ? path : full;
}

bool FileOrFolderExists(const CString& path)
{
    return GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES;
}

CString MakeFolder(const CString& path)
{
    const int error = SHCreateDirectoryExW(nullptr, path, nullptr);
    const bool stands = error == ERROR_SUCCESS || error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS;
    if (stands && (GetFileAttributesW(path) & FILE_ATTRIBUTE_DIRECTORY)) {
        return CString();
    }
    return SystemErrorText(stands ? static_cast<unsigned long>(ERROR_DIRECTORY)
                                  : static_cast<unsigned long>(error));
}
