// What a workstation does with a deployment: its scripts run in the system's command interpreter, its package is
// installed and removed by the installer service.
#include "tests/host/build_fixture.h"

#include <windows.h>

#include <msi.h>

namespace {

CString Environment(const wchar_t* name)
{
    wchar_t text[MAX_PATH] = L"";
    GetEnvironmentVariableW(name, text, ARRAYSIZE(text));
    return text;
}

CString InstalledFile()
{
    return Environment(L"ProgramW6432") + L"\\ZoltTest\\readme.txt";
}

CString LocalLogs()
{
    return Environment(L"windir") + L"\\Logs\\Software";
}

CString LogName(const CString& action)
{
    return L"Zolt 2027_27.0.0_" + action + L"_" + Environment(L"COMPUTERNAME") + L".log";
}

bool IsInstalled()
{
    return MsiQueryProductStateW(PRODUCT_CODE) == INSTALLSTATE_DEFAULT;
}

// A deployment moved away from where it was built, its media and working copy gone.
class InstallTest : public testing::Test
{
protected:
    ~InstallTest() override
    {
        if (IsInstalled()) {
            RunProgram(CString(L"msiexec /x ") + PRODUCT_CODE + L" /qn /norestart");
        }
    }

    void Deploy(const CString& name, const ProductOptions& options = {},
                const std::function<void(TestBuild&)>& prepare = {})
    {
        m_moved = m_folder / name;
        TestBuild build(options);
        build.Change(L"INSERT INTO `Property` (`Property`, `Value`) VALUES ('NEWS', '#1')");
        build.plan.commands.strLogFolder = m_folder / L"logs";
        if (prepare) {
            prepare(build);
        }
        const BuildResult result = build.Build();
        ASSERT_EQ(result.error.code, 0u) << Utf8(result.error.message);
        ASSERT_TRUE(MoveFileW(build.Target(), m_moved)) << GetLastError();
    }

    unsigned long Run(const CString& script)
    {
        return RunProgram(L"cmd.exe /d /c \"\"" + m_moved + L"\\" + script + L"\"\"");
    }

    CString LogIn(const CString& folder, const CString& action)
    {
        return Exists(folder + L"\\" + LogName(action)) ? CString(L"there") : CString(L"missing");
    }

    TestFolder m_folder{L"install"};
    CString m_moved;
};

TEST_F(InstallTest, InstallsFromWhereItWasMovedAndRemovesAgain)
{
    Deploy(L"Moved away & (back) !");
    EXPECT_EQ(Run(L"Install.cmd"), 0u);
    EXPECT_TRUE(IsInstalled());
    EXPECT_EQ(ReadBytes(InstalledFile()), "hello\n");
    EXPECT_EQ(LogIn(m_folder / L"logs", L"Install"), L"there");
    EXPECT_EQ(Run(L"Uninstall.cmd"), 0u);
    EXPECT_FALSE(IsInstalled());
    EXPECT_FALSE(Exists(InstalledFile()));
    EXPECT_EQ(LogIn(m_folder / L"logs", L"Uninstall"), L"there");
}

TEST_F(InstallTest, InstallsFromAFolderWithOtherLetters)
{
    Deploy(L"B\x00FCro Z\x00FCrich");
    EXPECT_EQ(Run(L"Install.cmd"), 0u);
    EXPECT_TRUE(IsInstalled());
}

TEST_F(InstallTest, HandsTheInstallersFailureOn)
{
    ProductOptions options;
    options.bFails = true;
    Deploy(L"fails", options);
    EXPECT_EQ(Run(L"Install.cmd"), 1603u);
    EXPECT_FALSE(IsInstalled());
}

// 1619 on Windows; the compatibility layer says 2. Either way it is the installer's word.
TEST_F(InstallTest, HandsOnThatThePackageIsGone)
{
    Deploy(L"gone");
    RemoveTree(m_moved + L"\\Image");
    const unsigned long direct = RunProgram(L"msiexec /i \"" + m_moved + L"\\gone.msi\" /qn /norestart");
    EXPECT_NE(direct, 0u);
    EXPECT_EQ(Run(L"Install.cmd"), direct);
}

// A known gap: the interpreter here drops "%" from %~dp0, which Windows does not. Correct the test above when this fails.
TEST_F(InstallTest, APercentSignInTheLocationIsLostByThisInterpreterAlone)
{
    Deploy(L"100% moved");
    const unsigned long code = Run(L"Install.cmd");
    if (Exists(L"Z:\\proc\\self")) {
        EXPECT_NE(code, 0u);
    } else {
        EXPECT_EQ(code, 0u);
    }
}

TEST_F(InstallTest, RemovingWhatIsNotInstalledIsSuccess)
{
    Deploy(L"absent");
    EXPECT_EQ(Run(L"Uninstall.cmd"), 0u);
}

TEST_F(InstallTest, ALogFolderOutOfReachNeverStopsTheInstallation)
{
    DeleteFileW(LocalLogs() + L"\\" + LogName(L"Install"));
    Deploy(L"nolog", {}, [](TestBuild& build) { build.plan.commands.strLogFolder = L"Q:\\no\\such\\drive"; });
    EXPECT_EQ(Run(L"Install.cmd"), 0u);
    EXPECT_TRUE(IsInstalled());
    EXPECT_EQ(LogIn(LocalLogs(), L"Install"), L"there");
}

// The log was called "Fran_ais".
TEST_F(InstallTest, TheLogKeepsTheLettersOfTheProductsName)
{
    ProductOptions options;
    options.strProductName = L"Fran\x00E7"
                             L"ais \x65E5";
    Deploy(L"letters", options);
    EXPECT_EQ(Run(L"Install.cmd"), 0u);
    EXPECT_TRUE(IsInstalled());
    EXPECT_TRUE(Exists(m_folder / L"logs\\" + (options.strProductName + L"_27.0.0_Install_" +
                                               Environment(L"COMPUTERNAME") + L".log")))
        << NamesOf(ReadTree(m_folder / L"logs"));
}

TEST_F(InstallTest, WithoutALogFolderTheLogStaysOnTheComputer)
{
    DeleteFileW(LocalLogs() + L"\\" + LogName(L"Install"));
    Deploy(L"local", {}, [](TestBuild& build) { build.plan.commands.strLogFolder = L""; });
    EXPECT_EQ(Run(L"Install.cmd"), 0u);
    EXPECT_EQ(LogIn(LocalLogs(), L"Install"), L"there");
}

TEST_F(InstallTest, ALogOnTheNetworkStaysThereAloneUnlessACopyIsAskedFor)
{
    DeleteFileW(LocalLogs() + L"\\" + LogName(L"Install"));
    Deploy(L"network log");
    EXPECT_EQ(Run(L"Install.cmd"), 0u);
    EXPECT_EQ(LogIn(m_folder / L"logs", L"Install"), L"there");
    EXPECT_EQ(LogIn(LocalLogs(), L"Install"), L"missing");
}

TEST_F(InstallTest, ACopyOfTheNetworkLogIsKeptOnTheComputer)
{
    DeleteFileW(LocalLogs() + L"\\" + LogName(L"Install"));
    Deploy(L"both logs", {}, [](TestBuild& build) { build.plan.commands.bKeepLocalLog = true; });
    EXPECT_EQ(Run(L"Install.cmd"), 0u);
    EXPECT_EQ(LogIn(m_folder / L"logs", L"Install"), L"there");
    EXPECT_EQ(LogIn(LocalLogs(), L"Install"), L"there");
}

TEST_F(InstallTest, AFailureKeepsItsExitCodeWhenALogIsCopied)
{
    ProductOptions options;
    options.bFails = true;
    Deploy(L"failing copy", options, [](TestBuild& build) { build.plan.commands.bKeepLocalLog = true; });
    EXPECT_EQ(Run(L"Install.cmd"), 1603u);
}

// Only a progress bar is shown; nobody is there to press a button.
TEST_F(InstallTest, WithAProgressBarTheInstallationEndsByItself)
{
    Deploy(L"progress", {}, [](TestBuild& build) { build.plan.commands.strDisplay = L"/qb-!"; });
    EXPECT_EQ(Run(L"Install.cmd"), 0u);
    EXPECT_TRUE(IsInstalled());
    EXPECT_EQ(Run(L"Uninstall.cmd"), 0u);
    EXPECT_FALSE(IsInstalled());
}

// msiexec is what the script starts; a stand-in by that name shows how each of its codes is handed on.
class ExitCodeTest : public InstallTest
{
protected:
    // The script with the installer replaced by a command that ends with the next of the codes.
    unsigned long RunWithCodes(const CString& script, const std::vector<int>& codes)
    {
        Deploy(L"codes", {}, [&](TestBuild& build) {
            while (build.plan.databases.size() < codes.size()) {
                BuildDatabase another = build.plan.databases[0];
                another.hDatabase = 0;
                another.strTarget =
                    L"Image\\other" + NumberText(static_cast<int>(build.plan.databases.size())) + L".msi";
                build.plan.databases.push_back(another);
            }
        });
        std::string text = ReadBytes(m_moved + L"\\" + script);
        const std::string installer = "\"%windir%\\System32\\msiexec.exe\"";
        for (const int code : codes) {
            const std::size_t place = text.find(installer);
            if (place == std::string::npos) {
                ADD_FAILURE() << "too few calls of the installer in\n" << text;
                return 0;
            }
            text.replace(place, installer.size(), "cmd.exe /d /c exit " + std::to_string(code) + " &rem");
        }
        WriteBytes(m_moved + L"\\" + script, text);
        return Run(script);
    }
};

TEST_F(ExitCodeTest, ANeededRestartIsTheResultOfAll)
{
    EXPECT_EQ(RunWithCodes(L"Install.cmd", {3010, 0}), 3010u);
}

TEST_F(ExitCodeTest, ARestartThatHasBegunOutweighsANeededOne)
{
    EXPECT_EQ(RunWithCodes(L"Install.cmd", {1641, 3010}), 1641u);
}

TEST_F(ExitCodeTest, TheFirstFailureStopsAndIsTheResult)
{
    EXPECT_EQ(RunWithCodes(L"Install.cmd", {3010, 1618, 0}), 1618u);
}

TEST_F(ExitCodeTest, RemovedAlreadyCountsAsRemoved)
{
    EXPECT_EQ(RunWithCodes(L"Uninstall.cmd", {1614, 1605}), 0u);
}

TEST_F(ExitCodeTest, AnAbsentProductIsAFailureOfAnInstallation)
{
    EXPECT_EQ(RunWithCodes(L"Install.cmd", {1605}), 1605u);
}

TEST_F(ExitCodeTest, AFailedRemovalIsHandedOn)
{
    EXPECT_EQ(RunWithCodes(L"Uninstall.cmd", {1605, 1603}), 1603u);
}

TEST_F(InstallTest, TheCommandsAreInReadMeReadyToPaste)
{
    std::string target;
    Deploy(L"lines", {}, [&](TestBuild& build) { target = Utf8(build.Target()); });
    const std::string text = ReadBytes(m_moved + L"\\ReadMe.txt");
    for (const std::string& part : std::vector<std::string>{
             "msiexec /i \"" + target + "\\Image\\x64\\Zolt\\Zolt2027.msi\" /qn /norestart /L*V \"",
             "msiexec /x {6F0C2A0C-9A3B-4D53-8B4A-0E2F5D0B7A11} /qn /norestart",
             "Detection rule: MSI product code {6F0C2A0C-9A3B-4D53-8B4A-0E2F5D0B7A11}",
             "\"" + target + "\\Install.cmd\"", "Computer accounts need read access"}) {
        EXPECT_NE(text.find(part), std::string::npos) << part << " is missing in\n" << text;
    }
}

} // namespace
