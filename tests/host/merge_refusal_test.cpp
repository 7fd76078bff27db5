// What a build can't merge is refused by name before anything is written.
#include "builder/build_failure.h"
#include "builder/cabinet.h"
#include "builder/patch_package.h"
#include "tests/host/merge_build.h"

#include <msi.h>
#include <msiquery.h>

namespace {

class MergeRefusalTest : public testing::Test
{
protected:
    // Of a patch of the fixtures that has one thing wrong.
    void ExpectRefused(const wchar_t* name, const CString& why, unsigned int code = BUILD_INSTALLER_FAILED)
    {
        const CString path = PatchFixture(name);
        build.MergeFile(path, CPatchPackage(path).Code());
        const CString remedy =
            code == BUILD_INSTALLER_FAILED
                ? CString(L"append the patches instead of merging them, or remove this one from the list.")
                : RemedyOf(code);
        ExpectMergeRefused(
            build,
            {L"The patch \"" + path + L"\" can't be merged into Patch Test: it " + why + L". ", remedy});
    }
    static void EditOriginal(const MergeBuild& build, const CString& statement)
    {
        CInstallerHandle database;
        ASSERT_EQ(MsiOpenDatabaseW(build.Original(), MSIDBOPEN_TRANSACT, database.put()), 0u);
        EXPECT_EQ(RunSql(database.get(), statement), 0u) << Utf8(statement);
        EXPECT_EQ(MsiDatabaseCommit(database.get()), 0u);
    }
    MergeBuild build{L"beside"};
};

TEST_F(MergeRefusalTest, RefusesAPatchThatIsGone)
{
    const CString path = build.Folder() / L"gone.msp";
    build.MergeFile(path, FIRST_PATCH_CODE);
    ExpectMergeRefused(build, {path});
}

TEST_F(MergeRefusalTest, RefusesFilesThatAreNoPatches)
{
    for (const wchar_t* name : {L"CutOff.msp", L"Empty.msp", L"NoPatch.msp", L"beside\\PatchTest.msi"}) {
        build.Product().mergedPatches.clear();
        build.MergeFile(PatchFixture(name), FIRST_PATCH_CODE);
        ExpectMergeRefused(build, {PatchFixture(name), L"can't be read as a patch"});
    }
}

TEST_F(MergeRefusalTest, RefusesAPatchThatWasReplacedByAnother)
{
    build.Merge(L"First", INDEPENDENT_PATCH_CODE);
    ExpectMergeRefused(build, {L"beside\\First.msp", L"has the patch code", L"but had", FIRST_PATCH_CODE,
                               INDEPENDENT_PATCH_CODE});
}

TEST_F(MergeRefusalTest, RefusesAPatchOfAnotherProduct)
{
    ExpectRefused(L"OtherProduct.msp", L"is for another product", BUILD_PATCH_NOT_APPLICABLE);
}

TEST_F(MergeRefusalTest, RefusesAPatchThatIsThereTwice)
{
    build.Merge(L"First", FIRST_PATCH_CODE);
    ExpectRefused(L"SameCode.msp", L"is on the list twice", BUILD_PATCH_NOT_APPLICABLE);
}

TEST_F(MergeRefusalTest, RefusesAPatchForAnotherVersion)
{
    ExpectRefused(L"beside\\Second.msp", L"is for version 1.0.1, and the product has version 1.0.0",
                  BUILD_PATCH_NOT_APPLICABLE);
}

TEST_F(MergeRefusalTest, RefusesAPatchForTheVersionBeforeAnotherPatch)
{
    build.Merge(L"First", FIRST_PATCH_CODE);
    ExpectRefused(L"beside\\Independent.msp", L"is for version 1.0.0, and the product has version 1.0.1",
                  BUILD_PATCH_NOT_APPLICABLE);
}

TEST_F(MergeRefusalTest, RefusesDifferencesOfBytes)
{
    ExpectRefused(
        L"Delta.msp",
        L"holds only the differing bytes of the file \"INSTALLDIR_replaced_txt\", not the whole file");
}

TEST_F(MergeRefusalTest, RefusesAPatchThatLacksOneOfItsFiles)
{
    ExpectRefused(L"WithoutAFile.msp", L"names the file \"SUPPORTDIR_added_file_txt\" and doesn't hold it",
                  BUILD_PATCH_DAMAGED);
}

TEST_F(MergeRefusalTest, RefusesAPatchThatLacksItsCabinet)
{
    ExpectRefused(L"WithoutCabinet.msp", L"names the cabinet \"Patch.cab\" and doesn't hold it",
                  BUILD_PATCH_DAMAGED);
}

TEST_F(MergeRefusalTest, RefusesACabinetThatIsNone)
{
    ExpectRefused(L"DamagedCabinet.msp",
                  L"holds a cabinet \"Patch.cab\" that can't be read: it is damaged or a part of a set",
                  BUILD_PATCH_DAMAGED);
}

TEST_F(MergeRefusalTest, RefusesATableThatTheProductDoesNotHave)
{
    ExpectRefused(L"UnknownTable.msp", L"changes the table Nowhere, which the product doesn't have",
                  BUILD_PATCH_DAMAGED);
}

TEST_F(MergeRefusalTest, RefusesAColumnThatTheProductDoesNotHave)
{
    ExpectRefused(L"UnknownColumn.msp",
                  L"has rows of the table Property with columns that the product doesn't have",
                  BUILD_PATCH_DAMAGED);
}

TEST_F(MergeRefusalTest, RefusesRowsThatEndInTheMiddle)
{
    ExpectRefused(L"DamagedRows.msp", L"is damaged: its rows of the table File can't be read",
                  BUILD_PATCH_DAMAGED);
}

TEST_F(MergeRefusalTest, RefusesANameThatLeadsOutOfItsFolder)
{
    ExpectRefused(L"StrayName.msp", L"names a file or folder \"..\\stray.txt\", which no folder can contain");
}

TEST_F(MergeRefusalTest, RefusesNumbersOfTheProductsOwnFiles)
{
    ExpectRefused(L"ProductsNumbers.msp",
                  L"numbers the file \"INSTALLDIR_replaced_txt\" as if it lay on the product's own media");
}

TEST_F(MergeRefusalTest, RefusesAMediumThatTheProductHas)
{
    ExpectRefused(L"ProductsMedium.msp", L"uses the medium 1, which the product has");
}

TEST_F(MergeRefusalTest, RefusesAnotherProductCode)
{
    ExpectRefused(L"MakesAnotherProduct.msp",
                  CString(L"makes another product of it, with the code ") + OTHER_PRODUCT_CODE);
}

TEST_F(MergeRefusalTest, RefusesAVersionThatIsNoneOfTheRightPatch)
{
    const CString path = PatchFixture(L"InvalidVersion.msp");
    build.MergeFile(path, CPatchPackage(path).Code());
    build.Merge(L"Second", SECOND_PATCH_CODE);
    ExpectMergeRefused(build, {L"The patch \"" + path +
                               L"\" can't be merged into Patch Test: it sets the "
                               L"product version to \"one\", which isn't valid. " +
                               RemedyOf(BUILD_PATCH_DAMAGED)});
}

TEST_F(MergeRefusalTest, RefusesAProductWithoutItsCabinet)
{
    ASSERT_TRUE(DeleteFileW(FolderAbove(build.Original()) + L"\\Data1.cab"));
    build.Merge(L"First", FIRST_PATCH_CODE);
    ExpectMergeRefused(build, {L"into Patch Test",
                               L"its cabinet \"Data1.cab\" isn't beside the package. Get the media again."});
}

TEST_F(MergeRefusalTest, RefusesACabinetThatGoesOnInAnother)
{
    const CString cabinet = FolderAbove(build.Original()) + L"\\Data1.cab";
    std::string bytes = ReadBytes(cabinet);
    bytes[30] = 2; // the header's flag of a next one
    WriteBytes(cabinet, bytes);
    build.Merge(L"First", FIRST_PATCH_CODE);
    ExpectMergeRefused(build, {L"its cabinet \"Data1.cab\" is one of several that belong together"});
}

TEST_F(MergeRefusalTest, RefusesAProductWhoseDatabaseIsNotOpen)
{
    build.Product().hDatabase = 0;
    build.Merge(L"First", FIRST_PATCH_CODE);
    ExpectMergeRefused(build, {L"Patch Test", L"its database isn't open. Start the build again."});
}

TEST_F(MergeRefusalTest, RefusesACabinetThatLacksAFile)
{
    const CString cabinet = FolderAbove(build.Original()) + L"\\Data1.cab";
    const CString kept = build.Folder() / L"kept.txt";
    WriteBytes(kept, "kept, as it was\r\n");
    std::vector<CabinetMember> members = {{L"INSTALLDIR_kept_txt", kept, 0}};
    WriteCabinet(cabinet, members, [](std::uint64_t) {});
    build.Merge(L"First", FIRST_PATCH_CODE);
    ExpectMergeRefused(
        build, {L"its cabinet \"Data1.cab\" lacks the file \"SUPPORTDIR_second_txt\". Get the media again."});
}

TEST_F(MergeRefusalTest, RefusesADatabaseThatLacksItsCabinet)
{
    MergeBuild inside(L"inside");
    EditOriginal(inside, L"DELETE FROM `_Streams` WHERE `Name`='Data1.cab'");
    inside.Merge(L"First", FIRST_PATCH_CODE);
    ExpectMergeRefused(inside, {L"its database lacks the cabinet \"Data1.cab\". Get the media again."});
}

TEST_F(MergeRefusalTest, RefusesAFileThatLiesThereForTwo)
{
    MergeBuild loose(L"loose");
    EditOriginal(loose,
                 L"INSERT INTO `File` (`File`,`Component_`,`FileName`,`FileSize`,`Attributes`,`Sequence`) "
                 L"VALUES ('Twin','INSTALLDIR_replaced_txt','replaced.txt',1,8192,3)");
    loose.Merge(L"First", FIRST_PATCH_CODE);
    ExpectMergeRefused(loose, {L"its files \"INSTALLDIR_replaced_txt\" and \"Twin\" lie as one"});
}

TEST_F(MergeRefusalTest, RefusesAnImageThatIsMarkedAsCompressed)
{
    SetWordCount(build.Original(), ADMIN_IMAGE | COMPRESSED);
    build.Merge(L"First", FIRST_PATCH_CODE);
    ExpectMergeRefused(build, {L"into Patch Test", L"marked as compressed",
                               L"append them instead of merging them, or remove them from the list."});
}

} // namespace
