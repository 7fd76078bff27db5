#include "catalog/patch_list_file.h"

#include "base/files.h"
#include "base/handle.h"
#include "base/path_text.h"
#include "base/sha256.h"
#include "catalog/catalog_limits.h"

#include <string>

namespace {

CString UniversalTime()
{
    SYSTEMTIME now = {};
    GetSystemTime(&now);
    CString text;
    text.Format(L"%04u-%02u-%02uT%02u:%02u:%02uZ", now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute,
                now.wSecond);
    return text;
}

unsigned int WriteWhole(const CString& path, const std::string& bytes)
{
    const CFileOwner file(CreateFileW(FilePath(path), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD written = 0;
    const bool isWritten =
        file && WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
        FlushFileBuffers(file.get());
    return isWritten ? DWORD{ERROR_SUCCESS} : GetLastError();
}

bool IsAbsence(unsigned int error)
{
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

} // namespace

unsigned int WritePatchList(const CString& path, const CatalogAnswer& answer, const CString& key,
                            const CString& product)
{
    std::string bytes;
    AppendUtf8(bytes, ComposePatchList(answer, {UniversalTime(), key, product}));
    const CString fresh = path + L".new";
    unsigned int error = WriteWhole(fresh, bytes);
    if (error == ERROR_SUCCESS &&
        !MoveFileExW(FilePath(fresh), FilePath(path), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
        error = GetLastError();
    }
    if (error != ERROR_SUCCESS) {
        DeleteFileW(FilePath(fresh));
    }
    return error;
}

unsigned int CheckListedFile(const CString& listPath, const CString& filePath)
{
    std::string bytes;
    if (const unsigned int error = ReadWholeFile(listPath, ANSWER_BYTES_LIMIT, bytes);
        error != ERROR_SUCCESS) {
        return IsAbsence(error) ? ERROR_FILE_NOT_FOUND : ERROR_INVALID_DATA;
    }
    const std::optional<CatalogAnswer> list = ReadPatchList(bytes.data(), bytes.size());
    if (!list) {
        return ERROR_INVALID_DATA;
    }
    // Who downloads may still have it open, for writing too; all of it has been written by then.
    const CFileOwner file(CreateFileW(FilePath(filePath), GENERIC_READ,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                      OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!file) {
        const DWORD error = GetLastError();
        return IsAbsence(error) || IsFolder(filePath) ? DWORD{ERROR_FILE_NOT_FOUND} : error;
    }
    const CatalogFile* described = FindListedFile(*list, LastName(filePath));
    if (!described) {
        return ERROR_NOT_FOUND;
    }
    LARGE_INTEGER size = {};
    if (!GetFileSizeEx(file.get(), &size)) {
        return GetLastError();
    }
    if (size.QuadPart != described->size) {
        return ERROR_CRC;
    }
    CString sha256;
    const unsigned int error = HashFile(file.get(), sha256);
    if (error != ERROR_SUCCESS) {
        return error;
    }
    return sha256 == described->strSha256 ? ERROR_SUCCESS : ERROR_CRC;
}
