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
    [[nodiscard]] CString Finish(); // 64 hex digits, lower case; nothing can be added afterwards

private:
    void* m_algorithm = nullptr;
    void* m_hash = nullptr;
};
