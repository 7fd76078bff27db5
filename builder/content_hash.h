// The SHA-256 of contents, as 64 hex digits in lower case. What fails is thrown as a BuildFailure.
#pragma once

#include "base/sha256.h"

#include <functional>

class CContentHash
{
public:
    void Add(const void* bytes, std::size_t size);
    // Of what was added since the last Finish. The next Add begins anew.
    [[nodiscard]] CString Finish();

private:
    CSha256 m_hash;
};

// Of a whole file. `poll` is called for each piece and may throw.
[[nodiscard]] CString HashOfFile(const CString& path, const std::function<void()>& poll);
