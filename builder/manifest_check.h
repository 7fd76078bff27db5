// A deployment's folder held against its manifest. Every file that the manifest names is read and hashed, unless its size
// says already that it is another; nothing is written.
#pragma once

#include "builder/file_operations.h"
#include "builder/manifest_text.h"

#include <functional>
#include <map>

struct BuildFailure;

// A file's content as a build read it on its way.
struct ReadContent
{
    std::uint64_t size = 0;
    std::uint64_t lastWritten = 0; // as in FolderEntry
    CString strSha256;
};
using ReadContents = std::map<CString, ReadContent, CompareNoCaseLess>; // by relative path

// `None` also for one that is no file.
enum class ManifestState
{
    None,
    Damaged, // not the form that a build writes, or one path twice: nothing can be concluded from it
    Read,
};

struct ChangedFile
{
    CString strPath;
    std::uint64_t builtSize = 0;
    std::uint64_t size = 0;
};

// Paths are relative to the folder and sorted; each stands in one list only.
struct ManifestCheck
{
    ManifestState manifest = ManifestState::None;
    std::vector<ManifestEntry> entries; // of the manifest
    std::vector<CString> missing;
    std::vector<CString> added;
    std::vector<CString> links; // whatever they stand for, a file or a folder; they are not followed
    std::vector<ChangedFile> changed;
    ReadContents same;
    std::uint64_t bytes = 0; // that were read
};

struct ManifestCheckCalls
{
    // Bytes so far, of all, and the file at hand; called between pieces, may throw to stop.
    std::function<void(std::uint64_t bytes, std::uint64_t total, const CString& path)> poll;
    // A file or folder that can't be read, by its relative path; may throw to stop. Without a manifest it gets nothing.
    std::function<void(const CString& path, const BuildFailure& failure)> onFailure;
};

// Files whose content is in `known` and that weren't written since are not read. Throws a BuildFailure when the manifest
// is there and can't be read.
[[nodiscard]] ManifestCheck CheckManifest(const CString& folder, const ReadContents& known,
                                          const ManifestCheckCalls& calls);

// Visits each file below, and each link in the place of what it leads to.
using FileVisit = std::function<void(const CString& path, const FolderEntry& entry)>;
void VisitFiles(const CString& folder, const CString& inner, const FileVisit& visit);
