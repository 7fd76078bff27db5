// The page with an offer of a server on the loopback address.
#pragma once

#include "tests/patches/service_pack_page.h"
#include "tests/support/loopback_server.h"

#include <optional>

class PatchDownload : public PatchPage
{
protected:
    PatchDownload();
    void TearDown() override;

    // ---- the world
    // The service offers that file, and the server answers so.
    void Offer(const wchar_t* path, LoopbackHandler handler);
    // A patch of the product that is good; it is fetched as that file.
    void OfferGoodPatch(const wchar_t* path = L"/packs/ZoltSP1.msp");
    // The patch list knows these bytes alone: any others are refused as the library does.
    void CheckContents();
    // As if the page had not been open before.
    void ForgetDownload();

    // ---- steps
    void StartDownload(); // and see it run
    // Presses Cancel, and waits for the worker's word.
    // In the reading of the body.
    void CancelDownload();
    // Before the body a cancel may cross with its own message, and then shows as a failure too.
    void AwaitCrossedCancel();
    // Answers a box about a failure if one comes up, and waits for that stage. Its words come back once the steps are played.
    void AwaitFailure(const wchar_t* stage, CString& words);
    void AwaitRequests(std::size_t count);
    // The folder for downloads has these files and no others.
    void ExpectDownloads(const Lines& names);
    // Tries again through the catalog, with an answer that is good, and leaves by Next.
    void RetryAndGoNext();
    void GoNext();
    void LeaveWithoutPatch();

    // ---- looks
    int Progress() const
    {
        return static_cast<int>(SendMessageW(Control(IDC_PATCH_PROGRESS).GetWindow(), PBM_GETPOS, 0, 0));
    }
    CString Target() const { return DownloadFolder() + L"ZoltSP1.msp"; }
    static std::string BytesOf(const CString& file);
    // What the page says of a code: the system's words, or those of the resource library where it has none.
    static CString FailureText(unsigned int code);
    static CString FailureTextOfResult(unsigned int code) { return FailureText(0x80070000u | code); }

    std::optional<CLoopbackServer> server;
    std::string good; // bytes of a patch that applies
};

// Refuses the messages of the download's worker for a while, as a full message queue does.
class CFullQueue
{
public:
    CFullQueue();
    ~CFullQueue();
    CFullQueue(const CFullQueue&) = delete;
    CFullQueue& operator=(const CFullQueue&) = delete;

    bool IsInPlace() const { return m_redirect.IsInPlace(); }
    void Open(); // lets messages through from here on
    // That one was refused at least once.
    static bool HasRefused(UINT message);

private:
    CImportRedirect m_redirect;
};
