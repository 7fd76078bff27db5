#include "builder/content_hash.h"

#include "base/number_text.h"
#include "builder/build_failure.h"
#include "builder/file_operations.h"

#include <vector>

namespace {

void Require(long status)
{
    if (status < 0) {
        throw BuildFailure{BUILD_INSTALLER_FAILED,
                           L"Windows could not compute SHA-256 (status " + NumberText(status) +
                               L"). Repair the system's cryptography and start the build again."};
    }
}

} // namespace

void CContentHash::Add(const void* bytes, std::size_t size)
{
    Require(m_hash.Add(bytes, size));
}

CString CContentHash::Finish()
{
    CString hash;
    Require(m_hash.Finish(hash));
    return hash;
}

CString HashOfFile(const CString& path, const std::function<void()>& poll)
{
    constexpr std::size_t PIECE_BYTES = 1 << 20;
    const CFileOwner file = OpenForReading(path);
    std::vector<char> piece(PIECE_BYTES);
    CContentHash hash;
    while (const DWORD read = ReadChunk(file, piece.data(), static_cast<DWORD>(piece.size()), path)) {
        hash.Add(piece.data(), read);
        poll();
    }
    return hash.Finish();
}
