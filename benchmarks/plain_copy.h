// What the build of a deployment is held against.
#pragma once

#include "builder/build_plan.h"

enum class PlainCopy
{
    Bytes,          // nothing but reading and writing
    Hashes,         // nothing but reading and SHA-256
    BytesAndHashes, // each chunk is hashed before it is written: the same work as a build's
};

// Copies the files of a plan into a new folder by bare system calls, in chunks of the builder's size, without times,
// attributes, checks or progress. Bytes read; 0 when a call failed.
[[nodiscard]] std::uint64_t CopyPlainly(const BuildPlan& plan, const CString& folder, PlainCopy way) noexcept;
