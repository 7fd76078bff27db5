// What the host says of additions while there is no build yet: every item that a build would refuse or leave out, by name.
#include "builder/change_report.h"
#include "builder/file_operations.h"
#include "installer/snapshot.h"
#include "tests/host/through_host.h"
#include "tests/host/user_additions.h"

#include <windows.h>

#include <winioctl.h>

#include <msi.h>
#include <msiquery.h>

namespace {

class AdditionCheckTest : public ThroughHostTest
{
protected:
    CProduct& OpenPackage()
    {
        MakePackage(scratch + L"downloads\\Tool.msi");
        CSetupManager& manager = Open(scratch + L"downloads\\Tool.msi");
        Begin(manager, Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), L"Checked");
        return *manager.m_pProducts->at(0);
    }

    CString Source(const CString& name, const std::string& bytes)
    {
        const CString path = scratch + L"sources\\" + name;
        WriteFileBytes(path, bytes);
        return path;
    }

    std::vector<AdditionFinding> Check(CProduct& product, SourceLook look = SourceLook::All)
    {
        return host->CheckAdditions(product, look);
    }

    void ExpectOne(CProduct& product, unsigned int code, const CString& source, const CString& part)
    {
        const std::vector<AdditionFinding> found = Check(product);
        ASSERT_EQ(found.size(), 1u);
        EXPECT_EQ(found[0].code, code) << Utf8(found[0].strReason);
        EXPECT_EQ(found[0].strSource, source);
        EXPECT_HOLDS(found[0].strReason, part);
        EXPECT_EQ(found[0].strTarget.Left(24), L"<Installation Directory>");
    }

    static void Change(CProduct& product, const CString& statement)
    {
        CInstallerHandle view;
        ASSERT_EQ(MsiDatabaseOpenViewW(product.GetMsiHandle(), statement, view.put()), 0u) << Utf8(statement);
        EXPECT_EQ(MsiViewExecute(view.get(), 0), 0u) << Utf8(statement);
    }

    // What the build refuses is what was found.
    void ExpectBuildRefuses(unsigned int code)
    {
        std::vector<CString> warnings;
        EXPECT_EQ(host->CheckBuild(warnings).code, code);
    }
};

} // namespace

TEST_F(AdditionCheckTest, AdditionsThatCanGoAlongHaveNoFinding)
{
    CProduct& product = OpenPackage();
    EXPECT_TRUE(Check(product).empty());
    AddedRows rows(product);
    const CString folder = rows.AddFolder(L"Company", L"INSTALLDIR");
    rows.AddFile(Source(L"a.txt", "1"), L"INSTALLDIR");
    rows.AddFile(Source(L"b\\a.txt", "22"), folder);
    rows.AddFile(Source(L"c.txt", "3"), rows.AddDrive(L"q:"));
    EXPECT_TRUE(Check(product).empty());
    EXPECT_TRUE(Check(product).empty());
    ExpectBuildRefuses(0);
}

TEST_F(AdditionCheckTest, ASourceThatIsGoneIsNamedWithItsTarget)
{
    CProduct& product = OpenPackage();
    const CString source = Source(L"gone.txt", "1");
    AddedRows rows(product);
    rows.AddFile(source, rows.AddFolder(L"Company", L"INSTALLDIR"));
    ASSERT_TRUE(DeleteFileW(source));
    ExpectOne(product, 2, source, L"Put it back, or remove it from the additional files.");
    EXPECT_EQ(Check(product)[0].strTarget, L"<Installation Directory>\\Company\\gone.txt");
    ExpectBuildRefuses(2);
}

TEST_F(AdditionCheckTest, AFolderInTheSourcesPlaceIsNoSource)
{
    CProduct& product = OpenPackage();
    const CString source = Source(L"changed", "1");
    AddedRows(product).AddFile(source, L"INSTALLDIR");
    EXPECT_TRUE(Check(product).empty());
    ASSERT_TRUE(DeleteFileW(source));
    ASSERT_TRUE(CreateDirectoryW(source, nullptr));
    ExpectOne(product, 2, source, L"is no longer there");
}

TEST_F(AdditionCheckTest, ASourceThatAnotherProgramHoldsIsNamed)
{
    CProduct& product = OpenPackage();
    const CString source = Source(L"held.txt", "1");
    AddedRows(product).AddFile(source, L"INSTALLDIR");
    const CFileOwner holder = OpenAlone(source, false);
    ASSERT_TRUE(holder);
    ExpectOne(product, 32, source, L"Close it there");
    ExpectBuildRefuses(32);
}

// With thousands of additions each look would open all of them.
TEST_F(AdditionCheckTest, ASourceThatHasNotChangedIsOpenedOnceAndAChangedOneAgain)
{
    CProduct& product = OpenPackage();
    const CString source = Source(L"held.txt", "1");
    AddedRows(product).AddFile(source, L"INSTALLDIR");
    EXPECT_TRUE(Check(product).empty());
    {
        const CFileOwner holder = OpenAlone(source, false);
        ASSERT_TRUE(holder);
        EXPECT_TRUE(Check(product).empty());
    }
    WriteFileBytes(source, "longer");
    const CFileOwner holder = OpenAlone(source, false);
    ASSERT_TRUE(holder);
    ExpectOne(product, 32, source, L"Close it there");
}

TEST_F(AdditionCheckTest, OnlyNewSourcesAreLookedAtWhereThatIsAskedFor)
{
    CProduct& product = OpenPackage();
    AddedRows rows(product);
    const CString source = Source(L"known.txt", "1");
    rows.AddFile(source, L"INSTALLDIR");
    EXPECT_TRUE(Check(product, SourceLook::New).empty());
    ASSERT_TRUE(DeleteFileW(source));
    EXPECT_TRUE(Check(product, SourceLook::New).empty());
    const CString second = scratch + L"sources\\never there.txt";
    rows.AddFile(second, L"INSTALLDIR");
    ASSERT_EQ(Check(product, SourceLook::New).size(), 1u);
    EXPECT_EQ(Check(product, SourceLook::New)[0].strSource, second);
    EXPECT_EQ(Check(product).size(), 2u);
    EXPECT_EQ(Check(product, SourceLook::New).size(), 2u) << "one that has gone isn't known any more";
}

TEST_F(AdditionCheckTest, AFileAboveTheLimitIsNamed)
{
    CProduct& product = OpenPackage();
    const CString source = Source(L"large.bin", "");
    {
        const CFileOwner file = OpenAlone(source, false);
        DWORD bytes = 0; // a hole on the disk
        DeviceIoControl(file.get(), FSCTL_SET_SPARSE, nullptr, 0, nullptr, 0, &bytes, nullptr);
        ASSERT_GT(SeekInFile(file, 3ll << 30, FILE_BEGIN, source), 0u);
        ASSERT_TRUE(SetEndOfFile(file.get())) << GetLastError();
    }
    AddedRows(product).AddFile(source, L"INSTALLDIR");
    ExpectOne(product, 223, source, L"has 3072 MB");
    ExpectBuildRefuses(223);
}

TEST_F(AdditionCheckTest, NamesBeyondTheCodePageAreNamed)
{
    CProduct& product = OpenPackage();
    const CString source = Source(L"\x4E2D.txt", "1");
    AddedRows rows(product);
    rows.AddFile(source, L"INSTALLDIR");
    ExpectOne(product, 1113, source, L"letters that the database of the product can't hold");
    ExpectBuildRefuses(1113);
    rows.AddFolder(L"\x4E2D", L"INSTALLDIR");
    const std::vector<AdditionFinding> found = Check(product);
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0].strTarget, L"<Installation Directory>\\\x4E2D");
    EXPECT_HOLDS(found[0].strReason, L"Rename it.");
}

TEST_F(AdditionCheckTest, WhatRefusesComesBeforeWhatIsLeftOut)
{
    CProduct& product = OpenPackage();
    AddedRows rows(product);
    const CString half = rows.AddFile(Source(L"half.txt", "1"), L"INSTALLDIR");
    Change(product, L"DELETE FROM `FeatureComponents` WHERE `Component_`='" + half + L"'");
    const CString first = Source(L"1\\same.txt", "1");
    const CString second = Source(L"2\\same.txt", "1");
    rows.AddFile(first, rows.AddFolder(L"Company", L"INSTALLDIR"));
    rows.AddFile(second, rows.AddFolder(L"company", L"INSTALLDIR"));
    const std::vector<AdditionFinding> found = Check(product);
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0].code, 183u);
    EXPECT_HOLDS(found[0].strReason, first);
    EXPECT_HOLDS(found[0].strReason, second);
    EXPECT_EQ(found[1].code, 0u);
    EXPECT_HOLDS(found[1].strReason, L"\"half.txt\"");
    ExpectBuildRefuses(183);
}

TEST_F(AdditionCheckTest, WhatRefusesAllAdditionsIsOneFindingWithoutAnItem)
{
    CProduct& product = OpenPackage();
    Change(product, L"DROP TABLE `Media`");
    AddedRows(product).AddFile(Source(L"a.txt", "1"), L"INSTALLDIR");
    const std::vector<AdditionFinding> found = Check(product);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_TRUE(found[0].Blocks());
    EXPECT_EQ(found[0].strTarget, L"");
    EXPECT_HOLDS(found[0].strReason, L"no table Media");
}

TEST_F(AdditionCheckTest, AShareThatDoesNotAnswerIsNamedForEachOfItsFiles)
{
    CProduct& product = OpenPackage();
    AddedRows rows(product);
    rows.AddFile(L"\\\\no-such-server\\share\\a.txt", L"INSTALLDIR");
    rows.AddFile(L"\\\\no-such-server\\share\\b.txt", L"INSTALLDIR");
    const std::vector<AdditionFinding> found = Check(product);
    ASSERT_EQ(found.size(), 2u);
    for (const AdditionFinding& finding : found) {
        EXPECT_TRUE(finding.Blocks());
        EXPECT_HOLDS(finding.strReason, finding.strSource);
    }
}

TEST_F(AdditionCheckTest, AFileOfTheDeploymentNeedsNoSource)
{
    const CString source = Source(L"a.txt", "1");
    AddedRows(OpenPackage()).AddFile(source, L"INSTALLDIR");
    Build();
    ASSERT_TRUE(DeleteFileW(source));
    CSetupManager& manager = Open(location + L"Checked");
    Begin(manager, Setup::SETUPMODE_MODIFY_DEPLOYMENT, L"Checked", L"Checked");
    CProduct& product = *manager.m_pProducts->at(0);
    EXPECT_TRUE(Check(product).empty());
    ASSERT_TRUE(DeleteFileW(location + L"Checked\\Image\\TARN0001.cab"));
    ExpectOne(product, 2, source, L"is no longer there");
}

TEST_F(AdditionCheckTest, TheOpenDatabaseStaysAsItWas)
{
    CProduct& product = OpenPackage();
    AddedRows(product).AddFile(Source(L"a.txt", "1"), L"INSTALLDIR");
    const auto before =
        ReadDatabaseSnapshot(product.GetMsiHandle(), {[](const auto&) { return CString(); }, [] {}});
    EXPECT_TRUE(Check(product).empty());
    const auto after =
        ReadDatabaseSnapshot(product.GetMsiHandle(), {[](const auto&) { return CString(); }, [] {}});
    EXPECT_TRUE(CompareSnapshots(before, after).empty());
}
