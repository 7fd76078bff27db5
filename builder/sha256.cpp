#include "builder/sha256.h"

#include "base/number_text.h"
#include "builder/build_failure.h"

#include <windows.h>

#include <bcrypt.h>

#include <utility>

namespace {

void Require(NTSTATUS status)
{
    if (status < 0) {
        throw BuildFailure{BUILD_INSTALLER_FAILED,
                           L"Windows could not compute SHA-256 (status " + NumberText(status) +
                               L"). Repair the system's cryptography and start the build again."};
    }
}

} // namespace

Sha256::Sha256()
{
    Require(BCryptOpenAlgorithmProvider(&m_algorithm, BCRYPT_SHA256_ALGORITHM, nullptr, 0));
}

Sha256::~Sha256()
{
    if (m_hash) {
        BCryptDestroyHash(m_hash);
    }
    BCryptCloseAlgorithmProvider(m_algorithm, 0);
}

void Sha256::Begin()
{
    if (!m_hash) {
        Require(BCryptCreateHash(m_algorithm, &m_hash, nullptr, 0, nullptr, 0, 0));
    }
}

void Sha256::Add(const void* bytes, std::size_t size)
{
    Begin();
    Require(
        BCryptHashData(m_hash, static_cast<PUCHAR>(const_cast<void*>(bytes)), static_cast<ULONG>(size), 0));
}

CString Sha256::Finish()
{
    Begin();
    unsigned char digest[32] = {};
    Require(BCryptFinishHash(m_hash, digest, sizeof(digest), 0));
    BCryptDestroyHash(std::exchange(m_hash, nullptr));
    CString text;
    for (const unsigned char byte : digest) {
        text += HexText(byte, 2);
    }
    return text;
}
