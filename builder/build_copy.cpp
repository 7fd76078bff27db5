// Stage and copy: the tree of folders first, then file after file in chunks. The hash for the manifest is taken from
// the bytes on their way, beside their writing, so that nothing is read twice and neither work waits for the other.
#include "builder/build_run.h"

#include "builder/build_failure.h"
#include "builder/build_names.h"
#include "builder/file_operations.h"

namespace {

// A share reports only now what it could not take. And an old deployment goes for good once the new one stands: a loss
// of power must not cost both.
void FlushWhereNeeded(const BuildRun& run, const CFileOwner& file, const CString& path)
{
    if (run.flushesFiles) {
        FlushToDisk(file, path);
    }
}

// What a file of the old deployment held needn't be read once more to be judged.
void NoteSourceInOld(const BuildRun& run, const CFileOwner& from, const CString& source, CopiedFile& copied)
{
    if (run.replaces && IsSameOrBelow(source, run.target)) {
        const FILETIME written = LastWriteTime(from, source);
        copied.strPathInOld = source.Mid(run.target.GetLength() + 1);
        copied.lastWritten = (std::uint64_t{written.dwHighDateTime} << 32) | written.dwLowDateTime;
    }
}

} // namespace

void StageFolders(BuildRun& run)
{
    run.Step(L"Preparing " + run.plan.strName);
    run.flushesFiles = run.replaces || IsRemote(run.staging);
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

std::uint64_t CopyIntoStaging(BuildRun& run, const CString& source, const CString& target)
{
    const CString path = JoinFolder(run.staging, target);
    run.meter.SetFile(target);
    const CFileOwner from = OpenForReading(source);
    const CFileOwner to = CreateForWriting(path);
    CopiedFile copied;
    copied.strTarget = target;
    run.hashes.BeginFile();
    for (;;) {
        unsigned char* const buffer = run.hashes.NextBuffer();
        const DWORD read = ReadChunk(from, buffer, CHUNK_BYTES, source);
        if (read == 0) {
            break;
        }
        run.hashes.AddChunk(read);
        WriteChunk(to, buffer, read, path);
        copied.size += read;
        run.meter.Add(read);
    }
    run.hashes.EndFile();
    FlushWhereNeeded(run, to, path);
    CopyTimesAndAttributes(from, to, path);
    NoteSourceInOld(run, from, source, copied);
    run.copied.push_back(copied);
    return copied.size;
}

void ListCopiedFiles(BuildRun& run)
{
    const std::vector<CString> hashes = run.hashes.Finish();
    for (std::size_t index = 0; index < run.copied.size(); ++index) {
        const CopiedFile& file = run.copied[index];
        run.manifest.push_back({file.strTarget, file.size, hashes[index]});
        if (!file.strPathInOld.IsEmpty()) {
            run.readOfOld[file.strPathInOld] = {file.size, file.lastWritten, hashes[index]};
        }
    }
}

void WriteIntoStaging(BuildRun& run, const CString& target, const CString& text, bool byteOrderMark)
{
    std::vector<char> bytes;
    if (byteOrderMark) {
        bytes.insert(bytes.end(), {'\xEF', '\xBB', '\xBF'});
    }
    AppendUtf8(bytes, text);
    const CString path = JoinFolder(run.staging, target);
    const CFileOwner file = CreateForWriting(path);
    WriteChunk(file, bytes.data(), static_cast<DWORD>(bytes.size()), path);
    FlushWhereNeeded(run, file, path);
    Sha256 hash;
    hash.Add(bytes.data(), bytes.size());
    run.manifest.push_back({target, bytes.size(), hash.Finish()});
}
