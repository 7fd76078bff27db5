// The page is left in every way while the worker runs, and comes back while a worker of the page before still runs.
#include "tests/patches/patch_download.h"

#include "include/navigation.h"

namespace {

class LeavingDownload : public PatchDownload
{
protected:
    LeavingDownload() : steps(std::make_shared<CServedSteps>(std::string(64 * 1024, 'x')))
    {
        Offer(L"/packs/ZoltSP1.msp", ServeInSteps(steps));
    }
    // What the worker of a page that is gone still does; the next page is a whole one.
    void ExpectTheNextPageToWork()
    {
        steps->ReleaseAll();
        EXPECT_TRUE(server->WaitUntilIdle());
        Offer(L"/packs/again.msp", ServeBody(good));
        WithChoice(-1);
        product.m_bPatchDownloaded = false;
        Act();
        AwaitStage(L"downloaded");
        GoNext();
        EXPECT_EQ(product.m_patchFiles, Lines{DownloadFolder() + L"again.msp"});
        EXPECT_EQ(BytesOf(DownloadFolder() + L"again.msp"), good);
    }
    void ReadAPart()
    {
        Look([this] { steps->Release(16 * 1024); });
        Await(L"nothing has come", [this] { return Progress() == 25; });
    }

    std::shared_ptr<CServedSteps> steps;
};
class LeavingWizard : public LeavingDownload
{
};
INSTANTIATE_TEST_SUITE_P(Shapes, LeavingWizard, testing::Values(Shape::Wizard), ShapeName);
class LeavingTab : public LeavingDownload
{
};
INSTANTIATE_TEST_SUITE_P(Shapes, LeavingTab, testing::Values(Shape::Tab), ShapeName);

} // namespace

TEST_P(LeavingWizard, NeitherCancelNorCloseBoxLeadOutOfARunningDownload)
{
    StartDownload();
    ReadAPart();
    Look([this] {
        EXPECT_FALSE(Control(IDC_CANCEL).IsEnabled());
        PostMessageW(Page(), WM_SYSCOMMAND, SC_CLOSE, 0);
        PostMessageW(Page(), WM_COMMAND, MAKEWPARAM(IDC_CANCEL, BN_CLICKED), 0);
        PostMessageW(Page(), WM_COMMAND, MAKEWPARAM(IDC_BACK, BN_CLICKED), 0);
        PostMessageW(Page(), WM_COMMAND, MAKEWPARAM(IDC_NEXT, BN_CLICKED), 0);
    });
    Look([this] { steps->ReleaseAll(); });
    AwaitStage(L"downloaded");
    Look([this] { EXPECT_TRUE(Control(IDC_CANCEL).IsEnabled()); });
    ShowAndGoBack();
    EXPECT_EQ(StateCalls(), Lines());
    EXPECT_TRUE(host.log.Of(L"EnableCancelling").empty()) << "the page asked whether to leave";
}

TEST_P(LeavingWizard, APageThatItsHostDestroysLetsTheNextOneWork)
{
    StartDownload();
    ReadAPart();
    Look([this] { DestroyWindow(Page()); });
    ShowPage();
    ExpectTheNextPageToWork();
    EXPECT_FALSE(FileExists(Target())) << "the worker of the page that is gone left its file";
}

// The worker has let go of the file of its own page by then.
TEST_P(LeavingWizard, TheNextPageCanFetchTheSameFile)
{
    StartDownload();
    ReadAPart();
    Look([this] { DestroyWindow(Page()); });
    ShowPage();
    server->Serve(L"/packs/ZoltSP1.msp", ServeBody(good));
    WithChoice(-1);
    StartDownload();
    Look([this] { steps->ReleaseAll(); });
    AwaitStage(L"downloaded");
    GoNext();
    EXPECT_EQ(product.m_patchFiles, Lines{Target()});
    EXPECT_EQ(BytesOf(Target()), good);
}

TEST_P(LeavingTab, AParentThatGoesTakesThePageAndTheNextOneWorks)
{
    StartDownload();
    ReadAPart();
    Look([this] { SendMessageW(GetParent(Page()), PAGE_MESSAGE_PREVIOUS_TAB, 0, 0); });
    EXPECT_EQ(ShowPage(), NAVIGATION_BACK);
    ExpectTheNextPageToWork();
}

TEST_P(LeavingTab, TheHostsRequestToStoreIsRefused)
{
    LRESULT stored = -1;
    StartDownload();
    ReadAPart();
    Look([this, &stored] { stored = SendMessageW(Page(), PAGE_MESSAGE_STORE, 0, 0); });
    Answer(WarningBox(ResourceText(IDS_PATCH_NOT_DOWNLOADED)), IDOK);
    Look([this] { EXPECT_EQ(Stage(), CString(L"downloading")); });
    Look([this] { steps->ReleaseAll(); });
    AwaitStage(L"downloaded");
    ShowAndGoBack();
    EXPECT_EQ(stored, 0);
    EXPECT_EQ(StateCalls(), Lines());
}

TEST_P(LeavingTab, TheHostsOwnButtonsAreDisabledWhileItRuns)
{
    HWND back = nullptr, cancel = nullptr;
    StartDownload();
    ReadAPart(); // from here on a cancel shows no failure
    Look([&] {   // as a host has them; they are there for a while only
        const HWND pane = GetParent(Page());
        back = CreateWindowW(L"Button", L"", WS_CHILD, 0, 0, 1, 1, pane, reinterpret_cast<HMENU>(IDC_BACK),
                             nullptr, nullptr);
        cancel = CreateWindowW(L"Button", L"", WS_CHILD, 0, 0, 1, 1, pane,
                               reinterpret_cast<HMENU>(IDC_CANCEL), nullptr, nullptr);
    });
    Act();
    Look([this] { steps->ReleaseAll(); });
    AwaitStage(L"available");
    Look([&] { server->Serve(L"/packs/ZoltSP1.msp", ServeBody(good)); });
    Look([&] {
        EXPECT_TRUE(IsWindowEnabled(back));
        SendMessageW(Page(), WM_COMMAND, MAKEWPARAM(IDC_PATCH_ACTION, BN_CLICKED), 0);
        EXPECT_FALSE(IsWindowEnabled(back));
        EXPECT_FALSE(IsWindowEnabled(cancel));
    });
    AwaitStage(L"downloaded");
    Look([&] {
        EXPECT_TRUE(IsWindowEnabled(back));
        EXPECT_TRUE(IsWindowEnabled(cancel));
        DestroyWindow(back);
        DestroyWindow(cancel);
    });
    ShowAndGoBack();
}

TEST_P(LeavingTab, NextTabCannotBeReachedWhileItRuns)
{
    StartDownload();
    Look([this] {
        EXPECT_FALSE(Control(IDC_NEXT_TAB).IsEnabled());
        EXPECT_FALSE(Control(IDC_PREVIOUS_TAB).IsEnabled());
        steps->ReleaseAll();
    });
    AwaitStage(L"downloaded");
    ShowAndGoBack();
}
