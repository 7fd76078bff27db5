// The build of a deployment, beside plain copies of the same files in chunks of the same size: one that only copies,
// one that hashes each file too, as the manifest needs it.
#include "benchmarks/measurement.h"
#include "builder/build_names.h"
#include "builder/deployment_builder.h"
#include "builder/file_operations.h"
#include "builder/plain_copy.h"

#include <windows.h>

#include <string>

namespace {

constexpr std::size_t SMALL_FILES = 2000;
constexpr std::size_t SMALL_FILE_BYTES = 16 << 10;
constexpr std::size_t LARGE_FILES = 4;
constexpr std::size_t FOLDERS = 40;

class CSilentProgress final : public IBuildProgress
{
public:
    void OnStep(const CString&) override {}
    bool OnProgress(std::uint64_t, std::uint64_t, const CString&) override { return true; }
};

void WriteFileOf(const CString& path, std::uint64_t size)
{
    // No two blocks are equal, so that no file system can store them once.
    std::string block(1 << 20, '\0');
    std::uint32_t state = 0x12345678u ^ static_cast<std::uint32_t>(size);
    const CFileHandle file(CreateFileW(UnlimitedPath(path), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                       FILE_ATTRIBUTE_NORMAL, nullptr));
    while (size > 0) {
        for (char& byte : block) {
            state = state * 1664525u + 1013904223u;
            byte = static_cast<char>(state >> 24);
        }
        const DWORD part = static_cast<DWORD>(size < block.size() ? size : block.size());
        DWORD written = 0;
        if (!WriteFile(file.Get(), block.data(), part, &written, nullptr) || written != part) {
            throw CannotMeasure{L"Can't write " + path + L"; is the disk full?"};
        }
        size -= part;
    }
}

CString MakeMedia(const BenchOptions& options)
{
    const CString media = options.strScratch + L"\\media";
    CreateDirectoryW(media, nullptr);
    const std::uint64_t total = static_cast<std::uint64_t>(options.megabytes) << 20;
    // Half of a small deployment at most goes into small files.
    const std::size_t byHalf = static_cast<std::size_t>(total / 2 / SMALL_FILE_BYTES);
    const std::size_t smallFiles = byHalf < SMALL_FILES ? byHalf : SMALL_FILES;
    for (std::size_t number = 0; number < FOLDERS; ++number) {
        CreateDirectoryW(media + L"\\folder" + NumberText(static_cast<int>(number)), nullptr);
    }
    for (std::size_t number = 0; number < smallFiles; ++number) {
        WriteFileOf(media + L"\\folder" + NumberText(static_cast<int>(number % FOLDERS)) + L"\\small" +
                        NumberText(static_cast<int>(number)) + L".dat",
                    SMALL_FILE_BYTES);
    }
    const std::uint64_t rest = total - smallFiles * SMALL_FILE_BYTES;
    for (std::size_t number = 0; number < LARGE_FILES; ++number) {
        WriteFileOf(media + L"\\large" + NumberText(static_cast<int>(number)) + L".dat", rest / LARGE_FILES);
    }
    return media;
}

BuildPlan MakePlan(const BenchOptions& options, const CString& media)
{
    BuildPlan plan;
    plan.strLocation = options.strScratch;
    plan.strName = L"built";
    plan.strBuiltBy = L"bench";
    plan.strMediaName = L"Zolt 2027";
    plan.folders.push_back({media, L"Image\\x64\\Zolt", {}});
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

} // namespace

std::vector<Comparison> MeasureDeployment(const BenchOptions& options)
{
    const CString media = MakeMedia(options);
    const BuildPlan plan = MakePlan(options, media);
    const CString size = NumberText(options.megabytes) + L" MB ";
    Comparison copied;
    copied.strWhat = L"build, " + size + L"beside copy";
    copied.goal = 1.1;
    Comparison hashed;
    hashed.strWhat = L"build, beside copy and SHA-256";
    static_cast<void>(Copy(plan, PlainCopy::Bytes)); // the media come from memory from here on, for all alike
    for (int run = 0; run < options.builds; ++run) {
        copied.bare.push_back(Copy(plan, PlainCopy::Bytes));
        copied.ours.push_back(Build(plan));
        hashed.bare.push_back(Copy(plan, PlainCopy::BytesAndHashes));
    }
    hashed.ours = copied.ours;
    RemoveTree(media);
    return {copied, hashed};
}
