// The only calls of the builder that touch files. Each throws a BuildFailure that names operation, path, the
// system's reason and the remedy, unless its comment says otherwise. Paths are full; those beyond 260 characters work.
#pragma once

#include "base/string.h"

#include <windows.h>

#include <cstdint>
#include <utility>
#include <vector>

// Owns a file handle.
class CFileHandle
{
public:
    CFileHandle() = default;
    explicit CFileHandle(HANDLE handle) : m_handle(handle) {}
    CFileHandle(CFileHandle&& other) noexcept : m_handle(std::exchange(other.m_handle, INVALID_HANDLE_VALUE))
    {
    }
    CFileHandle& operator=(CFileHandle&& other) noexcept
    {
        std::swap(m_handle, other.m_handle);
        return *this;
    }
    ~CFileHandle() { Close(); }

    HANDLE Get() const { return m_handle; }
    bool IsOpen() const { return m_handle != INVALID_HANDLE_VALUE; }
    void Close(); // keeps the last error

private:
    HANDLE m_handle = INVALID_HANDLE_VALUE;
};

struct FolderEntry
{
    CString strName;
    std::uint64_t size = 0;
    DWORD attributes = 0;
    std::uint64_t lastWritten = 0; // 100 nanoseconds
    bool isLink = false;           // stands for a file or folder elsewhere
    bool IsFolder() const { return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0; }
    bool IsLink() const { return isLink; }
};

// What a path names.
enum class PathKind
{
    Nothing,
    File,
    Folder,
};

CFileHandle OpenForReading(const CString& path);   // others may go on reading and writing
CFileHandle CreateForWriting(const CString& path); // fails when the file is there; nobody else may open it
CFileHandle CreateForBoth(const CString& path);    // for reading and writing; empties a file that is there
// 0 at the end.
[[nodiscard]] DWORD ReadChunk(const CFileHandle& file, void* bytes, DWORD size, const CString& path);
void WriteChunk(const CFileHandle& file, const void* bytes, DWORD size, const CString& path);
// `origin` is FILE_BEGIN, FILE_CURRENT or FILE_END; the new place from the begin.
[[nodiscard]] std::uint64_t SeekInFile(const CFileHandle& file, long long distance, DWORD origin,
                                       const CString& path);
// On a share the system reports data that it could not deliver only when asked to flush.
void FlushToDisk(const CFileHandle& file, const CString& path);
// Times and attributes; call after the last write.
void CopyTimesAndAttributes(const CFileHandle& from, const CFileHandle& to, const CString& path);
[[nodiscard]] FILETIME LastWriteTime(const CFileHandle& file, const CString& path);
[[nodiscard]] std::uint64_t SizeOfFile(const CString& path);

// The numbers by which the disk knows a file or folder, with its times and size; all zero when it isn't there.
[[nodiscard]] BY_HANDLE_FILE_INFORMATION InformationOf(const CString& path);
// The entry of its folder: with the name under which it really stands, which an 8.3 name is not, and a link as itself.
// Without a name when it isn't there.
[[nodiscard]] FolderEntry EntryOnDisk(const CString& path);

// Without "." and "..", in no order.
[[nodiscard]] std::vector<FolderEntry> ListFolder(const CString& path);
// Throws when that can't be told, on a lost share for instance.
[[nodiscard]] PathKind KindOfPath(const CString& path);
void MakeFolder(const CString& path); // the parent must be there; an existing folder is a failure
void RenameFolder(const CString& from, const CString& to);
void RenameFile(const CString& from, const CString& to); // or a link; fails when `to` is there
void DeleteOneFile(const CString& path);                 // read-only ones too
void DeleteEmptyFolder(const CString& path);
// The folder with all below it. Links are deleted, not followed.
void DeleteTree(const CString& path);
// Fails with the first file of the folder that somebody has open in a way that keeps it from being renamed.
void RequireNothingOpenBelow(const CString& path);

// The system's words for why an operation on a path failed; when the disk is full, with what is free there.
[[nodiscard]] CString ReasonFor(unsigned int code, const CString& path);
[[nodiscard]] std::uint64_t FreeBytes(const CString& folder);
[[nodiscard]] bool IsRemote(const CString& path);

// Opens or makes a file that nobody else can open meanwhile. Not open: another one holds it.
[[nodiscard]] CFileHandle OpenAlone(const CString& path, bool makeIt);
// The whole content of a small file; replaces it; marks it for deletion when the handle closes.
[[nodiscard]] std::vector<char> ReadAll(const CFileHandle& file, const CString& path);
void ReplaceAll(const CFileHandle& file, const std::vector<char>& bytes, const CString& path);
void DeleteOnClose(const CFileHandle& file, const CString& path);
