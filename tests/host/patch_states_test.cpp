// What the host knows of a product's patches, from page to page and from one wizard to the next.
#include "builder/deployment_place.h"
#include "tests/host/patched_media.h"

#include "installer/patch_summary.h"

namespace {

class PatchesOnHostTest : public PatchedProductTest
{
protected:
    CString InImage(const wchar_t* file, const wchar_t* name = L"North") const
    {
        return location + name + L"\\Image\\" + BELOW_IMAGE + file;
    }

    void BuildAppended(const std::vector<CString>& files)
    {
        Choose(Start(), files, Setup::PATCHSTATE_APPEND);
        Build();
    }

    void BuildMerged(const std::vector<CString>& files)
    {
        Choose(Start(), files, Setup::PATCHSTATE_MERGE);
        Build();
        host.reset();
    }

    static CString VersionOf(CProduct& product)
    {
        wchar_t buffer[50] = {};
        int size = 50;
        return product.GetMsiProperty(L"ProductVersion", buffer, &size) ? CString(buffer)
                                                                        : CString(L"(none)");
    }
};

} // namespace

TEST_F(PatchesOnHostTest, ANewProductHasNoPatchesAndNoChoice)
{
    CProduct& product = Start();
    EXPECT_EQ(product.GetMsiPatchState(), Setup::PATCHSTATE_NONE);
    EXPECT_EQ(product.GetPatchState(), Setup::PATCHSTATE_NONE);
    EXPECT_EQ(product.m_patchFlag, -1);
    EXPECT_FALSE(product.m_bPatchDownloaded);
    EXPECT_TRUE(product.m_patchFiles.empty());
    EXPECT_FALSE(product.IsPatchMerged(PatchFixture(L"beside\\First.msp")));
}

TEST_F(PatchesOnHostTest, AChoiceIsThereAgainWhenTheBeginPageIsLeftOnceMore)
{
    const CString file = CopyOf(L"beside\\First.msp", L"first.msp");
    CProduct& product = Start();
    Choose(product, {file}, Setup::PATCHSTATE_MERGE);
    Begin(host->GetSetupManager(), Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), L"South");
    ASSERT_EQ(&FirstOf(*host), &product);
    EXPECT_EQ(product.GetPatchState(), Setup::PATCHSTATE_MERGE);
    EXPECT_EQ(product.m_patchFiles, std::vector<CString>{file});
    EXPECT_EQ(product.m_patchFlag, 2);
}

TEST_F(PatchesOnHostTest, AppendedPatchesComeBackFromTheImageWithTheChoiceLocked)
{
    BuildAppended({CopyOf(L"beside\\First.msp", L"first.msp"), CopyOf(L"beside\\Second.msp", L"second.msp")});
    for (const auto mode : {Setup::SETUPMODE_MODIFY_DEPLOYMENT, Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT}) {
        CProduct& product = OpenAgain(mode, mode == Setup::SETUPMODE_MODIFY_DEPLOYMENT ? L"North" : L"South");
        EXPECT_EQ(product.GetMsiPatchState(), Setup::PATCHSTATE_APPENDED) << mode;
        EXPECT_EQ(product.GetPatchState(), Setup::PATCHSTATE_APPEND) << mode;
        EXPECT_EQ(product.m_patchFlag, 2) << mode;
        EXPECT_EQ(product.m_patchFiles,
                  (std::vector<CString>{InImage(L"first.msp"), InImage(L"second.msp")}));
        EXPECT_FALSE(product.IsPatchMerged(product.m_patchFiles[0])) << mode;
        EXPECT_EQ(host->GetProducts()[1]->GetMsiPatchState(), Setup::PATCHSTATE_NONE) << mode;
    }
}

TEST_F(PatchesOnHostTest, TheFileKnowsAPatchByCodeAndContent)
{
    const CString file = CopyOf(L"Superseding.msp", L"newer.msp");
    BuildAppended({file});
    const StoredProduct stored = ReadBuilt().products[0];
    ASSERT_EQ(stored.patches.size(), 1u);
    EXPECT_EQ(stored.patches[0].file, BELOW_IMAGE + L"newer.msp");
    EXPECT_FALSE(stored.patches[0].merged);
    EXPECT_EQ(stored.patches[0].code, CString(SUPERSEDING_PATCH_CODE)) << "with the codes that it replaces";
    EXPECT_EQ(stored.patches[0].sha256.GetLength(), 64);
    EXPECT_EQ(stored.patchState, Setup::PATCHSTATE_APPEND);
    EXPECT_EQ(stored.includePatch, 2);
}

TEST_F(PatchesOnHostTest, MergedPatchesComeBackAsMergedAndStayKnown)
{
    BuildMerged({CopyOf(L"beside\\First.msp", L"first.msp")});
    for (const auto mode : {Setup::SETUPMODE_MODIFY_DEPLOYMENT, Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT}) {
        CProduct& product = OpenAgain(mode, mode == Setup::SETUPMODE_MODIFY_DEPLOYMENT ? L"North" : L"South");
        EXPECT_EQ(product.GetMsiPatchState(), Setup::PATCHSTATE_MERGED) << mode;
        EXPECT_EQ(product.GetPatchState(), Setup::PATCHSTATE_MERGED) << mode;
        EXPECT_EQ(product.m_patchFiles, std::vector<CString>{InImage(L"first.msp")}) << mode;
        EXPECT_TRUE(product.IsPatchMerged(InImage(L"first.msp"))) << mode;
    }
}

// The page leaves the state at 5 then.
TEST_F(PatchesOnHostTest, PatchesAddedToMergedOnesAreMergedTooAndTheDeploymentOpensAgain)
{
    BuildMerged({CopyOf(L"beside\\First.msp", L"first.msp")});
    CProduct& product = OpenAgain();
    EXPECT_EQ(VersionOf(product), CString(L"1.0.1"));
    const CString second = CopyOf(L"beside\\Second.msp", L"second.msp");
    EXPECT_FALSE(product.IsPatchMerged(second));
    product.m_patchFiles.push_back(second);
    Build();
    CProduct& again = OpenAgain();
    EXPECT_EQ(VersionOf(again), CString(L"1.0.2"));
    EXPECT_EQ(again.GetMsiPatchState(), Setup::PATCHSTATE_MERGED);
    EXPECT_EQ(again.GetPatchState(), Setup::PATCHSTATE_MERGED);
    EXPECT_EQ(again.m_patchFiles, (std::vector<CString>{InImage(L"first.msp"), InImage(L"second.msp")}));
    for (const CString& file : again.m_patchFiles) {
        EXPECT_TRUE(again.IsPatchMerged(file)) << Utf8(file);
    }
}

TEST_F(PatchesOnHostTest, OfAMergedPatchAndAnOlderOneOnlyTheNewerOneIsKnownAsMerged)
{
    Choose(Start(), {CopyOf(L"beside\\First.msp", L"first.msp"), CopyOf(L"Superseding.msp", L"newer.msp")},
           Setup::PATCHSTATE_MERGE);
    Build();
    EXPECT_EQ(PatchesInImage(), std::vector<CString>{L"newer.msp"});
    CProduct& product = OpenAgain();
    EXPECT_EQ(product.m_patchFiles, std::vector<CString>{InImage(L"newer.msp")});
    EXPECT_TRUE(product.IsPatchMerged(InImage(L"newer.msp")));
    EXPECT_FALSE(product.IsPatchMerged(PatchFixture(L"beside\\First.msp")));
}

TEST_F(PatchesOnHostTest, ADownloadThatWasMergedIsFoundInTheImage)
{
    CProduct& product = Start();
    Choose(product, {Download(product, L"beside\\First.msp", L"first.msp")}, Setup::PATCHSTATE_MERGE, 1);
    Build();
    for (int build = 0; build < 2; ++build) {
        CProduct& again = OpenAgain();
        EXPECT_TRUE(again.m_bPatchDownloaded);
        EXPECT_EQ(again.GetDownloadedMSPPath(), InImage(L"first.msp"));
        EXPECT_TRUE(again.IsPatchMerged(again.GetDownloadedMSPPath()));
        Build();
    }
}

// A new deployment from the media of another one has that one's database, whatever was chosen for it.
TEST_F(PatchesOnHostTest, ANewDeploymentFromAnImageKnowsWhatIsMergedThere)
{
    BuildMerged({CopyOf(L"beside\\First.msp", L"first.msp")});
    CProduct& product = OpenAgain(Setup::SETUPMODE_CREATE_DEPLOYMENT, L"South");
    EXPECT_EQ(product.GetMsiPatchState(), Setup::PATCHSTATE_MERGED);
    EXPECT_EQ(product.GetPatchState(), Setup::PATCHSTATE_NONE);
    EXPECT_EQ(product.m_patchFlag, -1);
    EXPECT_EQ(product.m_patchFiles, std::vector<CString>{InImage(L"first.msp")});
    EXPECT_TRUE(product.IsPatchMerged(InImage(L"first.msp")));
    Build();
    EXPECT_EQ(PatchesInImage(L"South"), std::vector<CString>{L"first.msp"});
    const StoredProduct stored = ReadBuilt(L"South").products[0];
    ASSERT_EQ(stored.patches.size(), 1u);
    EXPECT_TRUE(stored.patches[0].merged);
}

TEST_F(PatchesOnHostTest, ANewDeploymentFromAnImageWithAppendedPatchesHasNone)
{
    BuildAppended({CopyOf(L"beside\\First.msp", L"first.msp")});
    CProduct& product = OpenAgain(Setup::SETUPMODE_CREATE_DEPLOYMENT, L"South");
    EXPECT_EQ(product.GetMsiPatchState(), Setup::PATCHSTATE_NONE);
    EXPECT_TRUE(product.m_patchFiles.empty());
    Build();
    EXPECT_FALSE(IsFolder(location + L"South\\Image\\" + BELOW_IMAGE));
    EXPECT_TRUE(ReadBuilt(L"South").products[0].patches.empty());
}

TEST_F(PatchesOnHostTest, AMergedPatchIsKnownByCodeAndContentWhateverItsFileIsCalled)
{
    BuildMerged({CopyOf(L"beside\\First.msp", L"first.msp")});
    CProduct& product = OpenAgain();
    EXPECT_TRUE(product.IsPatchMerged(CopyOf(L"SameCode.msp", L"called otherwise.msp")));
    EXPECT_FALSE(product.IsPatchMerged(CopyOf(L"beside\\Second.msp", L"elsewhere\\first.msp")))
        << "another patch of its name";
    const CString longer = CopyOf(L"SameCode.msp", L"longer.msp");
    std::string bytes;
    ASSERT_EQ(ReadWholeFile(longer, 1u << 24, bytes), 0u);
    WriteFileBytes(longer, bytes + std::string(4096, '\0'));
    CString code;
    ASSERT_TRUE(ReadPatchCode(longer, code));
    EXPECT_EQ(code, CString(FIRST_PATCH_CODE));
    EXPECT_FALSE(product.IsPatchMerged(longer)) << "other content of its code";
    for (const wchar_t* none : {L"CutOff.msp", L"Empty.msp", L"NoPatch.msp"}) {
        EXPECT_FALSE(product.IsPatchMerged(PatchFixture(none))) << Utf8(none);
    }
    EXPECT_FALSE(product.IsPatchMerged(plain + L"missing.msp"));
    EXPECT_FALSE(product.IsPatchMerged(CString()));
}

TEST_F(PatchesOnHostTest, AFileThatChangesIsLookedAtAnew)
{
    const CString other = CopyOf(L"beside\\Second.msp", L"other.msp");
    BuildMerged({CopyOf(L"beside\\First.msp", L"first.msp")});
    CProduct& product = OpenAgain();
    EXPECT_FALSE(product.IsPatchMerged(other));
    ASSERT_TRUE(CopyFileW(PatchFixture(L"beside\\First.msp"), other, FALSE));
    EXPECT_TRUE(product.IsPatchMerged(other));
    ASSERT_TRUE(DeleteFileW(other));
    EXPECT_FALSE(product.IsPatchMerged(other));
}

// What is merged can't be taken out again, so it stays known when somebody deletes the file.
TEST_F(PatchesOnHostTest, AMergedPatchWithoutItsFileStaysMerged)
{
    BuildMerged({CopyOf(L"beside\\First.msp", L"first.msp")});
    ASSERT_TRUE(DeleteFileW(InImage(L"first.msp")));
    CProduct& product = OpenAgain();
    EXPECT_EQ(product.GetMsiPatchState(), Setup::PATCHSTATE_MERGED);
    EXPECT_TRUE(product.m_patchFiles.empty());
    EXPECT_TRUE(product.IsPatchMerged(PatchFixture(L"beside\\First.msp")));
    Build();
    const StoredProduct stored = ReadBuilt().products[0];
    ASSERT_EQ(stored.patches.size(), 1u);
    EXPECT_EQ(stored.patches[0], (StoredPatch{L"", true, FIRST_PATCH_CODE, stored.patches[0].sha256}));
    OpenAgain();
    EXPECT_TRUE(FirstOf(*host).IsPatchMerged(PatchFixture(L"beside\\First.msp")));
}

// The page has a list without them when a download replaces the list.
TEST_F(PatchesOnHostTest, MergedPatchesStayKnownWhenTheyFallOffTheList)
{
    BuildMerged({CopyOf(L"beside\\First.msp", L"first.msp")});
    for (const auto state : {Setup::PATCHSTATE_NONE, Setup::PATCHSTATE_MERGE_EMPTY}) {
        Choose(OpenAgain(), {}, state, 0);
        Build();
        const StoredProduct stored = ReadBuilt().products[0];
        ASSERT_EQ(stored.patches.size(), 1u) << state;
        EXPECT_TRUE(stored.patches[0].merged) << state;
        EXPECT_EQ(PatchesInImage(), std::vector<CString>{L"first.msp"}) << state;
        CProduct& product = OpenAgain();
        EXPECT_EQ(product.GetMsiPatchState(), Setup::PATCHSTATE_MERGED) << state;
        EXPECT_EQ(product.GetPatchState(), state);
        EXPECT_TRUE(product.IsPatchMerged(InImage(L"first.msp"))) << state;
    }
}

TEST_F(PatchesOnHostTest, MergingWithAnEmptyListIsStillChosenAfterARestart)
{
    Choose(Start(), {}, Setup::PATCHSTATE_MERGE_EMPTY);
    Build();
    for (const auto mode : {Setup::SETUPMODE_MODIFY_DEPLOYMENT, Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT}) {
        CProduct& product = OpenAgain(mode, mode == Setup::SETUPMODE_MODIFY_DEPLOYMENT ? L"North" : L"South");
        EXPECT_EQ(product.GetPatchState(), Setup::PATCHSTATE_MERGE_EMPTY) << mode;
        EXPECT_EQ(product.GetMsiPatchState(), Setup::PATCHSTATE_NONE) << mode;
        EXPECT_EQ(product.m_patchFlag, 2) << mode;
    }
}

TEST_F(PatchesOnHostTest, EachIncludeChoiceComesBack)
{
    for (const int choice : {0, 1, 2, -1}) {
        CProduct& product = choice == 0 ? Start() : OpenAgain();
        if (choice == 1) {
            Choose(product, {Download(product, L"beside\\First.msp", L"first.msp")},
                   Setup::PATCHSTATE_APPEND);
        }
        product.SetIncludeSP(choice);
        Build();
        EXPECT_EQ(OpenAgain().m_patchFlag, choice);
    }
}

// The page would offer a download that it can't name, and let nobody go on.
TEST_F(PatchesOnHostTest, TheChoiceOfADownloadIsOpenAgainWhenItsFileIsNotThere)
{
    CProduct& unfinished = Start();
    unfinished.SetIncludeSP(1); // left before anything was downloaded
    Build();
    EXPECT_EQ(OpenAgain().m_patchFlag, -1);
    Choose(FirstOf(*host), {Download(FirstOf(*host), L"beside\\First.msp", L"first.msp")},
           Setup::PATCHSTATE_APPEND, 1);
    Build();
    host.reset();
    ASSERT_TRUE(DeleteFileW(InImage(L"first.msp")));
    CProduct& lost = OpenAgain();
    EXPECT_EQ(lost.m_patchFlag, -1);
    EXPECT_FALSE(lost.m_bPatchDownloaded);
}

// Without the appended ones locked, they would be merged without anybody's choice.
TEST_F(PatchesOnHostTest, PatchesAppendedToMergedOnesComeBackAsAppended)
{
    BuildMerged({CopyOf(L"beside\\First.msp", L"first.msp")});
    CProduct& product = OpenAgain();
    Choose(product, {product.m_patchFiles[0], CopyOf(L"beside\\Second.msp", L"second.msp")},
           Setup::PATCHSTATE_APPEND);
    Build();
    CProduct& again = OpenAgain(Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT, L"South");
    EXPECT_EQ(again.GetMsiPatchState(), Setup::PATCHSTATE_APPENDED);
    EXPECT_EQ(again.GetPatchState(), Setup::PATCHSTATE_APPEND);
    EXPECT_EQ(OpenAgain(Setup::SETUPMODE_CREATE_DEPLOYMENT, L"West").GetMsiPatchState(),
              Setup::PATCHSTATE_MERGED)
        << "a new deployment has the database alone";
}

// A file from before patches were known by code and content.
TEST_F(PatchesOnHostTest, PatchesOfAnEarlierFileAreFoundAndKnownAfterTheNextBuild)
{
    BuildAppended({CopyOf(L"beside\\First.msp", L"first.msp")});
    host.reset();
    const CString entry = location + L"North\\" + DEPLOYMENT_FILE;
    CString text = ReadText(entry);
    const StoredPatch patch = ReadBuilt().products[0].patches.at(0);
    ASSERT_EQ(text.Replace(L" code=\"" + patch.code + L"\" sha256=\"" + patch.sha256 + L"\"", L""), 1);
    ASSERT_EQ(text.Replace(L"<Deployment version=\"2\"", L"<Deployment version=\"1\""), 1);
    WriteText(entry, text);
    CProduct& product = OpenAgain();
    EXPECT_EQ(product.GetMsiPatchState(), Setup::PATCHSTATE_APPENDED);
    EXPECT_EQ(product.m_patchFiles, std::vector<CString>{InImage(L"first.msp")});
    Build();
    EXPECT_EQ(ReadBuilt().products[0].patches.at(0), patch);
}

// Deployment.xml is anybody's: taking such a patch off the list would take the package along.
TEST_F(PatchesOnHostTest, APatchThatLiesOutsideOfTheProductsFolderOfPatchesIsNone)
{
    BuildAppended({CopyOf(L"beside\\First.msp", L"first.msp")});
    host.reset();
    for (const wchar_t* other :
         {L"x64\\Patch\\PatchTest.msi", L"x64\\Patch\\Data1.cab", L"x64\\Zolt\\Zolt.msi", L"Setup.xml",
          L"x64\\Patch\\ServicePacks\\missing.msp"}) {
        DeploymentFile file = ReadBuilt();
        file.products[0].patches.at(0).file = other;
        WriteText(location + L"North\\" + DEPLOYMENT_FILE, WriteDeploymentFile(file));
        CProduct& product = OpenAgain();
        EXPECT_TRUE(product.m_patchFiles.empty()) << Utf8(other);
        EXPECT_EQ(product.GetMsiPatchState(), Setup::PATCHSTATE_NONE) << Utf8(other);
        const CString log = ReadText(work + L"Setup.log");
        EXPECT_GE(log.Find(CString(L"\"") + other + L"\" of \"Patch Test\""), 0) << Utf8(log);
        host.reset();
    }
    OpenAgain(Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT, L"South");
    Build();
    EXPECT_TRUE(IsFile(location + L"South\\Image\\x64\\Patch\\Data1.cab"));
}
