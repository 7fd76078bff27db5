// Servers that misbehave, and disks that can't be written: which words and stage come of each, that the page answers all the
// while, that nothing is left in the folder, and that the next try works.
#include "base/system_text.h"
#include "tests/patches/patch_download.h"

#include <wininet.h>

namespace {

constexpr unsigned int ANY_CODE = 0xFFFFFFFF;       // whatever the network library says of it
constexpr unsigned int WRONG_CONTENTS = 0xFFFFFFFE; // the page's own words about the file

class DownloadFaults : public PatchDownload
{
protected:
    DownloadFaults() { CheckContents(); }

    // Plays the download against that server, sees its end, and has a good one behind it.
    void ExpectEnd(const LoopbackHandler& handler, const wchar_t* stage, unsigned int code)
    {
        CString words;
        Offer(L"/packs/ZoltSP1.msp", handler);
        Act();
        AwaitFailure(stage, words);
        ExpectDownloads({});
        RetryAndGoNext();
        if (code != ANY_CODE) {
            EXPECT_EQ(words, WordsOf(code));
        }
        RecordProperty("words", Utf8(words));
    }
    CString WordsOf(unsigned int code) const
    {
        return code == 0                ? CString()
               : code == WRONG_CONTENTS ? ResourceText(IDS_PATCH_CHANGED, Target())
                                        : FailureText(code);
    }
    // The server holds the worker: the page answers and shows the download until the server lets go.
    void ExpectHeld(const LoopbackHandler& handler, const wchar_t* stage)
    {
        CString words;
        Offer(L"/packs/ZoltSP1.msp", handler);
        StartDownload();
        AwaitRequests(1);
        Look([this] { // a page that doesn't answer would hold the message
            DWORD_PTR answered = 0;
            EXPECT_NE(SendMessageTimeoutW(Page(), WM_NULL, 0, 0, SMTO_ABORTIFHUNG, 1000, &answered), 0);
            EXPECT_EQ(Stage(), CString(L"downloading"));
            EXPECT_TRUE(Control(IDC_PATCH_ACTION).IsEnabled());
            server.emplace(); // the former one ends, and its connections close
        });
        AwaitFailure(stage, words);
        ExpectDownloads({});
        RetryAndGoNext();
    }
};
INSTANTIATE_BOTH_SHAPES(DownloadFaults);

DWORD g_receiveLimit = 0;

BOOL WINAPI SetShorterReceiveLimit(HINTERNET handle, DWORD option, void* value, DWORD bytes)
{
    DWORD shorter = 2000;
    if (option == INTERNET_OPTION_RECEIVE_TIMEOUT && bytes == sizeof shorter) {
        g_receiveLimit = *static_cast<const DWORD*>(value);
        value = &shorter;
    }
    return InternetSetOptionW(handle, option, value, bytes);
}

// What has nothing of the shape in it.
class DownloadWizardFaults : public DownloadFaults
{
};
INSTANTIATE_TEST_SUITE_P(Shapes, DownloadWizardFaults, testing::Values(Shape::Wizard), ShapeName);

} // namespace

// ---- no connection

TEST_P(DownloadFaults, ARefusedConnection)
{
    CString words;
    WithOffer(server->RefusedUrl(L"/packs/ZoltSP1.msp"));
    Act();
    AwaitFailure(L"connect failed", words);
    ExpectDownloads({});
    RetryAndGoNext();
    EXPECT_EQ(words, FailureText(12029));
}

TEST_P(DownloadFaults, AnAddressThatIsNone)
{
    for (const wchar_t* address : {L"", L"ZoltSP1.msp", L"not an address", L"http://", L"ftp:/x"}) {
        SCOPED_TRACE(Utf8(address));
        CString words;
        WithChoice(-1);
        WithOffer(address);
        Act();
        AwaitFailure(L"connect failed", words);
        ExpectDownloads({});
        ShowAndGoBack();
    }
}

TEST_P(DownloadFaults, AnAddressOfAnotherScheme)
{
    for (const wchar_t* scheme : {L"https", L"file", L"gopher"}) {
        SCOPED_TRACE(Utf8(scheme));
        CString words;
        WithChoice(-1);
        OfferGoodPatch();
        WithOffer(CString(scheme) + server->Url(L"/packs/ZoltSP1.msp").Mid(4));
        Act();
        AwaitFailure(L"connect failed", words);
        ExpectDownloads({});
        ShowAndGoBack();
    }
}

// ---- answers that break off

TEST_P(DownloadFaults, AResetBeforeTheHeaders)
{
    ExpectEnd(ServeReset(), L"connect failed", ANY_CODE);
}

TEST_P(DownloadFaults, AResetInTheMiddleOfTheBody)
{
    ExpectEnd(ServeResetInBody(std::string(64 * 1024, 'x'), 20000), L"connect failed", ANY_CODE);
}

TEST_P(DownloadFaults, AnEndAtTheLastByte)
{
    ExpectEnd(ServeWithoutLastByte(good), L"connect failed", WRONG_CONTENTS);
}

// The length is compared with nothing: the contents decide.
TEST_P(DownloadFaults, ALengthThatIsTooLargeDoesNotSpoilAGoodBody)
{
    Offer(L"/packs/ZoltSP1.msp", ServeWrongLength(good, good.size() + 1000));
    Act();
    AwaitStage(L"downloaded");
    GoNext();
    EXPECT_EQ(BytesOf(Target()), good);
}

TEST_P(DownloadFaults, ABodyLongerThanItsLength)
{
    ExpectEnd(ServeWrongLength(good, 100), L"connect failed", WRONG_CONTENTS);
}

TEST_P(DownloadFaults, ALengthOfFiveGigabytes)
{
    ExpectEnd(ServeWrongLength(good, SERVED_HUGE_LENGTH), L"connect failed", ANY_CODE);
}

// ---- answers that are something else

TEST_P(DownloadFaults, ABodyWithoutALength)
{
    ExpectEnd(ServeWithoutLength(good), L"connect failed", ANY_CODE);
}

TEST_P(DownloadFaults, ABodyInChunksHasNoLength)
{
    ExpectEnd(ServeChunked(good), L"connect failed", ANY_CODE);
}

TEST_P(DownloadFaults, ACompressedBodyIsNotThePatch)
{
    ExpectEnd(ServeCompressed(good), L"connect failed", WRONG_CONTENTS);
}

TEST_P(DownloadFaults, APageForPeopleIsNotThePatch)
{
    ExpectEnd(ServeHtml(), L"connect failed", WRONG_CONTENTS);
}

TEST_P(DownloadFaults, AnEmptyFileIsNotThePatch)
{
    ExpectEnd(ServeNothing(), L"connect failed", WRONG_CONTENTS);
}

TEST_P(DownloadFaults, ARedirectionElsewhereIsNotThePatch)
{
    server->Serve(L"/elsewhere", ServeHtml());
    ExpectEnd(ServeRedirect(server->Url(L"/elsewhere")), L"connect failed", WRONG_CONTENTS);
}

// The network library follows it, and then the answer is that of the other place.
TEST_P(DownloadFaults, ARedirectionToThePatchIsFollowed)
{
    server->Serve(L"/elsewhere/ZoltSP1.msp", ServeBody(good));
    Offer(L"/packs/ZoltSP1.msp", ServeRedirect(server->Url(L"/elsewhere/ZoltSP1.msp")));
    Act();
    AwaitStage(L"downloaded");
    GoNext();
    EXPECT_EQ(BytesOf(Target()), good);
}

TEST_P(DownloadFaults, ARedirectionToItself)
{
    ExpectEnd(ServeRedirectToItself(), L"connect failed", ANY_CODE);
}

TEST_P(DownloadFaults, EachStatusThatIsNotGood)
{
    for (const int status : {201, 204, 206, 304, 400, 401, 403, 404, 407, 410, 500, 503}) {
        SCOPED_TRACE(status);
        ForgetDownload();
        ExpectEnd(ServeStatus(status), L"connect failed", ANY_CODE);
    }
}

// ---- answers that never end

TEST_P(DownloadFaults, AServerThatStallsBeforeTheHeaders)
{
    ExpectHeld(ServeStall(), L"connect failed");
}

// Which the page's own limit ends. The network library is handed a shorter one here, to save the test the half minute.
TEST_P(DownloadWizardFaults, AServerThatNeverAnswersIsGivenUp)
{
    const CImportRedirect redirect(L"RolloutUi.dll", "InternetSetOptionW",
                                   reinterpret_cast<void*>(SetShorterReceiveLimit));
    ASSERT_TRUE(redirect.IsInPlace());
    g_receiveLimit = 0;
    const ULONGLONG start = GetTickCount64();
    ExpectEnd(ServeStall(), L"connect failed", ANY_CODE);
    EXPECT_EQ(g_receiveLimit, 30000u) << "milliseconds that the page waits for a byte";
    EXPECT_LT(GetTickCount64() - start, 30000u) << "something else than the limit has ended it";
}

TEST_P(DownloadFaults, AServerThatStallsInTheBody)
{
    ExpectHeld(ServeStallInBody(std::string(64 * 1024, 'x'), 20000), L"connect failed");
}

TEST_P(DownloadFaults, AServerWithHeadersWithoutEnd)
{
    ExpectHeld(ServeEndlessHeaders(), L"connect failed");
}

TEST_P(DownloadFaults, ABodyWithoutLengthAndEndIsNotRead)
{
    ExpectEnd(ServeEndlessBody(), L"connect failed", ANY_CODE);
}

// The page looks for a cancel with every fifth part of 1,024 bytes, and a part takes as long as the server lets it.
TEST_P(DownloadFaults, AServerOfAFewBytesAtATimeCanBeCanceled)
{
    Offer(L"/packs/ZoltSP1.msp", [](CLoopbackConnection& connection) {
        bool open = connection.SendHead(200, "Content-Length: 2000000000\r\n");
        while (open) {
            open = connection.Send("sixteen bytes or");
        }
    });
    StartDownload();
    AwaitRequests(1);
    Await(L"the target is not there", [this] { return FileExists(Target()); });
    CancelDownload();
    Await(L"the partial file is still there", [this] { return FilesIn(DownloadFolder()).empty(); });
    LeaveWithoutPatch();
}

// ---- the disk

namespace {

int g_writesLeft = 0;

BOOL WINAPI WriteUntilFull(HANDLE file, const void* bytes, DWORD count, DWORD* written,
                           OVERLAPPED* overlapped)
{
    if (g_writesLeft-- <= 0) {
        *written = 0;
        SetLastError(ERROR_DISK_FULL);
        return FALSE;
    }
    return WriteFile(file, bytes, count, written, overlapped);
}

} // namespace

TEST_P(DownloadFaults, AFullDiskIsSaidAndLeavesNothing)
{
    for (const int writes : {0, 1, 7}) {
        SCOPED_TRACE(writes);
        ForgetDownload();
        CString words;
        Offer(L"/packs/ZoltSP1.msp", ServeBytes(64 * 1024));
        g_writesLeft = writes;
        std::optional<CImportRedirect> redirect;
        Look([&redirect] {
            redirect.emplace(L"RolloutUi.dll", "WriteFile", reinterpret_cast<void*>(WriteUntilFull));
            ASSERT_TRUE(redirect->IsInPlace());
        });
        Act();
        AwaitFailure(L"connect failed", words);
        Look([&redirect] { redirect.reset(); });
        ExpectDownloads({});
        RetryAndGoNext();
        EXPECT_EQ(words, FailureTextOfResult(ERROR_DISK_FULL));
    }
}

TEST_P(DownloadFaults, AFolderInTheTargetsPlaceStays)
{
    CString words;
    OfferGoodPatch();
    CreateDirectoryW(DownloadFolder(), nullptr);
    CreateDirectoryW(Target(), nullptr);
    Act();
    AwaitFailure(L"connect failed", words);
    ExpectDownloads({L"ZoltSP1.msp\\"});
    Look([this] { RemoveDirectoryW(Target()); });
    RetryAndGoNext();
    EXPECT_EQ(words, FailureTextOfResult(ERROR_ACCESS_DENIED));
}

TEST_P(DownloadFaults, ATargetThatIsOpenElsewhereIsSaid)
{
    CString words;
    OfferGoodPatch();
    CreateDirectoryW(DownloadFolder(), nullptr);
    HANDLE file = CreateFileW(Target(), GENERIC_READ, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    Act();
    AwaitFailure(L"connect failed", words);
    Look([file] { CloseHandle(file); });
    RetryAndGoNext();
    EXPECT_EQ(words, FailureTextOfResult(ERROR_SHARING_VIOLATION));
}

TEST_P(DownloadFaults, AFolderForDownloadsThatIsGoneIsSaid)
{
    CString words;
    OfferGoodPatch();
    Look([this] { RemoveTree(DownloadFolder().Left(DownloadFolder().GetLength() - 1)); });
    Act();
    AwaitFailure(L"connect failed", words);
    Look([this] { CreateDirectoryW(DownloadFolder(), nullptr); });
    RetryAndGoNext();
    EXPECT_EQ(words, FailureTextOfResult(ERROR_PATH_NOT_FOUND));
}

// ---- the patch list's word

TEST_P(DownloadFaults, EachRefusalOfTheContentsLeavesNothing)
{
    for (const unsigned int code : {2u, 13u, 23u, 1168u, 5u}) {
        SCOPED_TRACE(code);
        ForgetDownload();
        CString words;
        OfferGoodPatch();
        onCheck = [code](const CString&, const CString&) { return code; };
        Act();
        AwaitFailure(L"connect failed", words);
        ExpectDownloads({});
        Look([this] {
            EXPECT_FALSE(product.m_bPatchDownloaded);
            onCheck = nullptr;
        });
        RetryAndGoNext();
        const bool isChanged =
            code == 13 || code == 23 || code == 1168; // else nothing is known of the contents
        EXPECT_EQ(words,
                  isChanged ? ResourceText(IDS_PATCH_CHANGED, Target()) : FindSystemText(code) + Target());
    }
}

TEST_P(DownloadFaults, TheLibraryIsAskedAboutTheFileWithItsList)
{
    CString list, file;
    OfferGoodPatch();
    onCheck = [&](const CString& listFile, const CString& target) {
        list = listFile;
        file = target;
        return 0u;
    };
    Act();
    AwaitStage(L"downloaded");
    GoNext();
    EXPECT_EQ(list, DownloadFolder() + L"patchlist.npl");
    EXPECT_EQ(file, Target());
}

TEST_P(DownloadFaults, ALibraryThatCannotCheckRefusesEveryFile)
{
    for (const wchar_t* variant : {L"without_check", static_cast<const wchar_t*>(nullptr)}) {
        CString words;
        ForgetDownload();
        OfferGoodPatch();
        UseLibrary(L"FixMgr.dll", L"without_check");
        Look([this, variant] { UseLibrary(L"FixMgr.dll", variant); });
        Act();
        AwaitFailure(L"connect failed", words);
        ExpectDownloads({});
        Look([this] { UseLibrary(L"FixMgr.dll", L""); });
        RetryAndGoNext();
        EXPECT_EQ(words, FindSystemText(variant ? ERROR_PROC_NOT_FOUND : ERROR_MOD_NOT_FOUND) + Target());
    }
}
