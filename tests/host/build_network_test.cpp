// Network paths: the platform lets a test make a share without a network, so that every file call goes the way of a
// UNC path.
#include "tests/host/build_fixture.h"

#include "builder/file_operations.h"

#include <windows.h>

namespace {

// `\\BUILDTEST\share` as another name of a folder. Only the compatibility layer that tests run on can do this.
class TestShare
{
public:
    explicit TestShare(const CString& folder)
    {
        CString path = folder.Mid(2);
        path.Replace(L'\\', L'/');
        Shell(L"mkdir -p \"$WINEPREFIX/dosdevices/unc/BUILDTEST\" && ln -sfn \"$WINEPREFIX/dosdevices/c:" +
              path + L"\" \"$WINEPREFIX/dosdevices/unc/BUILDTEST/share\"");
        // The shell is not waited for.
        const unsigned long long deadline = GetTickCount64() + 10000;
        while (!Exists(L"\\\\BUILDTEST\\share") && GetTickCount64() < deadline) {
            SwitchToThread();
        }
    }
    TestShare(const TestShare&) = delete;
    TestShare& operator=(const TestShare&) = delete;
    ~TestShare() { Shell(L"rm -r \"$WINEPREFIX/dosdevices/unc/BUILDTEST\""); }

private:
    static void Shell(const CString& command)
    {
        CString quoted = command;
        quoted.Replace(L"\"", L"\\\"");
        RunProgram(L"start.exe /wait /unix /bin/sh -c \"" + quoted + L"\"");
    }
};

TEST(NetworkBuild, BuildsOnAShareAndReplacesTheDeploymentThere)
{
    TestBuild build;
    const TestShare share(build.Location());
    if (!Exists(L"\\\\BUILDTEST\\share")) {
        GTEST_SKIP() << "this system makes no share for a test";
    }
    build.plan.strLocation = L"\\\\BUILDTEST\\share";
    BuildResult result = build.Build();
    ASSERT_EQ(result.error.code, 0u) << Utf8(result.error.message);
    EXPECT_EQ(result.strDeploymentFolder, L"\\\\BUILDTEST\\share\\Office\\");
    EXPECT_EQ(ReadBytes(build.Target() + L"\\Image\\x64\\Zolt\\readme.txt"), "hello\n");
    const std::string notes = ReadBytes(build.Target() + L"\\ReadMe.txt");
    EXPECT_NE(notes.find("\\\\BUILDTEST\\share\\Office\\Image\\x64\\Zolt\\Zolt2027.msi"), std::string::npos)
        << notes;
    build.AllowReplacing();
    result = build.Build();
    EXPECT_EQ(result.error.code, 0u) << Utf8(result.error.message);
    EXPECT_EQ(Leftovers(build.Location(), L"Office"), std::vector<CString>());
}

// A share reports only then what it could not take. The lock file is flushed as well.
TEST(NetworkBuild, EveryFileOfAFirstBuildOnAShareIsFlushed)
{
    TestBuild build;
    const TestShare share(build.Location());
    if (!Exists(L"\\\\BUILDTEST\\share")) {
        GTEST_SKIP() << "this system makes no share for a test";
    }
    build.plan.strLocation = L"\\\\BUILDTEST\\share";
    SetFileFault({}); // counts anew
    const BuildResult result = build.Build();
    ASSERT_EQ(result.error.code, 0u) << Utf8(result.error.message);
    long long files = 0;
    for (const auto& [path, bytes] : ReadTree(build.Target())) {
        files += path.Right(1) == L"\\" ? 0 : 1;
    }
    EXPECT_EQ(CountedFlushes(), files + 1);
}

TEST(NetworkBuild, AShareThatIsLostMeanwhileIsReported)
{
    TestBuild build;
    build.plan.strLocation = L"\\\\BUILDTEST\\gone";
    const BuildResult result = build.Build();
    EXPECT_NE(result.error.code, 0u);
    EXPECT_GE(result.error.message.Find(L"\\\\BUILDTEST\\gone"), 0) << Utf8(result.error.message);
}

TEST(NetworkBuild, ALocationThatMayNotBeWrittenIsReported)
{
    TestBuild build;
    // The administrator of the machine that runs the tests may write anywhere but to a file system of the kernel.
    const CString location = L"Z:\\proc";
    if (!Exists(location)) {
        GTEST_SKIP() << "no file system here that refuses every write";
    }
    build.plan.strLocation = location;
    const BuildResult result = build.Build();
    EXPECT_NE(result.error.code, 0u);
    EXPECT_GE(result.error.message.Find(L"Z:\\proc"), 0) << Utf8(result.error.message);
    std::vector<CString> warnings;
    const OperationError checked = CheckBuild(build.plan, warnings);
    EXPECT_NE(checked.code, 0u);
    EXPECT_GE(checked.message.Find(L"Z:\\proc"), 0) << Utf8(checked.message);
}

} // namespace
