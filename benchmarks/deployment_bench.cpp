// The build of a deployment, beside plain copies of the same files in chunks of the same size: one that only copies,
// one that only hashes, and one that does both, as the manifest needs it.
#include "benchmarks/measurement.h"
#include "benchmarks/plain_copy.h"
#include "builder/build_names.h"
#include "builder/deployment_builder.h"
#include "builder/file_operations.h"

#include <windows.h>

#include <algorithm>
#include <bit>
#include <string>

namespace {

constexpr std::uint64_t MEGABYTE = 1 << 20;
constexpr std::size_t FOLDERS = 40;

// What media are made of.
struct MediaShape
{
    std::size_t smallFiles = 0;
    std::size_t smallFileBytes = 0;
    std::size_t largeFiles = 0;
    std::uint64_t largeFileBytes = 0;
};

class CSilentProgress final : public IBuildProgress
{
public:
    void OnStep(const CString&) override {}
    bool OnProgress(std::uint64_t, std::uint64_t, const CString&) override { return true; }
};

void WriteFileOf(const CString& path, std::uint64_t size)
{
    // No two blocks are equal, so that no file system can store them once.
    std::string block(static_cast<std::size_t>(std::min(size, MEGABYTE)), '\0');
    std::uint32_t state = 0x12345678u ^ static_cast<std::uint32_t>(size);
    const CFileOwner file(CreateFileW(UnlimitedPath(path), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
    while (size > 0) {
        for (char& byte : block) {
            state = state * 1664525u + 1013904223u;
            byte = static_cast<char>(state >> 24);
        }
        const DWORD part = static_cast<DWORD>(size < block.size() ? size : block.size());
        DWORD written = 0;
        if (!WriteFile(file.get(), block.data(), part, &written, nullptr) || written != part) {
            throw CannotMeasure{L"Can't write " + path + L"; is the disk full?"};
        }
        size -= part;
    }
}

void RemoveTree(const CString& folder)
{
    WIN32_FIND_DATAW found = {};
    const HANDLE search = FindFirstFileW(folder + L"\\*", &found);
    if (search == INVALID_HANDLE_VALUE) {
        return;
    }
    do {
        const CString name = found.cFileName;
        const CString path = folder + L"\\" + name;
        if (name == L"." || name == L"..") {
            continue;
        }
        if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
            RemoveTree(path);
        } else {
            DeleteFileW(path);
        }
    } while (FindNextFileW(search, &found));
    FindClose(search);
    RemoveDirectoryW(folder);
}

// Some of all: half of a small deployment at most goes into small files.
MediaShape MixedShape(const BenchOptions& options)
{
    constexpr std::uint64_t SMALL_FILE_BYTES = 16 << 10;
    constexpr std::uint64_t LARGE_FILES = 4;
    const std::uint64_t total = options.megabytes * MEGABYTE;
    const std::uint64_t smallFiles = std::min<std::uint64_t>(2000, total / 2 / SMALL_FILE_BYTES);
    return {static_cast<std::size_t>(smallFiles), SMALL_FILE_BYTES, LARGE_FILES,
            (total - smallFiles * SMALL_FILE_BYTES) / LARGE_FILES};
}

// The media in a folder of the scratch folder, as long as the object lives.
class CMedia
{
public:
    CMedia(const BenchOptions& options, const MediaShape& shape) : m_folder(options.strScratch + L"\\media")
    {
        CreateDirectoryW(m_folder, nullptr);
        for (std::size_t number = 0; number < FOLDERS; ++number) {
            CreateDirectoryW(Inner(number), nullptr);
        }
        for (std::size_t number = 0; number < shape.smallFiles; ++number) {
            WriteFileOf(Inner(number % FOLDERS) + L"\\small" + NumberText(static_cast<int>(number)) + L".dat",
                        shape.smallFileBytes);
        }
        for (std::size_t number = 0; number < shape.largeFiles; ++number) {
            WriteFileOf(m_folder + L"\\large" + NumberText(static_cast<int>(number)) + L".dat",
                        shape.largeFileBytes);
        }
    }
    CMedia(const CMedia&) = delete;
    CMedia& operator=(const CMedia&) = delete;
    ~CMedia() { RemoveTree(m_folder); }
    const CString& Folder() const { return m_folder; }

private:
    CString Inner(std::size_t number) const
    {
        return m_folder + L"\\folder" + NumberText(static_cast<int>(number));
    }
    CString m_folder;
};

BuildPlan MakePlan(const BenchOptions& options, const CString& media)
{
    BuildPlan plan;
    plan.strLocation = options.strScratch;
    plan.strName = L"built";
    plan.strBuiltBy = L"bench";
    plan.strMediaName = L"Zolt 2027";
    plan.folders.push_back({media, L"Image\\x64\\Zolt"});
    BuildDatabase database;
    database.strOriginal = options.strMedia + L"\\x64\\Zolt\\Zolt2027.msi";
    database.strTarget = L"Image\\x64\\Zolt\\Zolt2027.msi";
    database.strProductName = L"Zolt 2027";
    database.strProductCode = L"{6F0C2A0C-9A3B-4D53-8B4A-0E2F5D0B7A11}";
    database.strProductVersion = L"27.0.0";
    database.strMaker = L"Velkmora";
    plan.databases.push_back(database);
    return plan;
}

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
    CSilentProgress progress;
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
    const CMedia media(options, shape);
    const BuildPlan plan = MakePlan(options, media.Folder());
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
    const CMedia media(options, MixedShape(options));
    const BuildPlan plan = MakePlan(options, media.Folder());
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
    const CMedia media(options, MixedShape(options));
    const BuildPlan plan = MakePlan(options, media.Folder());
    Comparison comparison;
    comparison.strWhat = L"build, two processors";
    comparison.goal = 1.1;
    static_cast<void>(Copy(plan, PlainCopy::Bytes)); // the media come from memory from here on, for all alike
    MeasureInTurns(options.builds, comparison, LongerOfCopyAndHash, plan);
    return {comparison};
}
