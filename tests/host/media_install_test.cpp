// Media whose texts were made to run commands, from the package to the workstation: what the texts say must not happen,
// and the product is installed and removed as any other.
#include "builder/command_text.h"
#include "host/setup_host.h"
#include "include/product.h"
#include "tests/host/build_fixture.h"

#include <windows.h>

#include <msi.h>
#include <msiquery.h>

#include <memory>

namespace {

// Texts that can stand anywhere. A command that runs leaves its mark in the test's folder, which is the current one.
constexpr const wchar_t* HOSTILE_NAME = L"Zolt\" & md mark-name & rem \" & md mark-name-quoted & rem \r\nmd "
                                        L"mark-name-line\r\nrem %TEMP% ^ ! | md mark-name-pipe";
constexpr const wchar_t* HOSTILE_MAKER = L"Velk\" & md mark-maker & rem \r\nmd mark-maker-line\r\nrem %PATH%";
// Names of files and folders.
constexpr const wchar_t* HOSTILE_FILE = L"Zolt' & md mark-file & rem 100% %TEMP% ^! ^& (x);,=.msi";
constexpr const wchar_t* HOSTILE_FOLDER = L"Zolt & md mark-folder & rem 100% %TEMP% ^! (x)";
// The interpreter here drops "%" from %~dp0 and from the values of variables.
constexpr const wchar_t* HOSTILE_DEPLOYMENT = L"North & md mark-deployment & rem ^! ^& (x)";
constexpr const wchar_t* HOSTILE_LOGS = L"logs & md mark-logs & rem ^! ^& (x)";

CString XmlValue(CString text)
{
    text.Replace(L"&", L"&amp;");
    text.Replace(L"\"", L"&quot;");
    text.Replace(L"\r", L"&#13;");
    text.Replace(L"\n", L"&#10;");
    return text;
}

CString Description(const CString& folder, const CString& file)
{
    CString xml = L"<?xml version=\"1.0\" encoding=\"utf-8\"?>\r\n<Setup version=\"1\" code=\"";
    xml += PACKAGE_CODE;
    xml +=
        L"\" name=\"" + XmlValue(HOSTILE_NAME) + L"\" maker=\"" + XmlValue(HOSTILE_MAKER) +
        L"\" productVersion=\"27.0.0\"><Languages default=\"en-US\"><Language name=\"en-US\"/></Languages>"
        L"<Flow><Page name=\"BeginDeploymentDialog\"/></Flow><Platforms><Platform id=\"3\" folder=\"x64\"/>"
        L"</Platforms><Products><Product name=\"" +
        XmlValue(HOSTILE_NAME) + L"\" folder=\"" + XmlValue(folder) + L"\"><Package platform=\"3\" file=\"" +
        XmlValue(file) + L"\" productCode=\"" + PRODUCT_CODE +
        L"\" version=\"27.0.0\"/></Product></Products></Setup>\r\n";
    return xml;
}

class NoProgress final : public IBuildProgress
{
public:
    void OnStep(const CString&) override {}
    bool OnProgress(std::uint64_t, std::uint64_t, const CString&) override { return true; }
};

bool IsInstalled()
{
    return MsiQueryProductStateW(PRODUCT_CODE) == INSTALLSTATE_DEFAULT;
}

CString InstalledFile()
{
    wchar_t folder[MAX_PATH] = L"";
    GetEnvironmentVariableW(L"ProgramW6432", folder, ARRAYSIZE(folder));
    return CString(folder) + L"\\ZoltTest\\readme.txt";
}

class MediaInstallTest : public testing::Test
{
protected:
    MediaInstallTest()
    {
        GetCurrentDirectoryW(MAX_PATH, m_before);
        SetCurrentDirectoryW(m_folder.Path());
    }
    ~MediaInstallTest() override
    {
        if (IsInstalled()) {
            RunProgram(CString(L"msiexec /x ") + PRODUCT_CODE + L" /qn /norestart");
        }
        SetCurrentDirectoryW(m_before);
    }

    // The product of the fixture with the hostile texts in its database.
    static ProductOptions HostileProduct()
    {
        ProductOptions options;
        options.strDatabase = HOSTILE_FILE;
        options.bytesOfLargeFile = 100;
        options.prepare = [](const CString& database) {
            SetProperty(database, L"ProductName", HOSTILE_NAME);
            SetProperty(database, L"Manufacturer", HOSTILE_MAKER);
        };
        return options;
    }

    static void SetProperty(const CString& file, const CString& name, const CString& value)
    {
        MSIHANDLE database = 0;
        ASSERT_EQ(MsiOpenDatabaseW(file, MSIDBOPEN_TRANSACT, &database), 0u);
        MSIHANDLE view = 0;
        const MSIHANDLE record = MsiCreateRecord(2);
        MsiRecordSetStringW(record, 1, value);
        MsiRecordSetStringW(record, 2, name);
        EXPECT_EQ(
            MsiDatabaseOpenViewW(database, L"UPDATE `Property` SET `Value`=? WHERE `Property`=?", &view), 0u);
        EXPECT_EQ(MsiViewExecute(view, record), 0u);
        EXPECT_EQ(MsiDatabaseCommit(database), 0u);
        for (const MSIHANDLE handle : {record, view, database}) {
            MsiCloseHandle(handle);
        }
    }

    void Deploy(const CString& media, const CString& name = HOSTILE_DEPLOYMENT)
    {
        HostOptions options;
        options.strMedia = media;
        options.strProgramFolder = m_folder / L"program\\";
        options.strWorkFolder = m_folder / L"work";
        options.strLanguage = L"en-US";
        OperationError error;
        const std::unique_ptr<CSetupHost> host(OpenSetupHost(options, error));
        ASSERT_TRUE(host) << Utf8(error.message);
        CSetupManager& manager = host->GetSetupManager();
        MakeFolders(m_folder / L"shares");
        manager.SetDeploymentLocation(m_folder / L"shares");
        manager.SetDeploymentName(name);
        ASSERT_TRUE(manager.SetSetupMode(Setup::SETUPMODE_CREATE_DEPLOYMENT));
        manager.m_bNetworkLog = true;
        manager.m_strNetworkLogFolder = m_folder / HOSTILE_LOGS;
        // What a page stores comes into the report of changes.
        EXPECT_TRUE(manager.m_pProducts->at(0)->SetMsiProperty(L"ZOLT_NEW", HOSTILE_NAME, false));
        NoProgress progress;
        const BuildResult result = host->Build(progress);
        ASSERT_EQ(result.error.code, 0u) << Utf8(result.error.message);
        m_deployment = m_folder / L"shares\\" + name;
    }

    CString MediaFolder()
    {
        const CString media = m_folder / L"media";
        MakeMedia(media, HostileProduct());
        EXPECT_TRUE(MoveFileW(media + L"\\x64\\Zolt", media + L"\\x64\\" + HOSTILE_FOLDER));
        WriteBytes(media + L"\\Setup.xml", Utf8(Description(HOSTILE_FOLDER, HOSTILE_FILE)));
        return media;
    }

    CString LonePackage()
    {
        RemoveTree(m_folder / L"media");
        MakeMedia(m_folder / L"media", HostileProduct());
        return m_folder / L"media\\x64\\Zolt\\" + HOSTILE_FILE;
    }

    unsigned long Run(const CString& script)
    {
        return RunProgram(L"cmd.exe /d /c \"\"" + m_deployment + L"\\" + script + L"\"\"");
    }

    // The marks that injected commands left; where they run is the current folder.
    std::string Marks()
    {
        std::string found;
        for (const CString& folder : {m_folder.Path(), m_deployment, CString(L"C:")}) {
            VisitFolder(folder, [&](const WIN32_FIND_DATAW& entry) {
                if (CString(entry.cFileName).Left(5) == L"mark-") {
                    found += Utf8(entry.cFileName) + "\n";
                    RemoveTree(folder + L"\\" + entry.cFileName);
                }
            });
        }
        return found;
    }

    void ExpectInstallsAndRemoves()
    {
        EXPECT_EQ(Run(L"Install.cmd"), 0u);
        EXPECT_TRUE(IsInstalled());
        EXPECT_EQ(ReadBytes(InstalledFile()), "hello\n");
        EXPECT_EQ(Marks(), "");
        EXPECT_EQ(CountOfLogs(L"_Install_"), 1) << "the log is not in the folder that was chosen";
        EXPECT_EQ(Run(L"Uninstall.cmd"), 0u);
        EXPECT_FALSE(IsInstalled());
        EXPECT_FALSE(Exists(InstalledFile()));
        EXPECT_EQ(Marks(), "");
    }

    int CountOfLogs(const wchar_t* part)
    {
        int count = 0;
        VisitFolder(m_folder / HOSTILE_LOGS, [&](const WIN32_FIND_DATAW& entry) {
            count += CString(entry.cFileName).Find(part) >= 0 ? 1 : 0;
        });
        return count;
    }

    // The lines of ReadMe.txt that start in one of these ways, in the form for scripts where there is one.
    std::vector<std::string> LinesToPaste(const std::vector<std::string>& starts)
    {
        std::vector<std::string> lines;
        const std::string text = ReadBytes(m_deployment + L"\\ReadMe.txt");
        bool replaces = false;
        for (std::size_t start = 0, end; (end = text.find("\r\n", start)) != std::string::npos;
             start = end + 2) {
            const std::string line = text.substr(start, end - start);
            for (const std::string& wanted : starts) {
                if (line.rfind("    " + wanted, 0) == 0) {
                    if (replaces) {
                        lines.pop_back();
                    }
                    lines.push_back(line);
                }
            }
            replaces = line.find("stands twice") != std::string::npos;
        }
        return lines;
    }

    unsigned long RunPasted(const std::vector<std::string>& lines)
    {
        std::string script = "@echo off\r\n";
        for (const std::string& line : lines) {
            script += line + "\r\nif errorlevel 1 exit /b %ERRORLEVEL%\r\n";
        }
        const CString end = m_folder / L"reached the end";
        RemoveDirectoryW(end);
        WriteBytes(m_folder / L"pasted.cmd", script + "md \"reached the end\"\r\n");
        const unsigned long code = RunProgram(L"cmd.exe /d /c \"" + m_folder / L"pasted.cmd" + L"\"");
        EXPECT_TRUE(code != 0 || Exists(end)) << "the script ended at a line";
        return code;
    }

    TestFolder m_folder{L"hostile"};
    CString m_deployment;
    wchar_t m_before[MAX_PATH] = L"";
};

} // namespace

TEST_F(MediaInstallTest, CommandsInTheTextsOfAMediaFolderAreNeverRun)
{
    Deploy(MediaFolder());
    ExpectInstallsAndRemoves();
}

TEST_F(MediaInstallTest, CommandsInTheTextsOfALonePackageAreNeverRun)
{
    Deploy(LonePackage());
    ExpectInstallsAndRemoves();
}

// Such media are refused, and so is such a plan; the scripts don't rely on it.
TEST_F(MediaInstallTest, ACodeThatIsACommandIsNotRunByAScript)
{
    m_deployment = m_folder / L"scripts";
    MakeFolders(m_deployment);
    for (const wchar_t* code :
         {L"{12345678-1234-1234-1234-123456789012} & md mark-code & rem ", L"\" & md mark-code & rem ",
          L"{1}\r\nmd mark-code\r\nrem ", L"%COMSPEC% /c md mark-code"}) {
        BuildPlan plan;
        BuildDatabase database;
        database.strProductCode = code;
        database.strProductName = database.strProductVersion = code;
        database.strTarget = CString(L"Image\\") + code;
        database.patchTargets = {code};
        plan.databases.push_back(database);
        plan.commands.strLogFolder = code;
        plan.commands.strDisplay = CString(L"/qn ") + code;
        WriteBytes(m_deployment + L"\\Install.cmd", Utf8(ComposeInstallScript(plan)));
        WriteBytes(m_deployment + L"\\Uninstall.cmd", Utf8(ComposeUninstallScript(plan)));
        EXPECT_NE(Run(L"Install.cmd"), 0u);
        EXPECT_NE(Run(L"Uninstall.cmd"), 0u) << "removed nothing and says success";
        EXPECT_EQ(Marks(), "") << Utf8(code);
    }
}

TEST_F(MediaInstallTest, TheScriptsLinesToPasteHoldInAScript)
{
    for (const wchar_t* name : {HOSTILE_DEPLOYMENT, L"Office & md mark-called & (North)!"}) {
        Deploy(LonePackage(), name);
        const std::vector<std::string> lines = LinesToPaste({"call ", "cmd "});
        ASSERT_EQ(lines.size(), 2u);
        EXPECT_EQ(RunPasted({lines[0]}), 0u) << lines[0];
        EXPECT_TRUE(IsInstalled()) << lines[0];
        EXPECT_EQ(RunPasted({lines[1]}), 0u) << lines[1];
        EXPECT_FALSE(IsInstalled()) << lines[1];
        EXPECT_EQ(Marks(), "");
    }
}

TEST_F(MediaInstallTest, TheInstallersLinesToPasteHoldInAScript)
{
    Deploy(LonePackage());
    const std::vector<std::string> lines = LinesToPaste({"msiexec "});
    ASSERT_EQ(lines.size(), 3u) << "install, repair, uninstall";
    MakeFolders(m_folder / HOSTILE_LOGS); // the installer makes no folder for its log
    EXPECT_EQ(RunPasted({lines[0]}), 0u);
    EXPECT_TRUE(IsInstalled());
    // Repairing isn't implemented here; the line is understood as far as the plain command is.
    EXPECT_EQ(RunPasted({lines[1]}),
              RunProgram(CString(L"msiexec /fomus ") + PRODUCT_CODE + L" /qn /norestart"));
    EXPECT_EQ(RunPasted({lines[2]}), 0u);
    EXPECT_FALSE(IsInstalled());
    EXPECT_EQ(Marks(), "");
}

TEST_F(MediaInstallTest, NoTextAddsALineToTheNotes)
{
    Deploy(MediaFolder());
    for (const wchar_t* file : {L"ReadMe.txt", L"Build.log", L"Manifest.txt", L"Changes.txt"}) {
        const std::string text = ReadBytes(m_deployment + L"\\" + file);
        EXPECT_NE(text.find("mark-"), std::string::npos) << Utf8(file) << " has none of the texts";
        EXPECT_EQ(text.find("\nmd mark"), std::string::npos) << text;
        EXPECT_EQ(text.find("\nrem"), std::string::npos) << text;
    }
    const std::string json = ReadBytes(m_deployment + L"\\Changes.json");
    for (std::size_t index = 0; index < json.size(); ++index) {
        EXPECT_FALSE(static_cast<unsigned char>(json[index]) < 32 && json[index] != '\r' &&
                     json[index] != '\n');
    }
    EXPECT_EQ(json.find("\nmd mark"), std::string::npos) << json;
}
