// The words of a deployment's scripts, in the system's command interpreter: what they would do, and whether it could.
#include "tests/host/build_fixture.h"

#include <windows.h>

#include <msi.h>

namespace {

class CommandCheckTest : public testing::Test
{
protected:
    CommandCheckTest()
    {
        m_build.Change(L"INSERT INTO `Property` (`Property`, `Value`) VALUES ('NEWS', '#1')");
        m_build.plan.commands.strLogFolder = m_folder / L"logs";
        const BuildResult result = m_build.Build();
        EXPECT_EQ(result.error.code, 0u) << Utf8(result.error.message);
    }

    // The exit code; m_output is what the script wrote.
    unsigned long Run(const CString& script, const CString& words)
    {
        const CString output = m_folder / L"output.txt";
        const unsigned long code = RunProgram(L"cmd.exe /d /c \"\"" + m_build.Target() + L"\\" + script +
                                              L"\" " + words + L" >\"" + output + L"\" 2>&1\"");
        m_output = ReadBytes(output);
        return code;
    }

    static bool IsInstalled() { return MsiQueryProductStateW(PRODUCT_CODE) == INSTALLSTATE_DEFAULT; }

    bool Says(const std::string& words) const { return m_output.find(words) != std::string::npos; }

    TestFolder m_folder{L"command check"};
    TestBuild m_build;
    std::string m_output;
};

TEST_F(CommandCheckTest, ACompleteDeploymentIsReadableAndNothingIsInstalled)
{
    EXPECT_EQ(Run(L"Install.cmd", L"/check"), 0u) << m_output;
    EXPECT_TRUE(Says("msiexec.exe /i \"" + Utf8(m_build.Target()) + "\\")) << m_output;
    EXPECT_TRUE(Says("All are there, and this account can read them.")) << m_output;
    EXPECT_FALSE(IsInstalled());
    EXPECT_FALSE(Exists(m_folder / L"logs")) << "the check has made the log folder";
}

TEST_F(CommandCheckTest, TheCommandShownIsTheOneThatInstalls)
{
    EXPECT_EQ(Run(L"Install.cmd", L"/CHECK"), 0u) << m_output;
    const std::size_t start = m_output.find("msiexec.exe /i");
    ASSERT_NE(start, std::string::npos) << m_output;
    const std::string line = m_output.substr(start, m_output.find_first_of("\r\n", start) - start);
    EXPECT_EQ(RunProgram(CString(std::wstring(line.begin(), line.end()).c_str())), 0u) << line;
    EXPECT_TRUE(IsInstalled());
    EXPECT_EQ(Run(L"Uninstall.cmd", L"/check"), 0u) << m_output;
    EXPECT_TRUE(Says(Utf8(CString(L"msiexec.exe /x ") + PRODUCT_CODE))) << m_output;
    EXPECT_TRUE(IsInstalled()) << "the check has removed the product";
    EXPECT_EQ(Run(L"Uninstall.cmd", L""), 0u) << m_output;
    EXPECT_FALSE(IsInstalled());
}

TEST_F(CommandCheckTest, AFileThatIsGoneIsNamedAndNoOther)
{
    const CString gone = m_build.Target() + L"\\" + m_build.plan.databases[0].strTarget;
    ASSERT_TRUE(DeleteFileW(gone)) << GetLastError();
    EXPECT_EQ(Run(L"Install.cmd", L"/check"), 2u) << m_output;
    EXPECT_TRUE(Says("missing: \"" + Utf8(gone) + "\"")) << m_output;
    EXPECT_EQ(m_output.find("missing:"), m_output.rfind("missing:")) << m_output;
    EXPECT_FALSE(Says("can't be read")) << m_output;
}

// The interpreter can't tell why; a file that somebody has open for himself alone stands for one without the right to read.
TEST_F(CommandCheckTest, AFileThatCanNotBeReadIsNamed)
{
    const CString locked = m_build.Target() + L"\\" + m_build.plan.databases[0].strTarget;
    const CFileOwner alone(CreateFileW(locked, GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(alone) << GetLastError();
    EXPECT_EQ(Run(L"Install.cmd", L"/check"), 2u) << m_output;
    EXPECT_TRUE(Says("can't be read: \"" + Utf8(locked) + "\"")) << m_output;
}

TEST_F(CommandCheckTest, ALogFolderThatIsThereIsTriedAndLeftEmpty)
{
    ASSERT_TRUE(CreateDirectoryW(m_folder / L"logs", nullptr));
    EXPECT_EQ(Run(L"Install.cmd", L"/check"), 0u) << m_output;
    EXPECT_FALSE(Says("log folder")) << m_output;
    EXPECT_TRUE(RemoveDirectoryW(m_folder / L"logs")) << "something was left in it";
    EXPECT_EQ(Run(L"Install.cmd", L"/check"), 0u) << m_output;
    EXPECT_TRUE(Says("can't write to the log folder")) << m_output;
}

TEST_F(CommandCheckTest, WithoutTheListOfFilesNothingCanBeSaid)
{
    ASSERT_TRUE(DeleteFileW(m_build.Target() + L"\\Manifest.txt"));
    EXPECT_EQ(Run(L"Install.cmd", L"/check"), 2u) << m_output;
    EXPECT_TRUE(Says("which names all others")) << m_output;
}

TEST_F(CommandCheckTest, TheUsageIsShownOnRequestAndForAWordThatIsNotKnown)
{
    EXPECT_EQ(Run(L"Install.cmd", L"/?"), 0u) << m_output;
    EXPECT_TRUE(Says("Install.cmd /check")) << m_output;
    EXPECT_FALSE(Says("not known")) << m_output;
    EXPECT_EQ(Run(L"Uninstall.cmd", L"/chek"), 20u) << m_output;
    EXPECT_TRUE(Says("has no such option. Nothing was done.")) << m_output;
    EXPECT_TRUE(Says("Uninstall.cmd /check")) << m_output;
    EXPECT_FALSE(IsInstalled());
}

} // namespace
