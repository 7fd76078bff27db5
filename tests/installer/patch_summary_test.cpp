// What a patch file says of itself.
#include "installer/patch_summary.h"

#include "installer/summary.h"
#include "tests/installer/database_fixture.h"

#include <cstdint>

namespace {

constexpr std::uintptr_t CREATE_PATCH = 35;

class PatchSummaryTest : public testing::Test
{
protected:
    void TearDown() override { ASSERT_EQ(MsiCloseAllHandles(), 0u) << "installer handles were left open"; }

    CString Patch() const { return m_folder / L"one.msp"; }

    // A file of the kind of a patch, with those texts in its summary and those statements run.
    void MakePatch(const CString& targets, const CString& code,
                   const std::vector<const wchar_t*>& statements = {})
    {
        CInstallerHandle patch;
        ASSERT_EQ(MsiOpenDatabaseW(Patch(), reinterpret_cast<const wchar_t*>(CREATE_PATCH), patch.put()), 0u);
        CSummary summary;
        ASSERT_EQ(summary.Open(patch.get(), 2), 0u);
        ASSERT_EQ(summary.WriteText(SUMMARY_TEMPLATE, targets), 0u);
        ASSERT_EQ(summary.WriteText(SUMMARY_PACKAGE_CODE, code), 0u);
        ASSERT_EQ(summary.Persist(), 0u);
        for (const wchar_t* statement : statements) {
            CInstallerHandle view;
            ASSERT_EQ(MsiDatabaseOpenViewW(patch.get(), statement, view.put()), 0u) << Utf8(statement);
            ASSERT_EQ(MsiViewExecute(view.get(), 0), 0u) << Utf8(statement);
        }
        ASSERT_EQ(MsiDatabaseCommit(patch.get()), 0u);
    }

    CTestFolder m_folder;
};

constexpr const wchar_t* METADATA =
    L"CREATE TABLE `MsiPatchMetadata` (`Company` CHAR(72), `Property` CHAR(72) NOT NULL, `Value` CHAR(0) NOT "
    L"NULL LOCALIZABLE PRIMARY KEY `Company`,`Property`)";
constexpr const wchar_t* PRODUCT_NAME =
    L"INSERT INTO `MsiPatchMetadata` (`Property`,`Value`) VALUES ('TargetProductName','Zolt 2027')";
constexpr const wchar_t* PATCH_NAME =
    L"INSERT INTO `MsiPatchMetadata` (`Property`,`Value`) VALUES ('DisplayName','Update 1')";

} // namespace

TEST_F(PatchSummaryTest, TargetsOfAnyLengthComeBackWhole)
{
    for (const int length : {0, 38, 4095, 4096, 4097, 20000}) {
        const CString targets(L'T', length);
        MakePatch(targets, L"{C}");
        CString read;
        EXPECT_TRUE(ReadPatchTargets(Patch(), read)) << length;
        EXPECT_EQ(read.GetLength(), length);
        EXPECT_EQ(read, targets);
    }
}

TEST_F(PatchSummaryTest, ACodeIsTheWholeText)
{
    const CString code = L"{0B9E6A6E-0000-4000-8000-000000000001}{0B9E6A6E-0000-4000-8000-000000000002}";
    MakePatch(L"{T}", code);
    CString read;
    EXPECT_TRUE(ReadPatchCode(Patch(), read));
    EXPECT_EQ(read, code);
}

TEST_F(PatchSummaryTest, ACodeOf1023UnitsIsReadAndALongerOneIsNot)
{
    CString read;
    MakePatch(L"{T}", CString(L'C', 1023));
    EXPECT_TRUE(ReadPatchCode(Patch(), read));
    EXPECT_EQ(read.GetLength(), 1023);
    MakePatch(L"{T}", CString(L'C', 1024));
    EXPECT_FALSE(ReadPatchCode(Patch(), read));
}

TEST_F(PatchSummaryTest, ANameHasTheProductBeforeThePatchWithABlankBetween)
{
    MakePatch(L"{T}", L"{C}", {METADATA, PATCH_NAME, PRODUCT_NAME});
    CString name;
    EXPECT_TRUE(ReadPatchDisplayName(Patch(), name));
    EXPECT_EQ(name, CString(L"Zolt 2027 Update 1"));
}

TEST_F(PatchSummaryTest, AProductAloneIsANameWithABlankAtItsEnd)
{
    MakePatch(L"{T}", L"{C}", {METADATA, PRODUCT_NAME});
    CString name;
    EXPECT_TRUE(ReadPatchDisplayName(Patch(), name));
    EXPECT_EQ(name, CString(L"Zolt 2027 "));
}

TEST_F(PatchSummaryTest, APatchNameAloneStandsAlone)
{
    MakePatch(L"{T}", L"{C}", {METADATA, PATCH_NAME});
    CString name;
    EXPECT_TRUE(ReadPatchDisplayName(Patch(), name));
    EXPECT_EQ(name, CString(L"Update 1"));
}

TEST_F(PatchSummaryTest, ANameOf300UnitsIsCutTo259)
{
    const CString insert = L"INSERT INTO `MsiPatchMetadata` (`Property`,`Value`) VALUES ('DisplayName','" +
                           CString(L'n', 300) + L"')";
    MakePatch(L"{T}", L"{C}", {METADATA, insert});
    CString name;
    EXPECT_TRUE(ReadPatchDisplayName(Patch(), name));
    EXPECT_EQ(name, CString(L'n', 259));
}

TEST_F(PatchSummaryTest, APatchWithoutMetadataOrWithAnEmptyTableHasNoName)
{
    CString name;
    MakePatch(L"{T}", L"{C}");
    EXPECT_FALSE(ReadPatchDisplayName(Patch(), name));
    MakePatch(L"{T}", L"{C}", {METADATA});
    EXPECT_FALSE(ReadPatchDisplayName(Patch(), name));
}

TEST_F(PatchSummaryTest, NothingIsReadOfAMissingFileAPackageOrJunk)
{
    const CString junk = m_folder.AddFile(L"junk.msp", "no patch at all");
    const CString package = m_folder / L"package.msi";
    {
        CInstallerHandle database;
        ASSERT_EQ(MsiOpenDatabaseW(package, MSIDBOPEN_CREATE, database.put()), 0u);
        ASSERT_EQ(MsiDatabaseCommit(database.get()), 0u);
    }
    for (const CString& path : {m_folder / L"missing.msp", junk, package}) {
        CString text;
        EXPECT_FALSE(ReadPatchTargets(path, text)) << Utf8(path);
        EXPECT_FALSE(ReadPatchCode(path, text)) << Utf8(path);
        EXPECT_FALSE(ReadPatchDisplayName(path, text)) << Utf8(path);
    }
}
