// Media of any size that are made for a measurement, and the plan of a deployment of them.
#pragma once

#include "benchmarks/measurement.h"
#include "builder/build_plan.h"
#include "builder/build_result.h"

#include <cstdint>

inline constexpr std::uint64_t MEGABYTE = 1 << 20;

// What media are made of.
struct MediaShape
{
    std::size_t smallFiles = 0;
    std::size_t smallFileBytes = 0;
    std::size_t largeFiles = 0;
    std::uint64_t largeFileBytes = 0;
};

// Some of all: half of a small deployment at most goes into small files.
[[nodiscard]] MediaShape MixedShape(const BenchOptions& options);

// The media in a folder of the scratch folder, as long as the object lives.
class CBenchMedia
{
public:
    CBenchMedia(const BenchOptions& options, const MediaShape& shape); // throws CannotMeasure
    CBenchMedia(const CBenchMedia&) = delete;
    CBenchMedia& operator=(const CBenchMedia&) = delete;
    ~CBenchMedia();
    const CString& Folder() const { return m_folder; }

private:
    CString Inner(std::size_t number) const;
    CString m_folder;
};

// Of those media and the sample's database, in the scratch folder.
[[nodiscard]] BuildPlan MakeBenchPlan(const BenchOptions& options, const CString& media);

void RemoveTree(const CString& folder);
