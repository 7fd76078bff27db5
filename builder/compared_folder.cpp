#include "builder/compared_folder.h"

#include "builder/build_names.h"
#include "builder/content_hash.h"
#include "builder/file_operations.h"
#include "builder/manifest_text.h"

namespace {

constexpr std::size_t PIECE_BYTES = 1 << 20;

} // namespace

CComparedFolder::CComparedFolder(const CString& folder, const std::function<void()>& poll)
    : m_folder(folder), m_poll(poll)
{
    ListFiles(CString());
    ReadListedHashes();
}

CString CComparedFolder::FullPath(const CString& path) const
{
    return JoinFolder(m_folder, path);
}

void CComparedFolder::ListFiles(const CString& inner)
{
    m_poll();
    for (const FolderEntry& entry : ListFolder(FullPath(inner))) {
        const CString path = JoinFolder(inner, entry.strName);
        if (entry.IsFolder() && !entry.IsLink()) {
            ListFiles(path);
        } else if (entry.IsFolder()) {
            m_files[path].bFolderLink = true;
        } else {
            m_files[path].size = entry.IsLink() ? SizeOfFile(FullPath(path)) : entry.size;
        }
    }
}

// A manifest that can't be read says nothing, and the bytes are read instead.
void CComparedFolder::ReadListedHashes()
{
    std::vector<ManifestEntry> entries;
    if (!Has(MANIFEST_FILE)) {
        return;
    }
    const std::vector<char> bytes = Read(MANIFEST_FILE);
    if (!ReadManifest(bytes.data(), bytes.size(), entries)) {
        return;
    }
    for (const ManifestEntry& entry : entries) {
        const auto file = m_files.find(entry.strPath);
        if (file != m_files.end() && file->second.size == entry.size) {
            file->second.strListedSha256 = entry.strSha256;
        }
    }
}

CString CComparedFolder::Hash(const CString& path) const
{
    const auto file = m_files.find(path);
    return file == m_files.end() || file->second.strListedSha256.IsEmpty() ? HashOfBytes(path)
                                                                           : file->second.strListedSha256;
}

CString CComparedFolder::HashOfBytes(const CString& path) const
{
    return HashOfFile(FullPath(path), m_poll);
}

std::vector<char> CComparedFolder::Read(const CString& path) const
{
    const CString full = FullPath(path);
    const CFileOwner file = OpenForReading(full);
    std::vector<char> bytes;
    std::vector<char> piece(PIECE_BYTES);
    while (const DWORD read = ReadChunk(file, piece.data(), static_cast<DWORD>(piece.size()), full)) {
        bytes.insert(bytes.end(), piece.begin(), piece.begin() + read);
    }
    return bytes;
}
