// Stage and copy: the tree of folders first, then file after file in chunks. The hash for the manifest is taken from
// the bytes on their way, beside their writing, so that nothing is read twice and neither work waits for the other.
#include "builder/build_run.h"

#include "builder/build_failure.h"
#include "builder/build_names.h"
#include "builder/file_operations.h"

#include <algorithm>

namespace {

// A share reports only now what it could not take. And an old deployment goes for good once the new one stands: a loss
// of power must not cost both.
void FlushWhereNeeded(const BuildRun& run, const CFileOwner& file, const CString& path)
{
    if (run.flushesFiles) {
        FlushToDisk(file, path);
    }
}

// One file on its way into the staging folder.
class CFileCopy
{
public:
    CFileCopy(BuildRun& run, CopiedFiles& list, const CString& source, const CString& target)
        : m_run(run), m_list(list), m_source(source), m_target(JoinFolder(run.staging, target)),
          m_from(OpenForReading(source)), m_atOpening(TimesAndAttributes(m_from, m_source)),
          m_to(CreateForWriting(m_target))
    {
        m_copied.strTarget = target;
        m_list.hashes.BeginFile();
    }

    // The bytes of the chunk; 0 at the end.
    DWORD CopyChunk()
    {
        m_run.meter.SetFile(m_copied.strTarget);
        unsigned char* const buffer = m_list.hashes.NextBuffer();
        const DWORD read = ReadChunk(m_from, buffer, CHUNK_BYTES, m_source);
        if (read > 0) {
            m_list.hashes.AddChunk(read);
            WriteChunk(m_to, buffer, read, m_target);
            m_copied.size += read;
            m_run.meter.Add(read);
        }
        return read;
    }

    // After the last chunk. The bytes of the file.
    std::uint64_t Finish()
    {
        m_list.hashes.EndFile();
        FlushWhereNeeded(m_run, m_to, m_target);
        SetTimesAndAttributes(m_to, m_atOpening, m_target);
        NoteSourceInOld();
        m_list.files.push_back(m_copied);
        return m_copied.size;
    }

private:
    // What a file of the old deployment held needn't be read once more to be judged, unless it was written while it was
    // read: the bytes on their way are those of no time then.
    void NoteSourceInOld()
    {
        if (m_run.replaces && IsSameOrBelow(m_source, m_run.target) &&
            TimesAndAttributes(m_from, m_source).LastWriteTime.QuadPart ==
                m_atOpening.LastWriteTime.QuadPart) {
            m_copied.strPathInOld = m_source.Mid(m_run.target.GetLength() + 1);
            m_copied.lastWritten = static_cast<std::uint64_t>(m_atOpening.LastWriteTime.QuadPart);
        }
    }

    BuildRun& m_run;
    CopiedFiles& m_list;
    CString m_source;
    CString m_target; // full path
    CFileOwner m_from;
    FILE_BASIC_INFO m_atOpening; // of the source: the times that fit the bytes that are read
    CFileOwner m_to;
    CopiedFile m_copied;
};

std::uint64_t CopyWhole(BuildRun& run, CopiedFiles& list, const CString& source, const CString& target)
{
    CFileCopy copy(run, list, source, target);
    while (copy.CopyChunk() > 0) {
    }
    return copy.Finish();
}

// A large file keeps the hashing busy, small ones keep the copying busy. So some of the small ones are copied after each
// part of a large one, as many as keep pace with it: then neither work is left over at the end. The parts are long, as a
// disk with a head moves it between them.
class CPacedCopy
{
public:
    explicit CPacedCopy(BuildRun& run) : m_run(run)
    {
        for (const CopyItem& file : run.list.files) {
            const bool isSmall = file.size < SMALL_FILE_BYTES;
            (isSmall ? m_small : m_large).push_back(&file);
            m_largeBytes += isSmall ? 0 : file.size;
        }
    }

    void Copy()
    {
        for (const CopyItem* file : m_large) {
            CopyLarge(*file);
        }
        CopySmall(m_small.size());
    }

private:
    static constexpr std::uint64_t PART_BYTES = HASH_BUFFERS / 2 * CHUNK_BYTES;

    void CopyLarge(const CopyItem& file)
    {
        CFileCopy copy(m_run, m_run.copied, file.strSource, file.strTarget);
        while (const DWORD bytes = copy.CopyChunk()) {
            m_copiedBytes += bytes;
            if (m_copiedBytes - m_partStart >= PART_BYTES) {
                m_partStart = m_copiedBytes;
                // A source may have grown since it was measured.
                CopySmall(m_small.size() * std::min(m_copiedBytes, m_largeBytes) / m_largeBytes);
            }
        }
        copy.Finish();
    }

    void CopySmall(std::uint64_t count) // from the first one on
    {
        for (; m_smallDone < count; ++m_smallDone) {
            const CopyItem& file = *m_small[m_smallDone];
            CopyWhole(m_run, m_run.copiedBetween, file.strSource, file.strTarget);
        }
    }

    BuildRun& m_run;
    std::vector<const CopyItem*> m_small;
    std::vector<const CopyItem*> m_large;
    std::size_t m_smallDone = 0;
    std::uint64_t m_largeBytes = 0;
    std::uint64_t m_copiedBytes = 0; // of the large ones
    std::uint64_t m_partStart = 0;
};

void AddToManifest(BuildRun& run, CopiedFiles& list)
{
    const std::vector<CString> hashes = list.hashes.Finish();
    for (std::size_t index = 0; index < list.files.size(); ++index) {
        const CopiedFile& file = list.files[index];
        run.manifest.push_back({file.strTarget, file.size, hashes[index]});
        if (!file.strPathInOld.IsEmpty()) {
            run.readOfOld[file.strPathInOld] = {file.size, file.lastWritten, hashes[index]};
        }
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
    CPacedCopy(run).Copy();
}

std::uint64_t CopyIntoStaging(BuildRun& run, const CString& source, const CString& target)
{
    return CopyWhole(run, run.copied, source, target);
}

void ListCopiedFiles(BuildRun& run)
{
    AddToManifest(run, run.copied);
    AddToManifest(run, run.copiedBetween);
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
    CContentHash hash;
    hash.Add(bytes.data(), bytes.size());
    run.manifest.push_back({target, bytes.size(), hash.Finish()});
}
