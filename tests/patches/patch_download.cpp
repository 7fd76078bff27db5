#include "tests/patches/patch_download.h"

#include "base/files.h"

#include <wininet.h>

#include <atomic>

namespace {

constexpr UINT FIRST_OF_WORKER = 1074;
constexpr UINT LAST_OF_WORKER = 1078;
std::atomic<bool> g_bFull = false;
std::atomic<int> g_refused[LAST_OF_WORKER - FIRST_OF_WORKER + 1];

BOOL WINAPI PostUnlessFull(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (g_bFull && message >= FIRST_OF_WORKER && message <= LAST_OF_WORKER) {
        ++g_refused[message - FIRST_OF_WORKER];
        SetLastError(ERROR_NOT_ENOUGH_QUOTA);
        return FALSE;
    }
    return PostMessageW(window, message, wParam, lParam);
}

} // namespace

CFullQueue::CFullQueue()
    : m_redirect(L"RolloutUi.dll", "PostMessageW", reinterpret_cast<void*>(PostUnlessFull))
{
    for (auto& count : g_refused) {
        count = 0;
    }
    g_bFull = true;
}

CFullQueue::~CFullQueue()
{
    g_bFull = false;
}

void CFullQueue::Open()
{
    g_bFull = false;
}

bool CFullQueue::HasRefused(UINT message)
{
    return g_refused[message - FIRST_OF_WORKER] > 0;
}

PatchDownload::PatchDownload()
{
    good = BytesOf(AddPatch(L"good.msp", 1, L"Service Pack 1"));
    server.emplace();
}

void PatchDownload::TearDown()
{
    server.reset();
    PatchPage::TearDown();
}

std::string PatchDownload::BytesOf(const CString& file)
{
    std::string bytes;
    EXPECT_EQ(ReadWholeFile(file, 64u << 20, bytes), 0u) << Utf8(file);
    return bytes;
}

CString PatchDownload::FailureText(unsigned int code)
{
    wchar_t words[1024] = L"";
    FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code,
                   MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), words, ARRAYSIZE(words), nullptr);
    return *words ? CString(words) : ResourceText((code | 0xF000) & 0xFFFF);
}

// ---- the world

void PatchDownload::Offer(const wchar_t* path, LoopbackHandler handler)
{
    WithOffer(server->Url(path));
    server->Serve(path, std::move(handler));
}

void PatchDownload::OfferGoodPatch(const wchar_t* path)
{
    Offer(path, ServeBody(good));
}

void PatchDownload::CheckContents()
{
    onCheck = [this](const CString&, const CString& file) {
        return BytesOf(file) == good ? 0u : static_cast<unsigned int>(ERROR_CRC);
    };
}

void PatchDownload::ForgetDownload()
{
    WithChoice(-1);
    product.m_bPatchDownloaded = false;
    product.m_patchFiles.clear();
    DeleteFileW(Target());
}

// ---- steps

void PatchDownload::StartDownload()
{
    AwaitStage(L"available");
    Act();
    AwaitStage(L"downloading");
}

void PatchDownload::CancelDownload()
{
    Act();
    AwaitStage(L"available");
}

void PatchDownload::AwaitCrossedCancel()
{
    const CString words = FailureText(ERROR_INTERNET_OPERATION_CANCELLED);
    script.SetWatcher([words] {
        const std::optional<MessageBoxView> box = FindMessageBox();
        if (!box || box->text != words) {
            return StepOutcome::Done();
        }
        const StepOutcome answered = AnswerMessageBox(*box, IDOK);
        return answered.IsFailed() ? answered : StepOutcome::NotYet(L"the box is still up");
    });
    Await(L"the download was not canceled",
          [this] { return Stage() == L"available" || Stage() == L"connect failed"; });
}

void PatchDownload::AwaitFailure(const wchar_t* stage, CString& words)
{
    words.Empty();
    script.Add(
        CString(L"wait for the stage ") + stage,
        [this, stage, &words] {
            if (const std::optional<MessageBoxView> box = FindMessageBox()) {
                EXPECT_EQ(box->icon, static_cast<UINT>(MB_ICONERROR));
                EXPECT_EQ(box->title, CString(host.manager.m_strProductName));
                EXPECT_TRUE(box->owner == GetAncestor(Page(), GA_ROOT)) << "the box has another owner";
                EXPECT_TRUE(words.IsEmpty()) << "a second box: " << Utf8(box->text);
                words = box->text;
                const StepOutcome answered = AnswerMessageBox(*box, IDOK);
                return answered.IsFailed() ? answered : StepOutcome::NotYet(L"the box is still up");
            }
            return Until(Stage() == stage, L"the page shows another stage");
        },
        90000);
}

void PatchDownload::AwaitRequests(std::size_t count)
{
    Await(L"the server was not asked", [this, count] { return server->GetRequests().size() >= count; });
}

void PatchDownload::ExpectDownloads(const Lines& names)
{
    Look([this, names] { EXPECT_EQ(FilesIn(DownloadFolder()), names); });
}

void PatchDownload::RetryAndGoNext()
{
    Look([this] {
        OfferGoodPatch(L"/again/ZoltSP1.msp");
        queries.clear();
    });
    Act();
    AwaitStage(L"available");
    Look([this] { EXPECT_EQ(queries.size(), 1u) << "a retry goes through the catalog"; });
    // A failure clears the choice, and an offer sets it again.
    Look([this] { EXPECT_TRUE(IsChecked(IDC_PATCH_OFFERED)); });
    Act();
    AwaitStage(L"downloaded");
    GoNext();
    EXPECT_EQ(product.m_patchFiles, Lines{Target()});
    EXPECT_EQ(BytesOf(Target()), good);
}

void PatchDownload::GoNext()
{
    Press(Next());
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
}

void PatchDownload::LeaveWithoutPatch()
{
    Choose(IDC_PATCH_NONE);
    ShowAndGoBack();
}
