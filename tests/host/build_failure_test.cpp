// Whatever goes wrong, the old deployment stays whole, or there is none.
#include "tests/host/build_fixture.h"
#include "tests/host/outside_links.h"
#include "tests/host/user_additions.h"

#include "builder/build_names.h"
#include "builder/file_operations.h"
#include "builder/own_files.h"

#include <windows.h>

namespace {

constexpr const wchar_t* OWN_FILE = L"Image\\x64\\Zolt\\only-old.txt"; // put there by somebody

Tree FilesOf(const Tree& tree)
{
    Tree files;
    for (const auto& [path, bytes] : tree) {
        if (path.Right(1) != L"\\") {
            files[path] = bytes;
        }
    }
    return files;
}

bool CopyTree(const CString& from, const CString& to)
{
    for (const auto& [path, bytes] : ReadTree(from)) {
        const CString target = to + L"\\" + path;
        MakeFolders(path.Right(1) == L"\\" ? WithoutClosingBackslash(target) : FolderAbove(target));
        if (path.Right(1) != L"\\") {
            WriteBytes(target, bytes);
        }
    }
    return ReadTree(from) == ReadTree(to);
}

// A build with added files and with an old deployment in place, known to the last byte.
class RebuildTest : public testing::Test
{
protected:
    RebuildTest() : m_build(SmallProduct())
    {
        AddedRows added(m_build.plan.databases[0].hDatabase, 1);
        WriteBytes(m_sources / L"added.txt", std::string(5000, 'a'));
        added.AddFile(m_sources / L"added.txt", L"INSTALLDIR");
        EXPECT_EQ(m_build.Build().error.code, 0u);
        WriteBytes(m_build.Target() + L"\\" + OWN_FILE, "old");
        m_old = ReadTree(m_build.Target());
        m_build.AllowReplacing();
        m_build.Change(CHANGE_DATABASE);
    }

    static ProductOptions SmallProduct()
    {
        ProductOptions options;
        options.bytesOfLargeFile = 100 * 1024;
        options.prepare = MakeAdditionTables;
        return options;
    }

    void ExpectOldWhole(const std::string& when)
    {
        const Tree now = ReadTree(m_build.Target());
        EXPECT_TRUE(now == m_old) << when << "\n" << NamesOf(now);
    }

    // The next start, as the program does it.
    void StartAgain()
    {
        std::vector<CString> messages;
        CleanUpLocation(m_build.Location(), messages);
        for (const CString& message : messages) {
            m_messages += Utf8(message) + "\n";
        }
    }

    void ExpectNoLeftovers(const std::string& when)
    {
        for (const CString& name : Leftovers(m_build.Location(), m_build.plan.strName)) {
            ADD_FAILURE() << when << ": left over: " << Utf8(name) << "\n" << m_messages;
        }
    }

    // The old one to the byte, or a new one that is all there.
    void ExpectOldOrNew(const std::string& when)
    {
        const Tree now = ReadTree(m_build.Target());
        if (now.count(OWN_FILE) != 0) {
            EXPECT_TRUE(now == m_old) << when << ": the old one is damaged\n" << NamesOf(now);
            return;
        }
        EXPECT_EQ(now.size(), m_old.size() - 1) << when << ": the new one is not whole\n" << NamesOf(now);
        EXPECT_EQ(now.count(L"Manifest.txt"), 1u) << when << "\n" << NamesOf(now);
    }

    // After the next start: what somebody had put into the old one is in it, or beside the new one.
    void ExpectOwnFileKept(const std::string& when)
    {
        const bool oldStands = Exists(m_build.Target() + L"\\" + OWN_FILE);
        Tree kept = KeptFiles(m_build.Location());
        // With files of the build's own that could not be deleted.
        EXPECT_EQ(oldStands ? "old" : kept[OWN_FILE], "old") << when << "\n" << NamesOf(kept);
        EXPECT_TRUE(!oldStands || kept.empty()) << when << "\n" << NamesOf(kept);
    }

    // As another program does that begins to read it when the check is over.
    void OpenWhileCopying(const CString& path, CFileOwner& file)
    {
        m_build.onStep = [&file, path](const CString& step) {
            if (step.Find(L"Copying") == 0) {
                file = CFileOwner(
                    CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
                EXPECT_TRUE(file) << GetLastError();
            }
        };
    }

    TestFolder m_sources{L"sources"};
    TestBuild m_build;
    Tree m_old;
    std::string m_messages;
};

// Each test has one operation in so many: all of them would be too much for one on a busy computer.
constexpr int SHARES = 4;
class FailedOperationTest : public RebuildTest, public testing::WithParamInterface<int>
{
};
INSTANTIATE_TEST_SUITE_P(Shares, FailedOperationTest, testing::Range(1, SHARES + 1));

TEST_P(FailedOperationTest, EachFileOperationThatFailsOnceLeavesOldOrNewWhole)
{
    bool done = false;
    long long operation = GetParam();
    for (; !done && operation < 2000; operation += SHARES) {
        const std::string when = "operation " + std::to_string(operation);
        BuildResult result;
        {
            const CFaultScope fault({operation, ERROR_DISK_FULL, false});
            result = m_build.Build();
            done = CountedFileOperations() < operation;
        }
        if (done) {
            EXPECT_EQ(result.error.code, 0u) << when << ": " << Utf8(result.error.message);
            break;
        }
        if (result.error) {
            EXPECT_FALSE(result.error.message.IsEmpty()) << when;
            ExpectOldWhole(when + " failed with: " + Utf8(result.error.message));
        } else {
            ExpectOldOrNew(when);
            StartAgain();
            ExpectOwnFileKept(when);
            RemoveKeptFiles(m_build.Location());
            // Put the old one back for the next round.
            RemoveTree(m_build.Target());
            for (const auto& [name, bytes] : m_old) {
                MakeFolders(FolderAbove(m_build.Target() + L"\\" + name));
                if (name[name.GetLength() - 1] == L'\\') {
                    MakeFolders(m_build.Target() + L"\\" + WithoutClosingBackslash(name));
                } else {
                    WriteBytes(m_build.Target() + L"\\" + name, bytes);
                }
            }
            m_build.AllowReplacing();
        }
        StartAgain();
        ExpectNoLeftovers(when);
        if (HasFailure()) {
            return; // one is enough to look at
        }
    }
    EXPECT_TRUE(done) << "still failing at operation " << operation;
    EXPECT_GT(operation, 100);
    RecordProperty("operations", static_cast<int>(operation));
    printf("operations up to the one before number %lld failed in turn\n", operation);
}

TEST_P(FailedOperationTest, AShareLostAtAnyOperationLeavesTheOldDeploymentRestorable)
{
    for (long long operation = GetParam(); operation < 2000; operation += SHARES) {
        const std::string when = "lost at operation " + std::to_string(operation);
        BuildResult result;
        bool done = false;
        {
            const CFaultScope fault({operation, ERROR_NETNAME_DELETED, true});
            result = m_build.Build();
            done = CountedFileOperations() < operation;
        }
        if (done || !result.error) {
            StartAgain();
            ExpectNoLeftovers(when);
            ExpectOwnFileKept(when);
            EXPECT_GT(operation, 100);
            printf("shares lost up to moment %lld\n", operation - SHARES);
            return; // all later ones come after the new deployment stands
        }
        StartAgain();
        ExpectOldWhole(when + " failed with: " + Utf8(result.error.message));
        ExpectNoLeftovers(when);
        if (HasFailure()) {
            return;
        }
    }
    ADD_FAILURE() << "no build came through";
}

TEST_F(RebuildTest, CancellingAtAnyMomentLeavesTheOldDeploymentAndNothingElse)
{
    int calls = 0;
    for (int cancelAt = 1;; ++cancelAt) {
        calls = 0;
        m_build.onProgress = [&](std::uint64_t, std::uint64_t) { return ++calls < cancelAt; };
        const BuildResult result = m_build.Build();
        if (!result.error) {
            EXPECT_GE(cancelAt, 3) << "start and end at least can be cancelled";
            return;
        }
        EXPECT_EQ(result.error.code, 1602u) << Utf8(result.error.message);
        ExpectOldWhole("cancelled at call " + std::to_string(cancelAt));
        ExpectNoLeftovers("cancelled");
        EXPECT_FALSE(Exists(m_build.Location() + L"\\Office.Build.log"));
        if (HasFailure()) {
            return;
        }
    }
}

TEST(CancelledBuild, StopsInTheMiddleOfALargeFile)
{
    ProductOptions options;
    options.bytesOfLargeFile = 64 << 20;
    TestBuild build(options);
    std::uint64_t seen = 0;
    build.onProgress = [&](std::uint64_t done, std::uint64_t total) {
        seen = done;
        return done == 0 || done * 4 < total;
    };
    const BuildResult result = build.Build();
    EXPECT_EQ(result.error.code, 1602u);
    EXPECT_LT(seen, std::uint64_t{64 << 20});
    EXPECT_FALSE(Exists(build.Target()));
    EXPECT_EQ(Leftovers(build.Location(), L"Office"), std::vector<CString>());
}

TEST_F(RebuildTest, AFileOfTheOldDeploymentThatIsOpenKeepsItInPlace)
{
    const CString open = m_build.Target() + L"\\Image\\x64\\Zolt\\readme.txt";
    CFileOwner file;
    OpenWhileCopying(open, file);
    const BuildResult result = m_build.Build();
    file.reset();
    EXPECT_EQ(result.error.code, static_cast<unsigned>(ERROR_SHARING_VIOLATION));
    EXPECT_HOLDS(result.error.message, L"Replacing \"" + open + L"\" failed");
    EXPECT_HOLDS(result.error.message, L"Close it there");
    ExpectOldWhole("open file");
    ExpectNoLeftovers("open file");
}

TEST_F(RebuildTest, ALogOfAFailureLiesBesideTheDeploymentAndSaysWhatToDo)
{
    CFileOwner file;
    OpenWhileCopying(m_build.Target() + L"\\ReadMe.txt", file);
    EXPECT_EQ(m_build.Build().error.code, 32u);
    file.reset();
    m_build.onStep = nullptr;
    const CString path = m_build.Location() + L"\\Office.Build.log";
    const std::string bytes = ReadBytes(path);
    const CString log = TextFromUtf8(bytes.data(), bytes.size());
    EXPECT_HOLDS(log, L"\r\nCode:   32\r\nCause:  Replacing ");
    EXPECT_HOLDS(log, L"\r\nRemedy: Another program or computer has the file open.");
    EXPECT_EQ(m_build.Build().error.code, 0u);
    EXPECT_FALSE(Exists(path)) << "a success makes the log of the failure out of date";
}

TEST_F(RebuildTest, ALockedSourceIsNamed)
{
    const CString source = m_build.Media() + L"\\x64\\Zolt\\readme.txt";
    HANDLE file = CreateFileW(source, GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    const BuildResult result = m_build.Build();
    CloseHandle(file);
    EXPECT_EQ(result.error.code, 32u);
    EXPECT_HOLDS(result.error.message, source);
    ExpectOldWhole("locked source");
    ExpectNoLeftovers("locked source");
}

TEST_F(RebuildTest, ASecondBuildOfTheSameNameIsRefused)
{
    BuildResult second;
    m_build.onProgress = [&](std::uint64_t, std::uint64_t total) {
        if (total != 0 && !second.error) { // the check is over, and the name is taken
            m_build.onProgress = nullptr;
            second = m_build.Build();
        }
        return true;
    };
    EXPECT_EQ(m_build.Build().error.code, 0u);
    EXPECT_EQ(second.error.code, static_cast<unsigned>(ERROR_BUSY));
    EXPECT_HOLDS(second.error.message, L"is being built already");
}

TEST_F(RebuildTest, CleaningUpLeavesALivingBuildAlone)
{
    bool looked = false;
    m_build.onProgress = [&](std::uint64_t, std::uint64_t) {
        const std::vector<CString> before = Leftovers(m_build.Location(), L"Office");
        StartAgain();
        EXPECT_EQ(Leftovers(m_build.Location(), L"Office"), before);
        looked = true;
        return true;
    };
    EXPECT_EQ(m_build.Build().error.code, 0u) << m_messages;
    EXPECT_TRUE(looked);
}

TEST_F(RebuildTest, CleaningUpTouchesNothingThatHasOnlyTheName)
{
    const CString own = m_build.Location() + L"\\.Office.staging-0123abcd";
    MakeFolders(own + L"\\mine");
    WriteBytes(m_build.Location() + L"\\.Other.build-lock", "my own notes");
    StartAgain();
    EXPECT_TRUE(Exists(own + L"\\mine"));
    EXPECT_EQ(ReadBytes(m_build.Location() + L"\\.Other.build-lock"), "my own notes");
}

TEST_F(RebuildTest, AnOldDeploymentIsPutBackAfterAKillBetweenTheRenames)
{
    MoveFileW(m_build.Target(), m_build.Location() + L"\\.Office.old-0123abcd");
    MakeFolders(m_build.Location() + L"\\.Office.staging-0123abcd");
    WriteBytes(m_build.Location() + L"\\.Office.build-lock", "Deployment build 0123abcd\r\n");
    StartAgain();
    ExpectOldWhole("put back");
    ExpectNoLeftovers("put back");
    EXPECT_NE(m_messages.find("The old deployment was put back."), std::string::npos) << m_messages;
}

// ---- what changes while a build runs

TEST_F(RebuildTest, ADeploymentThatChangesDuringTheBuildIsNotReplaced)
{
    bool changed = false;
    m_build.onProgress = [&](std::uint64_t, std::uint64_t) {
        if (!changed) {
            WriteBytes(m_build.Target() + L"\\Deployment.xml", "<Deployment by=\"another wizard\"/>");
            changed = true;
        }
        return true;
    };
    const BuildResult result = m_build.Build();
    EXPECT_EQ(result.error.code, static_cast<unsigned>(ERROR_ALREADY_EXISTS));
    EXPECT_HOLDS(result.error.message, L"is no longer the deployment that was to be replaced");
    EXPECT_EQ(ReadBytes(m_build.Target() + L"\\Deployment.xml"), "<Deployment by=\"another wizard\"/>");
    ExpectNoLeftovers("changed");
}

// A loss of power behind the swap must not cost both: the new one still in memory, the old one deleted.
TEST_F(RebuildTest, EachFileIsOnTheDiskBeforeTheOldDeploymentGoes)
{
    SetFileFault({});
    ASSERT_EQ(m_build.Build().error.code, 0u);
    const long long flushes = CountedFlushes();
    EXPECT_GE(flushes, static_cast<long long>(FilesOf(ReadTree(m_build.Target())).size()));
}

// At the last moment to cancel: the old one has been judged long before.
TEST_F(RebuildTest, WhatIsPutIntoTheOldOneDuringTheBuildIsKept)
{
    m_build.onStep = [&](const CString& sentence) {
        if (sentence.Find(L"Publishing") == 0) {
            WriteBytes(m_build.Target() + L"\\late.txt", "late");
        }
    };
    const BuildResult result = m_build.Build();
    ASSERT_EQ(result.error.code, 0u) << Utf8(result.error.message);
    EXPECT_EQ(KeptFiles(m_build.Location()), Tree({{OWN_FILE, "old"}, {L"late.txt", "late"}}));
}

// A build whose source is the deployment that it replaces; a file is edited there behind what was read of it.
class EditedSourceTest : public testing::Test
{
protected:
    EditedSourceTest()
    {
        EXPECT_EQ(m_build.Build().error.code, 0u);
        m_build.AllowReplacing();
        m_build.plan.folders[0].strSource = m_build.Target() + L"\\Image\\x64\\Zolt";
        m_build.onStep = [](const CString&) { LetTheNextMomentBeReported(); };
        m_build.onProgress = [this](std::uint64_t done, std::uint64_t total) {
            if (!m_edited && done > 0) {
                EXPECT_LT(done, total / 2) << "the file is copied already";
                EditFirstBytes();
                m_edited = true;
            }
            return true;
        };
    }

    // Without another size, and with others reading it.
    void EditFirstBytes() const
    {
        const CFileOwner file(CreateFileW(m_build.Target() + LARGE_FILE, GENERIC_WRITE,
                                          FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                          OPEN_EXISTING, 0, nullptr));
        DWORD written = 0;
        EXPECT_TRUE(WriteFile(file.get(), "EDIT", 4, &written, nullptr)) << GetLastError();
    }

    static constexpr const wchar_t* LARGE_FILE = L"\\Image\\x64\\Zolt\\Data\\Deep\\large.bin";
    TestBuild m_build;
    bool m_edited = false;
};

TEST_F(EditedSourceTest, WhatIsEditedInTheOldOneWhileItIsCopiedIsKept)
{
    std::string edited = ReadBytes(m_build.Target() + LARGE_FILE);
    edited.replace(0, 4, "EDIT");
    const BuildResult result = m_build.Build();
    ASSERT_EQ(result.error.code, 0u) << Utf8(result.error.message);
    ASSERT_TRUE(m_edited);
    const Tree kept = KeptFiles(m_build.Location());
    EXPECT_TRUE(kept == Tree({{LARGE_FILE + 1, edited}})) << NamesOf(kept);
}

TEST_F(EditedSourceTest, TheCopyHasTheTimeOfTheBytesThatWereRead)
{
    const std::uint64_t before = EntryOnDisk(m_build.Target() + LARGE_FILE).lastWritten;
    ASSERT_EQ(m_build.Build().error.code, 0u);
    ASSERT_TRUE(m_edited);
    EXPECT_EQ(EntryOnDisk(m_build.Target() + LARGE_FILE).lastWritten, before);
}

TEST_F(RebuildTest, AFileOfTheSameSizeAndTimeButOtherBytesIsKept)
{
    const CString path = m_build.Target() + L"\\Image\\x64\\Zolt\\readme.txt";
    FILETIME written = {};
    HANDLE file = CreateFileW(path, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    DWORD bytes = 0;
    GetFileTime(file, nullptr, nullptr, &written);
    WriteFile(file, "HELLO", 5, &bytes, nullptr);
    SetFileTime(file, nullptr, nullptr, &written);
    CloseHandle(file);
    ASSERT_EQ(m_build.Build().error.code, 0u);
    EXPECT_EQ(KeptFiles(m_build.Location()),
              Tree({{OWN_FILE, "old"}, {L"Image\\x64\\Zolt\\readme.txt", "HELLO\n"}}));
}

TEST_F(RebuildTest, WithoutAManifestAllOfTheOldOneIsKept)
{
    ASSERT_TRUE(DeleteFileW(m_build.Target() + L"\\Manifest.txt"));
    const BuildResult result = m_build.Build();
    ASSERT_EQ(result.error.code, 0u);
    Tree kept = KeptFiles(m_build.Location());
    EXPECT_EQ(kept.size() + 1, FilesOf(m_old).size()) << NamesOf(kept);
    EXPECT_EQ(kept[OWN_FILE], "old");
    ASSERT_EQ(result.warnings.size(), 1u);
    EXPECT_HOLDS(result.warnings[0], L"was kept whole");
}

// One file that could not be deleted stopped every later build of that name.
TEST_F(RebuildTest, AnOldDeploymentThatCannotBeDeletedGoesOutOfTheWay)
{
    const CString old = m_build.Location() + L"\\.Office.old-0123abcd";
    ASSERT_TRUE(MoveFileW(m_build.Target(), old));
    const CString path = old + L"\\Image\\x64\\Zolt\\readme.txt";
    HANDLE file = CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    const CString kept = RetireDeployment(old, m_build.Location(), L"Office", true, {OWN_FILE});
    CloseHandle(file);
    EXPECT_FALSE(Exists(old));
    EXPECT_EQ(ReadBytes(kept + L"\\" + OWN_FILE), "old");
    EXPECT_EQ(ReadBytes(kept + L" (rest)\\Image\\x64\\Zolt\\readme.txt"), "hello\n");
}

TEST_F(RebuildTest, TheLogOfTheBuildNamesWhatIsKept)
{
    ASSERT_EQ(m_build.Build().error.code, 0u);
    const std::string log = ReadBytes(m_build.Target() + L"\\Build.log");
    EXPECT_NE(log.find("only-old.txt"), std::string::npos) << log;
}

// The folder that a link leads to was renamed, or deleted file by file.
TEST_F(RebuildTest, ALinkInThePlaceOfTheDeploymentIsRefused)
{
    const CString real = m_build.Folder() / L"real";
    ASSERT_TRUE(MoveFileW(m_build.Target(), real));
    const FolderLink link(m_build.Target(), real);
    if (!link.IsThere()) {
        GTEST_SKIP() << "this system makes no link for a test";
    }
    m_build.AllowReplacing();
    const BuildResult result = m_build.Build();
    EXPECT_EQ(result.error.code, static_cast<unsigned>(ERROR_ALREADY_EXISTS));
    EXPECT_HOLDS(result.error.message, L"is a link to another folder");
    EXPECT_TRUE(ReadTree(real) == m_old);
}

TEST_F(RebuildTest, ALinkLeftBehindIsNotFollowed)
{
    const CString real = m_build.Folder() / L"real";
    ASSERT_TRUE(CopyTree(m_build.Target(), real));
    const FolderLink link(m_build.Location() + L"\\.Office.old-0123abcd", real);
    if (!link.IsThere()) {
        GTEST_SKIP() << "this system makes no link for a test";
    }
    WriteBytes(m_build.Location() + L"\\.Office.build-lock", "Deployment build 0123abcd\r\n");
    StartAgain();
    EXPECT_TRUE(ReadTree(real) == m_old) << m_messages;
    EXPECT_NE(m_messages.find("is a link to another folder"), std::string::npos) << m_messages;
}

TEST_F(RebuildTest, ASecondReplacementKeepsItsOwnFilesApart)
{
    ASSERT_EQ(m_build.Build().error.code, 0u);
    WriteBytes(m_build.Target() + L"\\" + OWN_FILE, "newer");
    m_build.AllowReplacing();
    ASSERT_EQ(m_build.Build().error.code, 0u);
    int folders = 0;
    VisitFolder(m_build.Location(), [&](const WIN32_FIND_DATAW& found) {
        folders += CString(found.cFileName).Find(L" (kept files ") > 0 ? 1 : 0;
    });
    EXPECT_EQ(folders, 2);
}

// ---- names of the builder's own files

} // namespace
