// What the benchmark holds a build against.
#pragma once

#include "builder/build_plan.h"

enum class PlainCopy
{
    Bytes,          // nothing but reading and writing
    BytesAndHashes, // SHA-256 of every file too, as a manifest needs it: the same work as a build's
};

// Copies the files of a plan into a new folder by bare system calls, in chunks of the builder's size, without
// attributes, checks or progress. Bytes copied; 0 when a call failed.
[[nodiscard]] std::uint64_t CopyPlainly(const BuildPlan& plan, const CString& folder, PlainCopy way) noexcept;
