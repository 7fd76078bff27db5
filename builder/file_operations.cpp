#include "builder/file_operations.h"

#include "base/link_rule.h"
#include "base/system_text.h"
#include "builder/build_failure.h"
#include "builder/build_names.h"
#include "builder/file_fault.h"

namespace {

[[noreturn]] void Fail(const wchar_t* operation, const CString& path)
{
    const DWORD code = GetLastError();
    throw BuildFailure{code, DescribeFailure(operation, path, code, ReasonFor(code, path))};
}

void Check(bool done, const wchar_t* operation, const CString& path)
{
    if (!done) {
        Fail(operation, path);
    }
}

template <class Kind>
void Check(const CHandleOwner<Kind>& owner, const wchar_t* operation, const CString& path)
{
    Check(static_cast<bool>(owner), operation, path);
}

bool IsMissing(DWORD code)
{
    return code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND;
}

CFileOwner Open(const CString& path, DWORD access, DWORD share, DWORD disposition, DWORD flags)
{
    return IsFaultDue() ? CFileOwner()
                        : CFileOwner(CreateFileW(UnlimitedPath(path), access, share, nullptr, disposition,
                                                 flags, nullptr));
}

FolderEntry EntryOf(const WIN32_FIND_DATAW& found)
{
    return {found.cFileName, (std::uint64_t{found.nFileSizeHigh} << 32) | found.nFileSizeLow,
            found.dwFileAttributes,
            (std::uint64_t{found.ftLastWriteTime.dwHighDateTime} << 32) | found.ftLastWriteTime.dwLowDateTime,
            IsLinkMark(found.dwFileAttributes, found.dwReserved0)};
}

void ClearReadOnly(const CString& path)
{
    const DWORD attributes = GetFileAttributesW(UnlimitedPath(path));
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY)) {
        SetFileAttributesW(UnlimitedPath(path), attributes & ~DWORD{FILE_ATTRIBUTE_READONLY});
    }
}

} // namespace

CFileOwner OpenForReading(const CString& path)
{
    CFileOwner file = Open(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                           OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN);
    Check(file, L"Opening", path);
    return file;
}

CFileOwner CreateForWriting(const CString& path)
{
    CFileOwner file = Open(path, GENERIC_WRITE, 0, CREATE_NEW, FILE_ATTRIBUTE_NORMAL);
    Check(file, L"Creating", path);
    return file;
}

CFileOwner CreateForBoth(const CString& path)
{
    CFileOwner file = Open(path, GENERIC_READ | GENERIC_WRITE, 0, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL);
    Check(file, L"Creating", path);
    return file;
}

DWORD ReadChunk(const CFileOwner& file, void* bytes, DWORD size, const CString& path)
{
    DWORD read = 0;
    Check(!IsFaultDue() && ReadFile(file.get(), bytes, size, &read, nullptr), L"Reading", path);
    return read;
}

void WriteChunk(const CFileOwner& file, const void* bytes, DWORD size, const CString& path)
{
    DWORD written = 0;
    Check(!IsFaultDue() && WriteFile(file.get(), bytes, size, &written, nullptr), L"Writing", path);
    if (written != size) {
        SetLastError(ERROR_DISK_FULL);
        Fail(L"Writing", path);
    }
}

void CopyBytes(const CString& source, const CString& target, const std::function<void()>& poll)
{
    constexpr DWORD CHUNK = 1 << 20;
    const CFileOwner from = OpenForReading(source);
    const CFileOwner to = CreateForWriting(target);
    std::vector<unsigned char> buffer(CHUNK);
    while (const DWORD read = ReadChunk(from, buffer.data(), CHUNK, source)) {
        WriteChunk(to, buffer.data(), read, target);
        poll();
    }
}

std::uint64_t SeekInFile(const CFileOwner& file, long long distance, DWORD origin, const CString& path)
{
    LARGE_INTEGER wanted = {};
    LARGE_INTEGER place = {};
    wanted.QuadPart = distance;
    Check(!IsFaultDue() && SetFilePointerEx(file.get(), wanted, &place, origin), L"Reading", path);
    return static_cast<std::uint64_t>(place.QuadPart);
}

void FlushToDisk(const CFileOwner& file, const CString& path)
{
    CountFlush();
    Check(!IsFaultDue() && FlushFileBuffers(file.get()), L"Writing", path);
}

FILE_BASIC_INFO TimesAndAttributes(const CFileOwner& file, const CString& path)
{
    FILE_BASIC_INFO basic = {};
    Check(!IsFaultDue() && GetFileInformationByHandleEx(file.get(), FileBasicInfo, &basic, sizeof(basic)),
          L"Reading times and attributes of", path);
    return basic;
}

void SetTimesAndAttributes(const CFileOwner& file, FILE_BASIC_INFO basic, const CString& path)
{
    // Compression and the like belong to the disk that the file came from.
    basic.FileAttributes &= FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM |
                            FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
    if (basic.FileAttributes == 0) {
        basic.FileAttributes = FILE_ATTRIBUTE_NORMAL;
    }
    basic.ChangeTime.QuadPart = 0; // the system's own
    Check(!IsFaultDue() && SetFileInformationByHandle(file.get(), FileBasicInfo, &basic, sizeof(basic)),
          L"Setting times and attributes of", path);
}

FILETIME LastWriteTime(const CFileOwner& file, const CString& path)
{
    FILETIME written = {};
    Check(!IsFaultDue() && GetFileTime(file.get(), nullptr, nullptr, &written), L"Reading the time of", path);
    return written;
}

std::uint64_t SizeOfFile(const CString& path)
{
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    Check(!IsFaultDue() && GetFileAttributesExW(UnlimitedPath(path), GetFileExInfoStandard, &data),
          L"Reading the size of", path);
    return (std::uint64_t{data.nFileSizeHigh} << 32) | data.nFileSizeLow;
}

BY_HANDLE_FILE_INFORMATION InformationOf(const CString& path)
{
    BY_HANDLE_FILE_INFORMATION information = {};
    const CFileOwner file =
        Open(path, FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
             OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
    if (!file && IsMissing(GetLastError())) {
        return information;
    }
    Check(file && GetFileInformationByHandle(file.get(), &information), L"Looking at", path);
    return information;
}

FolderEntry EntryOnDisk(const CString& path)
{
    WIN32_FIND_DATAW found = {};
    const CString bare = UnlimitedPath(WithoutClosingBackslash(path));
    const CFindOwner search(IsFaultDue() ? INVALID_HANDLE_VALUE : FindFirstFileW(bare, &found));
    if (!search) {
        Check(IsMissing(GetLastError()), L"Looking for", path);
        return {};
    }
    return EntryOf(found);
}

std::vector<FolderEntry> ListFolder(const CString& path)
{
    WIN32_FIND_DATAW found = {};
    const CString pattern = UnlimitedPath(JoinFolder(path, L"*"));
    CFindOwner search(IsFaultDue() ? INVALID_HANDLE_VALUE
                                   : FindFirstFileExW(pattern, FindExInfoBasic, &found, FindExSearchNameMatch,
                                                      nullptr, FIND_FIRST_EX_LARGE_FETCH));
    if (!search && GetLastError() == ERROR_FILE_NOT_FOUND) {
        return {}; // an empty disk: its root lists not even itself
    }
    Check(search, L"Listing", path);
    std::vector<FolderEntry> entries;
    do {
        FolderEntry entry = EntryOf(found);
        if (!(entry.strName == L".") && !(entry.strName == L"..")) {
            entries.push_back(std::move(entry));
        }
    } while (!IsFaultDue() && FindNextFileW(search.get(), &found));
    Check(GetLastError() == ERROR_NO_MORE_FILES, L"Listing", path);
    return entries;
}

PathState StateOfPath(const CString& path)
{
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    if (IsFaultDue() || !GetFileAttributesExW(UnlimitedPath(path), GetFileExInfoStandard, &data)) {
        Check(IsMissing(GetLastError()), L"Looking for", path);
        return {};
    }
    if (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
        return {PathKind::Folder, 0, 0};
    }
    return {PathKind::File, (std::uint64_t{data.nFileSizeHigh} << 32) | data.nFileSizeLow,
            (std::uint64_t{data.ftLastWriteTime.dwHighDateTime} << 32) | data.ftLastWriteTime.dwLowDateTime};
}

PathKind KindOfPath(const CString& path)
{
    const DWORD attributes = IsFaultDue() ? INVALID_FILE_ATTRIBUTES : GetFileAttributesW(UnlimitedPath(path));
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        Check(IsMissing(GetLastError()), L"Looking for", path);
        return PathKind::Nothing;
    }
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) ? PathKind::Folder : PathKind::File;
}

void MakeFolder(const CString& path)
{
    Check(!IsFaultDue() && CreateDirectoryW(UnlimitedPath(path), nullptr), L"Creating the folder", path);
}

void RenameFolder(const CString& from, const CString& to)
{
    Check(!IsFaultDue() && MoveFileExW(UnlimitedPath(from), UnlimitedPath(to), 0), L"Renaming the folder",
          from);
}

void RenameFile(const CString& from, const CString& to)
{
    Check(!IsFaultDue() && MoveFileExW(UnlimitedPath(from), UnlimitedPath(to), 0), L"Moving", from);
}

void DeleteOneFile(const CString& path)
{
    ClearReadOnly(path);
    Check(!IsFaultDue() && DeleteFileW(UnlimitedPath(path)), L"Deleting", path);
}

void DeleteEmptyFolder(const CString& path)
{
    ClearReadOnly(path);
    Check(!IsFaultDue() && RemoveDirectoryW(UnlimitedPath(path)), L"Deleting the folder", path);
}

void DeleteTree(const CString& path)
{
    for (const FolderEntry& entry : ListFolder(path)) {
        const CString inner = JoinFolder(path, entry.strName);
        if (!entry.IsFolder()) {
            DeleteOneFile(inner);
        } else if (entry.IsLink()) {
            DeleteEmptyFolder(inner);
        } else {
            DeleteTree(inner);
        }
    }
    DeleteEmptyFolder(path);
}

void RequireNothingOpenBelow(const CString& path, const std::function<void()>& poll)
{
    for (const FolderEntry& entry : ListFolder(path)) {
        const CString inner = JoinFolder(path, entry.strName);
        if (entry.IsFolder()) {
            if (!entry.IsLink()) {
                RequireNothingOpenBelow(inner, poll);
            }
            continue;
        }
        // Asking for the right to delete is refused exactly when a rename would be.
        const CFileOwner probe = Open(inner, DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL);
        Check(probe, L"Replacing", inner);
        poll();
    }
}

CString ReasonFor(unsigned int code, const CString& path)
{
    CString reason = FindSystemSentence(code).TrimRight(L".");
    ULARGE_INTEGER free = {};
    const CString folder = FolderAbove(path);
    if ((code == ERROR_DISK_FULL || code == ERROR_HANDLE_DISK_FULL) &&
        GetDiskFreeSpaceExW(UnlimitedPath(WithClosingBackslash(folder)), &free, nullptr, nullptr)) {
        reason += L"; \"" + folder + L"\" has " + NumberText(static_cast<long long>(free.QuadPart >> 20)) +
                  L" MB free";
    }
    return reason;
}

std::uint64_t FreeBytes(const CString& folder)
{
    ULARGE_INTEGER free = {};
    const CString path = WithClosingBackslash(folder);
    Check(!IsFaultDue() && GetDiskFreeSpaceExW(UnlimitedPath(path), &free, nullptr, nullptr),
          L"Reading the free space of", folder);
    return free.QuadPart;
}

bool IsRemote(const CString& path)
{
    return path.Left(2) == L"\\\\" ||
           (path.Mid(1, 1) == L":" && GetDriveTypeW(path.Left(2) + L"\\") == DRIVE_REMOTE);
}

CFileOwner OpenUnchanging(const CString& path)
{
    CFileOwner file = Open(path, GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL);
    Check(file, L"Opening", path);
    return file;
}

CFileOwner OpenAlone(const CString& path, bool makeIt)
{
    CFileOwner file = Open(path, GENERIC_READ | GENERIC_WRITE | DELETE, 0,
                           makeIt ? OPEN_ALWAYS : OPEN_EXISTING, FILE_ATTRIBUTE_HIDDEN);
    Check(file || GetLastError() == ERROR_SHARING_VIOLATION, L"Creating", path);
    return file;
}

std::vector<char> ReadAll(const CFileOwner& file, const CString& path)
{
    std::vector<char> bytes(4096);
    SetFilePointer(file.get(), 0, nullptr, FILE_BEGIN);
    bytes.resize(ReadChunk(file, bytes.data(), static_cast<DWORD>(bytes.size()), path));
    return bytes;
}

void ReplaceAll(const CFileOwner& file, const std::vector<char>& bytes, const CString& path)
{
    SetFilePointer(file.get(), 0, nullptr, FILE_BEGIN);
    Check(!IsFaultDue() && SetEndOfFile(file.get()), L"Writing", path);
    WriteChunk(file, bytes.data(), static_cast<DWORD>(bytes.size()), path);
    FlushToDisk(file, path);
}

void DeleteOnClose(const CFileOwner& file, const CString& path)
{
    FILE_DISPOSITION_INFO disposition = {TRUE};
    Check(!IsFaultDue() &&
              SetFileInformationByHandle(file.get(), FileDispositionInfo, &disposition, sizeof(disposition)),
          L"Deleting", path);
}
