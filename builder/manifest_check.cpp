#include "builder/manifest_check.h"

#include "builder/build_failure.h"
#include "builder/build_names.h"
#include "builder/content_hashes.h"

#include <algorithm>
#include <set>

namespace {

// A manifest line, and whether its file was found.
struct ExpectedFile
{
    const ManifestEntry* entry = nullptr;
    bool isSeen = false;
};

// A file that is read, in the order of its hash.
struct HashedFile
{
    CString path;
    FolderEntry found;
    const ManifestEntry* entry = nullptr;
    bool isRead = false;
};

ManifestState LoadManifest(const CString& folder, std::vector<ManifestEntry>& entries)
{
    const CString path = JoinFolder(folder, MANIFEST_FILE);
    if (KindOfPath(path) != PathKind::File) {
        return ManifestState::None;
    }
    const CFileOwner file = OpenForReading(path);
    std::vector<char> bytes;
    std::vector<char> piece(CHUNK_BYTES);
    while (const DWORD read = ReadChunk(file, piece.data(), static_cast<DWORD>(piece.size()), path)) {
        bytes.insert(bytes.end(), piece.begin(), piece.begin() + read);
    }
    return ReadManifest(bytes.data(), bytes.size(), entries) ? ManifestState::Read : ManifestState::Damaged;
}

class CManifestChecker
{
public:
    CManifestChecker(const CString& folder, const ReadContents& known, const ManifestCheckCalls& calls)
        : m_folder(folder), m_known(known), m_calls(calls)
    {
    }

    ManifestCheck Check()
    {
        m_check.manifest = LoadManifest(m_folder, m_check.entries);
        if (m_check.manifest == ManifestState::Read && !ExpectFiles()) {
            m_check.manifest = ManifestState::Damaged;
        }
        if (m_check.manifest == ManifestState::Read) {
            CheckFolder(CString());
            JudgeHashes();
            FindMissing();
            Sort();
        }
        return std::move(m_check);
    }

private:
    // False when a path stands twice: then neither of its lines can be believed.
    bool ExpectFiles()
    {
        for (const ManifestEntry& entry : m_check.entries) {
            if (!m_expected.emplace(entry.strPath, ExpectedFile{&entry}).second) {
                return false;
            }
            m_total += entry.size;
        }
        return true;
    }

    template <class Work>
    bool Try(const CString& path, Work work)
    {
        try {
            work();
            return true;
        } catch (const BuildFailure& failure) {
            if (failure.code == BUILD_CANCELLED) {
                throw;
            }
            m_calls.onFailure(path, failure);
            return false;
        }
    }

    void CheckFolder(const CString& inner)
    {
        std::vector<FolderEntry> entries;
        if (!Try(inner, [&] { entries = ListFolder(JoinFolder(m_folder, inner)); })) {
            m_skipped.insert(inner);
            return;
        }
        for (const FolderEntry& entry : entries) {
            const CString path = JoinFolder(inner, entry.strName);
            if (entry.IsLink()) {
                m_check.links.push_back(path);
                m_skipped.insert(path);
            } else if (entry.IsFolder()) {
                CheckFolder(path);
            } else if (path.CompareNoCase(MANIFEST_FILE) != 0) {
                CheckFile(path, entry);
            }
        }
    }

    void CheckFile(const CString& path, const FolderEntry& found)
    {
        const auto expected = m_expected.find(path);
        // Disks that distinguish cases may have a second file of the name.
        if (expected == m_expected.end() || expected->second.isSeen) {
            m_check.added.push_back(path);
            return;
        }
        expected->second.isSeen = true;
        const ManifestEntry& entry = *expected->second.entry;
        if (found.size != entry.size) {
            m_check.changed.push_back({path, entry.size, found.size});
            return;
        }
        const auto known = m_known.find(path);
        if (known != m_known.end() && known->second.size == found.size &&
            known->second.lastWritten == found.lastWritten) {
            Judge(path, found, entry, known->second.strSha256);
            return;
        }
        HashFile({path, found, &entry});
    }

    void HashFile(HashedFile file)
    {
        m_hashes.BeginFile();
        file.isRead = Try(file.path, [&] { ReadIntoHash(file.path); });
        m_hashes.EndFile();
        m_hashed.push_back(std::move(file));
    }

    void ReadIntoHash(const CString& path)
    {
        const CString full = JoinFolder(m_folder, path);
        const CFileOwner file = OpenForReading(full);
        for (;;) {
            m_calls.poll(m_check.bytes, m_total, path);
            const DWORD read = ReadChunk(file, m_hashes.NextBuffer(), CHUNK_BYTES, full);
            if (read == 0) {
                return;
            }
            m_hashes.AddChunk(read);
            m_check.bytes += read;
        }
    }

    void JudgeHashes()
    {
        const std::vector<CString> hashes = m_hashes.Finish();
        for (std::size_t index = 0; index < m_hashed.size(); ++index) {
            const HashedFile& file = m_hashed[index];
            if (file.isRead) {
                Judge(file.path, file.found, *file.entry, hashes[index]);
            }
        }
    }

    void Judge(const CString& path, const FolderEntry& found, const ManifestEntry& entry, const CString& hash)
    {
        if (hash == entry.strSha256) {
            m_check.same[path] = {found.size, found.lastWritten, hash};
        } else {
            m_check.changed.push_back({path, entry.size, found.size});
        }
    }

    // What lies behind a link, or in a folder that can't be listed, was not looked at.
    bool IsSkipped(const CString& path) const
    {
        return std::any_of(m_skipped.begin(), m_skipped.end(), [&path](const CString& skipped) {
            return skipped.IsEmpty() || IsSameOrBelow(path, skipped);
        });
    }

    void FindMissing()
    {
        for (const auto& [path, expected] : m_expected) {
            if (!expected.isSeen && path.CompareNoCase(MANIFEST_FILE) != 0 && !IsSkipped(path)) {
                m_check.missing.push_back(path);
            }
        }
    }

    void Sort()
    {
        std::sort(m_check.added.begin(), m_check.added.end(), CompareNoCaseLess());
        std::sort(m_check.links.begin(), m_check.links.end(), CompareNoCaseLess());
        std::sort(m_check.changed.begin(), m_check.changed.end(),
                  [](const ChangedFile& left, const ChangedFile& right) {
                      return left.strPath.CompareNoCase(right.strPath) < 0;
                  });
    }

    const CString& m_folder;
    const ReadContents& m_known;
    const ManifestCheckCalls& m_calls;
    ManifestCheck m_check;
    std::uint64_t m_total = 0; // bytes of all that the manifest names
    std::map<CString, ExpectedFile, CompareNoCaseLess> m_expected;
    std::set<CString, CompareNoCaseLess> m_skipped;
    std::vector<HashedFile> m_hashed;
    CContentHashes m_hashes;
};

} // namespace

ManifestCheck CheckManifest(const CString& folder, const ReadContents& known, const ManifestCheckCalls& calls)
{
    return CManifestChecker(folder, known, calls).Check();
}

void VisitFiles(const CString& folder, const CString& inner, const FileVisit& visit)
{
    for (const FolderEntry& entry : ListFolder(JoinFolder(folder, inner))) {
        const CString path = JoinFolder(inner, entry.strName);
        if (entry.IsFolder() && !entry.IsLink()) {
            VisitFiles(folder, path, visit);
        } else {
            visit(path, entry);
        }
    }
}
