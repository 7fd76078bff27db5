// The only calls of the builder that touch files. Each throws a BuildFailure that names operation, path, the
// system's reason and the remedy, unless its comment says otherwise. Paths are full; those beyond 260 characters work.
#pragma once

#include "base/handle.h"
#include "base/string.h"

#include <cstdint>
#include <functional>
#include <vector>

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

CFileOwner OpenForReading(const CString& path);   // others may go on reading and writing
CFileOwner CreateForWriting(const CString& path); // fails when the file is there; nobody else may open it
CFileOwner CreateForBoth(const CString& path);    // for reading and writing; empties a file that is there
// 0 at the end.
[[nodiscard]] DWORD ReadChunk(const CFileOwner& file, void* bytes, DWORD size, const CString& path);
void WriteChunk(const CFileOwner& file, const void* bytes, DWORD size, const CString& path);
// The bytes alone, into a file that isn't there yet. `poll` is called now and then and may throw.
void CopyBytes(const CString& source, const CString& target, const std::function<void()>& poll);
// `origin` is FILE_BEGIN, FILE_CURRENT or FILE_END; the new place from the begin.
[[nodiscard]] std::uint64_t SeekInFile(const CFileOwner& file, long long distance, DWORD origin,
                                       const CString& path);
// On a share the system reports data that it could not deliver only when asked to flush.
void FlushToDisk(const CFileOwner& file, const CString& path);
[[nodiscard]] FILE_BASIC_INFO TimesAndAttributes(const CFileOwner& file, const CString& path);
// Call after the last write.
void SetTimesAndAttributes(const CFileOwner& file, FILE_BASIC_INFO basic, const CString& path);
[[nodiscard]] FILETIME LastWriteTime(const CFileOwner& file, const CString& path);
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
// The same of a file with its size and when it was written, in 100 nanoseconds; zero for all else.
struct PathState
{
    PathKind kind = PathKind::Nothing;
    std::uint64_t size = 0;
    std::uint64_t lastWritten = 0;
};
[[nodiscard]] PathState StateOfPath(const CString& path);
void MakeFolder(const CString& path); // the parent must be there; an existing folder is a failure
void RenameFolder(const CString& from, const CString& to);
void RenameFile(const CString& from, const CString& to); // or a link; fails when `to` is there
void DeleteOneFile(const CString& path);                 // read-only ones too
void DeleteEmptyFolder(const CString& path);
// The folder with all below it. Links are deleted, not followed.
void DeleteTree(const CString& path);
// Fails with the first file of the folder that somebody has open in a way that keeps it from being renamed. `poll` is
// called for each file and may throw to stop.
void RequireNothingOpenBelow(const CString& path, const std::function<void()>& poll);

// The system's words for why an operation on a path failed; when the disk is full, with what is free there.
[[nodiscard]] CString ReasonFor(unsigned int code, const CString& path);
[[nodiscard]] std::uint64_t FreeBytes(const CString& folder);
[[nodiscard]] bool IsRemote(const CString& path);

// Opens a file that nobody can write, rename or delete meanwhile.
[[nodiscard]] CFileOwner OpenUnchanging(const CString& path);
// Opens or makes a file that nobody else can open meanwhile. Empty: another one holds it.
[[nodiscard]] CFileOwner OpenAlone(const CString& path, bool makeIt);
// The whole content of a small file; replaces it; marks it for deletion when the handle closes.
[[nodiscard]] std::vector<char> ReadAll(const CFileOwner& file, const CString& path);
void ReplaceAll(const CFileOwner& file, const std::vector<char>& bytes, const CString& path);
void DeleteOnClose(const CFileOwner& file, const CString& path);
