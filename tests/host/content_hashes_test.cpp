// The hashing beside the copying: its results, its bounds, and how it fails.
#include "tests/host/build_fixture.h"
#include "tests/support/import_redirect.h"

#include "builder/build_failure.h"
#include "builder/content_hashes.h"

#include <windows.h>

#include <bcrypt.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <functional>
#include <set>

namespace {

std::string BytesOfSize(std::size_t size, unsigned seed)
{
    std::string bytes(size, '\0');
    for (char& byte : bytes) {
        seed = seed * 1664525u + 1013904223u;
        byte = static_cast<char>(seed >> 24);
    }
    return bytes;
}

CString HashOf(const std::string& bytes)
{
    CContentHash hash;
    hash.Add(bytes.data(), bytes.size());
    return hash.Finish();
}

// As a copy does it, but for the file. The buffers that were handed out are added to the set.
void AddFile(CContentHashes& hashes, const std::string& bytes, std::set<unsigned char*>* buffers = nullptr)
{
    hashes.BeginFile();
    std::size_t done = 0;
    for (;;) {
        unsigned char* const buffer = hashes.NextBuffer();
        if (buffers) {
            buffers->insert(buffer);
        }
        const std::size_t size = std::min(CHUNK_BYTES, bytes.size() - done);
        if (size == 0) {
            break;
        }
        std::memcpy(buffer, bytes.data() + done, size);
        hashes.AddChunk(size);
        done += size;
    }
    hashes.EndFile();
}

// Puts a function of the test in the place of the system's hashing.
class CHashingRedirect
{
public:
    using Hashing = std::function<NTSTATUS(ULONG size)>; // 0 goes on to the system's

    explicit CHashingRedirect(Hashing hashing) : m_hashing(std::move(hashing))
    {
        s_current = this;
        m_redirect =
            std::make_unique<CImportRedirect>(nullptr, "BCryptHashData", reinterpret_cast<void*>(Hash));
        EXPECT_TRUE(m_redirect->IsInPlace());
    }
    CHashingRedirect(const CHashingRedirect&) = delete;
    CHashingRedirect& operator=(const CHashingRedirect&) = delete;
    ~CHashingRedirect() = default;

private:
    static NTSTATUS WINAPI Hash(BCRYPT_HASH_HANDLE hash, PUCHAR bytes, ULONG size, ULONG flags)
    {
        const NTSTATUS status = s_current->m_hashing(size);
        using Original = NTSTATUS(WINAPI*)(BCRYPT_HASH_HANDLE, PUCHAR, ULONG, ULONG);
        static const auto original = reinterpret_cast<Original>(
            reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"bcrypt"), "BCryptHashData")));
        return status != 0 ? status : original(hash, bytes, size, flags);
    }

    inline static CHashingRedirect* s_current = nullptr;
    Hashing m_hashing;
    std::unique_ptr<CImportRedirect> m_redirect;
};

constexpr NTSTATUS FAILED_HASH = static_cast<NTSTATUS>(0xC0000001);

// A manifest with the hash of another file, or of half a file, makes good deployments look damaged.
TEST(ContentHashes, ComeInTheOrderOfTheFilesWhateverTheirSize)
{
    std::vector<std::string> files;
    for (const std::size_t size :
         {std::size_t{0}, CHUNK_BYTES, std::size_t{1}, SMALL_FILE_BYTES - 1, SMALL_FILE_BYTES,
          SMALL_FILE_BYTES + 1, CHUNK_BYTES - 1, std::size_t{0}, CHUNK_BYTES + 1, 2 * CHUNK_BYTES,
          9 * CHUNK_BYTES + 17, std::size_t{2}, 4 * CHUNK_BYTES, std::size_t{0}}) {
        files.push_back(BytesOfSize(size, static_cast<unsigned>(files.size())));
    }
    CContentHashes hashes;
    for (const std::string& file : files) {
        AddFile(hashes, file);
    }
    const std::vector<CString> found = hashes.Finish();
    ASSERT_EQ(found.size(), files.size());
    for (std::size_t index = 0; index < files.size(); ++index) {
        EXPECT_EQ(found[index], HashOf(files[index])) << "file " << index << " of " << files[index].size();
    }
}

TEST(ContentHashes, OfNoFilesAreNone)
{
    CContentHashes hashes;
    EXPECT_TRUE(hashes.Finish().empty());
}

TEST(ContentHashes, OfASmallFileThatGrowsWhileItIsReadIsThatOfAllThatWasRead)
{
    CContentHashes hashes;
    const std::string bytes = BytesOfSize(CHUNK_BYTES, 7);
    hashes.BeginFile();
    std::memcpy(hashes.NextBuffer(), bytes.data(), 10);
    hashes.AddChunk(10);
    std::memcpy(hashes.NextBuffer(), bytes.data() + 10, CHUNK_BYTES - 10);
    hashes.AddChunk(CHUNK_BYTES - 10);
    hashes.EndFile();
    EXPECT_EQ(hashes.Finish(), std::vector<CString>{HashOf(bytes)});
}

// However large a file is and however slow the hashing: so many buffers, none of them overwritten too early.
TEST(ContentHashes, NeedNoMoreMemoryForALargerFile)
{
    const std::string bytes = BytesOfSize(40 * CHUNK_BYTES, 3);
    CContentHashes hashes;
    std::set<unsigned char*> buffers;
    AddFile(hashes, bytes, &buffers);
    EXPECT_EQ(hashes.Finish(), std::vector<CString>{HashOf(bytes)});
    EXPECT_EQ(buffers.size(), HASH_BUFFERS);
}

// The first chunk isn't hashed before three more are read: if the copying waited for it, neither would ever go on.
TEST(ContentHashes, AreComputedWhileTheCopyingGoesOn)
{
    const std::string bytes = BytesOfSize(4 * CHUNK_BYTES, 5);
    const CString expected = HashOf(bytes);
    HANDLE read = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    std::atomic<DWORD> thread = 0;
    DWORD waited = WAIT_FAILED;
    {
        const CHashingRedirect redirect([&](ULONG size) -> NTSTATUS {
            if (size == CHUNK_BYTES && thread.exchange(GetCurrentThreadId()) == 0) {
                waited = WaitForSingleObject(read, 10000);
            }
            return 0;
        });
        CContentHashes hashes;
        AddFile(hashes, "small");
        hashes.BeginFile();
        for (std::size_t chunk = 0; chunk < 4; ++chunk) {
            std::memcpy(hashes.NextBuffer(), bytes.data() + chunk * CHUNK_BYTES, CHUNK_BYTES);
            hashes.AddChunk(CHUNK_BYTES);
        }
        SetEvent(read);
        hashes.EndFile();
        EXPECT_EQ(hashes.Finish().back(), expected);
    }
    CloseHandle(read);
    EXPECT_EQ(waited, DWORD{WAIT_OBJECT_0});
    EXPECT_NE(thread, GetCurrentThreadId());
}

TEST(ContentHashes, ThatFailStopTheCopyingAtOneOfTheNextChunks)
{
    const CHashingRedirect redirect([](ULONG) { return FAILED_HASH; });
    CContentHashes hashes;
    hashes.BeginFile();
    int chunks = 0;
    try {
        for (; chunks < 100; ++chunks) {
            std::memset(hashes.NextBuffer(), 1, CHUNK_BYTES);
            hashes.AddChunk(CHUNK_BYTES);
        }
        ADD_FAILURE() << "nothing was thrown";
    } catch (const BuildFailure& failure) {
        EXPECT_HOLDS(failure.message, L"Windows could not compute SHA-256");
        EXPECT_LE(chunks, static_cast<int>(HASH_BUFFERS));
    }
}

TEST(ContentHashes, ThatAreNotNeededAnyMoreAreDropped)
{
    HANDLE first = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    HANDLE release = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    std::atomic<int> hashed = 0;
    {
        const CHashingRedirect redirect([&](ULONG) -> NTSTATUS {
            ++hashed;
            SetEvent(first);
            WaitForSingleObject(release, 10000);
            return 0;
        });
        auto hashes = std::make_unique<CContentHashes>();
        hashes->BeginFile();
        for (int chunk = 0; chunk < 4; ++chunk) {
            std::memset(hashes->NextBuffer(), 1, CHUNK_BYTES);
            hashes->AddChunk(CHUNK_BYTES);
        }
        EXPECT_EQ(WaitForSingleObject(first, 10000), DWORD{WAIT_OBJECT_0});
        std::thread releaser([&] { SetEvent(release); });
        hashes.reset();
        releaser.join();
    }
    CloseHandle(first);
    CloseHandle(release);
    EXPECT_LT(hashed, 4);
}

// ---- in a whole build

struct SizedFile
{
    const wchar_t* name;
    std::size_t size;
};

constexpr SizedFile g_files[] = {
    {L"nothing.dat", 0},
    {L"one.dat", 1},
    {L"below queue.dat", SMALL_FILE_BYTES - 1},
    {L"queue.dat", SMALL_FILE_BYTES},
    {L"below chunk.dat", CHUNK_BYTES - 1},
    {L"chunk.dat", CHUNK_BYTES},
    {L"above chunk.dat", CHUNK_BYTES + 1},
    {L"three chunks.dat", 3 * CHUNK_BYTES},
};

TEST(HashedBuild, CopiesAndListsFilesOfAnySizeByTheirBytes)
{
    TestBuild build;
    unsigned seed = 1;
    for (const SizedFile& file : g_files) {
        WriteBytes(build.Media() + L"\\x64\\Zolt\\" + file.name, BytesOfSize(file.size, seed++));
    }
    const BuildResult result = build.Build();
    ASSERT_EQ(result.error.code, 0u) << Utf8(result.error.message);
    const std::string manifest = ReadBytes(build.Target() + L"\\Manifest.txt");
    seed = 1;
    for (const SizedFile& file : g_files) {
        const std::string bytes = BytesOfSize(file.size, seed++);
        const CString path = CString(L"Image\\x64\\Zolt\\") + file.name;
        EXPECT_TRUE(ReadBytes(build.Target() + L"\\" + path) == bytes) << Utf8(path);
        const CString line = L"\n" + HashOf(bytes) + L" " + NumberText(static_cast<long long>(file.size)) +
                             L" " + path + L"\r\n";
        EXPECT_NE(manifest.find(Utf8(line)), std::string::npos) << Utf8(line) << manifest;
    }
}

// Nothing but large files first and small ones afterwards would leave one of two processors idle in turns.
TEST(HashedBuild, CopiesSmallFilesBetweenThePartsOfALargeOne)
{
    ProductOptions options;
    options.bytesOfLargeFile = 40 << 20;
    TestBuild build(options);
    for (int number = 0; number < 20; ++number) {
        WriteBytes(build.Media() + L"\\x64\\Zolt\\small" + NumberText(number) + L".dat", "small");
    }
    const DWORD own = GetCurrentThreadId();
    std::atomic<int> chunks = 0;
    std::vector<int> chunksBefore; // of the large file, when a small one is hashed
    const CHashingRedirect redirect([&](ULONG size) -> NTSTATUS {
        chunks += size == CHUNK_BYTES ? 1 : 0;
        if (GetCurrentThreadId() == own && size == 5) {
            chunksBefore.push_back(chunks);
        }
        return 0;
    });
    ASSERT_EQ(build.Build().error.code, 0u);
    ASSERT_EQ(chunksBefore.size(), 20u);
    // Behind the large file's copy at most HASH_BUFFERS of its chunks wait to be hashed.
    EXPECT_LT(chunksBefore[2], 40 - static_cast<int>(HASH_BUFFERS))
        << "the first small files came after the large one";
    EXPECT_GT(chunksBefore[17], 8) << "the small files came before the large one";
}

// The program's window lives on the thread that gets the reports.
TEST(HashedBuild, ReportsProgressOnTheCallersThreadAlone)
{
    TestBuild build;
    std::set<DWORD> reporting;
    std::atomic<int> hashedElsewhere = 0;
    const DWORD own = GetCurrentThreadId();
    build.onStep = [&](const CString&) { reporting.insert(GetCurrentThreadId()); };
    build.onProgress = [&](std::uint64_t, std::uint64_t) {
        reporting.insert(GetCurrentThreadId());
        return true;
    };
    const CHashingRedirect redirect([&](ULONG) -> NTSTATUS {
        hashedElsewhere += GetCurrentThreadId() != own ? 1 : 0;
        return 0;
    });
    ASSERT_EQ(build.Build().error.code, 0u);
    EXPECT_EQ(reporting, std::set<DWORD>{own});
    EXPECT_GE(hashedElsewhere, 3) << "the large file was to be hashed by another thread";
}

TEST(HashedBuild, ThatCannotHashFailsAndLeavesNothing)
{
    for (const bool large : {false, true}) {
        TestBuild build;
        const CHashingRedirect redirect(
            [&](ULONG size) { return (size >= SMALL_FILE_BYTES) == large ? FAILED_HASH : 0; });
        const BuildResult result = build.Build();
        EXPECT_EQ(result.error.code, unsigned{BUILD_INSTALLER_FAILED}) << large;
        EXPECT_HOLDS(result.error.message, L"Windows could not compute SHA-256 (status ");
        EXPECT_FALSE(Exists(build.Target())) << large;
        EXPECT_EQ(Leftovers(build.Location(), L"Office"), std::vector<CString>()) << large;
    }
}

// The hashing gives the sign, so that it comes with the file half read however fast the disk is.
TEST(HashedBuild, IsCanceledInTheMiddleOfAFileThatIsHashedBeside)
{
    ProductOptions options;
    options.bytesOfLargeFile = 40 << 20;
    TestBuild build(options);
    std::atomic<int> hashed = 0;
    const CHashingRedirect redirect([&](ULONG size) -> NTSTATUS {
        if (size == CHUNK_BYTES && ++hashed == 4) {
            LetTheNextMomentBeReported();
        }
        return 0;
    });
    std::uint64_t seen = 0;
    build.onProgress = [&](std::uint64_t done, std::uint64_t) {
        seen = done;
        return hashed < 4;
    };
    EXPECT_EQ(build.Build().error.code, unsigned{BUILD_CANCELLED});
    EXPECT_GT(seen, std::uint64_t{CHUNK_BYTES});
    EXPECT_LT(seen, std::uint64_t{40 << 20});
    EXPECT_LT(hashed, 36) << "hashing went on";
    EXPECT_FALSE(Exists(build.Target()));
    EXPECT_EQ(Leftovers(build.Location(), L"Office"), std::vector<CString>());
}

} // namespace
