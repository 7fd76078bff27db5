// SHA-256 by the system's cryptography. Hashes are 64 hex digits, lower case.
#pragma once

#include "base/string.h"

#include <cstddef>

// What fails answers with the system's status, which is below zero.
class CSha256
{
public:
    CSha256() = default;
    CSha256(const CSha256&) = delete;
    CSha256& operator=(const CSha256&) = delete;
    ~CSha256();

    [[nodiscard]] long Add(const void* bytes, std::size_t size);
    // Of what was added since the last Finish. The next Add begins anew.
    [[nodiscard]] long Finish(CString& hash);

private:
    long Begin();

    void* m_algorithm = nullptr; // opened once: that may cost more than a small file's hash
    void* m_hash = nullptr;      // while bytes are added
};

// Of what is left to read of an open file, a kernel handle. 0, or the system's error number.
[[nodiscard]] unsigned int HashFile(void* file, CString& hash);
