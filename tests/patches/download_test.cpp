// The download of the patch that the service offers: how the server is asked, what the page shows meanwhile and afterwards, and what a
// cancel does at each step.
#include "tests/patches/patch_download.h"

namespace {

class PatchDownloads : public PatchDownload
{
};
INSTANTIATE_BOTH_SHAPES(PatchDownloads);

} // namespace

// ---- a good download

TEST_P(PatchDownloads, AnOfferIsFetchedIntoTheFolderAndStoredOnTheProduct)
{
    OfferGoodPatch();
    Act();
    AwaitStage(L"downloaded");
    Look([this] {
        EXPECT_EQ(Form(IDC_PATCH_ACTION), CString(L"SD"));
        EXPECT_EQ(Text(IDC_PATCH_DOWNLOADED), ResourceText(IDS_PATCH_IS_DOWNLOADED));
        EXPECT_TRUE(product.m_bPatchDownloaded);
        EXPECT_EQ(product.patchPath, Target());
        EXPECT_TRUE(Control(Next()).IsEnabled());
        EXPECT_TRUE(Control(Back()).IsEnabled());
    });
    GoNext();
    EXPECT_EQ(product.m_patchFiles, Lines{Target()});
    EXPECT_EQ(StateCalls(), Lines{L"Product.SetPatchState(2)"});
    EXPECT_EQ(BytesOf(Target()), good);
}

TEST_P(PatchDownloads, AFetchedPatchIsThereAtOnceWhenThePageComesBack)
{
    OfferGoodPatch();
    Act();
    AwaitStage(L"downloaded");
    ShowAndGoBack();
    queries.clear();
    Look([this] {
        EXPECT_EQ(Stage(), CString(L"downloaded"));
        EXPECT_EQ(Text(IDC_PATCH_LINK), CString(L"Zolt 2027 Service Pack 1"));
    });
    GoNext();
    EXPECT_EQ(queries.size(), 0u);
    EXPECT_EQ(product.m_patchFiles, Lines{Target()});
}

TEST_P(PatchDownloads, TheServerIsAskedForTheFileAsSetupWithoutACache)
{
    OfferGoodPatch();
    Act();
    AwaitStage(L"downloaded");
    GoNext();
    const std::vector<LoopbackRequest> requests = server->GetRequests();
    ASSERT_EQ(requests.size(), 1u);
    EXPECT_EQ(requests[0].method, "GET");
    EXPECT_EQ(requests[0].path, "/packs/ZoltSP1.msp");
    EXPECT_EQ(requests[0].headers.at("user-agent"), "SETUP");
    EXPECT_EQ(requests[0].headers.at("accept"), "*/*");
    EXPECT_EQ(requests[0].headers.count("referer"), 0u);
    EXPECT_EQ(requests[0].headers.count("authorization"), 0u);
}

TEST_P(PatchDownloads, AQueryOfTheAddressDoesNotReachTheServer)
{
    OfferGoodPatch();
    WithOffer(server->Url(L"/packs/ZoltSP1.msp") + L"?version=1");
    Act();
    CString words;
    AwaitFailure(L"connect failed", words); // no file has a name with a question mark
    ShowAndGoBack();
    EXPECT_FALSE(words.IsEmpty());
    EXPECT_EQ(server->GetRequests().at(0).path, "/packs/ZoltSP1.msp");
    EXPECT_EQ(server->GetRequests().at(0).query, "");
}

TEST_P(PatchDownloads, UserAndPasswordOfTheAddressDoNotReachTheServer)
{
    OfferGoodPatch();
    CString address = server->Url(L"/packs/ZoltSP1.msp");
    address.Replace(L"//", L"//user:secret@");
    WithOffer(address);
    Act();
    AwaitStage(L"downloaded");
    GoNext();
    EXPECT_EQ(server->GetRequests().at(0).headers.count("authorization"), 0u);
}

TEST_P(PatchDownloads, TheBarFollowsTheBytesAndThePageAnswers)
{
    const auto steps = std::make_shared<CServedSteps>(std::string(100 * 1024, 'x'));
    Offer(L"/packs/ZoltSP1.msp", ServeInSteps(steps));
    StartDownload();
    for (const int percent : {25, 50, 75}) {
        Look([steps] { steps->Release(25 * 1024); });
        Await(L"the bar stands elsewhere", [this, percent] { return Progress() == percent; });
    }
    Look([steps] { steps->ReleaseAll(); });
    AwaitStage(L"downloaded");
    ShowAndGoBack();
}

TEST_P(PatchDownloads, WhileItRunsNothingElseCanBeDone)
{
    const auto steps = std::make_shared<CServedSteps>(std::string(64 * 1024, 'x'));
    Offer(L"/packs/ZoltSP1.msp", ServeInSteps(steps));
    StartDownload();
    Look([this] {
        for (const int id : {Next(), Back(), IDC_PATCH_NONE, IDC_PATCH_LISTED, IDC_PATCH_APPEND,
                             IDC_PATCH_MERGE, IDC_PATCH_WAY_HEADING, IDC_PATCH_LIST, IDC_PATCH_BROWSE}) {
            EXPECT_FALSE(Control(id).IsEnabled()) << id;
        }
        EXPECT_EQ(Form(IDC_PATCH_OFFERED), CString(L"SEC"));
        EXPECT_EQ(Form(IDC_PATCH_ACTION), CString(L"SE"));
        EXPECT_EQ(Text(IDC_PATCH_ACTION), ResourceText(IDS_PATCH_CANCEL_DOWNLOAD));
        EXPECT_EQ(Form(IDC_PATCH_PROGRESS), CString(L"SE"));
        EXPECT_EQ(Form(IDC_PATCH_LINK), CString(L"SE"));
        EXPECT_EQ(Form(IDC_PATCH_SIZE), CString(L"SE"));
        EXPECT_FALSE(IsShown(IDC_PATCH_OFFER));
    });
    Look([steps] { steps->Release(16 * 1024); });
    Await(L"nothing has come", [this] { return Progress() == 25; });
    Act(); // from here on a cancel shows no failure, which would undo the choice
    Look([steps] { steps->ReleaseAll(); });
    AwaitStage(L"available");
    Look([this] {
        for (const int id :
             {Next(), Back(), IDC_PATCH_NONE, IDC_PATCH_LISTED, IDC_PATCH_APPEND, IDC_PATCH_MERGE}) {
            EXPECT_TRUE(Control(id).IsEnabled()) << id;
        }
    });
    LeaveWithoutPatch();
}

TEST_P(PatchDownloads, OutsideADeploymentTheWaysStayHiddenWhileItRuns)
{
    InMode(2);
    const auto steps = std::make_shared<CServedSteps>(good);
    Offer(L"/packs/ZoltSP1.msp", ServeInSteps(steps));
    StartDownload();
    Look([this, steps] {
        EXPECT_FALSE(IsShown(IDC_PATCH_APPEND));
        EXPECT_FALSE(IsShown(IDC_PATCH_MERGE));
        EXPECT_FALSE(IsShown(IDC_PATCH_WAY_HEADING));
        steps->ReleaseAll();
    });
    AwaitStage(L"downloaded");
    GoNext();
    EXPECT_EQ(product.patchPath, folder / L"language\\Zolt\\ServicePacks\\ZoltSP1.msp");
}

TEST_P(PatchDownloads, AnEmptyFileIsFetchedWithoutProgress)
{
    Offer(L"/packs/ZoltSP1.msp", ServeNothing());
    Act();
    AwaitStage(L"downloaded");
    Look([this] { EXPECT_EQ(Progress(), 0); });
    ExpectDownloads({L"ZoltSP1.msp"});
    ShowAndGoBack();
}

TEST_P(PatchDownloads, AFileInTheTargetsPlaceIsReplaced)
{
    OfferGoodPatch();
    CreateDirectoryW(DownloadFolder(), nullptr);
    WriteFileBytes(Target(), std::string(4000, 'o').c_str());
    Act();
    AwaitStage(L"downloaded");
    GoNext();
    EXPECT_EQ(BytesOf(Target()), good);
}

TEST_P(PatchDownloads, AHundredInOneRunLeaveNoHandleThreadOrFile)
{
    const auto countHandles = [] {
        int count = 0;
        for (std::uintptr_t value = 4; value < 0x8000; value += 4) {
            DWORD flags = 0;
            count += GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags) != FALSE;
        }
        return count;
    };
    const auto download = [this](int times) {
        for (int number = 0; number < times; ++number) {
            OfferGoodPatch();
            WithChoice(-1);
            product.m_bPatchDownloaded = false;
            Act();
            AwaitStage(L"downloaded");
            ShowAndGoBack();
        }
        EXPECT_TRUE(server->WaitUntilIdle());
    };
    download(10); // the network library keeps some of its own
    const int before = countHandles();
    download(90);
    EXPECT_LT(countHandles(), before + 20);
    EXPECT_EQ(FilesIn(DownloadFolder()), Lines{L"ZoltSP1.msp"});
    EXPECT_EQ(server->GetRequests().size(), 100u);
}

// ---- a cancel at each step

TEST_P(PatchDownloads, ACancelBeforeTheHeadersLeavesNothing)
{
    const auto steps = std::make_shared<CServedSteps>(good);
    Offer(L"/packs/ZoltSP1.msp", ServeInSteps(steps));
    StartDownload();
    AwaitRequests(1);
    Act();
    Look([this, steps] {
        EXPECT_EQ(Stage(), CString(L"downloading")) << "a cancel draws nothing by itself";
        steps->ReleaseHeaders();
    });
    AwaitCrossedCancel();
    ExpectDownloads({});
    LeaveWithoutPatch();
}

TEST_P(PatchDownloads, ACancelInTheMiddleLeavesNothingAndASecondDownloadIsWhole)
{
    const auto steps = std::make_shared<CServedSteps>(std::string(64 * 1024, 'x'));
    Offer(L"/packs/ZoltSP1.msp", ServeInSteps(steps));
    StartDownload();
    Look([steps] { steps->Release(16 * 1024); });
    Await(L"nothing has come", [this] { return Progress() == 25; });
    Look([this] { EXPECT_EQ(FilesIn(DownloadFolder()).size(), 1u); });
    Act();
    Look([steps] { steps->ReleaseAll(); });
    AwaitStage(L"available");
    Await(L"the partial file is still there", [this] { return FilesIn(DownloadFolder()).empty(); });
    Look([this] { server->Serve(L"/packs/ZoltSP1.msp", ServeBody(good)); });
    Act();
    AwaitStage(L"downloaded");
    GoNext();
    EXPECT_EQ(BytesOf(Target()), good);
}

TEST_P(PatchDownloads, TwoCancelsAreOne)
{
    const auto steps = std::make_shared<CServedSteps>(std::string(64 * 1024, 'x'));
    Offer(L"/packs/ZoltSP1.msp", ServeInSteps(steps));
    StartDownload();
    AwaitRequests(1);
    Act();
    Act();
    Look([steps] { steps->ReleaseAll(); });
    AwaitCrossedCancel();
    LeaveWithoutPatch();
}

// The worker has ended, its word is on its way, and the cancel comes in front of it.
TEST_P(PatchDownloads, ACancelThatCrossesWithTheEndComesTooLate)
{
    const auto steps = std::make_shared<CServedSteps>(good);
    Offer(L"/packs/ZoltSP1.msp", ServeInSteps(steps));
    StartDownload();
    Look([this, steps] {
        steps->ReleaseAll();
        EXPECT_TRUE(server->WaitUntilIdle());
        for (const ULONGLONG end = GetTickCount64() + 20000; GetTickCount64() < end;) {
            MSG message;
            if (PeekMessageW(&message, Page(), 1076, 1076, PM_NOREMOVE)) {
                break;
            }
        }
        SendMessageW(Page(), WM_COMMAND, MAKEWPARAM(IDC_PATCH_ACTION, BN_CLICKED), 0);
    });
    AwaitStage(L"downloaded");
    GoNext();
    EXPECT_EQ(product.m_patchFiles, Lines{Target()});
}

// The test comes with the sixth part of 1,024 bytes first.
TEST_P(PatchDownloads, ACancelOfAShortRestComesTooLate)
{
    const auto steps = std::make_shared<CServedSteps>(std::string(4096, 'x'));
    Offer(L"/packs/ZoltSP1.msp", ServeInSteps(steps));
    StartDownload();
    Look([steps] { steps->Release(1024); });
    Await(L"nothing has come", [this] { return Progress() == 25; });
    Act();
    Look([steps] { steps->ReleaseAll(); });
    AwaitStage(L"downloaded");
    ShowAndGoBack();
}

// ---- a full message queue

TEST_P(PatchDownloads, AFullMessageQueueDelaysTheEndAndDoesNotLoseIt)
{
    std::optional<CFullQueue> queue;
    OfferGoodPatch();
    Look([&queue] {
        queue.emplace();
        ASSERT_TRUE(queue->IsInPlace());
    });
    StartDownload();
    Await(L"the end was not posted", [] { return CFullQueue::HasRefused(1076); });
    Look([this, &queue] {
        EXPECT_EQ(Stage(), CString(L"downloading"));
        queue->Open();
    });
    AwaitStage(L"downloaded");
    Look([&queue] { queue.reset(); });
    GoNext();
}

TEST_P(PatchDownloads, AFullMessageQueueDoesNotLoseAFailure)
{
    std::optional<CFullQueue> queue;
    CString words;
    Offer(L"/packs/ZoltSP1.msp", ServeWithoutLength(good));
    Look([&queue] { queue.emplace(); });
    StartDownload();
    Await(L"the failure was not posted", [] { return CFullQueue::HasRefused(1077); });
    Look([&queue] { queue->Open(); });
    AwaitFailure(L"connect failed", words);
    Look([&queue] { queue.reset(); });
    ShowAndGoBack();
}

TEST_P(PatchDownloads, AFullMessageQueueDoesNotLoseACancel)
{
    std::optional<CFullQueue> queue;
    const auto steps = std::make_shared<CServedSteps>(std::string(64 * 1024, 'x'));
    Offer(L"/packs/ZoltSP1.msp", ServeInSteps(steps));
    StartDownload();
    Look([steps] { steps->Release(16 * 1024); });
    Await(L"nothing has come", [this] { return Progress() == 25; });
    Look([&queue] { queue.emplace(); });
    Act();
    Look([steps] { steps->ReleaseAll(); });
    Await(L"the cancel was not posted", [] { return CFullQueue::HasRefused(1075); });
    Look([&queue] { queue->Open(); });
    AwaitStage(L"available");
    Look([&queue] { queue.reset(); });
    LeaveWithoutPatch();
}

TEST_P(PatchDownloads, ManyMoreMessagesThanAQueueHoldsEndWell)
{
    constexpr std::size_t large = 20u << 20; // 20,480 parts; a queue holds 10,000 messages
    Offer(L"/packs/ZoltSP1.msp", ServeBytes(large));
    StartDownload();
    Look([this] { // the page is busy all the while
        EXPECT_TRUE(server->WaitUntilIdle());
    });
    AwaitStage(L"downloaded");
    ShowAndGoBack();
    EXPECT_EQ(BytesOf(Target()).size(), large);
}
