#include "base/sha256.h"

#include "base/number_text.h"

#include <windows.h>

#include <bcrypt.h>

#include <utility>
#include <vector>

namespace {

constexpr DWORD PIECE_BYTES = 1 << 20;
constexpr int HASH_BYTES = 32;

} // namespace

CSha256::~CSha256()
{
    if (m_hash) {
        BCryptDestroyHash(m_hash);
    }
    if (m_algorithm) {
        BCryptCloseAlgorithmProvider(m_algorithm, 0);
    }
}

long CSha256::Begin()
{
    NTSTATUS status = 0;
    if (!m_algorithm) {
        status = BCryptOpenAlgorithmProvider(&m_algorithm, BCRYPT_SHA256_ALGORITHM, nullptr, 0);
    }
    if (status >= 0 && !m_hash) {
        status = BCryptCreateHash(m_algorithm, &m_hash, nullptr, 0, nullptr, 0, 0);
    }
    return status;
}

long CSha256::Add(const void* bytes, std::size_t size)
{
    const NTSTATUS status = Begin();
    return status < 0 ? status
                      : BCryptHashData(m_hash, static_cast<PUCHAR>(const_cast<void*>(bytes)),
                                       static_cast<ULONG>(size), 0);
}

long CSha256::Finish(CString& hash)
{
    hash.Empty();
    unsigned char digest[HASH_BYTES] = {};
    NTSTATUS status = Begin();
    if (status >= 0) {
        status = BCryptFinishHash(m_hash, digest, sizeof(digest), 0);
        BCryptDestroyHash(std::exchange(m_hash, nullptr));
    }
    for (int index = 0; status >= 0 && index < HASH_BYTES; ++index) {
        hash += HexText(digest[index], 2);
    }
    return status;
}

unsigned int HashFile(void* file, CString& hash)
{
    CSha256 sha256;
    std::vector<unsigned char> piece(PIECE_BYTES);
    for (;;) {
        DWORD read = 0;
        if (!ReadFile(file, piece.data(), PIECE_BYTES, &read, nullptr)) {
            return GetLastError();
        }
        if (read == 0) {
            return sha256.Finish(hash) < 0 ? ERROR_NOT_SUPPORTED : ERROR_SUCCESS;
        }
        if (sha256.Add(piece.data(), read) < 0) {
            return ERROR_NOT_SUPPORTED;
        }
    }
}
