// Merged patches, from the build to a workstation: what is installed, and what stands in the tables, is what the package with
// its patches chained gives.
#include "builder/database_snapshot.h"
#include "builder/merge_decision.h"
#include "builder/patch_package.h"
#include "tests/host/merge_build.h"
#include "tests/host/user_additions.h"

#include <msi.h>

namespace {

const wchar_t* const g_layouts[] = {L"beside", L"inside", L"loose"};

DatabaseSnapshot SnapshotOf(const CString& path)
{
    const CInstallerHandle database = OpenDatabaseToRead(path);
    return ReadSnapshot(database.get(), path, [] {});
}

CString PropertyOf(const CString& database, const CString& name)
{
    return QueryText(database, L"SELECT `Value` FROM `Property` WHERE `Property`='" + name + L"'");
}

class MergeInstallTest : public testing::TestWithParam<const wchar_t*>
{
protected:
    ~MergeInstallTest() override
    {
        if (MsiQueryProductStateW(PATCHED_PRODUCT_CODE) == INSTALLSTATE_DEFAULT) {
            RunProgram(CString(L"msiexec /x ") + PATCHED_PRODUCT_CODE + L" /qn /norestart");
        }
    }
    static CString Own(const CString& name) { return PatchFixture(CString(GetParam()) + L"\\" + name); }
};

TEST_P(MergeInstallTest, InstallsWhatTheChainedPatchInstalls)
{
    MergeBuild build(GetParam());
    build.Merge(L"First", FIRST_PATCH_CODE);
    build.BuildIt();
    const Tree chained = InstallAndRemove(Own(L"PatchTest.msi"), Own(L"First.msp"));
    ASSERT_EQ(chained.at(L"replaced.txt"), "replaced by the first patch\r\n");
    EXPECT_TRUE(InstallAndRemove(build.Database()) == chained);
    EXPECT_EQ(PropertyOf(build.Database(), L"ProductVersion"), L"1.0.1");
    EXPECT_NE(PackageCodeOf(build.Database()), PackageCodeOf(build.Original()));
}

TEST_P(MergeInstallTest, InstallsWhatTwoChainedPatchesInstall)
{
    MergeBuild build(GetParam());
    build.Merge(L"First", FIRST_PATCH_CODE);
    build.Merge(L"Second", SECOND_PATCH_CODE);
    build.BuildIt();
    const Tree chained =
        InstallAndRemove(Own(L"PatchTest.msi"), Own(L"First.msp") + L";" + Own(L"Second.msp"));
    ASSERT_EQ(chained.at(L"Support\\added file.txt"), "added by the first patch, replaced by the second\r\n");
    EXPECT_TRUE(InstallAndRemove(build.Database()) == chained);
    EXPECT_EQ(PropertyOf(build.Database(), L"ProductVersion"), L"1.0.2");
}

TEST_P(MergeInstallTest, WritesTheRowsOfThePatchAndTheirNumbersAlone)
{
    MergeBuild build(GetParam());
    build.Merge(L"First", FIRST_PATCH_CODE);
    build.BuildIt();
    const TestFolder folder(L"transform");
    const CString copy = folder / L"patched.msi";
    ASSERT_TRUE(CopyFileW(build.Original(), copy, TRUE));
    CPatchApplier applier(copy, L"Patch Test");
    CInstallerHandle database;
    ASSERT_EQ(MsiOpenDatabaseW(copy, MSIDBOPEN_TRANSACT, database.put()), 0u);
    const ChosenPatch patch = {{Own(L"First.msp"), FIRST_PATCH_CODE}, L"T1", 0};
    applier.Apply(database.get(), patch, false);
    std::vector<CString> found;
    for (const RowDifference& row :
         CompareSnapshots(ReadSnapshot(database.get(), copy, [] {}), SnapshotOf(build.Database()))) {
        EXPECT_EQ(row.change, RowChange::Changed);
        for (const ColumnChange& column : row.columns) {
            found.push_back(row.strTable + L" " + row.key.front() + L" " + column.strColumn);
        }
    }
    std::vector<CString> expected;
    expected.push_back(L"Media 1 LastSequence"); // the transform has the medium left out
    if (CString(GetParam()) == L"inside") {
        expected.push_back(L"_Streams Data1.cab Data"); // made anew
    }
    EXPECT_TRUE(found == expected) << Utf8(found.empty() ? CString(L"nothing differs") : found.front());
}

TEST_P(MergeInstallTest, GoesOnFromAnImageWithAPatchInIt)
{
    MergeBuild first(GetParam());
    first.Merge(L"First", FIRST_PATCH_CODE);
    first.BuildIt();
    MergeBuild second(GetParam(), first.Image());
    second.Product().strProductVersion = L"1.0.1";
    second.Merge(L"Second", SECOND_PATCH_CODE);
    second.BuildIt();
    const Tree chained =
        InstallAndRemove(Own(L"PatchTest.msi"), Own(L"First.msp") + L";" + Own(L"Second.msp"));
    EXPECT_TRUE(InstallAndRemove(second.Database()) == chained);
    EXPECT_EQ(PropertyOf(second.Database(), L"ProductVersion"), L"1.0.2");
}

TEST_P(MergeInstallTest, HasALaterPatchChained)
{
    MergeBuild build(GetParam());
    build.Merge(L"First", FIRST_PATCH_CODE);
    build.BuildIt();
    const Tree chained =
        InstallAndRemove(Own(L"PatchTest.msi"), Own(L"First.msp") + L";" + Own(L"Second.msp"));
    EXPECT_TRUE(InstallAndRemove(build.Database(), Own(L"Second.msp")) == chained);
}

TEST_P(MergeInstallTest, InstallsWhatWasAddedAsWell)
{
    const TestFolder sources(L"sources");
    WriteBytes(sources / L"mine.txt", "the administrator's\n");
    MergeBuild build(GetParam());
    {
        AddedRows added(build.Product().hDatabase, 3);
        added.AddFile(sources / L"mine.txt", L"INSTALLDIR");
    }
    build.Merge(L"First", FIRST_PATCH_CODE);
    build.BuildIt();
    Tree expected = InstallAndRemove(Own(L"PatchTest.msi"), Own(L"First.msp"));
    expected[L"mine.txt"] = "the administrator's\n";
    const Tree installed = InstallAndRemove(build.Database());
    EXPECT_TRUE(installed == expected) << NamesOf(installed);

    // And again, from that image.
    MergeBuild second(GetParam(), build.Image());
    second.Product().strProductVersion = L"1.0.1";
    second.Merge(L"Second", SECOND_PATCH_CODE);
    second.BuildIt();
    expected[L"Support\\added file.txt"] = "added by the first patch, replaced by the second\r\n";
    expected[L"Support\\second.txt"] = "replaced by the second patch\r\n";
    const Tree again = InstallAndRemove(second.Database());
    EXPECT_TRUE(again == expected) << NamesOf(again);
}

TEST_P(MergeInstallTest, LeavesNothingOfAReplacedFileInTheImage)
{
    MergeBuild build(GetParam());
    build.Merge(L"First", FIRST_PATCH_CODE);
    build.BuildIt();
    for (const auto& [path, bytes] : ReadTree(build.Image())) {
        EXPECT_EQ(bytes.find("replaced, as it was"), std::string::npos) << Utf8(path);
    }
}

TEST_P(MergeInstallTest, DropsFilesAndBringsTablesAsThePatchDoes)
{
    MergeBuild build(GetParam());
    build.Merge(L"Unusual", L"{7C1E0001-2B5D-4E0C-9D41-3A6F00000041}");
    build.BuildIt();
    const Tree chained = InstallAndRemove(Own(L"PatchTest.msi"), Own(L"Unusual.msp"));
    ASSERT_EQ(chained.count(L"kept.txt"), 0u);
    EXPECT_TRUE(InstallAndRemove(build.Database()) == chained);
    for (const auto& [path, bytes] : ReadTree(build.Image())) {
        EXPECT_EQ(bytes.find("kept, as it was"), std::string::npos) << Utf8(path);
    }
    const DatabaseSnapshot built = SnapshotOf(build.Database());
    const TestFolder folder(L"stream");
    WriteBytes(folder / L"stream.bin", "the extra stream");
    EXPECT_EQ(Utf8(built.at(L"Extras").rows.at({L"extra"})[1]),
              Utf8(DescribeStreamOf(folder / L"stream.bin")));
}

INSTANTIATE_TEST_SUITE_P(Layouts, MergeInstallTest, testing::ValuesIn(g_layouts),
                         [](const auto& layout) { return Utf8(layout.param); });

// What an administrative installation made: its table of media still names the cabinet.
TEST(MergeImageTest, LaysFilesIntoTheFoldersOfAnAdministrativeImage)
{
    MergeBuild laid(L"loose");
    SetWordCount(laid.Original(), ADMIN_IMAGE);
    {
        CInstallerHandle database;
        ASSERT_EQ(MsiOpenDatabaseW(laid.Original(), MSIDBOPEN_TRANSACT, database.put()), 0u);
        ASSERT_EQ(RunSql(database.get(), L"UPDATE `Media` SET `Cabinet`='Data1.cab'"), 0u);
        ASSERT_EQ(MsiDatabaseCommit(database.get()), 0u);
    }
    MergeBuild build(MergedPackage{FolderAbove(laid.Original())});
    build.MergeFile(PatchFixture(L"loose\\First.msp"), FIRST_PATCH_CODE);
    build.BuildIt();
    const Tree image = ReadTree(build.Image() + L"\\Patch Test");
    EXPECT_EQ(image.at(L"replaced.txt"), "replaced by the first patch\r\n");
    EXPECT_EQ(image.at(L"Support\\added file.txt"), "added by the first patch\r\n");
    EXPECT_FALSE(Exists(build.Image() + L"\\Data1.cab"));
}

// The sample's product: many tables, and the rows of its upgrades change by their keys.
class MergeSampleTest : public testing::TestWithParam<const wchar_t*>
{
protected:
    static CString Built(const CString& name)
    {
        wchar_t program[MAX_PATH] = L"";
        GetModuleFileNameW(nullptr, program, MAX_PATH);
        return FolderAbove(FolderAbove(program)) + L"\\" + name + L"\\" + GetParam();
    }
    static Tree InstallAndRemove(const CString& package, const CString& patch, CString& version)
    {
        const bool isNarrow = CString(GetParam()) == L"x86";
        wchar_t programs[MAX_PATH] = L"";
        GetEnvironmentVariableW(isNarrow ? L"ProgramFiles(x86)" : L"ProgramW6432", programs, MAX_PATH);
        const CString folder = CString(programs) + L"\\Velkmora\\Zolt 2027";
        const CString chain = patch.IsEmpty() ? CString() : L" PATCH=\"" + patch + L"\"";
        EXPECT_EQ(RunProgram(L"msiexec /i \"" + package + L"\"" + chain + L" /qn /norestart"), 0u);
        wchar_t value[64] = L"";
        DWORD bytes = sizeof(value);
        RegGetValueW(HKEY_LOCAL_MACHINE, L"Software\\Velkmora\\Zolt\\27.0", L"Version",
                     RRF_RT_REG_SZ | (isNarrow ? RRF_SUBKEY_WOW6432KEY : RRF_SUBKEY_WOW6464KEY), nullptr,
                     value, &bytes);
        version = value;
        Tree installed = ReadTree(folder);
        EXPECT_EQ(RunProgram(L"msiexec /x \"" + package + L"\" /qn /norestart"), 0u);
        EXPECT_FALSE(Exists(folder)) << NamesOf(ReadTree(folder));
        return installed;
    }
};

TEST_P(MergeSampleTest, InstallsWhatTheChainedPatchInstalls)
{
    const CString package = Built(L"media") + L"\\Zolt\\Zolt2027.msi";
    const CString patch = Built(L"sample_patches") + L"\\Zolt2027Update2.msp";
    MergeBuild build(MergedPackage{FolderAbove(package), L"Zolt2027.msi", L"Zolt 2027",
                                   PropertyOf(package, L"ProductCode"), L"27.0.0"});
    build.MergeFile(patch, CPatchPackage(patch).Code());
    build.BuildIt();
    CString chainedVersion;
    CString mergedVersion;
    const Tree chained = InstallAndRemove(package, patch, chainedVersion);
    const Tree merged = InstallAndRemove(build.Database(), CString(), mergedVersion);
    EXPECT_TRUE(chained == merged) << NamesOf(chained) << "and merged\n" << NamesOf(merged);
    ASSERT_NE(chained.at(L"Support\\Aliases.txt").find("; Update 2\r\n"), std::string::npos);
    EXPECT_EQ(chainedVersion, L"27.0.2");
    EXPECT_EQ(mergedVersion, L"27.0.2");
    EXPECT_EQ(QueryText(build.Database(), L"SELECT `VersionMax` FROM `Upgrade`"), L"27.0.2");
}

INSTANTIATE_TEST_SUITE_P(Platforms, MergeSampleTest, testing::Values(L"x64", L"x86"),
                         [](const auto& platform) { return Utf8(platform.param); });

} // namespace
