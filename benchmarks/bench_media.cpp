#include "benchmarks/bench_media.h"

#include "builder/build_names.h"
#include "builder/file_operations.h"

#include <windows.h>

#include <algorithm>
#include <string>

namespace {

constexpr std::size_t FOLDERS = 40;

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

} // namespace

MediaShape MixedShape(const BenchOptions& options)
{
    constexpr std::uint64_t SMALL_FILE_BYTES = 16 << 10;
    constexpr std::uint64_t LARGE_FILES = 4;
    const std::uint64_t total = options.megabytes * MEGABYTE;
    const std::uint64_t smallFiles = std::min<std::uint64_t>(2000, total / 2 / SMALL_FILE_BYTES);
    return {static_cast<std::size_t>(smallFiles), SMALL_FILE_BYTES, LARGE_FILES,
            (total - smallFiles * SMALL_FILE_BYTES) / LARGE_FILES};
}

CBenchMedia::CBenchMedia(const BenchOptions& options, const MediaShape& shape)
    : m_folder(options.strScratch + L"\\media")
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

CBenchMedia::~CBenchMedia()
{
    RemoveTree(m_folder);
}

CString CBenchMedia::Inner(std::size_t number) const
{
    return m_folder + L"\\folder" + NumberText(static_cast<int>(number));
}

BuildPlan MakeBenchPlan(const BenchOptions& options, const CString& media)
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
