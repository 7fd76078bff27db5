// The build of a deployment, beside plain copies of the same files in chunks of the same size: one that only copies,
// one that only hashes, and one that does both, as the manifest needs it.
#include "benchmarks/bench_media.h"
#include "benchmarks/plain_copy.h"
#include "builder/deployment_builder.h"

#include <windows.h>

#include <algorithm>
#include <bit>

namespace {

double Copy(const BuildPlan& plan, PlainCopy way)
{
    const CString folder = plan.strLocation + L"\\copied";
    const double start = NowMilliseconds();
    const std::uint64_t bytes = CopyPlainly(plan, folder, way);
    const double end = NowMilliseconds();
    RemoveTree(folder);
    if (bytes == 0) {
        throw CannotMeasure{L"The plain copy into " + folder + L" failed"};
    }
    return end - start;
}

double Build(const BuildPlan& plan)
{
    CUnwatchedProgress progress;
    const double start = NowMilliseconds();
    const BuildResult result = BuildDeployment(plan, progress);
    const double end = NowMilliseconds();
    RemoveTree(plan.strLocation + L"\\" + plan.strName);
    if (result.error) {
        throw CannotMeasure{L"The build failed: " + result.error.message};
    }
    return end - start;
}

// Bare and ours in turns, each first in every second round.
void MeasureInTurns(int rounds, Comparison& comparison, double (*bare)(const BuildPlan&),
                    const BuildPlan& plan)
{
    for (int round = 0; round < rounds; ++round) {
        if (round % 2 == 0) {
            comparison.bare.push_back(bare(plan));
        }
        comparison.ours.push_back(Build(plan));
        if (round % 2 != 0) {
            comparison.bare.push_back(bare(plan));
        }
    }
}

double CopyAndHash(const BuildPlan& plan)
{
    return Copy(plan, PlainCopy::BytesAndHashes);
}

double LongerOfCopyAndHash(const BuildPlan& plan)
{
    const double copied = Copy(plan, PlainCopy::Bytes);
    return std::max(copied, Copy(plan, PlainCopy::Hashes));
}

Comparison MeasureShape(const BenchOptions& options, const CString& what, const MediaShape& shape,
                        double goal)
{
    const CBenchMedia media(options, shape);
    const BuildPlan plan = MakeBenchPlan(options, media.Folder());
    Comparison comparison;
    comparison.strWhat = what;
    comparison.goal = goal;
    static_cast<void>(Copy(plan, PlainCopy::Bytes)); // the media come from memory from here on, for all alike
    MeasureInTurns((options.builds + 1) / 2, comparison, CopyAndHash, plan);
    return comparison;
}

} // namespace

std::vector<Comparison> MeasureDeployment(const BenchOptions& options)
{
    const CBenchMedia media(options, MixedShape(options));
    const BuildPlan plan = MakeBenchPlan(options, media.Folder());
    Comparison copied;
    copied.strWhat = L"build, " + NumberText(options.megabytes) + L" MB beside copy";
    Comparison hashed;
    hashed.strWhat = L"build, beside copy and SHA-256";
    hashed.goal = 1.1;
    static_cast<void>(Copy(plan, PlainCopy::Bytes)); // the media come from memory from here on, for all alike
    for (int run = 0; run < options.builds; ++run) {
        copied.bare.push_back(Copy(plan, PlainCopy::Bytes));
        copied.ours.push_back(Build(plan));
        hashed.bare.push_back(Copy(plan, PlainCopy::BytesAndHashes));
    }
    hashed.ours = copied.ours;
    return {copied, hashed};
}

std::vector<Comparison> MeasureManyFiles(const BenchOptions& options)
{
    constexpr std::size_t SMALL_FILE_BYTES = 2 << 10;
    return {MeasureShape(options, L"build, " + NumberText(options.files) + L" files of 2 KB",
                         {static_cast<std::size_t>(options.files), SMALL_FILE_BYTES, 0, 0}, 1.2)};
}

std::vector<Comparison> MeasureLargeFiles(const BenchOptions& options)
{
    constexpr std::uint64_t LARGE_FILES = 2;
    return {MeasureShape(options, L"build, two files, " + NumberText(options.largeMegabytes) + L" MB",
                         {0, 0, LARGE_FILES, options.largeMegabytes * MEGABYTE / LARGE_FILES}, 1.1)};
}

std::vector<Comparison> MeasureTwoProcessors(const BenchOptions& options)
{
    DWORD_PTR own = 0;
    DWORD_PTR all = 0;
    if (!GetProcessAffinityMask(GetCurrentProcess(), &own, &all) || std::popcount(own) < 2) {
        throw CannotMeasure{L"build on two processors: this process may use one alone"};
    }
    const CBenchMedia media(options, MixedShape(options));
    const BuildPlan plan = MakeBenchPlan(options, media.Folder());
    Comparison comparison;
    comparison.strWhat = L"build, two processors";
    comparison.goal = 1.1;
    static_cast<void>(Copy(plan, PlainCopy::Bytes)); // the media come from memory from here on, for all alike
    MeasureInTurns(options.builds, comparison, LongerOfCopyAndHash, plan);
    return {comparison};
}
