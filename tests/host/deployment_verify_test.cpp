// Whether a deployment is still what was built: each damage by its name, and nothing else.
#include "base/path_text.h"
#include "builder/build_failure.h"
#include "builder/deployment_verify.h"
#include "host/deployment_check.h"
#include "tests/host/damaged_copy.h"
#include "tests/host/through_host.h"
#include "tests/support/patch_fixtures.h"

#include <functional>

namespace {

constexpr const wchar_t* DATABASE = L"Image\\x64\\Zolt\\Zolt.msi";
constexpr const wchar_t* DATA = L"Image\\x64\\Zolt\\Data\\";

std::string ManifestLine(char digit, const char* rest)
{
    std::string line(64, digit);
    return line.append(" ").append(rest).append("\r\n");
}

VerifyResult Verify(const CString& folder)
{
    CSilentProgress progress;
    VerifyResult result;
    VerifyDeploymentFolder(folder, progress, result);
    return result;
}

std::vector<CString> LinesOf(const VerifyResult& result)
{
    std::vector<CString> lines;
    for (const VerifyFinding& finding : result.findings) {
        lines.push_back(FindingLine(finding));
    }
    return lines;
}

class VerifyTest : public ThroughHostTest
{
protected:
    void SetUp() override
    {
        MakeMedia(scratch + L"media\\");
        WriteText(scratch + L"media\\x64\\Zolt\\Data\\one.txt", L"one");
        WriteText(scratch + L"media\\x64\\Zolt\\Data\\two.txt", L"two");
        WriteText(scratch + L"media\\x64\\Zolt\\Data\\\u4E2D.txt", L"name");
        ThroughHostTest::SetUp();
        CSetupManager& manager = Open(scratch + L"media");
        Begin(manager, Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), L"Office");
        manager.m_bNetworkLog = true;
        manager.m_strNetworkLogFolder = L"\\\\server\\logs 100%\\";
        host->SetAnswersText(L"rollout-answers 1\r\n");
        Build();
        host.reset();
        built = ReadTree(location + L"Office");
    }

    // The copy of a name, elsewhere than the deployment was built.
    CString CopyFolder() { return scratch + L"moved\\Renamed"; }

    Tree built;
};

struct Damage
{
    const char* name;
    std::function<void(const DamagedCopy&)> act;
    std::vector<CString> lines; // beginnings; all of them, in their order
};

CString Line(const wchar_t* kind, const CString& path, const wchar_t* detail = L"")
{
    return CString(kind) + L": " + path + detail;
}

void ExpectLines(const VerifyResult& result, const std::vector<CString>& expected, const char* name)
{
    const std::vector<CString> lines = LinesOf(result);
    ASSERT_EQ(lines.size(), expected.size()) << name << ":\n" << Utf8(ComposeVerifyText(result));
    for (std::size_t index = 0; index < lines.size(); ++index) {
        EXPECT_EQ(lines[index].Left(expected[index].GetLength()), expected[index]) << name;
    }
}

const std::vector<Damage>& Damages()
{
    static const CString one = CString(DATA) + L"one.txt";
    static const CString two = CString(DATA) + L"two.txt";
    static const CString china = CString(DATA) + L"\u4E2D.txt";
    static const std::vector<Damage> damages = {
        {"a file is gone", [](const DamagedCopy& copy) { copy.Delete(one); }, {Line(L"Missing", one)}},
        {"a file with other letters is gone",
         [](const DamagedCopy& copy) { copy.Delete(china); },
         {Line(L"Missing", china)}},
        {"a file lost its last byte",
         [](const DamagedCopy& copy) { copy.Write(one, "\xEF\xBB\xBFon"); },
         {Line(L"Changed", one)}},
        {"a byte changed",
         [](const DamagedCopy& copy) { copy.FlipLastByte(one); },
         {Line(L"Changed", one, L" (other content of the same size)")}},
        {"a byte was appended",
         [](const DamagedCopy& copy) { copy.Append(one, "x"); },
         {Line(L"Changed", one)}},
        {"a file was emptied",
         [](const DamagedCopy& copy) { copy.Write(one, ""); },
         {Line(L"Changed", one, L" (0 bytes, built with ")}},
        {"a file was renamed",
         [](const DamagedCopy& copy) { copy.Rename(one, CString(DATA) + L"1.txt"); },
         {Line(L"Missing", one), Line(L"Added", CString(DATA) + L"1.txt")}},
        {"a file was moved",
         [](const DamagedCopy& copy) { copy.Rename(one, L"one.txt"); },
         {Line(L"Missing", one), Line(L"Added", L"one.txt")}},
        {"two files changed places",
         [](const DamagedCopy& copy) {
             copy.Rename(one, L"x");
             copy.Rename(two, one);
             copy.Rename(L"x", two);
         },
         {Line(L"Changed", one), Line(L"Changed", two)}},
        {"a folder took a file's name",
         [](const DamagedCopy& copy) {
             copy.Delete(one);
             copy.Write(one + L"\\inner.txt", "x");
         },
         {Line(L"Missing", one), Line(L"Added", one + L"\\inner.txt")}},
        {"a file came to the root",
         [](const DamagedCopy& copy) { copy.Write(L"setup.log", "x"); },
         {Line(L"Added", L"setup.log")}},
        {"a file came to the image",
         [](const DamagedCopy& copy) { copy.Write(L"Image\\x64\\Zolt\\evil.dll", "x"); },
         {Line(L"Added", L"Image\\x64\\Zolt\\evil.dll")}},
        {"a folder came with files",
         [](const DamagedCopy& copy) { copy.Write(L"New\\Deep\\a.txt", "x"); },
         {Line(L"Added", L"New\\Deep\\a.txt")}},
        {"a folder is empty",
         [](const DamagedCopy& copy) {
             copy.Delete(one);
             copy.Delete(two);
             copy.Delete(china);
         },
         {Line(L"Missing", one), Line(L"Missing", two), Line(L"Missing", china)}},
        {"a folder is gone",
         [](const DamagedCopy& copy) { RemoveFolder(copy / DATA); },
         {Line(L"Missing", one), Line(L"Missing", two), Line(L"Missing", china)}},
        {"the database is gone",
         [](const DamagedCopy& copy) { copy.Delete(DATABASE); },
         {Line(L"Missing", DATABASE)}},
        {"the database is damaged",
         [](const DamagedCopy& copy) { copy.Write(DATABASE, "no database"); },
         {Line(L"Changed", DATABASE, L" (11 bytes, built with ")}},
        {"another package stands in the database's place",
         [](const DamagedCopy& copy) {
             PackageForm other;
             other.packageCode = L"{99999999-0000-4000-8000-000000000001}";
             copy.Delete(DATABASE);
             MakePackage(copy / DATABASE, other);
             copy.ListAnew(DATABASE);
         },
         {Line(L"Changed", DATABASE,
               L" (package code {99999999-0000-4000-8000-000000000001}, built with {")}},
        {"another product stands in the database's place",
         [](const DamagedCopy& copy) {
             PackageForm other;
             other.properties = {{L"ProductCode", NARROW_PRODUCT_CODE}};
             copy.Delete(DATABASE);
             MakePackage(copy / DATABASE, other);
             copy.ListAnew(DATABASE);
         },
         {Line(
             L"Changed", DATABASE,
             L" (product code {11111111-2222-3333-4444-555555555555}, which is none of the deployment's)")}},
        {"the deployment file is gone",
         [](const DamagedCopy& copy) { copy.Delete(L"Deployment.xml"); },
         {Line(L"Missing", L"Deployment.xml")}},
        {"the deployment file says something else",
         [](const DamagedCopy& copy) { copy.Replace(L"Deployment.xml", "server", "sErver"); },
         {Line(L"Changed", L"Deployment.xml")}},
        {"the deployment file is cut off",
         [](const DamagedCopy& copy) {
             copy.Write(L"Deployment.xml", copy.Read(L"Deployment.xml").substr(0, 100));
         },
         {Line(L"Changed", L"Deployment.xml")}},
        {"a command is gone",
         [](const DamagedCopy& copy) { copy.Delete(L"Install.cmd"); },
         {Line(L"Missing", L"Install.cmd")}},
        {"a command has a line more",
         [](const DamagedCopy& copy) { copy.Append(L"Install.cmd", "del /q C:\\*\r\n"); },
         {Line(L"Changed", L"Install.cmd")}},
        {"a command's display option has more than itself",
         [](const DamagedCopy& copy) {
             copy.Replace(L"Install.cmd", "DISPLAY_OPTION=/qn", "DISPLAY_OPTION=/qn TRANSFORMS=x.mst");
         },
         {Line(L"Changed", L"Install.cmd")}},
        {"a command's log folder ends its quotes",
         [](const DamagedCopy& copy) {
             copy.Replace(L"Install.cmd", "set \"LOG_FOLDER=", "set \"LOG_FOLDER=x\" & calc & rem ");
         },
         {Line(L"Changed", L"Install.cmd")}},
        {"a command has a setting and another line changed",
         [](const DamagedCopy& copy) {
             copy.Replace(L"Uninstall.cmd", "DISPLAY_OPTION=/qn", "DISPLAY_OPTION=/qb-!");
             copy.Replace(L"Uninstall.cmd", "/norestart", "/forcerestart");
         },
         {Line(L"Changed", L"Uninstall.cmd")}},
        {"a command was saved with a byte order mark",
         [](const DamagedCopy& copy) {
             copy.Write(L"Install.cmd", "\xEF\xBB\xBF" + copy.Read(L"Install.cmd"));
         },
         {Line(L"Changed", L"Install.cmd")}},
        {"a command's setting stands twice",
         [](const DamagedCopy& copy) {
             copy.Replace(L"Install.cmd", "set \"RESULT=0\"",
                          "set \"DISPLAY_OPTION=/qb\"\r\nset \"RESULT=0\"");
         },
         {Line(L"Changed", L"Install.cmd")}},
        {"the image's description says something else",
         [](const DamagedCopy& copy) { copy.Replace(L"Image\\Setup.xml", "27.0.0", "27.0.1"); },
         {Line(L"Changed", L"Image\\Setup.xml")}},
        {"the notes were edited",
         [](const DamagedCopy& copy) { copy.Append(L"ReadMe.txt", "Ask Ann.\r\n"); },
         {Line(L"Changed", L"ReadMe.txt")}},
        {"the answers were edited",
         [](const DamagedCopy& copy) { copy.Append(L"Answers.txt", "# x\r\n"); },
         {Line(L"Changed", L"Answers.txt")}},
        {"the report of changes is gone",
         [](const DamagedCopy& copy) { copy.Delete(L"Changes.json"); },
         {Line(L"Missing", L"Changes.json")}},
        {"the log of the build is gone",
         [](const DamagedCopy& copy) { copy.Delete(L"Build.log"); },
         {Line(L"Missing", L"Build.log")}},
        {"the manifest names a file less",
         [](const DamagedCopy& copy) {
             const std::string manifest = copy.Read(MANIFEST_FILE);
             const std::size_t path = manifest.find(Utf8(one));
             const std::size_t begin = manifest.rfind('\n', path) + 1;
             const std::size_t end = manifest.find('\n', path) + 1;
             copy.Write(MANIFEST_FILE, manifest.substr(0, begin) + manifest.substr(end));
         },
         {Line(L"Added", one)}},
        {"the manifest names a file outside",
         [](const DamagedCopy& copy) { copy.Append(MANIFEST_FILE, ManifestLine('a', "5 ..\\..\\a.txt")); },
         {Line(L"Missing", L"..\\..\\a.txt")}},
        {"the manifest has another hash",
         [](const DamagedCopy& copy) {
             const std::string manifest = copy.Read(MANIFEST_FILE);
             const std::size_t hash = manifest.rfind('\n', manifest.find(Utf8(one))) + 1;
             copy.Write(MANIFEST_FILE, std::string(manifest).replace(hash, 8, "00000000"));
         },
         {Line(L"Changed", one)}},
    };
    return damages;
}

} // namespace

TEST_F(VerifyTest, EachDamageIsNamedAndNothingElse)
{
    ASSERT_GE(Damages().size(), 30u);
    for (const Damage& damage : Damages()) {
        const DamagedCopy copy(built, CopyFolder());
        damage.act(copy);
        const VerifyResult result = Verify(copy.Folder());
        EXPECT_EQ(result.verdict, VerifyVerdict::Differs) << damage.name;
        EXPECT_TRUE(result.unknown.empty()) << damage.name << Utf8(ComposeVerifyText(result));
        ExpectLines(result, damage.lines, damage.name);
    }
}

TEST_F(VerifyTest, ADeploymentIsWhatWasBuiltUnderAnyNameAndPlace)
{
    for (const CString& folder : {location + L"Office", CopyFolder()}) {
        const DamagedCopy copy(built, folder);
        const VerifyResult result = Verify(folder);
        EXPECT_EQ(result.verdict, VerifyVerdict::AsBuilt) << Utf8(ComposeVerifyText(result));
        EXPECT_EQ(LinesOf(result).size(), 0u);
        EXPECT_EQ(result.strProduct, CString(L"Zolt 2027 27.0.0"));
        const auto files = std::count_if(built.begin(), built.end(),
                                         [](const auto& file) { return file.first.Right(1) != L"\\"; });
        EXPECT_EQ(result.files + 1, static_cast<std::uint64_t>(files)); // all but the manifest
    }
}

TEST_F(VerifyTest, VerifyingWritesNothingIntoTheFolder)
{
    const DamagedCopy copy(built, CopyFolder());
    for (const auto& [path, bytes] : built) {
        SetFileAttributesW(copy / path, FILE_ATTRIBUTE_READONLY);
    }
    const VerifyResult result = Verify(copy.Folder());
    EXPECT_EQ(result.verdict, VerifyVerdict::AsBuilt) << Utf8(ComposeVerifyText(result));
    EXPECT_TRUE(ReadTree(copy.Folder()) == built);
}

// ---- settings of the commands

TEST_F(VerifyTest, SettingsOfTheCommandsMayBeChangedAndAreNamed)
{
    const DamagedCopy copy(built, CopyFolder());
    for (const wchar_t* command : {L"Install.cmd", L"Uninstall.cmd"}) {
        copy.Replace(command, "set \"LOG_FOLDER=\\\\server\\logs 100%%\\\"", "set \"LOG_FOLDER=D:\\Logs\"");
    }
    copy.Replace(L"Install.cmd", "set \"KEEP_LOCAL_LOG=0\"", "set \"KEEP_LOCAL_LOG=1\"");
    copy.Replace(L"Install.cmd", "set \"DISPLAY_OPTION=/qn\"", "set \"DISPLAY_OPTION=/qb-!\"");
    const VerifyResult result = Verify(copy.Folder());
    EXPECT_EQ(result.verdict, VerifyVerdict::AsBuilt);
    ExpectLines(
        result,
        {L"Setting: Install.cmd (log folder is \"D:\\Logs\", was built as \"\\\\server\\logs 100%\\\")",
         L"Setting: Install.cmd (copy of the log is \"1\", was built as \"0\")",
         L"Setting: Install.cmd (display option is \"/qb-!\", was built as \"/qn\")",
         L"Setting: Uninstall.cmd (log folder is \"D:\\Logs\", was built as \"\\\\server\\logs 100%\\\")"},
        "settings");
    EXPECT_HOLDS(VerdictSentence(result), L"as is allowed: 4.");
}

// What the settings were can't be proved then.
TEST_F(VerifyTest, ASettingBesideAChangedDeploymentFileIsAChangedCommand)
{
    const DamagedCopy copy(built, CopyFolder());
    copy.Replace(L"Install.cmd", "set \"DISPLAY_OPTION=/qn\"", "set \"DISPLAY_OPTION=/qb-!\"");
    copy.Append(L"Deployment.xml", "<!-- -->");
    ExpectLines(Verify(copy.Folder()), {L"Changed: Deployment.xml (", L"Changed: Install.cmd ("}, "both");
}

// ---- what can't be determined

struct Doubt
{
    const char* name;
    std::function<void(const DamagedCopy&)> act;
    CString sentence;
};

TEST_F(VerifyTest, WhatCannotBeDeterminedIsSaidAndNeverPassesForGood)
{
    const std::vector<Doubt> doubts = {
        {"no manifest", [](const DamagedCopy& copy) { copy.Delete(MANIFEST_FILE); },
         L"Manifest.txt is missing, so files can't be compared"},
        {"a manifest that is cut off",
         [](const DamagedCopy& copy) {
             const std::string bytes = copy.Read(MANIFEST_FILE);
             copy.Write(MANIFEST_FILE, bytes.substr(0, bytes.size() - 1));
         },
         L"Manifest.txt is damaged"},
        {"a manifest with an empty line", [](const DamagedCopy& copy) { copy.Append(MANIFEST_FILE, "\r\n"); },
         L"Manifest.txt is damaged"},
        {"a manifest that names a file twice",
         [](const DamagedCopy& copy) { copy.Append(MANIFEST_FILE, ManifestLine('0', "0 INSTALL.CMD")); },
         L"Manifest.txt is damaged"},
        {"no manifest and a damaged deployment file",
         [](const DamagedCopy& copy) {
             copy.Delete(MANIFEST_FILE);
             copy.Write(L"Deployment.xml", "<");
         },
         L"Deployment.xml"},
        {"no manifest and a damaged report of changes",
         [](const DamagedCopy& copy) {
             copy.Delete(MANIFEST_FILE);
             copy.Write(L"Changes.json", "    {\"file\": \"");
         },
         L"Changes.json is damaged"},
    };
    for (const Doubt& doubt : doubts) {
        const DamagedCopy copy(built, CopyFolder());
        doubt.act(copy);
        const VerifyResult result = Verify(copy.Folder());
        EXPECT_EQ(result.verdict, VerifyVerdict::Undetermined) << doubt.name;
        EXPECT_EQ(LinesOf(result).size(), 0u) << doubt.name << Utf8(ComposeVerifyText(result));
        EXPECT_HOLDS(ComposeVerifyText(result), doubt.sentence);
        EXPECT_HOLDS(VerdictSentence(result), L"can't be determined");
    }
}

TEST_F(VerifyTest, WithoutAManifestTheDatabasesAreKnownByTheirCodes)
{
    const DamagedCopy copy(built, CopyFolder());
    copy.Delete(MANIFEST_FILE);
    PackageForm other;
    other.packageCode = L"{99999999-0000-4000-8000-000000000001}";
    copy.Delete(DATABASE);
    MakePackage(copy / DATABASE, other);
    VerifyResult result = Verify(copy.Folder());
    EXPECT_EQ(result.verdict, VerifyVerdict::Differs);
    ExpectLines(result, {Line(L"Changed", DATABASE, L" (package code {99999999")}, "another package");
    copy.Delete(DATABASE);
    result = Verify(copy.Folder());
    ExpectLines(result, {Line(L"Missing", DATABASE)}, "no package");
}

// A report that names a package outside would have it opened.
TEST_F(VerifyTest, AReportOfChangesThatNamesAPlaceOutsideIsNotFollowed)
{
    const DamagedCopy copy(built, CopyFolder());
    copy.Delete(MANIFEST_FILE);
    copy.Replace(L"Changes.json", "Image\\\\x64\\\\Zolt\\\\Zolt.msi", "..\\\\..\\\\media\\\\none.msi");
    const VerifyResult result = Verify(copy.Folder());
    EXPECT_EQ(LinesOf(result).size(), 0u);
    EXPECT_EQ(result.unknown.size(), 1u) << Utf8(ComposeVerifyText(result)); // the manifest alone
}

TEST_F(VerifyTest, AFileThatSomebodyHoldsIsNamedAndUndetermined)
{
    const DamagedCopy copy(built, CopyFolder());
    const CFileOwner held(CreateFileW(copy / (CString(DATA) + L"one.txt"), GENERIC_READ | GENERIC_WRITE, 0,
                                      nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(held);
    const VerifyResult result = Verify(copy.Folder());
    EXPECT_EQ(result.verdict, VerifyVerdict::Undetermined);
    ExpectLines(result, {Line(L"Can't be read", CString(DATA) + L"one.txt", L" (Opening")}, "held");
    EXPECT_HOLDS(VerdictSentence(result), L"1 that can't be read");
}

TEST_F(VerifyTest, ADamageOutweighsWhatCannotBeRead)
{
    const DamagedCopy copy(built, CopyFolder());
    const CFileOwner held(CreateFileW(copy / (CString(DATA) + L"one.txt"), GENERIC_READ | GENERIC_WRITE, 0,
                                      nullptr, OPEN_EXISTING, 0, nullptr));
    copy.Delete(CString(DATA) + L"two.txt");
    EXPECT_EQ(Verify(copy.Folder()).verdict, VerifyVerdict::Differs);
}

TEST_F(VerifyTest, AFolderThatIsNoDeploymentIsSaid)
{
    const DamagedCopy copy(built, CopyFolder());
    const std::vector<std::pair<CString, CString>> places = {
        {scratch + L"nowhere", L"doesn't exist"},
        {copy / L"ReadMe.txt", L"is a file"},
        {FolderAbove(scratch), L"contains no deployment"},
        {copy / L"Image", L"It belongs to the deployment \"" + copy.Folder() + L"\""},
    };
    for (const auto& [folder, words] : places) {
        const VerifyResult result = Verify(folder);
        EXPECT_EQ(result.verdict, VerifyVerdict::Undetermined);
        EXPECT_FALSE(result.bIsDeployment);
        EXPECT_HOLDS(VerdictSentence(result), words);
    }
}

TEST_F(VerifyTest, ACanceledCheckHasNoVerdict)
{
    CSilentProgress progress;
    progress.cancel = true;
    VerifyResult result;
    VerifyDeploymentFolder(location + L"Office", progress, result);
    EXPECT_TRUE(result.bCancelled);
    EXPECT_EQ(result.verdict, VerifyVerdict::Undetermined);
    EXPECT_HOLDS(VerdictSentence(result), L"was canceled");
}

// ---- forms of folders and manifests

TEST_F(VerifyTest, ManifestsWithoutMarkAndHeadingAndWithBareLineEndsAreRead)
{
    const DamagedCopy copy(built, CopyFolder());
    std::string manifest = copy.Read(MANIFEST_FILE);
    manifest.erase(0, manifest.find('\n') + 1);
    std::erase(manifest, '\r');
    copy.Write(MANIFEST_FILE, manifest);
    EXPECT_EQ(Verify(copy.Folder()).verdict, VerifyVerdict::AsBuilt);
}

TEST_F(VerifyTest, AFolderBeyondTheUsualLengthOfPathsIsVerified)
{
    CString folder = scratch + L"moved";
    while (folder.GetLength() < 300) {
        folder += L"\\a rather long name of a folder";
    }
    const DamagedCopy copy(built, folder);
    copy.Write(CString(DATA) + L"more.txt", "x");
    ExpectLines(Verify(folder), {Line(L"Added", CString(DATA) + L"more.txt")}, "long");
}

TEST_F(VerifyTest, LinksAreNamedAndNotFollowed)
{
    const DamagedCopy copy(built, CopyFolder());
    const FolderLink added(copy / L"Linked", scratch + L"media");
    RemoveFolder(copy / DATA);
    const FolderLink replacing(WithoutClosingBackslash(copy / DATA), scratch + L"media\\x64\\Zolt\\Data");
    if (!added.IsThere() || !replacing.IsThere()) {
        GTEST_SKIP() << "links can't be made here";
    }
    ExpectLines(Verify(copy.Folder()),
                {L"Added: Linked (it is a link", L"Changed: Image\\x64\\Zolt\\Data (it is a link"}, "links");
}

// ---- patches

TEST_F(VerifyTest, APatchIsKnownByItsCodeAndItsContent)
{
    const DamagedCopy copy({}, scratch + L"patched");
    const std::string first = ReadBytes(PatchFixture(L"beside\\First.msp"));
    const std::string second = ReadBytes(PatchFixture(L"beside\\Second.msp"));
    ASSERT_FALSE(first.empty());
    CContentHash hash;
    hash.Add(first.data(), first.size());
    const CString firstHash = hash.Finish();
    copy.Write(L"Deployment.xml", "<x/>");
    copy.Write(L"Image\\sp.msp", first);
    copy.Write(MANIFEST_FILE, ManifestLine('0', "0 Deployment.xml") + ManifestLine('0', "0 Image\\sp.msp"));
    copy.ListAnew(L"Deployment.xml");
    copy.ListAnew(L"Image\\sp.msp");
    const auto verify = [&](const CString& code, const CString& sha256) {
        CSilentProgress progress;
        return VerifyDeployment(
            copy.Folder(),
            [&](const CString&, DeploymentRecord& record) {
                record.patches = {{L"Image\\sp.msp", code, sha256, false},
                                  {L"Image\\merged.msp", code, sha256, true}};
                return CString();
            },
            progress);
    };
    EXPECT_EQ(verify({}, {}).verdict, VerifyVerdict::AsBuilt); // recorded by its file alone
    EXPECT_EQ(verify({}, {}).unrecorded.size(), 2u);           // the first one is of the databases
    EXPECT_EQ(verify(FIRST_PATCH_CODE, firstHash).unrecorded.size(), 1u);
    EXPECT_EQ(verify(FIRST_PATCH_CODE, firstHash).verdict, VerifyVerdict::AsBuilt);
    copy.Write(L"Image\\sp.msp", second);
    copy.ListAnew(L"Image\\sp.msp");
    ExpectLines(verify(FIRST_PATCH_CODE, firstHash),
                {CString(L"Changed: Image\\sp.msp (patch code ") + SECOND_PATCH_CODE + L", built with " +
                 FIRST_PATCH_CODE},
                "another patch");
    ExpectLines(verify(SECOND_PATCH_CODE, firstHash), {L"Changed: Image\\sp.msp (not the patch file"},
                "content");
}
