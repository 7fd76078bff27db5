// Stage and copy: the tree of folders first, then file after file in chunks. The hash for the manifest is taken from
// the bytes on their way, so that nothing is read twice.
#include "builder/build_run.h"

#include "builder/build_failure.h"
#include "builder/build_names.h"
#include "builder/file_operations.h"
#include "builder/sha256.h"

namespace {

// A share reports only now what it could not take. And an old deployment goes for good once the new one stands: a loss
// of power must not cost both.
void FlushWhereNeeded(const BuildRun& run, const CFileHandle& file, const CString& path)
{
    if (run.replaces || IsRemote(run.staging)) {
        FlushToDisk(file, path);
    }
}

// What a file of the old deployment held needn't be read once more to be judged.
void NoteReadOfOld(BuildRun& run, const CFileHandle& from, const CString& source, const ManifestEntry& read)
{
    if (run.replaces && IsSameOrBelow(source, run.target)) {
        const FILETIME written = LastWriteTime(from, source);
        run.readOfOld[source.Mid(run.target.GetLength() + 1)] = {
            read.size, (std::uint64_t{written.dwHighDateTime} << 32) | written.dwLowDateTime, read.strSha256};
    }
}

} // namespace

void StageFolders(BuildRun& run)
{
    run.Step(L"Preparing " + run.plan.strName);
    MakeFolder(run.staging);
    for (const CString& folder : run.list.folders) {
        MakeFolder(JoinFolder(run.staging, folder));
    }
}

void CopyFiles(BuildRun& run)
{
    run.Step(L"Copying " + run.plan.strMediaName);
    for (const CopyItem& file : run.list.files) {
        CopyIntoStaging(run, file.strSource, file.strTarget);
    }
}

void CopyIntoStaging(BuildRun& run, const CString& source, const CString& target)
{
    const CString path = JoinFolder(run.staging, target);
    run.meter.SetFile(target);
    const CFileHandle from = OpenForReading(source);
    const CFileHandle to = CreateForWriting(path);
    Sha256 hash;
    std::uint64_t size = 0;
    while (const DWORD read =
               ReadChunk(from, run.buffer.data(), static_cast<DWORD>(run.buffer.size()), source)) {
        WriteChunk(to, run.buffer.data(), read, path);
        hash.Add(run.buffer.data(), read);
        size += read;
        run.meter.Add(read);
    }
    FlushWhereNeeded(run, to, path);
    CopyTimesAndAttributes(from, to, path);
    run.manifest.push_back({target, size, hash.Finish()});
    NoteReadOfOld(run, from, source, run.manifest.back());
}

void WriteIntoStaging(BuildRun& run, const CString& target, const CString& text, bool byteOrderMark)
{
    std::vector<char> bytes;
    if (byteOrderMark) {
        bytes.insert(bytes.end(), {'\xEF', '\xBB', '\xBF'});
    }
    AppendUtf8(bytes, text);
    const CString path = JoinFolder(run.staging, target);
    const CFileHandle file = CreateForWriting(path);
    WriteChunk(file, bytes.data(), static_cast<DWORD>(bytes.size()), path);
    FlushWhereNeeded(run, file, path);
    Sha256 hash;
    hash.Add(bytes.data(), bytes.size());
    run.manifest.push_back({target, bytes.size(), hash.Finish()});
}
