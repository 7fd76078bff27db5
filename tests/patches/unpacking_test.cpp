// A self-extracting patch: how the program is started, that the page answers meanwhile, and what becomes of one that writes nothing or
// can't be started.
#include "tests/patches/patch_download.h"

namespace {

constexpr wchar_t LOG[] = L"ROLLOUT_TEST_EXTRACTOR_LOG";
constexpr wchar_t EVENT[] = L"ROLLOUT_TEST_EXTRACTOR_EVENT";
constexpr wchar_t PAYLOAD[] = L"ROLLOUT_TEST_EXTRACTOR_PAYLOAD";

class PatchUnpacking : public PatchDownload
{
protected:
    PatchUnpacking()
    {
        m_program = BytesOf(ProgramFolder() + L"patch_libraries\\patch_self_extractor.exe");
        SetEnvironmentVariableW(LOG, folder / L"command line");
        SetEnvironmentVariableW(PAYLOAD, folder / L"files\\good.msp");
        WithOffer(server->Url(L"/packs/ZoltSP1.exe"));
        server->Serve(L"/packs/ZoltSP1.exe", ServeBody(m_program));
    }
    void TearDown() override
    {
        for (const wchar_t* name : {LOG, EVENT, PAYLOAD}) {
            SetEnvironmentVariableW(name, nullptr);
        }
        PatchDownload::TearDown();
    }
    CString CommandLine() const
    {
        const std::string bytes = BytesOf(folder / L"command line");
        return CString(reinterpret_cast<const wchar_t*>(bytes.data()),
                       static_cast<int>(bytes.size() / sizeof(wchar_t)));
    }
    CString Unpacked() const { return DownloadFolder() + L"ZoltSP1.msp"; }

    std::string m_program;
};
INSTANTIATE_BOTH_SHAPES(PatchUnpacking);

} // namespace

TEST_P(PatchUnpacking, AProgramWritesThePatchBesideItselfAndStays)
{
    Act();
    AwaitStage(L"downloaded");
    ExpectDownloads({L"ZoltSP1.exe", L"ZoltSP1.msp"});
    GoNext();
    EXPECT_EQ(product.m_patchFiles, Lines{Unpacked()});
    EXPECT_EQ(product.patchPath, Unpacked());
    EXPECT_EQ(BytesOf(Unpacked()), good);
}

TEST_P(PatchUnpacking, TheCommandNamesProgramSwitchAndTarget)
{
    const CString plain = ProgramFolder() + L"patch_downloads"; // without a blank, unlike the test's folder
    ASSERT_EQ(plain.Find(L' '), -1);
    host.manager.m_strDeploymentFolder = plain;
    Act();
    AwaitStage(L"downloaded");
    GoNext();
    const CString start = plain + L"\\ServicePacks\\ZoltSP1.";
    EXPECT_EQ(CommandLine(), start + L"exe /e " + start + L"msp");
    RemoveTree(plain);
}

TEST_P(PatchUnpacking, PathsWithBlanksAreQuoted)
{
    host.manager.m_strDeploymentFolder = folder.AddFolder(L"a b & c");
    Act();
    AwaitStage(L"downloaded");
    GoNext();
    const CString start = L"\"" + (folder / L"a b & c\\ServicePacks\\ZoltSP1.");
    EXPECT_EQ(CommandLine(), start + L"exe\" /e " + start + L"msp\"");
    EXPECT_EQ(product.m_patchFiles, Lines{folder / L"a b & c\\ServicePacks\\ZoltSP1.msp"});
}

TEST_P(PatchUnpacking, AnEndingInCapitalsIsAProgramToo)
{
    WithOffer(server->Url(L"/packs/ZOLTSP1.EXE"));
    server->Serve(L"/packs/ZOLTSP1.EXE", ServeBody(m_program));
    Act();
    AwaitStage(L"downloaded");
    GoNext();
    EXPECT_EQ(product.m_patchFiles, Lines{DownloadFolder() + L"ZOLTSP1.msp"});
}

TEST_P(PatchUnpacking, ThePageAnswersWhileTheProgramRuns)
{
    const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, L"RolloutTestExtractor");
    SetEnvironmentVariableW(EVENT, L"RolloutTestExtractor");
    Act();
    Await(L"the program has not started", [this] { return FileExists(folder / L"command line"); });
    Look([this] { // played from the page's own wait
        RedrawWindow(Page(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
        EXPECT_FALSE(FileExists(Unpacked()));
    });
    Look([event] { SetEvent(event); });
    AwaitStage(L"downloaded");
    Await(L"nothing was unpacked", [this] { return product.m_bPatchDownloaded; });
    GoNext();
    CloseHandle(event);
    EXPECT_EQ(product.m_patchFiles, Lines{Unpacked()});
}

TEST_P(PatchUnpacking, AProgramThatWritesNothingShowsItOnNextAlone)
{
    SetEnvironmentVariableW(PAYLOAD, nullptr);
    WithListed({AddPatch(L"first.msp", 5)});
    Act();
    AwaitStage(L"downloaded");
    ExpectDownloads({L"ZoltSP1.exe"});
    GoNext();
    EXPECT_EQ(product.m_patchFiles, Lines());
    EXPECT_EQ(product.patchPath, Unpacked());
    EXPECT_EQ(StateCalls(), Lines{L"Product.SetPatchState(0)"});
}

TEST_P(PatchUnpacking, AProgramThatCannotBeStartedIsPassedOver)
{
    server->Serve(L"/packs/ZoltSP1.exe", ServeBody("MZ, and nothing that could run"));
    Act();
    AwaitStage(L"downloaded");
    GoNext();
    EXPECT_EQ(product.m_patchFiles, Lines());
    EXPECT_EQ(product.patchPath, Unpacked());
}

TEST_P(PatchUnpacking, AProgramWhoseContentsAreUnknownIsNotStarted)
{
    CString words;
    onCheck = [](const CString&, const CString&) { return static_cast<unsigned int>(ERROR_CRC); };
    Act();
    AwaitFailure(L"connect failed", words);
    ExpectDownloads({});
    Look([this] { EXPECT_FALSE(FileExists(folder / L"command line")); });
    ShowAndGoBack();
    EXPECT_EQ(words, ResourceText(IDS_PATCH_CHANGED, DownloadFolder() + L"ZoltSP1.exe"));
}

TEST_P(PatchUnpacking, AnUnpackedPatchWhoseContentsAreUnknownLeavesNothing)
{
    CString words;
    onCheck = [](const CString&, const CString& file) {
        return file.Right(4) == L".msp" ? static_cast<unsigned int>(ERROR_CRC) : 0u;
    };
    Act();
    AwaitFailure(L"connect failed", words);
    ExpectDownloads({});
    ShowAndGoBack();
    EXPECT_EQ(words, ResourceText(IDS_PATCH_CHANGED, Unpacked()));
    EXPECT_FALSE(product.m_bPatchDownloaded);
}

TEST_P(PatchUnpacking, AnotherEndingIsNoPatch)
{
    WithOffer(server->Url(L"/packs/ZoltSP1.zip"));
    server->Serve(L"/packs/ZoltSP1.zip", ServeBody(good));
    WithListed({AddPatch(L"first.msp", 5)});
    Act();
    AwaitStage(L"downloaded");
    GoNext();
    EXPECT_EQ(product.m_patchFiles, Lines());
    EXPECT_EQ(product.patchPath, CString());
}
