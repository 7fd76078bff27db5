#include "builder/file_hash.h"

#include "builder/file_operations.h"
#include "builder/sha256.h"

CString HashOfFile(const CString& path, const std::function<void()>& poll)
{
    constexpr std::size_t PIECE_BYTES = 1 << 20;
    const CFileOwner file = OpenForReading(path);
    std::vector<char> piece(PIECE_BYTES);
    Sha256 hash;
    while (const DWORD read = ReadChunk(file, piece.data(), static_cast<DWORD>(piece.size()), path)) {
        hash.Add(piece.data(), read);
        poll();
    }
    return hash.Finish();
}
