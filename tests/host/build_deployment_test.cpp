// A whole build of a small real product, looked at as an administrator would.
#include "tests/host/build_fixture.h"

#include "builder/build_names.h"
#include "builder/content_hash.h"

#include <windows.h>

#include <msi.h>
#include <msiquery.h>
#include <objbase.h>

namespace {

CString HashOf(const std::string& bytes)
{
    CContentHash hash;
    hash.Add(bytes.data(), bytes.size());
    return hash.Finish();
}

CString ReadText(const CString& path)
{
    std::string bytes = ReadBytes(path);
    if (bytes.compare(0, 3, "\xEF\xBB\xBF") == 0) {
        bytes.erase(0, 3);
    }
    return TextFromUtf8(bytes.data(), bytes.size());
}

TEST(BuildDeployment, HoldsTheFilesOfAFreshBuildAndNothingElse)
{
    TestBuild build;
    const BuildResult result = build.Build();
    ASSERT_EQ(result.error.code, 0u) << Utf8(result.error.message);
    EXPECT_EQ(result.strDeploymentFolder, build.Target() + L"\\");
    Tree tree = ReadTree(build.Target());
    std::vector<CString> names;
    for (const auto& entry : tree) {
        names.push_back(entry.first);
    }
    const std::vector<CString> expected = {L"Build.log",
                                           L"Changes.json",
                                           L"Changes.txt",
                                           L"Deployment.xml",
                                           L"Image\\",
                                           L"Image\\Setup.xml",
                                           L"Image\\x64\\",
                                           L"Image\\x64\\Zolt\\",
                                           L"Image\\x64\\Zolt\\Data\\",
                                           L"Image\\x64\\Zolt\\Data\\Deep\\",
                                           L"Image\\x64\\Zolt\\Data\\Deep\\large.bin",
                                           L"Image\\x64\\Zolt\\Data\\kept.txt",
                                           L"Image\\x64\\Zolt\\Data\\zero.bin",
                                           L"Image\\x64\\Zolt\\Empty\\",
                                           L"Image\\x64\\Zolt\\Zolt2027.msi",
                                           L"Image\\x64\\Zolt\\readme.txt",
                                           L"Install.cmd",
                                           L"Manifest.txt",
                                           L"ReadMe.txt",
                                           L"Uninstall.cmd"};
    EXPECT_EQ(names, expected) << NamesOf(tree);
    EXPECT_EQ(Leftovers(build.Location(), L"Office"), std::vector<CString>());
}

TEST(BuildDeployment, CopiesFilesByteForByteWithTheirTimesAndAttributes)
{
    TestBuild build;
    ASSERT_EQ(build.Build().error.code, 0u);
    const CString relative = L"\\x64\\Zolt\\Data\\kept.txt";
    WIN32_FILE_ATTRIBUTE_DATA source = {};
    WIN32_FILE_ATTRIBUTE_DATA copy = {};
    GetFileAttributesExW(build.Media() + relative, GetFileExInfoStandard, &source);
    GetFileAttributesExW(build.Target() + L"\\Image" + relative, GetFileExInfoStandard, &copy);
    EXPECT_EQ(copy.dwFileAttributes & FILE_ATTRIBUTE_READONLY, DWORD{FILE_ATTRIBUTE_READONLY});
    EXPECT_EQ(CompareFileTime(&source.ftLastWriteTime, &copy.ftLastWriteTime), 0);
    EXPECT_EQ(ReadBytes(build.Media() + L"\\x64\\Zolt\\Data\\Deep\\large.bin"),
              ReadBytes(build.Target() + L"\\Image\\x64\\Zolt\\Data\\Deep\\large.bin"));
}

TEST(BuildDeployment, KeepsAnUnchangedDatabaseByteForByte)
{
    TestBuild build;
    ASSERT_EQ(build.Build().error.code, 0u);
    EXPECT_TRUE(ReadBytes(build.Database()) == ReadBytes(build.plan.databases[0].strOriginal));
    EXPECT_EQ(PackageCodeOf(build.Database()), PACKAGE_CODE);
}

TEST(BuildDeployment, GivesAChangedDatabaseAPackageCodeOfItsOwn)
{
    TestBuild build;
    build.Change(CHANGE_DATABASE);
    const BuildResult result = build.Build();
    ASSERT_EQ(result.error.code, 0u) << Utf8(result.error.message);
    const CString code = PackageCodeOf(build.Database());
    EXPECT_FALSE(code == PACKAGE_CODE) << Utf8(code);
    EXPECT_EQ(code.GetLength(), 38) << Utf8(code);
    EXPECT_EQ(PackageCodeOf(build.plan.databases[0].strOriginal), PACKAGE_CODE);
    EXPECT_EQ(
        QueryText(build.Database(), L"SELECT `Value` FROM `Property` WHERE `Property` = 'Manufacturer'"),
        L"Other");
}

TEST(BuildDeployment, NeverUsesAPackageCodeTwice)
{
    TestBuild build;
    build.Change(CHANGE_DATABASE);
    ASSERT_EQ(build.Build().error.code, 0u);
    const CString first = PackageCodeOf(build.Database());
    build.AllowReplacing();
    ASSERT_EQ(build.Build().error.code, 0u);
    EXPECT_FALSE(PackageCodeOf(build.Database()) == first) << Utf8(first);
}

TEST(BuildDeployment, ReportsRowsAddedChangedAndRemovedWithBothValues)
{
    TestBuild build;
    build.Change(CHANGE_DATABASE);
    build.Change(L"INSERT INTO `Property` (`Property`, `Value`) VALUES ('NEWS', 'a \"b\"')");
    build.Change(L"DELETE FROM `Property` WHERE `Property` = 'OLD'");
    build.Change(L"CREATE TABLE `Extra` (`Key` CHAR(72) NOT NULL, `Number` LONG PRIMARY KEY `Key`)");
    build.Change(L"INSERT INTO `Extra` (`Key`, `Number`) VALUES ('One', 70000)");
    ASSERT_EQ(build.Build().error.code, 0u);
    const CString text = ReadText(build.Target() + L"\\Changes.txt");
    EXPECT_HOLDS(text, L"Rows added: 2, changed: 1, removed: 1\r\n");
    EXPECT_HOLDS(text, L"  Property: Manufacturer changed\r\n      Value: \"Velkmora\" -> \"Other\"\r\n");
    EXPECT_HOLDS(text,
                 L"  Property: NEWS added\r\n      Property: \"NEWS\"\r\n      Value: \"a \"\"b\"\"\"\r\n");
    EXPECT_HOLDS(text, L"  Property: OLD removed\r\n      Property: \"OLD\"\r\n      Value: \"goes\"\r\n");
    EXPECT_HOLDS(text, L"  Extra: One added\r\n      Key: \"One\"\r\n      Number: \"70000\"\r\n");
    const CString json = ReadText(build.Target() + L"\\Changes.json");
    EXPECT_HOLDS(
        json, L"{\"table\": \"Property\", \"change\": \"changed\", \"key\": [\"Manufacturer\"], \"columns\": "
              L"[{\"name\": \"Value\", \"old\": \"Velkmora\", \"new\": \"Other\"}]}");
    EXPECT_HOLDS(json, L"\"new\": \"a \\\"b\\\"\"");
}

TEST(BuildDeployment, ReportsAStreamBySizeAndHash)
{
    TestBuild build;
    build.Change(L"DELETE FROM `Binary` WHERE `Name` = 'Icon'");
    ASSERT_EQ(build.Build().error.code, 0u);
    const CString text = ReadText(build.Target() + L"\\Changes.txt");
    EXPECT_HOLDS(text, L"  Binary: Icon removed\r\n");
    EXPECT_HOLDS(text, L"Data: \"5000 bytes, SHA-256 " + HashOf(std::string(5000, 'b')) + L"\"");
}

TEST(BuildDeployment, ReportsThatNothingWasChanged)
{
    TestBuild build;
    ASSERT_EQ(build.Build().error.code, 0u);
    EXPECT_HOLDS(ReadText(build.Target() + L"\\Changes.txt"),
                 L"Nothing: the file is the maker's, byte for byte.");
}

TEST(BuildDeployment, KeepsStreamsOfAChangedDatabase)
{
    TestBuild build;
    build.Change(CHANGE_DATABASE);
    ASSERT_EQ(build.Build().error.code, 0u);
    EXPECT_EQ(QueryText(build.Database(), L"SELECT `Name` FROM `Binary`"), L"Icon");
    const CString text = ReadText(build.Target() + L"\\Changes.txt");
    EXPECT_EQ(text.Find(L"Binary"), -1) << Utf8(text);
}

// The service loses tables that were not read before a commit once there are this many strings.
TEST(BuildDeployment, KeepsEveryRowOfALargeDatabase)
{
    TestBuild build;
    for (int number = 0; number < 66000; number += 1) {
        if (number % 2 == 0) {
            build.Change(L"INSERT INTO `Property` (`Property`, `Value`) VALUES ('P" + NumberText(number) +
                         L"', 'v" + NumberText(number + 1) + L"')");
        }
    }
    const BuildResult result = build.Build();
    ASSERT_EQ(result.error.code, 0u) << Utf8(result.error.message);
    EXPECT_EQ(QueryText(build.Database(), L"SELECT `Value` FROM `Property` WHERE `Property` = 'P65998'"),
              L"v65999");
    EXPECT_EQ(QueryText(build.Database(), L"SELECT `FileName` FROM `File`"), L"readme.txt");
}

// A stream of that name is what makes a package signed.
void Sign(const CString& path)
{
    IStorage* storage = nullptr;
    IStream* stream = nullptr;
    ASSERT_EQ(StgOpenStorage(path, nullptr, STGM_TRANSACTED | STGM_READWRITE | STGM_SHARE_EXCLUSIVE, nullptr,
                             0, &storage),
              S_OK);
    ASSERT_EQ(storage->CreateStream(L"\x05"
                                    L"DigitalSignature",
                                    STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE, 0, 0, &stream),
              S_OK);
    stream->Write("signed", 6, nullptr);
    stream->Release();
    storage->Commit(STGC_DEFAULT);
    storage->Release();
}

bool IsSigned(const CString& path)
{
    IStorage* storage = nullptr;
    IStream* stream = nullptr;
    if (FAILED(StgOpenStorage(path, nullptr, STGM_READ | STGM_SHARE_DENY_WRITE, nullptr, 0, &storage))) {
        ADD_FAILURE() << "can't open " << Utf8(path);
        return false;
    }
    const bool found = SUCCEEDED(storage->OpenStream(L"\x05"
                                                     L"DigitalSignature",
                                                     nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, 0, &stream));
    if (found) {
        stream->Release();
    }
    storage->Release();
    return found;
}

TEST(BuildDeployment, ASignatureThatNoLongerFitsIsRemovedAndReported)
{
    ProductOptions options;
    options.prepare = Sign;
    TestBuild build(options);
    ASSERT_TRUE(IsSigned(build.plan.databases[0].strOriginal));
    build.Change(CHANGE_DATABASE);
    const BuildResult result = build.Build();
    ASSERT_EQ(result.error.code, 0u) << Utf8(result.error.message);
    EXPECT_FALSE(IsSigned(build.Database()));
    ASSERT_EQ(result.warnings.size(), 1u);
    EXPECT_HOLDS(result.warnings[0], L"digital signature is lost");
    EXPECT_HOLDS(ReadText(build.Target() + L"\\Build.log"), L"  Warning: " + result.warnings[0] + L"\r\n");
    EXPECT_HOLDS(ReadText(build.Target() + L"\\Changes.json"), L"\"signatureLost\": true");
}

// What is wrong besides may be why.
TEST(BuildDeployment, ARefusedReviewHasTheWarningsUpToThenAndNothingElse)
{
    ProductOptions options;
    options.prepare = Sign;
    TestBuild build(options);
    build.Change(CHANGE_DATABASE);
    build.plan.files.push_back({build.Media() + L"\\x64\\Zolt\\readme.txt", L"Install.cmd"});
    BuildReview review;
    EXPECT_EQ(ReviewBuild(build.plan, review).code, static_cast<unsigned>(ERROR_BAD_PATHNAME));
    ASSERT_EQ(review.warnings.size(), 1u);
    EXPECT_HOLDS(review.warnings[0], L"digital signature is lost");
    EXPECT_TRUE(review.databases.empty());
    EXPECT_NE(build.Build().error.code, 0u);
}

TEST(BuildDeployment, AnUnchangedDatabaseKeepsItsSignature)
{
    ProductOptions options;
    options.prepare = Sign;
    TestBuild build(options);
    const BuildResult result = build.Build();
    ASSERT_EQ(result.error.code, 0u) << Utf8(result.error.message);
    EXPECT_TRUE(IsSigned(build.Database()));
    EXPECT_EQ(result.warnings.size(), 0u);
}

// The rows that the build expects, in a file that it doesn't commit: what the installer would leave that loses, or keeps,
// something besides the rows.
CString ChangedElsewhere(TestBuild& build)
{
    build.Change(CHANGE_DATABASE);
    const CString path = build.Folder() / L"elsewhere.msi";
    EXPECT_TRUE(CopyFileW(build.plan.databases[0].strOriginal, path, TRUE));
    MSIHANDLE database = 0;
    EXPECT_EQ(MsiOpenDatabaseW(path, MSIDBOPEN_TRANSACT, &database), 0u);
    EXPECT_EQ(RunSql(database, CHANGE_DATABASE), 0u);
    EXPECT_EQ(MsiDatabaseCommit(database), 0u);
    MsiCloseHandle(database);
    return path;
}

TEST(BuildDeployment, ADatabaseThatWasWrittenWithoutItsNewPackageCodeIsNotPublished)
{
    TestBuild build;
    build.plan.databases[0].strWorkingCopy = ChangedElsewhere(build);
    const BuildResult result = build.Build();
    EXPECT_EQ(result.error.code, 1620u);
    EXPECT_HOLDS(result.error.message, L"The new package code could not be read back");
    EXPECT_FALSE(Exists(build.Target()));
}

bool CanBeOpened(const CString& path)
{
    IStorage* storage = nullptr;
    const bool opened =
        SUCCEEDED(StgOpenStorage(path, nullptr, STGM_READ | STGM_SHARE_DENY_WRITE, nullptr, 0, &storage));
    if (opened) {
        storage->Release();
    }
    return opened;
}

// The installer here commits no signed database, and one that does keeps the signature.
TEST(BuildDeployment, ASignatureThatACommitKeptIsGoneBeforeTheDatabaseIsReadBack)
{
    TestBuild build;
    const CString path = ChangedElsewhere(build);
    Sign(path);
    ASSERT_TRUE(IsSigned(path));
    build.plan.databases[0].strWorkingCopy = path;
    const CString built = path + L".built";
    bool looked = false;
    build.onStep = [](const CString&) { LetTheNextMomentBeReported(); };
    build.onProgress = [&](std::uint64_t, std::uint64_t) {
        if (!looked && Exists(built)) {
            looked = CanBeOpened(built); // it isn't while it is written
            EXPECT_FALSE(looked && IsSigned(built));
            LetTheNextMomentBeReported();
        }
        return true;
    };
    EXPECT_HOLDS(build.Build().error.message, L"The new package code could not be read back");
    EXPECT_TRUE(looked);
}

TEST(BuildDeployment, ListsEveryFileButItselfInTheManifestWithItsHash)
{
    TestBuild build;
    build.Change(CHANGE_DATABASE);
    ASSERT_EQ(build.Build().error.code, 0u);
    const CString manifest = ReadText(build.Target() + L"\\Manifest.txt");
    int files = 0;
    for (const auto& [name, bytes] : ReadTree(build.Target())) {
        if (name[name.GetLength() - 1] != L'\\' && !(name == L"Manifest.txt")) {
            EXPECT_HOLDS(manifest, L"\n" + HashOf(bytes) + L" " +
                                       NumberText(static_cast<long long>(bytes.size())) + L" " + name +
                                       L"\r\n");
            ++files;
        }
    }
    CString lines = manifest;
    EXPECT_EQ(lines.Replace(L"\n", L""), files + 1) << Utf8(manifest);
}

TEST(BuildDeployment, EndsTheLogWithCodeCauseAndRemedy)
{
    TestBuild build;
    ASSERT_EQ(build.Build().error.code, 0u);
    const CString log = ReadText(build.Target() + L"\\Build.log");
    EXPECT_HOLDS(log, L"Copying Zolt 2027");
    const CString end =
        L"Code:   0\r\nCause:  The deployment is complete.\r\nRemedy: Nothing needs to be done.\r\n";
    EXPECT_EQ(log.Right(end.GetLength()), end) << Utf8(log);
}

TEST(BuildDeployment, NamesNoPathOfTheBuildInTheDatabase)
{
    TestBuild build;
    build.Change(CHANGE_DATABASE);
    ASSERT_EQ(build.Build().error.code, 0u);
    const std::string bytes = ReadBytes(build.Database());
    for (const CString& path : {build.Folder().Path(), build.Location()}) {
        EXPECT_EQ(bytes.find(Utf8(path)), std::string::npos);
        EXPECT_EQ(bytes.find(std::string(reinterpret_cast<const char*>(path.GetString()),
                                         static_cast<std::size_t>(path.GetLength()) * 2)),
                  std::string::npos);
    }
}

TEST(BuildDeployment, ReportsProgressUpToAllBytesAndNotTooOften)
{
    TestBuild build;
    std::uint64_t last = 0;
    std::uint64_t total = 0;
    bool grows = true;
    const unsigned long long start = GetTickCount64();
    build.onProgress = [&](std::uint64_t done, std::uint64_t all) {
        grows = grows && done >= last;
        last = done;
        total = all;
        return true;
    };
    ASSERT_EQ(build.Build().error.code, 0u);
    EXPECT_TRUE(grows);
    EXPECT_EQ(last, total);
    EXPECT_GT(total, std::uint64_t{3 << 20});
    EXPECT_LE(build.progressCalls, 3 + static_cast<int>((GetTickCount64() - start) / 50));
    EXPECT_EQ(build.steps.front(), L"Checking the location and the media");
}

TEST(BuildDeployment, ReportsAllBytesAsDoneWhenASourceHasShrunkMeanwhile)
{
    TestBuild build;
    bool shrunk = false;
    std::uint64_t last = 0;
    std::uint64_t total = 0;
    build.onStep = [&](const CString& sentence) {
        if (sentence.Find(L"Copying") == 0) {
            WriteBytes(build.Media() + L"\\x64\\Zolt\\Data\\Deep\\large.bin", "short");
            shrunk = true;
        }
    };
    build.onProgress = [&](std::uint64_t done, std::uint64_t all) {
        last = done;
        total = all;
        return true;
    };
    ASSERT_EQ(build.Build().error.code, 0u);
    ASSERT_TRUE(shrunk);
    EXPECT_EQ(last, total);
    EXPECT_GT(total, std::uint64_t{3 << 20});
}

TEST(BuildDeployment, ReplacesAnOldDeploymentWhole)
{
    TestBuild build;
    ASSERT_EQ(build.Build().error.code, 0u);
    WriteBytes(build.Target() + L"\\Image\\old.txt", "old");
    build.AllowReplacing();
    const BuildResult result = build.Build();
    ASSERT_EQ(result.error.code, 0u) << Utf8(result.error.message);
    EXPECT_FALSE(Exists(build.Target() + L"\\Image\\old.txt"));
    EXPECT_EQ(KeptFiles(build.Location()), Tree({{L"Image\\old.txt", "old"}}));
    EXPECT_EQ(Leftovers(build.Location(), L"Office"), std::vector<CString>());
}

TEST(BuildDeployment, ReplacesTheDeploymentItIsMadeFrom)
{
    TestBuild build;
    ASSERT_EQ(build.Build().error.code, 0u);
    build.AllowReplacing();
    build.plan.folders[0].strSource = build.Target() + L"\\Image\\x64\\Zolt";
    build.plan.databases[0].strOriginal = build.Database();
    build.Change(CHANGE_DATABASE);
    const BuildResult result = build.Build();
    ASSERT_EQ(result.error.code, 0u) << Utf8(result.error.message);
    EXPECT_EQ(ReadBytes(build.Target() + L"\\Image\\x64\\Zolt\\readme.txt"), "hello\n");
    EXPECT_EQ(
        QueryText(build.Database(), L"SELECT `Value` FROM `Property` WHERE `Property` = 'Manufacturer'"),
        L"Other");
}

TEST(BuildDeployment, MakesALocationThatIsMissing)
{
    TestBuild build;
    build.plan.strLocation = build.Location() + L"\\new\\deep";
    ASSERT_EQ(build.Build().error.code, 0u);
    EXPECT_TRUE(Exists(build.plan.strLocation + L"\\Office\\Manifest.txt"));
}

TEST(BuildDeployment, BuildsUnderNamesWithBlanksAndOtherLetters)
{
    TestBuild build;
    build.plan.strLocation = build.Location() + L"\\B\x00FCro \x65E5\x672C & 100%";
    build.plan.strName = L"\x0417\x043E\x043B\x0442 2027 ^!";
    const BuildResult result = build.Build();
    ASSERT_EQ(result.error.code, 0u) << Utf8(result.error.message);
    EXPECT_EQ(ReadBytes(result.strDeploymentFolder + L"Image\\x64\\Zolt\\readme.txt"), "hello\n");
}

// A product code once held a command, which the scripts ran.
TEST(BuildDeployment, APlanWhoseProductCodeIsACommandIsRefusedBeforeAnythingIsWritten)
{
    TestBuild build;
    build.plan.databases[0].strProductCode = CString(PRODUCT_CODE) + L" & md mark-code & rem ";
    const BuildResult result = build.Build();
    EXPECT_EQ(result.error.code, 1620u);
    EXPECT_HOLDS(result.error.message, L" & md mark-code & rem \" of \"Zolt 2027\" isn't a GUID");
    EXPECT_FALSE(Exists(build.Target()));
    std::vector<CString> warnings;
    EXPECT_EQ(CheckBuild(build.plan, warnings).code, 1620u);
}

TEST(BuildDeployment, AVersionBeyondWhatTheInstallerComparesIsAWarning)
{
    TestBuild build;
    build.plan.databases[0].strProductVersion = L"2027.0.0";
    const BuildResult result = build.Build();
    EXPECT_EQ(result.error.code, 0u) << Utf8(result.error.message);
    ASSERT_EQ(result.warnings.size(), 1u);
    EXPECT_HOLDS(result.warnings[0], L"2027.0.0");
}

TEST(BuildDeployment, ANameOfSeveralLinesAddsNoneToTheLog)
{
    TestBuild build;
    build.plan.strMediaName = L"Zolt\r\nCode:   0";
    ASSERT_EQ(build.Build().error.code, 0u);
    EXPECT_EQ(ReadBytes(build.Target() + L"\\Build.log").find("\nCode:   0\r\nCause:"),
              ReadBytes(build.Target() + L"\\Build.log").find("\nCode:   0"))
        << ReadBytes(build.Target() + L"\\Build.log");
}

TEST(BuildDeployment, BuildsPathsBeyond260CharactersAndWarnsOfThem)
{
    TestBuild build;
    const CString deep = CString(L'd', 120) + L"\\" + CString(L'e', 120);
    MakeFolders(build.Media() + L"\\x64\\Zolt\\" + deep);
    WriteBytes(build.Media() + L"\\x64\\Zolt\\" + deep + L"\\far.txt", "far");
    const BuildResult result = build.Build();
    ASSERT_EQ(result.error.code, 0u) << Utf8(result.error.message);
    EXPECT_EQ(ReadBytes(build.Target() + L"\\Image\\x64\\Zolt\\" + deep + L"\\far.txt"), "far");
    ASSERT_EQ(result.warnings.size(), 1u);
    EXPECT_HOLDS(result.warnings[0], L"installing may fail beyond 259");
    build.AllowReplacing();
    EXPECT_EQ(build.Build().error.code, 0u);
}

} // namespace
