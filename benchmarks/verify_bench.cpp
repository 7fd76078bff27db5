// The check of a deployment that stands, beside reading and hashing all its files by bare calls in chunks of the same size.
#include "base/path_text.h"
#include "benchmarks/bench_media.h"
#include "builder/content_hashes.h"
#include "builder/deployment_builder.h"
#include "builder/file_operations.h"
#include "host/deployment_check.h"

#include <windows.h>

namespace {

// The deployment of some media, as long as the object lives; the media go at once, as the disk may be small.
class CBuiltDeployment
{
public:
    CBuiltDeployment(const BenchOptions& options, const MediaShape& shape)
        : m_folder(options.strScratch + L"\\built")
    {
        const CBenchMedia media(options, shape);
        CUnwatchedProgress progress;
        const BuildResult result = BuildDeployment(MakeBenchPlan(options, media.Folder()), progress);
        if (result.error) {
            throw CannotMeasure{L"The build failed: " + result.error.message};
        }
    }
    CBuiltDeployment(const CBuiltDeployment&) = delete;
    CBuiltDeployment& operator=(const CBuiltDeployment&) = delete;
    ~CBuiltDeployment() { RemoveTree(m_folder); }
    const CString& Folder() const { return m_folder; }

private:
    CString m_folder;
};

// Buffer and hash are made once.
class CPlainReader
{
public:
    void ReadFolder(const CString& folder)
    {
        WIN32_FIND_DATAW found = {};
        const CFindOwner search(FindFirstFileExW(folder + L"\\*", FindExInfoBasic, &found,
                                                 FindExSearchNameMatch, nullptr, FIND_FIRST_EX_LARGE_FETCH));
        if (!search) {
            throw CannotMeasure{L"Can't list " + folder};
        }
        do {
            const CString name = found.cFileName;
            if (name == L"." || name == L"..") {
                continue;
            }
            if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
                ReadFolder(folder + L"\\" + name);
            } else {
                Hash(folder + L"\\" + name);
            }
        } while (FindNextFileW(search.get(), &found));
    }

private:
    void Hash(const CString& path)
    {
        const CFileOwner file(CreateFileW(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                          OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
        DWORD read = 0;
        do {
            if (!ReadFile(file.get(), m_buffer.data(), static_cast<DWORD>(m_buffer.size()), &read, nullptr)) {
                throw CannotMeasure{L"Can't read " + path};
            }
            m_hash.Add(m_buffer.data(), read);
        } while (read > 0);
        static_cast<void>(m_hash.Finish());
    }

    std::vector<unsigned char> m_buffer = std::vector<unsigned char>(CHUNK_BYTES);
    CContentHash m_hash;
};

double ReadPlainly(const CString& folder)
{
    const double start = NowMilliseconds();
    CPlainReader().ReadFolder(folder);
    return NowMilliseconds() - start;
}

double Verify(const CString& folder)
{
    CUnwatchedProgress progress;
    VerifyResult result;
    const double start = NowMilliseconds();
    VerifyDeploymentFolder(folder, progress, result);
    const double end = NowMilliseconds();
    if (!result.findings.empty() || result.files == 0) {
        throw CannotMeasure{VerdictSentence(result)};
    }
    return end - start;
}

Comparison MeasureShape(const BenchOptions& options, const CString& what, const MediaShape& shape)
{
    const CBuiltDeployment deployment(options, shape);
    Comparison comparison;
    comparison.strWhat = what;
    comparison.goal = 1.1;
    static_cast<void>(ReadPlainly(deployment.Folder())); // it comes from memory from here on, for both alike
    for (int round = 0; round < options.builds; ++round) {
        if (round % 2 == 0) {
            comparison.bare.push_back(ReadPlainly(deployment.Folder()));
        }
        comparison.ours.push_back(Verify(deployment.Folder()));
        if (round % 2 != 0) {
            comparison.bare.push_back(ReadPlainly(deployment.Folder()));
        }
    }
    return comparison;
}

} // namespace

std::vector<Comparison> MeasureVerify(const BenchOptions& options)
{
    constexpr std::size_t FILE_BYTES = 2 << 10;
    return {MeasureShape(options, L"verify, " + NumberText(options.megabytes) + L" MB", MixedShape(options)),
            MeasureShape(options, L"verify, " + NumberText(options.files) + L" files of 2 KB",
                         {static_cast<std::size_t>(options.files), FILE_BYTES, 0, 0})};
}
