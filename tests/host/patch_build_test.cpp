// What a build makes of a product's patches: the image, the commands, and what it refuses.
#include "tests/host/patched_media.h"

#include "base/path_text.h"

namespace {

class PatchBuildTest : public PatchedProductTest
{
protected:
    CString First(const CString& name = L"first.msp") { return CopyOf(L"beside\\First.msp", name); }
    CString Second(const CString& name = L"second.msp") { return CopyOf(L"beside\\Second.msp", name); }

    // The argument that names the patches, from the script that installs.
    CString PatchArgument(const wchar_t* name = L"North") const
    {
        const CString script = ReadText(location + name + L"\\Install.cmd");
        const int start = script.Find(L" PATCH=\"");
        if (start < 0) {
            return CString();
        }
        const int end = script.Find(L'"', start + 8);
        CString argument = script.Mid(start + 8, end - start - 8);
        argument.Replace(L"%~dp0Image\\" + BELOW_IMAGE, L"*\\");
        return argument;
    }

    void ExpectRefused(const std::vector<CString>& files, unsigned int code,
                       const std::vector<CString>& words,
                       Setup::tagPATCHSTATE state = Setup::PATCHSTATE_APPEND)
    {
        Choose(FirstOf(*host), files, state);
        ExpectRefusedNow(code, words);
    }

    void ExpectRefusedNow(unsigned int code, const std::vector<CString>& words)
    {
        const CString message = RefusedBuild(code);
        for (const CString& word : words) {
            EXPECT_GE(message.Find(word), 0) << Utf8(word) << " is missing in " << Utf8(message);
        }
    }
};

const CString PRODUCT = L"of \"Patch Test\"";

} // namespace

TEST_F(PatchBuildTest, AppendedPatchesLieInTheImageAndAreChainedByFullPath)
{
    Choose(Start(), {First(L"one & 100% (1).msp"), Second(L"two.msp")}, Setup::PATCHSTATE_APPEND);
    Build();
    EXPECT_EQ(PatchesInImage(), (std::vector<CString>{L"one & 100% (1).msp", L"two.msp"}));
    EXPECT_EQ(PatchArgument(), CString(L"*\\one & 100%% (1).msp;*\\two.msp"));
    const CString notes = ReadText(location + L"North\\ReadMe.txt");
    for (const CString& line :
         {L"PATCH=\"" + location + L"North\\Image\\" + BELOW_IMAGE + L"one & 100% (1).msp;" + location +
              L"North\\Image\\" + BELOW_IMAGE + L"two.msp\"",
          CString(L"    Patch Test First\r\n      Patch code:   ") + FIRST_PATCH_CODE +
              L"\r\n      File:         Image\\" + BELOW_IMAGE +
              L"one & 100% (1).msp\r\n    Patch Test Second\r\n"}) {
        EXPECT_GE(notes.Find(line), 0) << Utf8(line) << " is missing in\n" << Utf8(notes);
    }
}

// The installer of a workstation skips a patch for a later version without a word.
TEST_F(PatchBuildTest, PatchesAreChainedInTheOrderOfTheirVersions)
{
    Choose(Start(), {Second(), First(), CopyOf(L"beside\\Independent.msp", L"independent.msp")},
           Setup::PATCHSTATE_APPEND);
    Build();
    EXPECT_EQ(PatchArgument(), CString(L"*\\independent.msp;*\\first.msp;*\\second.msp"));
    CProduct& again = OpenAgain();
    ASSERT_EQ(again.m_patchFiles.size(), 3u);
    EXPECT_EQ(LastName(again.m_patchFiles[0]), CString(L"independent.msp"));
}

TEST_F(PatchBuildTest, FilesOfOneNameFromTwoFoldersGetNumbers)
{
    Choose(Start(),
           {First(L"a\\sp.msp"), CopyOf(L"beside\\Second.msp", L"b\\SP.msp"),
            CopyOf(L"beside\\Independent.msp", L"c\\sp.msp")},
           Setup::PATCHSTATE_APPEND);
    Build();
    EXPECT_EQ(PatchesInImage(), (std::vector<CString>{L"sp (2).msp", L"SP (3).msp", L"sp.msp"}));
    EXPECT_EQ(PatchArgument(), CString(L"*\\sp.msp;*\\sp (2).msp;*\\SP (3).msp"));
    EXPECT_EQ(ReadBuilt().products[0].patches.at(0).code, CString(INDEPENDENT_PATCH_CODE));
    EXPECT_EQ(OpenAgain().m_patchFiles.size(), 3u);
}

// Nobody can rename what was downloaded.
TEST_F(PatchBuildTest, ASemicolonInANameBecomesAnUnderscoreInTheImage)
{
    Choose(Start(), {First(L"a;b.msp")}, Setup::PATCHSTATE_APPEND);
    Build();
    EXPECT_EQ(PatchesInImage(), std::vector<CString>{L"a_b.msp"});
    EXPECT_EQ(PatchArgument(), CString(L"*\\a_b.msp"));
}

TEST_F(PatchBuildTest, AFileOfTheMediaInTheFolderOfPatchesStaysAndKeepsItsName)
{
    MakePatchedMedia(plain + L"media\\");
    WriteFileBytes(plain + L"media\\" + BELOW_IMAGE + L"first.msp", "the maker's");
    Begin(Open(plain + L"media"), Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), L"North");
    Choose(FirstOf(*host), {First()}, Setup::PATCHSTATE_APPEND);
    Build();
    EXPECT_EQ(PatchesInImage(), (std::vector<CString>{L"first (2).msp", L"first.msp"}));
    EXPECT_EQ(PatchArgument(), CString(L"*\\first (2).msp"));
    Choose(OpenAgain(), {}, Setup::PATCHSTATE_NONE, 0);
    Build();
    EXPECT_EQ(PatchesInImage(), std::vector<CString>{L"first.msp"});
    EXPECT_EQ(ReadText(location + L"North\\Image\\" + BELOW_IMAGE + L"first.msp"), CString(L"the maker's"));
}

TEST_F(PatchBuildTest, TwoPackagesAtTheRootOfTheirMediaShareAFolderOfPatchesWithoutClashes)
{
    CopyPatchedPackage(plain + L"media\\", L"inside");
    Begin(Open(plain + L"media\\PatchTest.msi"), Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), L"North");
    Choose(FirstOf(*host), {CopyOf(L"inside\\First.msp", L"first.msp")}, Setup::PATCHSTATE_APPEND);
    Build();
    const CString script = ReadText(location + L"North\\Install.cmd");
    EXPECT_GE(script.Find(L"\" PATCH=\"%~dp0Image\\ServicePacks\\first.msp\""), 0) << Utf8(script);
    EXPECT_EQ(ReadBuilt().products[0].patches.at(0).file, CString(L"ServicePacks\\first.msp"));
    Begin(Open(location + L"North"), Setup::SETUPMODE_MODIFY_DEPLOYMENT, L"North", L"North");
    EXPECT_EQ(FirstOf(*host).m_patchFiles,
              std::vector<CString>{location + L"North\\Image\\ServicePacks\\first.msp"});
    Choose(FirstOf(*host), {}, Setup::PATCHSTATE_NONE, 0);
    Build();
    EXPECT_FALSE(IsFolder(location + L"North\\Image\\ServicePacks"));
}

TEST_F(PatchBuildTest, WithoutPatchesChosenNothingOfTheListGoesIn)
{
    for (const auto state : {Setup::PATCHSTATE_NONE, Setup::PATCHSTATE_MERGE_EMPTY}) {
        CProduct& product = state == Setup::PATCHSTATE_NONE ? Start() : OpenAgain();
        const CString file = First(NumberText(state) + L".msp");
        Choose(product, {file}, state, 0);
        Build();
        EXPECT_EQ(product.m_patchFiles, std::vector<CString>{file}) << "the page's list stays as it was";
        EXPECT_TRUE(ReadBuilt().products[0].patches.empty());
        EXPECT_FALSE(IsFolder(location + L"North\\Image\\" + BELOW_IMAGE));
        EXPECT_EQ(PatchArgument(), CString());
        EXPECT_TRUE(OpenAgain().m_patchFiles.empty());
        host.reset();
    }
}

TEST_F(PatchBuildTest, APatchThatIsTakenOffTheListLeavesTheImage)
{
    Choose(Start(), {First(), Second()}, Setup::PATCHSTATE_APPEND);
    Build();
    CProduct& product = OpenAgain();
    Choose(product, {product.m_patchFiles[0]}, Setup::PATCHSTATE_APPEND);
    Build();
    EXPECT_EQ(PatchesInImage(), std::vector<CString>{L"first.msp"});
    EXPECT_EQ(PatchArgument(), CString(L"*\\first.msp"));
    Choose(OpenAgain(), {}, Setup::PATCHSTATE_NONE, 0);
    Build();
    EXPECT_FALSE(IsFolder(location + L"North\\Image\\" + BELOW_IMAGE));
    EXPECT_EQ(PatchArgument(), CString());
    EXPECT_EQ(OpenAgain().GetMsiPatchState(), Setup::PATCHSTATE_NONE);
}

TEST_F(PatchBuildTest, APatchIsReplacedByAnotherOneOfItsNameAndOneIsAdded)
{
    Choose(Start(), {First(L"sp.msp")}, Setup::PATCHSTATE_APPEND);
    Build();
    const CString other = CopyOf(L"NoMetadata.msp", L"elsewhere\\sp.msp");
    for (const auto mode : {Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT, Setup::SETUPMODE_MODIFY_DEPLOYMENT}) {
        const wchar_t* name = mode == Setup::SETUPMODE_MODIFY_DEPLOYMENT ? L"North" : L"South";
        Choose(OpenAgain(mode, name), {other, Second(CString(name) + L".msp")}, Setup::PATCHSTATE_APPEND);
        Build();
        EXPECT_EQ(PatchesInImage(name).size(), 2u);
        EXPECT_EQ(ReadBuilt(name).products[0].patches.at(0).code, CString(NO_METADATA_PATCH_CODE));
        EXPECT_EQ(PatchArgument(name), CString(L"*\\sp.msp;*\\") + name + L".msp");
    }
}

TEST_F(PatchBuildTest, TheListedPatchesAreNamedForMergingAndNotForTheCommands)
{
    Choose(Start(), {Second(), First()}, Setup::PATCHSTATE_MERGE);
    Build();
    EXPECT_EQ(PatchArgument(), CString());
    const StoredProduct stored = ReadBuilt().products[0];
    ASSERT_EQ(stored.patches.size(), 2u);
    EXPECT_TRUE(stored.patches[0].merged && stored.patches[1].merged);
    EXPECT_EQ(stored.patches[0].code, CString(FIRST_PATCH_CODE)) << "in the order of their versions";
    EXPECT_EQ(PatchesInImage(), (std::vector<CString>{L"first.msp", L"second.msp"}));
    const CString notes = ReadText(location + L"North\\ReadMe.txt");
    EXPECT_GE(notes.Find(L"  Patches, merged into the package and its files:\r\n    Patch Test First\r\n"), 0)
        << Utf8(notes);
}

// Setup.xml and the package must say the same, or nobody could open the deployment again.
TEST_F(PatchBuildTest, TheVersionThatMergingLeadsToStandsInTheImageAndTheNotes)
{
    Choose(Start(), {First(), Second()}, Setup::PATCHSTATE_MERGE);
    Build();
    SetupDescription image;
    ASSERT_FALSE(ReadSetupFile(location + L"North\\Image\\Setup.xml", image));
    EXPECT_EQ(image.products.at(0).packages.at(0).strVersion, CString(L"1.0.2"));
    EXPECT_EQ(image.products.at(1).packages.at(0).strVersion, CString(L"27.0.0"));
    EXPECT_GE(ReadText(location + L"North\\ReadMe.txt").Find(L"version equal to or above 1.0.2"), 0);
}

// ---- what would end with success and the old files

TEST_F(PatchBuildTest, APatchThatIsGoneIsRefusedByName)
{
    Start();
    for (const auto state : {Setup::PATCHSTATE_APPEND, Setup::PATCHSTATE_MERGE}) {
        const CString file = First(NumberText(state) + L".msp");
        Choose(FirstOf(*host), {file}, state);
        ASSERT_TRUE(DeleteFileW(file));
        ExpectRefusedNow(ERROR_FILE_NOT_FOUND,
                         {L"\"" + file + L"\" " + PRODUCT, L"no longer there", L"remove it from the list"});
    }
}

TEST_F(PatchBuildTest, AFileThatIsNoPatchIsRefusedByName)
{
    Start();
    for (const wchar_t* fixture : {L"CutOff.msp", L"Empty.msp", L"NoPatch.msp", L"beside\\PatchTest.msi"}) {
        const CString file = CopyOf(fixture, LastName(fixture));
        for (const auto state : {Setup::PATCHSTATE_APPEND, Setup::PATCHSTATE_MERGE}) {
            ExpectRefused(
                {file}, ERROR_PATCH_PACKAGE_INVALID,
                {L"\"" + file + L"\" " + PRODUCT, L"isn't a patch", L"Remove the patch from the list"},
                state);
        }
    }
}

TEST_F(PatchBuildTest, APatchOfAnotherProductIsRefusedByName)
{
    Start();
    const CString file = CopyOf(L"OtherProduct.msp", L"other.msp");
    ExpectRefused({First(), file}, ERROR_PATCH_TARGET_NOT_FOUND,
                  {L"\"" + file + L"\" " + PRODUCT, L"doesn't apply: it is made for another product.",
                   L"Remove the patch from the list"});
    ExpectRefused({file}, ERROR_PATCH_TARGET_NOT_FOUND, {L"\"" + file + L"\" " + PRODUCT},
                  Setup::PATCHSTATE_MERGE);
}

// The installer here says yes when it is asked, and skips the patch when it installs.
TEST_F(PatchBuildTest, APatchForAVersionThatNoOtherLeadsToIsRefusedWithBothVersions)
{
    Start();
    const CString file = Second();
    ExpectRefused({file, CopyOf(L"beside\\Independent.msp", L"independent.msp")},
                  ERROR_PATCH_TARGET_NOT_FOUND,
                  {L"\"" + file + L"\" " + PRODUCT, L"made for version 1.0.1", L"has version 1.0.0"});
}

TEST_F(PatchBuildTest, TwoPatchesOfOneCodeAreRefusedByBothNames)
{
    Start();
    const CString one = First();
    const CString two = CopyOf(L"SameCode.msp", L"same.msp");
    ExpectRefused({one, two}, ERROR_ALREADY_EXISTS,
                  {L"\"" + two + L"\" " + PRODUCT, L"\"" + one + L"\"", FIRST_PATCH_CODE});
}

TEST_F(PatchBuildTest, APatchWithTheCodeOfAMergedOneIsRefusedByName)
{
    Choose(Start(), {First()}, Setup::PATCHSTATE_MERGE);
    Build();
    CProduct& product = OpenAgain(Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT, L"South");
    const CString other = CopyOf(L"SameCode.msp", L"other.msp");
    std::string bytes;
    ASSERT_EQ(ReadWholeFile(other, 1u << 24, bytes), 0u);
    WriteFileBytes(other, bytes + std::string(4096, '\0'));
    product.m_patchFiles.push_back(other);
    ExpectRefusedNow(ERROR_ALREADY_EXISTS, {L"\"" + other + L"\" " + PRODUCT, L"one that is merged already"});
}

// The older one, applied first, would raise the version that the newer one is made for.
TEST_F(PatchBuildTest, APatchThatAnotherOneStandsInForComesBehindIt)
{
    Choose(Start(), {First(), CopyOf(L"Superseding.msp", L"newer.msp")}, Setup::PATCHSTATE_APPEND);
    Build();
    EXPECT_EQ(PatchArgument(), CString(L"*\\newer.msp;*\\first.msp"));
}

TEST_F(PatchBuildTest, APatchThatChangedSinceItWasChosenIsRefusedByName)
{
    Start();
    const CString file = First();
    Choose(FirstOf(*host), {file}, Setup::PATCHSTATE_APPEND);
    ASSERT_TRUE(CopyFileW(PatchFixture(L"NoMetadata.msp"), file, FALSE));
    ExpectRefusedNow(ERROR_FILE_INVALID, {L"\"" + file + L"\" " + PRODUCT, L"has changed since it was chosen",
                                          L"remove the patch from the list and add it again"});
    Choose(FirstOf(*host), {file}, Setup::PATCHSTATE_APPEND); // the page has it judged again
    Build();
}

TEST_F(PatchBuildTest, APatchOfTheDeploymentThatChangedThereIsRefusedByName)
{
    Choose(Start(), {First()}, Setup::PATCHSTATE_APPEND);
    Build();
    host.reset();
    const CString file = location + L"North\\Image\\" + BELOW_IMAGE + L"first.msp";
    ASSERT_TRUE(CopyFileW(PatchFixture(L"NoMetadata.msp"), file, FALSE));
    CProduct& product = OpenAgain(Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT, L"South");
    Choose(product, product.m_patchFiles, Setup::PATCHSTATE_APPEND);
    ExpectRefusedNow(ERROR_FILE_INVALID,
                     {L"\"" + file + L"\" " + PRODUCT, L"has changed since it was chosen"});
}

TEST_F(PatchBuildTest, ADeploymentInAPlaceWithASemicolonTakesNoAppendedPatches)
{
    Choose(Start(L"North; East"), {First()}, Setup::PATCHSTATE_APPEND);
    ExpectRefusedNow(ERROR_BAD_PATHNAME, {L"North; East", L"semicolon", L"Choose another location or name"});
    Choose(FirstOf(*host), {First(L"again.msp")}, Setup::PATCHSTATE_NONE, 0);
    Build();
}
