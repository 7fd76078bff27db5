// A build that is killed, at every file operation and from outside: a child process builds, dies, and the next
// start looks at what it left.
#include "tests/host/build_fixture.h"
#include "tests/host/user_additions.h"

#include "builder/build_names.h"
#include "builder/content_hash.h"
#include "builder/file_operations.h"
#include "builder/readme_text.h"

#include <windows.h>

#include <msi.h>
#include <msiquery.h>

#include <iterator>

namespace {

// The child's work: the build of `media` into `location`, read from the environment.
CString Variable(const wchar_t* name)
{
    wchar_t text[512] = L"";
    GetEnvironmentVariableW(name, text, ARRAYSIZE(text));
    return text;
}

int NumberOf(const CString& text)
{
    int number = 0;
    for (int index = 0; index < text.GetLength(); ++index) {
        number = number * 10 + (text[index] - L'0');
    }
    return number;
}

class Quiet final : public IBuildProgress
{
public:
    void OnStep(const CString&) override {}
    bool OnProgress(std::uint64_t, std::uint64_t, const CString&) override { return true; }
};

BuildPlan PlanOf(const CString& media, const CString& location)
{
    BuildPlan plan;
    plan.strLocation = location;
    plan.strName = L"Office";
    plan.strReplacedStamp = StampOfDeployment(location + L"\\Office");
    plan.strMediaName = L"Zolt 2027";
    plan.folders.push_back({media + L"\\x64", L"Image\\x64"});
    plan.texts.push_back({L"Deployment.xml", L"<Deployment/>\r\n"});
    BuildDatabase database;
    database.strOriginal = media + L"\\x64\\Zolt\\Zolt2027.msi";
    database.strTarget = L"Image\\x64\\Zolt\\Zolt2027.msi";
    database.strProductName = L"Zolt 2027";
    database.strProductCode = PRODUCT_CODE;
    database.strProductVersion = L"27.0.0";
    plan.databases.push_back(database);
    return plan;
}

// A working copy with an added file. A killed process leaves it to the test's folder.
void OpenWorkingCopy(const CString& media, BuildDatabase& database)
{
    const CString readme = media + L"\\x64\\Zolt\\readme.txt";
    database.strWorkingCopy = FolderAbove(media) + L"\\work-" + NumberText(GetCurrentProcessId()) + L".msi";
    EXPECT_TRUE(CopyFileW(database.strOriginal, database.strWorkingCopy, FALSE)) << GetLastError();
    MSIHANDLE handle = 0;
    EXPECT_EQ(MsiOpenDatabaseW(database.strWorkingCopy, MSIDBOPEN_TRANSACT, &handle), 0u);
    AddedRows(handle, 1).AddFile(readme, L"TARGETDIR");
    database.hDatabase = handle;
}

// Not a test of its own: what the child process runs.
TEST(KilledBuild, DISABLED_Child)
{
    BuildPlan plan = PlanOf(Variable(L"BUILD_TEST_MEDIA"), Variable(L"BUILD_TEST_LOCATION"));
    OpenWorkingCopy(Variable(L"BUILD_TEST_MEDIA"), plan.databases[0]);
    SetFileFault({NumberOf(Variable(L"BUILD_TEST_KILL_AT")), 0, false});
    Quiet quiet;
    const BuildResult result = BuildDeployment(plan, quiet);
    SetFileFault({});
    TerminateProcess(GetCurrentProcess(), result.error ? 1 : 0);
}

constexpr const wchar_t* OWN_FILE = L"Image\\f4\\old.txt";

class KillTest : public testing::Test
{
protected:
    KillTest()
    {
        ProductOptions options;
        options.bytesOfLargeFile = 100 * 1024;
        options.prepare = MakeAdditionTables;
        MakeMedia(m_folder / L"media", options);
        m_location = m_folder / L"shares";
        MakeFolders(m_location);
        PutOldInPlace();
        m_old = ReadTree(m_location + L"\\Office");
        SetEnvironmentVariableW(L"BUILD_TEST_MEDIA", m_folder / L"media");
        SetEnvironmentVariableW(L"BUILD_TEST_LOCATION", m_location);
    }

    void PutOldInPlace()
    {
        RemoveTree(m_location + L"\\Office");
        for (int number = 0; number < 5; ++number) {
            const CString folder = m_location + L"\\Office\\Image\\f" + NumberText(number);
            MakeFolders(folder);
            WriteBytes(folder + L"\\old.txt", "old " + std::to_string(number));
        }
        WriteBytes(m_location + L"\\Office\\Deployment.xml", "<Old/>");
        // One file isn't the build's: somebody has put it there.
        std::vector<ManifestEntry> entries;
        for (const auto& [path, bytes] : ReadTree(m_location + L"\\Office")) {
            if (path.Right(1) != L"\\" && path != OWN_FILE) {
                CContentHash hash;
                hash.Add(bytes.data(), bytes.size());
                entries.push_back({path, bytes.size(), hash.Finish()});
            }
        }
        WriteBytes(m_location + L"\\Office\\Manifest.txt", Utf8(ComposeManifest(entries)));
    }

    static HANDLE StartChild(long long killAt)
    {
        SetEnvironmentVariableW(L"BUILD_TEST_KILL_AT", NumberText(killAt));
        wchar_t program[MAX_PATH] = L"";
        GetModuleFileNameW(nullptr, program, ARRAYSIZE(program));
        CString line = CString(L"\"") + program +
                       L"\" --gtest_filter=KilledBuild.DISABLED_Child --gtest_also_run_disabled_tests "
                       L"--gtest_brief=1";
        STARTUPINFOW startup = {};
        startup.cb = sizeof(startup);
        PROCESS_INFORMATION process = {};
        EXPECT_TRUE(CreateProcessW(nullptr, line.GetBuffer(line.GetLength()), nullptr, nullptr, FALSE, 0,
                                   nullptr, nullptr, &startup, &process))
            << GetLastError();
        CloseHandle(process.hThread);
        return process.hProcess;
    }

    static unsigned long WaitForChild(HANDLE process)
    {
        EXPECT_EQ(WaitForSingleObject(process, 60000), DWORD{WAIT_OBJECT_0});
        DWORD code = 0;
        GetExitCodeProcess(process, &code);
        CloseHandle(process);
        return code;
    }

    // True when the new deployment stands.
    bool LookAfterNextStart(const std::string& when)
    {
        std::vector<CString> messages;
        CleanUpLocation(m_location, messages);
        std::string report;
        for (const CString& message : messages) {
            report += Utf8(message) + "\n";
        }
        for (const CString& name : Leftovers(m_location, L"Office")) {
            ADD_FAILURE() << when << ": left over: " << Utf8(name) << "\n" << report;
        }
        const Tree now = ReadTree(m_location + L"\\Office");
        const bool isNew = now.count(L"Install.cmd") != 0;
        const Tree kept = KeptFiles(m_location);
        EXPECT_EQ(kept, isNew ? Tree({{OWN_FILE, "old 4"}}) : Tree()) << when << "\n"
                                                                      << report << NamesOf(kept);
        RemoveKeptFiles(m_location);
        if (isNew) {
            EXPECT_EQ(now.size(), 21u) << when << "\n" << NamesOf(now);
        } else {
            EXPECT_TRUE(now == m_old) << when << "\n" << report << NamesOf(now);
        }
        return isNew;
    }

    TestFolder m_folder{L"kill"};
    CString m_location;
    Tree m_old;
};

// Each test has one operation in so many: all of them would be too much for one on a busy computer.
constexpr int SHARES = 4;
class KillAtOperationTest : public KillTest, public testing::WithParamInterface<int>
{
};
INSTANTIATE_TEST_SUITE_P(Shares, KillAtOperationTest, testing::Range(1, SHARES + 1));

TEST_P(KillAtOperationTest, AKillAtAnyFileOperationLeavesOldOrNewWhole)
{
    int killed = 0;
    int keptOld = 0;
    for (long long operation = GetParam(); operation < 2000 && !HasFailure(); operation += SHARES) {
        const unsigned long code = WaitForChild(StartChild(operation));
        if (code != KILLED_BY_FAULT) {
            EXPECT_EQ(code, 0u) << "operation " << operation;
            break;
        }
        ++killed;
        if (LookAfterNextStart("killed at operation " + std::to_string(operation))) {
            PutOldInPlace();
        } else {
            ++keptOld;
        }
    }
    EXPECT_GE(killed, 50);
    EXPECT_GE(keptOld, 50);
    EXPECT_LT(keptOld, killed) << "no kill fell behind the second rename";
    printf("killed at %d operations, the old deployment stayed in %d\n", killed, keptOld);
}

// Milliseconds between the build's first sign of life and the kill: some fall into its first steps on any machine.
constexpr DWORD STRETCHES[] = {0, 0, 0, 1, 2, 3, 5, 8, 13, 21, 34, 55};

TEST_F(KillTest, AKillFromOutsideLeavesOldOrNewWhole)
{
    int killed = 0;
    for (const DWORD stretch : STRETCHES) {
        HANDLE child = StartChild(0);
        const unsigned long long deadline = GetTickCount64() + 30000;
        while (Leftovers(m_location, L"Office").empty() && WaitForSingleObject(child, 0) == WAIT_TIMEOUT &&
               GetTickCount64() < deadline) {
            SwitchToThread();
        }
        WaitForSingleObject(child, stretch);
        TerminateProcess(child, KILLED_BY_FAULT);
        killed += WaitForChild(child) == KILLED_BY_FAULT ? 1 : 0;
        if (LookAfterNextStart("killed " + std::to_string(stretch) + " ms after the first trace") ||
            HasFailure()) {
            PutOldInPlace();
        }
    }
    EXPECT_GE(killed, 4) << "the first three kills come as soon as the build shows itself";
    printf("killed from outside in %d of %d rounds\n", killed, static_cast<int>(std::size(STRETCHES)));
}

} // namespace
