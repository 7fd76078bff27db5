// Builds that are refused before they write anything, with what they say.
#include "tests/host/build_fixture.h"
#include "tests/host/user_additions.h"

#include "builder/build_names.h"
#include "builder/copy_scan.h"
#include "builder/file_operations.h"

#include <windows.h>

namespace {

TEST(RefusedBuild, NamesThatWindowsCannotHoldAreRefusedByTheReason)
{
    TestBuild build;
    for (const wchar_t* name :
         {L"", L"a:b", L"a?", L"COM1", L"nul.txt", L"dot.", L"blank ", L" blank", L".."}) {
        build.plan.strName = name;
        const BuildResult result = build.Build();
        EXPECT_EQ(result.error.code, static_cast<unsigned>(ERROR_INVALID_NAME)) << Utf8(name);
        EXPECT_HOLDS(result.error.message, L"Choose another name.");
    }
    EXPECT_EQ(ReadTree(build.Location()).size(), 0u);
}

TEST(RefusedBuild, AFolderThatIsNoDeploymentIsNeverReplaced)
{
    TestBuild build;
    MakeFolders(build.Target());
    WriteBytes(build.Target() + L"\\thesis.doc", "years of work");
    build.AllowReplacing();
    EXPECT_EQ(build.Build().error.code, static_cast<unsigned>(ERROR_ALREADY_EXISTS));
    EXPECT_EQ(ReadBytes(build.Target() + L"\\thesis.doc"), "years of work");
}

TEST(RefusedBuild, ADeploymentIsNotReplacedUnasked)
{
    TestBuild build;
    ASSERT_EQ(build.Build().error.code, 0u);
    const BuildResult result = build.Build();
    EXPECT_EQ(result.error.code, static_cast<unsigned>(ERROR_ALREADY_EXISTS));
    EXPECT_HOLDS(result.error.message, L"modify the deployment that is there");
}

TEST(RefusedBuild, AFolderThatAppearsDuringTheBuildIsLeftAlone)
{
    TestBuild build;
    build.onProgress = [&](std::uint64_t, std::uint64_t) {
        MakeFolders(build.Target());
        WriteBytes(build.Target() + L"\\thesis.doc", "years of work");
        return true;
    };
    EXPECT_EQ(build.Build().error.code, static_cast<unsigned>(ERROR_ALREADY_EXISTS));
    EXPECT_EQ(ReadBytes(build.Target() + L"\\thesis.doc"), "years of work");
    EXPECT_EQ(Leftovers(build.Location(), L"Office"), std::vector<CString>());
}

TEST(RefusedBuild, ALogOfSomebodysOwnIsNeitherOverwrittenNorDeleted)
{
    TestBuild build;
    const CString own = build.Location() + L"\\Office.Build.log";
    WriteBytes(own, "my own notes");
    build.onProgress = [](std::uint64_t, std::uint64_t) -> bool { throw std::bad_alloc(); };
    EXPECT_NE(build.Build().error.code, 0u);
    build.onProgress = nullptr;
    build.plan.databases[0].strTarget = L"Image\\NUL";
    EXPECT_NE(build.Build().error.code, 0u);
    build.plan.databases[0].strTarget = L"Image\\x64\\Zolt\\Zolt2027.msi";
    HANDLE source = CreateFileW(build.Media() + L"\\x64\\Zolt\\readme.txt", GENERIC_READ, 0, nullptr,
                                OPEN_EXISTING, 0, nullptr);
    EXPECT_NE(build.Build().error.code, 0u);
    CloseHandle(source);
    EXPECT_EQ(ReadBytes(own), "my own notes");
    const CString second = build.Location() + L"\\Office.Build (2).log";
    EXPECT_NE(ReadBytes(second).find("Failed build of \"Office\""), std::string::npos);
    EXPECT_EQ(build.Build().error.code, 0u);
    EXPECT_EQ(ReadBytes(own), "my own notes");
    EXPECT_FALSE(Exists(second));
}

TEST(RefusedBuild, AFolderInTheLockFilesPlaceIsNamed)
{
    TestBuild build;
    MakeFolders(build.Location() + L"\\.Office.build-lock");
    const BuildResult result = build.Build();
    EXPECT_EQ(result.error.code, static_cast<unsigned>(ERROR_ALREADY_EXISTS));
    EXPECT_HOLDS(result.error.message, L"Office.build-lock\" stands where a build writes its lock file");
}

TEST(RefusedBuild, AFileOfSomebodysOwnInTheLockFilesPlaceIsNamedAndLeftAlone)
{
    TestBuild build;
    const CString own = build.Location() + L"\\.Office.build-lock";
    WriteBytes(own, "my own notes");
    const BuildResult result = build.Build();
    EXPECT_EQ(result.error.code, static_cast<unsigned>(ERROR_ALREADY_EXISTS));
    EXPECT_HOLDS(result.error.message, L"The file \"" + own + L"\" is not this program's.");
    EXPECT_EQ(ReadBytes(own), "my own notes");
    EXPECT_FALSE(Exists(build.Target()));
}

TEST(RefusedBuild, ALocationInsideADeploymentIsRefused)
{
    TestBuild build;
    ASSERT_EQ(build.Build().error.code, 0u);
    build.plan.strLocation = build.Target() + L"\\Image\\deep";
    const BuildResult result = build.Build();
    EXPECT_EQ(result.error.code, static_cast<unsigned>(ERROR_BAD_PATHNAME));
    EXPECT_HOLDS(result.error.message, L"lies inside one");
}

TEST(RefusedBuild, ALocationThatIsMadeOnlyHalfLeavesNoFolder)
{
    TestBuild build;
    build.plan.strLocation = build.Location() + L"\\one\\two\\" + CString(L'x', 300);
    EXPECT_NE(build.Build().error.code, 0u);
    EXPECT_FALSE(Exists(build.Location() + L"\\one"));
}

TEST(RefusedBuild, ALocationThatIsAFileIsNamed)
{
    TestBuild build;
    WriteBytes(build.Location() + L"\\file", "x");
    build.plan.strLocation = build.Location() + L"\\file\\below";
    const BuildResult result = build.Build();
    EXPECT_EQ(result.error.code, static_cast<unsigned>(ERROR_DIRECTORY));
    EXPECT_HOLDS(result.error.message, L"\\file\" is a file");
}

TEST(RefusedBuild, ADriveThatIsGoneIsReported)
{
    TestBuild build;
    build.plan.strLocation = L"Q:\\gone";
    const BuildResult result = build.Build();
    EXPECT_NE(result.error.code, 0u);
    EXPECT_HOLDS(result.error.message, L"Q:\\gone");
}

TEST(RefusedBuild, ALocationInsideTheMediaIsRefused)
{
    TestBuild build;
    build.plan.strLocation = build.Media() + L"\\x64\\Zolt\\Empty";
    EXPECT_HOLDS(build.Build().error.message, L"lies inside the media");
}

TEST(RefusedBuild, TwoSourcesForOneFileAreNamed)
{
    TestBuild build;
    build.plan.files.push_back({build.Media() + L"\\x64\\Zolt\\readme.txt", L"Install.cmd"});
    const BuildResult result = build.Build();
    EXPECT_EQ(result.error.code, static_cast<unsigned>(ERROR_BAD_PATHNAME));
    EXPECT_HOLDS(result.error.message, L"would become \"Install.cmd\"");
}

TEST(RefusedBuild, ATargetOutsideTheDeploymentIsRefused)
{
    TestBuild build;
    build.plan.texts.push_back({L"..\\escaped.txt", L"x"});
    EXPECT_EQ(build.Build().error.code, static_cast<unsigned>(ERROR_BAD_PATHNAME));
    EXPECT_FALSE(Exists(build.Location() + L"\\escaped.txt"));
}

TEST(RefusedBuild, LettersThatTheCodePageLacksAreReportedWithTableAndValue)
{
    TestBuild build;
    build.Change(L"UPDATE `Property` SET `Value` = '\x65E5\x672C' WHERE `Property` = 'Manufacturer'");
    const BuildResult result = build.Build();
    EXPECT_EQ(result.error.code, static_cast<unsigned>(ERROR_NO_UNICODE_TRANSLATION))
        << Utf8(result.error.message);
    EXPECT_HOLDS(result.error.message,
                 L"code page 1252, which lacks letters of \"\x65E5\x672C\" (table Property, row "
                 L"Manufacturer, column Value)");
    EXPECT_FALSE(Exists(build.Target()));
}

TEST(RefusedBuild, LettersOfTheCodePageComeThrough)
{
    TestBuild build;
    build.Change(L"UPDATE `Property` SET `Value` = 'M\x00FCller' WHERE `Property` = 'Manufacturer'");
    const BuildResult result = build.Build();
    ASSERT_EQ(result.error.code, 0u) << Utf8(result.error.message);
    EXPECT_EQ(
        QueryText(build.Database(), L"SELECT `Value` FROM `Property` WHERE `Property` = 'Manufacturer'"),
        L"M\x00FCller");
}

TEST(RefusedBuild, ADamagedOriginalIsNamed)
{
    TestBuild build;
    WriteBytes(build.plan.databases[0].strOriginal, "not a database");
    const BuildResult result = build.Build();
    EXPECT_NE(result.error.code, 0u);
    EXPECT_HOLDS(result.error.message, build.plan.databases[0].strOriginal);
    EXPECT_FALSE(Exists(build.Target()));
}

TEST(CheckedBuild, FindsWhatABuildWouldAndWritesNothing)
{
    TestBuild build;
    std::vector<CString> warnings;
    EXPECT_EQ(CheckBuild(build.plan, warnings).code, 0u);
    EXPECT_EQ(ReadTree(build.Location()).size(), 0u);
    build.plan.strName = L"a|b";
    EXPECT_EQ(CheckBuild(build.plan, warnings).code, static_cast<unsigned>(ERROR_INVALID_NAME));
    build.plan.strName = L"Office";
    build.plan.folders[0].strSource += L"\\gone";
    EXPECT_HOLDS(CheckBuild(build.plan, warnings).message, L"\\gone");
}

TEST(CheckedBuild, MeasuresTheBytesOfTheFilesAndDatabases)
{
    TestBuild build;
    const std::uint64_t measured = ScanSources(build.plan, {}).bytes;
    const std::uint64_t database = ReadBytes(build.plan.databases[0].strWorkingCopy).size();
    EXPECT_EQ(measured, database + (3 << 20) + 6 + 10);
}

} // namespace
