#include "tests/host/build_fixture.h"
#include "tests/host/review_check.h"

#include "base/handle.h"
#include "builder/build_names.h"
#include "builder/database_signature.h"

#include <windows.h>

#include <msi.h>
#include <msiquery.h>
#include <objidl.h>

#include <iostream>

namespace {

const wchar_t* const g_tables[] = {
    L"CREATE TABLE `Property` (`Property` CHAR(72) NOT NULL, `Value` CHAR(0) NOT NULL LOCALIZABLE "
    L"PRIMARY KEY `Property`)",
    L"CREATE TABLE `Directory` (`Directory` CHAR(72) NOT NULL, `Directory_Parent` CHAR(72), `DefaultDir` "
    L"CHAR(255) "
    L"NOT NULL LOCALIZABLE PRIMARY KEY `Directory`)",
    L"CREATE TABLE `Component` (`Component` CHAR(72) NOT NULL, `ComponentId` CHAR(38), `Directory_` CHAR(72) "
    L"NOT "
    L"NULL, `Attributes` SHORT NOT NULL, `Condition` CHAR(255), `KeyPath` CHAR(72) PRIMARY KEY `Component`)",
    L"CREATE TABLE `Feature` (`Feature` CHAR(38) NOT NULL, `Feature_Parent` CHAR(38), `Title` CHAR(64) "
    L"LOCALIZABLE, "
    L"`Description` CHAR(255) LOCALIZABLE, `Display` SHORT, `Level` SHORT NOT NULL, `Directory_` CHAR(72), "
    L"`Attributes` SHORT NOT NULL PRIMARY KEY `Feature`)",
    L"CREATE TABLE `FeatureComponents` (`Feature_` CHAR(38) NOT NULL, `Component_` CHAR(72) NOT NULL PRIMARY "
    L"KEY "
    L"`Feature_`, `Component_`)",
    L"CREATE TABLE `File` (`File` CHAR(72) NOT NULL, `Component_` CHAR(72) NOT NULL, `FileName` CHAR(255) "
    L"NOT NULL "
    L"LOCALIZABLE, `FileSize` LONG NOT NULL, `Version` CHAR(72), `Language` CHAR(20), `Attributes` SHORT, "
    L"`Sequence` "
    L"SHORT NOT NULL PRIMARY KEY `File`)",
    L"CREATE TABLE `Media` (`DiskId` SHORT NOT NULL, `LastSequence` SHORT NOT NULL, `DiskPrompt` CHAR(64) "
    L"LOCALIZABLE, `Cabinet` CHAR(255), `VolumeLabel` CHAR(32), `Source` CHAR(72) PRIMARY KEY `DiskId`)",
    L"CREATE TABLE `Binary` (`Name` CHAR(72) NOT NULL, `Data` OBJECT NOT NULL PRIMARY KEY `Name`)",
    L"CREATE TABLE `LaunchCondition` (`Condition` CHAR(255) NOT NULL, `Description` CHAR(255) NOT NULL "
    L"LOCALIZABLE "
    L"PRIMARY KEY `Condition`)",
    L"CREATE TABLE `InstallExecuteSequence` (`Action` CHAR(72) NOT NULL, `Condition` CHAR(255), `Sequence` "
    L"SHORT "
    L"PRIMARY KEY `Action`)",
    L"INSERT INTO `Directory` (`Directory`, `DefaultDir`) VALUES ('TARGETDIR', 'SourceDir')",
    L"INSERT INTO `Directory` (`Directory`, `Directory_Parent`, `DefaultDir`) VALUES "
    L"('ProgramFiles64Folder', "
    L"'TARGETDIR', '.')",
    L"INSERT INTO `Directory` (`Directory`, `Directory_Parent`, `DefaultDir`) VALUES ('INSTALLDIR', "
    L"'ProgramFiles64Folder', 'ZoltTest:.')",
    L"INSERT INTO `Component` (`Component`, `ComponentId`, `Directory_`, `Attributes`, `KeyPath`) VALUES "
    L"('Main', "
    L"'{0B6B6E9C-6E3A-4A63-9A5F-3C1F0D7E8A33}', 'INSTALLDIR', 256, 'Readme')",
    L"INSERT INTO `Feature` (`Feature`, `Level`, `Attributes`) VALUES ('All', 1, 0)",
    L"INSERT INTO `FeatureComponents` (`Feature_`, `Component_`) VALUES ('All', 'Main')",
    // Loose beside the database: 8192 says uncompressed.
    L"INSERT INTO `File` (`File`, `Component_`, `FileName`, `FileSize`, `Attributes`, `Sequence`) VALUES "
    L"('Readme', "
    L"'Main', 'readme.txt', 6, 8192, 1)",
    L"INSERT INTO `Media` (`DiskId`, `LastSequence`) VALUES (1, 1)",
};

struct Action
{
    const wchar_t* name;
    int sequence;
};

const Action g_actions[] = {
    {L"LaunchConditions", 100},   {L"CostInitialize", 800},     {L"FileCost", 900},
    {L"CostFinalize", 1000},      {L"InstallValidate", 1400},   {L"InstallInitialize", 1500},
    {L"ProcessComponents", 1600}, {L"UnpublishFeatures", 1800}, {L"RemoveFiles", 3500},
    {L"InstallFiles", 4000},      {L"RegisterProduct", 6100},   {L"PublishFeatures", 6300},
    {L"PublishProduct", 6400},    {L"InstallFinalize", 6600},
};

void Require(unsigned int code, const CString& what)
{
    if (code != ERROR_SUCCESS) {
        ADD_FAILURE() << Utf8(what) << " gave " << code;
    }
}

void SetProperty(MSIHANDLE database, const CString& name, const CString& value)
{
    Require(RunSql(database, L"INSERT INTO `Property` (`Property`, `Value`) VALUES ('" + name + L"', '" +
                                 value + L"')"),
            name);
}

void ForceCodePage(MSIHANDLE database, const CString& folder, int codePage)
{
    WriteBytes(folder + L"\\codepage.idt", "\r\n\r\n" + std::to_string(codePage) + "\t_ForceCodepage\r\n");
    Require(MsiDatabaseImportW(database, folder, L"codepage.idt"), L"_ForceCodepage");
    DeleteFileW(folder + L"\\codepage.idt");
}

void MakeSummary(MSIHANDLE database)
{
    MSIHANDLE summary = 0;
    Require(MsiGetSummaryInformationW(database, nullptr, 20, &summary), L"summary");
    Require(MsiSummaryInfoSetPropertyW(summary, 1, VT_I2, 1252, nullptr, nullptr), L"code page");
    Require(MsiSummaryInfoSetPropertyW(summary, 2, VT_LPSTR, 0, nullptr, L"Installation Database"), L"title");
    Require(MsiSummaryInfoSetPropertyW(summary, 4, VT_LPSTR, 0, nullptr, L"Velkmora"), L"author");
    Require(MsiSummaryInfoSetPropertyW(summary, 7, VT_LPSTR, 0, nullptr, L"x64;1033"), L"template");
    Require(MsiSummaryInfoSetPropertyW(summary, 9, VT_LPSTR, 0, nullptr, PACKAGE_CODE), L"package code");
    Require(MsiSummaryInfoSetPropertyW(summary, 14, VT_I4, 200, nullptr, nullptr), L"schema");
    Require(MsiSummaryInfoSetPropertyW(summary, 15, VT_I4, 0, nullptr, nullptr), L"source");
    Require(MsiSummaryInfoPersist(summary), L"persist");
    MsiCloseHandle(summary);
}

void InsertBinary(MSIHANDLE database, const CString& folder)
{
    WriteBytes(folder + L"\\icon.bin", std::string(5000, 'b'));
    MSIHANDLE view = 0;
    MSIHANDLE record = MsiCreateRecord(1);
    Require(MsiRecordSetStreamW(record, 1, folder + L"\\icon.bin"), L"stream");
    Require(
        MsiDatabaseOpenViewW(database, L"INSERT INTO `Binary` (`Name`, `Data`) VALUES ('Icon', ?)", &view),
        L"Binary");
    Require(MsiViewExecute(view, record), L"Binary");
    MsiCloseHandle(record);
    MsiCloseHandle(view);
}

void MakeDatabase(const CString& path, const ProductOptions& options)
{
    MSIHANDLE database = 0;
    Require(MsiOpenDatabaseW(path, MSIDBOPEN_CREATE, &database), path);
    for (const wchar_t* statement : g_tables) {
        Require(RunSql(database, statement), statement);
    }
    for (const Action& action : g_actions) {
        Require(RunSql(database,
                       CString(L"INSERT INTO `InstallExecuteSequence` (`Action`, `Sequence`) VALUES ('") +
                           action.name + L"', " + NumberText(action.sequence) + L")"),
                action.name);
    }
    if (options.bFails) {
        Require(RunSql(database,
                       L"INSERT INTO `LaunchCondition` (`Condition`, `Description`) VALUES ('NEVER', 'No')"),
                L"condition");
    }
    ForceCodePage(database, FolderAbove(path), options.codePage);
    SetProperty(database, L"ProductName", options.strProductName);
    SetProperty(database, L"ProductCode", options.strProductCode);
    SetProperty(database, L"ProductVersion", L"27.0.0");
    SetProperty(database, L"ProductLanguage", L"1033");
    SetProperty(database, L"Manufacturer", L"Velkmora");
    SetProperty(database, L"OLD", L"goes");
    InsertBinary(database, FolderAbove(path));
    MakeSummary(database);
    Require(MsiDatabaseCommit(database), L"commit");
    MsiCloseHandle(database);
    DeleteFileW(FolderAbove(path) + L"\\icon.bin");
}

} // namespace

TestFolder::TestFolder(const CString& name)
{
    wchar_t base[MAX_PATH] = L"";
    GetTempPathW(MAX_PATH, base);
    static int number = 0;
    // Numbers of processes come back, and one that was ended in the middle may have left what can't be removed.
    do {
        m_path = WithoutClosingBackslash(base) + L"\\" + name + L"-" + NumberText(GetCurrentProcessId()) +
                 L"-" + NumberText(++number);
        RemoveTree(m_path);
    } while (Exists(m_path));
    MakeFolders(m_path);
}

TestFolder::~TestFolder()
{
    RemoveTree(m_path);
}

void MakeFolders(const CString& path)
{
    if (path.GetLength() > 3 && !Exists(path)) {
        MakeFolders(FolderAbove(path));
        CreateDirectoryW(UnlimitedPath(path), nullptr);
    }
}

void WriteBytes(const CString& path, const std::string& bytes)
{
    HANDLE file = CreateFileW(UnlimitedPath(path), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    if (!WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr)) {
        ADD_FAILURE() << "can't write " << Utf8(path) << ": " << GetLastError();
    }
    CloseHandle(file);
}

bool Exists(const CString& path)
{
    return GetFileAttributesW(UnlimitedPath(path)) != INVALID_FILE_ATTRIBUTES;
}

void RemoveTree(const CString& path)
{
    VisitFolder(path, [&](const WIN32_FIND_DATAW& found) {
        const CString inner = path + L"\\" + found.cFileName;
        SetFileAttributesW(UnlimitedPath(inner), FILE_ATTRIBUTE_NORMAL);
        if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
            RemoveTree(inner);
        } else {
            DeleteFileW(UnlimitedPath(inner));
        }
    });
    RemoveDirectoryW(UnlimitedPath(path));
}

unsigned int RunSql(InstallerHandle database, const CString& statement)
{
    MSIHANDLE view = 0;
    unsigned int code = MsiDatabaseOpenViewW(database, statement, &view);
    if (code == ERROR_SUCCESS) {
        code = MsiViewExecute(view, 0);
        MsiCloseHandle(view);
    }
    return code;
}

CString QueryText(const CString& path, const CString& statement)
{
    MSIHANDLE database = 0;
    MSIHANDLE view = 0;
    MSIHANDLE record = 0;
    Require(MsiOpenDatabaseW(path, MSIDBOPEN_READONLY, &database), path);
    Require(MsiDatabaseOpenViewW(database, statement, &view), statement);
    Require(MsiViewExecute(view, 0), statement);
    CString answer = L"(none)";
    if (MsiViewFetch(view, &record) == ERROR_SUCCESS) {
        wchar_t text[1024] = L"";
        DWORD length = ARRAYSIZE(text);
        MsiRecordGetStringW(record, 1, text, &length);
        answer = text;
    }
    MsiCloseHandle(record);
    MsiCloseHandle(view);
    MsiCloseHandle(database);
    return answer;
}

CString PackageCodeOf(const CString& path)
{
    MSIHANDLE summary = 0;
    Require(MsiGetSummaryInformationW(0, path, 0, &summary), path);
    wchar_t text[64] = L"";
    DWORD length = ARRAYSIZE(text);
    UINT type = 0;
    Require(MsiSummaryInfoGetPropertyW(summary, 9, &type, nullptr, nullptr, text, &length), L"package code");
    MsiCloseHandle(summary);
    return text;
}

void MakeMedia(const CString& folder, const ProductOptions& options)
{
    const CString product = folder + L"\\x64\\Zolt";
    MakeFolders(product + L"\\Data\\Deep");
    MakeFolders(product + L"\\Empty");
    MakeDatabase(product + L"\\" + options.strDatabase, options);
    if (options.prepare) {
        options.prepare(product + L"\\" + options.strDatabase);
    }
    WriteBytes(product + L"\\readme.txt", "hello\n");
    WriteBytes(product + L"\\Data\\zero.bin", "");
    std::string large(options.bytesOfLargeFile, 'x');
    for (std::size_t index = 0; index < large.size(); ++index) {
        large[index] = static_cast<char>(index * 31 + index / 4096);
    }
    WriteBytes(product + L"\\Data\\Deep\\large.bin", large);
    WriteBytes(product + L"\\Data\\kept.txt", "read only\n");
    SetFileAttributesW(product + L"\\Data\\kept.txt", FILE_ATTRIBUTE_READONLY);
}

namespace {

class Recorder final : public IBuildProgress
{
public:
    explicit Recorder(TestBuild& build) : m_build(build) {}
    void OnStep(const CString& sentence) override
    {
        m_build.steps.push_back(sentence);
        if (m_build.onStep) {
            m_build.onStep(sentence);
        }
    }
    bool OnProgress(std::uint64_t done, std::uint64_t total, const CString&) override
    {
        ++m_build.progressCalls;
        return !m_build.onProgress || m_build.onProgress(done, total);
    }
    void OnDecided(const BuildReview& review) override { m_build.decided.push_back(review); }

private:
    TestBuild& m_build;
};

} // namespace

TestBuild::TestBuild(const ProductOptions& options) : m_options(options)
{
    MakeMedia(Media(), options);
    MakeFolders(Location());
    const CString original = Media() + L"\\x64\\Zolt\\" + options.strDatabase;
    const CString work = m_folder / L"work.msi";
    CopyFileW(original, work, TRUE);
    Require(RemoveSignature(work), L"signature");
    Require(MsiOpenDatabaseW(work, MSIDBOPEN_TRANSACT, &m_database), work);
    plan.strLocation = Location();
    plan.strName = L"Office";
    plan.strBuiltBy = L"Setup 1.0.0";
    plan.strMediaName = options.strProductName;
    plan.folders.push_back({Media() + L"\\x64\\Zolt", L"Image\\x64\\Zolt"});
    plan.texts.push_back({L"Deployment.xml", L"<Deployment/>\r\n"});
    plan.texts.push_back({L"Image\\Setup.xml", L"<Setup/>\r\n"});
    BuildDatabase database;
    database.strOriginal = original;
    database.strWorkingCopy = work;
    database.hDatabase = m_database;
    database.strTarget = L"Image\\x64\\Zolt\\" + options.strDatabase;
    database.strProductName = options.strProductName;
    database.strProductCode = options.strProductCode;
    database.strProductVersion = L"27.0.0";
    database.strMaker = L"Velkmora";
    plan.databases.push_back(database);
}

TestBuild::~TestBuild()
{
    MsiCloseHandle(m_database);
}

void TestBuild::Change(const CString& statement)
{
    Require(RunSql(m_database, statement), statement);
}

void TestBuild::AllowReplacing()
{
    plan.strReplacedStamp = StampOfDeployment(Target());
}

BuildResult TestBuild::Build()
{
    Recorder recorder(*this);
    decided.clear();
    // Not where a test counts what is done, or does something meanwhile.
    const bool isReviewed = !IsFaultScopeOpen() && !onProgress && !onStep;
    BuildReview review;
    const OperationError refusal = isReviewed ? ReviewBuild(plan, review) : OperationError();
    BuildResult result = BuildDeployment(plan, recorder);
    if (isReviewed) {
        ExpectPlanHeld(refusal, review, decided, result);
    }
    return result;
}

void ExpectRefusedBeforehand(TestBuild& build, unsigned int code, const std::vector<CString>& words)
{
    const Tree before = ReadTree(build.Location());
    std::vector<CString> warnings;
    const OperationError checked = CheckBuild(build.plan, warnings);
    build.steps.clear();
    const BuildResult result = build.Build();
    EXPECT_EQ(result.error.code, code) << Utf8(result.error.message);
    EXPECT_EQ(checked.code, code) << "the check says: " << Utf8(checked.message);
    EXPECT_EQ(Utf8(checked.message), Utf8(result.error.message));
    for (const CString& word : words) {
        EXPECT_GE(result.error.message.Find(word), 0)
            << Utf8(word) << " is missing in: " << Utf8(result.error.message);
    }
    EXPECT_LE(build.steps.size(), 1u) << "more was done than checking: " << Utf8(build.steps.back());
    const Tree after = ReadTree(build.Location());
    EXPECT_TRUE(after == before) << "the location holds\n"
                                 << NamesOf(after) << "and held\n"
                                 << NamesOf(before);
}

void LetTheNextMomentBeReported()
{
    for (const ULONGLONG start = GetTickCount64(); GetTickCount64() - start < 60;) {
        SwitchToThread();
    }
}

namespace {

CFileOwner CreateInheritable(const CString& path)
{
    SECURITY_ATTRIBUTES inheritable = {sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    return CFileOwner(CreateFileW(path, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                  &inheritable, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
}

void CopyToStandardOutput(HANDLE file)
{
    SetFilePointer(file, 0, nullptr, FILE_BEGIN);
    char bytes[1024];
    for (DWORD count = 0; ReadFile(file, bytes, sizeof(bytes), &count, nullptr) && count != 0;) {
        std::cout.write(bytes, count);
    }
    std::cout.flush();
}

} // namespace

unsigned long RunProgram(const CString& commandLine)
{
    const TestFolder folder(L"program");
    const CFileOwner output = CreateInheritable(folder / L"output.txt");
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = output.get();
    startup.hStdError = output.get();
    PROCESS_INFORMATION process = {};
    CString line = commandLine;
    if (!CreateProcessW(nullptr, line.GetBuffer(line.GetLength()), nullptr, nullptr, TRUE, CREATE_NO_WINDOW,
                        nullptr, nullptr, &startup, &process)) {
        return GetLastError();
    }
    DWORD code = ~0ul;
    if (WaitForSingleObject(process.hProcess, 60000) != WAIT_OBJECT_0) {
        ADD_FAILURE() << "still runs after a minute: " << Utf8(commandLine);
        TerminateProcess(process.hProcess, 1);
    }
    GetExitCodeProcess(process.hProcess, &code);
    CloseHandle(process.hProcess);
    CloseHandle(process.hThread);
    CopyToStandardOutput(output.get());
    return code;
}

namespace {

void VisitKeptFolders(const CString& location, const std::function<void(const CString&)>& visit)
{
    VisitFolder(location, [&](const WIN32_FIND_DATAW& found) {
        if (CString(found.cFileName).Find(L" (kept files ") > 0) {
            visit(location + L"\\" + found.cFileName);
        }
    });
}

} // namespace

Tree KeptFiles(const CString& location)
{
    Tree kept;
    VisitKeptFolders(location, [&](const CString& folder) {
        for (const auto& [path, bytes] : ReadTree(folder)) {
            if (path.Right(1) != L"\\") {
                kept[path.Mid(path.Find(L'\\') + 1)] = bytes;
            }
        }
    });
    return kept;
}

void RemoveKeptFiles(const CString& location)
{
    VisitKeptFolders(location, RemoveTree);
}

std::vector<CString> Leftovers(const CString& location, const CString& name)
{
    std::vector<CString> names;
    VisitFolder(location, [&](const WIN32_FIND_DATAW& found) {
        const CString entry = found.cFileName;
        if (!(entry == name) && !(entry == FailedLogName(name, 1)) && entry.Find(L" (kept files ") < 0) {
            names.push_back(entry);
        }
    });
    return names;
}
