#include "catalog/file_hash.h"

#include "base/number_text.h"
#include "base/scope_exit.h"

#include <bcrypt.h>

#include <vector>

namespace {

constexpr DWORD BLOCK_BYTES = 1u << 20;
constexpr int SHA256_BYTES = 32;

} // namespace

unsigned int HashFile(HANDLE file, CString& sha256)
{
    BCRYPT_ALG_HANDLE algorithm = nullptr;
    BCRYPT_HASH_HANDLE hash = nullptr;
    const scope_exit close([&] {
        if (hash) {
            BCryptDestroyHash(hash);
        }
        if (algorithm) {
            BCryptCloseAlgorithmProvider(algorithm, 0);
        }
    });
    if (BCryptOpenAlgorithmProvider(&algorithm, BCRYPT_SHA256_ALGORITHM, nullptr, 0) < 0 ||
        BCryptCreateHash(algorithm, &hash, nullptr, 0, nullptr, 0, 0) < 0) {
        return ERROR_NOT_SUPPORTED;
    }
    std::vector<unsigned char> block(BLOCK_BYTES);
    for (;;) {
        DWORD read = 0;
        if (!ReadFile(file, block.data(), BLOCK_BYTES, &read, nullptr)) {
            return GetLastError();
        }
        if (read == 0) {
            break;
        }
        if (BCryptHashData(hash, block.data(), read, 0) < 0) {
            return ERROR_INTERNAL_ERROR;
        }
    }
    unsigned char digest[SHA256_BYTES] = {};
    if (BCryptFinishHash(hash, digest, sizeof digest, 0) < 0) {
        return ERROR_INTERNAL_ERROR;
    }
    sha256.Empty();
    for (const unsigned char byte : digest) {
        sha256 += HexText(byte, 2, HexLetters::Small);
    }
    return ERROR_SUCCESS;
}
