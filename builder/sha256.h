// SHA-256 by the system's cryptography.
#pragma once

#include "base/string.h"

#include <cstddef>

class Sha256
{
public:
    Sha256(); // throws a BuildFailure when the system has no SHA-256
    Sha256(const Sha256&) = delete;
    Sha256& operator=(const Sha256&) = delete;
    ~Sha256();

    void Add(const void* bytes, std::size_t size);
    // 64 hex digits, lower case, of what was added since the last Finish. The next Add begins anew.
    [[nodiscard]] CString Finish();

private:
    void Begin();

    void* m_algorithm = nullptr; // opened once: that may cost more than a small file's hash
    void* m_hash = nullptr;      // while bytes are added
};
